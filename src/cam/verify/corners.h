// Curves into corners for comparisons, by code of their own: what the writers' ways of drawing get wrong must
// not be repeated here.
#pragma once

#include "cam/model/contour.h"
#include "cam/polygon/gridpolygon.h"

#include <vector>

namespace cam::verify {

// Where the corners of an arc stand. Both sides of a comparison take the same, so that equal arcs get equal
// corners.
enum class ArcCorners : std::uint8_t {
    Even,   // at equal steps from the arc's start: as files of polygons have them
    Compass // at fixed directions from its centre: whatever the arc's ends are, and however a circle is
            // divided
};

// Appends the corners of `edge` from `from` on, its end included, its start not. Corners lie on the curve,
// chords within `tolerance` of it. The radius of an arc runs evenly from that of its start to that of its
// end.
void addCorners(Point from, const Edge &edge, ArcCorners where, double tolerance,
                std::vector<Point> &corners);
// Those of a whole contour, the first not repeated.
void addCorners(const ContourView &contour, ArcCorners where, double tolerance, std::vector<Point> &corners);

// What a disc covers on its way from `from` along `edge`, as contours that may overlap: counter-clockwise,
// but for the inner side of a full ring. An arc must have one radius.
void addStroke(ContourPool &pool, Point from, const Edge &edge, double radius, ArcCorners where);

// The corners mapped and rounded, without equal neighbours; empty when no area is left.
GridRing onGrid(const std::vector<Point> &corners, const Transform &map);
GridRing reversed(GridRing ring);

// Clean rings around everything around which `ring` runs.
std::vector<GridRing> filled(const GridRing &ring);

// The part of `rings` inside of `box`; they may be linked along its sides.
void clip(std::vector<GridRing> &rings, const GridBox &box);

} // namespace cam::verify
