// On which side of a line a point of the grid lies: exactly, for all coordinates.
#pragma once

#include "cam/polygon/gridpolygon.h"

namespace cam {

inline GridPoint operator-(GridPoint a, GridPoint b)
{
    return {a.x - b.x, a.y - b.y};
}

// Products of such vectors' coordinates, and their differences, fit into 64 bits.
inline bool isSmall(GridPoint v)
{
    constexpr std::int64_t bound = std::int64_t(1) << 31;
    return v.x > -bound && v.x < bound && v.y > -bound && v.y < bound;
}

// The same as turn() without bounds, with products of 128 bits.
int turnOfLong(GridPoint u, GridPoint v);

// 1 when `v` points to the left of `u`, -1 when to the right, 0 when neither.
inline int turn(GridPoint u, GridPoint v)
{
    if (!isSmall(u) || !isSmall(v))
        return turnOfLong(u, v);
    const std::int64_t left = u.x * v.y, right = u.y * v.x;
    return left < right ? -1 : left > right ? 1 : 0;
}

// 1 when `p` lies to the left of the line from `from` to `to`, -1 when to the right, 0 on it.
inline int sideOf(GridPoint from, GridPoint to, GridPoint p)
{
    return turn(to - from, p - from);
}

} // namespace cam
