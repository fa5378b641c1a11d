// A point is reached when an edge is near enough, or when the moved edges of a corner enclose it. What is
// reached is bounded by moved edges, longer than they were.
#include "cam/model/growth.h"

#include "cam/base/error.h"
#include "cam/model/coveredarea.h"
#include "cam/model/winding.h"

#include <algorithm>
#include <cmath>

namespace cam {

namespace {

constexpr double sharpest = 0.1; // the sine of half the angle of the sharpest corner that stays sharp

ContourView viewOf(const Outline &outline)
{
    return {outline.start, outline.edges.data(), outline.edges.size(), false};
}

Outline outlineOf(const ContourView &contour)
{
    Outline outline;
    outline.start = contour.start;
    Point from = contour.start;
    for (const Edge &edge : contour) {
        if (edge.kind != EdgeKind::Line || edge.end != from)
            outline.edges.push_back(edge);
        from = edge.end;
    }
    return outline;
}

// How one outline, counter-clockwise, is moved.
class Moving
{
public:
    // `keepsSharp`: corners with arcs, too; without it they become round.
    Moving(const Outline &outline, double distance, bool keepsSharp)
        : m_outline(outline), m_distance(distance), m_reach(std::fabs(distance))
    {
        const std::size_t count = outline.edges.size();
        for (std::size_t i = 0; i < count; ++i)
            addBound(i);
        for (std::size_t i = 0; i < count; ++i)
            addCorner(i, (i + 1) % count, keepsSharp);
    }

    // What the moved area's edges lie on.
    const std::vector<Outline> &bounds() const { return m_bounds; }

    bool covers(Point at) const
    {
        const bool isInside = contains(m_outline, at);
        if (isInside == (m_distance > 0.0))
            return isInside;
        const bool isReached = distanceTo(viewOf(m_outline), at) < m_reach ||
                               std::any_of(m_corners.begin(), m_corners.end(), [&](const Corner &corner) {
                                   return isBetweenMovedEdges(corner, at);
                               });
        return m_distance > 0.0 ? isReached : !isReached;
    }

private:
    struct Corner
    {
        Point at;
        Point before, behind; // unit vectors along its edges
        std::size_t edge, next;
    };

    Point alongAt(std::size_t index, double share) const
    {
        const Point left = pointOf(m_outline.startOf(index), m_outline.edges[index], share).left;
        return {left.y, -left.x};
    }

    void addBound(std::size_t index)
    {
        const Point from = m_outline.startOf(index);
        const Edge &edge = m_outline.edges[index];
        if (edge.kind != EdgeKind::Line) {
            const double outwards = edge.kind == EdgeKind::ArcCounterClockwise ? m_distance : -m_distance;
            m_bounds.push_back(circleOutline(edge.center, distance(from, edge.center) + outwards));
            return;
        }
        const Point along = (edge.end - from) * (1.0 / distance(from, edge.end));
        const Point aside = Point{along.y, -along.x} * m_distance;
        const Point longer = along * (m_reach * 1.1 / sharpest);
        Outline line;
        line.start = from + aside - longer;
        line.lineTo(edge.end + aside + longer);
        m_bounds.push_back(line);
    }

    // Only where moved edges part.
    void addCorner(std::size_t index, std::size_t next, bool keepsSharp)
    {
        const Corner corner{m_outline.edges[index].end, alongAt(index, 1.0), alongAt(next, 0.0), index, next};
        const double turn = cross(corner.before, corner.behind), ahead = dot(corner.before, corner.behind);
        const bool parts = (turn > 0.0) == (m_distance > 0.0);
        const bool isTip = std::fabs(turn) < 1e-6 && ahead < 0.0;
        if (std::fabs(turn) < 1e-6 ? !isTip : !parts)
            return;
        const bool hasArc =
            m_outline.edges[index].kind != EdgeKind::Line || m_outline.edges[next].kind != EdgeKind::Line;
        if (!isTip && (!hasArc || keepsSharp) && std::sqrt((1.0 + ahead) / 2.0) > sharpest)
            m_corners.push_back(corner);
        else
            m_bounds.push_back(circleOutline(corner.at, m_reach));
    }

    bool isBetweenMovedEdges(const Corner &corner, Point at) const
    {
        const Point away = at - corner.at;
        return dot(away, corner.before) >= 0.0 && dot(away, corner.behind) <= 0.0 &&
               isWithinMoved(corner.edge, corner.before, away, at) &&
               isWithinMoved(corner.next, corner.behind, away, at);
    }

    // Whether the moved edge, run on beyond the corner where its direction is `along`, still lies beyond
    // `at`.
    bool isWithinMoved(std::size_t index, Point along, Point away, Point at) const
    {
        const double side = m_distance > 0.0 ? 1.0 : -1.0;
        const double ahead = side * dot(away, {along.y, -along.x});
        const Edge &edge = m_outline.edges[index];
        if (edge.kind == EdgeKind::Line)
            return ahead <= m_reach;
        const double radius = distance(edge.end, edge.center);
        const bool shrinks = (edge.kind == EdgeKind::ArcClockwise) == (m_distance > 0.0);
        const double beyond = distance(at, edge.center) - radius;
        if (!shrinks)
            return beyond <= m_reach;
        // It is gone when it reaches its centre.
        return radius <= m_reach ? ahead <= m_reach : ahead < radius && -beyond <= m_reach;
    }

    const Outline &m_outline;
    double m_distance;
    double m_reach;
    std::vector<Outline> m_bounds;
    std::vector<Corner> m_corners;
};

// The area of `outline` moved, as islands and holes.
Shape moved(const Outline &outline, double distance)
{
    Shape shape;
    const bool isCircle = outline.edges.size() == 1;
    if (isCircle) {
        const Point center = outline.edges.front().center;
        add(shape.contours, circleOutline(center, cam::distance(outline.start, center) + distance), false);
        return shape;
    }
    for (const bool keepsSharp : {true, false}) {
        const Moving moving(outline, distance, keepsSharp);
        try {
            addCoveredArea(shape.contours, moving.bounds(), [&](Point at) { return moving.covers(at); });
            return shape;
        } catch (const SymbolError &) {
            // Arcs that are moved may meet nowhere beyond their corner.
            if (!keepsSharp)
                throw;
        }
    }
    return shape;
}

bool covers(const Shape &shape, Point at)
{
    int sum = 0;
    for (std::size_t i = 0; i < shape.contours.size(); ++i) {
        if (windingNumber(shape.contours[i], at) != 0)
            sum += shape.contours[i].isHole ? -1 : 1;
    }
    return sum > 0;
}

void append(ContourPool &pool, const Shape &shape, bool asHoles)
{
    for (std::size_t i = 0; i < shape.contours.size(); ++i)
        add(pool, outlineOf(shape.contours[i]), shape.contours[i].isHole != asHoles);
}

// An island without its holes, both moved already.
void addDifference(ContourPool &pool, const Shape &island, const Shape &holes)
{
    std::vector<Outline> bounds;
    for (const Shape *shape : {&island, &holes}) {
        for (std::size_t i = 0; i < shape->contours.size(); ++i)
            bounds.push_back(outlineOf(shape->contours[i]));
    }
    const bool areApart =
        island.contours.size() == 1 && holes.contours.size() == 1 && contains(bounds[0], bounds[1]);
    if (holes.contours.isEmpty() || areApart) {
        append(pool, island, false);
        append(pool, holes, true);
        return;
    }
    addCoveredArea(pool, bounds, [&](Point at) { return covers(island, at) && !covers(holes, at); });
}

// Grids have thousands of equal pads.
bool isCopy(const Outline &a, const Outline &b)
{
    constexpr double rounding = 1e-4; // nanometres
    const Point by = b.start - a.start;
    return a.edges.size() == b.edges.size() &&
           std::equal(
               a.edges.begin(), a.edges.end(), b.edges.begin(), [by](const Edge &from, const Edge &to) {
                   return from.kind == to.kind && distance(from.end + by, to.end) < rounding &&
                          (from.kind == EdgeKind::Line || distance(from.center + by, to.center) < rounding);
               });
}

Shape translated(const Shape &shape, Point by)
{
    Shape copy;
    for (std::size_t i = 0; i < shape.contours.size(); ++i)
        copy.contours.add(shape.contours[i], Transform::translation(by));
    return copy;
}

} // namespace

Shape united(const Shape &shape)
{
    std::vector<Outline> bounds;
    for (std::size_t i = 0; i < shape.contours.size(); ++i)
        bounds.push_back(outlineOf(shape.contours[i]));
    Shape result;
    addCoveredArea(result.contours, bounds, [&](Point at) { return covers(shape, at); });
    return result;
}

Shape resized(const Shape &plain, double distance)
{
    if (distance == 0.0)
        return plain;
    Shape result, island;
    Outline outline;
    for (std::size_t i = 0; i < plain.contours.size();) {
        const Outline next = outlineOf(plain.contours[i]);
        if (isCopy(outline, next))
            island = translated(island, next.start - outline.start);
        else
            island = moved(next, distance);
        outline = next;
        Shape holes;
        for (++i; i < plain.contours.size() && plain.contours[i].isHole; ++i)
            append(holes.contours, moved(outlineOf(plain.contours[i]), -distance), false);
        if (!island.contours.isEmpty())
            addDifference(result.contours, island, holes);
    }
    return result;
}

} // namespace cam
