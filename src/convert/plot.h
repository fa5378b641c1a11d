// Draws polygons into a picture file: PNG, or SVG.
#pragma once

#include "cam/polygon/gridpolygon.h"

#include <QColor>
#include <QString>

#include <memory>
#include <vector>

namespace convert {

// How large a picture is: one of the two, or neither for what is usual.
struct PictureSize
{
    double pixelsPerMillimetre = 0.0;
    int width = 0; // pixels
};

// A picture of a part of the plane, y upwards. What is drawn later lies over what was drawn before.
class Plot
{
public:
    virtual ~Plot() = default;

    // From here on everything is of one colour, and where it overlaps itself no denser.
    virtual void begin(const QColor &color, double opacity) = 0;
    // Fills where the windings of `rings` (nanometres) add up to anything but 0.
    virtual void fill(const std::vector<cam::GridRing> &rings) = 0;
    // A ring around a place, large enough to be seen.
    virtual void mark(cam::Point at) = 0;
    virtual void end() = 0;
    // Writes the file; it appears when it is complete. Throws std::runtime_error.
    virtual void save() = 0;

    // Nanometres a pixel.
    double pixel() const { return m_pixel; }

protected:
    double m_pixel = 0.0;
};

// A picture of `extent` with a margin. What the file is called says what it becomes: .png or .svg. Throws
// std::runtime_error for a size that is out of bounds.
std::unique_ptr<Plot> makePlot(const QString &file, const cam::GridBox &extent, const PictureSize &size,
                               const QColor &background);

} // namespace convert
