// A step's "stephdr" file: its datum and the steps repeated in it.
#pragma once

#include "cam/model/point.h"
#include "cam/model/shape.h"

#include <string>
#include <string_view>
#include <vector>

namespace cam {

struct StepHeaderRepeat
{
    std::string step;          // lower case
    Point at;                  // of the child's datum, nanometres
    double dx = 0.0, dy = 0.0; // between copies, nanometres
    int nx = 1, ny = 1;
    double angle = 0.0; // degrees, clockwise
    bool mirror = false;
};

struct StepHeader
{
    Point datum;
    std::vector<StepHeaderRepeat> repeats;
};

// `defaultUnit` holds where the file states none. Throws FormatError for what is no step header, and for
// flipped steps.
StepHeader parseStepHeader(std::string_view text, const std::string &file,
                           LengthUnit defaultUnit = LengthUnit::Inch);

} // namespace cam
