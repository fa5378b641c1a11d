// Copies parts of one file to new files, on more than one thread: making a file is work for the system's side
// of a core, and two cores do it in little more than half the time.
#pragma once

#include "archive/infile.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace archive {

struct FilePart
{
    std::filesystem::path path; // of the new file; its folder exists
    std::uint64_t offset;       // in the source, in bytes
    std::uint64_t size;
    std::optional<std::uint64_t> modified; // as in OutFile::close()
};

// Returns when all parts are copied; throws the first error, after which no further part is begun. `check` is
// called often, on any of the threads, and may throw to end it.
void copyParts(const InFile &source, const std::vector<FilePart> &parts, const std::function<void()> &check);

} // namespace archive
