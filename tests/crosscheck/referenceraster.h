// The library's own picture of a layer, straight from its features: every pixel whose centre is dark. It
// shares nothing with the writers but the symbols' shapes.
#pragma once

#include "cam/model/exportoptions.h"
#include "tests/crosscheck/bitmap.h"

namespace crosscheck {

constexpr double pixel = 10000.0; // nanometres

// A part of the output's plane: `width` x `height` pixels from the lower left corner on.
struct Window
{
    double left = 0.0, bottom = 0.0; // nanometres
    int width = 0, height = 0;
};

// What the pixels' edges may make of a layer: `EveryEdgeOut` grows each dark feature by a pixel and shrinks
// each clear one, `EveryEdgeIn` does the opposite.
enum class Edges { AsTheyAre, EveryEdgeOut, EveryEdgeIn };

// What `options` make of `image` inside of `window` (options.resize is not looked at). Throws cam::Error for
// a feature that it cannot draw.
Bitmap rasterize(const cam::LayerImage &image, const cam::ExportOptions &options, const Window &window,
                 Edges edges = Edges::AsTheyAre);

// A box around everything that rasterize() draws, in output coordinates; empty for an empty layer.
cam::Box outputExtent(const cam::LayerImage &image, const cam::ExportOptions &options);

} // namespace crosscheck
