#include "cam/polygon/orientation.h"

#include <utility>

namespace cam {

namespace {

// A product of 128 bits: magnitude and sign.
struct Product
{
    std::uint64_t high = 0, low = 0;
    bool isNegative = false;
};

Product multiply(std::int64_t a, std::int64_t b)
{
    const auto magnitude = [](std::int64_t v) {
        return v < 0 ? 0 - static_cast<std::uint64_t>(v) : static_cast<std::uint64_t>(v);
    };
    const std::uint64_t u = magnitude(a), v = magnitude(b), half = 0xFFFFFFFFu;
    const std::uint64_t lowLow = (u & half) * (v & half), lowHigh = (u & half) * (v >> 32);
    const std::uint64_t highLow = (u >> 32) * (v & half), highHigh = (u >> 32) * (v >> 32);
    const std::uint64_t middle = (lowLow >> 32) + (lowHigh & half) + (highLow & half);
    Product product;
    product.low = (middle << 32) | (lowLow & half);
    product.high = highHigh + (lowHigh >> 32) + (highLow >> 32) + (middle >> 32);
    product.isNegative = (a < 0) != (b < 0) && (product.high | product.low) != 0;
    return product;
}

int compare(const Product &a, const Product &b)
{
    if (a.isNegative != b.isNegative)
        return a.isNegative ? -1 : 1;
    const auto magnitudeA = std::make_pair(a.high, a.low), magnitudeB = std::make_pair(b.high, b.low);
    if (magnitudeA == magnitudeB)
        return 0;
    return (magnitudeA < magnitudeB) != a.isNegative ? -1 : 1;
}

} // namespace

int turnOfLong(GridPoint u, GridPoint v)
{
    return compare(multiply(u.x, v.y), multiply(u.y, v.x));
}

} // namespace cam
