// Every edge is split where it meets others. A piece belongs to the area's boundary when the area lies on one
// side of it only; such pieces are chained to contours.
#include "cam/model/coveredarea.h"

#include "cam/base/error.h"
#include "cam/model/winding.h"

#include <algorithm>
#include <cmath>

namespace cam {

namespace {

constexpr double shortestRadius = 1e-3; // nanometres: what rounding leaves of an arc without one

ContourView viewOf(const Outline &outline)
{
    return {outline.start, outline.edges.data(), outline.edges.size(), false};
}

// An edge of one of the bounds.
struct Side
{
    Point from;
    Edge edge;
    std::size_t bound;

    bool isLine() const { return edge.kind == EdgeKind::Line; }
    double radius() const { return distance(from, edge.center); }
};

void appendSides(std::vector<Side> &sides, const Outline &outline, std::size_t bound)
{
    for (std::size_t i = 0; i < outline.edges.size(); ++i) {
        const Side side{outline.startOf(i), outline.edges[i], bound};
        if (side.isLine() ? side.from != side.edge.end : side.radius() > shortestRadius)
            sides.push_back(side);
    }
}

double distanceTo(const Side &side, Point at)
{
    return side.isLine() ? distanceToSegment(side.from, side.edge.end, at)
                         : distanceToArc(side.from, side.edge, at);
}

// Where the endless line or the full circle of each meets that of the other, and where they come closest when
// that is within `tolerance`.
void meetingPoints(const Side &a, const Side &b, double tolerance, std::vector<Point> &points)
{
    if (a.isLine() && b.isLine()) {
        const Straight first{a.from, a.edge.end - a.from}, second{b.from, b.edge.end - b.from};
        const double sine =
            cross(first.direction, second.direction) / (length(first.direction) * length(second.direction));
        if (std::fabs(sine) > 1e-12)
            points.push_back(intersection(first, second));
        return;
    }
    if (a.isLine() || b.isLine()) {
        const Side &line = a.isLine() ? a : b, &arc = a.isLine() ? b : a;
        Point along = line.edge.end - line.from;
        along = along * (1.0 / length(along));
        const Point foot = line.from + along * dot(arc.edge.center - line.from, along);
        const double radius = arc.radius(), apart = distance(foot, arc.edge.center);
        if (std::fabs(apart - radius) <= tolerance)
            points.push_back(foot);
        if (apart < radius) {
            const double half = std::sqrt((radius - apart) * (radius + apart));
            points.push_back(foot + along * half);
            points.push_back(foot - along * half);
        }
        return;
    }
    const double apart = distance(a.edge.center, b.edge.center), first = a.radius(), second = b.radius();
    if (apart <= tolerance)
        return;
    const Point along = (b.edge.center - a.edge.center) * (1.0 / apart);
    const double reach = (apart * apart + (first - second) * (first + second)) / (2.0 * apart);
    const Point foot = a.edge.center + along * reach;
    const double overlap = (first - reach) * (first + reach);
    if (std::fabs(std::fabs(reach) - first) <= tolerance)
        points.push_back(a.edge.center + along * std::copysign(first, reach));
    if (overlap > 0.0) {
        const Point aside = Point{-along.y, along.x} * std::sqrt(overlap);
        points.push_back(foot + aside);
        points.push_back(foot - aside);
    }
}

// Points closer than the tolerance are one.
class Nodes
{
public:
    explicit Nodes(double tolerance) : m_tolerance(tolerance) {}

    std::size_t numberOf(Point at)
    {
        for (std::size_t i = 0; i < m_points.size(); ++i) {
            if (distance(m_points[i], at) <= m_tolerance)
                return i;
        }
        m_points.push_back(at);
        return m_points.size() - 1;
    }
    Point operator[](std::size_t number) const { return m_points[number]; }
    std::size_t size() const { return m_points.size(); }

private:
    double m_tolerance;
    std::vector<Point> m_points;
};

// Between two nodes; `start` lies within the tolerance of the first one, as the edge's end of the second.
struct Piece
{
    Point start;
    Edge edge;
    std::size_t from;
    std::size_t to;
    std::size_t bound;
    std::size_t side; // which one of all it is a part of
    bool isTurned;    // runs against it
};

Piece turned(const Piece &piece)
{
    Piece back = piece;
    back.start = piece.edge.end;
    back.edge.end = piece.start;
    if (piece.edge.kind != EdgeKind::Line)
        back.edge.kind = piece.edge.kind == EdgeKind::ArcClockwise ? EdgeKind::ArcCounterClockwise
                                                                   : EdgeKind::ArcClockwise;
    std::swap(back.from, back.to);
    back.isTurned = !piece.isTurned;
    return back;
}

class Chaining
{
public:
    Chaining(const std::vector<Outline> &bounds, const std::function<bool(Point)> &covers, double tolerance)
        : m_covers(covers), m_tolerance(tolerance), m_nodes(tolerance)
    {
        for (std::size_t i = 0; i < bounds.size(); ++i)
            appendSides(m_sides, bounds[i], i);
        for (std::size_t i = 0; i < m_sides.size(); ++i)
            split(i);
    }

    // False where a piece has no follower.
    bool chain(std::vector<Outline> &contours)
    {
        std::vector<bool> isUsed(m_pieces.size());
        for (std::size_t i = 0; i < m_pieces.size(); ++i) {
            if (isUsed[i])
                continue;
            std::vector<std::size_t> way;
            for (std::size_t at = i; at != m_pieces.size() && !isUsed[at]; at = follower(at)) {
                isUsed[at] = true;
                way.push_back(at);
            }
            if (follower(way.back()) != i)
                return false;
            contours.push_back(contourOf(way));
        }
        return true;
    }

private:
    void split(std::size_t index)
    {
        const Side &side = m_sides[index];
        std::vector<Point> points;
        for (const Side &other : m_sides) {
            points.push_back(other.from);
            points.push_back(other.edge.end);
            if (&other != &side)
                meetingPoints(side, other, m_tolerance, points);
        }
        struct Cut
        {
            double share;
            std::size_t node;
        };
        std::vector<Cut> cuts;
        for (const Point at : points) {
            if (distanceTo(side, at) > m_tolerance)
                continue;
            const Point along = side.edge.end - side.from;
            const double share = side.isLine()
                                     ? dot(at - side.from, along) / dot(along, along)
                                     : sweptDegrees(side.from, {at, side.edge.center, side.edge.kind}) /
                                           sweptDegrees(side.from, side.edge);
            cuts.push_back({share, m_nodes.numberOf(at)});
        }
        const std::size_t first = m_nodes.numberOf(side.from), last = m_nodes.numberOf(side.edge.end);
        cuts.erase(std::remove_if(cuts.begin(), cuts.end(),
                                  [&](const Cut &cut) { return cut.node == first || cut.node == last; }),
                   cuts.end());
        std::sort(cuts.begin(), cuts.end(), [](const Cut &a, const Cut &b) { return a.share < b.share; });
        cuts.push_back({1.0, last});
        std::size_t from = first;
        double fromShare = 0.0;
        for (const Cut &cut : cuts) {
            const bool isCircle = cuts.size() == 1 && side.from == side.edge.end;
            if (cut.node == from && !isCircle)
                continue;
            take({m_nodes[from],
                  {m_nodes[cut.node], side.edge.center, side.edge.kind},
                  from,
                  cut.node,
                  side.bound,
                  index,
                  false},
                 pointOf(side.from, side.edge, (fromShare + cut.share) / 2.0));
            from = cut.node;
            fromShare = cut.share;
        }
    }

    // Keeps a piece that has the area on one side, with the area to its left. `middle` lies on the true edge:
    // nodes may lie a little beside it.
    void take(const Piece &piece, const EdgePoint &middle)
    {
        const Point aside = middle.left * (m_tolerance / 4.0);
        const bool isLeft = m_covers(middle.at + aside), isRight = m_covers(middle.at - aside);
        if (isLeft == isRight)
            return;
        const Piece kept = isLeft ? piece : turned(piece);
        const bool isKnown = std::any_of(m_pieces.begin(), m_pieces.end(), [&](const Piece &other) {
            return other.from == kept.from && other.to == kept.to &&
                   distance(pointOf(other.start, other.edge, 0.5).at, middle.at) <= m_tolerance;
        });
        if (!isKnown)
            m_pieces.push_back(kept);
    }

    // The direction of a piece at its start or, looking back, at its end: to where it has run a quarter of
    // the shortest piece there, since pieces may begin in one direction.
    Point directionOf(const Piece &piece, bool isBack, double reach) const
    {
        const Piece &way = isBack ? turned(piece) : piece;
        return pointOf(way.start, way.edge, std::min(1.0, reach / lengthOf(way))).at - way.start;
    }

    static double lengthOf(const Piece &piece)
    {
        if (piece.edge.kind == EdgeKind::Line)
            return distance(piece.start, piece.edge.end);
        return std::fabs(sweptDegrees(piece.start, piece.edge)) / 57.29577951308232 *
               distance(piece.start, piece.edge.center);
    }

    // The piece that bounds the same part of the area behind `index`: the first one clockwise from there.
    // Their number when there is none.
    std::size_t follower(std::size_t index) const
    {
        const Piece &piece = m_pieces[index];
        std::vector<std::size_t> next;
        double reach = lengthOf(piece) / 4.0;
        for (std::size_t i = 0; i < m_pieces.size(); ++i) {
            if (m_pieces[i].from != piece.to)
                continue;
            next.push_back(i);
            reach = std::min(reach, lengthOf(m_pieces[i]) / 4.0);
        }
        if (next.size() < 2)
            return next.empty() ? m_pieces.size() : next.front();
        const Point back = directionOf(piece, true, reach);
        const auto clockwise = [&](std::size_t i) {
            const Point ahead = directionOf(m_pieces[i], false, reach);
            const double angle = -std::atan2(cross(back, ahead), dot(back, ahead));
            return angle > 0.0 ? angle : angle + 6.283185307179586;
        };
        return *std::min_element(next.begin(), next.end(),
                                 [&](std::size_t a, std::size_t b) { return clockwise(a) < clockwise(b); });
    }

    // Pieces of one side that follow each other are one edge again.
    Outline contourOf(std::vector<std::size_t> way) const
    {
        const auto goesOn = [&](std::size_t i) {
            const Piece &before = m_pieces[way[(i + way.size() - 1) % way.size()]], &piece = m_pieces[way[i]];
            const bool isSame = before.side == piece.side ||
                                (before.edge.kind != EdgeKind::Line && before.bound == piece.bound &&
                                 before.edge.kind == piece.edge.kind &&
                                 distance(before.edge.center, piece.edge.center) <= m_tolerance);
            return isSame && before.isTurned == piece.isTurned;
        };
        std::size_t start = way.size();
        for (std::size_t i = 0; i < way.size(); ++i) {
            const std::size_t before = way[(i + way.size() - 1) % way.size()];
            const bool comesUponFirst = m_pieces[way[i]].bound == 0 && m_pieces[before].bound != 0;
            if (comesUponFirst || (start == way.size() && !goesOn(i)))
                start = i;
            if (comesUponFirst)
                break;
        }
        if (start != way.size())
            std::rotate(way.begin(), way.begin() + static_cast<std::ptrdiff_t>(start), way.end());
        Outline contour;
        contour.start = m_pieces[way.front()].start;
        for (std::size_t i = 0; i < way.size(); ++i) {
            const Edge &edge = m_pieces[way[i]].edge;
            if (i > 0 && goesOn(i))
                contour.edges.back().end = edge.end;
            else
                contour.edges.push_back(edge);
        }
        contour.edges.back().end = contour.start;
        return contour;
    }

    const std::function<bool(Point)> &m_covers;
    double m_tolerance;
    Nodes m_nodes;
    std::vector<Side> m_sides;
    std::vector<Piece> m_pieces;
};

Outline reversed(const Outline &outline)
{
    Outline back;
    back.start = outline.start;
    for (std::size_t i = outline.edges.size(); i-- > 0;) {
        const Edge &edge = outline.edges[i];
        const EdgeKind kind = edge.kind == EdgeKind::Line           ? EdgeKind::Line
                              : edge.kind == EdgeKind::ArcClockwise ? EdgeKind::ArcCounterClockwise
                                                                    : EdgeKind::ArcClockwise;
        back.edges.push_back({outline.startOf(i), edge.center, kind});
    }
    return back;
}

} // namespace

bool contains(const Outline &outline, Point at)
{
    return windingNumber(viewOf(outline), at) != 0;
}

bool contains(const Outline &outer, const Outline &inner)
{
    constexpr double tolerance = 0.01; // nanometres
    std::vector<Side> outside, inside;
    appendSides(outside, outer, 0);
    appendSides(inside, inner, 0);
    for (const Side &a : outside) {
        for (const Side &b : inside) {
            std::vector<Point> points{a.from, b.from};
            meetingPoints(a, b, tolerance, points);
            for (const Point at : points) {
                if (distanceTo(a, at) <= tolerance && distanceTo(b, at) <= tolerance)
                    return false;
            }
        }
    }
    return contains(outer, inner.start);
}

void addCoveredArea(ContourPool &pool, const std::vector<Outline> &bounds,
                    const std::function<bool(Point)> &covers)
{
    // Edges that almost touch may need a coarser look.
    for (const double tolerance : {0.01, 0.1, 1.0, 10.0}) { // nanometres
        std::vector<Outline> contours;
        if (!Chaining(bounds, covers, tolerance).chain(contours))
            continue;
        for (const Outline &contour : contours) {
            const bool isHole = signedArea(viewOf(contour)) < 0.0;
            add(pool, isHole ? reversed(contour) : contour, isHole);
        }
        return;
    }
    throw SymbolError("the outline of a symbol could not be found: expected edges that close");
}

} // namespace cam
