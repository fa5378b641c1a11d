// Finding files without regard to case: jobs name their steps, layers and files so, and the output path
// arrives lower-cased as a whole, with "/" and backslashes mixed.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cam {

// Lower case for UTF-8 text, with all of Unicode: by Qt's tables, which are what the callers of the library
// lower-case names and paths with. Of bytes that are no UTF-8 only the ASCII letters change.
std::string lowerCase(std::string_view text);

// Whether `name` can only be the name of something in a folder: no path, no drive, no stream.
bool isPlainName(std::string_view name);

// The entries of `folder` whose names equal `name` but for case: an exact match first, then in byte order.
// None when `name` is no plain name.
std::vector<std::filesystem::path> findEntries(const std::filesystem::path &folder, std::string_view name);

// The first of them.
std::optional<std::filesystem::path> findEntry(const std::filesystem::path &folder, std::string_view name);

// `path` (UTF-8, either kind of slash) with each of its folders spelt as it is on disk; parts that are not on
// disk, and the last part when nothing has its name, stay as given. An exact match wins.
std::filesystem::path resolveIgnoringCase(const std::string &path);

// The same for the path of a file to be written that arrives in lower case as a whole. Where several folders
// have it but for case, the one that was changed last is meant: whoever asks for the export has just made or
// touched it. A path with capitals was not lower-cased: its own folder wins.
std::filesystem::path resolveOutputPath(const std::string &path);

} // namespace cam
