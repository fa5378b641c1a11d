// Pads that look alike, and draws with one symbol, are planned once.
#include "cam/gerber/paintplan.h"

#include <algorithm>

namespace cam {

namespace {

// What stands in place of an aperture's number, in the table of draws.
constexpr int unknown = -1;
constexpr int polygons = -2; // no aperture draws it
constexpr int nothing = 0;   // it makes no image

} // namespace

PaintPlan::PaintPlan(DrawnSymbols &drawn, ApertureTable &apertures, const FeatureSet &features,
                     const Setting &setting)
    : m_drawn(drawn), m_apertures(apertures), m_features(features), m_setting(setting),
      m_keepsCircles(setting.map.keepsCircles())
{
    for (std::vector<int> &bySymbol : m_drawApertures)
        bySymbol.assign(drawn.image().symbols.size(), unknown);
}

FeaturePlan PaintPlan::plan(const Feature &feature)
{
    switch (feature.kind) {
    case FeatureKind::Line:
        return drawPlan(m_features.lines[feature.index].symbol, feature.polarity);
    case FeatureKind::Arc:
        return drawPlan(m_features.arcs[feature.index].symbol, feature.polarity);
    case FeatureKind::Pad: {
        const Pad &pad = m_features.pads[feature.index];
        const PadKey key(pad, feature.polarity);
        auto known = m_pads.find(key);
        if (known == m_pads.end())
            known = m_pads.emplace(key, padPlan(pad, feature.polarity)).first;
        return {known->second.form, known->second.aperture, &known->second.contours};
    }
    case FeatureKind::Surface:
        break;
    }
    const bool isExact = m_keepsCircles && m_setting.growth == 0.0;
    return {isExact ? PaintForm::Region : PaintForm::Polygons};
}

FeaturePlan PaintPlan::drawPlan(std::uint32_t symbol, Polarity polarity)
{
    int &aperture = m_drawApertures[static_cast<std::size_t>(polarity)][symbol];
    if (aperture == unknown)
        aperture = drawAperture(symbol, polarity);
    if (aperture == nothing)
        return {};
    return aperture == polygons ? FeaturePlan{PaintForm::Polygons} : FeaturePlan{PaintForm::Draw, aperture};
}

// Only circles may be drawn with: readers disagree about the others.
int PaintPlan::drawAperture(std::uint32_t symbol, Polarity polarity)
{
    const std::optional<StandardSymbol> &standard = m_drawn.image().symbols[symbol].standard;
    if (standard && standard->kind == SymbolKind::Null)
        return nothing;
    if (!standard || standard->kind != SymbolKind::Round || !m_keepsCircles)
        return polygons;
    const auto aperture = apertureOf(*standard, growthOf(polarity), m_setting.map);
    return aperture ? m_apertures.code(*aperture) : nothing;
}

PaintPlan::PadPlan PaintPlan::padPlan(const Pad &pad, Polarity polarity)
{
    const Symbol &symbol = symbolOf(pad);
    if (!symbol.standard)
        return {formOfOwn(symbol), 0, {}};
    const double growth = growthOf(polarity) + pad.growth;
    Shape shape = shapeOf(*symbol.standard, growth);
    if (shape.contours.isEmpty())
        return {};
    const auto aperture = apertureOf(*symbol.standard, growth, placement(pad).then(m_setting.map));
    if (aperture && (isDark(polarity) || !aperture->hasClearParts))
        return {PaintForm::Flash, m_apertures.code(*aperture), {}};
    return {m_keepsCircles ? PaintForm::Region : PaintForm::Polygons, 0, std::move(shape.contours)};
}

// What negative features erase within the symbol must not be erased from the layer.
PaintForm PaintPlan::formOfOwn(const Symbol &symbol) const
{
    if (!symbol.features || symbol.features->isEmpty())
        return PaintForm::Nothing;
    return isOnlyPositive(*symbol.features) ? PaintForm::Features : PaintForm::Polygons;
}

bool PaintPlan::isOnlyPositive(const FeatureSet &features) const
{
    if (features.negativeCount > 0)
        return false;
    return std::all_of(features.pads.begin(), features.pads.end(), [this](const Pad &pad) {
        const Symbol &symbol = symbolOf(pad);
        return symbol.standard || !symbol.features || isOnlyPositive(*symbol.features);
    });
}

// A negative pad erases all of what its symbol's features darken.
PaintPlan PaintPlan::featuresOf(const Pad &pad, Polarity polarity) const
{
    return {m_drawn,
            m_apertures,
            *symbolOf(pad).features,
            {placement(pad).then(m_setting.map), growthOf(polarity) + pad.growth, !isDark(polarity)}};
}

void PaintPlan::collectApertures()
{
    for (const Feature &feature : m_features.order) {
        if (plan(feature).form == PaintForm::Features)
            featuresOf(m_features.pads[feature.index], feature.polarity).collectApertures();
    }
}

FeatureDrawing &PaintPlan::drawing()
{
    if (!m_drawing)
        m_drawing = std::make_unique<FeatureDrawing>(m_drawn, m_features, m_setting.map, m_setting.growth);
    return *m_drawing;
}

} // namespace cam
