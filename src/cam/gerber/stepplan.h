// In which order, and how, a Gerber file paints the steps of a layer.
#pragma once

#include "cam/polygon/drawing.h"

#include <vector>

namespace cam {

// A step at one place, or a block of copies: the file's own step and repeat.
struct PlannedStep
{
    std::uint32_t step = 0;              // index into LayerImage::steps
    Transform map;                       // of the first copy, to the output
    std::uint32_t columns = 1, rows = 1; // of copies
    GridPoint pitch;                     // nanometres between them, both at least 0
    // Its clear objects would erase something of another step or copy: it is painted as the area that its
    // negative features leave.
    bool isResolved = false;

    std::uint64_t copies() const { return std::uint64_t(columns) * rows; }
};

// The exported step and all that is nested in it. `map`: from the exported step's coordinates to the output.
// `growth`: see ExportOptions::resize.
std::vector<PlannedStep> planSteps(DrawnSymbols &drawn, const Transform &map, double growth);

} // namespace cam
