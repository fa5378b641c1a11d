// The unit in which the workbench shows lengths: one for all of its parts, changed by one key.
#pragma once

#include "cam/model/point.h"

#include <QString>

enum class LengthUnit { Millimetre, Inch, Mil };

LengthUnit nextUnit(LengthUnit unit);
// "mm", "in", "mil".
QString nameOf(LengthUnit unit);
// `nanometres` with as many decimals as show a tenth of a micrometre, about: "12.3456 mm".
QString lengthText(double nanometres, LengthUnit unit);
// "x 12.345  y 6.789 mm"
QString placeText(cam::Point place, LengthUnit unit);
// Nanometres of one.
double nanometresOf(LengthUnit unit);

// The 1, 2 or 5 times a power of ten that is the smallest at least `value`.
double roundLength(double value);

// How large things come out: "5 : 1", "1 : 2.5".
QString scaleText(double factor);
