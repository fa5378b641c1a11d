// What a symbol looks like: the contours that it darkens, about its own origin.
#pragma once

#include "cam/model/contour.h"

namespace cam {

// Unit of the numbers inside symbol names such as "rect20x30": mils (thousandths of an inch) or micrometres.
enum class SymbolUnit : std::uint8_t { Mils, Micrometres };

inline double nanometresPer(SymbolUnit unit)
{
    return unit == SymbolUnit::Mils ? 25400.0 : 1000.0;
}

// Unit of coordinates in a job's files.
enum class LengthUnit : std::uint8_t { Inch, Millimetre };

inline double nanometresPer(LengthUnit unit)
{
    return unit == LengthUnit::Inch ? 25.4e6 : 1.0e6;
}

// See ContourPool for which part of the plane is dark. A shape without contours is legal (a null symbol, a
// round of diameter 0) and draws nothing.
struct Shape
{
    ContourPool contours;
};

// The dark area in square nanometres, of a shape whose islands do not overlap.
double area(const Shape &shape);
// The exact box around all contours, in nanometres; empty for a shape without any.
Box extent(const Shape &shape);

} // namespace cam
