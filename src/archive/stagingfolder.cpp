#include "archive/stagingfolder.h"

#include "archive/bitexception.h"
#include "archive/filesystem.h"
#include "archive/localpath.h"
#include "archive/outfile.h"

#include <algorithm>
#include <chrono>

namespace archive {

namespace fs = std::filesystem;

namespace {

const unsigned mostAttempts = 10000; // at finding a free name

// A new folder in `parent`, with a name that nothing else has.
fs::path makeUniqueFolder(const fs::path &parent)
{
    // A short name: what is in the folder must not become too long for the system.
    const auto start = std::uint64_t(std::chrono::steady_clock::now().time_since_epoch().count());
    for (unsigned attempt = 0; attempt < mostAttempts; ++attempt) {
        const fs::path folder = parent / (".unpack-" + std::to_string((start + attempt) % mostAttempts));
        if (statusOfItself(folder).type() != fs::file_type::not_found)
            continue;
        makeFolder(folder);
        return folder;
    }
    throw BitException("cannot create a folder in \"" + parent.u8string() + "\"");
}

bool isFolder(const fs::path &path)
{
    return fs::is_directory(statusOfItself(path));
}

} // namespace

StagingFolder::StagingFolder(const fs::path &output) : m_output(output)
{
    makeFolders(output);
    m_folder = makeUniqueFolder(output);
    m_content = m_folder / "new";
    m_replaced = m_folder / "old";
    try {
        makeFolder(m_content);
    } catch (...) {
        removeTree(m_folder);
        throw;
    }
}

StagingFolder::~StagingFolder()
{
    if (!m_isKept)
        removeTree(m_folder);
}

std::vector<StagingFolder::Placed> StagingFolder::commit(const fs::path &replaceable)
{
    std::vector<Placed> placed;
    try {
        const std::vector<fs::path> names = namesIn(m_content);
        for (const fs::path &name : names) {
            if (isReplaceable(m_output, name, replaceable)) {
                place(name);
                placed.push_back({name, name, true});
            } else {
                placed.push_back({name, placeBeside(name, names), false});
            }
        }
    } catch (const std::exception &error) {
        if (undoMoves())
            throw;
        m_isKept = true;
        throw BitException(std::string(error.what()) +
                           "; not everything could be moved back, the rest is in \"" + m_folder.u8string() +
                           "\"");
    }
    m_moves.clear();
    return placed;
}

// A folder that is a link is not the same as the one that it leads to: nothing is written through it.
bool StagingFolder::isReplaceable(const fs::path &output, const fs::path &name, const fs::path &replaceable)
{
    if (replaceable.empty() || name == replaceable)
        return !replaceable.empty();
    const fs::path there = output / name;
    return isFolder(there) && isFolder(output / replaceable) && isSame(there, output / replaceable);
}

// Returns the name. None of `taken`, the other names of the content, is given away.
fs::path StagingFolder::placeBeside(const fs::path &name, const std::vector<fs::path> &taken)
{
    if (move(m_content / name, m_output / name))
        return name;
    for (unsigned number = 1; number <= mostAttempts; ++number) {
        fs::path free = name;
        free += "~" + std::to_string(number);
        if (std::find(taken.begin(), taken.end(), free) == taken.end() &&
            move(m_content / name, m_output / free))
            return free;
    }
    throw BitException("\"" + (m_output / name).u8string() + "\" is there already, and so are names like it");
}

// Moves what is at `relative` in the content to the same path in the output folder.
void StagingFolder::place(const fs::path &relative)
{
    const fs::path from = m_content / relative;
    const fs::path to = m_output / relative;
    const fs::file_status there = statusOfItself(to);
    const bool comesFolder = isFolder(from);
    if (comesFolder && fs::is_directory(there)) {
        // The list is complete before the first move: moving changes the folder.
        for (const fs::path &name : namesIn(from))
            place(relative / name);
        return;
    }
    if (there.type() != fs::file_type::not_found) {
        if (comesFolder || fs::is_directory(there))
            throw BitException("\"" + to.u8string() + "\" is in the way of a " +
                               (comesFolder ? "folder" : "file") + " of the archive");
        if (!fs::is_regular_file(there) && !fs::is_symlink(there))
            throw BitException("\"" + to.u8string() + "\" is no file that could be replaced");
        keepReplaced(relative);
    }
    if (!move(from, to))
        throw BitException("\"" + to.u8string() + "\" was made by somebody else at this moment");
}

void StagingFolder::keepReplaced(const fs::path &relative)
{
    const fs::path kept = m_replaced / relative;
    makeFolders(kept.parent_path());
    if (!move(m_output / relative, kept))
        throw BitException("\"" + kept.u8string() + "\" is there already");
}

bool StagingFolder::move(const fs::path &from, const fs::path &to)
{
    m_moves.push_back({from, to});
    try {
        if (moveToFree(from, to))
            return true;
    } catch (...) {
        m_moves.pop_back();
        throw;
    }
    m_moves.pop_back();
    return false;
}

// Returns whether everything is back in its place.
bool StagingFolder::undoMoves() noexcept
{
    bool isUndone = true;
    for (auto it = m_moves.rbegin(); it != m_moves.rend(); ++it)
        isUndone = moveBack(it->to, it->from) && isUndone;
    m_moves.clear();
    return isUndone;
}

} // namespace archive
