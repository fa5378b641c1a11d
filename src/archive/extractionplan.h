// The decision, before anything is written, on what an archive's entries become in the output folder.
#pragma once

#include "archive/entry.h"
#include "archive/entryname.h"

#include <vector>

namespace archive {

// Paths in a plan are relative to the output folder, checked, with "/" between their parts.
struct ExtractionPlan
{
    struct File
    {
        std::uint32_t index; // of the entry
        std::wstring path;
        std::uint64_t size;
        std::optional<std::uint64_t> modified; // as in Entry
    };
    struct Folder
    {
        std::wstring path;
        std::optional<std::uint64_t> modified;
    };
    struct Link
    {
        std::wstring path;
        std::wstring
            target; // hard: the path of the file it is; symbolic: the text of the link, "/" between its parts
        bool toFolder = false; // symbolic: whether the target is a folder of the archive
    };

    std::vector<Folder> folders; // every folder once, each after the one it is in
    std::vector<File> files;     // in archive order
    std::vector<Link> hardLinks;
    std::vector<Link> symbolicLinks;
    std::uint64_t totalSize = 0; // bytes of all files
};

// Plans the entries of a tar archive. Of two files of the same path the later one wins, as archivers append
// changes. Throws BitException, naming the entry, when one could end up outside the output folder or cannot
// be unpacked as it was meant: names as checkedPathParts() says; a name at the top that no program could show
// (by the Posix rules, where it is no UTF-8); a link that leads out of the top folder it
// is in, that passes through another link, or whose hard target is no earlier file of the archive; an entry
// below a link; one path used as two kinds of thing, or (by the Windows rules) in two spellings; devices and
// what else has no place in a job.
ExtractionPlan planExtraction(const std::vector<Entry> &entries, NameRules rules);

} // namespace archive
