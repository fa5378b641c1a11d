#include "drawing/flattening.h"

#include "cam/model/flatten.h"
#include "cam/model/trigonometry.h"

#include <algorithm>
#include <cmath>

namespace drawing {

using cam::ContourView;
using cam::Edge;
using cam::EdgeKind;
using cam::Point;
using cam::Transform;

namespace {

// How far a chord may lie from its curve, in samples.
constexpr double curveTolerance = 0.05;
// Corners nearer to each other than this, in samples, are drawn as one.
constexpr double sameCorner = 0.25;

// Radians that an arc turns by, counter-clockwise ones positive.
double turnOf(Point from, Point to, const Edge &arc, bool isCircle)
{
    const bool isClockwise = arc.kind == EdgeKind::ArcClockwise;
    if (isCircle)
        return isClockwise ? -2.0 * cam::pi : 2.0 * cam::pi;
    const double turn = std::atan2(cam::cross(from, to), cam::dot(from, to));
    if (isClockwise)
        return turn > 0.0 ? turn - 2.0 * cam::pi : turn;
    return turn < 0.0 ? turn + 2.0 * cam::pi : turn;
}

// Into how many steps an arc is divided; `radius` in samples. A circle touches its box at corners.
int stepsOf(double radius, double turn, bool isCircle)
{
    const double step = std::sqrt(8.0 * curveTolerance / std::max(radius, curveTolerance));
    const int steps = 1 + static_cast<int>(std::min(1e6, std::fabs(turn) / std::min(step, cam::pi / 2.0)));
    return isCircle ? (steps + 3) / 4 * 4 : steps;
}

} // namespace

Flattening::Flattening(const Transform &map, bool merges)
    : m_map(map), m_stretch(cam::largestStretch(map)), m_merges(merges)
{
}

void Flattening::addCorner(Point sample, Rings &rings) const
{
    const std::size_t first = rings.ends.empty() ? 0 : rings.ends.back();
    if (m_merges && rings.corners.size() > first) {
        const Point last = rings.corners.back();
        if (std::fabs(sample.x - last.x) < sameCorner && std::fabs(sample.y - last.y) < sameCorner)
            return;
    }
    rings.corners.push_back(sample);
}

void Flattening::add(const ContourView &contour, Rings &rings) const
{
    addCorner(m_map(contour.start), rings);
    for (const auto [from, edge] : contour.walk()) {
        if (edge.kind == EdgeKind::Line)
            addCorner(m_map(edge.end), rings);
        else
            addArc(from, edge, rings);
    }
}

// An arc whose ends have unequal distances from the centre runs evenly from one to the other.
void Flattening::addArc(Point start, const Edge &arc, Rings &rings) const
{
    const Point from = start - arc.center, to = arc.end - arc.center;
    const bool isCircle = start == arc.end;
    const double startRadius = std::sqrt(cam::dot(from, from)), endRadius = std::sqrt(cam::dot(to, to));
    const double radius = std::max(startRadius, endRadius) * m_stretch;
    if (m_merges && 2.0 * radius < sameCorner)
        return addCorner(m_map(arc.end), rings);
    const double turn = turnOf(from, to, arc, isCircle);
    const int steps = stepsOf(radius, turn, isCircle);
    const double growth = startRadius > 0.0 ? (endRadius - startRadius) / (startRadius * steps) : 0.0;
    const double cosine = std::cos(turn / steps), sine = std::sin(turn / steps);
    // As far outside of the arc as the polygon's area is the arc's: small circles have few corners.
    const double outside = steps > 1 ? std::sqrt(turn / steps / sine) : 1.0;
    // Mapped, both legs of the turn go round the mapped centre.
    const Point center = m_map(arc.center);
    const Point ahead = m_map.linear(from), aside = m_map.linear({-from.y, from.x});
    double across = 1.0, up = 0.0;
    for (int i = 1; i < steps; ++i) {
        const double before = across;
        across = across * cosine - up * sine;
        up = up * cosine + before * sine;
        addCorner(center + (ahead * across + aside * up) * (outside * (1.0 + growth * i)), rings);
    }
    addCorner(m_map(arc.end), rings);
}

bool Flattening::isCircleOutside(const ContourView &contour, double width, double height) const
{
    if (contour.edgeCount != 1 || contour.edges->kind == EdgeKind::Line)
        return false;
    const Point center = m_map(contour.edges->center), spoke = contour.start - contour.edges->center;
    const double reach = std::sqrt(cam::dot(spoke, spoke)) * m_stretch;
    return center.x + reach < 0.0 || center.y + reach < 0.0 || center.x - reach > width ||
           center.y - reach > height;
}

} // namespace drawing
