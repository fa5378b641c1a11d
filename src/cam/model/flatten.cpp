#include "cam/model/flatten.h"

#include "cam/model/trigonometry.h"

#include <algorithm>
#include <cmath>

namespace cam {

bool hasOneRadius(Point start, const Edge &arc)
{
    return std::fabs(distance(start, arc.center) - distance(arc.end, arc.center)) <= radiusTolerance;
}

std::size_t arcSteps(double radius, double degrees, double tolerance)
{
    constexpr double fewest = 4.0;       // of a full circle
    constexpr double most = 1'000'000.0; // far beyond what a board's arc needs
    if (!(radius > 0.0))
        return 1;
    const double cosine = std::max(0.0, 1.0 - tolerance / radius);
    const double step = std::min(2.0 * arcCosineDegrees(cosine), 360.0 / fewest);
    const double steps = std::ceil(std::fabs(degrees) / step - 1e-9);
    if (!(steps < most))
        return static_cast<std::size_t>(most);
    return steps < 1.0 ? 1 : static_cast<std::size_t>(steps);
}

void flattenArc(Point start, const Edge &arc, double tolerance, std::vector<Point> &corners)
{
    const Point from = start - arc.center;
    const double startRadius = length(from);
    const double endRadius = distance(arc.end, arc.center);
    const double degrees = sweptDegrees(start, arc);
    std::size_t steps = arcSteps(std::max(startRadius, endRadius), degrees, tolerance);
    if (start == arc.end)
        steps = (steps + 3) / 4 * 4; // a circle touches its box at corners
    const SineCosine turn = sineCosine(degrees / static_cast<double>(steps));
    const double growth = startRadius > 0.0 ? (endRadius - startRadius) / startRadius : 0.0;
    Point spoke = from;
    for (std::size_t i = 1; i < steps; ++i) {
        spoke = {spoke.x * turn.cosine - spoke.y * turn.sine, spoke.x * turn.sine + spoke.y * turn.cosine};
        const double share = static_cast<double>(i) / static_cast<double>(steps);
        corners.push_back(arc.center + spoke * (1.0 + growth * share));
    }
    corners.push_back(arc.end);
}

void flatten(const ContourView &contour, double tolerance, std::vector<Point> &corners)
{
    const std::size_t first = corners.size();
    corners.push_back(contour.start);
    for (const auto [from, edge] : contour.walk()) {
        if (edge.kind == EdgeKind::Line)
            corners.push_back(edge.end);
        else
            flattenArc(from, edge, tolerance, corners);
    }
    if (corners.size() > first + 1 && corners.back() == corners[first])
        corners.pop_back();
}

double largestStretch(const Transform &map)
{
    // The larger singular value of the linear part.
    const double sum = map.xx * map.xx + map.xy * map.xy + map.yx * map.yx + map.yy * map.yy;
    const double determinant = map.determinant();
    const double root = std::sqrt(std::max(0.0, sum * sum - 4.0 * determinant * determinant));
    return std::sqrt((sum + root) / 2.0);
}

} // namespace cam
