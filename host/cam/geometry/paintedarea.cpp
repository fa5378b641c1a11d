#include "host/cam/geometry/paintedarea.h"

#include <algorithm>

#include <polyclipping/clipper.hpp>

namespace cam {

namespace {

namespace clip = ClipperLib;

// How many corners a piece may hold before it is cut: booleans of this size take about a millisecond.
constexpr std::size_t pieceCorners = 3000;

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
    std::vector<GridRing> rings;

    std::size_t corners() const
    {
        std::size_t sum = 0;
        for (const GridRing &ring : rings)
            sum += ring.size();
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
    void resolveWhole(const Piece &piece);
    void collect(const Piece &piece, std::vector<std::pair<std::uint32_t, std::vector<GridRing>>> &drawn);
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
            m_source.rings(item.item, large.rings);
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
        // Where nearly everything reaches both sides a cut only doubles the work.
        if (low.corners + high.corners < piece.corners + piece.corners / 2) {
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
        for (const GridRing &ring : large.rings) {
            for (std::size_t i = 0; i < ring.size(); i += cornersPerPosition)
                positions.push_back(alongX ? ring[i].x : ring[i].y);
        }
    }
    const auto middle = positions.begin() + static_cast<std::ptrdiff_t>(positions.size() / 2);
    std::nth_element(positions.begin(), middle, positions.end());
    const std::int64_t low = alongX ? piece.box.low.x : piece.box.low.y;
    const std::int64_t high = alongX ? piece.box.high.x : piece.box.high.y;
    return std::clamp(*middle, low + 1, high - 1);
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
    for (const LargeItem &large : piece.large) {
        LargeItem cut;
        cut.order = large.order;
        GridRing ring;
        for (const GridRing &whole : large.rings) {
            cutRing(whole, alongX, at, keepLow, ring);
            if (!ring.empty())
                cut.rings.push_back(ring);
        }
        if (cut.rings.empty())
            continue;
        part.corners += cut.corners();
        part.large.push_back(std::move(cut));
    }
    return part;
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
void Resolver::collect(const Piece &piece,
                       std::vector<std::pair<std::uint32_t, std::vector<GridRing>>> &drawn)
{
    for (const std::uint32_t i : piece.small) {
        std::vector<GridRing> rings;
        m_source.rings(m_items[i].item, rings);
        if (!piece.box.contains(m_items[i].box))
            clipTo(piece.box, rings);
        if (!rings.empty())
            drawn.emplace_back(i, std::move(rings));
    }
    for (const LargeItem &large : piece.large)
        drawn.emplace_back(large.order, large.rings);
    std::sort(drawn.begin(), drawn.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
}

void Resolver::resolveWhole(const Piece &piece)
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
            const bool needsCleaning = drawn[end].second.size() > 2;
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
