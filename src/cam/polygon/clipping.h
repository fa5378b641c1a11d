// Booleans and growth of whole areas at once: for areas of a few thousand corners. PaintedArea does it for
// larger ones.
#pragma once

#include "cam/polygon/gridpolygon.h"

#include <functional>
#include <vector>

namespace cam {

// The union of rings where their winding numbers sum up to more than 0: islands counter-clockwise, each
// followed by its holes, clockwise. No two edges lie upon each other; a ring may meet itself in single
// corners.
std::vector<GridRing> cleaned(const std::vector<GridRing> &rings);

// The same of `area` and `rings`, and of `area` without `rings`; each counts by itself.
std::vector<GridRing> united(const std::vector<GridRing> &area, const std::vector<GridRing> &rings);
std::vector<GridRing> subtracted(const std::vector<GridRing> &area, const std::vector<GridRing> &rings);

// Every edge moved outwards by `distance` grid units (inwards when negative); corners stay sharp up to twice
// the distance, beyond that they are cut off. Takes and returns rings as cleaned() does.
std::vector<GridRing> resized(const std::vector<GridRing> &rings, double distance);

// Polygons without holes, of at most `mostCorners`, that cover what the (clean) rings cover.
void emitSimple(std::vector<GridRing> rings, std::size_t mostCorners,
                const std::function<void(const GridRing &)> &polygon);
// The same of one island, whose holes touch neither each other nor it.
void emitIsland(GridRing island, std::vector<GridRing> holes, std::size_t mostCorners,
                const std::function<void(const GridRing &)> &polygon);

} // namespace cam
