// Cutting areas in two without a boolean, and where to cut.
#pragma once

#include "cam/polygon/gridpolygon.h"

namespace cam {

// A ring and the box around it.
struct BoxedRing
{
    GridRing ring;
    GridBox box;
};

// `ring` with its box.
BoxedRing boxed(GridRing &&ring);

// The middle one of `positions`, which must not be empty, and come in any order.
std::int64_t median(std::vector<std::int64_t> positions);
// That one as a place to cut an extent from `low` to `high`, at least 2 apart: never close to an end, so that
// both parts are smaller than the whole.
std::int64_t medianCut(std::vector<std::int64_t> positions, std::int64_t low, std::int64_t high);

// Cuts the area inside `rings` (islands counter-clockwise, holes clockwise, apart from each other, without
// equal neighbours among their corners) along the line x = at (`alongX`) or y = at into `low` and `high`,
// whose rings are of that kind again; `rings` is empty then. The rings of both sides have the same corners on
// the line. False, with nothing cut, when what crosses the line does not enter and leave the area by turns:
// the rings are then none of that kind. Slits (edges that lie upon each other) are fine.
bool cutApart(std::vector<BoxedRing> &rings, bool alongX, std::int64_t at, std::vector<BoxedRing> &low,
              std::vector<BoxedRing> &high);

} // namespace cam
