// Reads the archive from its end, as the format asks for, and believes nothing that is not said twice: end
// record, directory entry and member header have to fit together without a byte between them.
#include "cam/odb/zip.h"

#include "cam/base/error.h"
#include "cam/base/paths.h"
#include "cam/odb/inflate.h"

#include <cstdint>

#include <zlib.h>

namespace cam {

namespace {

constexpr std::uint32_t memberMark = 0x04034B50, descriptorMark = 0x08074B50, entryMark = 0x02014B50,
                        endMark = 0x06054B50, zip64LocatorMark = 0x07064B50;
constexpr std::size_t memberSize = 30, entrySize = 46, endSize = 22, zip64LocatorSize = 20;
constexpr std::uint32_t inZip64 = 0xFFFFFFFF; // stands for a number that a 64-bit field holds

// What is said of the member in the directory and, again, in front of it.
struct Member
{
    unsigned flags = 0;
    unsigned method = 0;
    std::uint32_t check = 0; // CRC-32 of the text
    std::uint32_t packedSize = 0;
    std::uint32_t size = 0;
    std::string_view name;
    std::size_t end = 0; // of the record in the archive
};

class ZipReader
{
public:
    ZipReader(std::string_view bytes, const std::string &name) : m_bytes(bytes), m_name(name) {}

    std::string read(std::string_view member) const;

private:
    Member readEntry(std::size_t &directory) const;
    Member readMember() const;
    std::size_t findEnd() const;
    void checkNames(const Member &entry, const Member &local, std::string_view member) const;
    void checkKind(const Member &entry) const;
    void checkExtent(const Member &entry, const Member &local, std::size_t directory) const;
    std::string unpackText(const Member &entry, std::size_t start) const;

    // Numbers of the format: little-endian, of 2 and 4 bytes.
    std::uint32_t number(std::size_t at, std::size_t size) const;
    unsigned half(std::size_t at) const { return number(at, 2); }
    std::uint32_t word(std::size_t at) const { return number(at, 4); }
    std::string_view part(std::size_t at, std::size_t size) const;
    [[noreturn]] void fail(const std::string &expected) const
    {
        throw Error(m_name + ": expected a zip archive " + expected);
    }

    std::string_view m_bytes;
    const std::string &m_name;
};

std::string ZipReader::read(std::string_view member) const
{
    std::size_t directory = 0;
    const Member entry = readEntry(directory);
    const Member local = readMember();
    checkNames(entry, local, member);
    checkKind(entry);
    checkExtent(entry, local, directory);
    return unpackText(entry, local.end);
}

std::string_view ZipReader::part(std::size_t at, std::size_t size) const
{
    if (at > m_bytes.size() || size > m_bytes.size() - at)
        fail("with all of its records, it is cut off");
    return m_bytes.substr(at, size);
}

std::uint32_t ZipReader::number(std::size_t at, std::size_t size) const
{
    std::uint32_t value = 0;
    unsigned shift = 0;
    for (const char c : part(at, size)) {
        value |= static_cast<std::uint32_t>(static_cast<unsigned char>(c)) << shift;
        shift += 8;
    }
    return value;
}

// The record at the end of the archive; only a comment, whose length it states, may follow it.
std::size_t ZipReader::findEnd() const
{
    constexpr std::size_t longestComment = 0xFFFF;
    for (std::size_t comment = 0; comment <= longestComment && endSize + comment <= m_bytes.size();
         ++comment) {
        const std::size_t at = m_bytes.size() - endSize - comment;
        if (word(at) == endMark && half(at + 20) == comment)
            return at;
    }
    fail("with its end record, it is cut off or followed by other bytes");
}

Member ZipReader::readEntry(std::size_t &directory) const
{
    const std::size_t end = findEnd();
    const std::uint32_t directorySize = word(end + 12);
    directory = word(end + 16);
    const bool hasLocator = end >= zip64LocatorSize && word(end - zip64LocatorSize) == zip64LocatorMark;
    if (hasLocator || directorySize == inZip64 || directory == inZip64)
        fail("of the older form, found zip64");
    if (half(end + 4) != 0 || half(end + 6) != 0)
        fail("in one part");
    if (half(end + 8) != 1 || half(end + 10) != 1)
        fail("of one file, found " + std::to_string(half(end + 10)));
    if (directory + std::size_t{directorySize} != end || directorySize < entrySize ||
        word(directory) != entryMark)
        fail("with its directory in front of its end record");

    Member entry;
    entry.flags = half(directory + 8);
    entry.method = half(directory + 10);
    entry.check = word(directory + 16);
    entry.packedSize = word(directory + 20);
    entry.size = word(directory + 24);
    const unsigned nameSize = half(directory + 28);
    const std::size_t others = half(directory + 30) + half(directory + 32); // extra field, comment
    entry.name = part(directory + entrySize, nameSize);
    entry.end = directory + entrySize + nameSize + others;
    if (entry.end != end)
        fail("whose directory has the length that it states");
    if (half(directory + 34) != 0 || word(directory + 42) != 0)
        fail("that begins with its file");
    return entry;
}

Member ZipReader::readMember() const
{
    if (word(0) != memberMark)
        fail("that begins with its file");
    Member local;
    local.flags = half(6);
    local.method = half(8);
    local.check = word(14);
    local.packedSize = word(18);
    local.size = word(22);
    const unsigned nameSize = half(26);
    local.name = part(memberSize, nameSize);
    local.end = memberSize + nameSize + half(28);
    return local;
}

// Control characters would break the lines of a log.
std::string printable(std::string_view text)
{
    std::string result(text);
    for (char &c : result) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = '?';
    }
    return result;
}

void ZipReader::checkNames(const Member &entry, const Member &local, std::string_view member) const
{
    if (entry.name != local.name)
        fail("whose file has one name, found \"" + printable(entry.name) + "\" and \"" +
             printable(local.name) + "\"");
    if (lowerCase(entry.name) != lowerCase(member))
        fail("of the file \"" + std::string(member) + "\", found \"" + printable(entry.name) + "\"");
}

constexpr unsigned stored = 0, deflated = 8;
constexpr unsigned encrypted = 0x0041, sizesFollow = 0x0008;
constexpr unsigned harmless = 0x0806; // how hard was packed, and that the name is UTF-8

void ZipReader::checkKind(const Member &entry) const
{
    if (entry.flags & encrypted)
        fail("whose file is not encrypted");
    if (entry.flags & ~(sizesFollow | harmless))
        fail("without the flags " + std::to_string(entry.flags));
    if (entry.method != stored && entry.method != deflated)
        fail("whose file is stored or deflated, found the method " + std::to_string(entry.method));
}

void ZipReader::checkExtent(const Member &entry, const Member &local, std::size_t directory) const
{
    for (const std::uint32_t size : {entry.size, entry.packedSize, local.size, local.packedSize}) {
        if (size == inZip64)
            fail("of the older form, found zip64");
    }
    const bool isSame =
        local.check == entry.check && local.packedSize == entry.packedSize && local.size == entry.size;
    const bool isLeftOut = local.check == 0 && local.packedSize == 0 && local.size == 0;
    if (local.flags != entry.flags || local.method != entry.method ||
        !(isSame || ((entry.flags & sizesFollow) && isLeftOut)))
        fail("whose directory says the same as its file's header");

    std::size_t end = local.end + std::size_t{entry.packedSize};
    if (entry.flags & sizesFollow) {
        if (word(end) == descriptorMark && directory - end == 16)
            end += 4;
        if (word(end) != entry.check || word(end + 4) != entry.packedSize || word(end + 8) != entry.size)
            fail("whose directory says the same as what stands behind its file");
        end += 12;
    }
    if (end != directory)
        fail("with its directory behind its file");
}

std::string ZipReader::unpackText(const Member &entry, std::size_t start) const
{
    const std::string_view packed = part(start, entry.packedSize);
    std::string text;
    if (entry.method == stored) {
        text = packed;
    } else {
        InflatedStream stream = inflateStream(packed, DeflateForm::Raw, m_name, entry.size);
        if (stream.state == InflatedStream::TooLong)
            fail("whose file has the " + std::to_string(entry.size) + " bytes that it states, it has more");
        if (stream.state != InflatedStream::Whole || stream.used != packed.size())
            fail("with a whole deflate stream, it is damaged");
        text = std::move(stream.text);
    }
    if (text.size() != entry.size)
        fail("whose file has the " + std::to_string(entry.size) + " bytes that it states, found " +
             std::to_string(text.size()));
    const uLong check = crc32_z(0, reinterpret_cast<const Bytef *>(text.data()), text.size());
    if (check != entry.check)
        fail("whose file has the check that it states, it is damaged");
    return text;
}

} // namespace

std::string unpackZip(std::string_view packed, std::string_view member, const std::string &name)
{
    return ZipReader(packed, name).read(member);
}

} // namespace cam
