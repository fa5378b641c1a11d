// Areas whose outlines cross: what is left of rings whose opening reaches through their outer edge, pieces
// between gaps, bands that run into themselves. True arcs stay true arcs.
#pragma once

#include "cam/model/outline.h"

#include <functional>

namespace cam {

// Whether `at`, which lies on no edge, is inside of `outline`.
bool contains(const Outline &outline, Point at);

// Whether all of `inner` is inside of `outer` and touches it nowhere.
bool contains(const Outline &outer, const Outline &inner);

// Adds the area where `covers` holds, which changes along edges of `bounds` only: islands and holes, each
// counter-clockwise, that neither cross nor share an edge. Bounds may cross, touch and lie upon each other
// and themselves. An island begins, if it can, where it comes upon the first of `bounds`. Throws SymbolError
// where the edges make no closed contours.
void addCoveredArea(ContourPool &pool, const std::vector<Outline> &bounds,
                    const std::function<bool(Point)> &covers);

} // namespace cam
