// What drawing features costs, in lines: writers tell their progress by it.
#pragma once

#include "cam/model/layerimage.h"

namespace cam {

// A surface's cost is that of its edges.
constexpr double edgesPerLine = 4.0;

double workOf(const FeatureSet &features, const Feature &feature);
double workOf(const FeatureSet &features);
// Of a step with everything that is nested in it, copy by copy.
double workOf(const LayerImage &image, const StepImage &step);

} // namespace cam
