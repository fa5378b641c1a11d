// Level lines just above and below every corner, and the windings between the edges that they meet. Two edges
// that cross between two levels change their order there, and on one side of such a crossing the winding
// number is one that a simple contour does not have.
#include "cam/model/selfcrossing.h"

#include "cam/model/trigonometry.h"
#include "cam/model/winding.h"

#include <algorithm>
#include <cmath>

namespace cam {

namespace {

struct Segment
{
    Point from, to;
    double low() const { return std::min(from.y, to.y); }
    double high() const { return std::max(from.y, to.y); }
    double xAt(double y) const { return from.x + (to.x - from.x) * ((y - from.y) / (to.y - from.y)); }
};

// Straight pieces; arcs within a fifth of the tolerance, with corners on the arc.
std::vector<Segment> segmentsOf(const ContourView &contour, double tolerance)
{
    std::vector<Segment> segments;
    Point from = contour.start;
    const auto add = [&](Point to) {
        if (to != from)
            segments.push_back({from, to});
        from = to;
    };
    for (const Edge &edge : contour) {
        if (edge.kind != EdgeKind::Line) {
            const Point start = from;
            const double radius = std::max(distance(start, edge.center), tolerance);
            const double step = 2.0 * std::sqrt(2.0 * tolerance / 5.0 / radius); // radians
            const double sweep = std::fabs(sweptDegrees(start, edge)) * pi / 180.0;
            constexpr double most = 20000.0; // of arcs far larger than any board
            const int count = static_cast<int>(std::min(sweep / step, most)) + 1;
            for (int i = 1; i < count; ++i)
                add(pointOf(start, edge, static_cast<double>(i) / count).at);
        }
        add(edge.end);
    }
    return segments;
}

class LevelSearch
{
public:
    LevelSearch(std::vector<Segment> segments, double tolerance)
        : m_segments(std::move(segments)), m_tolerance(tolerance)
    {
    }

    bool findsCrossing()
    {
        std::vector<double> heights;
        std::vector<std::size_t> byLow;
        for (std::size_t i = 0; i < m_segments.size(); ++i) {
            heights.push_back(m_segments[i].from.y);
            if (m_segments[i].from.y != m_segments[i].to.y)
                byLow.push_back(i);
        }
        std::sort(heights.begin(), heights.end());
        heights.erase(std::unique(heights.begin(), heights.end()), heights.end());
        std::sort(byLow.begin(), byLow.end(),
                  [this](std::size_t a, std::size_t b) { return m_segments[a].low() < m_segments[b].low(); });
        std::size_t next = 0;
        for (std::size_t i = 0; i + 1 < heights.size(); ++i) {
            const double low = heights[i], high = heights[i + 1];
            m_active.erase(
                std::remove_if(m_active.begin(), m_active.end(),
                               [&](std::size_t segment) { return m_segments[segment].high() <= low; }),
                m_active.end());
            for (; next < byLow.size() && m_segments[byLow[next]].low() <= low; ++next)
                m_active.push_back(byLow[next]);
            for (const double share : {0.001, 0.5, 0.999}) {
                if (levelIsWrong(low + (high - low) * share))
                    return true;
            }
        }
        return false;
    }

private:
    struct Crossing
    {
        double x;
        int turn;
    };

    bool levelIsWrong(double y)
    {
        m_crossings.clear();
        for (const std::size_t i : m_active)
            m_crossings.push_back({m_segments[i].xAt(y), m_segments[i].from.y < m_segments[i].to.y ? -1 : 1});
        std::sort(m_crossings.begin(), m_crossings.end(),
                  [](const Crossing &a, const Crossing &b) { return a.x < b.x; });
        int winding = 0; // between crossings i and i + 1, for a ray from the left: clockwise is positive
        for (std::size_t i = 0; i + 1 < m_crossings.size(); ++i) {
            winding += m_crossings[i].turn;
            if (winding == 0 || m_crossings[i + 1].x - m_crossings[i].x < m_tolerance)
                continue;
            const bool isTwice = winding > 1 || winding < -1;
            const bool isOpposite = m_sign != 0 && (winding > 0) != (m_sign > 0);
            if (!isTwice && m_sign != 0 && !isOpposite)
                continue;
            if (!isWide({(m_crossings[i].x + m_crossings[i + 1].x) / 2.0, y}))
                continue;
            if (isTwice || isOpposite)
                return true;
            m_sign = winding;
        }
        return false;
    }

    bool isWide(Point at) const
    {
        return std::all_of(m_segments.begin(), m_segments.end(), [&](const Segment &segment) {
            return distanceToSegment(segment.from, segment.to, at) >= m_tolerance / 2.0;
        });
    }

    std::vector<Segment> m_segments;
    double m_tolerance;
    std::vector<std::size_t> m_active;
    std::vector<Crossing> m_crossings;
    int m_sign = 0; // of the windings that were met first
};

} // namespace

bool crossesItself(const ContourView &contour, double tolerance)
{
    return LevelSearch(segmentsOf(contour, tolerance), tolerance).findsCrossing();
}

} // namespace cam
