// A short path for the numbers that jobs are made of: up to 15 digits and a scale of ten that is exact, so
// that one division gives the nearest double. Everything longer goes to std::from_chars, which alone would
// take a fifth longer for such numbers; see bench/RESULTS.md.
#include "cam/base/numbers.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <system_error>

namespace cam {

namespace {

constexpr double powersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool readLongNumber(const char *&at, const char *end, double &value)
{
    const char *first = at != end && *at == '+' ? at + 1 : at;
    const auto result = std::from_chars(first, end, value);
    if (result.ec != std::errc() || !std::isfinite(value))
        return false;
    at = result.ptr;
    return true;
}

} // namespace

bool readNumber(const char *&at, const char *end, double &value)
{
    const char *p = at;
    const bool isNegative = p != end && *p == '-';
    if (p != end && (*p == '-' || *p == '+'))
        ++p;
    const char *const firstDigit = p;
    std::uint64_t digits = 0;
    int count = 0;
    for (; p != end && isDigit(*p); ++p, ++count)
        digits = digits * 10 + static_cast<unsigned>(*p - '0');
    int decimals = 0;
    if (p != end && *p == '.') {
        ++p;
        for (; p != end && isDigit(*p); ++p, ++count, ++decimals)
            digits = digits * 10 + static_cast<unsigned>(*p - '0');
    }
    if (count == 0)
        return false;
    if (count > 15 || (p != end && (*p == 'e' || *p == 'E')))
        return (*firstDigit != '+' && *firstDigit != '-') && readLongNumber(at, end, value);
    const double magnitude = static_cast<double>(digits) / powersOfTen[decimals];
    value = isNegative ? -magnitude : magnitude;
    at = p;
    return true;
}

std::optional<double> toNumber(std::string_view text)
{
    const char *at = text.data();
    const char *const end = at + text.size();
    double value = 0.0;
    if (!readNumber(at, end, value) || at != end)
        return std::nullopt;
    return value;
}

std::optional<int> toInteger(std::string_view text)
{
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size())
        return std::nullopt;
    return value;
}

} // namespace cam
