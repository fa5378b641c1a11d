// Which aperture a standard symbol becomes: one of the format's own, or a macro of circles, polygons and
// thermals.
#pragma once

#include "cam/model/point.h"
#include "cam/model/standardsymbol.h"

#include <optional>
#include <string>

namespace cam {

// An aperture's definition, ready for the file. Equal apertures have equal texts.
struct Aperture
{
    std::string shape; // what follows the number: "C,0.5", or the macro's body when isMacro
    bool isMacro = false;
    // A macro that paints with exposure off must not be flashed in clear polarity: readers disagree about it.
    bool hasClearParts = false;
};

// The aperture for `symbol` resized by `growth` nanometres (see shapeOf()) under the linear part of `map`.
// Nothing when it draws nothing, or can only be drawn as a region: an ellipse, too many corners, most symbols
// under a map that does not keep circles.
std::optional<Aperture> apertureOf(const StandardSymbol &symbol, double growth, const Transform &map);

// A circle, `diameter` in nanometres. A zero-size one makes no image.
Aperture circleAperture(double diameter);

// The most corners of a polygon in a macro: more than readers in use can store make them fail.
constexpr std::size_t mostMacroCorners = 48;

} // namespace cam
