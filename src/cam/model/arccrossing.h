// Where an arc crosses a horizontal line.
#pragma once

#include "cam/model/contour.h"

namespace cam {

struct LevelCrossing
{
    double x = 0.0;         // nanometres
    double share = 0.0;     // how much of the edge lies before it, 0 to 1
    bool isUpwards = false; // how the edge runs there
};

// At most three: an arc of nearly a full turn may rise, fall and rise again.
struct ArcCrossings
{
    LevelCrossing list[3];
    int count = 0;

    const LevelCrossing *begin() const { return list; }
    const LevelCrossing *end() const { return list + count; }
};

// The crossings of the arc that starts at `from` with the line at height `y`, an end at that height counting
// as below it. An arc whose ends lie on different sides of the line crosses it an odd number of times,
// whatever is rounded. Its ends must have one distance from its centre, but for rounding.
ArcCrossings crossingsOf(Point from, const Edge &arc, double y);

} // namespace cam
