#include "workbench/view/componentscene.h"

#include "cam/model/steps.h"

#include <algorithm>

namespace {

constexpr double penWidth = 120.0; // micrometres
constexpr double dotWidth = 300.0; // of the first pin's mark
constexpr double halfCross = 5e5;  // nanometres, of what has no outline

std::uint32_t addRound(cam::LayerImage &image, double micrometres)
{
    cam::Symbol symbol;
    symbol.name = "r" + std::to_string(int(micrometres));
    symbol.unit = cam::SymbolUnit::Micrometres;
    symbol.standard = cam::parseStandardSymbol(symbol.name, symbol.unit);
    image.symbols.push_back(std::move(symbol));
    return std::uint32_t(image.symbols.size() - 1);
}

// Of one component: outline and dot, all of them from one record.
class Drawing
{
public:
    Drawing(cam::FeatureSet &features, cam::FeatureSource source) : m_features(features), m_source(source) {}

    void addContour(const cam::ContourView &contour, std::uint32_t pen)
    {
        for (const auto [from, edge] : contour.walk()) {
            if (edge.kind == cam::EdgeKind::Line)
                add(cam::Line{from, edge.end, pen});
            else
                add(cam::Arc{from, edge.end, edge.center, pen, edge.kind == cam::EdgeKind::ArcClockwise});
        }
    }
    void addCross(cam::Point at, std::uint32_t pen)
    {
        add(cam::Line{at - cam::Point{halfCross, 0}, at + cam::Point{halfCross, 0}, pen});
        add(cam::Line{at - cam::Point{0, halfCross}, at + cam::Point{0, halfCross}, pen});
    }
    void addDot(cam::Point at, std::uint32_t symbol)
    {
        cam::Pad dot;
        dot.at = at;
        dot.symbol = symbol;
        add(dot);
    }

private:
    template <typename Record>
    void add(const Record &record)
    {
        m_features.add(record, cam::Polarity::Positive);
        m_features.sources.add(m_source);
    }

    cam::FeatureSet &m_features;
    cam::FeatureSource m_source;
};

} // namespace

const cam::Package *packageOf(const cam::Component &component, const cam::EdaData &eda)
{
    return component.package && *component.package < eda.packages.size() ? &eda.packages[*component.package]
                                                                         : nullptr;
}

cam::ContourPool outlineOf(const cam::Component &component, const cam::ComponentSide &side,
                           const cam::EdaData &eda)
{
    cam::ContourPool outline;
    const cam::Package *package = packageOf(component, eda);
    if (!package)
        return outline;
    const cam::Transform place = cam::placement(component, side.isBottom);
    for (std::size_t i = 0; i < package->outline.size(); ++i)
        outline.add(package->outline[i], place);
    const cam::Box &box = package->box;
    if (outline.isEmpty() && box.low.x < box.high.x && box.low.y < box.high.y) {
        const cam::Point corners[] = {place(box.low), place({box.high.x, box.low.y}), place(box.high),
                                      place({box.low.x, box.high.y})};
        outline.addPolygon(corners, 4, false);
    }
    return outline;
}

cam::Box componentBox(const cam::Component &component, const cam::ComponentSide &side,
                      const cam::EdaData &eda)
{
    const cam::ContourPool outline = outlineOf(component, side, eda);
    cam::Box box;
    for (std::size_t i = 0; i < outline.size(); ++i)
        box.add(cam::extent(outline[i]));
    if (box.isEmpty()) {
        box.add(component.at - cam::Point{halfCross, halfCross});
        box.add(component.at + cam::Point{halfCross, halfCross});
    }
    return box;
}

void addComponents(cam::LayerImage &image, const StepContents &contents)
{
    const std::uint32_t pen = addRound(image, penWidth), dot = addRound(image, dotWidth);
    for (cam::StepImage &step : image.steps) {
        const cam::ComponentSide *side = contents.sideOf(step.name, image.layer);
        if (!side)
            continue;
        const cam::EdaData &eda = contents.partsOf(step.name)->eda;
        for (std::size_t i = 0; i < side->components.size(); ++i) {
            const cam::Component &component = side->components[i];
            Drawing drawing(step.features,
                            {componentRecord() + std::uint32_t(i), std::uint32_t(component.line)});
            const cam::ContourPool outline = outlineOf(component, *side, eda);
            for (std::size_t contour = 0; contour < outline.size(); ++contour)
                drawing.addContour(outline[contour], pen);
            if (outline.isEmpty())
                drawing.addCross(component.at, pen);
            if (component.toeprints.size() > 1)
                drawing.addDot(component.toeprints.front().at, dot);
        }
    }
}

ComponentScene::ComponentScene(std::shared_ptr<const cam::LayerImage> image,
                               std::shared_ptr<const StepContents> contents,
                               const cam::ExportOptions &options, const std::function<void(double)> &report)
    : LayerScene(
          image,
          [&options] {
              cam::ExportOptions placed = options; // components are no image that is grown or negated
              placed.resize = 0.0;
              placed.negative = false;
              return placed;
          }(),
          report),
      m_contents(std::move(contents))
{
    for (const cam::StepImage &step : image->steps) {
        m_components.emplace_back();
        const cam::ComponentSide *side = m_contents->sideOf(step.name, image->layer);
        if (!side)
            continue;
        const cam::EdaData &eda = m_contents->partsOf(step.name)->eda;
        for (const cam::Component &component : side->components)
            m_components.back().push_back({&component, componentBox(component, *side, eda)});
    }
}

const cam::Component *ComponentScene::componentOf(std::uint32_t step, std::uint32_t feature) const
{
    const std::uint32_t record = image().steps[step].features.sources[feature].record;
    const std::size_t index = record - componentRecord();
    return record >= componentRecord() && index < m_components[step].size()
               ? m_components[step][index].component
               : nullptr;
}

std::vector<drawing::FoundFeature> ComponentScene::componentsAt(cam::Point place) const
{
    struct Hit
    {
        drawing::FoundFeature feature;
        double size;
    };
    std::vector<Hit> hits;
    cam::Box point;
    point.add(place);
    cam::forEachStep(image(), cam::Copies::All, [&](std::uint32_t step, const cam::Transform &at) {
        const cam::Transform map = at.then(placement());
        const cam::Box here = drawing::mapped(point, drawing::inverse(map));
        const cam::FeatureSources &sources = image().steps[step].features.sources;
        for (std::size_t i = 0; i < m_components[step].size(); ++i) {
            const cam::Box &box = m_components[step][i].box;
            const auto features = sources.featuresOf(componentRecord() + std::uint32_t(i));
            if (box.touches(here) && features.first < features.second)
                hits.push_back(
                    {{step, features.first, map}, (box.high.x - box.low.x) * (box.high.y - box.low.y)});
        }
    });
    std::sort(hits.begin(), hits.end(), [](const Hit &a, const Hit &b) { return a.size < b.size; });
    std::vector<drawing::FoundFeature> found;
    found.reserve(hits.size());
    for (const Hit &hit : hits)
        found.push_back(hit.feature);
    return found;
}
