// Unpacks an open archive into a folder, completely or not at all: every name is checked before the first
// write, the content is built in a folder of its own, and only a complete content is moved to its place.
#pragma once

#include "archive/entry.h"

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace archive {

class InArchive;

// Called often while content is written, on any thread; throws to end the unpacking.
using Check = std::function<void()>;

// What has become of a tar's items at the top.
struct Unpacked
{
    std::map<std::wstring, std::wstring> names; // by the names in the archive, those in the output folder
    bool isMerged = false;                      // one of them into the folder that may be merged into
};

// Unpacks all `entries` of a tar, the file `archiveFile` (a local path), into `output`. Of what is there,
// only the folder `mergeFolder` (a name; empty for none) is touched. Throws BitException, or what the file
// system or `check` throws, and leaves `output` as it was then.
Unpacked unpackTar(const InArchive &archive, const std::vector<Entry> &entries,
                   const std::wstring &archiveFile, const std::filesystem::path &output,
                   const std::filesystem::path &mergeFolder, const Check &check);

// Unpacks the one member of a gzip file in the same way. It replaces a file of its name that ends in ".tar",
// and nothing else.
void unpackGZip(const InArchive &archive, const std::vector<Entry> &entries, const std::wstring &archiveFile,
                const std::filesystem::path &output, const Check &check);

} // namespace archive
