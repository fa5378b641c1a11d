// What is left of the edges of two pictures when those that both have are taken away.
//
// Let n(p) be how many paints of a picture cover the point p. It is known from the directed edges of all
// rings alone, and it adds up: the edges of one picture less those of the other are the edges of the
// difference of both n. Edges that both have, and such as one runs along both ways, vanish. Where nothing is
// left both n are the same, and with them the areas: what was drawn in other pieces, or linked along other
// lines, needs no boolean to be seen as equal.
#pragma once

#include "cam/polygon/gridpolygon.h"

#include <cstdint>
#include <vector>

namespace cam::verify {

// Numbers for corners.
class CornerTable
{
public:
    // Corners of the second picture are taken for one of the first that is no farther than `tolerance`
    // nanometres away along both axes.
    explicit CornerTable(std::int64_t tolerance);

    // From 1 on. All of the first picture's come before any of the second's.
    std::uint32_t number(GridPoint at, bool isSecond);
    GridPoint operator[](std::uint32_t number) const { return m_corners[number - 1].at; }
    void clear();

private:
    struct Corner
    {
        GridPoint at;
        std::uint32_t next = 0; // of the same cell
    };
    std::size_t cellOf(std::int64_t x, std::int64_t y) const;
    std::uint32_t find(GridPoint at) const;
    std::uint32_t nearest(GridPoint at) const;
    void grow();

    std::int64_t m_tolerance;
    int m_shift; // cells are two to this power wide: a corner's neighbours lie in at most four
    std::vector<Corner> m_corners;
    std::vector<std::uint32_t> m_cells;
};

struct DirectedEdge
{
    GridPoint from, to;
    std::int32_t count = 0; // how much n grows from its right side to its left one, first picture less second
};

class Chain
{
public:
    explicit Chain(std::int64_t tolerance) : m_corners(tolerance) {}

    // All of the first picture's before any of the second's.
    void addFirst(const GridRing &ring) { add(ring, false); }
    void addSecond(const GridRing &ring) { add(ring, true); }
    void addFirst(const DirectedEdge &edge);
    void addSecond(const DirectedEdge &edge);

    // What is left, and the chain empty again.
    std::vector<DirectedEdge> take();

private:
    struct Sum
    {
        std::uint64_t ends = 0; // of corners, the smaller number in the upper half; 0: unused
        std::int32_t count = 0;
    };
    void add(const GridRing &ring, bool isSecond);
    void add(std::uint32_t from, std::uint32_t to, std::int32_t count);
    void growSums();

    CornerTable m_corners;
    std::vector<Sum> m_sums;
    std::size_t m_sumCount = 0;
};

// Closed rings whose edges are `edges`, as often as these count.
std::vector<GridRing> ringsOf(const std::vector<DirectedEdge> &edges);

} // namespace cam::verify
