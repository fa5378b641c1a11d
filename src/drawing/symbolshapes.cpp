#include "drawing/symbolshapes.h"

#include "cam/polygon/drawing.h"

#include <algorithm>
#include <cmath>

namespace drawing {

using cam::Point;

namespace {

constexpr std::size_t mostCorners = 8000; // of a polygon

double areaOf(const std::vector<Point> &polygon)
{
    double sum = 0.0;
    for (std::size_t i = 1; i + 1 < polygon.size(); ++i)
        sum += cam::cross(polygon[i] - polygon[0], polygon[i + 1] - polygon[0]);
    return std::fabs(sum) / 2.0;
}

SymbolShape shapeOfStandard(const cam::StandardSymbol &symbol, double growth)
{
    SymbolShape made;
    made.shape = cam::shapeOf(symbol, growth);
    if (made.shape.contours.isEmpty())
        return made;
    made.box = cam::extent(made.shape);
    made.area = cam::area(made.shape);
    if (symbol.kind == cam::SymbolKind::Round)
        made.radius = (symbol.size[0] + growth) / 2.0;
    return made;
}

// As polygons on a grid of one nanometre: what it clears of itself is cut out once and for all.
SymbolShape shapeOfOwn(const cam::LayerImage &image, std::uint32_t symbol, double growth)
{
    SymbolShape made;
    made.isOwn = true;
    cam::DrawnSymbols drawn(image, cam::Grid(1.0), mostCorners);
    for (const cam::GridRing &ring : drawn[drawn.number(symbol, cam::Transform(), growth)].polygons) {
        made.polygons.emplace_back();
        for (const cam::GridPoint p : ring)
            made.polygons.back().push_back(cam::pointOf(p));
        for (const Point p : made.polygons.back())
            made.box.add(p);
        made.area += areaOf(made.polygons.back());
    }
    return made;
}

} // namespace

void SymbolShapes::add(std::uint32_t symbol, double growth)
{
    const Key key(symbol, growth);
    if (m_shapes.count(key) != 0)
        return;
    const cam::Symbol &source = m_image.symbols[symbol];
    SymbolShape made =
        source.standard ? shapeOfStandard(*source.standard, growth) : shapeOfOwn(m_image, symbol, growth);
    if (!made.box.isEmpty())
        made.reach = cam::length({std::max(std::fabs(made.box.low.x), std::fabs(made.box.high.x)),
                                  std::max(std::fabs(made.box.low.y), std::fabs(made.box.high.y))});
    if (made.radius > 0.0)
        made.reach = made.radius;
    m_shapes.emplace(key, std::move(made));
}

} // namespace drawing
