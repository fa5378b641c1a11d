// Contours as corners on a canvas, no finer than its samples show. What the library's own flattening takes
// for exact files would be most of the time that a picture takes.
#pragma once

#include "cam/model/contour.h"
#include "drawing/canvas.h"

namespace drawing {

class Flattening
{
public:
    // `map` leads to samples. `merges`: corners that lie in one sample become one.
    Flattening(const cam::Transform &map, bool merges);

    // Appends the contour's corners to the ring of `rings` that is being made; does not end it.
    void add(const cam::ContourView &contour, Rings &rings) const;
    // A corner in samples.
    void addCorner(cam::Point sample, Rings &rings) const;
    // The corners of an arc that begins at `start` but for this.
    void addArc(cam::Point start, const cam::Edge &arc, Rings &rings) const;
    // Whether a contour that is one circle lies wholly outside of a canvas of `width` x `height` samples.
    bool isCircleOutside(const cam::ContourView &contour, double width, double height) const;

private:
    cam::Transform m_map;
    double m_stretch; // samples a nanometre, at most
    bool m_merges;
};

} // namespace drawing
