#include "archive/filesystem.h"

#include "archive/localpath.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace archive {

namespace fs = std::filesystem;

namespace {

// Makes something at `path` that the system lets a folder, or anything else, take the place of. False when
// there is something already: only making tells without a gap in time.
bool claim(const fs::path &path, bool forFolder)
{
    int result = 0;
    if (forFolder) {
        result = ::mkdir(path.c_str(), 0777);
    } else {
        result = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (result >= 0)
            ::close(result);
    }
    if (result < 0 && errno != EEXIST)
        throw fs::filesystem_error("cannot create", path, std::error_code(errno, std::generic_category()));
    return result >= 0;
}

} // namespace

void makeFolders(const fs::path &path)
{
    fs::create_directories(path);
}

std::vector<fs::path> namesIn(const fs::path &folder)
{
    std::vector<fs::path> names;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename());
    return names;
}

bool moveToFree(const fs::path &from, const fs::path &to)
{
#ifdef RENAME_NOREPLACE
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno == EEXIST)
        return false;
    if (errno != EINVAL && errno != ENOSYS) // not every file system knows this way
        throw fs::filesystem_error("cannot move", from, to, std::error_code(errno, std::generic_category()));
#endif
    const bool isFolder = fs::is_directory(statusOfItself(from));
    if (!claim(to, isFolder))
        return false;
    if (std::rename(from.c_str(), to.c_str()) == 0)
        return true;
    const std::error_code reason(errno, std::generic_category());
    isFolder ? ::rmdir(to.c_str()) : ::unlink(to.c_str());
    throw fs::filesystem_error("cannot move", from, to, reason);
}

bool moveBack(const fs::path &from, const fs::path &to) noexcept
{
    struct stat there;
    return ::lstat(to.c_str(), &there) != 0 && errno == ENOENT && std::rename(from.c_str(), to.c_str()) == 0;
}

bool isSame(const fs::path &first, const fs::path &second) noexcept
{
    std::error_code notThere;
    return fs::equivalent(first, second, notThere);
}

void makeHardLink(const fs::path &target, const fs::path &path)
{
    fs::create_hard_link(target, path);
}

void makeSymbolicLink(const fs::path &target, const fs::path &path, bool)
{
    fs::create_symlink(target, path);
}

void removeTree(const fs::path &folder) noexcept
{
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

} // namespace archive
