// A file under construction: written beside its final name, and put in its place only when it is complete.
// Whoever looks at the final name sees the old file or the whole new one, and nothing stays of an export that
// failed.
#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <vector>

namespace cam {

class OutputFile
{
public:
    // Opens "NAME.part" beside `path`. Throws Error when it cannot.
    explicit OutputFile(std::filesystem::path path);
    // Removes the unfinished file unless commit() has succeeded.
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    // Puts bytes at the end of the file. Throws Error when they cannot be written (a full disk); a fault may
    // show with a later call only, as they are buffered.
    void write(const char *bytes, std::size_t count)
    {
        if (count > m_buffer.size() - m_used)
            flush();
        if (count > m_buffer.size() - m_used)
            return writeThrough(bytes, count);
        std::copy(bytes, bytes + count, m_buffer.data() + m_used);
        m_used += count;
    }
    // Room for `count` bytes at the end of the file, at most `mostRoom`, for the caller to fill before the
    // next call.
    static constexpr std::size_t mostRoom = 64 * 1024;
    char *room(std::size_t count)
    {
        if (count > m_buffer.size() - m_used)
            flush();
        m_used += count;
        return m_buffer.data() + m_used - count;
    }
    void write(std::string_view text) { write(text.data(), text.size()); }

    // Writes what is left, closes the file and renames it to its final name. Throws Error when the file could
    // not be written (a full disk) or renamed.
    void commit();

private:
    void writeThrough(const char *bytes, std::size_t count);
    void flush();

    std::filesystem::path m_path;
    std::filesystem::path m_partPath;
    std::filebuf m_file;
    std::vector<char> m_buffer;
    std::size_t m_used = 0;
    bool m_isCommitted = false;
};

} // namespace cam
