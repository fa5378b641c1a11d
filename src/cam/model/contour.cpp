#include "cam/model/contour.h"

#include "cam/model/trigonometry.h"

#include <cassert>
#include <cmath>

namespace cam {

void ContourPool::begin(Point start, bool isHole)
{
    m_headers.push_back({start, m_edges.size(), isHole});
}

void ContourPool::end()
{
    assert(!m_headers.empty());
    const Header &last = m_headers.back();
    const bool hasEdges = m_edges.size() > last.firstEdge;
    if (hasEdges && m_edges.back().end != last.start)
        lineTo(last.start);
}

void ContourPool::addCircle(Point center, double radius, bool isHole)
{
    const Point start = {center.x + radius, center.y};
    begin(start, isHole);
    arcTo(start, center, isHole);
    end();
}

void ContourPool::addPolygon(const Point *corners, std::size_t count, bool isHole)
{
    if (count == 0)
        return;
    begin(corners[0], isHole);
    for (std::size_t i = 1; i < count; ++i)
        lineTo(corners[i]);
    end();
}

void ContourPool::add(const ContourView &contour, const Transform &map)
{
    begin(map(contour.start), contour.isHole);
    for (const Edge &edge : contour) {
        if (edge.kind == EdgeKind::Line) {
            lineTo(map(edge.end));
            continue;
        }
        const bool clockwise = (edge.kind == EdgeKind::ArcClockwise) != map.turnsOver();
        arcTo(map(edge.end), map(edge.center), clockwise);
    }
    end();
}

ContourView ContourPool::operator[](std::size_t index) const
{
    const Header &header = m_headers[index];
    const std::size_t end = index + 1 < m_headers.size() ? m_headers[index + 1].firstEdge : m_edges.size();
    return {header.start, m_edges.data() + header.firstEdge, end - header.firstEdge, header.isHole};
}

void ContourPool::clear()
{
    m_headers.clear();
    m_edges.clear();
}

double sweptDegrees(Point start, const Edge &arc)
{
    const Point from = start - arc.center;
    const Point to = arc.end - arc.center;
    if (start == arc.end)
        return arc.kind == EdgeKind::ArcClockwise ? -360.0 : 360.0;
    double degrees = directionDegrees(dot(from, to), cross(from, to)); // counter-clockwise
    if (arc.kind == EdgeKind::ArcClockwise)
        degrees = degrees == 0.0 ? 0.0 : degrees - 360.0;
    return degrees;
}

double signedArea(const ContourView &contour)
{
    double doubled = 0.0;
    for (const auto [at, edge] : contour.walk()) {
        doubled += cross(at - contour.start, edge.end - contour.start);
        if (edge.kind != EdgeKind::Line) {
            // The segment between chord and arc: r^2 (angle - sin(angle)), with the sign of the angle.
            const double degrees = sweptDegrees(at, edge);
            const Point spoke = at - edge.center;
            const double sine = sineCosine(degrees).sine;
            doubled += dot(spoke, spoke) * (degrees * (pi / 180.0) - sine);
        }
    }
    return doubled / 2.0;
}

Box extent(const ContourView &contour)
{
    Box box;
    box.add(contour.start);
    for (const auto [at, edge] : contour.walk()) {
        box.add(edge.end);
        if (edge.kind != EdgeKind::Line) {
            const double radius = distance(at, edge.center);
            const double from = directionDegrees(at.x - edge.center.x, at.y - edge.center.y);
            const double swept = sweptDegrees(at, edge);
            const Point tips[4] = {{radius, 0.0}, {0.0, radius}, {-radius, 0.0}, {0.0, -radius}};
            for (int quarter = 0; quarter < 4; ++quarter) {
                double ahead = quarter * 90.0 - from;
                if (swept < 0.0)
                    ahead = -ahead;
                if (ahead < 0.0)
                    ahead += 360.0;
                if (ahead < std::fabs(swept))
                    box.add(edge.center + tips[quarter]);
            }
        }
    }
    return box;
}

} // namespace cam
