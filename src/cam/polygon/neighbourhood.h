// A quick answer to which of many boxes are far from all of some others.
#pragma once

#include "cam/polygon/gridpolygon.h"

#include <vector>

namespace cam {

// Which boxes meet one of many others, answered from a coarse grid of counts: a yes may be wrong, a no is
// not.
class Neighbourhood
{
public:
    explicit Neighbourhood(const std::vector<GridBox> &boxes);
    // Whether `box` may meet one of the boxes, edges included.
    bool mayTouch(const GridBox &box) const;

private:
    std::size_t cell(std::int64_t value, std::int64_t low, std::int64_t high) const;

    static constexpr std::size_t side = 512;
    GridBox m_extent;
    std::vector<std::uint32_t> m_sums; // over all cells left and below, one row and column more than cells
};

} // namespace cam
