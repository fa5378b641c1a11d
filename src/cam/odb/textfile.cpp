// Finds and reads a job's files, and walks their lines.
#include "cam/odb/textfile.h"

#include "cam/base/error.h"
#include "cam/base/inputfile.h"
#include "cam/base/paths.h"
#include "cam/odb/packing.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <optional>

namespace cam {

namespace fs = std::filesystem;

namespace {

std::optional<fs::path> findTextFile(const fs::path &folder, std::string_view name)
{
    for (const char *ending : {"", ".gz", ".Z", ".zip"}) {
        const auto found = findEntry(folder, std::string(name) + ending);
        std::error_code ignored;
        if (found && fs::is_regular_file(*found, ignored))
            return found;
    }
    return std::nullopt;
}

fs::path textFilePath(const fs::path &folder, std::string_view name)
{
    const auto path = findTextFile(folder, name);
    if (!path)
        throw Error((folder / fs::u8path(name.begin(), name.end())).u8string() + ": no such file");
    return *path;
}

// Returns the file's size.
std::size_t openFile(const fs::path &path, std::filebuf &file)
{
    if (!file.open(path, std::ios::in | std::ios::binary))
        throw Error(path.u8string() + ": cannot be opened");
    const std::streamoff size = file.pubseekoff(0, std::ios::end);
    file.pubseekpos(0);
    return size > 0 ? static_cast<std::size_t>(size) : 0;
}

// `name` is for messages.
void readFile(std::filebuf &file, char *bytes, std::size_t count, const std::string &name)
{
    const auto wanted = static_cast<std::streamsize>(count);
    if (file.sgetn(bytes, wanted) != wanted)
        throw Error(name + ": cannot be read to its end");
}

} // namespace

bool LineReader::next(TextLine &line)
{
    std::size_t end = 0;
    for (std::size_t searched = 0; (end = m_left.find('\n', searched)) == std::string_view::npos;) {
        searched = m_left.size();
        if (!readPiece())
            break;
    }
    if (m_left.empty())
        return false;
    std::size_t length = std::min(end, m_left.size());
    const std::size_t walked = std::min(length + 1, m_left.size());
    const char *const begin = m_left.data();
    m_left.remove_prefix(walked);
    m_position += walked;
    if (length > 0 && begin[length - 1] == '\r')
        --length;
    line = {std::string_view(begin, length), ++m_number};
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF"; // of UTF-8, as some editors put it first
    if (m_number == 1 && line.text.substr(0, byteOrderMark.size()) == byteOrderMark)
        line.text.remove_prefix(byteOrderMark.size());
    return true;
}

// Puts another piece behind what is left of the one before. False at the end of the text.
bool LineReader::readPiece()
{
    constexpr std::size_t pieceSize = 128 * 1024;
    if (!m_nextPiece)
        return false;
    const std::size_t left = m_left.size();
    if (left > 0 && m_left.data() != m_piece.data())
        std::memmove(m_piece.data(), m_left.data(), left);
    if (m_piece.size() < std::max(pieceSize, 2 * left))
        m_piece.resize(std::max(pieceSize, 2 * left)); // at the start, and for a line longer than a piece
    const std::size_t more = m_nextPiece(m_piece.data() + left, m_piece.size() - left);
    m_left = std::string_view(m_piece.data(), left + more);
    return more > 0;
}

TextFile::TextFile(const fs::path &folder, std::string_view name)
{
    const fs::path path = textFilePath(folder, name);
    m_name = path.u8string();
    m_text = readWholeFile(path);
    if (isPacked(m_text))
        m_text = unpack(m_text, name, m_name);
}

LineFile::LineFile(const fs::path &folder, std::string_view name) : m_lines(open(folder, name)) {}

LineReader LineFile::open(const fs::path &folder, std::string_view name)
{
    const fs::path path = textFilePath(folder, name);
    m_name = path.u8string();
    const std::size_t size = m_unread = openFile(path, m_file);
    char first[packingMark] = {};
    const auto count = static_cast<std::size_t>(m_file.sgetn(first, packingMark));
    m_file.pubseekpos(0);
    if (!isPacked({first, count}))
        return LineReader([this](char *bytes, std::size_t most) { return read(bytes, most); }, size);
    m_unpacked = unpack(readWholeFile(path), name, m_name);
    return LineReader(m_unpacked);
}

std::size_t LineFile::read(char *bytes, std::size_t count)
{
    const std::size_t portion = std::min(count, m_unread);
    readFile(m_file, bytes, portion, m_name);
    m_unread -= portion;
    return portion;
}

bool TextFile::exists(const fs::path &folder, std::string_view name)
{
    return findTextFile(folder, name).has_value();
}

} // namespace cam
