// Surfaces as single closed outlines with true arcs: what regions of the file can hold.
#pragma once

#include "cam/gerber/gridoutline.h"

#include <cstdint>
#include <vector>

namespace cam {

struct Regions
{
    // Each to be painted as a region. None encloses a place twice: holes run against their island, and are
    // reached by slits, two equal and opposite straight edges from a hole's leftmost point to what lies left
    // of it. So filling by parity and by winding number give the same.
    std::vector<GridOutline> outlines;
    // Contours (their numbers) that meet each other, or cross themselves: polygon booleans of each group.
    std::vector<std::vector<std::uint32_t>> entangled;
};

// What contours darken together: the area that islands enclose more often than holes do, in whatever order
// they come and whichever way they run. The cost grows in proportion to the number of edges.
Regions regionsOf(std::vector<GridOutline> contours, const std::vector<bool> &isHole);

} // namespace cam
