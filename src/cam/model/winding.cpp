// A ray to the right, and the edges that cross it.
#include "cam/model/winding.h"

#include "cam/model/arccrossing.h"
#include "cam/model/trigonometry.h"

#include <algorithm>
#include <cmath>

namespace cam {

namespace {

// An arc by its angles, in radians.
struct ArcAngles
{
    double from = 0.0;
    double sweep = 0.0; // positive counter-clockwise
    double startRadius = 0.0, endRadius = 0.0;

    double radius(double share) const { return startRadius + share * (endRadius - startRadius); }
    // Half a nanometre is what rounding to a file's grid makes of one radius.
    bool isCircular() const { return std::fabs(startRadius - endRadius) <= 0.5; }
};

ArcAngles anglesOf(Point from, const Edge &arc)
{
    const Point start = from - arc.center, end = arc.end - arc.center;
    ArcAngles angles;
    angles.from = std::atan2(start.y, start.x);
    angles.startRadius = std::hypot(start.x, start.y);
    angles.endRadius = std::hypot(end.x, end.y);
    const bool clockwise = arc.kind == EdgeKind::ArcClockwise;
    if (from == arc.end) {
        angles.sweep = clockwise ? -2.0 * pi : 2.0 * pi;
        return angles;
    }
    angles.sweep = std::atan2(cross(start, end), dot(start, end));
    if (clockwise && angles.sweep > 0.0)
        angles.sweep -= 2.0 * pi;
    else if (!clockwise && angles.sweep < 0.0)
        angles.sweep += 2.0 * pi;
    return angles;
}

Point polar(Point center, double radius, double angle)
{
    return {center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
}

// The half-open rule of crossing numbers: a lower end counts, an upper one does not.
int lineCrossing(Point from, Point to, Point at)
{
    const bool startsBelow = from.y <= at.y, endsBelow = to.y <= at.y;
    if (startsBelow == endsBelow)
        return 0;
    const double side = cross(to - from, at - from);
    if (startsBelow)
        return side > 0.0 ? 1 : 0;
    return side < 0.0 ? -1 : 0;
}

int arcCrossing(Point from, const Edge &arc, Point at)
{
    int sum = 0;
    for (const LevelCrossing &crossing : crossingsOf(from, arc, at.y)) {
        if (crossing.x > at.x)
            sum += crossing.isUpwards ? 1 : -1;
    }
    return sum;
}

// Calls `piece` with straight pieces that stay within a few nanometres of an arc of changing radius.
template <typename Piece>
void walkSpiral(Point from, const Edge &arc, const ArcAngles &angles, Piece piece)
{
    constexpr double tolerance = 2.0; // nanometres
    const double radius = std::max({angles.startRadius, angles.endRadius, 1.0});
    const double step = 2.0 * std::sqrt(2.0 * tolerance / std::max(radius, 8.0 * tolerance));
    constexpr double most = 20000.0; // of arcs far larger than any board
    const int count = static_cast<int>(std::min(std::fabs(angles.sweep) / step, most)) + 1;
    Point at = from;
    for (int i = 1; i <= count; ++i) {
        const double share = static_cast<double>(i) / count;
        const Point next = i == count
                               ? arc.end
                               : polar(arc.center, angles.radius(share), angles.from + angles.sweep * share);
        piece(at, next);
        at = next;
    }
}

} // namespace

int windingNumber(const ContourView &contour, Point at)
{
    int winding = 0;
    for (const auto [from, edge] : contour.walk()) {
        if (edge.kind == EdgeKind::Line) {
            winding += lineCrossing(from, edge.end, at);
        } else {
            const ArcAngles angles = anglesOf(from, edge);
            if (angles.isCircular())
                winding += arcCrossing(from, edge, at);
            else
                walkSpiral(from, edge, angles, [&](Point a, Point b) { winding += lineCrossing(a, b, at); });
        }
    }
    return winding;
}

double distanceToSegment(Point from, Point to, Point at)
{
    const Point along = to - from;
    const double square = dot(along, along);
    const double share = square > 0.0 ? std::clamp(dot(at - from, along) / square, 0.0, 1.0) : 0.0;
    const Point rest = at - (from + along * share);
    return std::hypot(rest.x, rest.y);
}

double distanceToArc(Point from, const Edge &arc, Point at)
{
    const ArcAngles angles = anglesOf(from, arc);
    if (!angles.isCircular()) {
        double nearest = distance(from, at);
        walkSpiral(from, arc, angles,
                   [&](Point a, Point b) { nearest = std::min(nearest, distanceToSegment(a, b, at)); });
        return nearest;
    }
    const Point spoke = at - arc.center;
    double ahead = std::atan2(spoke.y, spoke.x) - angles.from;
    if (angles.sweep < 0.0)
        ahead = -ahead;
    ahead = std::fmod(ahead, 2.0 * pi);
    if (ahead < 0.0)
        ahead += 2.0 * pi;
    if (ahead <= std::fabs(angles.sweep))
        return std::fabs(std::hypot(spoke.x, spoke.y) - (angles.startRadius + angles.endRadius) / 2.0);
    return std::min(distance(from, at), distance(arc.end, at));
}

double distanceTo(const ContourView &contour, Point at)
{
    double nearest = distance(contour.start, at);
    for (const auto [from, edge] : contour.walk()) {
        nearest = std::min(nearest, edge.kind == EdgeKind::Line ? distanceToSegment(from, edge.end, at)
                                                                : distanceToArc(from, edge, at));
    }
    return nearest;
}

EdgePoint pointOf(Point from, const Edge &edge, double share)
{
    if (edge.kind == EdgeKind::Line) {
        const Point along = edge.end - from;
        const double size = std::hypot(along.x, along.y);
        const Point unit = size > 0.0 ? along * (1.0 / size) : Point{1.0, 0.0};
        return {from + along * share, {-unit.y, unit.x}};
    }
    const ArcAngles angles = anglesOf(from, edge);
    const double angle = angles.from + angles.sweep * share;
    const Point outwards = {std::cos(angle), std::sin(angle)};
    return {edge.center + outwards * angles.radius(share), angles.sweep > 0.0 ? -outwards : outwards};
}

} // namespace cam
