// What unpacking does to files and folders besides writing content, for paths of any length: Windows takes
// more than 260 characters in a form of their own only, which the standard library there does not use.
//
// Operations throw BitException or filesystem_error unless they say otherwise.
#pragma once

#include <filesystem>
#include <vector>

namespace archive {

// Makes the folder `path` and what is missing above it.
void makeFolders(const std::filesystem::path &path);

// The names of what is in `folder`, in any order.
std::vector<std::filesystem::path> namesIn(const std::filesystem::path &folder);

// Moves what is at `from` to `to` within one file system. False, and nothing is moved, when there is anything
// at `to`, however short the time that it has been there.
bool moveToFree(const std::filesystem::path &from, const std::filesystem::path &to);

// The same for the way back, which takes no space on the disk. False whatever the reason is.
bool moveBack(const std::filesystem::path &from, const std::filesystem::path &to) noexcept;

// Whether both are there and are one file or folder, whatever their names. Follows links.
bool isSame(const std::filesystem::path &first, const std::filesystem::path &second) noexcept;

// Makes `path` another name of the file `target`.
void makeHardLink(const std::filesystem::path &target, const std::filesystem::path &path);
// `target` is relative to the folder of `path`.
void makeSymbolicLink(const std::filesystem::path &target, const std::filesystem::path &path, bool toFolder);

// Removes `folder` with all that is in it; links are removed, not followed. Gives up without a word.
void removeTree(const std::filesystem::path &folder) noexcept;

} // namespace archive
