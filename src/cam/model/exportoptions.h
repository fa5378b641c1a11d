// What an export does to the geometry on its way into the file, in this order: `resize`; `negative`;
// scale, mirror, rotate about the step's datum.
#pragma once

#include "cam/model/layerimage.h"

#include <filesystem>
#include <functional>

namespace cam {

struct ExportOptions
{
    std::filesystem::path file; // what is written in the end
    double dbu = 0.001;         // database unit in micrometres (GDSII)
    // Nanometres: every edge of the image moves outwards by half of it (inwards when negative). So positive
    // features grow by it, and negative ones, like the holes of surfaces, shrink by it.
    double resize = 0.0;
    bool negative = false;     // the profile's area (the image's extent without one) less the layer
    bool profileOnTop = false; // adds the step's profile
    bool mirror = false;       // x to -x
    double angle = 0.0;        // degrees, counter-clockwise
    double xScale = 1.0, yScale = 1.0;

    // Takes the share of the work that is done, 0 to 1; called often (at least every few thousand records).
    // It may throw to cancel: nothing may be caught on the way, and no unfinished file may stay.
    std::function<void(double)> report = [](double) {};
};

// Scale, then mirror, then rotation, about `datum`. The datum itself stays where it is.
Transform exportTransform(const ExportOptions &options, Point datum);

} // namespace cam
