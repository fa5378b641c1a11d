#include "drawing/snapsearch.h"

#include "cam/model/winding.h"

#include <algorithm>
#include <cmath>

namespace drawing {

using cam::Edge;
using cam::EdgeKind;
using cam::Point;

void SnapSearch::point(Point place, Snap::Kind kind)
{
    const double far = cam::distance(place, m_at);
    if (far <= m_reach && far < m_pointFar) {
        m_pointFar = far;
        m_point = Snap{place, kind};
    }
}

void SnapSearch::edge(Point place)
{
    const double far = cam::distance(place, m_at);
    if (far <= m_reach && far < m_edgeFar) {
        m_edgeFar = far;
        m_edge = Snap{place, Snap::Kind::Edge};
    }
}

void SnapSearch::segment(Point from, Point to)
{
    const Point along = to - from;
    const double square = cam::dot(along, along);
    const double share =
        square > 0.0 ? std::min(1.0, std::max(0.0, cam::dot(m_at - from, along) / square)) : 0.0;
    edge(from + along * share);
}

void SnapSearch::arc(Point from, const Edge &arc)
{
    const Point spoke = m_at - arc.center;
    const double far = cam::length(spoke), radius = cam::distance(from, arc.center);
    if (!(far > 0.0))
        return;
    const Point place = arc.center + spoke * (radius / far);
    if (cam::distanceToArc(from, arc, place) < radius * 1e-6 + 1.0)
        edge(place);
}

void SnapSearch::contour(const cam::ContourView &contour, const cam::Transform &map)
{
    for (const auto [from, edge] : contour.walk()) {
        const Point a = map(from), b = map(edge.end);
        if (edge.kind == EdgeKind::Line) {
            segment(a, b);
            point(b, Snap::Kind::Corner);
            continue;
        }
        Edge mappedArc{b, map(edge.center), edge.kind};
        if (map.turnsOver())
            mappedArc.kind =
                edge.kind == EdgeKind::ArcClockwise ? EdgeKind::ArcCounterClockwise : EdgeKind::ArcClockwise;
        arc(a, mappedArc);
        point(mappedArc.center, Snap::Kind::Center);
        if (a != b)
            point(b, Snap::Kind::Corner);
    }
}

void SnapSearch::line(Point from, const Edge &edge, double width)
{
    point(from, Snap::Kind::End);
    point(edge.end, Snap::Kind::End);
    if (edge.kind == EdgeKind::Line) {
        point((from + edge.end) * 0.5, Snap::Kind::Center);
        const Point along = edge.end - from;
        const double far = cam::length(along);
        if (!(far > 0.0))
            return;
        const Point aside = Point{-along.y, along.x} * (width / 2.0 / far);
        segment(from + aside, edge.end + aside);
        segment(from - aside, edge.end - aside);
        return;
    }
    point(edge.center, Snap::Kind::Center);
    const double radius = cam::distance(from, edge.center);
    for (const double half : {width / 2.0, -width / 2.0}) {
        if (!(radius + half > 0.0))
            continue;
        const double share = (radius + half) / radius;
        arc(edge.center + (from - edge.center) * share,
            {edge.center + (edge.end - edge.center) * share, edge.center, edge.kind});
    }
}

bool covers(const cam::ContourPool &pool, std::size_t first, std::size_t count, Point at)
{
    int depth = 0;
    for (std::size_t i = first; i < first + count; ++i) {
        if (cam::windingNumber(pool[i], at) != 0)
            depth += pool[i].isHole ? -1 : 1;
    }
    return depth > 0;
}

double distanceToContours(const cam::ContourPool &pool, std::size_t first, std::size_t count, Point at)
{
    double nearest = 1e300;
    for (std::size_t i = first; i < first + count; ++i)
        nearest = std::min(nearest, cam::distanceTo(pool[i], at));
    return nearest;
}

cam::Box boxAround(Point at, double reach)
{
    cam::Box box;
    box.add(at - Point{reach, reach});
    box.add(at + Point{reach, reach});
    return box;
}

} // namespace drawing
