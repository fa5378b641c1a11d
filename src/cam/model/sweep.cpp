#include "cam/model/sweep.h"

#include "cam/model/flatten.h"
#include "cam/model/trigonometry.h"

#include <algorithm>
#include <cmath>

namespace cam {

SweptSymbol::SweptSymbol(const StandardSymbol &symbol, double growth, double tolerance)
    : m_tolerance(tolerance)
{
    switch (symbol.kind) {
    case SymbolKind::Round:
        m_form = Form::Round;
        makeRound((symbol.size[0] + growth) / 2.0);
        return;
    case SymbolKind::Square:
        if (symbol.angle != 0.0)
            break;
        m_form = Form::Rectangle;
        m_half = Point{symbol.size[0] + growth, symbol.size[0] + growth} * 0.5;
        return;
    default:
        break;
    }
    const Shape shape = shapeOf(symbol, growth);
    // A hole is filled by the sweep unless the way is shorter than the hole is wide: it is left out.
    for (std::size_t i = 0; i < shape.contours.size(); ++i) {
        if (shape.contours[i].isHole)
            continue;
        m_polygons.emplace_back();
        flatten(shape.contours[i], tolerance, m_polygons.back());
        if (signedArea(shape.contours[i]) < 0.0)
            std::reverse(m_polygons.back().begin(), m_polygons.back().end());
    }
}

SweptSymbol::SweptSymbol(std::vector<std::vector<Point>> polygons, double tolerance)
    : m_tolerance(tolerance), m_polygons(std::move(polygons))
{
}

bool SweptSymbol::isEmpty() const
{
    switch (m_form) {
    case Form::Round:
        return !(m_radius > 0.0);
    case Form::Rectangle:
        return !(m_half.x > 0.0 && m_half.y > 0.0);
    default:
        return m_polygons.empty();
    }
}

std::size_t SweptSymbol::corners() const
{
    switch (m_form) {
    case Form::Round:
        return 2 * m_cap.size();
    case Form::Rectangle:
        return 6;
    default:
        break;
    }
    std::size_t count = 0;
    for (const std::vector<Point> &polygon : m_polygons)
        count += 6 * polygon.size();
    return count;
}

void SweptSymbol::makeRound(double radius)
{
    m_radius = radius;
    if (!(radius > 0.0))
        return;
    const std::size_t steps = arcSteps(radius, 180.0, m_tolerance);
    for (std::size_t i = 0; i <= steps; ++i) {
        const SineCosine at = sineCosine(-90.0 + 180.0 * static_cast<double>(i) / static_cast<double>(steps));
        m_cap.push_back({at.cosine, at.sine});
    }
}

void SweptSymbol::sweep(const Line &line, PolygonSink &sink)
{
    if (!isEmpty())
        sweepSegment(line.start, line.end, sink);
}

void SweptSymbol::sweepSegment(Point start, Point end, PolygonSink &sink)
{
    if (m_form == Form::Round)
        sweepRound(start, end, sink);
    else if (m_form == Form::Rectangle)
        sweepRectangle(start, end, sink);
    else
        sweepAny(start, end, sink);
}

// Half a circle about `at`, open to the side opposite to `direction` (a unit vector), counter-clockwise.
void SweptSymbol::addCap(Point at, Point direction)
{
    const Point ahead = direction * m_radius;
    for (const Point cap : m_cap)
        m_corners.push_back(
            {at.x + ahead.x * cap.x - ahead.y * cap.y, at.y + ahead.y * cap.x + ahead.x * cap.y});
}

void SweptSymbol::sweepRound(Point start, Point end, PolygonSink &sink)
{
    const double far = distance(start, end);
    const Point direction = far > 0.0 ? (end - start) * (1.0 / far) : Point{1.0, 0.0};
    m_corners.clear();
    addCap(end, direction);
    addCap(start, -direction);
    sink.polygon(m_corners.data(), m_corners.size());
}

// The convex hull of the rectangle at both ends.
void SweptSymbol::sweepRectangle(Point start, Point end, PolygonSink &sink)
{
    if (start.x > end.x)
        std::swap(start, end);
    const double w = m_half.x;
    const double h = m_half.y;
    m_corners.clear();
    if (start.y <= end.y)
        m_corners = {start + Point{-w, -h}, start + Point{w, -h}, end + Point{w, -h},
                     end + Point{w, h},     end + Point{-w, h},   start + Point{-w, h}};
    else
        m_corners = {start + Point{-w, h}, start + Point{-w, -h}, end + Point{-w, -h},
                     end + Point{w, -h},   end + Point{w, h},     start + Point{w, h}};
    sink.polygon(m_corners.data(), m_corners.size());
}

// The polygon at both ends, and the parallelogram that each of its edges sweeps.
void SweptSymbol::sweepAny(Point start, Point end, PolygonSink &sink)
{
    for (const std::vector<Point> &polygon : m_polygons) {
        for (const Point at : {start, end}) {
            m_corners.clear();
            for (const Point corner : polygon)
                m_corners.push_back(corner + at);
            sink.polygon(m_corners.data(), m_corners.size());
            if (start == end)
                break;
        }
        if (start == end)
            continue;
        for (std::size_t i = 0; i < polygon.size(); ++i) {
            const Point a = polygon[i];
            const Point b = polygon[(i + 1) % polygon.size()];
            const double turn = cross(b - a, end - start);
            if (turn > 0.0)
                m_corners = {a + start, b + start, b + end, a + end};
            else if (turn < 0.0)
                m_corners = {a + start, a + end, b + end, b + start};
            else
                continue;
            sink.polygon(m_corners.data(), m_corners.size());
        }
    }
}

void SweptSymbol::sweep(const Arc &arc, PolygonSink &sink)
{
    if (isEmpty())
        return;
    const Edge edge = {arc.end, arc.center,
                       arc.clockwise ? EdgeKind::ArcClockwise : EdgeKind::ArcCounterClockwise};
    if (m_form == Form::Round && hasOneRadius(arc.start, edge))
        return sweepRoundArc(arc, sink);
    std::vector<Point> corners;
    flattenArc(arc.start, edge, m_tolerance, corners);
    Point at = arc.start;
    for (const Point corner : corners) {
        sweepSegment(at, corner, sink);
        at = corner;
    }
}

// Sectors of a ring of at most half a turn, so that none of them closes upon itself, and the symbol at both
// ends.
void SweptSymbol::sweepRoundArc(const Arc &arc, PolygonSink &sink)
{
    const Edge edge = {arc.end, arc.center,
                       arc.clockwise ? EdgeKind::ArcClockwise : EdgeKind::ArcCounterClockwise};
    const double degrees = sweptDegrees(arc.start, edge);
    const Point spoke = arc.start - arc.center;
    if (arc.start != arc.end) {
        sweepRound(arc.start, arc.start, sink);
        sweepRound(arc.end, arc.end, sink);
    }
    if (!(length(spoke) > 0.0))
        return sweepRound(arc.start, arc.start, sink);
    const int pieces = std::fabs(degrees) > 180.0 ? 2 : 1;
    for (int piece = 0; piece < pieces; ++piece) {
        const Point from = Transform::rotation(degrees * piece / pieces).linear(spoke);
        sweepSector(arc.center, from, degrees / pieces, sink);
    }
}

// Counter-clockwise, whichever way the arc runs.
void SweptSymbol::sweepSector(Point center, Point from, double degrees, PolygonSink &sink)
{
    Point to = Transform::rotation(degrees).linear(from);
    if (degrees < 0.0)
        std::swap(from, to);
    const double radius = length(from);
    const double outer = (radius + m_radius) / radius;
    const double inner = (radius - m_radius) / radius;
    m_corners.clear();
    m_corners.push_back(center + from * outer);
    flattenArc(center + from * outer, {center + to * outer, center, EdgeKind::ArcCounterClockwise},
               m_tolerance, m_corners);
    if (inner > 0.0) {
        m_corners.push_back(center + to * inner);
        flattenArc(center + to * inner, {center + from * inner, center, EdgeKind::ArcClockwise}, m_tolerance,
                   m_corners);
    } else {
        m_corners.push_back(center); // the symbol covers the middle
    }
    sink.polygon(m_corners.data(), m_corners.size());
}

} // namespace cam
