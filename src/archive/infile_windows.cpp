#include "archive/infile.h"

#include "archive/bitexception.h"
#include "archive/localpath.h"

#include <system_error>

#include <windows.h>

namespace archive {

namespace {

std::string lastError()
{
    return std::error_code(int(GetLastError()), std::system_category()).message();
}

} // namespace

InFile::InFile(const std::wstring &path)
    : m_shownPath(utf8(path)),
      m_handle(CreateFileW(longForm(localPath(path)).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                           OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr))
{
    if (m_handle == INVALID_HANDLE_VALUE)
        throw BitException("cannot open \"" + m_shownPath + "\": " + lastError());
    LARGE_INTEGER size;
    if (!GetFileSizeEx(m_handle, &size)) {
        const std::string reason = lastError();
        CloseHandle(m_handle);
        throw BitException("cannot open \"" + m_shownPath + "\": " + reason);
    }
    m_size = std::uint64_t(size.QuadPart);
}

InFile::~InFile()
{
    CloseHandle(m_handle);
}

std::size_t InFile::read(std::uint64_t offset, void *data, std::size_t size) const
{
    OVERLAPPED place = {};
    place.Offset = DWORD(offset);
    place.OffsetHigh = DWORD(offset >> 32);
    DWORD got = 0;
    if (!ReadFile(m_handle, data, DWORD(size > (1u << 30) ? (1u << 30) : size), &got, &place) &&
        GetLastError() != ERROR_HANDLE_EOF)
        throw BitException("cannot read \"" + m_shownPath + "\": " + lastError());
    return got;
}

} // namespace archive
