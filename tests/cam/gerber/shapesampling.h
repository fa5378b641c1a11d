// Whether a point lies in a contour or a shape, computed from the arcs themselves in fine steps: what tests
// compare the writer's forms with.
#pragma once

#include "cam/model/shape.h"

#include <cmath>
#include <vector>

namespace testing {

inline bool isInside(const std::vector<cam::Point> &corners, cam::Point at)
{
    bool inside = false;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const cam::Point a = corners[i], b = corners[(i + 1) % corners.size()];
        if ((a.y > at.y) != (b.y > at.y) && at.x < a.x + (b.x - a.x) * (at.y - a.y) / (b.y - a.y))
            inside = !inside;
    }
    return inside;
}

// The corners of a contour, arcs in steps of a quarter degree.
inline std::vector<cam::Point> cornersOf(const cam::ContourView &contour)
{
    std::vector<cam::Point> corners{contour.start};
    for (const cam::Edge &edge : contour) {
        const cam::Point from = corners.back();
        if (edge.kind != cam::EdgeKind::Line) {
            const double swept = cam::sweptDegrees(from, edge);
            const int steps = static_cast<int>(std::fabs(swept) / 0.25) + 1;
            for (int i = 1; i < steps; ++i) {
                const cam::Transform turn = cam::Transform::rotation(swept * i / steps);
                corners.push_back(edge.center + turn.linear(from - edge.center));
            }
        }
        corners.push_back(edge.end);
    }
    return corners;
}

// What a shape's islands enclose more often than its holes do.
class SampledShape
{
public:
    explicit SampledShape(const cam::Shape &shape) : SampledShape(shape.contours) {}
    explicit SampledShape(const cam::ContourPool &contours)
    {
        for (std::size_t i = 0; i < contours.size(); ++i)
            m_contours.push_back({cornersOf(contours[i]), contours[i].isHole});
    }

    bool isDark(cam::Point at) const
    {
        int depth = 0;
        for (const Contour &contour : m_contours) {
            if (isInside(contour.corners, at))
                depth += contour.isHole ? -1 : 1;
        }
        return depth > 0;
    }

private:
    struct Contour
    {
        std::vector<cam::Point> corners;
        bool isHole;
    };
    std::vector<Contour> m_contours;
};

} // namespace testing
