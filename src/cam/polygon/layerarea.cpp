// Copies of a step differ in their position only: an extent is found once for each way in which a step is
// turned, but every copy's polygons are drawn where they lie, each corner rounded once.
#include "cam/polygon/layerarea.h"

#include "cam/model/steps.h"
#include "cam/polygon/surfacepolygons.h"

#include <map>

namespace cam {

namespace {

constexpr std::uint32_t reportInterval = 1000; // features

} // namespace

LayerArea::LayerArea(DrawnSymbols &symbols, const Transform &map, double growth, WorkProgress &progress)
    : m_symbols(symbols), m_image(symbols.image()), m_map(map), m_growth(growth), m_progress(progress)
{
}

void LayerArea::polygons(const std::function<void(const GridRing &)> &polygon)
{
    forEachStep(m_image, Copies::All, [&](std::uint32_t step, const Transform &place) {
        const FeatureSet &features = m_image.steps[step].features;
        FeatureDrawing drawing(m_symbols, features, place.then(m_map), m_growth);
        if (features.negativeCount > 0) {
            const double work = workOf(features);
            drawing.resolve(polygon, [&](double share) { m_progress.report(work * share); });
            return m_progress.advance(work);
        }
        std::vector<GridRing> rings;
        for (std::uint32_t item = 0; item < features.order.size(); ++item) {
            rings.clear();
            drawing.rings(item, rings);
            const double work = workOf(features, features.order[item]);
            emitArea(std::move(rings), m_symbols.mostCorners(), polygon,
                     [&](double share) { m_progress.report(work * share); });
            m_progress.advance(work);
        }
    });
}

GridBox LayerArea::extent()
{
    GridBox box;
    std::map<std::pair<std::uint32_t, LinearPart>, GridBox> known;
    forEachStep(m_image, Copies::All, [&](std::uint32_t step, const Transform &place) {
        Transform map = place.then(m_map);
        const GridPoint at = m_symbols.grid().round(map.offset);
        map.offset = {};
        const auto key = std::make_pair(step, LinearPart(map));
        auto found = known.find(key);
        if (found == known.end())
            found = known.emplace(key, extentOf(step, map)).first;
        box.add(found->second.moved(at));
    });
    return box;
}

GridBox LayerArea::extentOf(std::uint32_t step, const Transform &map)
{
    const FeatureSet &features = m_image.steps[step].features;
    FeatureDrawing drawing(m_symbols, features, map, m_growth);
    GridBox box;
    if (features.negativeCount > 0) {
        drawing.resolve([&box](const GridRing &ring) { box.add(ring); },
                        [this](double) { m_progress.report(); });
        return box;
    }
    std::vector<GridRing> rings;
    for (std::uint32_t item = 0; item < features.order.size(); ++item) {
        if (item % reportInterval == 0)
            m_progress.report();
        rings.clear();
        drawing.rings(item, rings);
        for (const GridRing &ring : rings)
            box.add(ring);
    }
    return box;
}

GridBox LayerArea::reach()
{
    GridBox box;
    forEachStep(m_image, Copies::All, [&](std::uint32_t step, const Transform &place) {
        const FeatureSet &features = m_image.steps[step].features;
        FeatureDrawing drawing(m_symbols, features, place.then(m_map), m_growth);
        for (std::uint32_t item = 0; item < features.order.size(); ++item) {
            if (item % reportInterval == 0)
                m_progress.report();
            box.add(drawing.box(item));
        }
    });
    return box;
}

std::vector<GridRing> LayerArea::negativeBase(const GridBox &extent) const
{
    std::vector<GridRing> rings;
    contourRings(m_image.profile, m_map, m_symbols.grid(), rings);
    if (rings.empty() && !extent.isEmpty())
        rings.push_back(extent.ring());
    return rings;
}

} // namespace cam
