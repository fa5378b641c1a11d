// Where the edges of outlines meet, and what lies left of a point: found through a square grid of cells, so
// that the cost grows in proportion to the number of edges.
#pragma once

#include "cam/gerber/gridoutline.h"

#include <functional>
#include <vector>

namespace cam {

// The nearest edge left of a point.
struct Landing
{
    std::uint32_t outline = 0;
    std::uint32_t edge = 0;
    GridPoint at;             // on the edge, level with the point
    double share = 0.0;       // how much of the edge lies before it
    bool isUpwards = false;   // how the edge runs there
    bool isAmbiguous = false; // another edge runs through the same place
    std::uint32_t hole = 0;   // the outline that the point belongs to
};

// Which edges reach into which cell of a square grid over all outlines. Full circles must have been split.
class EdgeCells
{
public:
    explicit EdgeCells(const std::vector<GridOutline> &outlines);

    using OutlinePair = std::function<bool(std::uint32_t, std::uint32_t)>;
    // Calls `visit` with each two outlines that come closer to each other than two nanometres, and with an
    // outline twice where it meets itself: for each place of those pairs that `isWanted` answers true for.
    void forEachMeeting(const OutlinePair &isWanted,
                        const std::function<void(std::uint32_t, std::uint32_t)> &visit) const;

    // The nearest edge left of `from` that belongs to no outline for which `isLeftOut` is set. False where
    // there is none.
    bool findLeft(GridPoint from, const std::vector<bool> &isLeftOut, Landing &result) const;

private:
    struct EdgeName
    {
        std::uint32_t outline;
        std::uint32_t edge;
    };

    template <typename Visit>
    void cellsOf(EdgeName name, Visit visit) const;
    template <typename Visit>
    void forEachEdge(Visit visit) const;
    void fill();
    bool meet(EdgeName a, EdgeName b) const;
    const GridBox &boxOf(EdgeName name) const { return m_boxes[m_firstBox[name.outline] + name.edge]; }

    const std::vector<GridOutline> &m_outlines;
    std::vector<std::size_t> m_firstBox; // by outline
    std::vector<GridBox> m_boxes;        // around the edges, a little wider
    GridBox m_extent;
    std::int64_t m_side = 1; // cells in a row and in a column
    std::int64_t m_cellWidth = 1, m_cellHeight = 1;
    std::vector<std::uint32_t> m_first; // by cell: its first entry in m_edges
    std::vector<EdgeName> m_edges;
};

} // namespace cam
