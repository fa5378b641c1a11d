#include "drawing/scene.h"

#include <atomic>

namespace drawing {

using cam::Box;
using cam::Point;
using cam::Transform;

Scene::Scene()
{
    static std::atomic<std::uint64_t> count{0};
    m_number = ++count;
}

Transform inverse(const Transform &map)
{
    const double determinant = map.determinant();
    Transform back{
        map.yy / determinant, -map.xy / determinant, -map.yx / determinant, map.xx / determinant, {}};
    back.offset = -back.linear(map.offset);
    return back;
}

Box mapped(const Box &box, const Transform &map)
{
    Box result;
    if (box.isEmpty())
        return result;
    for (const Point corner : {box.low, box.high, Point{box.low.x, box.high.y}, Point{box.high.x, box.low.y}})
        result.add(map(corner));
    return result;
}

Box visiblePart(const Canvas &canvas, const Transform &toSamples)
{
    Box all;
    all.add(Point{0.0, 0.0});
    all.add(Point{1.0 * canvas.width() * Canvas::samples, 1.0 * canvas.height() * Canvas::samples});
    return mapped(all, inverse(toSamples));
}

} // namespace drawing
