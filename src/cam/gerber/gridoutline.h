// Closed outlines with true arcs on the file's grid: what a contour of the job becomes before it is written.
#pragma once

#include "cam/model/contour.h"
#include "cam/polygon/gridpolygon.h"

#include <vector>

namespace cam {

struct GridEdge
{
    GridPoint end;
    GridPoint center; // of an arc
    EdgeKind kind = EdgeKind::Line;
};

// A closed outline on the nanometre grid; the last edge ends at `start`. An arc that ends where it starts is
// a full circle.
struct GridOutline
{
    GridPoint start;
    std::vector<GridEdge> edges;

    EdgeWalk<GridPoint, GridEdge> walk() const { return {start, edges.data(), edges.size()}; }
    GridPoint startOf(std::size_t index) const { return index == 0 ? start : edges[index - 1].end; }
};

// `contour` under `map`, rounded; edges that vanish in rounding are left out. `map` must keep circles. An arc
// whose ends lie at clearly different distances from its centre becomes short lines.
GridOutline onGrid(const ContourView &contour, const Transform &map);

// By the signed area, arcs included; false for an outline without area.
bool runsCounterClockwise(const GridOutline &outline);
// The same outline run the other way; it starts where it did.
void reverse(GridOutline &outline);

// Full circles as two halves: between two points of an outline an edge then is either a part or nothing.
void splitCircles(GridOutline &outline);
// The point with the smallest x, that of an arc that bulges to the left among them.
GridPoint leftmostOf(const GridOutline &outline);
// Makes that point the start; an arc that bulges to the left is split there.
void startAtLeftmost(GridOutline &outline);

// The outline with corners for its arcs; see arcTolerance.
GridRing ringOf(const GridOutline &outline);

// Whether the arc that starts at `from` runs through `at`, a point on its circle.
bool runsThrough(GridPoint from, const GridEdge &arc, Point at);
double radiusOf(GridPoint from, const GridEdge &arc);
// The exact box around an edge.
GridBox extentOf(GridPoint from, const GridEdge &edge);

} // namespace cam
