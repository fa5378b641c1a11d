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

std::uint64_t keyOf(const DirectedEdge &edge)
{
    std::uint64_t key = 0;
    for (const std::int64_t n : {edge.from.x, edge.from.y, edge.to.x, edge.to.y})
        key = mixed(key + static_cast<std::uint64_t>(n));
    return key;
}

// From its smaller end to its larger one.
DirectedEdge inOrder(const DirectedEdge &edge)
{
    return edge.to < edge.from ? DirectedEdge{edge.to, edge.from, -edge.count} : edge;
}

// Sums edges of equal ends up. What is worked on at a time lies in one cell, and stays in the nearest cache.
std::vector<DirectedEdge> sumsOf(const std::vector<DirectedEdge> &edges)
{
    constexpr std::size_t usualInCell = 512;
    GridBox extent;
    for (const DirectedEdge &edge : edges)
        extent.add(edge.from);
    const SquareGrid grid(extent, edges.size() / usualInCell + 1);
    std::vector<std::uint32_t> firstIn(grid.cells() + 1, 0), cells(edges.size()), order(edges.size());
    for (std::size_t i = 0; i < edges.size(); ++i) {
        cells[i] = static_cast<std::uint32_t>(grid.cellOf(edges[i].from));
        ++firstIn[cells[i] + 1];
    }
    for (std::size_t i = 0; i + 1 < firstIn.size(); ++i)
        firstIn[i + 1] += firstIn[i];
    std::vector<std::uint32_t> next(firstIn.begin(), firstIn.end() - 1);
    for (std::uint32_t i = 0; i < edges.size(); ++i)
        order[next[cells[i]]++] = i;

    std::vector<DirectedEdge> left, sums;
    std::vector<std::uint32_t> places; // one more than where in sums; 0: none
    for (std::size_t cell = 0; cell < grid.cells(); ++cell) {
        const std::size_t count = firstIn[cell + 1] - firstIn[cell];
        std::size_t size = 16;
        while (size < 2 * count)
            size *= 2;
        places.assign(size, 0);
        sums.clear();
        for (std::size_t i = firstIn[cell]; i < firstIn[cell + 1]; ++i) {
            const DirectedEdge &edge = edges[order[i]];
            std::size_t place = static_cast<std::size_t>(keyOf(edge)) & (size - 1);
            while (places[place] != 0 &&
                   (sums[places[place] - 1].from != edge.from || sums[places[place] - 1].to != edge.to))
                place = (place + 1) & (size - 1);
            if (places[place] == 0) {
                sums.push_back(edge);
                places[place] = static_cast<std::uint32_t>(sums.size());
            } else {
                sums[places[place] - 1].count += edge.count;
            }
        }
        for (const DirectedEdge &sum : sums) {
            if (sum.count != 0)
                left.push_back(sum);
        }
    }
    return left;
}

} // namespace

SquareGrid::SquareGrid(const GridBox &extent, std::size_t mostCells)
{
    if (extent.isEmpty())
        return;
    m_low = extent.low;
    const auto width = static_cast<std::uint64_t>(extent.high.x - extent.low.x);
    const auto height = static_cast<std::uint64_t>(extent.high.y - extent.low.y);
    while (((width >> m_shift) + 1) > mostCells / ((height >> m_shift) + 1))
        ++m_shift;
    m_columns = static_cast<std::size_t>(width >> m_shift) + 1;
    m_rows = static_cast<std::size_t>(height >> m_shift) + 1;
}

CornerIndex::CornerIndex(const std::vector<GridPoint> &corners, std::int64_t tolerance)
    : m_tolerance(tolerance)
{
    GridBox extent;
    for (const GridPoint corner : corners)
        extent.add(corner);
    m_grid = SquareGrid(extent, 2 * corners.size() + 1);
    m_firstIn.assign(m_grid.cells() + 1, 0);
    for (const GridPoint corner : corners)
        ++m_firstIn[m_grid.cellOf(corner) + 1];
    for (std::size_t i = 0; i + 1 < m_firstIn.size(); ++i)
        m_firstIn[i + 1] += m_firstIn[i];
    m_corners.resize(corners.size());
    std::vector<std::uint32_t> next(m_firstIn.begin(), m_firstIn.end() - 1);
    for (const GridPoint corner : corners)
        m_corners[next[m_grid.cellOf(corner)]++] = corner;
    for (std::size_t i = 0; i + 1 < m_firstIn.size(); ++i)
        std::sort(m_corners.begin() + m_firstIn[i], m_corners.begin() + m_firstIn[i + 1],
                  [](GridPoint a, GridPoint b) { return a.y != b.y ? a.y < b.y : a.x < b.x; });
}

GridPoint CornerIndex::snapped(GridPoint at) const
{
    GridPoint best = at;
    std::int64_t bestFar = m_tolerance + 1;
    const std::size_t firstColumn = m_grid.columnOf(at.x - m_tolerance),
                      lastColumn = m_grid.columnOf(at.x + m_tolerance);
    const std::size_t firstRow = m_grid.rowOf(at.y - m_tolerance), lastRow = m_grid.rowOf(at.y + m_tolerance);
    for (std::size_t row = firstRow; row <= lastRow; ++row) {
        for (std::size_t column = firstColumn; column <= lastColumn; ++column) {
            const std::size_t cell = m_grid.cell(column, row);
            const auto end = m_corners.begin() + m_firstIn[cell + 1];
            auto corner = std::partition_point(m_corners.begin() + m_firstIn[cell], end,
                                               [&](GridPoint p) { return p.y < at.y - m_tolerance; });
            for (; corner != end && corner->y <= at.y + m_tolerance; ++corner) {
                const std::int64_t far = std::max(std::abs(corner->x - at.x), std::abs(corner->y - at.y));
                if (far < bestFar || (far == bestFar && far <= m_tolerance && *corner < best)) {
                    best = *corner;
                    bestFar = far;
                }
            }
        }
    }
    return best;
}

void Chain::addFirst(const GridRing &ring)
{
    if (ring.size() < 2)
        return;
    m_corners.insert(m_corners.end(), ring.begin(), ring.end());
    GridPoint from = ring.back();
    for (const GridPoint p : ring) {
        m_first.push_back({from, p, 1});
        from = p;
    }
}

void Chain::addSecond(const GridRing &ring)
{
    if (ring.size() < 2)
        return;
    GridPoint from = ring.back();
    for (const GridPoint p : ring) {
        m_second.push_back({from, p, -1});
        from = p;
    }
}

void Chain::addFirst(const DirectedEdge &edge)
{
    m_corners.insert(m_corners.end(), {edge.from, edge.to});
    m_first.push_back(edge);
}

std::vector<DirectedEdge> Chain::take()
{
    std::vector<DirectedEdge> edges;
    edges.swap(m_first);
    for (DirectedEdge &edge : edges)
        edge = inOrder(edge);
    if (!m_second.empty()) {
        const CornerIndex index(m_corners, m_tolerance);
        std::vector<GridPoint>().swap(m_corners);
        edges.reserve(edges.size() + m_second.size());
        // Along a ring an edge begins where the one before it ends.
        GridPoint before, snapped = index.snapped(before);
        for (const DirectedEdge &edge : m_second) {
            const GridPoint from = edge.from == before ? snapped : index.snapped(edge.from);
            before = edge.to;
            snapped = index.snapped(edge.to);
            if (from != snapped)
                edges.push_back(inOrder({from, snapped, edge.count}));
        }
        // Of a large plane they take tens of megabytes, and the sums as much again.
        std::vector<DirectedEdge>().swap(m_second);
    }
    m_corners.clear();
    return sumsOf(edges);
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
