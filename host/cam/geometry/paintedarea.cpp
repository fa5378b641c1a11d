#include "host/cam/geometry/paintedarea.h"

#include "host/cam/geometry/cutting.h"

#include <algorithm>

#include <polyclipping/clipper.hpp>

namespace cam {

namespace {

namespace clip = ClipperLib;

// How many corners a piece may hold before it is cut: booleans of this size take about a millisecond.
constexpr std::size_t pieceCorners = 1500;

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

void addHoles(const clip::PolyNode &island, GridPoint origin, std::vector<GridRing> &rings)
{
    for (const clip::PolyNode *hole : island.Childs) {
        rings.push_back(toRing(hole->Contour, origin));
        makeClockwise(rings.back());
    }
}

// Islands and their holes out of a tree of contours: an island inside a hole is an island of its own.
void visitIslands(const clip::PolyNode &parent, const std::function<void(const clip::PolyNode &)> &visit)
{
    for (const clip::PolyNode *island : parent.Childs) {
        visit(*island);
        for (const clip::PolyNode *hole : island->Childs)
            visitIslands(*hole, visit);
    }
}

void emitIsland(GridRing island, std::vector<GridRing> holes, std::size_t mostCorners,
                const std::function<void(const GridRing &)> &polygon);

// Halves what has too many corners until it has not.
void emitHalves(const GridRing &ring, std::size_t mostCorners,
                const std::function<void(const GridRing &)> &polygon)
{
    if (ring.size() < 3)
        return;
    GridBox box;
    box.add(ring);
    const bool alongX = box.high.x - box.low.x >= box.high.y - box.low.y;
    const std::int64_t size = alongX ? box.high.x - box.low.x : box.high.y - box.low.y;
    if (ring.size() <= mostCorners || size < 2)
        return polygon(ring);
    std::vector<std::int64_t> positions;
    positions.reserve(ring.size());
    for (const GridPoint p : ring)
        positions.push_back(alongX ? p.x : p.y);
    const auto middle = positions.begin() + static_cast<std::ptrdiff_t>(positions.size() / 2);
    std::nth_element(positions.begin(), middle, positions.end());
    const std::int64_t low = alongX ? box.low.x : box.low.y;
    const std::int64_t at = std::clamp(*middle, low + 1, low + size - 1);
    GridRing part;
    for (const bool keepLow : {true, false}) {
        cutRing(ring, alongX, at, keepLow, part);
        // A cut leaves parts linked along the line: take them apart.
        emitSimple(cleaned({part}), mostCorners, polygon);
    }
}

void emitIsland(GridRing island, std::vector<GridRing> holes, std::size_t mostCorners,
                const std::function<void(const GridRing &)> &polygon)
{
    if (!holes.empty())
        island = linkHoles(std::move(island), std::move(holes));
    emitHalves(island, mostCorners, polygon);
}

void emitTree(const clip::PolyTree &tree, GridPoint origin, std::size_t mostCorners,
              const std::function<void(const GridRing &)> &polygon)
{
    visitIslands(tree, [&](const clip::PolyNode &island) {
        GridRing outer = toRing(island.Contour, origin);
        makeCounterClockwise(outer);
        std::vector<GridRing> holes;
        addHoles(island, origin, holes);
        emitIsland(std::move(outer), std::move(holes), mostCorners, polygon);
    });
}

} // namespace

std::vector<GridRing> cleaned(const std::vector<GridRing> &rings)
{
    const GridPoint origin = originOf(rings);
    clip::Clipper clipper;
    for (const GridRing &ring : rings)
        clipper.AddPath(toPath(ring, origin), clip::ptSubject, true);
    clip::PolyTree tree;
    clipper.Execute(clip::ctUnion, tree, clip::pftPositive, clip::pftPositive);
    std::vector<GridRing> result;
    visitIslands(tree, [&](const clip::PolyNode &island) {
        result.push_back(toRing(island.Contour, origin));
        makeCounterClockwise(result.back());
        addHoles(island, origin, result);
    });
    return result;
}

std::vector<GridRing> grown(const std::vector<GridRing> &rings, double distance)
{
    constexpr double miterLimit = 2.0;
    const GridPoint origin = originOf(rings);
    clip::ClipperOffset offset(miterLimit);
    for (const GridRing &ring : rings)
        offset.AddPath(toPath(ring, origin), clip::jtMiter, clip::etClosedPolygon);
    clip::PolyTree tree;
    offset.Execute(tree, distance);
    std::vector<GridRing> result;
    visitIslands(tree, [&](const clip::PolyNode &island) {
        result.push_back(toRing(island.Contour, origin));
        makeCounterClockwise(result.back());
        addHoles(island, origin, result);
    });
    return result;
}

void emitSimple(const std::vector<GridRing> &rings, std::size_t mostCorners,
                const std::function<void(const GridRing &)> &polygon)
{
    // Clean rings come island by island, each followed by its holes.
    for (std::size_t i = 0; i < rings.size();) {
        std::size_t end = i + 1;
        while (end < rings.size() && doubledArea(rings[end]) < 0.0)
            ++end;
        emitIsland(rings[i],
                   {rings.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                    rings.begin() + static_cast<std::ptrdiff_t>(end)},
                   mostCorners, polygon);
        i = end;
    }
}

namespace {

// An item with so many corners that it is cut along with the plane instead of being drawn again for each
// piece.
struct LargeItem
{
    std::uint32_t order = 0;
    std::vector<BoxedRing> rings;

    std::size_t corners() const
    {
        std::size_t sum = 0;
        for (const BoxedRing &ring : rings)
            sum += ring.ring.size();
        return sum;
    }
};

struct Piece
{
    GridBox box;
    std::vector<std::uint32_t> small; // indices into the items, in painting order
    std::vector<LargeItem> large;
    std::size_t corners = 0;
};

std::size_t cornersOfLarge(const Piece &piece)
{
    std::size_t sum = 0;
    for (const LargeItem &large : piece.large)
        sum += large.corners();
    return sum;
}

class Resolver
{
public:
    Resolver(PaintSource &source, const std::vector<PaintedArea::Item> &items, std::size_t mostCorners,
             const std::function<void(const GridRing &)> &polygon, const std::function<void(double)> &report)
        : m_source(source), m_items(items), m_mostCorners(mostCorners), m_polygon(polygon), m_report(report)
    {
    }

    void run();

private:
    Piece wholePlane();
    void resolve(Piece piece, double from, double to);
    std::int64_t middleOf(const Piece &piece, bool alongX) const;
    Piece part(const Piece &piece, bool alongX, std::int64_t at, bool keepLow) const;
    void cutLarge(Piece &piece, bool alongX, std::int64_t at, Piece &low, Piece &high) const;
    void resolveWhole(Piece &piece);
    void collect(Piece &piece, std::vector<std::pair<std::uint32_t, std::vector<GridRing>>> &drawn);
    void clipTo(const GridBox &box, std::vector<GridRing> &rings) const;

    PaintSource &m_source;
    const std::vector<PaintedArea::Item> &m_items;
    std::size_t m_mostCorners;
    const std::function<void(const GridRing &)> &m_polygon;
    const std::function<void(double)> &m_report;
};

void Resolver::run()
{
    resolve(wholePlane(), 0.0, 1.0);
}

Piece Resolver::wholePlane()
{
    Piece piece;
    for (std::uint32_t i = 0; i < m_items.size(); ++i) {
        const PaintedArea::Item &item = m_items[i];
        piece.box.add(item.box);
        if (item.corners <= pieceCorners / 4) {
            piece.small.push_back(i);
            piece.corners += item.corners;
        } else {
            LargeItem large;
            large.order = i;
            std::vector<GridRing> rings;
            m_source.rings(item.item, rings);
            for (GridRing &ring : rings)
                large.rings.push_back(boxed(std::move(ring)));
            piece.corners += large.corners();
            piece.large.push_back(std::move(large));
        }
    }
    return piece;
}

void Resolver::resolve(Piece piece, double from, double to)
{
    if (piece.corners == 0)
        return;
    const std::int64_t width = piece.box.high.x - piece.box.low.x;
    const std::int64_t height = piece.box.high.y - piece.box.low.y;
    if (piece.corners > pieceCorners && std::max(width, height) >= 4) {
        const bool alongX = width >= height;
        const std::int64_t at = middleOf(piece, alongX);
        Piece low = part(piece, alongX, at, true);
        Piece high = part(piece, alongX, at, false);
        // Where nearly all small items reach both sides a cut only doubles the work.
        const std::size_t ofLarge = cornersOfLarge(piece);
        if (low.corners + high.corners + ofLarge < piece.corners + piece.corners / 2) {
            cutLarge(piece, alongX, at, low, high);
            piece = Piece();
            const double middle = (from + to) / 2.0;
            resolve(std::move(low), from, middle);
            resolve(std::move(high), middle, to);
            return;
        }
    }
    resolveWhole(piece);
    m_report(to);
}

// A position that has half of the corners on each side.
std::int64_t Resolver::middleOf(const Piece &piece, bool alongX) const
{
    std::vector<std::int64_t> positions;
    for (const std::uint32_t i : piece.small) {
        const GridBox &box = m_items[i].box;
        positions.push_back(alongX ? (box.low.x + box.high.x) / 2 : (box.low.y + box.high.y) / 2);
    }
    // A large item's corners count as often as as many small items would.
    constexpr std::size_t cornersPerPosition = 16;
    for (const LargeItem &large : piece.large) {
        for (const BoxedRing &boxed : large.rings) {
            for (std::size_t i = 0; i < boxed.ring.size(); i += cornersPerPosition)
                positions.push_back(alongX ? boxed.ring[i].x : boxed.ring[i].y);
        }
    }
    const auto middle = positions.begin() + static_cast<std::ptrdiff_t>(positions.size() / 2);
    std::nth_element(positions.begin(), middle, positions.end());
    const std::int64_t low = alongX ? piece.box.low.x : piece.box.low.y;
    const std::int64_t high = alongX ? piece.box.high.x : piece.box.high.y;
    // Never close to an edge: items that reach in from outside may have all their middles there, and a piece
    // must become smaller by being cut.
    const std::int64_t margin = std::max<std::int64_t>(1, (high - low) / 8);
    return std::clamp(*middle, low + margin, high - margin);
}

Piece Resolver::part(const Piece &piece, bool alongX, std::int64_t at, bool keepLow) const
{
    Piece part;
    part.box = piece.box;
    (alongX ? (keepLow ? part.box.high.x : part.box.low.x) : (keepLow ? part.box.high.y : part.box.low.y)) =
        at;
    for (const std::uint32_t i : piece.small) {
        if (!m_items[i].box.touches(part.box))
            continue;
        part.small.push_back(i);
        part.corners += m_items[i].corners;
    }
    return part;
}

// Rings on one side go there as they are; only what crosses the line is cut.
void Resolver::cutLarge(Piece &piece, bool alongX, std::int64_t at, Piece &low, Piece &high) const
{
    GridRing part;
    for (LargeItem &large : piece.large) {
        LargeItem lowItem, highItem;
        lowItem.order = highItem.order = large.order;
        for (BoxedRing &whole : large.rings) {
            if ((alongX ? whole.box.high.x : whole.box.high.y) <= at) {
                lowItem.rings.push_back(std::move(whole));
                continue;
            }
            if ((alongX ? whole.box.low.x : whole.box.low.y) >= at) {
                highItem.rings.push_back(std::move(whole));
                continue;
            }
            for (const bool keepLow : {true, false}) {
                cutRing(whole.ring, alongX, at, keepLow, part);
                if (!part.empty())
                    (keepLow ? lowItem : highItem).rings.push_back(boxed(GridRing(part)));
            }
        }
        for (const bool isLow : {true, false}) {
            LargeItem &item = isLow ? lowItem : highItem;
            Piece &target = isLow ? low : high;
            if (item.rings.empty())
                continue;
            target.corners += item.corners();
            target.large.push_back(std::move(item));
        }
    }
}

void Resolver::clipTo(const GridBox &box, std::vector<GridRing> &rings) const
{
    GridRing part;
    const auto cut = [&part](GridRing &ring, bool alongX, std::int64_t at, bool keepLow) {
        cutRing(ring, alongX, at, keepLow, part);
        ring.swap(part);
    };
    for (GridRing &ring : rings) {
        GridBox extent;
        extent.add(ring);
        if (extent.low.x < box.low.x)
            cut(ring, true, box.low.x, false);
        if (extent.high.x > box.high.x)
            cut(ring, true, box.high.x, true);
        if (extent.low.y < box.low.y)
            cut(ring, false, box.low.y, false);
        if (extent.high.y > box.high.y)
            cut(ring, false, box.high.y, true);
    }
    rings.erase(
        std::remove_if(rings.begin(), rings.end(), [](const GridRing &ring) { return ring.size() < 3; }),
        rings.end());
}

// The rings of everything that reaches the piece, cut to it, in painting order.
void Resolver::collect(Piece &piece, std::vector<std::pair<std::uint32_t, std::vector<GridRing>>> &drawn)
{
    for (const std::uint32_t i : piece.small) {
        std::vector<GridRing> rings;
        m_source.rings(m_items[i].item, rings);
        if (!piece.box.contains(m_items[i].box))
            clipTo(piece.box, rings);
        if (!rings.empty())
            drawn.emplace_back(i, std::move(rings));
    }
    for (LargeItem &large : piece.large) {
        std::vector<GridRing> rings;
        for (BoxedRing &ring : large.rings)
            rings.push_back(std::move(ring.ring));
        drawn.emplace_back(large.order, std::move(rings));
    }
    std::sort(drawn.begin(), drawn.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
}

void Resolver::resolveWhole(Piece &piece)
{
    std::vector<std::pair<std::uint32_t, std::vector<GridRing>>> drawn;
    collect(piece, drawn);
    const GridPoint origin = piece.box.low;
    clip::Paths area;
    clip::PolyTree tree;
    for (std::size_t first = 0; first < drawn.size();) {
        // Everything of one polarity, up to the next change, is painted at once.
        const Polarity polarity = m_items[drawn[first].first].polarity;
        std::size_t end = first;
        clip::Clipper clipper;
        clipper.AddPaths(area, clip::ptSubject, true);
        const bool isDark = polarity == Polarity::Positive;
        for (; end < drawn.size() && m_items[drawn[end].first].polarity == polarity; ++end) {
            // Holes that overlap each other count below 0, which must not take from what others darken there.
            const bool needsCleaning = drawn.size() > 1 && drawn[end].second.size() > 2;
            const std::vector<GridRing> rings =
                needsCleaning ? cleaned(drawn[end].second) : drawn[end].second;
            for (const GridRing &ring : rings)
                clipper.AddPath(toPath(ring, origin), isDark ? clip::ptSubject : clip::ptClip, true);
        }
        first = end;
        if (!isDark && area.empty())
            continue;
        const clip::ClipType operation = isDark ? clip::ctUnion : clip::ctDifference;
        if (first == drawn.size())
            clipper.Execute(operation, tree, clip::pftPositive, clip::pftPositive);
        else
            clipper.Execute(operation, area, clip::pftPositive, clip::pftPositive);
        if (first == drawn.size())
            emitTree(tree, origin, m_mostCorners, m_polygon);
    }
}

} // namespace

namespace {

// Whether `p` is inside of `ring`, by the crossings of a ray to the left.
bool isInside(GridPoint p, const GridRing &ring)
{
    bool isIn = false;
    GridPoint a = ring.back();
    for (const GridPoint b : ring) {
        if ((a.y > p.y) != (b.y > p.y)) {
            const double share = static_cast<double>(p.y - a.y) / static_cast<double>(b.y - a.y);
            if (static_cast<double>(a.x) + share * static_cast<double>(b.x - a.x) < static_cast<double>(p.x))
                isIn = !isIn;
        }
        a = b;
    }
    return isIn;
}

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
                isInside(rings[hole].ring[0], around.ring))
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

std::size_t cornersOf(const std::vector<BoxedRing> &rings)
{
    std::size_t sum = 0;
    for (const BoxedRing &ring : rings)
        sum += ring.ring.size();
    return sum;
}

// A position with half of the corners on each side.
std::int64_t middleCorner(const std::vector<BoxedRing> &rings, bool alongX)
{
    std::vector<std::int64_t> positions;
    for (const BoxedRing &ring : rings) {
        for (const GridPoint p : ring.ring)
            positions.push_back(alongX ? p.x : p.y);
    }
    const auto middle = positions.begin() + static_cast<std::ptrdiff_t>(positions.size() / 2);
    std::nth_element(positions.begin(), middle, positions.end());
    return *middle;
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

private:
    bool link(const std::vector<BoxedRing> &rings) const;
    bool cut(std::vector<BoxedRing> &rings, double from, double to);
    void resolve(std::vector<BoxedRing> rings, double from, double to) const;

    std::size_t m_mostCorners;
    const std::function<void(const GridRing &)> &m_polygon;
    const std::function<void(double)> &m_report;
};

bool SurfaceEmitter::link(const std::vector<BoxedRing> &rings) const
{
    std::vector<Island> islands;
    if (!assignHoles(rings, islands))
        return false;
    for (const Island &island : islands) {
        if (!areApart(rings, island.holes))
            return false;
    }
    for (const Island &island : islands) {
        std::vector<GridRing> holes;
        for (const std::size_t hole : island.holes)
            holes.push_back(rings[hole].ring);
        emitIsland(rings[island.ring].ring, std::move(holes), m_mostCorners, m_polygon);
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
    const std::int64_t at = std::clamp(middleCorner(rings, alongX), low, low + std::max(width, height) - 1);
    std::vector<BoxedRing> lowRings, highRings;
    if (!cutApart(rings, alongX, at, lowRings, highRings))
        return false;
    rings.clear();
    rings.shrink_to_fit();
    const double middle = (from + to) / 2.0;
    emit(std::move(lowRings), from, middle);
    emit(std::move(highRings), middle, to);
    return true;
}

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
    if (corners <= pieceCorners)
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
    if (rings.size() == 1 && rings[0].size() <= mostCorners)
        return polygon(rings[0]);
    std::vector<BoxedRing> boxedRings;
    for (GridRing &ring : rings)
        boxedRings.push_back(boxed(std::move(ring)));
    SurfaceEmitter(mostCorners, polygon, report).emit(std::move(boxedRings), 0.0, 1.0);
}

PaintedArea::PaintedArea(PaintSource &source, std::size_t mostCorners)
    : m_source(source), m_mostCorners(mostCorners)
{
}

void PaintedArea::paint(std::uint32_t item, Polarity polarity, const GridBox &box, std::size_t corners)
{
    if (!box.isEmpty())
        m_items.push_back(
            {box, item, static_cast<std::uint32_t>(std::max<std::size_t>(corners, 4)), polarity});
}

void PaintedArea::resolve(const std::function<void(const GridRing &)> &polygon,
                          const std::function<void(double)> &report) const
{
    Resolver(m_source, m_items, m_mostCorners, polygon, report).run();
}

} // namespace cam
