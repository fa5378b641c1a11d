// Sine, cosine and arc tangent that give the same bits on every platform, which the C library's do not
// promise: equal input must make equal files everywhere. Built from additions, products, quotients and square
// roots only.
#pragma once

namespace cam {

constexpr double pi = 3.14159265358979323846;

struct SineCosine
{
    double sine = 0.0;
    double cosine = 1.0;
};

// Exact at multiples of 90 degrees; elsewhere good to a few units in the last place.
SineCosine sineCosine(double degrees);

// The direction of (x, y) in degrees, counter-clockwise from the x axis, 0 <= result < 360; 0 for (0, 0).
double directionDegrees(double x, double y);

// The angle whose cosine is `value`, in degrees; `value` from -1 to 1.
double arcCosineDegrees(double value);

} // namespace cam
