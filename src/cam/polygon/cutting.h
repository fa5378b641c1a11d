// Cutting areas in two without a boolean.
#pragma once

#include "cam/polygon/gridpolygon.h"

namespace cam {

// A ring and the box around it.
struct BoxedRing
{
    GridRing ring;
    GridBox box;
};

BoxedRing boxed(GridRing &&ring);

// Cuts the area inside `rings` (islands counter-clockwise, holes clockwise, apart from each other, without
// equal neighbours among their corners) along the line x = at (`alongX`) or y = at into `low` and `high`,
// whose rings are of that kind again; `rings` is empty then. The rings of both sides have the same corners on
// the line. False, with nothing cut, when what crosses the line does not enter and leave the area by turns:
// the rings are then none of that kind. Slits (edges that lie upon each other) are fine.
bool cutApart(std::vector<BoxedRing> &rings, bool alongX, std::int64_t at, std::vector<BoxedRing> &low,
              std::vector<BoxedRing> &high);

} // namespace cam
