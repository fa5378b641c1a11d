#include "archive/outfile.h"

#include "archive/bitexception.h"
#include "archive/localpath.h"

#include <system_error>

#include <windows.h>

namespace archive {

namespace {

FILETIME fileTime(std::uint64_t ticks)
{
    FILETIME time;
    time.dwLowDateTime = DWORD(ticks);
    time.dwHighDateTime = DWORD(ticks >> 32);
    return time;
}

[[noreturn]] void fail(const char *what, const std::filesystem::path &path)
{
    const std::error_code error(int(GetLastError()), std::system_category());
    throw BitException("cannot " + std::string(what) + " \"" + path.u8string() + "\": " + error.message());
}

} // namespace

OutFile::OutFile(const std::filesystem::path &path)
    : m_path(path), m_handle(CreateFileW(longForm(path).c_str(), GENERIC_WRITE | FILE_WRITE_ATTRIBUTES, 0,
                                         nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr))
{
    if (m_handle == INVALID_HANDLE_VALUE)
        fail("create", path);
}

OutFile::~OutFile()
{
    if (m_handle != INVALID_HANDLE_VALUE)
        CloseHandle(m_handle);
}

void OutFile::write(std::uint64_t offset, const void *data, std::size_t size)
{
    const char *bytes = static_cast<const char *>(data);
    while (size > 0) {
        const DWORD part = DWORD(size > (1u << 30) ? (1u << 30) : size);
        OVERLAPPED place = {};
        place.Offset = DWORD(offset);
        place.OffsetHigh = DWORD(offset >> 32);
        DWORD written = 0;
        if (!WriteFile(m_handle, bytes, part, &written, &place) || written == 0)
            fail("write", m_path);
        bytes += written;
        offset += written;
        size -= written;
    }
}

void OutFile::close(const std::optional<std::uint64_t> &modified)
{
    if (modified) {
        const FILETIME time = fileTime(*modified);
        SetFileTime(m_handle, nullptr, nullptr, &time); // a file system without such times keeps its own
    }
    void *handle = m_handle;
    m_handle = INVALID_HANDLE_VALUE;
    if (!CloseHandle(handle))
        fail("write", m_path);
}

void makeFolder(const std::filesystem::path &path)
{
    if (!CreateDirectoryW(longForm(path).c_str(), nullptr))
        fail("create", path);
}

void setFolderTime(const std::filesystem::path &path, std::uint64_t modified)
{
    void *handle =
        CreateFileW(longForm(path).c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return;
    const FILETIME time = fileTime(modified);
    SetFileTime(handle, nullptr, nullptr, &time);
    CloseHandle(handle);
}

} // namespace archive
