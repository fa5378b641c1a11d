// Pictures of scenes: how much of each pixel a scene covers, and several scenes over each other in colours.
#pragma once

#include "drawing/scene.h"

#include <QColor>
#include <QImage>
#include <QSize>

#include <memory>
#include <vector>

namespace drawing {

// Which part of the plane a picture shows.
struct Viewport
{
    cam::Point center;     // nanometres, in the middle of the picture
    double pixel = 1e5;    // nanometres, the side of a pixel
    QSize size;            // pixels
    bool mirrored = false; // seen from below: x runs to the left

    // From nanometres to pixels, with y pointing down.
    cam::Transform toPixels() const;
    // The viewport that shows all of `box`, with a margin, as a share of the size on each side.
    static Viewport showing(const cam::Box &box, const QSize &size, double margin = 0.04);
};

// How much of each pixel is covered: Format_Grayscale8, 255 for all of it. For any thread. Passes on what
// `mode.check` throws.
QImage coverage(const Scene &scene, const Viewport &viewport, const DrawMode &mode = {});

// A scene with its colour; `opacity` 0 to 1.
struct ColoredScene
{
    std::shared_ptr<const Scene> scene;
    QColor color;
    double opacity = 1.0;
};

// Puts `color` over `picture` (Format_RGB32 or Format_ARGB32_Premultiplied, of the same size), as dense as
// `coverage`.
void blend(QImage &picture, const QImage &coverage, const QColor &color, double opacity);

// The scenes over each other, the first one lowest, on `background` (which may be transparent). Drawn in
// tiles, so that the memory taken is the picture's own.
QImage picture(const std::vector<ColoredScene> &scenes, const Viewport &viewport, const QColor &background,
               const DrawMode &mode = {});

} // namespace drawing
