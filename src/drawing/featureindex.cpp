// Counts first, then fills: the lists of all cells are one.
#include "drawing/featureindex.h"

#include <algorithm>
#include <cmath>

namespace drawing {

using cam::Box;

namespace {

constexpr double featuresOfCell = 16.0;
constexpr int mostAcross = 2048;
constexpr int mostCells = 16; // that a feature stands in

} // namespace

FeatureIndex::FeatureIndex(std::uint32_t count, const std::function<Box(std::uint32_t)> &boxOf)
{
    for (std::uint32_t i = 0; i < count; ++i)
        m_extent.add(boxOf(i));
    if (m_extent.isEmpty())
        return;
    const double width = std::max(1.0, m_extent.high.x - m_extent.low.x);
    const double height = std::max(1.0, m_extent.high.y - m_extent.low.y);
    const double side = std::sqrt(width * height * featuresOfCell / count);
    m_across = std::min(mostAcross, std::max(1, static_cast<int>(width / side)));
    m_up = std::min(mostAcross, std::max(1, static_cast<int>(height / side)));
    m_cellWidth = width / m_across;
    m_cellHeight = height / m_up;

    m_starts.assign(cell(0, m_up) + 1, 0);
    const auto eachCell = [this](const Cells &cells, auto &&take) {
        for (int y = cells.firstY; y <= cells.lastY; ++y) {
            for (int x = cells.firstX; x <= cells.lastX; ++x)
                take(cell(x, y));
        }
    };
    const auto isLarge = [](const Cells &cells) {
        return static_cast<std::int64_t>(cells.lastX - cells.firstX + 1) * (cells.lastY - cells.firstY + 1) >
               mostCells;
    };
    for (std::uint32_t i = 0; i < count; ++i) {
        const Box box = boxOf(i);
        if (box.isEmpty())
            continue;
        const Cells cells = cellsOf(box);
        if (isLarge(cells))
            m_large.push_back(i);
        else
            eachCell(cells, [this](std::size_t at) { ++m_starts[at + 1]; });
    }
    for (std::size_t i = 1; i < m_starts.size(); ++i)
        m_starts[i] += m_starts[i - 1];
    m_features.resize(m_starts.back());
    std::vector<std::uint32_t> next(m_starts.begin(), m_starts.end() - 1);
    for (std::uint32_t i = 0; i < count; ++i) {
        const Box box = boxOf(i);
        if (box.isEmpty())
            continue;
        const Cells cells = cellsOf(box);
        if (!isLarge(cells))
            eachCell(cells, [&](std::size_t at) { m_features[next[at]++] = i; });
    }
}

FeatureIndex::Cells FeatureIndex::cellsOf(const Box &box) const
{
    const auto within = [](double at, double low, double size, int count) {
        return static_cast<int>(std::min<double>(count - 1, std::max(0.0, std::floor((at - low) / size))));
    };
    return {within(box.low.x, m_extent.low.x, m_cellWidth, m_across),
            within(box.low.y, m_extent.low.y, m_cellHeight, m_up),
            within(box.high.x, m_extent.low.x, m_cellWidth, m_across),
            within(box.high.y, m_extent.low.y, m_cellHeight, m_up)};
}

bool FeatureIndex::isMost(const Box &box) const
{
    if (m_extent.isEmpty() || !box.touches(m_extent))
        return false;
    const Cells cells = cellsOf(box);
    return 2.0 * (cells.lastX - cells.firstX + 1) * (cells.lastY - cells.firstY + 1) > 1.0 * m_across * m_up;
}

void FeatureIndex::find(const Box &box, std::vector<std::uint32_t> &found) const
{
    found.clear();
    if (m_extent.isEmpty() || !box.touches(m_extent))
        return;
    const Cells cells = cellsOf(box);
    found = m_large;
    for (int y = cells.firstY; y <= cells.lastY; ++y)
        found.insert(found.end(), m_features.begin() + m_starts[cell(cells.firstX, y)],
                     m_features.begin() + m_starts[cell(cells.lastX, y) + 1]);
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
}

} // namespace drawing
