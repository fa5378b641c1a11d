#include "cam/polygon/drawing.h"

#include "cam/model/flatten.h"
#include "cam/polygon/clipping.h"
#include "cam/polygon/neighbourhood.h"
#include "cam/polygon/surfacepolygons.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace cam {

namespace {

// Where growing needs a grid of its own, before the map: fine enough not to be seen in the output.
constexpr double growthGrid = 1.0 / 8.0; // nanometres

// How often progress is reported while features are walked.
constexpr std::uint32_t reportInterval = 1000;

double toleranceUnder(const Transform &map)
{
    const double stretch = largestStretch(map);
    return stretch > 0.0 ? arcTolerance / stretch : arcTolerance;
}

// contourRings() with every edge moved outwards by half of `growth`.
void resizedContourRings(const ContourPool &pool, std::size_t first, std::size_t count, double growth,
                         const Transform &map, const Grid &grid, std::vector<GridRing> &rings)
{
    const Grid fine(growthGrid);
    std::vector<GridRing> source;
    std::vector<Point> corners;
    for (std::size_t i = first; i < first + count; ++i) {
        const ContourView contour = pool[i];
        corners.clear();
        flatten(contour, toleranceUnder(map), corners);
        GridRing ring;
        fine.round(corners.data(), corners.size(), Transform(), ring);
        if (ring.size() < 3)
            continue;
        contour.isHole ? makeClockwise(ring) : makeCounterClockwise(ring);
        source.push_back(std::move(ring));
    }
    for (const GridRing &ring : resized(cleaned(source), growth / 2.0 / fine.unit())) {
        const bool isHole = doubledArea(ring) < 0.0;
        corners.clear();
        for (const GridPoint p : ring)
            corners.push_back(pointOf(p) * fine.unit());
        GridRing mapped;
        grid.round(corners.data(), corners.size(), map, mapped);
        if (mapped.size() < 3)
            continue;
        isHole ? makeClockwise(mapped) : makeCounterClockwise(mapped);
        rings.push_back(std::move(mapped));
    }
}

} // namespace

void contourRings(const ContourPool &pool, std::size_t first, std::size_t count, const Transform &map,
                  const Grid &grid, std::vector<GridRing> &rings)
{
    const double tolerance = toleranceUnder(map);
    std::vector<Point> corners;
    rings.reserve(rings.size() + count);
    for (std::size_t i = first; i < first + count; ++i) {
        const ContourView contour = pool[i];
        corners.clear();
        flatten(contour, tolerance, corners);
        GridRing ring;
        grid.round(corners.data(), corners.size(), map, ring);
        if (ring.size() < 3)
            continue;
        contour.isHole ? makeClockwise(ring) : makeCounterClockwise(ring);
        rings.push_back(std::move(ring));
    }
}

void contourRings(const ContourPool &pool, const Transform &map, const Grid &grid,
                  std::vector<GridRing> &rings)
{
    contourRings(pool, 0, pool.size(), map, grid, rings);
}

bool DrawnSymbols::Key::operator<(const Key &other) const
{
    return std::tie(symbol, map, growth) < std::tie(other.symbol, other.map, other.growth);
}

DrawnSymbols::DrawnSymbols(const LayerImage &image, Grid grid, std::size_t mostCorners)
    : m_image(image), m_grid(grid), m_mostCorners(mostCorners)
{
}

std::uint32_t DrawnSymbols::number(std::uint32_t symbol, const Transform &map, double growth)
{
    const Symbol &source = m_image.symbols[symbol];
    Transform linear = map;
    linear.offset = {};
    const bool isRound = source.standard && source.standard->kind == SymbolKind::Round;
    if (isRound && linear.keepsCircles())
        linear = Transform::scaling(linear.scale(), linear.scale());
    const Key key = {symbol, LinearPart(linear), growth};
    const auto known = m_numbers.find(key);
    if (known != m_numbers.end())
        return known->second;
    DrawnSymbol drawn = draw(source, linear, growth);
    drawn.symbol = symbol;
    for (const GridRing &ring : drawn.polygons) {
        drawn.box.add(ring);
        drawn.corners += ring.size();
    }
    const auto number = static_cast<std::uint32_t>(m_drawn.size());
    m_drawn.push_back(std::move(drawn));
    m_numbers.emplace(key, number);
    return number;
}

DrawnSymbol DrawnSymbols::draw(const Symbol &symbol, const Transform &map, double growth)
{
    DrawnSymbol drawn;
    const auto keep = [&drawn](const GridRing &ring) { drawn.polygons.push_back(ring); };
    if (symbol.standard) {
        const Shape shape = shapeOf(*symbol.standard, growth);
        std::vector<GridRing> rings;
        contourRings(shape.contours, map, m_grid, rings);
        emitArea(std::move(rings), m_mostCorners, keep, [](double) {});
        return drawn;
    }
    FeatureDrawing features(*this, *symbol.features, map, growth);
    const auto count = static_cast<std::uint32_t>(symbol.features->order.size());
    if (symbol.features->negativeCount == 0) {
        for (std::uint32_t i = 0; i < count; ++i) {
            std::vector<GridRing> rings;
            features.rings(i, rings);
            const bool mayOverlap = symbol.features->order[i].kind != FeatureKind::Surface;
            if (mayOverlap)
                std::for_each(rings.begin(), rings.end(), keep);
            else
                emitArea(std::move(rings), m_mostCorners, keep, [](double) {});
        }
        return drawn;
    }
    features.resolve(keep, [](double) {});
    return drawn;
}

FeatureDrawing::FeatureDrawing(DrawnSymbols &symbols, const FeatureSet &features, const Transform &map,
                               double growth)
    : m_symbols(symbols), m_features(features), m_map(map), m_growth(growth), m_tolerance(toleranceUnder(map))
{
    m_swept[0].resize(symbols.image().symbols.size());
    m_swept[1].resize(symbols.image().symbols.size());
}

SweptSymbol &FeatureDrawing::sweptSymbol(std::uint32_t symbol, Polarity polarity)
{
    std::unique_ptr<SweptSymbol> &swept = m_swept[static_cast<std::size_t>(polarity)][symbol];
    if (swept)
        return *swept;
    const double growth = polarity == Polarity::Positive ? m_growth : -m_growth;
    const Symbol &source = m_symbols.image().symbols[symbol];
    if (source.standard) {
        swept = std::make_unique<SweptSymbol>(*source.standard, growth, m_tolerance);
        return *swept;
    }
    // A symbol of the job's own: its polygons, drawn without the map, on a grid of one nanometre.
    DrawnSymbols untransformed(m_symbols.image(), Grid(1.0), m_symbols.mostCorners());
    const DrawnSymbol &drawn = untransformed[untransformed.number(symbol, Transform(), growth)];
    std::vector<std::vector<Point>> polygons;
    for (const GridRing &ring : drawn.polygons) {
        polygons.emplace_back();
        for (const GridPoint p : ring)
            polygons.back().push_back(pointOf(p));
    }
    swept = std::make_unique<SweptSymbol>(std::move(polygons), m_tolerance);
    return *swept;
}

void FeatureDrawing::sweep(const Feature &feature, const std::function<void(const GridRing &)> &polygon)
{
    class Sink : public PolygonSink
    {
    public:
        Sink(FeatureDrawing &drawing, const std::function<void(const GridRing &)> &polygon)
            : m_drawing(drawing), m_polygon(polygon)
        {
        }
        void polygon(const Point *corners, std::size_t count) override
        {
            GridRing &ring = m_drawing.m_ring;
            m_drawing.m_symbols.grid().round(corners, count, m_drawing.m_map, ring);
            if (ring.size() < 3)
                return;
            if (m_drawing.m_map.turnsOver())
                std::reverse(ring.begin(), ring.end());
            m_polygon(ring);
        }

    private:
        FeatureDrawing &m_drawing;
        const std::function<void(const GridRing &)> &m_polygon;
    } sink(*this, polygon);

    if (feature.kind == FeatureKind::Line) {
        const Line &line = m_features.lines[feature.index];
        sweptSymbol(line.symbol, feature.polarity).sweep(line, sink);
    } else {
        const Arc &arc = m_features.arcs[feature.index];
        sweptSymbol(arc.symbol, feature.polarity).sweep(arc, sink);
    }
}

GridPoint FeatureDrawing::padPosition(const Feature &feature) const
{
    return m_symbols.grid().round(m_map(m_features.pads[feature.index].at));
}

std::uint32_t FeatureDrawing::padSymbol(const Feature &feature)
{
    const Pad &pad = m_features.pads[feature.index];
    const PadKey key(pad, feature.polarity);
    const auto known = m_padSymbols.find(key);
    if (known != m_padSymbols.end())
        return known->second;
    const std::uint32_t number =
        m_symbols.number(pad.symbol, placement(pad).then(m_map), growthOf(feature) + pad.growth);
    m_padSymbols.emplace(key, number);
    return number;
}

void FeatureDrawing::surface(const Feature &feature, std::vector<GridRing> &rings)
{
    const Surface &surface = m_features.surfaces[feature.index];
    if (m_growth == 0.0)
        contourRings(m_features.contours, surface.firstContour, surface.contourCount, m_map, m_symbols.grid(),
                     rings);
    else
        resizedContourRings(m_features.contours, surface.firstContour, surface.contourCount,
                            growthOf(feature), m_map, m_symbols.grid(), rings);
}

void FeatureDrawing::rings(std::uint32_t item, std::vector<GridRing> &rings)
{
    const Feature &feature = m_features.order[item];
    switch (feature.kind) {
    case FeatureKind::Line:
    case FeatureKind::Arc:
        sweep(feature, [&rings](const GridRing &ring) { rings.push_back(ring); });
        return;
    case FeatureKind::Pad: {
        const GridPoint at = padPosition(feature);
        for (const GridRing &polygon : m_symbols[padSymbol(feature)].polygons) {
            rings.push_back(polygon);
            for (GridPoint &p : rings.back())
                p = {p.x + at.x, p.y + at.y};
        }
        return;
    }
    case FeatureKind::Surface:
        return surface(feature, rings);
    }
}

std::vector<bool> FeatureDrawing::reachedByNegatives(const std::function<void()> &report)
{
    if (m_features.negativeCount == 0)
        return {};
    const auto count = static_cast<std::uint32_t>(m_features.order.size());
    std::vector<GridBox> boxes(count);
    std::vector<GridBox> negativeBoxes;
    for (std::uint32_t i = 0; i < count; ++i) {
        if (i % reportInterval == 0)
            report();
        boxes[i] = box(i);
        if (m_features.order[i].polarity == Polarity::Negative)
            negativeBoxes.push_back(boxes[i]);
    }
    const Neighbourhood negatives(negativeBoxes);
    report();
    std::vector<bool> isReached(count);
    for (std::uint32_t i = 0; i < count; ++i)
        isReached[i] = m_features.order[i].polarity == Polarity::Negative || negatives.mayTouch(boxes[i]);
    return isReached;
}

void FeatureDrawing::resolve(const std::function<void(const GridRing &)> &polygon,
                             const std::function<void(double)> &report)
{
    constexpr double walkShare = 0.2;
    const auto count = static_cast<std::uint32_t>(m_features.order.size());
    PaintedArea area(*this, m_symbols.mostCorners());
    for (std::uint32_t i = 0; i < count; ++i) {
        if (i % reportInterval == 0)
            report(walkShare * i / count);
        area.paint(i, m_features.order[i].polarity, box(i), corners(i));
    }
    area.resolve(polygon, [&report](double share) { report(walkShare + (1.0 - walkShare) * share); });
}

namespace {

// A bound of how far `symbol` reaches from its origin.
double reachOf(const LayerImage &image, std::uint32_t symbol, double growth)
{
    const Symbol &source = image.symbols[symbol];
    Box box;
    if (source.standard) {
        box = extent(shapeOf(*source.standard, growth));
    } else {
        DrawnSymbols drawn(image, Grid(1000.0), 8000);
        const GridBox grid = drawn[drawn.number(symbol, Transform(), growth)].box;
        if (grid.isEmpty())
            return 0.0;
        box.add(Point{static_cast<double>(grid.low.x - 1), static_cast<double>(grid.low.y - 1)} * 1000.0);
        box.add(Point{static_cast<double>(grid.high.x + 1), static_cast<double>(grid.high.y + 1)} * 1000.0);
    }
    if (box.isEmpty())
        return 0.0;
    const double x = std::max(std::fabs(box.low.x), std::fabs(box.high.x));
    const double y = std::max(std::fabs(box.low.y), std::fabs(box.high.y));
    return length({x, y});
}

} // namespace

double FeatureDrawing::symbolReach(std::uint32_t symbol, double growth)
{
    auto &known = m_reaches[growth < 0.0 ? 1 : 0];
    known.resize(m_symbols.image().symbols.size(), -1.0);
    if (known[symbol] < 0.0)
        known[symbol] = reachOf(m_symbols.image(), symbol, growth);
    return known[symbol];
}

GridBox FeatureDrawing::mappedBox(const Box &box) const
{
    GridBox result;
    if (box.isEmpty())
        return result;
    for (const Point corner : {box.low, box.high, Point{box.low.x, box.high.y}, Point{box.high.x, box.low.y}})
        result.add(m_symbols.grid().round(m_map(corner)));
    // Rounding may set a corner one step outside.
    result.low = {result.low.x - 1, result.low.y - 1};
    result.high = {result.high.x + 1, result.high.y + 1};
    return result;
}

GridBox FeatureDrawing::box(std::uint32_t item)
{
    const Feature &feature = m_features.order[item];
    Box box;
    const auto addWithReach = [&](Box inner, std::uint32_t symbol) {
        const double reach = symbolReach(symbol, growthOf(feature));
        box.add(inner.low - Point{reach, reach});
        box.add(inner.high + Point{reach, reach});
    };
    switch (feature.kind) {
    case FeatureKind::Line: {
        const Line &line = m_features.lines[feature.index];
        Box ends;
        ends.add(line.start);
        ends.add(line.end);
        addWithReach(ends, line.symbol);
        break;
    }
    case FeatureKind::Arc: {
        const Arc &arc = m_features.arcs[feature.index];
        const double radius = std::max(distance(arc.start, arc.center), distance(arc.end, arc.center));
        Box circle;
        circle.add(arc.center - Point{radius, radius});
        circle.add(arc.center + Point{radius, radius});
        addWithReach(circle, arc.symbol);
        break;
    }
    case FeatureKind::Pad: {
        GridBox drawn = m_symbols[padSymbol(feature)].box;
        if (drawn.isEmpty())
            return drawn;
        const GridPoint at = padPosition(feature);
        drawn.low = {drawn.low.x + at.x, drawn.low.y + at.y};
        drawn.high = {drawn.high.x + at.x, drawn.high.y + at.y};
        return drawn;
    }
    case FeatureKind::Surface: {
        const Surface &surface = m_features.surfaces[feature.index];
        for (std::uint32_t i = 0; i < surface.contourCount; ++i)
            box.add(extent(m_features.contours[surface.firstContour + i]));
        // Sharp corners reach twice as far out as the edges are moved; see resized().
        const double reach = std::max(0.0, growthOf(feature));
        if (!box.isEmpty()) {
            box.add(box.low - Point{reach, reach});
            box.add(box.high + Point{reach, reach});
        }
        break;
    }
    }
    return mappedBox(box);
}

std::size_t FeatureDrawing::corners(std::uint32_t item)
{
    const Feature &feature = m_features.order[item];
    switch (feature.kind) {
    case FeatureKind::Line:
        return sweptSymbol(m_features.lines[feature.index].symbol, feature.polarity).corners();
    case FeatureKind::Arc: {
        const Arc &arc = m_features.arcs[feature.index];
        const double radius = distance(arc.start, arc.center);
        return 2 * sweptSymbol(arc.symbol, feature.polarity).corners() +
               2 * arcSteps(radius, 360.0, m_tolerance);
    }
    case FeatureKind::Pad:
        return m_symbols[padSymbol(feature)].corners;
    case FeatureKind::Surface:
        break;
    }
    std::size_t count = 0;
    const Surface &surface = m_features.surfaces[feature.index];
    for (std::uint32_t i = 0; i < surface.contourCount; ++i) {
        const ContourView contour = m_features.contours[surface.firstContour + i];
        for (const auto [from, edge] : contour.walk()) {
            const bool isArc = edge.kind != EdgeKind::Line;
            count += isArc ? arcSteps(distance(from, edge.center), sweptDegrees(from, edge), m_tolerance) : 1;
        }
    }
    return count;
}

} // namespace cam
