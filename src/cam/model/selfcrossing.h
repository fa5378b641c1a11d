// Whether a contour is weakly simple: whether every reader fills it alike, by parity or by winding number.
#pragma once

#include "cam/model/contour.h"

namespace cam {

// Whether `contour` crosses itself or covers some place more than once. It may touch itself, at points and
// along edges, as an outline does that reaches its holes by slits. Places that are nowhere wider than about
// `tolerance` nanometres do not count: rounding makes such ones.
bool crossesItself(const ContourView &contour, double tolerance);

} // namespace cam
