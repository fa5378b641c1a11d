// Slits from each hole to the left, found through a grid of cells.
#include "host/cam/gerber/region.h"

#include "host/cam/geometry/flatten.h"
#include "host/cam/geometry/trigonometry.h"
#include "host/cam/gerber/gerberstream.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace cam {

namespace {

// Nanometres by which the ends of an arc may differ in their distance from the centre; jobs round their
// numbers.
constexpr double arcMismatch = 500.0;

GridPoint rounded(Point p)
{
    return {roundToNanometre(p.x), roundToNanometre(p.y)};
}

double radiusOf(GridPoint onArc, GridPoint center)
{
    return length({static_cast<double>(onArc.x - center.x), static_cast<double>(onArc.y - center.y)});
}

bool isHalfOrMore(Point from, const Edge &arc)
{
    const double side = cross(from - arc.center, arc.end - arc.center);
    return arc.kind == EdgeKind::ArcCounterClockwise ? side <= 0.0 : side >= 0.0;
}

class OutlineBuilder
{
public:
    OutlineBuilder(Point start, const Transform &map) : m_map(map)
    {
        m_outline.start = rounded(map(start));
        m_at = m_outline.start;
    }

    void line(Point end)
    {
        const GridPoint to = rounded(m_map(end));
        if (to == m_at)
            return;
        m_outline.edges.push_back({to, {}, EdgeKind::Line});
        m_at = to;
    }

    void arc(Point from, const Edge &edge)
    {
        const GridPoint to = rounded(m_map(edge.end));
        const GridPoint center = rounded(m_map(edge.center));
        const double mismatch = std::fabs(distance(from, edge.center) - distance(edge.end, edge.center));
        if (mismatch * m_map.scale() > arcMismatch)
            return flattened(from, edge);
        if (center == m_at || center == to || (to == m_at && !isHalfOrMore(from, edge)))
            return line(edge.end);
        const bool clockwise = (edge.kind == EdgeKind::ArcClockwise) != m_map.turnsOver();
        m_outline.edges.push_back(
            {to, center, clockwise ? EdgeKind::ArcClockwise : EdgeKind::ArcCounterClockwise});
        m_at = to;
    }

    GridOutline take() { return std::move(m_outline); }

private:
    void flattened(Point from, const Edge &edge)
    {
        std::vector<Point> corners;
        flattenArc(from, edge, arcTolerance / m_map.scale(), corners);
        for (const Point corner : corners)
            line(corner);
    }

    Transform m_map;
    GridOutline m_outline;
    GridPoint m_at;
};

// ---- slits

// The way around `outline`, started at edge `first` instead.
void startAt(GridOutline &outline, std::size_t first)
{
    outline.start = outline.startOf(first);
    std::rotate(outline.edges.begin(), outline.edges.begin() + static_cast<std::ptrdiff_t>(first),
                outline.edges.end());
}

// Full circles as two halves: between two points of an outline an edge then is either a part or nothing.
void splitCircles(GridOutline &outline)
{
    for (std::size_t i = 0; i < outline.edges.size(); ++i) {
        GridEdge half = outline.edges[i];
        const GridPoint from = outline.startOf(i);
        if (half.kind == EdgeKind::Line || half.end != from)
            continue;
        half.end = {2 * half.center.x - from.x, 2 * half.center.y - from.y};
        outline.edges.insert(outline.edges.begin() + static_cast<std::ptrdiff_t>(i), half);
    }
}

// Whether the arc runs through `at`, a point on its circle.
bool runsThrough(GridPoint from, const GridEdge &arc, GridPoint at)
{
    const auto around = [&arc](GridPoint p) {
        return Point{static_cast<double>(p.x - arc.center.x), static_cast<double>(p.y - arc.center.y)};
    };
    const double swept = std::fabs(sweptDegrees(around(from), {around(arc.end), {}, arc.kind}));
    const double upTo = std::fabs(sweptDegrees(around(from), {around(at), {}, arc.kind}));
    return upTo <= swept;
}

// Nearer points than that are not worth an arc between them: rounded, it may seem to go nowhere, or all
// around.
bool areNear(GridPoint a, GridPoint b)
{
    constexpr std::int64_t nanometres = 10;
    return std::abs(a.x - b.x) <= nanometres && std::abs(a.y - b.y) <= nanometres;
}

// Makes the leftmost point of a hole its start; an arc that bulges to the left is split there.
void startAtLeftmost(GridOutline &hole)
{
    std::size_t best = 0;
    GridPoint leftmost = hole.start;
    bool isOnArc = false;
    for (std::size_t i = 0; i < hole.edges.size(); ++i) {
        const GridPoint from = hole.startOf(i);
        if (from.x < leftmost.x) {
            leftmost = from;
            best = i;
            isOnArc = false;
        }
        const GridEdge &edge = hole.edges[i];
        if (edge.kind == EdgeKind::Line)
            continue;
        const GridPoint tip = {edge.center.x - roundToNanometre(radiusOf(from, edge.center)), edge.center.y};
        if (tip.x < leftmost.x && !areNear(tip, from) && !areNear(tip, edge.end) &&
            runsThrough(from, edge, tip)) {
            leftmost = tip;
            best = i;
            isOnArc = true;
        }
    }
    if (isOnArc) {
        GridEdge upToTip = hole.edges[best];
        upToTip.end = leftmost;
        hole.edges.insert(hole.edges.begin() + static_cast<std::ptrdiff_t>(best), upToTip);
        ++best;
    }
    startAt(hole, best);
}

// A place on an edge where a slit begins.
struct Landing
{
    std::uint32_t outline = 0;
    std::uint32_t edge = 0;
    GridPoint at;
    double share = 0.0; // how much of the edge lies before it
    std::uint32_t hole = 0;
    bool isUpwards = false; // how the edge runs there
};

// The crossing of an edge with the horizontal at `y`, if it has one left of `x`; the rightmost of them.
struct EdgeCrossing
{
    double x = -INFINITY;
    double share = 0.0;
    bool isUpwards = false;
};

void keepRightmost(EdgeCrossing &best, const EdgeCrossing &crossing, double limit)
{
    if (crossing.x < limit && crossing.x > best.x)
        best = crossing;
}

EdgeCrossing crossLine(GridPoint from, GridPoint to, double y, double limit)
{
    EdgeCrossing best;
    const double low = static_cast<double>(from.y), high = static_cast<double>(to.y);
    const bool crosses = (low <= y && y < high) || (high <= y && y < low);
    if (crosses) {
        const double share = (y - low) / (high - low);
        const double x = static_cast<double>(from.x) + share * static_cast<double>(to.x - from.x);
        keepRightmost(best, {x, share, to.y > from.y}, limit);
    }
    return best;
}

EdgeCrossing crossArc(GridPoint from, const GridEdge &arc, double y, double limit)
{
    EdgeCrossing best;
    const Point center{static_cast<double>(arc.center.x), static_cast<double>(arc.center.y)};
    const Point start = Point{static_cast<double>(from.x), static_cast<double>(from.y)} - center;
    const Point end = Point{static_cast<double>(arc.end.x), static_cast<double>(arc.end.y)} - center;
    const double radius = length(start);
    const double up = y - center.y;
    if (std::fabs(up) >= radius)
        return best;
    const double swept = std::fabs(sweptDegrees(start, {end, {}, arc.kind}));
    const double reach = std::sqrt((radius - up) * (radius + up));
    const bool isCounterClockwise = arc.kind == EdgeKind::ArcCounterClockwise;
    for (const double side : {-1.0, 1.0}) {
        const Point at{side * reach, up};
        const double turned = std::fabs(sweptDegrees(start, {at, {}, arc.kind}));
        if (turned <= swept)
            keepRightmost(best, {center.x + at.x, turned / swept, (at.x > 0.0) == isCounterClockwise}, limit);
    }
    return best;
}

// ---- crossings

Point pointOf(GridPoint p)
{
    return {static_cast<double>(p.x), static_cast<double>(p.y)};
}

bool linesMeet(Point a, Point b, Point c, Point d)
{
    const double first = cross(b - a, c - a), second = cross(b - a, d - a);
    const double third = cross(d - c, a - c), fourth = cross(d - c, b - c);
    if (first == 0.0 && second == 0.0) { // on one straight line
        const Point along = b - a;
        const double from = dot(c - a, along), to = dot(d - a, along);
        return std::max(from, to) >= 0.0 && std::min(from, to) <= dot(along, along);
    }
    return first * second <= 0.0 && third * fourth <= 0.0;
}

// Whether a point on the arc's circle belongs to the arc; `from` is where the arc starts.
bool isOnArc(GridPoint from, const GridEdge &arc, Point at)
{
    const Point center = pointOf(arc.center);
    const double swept =
        std::fabs(sweptDegrees(pointOf(from) - center, {pointOf(arc.end) - center, {}, arc.kind}));
    return std::fabs(sweptDegrees(pointOf(from) - center, {at - center, {}, arc.kind})) <= swept;
}

bool lineMeetsArc(Point a, Point b, GridPoint from, const GridEdge &arc)
{
    const Point along = b - a, toCenter = pointOf(arc.center) - a;
    const double reach = length(along), radius = radiusOf(from, arc.center);
    const double middle = dot(toCenter, along) / reach, aside = cross(along, toCenter) / reach;
    if (std::fabs(aside) > radius)
        return false;
    const double half = std::sqrt((radius - aside) * (radius + aside));
    for (const double at : {middle - half, middle + half}) {
        if (at >= 0.0 && at <= reach && isOnArc(from, arc, a + along * (at / reach)))
            return true;
    }
    return false;
}

bool arcsMeet(GridPoint from, const GridEdge &arc, GridPoint otherFrom, const GridEdge &other)
{
    const Point center = pointOf(arc.center), between = pointOf(other.center) - center;
    const double apart = length(between);
    const double radius = radiusOf(from, arc.center), otherRadius = radiusOf(otherFrom, other.center);
    if (apart > radius + otherRadius || apart < std::fabs(radius - otherRadius))
        return false;
    if (apart == 0.0)
        return isOnArc(from, arc, pointOf(otherFrom)) || isOnArc(otherFrom, other, pointOf(from));
    const double along = (apart * apart + (radius - otherRadius) * (radius + otherRadius)) / (2.0 * apart);
    const double aside = std::sqrt(std::max(0.0, (radius - along) * (radius + along)));
    const Point direction = between * (1.0 / apart), left = {-direction.y, direction.x};
    for (const double side : {-1.0, 1.0}) {
        const Point at = center + direction * along + left * (side * aside);
        if (isOnArc(from, arc, at) && isOnArc(otherFrom, other, at))
            return true;
    }
    return false;
}

bool edgesMeet(GridPoint from, const GridEdge &edge, GridPoint otherFrom, const GridEdge &other)
{
    const bool isLine = edge.kind == EdgeKind::Line, otherIsLine = other.kind == EdgeKind::Line;
    if (isLine && otherIsLine)
        return linesMeet(pointOf(from), pointOf(edge.end), pointOf(otherFrom), pointOf(other.end));
    if (isLine)
        return lineMeetsArc(pointOf(from), pointOf(edge.end), otherFrom, other);
    if (otherIsLine)
        return lineMeetsArc(pointOf(otherFrom), pointOf(other.end), from, edge);
    return arcsMeet(from, edge, otherFrom, other);
}

// Whether `at` lies inside: of the polygon of the corners, but for the segments between arcs and their
// chords.
bool encloses(const GridOutline &outline, Point at)
{
    bool inside = false;
    Point from = pointOf(outline.start);
    for (const GridEdge &edge : outline.edges) {
        const Point to = pointOf(edge.end);
        if ((from.y > at.y) != (to.y > at.y) &&
            at.x < from.x + (to.x - from.x) * (at.y - from.y) / (to.y - from.y))
            inside = !inside;
        if (edge.kind != EdgeKind::Line) {
            const double side = cross(to - from, at - from); // positive: left of the chord
            const bool bulgesLeft = edge.kind == EdgeKind::ArcClockwise;
            const bool isOnArcSide = bulgesLeft ? side > 0.0 : side < 0.0;
            if (isOnArcSide && distance(at, pointOf(edge.center)) < distance(from, pointOf(edge.center)))
                inside = !inside;
        }
        from = to;
    }
    return inside;
}

bool runsCounterClockwise(const GridOutline &outline)
{
    double doubled = 0.0;
    const Point origin = pointOf(outline.start);
    Point at = origin;
    for (const GridEdge &edge : outline.edges) {
        const Point end = pointOf(edge.end);
        doubled += cross(at - origin, end - origin);
        if (edge.kind != EdgeKind::Line) {
            const Point center = pointOf(edge.center);
            const double degrees = sweptDegrees(at - center, {end - center, {}, edge.kind});
            const Point spoke = at - center;
            doubled += dot(spoke, spoke) * (degrees * (pi / 180.0) - sineCosine(degrees).sine);
        }
        at = end;
    }
    return doubled > 0.0;
}

struct EdgeName
{
    std::uint32_t outline;
    std::uint32_t edge;
};

// Which edges reach into which cell of a square grid over all outlines.
class EdgeCells
{
public:
    explicit EdgeCells(const std::vector<GridOutline> &outlines) : m_outlines(outlines)
    {
        std::size_t count = 0;
        for (const GridOutline &outline : outlines) {
            for (std::size_t i = 0; i < outline.edges.size(); ++i)
                m_extent.add(extentOf(outline, i));
            count += outline.edges.size();
        }
        m_side = std::max<std::int64_t>(1, static_cast<std::int64_t>(std::sqrt(static_cast<double>(count))));
        m_cellWidth = (m_extent.high.x - m_extent.low.x) / m_side + 1;
        m_cellHeight = (m_extent.high.y - m_extent.low.y) / m_side + 1;
        fill();
    }

    // Whether edges of two outlines have a point in common.
    bool outlinesMeet() const
    {
        for (std::size_t cell = 0; cell + 1 < m_first.size(); ++cell) {
            for (std::uint32_t i = m_first[cell]; i < m_first[cell + 1]; ++i) {
                for (std::uint32_t k = i + 1; k < m_first[cell + 1]; ++k) {
                    if (meet(m_edges[i], m_edges[k]))
                        return true;
                }
            }
        }
        return false;
    }

    // The nearest edge left of `from` that does not belong to `hole` itself.
    bool landing(std::uint32_t hole, GridPoint from, Landing &result) const
    {
        EdgeCrossing best;
        const std::int64_t row = (from.y - m_extent.low.y) / m_cellHeight;
        for (std::int64_t column = (from.x - m_extent.low.x) / m_cellWidth; column >= 0; --column) {
            const std::size_t cell = static_cast<std::size_t>(row * m_side + column);
            for (std::uint32_t i = m_first[cell]; i < m_first[cell + 1]; ++i)
                consider(m_edges[i], hole, from, best, result);
            const double cellLeft = static_cast<double>(m_extent.low.x + column * m_cellWidth);
            if (best.x >= cellLeft)
                break;
        }
        if (best.x == -INFINITY)
            return false;
        result.at = {roundToNanometre(best.x), from.y};
        result.share = best.share;
        result.isUpwards = best.isUpwards;
        result.hole = hole;
        return true;
    }

private:
    static GridBox extentOf(const GridOutline &outline, std::size_t index)
    {
        const GridEdge &edge = outline.edges[index];
        GridBox box;
        box.add(outline.startOf(index));
        box.add(edge.end);
        if (edge.kind != EdgeKind::Line) {
            const auto radius = static_cast<std::int64_t>(std::ceil(radiusOf(edge.end, edge.center))) + 1;
            box.add(GridPoint{edge.center.x - radius, edge.center.y - radius});
            box.add(GridPoint{edge.center.x + radius, edge.center.y + radius});
        }
        return box;
    }

    // Calls `visit` with each cell that the edge may reach: row by row, a line only where it runs.
    template <typename Visit>
    void cellsOf(const GridOutline &outline, std::size_t index, Visit visit) const
    {
        const GridBox box = extentOf(outline, index);
        const GridEdge &edge = outline.edges[index];
        const GridPoint from = outline.startOf(index);
        const std::int64_t firstRow = (box.low.y - m_extent.low.y) / m_cellHeight;
        const std::int64_t lastRow = (box.high.y - m_extent.low.y) / m_cellHeight;
        for (std::int64_t row = firstRow; row <= lastRow; ++row) {
            std::int64_t left = box.low.x, right = box.high.x;
            if (edge.kind == EdgeKind::Line && edge.end.y != from.y) {
                const double slope =
                    static_cast<double>(edge.end.x - from.x) / static_cast<double>(edge.end.y - from.y);
                const std::int64_t bottom = std::max(box.low.y, m_extent.low.y + row * m_cellHeight);
                const std::int64_t top = std::min(box.high.y, m_extent.low.y + (row + 1) * m_cellHeight);
                const double a = static_cast<double>(from.x) + slope * static_cast<double>(bottom - from.y);
                const double b = static_cast<double>(from.x) + slope * static_cast<double>(top - from.y);
                left = std::max(left, roundToNanometre(std::floor(std::min(a, b))) - 1);
                right = std::min(right, roundToNanometre(std::ceil(std::max(a, b))) + 1);
            }
            for (std::int64_t column = (left - m_extent.low.x) / m_cellWidth;
                 column <= (right - m_extent.low.x) / m_cellWidth; ++column)
                visit(static_cast<std::size_t>(row * m_side + column));
        }
    }

    template <typename Visit>
    void forEachEdge(Visit visit) const
    {
        for (std::uint32_t o = 0; o < m_outlines.size(); ++o) {
            for (std::uint32_t e = 0; e < m_outlines[o].edges.size(); ++e)
                visit(EdgeName{o, e});
        }
    }

    // Counts the entries of each cell, then puts them in place.
    void fill()
    {
        m_first.assign(static_cast<std::size_t>(m_side * m_side) + 2, 0);
        forEachEdge([this](EdgeName name) {
            cellsOf(m_outlines[name.outline], name.edge, [this](std::size_t cell) { ++m_first[cell + 2]; });
        });
        for (std::size_t i = 2; i < m_first.size(); ++i)
            m_first[i] += m_first[i - 1];
        m_edges.resize(m_first.back());
        forEachEdge([this](EdgeName name) {
            cellsOf(m_outlines[name.outline], name.edge,
                    [this, name](std::size_t cell) { m_edges[m_first[cell + 1]++] = name; });
        });
    }

    bool meet(EdgeName a, EdgeName b) const
    {
        if (a.outline == b.outline)
            return false;
        const GridOutline &first = m_outlines[a.outline], &second = m_outlines[b.outline];
        return extentOf(first, a.edge).touches(extentOf(second, b.edge)) &&
               edgesMeet(first.startOf(a.edge), first.edges[a.edge], second.startOf(b.edge),
                         second.edges[b.edge]);
    }

    void consider(EdgeName name, std::uint32_t hole, GridPoint from, EdgeCrossing &best,
                  Landing &result) const
    {
        if (name.outline == hole)
            return;
        const GridOutline &outline = m_outlines[name.outline];
        const GridEdge &edge = outline.edges[name.edge];
        const GridPoint start = outline.startOf(name.edge);
        // A nanometre further left at least: so slits lead from hole to hole ever more to the left, never in
        // a ring. Half a nanometre above, where no edge begins or ends.
        const double y = static_cast<double>(from.y) + 0.5, limit = static_cast<double>(from.x) - 1.0;
        const EdgeCrossing crossing = edge.kind == EdgeKind::Line ? crossLine(start, edge.end, y, limit)
                                                                  : crossArc(start, edge, y, limit);
        if (crossing.x > best.x) {
            best = crossing;
            result.outline = name.outline;
            result.edge = name.edge;
        }
    }

    const std::vector<GridOutline> &m_outlines;
    GridBox m_extent;
    std::int64_t m_side = 1; // cells in a row and in a column
    std::int64_t m_cellWidth = 1, m_cellHeight = 1;
    std::vector<std::uint32_t> m_first; // by cell: its first entry in m_edges
    std::vector<EdgeName> m_edges;
};

// Walks the island, and at each landing the hole behind it, without recursion: a row of holes is as deep as
// it is long.
class SlitWalk
{
public:
    // `landings` in the order of their outlines, edges and shares.
    SlitWalk(const std::vector<GridOutline> &outlines, std::vector<Landing> landings)
        : m_outlines(outlines), m_landings(std::move(landings)), m_firstLanding(outlines.size() + 1, 0)
    {
        for (const Landing &landing : m_landings)
            ++m_firstLanding[landing.outline + 1];
        for (std::size_t i = 1; i < m_firstLanding.size(); ++i)
            m_firstLanding[i] += m_firstLanding[i - 1];
    }

    GridOutline walk()
    {
        m_result.start = m_outlines[0].start;
        m_at = m_result.start;
        m_stack.push_back({0, 0, m_firstLanding[0], {}});
        while (!m_stack.empty())
            step();
        return std::move(m_result);
    }

private:
    struct Place
    {
        std::uint32_t outline;
        std::size_t edge;
        std::size_t landing; // the next one of this outline
        GridPoint slitStart; // where the slit to this hole begins
    };

    void step()
    {
        Place &place = m_stack.back();
        const GridOutline &outline = m_outlines[place.outline];
        if (place.edge == outline.edges.size()) {
            const GridPoint back = place.slitStart;
            m_stack.pop_back();
            if (!m_stack.empty())
                lineTo(back);
            return;
        }
        const bool hasLanding =
            place.landing < m_firstLanding[place.outline + 1] && m_landings[place.landing].edge == place.edge;
        if (!hasLanding) {
            edgeTo(outline.edges[place.edge], outline.edges[place.edge].end);
            ++place.edge;
            return;
        }
        const Landing &landing = m_landings[place.landing];
        ++place.landing;
        edgeTo(outline.edges[place.edge], landing.at);
        const GridOutline &hole = m_outlines[landing.hole];
        lineTo(hole.start);
        m_stack.push_back({landing.hole, 0, m_firstLanding[landing.hole], landing.at});
    }

    void lineTo(GridPoint end)
    {
        if (end != m_at)
            m_result.edges.push_back({end, {}, EdgeKind::Line});
        m_at = end;
    }

    // The part of `edge` from the current point to `end`.
    void edgeTo(const GridEdge &edge, GridPoint end)
    {
        if (end != m_at)
            m_result.edges.push_back({end, edge.center, edge.kind});
        m_at = end;
    }

    const std::vector<GridOutline> &m_outlines;
    std::vector<Landing> m_landings;
    std::vector<std::size_t> m_firstLanding; // by outline
    std::vector<Place> m_stack;
    GridOutline m_result;
    GridPoint m_at;
};

} // namespace

GridOutline onGrid(const ContourView &contour, const Transform &map)
{
    OutlineBuilder builder(contour.start, map);
    Point from = contour.start;
    for (const Edge &edge : contour) {
        if (edge.kind == EdgeKind::Line)
            builder.line(edge.end);
        else
            builder.arc(from, edge);
        from = edge.end;
    }
    return builder.take();
}

std::optional<GridOutline> withSlits(GridOutline island, std::vector<GridOutline> holes)
{
    std::vector<GridOutline> outlines;
    outlines.reserve(holes.size() + 1);
    outlines.push_back(std::move(island));
    for (GridOutline &hole : holes) {
        if (hole.edges.empty())
            continue;
        splitCircles(hole);
        startAtLeftmost(hole);
        outlines.push_back(std::move(hole));
    }
    if (outlines.size() == 1)
        return std::move(outlines.front());
    splitCircles(outlines.front());
    const EdgeCells cells(outlines);
    if (cells.outlinesMeet())
        return std::nullopt;

    std::vector<bool> runsLeft; // by outline: counter-clockwise
    for (const GridOutline &outline : outlines)
        runsLeft.push_back(runsCounterClockwise(outline));
    std::vector<Landing> landings;
    for (std::uint32_t hole = 1; hole < outlines.size(); ++hole) {
        Landing landing;
        if (!cells.landing(hole, outlines[hole].start, landing))
            continue; // nothing left of it: outside of the island
        // Outlines do not meet, so the whole hole lies on one side of what is left of it.
        const bool isWithin = landing.isUpwards != runsLeft[landing.outline];
        const bool landsOnIsland = landing.outline == 0;
        // A hole is left out only when its place has been looked at twice.
        const Point place = pointOf(outlines[hole].start) + Point{-0.5, 0.5};
        if (isWithin == landsOnIsland || encloses(outlines[landing.outline], place) == landsOnIsland)
            landings.push_back(landing);
    }
    std::stable_sort(landings.begin(), landings.end(), [](const Landing &a, const Landing &b) {
        if (a.outline != b.outline)
            return a.outline < b.outline;
        return a.edge != b.edge ? a.edge < b.edge : a.share < b.share;
    });
    return SlitWalk(outlines, std::move(landings)).walk();
}

} // namespace cam
