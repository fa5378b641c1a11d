// Numbers in a job's text files: decimal point ".", whatever the locale; the nearest double, on every
// platform.
#pragma once

#include <optional>
#include <string_view>

namespace cam {

// Reads a number at `at` ("12", "-0.5", ".25", "7.", "+1e-3") and moves `at` behind it. False, with both `at`
// and `value` as they were, when there is none before `end`, or when it is too large for a double.
bool readNumber(const char *&at, const char *end, double &value);

// The whole of `text` as a number; nothing when it is anything else, or too large for a double. An integer
// has no "+" and no exponent, and fits an int.
std::optional<double> toNumber(std::string_view text);
std::optional<int> toInteger(std::string_view text);

} // namespace cam
