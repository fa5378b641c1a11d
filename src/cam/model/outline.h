// Closed outlines while a symbol is built from them: corners that are rounded, and where rays leave.
#pragma once

#include "cam/model/contour.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace cam {

// Corners of a convex polygon, counter-clockwise.
using Polygon = std::vector<Point>;

// An endless line through `at`.
struct Straight
{
    Point at;
    Point direction;
};

// Where two that are not parallel cross.
Point intersection(const Straight &a, const Straight &b);

// One closed outline, counter-clockwise.
struct Outline
{
    Point start;
    std::vector<Edge> edges;

    bool isEmpty() const { return edges.empty(); }
    void lineTo(Point end) { edges.push_back({end, {}, EdgeKind::Line}); }
    void arcTo(Point end, Point center, EdgeKind kind = EdgeKind::ArcCounterClockwise)
    {
        edges.push_back({end, center, kind});
    }
    EdgeWalk<Point, Edge> walk() const { return {start, edges.data(), edges.size()}; }
    // The start of edge `index`.
    Point startOf(std::size_t index) const { return index == 0 ? start : edges[index - 1].end; }
};

Outline circleOutline(Point center, double radius);
// The corners of `polygon`, which need not be convex, whose entry in `radii` is positive become arcs that
// touch both edges.
Outline roundedOutline(const Polygon &polygon, const std::vector<double> &radii);
void add(ContourPool &pool, const Outline &outline, bool isHole);

// A ray, or the gap of a thermal: the half of a band of 2 * halfWidth that runs from `origin` along
// `direction` (of length 1).
struct Ray
{
    Point origin;
    Point direction;
    // The parallel ray `distance` to the left.
    Ray shifted(double distance) const;
};

// A point of an outline.
struct Crossing
{
    std::size_t edge = 0;
    double share = 0.0; // how much of the edge lies before it, 0 to 1
    Point at;
    double distance = 0.0; // from the ray's origin
};

// Where `ray` leaves `outline` for the last time.
std::optional<Crossing> exitOf(const Ray &ray, const Outline &outline);

// Appends the way along `outline` from one of its points to another, counter-clockwise; `path` stands at
// `from` already.
void walkForward(Outline &path, const Outline &outline, const Crossing &from, const Crossing &to);

// `outline`, whose edges meet without corners, moved outwards by `distance` edge by edge: crossings keep
// their edge and share.
Outline parallel(const Outline &outline, double distance);

} // namespace cam
