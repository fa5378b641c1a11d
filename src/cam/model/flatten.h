// Curves into corners, by one tolerance for the whole library.
#pragma once

#include "cam/model/contour.h"

#include <vector>

namespace cam {

// How far a straight edge may lie from the curve it stands for, in nanometres of the output. Corners lie on
// the curve, so a polygon never leaves a round shape. A tenth of a micrometre is promised; what is left of it
// is for rounding to the database unit.
constexpr double arcTolerance = 90.0;

// How far the ends of an arc may differ in their distance from its centre to count as ends of a circle, in
// nanometres of the job: what the rounding of start, end and centre to a millionth of an inch explains. What
// differs by more is no arc in any file: readers would draw it in ways of their own.
constexpr double radiusTolerance = 100.0;
bool hasOneRadius(Point start, const Edge &arc);

// Into how many equal steps an arc of `degrees` with `radius` is divided; at least 1.
std::size_t arcSteps(double radius, double degrees, double tolerance);

// Appends the corners of an arc edge that starts at `start`, its end included, its start not. An arc whose
// ends have unequal distances from the centre, as rounded numbers in files have, runs evenly from one to the
// other.
void flattenArc(Point start, const Edge &arc, double tolerance, std::vector<Point> &corners);

// Appends the corners of a contour, the first not repeated at the end.
void flatten(const ContourView &contour, double tolerance, std::vector<Point> &corners);

// The factor by which `map` stretches lengths at most.
double largestStretch(const Transform &map);

} // namespace cam
