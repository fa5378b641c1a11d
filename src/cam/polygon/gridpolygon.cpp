#include "cam/polygon/gridpolygon.h"

#include <algorithm>
#include <limits>

namespace cam {

void GridBox::add(const GridBox &other)
{
    if (other.isEmpty())
        return;
    add(other.low);
    add(other.high);
}

// A ring's corners lie near each other: hardly one of them moves a bound, and branches that are foreseen cost
// less than a minimum that waits for the one before.
void GridBox::add(const GridRing &ring)
{
    if (ring.empty())
        return;
    add(ring.front());
    GridPoint least = low, most = high;
    for (const GridPoint p : ring) {
        if (p.x < least.x)
            least.x = p.x;
        else if (p.x > most.x)
            most.x = p.x;
        if (p.y < least.y)
            least.y = p.y;
        else if (p.y > most.y)
            most.y = p.y;
    }
    low = least;
    high = most;
}

GridBox GridBox::moved(GridPoint by) const
{
    if (isEmpty())
        return *this;
    return {{low.x + by.x, low.y + by.y}, {high.x + by.x, high.y + by.y}};
}

void Grid::round(const Point *corners, std::size_t count, const Transform &map, GridRing &ring) const
{
    ring.resize(count);
    GridPoint *const first = ring.data();
    GridPoint *end = first;
    for (std::size_t i = 0; i < count; ++i) {
        const GridPoint p = round(map(corners[i]));
        if (end == first || end[-1] != p)
            *end++ = p;
    }
    while (end - first > 1 && end[-1] == *first)
        --end;
    ring.resize(static_cast<std::size_t>(end - first));
}

double doubledArea(const GridRing &ring)
{
    if (ring.size() < 3)
        return 0.0;
    // Relative to one corner, or far-away rings would lose their area in the products.
    const GridPoint origin = ring[0];
    double sum = 0.0;
    for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
        const auto ax = static_cast<double>(ring[i].x - origin.x),
                   ay = static_cast<double>(ring[i].y - origin.y);
        const auto bx = static_cast<double>(ring[i + 1].x - origin.x);
        const auto by = static_cast<double>(ring[i + 1].y - origin.y);
        sum += ax * by - ay * bx;
    }
    return sum;
}

void makeCounterClockwise(GridRing &ring)
{
    if (doubledArea(ring) < 0.0)
        std::reverse(ring.begin(), ring.end());
}

void makeClockwise(GridRing &ring)
{
    if (doubledArea(ring) > 0.0)
        std::reverse(ring.begin(), ring.end());
}

bool encloses(const GridRing &ring, GridPoint at)
{
    bool isInside = false;
    GridPoint a = ring.back();
    for (const GridPoint b : ring) {
        if (runsLeftOf(pointOf(at), pointOf(a), pointOf(b)))
            isInside = !isInside;
        a = b;
    }
    return isInside;
}

namespace {

std::int64_t along(GridPoint p, bool alongX)
{
    return alongX ? p.x : p.y;
}

std::int64_t roundDouble(double value)
{
    return static_cast<std::int64_t>(value < 0.0 ? value - 0.5 : value + 0.5);
}

// Where the edge crosses the line. Both parts, and a neighbour that has the edge the other way round, must
// get the same point: the ends are put in order first.
GridPoint crossing(GridPoint a, GridPoint b, bool alongX, std::int64_t at)
{
    if (b < a)
        std::swap(a, b);
    const auto from = static_cast<double>(along(a, alongX)), to = static_cast<double>(along(b, alongX));
    const double share = (static_cast<double>(at) - from) / (to - from);
    const std::int64_t start = along(a, !alongX);
    const std::int64_t other = start + roundDouble(share * static_cast<double>(along(b, !alongX) - start));
    return alongX ? GridPoint{at, other} : GridPoint{other, at};
}

} // namespace

void cutRing(const GridRing &ring, bool alongX, std::int64_t at, bool keepLow, GridRing &part)
{
    part.clear();
    const auto isIn = [&](GridPoint p) { return keepLow ? along(p, alongX) <= at : along(p, alongX) >= at; };
    const auto put = [&part](GridPoint p) {
        if (part.empty() || part.back() != p)
            part.push_back(p);
    };
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const GridPoint a = ring[i];
        const GridPoint b = ring[i + 1 < ring.size() ? i + 1 : 0];
        const bool aIn = isIn(a), bIn = isIn(b);
        if (aIn)
            put(a);
        if (aIn != bIn)
            put(crossing(a, b, alongX, at));
    }
    while (part.size() > 1 && part.back() == part.front())
        part.pop_back();
    if (part.size() < 3)
        part.clear();
}

namespace {

// The point straight left of `from` (or at it) on an edge of `ring`, as near as possible, and the edge's
// index.
struct LeftHit
{
    std::size_t edge = 0;
    GridPoint at;
    bool isFound = false;
};

LeftHit findLeft(const GridRing &ring, GridPoint from)
{
    LeftHit hit;
    std::int64_t best = std::numeric_limits<std::int64_t>::min();
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const GridPoint a = ring[i];
        const GridPoint b = ring[i + 1 < ring.size() ? i + 1 : 0];
        const bool spans = (a.y <= from.y && from.y <= b.y) || (b.y <= from.y && from.y <= a.y);
        if (!spans || std::min(a.x, b.x) > from.x)
            continue;
        std::int64_t x = 0;
        if (a.y == b.y)
            x = std::min(std::max(a.x, b.x), from.x);
        else
            x = crossing(a, b, false, from.y).x;
        if (x > from.x || (hit.isFound && x <= best))
            continue;
        best = x;
        hit = {i, {x, from.y}, true};
    }
    return hit;
}

} // namespace

GridRing linkHoles(GridRing island, std::vector<GridRing> holes)
{
    // The leftmost corner of each hole comes first; holes from left to right, so that a hole's left neighbour
    // is linked before it.
    for (GridRing &hole : holes)
        std::rotate(hole.begin(), std::min_element(hole.begin(), hole.end()), hole.end());
    std::sort(holes.begin(), holes.end(), [](const GridRing &a, const GridRing &b) { return a[0] < b[0]; });
    GridRing linked;
    for (const GridRing &hole : holes) {
        const LeftHit hit = findLeft(island, hole[0]);
        if (!hit.isFound)
            continue;
        linked.assign(island.begin(), island.begin() + static_cast<std::ptrdiff_t>(hit.edge) + 1);
        if (linked.back() != hit.at)
            linked.push_back(hit.at);
        const std::size_t landing = linked.size() - 1;
        if (hit.at != hole[0])
            linked.push_back(hole[0]);
        linked.insert(linked.end(), hole.begin() + 1, hole.end());
        linked.push_back(hole[0]);
        if (hit.at != hole[0])
            linked.push_back(linked[landing]);
        for (std::size_t i = hit.edge + 1; i < island.size(); ++i) {
            if (linked.back() != island[i])
                linked.push_back(island[i]);
        }
        island.swap(linked);
    }
    return island;
}

} // namespace cam
