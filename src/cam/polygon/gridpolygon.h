// Polygons on the output's grid: whole numbers of database units. Coordinates become whole numbers here,
// once; what follows (booleans, cuts, records) works on these.
#pragma once

#include "cam/model/point.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace cam {

struct GridPoint
{
    std::int64_t x = 0; // database units
    std::int64_t y = 0;
};

inline bool operator==(GridPoint a, GridPoint b)
{
    return a.x == b.x && a.y == b.y;
}
inline bool operator!=(GridPoint a, GridPoint b)
{
    return !(a == b);
}
inline bool operator<(GridPoint a, GridPoint b)
{
    return a.x != b.x ? a.x < b.x : a.y < b.y;
}

// A closed polygon, the first corner not repeated. Islands run counter-clockwise, holes clockwise.
using GridRing = std::vector<GridPoint>;

inline Point pointOf(GridPoint p)
{
    return {static_cast<double>(p.x), static_cast<double>(p.y)};
}

// Both bounds belong to the box.
struct GridBox
{
    GridPoint low{INT64_MAX, INT64_MAX};
    GridPoint high{INT64_MIN, INT64_MIN};

    bool isEmpty() const { return low.x > high.x; }
    void add(GridPoint p)
    {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    void add(const GridBox &other);
    void add(const GridRing &ring);
    // The same box elsewhere; an empty one stays empty.
    GridBox moved(GridPoint by) const;
    // Its four corners, counter-clockwise.
    GridRing ring() const { return {low, {high.x, low.y}, high, {low.x, high.y}}; }
    bool touches(const GridBox &other) const
    {
        return low.x <= other.high.x && other.low.x <= high.x && low.y <= other.high.y &&
               other.low.y <= high.y;
    }
    bool contains(const GridBox &other) const
    {
        return low.x <= other.low.x && other.high.x <= high.x && low.y <= other.low.y &&
               other.high.y <= high.y;
    }
};

// Nanometres to the grid: `unit` nanometres a step, halves away from zero, what is out of all bounds to a
// bound.
class Grid
{
public:
    explicit Grid(double unit) : m_perNanometre(1.0 / unit), m_unit(unit) {}
    double unit() const { return m_unit; }
    GridPoint round(Point p) const { return {roundOne(p.x), roundOne(p.y)}; }
    // The corners mapped and rounded, neighbours that have become equal left out.
    void round(const Point *corners, std::size_t count, const Transform &map, GridRing &ring) const;

private:
    // Sums and differences of such coordinates still fit; no file format takes them.
    static constexpr double farthest = 1e18;

    std::int64_t roundOne(double nanometres) const
    {
        // Written out: a call of the C library for each coordinate would cost as much as everything else
        // here. Products such as 25400000 * 0.001 carry an error far below a millionth of a unit.
        const double scaled = nanometres * m_perNanometre;
        if (!(std::fabs(scaled) < farthest))
            return static_cast<std::int64_t>(scaled < 0.0 ? -farthest : farthest);
        return static_cast<std::int64_t>(scaled + std::copysign(0.5, scaled));
    }

    double m_perNanometre;
    double m_unit;
};

// Twice the area: positive for a counter-clockwise ring. Exact while coordinates are below 2^30.
double doubledArea(const GridRing &ring);
void makeCounterClockwise(GridRing &ring);
void makeClockwise(GridRing &ring);

// Whether the edge from `a` to `b` runs left of `at`, on its level: of a closed outline an odd number of
// edges does so where `at` lies inside. An end on that level counts as below it.
inline bool runsLeftOf(Point at, Point a, Point b)
{
    return (a.y > at.y) != (b.y > at.y) && a.x + (at.y - a.y) / (b.y - a.y) * (b.x - a.x) < at.x;
}
// Whether `at` lies inside of `ring`, by parity. Without meaning for points on its edges.
bool encloses(const GridRing &ring, GridPoint at);

// The part of `ring` on one side of the line x = at (`alongX`) or y = at: the side of smaller coordinates
// when `keepLow`. Where the ring crosses the line several times the parts stay linked along it, with winding
// numbers kept.
void cutRing(const GridRing &ring, bool alongX, std::int64_t at, bool keepLow, GridRing &part);

// One ring around an island and its holes: each hole is linked to the ring left of it by two equal and
// opposite edges. The holes must lie inside the island and touch neither it nor each other, but for single
// points.
GridRing linkHoles(GridRing island, std::vector<GridRing> holes);

} // namespace cam
