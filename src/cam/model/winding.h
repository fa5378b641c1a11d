// How a point lies to a contour, from its true arcs and without any polygon in between: what files are read
// back and verified with, and what the outlines of symbols are found with. Its angles may differ in the last
// digits from platform to platform: no coordinate may depend on them.
#pragma once

#include "cam/model/contour.h"

namespace cam {

// How often `contour` runs around `at`, counter-clockwise positive. Without meaning for points on the
// contour. An arc whose ends lie at unequal distances from its centre runs evenly from one to the other.
int windingNumber(const ContourView &contour, Point at);

// Nanometres from `at` to the nearest point of the contour.
double distanceTo(const ContourView &contour, Point at);
double distanceToSegment(Point from, Point to, Point at);
double distanceToArc(Point from, const Edge &arc, Point at);

// The point of an edge at `share` (0 to 1) of its way, and the unit vector to its left there.
struct EdgePoint
{
    Point at;
    Point left;
};
EdgePoint pointOf(Point from, const Edge &edge, double share);

} // namespace cam
