// Looks for the place that a measurement snaps to among those that figures and features offer.
#pragma once

#include "drawing/snapping.h"

namespace drawing {

// Beyond this a box around the mouse holds too much to look at one by one; nothing is snapped to then.
constexpr std::size_t mostLookedAt = 5000;

// Keeps the nearest place of each rank: points first, edges where there is none.
class SnapSearch
{
public:
    SnapSearch(cam::Point at, double reach) : m_at(at), m_reach(reach) {}

    void point(cam::Point place, Snap::Kind kind);
    void segment(cam::Point from, cam::Point to);
    // On the circle about its centre, if the way from `from` to its end passes there.
    void arc(cam::Point from, const cam::Edge &arc);
    // Corners, centres of arcs, and edges. `map` must keep circles where there are arcs.
    void contour(const cam::ContourView &contour, const cam::Transform &map = {});
    // Ends, centres and both sides of a line of `width`: a straight one has its centre in its middle.
    void line(cam::Point from, const cam::Edge &edge, double width);

    std::optional<Snap> result() const { return m_point ? m_point : m_edge; }

private:
    void edge(cam::Point place);

    cam::Point m_at;
    double m_reach;
    double m_pointFar = 1e300, m_edgeFar = 1e300;
    std::optional<Snap> m_point, m_edge;
};

// Whether contours first ... first + count - 1, islands and holes, cover a point.
bool covers(const cam::ContourPool &pool, std::size_t first, std::size_t count, cam::Point at);
// From `at` to the nearest of them.
double distanceToContours(const cam::ContourPool &pool, std::size_t first, std::size_t count, cam::Point at);

cam::Box boxAround(cam::Point at, double reach);

} // namespace drawing
