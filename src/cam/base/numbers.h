// Numbers in a job's text files: decimal point ".", whatever the locale; the nearest double, on every
// platform.
#pragma once

#include <optional>
#include <string_view>

namespace cam {

// Reads a number at `at` and moves `at` behind it. False, with `at` unmoved, when there is none before `end`.
bool readNumber(const char *&at, const char *end, double &value);

// The whole of `text` as a number; nothing when it is anything else, or not finite.
std::optional<double> toNumber(std::string_view text);
std::optional<int> toInteger(std::string_view text);

} // namespace cam
