// The symbols for solder stencils: plates cut or bitten at their right end, crosses, dogbones and grids of
// pads.
#pragma once

#include "cam/model/standardsymbol.h"

namespace cam {

// Adds the contours of `symbol`, of one of the kinds from HomePlate to PadGrid, to `shape`, in nanometres.
void addStencilSymbol(Shape &shape, const StandardSymbol &symbol);

} // namespace cam
