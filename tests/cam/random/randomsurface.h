// Random surfaces whose contours nest, touch and lie upon each other, in any order.
#pragma once

#include "cam/model/featureset.h"

#include <random>

namespace testing {

// Adds a surface of up to `mostContours` contours on a grid of `step` nanometres, inside of a square of
// `cells` steps from `corner` on. With `meetsItself` there are contours that come back to where they have
// been.
void addRandomSurface(cam::FeatureSet &features, std::mt19937 &random, cam::Point corner, double step,
                      int cells, std::size_t mostContours, bool positive = true, bool meetsItself = true);

} // namespace testing
