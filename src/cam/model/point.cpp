#include "cam/model/point.h"

#include "cam/model/trigonometry.h"

#include <cmath>

namespace cam {

double length(Point a)
{
    return std::sqrt(a.x * a.x + a.y * a.y);
}

double distance(Point a, Point b)
{
    return length(b - a);
}

Transform Transform::rotation(double degrees)
{
    const SineCosine at = sineCosine(degrees);
    return {at.cosine, -at.sine, at.sine, at.cosine, {}};
}

Transform Transform::then(const Transform &next) const
{
    const Point x = next.linear({xx, yx});
    const Point y = next.linear({xy, yy});
    return {x.x, y.x, x.y, y.y, next(offset)};
}

bool Transform::keepsCircles() const
{
    // Both axes map to vectors of one length at right angles; the bound is far below a nanometre on a metre.
    const double first = xx * xx + yx * yx;
    const double second = xy * xy + yy * yy;
    const double between = xx * xy + yx * yy;
    const double bound = 1e-12 * (first + second);
    return std::fabs(first - second) <= bound && std::fabs(between) <= bound;
}

double Transform::scale() const
{
    return std::sqrt(std::fabs(determinant()));
}

} // namespace cam
