// Range reduction to 45 degrees, then a power series that ends below a double's resolution.
#include "cam/model/trigonometry.h"

#include <algorithm>
#include <cmath>

namespace cam {

namespace {

// |x| <= pi/4, radians.
double sineSeries(double x)
{
    const double square = x * x;
    double sum = 0.0;
    for (int n = 19; n >= 3; n -= 2)
        sum = (sum + 1.0) * (-square / (n * (n - 1)));
    return x + x * sum;
}

double cosineSeries(double x)
{
    const double square = x * x;
    double sum = 0.0;
    for (int n = 18; n >= 2; n -= 2)
        sum = (sum + 1.0) * (-square / (n * (n - 1)));
    return 1.0 + sum;
}

// The angle of a tangent 0 <= t <= 1, radians. Halving the angle twice brings t below tan(pi/16) = 0.2.
double arcTangent(double t)
{
    double factor = 1.0;
    for (int halving = 0; halving < 2; ++halving) {
        t = t / (1.0 + std::sqrt(1.0 + t * t));
        factor *= 2.0;
    }
    const double square = t * t;
    double sum = 0.0;
    for (int n = 25; n >= 1; n -= 2)
        sum = 1.0 / n - square * sum;
    return factor * t * sum;
}

} // namespace

SineCosine sineCosine(double degrees)
{
    double rest = std::fmod(degrees, 360.0);
    if (rest < 0.0)
        rest += 360.0;
    const int quarter = static_cast<int>((rest + 45.0) / 90.0); // 0 to 4
    const double radians = (rest - 90.0 * quarter) * (pi / 180.0);
    const double sine = sineSeries(radians);
    const double cosine = cosineSeries(radians);
    switch (quarter % 4) {
    case 0:
        return {sine, cosine};
    case 1:
        return {cosine, -sine};
    case 2:
        return {-sine, -cosine};
    default:
        return {-cosine, sine};
    }
}

double directionDegrees(double x, double y)
{
    const double across = std::fabs(x);
    const double up = std::fabs(y);
    if (across == 0.0 && up == 0.0)
        return 0.0;
    double degrees =
        up <= across ? arcTangent(up / across) * (180.0 / pi) : 90.0 - arcTangent(across / up) * (180.0 / pi);
    if (x < 0.0)
        degrees = 180.0 - degrees;
    if (y < 0.0)
        degrees = 360.0 - degrees;
    return degrees >= 360.0 ? 0.0 : degrees;
}

double arcCosineDegrees(double value)
{
    return directionDegrees(value, std::sqrt(std::max(0.0, (1.0 - value) * (1.0 + value))));
}

} // namespace cam
