// Which form each feature takes, and the order in which everything is painted.
#include "cam/gerber/painter.h"

#include "cam/model/flatten.h"
#include "cam/model/work.h"
#include "cam/polygon/clipping.h"
#include "cam/polygon/neighbourhood.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

namespace cam {

namespace {

// The file's grid: a nanometre.
const Grid grid(1.0);

// Polygons in regions may be long; only holes make more than one of them.
constexpr std::size_t mostRegionCorners = 1000000;

// A pen whose strokes are polygons.
constexpr int polygonPen = -2;
constexpr int unknownPen = -1;

// How often progress is reported while features are walked.
constexpr std::uint32_t reportInterval = 1024;

// How far below the full share painting may report: closing the file comes after it.
constexpr double paintingShare = 0.99;

// Nanometres by which rounding the distance between copies may set the last one off. Panels in inches are
// seldom whole nanometres; a twentieth of a micrometre is half of what arcs may stray.
constexpr double mostStepError = 50.0;

Transform placementOf(const StepRepeat &repeat, std::uint32_t column, std::uint32_t row)
{
    const Point along{repeat.dx * column, repeat.dy * row};
    return placement(repeat).then(Transform::translation(along));
}

GridRing ringOf(const GridBox &box)
{
    return {box.low, {box.high.x, box.low.y}, box.high, {box.low.x, box.high.y}};
}

} // namespace

bool Painter::PadKey::operator==(const PadKey &other) const
{
    return angle == other.angle && growth == other.growth && symbol == other.symbol &&
           mirror == other.mirror && polarity == other.polarity;
}

std::size_t Painter::PadKeyHash::operator()(const PadKey &key) const
{
    const std::size_t hash = std::hash<double>()(key.angle) * 31 + std::hash<double>()(key.growth);
    return (hash * 31 + key.symbol) * 4 + (key.mirror ? 2 : 0) + static_cast<std::size_t>(key.polarity);
}

Painter::Painter(const LayerImage &image, const ExportOptions &options, GerberStream &stream,
                 ApertureTable &apertures)
    : m_image(image), m_options(options), m_stream(stream), m_apertures(apertures),
      m_drawn(image, grid, mostRegionCorners), m_clashes(m_drawn, options.resize),
      m_export(exportTransform(options, image.datum)), m_workInAll(workOf(image, image.top()))
{
}

Painter::Context Painter::context(const FeatureSet &features, const Transform &map, double growth,
                                  bool inverted) const
{
    Context context{features, map, growth, inverted, map.keepsCircles(), {}, {}, nullptr};
    context.pens[0].assign(m_image.symbols.size(), unknownPen);
    context.pens[1].assign(m_image.symbols.size(), unknownPen);
    return context;
}

FeatureDrawing &Painter::polygonsOf(Context &context)
{
    if (!context.polygons)
        context.polygons =
            std::make_unique<FeatureDrawing>(m_drawn, context.features, context.map, context.growth);
    return *context.polygons;
}

// ---- the steps

void Painter::forEachStep(const std::function<void(const StepImage &, const Transform &)> &visit) const
{
    forEachStep(m_image.top(), Transform(), visit);
}

void Painter::forEachStep(const StepImage &step, const Transform &place,
                          const std::function<void(const StepImage &, const Transform &)> &visit) const
{
    visit(step, place);
    for (const StepRepeat &repeat : step.repeats) {
        for (std::uint32_t row = 0; row < repeat.ny; ++row) {
            for (std::uint32_t column = 0; column < repeat.nx; ++column)
                forEachStep(m_image.steps[repeat.step], placementOf(repeat, column, row).then(place), visit);
        }
    }
}

void Painter::collectApertures()
{
    collectRepeated(m_image.top(), Transform());
}

// Copies differ in their position only, so one of each repeat shows all apertures.
void Painter::collectRepeated(const StepImage &step, const Transform &place)
{
    Context here = context(step.features, place.then(m_export), m_options.resize, m_options.negative);
    collect(here);
    for (const StepRepeat &repeat : step.repeats)
        collectRepeated(m_image.steps[repeat.step], placement(repeat).then(place));
}

void Painter::collect(Context &context)
{
    for (const Feature &feature : context.features.order) {
        switch (feature.kind) {
        case FeatureKind::Line:
            penCode(context, context.features.lines[feature.index].symbol, feature.polarity);
            break;
        case FeatureKind::Arc:
            penCode(context, context.features.arcs[feature.index].symbol, feature.polarity);
            break;
        case FeatureKind::Pad: {
            const Pad &pad = context.features.pads[feature.index];
            if (padPlan(context, pad, feature.polarity).form == PadForm::Features) {
                Context inside = symbolContext(context, pad, feature.polarity);
                collect(inside);
            }
            break;
        }
        case FeatureKind::Surface:
            break;
        }
    }
}

void Painter::paint()
{
    paintStep(static_cast<std::uint32_t>(m_image.steps.size() - 1), Transform());
}

void Painter::paintStep(std::uint32_t number, const Transform &place)
{
    const StepImage &step = m_image.steps[number];
    const Transform map = place.then(m_export);
    const bool clashes = m_clashes.clashes(number, map);
    m_clashes.addPainted(number, map);
    Context here = context(step.features, map, m_options.resize, m_options.negative);
    if (clashes)
        paintResolved(here);
    else
        paintFeatures(here, true);
    for (const StepRepeat &repeat : step.repeats)
        paintRepeat(repeat, place);
}

void Painter::paintRepeat(const StepRepeat &repeat, const Transform &place)
{
    if (paintAsBlock(repeat, place))
        return;
    for (std::uint32_t row = 0; row < repeat.ny; ++row) {
        for (std::uint32_t column = 0; column < repeat.nx; ++column)
            paintStep(repeat.step, placementOf(repeat, column, row).then(place));
    }
}

// The file's own step and repeat: one level deep, along the axes, towards larger coordinates.
bool Painter::paintAsBlock(const StepRepeat &repeat, const Transform &place)
{
    const StepImage &child = m_image.steps[repeat.step];
    const bool repeats = repeat.nx > 1 || repeat.ny > 1;
    if (!repeats || !child.repeats.empty() || child.features.isEmpty())
        return false;
    const Transform map = place.then(m_export);
    Point along = map.linear({repeat.nx > 1 ? repeat.dx : 0.0, 0.0});
    Point across = map.linear({0.0, repeat.ny > 1 ? repeat.dy : 0.0});
    std::uint32_t columns = repeat.nx, rows = repeat.ny;
    Point shift; // to the copy with the smallest coordinates
    const bool turned = along.x == 0.0 && across.y == 0.0;
    if (turned) {
        std::swap(along, across);
        std::swap(columns, rows);
    }
    if (along.y != 0.0 || across.x != 0.0)
        return false;
    if (along.x < 0.0)
        shift.x = along.x * (columns - 1);
    if (across.y < 0.0)
        shift.y = across.y * (rows - 1);
    const GridPoint step = grid.round({std::fabs(along.x), std::fabs(across.y)});
    const double errorX = std::fabs(std::fabs(along.x) - static_cast<double>(step.x)) * columns;
    const double errorY = std::fabs(std::fabs(across.y) - static_cast<double>(step.y)) * rows;
    const bool stands = (columns > 1 && step.x == 0) || (rows > 1 && step.y == 0);
    if (stands || errorX > mostStepError || errorY > mostStepError)
        return false;
    const Transform first = placement(repeat).then(map).then(Transform::translation(shift));
    const bool clashes = copiesClash(repeat.step, first, columns, rows, step);
    Context here = context(child.features, first, m_options.resize, m_options.negative);
    m_copies = static_cast<double>(columns) * rows;
    m_stream.beginRepeat(columns, rows, step);
    if (clashes)
        paintResolved(here);
    else
        paintFeatures(here, true);
    m_stream.endRepeat();
    m_copies = 1.0;
    return true;
}

// Whether copies of a step clash with each other, or one of them with what has been painted before.
bool Painter::copiesClash(std::uint32_t step, const Transform &first, std::uint32_t columns,
                          std::uint32_t rows, GridPoint pitch)
{
    bool clashes = m_clashes.clashesAmongCopies(step, first, columns, rows, pitch);
    std::vector<Transform> copies;
    for (std::uint32_t row = 0; row < rows; ++row) {
        for (std::uint32_t column = 0; column < columns; ++column) {
            const Point by{static_cast<double>(pitch.x) * column, static_cast<double>(pitch.y) * row};
            copies.push_back(first.then(Transform::translation(by)));
            clashes = clashes || m_clashes.clashes(step, copies.back());
        }
    }
    for (const Transform &copy : copies)
        m_clashes.addPainted(step, copy);
    return clashes;
}

// ---- features

void Painter::paintFeatures(Context &context, bool isStep)
{
    for (std::uint32_t item = 0; item < context.features.order.size(); ++item) {
        const Feature &feature = context.features.order[item];
        const double work = isStep ? workOf(context.features, feature) : 0.0;
        m_edgeWork = feature.kind == FeatureKind::Surface ? work : 0.0;
        paintFeature(context, item);
        if (isStep)
            advance(feature.kind == FeatureKind::Surface ? m_edgeWork : work);
    }
}

void Painter::paintFeature(Context &context, std::uint32_t item)
{
    const Feature &feature = context.features.order[item];
    switch (feature.kind) {
    case FeatureKind::Line:
        return paintLine(context, feature, item);
    case FeatureKind::Arc:
        return paintArc(context, feature, item);
    case FeatureKind::Pad:
        return paintPad(context, feature, item);
    case FeatureKind::Surface:
        return paintSurface(context, feature, item);
    }
}

// A step as the area that its negative features leave, without a clear object: what none of them reaches as
// it is, the rest as regions.
void Painter::paintResolved(Context &context)
{
    const std::vector<Feature> &order = context.features.order;
    FeatureDrawing &drawing = polygonsOf(context);
    std::vector<GridBox> negatives;
    for (std::uint32_t item = 0; item < order.size(); ++item) {
        if (order[item].polarity == Polarity::Negative)
            negatives.push_back(drawing.box(item));
    }
    const Neighbourhood reach(negatives);
    PaintedArea reached(drawing, mostRegionCorners);
    m_edgeWork = 0.0;
    for (std::uint32_t item = 0; item < order.size(); ++item) {
        const bool isNegative = order[item].polarity == Polarity::Negative;
        if (isNegative || reach.mayTouch(drawing.box(item)))
            reached.paint(item, order[item].polarity, drawing.box(item), drawing.corners(item));
        else
            paintFeature(context, item);
        advance(workOf(context.features, order[item]));
    }
    m_stream.polarity(context.isDark(Polarity::Positive));
    reached.resolve([this](const GridRing &ring) { region(ring); }, [this](double) { report(); });
}

void Painter::advance(double more)
{
    m_workDone += more * m_copies;
    if (m_workDone - m_workReported < std::min(reportInterval * m_copies, m_workInAll / 256.0))
        return;
    m_workReported = m_workDone;
    report();
}

// Slits add edges to a surface's own: no more than its work is counted.
void Painter::advanceAnEdge()
{
    const double more = std::min(m_edgeWork, 1.0 / edgesPerLine);
    m_edgeWork -= more;
    advance(more);
}

void Painter::report()
{
    m_options.report(paintingShare * std::min(1.0, m_workDone / m_workInAll));
}

int Painter::penCode(Context &context, std::uint32_t symbol, Polarity polarity)
{
    int &code = context.pens[static_cast<std::size_t>(polarity)][symbol];
    if (code != unknownPen)
        return code;
    const Symbol &source = m_image.symbols[symbol];
    if (source.standard && source.standard->kind == SymbolKind::Null)
        return code = 0;
    const bool isRound = source.standard && source.standard->kind == SymbolKind::Round;
    if (!isRound || !context.keepsCircles)
        return code = polygonPen;
    const auto aperture = apertureOf(*source.standard, context.growthOf(polarity), context.map);
    return code = aperture ? m_apertures.code(*aperture) : 0;
}

void Painter::paintLine(Context &context, const Feature &feature, std::uint32_t)
{
    const Line &line = context.features.lines[feature.index];
    const int code = penCode(context, line.symbol, feature.polarity);
    if (code == polygonPen)
        return paintStroke(context, feature);
    if (code == 0)
        return;
    m_stream.polarity(context.isDark(feature.polarity));
    m_stream.aperture(code);
    const GridPoint start = grid.round(context.map(line.start));
    const GridPoint end = grid.round(context.map(line.end));
    if (start == end)
        return m_stream.flash(start);
    m_stream.moveTo(start);
    m_stream.lineTo(end);
}

void Painter::paintArc(Context &context, const Feature &feature, std::uint32_t)
{
    const Arc &arc = context.features.arcs[feature.index];
    const int code = penCode(context, arc.symbol, feature.polarity);
    if (code == polygonPen)
        return paintStroke(context, feature);
    if (code == 0)
        return;
    m_stream.polarity(context.isDark(feature.polarity));
    m_stream.aperture(code);
    ContourPool path;
    path.begin(arc.start, false);
    path.arcTo(arc.end, arc.center, arc.clockwise);
    const GridOutline rounded = onGrid(path[0], context.map);
    if (rounded.edges.empty())
        return m_stream.flash(rounded.start);
    m_stream.moveTo(rounded.start);
    for (const GridEdge &part : rounded.edges) {
        if (part.kind == EdgeKind::Line)
            m_stream.lineTo(part.end);
        else
            m_stream.arcTo(part.end, part.center, part.kind == EdgeKind::ArcClockwise);
    }
}

void Painter::paintStroke(Context &context, const Feature &feature)
{
    m_stream.polarity(context.isDark(feature.polarity));
    polygonsOf(context).stroke(feature, [this](const GridRing &ring) { region(ring); });
}

// ---- pads

const Painter::PadPlan &Painter::padPlan(Context &context, const Pad &pad, Polarity polarity)
{
    const PadKey key{pad.angle, pad.growth, pad.symbol, pad.mirror, polarity};
    const auto known = context.pads.find(key);
    if (known != context.pads.end())
        return known->second;
    return context.pads.emplace(key, planOf(context, pad, polarity)).first->second;
}

Painter::PadPlan Painter::planOf(const Context &context, const Pad &pad, Polarity polarity)
{
    const Symbol &symbol = m_image.symbols[pad.symbol];
    PadPlan plan;
    if (!symbol.standard) {
        const bool isEmpty = !symbol.features || symbol.features->isEmpty();
        plan.form = isEmpty                            ? PadForm::Nothing
                    : isOnlyPositive(*symbol.features) ? PadForm::Features
                                                       : PadForm::Polygons;
        return plan;
    }
    const double growth = context.growthOf(polarity) + pad.growth;
    plan.shape = shapeOf(*symbol.standard, growth);
    if (plan.shape.contours.isEmpty())
        return plan;
    const Transform map = placement(pad).then(context.map);
    const auto aperture = apertureOf(*symbol.standard, growth, map);
    if (aperture && (context.isDark(polarity) || !aperture->hasClearParts)) {
        plan.form = PadForm::Flash;
        plan.code = m_apertures.code(*aperture);
        plan.shape.contours.clear();
    } else {
        plan.form = context.keepsCircles ? PadForm::Region : PadForm::Polygons;
    }
    return plan;
}

bool Painter::isOnlyPositive(const FeatureSet &features) const
{
    if (features.negativeCount > 0)
        return false;
    return std::all_of(features.pads.begin(), features.pads.end(), [this](const Pad &pad) {
        const Symbol &symbol = m_image.symbols[pad.symbol];
        return symbol.standard || !symbol.features || isOnlyPositive(*symbol.features);
    });
}

// The symbol's features as they lie on the layer. A negative pad erases all of what they darken.
Painter::Context Painter::symbolContext(const Context &outer, const Pad &pad, Polarity polarity) const
{
    return context(*m_image.symbols[pad.symbol].features, placement(pad).then(outer.map),
                   outer.growthOf(polarity) + pad.growth, !outer.isDark(polarity));
}

void Painter::paintPad(Context &context, const Feature &feature, std::uint32_t item)
{
    const Pad &pad = context.features.pads[feature.index];
    const PadPlan &plan = padPlan(context, pad, feature.polarity);
    switch (plan.form) {
    case PadForm::Nothing:
        return;
    case PadForm::Flash:
        m_stream.polarity(context.isDark(feature.polarity));
        m_stream.aperture(plan.code);
        return m_stream.flash(grid.round(context.map(pad.at)));
    case PadForm::Region:
        m_stream.polarity(context.isDark(feature.polarity));
        return regions(plan.shape.contours, 0, plan.shape.contours.size(), placement(pad).then(context.map));
    case PadForm::Features: {
        Context inside = symbolContext(context, pad, feature.polarity);
        return paintFeatures(inside, false);
    }
    case PadForm::Polygons:
        return paintPolygons(context, item);
    }
}

// ---- surfaces and regions

void Painter::paintSurface(Context &context, const Feature &feature, std::uint32_t item)
{
    if (!context.keepsCircles || context.growth != 0.0)
        return paintPolygons(context, item);
    const Surface &surface = context.features.surfaces[feature.index];
    m_stream.polarity(context.isDark(feature.polarity));
    regions(context.features.contours, surface.firstContour, surface.contourCount, context.map);
}

void Painter::paintPolygons(Context &context, std::uint32_t item)
{
    m_stream.polarity(context.isDark(context.features.order[item].polarity));
    std::vector<GridRing> rings;
    polygonsOf(context).rings(item, rings);
    emitSimple(cleaned(rings), mostRegionCorners, [this](const GridRing &ring) { region(ring); });
}

void Painter::regions(const ContourPool &contours, std::size_t first, std::size_t count, const Transform &map)
{
    std::vector<GridOutline> outlines;
    std::vector<bool> isHole;
    for (std::size_t i = first; i < first + count; ++i) {
        outlines.push_back(onGrid(contours[i], map));
        isHole.push_back(contours[i].isHole);
    }
    const Regions regions = regionsOf(std::move(outlines), isHole);
    for (const GridOutline &outline : regions.outlines)
        region(outline);
    for (const std::vector<std::uint32_t> &knot : regions.entangled) {
        std::vector<GridRing> rings;
        for (const std::uint32_t i : knot)
            contourRings(contours, first + i, 1, map, grid, rings);
        emitSimple(cleaned(rings), mostRegionCorners, [this](const GridRing &ring) { region(ring); });
    }
}

void Painter::region(const GridOutline &outline)
{
    if (outline.edges.empty())
        return;
    m_stream.beginRegion();
    m_stream.moveTo(outline.start);
    for (const GridEdge &edge : outline.edges) {
        if (m_edgeWork > 0.0)
            advanceAnEdge();
        if (edge.kind == EdgeKind::Line)
            m_stream.lineTo(edge.end);
        else
            m_stream.arcTo(edge.end, edge.center, edge.kind == EdgeKind::ArcClockwise);
    }
    m_stream.endRegion();
}

void Painter::region(const GridRing &ring)
{
    m_stream.beginRegion();
    m_stream.moveTo(ring.front());
    for (std::size_t i = 1; i < ring.size(); ++i)
        m_stream.lineTo(ring[i]);
    m_stream.lineTo(ring.front());
    m_stream.endRegion();
}

// ---- the profile, and what negating needs

void Painter::paintContours(const ContourPool &contours)
{
    if (m_export.keepsCircles())
        return regions(contours, 0, contours.size(), m_export);
    std::vector<GridRing> rings;
    contourRings(contours, m_export, grid, rings);
    emitSimple(cleaned(rings), mostRegionCorners, [this](const GridRing &ring) { region(ring); });
}

void Painter::drawContours(const ContourPool &contours, int aperture)
{
    m_stream.aperture(aperture);
    for (std::size_t i = 0; i < contours.size(); ++i) {
        GridOutline outline;
        if (m_export.keepsCircles()) {
            outline = onGrid(contours[i], m_export);
        } else {
            std::vector<Point> corners;
            flatten(contours[i], arcTolerance / largestStretch(m_export), corners);
            for (Point &corner : corners)
                corner = m_export(corner);
            ContourPool polygon;
            polygon.addPolygon(corners.data(), corners.size(), false);
            outline = onGrid(polygon[0], Transform());
        }
        m_stream.moveTo(outline.start);
        for (const GridEdge &edge : outline.edges) {
            if (edge.kind == EdgeKind::Line)
                m_stream.lineTo(edge.end);
            else
                m_stream.arcTo(edge.end, edge.center, edge.kind == EdgeKind::ArcClockwise);
        }
    }
}

bool Painter::hasNegativeFeatures() const
{
    bool found = false;
    forEachStep([&found](const StepImage &step, const Transform &) {
        found = found || step.features.negativeCount > 0;
    });
    return found;
}

void Painter::clearOutside(const ContourPool &contours)
{
    std::vector<GridRing> rings;
    contourRings(contours, m_export, grid, rings);
    clearOutside(std::move(rings));
}

void Painter::clearOutside(const GridBox &box)
{
    clearOutside(box.isEmpty() ? std::vector<GridRing>() : std::vector<GridRing>{ringOf(box)});
}

void Painter::clearOutside(std::vector<GridRing> rings)
{
    GridBox frame;
    forEachStep([this, &frame](const StepImage &step, const Transform &place) {
        FeatureDrawing drawing(m_drawn, step.features, place.then(m_export), m_options.resize);
        for (std::uint32_t item = 0; item < step.features.order.size(); ++item) {
            if (item % reportInterval == 0)
                report();
            frame.add(drawing.box(item));
        }
    });
    for (const GridRing &ring : rings)
        frame.add(ring);
    const std::int64_t margin = 1000000; // nanometres
    frame.low = {frame.low.x - margin, frame.low.y - margin};
    frame.high = {frame.high.x + margin, frame.high.y + margin};

    // The frame as the island, what the contours enclose as holes in it, and their holes as islands again.
    for (GridRing &ring : rings)
        std::reverse(ring.begin(), ring.end());
    rings.insert(rings.begin(), ringOf(frame));
    m_stream.polarity(false);
    emitSimple(cleaned(rings), mostRegionCorners, [this](const GridRing &ring) { region(ring); });
}

GridBox Painter::darkExtent()
{
    GridBox box;
    // Copies differ in their position only.
    std::map<std::tuple<const StepImage *, double, double, double, double>, GridBox> known;
    forEachStep([&](const StepImage &step, const Transform &place) {
        Transform map = place.then(m_export);
        const GridPoint at = grid.round(map.offset);
        map.offset = {};
        const std::tuple key(&step, map.xx + 0.0, map.xy + 0.0, map.yx + 0.0, map.yy + 0.0);
        auto found = known.find(key);
        if (found == known.end())
            found = known.emplace(key, darkExtent(step, map)).first;
        const GridBox &dark = found->second;
        if (!dark.isEmpty()) {
            box.add(GridPoint{dark.low.x + at.x, dark.low.y + at.y});
            box.add(GridPoint{dark.high.x + at.x, dark.high.y + at.y});
        }
    });
    return box;
}

GridBox Painter::darkExtent(const StepImage &step, const Transform &map)
{
    const std::vector<Feature> &order = step.features.order;
    GridBox box;
    FeatureDrawing drawing(m_drawn, step.features, map, m_options.resize);
    PaintedArea left(drawing, mostRegionCorners);
    std::vector<GridRing> rings;
    for (std::uint32_t item = 0; item < order.size(); ++item) {
        if (item % reportInterval == 0)
            report();
        if (step.features.negativeCount > 0) {
            left.paint(item, order[item].polarity, drawing.box(item), drawing.corners(item));
            continue;
        }
        rings.clear();
        drawing.rings(item, rings);
        for (const GridRing &ring : rings)
            box.add(ring);
    }
    left.resolve([&box](const GridRing &ring) { box.add(ring); }, [this](double) { report(); });
    return box;
}

void Painter::paintBox(const GridBox &box)
{
    region(ringOf(box));
}

} // namespace cam
