// The shape of every standard symbol: solids first, then rings, then rings cut by gaps.
#include "cam/model/coveredarea.h"
#include "cam/model/growth.h"
#include "cam/model/outline.h"
#include "cam/model/standardsymbol.h"
#include "cam/model/stencilsymbol.h"

#include "cam/model/trigonometry.h"
#include "cam/model/winding.h"

#include <algorithm>
#include <cmath>

namespace cam {

namespace {

// How far the polygon of an ellipse may stray from it, in nanometres.
constexpr double ellipseTolerance = 100.0;

Point direction(double degrees)
{
    const SineCosine sc = sineCosine(degrees);
    return {sc.cosine, sc.sine};
}

// ---- solids

// Corners in the order of the format's numbering: top right, top left, bottom left, bottom right.
Polygon rectangleCorners(double width, double height)
{
    const double x = width / 2.0, y = height / 2.0;
    return {{x, y}, {-x, y}, {-x, -y}, {x, -y}};
}

// A rectangle with `corners` of the symbol's style and mask.
struct CornerForm
{
    CornerStyle style = CornerStyle::Sharp;
    unsigned mask = 0;
    double size = 0.0;

    bool has(std::size_t corner) const { return style != CornerStyle::Sharp && (mask >> corner & 1u); }
};

CornerForm cornersOf(const StandardSymbol &symbol)
{
    return {symbol.corners, symbol.cornerMask, symbol.cornerSize};
}

Outline chamferedRectangle(double width, double height, const CornerForm &corners)
{
    const Polygon sharp = rectangleCorners(width, height);
    const double cut = std::min(corners.size, std::min(width, height) / 2.0);
    Polygon polygon;
    for (std::size_t i = 0; i < 4; ++i) {
        const Point corner = sharp[i];
        if (!corners.has(i) || cut <= 0.0) {
            polygon.push_back(corner);
            continue;
        }
        const Point alongX = {corner.x > 0.0 ? -cut : cut, 0.0};
        const Point alongY = {0.0, corner.y > 0.0 ? -cut : cut};
        const bool startsOnSide = i % 2 == 0; // counter-clockwise into corners 1 and 3 comes a vertical side
        polygon.push_back(corner + (startsOnSide ? alongY : alongX));
        polygon.push_back(corner + (startsOnSide ? alongX : alongY));
    }
    polygon.erase(std::unique(polygon.begin(), polygon.end()), polygon.end());
    if (polygon.size() > 1 && polygon.front() == polygon.back())
        polygon.pop_back();
    return roundedOutline(polygon, std::vector<double>(polygon.size(), 0.0));
}

// A radius is cut to what the sides allow.
Outline roundedRectangle(double width, double height, const CornerForm &corners)
{
    std::vector<double> radii(4, 0.0);
    for (std::size_t i = 0; i < 4; ++i) {
        if (corners.has(i))
            radii[i] = std::min(corners.size, std::min(width, height) / 2.0);
    }
    return roundedOutline(rectangleCorners(width, height), radii);
}

Outline rectangle(double width, double height, const CornerForm &corners)
{
    if (width <= 0.0 || height <= 0.0)
        return {};
    return corners.style == CornerStyle::Chamfered ? chamferedRectangle(width, height, corners)
                                                   : roundedRectangle(width, height, corners);
}

Outline oval(double width, double height)
{
    if (width <= 0.0 || height <= 0.0)
        return {};
    if (width == height)
        return circleOutline({}, width / 2.0);
    return roundedOutline(rectangleCorners(width, height),
                          std::vector<double>(4, std::min(width, height) / 2.0));
}

// Leaves out corners that are none: equal to the one before, or on a straight line.
Polygon properCorners(const Polygon &polygon)
{
    Polygon distinct;
    for (const Point corner : polygon) {
        if (distinct.empty() || distinct.back() != corner)
            distinct.push_back(corner);
    }
    while (distinct.size() > 1 && distinct.front() == distinct.back())
        distinct.pop_back();
    Polygon proper;
    for (std::size_t i = 0; i < distinct.size(); ++i) {
        const Point before = distinct[(i + distinct.size() - 1) % distinct.size()];
        const Point after = distinct[(i + 1) % distinct.size()];
        if (cross(distinct[i] - before, after - distinct[i]) != 0.0)
            proper.push_back(distinct[i]);
    }
    return proper;
}

Outline convex(const Polygon &corners)
{
    const Polygon polygon = properCorners(corners);
    if (polygon.size() < 3)
        return {};
    return roundedOutline(polygon, std::vector<double>(polygon.size(), 0.0));
}

bool hasExtent(const StandardSymbol &symbol)
{
    return symbol.size[0] > 0.0 && symbol.size[1] > 0.0;
}

Outline diamond(const StandardSymbol &symbol)
{
    const double x = symbol.size[0] / 2.0, y = symbol.size[1] / 2.0;
    return hasExtent(symbol) ? convex({{x, 0.0}, {0.0, y}, {-x, 0.0}, {0.0, -y}}) : Outline();
}

Outline triangle(const StandardSymbol &symbol)
{
    const double x = symbol.size[0] / 2.0, y = symbol.size[1] / 2.0;
    return hasExtent(symbol) ? convex({{0.0, y}, {-x, -y}, {x, -y}}) : Outline();
}

Outline hexagon(const StandardSymbol &symbol)
{
    if (!hasExtent(symbol))
        return {};
    const double x = symbol.size[0] / 2.0, y = symbol.size[1] / 2.0, corner = symbol.size[2];
    if (symbol.kind == SymbolKind::HorizontalHexagon) {
        const double flat = std::max(0.0, x - corner);
        return convex({{x, 0.0}, {flat, y}, {-flat, y}, {-x, 0.0}, {-flat, -y}, {flat, -y}});
    }
    const double flat = std::max(0.0, y - corner);
    return convex({{0.0, y}, {-x, flat}, {-x, -flat}, {0.0, -y}, {x, -flat}, {x, flat}});
}

// Flat end at -x, round end at +x. A symbol narrower than half its height has two quarter circles instead of
// one half.
Outline halfOval(const StandardSymbol &symbol)
{
    if (!hasExtent(symbol))
        return {};
    const double radius = std::min(symbol.size[0], symbol.size[1] / 2.0);
    return roundedOutline(rectangleCorners(symbol.size[0], symbol.size[1]), {radius, 0.0, 0.0, radius});
}

// Enough corners that each chord stays within the tolerance of the larger circle's arc.
std::size_t ellipseCorners(double largerRadius)
{
    const double sagitta = std::min(ellipseTolerance / largerRadius, 0.05);
    const double halfStep = arcCosineDegrees(1.0 - sagitta);
    const double quarter = std::ceil(90.0 / (2.0 * halfStep));
    return 4 * static_cast<std::size_t>(quarter);
}

Outline ellipse(const StandardSymbol &symbol)
{
    const double a = symbol.size[0] / 2.0, b = symbol.size[1] / 2.0;
    if (a <= 0.0 || b <= 0.0)
        return {};
    if (a == b)
        return circleOutline({}, a);
    const std::size_t count = ellipseCorners(std::max(a, b));
    Polygon polygon;
    for (std::size_t i = 0; i < count; ++i) {
        const Point onCircle = direction(360.0 * static_cast<double>(i) / static_cast<double>(count));
        polygon.push_back({a * onCircle.x, b * onCircle.y});
    }
    return convex(polygon);
}

// One quarter of a butterfly, in the quadrant left of and above the origin; the other is its half turn.
Outline roundQuarter(double diameter)
{
    Outline outline;
    outline.lineTo({0.0, diameter / 2.0});
    outline.arcTo({-diameter / 2.0, 0.0}, {});
    outline.lineTo(outline.start);
    return outline;
}

Outline squareQuarter(double side)
{
    const double half = side / 2.0;
    return convex({{0.0, 0.0}, {0.0, half}, {-half, half}, {-half, 0.0}});
}

void addWithHalfTurn(Shape &shape, const Outline &outline)
{
    add(shape.contours, outline, false);
    if (outline.isEmpty())
        return;
    const ContourView first = shape.contours[shape.contours.size() - 1];
    ContourPool copy;
    copy.add(first, Transform::rotation(180.0));
    shape.contours.add(copy[0], Transform());
}

// A bar with half circles at its ends, whose centres are `from` and `to`.
Outline capsule(Point from, Point to, double width)
{
    if (width <= 0.0)
        return {};
    const double reach = distance(from, to);
    if (reach == 0.0)
        return circleOutline(from, width / 2.0);
    const Point along = (to - from) * (1.0 / reach);
    const Point aside = Point{along.y, -along.x} * (width / 2.0);
    Outline outline;
    outline.start = from + aside;
    outline.lineTo(to + aside);
    outline.arcTo(to - aside, to);
    outline.lineTo(from - aside);
    outline.arcTo(outline.start, from);
    return outline;
}

// ---- rings

struct Ring
{
    Outline outer;
    Outline inner; // empty: solid
};

void addRing(Shape &shape, const Ring &ring)
{
    if (ring.outer.isEmpty())
        return;
    if (ring.inner.isEmpty() || contains(ring.outer, ring.inner)) {
        add(shape.contours, ring.outer, false);
        add(shape.contours, ring.inner, true);
        return;
    }
    addCoveredArea(shape.contours, {ring.outer, ring.inner},
                   [&](Point at) { return contains(ring.outer, at) && !contains(ring.inner, at); });
}

// A rectangular ring; the inner corners are round about the same centres as the outer ones.
Ring rectangleRing(double width, double height, double lineWidth, const CornerForm &corners)
{
    CornerForm inside = corners;
    inside.size = std::max(0.0, corners.size - lineWidth);
    return {rectangle(width, height, corners),
            rectangle(width - 2.0 * lineWidth, height - 2.0 * lineWidth, inside)};
}

Ring roundRing(double outer, double inner)
{
    return {circleOutline({}, outer / 2.0), circleOutline({}, inner / 2.0)};
}

// A square about a round opening.
Ring squareRoundRing(double side, double inner)
{
    return {rectangle(side, side, {}), circleOutline({}, inner / 2.0)};
}

Ring ovalRing(double width, double height, double lineWidth)
{
    return {oval(width, height), oval(width - 2.0 * lineWidth, height - 2.0 * lineWidth)};
}

// ---- thermals

struct Gaps
{
    double angle = 0.0; // degrees, counter-clockwise, of the first one
    std::size_t count = 0;
    double width = 0.0;
    // Half of what the symbol's sides differ by: a diagonal gap of an oblong symbol starts that much off the
    // centre along the longer axis, and so runs through the corner (or about the centre of the round end).
    Point offset;

    bool areNone() const { return count == 0 || width <= 0.0; }
};

Gaps gapsOf(const StandardSymbol &symbol)
{
    Gaps gaps;
    gaps.angle = symbol.size[2];
    gaps.count = static_cast<std::size_t>(symbol.size[3]);
    gaps.width = symbol.size[4];
    return gaps;
}

Gaps aimedAtCorners(Gaps gaps, double width, double height)
{
    gaps.offset = {std::max(0.0, (width - height) / 2.0), std::max(0.0, (height - width) / 2.0)};
    return gaps;
}

// One ray a gap, by rising angle from 0 to 360.
std::vector<Ray> raysOf(const Gaps &gaps)
{
    std::vector<double> angles;
    for (std::size_t i = 0; i < gaps.count; ++i)
        angles.push_back(
            std::fmod(gaps.angle + 360.0 * static_cast<double>(i) / static_cast<double>(gaps.count), 360.0));
    std::sort(angles.begin(), angles.end());
    std::vector<Ray> rays;
    for (const double angle : angles) {
        Ray ray{{}, direction(angle)};
        const bool isDiagonal = std::fmod(angle, 90.0) == 45.0;
        if (isDiagonal)
            ray.origin = {std::copysign(gaps.offset.x, ray.direction.x),
                          std::copysign(gaps.offset.y, ray.direction.y)};
        rays.push_back(ray);
    }
    return rays;
}

// Where two rays meet, if they do.
std::optional<Point> apexOf(const Ray &first, const Ray &second)
{
    const double across = cross(first.direction, second.direction);
    if (std::fabs(across) < 1e-9)
        return std::nullopt;
    const Point apart = second.origin - first.origin;
    const double alongFirst = cross(apart, second.direction) / across;
    const double alongSecond = cross(apart, first.direction) / across;
    if (alongFirst < 0.0 || alongSecond < 0.0)
        return std::nullopt;
    return first.origin + first.direction * alongFirst;
}

// What lies counter-clockwise between two rays, to beyond `reach`: from where they meet, or else from the
// line between their origins on.
Outline wedge(const Ray &first, const Ray &last, double reach)
{
    const auto apex = apexOf(first, last);
    const Point from = apex ? *apex : last.origin,
                to = apex ? *apex : first.origin; // the way between the rays
    const double far = 4.0 * (reach + length(from) + length(to));
    const double turn =
        directionDegrees(dot(first.direction, last.direction), cross(first.direction, last.direction));
    const double degrees = turn < 1e-6 ? 360.0 : turn; // a single gap
    const double corners = std::ceil(degrees / 90.0);
    Outline outline;
    outline.start = to;
    outline.lineTo(to + first.direction * far);
    for (double i = 1.0; i < corners; ++i)
        outline.lineTo(Transform::rotation(degrees * i / corners)(first.direction) * (2.0 * far));
    outline.lineTo(from + last.direction * far);
    outline.lineTo(from);
    outline.lineTo(to);
    return outline;
}

void addCutRing(Shape &shape, const Ring &ring, const Gaps &gaps)
{
    if (gaps.areNone())
        return addRing(shape, ring);
    double reach = 0.0;
    for (const Edge &edge : ring.outer.edges)
        reach = std::max(reach, length(edge.end));
    const std::vector<Ray> rays = raysOf(gaps);
    for (std::size_t i = 0; i < rays.size(); ++i) {
        const Ray first = rays[i].shifted(gaps.width / 2.0);
        const Ray last = rays[(i + 1) % rays.size()].shifted(-gaps.width / 2.0);
        const Outline between = wedge(first, last, reach);
        addCoveredArea(shape.contours, {ring.outer, ring.inner, between}, [&](Point at) {
            return contains(ring.outer, at) && !contains(ring.inner, at) && contains(between, at);
        });
    }
}

// Adds what lies within half of `lineWidth` of `way`, a part of `middle` or all of it.
void addBand(Shape &shape, const Outline &way, const Outline &middle, double lineWidth)
{
    const double half = lineWidth / 2.0;
    // The inner one turns inside out where the line is wider than the way is round; it bounds nothing there.
    std::vector<Outline> bounds{parallel(middle, half), parallel(middle, -half)};
    if (way.start != way.edges.back().end) {
        bounds.push_back(circleOutline(way.start, half));
        bounds.push_back(circleOutline(way.edges.back().end, half));
    }
    const ContourView line{way.start, way.edges.data(), way.edges.size(), false};
    addCoveredArea(shape.contours, bounds, [&](Point at) { return distanceTo(line, at) < half; });
}

// Pieces of a line of `lineWidth` along `middle`, with half circles at their ends, `gaps.width` apart.
void addRoundedPieces(Shape &shape, const Outline &middle, double lineWidth, const Gaps &gaps)
{
    if (middle.isEmpty() || lineWidth <= 0.0)
        return;
    if (gaps.areNone())
        return addBand(shape, middle, middle, lineWidth);
    const double toCapCentre = gaps.width / 2.0 + lineWidth / 2.0;
    const std::vector<Ray> rays = raysOf(gaps);
    for (std::size_t i = 0; i < rays.size(); ++i) {
        const Ray firstRay = rays[i].shifted(toCapCentre);
        const Ray lastRay = rays[(i + 1) % rays.size()].shifted(-toCapCentre);
        const auto start = exitOf(firstRay, middle);
        const auto end = exitOf(lastRay, middle);
        const auto apex = rays.size() == 1 ? std::nullopt : apexOf(firstRay, lastRay);
        const bool nothingLeft =
            !start || !end || (apex && dot(*apex - firstRay.origin, firstRay.direction) > start->distance);
        if (nothingLeft)
            continue;
        Outline way;
        way.start = start->at;
        walkForward(way, middle, *start, *end);
        if (!way.isEmpty())
            addBand(shape, way, middle, lineWidth);
    }
}

void addOblongThermal(Shape &shape, const StandardSymbol &symbol)
{
    const double width = symbol.size[0], height = symbol.size[1], lineWidth = symbol.size[5];
    const Gaps gaps = aimedAtCorners(gapsOf(symbol), width, height);
    if (symbol.ends == EndStyle::Straight)
        return addCutRing(shape, ovalRing(width, height, lineWidth), gaps);
    addRoundedPieces(shape, oval(width - lineWidth, height - lineWidth), lineWidth, gaps);
}

// Part of a bar, measured along it from its middle.
struct Stretch
{
    double from;
    double to;
};

// The bar on one side of an open-cornered thermal. The bar is as long as the inner side; a gap through the
// middle of the side cuts it in two, a gap through a corner shortens it to where the gap's edge meets the
// inner side.
std::vector<Stretch> stretchesOfBar(double halfLength, double gap, bool cutInMiddle, bool cutAtStart,
                                    bool cutAtEnd)
{
    const double atCorner = gap * std::sqrt(0.5);
    Stretch bar{-halfLength + (cutAtStart ? atCorner : 0.0), halfLength - (cutAtEnd ? atCorner : 0.0)};
    std::vector<Stretch> stretches;
    if (cutInMiddle) {
        stretches.push_back({bar.from, -gap / 2.0});
        stretches.push_back({gap / 2.0, bar.to});
    } else {
        stretches.push_back(bar);
    }
    stretches.erase(std::remove_if(stretches.begin(), stretches.end(),
                                   [](const Stretch &stretch) { return stretch.to <= stretch.from; }),
                    stretches.end());
    return stretches;
}

// Sides and corners are counted counter-clockwise in steps of 45 degrees from the right side.
bool hasGapAt(const StandardSymbol &symbol, unsigned eighth)
{
    const unsigned count = static_cast<unsigned>(symbol.size[3]);
    const unsigned first = static_cast<unsigned>(std::fmod(symbol.size[2], 360.0) / 45.0);
    for (unsigned i = 0; i < count; ++i) {
        if ((first + i * (8u / count)) % 8u == eighth % 8u)
            return true;
    }
    return false;
}

void addOpenThermal(Shape &shape, const StandardSymbol &symbol, double width, double height, double lineWidth)
{
    for (unsigned side = 0; side < 4; ++side) {
        const bool isUpright = side % 2 == 0;
        const double across =
            (isUpright ? width : height) / 2.0 - lineWidth; // centre to the bar's inner side
        const double halfLength = (isUpright ? height : width) / 2.0 - lineWidth;
        const unsigned eighth = 2 * side;
        const Transform turn = Transform::rotation(90.0 * side);
        for (const Stretch &stretch :
             stretchesOfBar(halfLength, symbol.size[4], hasGapAt(symbol, eighth),
                            hasGapAt(symbol, eighth + 7), hasGapAt(symbol, eighth + 1))) {
            const double far = across + lineWidth;
            if (lineWidth <= 0.0)
                continue;
            const Polygon bar = {turn({across, stretch.from}), turn({far, stretch.from}),
                                 turn({far, stretch.to}), turn({across, stretch.to})};
            shape.contours.addPolygon(bar.data(), bar.size(), false);
        }
    }
}

void addLineThermal(Shape &shape, const StandardSymbol &symbol)
{
    const double lineWidth = (symbol.size[0] - symbol.size[1]) / 2.0;
    const double across = (symbol.size[0] + symbol.size[1]) / 4.0;
    // The half circles at the ends of two neighbours stay a gap apart, measured across the corner.
    const double reach = across - (symbol.size[4] + lineWidth) * std::sqrt(0.5);
    if (reach < 0.0)
        return;
    for (int side = 0; side < 4; ++side) {
        const Transform turn = Transform::rotation(90.0 * side);
        add(shape.contours, capsule(turn({across, -reach}), turn({across, reach}), lineWidth), false);
    }
}

// ---- moire

void addMoire(Shape &shape, const StandardSymbol &symbol)
{
    const double ringWidth = symbol.size[0], ringGap = symbol.size[1];
    const auto rings = static_cast<std::size_t>(symbol.size[2]);
    if (ringWidth > 0.0) {
        add(shape.contours, circleOutline({}, ringWidth / 2.0), false);
        for (std::size_t i = 1; i <= rings; ++i) {
            const double inner = ringWidth + 2.0 * ringGap * static_cast<double>(i) +
                                 2.0 * ringWidth * static_cast<double>(i - 1);
            addRing(shape, roundRing(inner + 2.0 * ringWidth, inner));
        }
    }
    const double half = symbol.size[4] / 2.0;
    for (const double turn : {0.0, 90.0}) {
        const Point tip = direction(symbol.size[5] + turn) * half;
        if (symbol.size[3] > 0.0 && half > 0.0)
            add(shape.contours, capsule(-tip, tip, symbol.size[3]), false);
    }
}

// As if the name had no suffix.
Shape unturnedShape(const StandardSymbol &symbol)
{
    const auto &size = symbol.size;
    Shape shape;
    const auto solid = [&shape](const Outline &outline) { add(shape.contours, outline, false); };
    switch (symbol.kind) {
    case SymbolKind::Round:
    case SymbolKind::Hole:
        solid(circleOutline({}, size[0] / 2.0));
        break;
    case SymbolKind::Square:
        solid(rectangle(size[0], size[0], {}));
        break;
    case SymbolKind::Rectangle:
        solid(rectangle(size[0], size[1], cornersOf(symbol)));
        break;
    case SymbolKind::Oval:
        solid(oval(size[0], size[1]));
        break;
    case SymbolKind::Diamond:
        solid(diamond(symbol));
        break;
    case SymbolKind::Octagon:
        solid(rectangle(size[0], size[1], {CornerStyle::Chamfered, 0xf, size[2]}));
        break;
    case SymbolKind::RoundDonut:
        addRing(shape, roundRing(size[0], size[1]));
        break;
    case SymbolKind::SquareDonut:
        addRing(shape, rectangleRing(size[0], size[0], (size[0] - size[1]) / 2.0, cornersOf(symbol)));
        break;
    case SymbolKind::SquareRoundDonut:
        addRing(shape, squareRoundRing(size[0], size[1]));
        break;
    case SymbolKind::RectangleDonut:
        addRing(shape, rectangleRing(size[0], size[1], size[2], cornersOf(symbol)));
        break;
    case SymbolKind::OvalDonut:
        addRing(shape, ovalRing(size[0], size[1], size[2]));
        break;
    case SymbolKind::HorizontalHexagon:
    case SymbolKind::VerticalHexagon:
        solid(hexagon(symbol));
        break;
    case SymbolKind::Butterfly:
        addWithHalfTurn(shape, roundQuarter(size[0]));
        break;
    case SymbolKind::SquareButterfly:
        addWithHalfTurn(shape, squareQuarter(size[0]));
        break;
    case SymbolKind::Triangle:
        solid(triangle(symbol));
        break;
    case SymbolKind::HalfOval:
        solid(halfOval(symbol));
        break;
    case SymbolKind::RoundedThermal:
        addRoundedPieces(shape, circleOutline({}, (size[0] + size[1]) / 4.0), (size[0] - size[1]) / 2.0,
                         gapsOf(symbol));
        break;
    case SymbolKind::RoundThermal:
        addCutRing(shape, roundRing(size[0], size[1]), gapsOf(symbol));
        break;
    case SymbolKind::SquareThermal:
        addCutRing(shape, rectangleRing(size[0], size[0], (size[0] - size[1]) / 2.0, cornersOf(symbol)),
                   gapsOf(symbol));
        break;
    case SymbolKind::OpenSquareThermal:
        addOpenThermal(shape, symbol, size[0], size[0], (size[0] - size[1]) / 2.0);
        break;
    case SymbolKind::LineThermal:
        addLineThermal(shape, symbol);
        break;
    case SymbolKind::SquareRoundThermal:
        addCutRing(shape, squareRoundRing(size[0], size[1]), gapsOf(symbol));
        break;
    case SymbolKind::RectangleThermal:
        addCutRing(shape, rectangleRing(size[0], size[1], size[5], cornersOf(symbol)),
                   aimedAtCorners(gapsOf(symbol), size[0], size[1]));
        break;
    case SymbolKind::OpenRectangleThermal:
        addOpenThermal(shape, symbol, size[0], size[1], size[5]);
        break;
    case SymbolKind::OvalThermal:
        addCutRing(shape, ovalRing(size[0], size[1], size[5]), gapsOf(symbol));
        break;
    case SymbolKind::OblongThermal:
        addOblongThermal(shape, symbol);
        break;
    case SymbolKind::Ellipse:
        solid(ellipse(symbol));
        break;
    case SymbolKind::Moire:
        addMoire(shape, symbol);
        break;
    case SymbolKind::HomePlate:
    case SymbolKind::InvertedHomePlate:
    case SymbolKind::FlatHomePlate:
    case SymbolKind::BittenHomePlate:
    case SymbolKind::RoundHomePlate:
    case SymbolKind::Cross:
    case SymbolKind::Dogbone:
    case SymbolKind::PadGrid:
        addStencilSymbol(shape, symbol);
        break;
    case SymbolKind::Null:
        break;
    }
    return shape;
}

Shape grownShape(const StandardSymbol &symbol, double growth)
{
    if (symbol.kind == SymbolKind::Ellipse) { // its parallel curve is none
        StandardSymbol plain = symbol;
        plain.size[0] += growth;
        plain.size[1] += growth;
        return unturnedShape(plain);
    }
    const Shape shape = resized(unturnedShape(symbol), growth / 2.0);
    const bool isThermal =
        symbol.kind >= SymbolKind::RoundedThermal && symbol.kind <= SymbolKind::OblongThermal;
    return isThermal && growth >= symbol.size[4] ? united(shape) : shape; // its gaps have closed
}

} // namespace

Shape shapeOf(const StandardSymbol &symbol, double growth)
{
    Shape shape = grownShape(symbol, growth);
    if (symbol.angle == 0.0)
        return shape;
    Shape turned;
    for (std::size_t i = 0; i < shape.contours.size(); ++i)
        turned.contours.add(shape.contours[i], Transform::rotation(symbol.angle));
    return turned;
}

} // namespace cam
