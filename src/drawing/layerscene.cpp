#include "drawing/layerscene.h"

#include "cam/base/error.h"
#include "cam/polygon/drawing.h"

#include <algorithm>
#include <cmath>

namespace drawing {

using cam::Box;
using cam::Point;
using cam::Polarity;
using cam::Transform;

namespace {

constexpr std::size_t featuresPerCheck = 256;
constexpr std::uint32_t featuresPerReport = 4096;

Box around(Point at, double reach)
{
    Box box;
    box.add(at - Point{reach, reach});
    box.add(at + Point{reach, reach});
    return box;
}

double growthOf(Polarity polarity, double resize)
{
    return polarity == Polarity::Positive ? resize : -resize;
}

// The outlines of all surfaces, resized as the writers resize them.
void resizeSurfaces(const cam::LayerImage &image, const cam::FeatureSet &features, double resize,
                    std::vector<SurfaceSize> &sizes, const std::function<void(double)> &report)
{
    constexpr std::size_t mostCorners = 8000;
    cam::DrawnSymbols symbols(image, cam::Grid(1.0), mostCorners);
    cam::FeatureDrawing drawing(symbols, features, Transform(), resize);
    std::size_t done = 0;
    for (const cam::Feature &feature : features.order) {
        if (feature.kind != cam::FeatureKind::Surface)
            continue;
        SurfaceSize &size = sizes[feature.index];
        size.box = {};
        std::vector<cam::GridRing> rings;
        drawing.surface(feature, rings);
        for (const cam::GridRing &ring : rings) {
            size.resized.emplace_back();
            for (const cam::GridPoint p : ring) {
                size.resized.back().push_back(cam::pointOf(p));
                size.box.add(cam::pointOf(p));
            }
        }
        report(static_cast<double>(++done) / static_cast<double>(features.surfaces.size()));
    }
}

SurfaceSize sizeOf(const cam::FeatureSet &features, const cam::Surface &surface)
{
    SurfaceSize size;
    for (std::uint32_t i = 0; i < surface.contourCount; ++i) {
        const cam::ContourView contour = features.contours[surface.firstContour + i];
        size.box.add(cam::extent(contour));
        size.area += std::fabs(cam::signedArea(contour)) * (contour.isHole ? -1.0 : 1.0);
        for (const auto [from, edge] : contour.walk())
            size.perimeter += cam::distance(from, edge.end);
    }
    size.area = std::max(0.0, size.area);
    return size;
}

} // namespace

LayerScene::LayerScene(std::shared_ptr<const cam::LayerImage> image, const cam::ExportOptions &options,
                       const std::function<void(double)> &report)
    : m_image(std::move(image)), m_options(options), m_map(cam::exportTransform(options, m_image->datum)),
      m_shapes(*m_image)
{
    if (!(std::fabs(m_map.determinant()) > 0.0))
        throw cam::Error("a scale of 0 leaves nothing to draw");
    m_options.report = [](double) {};
    for (const cam::StepImage &step : m_image->steps)
        addStep(step, report);
    report(1.0);
}

void LayerScene::addStep(const cam::StepImage &step, const std::function<void(double)> &report)
{
    StepScene made;
    made.drawing.features = &step.features;
    const auto count = static_cast<std::uint32_t>(step.features.order.size());
    // Every feature is looked at four times: three times by the index, and once for its area.
    std::uint64_t looks = 0;
    const auto look = [&] {
        if (looks++ % featuresPerReport == 0)
            report(0.5 + 0.5 * static_cast<double>(looks) / (4.0 * count));
    };
    addShapes(step.features);
    std::size_t sized = 0;
    for (const cam::Surface &surface : step.features.surfaces) {
        if (sized++ % featuresPerCheck == 0)
            report(0.0);
        made.drawing.surfaces.push_back(sizeOf(step.features, surface));
    }
    if (m_options.resize != 0.0)
        resizeSurfaces(*m_image, step.features, m_options.resize, made.drawing.surfaces,
                       [&report](double share) { report(0.5 * share); });
    made.index = FeatureIndex(count, [&](std::uint32_t i) {
        look();
        return boxOf(made.drawing, i);
    });
    made.extent = made.index.extent();
    for (std::uint32_t i = 0; i < count; ++i) {
        look();
        if (step.features.order[i].polarity == Polarity::Positive)
            made.area += areaOf(made.drawing, i);
    }
    for (const cam::StepRepeat &repeat : step.repeats) {
        const StepScene &child = m_steps[repeat.step];
        for (const std::uint32_t column : {std::uint32_t(0), repeat.nx - 1}) {
            for (const std::uint32_t row : {std::uint32_t(0), repeat.ny - 1})
                made.extent.add(mapped(child.extent, cam::placement(repeat, column, row)));
        }
        made.area += child.area * repeat.nx * repeat.ny;
    }
    m_steps.push_back(std::move(made));
}

// Every symbol in every size that a feature of the set needs.
void LayerScene::addShapes(const cam::FeatureSet &features)
{
    std::vector<bool> pens[2];
    for (auto &known : pens)
        known.resize(m_image->symbols.size());
    const auto addOnce = [&](std::uint32_t symbol, Polarity polarity) {
        auto &known = pens[static_cast<std::size_t>(polarity)];
        if (!known[symbol])
            m_shapes.add(symbol, growthOf(polarity, m_options.resize));
        known[symbol] = true;
    };
    for (const cam::Feature &feature : features.order) {
        switch (feature.kind) {
        case cam::FeatureKind::Line:
            addOnce(features.lines[feature.index].symbol, feature.polarity);
            break;
        case cam::FeatureKind::Arc:
            addOnce(features.arcs[feature.index].symbol, feature.polarity);
            break;
        case cam::FeatureKind::Pad: {
            const cam::Pad &pad = features.pads[feature.index];
            if (pad.growth == 0.0)
                addOnce(pad.symbol, feature.polarity);
            else
                m_shapes.add(pad.symbol, growthOf(feature.polarity, m_options.resize) + pad.growth);
            break;
        }
        case cam::FeatureKind::Surface:
            break;
        }
    }
}

Box LayerScene::boxOf(const DrawableFeatures &drawing, std::uint32_t index) const
{
    const cam::FeatureSet &features = *drawing.features;
    const cam::Feature &feature = features.order[index];
    const double growth = growthOf(feature.polarity, m_options.resize);
    switch (feature.kind) {
    case cam::FeatureKind::Line: {
        const cam::Line &line = features.lines[feature.index];
        const SymbolShape &shape = m_shapes.at(line.symbol, growth);
        if (shape.box.isEmpty())
            return {};
        Box box = around(line.start, shape.reach);
        box.add(around(line.end, shape.reach));
        return box;
    }
    case cam::FeatureKind::Arc: {
        const cam::Arc &arc = features.arcs[feature.index];
        const SymbolShape &shape = m_shapes.at(arc.symbol, growth);
        if (shape.box.isEmpty())
            return {};
        return around(arc.center, shape.reach + std::max(cam::distance(arc.start, arc.center),
                                                         cam::distance(arc.end, arc.center)));
    }
    case cam::FeatureKind::Pad: {
        const cam::Pad &pad = features.pads[feature.index];
        const SymbolShape &shape = m_shapes.at(pad.symbol, growth + pad.growth);
        return shape.box.isEmpty() ? Box() : around(pad.at, shape.reach);
    }
    case cam::FeatureKind::Surface:
        break;
    }
    return drawing.surfaces[feature.index].box;
}

double LayerScene::areaOf(const DrawableFeatures &drawing, std::uint32_t index) const
{
    const cam::FeatureSet &features = *drawing.features;
    const cam::Feature &feature = features.order[index];
    const double growth = growthOf(feature.polarity, m_options.resize);
    switch (feature.kind) {
    case cam::FeatureKind::Line: {
        const cam::Line &line = features.lines[feature.index];
        const SymbolShape &shape = m_shapes.at(line.symbol, growth);
        return shape.area + 2.0 * shape.reach * cam::distance(line.start, line.end);
    }
    case cam::FeatureKind::Arc:
        return m_shapes.at(features.arcs[feature.index].symbol, growth).area;
    case cam::FeatureKind::Pad: {
        const cam::Pad &pad = features.pads[feature.index];
        return m_shapes.at(pad.symbol, growth + pad.growth).area;
    }
    case cam::FeatureKind::Surface:
        break;
    }
    return drawing.surfaces[feature.index].area;
}

Box LayerScene::extent() const
{
    Box box = m_steps.back().extent;
    if (m_options.negative && !m_image->profile.isEmpty()) {
        box = {};
        for (std::size_t i = 0; i < m_image->profile.size(); ++i)
            box.add(cam::extent(m_image->profile[i]));
    }
    return mapped(box, m_map);
}

// ---- drawing

void LayerScene::draw(Canvas &canvas, const Transform &toSamples, const DrawMode &mode) const
{
    Work work{
        {*m_image, m_shapes, m_options.resize, mode}, {canvas.width(), canvas.height(), true}, mode, {}, 0};
    const Transform map = m_map.then(toSamples);
    const auto top = static_cast<std::uint32_t>(m_steps.size() - 1);
    if (!m_options.negative)
        return drawStep(top, map, canvas, work);
    Canvas layer(canvas.width(), canvas.height()), base(canvas.width(), canvas.height());
    drawStep(top, map, layer, work);
    work.painter.begin(base, map);
    if (!m_image->profile.isEmpty()) {
        work.painter.fillContours(m_image->profile, true);
    } else if (const Box box = m_steps.back().extent; !box.isEmpty()) {
        cam::ContourPool extent;
        const Point corners[] = {box.low, {box.high.x, box.low.y}, box.high, {box.low.x, box.high.y}};
        extent.addPolygon(corners, 4, false);
        work.painter.fillContours(extent, true);
    }
    layer.negate(base);
    canvas.add(layer);
}

void LayerScene::drawStep(std::uint32_t number, const Transform &map, Canvas &canvas, Work &work) const
{
    const StepScene &step = m_steps[number];
    const Box visible = visiblePart(canvas, map);
    if (step.extent.isEmpty() || !step.extent.touches(visible))
        return;
    if (work.mode.levelOfDetail) {
        const Box box = mapped(step.extent, map);
        if (std::max(box.high.x - box.low.x, box.high.y - box.low.y) < Canvas::samples)
            return canvas.addSmall((box.low + box.high) * 0.5, step.area * std::fabs(map.determinant()),
                                   true);
    }
    if (step.drawing.features->negativeCount == 0) {
        drawFeatures(step, visible, map, canvas, work);
    } else { // what it clears, it clears in itself only
        work.own.clear();
        drawFeatures(step, visible, map, work.own, work);
        canvas.add(work.own);
    }
    for (const cam::StepRepeat &repeat : m_image->steps[number].repeats) {
        for (std::uint32_t row = 0; row < repeat.ny; ++row) {
            for (std::uint32_t column = 0; column < repeat.nx; ++column)
                drawStep(repeat.step, cam::placement(repeat, column, row).then(map), canvas, work);
        }
    }
}

void LayerScene::drawFeatures(const StepScene &step, const Box &visible, const Transform &map, Canvas &canvas,
                              Work &work) const
{
    work.painter.begin(canvas, map);
    const auto draw = [&](std::uint32_t feature) {
        if (++work.drawn % featuresPerCheck == 0)
            work.mode.check();
        work.painter.draw(step.drawing, feature);
    };
    if (step.index.isMost(visible)) {
        const auto count = static_cast<std::uint32_t>(step.drawing.features->order.size());
        for (std::uint32_t i = 0; i < count; ++i)
            draw(i);
        return;
    }
    step.index.find(visible, work.found);
    for (const std::uint32_t feature : work.found)
        draw(feature);
}

// ---- finding

void LayerScene::findFeatures(const Box &box, const FeatureVisit &visit) const
{
    findIn(static_cast<std::uint32_t>(m_steps.size() - 1), box, m_map, visit);
}

void LayerScene::findIn(std::uint32_t number, const Box &box, const Transform &place,
                        const FeatureVisit &visit) const
{
    const StepScene &step = m_steps[number];
    const Box here = mapped(box, inverse(place));
    if (step.extent.isEmpty() || !step.extent.touches(here))
        return;
    std::vector<std::uint32_t> found;
    step.index.find(here, found);
    for (const std::uint32_t feature : found) {
        if (boxOf(step.drawing, feature).touches(here))
            visit(number, feature, place);
    }
    for (const cam::StepRepeat &repeat : m_image->steps[number].repeats) {
        for (std::uint32_t row = 0; row < repeat.ny; ++row) {
            for (std::uint32_t column = 0; column < repeat.nx; ++column)
                findIn(repeat.step, box, cam::placement(repeat, column, row).then(place), visit);
        }
    }
}

} // namespace drawing
