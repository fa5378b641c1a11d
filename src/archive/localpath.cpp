#include "archive/localpath.h"

#include <utf8cpp/utf8.h>

#include <iterator>

#ifdef _WIN32
#include <windows.h>
#endif

namespace archive {

namespace {

const std::uint32_t escapedByteFirst = 0xEF80; // stands for the byte 0x80
const std::uint32_t escapedByteLast = 0xEFFF;

// The code point at `text[i]`; steps over the second half of a surrogate pair (16-bit wchar_t).
std::uint32_t codePointAt(const std::wstring &text, std::size_t &i)
{
    const std::uint32_t c = std::uint32_t(text[i]);
    if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size()) {
        const std::uint32_t low = std::uint32_t(text[i + 1]);
        if (low >= 0xDC00 && low < 0xE000) {
            ++i;
            return 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
        }
    }
    return c;
}

bool isText(std::uint32_t c)
{
    return c < 0x110000 && !(c >= 0xD800 && c < 0xE000);
}

// What is no text becomes "?".
void appendUtf8(std::string &out, std::uint32_t c)
{
    utf8::append(isText(c) ? c : '?', std::back_inserter(out));
}

} // namespace

std::string utf8(const std::wstring &path)
{
    std::string out;
    out.reserve(path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
        const std::uint32_t c = codePointAt(path, i);
        appendUtf8(out, c >= 0x20 ? c : '?');
    }
    return out;
}

std::wstring wideFromUtf8(const std::string &bytes)
{
    std::wstring text;
    for (auto at = bytes.begin(); at != bytes.end();) {
        const auto raw = utf8::find_invalid(at, bytes.end());
        if constexpr (sizeof(wchar_t) == 2)
            utf8::utf8to16(at, raw, std::back_inserter(text));
        else
            utf8::utf8to32(at, raw, std::back_inserter(text));
        at = raw;
        if (at != bytes.end())
            text += wchar_t(escapedByteFirst + std::uint8_t(*at++) - 0x80);
    }
    return text;
}

bool hasRawBytes(const std::wstring &name)
{
    for (const wchar_t c : name) {
        if (std::uint32_t(c) >= escapedByteFirst && std::uint32_t(c) <= escapedByteLast)
            return true;
    }
    return false;
}

#ifdef _WIN32

std::wstring wideFromLocal(const std::filesystem::path &path)
{
    return path.wstring();
}

std::filesystem::path localPath(const std::wstring &path)
{
    return std::filesystem::absolute(path).lexically_normal().make_preferred();
}

std::filesystem::path localRelativePath(const std::wstring &path)
{
    return std::filesystem::path(path).make_preferred();
}

std::wstring longForm(const std::filesystem::path &path)
{
    const std::size_t usualLength = 240; // and room for a short file name in a folder
    const std::wstring text = path.wstring();
    if (text.size() < usualLength || text.compare(0, 4, L"\\\\?\\") == 0)
        return text;
    return text.compare(0, 2, L"\\\\") == 0 ? L"\\\\?\\UNC" + text.substr(1) : L"\\\\?\\" + text;
}

namespace {

// Whether what is at `path`, which has a tag, is a link: a junction or what else has a tag that stands for
// another name. What is kept elsewhere (in a cloud, compressed) has a tag too, but not such a one. Wine gives
// no tag.
bool isLink(const std::wstring &path)
{
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(path.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return true; // nobody can tell
    FindClose(search);
    const DWORD standsForAnotherName = 0x20000000;
    return found.dwReserved0 == 0 || (found.dwReserved0 & standsForAnotherName) != 0;
}

} // namespace

std::filesystem::file_status statusOfItself(const std::filesystem::path &path)
{
    using std::filesystem::file_type;
    const std::wstring text = longForm(path);
    const DWORD attributes = GetFileAttributesW(text.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const DWORD error = GetLastError();
        const bool isMissing = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
        return std::filesystem::file_status(isMissing ? file_type::not_found : file_type::unknown);
    }
    const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && isLink(text))
        return std::filesystem::file_status(isFolder ? file_type::unknown : file_type::symlink);
    return std::filesystem::file_status(isFolder ? file_type::directory : file_type::regular);
}

#else

std::wstring wideFromLocal(const std::filesystem::path &path)
{
    return wideFromUtf8(path.string());
}

std::filesystem::path localPath(const std::wstring &path)
{
    return localRelativePath(path);
}

std::filesystem::path localRelativePath(const std::wstring &path)
{
    std::string bytes;
    bytes.reserve(path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
        const std::uint32_t c = codePointAt(path, i);
        if (c >= escapedByteFirst && c <= escapedByteLast)
            bytes += char(c - escapedByteFirst + 0x80);
        else
            appendUtf8(bytes, c);
    }
    return bytes;
}

std::filesystem::file_status statusOfItself(const std::filesystem::path &path)
{
    return std::filesystem::symlink_status(path);
}

#endif

} // namespace archive
