// What is left of the edges of two pictures when those that both have are taken away.
//
// Let n(p) be how many paints of a picture cover the point p. It is known from the directed edges of all
// rings alone, and it adds up: the edges of one picture less those of the other are the edges of the
// difference of both n. Edges that both have, and such as one runs along both ways, vanish. Where nothing is
// left both n are the same, and with them the areas: what was drawn in other pieces, or linked along other
// lines, needs no boolean to be seen as equal.
#pragma once

#include "cam/polygon/gridpolygon.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace cam::verify {

// Equal cells over an extent, each a power of two wide: a place's cell costs a shift.
class SquareGrid
{
public:
    SquareGrid() = default;
    SquareGrid(const GridBox &extent, std::size_t mostCells);

    std::size_t cells() const { return m_columns * m_rows; }
    // What lies outside counts for the nearest one.
    std::size_t columnOf(std::int64_t x) const { return indexOf(x - m_low.x, m_columns); }
    std::size_t rowOf(std::int64_t y) const { return indexOf(y - m_low.y, m_rows); }
    std::size_t cell(std::size_t column, std::size_t row) const { return row * m_columns + column; }
    std::size_t cellOf(GridPoint p) const { return cell(columnOf(p.x), rowOf(p.y)); }

private:
    std::size_t indexOf(std::int64_t offset, std::size_t count) const
    {
        return offset < 0 ? 0 : std::min(static_cast<std::size_t>(offset >> m_shift), count - 1);
    }

    GridPoint m_low;
    int m_shift = 3;
    std::size_t m_columns = 1, m_rows = 1;
};

// The corners that others are taken for: those of the first picture.
class CornerIndex
{
public:
    CornerIndex(const std::vector<GridPoint> &corners, std::int64_t tolerance);

    // The nearest of the corners that is no farther than the tolerance away along both axes, or `at` itself.
    // It depends on the place alone, so that rings stay closed.
    GridPoint snapped(GridPoint at) const;

private:
    SquareGrid m_grid;
    std::int64_t m_tolerance;
    std::vector<std::uint32_t> m_firstIn; // by cell, one more than cells: where in m_corners
    std::vector<GridPoint> m_corners;     // cell by cell, from below
};

struct DirectedEdge
{
    GridPoint from, to;
    std::int32_t count = 0; // how much n grows from its right side to its left one, first picture less second
};

class Chain
{
public:
    // Corners of the second picture are taken for one of the first that is no farther than `tolerance`
    // nanometres away along both axes.
    explicit Chain(std::int64_t tolerance) : m_tolerance(tolerance) {}

    void addFirst(const GridRing &ring);
    void addSecond(const GridRing &ring);
    void addFirst(const DirectedEdge &edge);
    void addSecond(const DirectedEdge &edge) { m_second.push_back(edge); }

    // What is left, and the chain empty again.
    std::vector<DirectedEdge> take();

private:
    std::int64_t m_tolerance;
    std::vector<GridPoint> m_corners; // of the first picture
    std::vector<DirectedEdge> m_first, m_second;
};

// Closed rings whose edges are `edges`, as often as these count.
std::vector<GridRing> ringsOf(const std::vector<DirectedEdge> &edges);

} // namespace cam::verify
