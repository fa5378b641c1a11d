// Reading, and the two compressions that jobs are stored with.
#include "host/cam/odb/textfile.h"

#include "host/cam/error.h"
#include "host/cam/paths.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <optional>
#include <vector>

#include <zlib.h>

namespace cam {

namespace fs = std::filesystem;

namespace {

std::optional<fs::path> findTextFile(const fs::path &folder, std::string_view name)
{
    for (const char *ending : {"", ".gz", ".Z"}) {
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

std::string readWhole(const fs::path &path)
{
    std::filebuf file;
    std::string bytes(openFile(path, file), '\0');
    readFile(file, bytes.data(), bytes.size(), path.u8string());
    return bytes;
}

bool startsWith(std::string_view bytes, unsigned char first, unsigned char second)
{
    return bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == first &&
           static_cast<unsigned char>(bytes[1]) == second;
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
    m_text = readWhole(path);
    if (startsWith(m_text, 0x1F, 0x8B))
        m_text = unpackGzip(m_text, m_name);
    else if (startsWith(m_text, 0x1F, 0x9D))
        m_text = unpackCompress(m_text, m_name);
}

LineFile::LineFile(const fs::path &folder, std::string_view name) : m_lines(open(folder, name)) {}

LineReader LineFile::open(const fs::path &folder, std::string_view name)
{
    const fs::path path = textFilePath(folder, name);
    m_name = path.u8string();
    const std::size_t size = m_unread = openFile(path, m_file);
    char first[2] = {};
    const auto count = static_cast<std::size_t>(m_file.sgetn(first, 2));
    m_file.pubseekpos(0);
    const std::string_view start(first, count);
    if (startsWith(start, 0x1F, 0x8B))
        m_unpacked = unpackGzip(readWhole(path), m_name);
    else if (startsWith(start, 0x1F, 0x9D))
        m_unpacked = unpackCompress(readWhole(path), m_name);
    else
        return LineReader([this](char *bytes, std::size_t most) { return read(bytes, most); }, size);
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

std::string unpackGzip(std::string_view packed, const std::string &name)
{
    constexpr int anyGzip = 16 + MAX_WBITS;
    z_stream stream{};
    if (inflateInit2(&stream, anyGzip) != Z_OK)
        throw Error(name + ": the gzip reader cannot be started");
    struct Closer
    {
        z_stream &stream;
        ~Closer() { inflateEnd(&stream); }
    } closer{stream};

    std::string text;
    std::vector<char> chunk(256 * 1024);
    std::size_t used = 0;
    int state = Z_OK;
    while (state != Z_STREAM_END) {
        // zlib counts its input in 32 bits.
        const std::size_t portion = std::min<std::size_t>(packed.size() - used, 1u << 30);
        stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed.data() + used));
        stream.avail_in = static_cast<uInt>(portion);
        stream.next_out = reinterpret_cast<Bytef *>(chunk.data());
        stream.avail_out = static_cast<uInt>(chunk.size());
        state = inflate(&stream, Z_NO_FLUSH);
        used += portion - stream.avail_in;
        text.append(chunk.data(), chunk.size() - stream.avail_out);
        const bool isStuck = state == Z_BUF_ERROR ||
                             (state == Z_OK && used == packed.size() && stream.avail_out == chunk.size());
        if (isStuck || (state != Z_OK && state != Z_STREAM_END))
            throw Error(name + ": expected a whole gzip stream, it is damaged or cut off");
    }
    return text;
}

namespace {

// Codes of 9 to 16 bits, least significant bit first.
class CodeReader
{
public:
    explicit CodeReader(std::string_view bytes) : m_bytes(bytes) {}
    bool next(unsigned width, std::uint32_t &code)
    {
        if (m_bit + width > m_bytes.size() * 8)
            return false;
        code = 0;
        for (unsigned i = 0; i < width; ++i, ++m_bit) {
            const auto byte = static_cast<unsigned char>(m_bytes[m_bit / 8]);
            code |= static_cast<std::uint32_t>((byte >> (m_bit % 8)) & 1u) << i;
        }
        return true;
    }
    // compress writes codes in groups of eight; a change of width starts a new group.
    void skipGroup(unsigned width)
    {
        const std::size_t group = width * 8;
        m_bit = (m_bit + group - 1) / group * group;
    }
    void rebase()
    {
        m_bytes.remove_prefix(std::min(m_bytes.size(), m_bit / 8));
        m_bit = 0;
    }

private:
    std::string_view m_bytes;
    std::size_t m_bit = 0;
};

} // namespace

std::string unpackCompress(std::string_view packed, const std::string &name)
{
    const auto damaged = [&name] {
        return Error(name + ": expected a whole compress (.Z) stream, it is damaged");
    };
    if (packed.size() < 3)
        throw damaged();
    const auto flags = static_cast<unsigned char>(packed[2]);
    const unsigned maxWidth = flags & 0x1Fu;
    const bool hasClearCode = (flags & 0x80u) != 0;
    if (maxWidth < 9 || maxWidth > 16)
        throw damaged();
    constexpr std::uint32_t clearCode = 256;
    const std::uint32_t firstFree = hasClearCode ? 257 : 256;

    // A string is its last byte and the code of the string before it.
    std::vector<std::uint16_t> prefix(1u << maxWidth);
    std::vector<char> suffix(1u << maxWidth);
    CodeReader codes(packed.substr(3));
    unsigned width = 9;
    std::uint32_t free = firstFree;
    std::uint32_t code = 0;
    bool hasPrevious = false; // not at the start, nor behind a clear code
    std::uint32_t previous = 0;
    char first = 0;
    std::string text, reversed;
    while (codes.next(width, code)) {
        if (hasClearCode && code == clearCode) {
            codes.skipGroup(width);
            codes.rebase();
            width = 9;
            free = firstFree;
            hasPrevious = false;
            continue;
        }
        if (!hasPrevious) {
            if (code > 255)
                throw damaged();
            first = static_cast<char>(code);
            text.push_back(first);
            previous = code;
            hasPrevious = true;
            continue;
        }
        if (code > free || (code == free && free >= (1u << maxWidth)))
            throw damaged();
        reversed.clear();
        std::uint32_t at = code;
        if (code == free) { // the string that is just being made: the previous one and its own first byte
            reversed.push_back(first);
            at = previous;
        }
        while (at > 255) {
            if (at == clearCode && hasClearCode)
                throw damaged();
            reversed.push_back(suffix[at]);
            at = prefix[at];
        }
        first = static_cast<char>(at);
        reversed.push_back(first);
        text.append(reversed.rbegin(), reversed.rend());
        if (free < (1u << maxWidth)) {
            prefix[free] = static_cast<std::uint16_t>(previous);
            suffix[free] = first;
            ++free;
            if (free == (1u << width) && width < maxWidth) {
                codes.skipGroup(width);
                codes.rebase();
                ++width;
            }
        }
        previous = code;
    }
    return text;
}

} // namespace cam
