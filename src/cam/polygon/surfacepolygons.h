// Surfaces as polygons without holes.
#pragma once

#include "cam/polygon/gridpolygon.h"

#include <functional>
#include <vector>

namespace cam {

// The area inside of rings that need not be clean (see PaintSource::rings), as polygons without holes, of at
// most `mostCorners`. `report` as with PaintedArea::resolve().
void emitArea(std::vector<GridRing> rings, std::size_t mostCorners,
              const std::function<void(const GridRing &)> &polygon,
              const std::function<void(double)> &report);

} // namespace cam
