// The line runs half a unit beyond `at`, so that no corner lies on it. Each ring that crosses it falls into
// chains of corners, by turns on either side; the chains of a side are joined along the line to rings again.
#include "host/cam/geometry/cutting.h"

#include <algorithm>
#include <utility>

namespace cam {

namespace {

// Where a ring crosses the line.
struct Crossing
{
    double along = 0.0;      // position on the line
    bool isOutwards = false; // from low to high
    GridPoint corner;
    std::size_t partner = 0; // the crossing at the other end of the area's stretch on the line
    std::size_t chain = 0;   // the chain that starts here
};

// Corners of one side from one crossing of a ring to the next, without them.
struct Chain
{
    bool isLow = false;
    std::size_t start = 0; // crossings
    std::size_t end = 0;
    GridRing corners;
};

class Cutter
{
public:
    Cutter(bool alongX, std::int64_t at) : m_alongX(alongX), m_at(at) {}

    void addRing(const GridRing &ring);
    bool pairCrossings();
    void join(std::vector<BoxedRing> &low, std::vector<BoxedRing> &high) const;

private:
    bool isLow(GridPoint p) const { return (m_alongX ? p.x : p.y) <= m_at; }
    Crossing crossing(GridPoint a, GridPoint b) const;

    bool m_alongX;
    std::int64_t m_at;
    std::vector<Crossing> m_crossings;
    std::vector<Chain> m_chains;
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
    const std::size_t firstCrossing = m_crossings.size();
    const std::size_t firstChain = m_chains.size();
    GridRing beforeFirst; // corners up to the first crossing: they end the last chain
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const GridPoint a = ring[i];
        const GridPoint b = ring[i + 1 < ring.size() ? i + 1 : 0];
        (m_chains.size() == firstChain ? beforeFirst : m_chains.back().corners).push_back(a);
        if (isLow(a) == isLow(b))
            continue;
        const std::size_t here = m_crossings.size();
        if (m_chains.size() > firstChain)
            m_chains.back().end = here;
        m_crossings.push_back(crossing(a, b));
        m_crossings.back().chain = m_chains.size();
        m_chains.emplace_back();
        m_chains.back().isLow = isLow(b);
        m_chains.back().start = here;
    }
    Chain &last = m_chains.back();
    last.end = firstCrossing;
    last.corners.insert(last.corners.end(), beforeFirst.begin(), beforeFirst.end());
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

void Cutter::join(std::vector<BoxedRing> &low, std::vector<BoxedRing> &high) const
{
    std::vector<bool> isUsed(m_chains.size());
    for (std::size_t first = 0; first < m_chains.size(); ++first) {
        if (isUsed[first])
            continue;
        GridRing ring;
        const auto put = [&ring](GridPoint p) {
            if (ring.empty() || ring.back() != p)
                ring.push_back(p);
        };
        std::size_t at = first;
        do {
            const Chain &chain = m_chains[at];
            isUsed[at] = true;
            put(m_crossings[chain.start].corner);
            for (const GridPoint p : chain.corners)
                put(p);
            put(m_crossings[chain.end].corner);
            at = m_crossings[m_crossings[chain.end].partner].chain;
        } while (at != first);
        while (ring.size() > 1 && ring.back() == ring.front())
            ring.pop_back();
        if (ring.size() >= 3)
            (m_chains[first].isLow ? low : high).push_back(boxed(std::move(ring)));
    }
}

} // namespace

BoxedRing boxed(GridRing &&ring)
{
    BoxedRing result;
    result.box.add(ring);
    result.ring = std::move(ring);
    return result;
}

bool cutApart(const std::vector<BoxedRing> &rings, bool alongX, std::int64_t at, std::vector<BoxedRing> &low,
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
    for (const BoxedRing &ring : rings) {
        if (highEnd(ring) <= at)
            low.push_back(ring);
        else if (lowEnd(ring) > at)
            high.push_back(ring);
    }
    cutter.join(low, high);
    return true;
}

} // namespace cam
