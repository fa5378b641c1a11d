// Counter-clockwise, an arc rises on the right side of its circle and falls on the left one. Its stretches
// between the highest and the lowest point are asked one by one, each by the heights of its ends.
#include "cam/model/arccrossing.h"

#include <algorithm>
#include <cmath>

namespace cam {

ArcCrossings crossingsOf(Point from, const Edge &arc, double y)
{
    ArcCrossings crossings;
    Point first = from - arc.center, last = arc.end - arc.center;
    const bool isClockwise = arc.kind == EdgeKind::ArcClockwise;
    if (isClockwise)
        std::swap(first, last);
    const double radius = length(first), up = y - arc.center.y;
    const double reach = std::sqrt(std::max(0.0, (radius - up) * (radius + up)));
    const double whole = sweptDegrees(first, {last, {}, EdgeKind::ArcCounterClockwise});
    const auto isRising = [](Point spoke, bool isStart) {
        return spoke.x != 0.0 ? spoke.x > 0.0 : (spoke.y < 0.0) == isStart;
    };
    bool rises = isRising(first, true);
    const bool endsRising = isRising(last, false);
    int stretches = rises == endsRising ? 1 : 2;
    if (stretches == 1 && (whole > 180.0 || (whole > 90.0 && (last.y > first.y) != rises)))
        stretches = 3;
    double low = first.y;
    for (int i = 0; i < stretches; ++i, rises = !rises) {
        const double high = i + 1 == stretches ? last.y : rises ? radius : -radius;
        if ((low <= up) != (high <= up)) {
            const Point spoke{rises ? reach : -reach, up};
            double share =
                whole > 0.0 ? sweptDegrees(first, {spoke, {}, EdgeKind::ArcCounterClockwise}) / whole : 0.0;
            if (share > 1.0) // just outside of one of the ends
                share = i == 0 ? 0.0 : 1.0;
            crossings.list[crossings.count++] = {arc.center.x + spoke.x, isClockwise ? 1.0 - share : share,
                                                 (high > low) != isClockwise};
        }
        low = high;
    }
    return crossings;
}

} // namespace cam
