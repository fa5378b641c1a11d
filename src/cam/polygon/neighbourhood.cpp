#include "cam/polygon/neighbourhood.h"

#include <algorithm>

namespace cam {

Neighbourhood::Neighbourhood(const std::vector<GridBox> &boxes) : m_sums((side + 1) * (side + 1))
{
    for (const GridBox &box : boxes)
        m_extent.add(box);
    // A box adds 1 at its lower left cell and takes it away beyond its other corners; summing twice covers
    // it.
    std::vector<std::int64_t> covered((side + 1) * (side + 1));
    const auto at = [](std::size_t x, std::size_t y) { return y * (side + 1) + x; };
    for (const GridBox &box : boxes) {
        if (box.isEmpty())
            continue;
        const std::size_t left = cell(box.low.x, m_extent.low.x, m_extent.high.x);
        const std::size_t right = cell(box.high.x, m_extent.low.x, m_extent.high.x) + 1;
        const std::size_t bottom = cell(box.low.y, m_extent.low.y, m_extent.high.y);
        const std::size_t top = cell(box.high.y, m_extent.low.y, m_extent.high.y) + 1;
        ++covered[at(left, bottom)];
        --covered[at(right, bottom)];
        --covered[at(left, top)];
        ++covered[at(right, top)];
    }
    for (std::size_t y = 0; y <= side; ++y) {
        for (std::size_t x = 1; x <= side; ++x)
            covered[at(x, y)] += covered[at(x - 1, y)];
    }
    for (std::size_t y = 1; y <= side; ++y) {
        for (std::size_t x = 0; x <= side; ++x)
            covered[at(x, y)] += covered[at(x, y - 1)];
    }
    for (std::size_t y = 0; y < side; ++y) {
        for (std::size_t x = 0; x < side; ++x)
            m_sums[at(x + 1, y + 1)] = m_sums[at(x, y + 1)] + m_sums[at(x + 1, y)] - m_sums[at(x, y)] +
                                       (covered[at(x, y)] > 0 ? 1 : 0);
    }
}

std::size_t Neighbourhood::cell(std::int64_t value, std::int64_t low, std::int64_t high) const
{
    const double share = static_cast<double>(value - low) / static_cast<double>(high - low + 1);
    return std::min(side - 1, static_cast<std::size_t>(std::max(0.0, share * static_cast<double>(side))));
}

bool Neighbourhood::mayTouch(const GridBox &box) const
{
    if (box.isEmpty() || m_extent.isEmpty() || !box.touches(m_extent))
        return false;
    const std::size_t left = cell(box.low.x, m_extent.low.x, m_extent.high.x);
    const std::size_t right = cell(box.high.x, m_extent.low.x, m_extent.high.x) + 1;
    const std::size_t bottom = cell(box.low.y, m_extent.low.y, m_extent.high.y);
    const std::size_t top = cell(box.high.y, m_extent.low.y, m_extent.high.y) + 1;
    const auto sum = [this](std::size_t x, std::size_t y) { return m_sums[y * (side + 1) + x]; };
    return sum(right, top) - sum(left, top) - sum(right, bottom) + sum(left, bottom) > 0;
}

} // namespace cam
