// The text of a job's file, plain or compressed: as one block of memory that the parsers point into, or line
// by line.
#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace cam {

// A line with its number, counted from 1, without its line end.
struct TextLine
{
    std::string_view text;
    std::size_t number = 0;
};

// Walks the lines of a text; ends may be "\n" or "\r\n". A byte order mark in front is no part of it.
class LineReader
{
public:
    // Puts the next piece of a text into `bytes`, at most `count` of them; returns their number, 0 at the
    // end.
    using NextPiece = std::function<std::size_t(char *bytes, std::size_t count)>;

    explicit LineReader(std::string_view text) : m_left(text), m_size(text.size()) {}
    // A text of `size` bytes that comes in pieces, of which only one is in memory.
    LineReader(NextPiece nextPiece, std::size_t size) : m_size(size), m_nextPiece(std::move(nextPiece)) {}

    // `line` is valid until the next call.
    bool next(TextLine &line);
    // How much of the text has been walked over, 0 to 1.
    double share() const
    {
        return m_size == 0 ? 1.0 : static_cast<double>(m_position) / static_cast<double>(m_size);
    }

private:
    bool readPiece();

    std::string_view m_left; // of what is in memory
    std::size_t m_size;
    std::size_t m_position = 0;
    std::size_t m_number = 0;
    NextPiece m_nextPiece; // none when all of the text is in memory
    std::vector<char> m_piece;
};

// A file's whole text. `name` is looked up in `folder` without regard to case, as it is, then with the ending
// ".gz", ".Z" or ".zip"; what the file holds is told by its first bytes, not by its name.
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

// The lines of such a file. A plain one, however large, takes the memory of a piece of it only; a compressed
// one is unpacked into memory first.
class LineFile
{
public:
    // Throws as TextFile does; so may lines().next().
    LineFile(const std::filesystem::path &folder, std::string_view name);

    LineReader &lines() { return m_lines; }
    const std::string &name() const { return m_name; }

private:
    LineReader open(const std::filesystem::path &folder, std::string_view name);
    std::size_t read(char *bytes, std::size_t count);

    std::string m_name;
    std::filebuf m_file;
    std::size_t m_unread = 0;
    std::string m_unpacked;
    LineReader m_lines;
};

} // namespace cam
