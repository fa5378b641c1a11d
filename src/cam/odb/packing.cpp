// Tells the forms apart; zlib unpacks two of them, the third is short.
#include "cam/odb/packing.h"

#include "cam/base/error.h"
#include "cam/odb/inflate.h"
#include "cam/odb/zip.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace cam {

namespace {

constexpr std::string_view gzipMark = "\x1F\x8B", compressMark = "\x1F\x9D", zipMark = "PK\x03\x04";

bool startsWith(std::string_view bytes, std::string_view mark)
{
    return bytes.substr(0, mark.size()) == mark;
}

} // namespace

bool isPacked(std::string_view bytes)
{
    return startsWith(bytes, gzipMark) || startsWith(bytes, compressMark) || startsWith(bytes, zipMark);
}

std::string unpack(std::string_view packed, std::string_view member, const std::string &name)
{
    if (startsWith(packed, gzipMark))
        return unpackGzip(packed, name);
    if (startsWith(packed, compressMark))
        return unpackCompress(packed, name);
    return unpackZip(packed, member, name);
}

// A gzip file may be several streams, one behind the other, and be filled up with zeros.
std::string unpackGzip(std::string_view packed, const std::string &name)
{
    std::string text;
    do {
        InflatedStream stream = inflateStream(packed, DeflateForm::Gzip, name);
        if (stream.state != InflatedStream::Whole)
            throw Error(name + ": expected a whole gzip stream, it is damaged or cut off");
        packed.remove_prefix(stream.used);
        if (text.empty())
            text = std::move(stream.text);
        else
            text += stream.text;
    } while (startsWith(packed, gzipMark));
    if (packed.find_first_not_of('\0') != std::string_view::npos)
        throw Error(name + ": expected nothing behind the gzip stream");
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

constexpr std::uint32_t clearCode = 256;

// The strings that codes stand for: a byte below 256, above it a string met before and one byte more.
class CompressStream
{
public:
    // `name` is for messages.
    CompressStream(std::string_view packed, const std::string &name);
    std::string unpack();

private:
    void clear();
    void putFirst(std::uint32_t code);
    void put(std::uint32_t code);
    void remember();
    std::uint32_t room() const { return 1u << m_maxWidth; }
    [[noreturn]] void fail() const;

    const std::string &m_name;
    unsigned m_maxWidth = 0; // bits of a code
    bool m_hasClearCode = false;
    CodeReader m_codes;
    unsigned m_width = 9;
    // A string is its last byte and the code of the string before it.
    std::vector<std::uint16_t> m_prefix;
    std::vector<char> m_suffix;
    std::uint32_t m_free = 0;   // the next code to be given out
    bool m_hasPrevious = false; // not at the start, nor behind a clear code
    std::uint32_t m_previous = 0;
    char m_first = 0; // byte of the string that was put last
    std::string m_text, m_reversed;
};

CompressStream::CompressStream(std::string_view packed, const std::string &name)
    : m_name(name), m_codes(packed.substr(std::min<std::size_t>(packed.size(), 3)))
{
    if (packed.size() < 3)
        fail();
    const auto flags = static_cast<unsigned char>(packed[2]);
    m_maxWidth = flags & 0x1Fu;
    m_hasClearCode = (flags & 0x80u) != 0;
    if (m_maxWidth < 9 || m_maxWidth > 16)
        fail();
    m_prefix.resize(room());
    m_suffix.resize(room());
    m_free = m_hasClearCode ? clearCode + 1 : clearCode;
}

std::string CompressStream::unpack()
{
    std::uint32_t code = 0;
    while (m_codes.next(m_width, code)) {
        if (m_hasClearCode && code == clearCode)
            clear();
        else if (!m_hasPrevious)
            putFirst(code);
        else
            put(code);
    }
    return std::move(m_text);
}

void CompressStream::clear()
{
    m_codes.skipGroup(m_width);
    m_codes.rebase();
    m_width = 9;
    m_free = clearCode + 1;
    m_hasPrevious = false;
}

void CompressStream::putFirst(std::uint32_t code)
{
    if (code > 255)
        fail();
    m_first = static_cast<char>(code);
    m_text.push_back(m_first);
    m_previous = code;
    m_hasPrevious = true;
}

void CompressStream::put(std::uint32_t code)
{
    if (code > m_free || (code == m_free && m_free >= room()))
        fail();
    m_reversed.clear();
    std::uint32_t at = code;
    if (code == m_free) { // the string that is just being made: the previous one and its own first byte
        m_reversed.push_back(m_first);
        at = m_previous;
    }
    while (at > 255) {
        if (at == clearCode && m_hasClearCode)
            fail();
        m_reversed.push_back(m_suffix[at]);
        at = m_prefix[at];
    }
    m_first = static_cast<char>(at);
    m_reversed.push_back(m_first);
    m_text.append(m_reversed.rbegin(), m_reversed.rend());
    if (m_free < room())
        remember();
    m_previous = code;
}

// The previous string and the first byte of this one get a code of their own.
void CompressStream::remember()
{
    m_prefix[m_free] = static_cast<std::uint16_t>(m_previous);
    m_suffix[m_free] = m_first;
    ++m_free;
    if (m_free == (1u << m_width) && m_width < m_maxWidth) {
        m_codes.skipGroup(m_width);
        m_codes.rebase();
        ++m_width;
    }
}

void CompressStream::fail() const
{
    throw Error(m_name + ": expected a whole compress (.Z) stream, it is damaged");
}

} // namespace

std::string unpackCompress(std::string_view packed, const std::string &name)
{
    return CompressStream(packed, name).unpack();
}

} // namespace cam
