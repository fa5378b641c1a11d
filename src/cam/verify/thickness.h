// How thick an area is at its thickest place.
#pragma once

#include "cam/polygon/gridpolygon.h"

#include <vector>

namespace cam::verify {

struct Disc
{
    Point center;
    double radius = 0.0; // nanometres
};

// The largest disc that fits into the area of `rings` (islands counter-clockwise, holes clockwise, none
// crossing another), within a hundredth of its radius; of areas of very many corners and a micrometre's
// radius and more perhaps a smaller one that fits.
Disc largestDisc(const std::vector<GridRing> &rings);

// Whether a disc of `radius` nanometres fits; a bound of all that do when it does not, `radius` at most.
struct Fit
{
    bool fits = false;
    double bound = 0.0;
};
Fit discFits(const std::vector<GridRing> &rings, double radius);

// A bound of the radius of any disc in the area that a ring encloses, from its extent alone.
double boundOfThickness(const GridRing &ring);

} // namespace cam::verify
