// The line runs half a unit beyond `at`, so that no corner lies on it. Each ring that crosses it falls into
// chains of corners, by turns on either side; the chains of a side are joined along the line to rings again.
#include "cam/polygon/cutting.h"

#include <algorithm>
#include <utility>

namespace cam {

namespace {

// Where a ring crosses the line, and the chain of the ring's corners that follows there: those up to the next
// crossing.
struct Crossing
{
    double along = 0.0;      // position on the line
    bool isOutwards = false; // from low to high
    GridPoint corner;
    std::size_t partner = 0; // the crossing at the other end of the area's stretch on the line
    const GridRing *ring = nullptr;
    std::size_t edge = 0; // of the ring: the chain starts behind the edge's first corner
    std::size_t next = 0; // the crossing at the chain's end
};

class Cutter
{
public:
    Cutter(bool alongX, std::int64_t at)
        : m_alongX(alongX), m_across(alongX ? &GridPoint::x : &GridPoint::y), m_at(at)
    {
    }

    // `ring` must cross the line, and stay where it is.
    void addRing(const GridRing &ring);
    bool pairCrossings();
    void join(std::vector<BoxedRing> &low, std::vector<BoxedRing> &high) const;

private:
    bool isLow(const GridPoint &p) const { return p.*m_across <= m_at; }
    Crossing crossing(GridPoint a, GridPoint b) const;
    std::size_t cornersFrom(std::size_t first) const;
    GridRing joinFrom(std::size_t first, std::vector<bool> &isUsed) const;

    bool m_alongX;
    std::int64_t GridPoint::*m_across;
    std::int64_t m_at;
    std::vector<Crossing> m_crossings;
};

Crossing Cutter::crossing(GridPoint a, GridPoint b) const
{
    Crossing found;
    found.isOutwards = isLow(a);
    if (!found.isOutwards)
        std::swap(a, b); // the same point, whichever way the edge runs
    const auto across = [this](GridPoint p) { return static_cast<double>(m_alongX ? p.x : p.y); };
    const auto along = [this](GridPoint p) { return static_cast<double>(m_alongX ? p.y : p.x); };
    const double share = (static_cast<double>(m_at) + 0.5 - across(a)) / (across(b) - across(a));
    found.along = along(a) + share * (along(b) - along(a));
    const auto rounded = static_cast<std::int64_t>(found.along < 0.0 ? found.along - 0.5 : found.along + 0.5);
    found.corner = m_alongX ? GridPoint{m_at, rounded} : GridPoint{rounded, m_at};
    return found;
}

void Cutter::addRing(const GridRing &ring)
{
    const std::size_t first = m_crossings.size();
    bool isFromLow = isLow(ring[0]);
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const GridPoint &to = ring[i + 1 < ring.size() ? i + 1 : 0];
        const bool isToLow = isLow(to);
        if (isFromLow == isToLow)
            continue;
        isFromLow = isToLow;
        m_crossings.push_back(crossing(ring[i], to));
        m_crossings.back().ring = &ring;
        m_crossings.back().edge = i;
        m_crossings.back().next = m_crossings.size();
    }
    m_crossings.back().next = first;
}

// Along the line the area's stretches begin and end by turns. A stretch begins where a ring leaves the low
// side, when the cut is across x, for the area lies left of its ring; across y it is the other way round.
bool Cutter::pairCrossings()
{
    std::vector<std::size_t> order(m_crossings.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
        return std::make_pair(m_crossings[a].along, a) < std::make_pair(m_crossings[b].along, b);
    });
    for (std::size_t i = 0; i < order.size(); ++i) {
        const bool begins = i % 2 == 0;
        const bool wanted = begins == m_alongX;
        // The two sides of a slit cross at the same place, in either order.
        std::size_t fitting = i;
        while (fitting < order.size() && m_crossings[order[fitting]].isOutwards != wanted &&
               m_crossings[order[fitting]].along == m_crossings[order[i]].along)
            ++fitting;
        if (fitting == order.size() || m_crossings[order[fitting]].isOutwards != wanted ||
            m_crossings[order[fitting]].along != m_crossings[order[i]].along)
            return false;
        std::swap(order[i], order[fitting]);
        if (!begins) {
            m_crossings[order[i]].partner = order[i - 1];
            m_crossings[order[i - 1]].partner = order[i];
        }
    }
    return order.size() % 2 == 0;
}

void put(GridRing &ring, GridPoint p)
{
    if (ring.empty() || ring.back() != p)
        ring.push_back(p);
}

// Corners first ... last - 1 of `source`, which has no equal neighbours.
void putCorners(GridRing &ring, const GridRing &source, std::size_t first, std::size_t last)
{
    if (first < last && ring.back() == source[first])
        ++first;
    if (first < last)
        ring.insert(ring.end(), source.data() + first, source.data() + last);
}

// The most corners that joinFrom() may put together.
std::size_t Cutter::cornersFrom(std::size_t first) const
{
    std::size_t sum = 0;
    std::size_t at = first;
    do {
        const Crossing &from = m_crossings[at];
        const Crossing &to = m_crossings[from.next];
        sum += 2 + to.edge - from.edge + (to.edge > from.edge ? 0 : from.ring->size());
        at = to.partner;
    } while (at != first);
    return sum;
}

// Along the chain that starts at `first`, back along the line, along the chain there, until it closes.
GridRing Cutter::joinFrom(std::size_t first, std::vector<bool> &isUsed) const
{
    GridRing ring;
    ring.reserve(cornersFrom(first));
    std::size_t at = first;
    do {
        const Crossing &from = m_crossings[at];
        const Crossing &to = m_crossings[from.next];
        const GridRing &source = *from.ring;
        isUsed[at] = true;
        put(ring, from.corner);
        if (to.edge > from.edge) {
            putCorners(ring, source, from.edge + 1, to.edge + 1);
        } else {
            putCorners(ring, source, from.edge + 1, source.size());
            putCorners(ring, source, 0, to.edge + 1);
        }
        put(ring, to.corner);
        at = to.partner;
    } while (at != first);
    while (ring.size() > 1 && ring.back() == ring.front())
        ring.pop_back();
    return ring;
}

void Cutter::join(std::vector<BoxedRing> &low, std::vector<BoxedRing> &high) const
{
    std::vector<bool> isUsed(m_crossings.size());
    for (std::size_t first = 0; first < m_crossings.size(); ++first) {
        if (isUsed[first])
            continue;
        GridRing ring = joinFrom(first, isUsed);
        if (ring.size() >= 3)
            (m_crossings[first].isOutwards ? high : low).push_back(boxed(std::move(ring)));
    }
}

} // namespace

std::int64_t median(std::vector<std::int64_t> positions)
{
    const auto middle = positions.begin() + static_cast<std::ptrdiff_t>(positions.size() / 2);
    std::nth_element(positions.begin(), middle, positions.end());
    return *middle;
}

std::int64_t medianCut(std::vector<std::int64_t> positions, std::int64_t low, std::int64_t high)
{
    const std::int64_t margin = std::max<std::int64_t>(1, (high - low) / 8);
    return std::clamp(median(std::move(positions)), low + margin, high - margin);
}

BoxedRing boxed(GridRing &&ring)
{
    BoxedRing result;
    result.box.add(ring);
    result.ring = std::move(ring);
    return result;
}

bool cutApart(std::vector<BoxedRing> &rings, bool alongX, std::int64_t at, std::vector<BoxedRing> &low,
              std::vector<BoxedRing> &high)
{
    Cutter cutter(alongX, at);
    const auto lowEnd = [alongX](const BoxedRing &ring) { return alongX ? ring.box.low.x : ring.box.low.y; };
    const auto highEnd = [alongX](const BoxedRing &ring) {
        return alongX ? ring.box.high.x : ring.box.high.y;
    };
    for (const BoxedRing &ring : rings) {
        if (lowEnd(ring) <= at && highEnd(ring) > at)
            cutter.addRing(ring.ring);
    }
    if (!cutter.pairCrossings())
        return false;
    for (BoxedRing &ring : rings) {
        if (highEnd(ring) <= at)
            low.push_back(std::move(ring));
        else if (lowEnd(ring) > at)
            high.push_back(std::move(ring));
    }
    cutter.join(low, high);
    rings.clear();
    return true;
}

} // namespace cam
