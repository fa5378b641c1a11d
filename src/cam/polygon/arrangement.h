// Booleans of polygons on the grid: right wherever edges lie upon each other, touch or run along a cut.
//
// All edges are split where they meet, until they have no more than ends in common; those that lie upon each
// other become one edge, or none. A sweep counts how often each side of an edge is covered, and the edges
// between inside and outside are chained to rings. Coordinates are compared exactly; only crossings are
// rounded, to the grid.
#pragma once

#include "cam/polygon/gridpolygon.h"

#include <vector>

namespace cam {

enum class BooleanOperation { Union, Difference };

// The area where the winding numbers of `area` sum up to more than 0, united with or without that of `rings`:
// islands counter-clockwise, each followed by its holes, clockwise. No two edges lie upon each other. A ring
// may meet itself in single corners; holes touch neither each other nor their island.
std::vector<GridRing> combined(BooleanOperation operation, const std::vector<GridRing> &area,
                               const std::vector<GridRing> &rings);

// Whether `ring`, whichever way it runs, encloses places twice, or some on the wrong side, that are wider
// than what rounding makes (eight grid units). It may touch itself.
bool crossesItself(const GridRing &ring);

// The area, in square grid units, that `rings` enclose a number of times other than 0 or 1.
double repeatedArea(const std::vector<GridRing> &rings);

} // namespace cam
