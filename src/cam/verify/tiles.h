// Pictures resolved piece by piece: the plane is halved until a piece holds few corners.
#pragma once

#include "cam/verify/picture.h"

#include <functional>

namespace cam::verify {

struct Tile
{
    GridBox box;
    // By picture: what is dark in the box and in the margin around it, where the winding numbers of the rings
    // sum up to more than 0. Rings may be linked along the sides of the box with its margin.
    std::vector<std::vector<GridRing>> areas;
};

// Hands over tiles that lie side by side and cover what `where` covers, or all of the pictures when it is
// empty. `report` takes the share that is done and may throw to cancel.
void forEachTile(
    const std::vector<Picture *> &pictures, std::vector<GridBox> where, std::int64_t margin,
    const std::function<void(const Tile &)> &visit,
    const std::function<void(double)> &report = [](double) {});

} // namespace cam::verify
