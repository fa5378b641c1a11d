// The standard symbols of ODB++: from a name such as "rect20x30xr3" to the shape it stands for.
//
//     StandardSymbol pad = parseStandardSymbol("rect900x950xr200", SymbolUnit::Micrometres);
//     Shape shape = shapeOf(pad); // one contour: four lines and four arcs, in nanometres
//
// docs/cam-library.md, section "Symbols", says which reading was taken where descriptions of the format leave
// room.
#pragma once

#include "cam/base/error.h"
#include "cam/model/shape.h"

#include <array>
#include <string_view>

namespace cam {

// One word a family of names; the comment gives what `size` holds.
enum class SymbolKind : std::uint8_t {
    Round,                // r: diameter
    Square,               // s: side
    Rectangle,            // rect: width, height, with sharp, rounded or chamfered corners
    Oval,                 // oval: width, height
    Diamond,              // di: width, height
    Octagon,              // oct: width, height, corner size
    RoundDonut,           // donut_r: outer diameter, inner diameter
    SquareDonut,          // donut_s: outer side, inner side, with sharp or rounded corners
    SquareRoundDonut,     // donut_sr: outer side, inner diameter
    RectangleDonut,       // donut_rc: outer width, outer height, line width, with sharp or rounded corners
    OvalDonut,            // donut_o: outer width, outer height, line width
    HorizontalHexagon,    // hex_l: width, height, corner size
    VerticalHexagon,      // hex_s: width, height, corner size
    Butterfly,            // bfr: diameter
    SquareButterfly,      // bfs: side
    Triangle,             // tri: base, height
    HalfOval,             // oval_h: width, height
    RoundedThermal,       // thr: outer diameter, inner diameter, angle, spokes, gap
    RoundThermal,         // ths: outer diameter, inner diameter, angle, spokes, gap
    SquareThermal,        // s_ths: outer side, inner side, angle, spokes, gap, with sharp or rounded corners
    OpenSquareThermal,    // s_tho: outer side, inner side, angle, spokes, gap
    LineThermal,          // s_thr: outer side, inner side, angle, spokes, gap
    SquareRoundThermal,   // sr_ths: outer side, inner diameter, angle, spokes, gap
    RectangleThermal,     // rc_ths: width, height, angle, spokes, gap, line width, sharp or rounded corners
    OpenRectangleThermal, // rc_tho: width, height, angle, spokes, gap, line width
    OvalThermal,          // o_ths: width, height, angle, spokes, gap, line width
    OblongThermal,        // oblong_ths: width, height, angle, spokes, gap, line width; endStyle
    Ellipse,              // el: width, height
    Moire,                // moire: ring width, ring gap, rings, line width, line length, line angle
    Hole,                 // hole: diameter (plating and tolerances draw nothing)
    HomePlate,            // hplate: width, height, cut, acute radius, obtuse radius
    InvertedHomePlate,    // rhplate: width, height, cut, acute radius, obtuse radius
    FlatHomePlate,        // fhplate: width, height, vertical cut, horizontal cut, acute, obtuse radius
    BittenHomePlate,      // radhplate: width, height, diameter of the bite, corner radius
    RoundHomePlate,       // dshape: width, height, relief, corner radius
    Cross,   // cross: width, height, width of the horizontal line, of the vertical one, where they
             // cross in percent of the width and of the height; ends, cornerSize of inner corners
    Dogbone, // dogbone: as a cross, without the percentage of the height
    PadGrid, // dpack: width, height, horizontal gap, vertical gap, columns, rows, corner radius
    Null     // null: nothing
};

enum class CornerStyle : std::uint8_t { Sharp, Rounded, Chamfered };

// Whether the pieces of an oblong thermal, or the lines of a cross or a dogbone, end in half circles or
// straight.
enum class EndStyle : std::uint8_t { Straight, Round };

// A parsed name: what a writer needs to choose an aperture, and shapeOf() to draw it.
struct StandardSymbol
{
    SymbolKind kind = SymbolKind::Null;
    CornerStyle corners = CornerStyle::Sharp;
    EndStyle ends = EndStyle::Straight;
    // Bit 0: top right, bit 1: top left, bit 2: bottom left, bit 3: bottom right corner has the style.
    std::uint8_t cornerMask = 0;
    // The name gives a size of zero or less ("r-13.1234", "rect0x5"): kind is Null.
    bool hasNoSize = false;
    // The name's suffix, degrees counter-clockwise ("rect20x30_45"); 0 <= angle < 360.
    double angle = 0.0;
    bool hasAngle = false;   // there is a suffix, perhaps _0
    double cornerSize = 0.0; // nanometres: the radius, or how much of each side a chamfer takes
    // In the order of the name's numbers: lengths in nanometres, angles in degrees, counts plain.
    std::array<double, 8> size{};
};

// `name` in lower case without unit suffix, its lengths in `unit`. Throws SymbolError, naming `name`, for
// anything that is not a standard symbol or whose numbers make no shape. An outer size of zero or less is no
// error: nothing can be meant by it, and there is nothing to draw. Any name may bear an angle:
// "rect20x30_45".
StandardSymbol parseStandardSymbol(std::string_view name, SymbolUnit unit);

// Whether the symbol is one of those for solder stencils, which descriptions of the format show differently.
bool isStencilSymbol(const StandardSymbol &symbol);

// The symbol about its own origin, in nanometres, with true arcs (an ellipse, which has none, as a polygon
// within 0.1 micrometre); empty for "null" and for a symbol without extent ("r0"). `growth`: nanometres by
// which the symbol's edges move apart, half of it on each side: a solid grows by it, holes and gaps shrink by
// it. Sharp corners stay sharp. Negative: the same inwards; nothing is left of a symbol that is thinner.
Shape shapeOf(const StandardSymbol &symbol, double growth = 0.0);

} // namespace cam
