// Finding files without regard to case: jobs name their steps, layers and files so, and the output path
// arrives lower-cased as a whole, with "/" and backslashes mixed.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace cam {

// Lower case for UTF-8 text: ASCII, Latin, Greek and Cyrillic letters; everything else stays.
std::string lowerCase(std::string_view text);

// Whether `name` can only be the name of something in a folder: no path, no drive, no stream.
bool isPlainName(std::string_view name);

// The entry of `folder` whose name equals `name` but for case; an exact match wins. Nothing when there is
// none, or `name` is no plain name.
std::optional<std::filesystem::path> findEntry(const std::filesystem::path &folder, std::string_view name);

// `path` (UTF-8, either kind of slash) with each of its folders spelt as it is on disk; parts that are not on
// disk, and the last part when nothing has its name, stay as given.
std::filesystem::path resolveIgnoringCase(const std::string &path);

} // namespace cam
