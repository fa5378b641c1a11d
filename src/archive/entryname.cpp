#include "archive/entryname.h"

#include "archive/bitexception.h"
#include "archive/localpath.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>

namespace archive {

namespace {

// 7-Zip on Windows puts this in the place of a backslash that is part of a name.
const wchar_t backslashStandIn = wchar_t(0xF05C);

#ifdef _WIN32
const bool backslashSeparates = true; // 7-Zip gives paths with backslashes there
#else
const bool backslashSeparates = false;
#endif

[[noreturn]] void refuse(const std::wstring &path, const char *reason)
{
    throw BitException("\"" + utf8(path) + "\": " + reason);
}

bool isAsciiLetter(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

bool isSeparator(wchar_t c)
{
    return c == L'/' || (backslashSeparates && c == L'\\');
}

std::vector<std::wstring> split(const std::wstring &path)
{
    std::vector<std::wstring> parts;
    parts.reserve(8); // as deep as most jobs are
    for (auto from = path.begin();;) {
        const auto end = std::find_if(from, path.end(), isSeparator);
        parts.emplace_back(from, end);
        if (end == path.end())
            return parts;
        from = end + 1;
    }
}

std::wstring asciiUpper(std::wstring text)
{
    for (wchar_t &c : text) {
        if (c >= L'a' && c <= L'z')
            c = wchar_t(c - L'a' + L'A');
    }
    return text;
}

// Windows opens a device for these, whatever ending follows and whatever folder they are in.
bool isDeviceName(const std::wstring &part)
{
    std::wstring stem = asciiUpper(part.substr(0, part.find_first_of(L".:")));
    stem.erase(stem.find_last_not_of(L' ') + 1);
    for (const wchar_t *name : {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$", L"CLOCK$"}) {
        if (stem == name)
            return true;
    }
    if (stem.size() != 4 || (stem.compare(0, 3, L"COM") != 0 && stem.compare(0, 3, L"LPT") != 0))
        return false;
    const wchar_t digit = stem[3];
    return (digit >= L'0' && digit <= L'9') || digit == 0xB9 || digit == 0xB2 ||
           digit == 0xB3; // superscripts too
}

void checkPart(const std::wstring &path, const std::wstring &part, NameRules rules)
{
    if (part == L"..")
        refuse(path, "the path leads out of the folder through \"..\"");
    if (part.find(L'\\') != std::wstring::npos || part.find(backslashStandIn) != std::wstring::npos)
        refuse(path, "the name contains a backslash");
    if (part.find(L'\0') != std::wstring::npos)
        refuse(path, "the name contains a zero character");
    if (rules != NameRules::Windows)
        return;
    if (part.find(L':') != std::wstring::npos)
        refuse(path, "the name contains a colon, which opens another stream of a file on Windows");
    if (isDeviceName(part))
        refuse(path, "the name is that of a device on Windows");
    if (part.back() == L'.' || part.back() == L' ')
        refuse(path, "the name ends in a dot or a blank, which Windows drops");
    for (const wchar_t c : part) {
        if (c < 0x20 || std::wcschr(L"<>\"|?*", c))
            refuse(path, "the name contains a character that Windows does not allow in names");
    }
}

} // namespace

NameRules nativeNameRules()
{
    return backslashSeparates ? NameRules::Windows : NameRules::Posix;
}

std::vector<std::wstring> checkedPathParts(const std::wstring &path, NameRules rules)
{
    if (path.empty())
        refuse(path, "the entry has no name");
    if (path[0] == L'/' || path[0] == L'\\')
        refuse(path, "the path is absolute");
    if (path.size() >= 2 && path[1] == L':' && isAsciiLetter(path[0]))
        refuse(path, "the path has a drive letter");

    std::vector<std::wstring> parts;
    for (const std::wstring &part : split(path)) {
        if (part.empty() || part == L".")
            continue;
        checkPart(path, part, rules);
        parts.push_back(part);
    }
    return parts;
}

void checkMemberName(const std::wstring &name, NameRules rules)
{
    const std::vector<std::wstring> parts = checkedPathParts(name, rules);
    if (parts.size() != 1 || parts[0] != name)
        refuse(name, "the name of the gzip member is more than a file name");
    for (const wchar_t c : name) {
        if (c < 0x20 || c == 0x7F || std::wcschr(L"&|<>^%!\"*?", c))
            refuse(name,
                   "the name of the gzip member contains a character that means something to the command "
                   "interpreter");
    }
}

std::wstring firstPart(const std::wstring &path)
{
    return path.substr(0, path.find(L'/'));
}

std::wstring lastPart(const std::wstring &path)
{
    const std::size_t separator = path.find_last_of(L"/\\");
    return separator == std::wstring::npos ? path : path.substr(separator + 1);
}

std::wstring foldedName(const std::wstring &part, NameRules rules)
{
    if (rules == NameRules::Posix)
        return part;
    std::wstring folded = part;
    std::transform(folded.begin(), folded.end(), folded.begin(),
                   [](wchar_t c) { return wchar_t(std::towupper(std::wint_t(c))); });
    return folded;
}

} // namespace archive
