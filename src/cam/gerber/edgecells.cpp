#include "cam/gerber/edgecells.h"

#include "cam/gerber/gerberstream.h"
#include "cam/model/arccrossing.h"

#include <algorithm>
#include <cmath>

namespace cam {

namespace {

// ---- crossings with a horizontal

// The rightmost crossing of an edge with the line at height `y` that lies left of `limit`; x is -INFINITY
// where there is none.
LevelCrossing rightmostCrossing(GridPoint from, const GridEdge &edge, double y, double limit)
{
    LevelCrossing best;
    best.x = -INFINITY;
    const auto consider = [&best, limit](const LevelCrossing &crossing) {
        if (crossing.x < limit && crossing.x > best.x)
            best = crossing;
    };
    if (edge.kind != EdgeKind::Line) {
        const Edge arc = {pointOf(edge.end), pointOf(edge.center), edge.kind};
        const ArcCrossings crossings = crossingsOf(pointOf(from), arc, y);
        std::for_each(crossings.begin(), crossings.end(), consider);
        return best;
    }
    const double low = static_cast<double>(from.y), high = static_cast<double>(edge.end.y);
    if ((low <= y) != (high <= y)) {
        const double share = (y - low) / (high - low);
        const double x = static_cast<double>(from.x) + share * static_cast<double>(edge.end.x - from.x);
        consider({x, share, edge.end.y > from.y});
    }
    return best;
}

// ---- meetings

// Nearer than that, edges of two outlines are taken to touch: what is rounded later must not make them cross.
constexpr double touching = 2.0; // nanometres

double distanceToLine(Point p, Point a, Point b)
{
    const Point along = b - a;
    const double share = std::clamp(dot(p - a, along) / dot(along, along), 0.0, 1.0);
    return distance(p, a + along * share);
}

bool isNearArc(Point p, GridPoint from, const GridEdge &arc)
{
    if (std::fabs(distance(p, pointOf(arc.center)) - radiusOf(from, arc)) <= touching &&
        runsThrough(from, arc, p))
        return true;
    return distance(p, pointOf(from)) <= touching || distance(p, pointOf(arc.end)) <= touching;
}

bool isNear(Point p, GridPoint from, const GridEdge &edge)
{
    return edge.kind == EdgeKind::Line ? distanceToLine(p, pointOf(from), pointOf(edge.end)) <= touching
                                       : isNearArc(p, from, edge);
}

bool linesCross(Point a, Point b, Point c, Point d)
{
    const double first = cross(b - a, c - a), second = cross(b - a, d - a);
    const double third = cross(d - c, a - c), fourth = cross(d - c, b - c);
    return ((first > 0.0 && second < 0.0) || (first < 0.0 && second > 0.0)) &&
           ((third > 0.0 && fourth < 0.0) || (third < 0.0 && fourth > 0.0));
}

// Where the straight line through a and b meets the circle, or comes nearest to it, as far as that lies
// between a and b.
int circlePoints(Point a, Point b, Point center, double radius, Point *points)
{
    const Point along = b - a, toCenter = center - a;
    const double reach = length(along);
    const double middle = dot(toCenter, along) / reach, aside = std::fabs(cross(along, toCenter)) / reach;
    if (aside > radius + touching)
        return 0;
    const double half = std::sqrt(std::max(0.0, (radius - aside) * (radius + aside)));
    int count = 0;
    for (const double at : {middle - half, middle + half}) {
        if (at >= 0.0 && at <= reach)
            points[count++] = a + along * (at / reach);
    }
    return count;
}

// Where two circles meet, or come nearest to each other; `apart` is the distance of their centres, not 0.
int circlePoints(Point center, double radius, Point otherCenter, double otherRadius, Point *points)
{
    const Point between = otherCenter - center;
    const double apart = length(between);
    if (apart > radius + otherRadius + touching || apart < std::fabs(radius - otherRadius) - touching)
        return 0;
    const double along = (apart * apart + (radius - otherRadius) * (radius + otherRadius)) / (2.0 * apart);
    const double aside = std::sqrt(std::max(0.0, (radius - along) * (radius + along)));
    const Point direction = between * (1.0 / apart), left = {-direction.y, direction.x};
    points[0] = center + direction * along + left * aside;
    points[1] = center + direction * along - left * aside;
    return 2;
}

bool areConcentric(const GridEdge &arc, const GridEdge &other)
{
    return distance(pointOf(arc.center), pointOf(other.center)) <= touching;
}

// The points that two edges of which one at least is an arc may have in common, besides their ends.
int candidates(GridPoint from, const GridEdge &edge, GridPoint otherFrom, const GridEdge &other,
               Point *points)
{
    if (edge.kind == EdgeKind::Line)
        return circlePoints(pointOf(from), pointOf(edge.end), pointOf(other.center),
                            radiusOf(otherFrom, other), points);
    if (other.kind == EdgeKind::Line)
        return circlePoints(pointOf(otherFrom), pointOf(other.end), pointOf(edge.center),
                            radiusOf(from, edge), points);
    if (areConcentric(edge, other))
        return 0;
    return circlePoints(pointOf(edge.center), radiusOf(from, edge), pointOf(other.center),
                        radiusOf(otherFrom, other), points);
}

bool edgesMeet(GridPoint from, const GridEdge &edge, GridPoint otherFrom, const GridEdge &other)
{
    if (isNear(pointOf(from), otherFrom, other) || isNear(pointOf(edge.end), otherFrom, other) ||
        isNear(pointOf(otherFrom), from, edge) || isNear(pointOf(other.end), from, edge))
        return true;
    if (edge.kind == EdgeKind::Line && other.kind == EdgeKind::Line)
        return linesCross(pointOf(from), pointOf(edge.end), pointOf(otherFrom), pointOf(other.end));
    Point points[2];
    const int count = candidates(from, edge, otherFrom, other, points);
    return std::any_of(points, points + count,
                       [&](Point p) { return isNear(p, from, edge) && isNear(p, otherFrom, other); });
}

// Whether `edge` and the one after it, which begins where it ends, have more than that point in common. Where
// a line runs smoothly into an arc, rounding lets them cross again nearby: what they enclose there is thinner
// than a nanometre.
bool neighboursMeet(GridPoint from, const GridEdge &edge, const GridEdge &next)
{
    const Point a = pointOf(from), corner = pointOf(edge.end), b = pointOf(next.end);
    const bool isLine = edge.kind == EdgeKind::Line, nextIsLine = next.kind == EdgeKind::Line;
    if (isLine && nextIsLine)
        return cross(corner - a, b - corner) == 0.0 && dot(corner - a, b - corner) < 0.0;
    if (!isLine && !nextIsLine && areConcentric(edge, next)) {
        if (edge.kind != next.kind)
            return true;
        const Point center = pointOf(edge.center);
        const double swept = sweptDegrees(a - center, {corner - center, {}, edge.kind}) +
                             sweptDegrees(corner - center, {b - center, {}, next.kind});
        return std::fabs(swept) > 360.0 + 1e-3;
    }
    double radius = INFINITY;
    if (!isLine)
        radius = radiusOf(from, edge);
    if (!nextIsLine)
        radius = std::min(radius, radiusOf(edge.end, next));
    const double nearby = std::max(touching, std::sqrt(8.0 * radius));
    Point points[2];
    const int count = candidates(from, edge, edge.end, next, points);
    return std::any_of(points, points + count, [&](Point p) {
        const bool isShared = distance(p, corner) <= nearby || (from == next.end && distance(p, a) <= nearby);
        return !isShared && isNear(p, from, edge) && isNear(p, edge.end, next);
    });
}

GridBox widened(GridBox box)
{
    const auto margin = static_cast<std::int64_t>(touching);
    box.low = {box.low.x - margin, box.low.y - margin};
    box.high = {box.high.x + margin, box.high.y + margin};
    return box;
}

} // namespace

EdgeCells::EdgeCells(const std::vector<GridOutline> &outlines) : m_outlines(outlines)
{
    std::size_t count = 0;
    for (const GridOutline &outline : outlines) {
        m_firstBox.push_back(count);
        count += outline.edges.size();
    }
    m_boxes.reserve(count);
    for (const GridOutline &outline : outlines) {
        for (std::size_t i = 0; i < outline.edges.size(); ++i) {
            m_boxes.push_back(widened(extentOf(outline.startOf(i), outline.edges[i])));
            m_extent.add(m_boxes.back());
        }
    }
    m_side = std::max<std::int64_t>(1, static_cast<std::int64_t>(std::sqrt(static_cast<double>(count))));
    m_cellWidth = (m_extent.high.x - m_extent.low.x) / m_side + 1;
    m_cellHeight = (m_extent.high.y - m_extent.low.y) / m_side + 1;
    fill();
}

void EdgeCells::forEachMeeting(const OutlinePair &isWanted,
                               const std::function<void(std::uint32_t, std::uint32_t)> &visit) const
{
    for (std::size_t cell = 0; cell + 1 < m_first.size(); ++cell) {
        for (std::uint32_t i = m_first[cell]; i < m_first[cell + 1]; ++i) {
            for (std::uint32_t k = i + 1; k < m_first[cell + 1]; ++k) {
                const std::uint32_t one = m_edges[i].outline, other = m_edges[k].outline;
                if (isWanted(one, other) && meet(m_edges[i], m_edges[k]))
                    visit(one, other);
            }
        }
    }
}

bool EdgeCells::findLeft(GridPoint from, const std::vector<bool> &isLeftOut, Landing &result) const
{
    LevelCrossing best;
    best.x = -INFINITY;
    // Half a nanometre above, where no edge begins or ends. A nanometre further left at least: so slits lead
    // from hole to hole ever more to the left, never in a ring.
    const double y = static_cast<double>(from.y) + 0.5, limit = static_cast<double>(from.x) - 1.0;
    result.isAmbiguous = false;
    const std::int64_t row = (from.y - m_extent.low.y) / m_cellHeight;
    for (std::int64_t column = (from.x - m_extent.low.x) / m_cellWidth; column >= 0; --column) {
        const std::size_t cell = static_cast<std::size_t>(row * m_side + column);
        for (std::uint32_t i = m_first[cell]; i < m_first[cell + 1]; ++i) {
            const EdgeName name = m_edges[i];
            if (isLeftOut[name.outline])
                continue;
            const GridOutline &outline = m_outlines[name.outline];
            const GridEdge &edge = outline.edges[name.edge];
            const GridPoint start = outline.startOf(name.edge);
            const LevelCrossing crossing = rightmostCrossing(start, edge, y, limit);
            if (crossing.x == -INFINITY || crossing.x < best.x - touching)
                continue;
            const bool isSame = name.outline == result.outline && name.edge == result.edge;
            if (best.x == -INFINITY || crossing.x > best.x + touching)
                result.isAmbiguous = false;
            else if (!isSame)
                result.isAmbiguous = true;
            if (crossing.x > best.x) {
                best = crossing;
                result.outline = name.outline;
                result.edge = name.edge;
            }
        }
        if (best.x >= static_cast<double>(m_extent.low.x + column * m_cellWidth))
            break;
    }
    if (best.x == -INFINITY)
        return false;
    result.at = {roundToNanometre(best.x), from.y};
    result.share = best.share;
    result.isUpwards = best.isUpwards;
    return true;
}

// Calls `visit` with each cell that the edge may reach: row by row, a line only where it runs.
template <typename Visit>
void EdgeCells::cellsOf(EdgeName name, Visit visit) const
{
    const GridEdge &edge = m_outlines[name.outline].edges[name.edge];
    const GridPoint from = m_outlines[name.outline].startOf(name.edge);
    const GridBox &box = boxOf(name);
    const auto margin = static_cast<std::int64_t>(touching);
    const std::int64_t firstRow = (box.low.y - m_extent.low.y) / m_cellHeight;
    const std::int64_t lastRow = (box.high.y - m_extent.low.y) / m_cellHeight;
    for (std::int64_t row = firstRow; row <= lastRow; ++row) {
        std::int64_t left = box.low.x, right = box.high.x;
        if (edge.kind == EdgeKind::Line && edge.end.y != from.y && firstRow != lastRow) {
            const double slope =
                static_cast<double>(edge.end.x - from.x) / static_cast<double>(edge.end.y - from.y);
            const std::int64_t bottom = std::max(box.low.y, m_extent.low.y + row * m_cellHeight - margin);
            const std::int64_t top = std::min(box.high.y, m_extent.low.y + (row + 1) * m_cellHeight + margin);
            const double a = static_cast<double>(from.x) + slope * static_cast<double>(bottom - from.y);
            const double b = static_cast<double>(from.x) + slope * static_cast<double>(top - from.y);
            left = std::max(left, roundToNanometre(std::floor(std::min(a, b))) - margin);
            right = std::min(right, roundToNanometre(std::ceil(std::max(a, b))) + margin);
        }
        const std::int64_t last = (right - m_extent.low.x) / m_cellWidth;
        for (std::int64_t column = (left - m_extent.low.x) / m_cellWidth; column <= last; ++column)
            visit(static_cast<std::size_t>(row * m_side + column));
    }
}

template <typename Visit>
void EdgeCells::forEachEdge(Visit visit) const
{
    for (std::uint32_t o = 0; o < m_outlines.size(); ++o) {
        for (std::uint32_t e = 0; e < m_outlines[o].edges.size(); ++e)
            visit(EdgeName{o, e});
    }
}

// Counts the entries of each cell, then puts them in place.
void EdgeCells::fill()
{
    m_first.assign(static_cast<std::size_t>(m_side * m_side) + 2, 0);
    forEachEdge([this](EdgeName name) { cellsOf(name, [this](std::size_t cell) { ++m_first[cell + 2]; }); });
    for (std::size_t i = 2; i < m_first.size(); ++i)
        m_first[i] += m_first[i - 1];
    m_edges.resize(m_first.back());
    forEachEdge([this](EdgeName name) {
        cellsOf(name, [this, name](std::size_t cell) { m_edges[m_first[cell + 1]++] = name; });
    });
}

bool EdgeCells::meet(EdgeName a, EdgeName b) const
{
    if (!boxOf(a).touches(boxOf(b)))
        return false;
    const GridOutline &first = m_outlines[a.outline], &second = m_outlines[b.outline];
    const GridPoint from = first.startOf(a.edge), otherFrom = second.startOf(b.edge);
    const GridEdge &edge = first.edges[a.edge], &other = second.edges[b.edge];
    const std::size_t count = first.edges.size();
    if (a.outline == b.outline && (a.edge + 1) % count == b.edge)
        return neighboursMeet(from, edge, other);
    if (a.outline == b.outline && (b.edge + 1) % count == a.edge)
        return neighboursMeet(otherFrom, other, edge);
    return edgesMeet(from, edge, otherFrom, other);
}

} // namespace cam
