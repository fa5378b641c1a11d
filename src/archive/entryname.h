// Which names inside an archive are safe to write. Archives come from outside: a name is refused, with the
// reason, unless it plainly stays in the output folder.
#pragma once

#include <string>
#include <vector>

namespace archive {

// The file system whose rules a name must meet on top of the common ones.
enum class NameRules { Posix, Windows };

// The rules of the platform this was built for.
NameRules nativeNameRules();

// The parts of `path`, without "." and empty ones: L"./a//b" gives {L"a", L"b"}, L"./" gives none.
// Throws BitException when the path is empty, absolute, has a drive letter, a ".." or a backslash between its
// parts or in one of them, or, by the Windows rules, a part that Windows would read as something else: a
// device name, a stream
// (":"), a forbidden character, a dot or blank at its end.
std::vector<std::wstring> checkedPathParts(const std::wstring &path, NameRules rules);

// Checks the stored name of a gzip member, which becomes a file in the job root and part of a command line:
// one part, and nothing in it that the command interpreter gives a meaning to besides taking the line apart
// at it. Throws BitException.
void checkMemberName(const std::wstring &name, NameRules rules);

// The first part of an entry's path, all of it when there is no "/".
std::wstring firstPart(const std::wstring &path);

// The last part of a path whose parts may be divided by "/" or backslashes.
std::wstring lastPart(const std::wstring &path);

// `part` in a form in which two names that the file system takes for the same are equal.
std::wstring foldedName(const std::wstring &part, NameRules rules);

} // namespace archive
