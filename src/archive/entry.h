// What an archive says about one of its entries, before anything of it is believed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace archive {

struct Entry
{
    enum class Kind { File, Folder, SymbolicLink, HardLink, Unsupported };

    std::uint32_t index = 0; // in archive order
    Kind kind = Kind::File;
    std::wstring path;       // as stored: "/" (on Windows also "\") between its parts, nothing else changed
    std::wstring linkTarget; // as stored, links only
    std::uint64_t size = 0;  // bytes, files only
    // Time of the last change in 100 ns since 1601-01-01 UTC, as Windows counts.
    std::optional<std::uint64_t> modified;
    std::string flaw; // why the entry cannot be unpacked faithfully; empty when it can
};

} // namespace archive
