// Shapes whose edges move apart or together.
#pragma once

#include "cam/model/shape.h"

namespace cam {

// `plain` with every edge moved outwards by `distance` nanometres (inwards when negative), those of holes
// likewise. Arcs keep their centres; sharp corners stay sharp, unless they are sharper than 11 degrees. Each
// island, with the holes behind it, is moved by itself: islands may overlap then. Throws SymbolError where no
// closed outline is found.
Shape resized(const Shape &plain, double distance);

// The same area with islands that neither overlap nor share an edge.
Shape united(const Shape &shape);

} // namespace cam
