// The symbols for solder stencils: plates cut or bitten at their right end, crosses, dogbones and grids of
// pads.
#pragma once

#include "cam/model/standardsymbol.h"

namespace cam {

// Adds the contours of `symbol`, of one of the kinds from HomePlate to PadGrid, to `shape`: in nanometres,
// each edge moved outwards by half of `growth`. Islands may overlap when gaps have closed.
void addStencilSymbol(Shape &shape, const StandardSymbol &symbol, double growth);

} // namespace cam
