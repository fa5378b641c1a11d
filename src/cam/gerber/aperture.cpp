// Standard apertures first; then the symbol's contours, where circles and polygons can make them exactly.
#include "cam/gerber/aperture.h"

#include "cam/gerber/gerberstream.h"
#include "cam/model/trigonometry.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace cam {

namespace {

// Builds the body of a macro, in output coordinates.
class MacroBody
{
public:
    explicit MacroBody(const Transform &map) : m_map(map), m_scale(map.scale()) {}

    // Primitive 1. Center and diameter in the symbol's coordinates, as everything here.
    void circle(bool exposure, double diameter, Point center)
    {
        const Point at = m_map.linear(center);
        start("1", exposure);
        value(diameter * m_scale);
        point(at);
        finish();
    }

    // Primitive 4.
    void polygon(bool exposure, const std::vector<Point> &corners)
    {
        start("4", exposure);
        m_text += ',' + std::to_string(corners.size());
        for (const Point corner : corners)
            point(m_map.linear(corner));
        point(m_map.linear(corners.front()));
        m_text += ",0";
        finish();
    }

    // Primitive 7: a ring with four gaps at right angles, the first one at `angle` degrees.
    void thermal(double outer, double inner, double gap, double angle)
    {
        const SineCosine turn = sineCosine(angle);
        const Point gapDirection = m_map.linear({turn.cosine, turn.sine});
        m_text += "7,0,0";
        value(outer * m_scale);
        value(inner * m_scale);
        value(gap * m_scale);
        const double degrees = std::fmod(directionDegrees(gapDirection.x, gapDirection.y), 90.0);
        m_text += ',' + decimal(degrees);
        finish();
    }

    Aperture aperture() const { return {m_text, true, m_hasClearParts}; }

private:
    // Degrees with six digits behind the point.
    static std::string decimal(double degrees) { return millimetres(roundToNanometre(degrees * 1e6)); }

    void start(const char *code, bool exposure)
    {
        m_text += code;
        m_text += exposure ? ",1" : ",0";
        m_hasClearParts = m_hasClearParts || !exposure;
    }
    void value(double nanometres) { m_text += ',' + millimetres(roundToNanometre(nanometres)); }
    void point(Point at)
    {
        value(at.x);
        value(at.y);
    }
    void finish() { m_text += "*\n"; }

    Transform m_map;
    double m_scale;
    std::string m_text;
    bool m_hasClearParts = false;
};

Aperture standard(char letter, std::initializer_list<double> sizes)
{
    Aperture aperture;
    aperture.shape = letter;
    char separator = ',';
    for (const double size : sizes) {
        aperture.shape += separator + millimetres(roundToNanometre(size));
        separator = 'X';
    }
    return aperture;
}

bool roundsToNothing(double nanometres)
{
    return roundToNanometre(nanometres) <= 0;
}

// Whether x and y axes stay axes; if so, whether they change places.
bool keepsAxes(const Transform &map)
{
    return (map.xy == 0.0 && map.yx == 0.0) || (map.xx == 0.0 && map.yy == 0.0);
}

struct Size
{
    double width;
    double height;
};

Size turned(Size size, const Transform &map)
{
    const double scale = map.scale();
    const bool swaps = map.xx == 0.0;
    return {(swaps ? size.height : size.width) * scale, (swaps ? size.width : size.height) * scale};
}

// C, R and O, with a round hole where there is one.
std::optional<Aperture> standardAperture(const StandardSymbol &symbol, double growth, const Transform &map)
{
    const double scale = map.scale();
    const double first = symbol.size[0] + growth;
    const double opening = (symbol.size[1] - growth) * scale;
    switch (symbol.kind) {
    case SymbolKind::Round:
    case SymbolKind::Hole:
        return standard('C', {first * scale});
    case SymbolKind::RoundDonut:
        if (symbol.size[1] <= 0.0 || roundsToNothing(opening))
            return standard('C', {first * scale});
        return standard('C', {first * scale, opening});
    default:
        break;
    }
    if (!keepsAxes(map))
        return std::nullopt;
    if (symbol.kind == SymbolKind::Square)
        return standard('R', {first * scale, first * scale});
    // With an opening it becomes a macro: KLayout 0.28 fills those of rectangles, and knows those of circles.
    if (symbol.kind == SymbolKind::SquareRoundDonut && (symbol.size[1] <= 0.0 || roundsToNothing(opening)))
        return standard('R', {first * scale, first * scale});
    const Size size = turned({first, symbol.size[1] + growth}, map);
    if (symbol.kind == SymbolKind::Rectangle && symbol.corners == CornerStyle::Sharp)
        return standard('R', {size.width, size.height});
    if (symbol.kind == SymbolKind::Oval)
        return standard('O', {size.width, size.height});
    return std::nullopt;
}

bool hasArcs(const ContourView &contour)
{
    return std::any_of(contour.begin(), contour.end(),
                       [](const Edge &edge) { return edge.kind != EdgeKind::Line; });
}

std::vector<Point> cornersOf(const ContourView &contour)
{
    std::vector<Point> corners{contour.start};
    for (const Edge &edge : contour)
        corners.push_back(edge.end);
    corners.pop_back(); // the contour ends at its start
    return corners;
}

// Whether the circles of a contour's arcs lie inside of it, so that the polygon of its corners and these
// circles together cover exactly what the contour encloses. Contours run counter-clockwise here: an arc that
// runs clockwise is cut out of the contour.
bool isPolygonWithCircles(const ContourView &contour)
{
    for (const Edge &arc : contour) {
        if (arc.kind == EdgeKind::Line)
            continue;
        if (arc.kind == EdgeKind::ArcClockwise)
            return false;
        const double radius = distance(arc.end, arc.center);
        for (const auto [from, edge] : contour.walk()) {
            const Point along = edge.end - from;
            const double reach = edge.kind == EdgeKind::Line && along != Point{}
                                     ? std::fabs(cross(along, arc.center - from)) / length(along)
                                     : radius;
            // Where a shape has been resized, its arcs may meet in a notch within another one's circle.
            if (std::min(reach, distance(edge.end, arc.center)) < radius * (1.0 - 1e-9))
                return false;
        }
    }
    return true;
}

void addSolid(MacroBody &body, const ContourView &contour, bool exposure)
{
    const std::vector<Point> corners = cornersOf(contour);
    if (corners.size() >= 3)
        body.polygon(exposure, corners);
    std::vector<Point> centers;
    for (const auto [from, edge] : contour.walk()) {
        const bool isNew = std::find(centers.begin(), centers.end(), edge.center) == centers.end();
        if (edge.kind != EdgeKind::Line && isNew) {
            body.circle(exposure, 2.0 * distance(from, edge.center), edge.center);
            centers.push_back(edge.center);
        }
    }
}

bool fitsMacro(const Shape &shape)
{
    std::size_t primitives = 0;
    for (std::size_t i = 0; i < shape.contours.size(); ++i) {
        if (shape.contours[i].edgeCount > mostMacroCorners)
            return false;
        primitives += 1 + shape.contours[i].edgeCount;
    }
    return primitives <= 200;
}

// A ring and what is cut out of it: one island, at most one hole.
std::optional<Aperture> solidOrRing(const Shape &shape, const Transform &map)
{
    const std::size_t count = shape.contours.size();
    if (count == 0 || count > 2 || !fitsMacro(shape) || (count == 2 && !shape.contours[1].isHole))
        return std::nullopt;
    MacroBody body(map);
    for (std::size_t i = 0; i < count; ++i) {
        const ContourView contour = shape.contours[i];
        if (!isPolygonWithCircles(contour))
            return std::nullopt;
        addSolid(body, contour, !contour.isHole);
    }
    return body.aperture();
}

// Islands of straight edges, bars with round ends among them.
std::optional<Aperture> islands(const Shape &shape, const Transform &map)
{
    if (shape.contours.isEmpty() || !fitsMacro(shape))
        return std::nullopt;
    MacroBody body(map);
    for (std::size_t i = 0; i < shape.contours.size(); ++i) {
        const ContourView contour = shape.contours[i];
        if (contour.isHole || (hasArcs(contour) && !isPolygonWithCircles(contour)))
            return std::nullopt;
        addSolid(body, contour, true);
    }
    return body.aperture();
}

// A corner form that solidOrRing() can make needs no more than this; thermals with arcs become a ring out of
// which the gaps are cut.
struct RoundGaps
{
    double angle;
    std::size_t count;
    double width;
};

void cutGaps(MacroBody &body, const RoundGaps &gaps, double reach)
{
    for (std::size_t i = 0; i < gaps.count; ++i) {
        const double degrees = gaps.angle + 360.0 * static_cast<double>(i) / static_cast<double>(gaps.count);
        const Transform turn = Transform::rotation(degrees);
        const double aside = gaps.width / 2.0;
        body.polygon(false,
                     {turn({0.0, -aside}), turn({reach, -aside}), turn({reach, aside}), turn({0.0, aside})});
    }
}

// ths, sr_ths: a ring about a round opening.
std::optional<Aperture> cutRing(const StandardSymbol &symbol, double growth, const Transform &map)
{
    const double outer = symbol.size[0] + growth, inner = symbol.size[1] - growth;
    const RoundGaps gaps{symbol.size[2], static_cast<std::size_t>(symbol.size[3]), symbol.size[4] - growth};
    const bool isRound = symbol.kind == SymbolKind::RoundThermal;
    const double widest = std::max(gaps.width, symbol.size[4]); // once grown, and before
    const double narrowest = std::min(gaps.width, symbol.size[4]);
    if (widest >= std::min(inner, symbol.size[1]) || narrowest <= 0.0 || gaps.count == 0)
        return std::nullopt; // not the usual form: drawn as regions
    MacroBody body(map);
    if (isRound && gaps.count == 4) {
        body.thermal(outer, inner, gaps.width, gaps.angle);
        return body.aperture();
    }
    const double half = outer / 2.0;
    if (isRound)
        body.circle(true, outer, {});
    else
        body.polygon(true, {{half, half}, {-half, half}, {-half, -half}, {half, -half}});
    body.circle(false, inner, {});
    cutGaps(body, gaps, outer);
    return body.aperture();
}

// thr: a ring out of which the wedge between the centres of two neighbouring round ends is cut, and the round
// ends.
std::optional<Aperture> roundedThermal(const StandardSymbol &symbol, double growth, const Transform &map)
{
    const double outer = symbol.size[0] + growth, inner = symbol.size[1] - growth;
    const RoundGaps gaps{symbol.size[2], static_cast<std::size_t>(symbol.size[3]), symbol.size[4] - growth};
    const double lineWidth = (outer - inner) / 2.0, middle = (outer + inner) / 4.0;
    const double aside = gaps.width / 2.0 + lineWidth / 2.0;
    if (inner <= 0.0 || gaps.width <= 0.0 || symbol.size[4] <= 0.0 || gaps.count == 0 ||
        aside >= middle * 0.7)
        return std::nullopt;
    const double along = std::sqrt(middle * middle - aside * aside);
    const double farther = 2.0 * outer / middle;
    const double halfSpoke = arcCosineDegrees(along / middle);
    if (halfSpoke * 2.0 * static_cast<double>(gaps.count) >= 360.0)
        return std::nullopt;
    MacroBody body(map);
    body.circle(true, outer, {});
    body.circle(false, inner, {});
    std::vector<Point> ends;
    for (std::size_t i = 0; i < gaps.count; ++i) {
        const Transform turn = Transform::rotation(gaps.angle + 360.0 * static_cast<double>(i) /
                                                                    static_cast<double>(gaps.count));
        const Point left = turn({along, aside}), right = turn({along, -aside});
        body.polygon(false, {{}, right * farther, left * farther});
        ends.push_back(left);
        ends.push_back(right);
    }
    for (const Point end : ends)
        body.circle(true, lineWidth, end);
    return body.aperture();
}

std::optional<Aperture> butterfly(const StandardSymbol &symbol, const Transform &map)
{
    const double half = symbol.size[0] / 2.0;
    MacroBody body(map);
    body.circle(true, symbol.size[0], {});
    body.polygon(false, {{}, {half, 0.0}, {half, half}, {0.0, half}});
    body.polygon(false, {{}, {-half, 0.0}, {-half, -half}, {0.0, -half}});
    return body.aperture();
}

// Circles from the outermost inwards, dark and clear in turn; then the lines. Rings that have grown into each
// other have no such order.
std::optional<Aperture> moire(const Shape &shape, const Transform &map)
{
    if (!fitsMacro(shape))
        return std::nullopt;
    MacroBody body(map);
    std::vector<ContourView> circles;
    std::vector<ContourView> lines;
    for (std::size_t i = 0; i < shape.contours.size(); ++i)
        (shape.contours[i].edgeCount == 1 ? circles : lines).push_back(shape.contours[i]);
    std::sort(circles.begin(), circles.end(),
              [](const ContourView &a, const ContourView &b) { return a.start.x > b.start.x; });
    bool isHole = false;
    for (const ContourView &circle : circles) {
        if (circle.isHole != isHole)
            return std::nullopt;
        addSolid(body, circle, !isHole);
        isHole = !isHole;
    }
    for (const ContourView &line : lines)
        addSolid(body, line, true);
    return body.aperture();
}

std::optional<Aperture> macroAperture(const StandardSymbol &symbol, double growth, const Transform &map)
{
    switch (symbol.kind) {
    case SymbolKind::RoundThermal:
    case SymbolKind::SquareRoundThermal:
        return cutRing(symbol, growth, map);
    case SymbolKind::RoundedThermal:
        return roundedThermal(symbol, growth, map);
    case SymbolKind::Butterfly:
        return growth == 0.0 ? butterfly(symbol, map) : std::nullopt;
    case SymbolKind::Moire:
        return moire(shapeOf(symbol, growth), map);
    case SymbolKind::Ellipse:
        return std::nullopt;
    default:
        break;
    }
    const Shape shape = shapeOf(symbol, growth);
    if (auto aperture = solidOrRing(shape, map))
        return aperture;
    return islands(shape, map);
}

// A rectangle that the map stretches along its own axes stays one.
std::optional<Aperture> stretchedRectangle(const StandardSymbol &symbol, double growth, const Transform &map)
{
    const bool isRectangle = symbol.kind == SymbolKind::Square ||
                             (symbol.kind == SymbolKind::Rectangle && symbol.corners == CornerStyle::Sharp);
    const bool isSquare = symbol.kind == SymbolKind::Square;
    const double width = symbol.size[0] + growth, height = symbol.size[isSquare ? 0 : 1] + growth;
    if (!isRectangle || !keepsAxes(map) || width <= 0.0 || height <= 0.0)
        return std::nullopt;
    const Point size = map.linear({width, height});
    if (roundsToNothing(std::fabs(size.x)) || roundsToNothing(std::fabs(size.y)))
        return std::nullopt;
    return standard('R', {std::fabs(size.x), std::fabs(size.y)});
}

} // namespace

std::optional<Aperture> apertureOf(const StandardSymbol &symbol, double growth, const Transform &map)
{
    if (symbol.angle != 0.0) {
        StandardSymbol unturned = symbol;
        unturned.angle = 0.0;
        return apertureOf(unturned, growth, Transform::rotation(symbol.angle).then(map));
    }
    if (!map.keepsCircles())
        return stretchedRectangle(symbol, growth, map);
    const Box box = extent(shapeOf(symbol, growth));
    if (box.isEmpty() || roundsToNothing((box.high.x - box.low.x) * map.scale()) ||
        roundsToNothing((box.high.y - box.low.y) * map.scale()))
        return std::nullopt;
    if (auto aperture = standardAperture(symbol, growth, map))
        return aperture;
    return macroAperture(symbol, growth, map);
}

Aperture circleAperture(double diameter)
{
    return standard('C', {diameter});
}

} // namespace cam
