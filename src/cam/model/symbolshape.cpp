// The shape of every standard symbol: solids first, then rings, then rings cut by gaps.
#include "cam/model/coveredarea.h"
#include "cam/model/outline.h"
#include "cam/model/standardsymbol.h"
#include "cam/model/stencilsymbol.h"

#include "cam/model/trigonometry.h"
#include "cam/model/winding.h"

#include <algorithm>
#include <cmath>
#include <functional>

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

Outline chamferedRectangle(double width, double height, const CornerForm &corners, double growth)
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
    const Polygon moved = growth == 0.0 ? polygon : grown(polygon, growth / 2.0);
    return roundedOutline(moved, std::vector<double>(moved.size(), 0.0));
}

// Rounded corners keep their centres when the rectangle grows. A radius is cut to what the sides allow.
Outline roundedRectangle(double width, double height, const CornerForm &corners, double growth)
{
    const double w = width + growth, h = height + growth;
    if (w <= 0.0 || h <= 0.0)
        return {};
    const double limit = std::min(w, h) / 2.0;
    const double wanted = corners.size > 0.0 ? corners.size + growth / 2.0 : 0.0;
    std::vector<double> radii(4, 0.0);
    for (std::size_t i = 0; i < 4; ++i) {
        if (corners.has(i))
            radii[i] = std::clamp(wanted, 0.0, limit);
    }
    return roundedOutline(rectangleCorners(w, h), radii);
}

Outline rectangle(double width, double height, const CornerForm &corners, double growth)
{
    if (width <= 0.0 || height <= 0.0)
        return {};
    if (corners.style == CornerStyle::Chamfered)
        return chamferedRectangle(width, height, corners, growth);
    return roundedRectangle(width, height, corners, growth);
}

Outline oval(double width, double height, double growth)
{
    const double w = width + growth, h = height + growth;
    if (width <= 0.0 || height <= 0.0 || w <= 0.0 || h <= 0.0)
        return {};
    if (w == h)
        return circleOutline({}, w / 2.0);
    return roundedOutline(rectangleCorners(w, h), std::vector<double>(4, std::min(w, h) / 2.0));
}

// Leaves out corners that are none: equal to the one before, or on a straight line. Moved edges meet nowhere
// there.
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

Outline convex(const Polygon &corners, double growth)
{
    const Polygon polygon = properCorners(corners);
    if (polygon.size() < 3)
        return {};
    const Polygon moved = growth == 0.0 ? polygon : grown(polygon, growth / 2.0);
    return roundedOutline(moved, std::vector<double>(moved.size(), 0.0));
}

bool hasExtent(const StandardSymbol &symbol)
{
    return symbol.size[0] > 0.0 && symbol.size[1] > 0.0;
}

Outline diamond(const StandardSymbol &symbol, double growth)
{
    const double x = symbol.size[0] / 2.0, y = symbol.size[1] / 2.0;
    return hasExtent(symbol) ? convex({{x, 0.0}, {0.0, y}, {-x, 0.0}, {0.0, -y}}, growth) : Outline();
}

Outline triangle(const StandardSymbol &symbol, double growth)
{
    const double x = symbol.size[0] / 2.0, y = symbol.size[1] / 2.0;
    return hasExtent(symbol) ? convex({{0.0, y}, {-x, -y}, {x, -y}}, growth) : Outline();
}

Outline hexagon(const StandardSymbol &symbol, double growth)
{
    if (!hasExtent(symbol))
        return {};
    const double x = symbol.size[0] / 2.0, y = symbol.size[1] / 2.0, corner = symbol.size[2];
    if (symbol.kind == SymbolKind::HorizontalHexagon) {
        const double flat = std::max(0.0, x - corner);
        return convex({{x, 0.0}, {flat, y}, {-flat, y}, {-x, 0.0}, {-flat, -y}, {flat, -y}}, growth);
    }
    const double flat = std::max(0.0, y - corner);
    return convex({{0.0, y}, {-x, flat}, {-x, -flat}, {0.0, -y}, {x, -flat}, {x, flat}}, growth);
}

// Flat end at -x, round end at +x. A symbol narrower than half its height has two quarter circles instead of
// one half; where it shrinks, its flat end cuts them.
Outline halfOval(const StandardSymbol &symbol, double growth)
{
    const double w = symbol.size[0] + growth, h = symbol.size[1] + growth;
    if (!hasExtent(symbol) || w <= 0.0 || h <= 0.0)
        return {};
    const double radius = std::min(symbol.size[0], symbol.size[1] / 2.0) + growth / 2.0;
    if (radius <= w)
        return roundedOutline(rectangleCorners(w, h), {radius, 0.0, 0.0, radius});
    const double left = -w / 2.0, right = w / 2.0, top = h / 2.0, centre = right - radius;
    const double reach = top - radius + std::sqrt((radius - (left - centre)) * (radius + (left - centre)));
    Outline outline;
    outline.start = {left, -reach};
    outline.arcTo({right, radius - top}, {centre, radius - top});
    outline.lineTo({right, top - radius});
    outline.arcTo({left, reach}, {centre, top - radius});
    outline.lineTo(outline.start);
    return outline;
}

// Enough corners that each chord stays within the tolerance of the larger circle's arc.
std::size_t ellipseCorners(double largerRadius)
{
    const double sagitta = std::min(ellipseTolerance / largerRadius, 0.05);
    const double halfStep = arcCosineDegrees(1.0 - sagitta);
    const double quarter = std::ceil(90.0 / (2.0 * halfStep));
    return 4 * static_cast<std::size_t>(quarter);
}

Outline ellipse(const StandardSymbol &symbol, double growth)
{
    const double a = (symbol.size[0] + growth) / 2.0, b = (symbol.size[1] + growth) / 2.0;
    if (!hasExtent(symbol) || a <= 0.0 || b <= 0.0)
        return {};
    if (a == b)
        return circleOutline({}, a);
    const std::size_t count = ellipseCorners(std::max(a, b));
    Polygon polygon;
    for (std::size_t i = 0; i < count; ++i) {
        const Point onCircle = direction(360.0 * static_cast<double>(i) / static_cast<double>(count));
        polygon.push_back({a * onCircle.x, b * onCircle.y});
    }
    return convex(polygon, 0.0);
}

// One quarter of a butterfly, in the quadrant left of and above the origin; the other is its half turn.
Outline roundQuarter(double diameter, double growth)
{
    const double margin = growth / 2.0;
    const double radius = diameter / 2.0 + margin;
    const bool isUsedUp = margin < 0.0 && radius * radius <= 2.0 * margin * margin;
    if (radius <= 0.0 || isUsedUp)
        return {};
    const double reach = std::sqrt(radius * radius - margin * margin);
    Outline outline;
    outline.start = {margin, -margin};
    outline.lineTo({margin, reach});
    outline.arcTo({-reach, -margin}, {});
    outline.lineTo(outline.start);
    return outline;
}

Outline squareQuarter(double side, double growth)
{
    const double half = side / 2.0;
    return convex({{0.0, 0.0}, {0.0, half}, {-half, half}, {-half, 0.0}}, growth);
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

// Whether shrinking leaves nothing of a ring whose line is `lineWidth` wide: its inner edge would be the
// larger one. A line without width grows as little as a symbol without size.
bool vanishes(double lineWidth, double growth)
{
    return lineWidth <= 0.0 || lineWidth + growth <= 0.0;
}

// A rectangular ring; the inner corners are round about the same centres as the outer ones.
Ring rectangleRing(double width, double height, double lineWidth, const CornerForm &corners, double growth)
{
    const bool hasOpening = 2.0 * lineWidth < std::min(width, height);
    if (hasOpening && vanishes(lineWidth, growth))
        return {};
    CornerForm inside = corners;
    inside.size = std::max(0.0, corners.size - lineWidth);
    return {rectangle(width, height, corners, growth),
            rectangle(width - 2.0 * lineWidth, height - 2.0 * lineWidth, inside, -growth)};
}

Ring roundRing(double outer, double inner, double growth)
{
    if (inner > 0.0 && vanishes((outer - inner) / 2.0, growth))
        return {};
    return {circleOutline({}, (outer + growth) / 2.0),
            circleOutline({}, inner > 0.0 ? (inner - growth) / 2.0 : 0.0)};
}

// A square about a round opening. Where the opening reaches beyond the sides, the corners are left.
Ring squareRoundRing(double side, double inner, double growth)
{
    return {rectangle(side, side, {}, growth), circleOutline({}, inner > 0.0 ? (inner - growth) / 2.0 : 0.0)};
}

Ring ovalRing(double width, double height, double lineWidth, double growth)
{
    const bool hasOpening = 2.0 * lineWidth < std::min(width, height);
    if (hasOpening && vanishes(lineWidth, growth))
        return {};
    return {oval(width, height, growth), oval(width - 2.0 * lineWidth, height - 2.0 * lineWidth, -growth)};
}

// ---- thermals

struct Gaps
{
    double angle = 0.0; // degrees, counter-clockwise, of the first one
    std::size_t count = 0;
    double width = 0.0; // without growth; without it there are no gaps, which growth does not change
    double moved = 0.0; // how far the edges of what is left between the gaps move outwards
    // Half of what the symbol's sides differ by: a diagonal gap of an oblong symbol starts that much off the
    // centre along the longer axis, and so runs through the corner (or about the centre of the round end).
    Point offset;

    bool areNone() const { return count == 0 || width <= 0.0; }
    bool areClosed() const { return areNone() || width <= 2.0 * moved; }
};

Gaps gapsOf(const StandardSymbol &symbol, double growth)
{
    Gaps gaps;
    gaps.angle = symbol.size[2];
    gaps.count = static_cast<std::size_t>(symbol.size[3]);
    gaps.width = symbol.size[4];
    gaps.moved = growth / 2.0;
    return gaps;
}

void aimAtCorners(Gaps &gaps, double width, double height)
{
    gaps.offset = {std::max(0.0, (width - height) / 2.0), std::max(0.0, (height - width) / 2.0)};
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

Straight straight(const Ray &ray)
{
    return {ray.origin, ray.direction};
}

// What lies counter-clockwise between two rays, to beyond `reach`: from where they meet, or else from the
// line between their origins on, with all edges moved outwards by `moved`.
Outline wedge(const Ray &first, const Ray &last, double moved, double reach)
{
    const Straight right = straight(first.shifted(-moved)), left = straight(last.shifted(moved));
    Point from = left.at, to = right.at; // the way between the rays
    const Point across = first.origin - last.origin;
    if (apexOf(first, last)) {
        from = to = intersection(left, right);
    } else if (std::fabs(cross(across, first.direction)) > 1e-9 * reach) {
        const Straight end{first.origin + Point{across.y, -across.x} * (moved / length(across)), across};
        from = intersection(left, end);
        to = intersection(end, right);
    }
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

// A ring grown by so many nanometres.
using GrownRing = std::function<Ring(double growth)>;

void addCutRing(Shape &shape, const GrownRing &ringOf, const Gaps &gaps)
{
    const Ring plain = ringOf(0.0), ring = ringOf(2.0 * gaps.moved);
    if (ring.outer.isEmpty())
        return;
    if (gaps.areClosed())
        return addRing(shape, ring);
    double reach = 0.0;
    for (const Edge &edge : ring.outer.edges)
        reach = std::max(reach, length(edge.end));
    const std::vector<Ray> rays = raysOf(gaps);
    for (std::size_t i = 0; i < rays.size(); ++i) {
        const Ray first = rays[i].shifted(gaps.width / 2.0);
        const Ray last = rays[(i + 1) % rays.size()].shifted(-gaps.width / 2.0);
        const auto addPiece = [&](Shape &target, const Ring &whole, double moved) {
            const Outline between = wedge(first, last, moved, reach);
            addCoveredArea(target.contours, {whole.outer, whole.inner, between}, [&](Point at) {
                return contains(whole.outer, at) && !contains(whole.inner, at) && contains(between, at);
            });
        };
        Shape piece;
        addPiece(piece, plain, 0.0);
        if (!piece.contours.isEmpty()) // nothing does not grow
            addPiece(shape, ring, gaps.moved);
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

// Pieces of a line of `lineWidth` along `middle`, with half circles at their ends, `gaps.width` apart. The
// ends keep their centres when the line grows.
void addRoundedPieces(Shape &shape, const Outline &middle, double lineWidth, const Gaps &gaps)
{
    const double grownWidth = lineWidth + 2.0 * gaps.moved;
    if (middle.isEmpty() || vanishes(lineWidth, 2.0 * gaps.moved))
        return;
    if (gaps.areNone())
        return addBand(shape, middle, middle, grownWidth);
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
            addBand(shape, way, middle, grownWidth);
    }
}

void addRoundedThermal(Shape &shape, const StandardSymbol &symbol, double growth)
{
    const double outer = symbol.size[0], inner = symbol.size[1];
    addRoundedPieces(shape, circleOutline({}, (outer + inner) / 4.0), (outer - inner) / 2.0,
                     gapsOf(symbol, growth));
}

void addOblongThermal(Shape &shape, const StandardSymbol &symbol, double growth)
{
    const double width = symbol.size[0], height = symbol.size[1], lineWidth = symbol.size[5];
    Gaps gaps = gapsOf(symbol, growth);
    aimAtCorners(gaps, width, height);
    if (symbol.ends == EndStyle::Straight)
        return addCutRing(
            shape, [&](double by) { return ovalRing(width, height, lineWidth, by); }, gaps);
    addRoundedPieces(shape, oval(width - lineWidth, height - lineWidth, 0.0), lineWidth, gaps);
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

void addOpenThermal(Shape &shape, const StandardSymbol &symbol, double width, double height, double lineWidth,
                    double growth)
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
            const double margin = growth / 2.0;
            const double low = stretch.from - margin, high = stretch.to + margin;
            const double near = across - margin, far = across + lineWidth + margin;
            if (high <= low || far <= near)
                continue;
            const Polygon bar = {turn({near, low}), turn({far, low}), turn({far, high}), turn({near, high})};
            shape.contours.addPolygon(bar.data(), bar.size(), false);
        }
    }
}

void addLineThermal(Shape &shape, const StandardSymbol &symbol, double growth)
{
    const double lineWidth = (symbol.size[0] - symbol.size[1]) / 2.0;
    const double across = (symbol.size[0] + symbol.size[1]) / 4.0;
    // The half circles at the ends of two neighbours stay a gap apart, measured across the corner.
    const double reach = across - (symbol.size[4] + lineWidth) * std::sqrt(0.5);
    if (reach < 0.0)
        return;
    for (int side = 0; side < 4; ++side) {
        const Transform turn = Transform::rotation(90.0 * side);
        add(shape.contours, capsule(turn({across, -reach}), turn({across, reach}), lineWidth + growth),
            false);
    }
}

// ---- moire

void addMoire(Shape &shape, const StandardSymbol &symbol, double growth)
{
    const double ringWidth = symbol.size[0], ringGap = symbol.size[1];
    const auto rings = static_cast<std::size_t>(symbol.size[2]);
    if (ringWidth > 0.0) {
        add(shape.contours, circleOutline({}, (ringWidth + growth) / 2.0), false);
        for (std::size_t i = 1; i <= rings; ++i) {
            const double inner = ringWidth + 2.0 * ringGap * static_cast<double>(i) +
                                 2.0 * ringWidth * static_cast<double>(i - 1);
            addRing(shape, roundRing(inner + 2.0 * ringWidth, inner, growth));
        }
    }
    const double half = symbol.size[4] / 2.0;
    for (const double turn : {0.0, 90.0}) {
        const Point tip = direction(symbol.size[5] + turn) * half;
        if (symbol.size[3] > 0.0 && half > 0.0)
            add(shape.contours, capsule(-tip, tip, symbol.size[3] + growth), false);
    }
}

// As if the name had no suffix.
Shape unturnedShape(const StandardSymbol &symbol, double growth)
{
    const auto &size = symbol.size;
    Shape shape;
    const auto solid = [&shape](const Outline &outline) { add(shape.contours, outline, false); };
    switch (symbol.kind) {
    case SymbolKind::Round:
    case SymbolKind::Hole:
        solid(circleOutline({}, size[0] > 0.0 ? (size[0] + growth) / 2.0 : 0.0));
        break;
    case SymbolKind::Square:
        solid(rectangle(size[0], size[0], {}, growth));
        break;
    case SymbolKind::Rectangle:
        solid(rectangle(size[0], size[1], cornersOf(symbol), growth));
        break;
    case SymbolKind::Oval:
        solid(oval(size[0], size[1], growth));
        break;
    case SymbolKind::Diamond:
        solid(diamond(symbol, growth));
        break;
    case SymbolKind::Octagon:
        solid(rectangle(size[0], size[1], {CornerStyle::Chamfered, 0xf, size[2]}, growth));
        break;
    case SymbolKind::RoundDonut:
        addRing(shape, roundRing(size[0], size[1], growth));
        break;
    case SymbolKind::SquareDonut:
        addRing(shape, rectangleRing(size[0], size[0], (size[0] - size[1]) / 2.0, cornersOf(symbol), growth));
        break;
    case SymbolKind::SquareRoundDonut:
        addRing(shape, squareRoundRing(size[0], size[1], growth));
        break;
    case SymbolKind::RectangleDonut:
        addRing(shape, rectangleRing(size[0], size[1], size[2], cornersOf(symbol), growth));
        break;
    case SymbolKind::OvalDonut:
        addRing(shape, ovalRing(size[0], size[1], size[2], growth));
        break;
    case SymbolKind::HorizontalHexagon:
    case SymbolKind::VerticalHexagon:
        solid(hexagon(symbol, growth));
        break;
    case SymbolKind::Butterfly:
        addWithHalfTurn(shape, size[0] > 0.0 ? roundQuarter(size[0], growth) : Outline());
        break;
    case SymbolKind::SquareButterfly:
        addWithHalfTurn(shape, size[0] > 0.0 ? squareQuarter(size[0], growth) : Outline());
        break;
    case SymbolKind::Triangle:
        solid(triangle(symbol, growth));
        break;
    case SymbolKind::HalfOval:
        solid(halfOval(symbol, growth));
        break;
    case SymbolKind::RoundedThermal:
        addRoundedThermal(shape, symbol, growth);
        break;
    case SymbolKind::RoundThermal:
        addCutRing(
            shape, [&](double by) { return roundRing(size[0], size[1], by); }, gapsOf(symbol, growth));
        break;
    case SymbolKind::SquareThermal:
        addCutRing(
            shape,
            [&](double by) {
                return rectangleRing(size[0], size[0], (size[0] - size[1]) / 2.0, cornersOf(symbol), by);
            },
            gapsOf(symbol, growth));
        break;
    case SymbolKind::OpenSquareThermal:
        addOpenThermal(shape, symbol, size[0], size[0], (size[0] - size[1]) / 2.0, growth);
        break;
    case SymbolKind::LineThermal:
        addLineThermal(shape, symbol, growth);
        break;
    case SymbolKind::SquareRoundThermal:
        addCutRing(
            shape, [&](double by) { return squareRoundRing(size[0], size[1], by); }, gapsOf(symbol, growth));
        break;
    case SymbolKind::RectangleThermal: {
        Gaps gaps = gapsOf(symbol, growth);
        aimAtCorners(gaps, size[0], size[1]);
        addCutRing(
            shape, [&](double by) { return rectangleRing(size[0], size[1], size[5], cornersOf(symbol), by); },
            gaps);
        break;
    }
    case SymbolKind::OpenRectangleThermal:
        addOpenThermal(shape, symbol, size[0], size[1], size[5], growth);
        break;
    case SymbolKind::OvalThermal:
        addCutRing(
            shape, [&](double by) { return ovalRing(size[0], size[1], size[5], by); },
            gapsOf(symbol, growth));
        break;
    case SymbolKind::OblongThermal:
        addOblongThermal(shape, symbol, growth);
        break;
    case SymbolKind::Ellipse:
        solid(ellipse(symbol, growth));
        break;
    case SymbolKind::Moire:
        addMoire(shape, symbol, growth);
        break;
    case SymbolKind::HomePlate:
    case SymbolKind::InvertedHomePlate:
    case SymbolKind::FlatHomePlate:
    case SymbolKind::BittenHomePlate:
    case SymbolKind::RoundHomePlate:
    case SymbolKind::Cross:
    case SymbolKind::Dogbone:
    case SymbolKind::PadGrid:
        addStencilSymbol(shape, symbol, growth);
        break;
    case SymbolKind::Null:
        break;
    }
    return shape;
}

} // namespace

Shape shapeOf(const StandardSymbol &symbol, double growth)
{
    Shape shape = unturnedShape(symbol, growth);
    if (symbol.angle == 0.0)
        return shape;
    Shape turned;
    for (std::size_t i = 0; i < shape.contours.size(); ++i)
        turned.contours.add(shape.contours[i], Transform::rotation(symbol.angle));
    return turned;
}

} // namespace cam
