#include "cam/gerber/copyclashes.h"

#include <algorithm>

namespace cam {

namespace {

// Copies are rounded to the grid as a whole here, and feature by feature where they are painted.
constexpr std::int64_t margin = 2;

GridBox moved(GridBox box, GridPoint by)
{
    box.low = {box.low.x + by.x - margin, box.low.y + by.y - margin};
    box.high = {box.high.x + by.x + margin, box.high.y + by.y + margin};
    return box;
}

} // namespace

CopyClashes::CopyClashes(DrawnSymbols &drawn, double growth) : m_drawn(drawn), m_growth(growth)
{
    const std::vector<StepImage> &steps = drawn.image().steps;
    m_isNeeded = std::any_of(steps.begin(), steps.end() - 1,
                             [](const StepImage &step) { return step.features.negativeCount > 0; });
}

void CopyClashes::addPainted(std::uint32_t step, const Transform &map)
{
    if (m_isNeeded)
        m_painted.push_back({&variantOf(step, map), m_drawn.grid().round(map.offset)});
}

bool CopyClashes::clashes(std::uint32_t step, const Transform &map)
{
    if (m_drawn.image().steps[step].features.negativeCount == 0 || m_painted.empty())
        return false;
    const Variant &variant = variantOf(step, map);
    const GridPoint at = m_drawn.grid().round(map.offset);
    return std::any_of(m_painted.begin(), m_painted.end(), [&](const Painted &painted) {
        return reaches(variant, at, *painted.variant, painted.at);
    });
}

bool CopyClashes::clashesAmongCopies(std::uint32_t step, const Transform &map, std::uint32_t columns,
                                     std::uint32_t rows, GridPoint pitch)
{
    if (m_drawn.image().steps[step].features.negativeCount == 0)
        return false;
    const Variant &variant = variantOf(step, map);
    const std::int64_t right = columns - 1, top = rows - 1;
    for (std::int64_t row = -top; row <= top; ++row) {
        for (std::int64_t column = -right; column <= right; ++column) {
            if ((row != 0 || column != 0) && reaches(variant, {}, variant, {column * pitch.x, row * pitch.y}))
                return true;
        }
    }
    return false;
}

const CopyClashes::Variant &CopyClashes::variantOf(std::uint32_t step, const Transform &map)
{
    const auto key = std::make_pair(step, LinearPart(map));
    const auto known = m_variants.find(key);
    if (known != m_variants.end())
        return known->second;
    Transform linear = map;
    linear.offset = {};
    const FeatureSet &features = m_drawn.image().steps[step].features;
    FeatureDrawing drawing(m_drawn, features, linear, m_growth);
    Variant variant;
    std::vector<GridBox> negatives;
    for (std::uint32_t i = 0; i < features.order.size(); ++i) {
        const bool isPositive = features.order[i].polarity == Polarity::Positive;
        (isPositive ? variant.positives : negatives).push_back(drawing.box(i));
        (isPositive ? variant.positiveBox : variant.negativeBox).add(drawing.box(i));
    }
    variant.negatives = std::make_unique<Neighbourhood>(negatives);
    return m_variants.emplace(key, std::move(variant)).first->second;
}

// Whether negative features of `variant` may reach positive ones of `other`.
bool CopyClashes::reaches(const Variant &variant, GridPoint at, const Variant &other, GridPoint otherAt)
{
    const GridPoint by{otherAt.x - at.x, otherAt.y - at.y};
    if (variant.negativeBox.isEmpty() || other.positiveBox.isEmpty() ||
        !variant.negativeBox.touches(moved(other.positiveBox, by)))
        return false;
    return std::any_of(other.positives.begin(), other.positives.end(), [&](const GridBox &box) {
        return !box.isEmpty() && variant.negatives->mayTouch(moved(box, by));
    });
}

} // namespace cam
