#include "cam/verify/corners.h"

#include "cam/model/trigonometry.h"
#include "cam/polygon/arrangement.h"

#include <algorithm>
#include <cmath>

namespace cam::verify {

namespace {

// Radians of the arc from `from` to its end, counter-clockwise positive.
double sweepOf(Point from, const Edge &arc)
{
    const bool isClockwise = arc.kind == EdgeKind::ArcClockwise;
    if (from == arc.end)
        return isClockwise ? -2.0 * pi : 2.0 * pi;
    const Point start = from - arc.center, end = arc.end - arc.center;
    double sweep = std::atan2(cross(start, end), dot(start, end));
    if (isClockwise && sweep > 0.0)
        sweep -= 2.0 * pi;
    else if (!isClockwise && sweep < 0.0)
        sweep += 2.0 * pi;
    return sweep;
}

constexpr double mostSteps = 1e6; // of arcs far larger than any board

// Radians that a chord of a circle may span.
double chordAngle(double radius, double tolerance)
{
    return std::min(2.0 * std::acos(std::max(0.0, 1.0 - tolerance / radius)), pi / 2.0);
}

void addEven(Point from, const Edge &arc, double tolerance, std::vector<Point> &corners)
{
    const Point start = from - arc.center;
    const double startRadius = std::hypot(start.x, start.y), endRadius = distance(arc.center, arc.end);
    const double radius = std::max(startRadius, endRadius);
    const double sweep = sweepOf(from, arc);
    if (!(radius > 0.0))
        return corners.push_back(arc.end);
    double steps = std::ceil(std::fabs(sweep) / chordAngle(radius, tolerance) - 1e-9);
    if (from == arc.end)
        steps = std::ceil(steps / 4.0) * 4.0; // it touches its box
    const auto count = static_cast<std::size_t>(std::clamp(steps, 1.0, mostSteps));
    const double first = std::atan2(start.y, start.x);
    for (std::size_t i = 1; i < count; ++i) {
        const double share = static_cast<double>(i) / static_cast<double>(count);
        const double here = startRadius + share * (endRadius - startRadius), angle = first + share * sweep;
        corners.push_back(arc.center + Point{here * std::cos(angle), here * std::sin(angle)});
    }
    corners.push_back(arc.end);
}

// Unit vectors at `count` equal steps; the tables are made once.
const std::vector<Point> &compass(int power, bool isThreefold)
{
    constexpr int powers = 19;
    struct Tables
    {
        std::vector<Point> of[2][powers];
        Tables()
        {
            for (int three = 0; three < 2; ++three) {
                for (int i = 0; i < powers - 3; ++i) { // larger ones are computed point by point
                    const int count = (three ? 3 : 2) << (i + 2);
                    if (count > 1 << 14)
                        break;
                    for (int j = 0; j < count; ++j) {
                        const SineCosine at = sineCosine(360.0 * j / count);
                        of[three][i].push_back({at.cosine, at.sine});
                    }
                }
            }
        }
    };
    static const Tables tables;
    return tables.of[isThreefold ? 1 : 0][std::min(power, powers - 1)];
}

void addCompass(Point from, const Edge &arc, double tolerance, std::vector<Point> &corners)
{
    const Point start = from - arc.center;
    const double startRadius = std::hypot(start.x, start.y), endRadius = distance(arc.center, arc.end);
    const double radius = std::max(startRadius, endRadius);
    if (!(radius > 0.0))
        return corners.push_back(arc.end);
    // 8, 12, 16, 24, 32 ... of a full circle.
    const double wanted = 2.0 * pi / chordAngle(radius, tolerance) - 1e-9;
    int power = 0;
    bool isThreefold = false;
    while (static_cast<double>((isThreefold ? 3 : 2) << (power + 2)) < wanted && power < 20) {
        if (isThreefold)
            ++power;
        isThreefold = !isThreefold;
    }
    const std::int64_t count = static_cast<std::int64_t>(isThreefold ? 3 : 2) << (power + 2);
    const std::vector<Point> &table = compass(power, isThreefold);
    const double sweep = sweepOf(from, arc), first = std::atan2(start.y, start.x);
    const double step = 2.0 * pi / static_cast<double>(count);
    // None that nearly falls on an end: rounding decides on which side of it.
    const double apart = std::min(30.0 / radius, step / 4.0);
    const auto add = [&](std::int64_t n, double angle) {
        const double share = (angle - first) / sweep;
        const double here = startRadius + share * (endRadius - startRadius);
        const std::int64_t index = ((n % count) + count) % count;
        const Point unit =
            table.empty() ? Point{std::cos(angle), std::sin(angle)} : table[static_cast<std::size_t>(index)];
        corners.push_back(arc.center + unit * here);
    };
    if (sweep > 0.0) {
        const double last = first + sweep - apart;
        for (auto n = static_cast<std::int64_t>(std::ceil((first + apart) / step));
             static_cast<double>(n) * step <= last; ++n)
            add(n, static_cast<double>(n) * step);
    } else if (sweep < 0.0) {
        const double last = first + sweep + apart;
        for (auto n = static_cast<std::int64_t>(std::floor((first - apart) / step));
             static_cast<double>(n) * step >= last; --n)
            add(n, static_cast<double>(n) * step);
    }
    corners.push_back(arc.end);
}

void addDisc(ContourPool &pool, Point center, double radius, ArcCorners where)
{
    if (where == ArcCorners::Compass)
        return pool.addCircle(center, radius, false);
    // Two halves, as the ends of strokes are.
    const Point below = center - Point{0.0, radius}, above = center + Point{0.0, radius};
    pool.begin(below, false);
    pool.arcTo(above, center, false);
    pool.arcTo(below, center, false);
    pool.end();
}

} // namespace

void addCorners(Point from, const Edge &edge, ArcCorners where, double tolerance, std::vector<Point> &corners)
{
    if (edge.kind == EdgeKind::Line)
        corners.push_back(edge.end);
    else if (where == ArcCorners::Even)
        addEven(from, edge, tolerance, corners);
    else
        addCompass(from, edge, tolerance, corners);
}

void addCorners(const ContourView &contour, ArcCorners where, double tolerance, std::vector<Point> &corners)
{
    // A circle's start is no corner of it.
    if (where == ArcCorners::Compass && contour.edgeCount == 1 && contour.edges[0].kind != EdgeKind::Line) {
        const Edge &circle = contour.edges[0];
        const double radius = distance(contour.start, circle.center);
        const Point right = circle.center + Point{radius, 0.0};
        addCorners(right, {right, circle.center, circle.kind}, where, tolerance, corners);
        return;
    }
    const std::size_t first = corners.size();
    corners.push_back(contour.start);
    Point at = contour.start;
    for (const Edge &edge : contour) {
        addCorners(at, edge, where, tolerance, corners);
        at = edge.end;
    }
    if (corners.size() > first + 1 && corners.back() == corners[first])
        corners.pop_back();
}

void addStroke(ContourPool &pool, Point from, const Edge &edge, double radius, ArcCorners where)
{
    if (!(radius > 0.0))
        return;
    if (edge.kind == EdgeKind::Line) {
        const double size = distance(from, edge.end);
        if (!(size > 0.0))
            return addDisc(pool, from, radius, where);
        const Point ahead = (edge.end - from) * (radius / size), left = {-ahead.y, ahead.x};
        pool.begin(edge.end - left, false);
        pool.arcTo(edge.end + left, edge.end, false);
        pool.lineTo(from + left);
        pool.arcTo(from - left, from, false);
        return pool.end();
    }
    const Point spoke = from - edge.center, lastSpoke = edge.end - edge.center;
    const double far = std::hypot(spoke.x, spoke.y), lastFar = std::hypot(lastSpoke.x, lastSpoke.y);
    if (!(far > 0.0) || !(lastFar > 0.0))
        return addDisc(pool, from, radius, where);
    if (from == edge.end) {
        pool.addCircle(edge.center, far + radius, false);
        if (far > radius) {
            const Point start = edge.center + Point{far - radius, 0.0};
            pool.begin(start, true);
            pool.arcTo(start, edge.center, true);
            pool.end();
        }
        return;
    }
    addDisc(pool, from, radius, where);
    addDisc(pool, edge.end, radius, where);
    Point begin = spoke, end = lastSpoke;
    double beginFar = far, endFar = lastFar;
    if (edge.kind == EdgeKind::ArcClockwise) {
        std::swap(begin, end);
        std::swap(beginFar, endFar);
    }
    const Point center = edge.center;
    pool.begin(center + begin * ((beginFar + radius) / beginFar), false);
    pool.arcTo(center + end * ((endFar + radius) / endFar), center, false);
    if (beginFar > radius && endFar > radius) {
        pool.lineTo(center + end * ((endFar - radius) / endFar));
        pool.arcTo(center + begin * ((beginFar - radius) / beginFar), center, true);
    } else {
        pool.lineTo(center);
    }
    pool.end();
}

GridRing onGrid(const std::vector<Point> &corners, const Transform &map)
{
    GridRing ring;
    Grid(1.0).round(corners.data(), corners.size(), map, ring);
    if (ring.size() < 3)
        ring.clear();
    return ring;
}

GridRing reversed(GridRing ring)
{
    std::reverse(ring.begin(), ring.end());
    return ring;
}

std::vector<GridRing> filled(const GridRing &ring)
{
    return combined(BooleanOperation::Union, {ring}, {reversed(ring)});
}

void clip(std::vector<GridRing> &rings, const GridBox &box)
{
    GridRing part;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < rings.size(); ++i) {
        GridBox around;
        around.add(rings[i]);
        if (!around.touches(box))
            continue;
        GridRing ring = std::move(rings[i]);
        const auto cut = [&](bool crosses, bool alongX, std::int64_t at, bool keepLow) {
            if (!crosses || ring.empty())
                return;
            cutRing(ring, alongX, at, keepLow, part);
            ring.swap(part);
        };
        cut(around.low.x < box.low.x, true, box.low.x, false);
        cut(around.high.x > box.high.x, true, box.high.x, true);
        cut(around.low.y < box.low.y, false, box.low.y, false);
        cut(around.high.y > box.high.y, false, box.high.y, true);
        if (!ring.empty())
            rings[kept++] = std::move(ring);
    }
    rings.resize(kept);
}

} // namespace cam::verify
