// Corner rounding and ray crossings.
#include "cam/model/outline.h"

#include "cam/model/trigonometry.h"

#include <algorithm>
#include <cmath>

namespace cam {

namespace {

Point unit(Point v)
{
    return v * (1.0 / length(v));
}

// To the right of a counter-clockwise edge is outside.
Point outwardNormal(Point from, Point to)
{
    const Point along = unit(to - from);
    return {along.y, -along.x};
}

constexpr double shortest = 1e-6; // nanometres: what rounding leaves of an edge without length

// Appends `edge` unless it has no length: an arc that ends where it starts would be a full circle.
void append(Outline &path, const Edge &edge)
{
    const Point at = path.isEmpty() ? path.start : path.edges.back().end;
    if (distance(at, edge.end) > shortest)
        path.edges.push_back(edge);
}

// Keeps the crossing that is farthest along the ray.
void consider(std::optional<Crossing> &best, std::size_t edge, double share, Point at, double distance)
{
    if (distance >= 0.0 && (!best || distance > best->distance))
        best = Crossing{edge, std::clamp(share, 0.0, 1.0), at, distance};
}

void crossLine(std::optional<Crossing> &best, const Ray &ray, const Outline &outline, std::size_t index)
{
    const Point from = outline.startOf(index);
    const Point along = outline.edges[index].end - from;
    const double across = cross(ray.direction, along);
    if (across == 0.0)
        return;
    const Point toEdge = from - ray.origin;
    const double share = cross(toEdge, ray.direction) / across;
    const double slack = 1e-9;
    if (share >= -slack && share <= 1.0 + slack)
        consider(best, index, share, from + along * share, cross(toEdge, along) / across);
}

void crossArc(std::optional<Crossing> &best, const Ray &ray, const Outline &outline, std::size_t index)
{
    const Edge &arc = outline.edges[index];
    const Point from = outline.startOf(index);
    const double radius = distance(from, arc.center);
    const Point toCenter = arc.center - ray.origin;
    const double along = dot(toCenter, ray.direction);
    const double aside = cross(ray.direction, toCenter);
    const double halfChordSquared = radius * radius - aside * aside;
    if (halfChordSquared < 0.0)
        return;
    const double swept = sweptDegrees(from, arc);
    for (const double side : {-1.0, 1.0}) {
        const double reach = along + side * std::sqrt(halfChordSquared);
        const Point at = ray.origin + ray.direction * reach;
        const double turned = sweptDegrees(from, {at, arc.center, arc.kind});
        double share = turned / swept;
        if (std::fabs(turned) > 359.999999 && std::fabs(swept) < 359.0)
            share = 0.0; // a hair before the arc's start
        if (share <= 1.0 + 1e-9)
            consider(best, index, share, at, reach);
    }
}

} // namespace

Point intersection(const Straight &a, const Straight &b)
{
    const double across = cross(a.direction, b.direction);
    return a.at + a.direction * (cross(b.at - a.at, b.direction) / across);
}

Outline circleOutline(Point center, double radius)
{
    Outline outline;
    if (radius <= 0.0)
        return outline;
    outline.start = {center.x + radius, center.y};
    outline.arcTo(outline.start, center);
    return outline;
}

Outline roundedOutline(const Polygon &polygon, const std::vector<double> &radii)
{
    Outline outline;
    const std::size_t count = polygon.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Point corner = polygon[i];
        const Point back = unit(polygon[(i + count - 1) % count] - corner);
        const Point ahead = unit(polygon[(i + 1) % count] - corner);
        const double radius = radii[i];
        const double cosine = dot(back, ahead); // of the corner's inner angle
        const double toTouch = radius > 0.0 ? radius * std::sqrt((1.0 + cosine) / (1.0 - cosine)) : 0.0;
        const Point first = corner + back * toTouch;
        if (outline.edges.empty() && i == 0)
            outline.start = first;
        else
            append(outline, {first, {}, EdgeKind::Line});
        if (radius <= 0.0)
            continue;
        const Point center = corner + (back + ahead) * (radius / std::sqrt((1.0 - cosine) * (1.0 + cosine)));
        const bool turnsLeft = cross(ahead, back) > 0.0;
        outline.arcTo(corner + ahead * toTouch, center,
                      turnsLeft ? EdgeKind::ArcCounterClockwise : EdgeKind::ArcClockwise);
    }
    if (outline.isEmpty())
        return outline;
    append(outline, {outline.start, {}, EdgeKind::Line});
    outline.edges.back().end = outline.start;
    return outline;
}

void add(ContourPool &pool, const Outline &outline, bool isHole)
{
    if (outline.isEmpty())
        return;
    pool.begin(outline.start, isHole);
    for (const Edge &edge : outline.edges) {
        if (edge.kind == EdgeKind::Line)
            pool.lineTo(edge.end);
        else
            pool.arcTo(edge.end, edge.center, edge.kind == EdgeKind::ArcClockwise);
    }
    pool.end();
}

Ray Ray::shifted(double distance) const
{
    return {origin + Point{-direction.y, direction.x} * distance, direction};
}

std::optional<Crossing> exitOf(const Ray &ray, const Outline &outline)
{
    std::optional<Crossing> best;
    for (std::size_t i = 0; i < outline.edges.size(); ++i) {
        if (outline.edges[i].kind == EdgeKind::Line)
            crossLine(best, ray, outline, i);
        else
            crossArc(best, ray, outline, i);
    }
    return best;
}

void walkForward(Outline &path, const Outline &outline, const Crossing &from, const Crossing &to)
{
    const std::size_t count = outline.edges.size();
    std::size_t index = from.edge;
    const bool onOneEdge = from.edge == to.edge && to.share >= from.share;
    if (!onOneEdge) {
        do {
            append(path, outline.edges[index]);
            index = (index + 1) % count;
        } while (index != to.edge);
    }
    Edge last = outline.edges[to.edge];
    last.end = to.at;
    append(path, last);
}

Outline parallel(const Outline &outline, double distance)
{
    const auto moved = [distance](Point at, Point from, const Edge &edge) {
        if (edge.kind == EdgeKind::Line)
            return at + outwardNormal(from, edge.end) * distance;
        const double outwards = edge.kind == EdgeKind::ArcCounterClockwise ? distance : -distance;
        return at + unit(at - edge.center) * outwards;
    };
    Outline result;
    if (outline.isEmpty())
        return result;
    result.start = moved(outline.start, outline.start, outline.edges.front());
    for (const auto [from, edge] : outline.walk())
        result.edges.push_back({moved(edge.end, from, edge), edge.center, edge.kind});
    result.edges.back().end = result.start;
    return result;
}

} // namespace cam
