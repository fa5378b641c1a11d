// The text of a job's file, plain or compressed, as one block of memory that the parsers point into.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace cam {

// A line with its number, counted from 1, without its line end.
struct TextLine
{
    std::string_view text;
    std::size_t number = 0;
};

// Walks the lines of a text; ends may be "\n" or "\r\n".
class LineReader
{
public:
    explicit LineReader(std::string_view text) : m_text(text) {}
    bool next(TextLine &line);
    // Bytes that have been walked over.
    std::size_t position() const { return m_position; }

private:
    std::string_view m_text;
    std::size_t m_position = 0;
    std::size_t m_number = 0;
};

// A file's whole text. `name` is looked up in `folder` without regard to case, as it is, then with the ending
// ".gz", then ".Z"; what the file holds is told by its first bytes, not by its name.
class TextFile
{
public:
    // Throws Error when there is no such file, or it cannot be read or unpacked.
    TextFile(const std::filesystem::path &folder, std::string_view name);
    static bool exists(const std::filesystem::path &folder, std::string_view name);

    std::string_view text() const { return m_text; }
    // The name that messages give it: the path as found.
    const std::string &name() const { return m_name; }

private:
    std::string m_text;
    std::string m_name;
};

// The text inside a gzip stream or a compress (LZW) stream. `name` is for messages. Throws Error for a
// damaged one.
std::string unpackGzip(std::string_view packed, const std::string &name);
std::string unpackCompress(std::string_view packed, const std::string &name);

} // namespace cam
