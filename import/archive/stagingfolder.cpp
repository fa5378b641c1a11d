#include "import/archive/stagingfolder.h"

#include "import/archive/archive.h"
#include "import/archive/localpath.h"

#include <chrono>
#include <system_error>

namespace archive {

namespace fs = std::filesystem;

namespace {

// A new folder in `parent`, with a name that nothing else has.
fs::path makeUniqueFolder(const fs::path &parent)
{
    // A short name: what is in the folder must not become too long for the system.
    const auto start = std::uint64_t(std::chrono::steady_clock::now().time_since_epoch().count());
    for (std::uint64_t attempt = 0; attempt < 10000; ++attempt) {
        const fs::path folder = parent / (".unpack-" + std::to_string((start + attempt) % 10000));
        if (fs::create_directory(folder))
            return folder;
    }
    throw BitException("cannot create a folder in \"" + parent.u8string() + "\"");
}

// Removes a tree whose folders may have been made unwritable meanwhile; gives up without a word.
void removeTree(const fs::path &folder) noexcept
{
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

} // namespace

StagingFolder::StagingFolder(const fs::path &output) : m_output(output)
{
    fs::create_directories(output);
    m_folder = makeUniqueFolder(output);
    m_content = m_folder / "new";
    m_replaced = m_folder / "old";
    try {
        fs::create_directory(m_content);
    } catch (...) {
        removeTree(m_folder);
        throw;
    }
}

StagingFolder::~StagingFolder()
{
    removeTree(m_folder);
}

void StagingFolder::commit()
{
    try {
        // The list is complete before the first move: moving changes the folder.
        std::vector<fs::path> names;
        for (const fs::directory_entry &entry : fs::directory_iterator(m_content))
            names.push_back(entry.path().filename());
        for (const fs::path &name : names)
            place(m_content / name, m_output / name);
    } catch (...) {
        undoMoves();
        throw;
    }
    m_moves.clear();
}

void StagingFolder::place(const fs::path &from, const fs::path &to)
{
    const fs::file_status there = statusOfItself(to);
    if (there.type() == fs::file_type::not_found) {
        move(from, to);
        return;
    }
    const bool comesFolder = fs::is_directory(statusOfItself(from));
    if (comesFolder && fs::is_directory(there)) {
        std::vector<fs::path> names;
        for (const fs::directory_entry &entry : fs::directory_iterator(from))
            names.push_back(entry.path().filename());
        for (const fs::path &name : names)
            place(from / name, to / name);
        return;
    }
    if (comesFolder || fs::is_directory(there))
        throw BitException("\"" + to.u8string() + "\" is in the way of a " +
                           (comesFolder ? "folder" : "file") + " of the archive");
    if (!fs::is_regular_file(there) && !fs::is_symlink(there))
        throw BitException("\"" + to.u8string() + "\" is no file that could be replaced");
    fs::create_directory(m_replaced);
    move(to, m_replaced / std::to_string(m_moves.size()));
    move(from, to);
}

void StagingFolder::move(const fs::path &from, const fs::path &to)
{
    m_moves.push_back({from, to});
    try {
        fs::rename(from, to);
    } catch (...) {
        m_moves.pop_back();
        throw;
    }
}

void StagingFolder::undoMoves() noexcept
{
    for (auto it = m_moves.rbegin(); it != m_moves.rend(); ++it) {
        std::error_code ignored; // what cannot be moved back is left where it is
        fs::rename(it->to, it->from, ignored);
    }
    m_moves.clear();
}

} // namespace archive
