// Finds rows, columns and grids among the places of one structure.
#pragma once

#include "cam/polygon/gridpolygon.h"

#include <vector>

namespace cam::gdsii {

// `columns` times `rows` places: at + i*columnStep + j*rowStep. A single place is one of 1 times 1.
struct Placement
{
    GridPoint at;
    int columns = 1;
    int rows = 1;
    std::int64_t columnStep = 0; // along x
    std::int64_t rowStep = 0;    // along y
};

// All of `places`, in few placements. Equal places count once. The order of the result depends on the places
// only.
std::vector<Placement> groupPlaces(std::vector<GridPoint> places);

} // namespace cam::gdsii
