#include "cam/polygon/paintedarea.h"

#include "cam/polygon/clipping.h"
#include "cam/polygon/cutting.h"

#include <algorithm>
#include <iterator>

namespace cam {

namespace {

// How many corners a piece may hold before it is cut: booleans of this size take about a millisecond.
constexpr std::size_t pieceCorners = 1500;

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
    Resolver(PaintSource &source, const std::deque<PaintedArea::Item> &items, std::size_t mostCorners,
             const std::function<void(const GridRing &)> &polygon, const std::function<void(double)> &report)
        : m_source(source), m_items(items), m_mostCorners(mostCorners), m_polygon(polygon), m_report(report)
    {
    }

    void run();

private:
    Piece wholePlane();
    void resolve(Piece piece, double from, double to);
    std::int64_t middleOf(const Piece &piece, bool alongX) const;
    Piece part(const Piece &piece, bool alongX, std::int64_t at, bool keepLow, double share) const;
    void cutLarge(Piece &piece, bool alongX, std::int64_t at, Piece &low, Piece &high, double share) const;
    void resolveWhole(Piece &piece);
    void collect(Piece &piece, std::vector<std::pair<std::uint32_t, std::vector<GridRing>>> &drawn);
    void clipTo(const GridBox &box, std::vector<GridRing> &rings) const;

    PaintSource &m_source;
    const std::deque<PaintedArea::Item> &m_items;
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
        if (i % 1024 == 0)
            m_report(0.0);
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
    m_report(from);
    const std::int64_t width = piece.box.high.x - piece.box.low.x;
    const std::int64_t height = piece.box.high.y - piece.box.low.y;
    if (piece.corners > pieceCorners && std::max(width, height) >= 4) {
        const bool alongX = width >= height;
        const std::int64_t at = middleOf(piece, alongX);
        m_report(from);
        Piece low = part(piece, alongX, at, true, from);
        Piece high = part(piece, alongX, at, false, from);
        // Where nearly all small items reach both sides a cut only doubles the work.
        const std::size_t ofLarge = cornersOfLarge(piece);
        if (low.corners + high.corners + ofLarge < piece.corners + piece.corners / 2) {
            const std::size_t before = piece.corners;
            cutLarge(piece, alongX, at, low, high, from);
            piece = Piece();
            const double middle = (from + to) / 2.0;
            // The same of the rings of large items that lie upon each other.
            if (low.corners + high.corners >= before + before / 2) {
                resolveWhole(low);
                m_report(middle);
                resolveWhole(high);
                m_report(to);
                return;
            }
            resolve(std::move(low), from, middle);
            resolve(std::move(high), middle, to);
            return;
        }
    }
    resolveWhole(piece);
    m_report(to);
}

// A position that has about half of the corners on each side.
std::int64_t Resolver::middleOf(const Piece &piece, bool alongX) const
{
    std::vector<std::int64_t> positions;
    const std::size_t step = 1 + piece.small.size() / 65536; // of so many any sample has the middle
    for (std::size_t n = 0; n < piece.small.size(); n += step) {
        const GridBox &box = m_items[piece.small[n]].box;
        positions.push_back(alongX ? (box.low.x + box.high.x) / 2 : (box.low.y + box.high.y) / 2);
    }
    // A large item's corners count as often as as many small items would.
    constexpr std::size_t cornersPerPosition = 16;
    for (const LargeItem &large : piece.large) {
        for (const BoxedRing &boxed : large.rings) {
            for (std::size_t i = 0; i < boxed.ring.size(); i += cornersPerPosition * step)
                positions.push_back(alongX ? boxed.ring[i].x : boxed.ring[i].y);
        }
    }
    // Items that reach in from outside may have all their middles near an end.
    return medianCut(std::move(positions), alongX ? piece.box.low.x : piece.box.low.y,
                     alongX ? piece.box.high.x : piece.box.high.y);
}

// The small items that reach one side. `share` of the work is done meanwhile.
Piece Resolver::part(const Piece &piece, bool alongX, std::int64_t at, bool keepLow, double share) const
{
    Piece part;
    part.box = piece.box;
    (alongX ? (keepLow ? part.box.high.x : part.box.low.x) : (keepLow ? part.box.high.y : part.box.low.y)) =
        at;
    std::size_t looked = 0;
    for (const std::uint32_t i : piece.small) {
        if (looked++ % 65536 == 0)
            m_report(share);
        if (!m_items[i].box.touches(part.box))
            continue;
        part.small.push_back(i);
        part.corners += m_items[i].corners;
    }
    return part;
}

// Rings on one side go there as they are; only what crosses the line is cut.
void Resolver::cutLarge(Piece &piece, bool alongX, std::int64_t at, Piece &low, Piece &high,
                        double share) const
{
    GridRing part;
    std::size_t looked = 0;
    for (LargeItem &large : piece.large) {
        if (looked++ % 1024 == 0)
            m_report(share);
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
    std::vector<GridRing> area;
    for (std::size_t first = 0; first < drawn.size();) {
        // Everything of one polarity, up to the next change, is painted at once.
        const Polarity polarity = m_items[drawn[first].first].polarity;
        std::vector<GridRing> rings;
        std::size_t end = first;
        for (; end < drawn.size() && m_items[drawn[end].first].polarity == polarity; ++end) {
            // Holes that overlap each other count below 0, which must not take from what others darken there.
            const bool needsCleaning = drawn.size() > 1 && drawn[end].second.size() > 2;
            std::vector<GridRing> ofItem =
                needsCleaning ? cleaned(drawn[end].second) : std::move(drawn[end].second);
            std::move(ofItem.begin(), ofItem.end(), std::back_inserter(rings));
        }
        first = end;
        if (polarity == Polarity::Positive)
            area = united(area, rings);
        else if (!area.empty())
            area = subtracted(area, rings);
    }
    emitSimple(std::move(area), m_mostCorners, m_polygon);
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
