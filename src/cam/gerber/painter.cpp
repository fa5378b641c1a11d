// Step by step, feature by feature, each in the form that its plan gives it.
#include "cam/gerber/painter.h"

#include "cam/model/steps.h"

namespace cam {

Painter::Painter(DrawnSymbols &drawn, const ExportOptions &options, GerberStream &stream,
                 RegionWriter &regions, ApertureTable &apertures, WorkProgress &progress)
    : m_drawn(drawn), m_options(options), m_stream(stream), m_regions(regions), m_apertures(apertures),
      m_progress(progress), m_map(exportTransform(options, drawn.image().datum))
{
}

PaintPlan Painter::plan(std::uint32_t step, const Transform &map) const
{
    return {m_drawn,
            m_apertures,
            m_drawn.image().steps[step].features,
            {map, m_options.resize, m_options.negative}};
}

// Copies differ in their position only, so one of each repeat shows all apertures.
void Painter::collectApertures()
{
    forEachStep(m_drawn.image(), Copies::First, [this](std::uint32_t step, const Transform &place) {
        plan(step, place.then(m_map)).collectApertures();
    });
}

void Painter::paint()
{
    for (const PlannedStep &step : planSteps(m_drawn, m_map, m_options.resize))
        paintStep(step);
}

void Painter::paintStep(const PlannedStep &step)
{
    PaintPlan features = plan(step.step, step.map);
    const bool isBlock = step.copies() > 1;
    if (isBlock)
        m_stream.beginRepeat(step.columns, step.rows, step.pitch);
    if (step.isResolved)
        paintResolved(features, static_cast<double>(step.copies()));
    else
        paintFeatures(features, static_cast<double>(step.copies()));
    if (isBlock)
        m_stream.endRepeat();
}

// `copies` that are painted at once; 0 for what is part of a feature whose work is counted as a whole.
void Painter::paintFeatures(PaintPlan &plan, double copies)
{
    const FeatureSet &features = plan.features();
    for (std::uint32_t item = 0; item < features.order.size(); ++item)
        paintFeature(plan, item, copies * workOf(features, features.order[item]));
}

// The area that the negative features leave, without a clear object: what none of them reaches as it is, the
// rest as regions.
void Painter::paintResolved(PaintPlan &plan, double copies)
{
    const FeatureSet &features = plan.features();
    FeatureDrawing &drawing = plan.drawing();
    const std::vector<bool> isReached = drawing.reachedByNegatives([this] { m_progress.report(); });
    PaintedArea reached(drawing, mostRegionCorners);
    for (std::uint32_t item = 0; item < features.order.size(); ++item) {
        const double work = copies * workOf(features, features.order[item]);
        if (!isReached.empty() && isReached[item]) {
            reached.paint(item, features.order[item].polarity, drawing.box(item), drawing.corners(item));
            m_progress.advance(work);
        } else {
            paintFeature(plan, item, work);
        }
    }
    m_stream.polarity(plan.isDark(Polarity::Positive));
    reached.resolve([this](const GridRing &ring) { m_regions.polygon(ring); },
                    [this](double) { m_progress.report(); });
}

void Painter::paintFeature(PaintPlan &plan, std::uint32_t item, double work)
{
    const Feature &feature = plan.features().order[item];
    const FeaturePlan planned = plan.plan(feature);
    if (planned.form != PaintForm::Nothing && planned.form != PaintForm::Features)
        m_stream.polarity(plan.isDark(feature.polarity));
    switch (planned.form) {
    case PaintForm::Nothing:
        break;
    case PaintForm::Draw:
        draw(plan, feature, planned.aperture);
        break;
    case PaintForm::Flash:
        m_stream.aperture(planned.aperture);
        m_stream.flash(gerberGrid.round(plan.map()(plan.features().pads[feature.index].at)));
        break;
    case PaintForm::Region:
        return paintRegion(plan, feature, planned.contours, work);
    case PaintForm::Features: {
        PaintPlan inside = plan.featuresOf(plan.features().pads[feature.index], feature.polarity);
        paintFeatures(inside, 0.0);
        break;
    }
    case PaintForm::Polygons:
        paintPolygons(plan, item);
        break;
    }
    m_progress.advance(work);
}

void Painter::draw(const PaintPlan &plan, const Feature &feature, int aperture)
{
    m_stream.aperture(aperture);
    if (feature.kind == FeatureKind::Arc) {
        const Arc &arc = plan.features().arcs[feature.index];
        ContourPool path;
        path.begin(arc.start, false);
        path.arcTo(arc.end, arc.center, arc.clockwise);
        return draw(onGrid(path[0], plan.map()));
    }
    const Line &line = plan.features().lines[feature.index];
    const GridPoint start = gerberGrid.round(plan.map()(line.start));
    const GridPoint end = gerberGrid.round(plan.map()(line.end));
    if (start == end)
        return m_stream.flash(start);
    m_stream.moveTo(start);
    m_stream.lineTo(end);
}

void Painter::draw(const GridOutline &path)
{
    if (path.edges.empty())
        return m_stream.flash(path.start);
    m_stream.moveTo(path.start);
    for (const GridEdge &edge : path.edges)
        m_stream.edge(edge);
}

void Painter::paintRegion(const PaintPlan &plan, const Feature &feature, const ContourPool *padContours,
                          double work)
{
    if (feature.kind == FeatureKind::Pad) {
        const Pad &pad = plan.features().pads[feature.index];
        const Transform map = placement(pad).then(plan.map());
        return m_regions.contours(*padContours, 0, padContours->size(), map, work);
    }
    const Surface &surface = plan.features().surfaces[feature.index];
    m_regions.contours(plan.features().contours, surface.firstContour, surface.contourCount, plan.map(),
                       work);
}

// The polygons of a line or an arc may overlap, and are painted one by one.
void Painter::paintPolygons(PaintPlan &plan, std::uint32_t item)
{
    const Feature &feature = plan.features().order[item];
    if (feature.kind == FeatureKind::Line || feature.kind == FeatureKind::Arc)
        return plan.drawing().sweep(feature, [this](const GridRing &ring) { m_regions.polygon(ring); });
    std::vector<GridRing> rings;
    plan.drawing().rings(item, rings);
    m_regions.area(rings);
}

} // namespace cam
