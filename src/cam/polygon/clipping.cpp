// Growth is the clipper's; its types stay in this file.
#include "cam/polygon/clipping.h"

#include "cam/polygon/arrangement.h"
#include "cam/polygon/cutting.h"

#include <algorithm>

#include <polyclipping/clipper.hpp>

namespace cam {

namespace {

namespace clip = ClipperLib;

clip::Path toPath(const GridRing &ring, GridPoint origin)
{
    clip::Path path;
    path.reserve(ring.size());
    for (const GridPoint p : ring)
        path.emplace_back(p.x - origin.x, p.y - origin.y);
    return path;
}

GridRing toRing(const clip::Path &path, GridPoint origin)
{
    GridRing ring;
    ring.reserve(path.size());
    for (const clip::IntPoint &p : path)
        ring.push_back({p.X + origin.x, p.Y + origin.y});
    return ring;
}

// Near the origin the clipper gets along with 64-bit products.
GridPoint originOf(const std::vector<GridRing> &rings)
{
    GridBox box;
    for (const GridRing &ring : rings)
        box.add(ring);
    return box.isEmpty() ? GridPoint{}
                         : GridPoint{(box.low.x + box.high.x) / 2, (box.low.y + box.high.y) / 2};
}

// Halves what has too many corners until it has not.
void emitHalves(const GridRing &ring, std::size_t mostCorners,
                const std::function<void(const GridRing &)> &polygon)
{
    if (ring.size() < 3)
        return;
    if (ring.size() <= mostCorners)
        return polygon(ring);
    GridBox box;
    box.add(ring);
    const bool alongX = box.high.x - box.low.x >= box.high.y - box.low.y;
    const std::int64_t size = alongX ? box.high.x - box.low.x : box.high.y - box.low.y;
    if (size < 2)
        return polygon(ring);
    std::vector<std::int64_t> positions;
    positions.reserve(ring.size());
    for (const GridPoint p : ring)
        positions.push_back(alongX ? p.x : p.y);
    const std::int64_t low = alongX ? box.low.x : box.low.y;
    // Where many corners lie near an end, a cut there would take off a strip that has none.
    const std::int64_t at = medianCut(std::move(positions), low, low + size);
    GridRing part;
    for (const bool keepLow : {true, false}) {
        cutRing(ring, alongX, at, keepLow, part);
        // A cut leaves parts linked along the line: take them apart.
        emitSimple(cleaned({part}), mostCorners, polygon);
    }
}

} // namespace

std::vector<GridRing> cleaned(const std::vector<GridRing> &rings)
{
    return combined(BooleanOperation::Union, rings, {});
}

std::vector<GridRing> united(const std::vector<GridRing> &area, const std::vector<GridRing> &rings)
{
    return combined(BooleanOperation::Union, area, rings);
}

std::vector<GridRing> subtracted(const std::vector<GridRing> &area, const std::vector<GridRing> &rings)
{
    return combined(BooleanOperation::Difference, area, rings);
}

std::vector<GridRing> resized(const std::vector<GridRing> &rings, double distance)
{
    constexpr double miterLimit = 2.0;
    const GridPoint origin = originOf(rings);
    clip::ClipperOffset offset(miterLimit);
    for (const GridRing &ring : rings)
        offset.AddPath(toPath(ring, origin), clip::jtMiter, clip::etClosedPolygon);
    clip::Paths paths;
    offset.Execute(paths, distance);
    std::vector<GridRing> result;
    for (const clip::Path &path : paths)
        result.push_back(toRing(path, origin));
    return cleaned(result);
}

void emitSimple(std::vector<GridRing> rings, std::size_t mostCorners,
                const std::function<void(const GridRing &)> &polygon)
{
    // Clean rings come island by island, each followed by its holes.
    for (std::size_t i = 0; i < rings.size();) {
        std::vector<GridRing> holes;
        std::size_t end = i + 1;
        for (; end < rings.size() && doubledArea(rings[end]) < 0.0; ++end)
            holes.push_back(std::move(rings[end]));
        emitIsland(std::move(rings[i]), std::move(holes), mostCorners, polygon);
        i = end;
    }
}

void emitIsland(GridRing island, std::vector<GridRing> holes, std::size_t mostCorners,
                const std::function<void(const GridRing &)> &polygon)
{
    if (!holes.empty())
        island = linkHoles(std::move(island), std::move(holes));
    emitHalves(island, mostCorners, polygon);
}

} // namespace cam
