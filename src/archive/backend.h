// What a back end of the archive layer offers: opening an archive, asking for properties by 7-Zip's numbers,
// and decoding entries into a sink. Back ends check nothing and write no files.
#pragma once

#include "archive/format.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace archive {

// 7-Zip's property numbers, as far as they are used.
enum class Property : std::uint32_t {
    Path = 3,
    IsFolder = 6,
    Size = 7,
    Modified = 12,
    Comment = 28,         // what is not known of a tar entry's extended header; of a tar: its global header
    PhysicalSize = 44,    // of the archive
    Characteristics = 47, // of a tar entry: type flag and remarks
    PosixMode = 53,
    SymbolicLink = 54,
    ErrorFlags = 71, // of the archive
    HardLink = 90,
};

// Bits of Property::ErrorFlags.
enum ErrorFlag : std::uint32_t {
    IsNotArchive = 1u << 0,
    HeadersError = 1u << 1,
    UnexpectedEnd = 1u << 5,
};

struct FileTime
{
    std::uint64_t ticks; // 100 ns since 1601-01-01 UTC
    bool operator==(const FileTime &other) const { return ticks == other.ticks; }
};

using PropertyValue = std::variant<std::monostate, bool, std::uint64_t, FileTime, std::wstring>;

// Takes the content of entries, one after the other. What its operations throw ends the decoding and comes
// out of InArchive::extract.
class EntrySink
{
public:
    virtual ~EntrySink() = default;
    virtual void begin(std::uint32_t index) = 0;
    virtual void write(const void *data, std::size_t size) = 0;
    // The entry is complete and, where the format has one, its checksum is right.
    virtual void end() = 0;
};

// An open archive.
class InArchive
{
public:
    virtual ~InArchive() = default;
    virtual std::uint32_t entryCount() const = 0;
    virtual PropertyValue entryProperty(std::uint32_t index, Property property) const = 0;
    virtual PropertyValue archiveProperty(Property property) const = 0;
    // Decodes the entries `indices` (ascending, none of them a folder) into `sink`; throws BitException when
    // the archive is damaged.
    virtual void extract(const std::vector<std::uint32_t> &indices, EntrySink &sink) const = 0;
    // Where in the archive file the `size` bytes of an entry's content stand one after the other, as they
    // are; nothing when they do not, or the back end cannot tell. `size` is not 0.
    virtual std::optional<std::uint64_t> contentOffset(std::uint32_t index, std::uint64_t size) const = 0;
};

class Backend
{
public:
    virtual ~Backend() = default;
    // Opens `file`, a local path; throws BitException when it cannot be read or is no such archive.
    virtual std::unique_ptr<InArchive> open(const std::wstring &file, const BitInFormat &format) const = 0;
};

// The back end that this build is made with, over the 7-Zip library `name`.
std::shared_ptr<const Backend> loadBackend(const std::wstring &name);

} // namespace archive
