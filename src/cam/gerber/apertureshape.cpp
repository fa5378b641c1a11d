// Outlines of apertures and strokes, counter-clockwise unless a ring needs its inner circle the other way
// round.
#include "cam/gerber/apertureshape.h"

#include "cam/base/error.h"

#include <algorithm>
#include <cmath>

namespace cam {

namespace {

// A box around a contour; around all of the circle where an arc's radius changes.
Box boxAround(const ContourView &contour)
{
    Box box = extent(contour);
    for (const auto [from, edge] : contour.walk()) {
        if (edge.kind != EdgeKind::Line) {
            const double start = distance(from, edge.center), end = distance(edge.end, edge.center);
            const double radius = std::max(start, end);
            if (std::fabs(start - end) > 0.5) {
                box.add(edge.center - Point{radius, radius});
                box.add(edge.center + Point{radius, radius});
            }
        }
    }
    return box;
}

} // namespace

ShapeBuilder::ShapeBuilder(GerberImage &image)
    : m_image(image), m_firstPart(static_cast<std::uint32_t>(image.parts.size()))
{
}

void ShapeBuilder::closePart()
{
    if (!m_isInPart)
        return;
    GerberPart &part = m_image.parts.back();
    part.contourCount = static_cast<std::uint32_t>(m_image.contours.size()) - part.firstContour;
    if (part.contourCount == 0)
        m_image.parts.pop_back();
    m_isInPart = false;
}

void ShapeBuilder::beginPart(bool exposed)
{
    closePart();
    m_image.parts.push_back({static_cast<std::uint32_t>(m_image.contours.size()), 0, exposed});
    m_isInPart = true;
}

std::uint32_t ShapeBuilder::finish()
{
    closePart();
    GerberShape shape;
    shape.firstPart = m_firstPart;
    shape.partCount = static_cast<std::uint32_t>(m_image.parts.size()) - m_firstPart;
    for (std::uint32_t i = shape.firstPart; i < m_image.parts.size(); ++i) {
        const GerberPart &part = m_image.parts[i];
        for (std::uint32_t j = 0; j < part.contourCount; ++j)
            shape.extent.add(boxAround(m_image.contours[part.firstContour + j]));
    }
    m_image.shapes.push_back(shape);
    return static_cast<std::uint32_t>(m_image.shapes.size() - 1);
}

void ShapeBuilder::circle(Point center, double diameter)
{
    if (diameter > 0.0)
        contours().addCircle(center, diameter / 2.0, false);
}

void ShapeBuilder::polygon(const std::vector<Point> &corners, double degrees)
{
    const Transform turn = Transform::rotation(degrees);
    std::vector<Point> turned;
    turned.reserve(corners.size());
    for (const Point corner : corners)
        turned.push_back(turn(corner));
    contours().addPolygon(turned.data(), turned.size(), false);
}

void ShapeBuilder::rectangle(Point center, double width, double height, double degrees)
{
    const double x = width / 2.0, y = height / 2.0;
    if (width > 0.0 && height > 0.0)
        polygon({center + Point{-x, -y}, center + Point{x, -y}, center + Point{x, y}, center + Point{-x, y}},
                degrees);
}

void ShapeBuilder::obround(double width, double height)
{
    const double radius = std::min(width, height) / 2.0;
    const double x = width / 2.0 - radius, y = height / 2.0 - radius;
    if (x == 0.0 && y == 0.0)
        return circle({}, width);
    stroke({-x, -y}, {{x, y}, {}, EdgeKind::Line}, 2.0 * radius);
}

void ShapeBuilder::regularPolygon(Point center, double diameter, int corners, double degrees)
{
    std::vector<Point> points;
    points.reserve(std::size_t(std::max(corners, 0)));
    for (int i = 0; i < corners; ++i)
        points.push_back(center + Transform::rotation(360.0 * i / corners)({diameter / 2.0, 0.0}));
    if (diameter > 0.0)
        polygon(points, degrees);
}

void ShapeBuilder::bar(Point from, Point to, double width, double degrees)
{
    const double size = distance(from, to);
    if (!(size > 0.0) || !(width > 0.0))
        return;
    const Point along = (to - from) * (width / 2.0 / size);
    const Point left = {-along.y, along.x};
    polygon({from - left, to - left, to + left, from + left}, degrees);
}

void ShapeBuilder::thermal(Point center, double outer, double inner, double gap, double degrees)
{
    const double aside = gap / 2.0, outerRadius = outer / 2.0, innerRadius = inner / 2.0;
    const double corner = aside * std::sqrt(2.0); // where two bars cross
    if (outerRadius <= corner || outerRadius <= innerRadius)
        return;
    const double far = std::sqrt(outerRadius * outerRadius - aside * aside);
    const bool showsInner = innerRadius > corner;
    const double near = showsInner ? std::sqrt(innerRadius * innerRadius - aside * aside) : aside;
    for (int quarter = 0; quarter < 4; ++quarter) {
        const Transform place = Transform::rotation(90.0 * quarter)
                                    .then(Transform::translation(center))
                                    .then(Transform::rotation(degrees));
        const Point middle = place({});
        contours().begin(place({near, aside}), false);
        contours().lineTo(place({far, aside}));
        contours().arcTo(place({aside, far}), middle, false);
        contours().lineTo(place({aside, near}));
        if (showsInner)
            contours().arcTo(place({near, aside}), middle, true);
        contours().end();
    }
}

// Two halves, so that each contour goes around what it covers.
void ShapeBuilder::ring(Point center, double outerRadius, double innerRadius)
{
    const Point outer{outerRadius, 0.0}, inner{innerRadius, 0.0};
    for (const double side : {1.0, -1.0}) {
        contours().begin(center + outer * side, false);
        contours().arcTo(center - outer * side, center, false);
        contours().lineTo(center - inner * side);
        contours().arcTo(center + inner * side, center, true);
        contours().end();
    }
}

void ShapeBuilder::moire(const Moire &form, double degrees)
{
    const Point middle = Transform::rotation(degrees)(form.center);
    double radius = form.outer / 2.0;
    for (int i = 0; i < form.mostRings && radius > 0.0; ++i) {
        const double inner = radius - form.thickness;
        if (inner > 0.0)
            ring(middle, radius, inner);
        else
            circle(middle, 2.0 * radius);
        radius = inner - form.gap;
    }
    rectangle(form.center, form.crossLength, form.crossWidth, degrees);
    rectangle(form.center, form.crossWidth, form.crossLength, degrees);
}

void ShapeBuilder::stroke(Point from, const Edge &edge, double diameter)
{
    if (!(diameter > 0.0))
        return;
    const double radius = diameter / 2.0;
    if (edge.kind == EdgeKind::Line) {
        const double size = distance(from, edge.end);
        if (!(size > 0.0))
            return circle(from, diameter);
        const Point along = (edge.end - from) * (radius / size);
        const Point left = {-along.y, along.x};
        contours().begin(from - left, false);
        contours().lineTo(edge.end - left);
        contours().arcTo(edge.end + left, edge.end, false);
        contours().lineTo(from + left);
        contours().arcTo(from - left, from, false);
        return contours().end();
    }
    const double startRadius = distance(from, edge.center), endRadius = distance(edge.end, edge.center);
    if (from == edge.end) { // a ring
        contours().addCircle(edge.center, startRadius + radius, false);
        if (startRadius > radius) {
            const Point start = edge.center + Point{startRadius - radius, 0.0};
            contours().begin(start, false);
            contours().arcTo(start, edge.center, true);
            contours().end();
        }
        return;
    }
    circle(from, diameter);
    circle(edge.end, diameter);
    // The piece of a ring, counter-clockwise; what lies within the aperture's reach of the centre becomes a
    // sector.
    Point first = from, last = edge.end;
    double firstRadius = startRadius, lastRadius = endRadius;
    if (edge.kind == EdgeKind::ArcClockwise) {
        std::swap(first, last);
        std::swap(firstRadius, lastRadius);
    }
    if (!(firstRadius > 0.0) || !(lastRadius > 0.0))
        return;
    const Point start = (first - edge.center) * (1.0 / firstRadius);
    const Point end = (last - edge.center) * (1.0 / lastRadius);
    contours().begin(edge.center + start * (firstRadius + radius), false);
    contours().arcTo(edge.center + end * (lastRadius + radius), edge.center, false);
    if (firstRadius > radius && lastRadius > radius) {
        contours().lineTo(edge.center + end * (lastRadius - radius));
        contours().arcTo(edge.center + start * (firstRadius - radius), edge.center, true);
    } else {
        contours().lineTo(edge.center);
    }
    contours().end();
}

void ShapeBuilder::rectangleStroke(Point from, Point to, double width, double height)
{
    const double x = width / 2.0, y = height / 2.0;
    if (from.x > to.x)
        std::swap(from, to);
    if (from.y <= to.y)
        polygon({from + Point{-x, -y}, from + Point{x, -y}, to + Point{x, -y}, to + Point{x, y},
                 to + Point{-x, y}, from + Point{-x, y}});
    else
        polygon({from + Point{-x, y}, from + Point{-x, -y}, to + Point{-x, -y}, to + Point{x, -y},
                 to + Point{x, y}, from + Point{x, y}});
}

void ShapeBuilder::add(const GerberShape &shape, const Transform &map)
{
    for (std::uint32_t i = 0; i < shape.partCount; ++i) {
        const GerberPart part = m_image.parts[shape.firstPart + i];
        beginPart(part.exposed);
        for (std::uint32_t j = 0; j < part.contourCount; ++j) {
            // A copy: the pool grows while its contour is read.
            ContourPool copy;
            copy.add(m_image.contours[part.firstContour + j], map);
            contours().add(copy[0], Transform());
        }
    }
}

namespace {

// The parameters of a primitive, taken one after the other.
class Parameters
{
public:
    Parameters(const MacroPrimitive &primitive, double unit, const std::string &file)
        : m_primitive(primitive), m_unit(unit), m_file(file)
    {
    }

    [[noreturn]] void fail(const std::string &expected) const
    {
        throw FormatError(m_file, m_primitive.line,
                          expected + " in the macro's primitive " + std::to_string(m_primitive.code));
    }
    double number(const char *what)
    {
        if (m_at == m_primitive.parameters.size())
            fail(what);
        return m_primitive.parameters[m_at++];
    }
    bool exposure()
    {
        const double value = number("an exposure");
        if (value != 0.0 && value != 1.0)
            fail("an exposure of 0 or 1");
        return value == 1.0;
    }
    double length(const char *what)
    {
        constexpr double farthest = 100e9; // nanometres: no board is larger
        const double value = number(what) * m_unit;
        if (std::fabs(value) > farthest)
            fail(std::string(what) + " below 100 metres");
        return value;
    }
    double size(const char *what)
    {
        const double value = length(what);
        if (value < 0.0)
            fail(std::string(what) + " that is not negative");
        return value;
    }
    Point point(const char *what)
    {
        const double x = length(what);
        return {x, length(what)};
    }
    int count(const char *what, int least, int most)
    {
        const double value = number(what);
        if (!(value >= least && value <= most) || value != std::floor(value))
            fail(std::string(what) + " from " + std::to_string(least) + " to " + std::to_string(most));
        return static_cast<int>(value);
    }
    // The last parameter, which some files leave out.
    double rotation() { return m_at == m_primitive.parameters.size() ? 0.0 : number("a rotation"); }
    void end() const
    {
        if (m_at != m_primitive.parameters.size())
            fail("no more parameters");
    }

private:
    const MacroPrimitive &m_primitive;
    double m_unit;
    const std::string &m_file;
    std::size_t m_at = 0;
};

} // namespace

void addPrimitive(ShapeBuilder &shape, const MacroPrimitive &primitive, double unit, const std::string &file)
{
    Parameters in(primitive, unit, file);
    switch (primitive.code) {
    case 1: {
        shape.beginPart(in.exposure());
        const double diameter = in.size("a diameter");
        const Point center = in.point("a centre");
        shape.circle(Transform::rotation(in.rotation())(center), diameter);
        break;
    }
    case 2:
    case 20: {
        shape.beginPart(in.exposure());
        const double width = in.size("a width");
        const Point from = in.point("a start"), to = in.point("an end");
        shape.bar(from, to, width, in.rotation());
        break;
    }
    case 21:
    case 22: {
        shape.beginPart(in.exposure());
        const double width = in.size("a width"), height = in.size("a height");
        Point center = in.point("a position");
        if (primitive.code == 22) // by its lower left corner
            center = center + Point{width / 2.0, height / 2.0};
        shape.rectangle(center, width, height, in.rotation());
        break;
    }
    case 4: {
        shape.beginPart(in.exposure());
        const int count = in.count("a number of sides", 1, 100000);
        std::vector<Point> corners;
        for (int i = 0; i <= count; ++i)
            corners.push_back(in.point("a corner"));
        if (corners.front() != corners.back())
            in.fail("an outline that ends where it starts");
        corners.pop_back();
        shape.polygon(corners, in.rotation());
        break;
    }
    case 5: {
        shape.beginPart(in.exposure());
        const int corners = in.count("a number of corners", 3, 12);
        const Point center = in.point("a centre");
        const double diameter = in.size("a diameter");
        shape.regularPolygon(center, diameter, corners, in.rotation());
        break;
    }
    case 7: {
        shape.beginPart(true);
        const Point center = in.point("a centre");
        const double outer = in.size("an outer diameter"), inner = in.size("an inner diameter"),
                     gap = in.size("a gap");
        shape.thermal(center, outer, inner, gap, in.rotation());
        break;
    }
    case 6: {
        shape.beginPart(true);
        ShapeBuilder::Moire form;
        form.center = in.point("a centre");
        form.outer = in.size("an outer diameter");
        form.thickness = in.size("a thickness of rings");
        form.gap = in.size("a gap between rings");
        form.mostRings = in.count("a number of rings", 0, 10000);
        form.crossWidth = in.size("a width of the cross");
        form.crossLength = in.size("a length of the cross");
        shape.moire(form, in.rotation());
        break;
    }
    default:
        in.fail("a primitive that is known (1, 4, 5, 6, 7, 20, 21)");
    }
    in.end();
}

} // namespace cam
