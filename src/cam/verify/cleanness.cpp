// Winding numbers change at edges only, and along a ring that meets no other edge they stay what they are: a
// look at one place of it says everything. Edges are compared within the cells of a grid. Where some meet,
// the tiles around those places are looked at by an exact sweep.
#include "cam/verify/cleanness.h"

#include "cam/polygon/arrangement.h"
#include "cam/polygon/orientation.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace cam::verify {

namespace {

// Whether a counter-clockwise ring turns left at every corner, and once around in all.
bool isConvex(const GridRing &ring)
{
    int turnsOfX = 0; // changes of direction along x
    int before = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const GridPoint a = ring[i], b = ring[(i + 1) % ring.size()], c = ring[(i + 2) % ring.size()];
        const double ux = static_cast<double>(b.x - a.x), uy = static_cast<double>(b.y - a.y);
        const double vx = static_cast<double>(c.x - b.x), vy = static_cast<double>(c.y - b.y);
        const double turn = ux * vy - uy * vx;
        if (turn < 0.0 || (turn == 0.0 && ux * vx + uy * vy < 0.0))
            return false;
        const int direction = ux > 0.0 ? 1 : ux < 0.0 ? -1 : 0;
        if (direction != 0 && before != 0 && direction != before)
            ++turnsOfX;
        if (direction != 0)
            before = direction;
    }
    return turnsOfX <= 2;
}

// ---- by a sweep

constexpr std::size_t sweepCorners = 1500; // as many are looked at in one sweep
constexpr int deepest = 24;

// How far around a place where edges meet they are looked at.
constexpr std::int64_t surroundings = 1000;

bool isNear(const GridBox &box, GridPoint p)
{
    return box.low.x - surroundings <= p.x && p.x <= box.high.x + surroundings &&
           box.low.y - surroundings <= p.y && p.y <= box.high.y + surroundings;
}

// Where rings are to be looked at.
struct Where
{
    bool isEverywhere = false;
    std::vector<GridPoint> places; // else around these
};

bool isCleanPiece(std::vector<GridRing> rings, Where where, int depth)
{
    std::size_t corners = 0;
    GridBox box;
    for (const GridRing &ring : rings) {
        corners += ring.size();
        box.add(ring);
    }
    std::vector<GridPoint> &places = where.places;
    places.erase(
        std::remove_if(places.begin(), places.end(), [&box](GridPoint p) { return !isNear(box, p); }),
        places.end());
    if (corners == 0 || (places.empty() && !where.isEverywhere))
        return true;
    const std::int64_t width = box.high.x - box.low.x, height = box.high.y - box.low.y;
    if (corners <= sweepCorners || depth == 0 || std::max(width, height) < 1000) {
        constexpr double mostArea = 200.0 * 200.0; // square nanometres
        return std::fabs(repeatedArea(rings)) <= mostArea;
    }
    const bool alongX = width >= height;
    const std::int64_t at = alongX ? box.low.x + width / 2 : box.low.y + height / 2;
    std::vector<GridRing> low, high;
    GridRing part;
    for (GridRing &ring : rings) {
        for (const bool keepLow : {true, false}) {
            cutRing(ring, alongX, at, keepLow, part);
            if (!part.empty())
                (keepLow ? low : high).push_back(part);
        }
        GridRing().swap(ring);
    }
    return isCleanPiece(std::move(low), where, depth - 1) &&
           isCleanPiece(std::move(high), std::move(where), depth - 1);
}

// ---- by a grid

class EdgeGrid
{
public:
    explicit EdgeGrid(const std::vector<GridRing> &rings);

    // False where the edges do not suit a grid: long and many, or most of them in one place.
    bool isBuilt() const { return !m_cells.empty(); }

    // Where edges meet other than as neighbours in a ring. Edges that run both ways are left out.
    std::vector<GridPoint> meetings();

    // Of rings that meet nothing: whether the winding numbers on both sides of each are 0 and 1. To be
    // called after meetings(). Appends places it can say nothing about.
    bool areNested(std::vector<GridPoint> &places);

private:
    struct Edge
    {
        GridPoint a, b;
        bool isFirst = false; // of its ring
        bool isCancelled = false;
        bool doesMeet = false;
    };
    struct Meeting
    {
        std::uint32_t edge, other;
    };
    std::size_t columnOf(double x) const;
    std::size_t rowOf(double y) const;
    template <typename Take>
    void forEachCell(const Edge &edge, Take take) const;
    void compare(std::uint32_t i, std::uint32_t k);
    int windingLeftOf(std::uint32_t edge, double y, bool &isCertain);

    std::vector<Edge> m_edges;
    GridBox m_extent;
    double m_cell = 1.0; // its side
    std::size_t m_columns = 0, m_rows = 0;
    std::vector<std::uint32_t> m_cells; // one more than cells: where in m_inCell
    std::vector<std::uint32_t> m_inCell;
    std::vector<Meeting> m_meetings;
    std::vector<std::uint32_t> m_seen; // by edge: the last look that counted it
    std::uint32_t m_look = 0;
};

EdgeGrid::EdgeGrid(const std::vector<GridRing> &rings)
{
    for (const GridRing &ring : rings) {
        m_extent.add(ring);
        bool isFirst = true;
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const GridPoint a = ring[i], b = ring[i + 1 < ring.size() ? i + 1 : 0];
            if (a == b)
                continue;
            m_edges.push_back({a, b, isFirst});
            isFirst = false;
        }
    }
    if (m_edges.empty())
        return;
    const double width = static_cast<double>(m_extent.high.x - m_extent.low.x) + 1.0;
    const double height = static_cast<double>(m_extent.high.y - m_extent.low.y) + 1.0;
    const double count = static_cast<double>(m_edges.size());
    m_cell = std::max({std::sqrt(width * height / count), (width + height) / count, 64.0});
    m_columns = static_cast<std::size_t>(width / m_cell) + 1;
    m_rows = static_cast<std::size_t>(height / m_cell) + 1;
    std::vector<std::uint32_t> cells(m_columns * m_rows + 1, 0);
    const std::size_t mostEntries = 12 * m_edges.size() + 4096;
    std::size_t entries = 0;
    for (const Edge &edge : m_edges) {
        forEachCell(edge, [&](std::size_t cell) {
            ++cells[cell + 1];
            ++entries;
        });
        if (entries > mostEntries)
            return;
    }
    double pairs = 0.0;
    for (std::size_t i = 0; i + 1 < cells.size(); ++i) {
        pairs += static_cast<double>(cells[i + 1]) * static_cast<double>(cells[i + 1]);
        cells[i + 1] += cells[i];
    }
    constexpr double mostPairs = 1000.0; // an edge
    if (pairs > mostPairs * count)
        return;
    m_inCell.resize(entries);
    std::vector<std::uint32_t> next(cells.begin(), cells.end() - 1);
    for (std::uint32_t i = 0; i < m_edges.size(); ++i)
        forEachCell(m_edges[i], [&](std::size_t cell) { m_inCell[next[cell]++] = i; });
    m_cells.swap(cells);
}

std::size_t EdgeGrid::columnOf(double x) const
{
    const double column = (x - static_cast<double>(m_extent.low.x)) / m_cell;
    return column > 0.0 ? std::min(static_cast<std::size_t>(column), m_columns - 1) : 0;
}

std::size_t EdgeGrid::rowOf(double y) const
{
    const double row = (y - static_cast<double>(m_extent.low.y)) / m_cell;
    return row > 0.0 ? std::min(static_cast<std::size_t>(row), m_rows - 1) : 0;
}

// All cells that the edge runs through, and some beside it.
template <typename Take>
void EdgeGrid::forEachCell(const Edge &edge, Take take) const
{
    const bool isUpwards = edge.a.y <= edge.b.y;
    const Point low = pointOf(isUpwards ? edge.a : edge.b), high = pointOf(isUpwards ? edge.b : edge.a);
    const std::size_t first = rowOf(low.y), last = rowOf(high.y);
    const double slope = high.y > low.y ? (high.x - low.x) / (high.y - low.y) : 0.0;
    const double room = 1.0 + std::fabs(slope) * 1e-3; // for rounding
    for (std::size_t row = first; row <= last; ++row) {
        // Its ends within the row.
        const double bottom = static_cast<double>(m_extent.low.y) + static_cast<double>(row) * m_cell;
        const double from = row == first ? low.x : low.x + slope * (bottom - low.y);
        const double to = row == last ? high.x : low.x + slope * (bottom + m_cell - low.y);
        const std::size_t end = columnOf(std::max(from, to) + room);
        for (std::size_t column = columnOf(std::min(from, to) - room); column <= end; ++column)
            take(row * m_columns + column);
    }
}

void EdgeGrid::compare(std::uint32_t i, std::uint32_t k)
{
    Edge &e = m_edges[i], &f = m_edges[k];
    if (e.isCancelled || f.isCancelled)
        return;
    if (std::max(e.a.x, e.b.x) < std::min(f.a.x, f.b.x) || std::max(f.a.x, f.b.x) < std::min(e.a.x, e.b.x) ||
        std::max(e.a.y, e.b.y) < std::min(f.a.y, f.b.y) || std::max(f.a.y, f.b.y) < std::min(e.a.y, e.b.y))
        return;
    if (e.a == f.b && e.b == f.a) {
        e.isCancelled = f.isCancelled = true;
        return;
    }
    const int fa = sideOf(e.a, e.b, f.a), fb = sideOf(e.a, e.b, f.b);
    if (fa != 0 && fa == fb)
        return;
    const int ea = sideOf(f.a, f.b, e.a), eb = sideOf(f.a, f.b, e.b);
    if (ea != 0 && ea == eb)
        return;
    if (e.b == f.a || f.b == e.a) {
        // One behind the other: they meet where the second turns back along the first. Of other edges at
        // that corner two at least begin there, and these meet.
        const GridPoint u = e.b - e.a, v = f.b - f.a;
        const bool turnsBack = (fa == 0 && fb == 0) && ((u.x > 0) != (v.x > 0) || (u.y > 0) != (v.y > 0));
        if (!turnsBack)
            return;
    }
    m_meetings.push_back({i, k});
}

std::vector<GridPoint> EdgeGrid::meetings()
{
    const auto lowX = [this](std::uint32_t i) { return std::min(m_edges[i].a.x, m_edges[i].b.x); };
    const auto highX = [this](std::uint32_t i) { return std::max(m_edges[i].a.x, m_edges[i].b.x); };
    std::vector<std::uint32_t> here;
    for (std::size_t cell = 0; cell + 1 < m_cells.size(); ++cell) {
        here.assign(m_inCell.begin() + m_cells[cell], m_inCell.begin() + m_cells[cell + 1]);
        std::sort(here.begin(), here.end(),
                  [&](std::uint32_t i, std::uint32_t k) { return lowX(i) < lowX(k); });
        for (std::size_t n = 0; n < here.size(); ++n) {
            const std::int64_t end = highX(here[n]);
            for (std::size_t m = n + 1; m < here.size() && lowX(here[m]) <= end; ++m)
                compare(here[n], here[m]);
        }
    }
    std::vector<GridPoint> places;
    for (const Meeting &meeting : m_meetings) {
        Edge &e = m_edges[meeting.edge], &f = m_edges[meeting.other];
        if (e.isCancelled || f.isCancelled)
            continue;
        e.doesMeet = f.doesMeet = true;
        const int fa = sideOf(e.a, e.b, f.a), fb = sideOf(e.a, e.b, f.b);
        const int ea = sideOf(f.a, f.b, e.a), eb = sideOf(f.a, f.b, e.b);
        // Ends upon the other edge, of edges along each other all that are: they are the same in between.
        for (const auto &[end, isUpon] : {std::pair(f.a, fa == 0), std::pair(f.b, fb == 0)}) {
            if (isUpon)
                places.push_back(end);
        }
        for (const auto &[end, isUpon] : {std::pair(e.a, ea == 0), std::pair(e.b, eb == 0)}) {
            if (isUpon)
                places.push_back(end);
        }
        if (fa != 0 && fb != 0 && ea != 0 && eb != 0) {
            const Point u = pointOf(e.b - e.a), v = pointOf(f.b - f.a);
            const double share = std::clamp(cross(pointOf(f.a - e.a), v) / cross(u, v), 0.0, 1.0);
            places.push_back(Grid(1.0).round(pointOf(e.a) + u * share));
        }
    }
    return places;
}

// At the height `y`, which is no corner's, right beside the edge.
int EdgeGrid::windingLeftOf(std::uint32_t edge, double y, bool &isCertain)
{
    const auto crossingOf = [y](const Edge &e) {
        const Point a = pointOf(e.a), b = pointOf(e.b);
        return a.x + (b.x - a.x) * ((y - a.y) / (b.y - a.y));
    };
    constexpr double nearest = 1e-3; // two crossings this close are in an order that rounding decides
    const double x = crossingOf(m_edges[edge]);
    const std::size_t row = rowOf(y), here = columnOf(x);
    const bool isLeftShorter = here < m_columns / 2;
    const std::size_t first = isLeftShorter ? 0 : here, last = isLeftShorter ? here : m_columns - 1;
    ++m_look;
    int winding = 0;
    for (std::size_t i = m_cells[row * m_columns + first]; i < m_cells[row * m_columns + last + 1]; ++i) {
        const std::uint32_t k = m_inCell[i];
        const Edge &other = m_edges[k];
        const Point a = pointOf(other.a), b = pointOf(other.b);
        if (k == edge || m_seen[k] == m_look || (a.y > y) == (b.y > y))
            continue;
        m_seen[k] = m_look;
        const double at = crossingOf(other);
        isCertain = isCertain && std::fabs(at - x) > nearest;
        // From left to right the number falls at an edge that runs upwards.
        if ((at < x) == isLeftShorter)
            winding += (b.y > a.y) == isLeftShorter ? -1 : 1;
    }
    if (isLeftShorter)
        return winding;
    // Counted from the right, up to the edge itself.
    return winding + (m_edges[edge].b.y > m_edges[edge].a.y ? 1 : -1);
}

bool EdgeGrid::areNested(std::vector<GridPoint> &places)
{
    m_seen.assign(m_edges.size(), 0);
    // Edges in a row that nothing meets; left and right of them it is the same.
    for (std::size_t i = 0; i < m_edges.size();) {
        std::size_t end = i;
        bool doesMeet = false;
        std::size_t tallest = i;
        const auto rise = [this](std::size_t k) { return std::abs(m_edges[k].b.y - m_edges[k].a.y); };
        for (; end < m_edges.size() && !m_edges[end].isCancelled && (end == i || !m_edges[end].isFirst);
             ++end) {
            doesMeet = doesMeet || m_edges[end].doesMeet;
            if (rise(end) > rise(tallest))
                tallest = end;
        }
        if (end == i) {
            ++i;
            continue;
        }
        i = end;
        if (doesMeet)
            continue;
        const Edge &edge = m_edges[tallest];
        bool isCertain = rise(tallest) > 0;
        if (isCertain) {
            // Between two rows of corners.
            const double y = std::floor(static_cast<double>(edge.a.y + edge.b.y) / 2.0) + 0.5;
            const int left = windingLeftOf(static_cast<std::uint32_t>(tallest), y, isCertain);
            if (isCertain && left != (edge.b.y > edge.a.y ? 1 : 0))
                return false;
        }
        if (!isCertain) {
            places.push_back(edge.a);
            places.push_back(edge.b);
        }
    }
    return true;
}

} // namespace

bool isClean(const std::vector<GridRing> &rings)
{
    if (rings.empty() || (rings.size() == 1 && isConvex(rings[0])))
        return true;
    Where where;
    {
        EdgeGrid grid(rings);
        where.isEverywhere = !grid.isBuilt();
        if (grid.isBuilt()) {
            where.places = grid.meetings();
            if (!grid.areNested(where.places))
                return false;
        }
    }
    return isCleanPiece(rings, std::move(where), deepest);
}

} // namespace cam::verify
