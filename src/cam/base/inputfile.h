// Reading a file as a whole, and telling how far its reading is.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>

namespace cam {

// All bytes of `file`. `report` takes the share that is in memory, 0 to 1, and may throw to cancel. Throws
// Error when the file cannot be read.
std::string readWholeFile(
    const std::filesystem::path &file, const std::function<void(double)> &report = [](double) {});

// Of the reading of a text that is parsed when all of it is in memory, the share that this takes.
constexpr double wholeFileShare = 0.2;

// Reports, as a reader goes through a file, how much of it is behind.
class ReadingProgress
{
public:
    // `report`, which must outlive the object, takes the share of `size` bytes that have been read, 0 to 1
    // and never less than before, and may throw to cancel. A `size` that is not known is 0; so is the share
    // then.
    ReadingProgress(const std::function<void(double)> &report, std::size_t size)
        : m_report(report), m_size(size)
    {
    }

    // Reports at the first byte, and once in `bytesPerReport`.
    void reach(std::size_t byte)
    {
        if (byte >= m_next)
            tell(byte);
    }
    // Reports what was reported last: where a few bytes of the file make much work.
    void repeat() const { m_report(m_share); }

private:
    static constexpr std::size_t bytesPerReport = 0x10000;
    void tell(std::size_t byte);

    const std::function<void(double)> &m_report;
    std::size_t m_size;
    std::size_t m_next = 0;
    double m_share = 0.0;
};

} // namespace cam
