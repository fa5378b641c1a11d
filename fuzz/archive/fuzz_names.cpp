// Plans for made-up lists of entries: whatever passes the checks must stay in the output folder when it is
// written, which is judged here by walking the plan as a file system would, independently of the checks.

#include "fuzz/archive/fuzzinput.h"

#include "archive/archive.h"
#include "archive/entryname.h"
#include "archive/extractionplan.h"
#include "archive/localpath.h"

#include <cstdlib>
#include <map>

using namespace archive;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

// Follows `path` from the folder `at` through the plan's links as a file system does. False when it leaves
// the top folder `top`, which may not happen; true when it stays inside or ends nowhere.
bool staysInside(const std::map<std::wstring, std::wstring> &links, std::wstring at, const std::wstring &path,
                 const std::wstring &top, int depth)
{
    if (depth > 40)
        return true; // a loop: the system gives up as well
    std::wstring part;
    for (std::size_t i = 0; i <= path.size(); ++i) {
        if (i < path.size() && path[i] != L'/') {
            part += path[i];
            continue;
        }
        if (part == L"..") {
            const std::size_t slash = at.rfind(L'/');
            if (slash == std::wstring::npos)
                return false;
            at.erase(slash);
        } else if (!part.empty() && part != L".") {
            const std::wstring next = at + L"/" + part;
            const auto link = links.find(next);
            if (link != links.end()) {
                // Where the rest goes on from depends on where the link leads: its own target must stay
                // inside, and nothing may follow behind it.
                if (!staysInside(links, at, link->second, top, depth + 1) || i < path.size())
                    return false;
            }
            at = next;
        }
        part.clear();
    }
    return at == top || at.compare(0, top.size() + 1, top + L"/") == 0;
}

void checkPath(const std::wstring &path)
{
    require(!path.empty() && path.front() != L'/' && path.find(L'\\') == std::wstring::npos);
    const std::filesystem::path local = localRelativePath(path);
    require(local.is_relative());
    for (const std::filesystem::path &part : local)
        require(part != ".." && part != "." && !part.empty());
}

void checkPlan(const ExtractionPlan &plan)
{
    for (const ExtractionPlan::Folder &folder : plan.folders)
        checkPath(folder.path);
    for (const ExtractionPlan::File &file : plan.files)
        checkPath(file.path);
    for (const ExtractionPlan::Link &link : plan.hardLinks) {
        checkPath(link.path);
        checkPath(link.target);
    }
    std::map<std::wstring, std::wstring> links;
    for (const ExtractionPlan::Link &link : plan.symbolicLinks) {
        checkPath(link.path);
        links[link.path] = link.target;
    }
    for (const auto &[path, target] : links) {
        const std::wstring top = path.substr(0, path.find(L'/'));
        const std::wstring folder = path.substr(0, path.rfind(L'/'));
        require(staysInside(links, folder, target, top, 0));
        // Nothing is written behind a link.
        for (const ExtractionPlan::File &file : plan.files)
            require(file.path.compare(0, path.size() + 1, path + L"/") != 0);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    const NameRules rules = input.byte() & 1 ? NameRules::Windows : NameRules::Posix;
    std::vector<Entry> entries;
    while (!input.isEmpty() && entries.size() < 50) {
        Entry entry;
        entry.index = std::uint32_t(entries.size());
        entry.kind = Entry::Kind(input.byte() % 5);
        entry.path = input.text();
        if (entry.kind == Entry::Kind::SymbolicLink || entry.kind == Entry::Kind::HardLink)
            entry.linkTarget = input.text();
        entry.size = input.byte();
        entries.push_back(entry);
    }
    try {
        checkPlan(planExtraction(entries, rules));
    } catch (const BitException &) {
    }
    if (!entries.empty()) {
        try {
            checkMemberName(entries[0].path, rules);
            checkPath(entries[0].path);
            require(entries[0].path.find_first_of(L"/\\&|<>^%\"*?") == std::wstring::npos);
        } catch (const BitException &) {
        }
    }
    return 0;
}
