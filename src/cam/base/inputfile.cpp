#include "cam/base/inputfile.h"

#include "cam/base/error.h"

#include <algorithm>
#include <fstream>

namespace cam {

namespace {

// Some libraries throw where a read fails, and name no file.
bool read(std::filebuf &stream, char *bytes, std::streamsize count)
{
    try {
        return stream.sgetn(bytes, count) == count;
    } catch (const std::ios_base::failure &) {
        return false;
    }
}

} // namespace

std::string readWholeFile(const std::filesystem::path &file, const std::function<void(double)> &report)
{
    constexpr std::size_t piece = 0x100000;
    std::filebuf stream;
    if (!stream.open(file, std::ios::in | std::ios::binary))
        throw Error(file.u8string() + ": cannot be opened");
    const std::streamoff end = stream.pubseekoff(0, std::ios::end);
    if (end < 0 || std::filesystem::is_directory(file)) // which some systems open and give a size
        throw Error(file.u8string() + ": cannot be read");
    stream.pubseekpos(0);
    std::string bytes(static_cast<std::size_t>(end), '\0');
    for (std::size_t at = 0; at < bytes.size();) {
        report(static_cast<double>(at) / static_cast<double>(bytes.size()));
        const auto wanted = static_cast<std::streamsize>(std::min(piece, bytes.size() - at));
        if (!read(stream, bytes.data() + at, wanted))
            throw Error(file.u8string() + ": cannot be read to its end");
        at += static_cast<std::size_t>(wanted);
    }
    report(1.0);
    return bytes;
}

void ReadingProgress::tell(std::size_t byte)
{
    m_next = byte + bytesPerReport;
    if (m_size > 0)
        m_share = std::min(1.0, static_cast<double>(byte) / static_cast<double>(m_size));
    m_report(m_share);
}

} // namespace cam
