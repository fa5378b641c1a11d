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
