#include "archive/filesystem.h"

#include "archive/localpath.h"

#include <system_error>

#include <windows.h>

namespace archive {

namespace fs = std::filesystem;

namespace {

std::error_code lastError()
{
    return std::error_code(int(GetLastError()), std::system_category());
}

class Handle
{
public:
    explicit Handle(const fs::path &path)
        : m_handle(CreateFileW(longForm(path).c_str(), 0,
                               FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                               FILE_FLAG_BACKUP_SEMANTICS, nullptr))
    {
    }
    ~Handle()
    {
        if (m_handle != INVALID_HANDLE_VALUE)
            CloseHandle(m_handle);
    }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    bool identify(BY_HANDLE_FILE_INFORMATION &identity) const
    {
        return m_handle != INVALID_HANDLE_VALUE && GetFileInformationByHandle(m_handle, &identity);
    }

private:
    HANDLE m_handle;
};

bool isFolder(const fs::path &path)
{
    const DWORD attributes = GetFileAttributesW(longForm(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

} // namespace

void makeFolders(const fs::path &path)
{
    if (isFolder(path))
        return;
    if (path.has_relative_path())
        makeFolders(path.parent_path());
    if (!CreateDirectoryW(longForm(path).c_str(), nullptr)) {
        const std::error_code reason = lastError();
        if (!isFolder(path))
            throw fs::filesystem_error("cannot create", path, reason);
    }
}

std::vector<fs::path> namesIn(const fs::path &folder)
{
    std::vector<fs::path> names;
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(longForm(folder / L"*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        throw fs::filesystem_error("cannot list", folder, lastError());
    do {
        const std::wstring name = found.cFileName;
        if (name != L"." && name != L"..")
            names.emplace_back(name);
    } while (FindNextFileW(search, &found));
    const std::error_code reason = lastError();
    FindClose(search);
    if (reason.value() != ERROR_NO_MORE_FILES)
        throw fs::filesystem_error("cannot list", folder, reason);
    return names;
}

bool moveToFree(const fs::path &from, const fs::path &to)
{
    if (MoveFileExW(longForm(from).c_str(), longForm(to).c_str(), 0))
        return true;
    const std::error_code reason = lastError();
    if (statusOfItself(to).type() != fs::file_type::not_found)
        return false;
    throw fs::filesystem_error("cannot move", from, to, reason);
}

bool moveBack(const fs::path &from, const fs::path &to) noexcept
{
    return MoveFileExW(longForm(from).c_str(), longForm(to).c_str(), 0) != 0;
}

bool isSame(const fs::path &first, const fs::path &second) noexcept
{
    const Handle firstHandle(first);
    const Handle secondHandle(second);
    BY_HANDLE_FILE_INFORMATION one, other;
    return firstHandle.identify(one) && secondHandle.identify(other) &&
           one.dwVolumeSerialNumber == other.dwVolumeSerialNumber &&
           one.nFileIndexHigh == other.nFileIndexHigh && one.nFileIndexLow == other.nFileIndexLow;
}

void makeHardLink(const fs::path &target, const fs::path &path)
{
    if (!CreateHardLinkW(longForm(path).c_str(), longForm(target).c_str(), nullptr))
        throw fs::filesystem_error("cannot make a hard link", target, path, lastError());
}

void makeSymbolicLink(const fs::path &target, const fs::path &path, bool toFolder)
{
    if (toFolder)
        fs::create_directory_symlink(target, path);
    else
        fs::create_symlink(target, path);
}

void removeTree(const fs::path &folder) noexcept
{
    try {
        for (const fs::path &name : namesIn(folder)) {
            const fs::path path = folder / name;
            const std::wstring text = longForm(path);
            if (fs::is_directory(statusOfItself(path)))
                removeTree(path);
            else if (isFolder(path)) // a link
                RemoveDirectoryW(text.c_str());
            else if (!DeleteFileW(text.c_str()) && SetFileAttributesW(text.c_str(), FILE_ATTRIBUTE_NORMAL))
                DeleteFileW(text.c_str()); // it was read-only
        }
        RemoveDirectoryW(longForm(folder).c_str());
    } catch (const std::exception &) {
        return; // of a folder that cannot be listed, what is left stays
    }
}

} // namespace archive
