#include "cam/verify/chain.h"

#include <algorithm>
#include <cstdlib>

namespace cam::verify {

namespace {

std::uint64_t mixed(std::uint64_t key)
{
    key ^= key >> 29;
    key *= 0x9E3779B97F4A7C15u;
    return key ^ key >> 32;
}

} // namespace

CornerTable::CornerTable(std::int64_t tolerance) : m_tolerance(tolerance), m_shift(1)
{
    while (std::int64_t(1) << m_shift < 2 * tolerance)
        ++m_shift;
}

void CornerTable::clear()
{
    m_corners.clear();
    std::fill(m_cells.begin(), m_cells.end(), 0);
}

std::size_t CornerTable::cellOf(std::int64_t x, std::int64_t y) const
{
    const std::uint64_t key = static_cast<std::uint64_t>(x >> m_shift) * 0xD6E8FEB86659FD93u +
                              static_cast<std::uint64_t>(y >> m_shift);
    return static_cast<std::size_t>(mixed(key)) & (m_cells.size() - 1);
}

// 0 for none.
std::uint32_t CornerTable::find(GridPoint at) const
{
    for (std::uint32_t n = m_cells[cellOf(at.x, at.y)]; n != 0; n = m_corners[n - 1].next) {
        if (m_corners[n - 1].at == at)
            return n;
    }
    return 0;
}

std::uint32_t CornerTable::nearest(GridPoint at) const
{
    std::uint32_t best = 0;
    std::int64_t bestFar = m_tolerance + 1;
    const std::int64_t xs[2] = {at.x - m_tolerance, at.x + m_tolerance};
    const std::int64_t ys[2] = {at.y - m_tolerance, at.y + m_tolerance};
    std::size_t seen[4];
    int count = 0;
    for (const std::int64_t x : xs) {
        for (const std::int64_t y : ys) {
            const std::size_t cell = cellOf(x, y);
            if (std::find(seen, seen + count, cell) != seen + count)
                continue;
            seen[count++] = cell;
            for (std::uint32_t n = m_cells[cell]; n != 0; n = m_corners[n - 1].next) {
                const GridPoint there = m_corners[n - 1].at;
                const std::int64_t far = std::max(std::abs(there.x - at.x), std::abs(there.y - at.y));
                if (far < bestFar || (far == bestFar && best != 0 && there < m_corners[best - 1].at)) {
                    best = n;
                    bestFar = far;
                }
            }
        }
    }
    return best;
}

std::uint32_t CornerTable::number(GridPoint at, bool isSecond)
{
    if (m_corners.size() * 2 >= m_cells.size())
        grow();
    if (const std::uint32_t same = find(at))
        return same;
    if (isSecond) {
        if (const std::uint32_t near = nearest(at))
            return near;
    }
    const std::size_t cell = cellOf(at.x, at.y);
    m_corners.push_back({at, m_cells[cell]});
    m_cells[cell] = static_cast<std::uint32_t>(m_corners.size());
    return m_cells[cell];
}

void CornerTable::grow()
{
    m_cells.assign(std::max<std::size_t>(1024, m_cells.size() * 4), 0);
    for (std::size_t i = 0; i < m_corners.size(); ++i) {
        const std::size_t cell = cellOf(m_corners[i].at.x, m_corners[i].at.y);
        m_corners[i].next = m_cells[cell];
        m_cells[cell] = static_cast<std::uint32_t>(i + 1);
    }
}

void Chain::growSums()
{
    std::vector<Sum> before(std::max<std::size_t>(1024, m_sums.size() * 4));
    before.swap(m_sums);
    m_sumCount = 0;
    for (const Sum &sum : before) {
        if (sum.ends != 0 && sum.count != 0)
            add(static_cast<std::uint32_t>(sum.ends >> 32), static_cast<std::uint32_t>(sum.ends), sum.count);
    }
}

void Chain::add(std::uint32_t from, std::uint32_t to, std::int32_t count)
{
    if (from == to)
        return;
    if (to < from) {
        std::swap(from, to);
        count = -count;
    }
    if (m_sumCount * 2 >= m_sums.size())
        growSums();
    const std::uint64_t ends = static_cast<std::uint64_t>(from) << 32 | to;
    std::size_t place = static_cast<std::size_t>(mixed(ends)) & (m_sums.size() - 1);
    while (m_sums[place].ends != 0 && m_sums[place].ends != ends)
        place = (place + 1) & (m_sums.size() - 1);
    if (m_sums[place].ends == 0) {
        m_sums[place].ends = ends;
        ++m_sumCount;
    }
    m_sums[place].count += count;
}

void Chain::add(const GridRing &ring, bool isSecond)
{
    if (ring.size() < 2)
        return;
    std::uint32_t from = m_corners.number(ring.back(), isSecond);
    for (const GridPoint p : ring) {
        const std::uint32_t to = m_corners.number(p, isSecond);
        add(from, to, isSecond ? -1 : 1);
        from = to;
    }
}

void Chain::addFirst(const DirectedEdge &edge)
{
    const std::uint32_t from = m_corners.number(edge.from, false), to = m_corners.number(edge.to, false);
    add(from, to, edge.count);
}

void Chain::addSecond(const DirectedEdge &edge)
{
    const std::uint32_t from = m_corners.number(edge.from, true), to = m_corners.number(edge.to, true);
    add(from, to, edge.count);
}

std::vector<DirectedEdge> Chain::take()
{
    std::vector<DirectedEdge> left;
    for (Sum &sum : m_sums) {
        if (sum.count != 0)
            left.push_back({m_corners[static_cast<std::uint32_t>(sum.ends >> 32)],
                            m_corners[static_cast<std::uint32_t>(sum.ends)], sum.count});
        sum = Sum();
    }
    m_sumCount = 0;
    m_corners.clear();
    return left;
}

std::vector<GridRing> ringsOf(const std::vector<DirectedEdge> &edges)
{
    // Each as often as it counts, by where it starts.
    struct Step
    {
        GridPoint from, to;
    };
    std::vector<Step> steps;
    for (const DirectedEdge &edge : edges) {
        for (std::int32_t i = 0; i < std::abs(edge.count); ++i)
            steps.push_back(edge.count > 0 ? Step{edge.from, edge.to} : Step{edge.to, edge.from});
    }
    std::sort(steps.begin(), steps.end(),
              [](const Step &a, const Step &b) { return a.from != b.from ? a.from < b.from : a.to < b.to; });
    const auto firstAt = [&steps](GridPoint at) {
        return static_cast<std::size_t>(
            std::lower_bound(steps.begin(), steps.end(), at,
                             [](const Step &step, GridPoint p) { return step.from < p; }) -
            steps.begin());
    };
    // How many of the steps that start at one place are taken, kept at the first of them.
    std::vector<std::uint32_t> taken(steps.size(), 0);
    std::vector<GridRing> rings;
    for (std::size_t start = 0; start < steps.size();) {
        std::size_t end = start + 1;
        while (end < steps.size() && steps[end].from == steps[start].from)
            ++end;
        while (taken[start] < end - start) {
            GridRing ring;
            GridPoint at = steps[start].from;
            do {
                const std::size_t first = firstAt(at);
                ring.push_back(at);
                at = steps[first + taken[first]++].to;
            } while (at != steps[start].from);
            rings.push_back(std::move(ring));
        }
        start = end;
    }
    return rings;
}

} // namespace cam::verify
