#include "drawing/areascene.h"

#include "cam/model/flatten.h"
#include "drawing/flattening.h"

#include <algorithm>
#include <cmath>

namespace drawing {

using cam::Point;
using cam::Transform;

namespace {

constexpr double pixel = Canvas::samples;
constexpr std::size_t islandsPerCheck = 256;

} // namespace

AreaScene::AreaScene(const std::vector<cam::GridRing> &rings, const Transform &place)
{
    const double scale = std::fabs(place.determinant());
    for (const cam::GridRing &ring : rings) {
        const double area = cam::doubledArea(ring) / 2.0;
        if (area > 0.0 || m_islands.empty())
            m_islands.emplace_back();
        Island &island = m_islands.back();
        island.area += area * scale;
        for (const cam::GridPoint corner : ring) {
            island.rings.corners.push_back(place(cam::pointOf(corner)));
            island.box.add(island.rings.corners.back());
        }
        island.rings.endRing();
    }
    m_index = FeatureIndex(static_cast<std::uint32_t>(m_islands.size()),
                           [this](std::uint32_t i) { return m_islands[i].box; });
}

void AreaScene::draw(Canvas &canvas, const Transform &toSamples, const DrawMode &mode) const
{
    std::vector<std::uint32_t> found;
    m_index.find(visiblePart(canvas, toSamples), found);
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (i % islandsPerCheck == 0)
            mode.check();
        drawIsland(m_islands[found[i]], toSamples, canvas, mode);
    }
}

void AreaScene::drawIsland(const Island &island, const Transform &map, Canvas &canvas,
                           const DrawMode &mode) const
{
    const Point size = island.box.high - island.box.low;
    if (mode.levelOfDetail && std::max(size.x, size.y) * cam::largestStretch(map) < pixel)
        return canvas.addSmall(map((island.box.low + island.box.high) * 0.5),
                               island.area * std::fabs(map.determinant()), true);
    const Flattening flattening(map, mode.levelOfDetail);
    Rings rings;
    std::size_t first = 0;
    for (const std::size_t end : island.rings.ends) {
        for (std::size_t i = first; i < end; ++i) {
            const Point from = map(island.rings.corners[i > first ? i - 1 : end - 1]),
                        to = map(island.rings.corners[i]);
            flattening.addCorner(to, rings);
            // A difference of half a micrometre is to be seen from afar.
            if (mode.levelOfDetail)
                canvas.addThin(from, to, 0.0, true);
        }
        rings.endRing();
        first = end;
    }
    canvas.fill(rings, FillRule::NonZero, true);
}

} // namespace drawing
