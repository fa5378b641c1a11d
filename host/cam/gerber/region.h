// Islands with holes as single closed outlines with true arcs: what a region of the file can hold.
#pragma once

#include "host/cam/geometry/contour.h"
#include "host/cam/geometry/gridpolygon.h"

#include <optional>
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

    GridPoint startOf(std::size_t index) const { return index == 0 ? start : edges[index - 1].end; }
    void clear() { edges.clear(); }
};

// `contour` under `map`, rounded; edges that vanish in rounding are left out. `map` must keep circles. An arc
// whose ends lie at clearly different distances from its centre becomes short lines.
GridOutline onGrid(const ContourView &contour, const Transform &map);

// One outline around an island and its holes. Each hole is reached by a slit: two equal and opposite straight
// edges from its leftmost point to what lies left of it. Holes outside of the island or inside of other holes
// take nothing away and are left out. Nothing when outlines cross or touch each other: that takes polygon
// booleans. The cost grows in proportion to the number of edges.
std::optional<GridOutline> withSlits(GridOutline island, std::vector<GridOutline> holes);

} // namespace cam
