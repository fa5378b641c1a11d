// Names and paths of archives as the file system wants them.
#pragma once

#include <filesystem>
#include <string>

namespace archive {

// The file-system form of `path`, a local path. Elsewhere than on Windows it is written as UTF-8, and the
// private characters U+EF80 to U+EFFF, by which 7-Zip passes on bytes that are no UTF-8, become those bytes
// again. On Windows an absolute path takes the form that may be longer than 260 characters.
std::filesystem::path localPath(const std::wstring &path);

// The same for a path relative to some folder, with "/" between its parts.
std::filesystem::path localRelativePath(const std::wstring &path);

// The inverse of localRelativePath() for UTF-8 `bytes`: a byte that is no UTF-8 becomes the private character
// for it.
std::wstring wideFromUtf8(const std::string &bytes);

// `path` in UTF-8, for messages. What is no text becomes "?".
std::string utf8(const std::wstring &path);

} // namespace archive
