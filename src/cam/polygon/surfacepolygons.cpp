#include "cam/polygon/surfacepolygons.h"

#include "cam/polygon/arrangement.h"
#include "cam/polygon/clipping.h"
#include "cam/polygon/cutting.h"
#include "cam/polygon/paintedarea.h"

#include <algorithm>

namespace cam {

namespace {

// An island with its holes: indices into a list of rings.
struct Island
{
    std::size_t ring = 0;
    std::vector<std::size_t> holes;
};

// Finds the island of each hole. False when there is a hole outside of all islands.
bool assignHoles(const std::vector<BoxedRing> &rings, std::vector<Island> &islands)
{
    std::vector<std::size_t> holes;
    for (std::size_t i = 0; i < rings.size(); ++i) {
        const double area = doubledArea(rings[i].ring);
        if (area > 0.0)
            islands.push_back({i, {}});
        else if (area < 0.0)
            holes.push_back(i);
    }
    for (const std::size_t hole : holes) {
        // Of islands inside each other the innermost, which has the smallest box.
        Island *best = nullptr;
        for (Island &island : islands) {
            const BoxedRing &around = rings[island.ring];
            if (around.box.contains(rings[hole].box) &&
                (!best || rings[best->ring].box.contains(around.box)) &&
                encloses(around.ring, rings[hole].ring[0]))
                best = &island;
        }
        if (!best)
            return false;
        best->holes.push_back(hole);
    }
    return true;
}

// Whether the boxes of the holes are apart from each other, and so the holes. A no may be wrong.
bool areApart(const std::vector<BoxedRing> &rings, const std::vector<std::size_t> &holes)
{
    std::vector<GridBox> boxes;
    boxes.reserve(holes.size());
    for (const std::size_t hole : holes)
        boxes.push_back(rings[hole].box);
    std::sort(boxes.begin(), boxes.end(),
              [](const GridBox &a, const GridBox &b) { return a.low.x < b.low.x; });
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        for (std::size_t j = i + 1; j < boxes.size() && boxes[j].low.x <= boxes[i].high.x; ++j) {
            if (boxes[i].touches(boxes[j]))
                return false;
        }
    }
    return true;
}

// Whether the edges of a ring meet the edge from `a` to `b`.
bool meets(const GridRing &ring, GridPoint a, GridPoint b)
{
    const auto side = [](GridPoint from, GridPoint to, GridPoint p) {
        const double turn = static_cast<double>(to.x - from.x) * static_cast<double>(p.y - from.y) -
                            static_cast<double>(to.y - from.y) * static_cast<double>(p.x - from.x);
        return turn > 0.0 ? 1 : turn < 0.0 ? -1 : 0;
    };
    GridBox box;
    box.add(a);
    box.add(b);
    GridPoint c = ring.back();
    for (const GridPoint d : ring) {
        GridBox other;
        other.add(c);
        other.add(d);
        if (box.touches(other) && side(a, b, c) * side(a, b, d) <= 0 && side(c, d, a) * side(c, d, b) <= 0)
            return true;
        c = d;
    }
    return false;
}

// Whether a hole in the island's box meets the island's edges: one that is not convex may have it outside.
bool leaves(const BoxedRing &hole, const GridRing &island)
{
    GridPoint a = island.back();
    for (const GridPoint b : island) {
        const bool isNear = std::min(a.x, b.x) <= hole.box.high.x && std::max(a.x, b.x) >= hole.box.low.x &&
                            std::min(a.y, b.y) <= hole.box.high.y && std::max(a.y, b.y) >= hole.box.low.y;
        if (isNear && meets(hole.ring, a, b))
            return true;
        a = b;
    }
    return false;
}

std::size_t cornersOf(const std::vector<BoxedRing> &rings)
{
    std::size_t sum = 0;
    for (const BoxedRing &ring : rings)
        sum += ring.ring.size();
    return sum;
}

// A position with about half of the corners on each side: the middle one of every few corners.
std::int64_t middleCorner(const std::vector<BoxedRing> &rings, bool alongX)
{
    constexpr std::size_t positionsWanted = 1024;
    const std::size_t step = 1 + cornersOf(rings) / positionsWanted;
    std::vector<std::int64_t> positions;
    std::size_t next = 0; // counted from the ring's first corner
    for (const BoxedRing &ring : rings) {
        for (; next < ring.ring.size(); next += step)
            positions.push_back(alongX ? ring.ring[next].x : ring.ring[next].y);
        next -= ring.ring.size();
    }
    return median(std::move(positions));
}

// Cuts what has too many corners or takes too long to link, links the holes of the rest. Whatever turns out
// not to be well made goes through a boolean, by itself.
class SurfaceEmitter
{
public:
    SurfaceEmitter(std::size_t mostCorners, const std::function<void(const GridRing &)> &polygon,
                   const std::function<void(double)> &report)
        : m_mostCorners(mostCorners), m_polygon(polygon), m_report(report)
    {
    }

    // `areWellMade`: no ring crosses itself.
    void start(std::vector<BoxedRing> rings, bool areWellMade)
    {
        if (areWellMade)
            emit(std::move(rings), 0.0, 1.0);
        else
            resolve(std::move(rings), 0.0, 1.0);
        m_report(1.0);
    }

private:
    void emit(std::vector<BoxedRing> rings, double from, double to)
    {
        constexpr std::size_t mostWork = 500'000; // holes times corners
        const std::size_t corners = cornersOf(rings);
        const bool isSmall =
            corners + 3 * rings.size() <= m_mostCorners && corners * rings.size() <= mostWork;
        if (isSmall ? !link(rings) : !cut(rings, from, to))
            resolve(std::move(rings), from, to);
        if (isSmall)
            m_report(to);
    }
    bool link(std::vector<BoxedRing> &rings) const;
    bool cut(std::vector<BoxedRing> &rings, double from, double to);
    void resolve(std::vector<BoxedRing> rings, double from, double to) const;

    std::size_t m_mostCorners;
    const std::function<void(const GridRing &)> &m_polygon;
    const std::function<void(double)> &m_report;
};

// False, with the rings as they were, where holes touch each other or leave their island.
bool SurfaceEmitter::link(std::vector<BoxedRing> &rings) const
{
    std::vector<Island> islands;
    if (!assignHoles(rings, islands))
        return false;
    for (const Island &island : islands) {
        if (!areApart(rings, island.holes))
            return false;
        for (const std::size_t hole : island.holes) {
            if (leaves(rings[hole], rings[island.ring].ring))
                return false;
        }
    }
    for (const Island &island : islands) {
        std::vector<GridRing> holes;
        for (const std::size_t hole : island.holes)
            holes.push_back(std::move(rings[hole].ring));
        emitIsland(std::move(rings[island.ring].ring), std::move(holes), m_mostCorners, m_polygon);
    }
    return true;
}

bool SurfaceEmitter::cut(std::vector<BoxedRing> &rings, double from, double to)
{
    GridBox box;
    for (const BoxedRing &ring : rings)
        box.add(ring.box);
    const std::int64_t width = box.high.x - box.low.x, height = box.high.y - box.low.y;
    const bool alongX = width >= height;
    if (std::max(width, height) < 4)
        return false;
    const std::int64_t low = alongX ? box.low.x : box.low.y;
    // Never close to an end, so that pieces become smaller.
    const std::int64_t extent = std::max(width, height), margin = std::max<std::int64_t>(1, extent / 8);
    const std::int64_t at = std::clamp(middleCorner(rings, alongX), low + margin, low + extent - margin);
    const std::size_t corners = cornersOf(rings);
    std::vector<BoxedRing> lowRings, highRings;
    if (!cutApart(rings, alongX, at, lowRings, highRings))
        return false;
    rings.clear();
    rings.shrink_to_fit();
    const double middle = (from + to) / 2.0;
    // Where rings overlap, both sides have most of them, however often they are cut.
    if (cornersOf(lowRings) + cornersOf(highRings) >= corners + corners / 2) {
        resolve(std::move(lowRings), from, middle);
        resolve(std::move(highRings), middle, to);
    } else {
        emit(std::move(lowRings), from, middle);
        emit(std::move(highRings), middle, to);
    }
    return true;
}

// Beyond that the boolean works piece by piece.
constexpr std::size_t mostCleanedCorners = 1500;

void SurfaceEmitter::resolve(std::vector<BoxedRing> boxedRings, double from, double to) const
{
    GridBox box;
    std::vector<GridRing> rings;
    std::size_t corners = 0;
    for (BoxedRing &ring : boxedRings) {
        corners += ring.ring.size();
        box.add(ring.box);
        rings.push_back(std::move(ring.ring));
    }
    if (corners <= mostCleanedCorners)
        return emitSimple(cleaned(rings), m_mostCorners, m_polygon);

    class Source : public PaintSource
    {
    public:
        explicit Source(std::vector<GridRing> rings) : m_rings(std::move(rings)) {}
        void rings(std::uint32_t, std::vector<GridRing> &rings) override { rings = std::move(m_rings); }

    private:
        std::vector<GridRing> m_rings;
    } source(std::move(rings)); // asked once: an item of this size is drawn once and then cut
    PaintedArea area(source, m_mostCorners);
    area.paint(0, Polarity::Positive, box, corners);
    area.resolve(m_polygon, [&](double share) { m_report(from + (to - from) * share); });
}

} // namespace

void emitArea(std::vector<GridRing> rings, std::size_t mostCorners,
              const std::function<void(const GridRing &)> &polygon, const std::function<void(double)> &report)
{
    const bool areWellMade =
        std::none_of(rings.begin(), rings.end(), [](const GridRing &ring) { return crossesItself(ring); });
    if (areWellMade && rings.size() == 1 && rings[0].size() <= mostCorners) {
        if (doubledArea(rings[0]) > 0.0) // a hole alone darkens nothing
            polygon(rings[0]);
        return;
    }
    std::vector<BoxedRing> boxedRings;
    boxedRings.reserve(rings.size());
    for (GridRing &ring : rings)
        boxedRings.push_back(boxed(std::move(ring)));
    SurfaceEmitter(mostCorners, polygon, report).start(std::move(boxedRings), areWellMade);
}

} // namespace cam
