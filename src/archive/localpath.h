// Names and paths of archives as the file system wants them.
#pragma once

#include <filesystem>
#include <string>

namespace archive {

// The file-system form of `path`, a local path. Elsewhere than on Windows it is written as UTF-8, and the
// private characters U+EF80 to U+EFFF, by which 7-Zip passes on bytes that are no UTF-8, become those bytes
// again. On Windows it is an absolute path.
std::filesystem::path localPath(const std::wstring &path);

// The same for a path relative to some folder, with "/" between its parts.
std::filesystem::path localRelativePath(const std::wstring &path);

// The inverse of localRelativePath() for UTF-8 `bytes`: a byte that is no UTF-8 becomes the private character
// for it.
std::wstring wideFromUtf8(const std::string &bytes);

// The inverse of localRelativePath().
std::wstring wideFromLocal(const std::filesystem::path &path);

// Whether `name` has bytes that are no UTF-8. Elsewhere than on Windows no text names the file that it
// becomes.
bool hasRawBytes(const std::wstring &name);

// `path` in UTF-8, for messages. What is no text becomes "?".
std::string utf8(const std::wstring &path);

// What is at `path` itself, not at the end of a link: symlink_status() of the file system library, but on
// Windows a folder that is a junction, a link or a mount point has the type "unknown", whatever the library
// says: it leads somewhere else, and what replaces or empties it may do that there.
std::filesystem::file_status statusOfItself(const std::filesystem::path &path);

#ifdef _WIN32
// The form of an absolute path that may be longer than the usual 260 characters.
std::wstring longForm(const std::filesystem::path &path);
#endif

} // namespace archive
