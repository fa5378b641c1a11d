// The standard symbols of ODB++: from a name such as "rect20x30xr3" to the shape it stands for.
#pragma once

#include "host/cam/error.h"
#include "host/cam/geometry/shape.h"

#include <array>
#include <string_view>

namespace cam {

enum class SymbolKind : std::uint8_t {
    Round,     // size: diameter
    Square,    // size: side
    Rectangle, // size: width, height; corners: see below
    Other      // to be replaced by one word a symbol
};

// A parsed name: what a writer needs to choose an aperture, and shapeOf() to draw it.
struct StandardSymbol
{
    SymbolKind kind = SymbolKind::Round;
    std::array<double, 8> size{}; // nanometres, in the order of the name's numbers; angles in degrees
};

// `name` in lower case without unit suffix, its numbers in `unit`. Throws SymbolError, naming `name`, for
// anything that is not a standard symbol or whose numbers make no shape.
StandardSymbol parseStandardSymbol(std::string_view name, SymbolUnit unit);

// The symbol about its own origin, in nanometres, with true arcs; empty for "null".
// `growth`: nanometres added to every extent, half of it to each side (negative: taken away; nothing is left
// of a symbol that is thinner than that).
Shape shapeOf(const StandardSymbol &symbol, double growth = 0.0);

} // namespace cam
