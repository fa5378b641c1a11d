#include "cam/model/shape.h"

#include <cmath>

namespace cam {

double area(const Shape &shape)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < shape.contours.size(); ++i) {
        const ContourView contour = shape.contours[i];
        const double inside = std::fabs(signedArea(contour));
        sum += contour.isHole ? -inside : inside;
    }
    return sum;
}

Box extent(const Shape &shape)
{
    Box box;
    for (std::size_t i = 0; i < shape.contours.size(); ++i)
        box.add(extent(shape.contours[i]));
    return box;
}

} // namespace cam
