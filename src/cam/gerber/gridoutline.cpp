#include "cam/gerber/gridoutline.h"

#include "cam/gerber/gerberstream.h"
#include "cam/model/flatten.h"
#include "cam/model/trigonometry.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace cam {

namespace {

GridPoint rounded(Point p)
{
    return {roundToNanometre(p.x), roundToNanometre(p.y)};
}

bool isHalfOrMore(Point from, const Edge &arc)
{
    const double side = cross(from - arc.center, arc.end - arc.center);
    return arc.kind == EdgeKind::ArcCounterClockwise ? side <= 0.0 : side >= 0.0;
}

// Nanometres. The centres of larger arcs may lie farther away than readers can count, which some do in 32
// bits: they are written as the corners that GDSII files have.
constexpr double largestRadius = 1e9;

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
        if (!hasOneRadius(from, edge) || distance(from, edge.center) * m_map.scale() > largestRadius)
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

// The way around `outline`, started at edge `first` instead.
void startAt(GridOutline &outline, std::size_t first)
{
    outline.start = outline.startOf(first);
    std::rotate(outline.edges.begin(), outline.edges.begin() + static_cast<std::ptrdiff_t>(first),
                outline.edges.end());
}

// Nearer points than that are not worth an arc between them: rounded, it may seem to go nowhere, or all
// around.
bool areNear(GridPoint a, GridPoint b)
{
    constexpr std::int64_t nanometres = 10;
    return std::abs(a.x - b.x) <= nanometres && std::abs(a.y - b.y) <= nanometres;
}

struct Leftmost
{
    GridPoint at;
    std::size_t edge = 0; // starts there, or is the arc that bulges there
    bool isOnArc = false;
};

Leftmost findLeftmost(const GridOutline &outline)
{
    Leftmost best;
    best.at = outline.start;
    for (std::size_t i = 0; i < outline.edges.size(); ++i) {
        const GridPoint from = outline.startOf(i);
        if (from.x < best.at.x)
            best = {from, i, false};
        const GridEdge &edge = outline.edges[i];
        if (edge.kind == EdgeKind::Line)
            continue;
        const GridPoint tip = {edge.center.x - roundToNanometre(radiusOf(from, edge)), edge.center.y};
        if (tip.x < best.at.x && !areNear(tip, from) && !areNear(tip, edge.end) &&
            runsThrough(from, edge, pointOf(tip)))
            best = {tip, i, true};
    }
    return best;
}

} // namespace

GridOutline onGrid(const ContourView &contour, const Transform &map)
{
    OutlineBuilder builder(contour.start, map);
    for (const auto [from, edge] : contour.walk()) {
        if (edge.kind == EdgeKind::Line)
            builder.line(edge.end);
        else
            builder.arc(from, edge);
    }
    return builder.take();
}

bool runsCounterClockwise(const GridOutline &outline)
{
    double doubled = 0.0;
    const Point origin = pointOf(outline.start);
    for (const auto [from, edge] : outline.walk()) {
        const Point at = pointOf(from), end = pointOf(edge.end);
        doubled += cross(at - origin, end - origin);
        if (edge.kind != EdgeKind::Line) {
            const Point center = pointOf(edge.center);
            const double degrees = sweptDegrees(at - center, {end - center, {}, edge.kind});
            const Point spoke = at - center;
            doubled += dot(spoke, spoke) * (degrees * (pi / 180.0) - sineCosine(degrees).sine);
        }
    }
    return doubled > 0.0;
}

void reverse(GridOutline &outline)
{
    for (std::size_t i = outline.edges.size(); i-- > 0;) {
        GridEdge &edge = outline.edges[i];
        edge.end = outline.startOf(i);
        if (edge.kind != EdgeKind::Line)
            edge.kind =
                edge.kind == EdgeKind::ArcClockwise ? EdgeKind::ArcCounterClockwise : EdgeKind::ArcClockwise;
    }
    std::reverse(outline.edges.begin(), outline.edges.end());
}

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

GridPoint leftmostOf(const GridOutline &outline)
{
    return findLeftmost(outline).at;
}

void startAtLeftmost(GridOutline &outline)
{
    Leftmost leftmost = findLeftmost(outline);
    if (leftmost.isOnArc) {
        GridEdge upToTip = outline.edges[leftmost.edge];
        upToTip.end = leftmost.at;
        outline.edges.insert(outline.edges.begin() + static_cast<std::ptrdiff_t>(leftmost.edge), upToTip);
        ++leftmost.edge;
    }
    startAt(outline, leftmost.edge);
}

GridRing ringOf(const GridOutline &outline)
{
    std::vector<Point> corners{pointOf(outline.start)};
    for (const auto [from, edge] : outline.walk()) {
        const Point end = pointOf(edge.end);
        if (edge.kind == EdgeKind::Line)
            corners.push_back(end);
        else
            flattenArc(pointOf(from), {end, pointOf(edge.center), edge.kind}, arcTolerance, corners);
    }
    GridRing ring;
    Grid(1.0).round(corners.data(), corners.size(), Transform(), ring);
    return ring;
}

bool runsThrough(GridPoint from, const GridEdge &arc, Point at)
{
    const Point center = pointOf(arc.center);
    Point first = pointOf(from) - center, last = pointOf(arc.end) - center;
    if (arc.kind == EdgeKind::ArcClockwise)
        std::swap(first, last);
    const Point spoke = at - center;
    if (cross(first, last) > 0.0) // less than half a turn
        return cross(first, spoke) >= 0.0 && cross(spoke, last) >= 0.0;
    return !(cross(last, spoke) > 0.0 && cross(spoke, first) > 0.0);
}

double radiusOf(GridPoint from, const GridEdge &arc)
{
    return distance(pointOf(from), pointOf(arc.center));
}

GridBox extentOf(GridPoint from, const GridEdge &edge)
{
    GridBox box;
    box.add(from);
    box.add(edge.end);
    if (edge.kind == EdgeKind::Line)
        return box;
    const auto radius = static_cast<std::int64_t>(std::ceil(radiusOf(from, edge))) + 1;
    const GridPoint center = edge.center;
    for (const GridPoint tip :
         {GridPoint{center.x + radius, center.y}, GridPoint{center.x, center.y + radius},
          GridPoint{center.x - radius, center.y}, GridPoint{center.x, center.y - radius}}) {
        if (runsThrough(from, edge, pointOf(tip)))
            box.add(tip);
    }
    return box;
}

} // namespace cam
