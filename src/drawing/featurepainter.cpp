#include "drawing/featurepainter.h"

#include "cam/model/flatten.h"
#include "cam/model/trigonometry.h"

#include <algorithm>
#include <cmath>

namespace drawing {

using cam::ContourView;
using cam::Edge;
using cam::EdgeKind;
using cam::Point;
using cam::Polarity;
using cam::Transform;

namespace {

// How far a chord may lie from its curve, in samples.
constexpr double curveTolerance = 0.05;
constexpr double pixel = Canvas::samples;

double doubledArea(const Point *corners, std::size_t count)
{
    double sum = 0.0;
    for (std::size_t i = 1; i + 1 < count; ++i)
        sum += cam::cross(corners[i] - corners[0], corners[i + 1] - corners[0]);
    return sum;
}

bool isConvex(const std::vector<Point> &corners)
{
    bool left = false, right = false;
    double turned = 0.0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Point a = corners[i], b = corners[(i + 1) % corners.size()],
                    c = corners[(i + 2) % corners.size()];
        const double turn = cam::cross(b - a, c - b);
        left = left || turn > 0.0;
        right = right || turn < 0.0;
        turned += std::atan2(turn, cam::dot(b - a, c - b));
    }
    // Once around: a star turns to one side only as well.
    return !(left && right) && std::fabs(turned) < 3.0 * cam::pi;
}

} // namespace

FeaturePainter::FeaturePainter(const cam::LayerImage &image, const SymbolShapes &shapes, double resize,
                               const DrawMode &mode)
    : m_image(image), m_shapes(shapes), m_resize(resize), m_mode(mode)
{
}

FeaturePainter::~FeaturePainter() = default;

void FeaturePainter::begin(Canvas &canvas, const Transform &map)
{
    m_canvas = &canvas;
    m_map = map;
    m_visible = visiblePart(canvas, map);
    const auto [place, isNew] = m_linears.try_emplace(cam::LinearPart(map));
    m_linear = &place->second;
    if (!isNew)
        return;
    m_linear->map = map;
    m_linear->map.offset = {};
    m_linear->stretch = cam::largestStretch(map);
    m_linear->keepsCircles = map.keepsCircles();
    m_linear->rule = map.turnsOver() ? FillRule::Negative : FillRule::Positive;
    for (auto &pens : m_linear->pens)
        pens.resize(m_image.symbols.size());
}

double FeaturePainter::tolerance() const
{
    return curveTolerance / m_linear->stretch;
}

void FeaturePainter::draw(const DrawableFeatures &drawing, std::uint32_t index)
{
    const cam::FeatureSet &features = *drawing.features;
    const cam::Feature &feature = features.order[index];
    m_isDark = feature.polarity == Polarity::Positive;
    switch (feature.kind) {
    case cam::FeatureKind::Line:
        return drawLine(features.lines[feature.index], feature.polarity);
    case cam::FeatureKind::Arc:
        return drawArc(features.arcs[feature.index], feature.polarity);
    case cam::FeatureKind::Pad:
        return drawPad(features.pads[feature.index], feature.polarity);
    case cam::FeatureKind::Surface:
        return drawSurface(drawing, features.surfaces[feature.index], drawing.surfaces[feature.index]);
    }
}

// ---- rings

// Islands run as the map leaves counter-clockwise ones, holes the other way round.
void FeaturePainter::endRing(bool isHole)
{
    const std::size_t first = m_rings.ends.empty() ? 0 : m_rings.ends.back();
    const double area = doubledArea(m_rings.corners.data() + first, m_rings.corners.size() - first);
    const bool isIsland = (area > 0.0) == (m_linear->rule == FillRule::Positive);
    if (isIsland == isHole)
        std::reverse(m_rings.corners.begin() + static_cast<std::ptrdiff_t>(first), m_rings.corners.end());
    m_rings.endRing();
}

// The ring that was ended last winds around no sample of the canvas if it lies beside it.
void FeaturePainter::dropIfOutside()
{
    const std::size_t first = m_rings.ends.size() < 2 ? 0 : m_rings.ends[m_rings.ends.size() - 2];
    cam::Box box;
    for (std::size_t i = first; i < m_rings.corners.size(); ++i)
        box.add(m_rings.corners[i]);
    const double width = m_canvas->width() * Canvas::samples, height = m_canvas->height() * Canvas::samples;
    if (box.high.x >= 0.0 && box.high.y >= 0.0 && box.low.x <= width && box.low.y <= height)
        return;
    m_rings.corners.resize(first);
    m_rings.ends.pop_back();
}

// Those contours of a pool that reach into the canvas.
void FeaturePainter::addContours(const cam::ContourPool &pool, std::size_t first, std::size_t count)
{
    const Flattening flattening(m_map, m_mode.levelOfDetail);
    const double width = m_canvas->width() * Canvas::samples, height = m_canvas->height() * Canvas::samples;
    for (std::size_t i = first; i < first + count; ++i) {
        const ContourView contour = pool[i];
        if (flattening.isCircleOutside(contour, width, height))
            continue;
        flattening.add(contour, m_rings);
        endRing(contour.isHole);
        dropIfOutside();
    }
}

// ---- lines and arcs

FeaturePainter::Pen &FeaturePainter::pen(std::uint32_t symbol, Polarity polarity)
{
    Pen &pen = m_linear->pens[static_cast<std::size_t>(polarity)][symbol];
    if (pen.shape)
        return pen;
    const double growth = growthOf(polarity);
    pen.shape = &m_shapes.at(symbol, growth);
    const cam::Box &box = pen.shape->box;
    if (box.isEmpty())
        return pen;
    pen.width = std::min(box.high.x - box.low.x, box.high.y - box.low.y) * m_linear->stretch;
    if (pen.shape->radius > 0.0 && m_linear->keepsCircles) {
        pen.radius = pen.shape->radius * m_linear->stretch;
        const std::size_t steps = cam::arcSteps(pen.radius, 180.0, curveTolerance);
        for (std::size_t i = 0; i <= steps; ++i) {
            const cam::SineCosine at =
                cam::sineCosine(-90.0 + 180.0 * static_cast<double>(i) / static_cast<double>(steps));
            pen.halfCircle.push_back(Point{at.cosine, at.sine} * pen.radius);
        }
    }
    if (pen.shape->isOwn)
        pen.swept = std::make_unique<cam::SweptSymbol>(pen.shape->polygons, tolerance());
    else
        pen.swept =
            std::make_unique<cam::SweptSymbol>(*m_image.symbols[symbol].standard, growth, tolerance());
    return pen;
}

// A piece of a sweep; pieces may overlap.
void FeaturePainter::polygon(const Point *corners, std::size_t count)
{
    const Flattening flattening(m_map, m_mode.levelOfDetail);
    m_rings.clear();
    for (std::size_t i = 0; i < count; ++i)
        flattening.addCorner(m_map(corners[i]), m_rings);
    m_rings.endRing();
    m_canvas->fill(m_rings, FillRule::NonZero, m_isDark);
}

void FeaturePainter::drawLine(const cam::Line &line, Polarity polarity)
{
    Pen &pen = this->pen(line.symbol, polarity);
    if (pen.shape->box.isEmpty())
        return;
    const Point from = m_map(line.start), to = m_map(line.end);
    if (m_mode.levelOfDetail && pen.width < pixel) {
        const double far = cam::distance(from, to);
        if (far + pen.width < pixel)
            m_canvas->addSmall((from + to) * 0.5,
                               far * pen.width + pen.shape->area * std::fabs(m_map.determinant()), m_isDark);
        else
            m_canvas->addThin(from, to, pen.width, m_isDark);
        return;
    }
    if (!(pen.radius > 0.0))
        return pen.swept->sweep(line, *this);
    const double far = cam::distance(from, to);
    if (!(far > 0.0))
        return m_canvas->fillDisc(from, pen.radius, m_isDark);
    const Point ahead = (to - from) * (1.0 / far);
    m_corners.clear();
    for (const Point cap : pen.halfCircle)
        m_corners.push_back(
            {to.x + ahead.x * cap.x - ahead.y * cap.y, to.y + ahead.y * cap.x + ahead.x * cap.y});
    for (const Point cap : pen.halfCircle)
        m_corners.push_back(
            {from.x - ahead.x * cap.x + ahead.y * cap.y, from.y - ahead.y * cap.x - ahead.x * cap.y});
    m_canvas->fillConvex(m_corners, m_isDark);
}

void FeaturePainter::drawArc(const cam::Arc &arc, Polarity polarity)
{
    Pen &pen = this->pen(arc.symbol, polarity);
    if (pen.shape->box.isEmpty())
        return;
    if (!m_mode.levelOfDetail || pen.width >= pixel)
        return pen.swept->sweep(arc, *this);
    const Edge edge{arc.end, arc.center,
                    arc.clockwise ? EdgeKind::ArcClockwise : EdgeKind::ArcCounterClockwise};
    m_rings.clear();
    m_rings.corners.push_back(m_map(arc.start));
    Flattening(m_map, false).addArc(arc.start, edge, m_rings);
    for (std::size_t i = 1; i < m_rings.corners.size(); ++i)
        m_canvas->addThin(m_rings.corners[i - 1], m_rings.corners[i], pen.width, m_isDark);
}

// ---- pads

const FeaturePainter::PlacedSymbol &FeaturePainter::placed(const cam::Pad &pad, Polarity polarity)
{
    const cam::PadKey key(pad, polarity);
    const auto [place, isNew] = m_linear->symbols.try_emplace(key);
    PlacedSymbol &made = place->second;
    if (!isNew)
        return made;
    const SymbolShape &shape = m_shapes.at(pad.symbol, growthOf(polarity) + pad.growth);
    made.isEmpty = shape.box.isEmpty();
    if (made.isEmpty)
        return made;
    cam::Pad atOrigin = pad;
    atOrigin.at = {};
    const Transform map = cam::placement(atOrigin).then(m_linear->map);
    if (shape.radius > 0.0 && m_linear->keepsCircles)
        made.radius = shape.radius * m_linear->stretch;
    const Point size = shape.box.high - shape.box.low;
    const double across = cam::length(map.linear({size.x, 0.0})), up = cam::length(map.linear({0.0, size.y}));
    made.middle = map((shape.box.low + shape.box.high) * 0.5);
    made.shorter = std::min(across, up);
    made.longer = std::max(across, up);
    made.halfLonger = map.linear(across > up ? Point{size.x / 2.0, 0.0} : Point{0.0, size.y / 2.0});
    made.area = shape.area * std::fabs(map.determinant());

    // Rings run as those of the linear map without the pad's own mirror: endRing() looks at the result.
    const Flattening flattening(map, m_mode.levelOfDetail);
    m_rings.clear();
    for (std::size_t i = 0; i < shape.shape.contours.size(); ++i) {
        const ContourView contour = shape.shape.contours[i];
        flattening.add(contour, m_rings);
        endRing(contour.isHole);
    }
    for (const std::vector<Point> &polygon : shape.polygons) {
        for (const Point corner : polygon)
            flattening.addCorner(map(corner), m_rings);
        endRing(false);
    }
    made.rings = m_rings;
    made.isConvex = made.rings.ends.size() == 1 && isConvex(made.rings.corners);
    return made;
}

void FeaturePainter::drawPad(const cam::Pad &pad, Polarity polarity)
{
    const PlacedSymbol &symbol = placed(pad, polarity);
    if (symbol.isEmpty)
        return;
    const Point at = m_map(pad.at);
    if (m_mode.levelOfDetail && symbol.longer < pixel)
        return m_canvas->addSmall(at + symbol.middle, symbol.area, m_isDark);
    if (m_mode.levelOfDetail && symbol.shorter < pixel) {
        const Point middle = at + symbol.middle;
        return m_canvas->addThin(middle - symbol.halfLonger, middle + symbol.halfLonger,
                                 symbol.area / symbol.longer, m_isDark);
    }
    if (symbol.radius > 0.0)
        return m_canvas->fillDisc(at, symbol.radius, m_isDark);
    m_rings = symbol.rings;
    for (Point &corner : m_rings.corners)
        corner = corner + at;
    if (symbol.isConvex)
        m_canvas->fillConvex(m_rings.corners, m_isDark);
    else
        m_canvas->fill(m_rings, m_linear->rule, m_isDark);
}

// ---- surfaces

void FeaturePainter::drawSurface(const DrawableFeatures &drawing, const cam::Surface &surface,
                                 const SurfaceSize &size)
{
    if (size.box.isEmpty() || !size.box.touches(m_visible))
        return;
    const Point extent = size.box.high - size.box.low;
    if (m_mode.levelOfDetail && std::max(extent.x, extent.y) * m_linear->stretch < pixel)
        return m_canvas->addSmall(m_map((size.box.low + size.box.high) * 0.5),
                                  size.area * std::fabs(m_map.determinant()), m_isDark);
    m_rings.clear();
    if (m_resize != 0.0) {
        const Flattening flattening(m_map, m_mode.levelOfDetail);
        for (const std::vector<Point> &ring : size.resized) {
            for (const Point corner : ring)
                flattening.addCorner(m_map(corner), m_rings);
            m_rings.endRing();
            dropIfOutside();
        }
    } else {
        addContours(drawing.features->contours, surface.firstContour, surface.contourCount);
    }
    // What is thin may vanish between the samples: its edges are drawn besides, with no width.
    if (m_mode.levelOfDetail && m_isDark && 2.0 * size.area < size.perimeter * pixel / m_linear->stretch)
        drawEdges();
    // A contour that stands alone and crosses itself covers all places around which it runs.
    const bool isAlone = m_resize == 0.0 && surface.contourCount == 1;
    m_canvas->fill(m_rings, isAlone ? FillRule::NonZero : m_linear->rule, m_isDark);
}

void FeaturePainter::drawEdges()
{
    std::size_t first = 0;
    for (const std::size_t end : m_rings.ends) {
        Point from = first < end ? m_rings.corners[end - 1] : Point();
        for (std::size_t i = first; i < end; ++i) {
            m_canvas->addThin(from, m_rings.corners[i], 0.0, true);
            from = m_rings.corners[i];
        }
        first = end;
    }
}

void FeaturePainter::fillContours(const cam::ContourPool &pool, bool dark)
{
    m_rings.clear();
    addContours(pool, 0, pool.size());
    m_canvas->fill(m_rings, m_linear->rule, dark);
}

} // namespace drawing
