// Scan conversion of polygons, and the features as polygons.
#include "tests/crosscheck/referenceraster.h"

#include "cam/base/error.h"
#include "cam/model/flatten.h"
#include "cam/model/trigonometry.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace crosscheck {

namespace {

using cam::Point;
using cam::Transform;
using Polygon = std::vector<Point>; // output coordinates

// The angle between two corners of a curve: its chords stay 50 nm within the arc, a hundredth of a pixel's
// half, or at radii from 5 mm on are half a degree long.
double stepDegrees(double radius)
{
    constexpr double tolerance = 50.0, least = 0.5, most = 30.0, halfTurn = 3.14159265358979323846;
    const double step = 2.0 * std::acos(std::max(-1.0, 1.0 - tolerance / radius)) * 180.0 / halfTurn;
    return radius > 0.0 ? std::clamp(step, least, most) : most;
}

class Canvas
{
public:
    explicit Canvas(const Window &window)
        : m_window(window), m_mask(window.width, window.height), m_shifted(window.width, window.height)
    {
    }

    Bitmap blank() const { return Bitmap(m_window.width, m_window.height); }
    const cam::Box &extent() const { return m_extent; }

    // The mask: what is drawn next, as a whole.
    void begin()
    {
        m_firstRow = m_window.height;
        m_lastRow = -1;
    }

    // Whether a stroke along `path` whose symbol reaches so far from it may show.
    bool mayShow(const Polygon &path, double reach) const
    {
        cam::Box box;
        for (const Point at : path)
            box.add(at);
        const Point low = toPixels(box.low - Point{reach, reach}),
                    high = toPixels(box.high + Point{reach, reach});
        return low.x <= m_window.width && high.x >= 0.0 && low.y <= m_window.height && high.y >= 0.0;
    }

    // Fills what polygons go around counter-clockwise, more often than clockwise, into the mask, or takes it
    // out of it.
    void fill(const std::vector<Polygon> &polygons, bool into = true)
    {
        m_crossings.clear();
        for (const Polygon &polygon : polygons) {
            for (std::size_t i = 0; i < polygon.size(); ++i) {
                m_extent.add(polygon[i]);
                cross(toPixels(polygon[i]), toPixels(polygon[(i + 1) % polygon.size()]));
            }
        }
        std::sort(m_crossings.begin(), m_crossings.end());
        int winding = 0;
        for (std::size_t i = 0; i < m_crossings.size(); ++i) {
            const Crossing &here = m_crossings[i];
            winding += here.turn;
            if (winding <= 0)
                continue;
            const auto first = static_cast<std::int64_t>(std::ceil(here.x - 0.5));
            const auto end = static_cast<std::int64_t>(std::ceil(m_crossings[i + 1].x - 0.5));
            m_mask.fill(here.row, first, end, into);
        }
        if (!m_crossings.empty()) {
            m_firstRow = std::min(m_firstRow, m_crossings.front().row);
            m_lastRow = std::max(m_lastRow, m_crossings.back().row);
        }
    }

    // Puts the mask onto `image`, grown by a pixel for a `shift` of 1, shrunk for -1, and empties it.
    void end(Bitmap &image, bool dark, int shift)
    {
        if (shift != 0) {
            m_shifted.copyShifted(m_mask, shift > 0, m_firstRow - 1, m_lastRow + 1);
            image.paint(m_shifted, dark, m_firstRow - 1, m_lastRow + 1);
        } else {
            image.paint(m_mask, dark, m_firstRow, m_lastRow);
        }
        for (int y = m_firstRow; y <= m_lastRow; ++y)
            m_mask.fill(y, 0, m_window.width, false);
    }

private:
    struct Crossing
    {
        int row;
        double x; // pixels
        int turn;
        bool operator<(const Crossing &other) const
        {
            return row != other.row ? row < other.row : x < other.x;
        }
    };

    Point toPixels(Point p) const { return {(p.x - m_window.left) / pixel, (p.y - m_window.bottom) / pixel}; }

    // Rows are crossed at the height of their pixels' centres.
    void cross(Point from, Point to)
    {
        const Point low = from.y < to.y ? from : to;
        const Point high = from.y < to.y ? to : from;
        const double firstRow = std::max(0.0, std::ceil(low.y - 0.5));
        const double endRow = std::min(static_cast<double>(m_window.height), std::ceil(high.y - 0.5));
        for (double row = firstRow; row < endRow; ++row) {
            const double share = (row + 0.5 - low.y) / (high.y - low.y);
            m_crossings.push_back(
                {static_cast<int>(row), low.x + share * (high.x - low.x), from.y < to.y ? -1 : 1});
        }
    }

    Window m_window;
    Bitmap m_mask;
    Bitmap m_shifted; // scratch
    int m_firstRow = 0, m_lastRow = -1;
    std::vector<Crossing> m_crossings;
    cam::Box m_extent;
};

void addArc(Polygon &polygon, Point from, const cam::Edge &edge)
{
    const double swept = cam::sweptDegrees(from, edge);
    const double fromRadius = cam::distance(from, edge.center),
                 toRadius = cam::distance(edge.end, edge.center);
    const int steps = static_cast<int>(std::fabs(swept) / stepDegrees(std::max(fromRadius, toRadius))) + 1;
    for (int i = 1; i < steps; ++i) {
        const double share = static_cast<double>(i) / steps;
        const double radius = fromRadius + share * (toRadius - fromRadius);
        const Point spoke = Transform::rotation(swept * share).linear(from - edge.center);
        polygon.push_back(edge.center + spoke * (radius / fromRadius));
    }
}

Polygon polygonOf(const cam::ContourView &contour, const Transform &map)
{
    Polygon polygon{contour.start};
    for (const cam::Edge &edge : contour) {
        if (edge.kind != cam::EdgeKind::Line)
            addArc(polygon, polygon.back(), edge);
        polygon.push_back(edge.end);
    }
    for (Point &corner : polygon)
        corner = map(corner);
    return polygon;
}

void makeCounterClockwise(Polygon &polygon)
{
    double doubled = 0.0;
    for (std::size_t i = 0; i + 1 < polygon.size(); ++i)
        doubled += cam::cross(polygon[i] - polygon[0], polygon[i + 1] - polygon[0]);
    if (doubled < 0.0)
        std::reverse(polygon.begin(), polygon.end());
}

Polygon square(double half)
{
    return {{-half, -half}, {half, -half}, {half, half}, {-half, half}};
}

Polygon convexHull(Polygon points)
{
    std::sort(points.begin(), points.end(),
              [](Point a, Point b) { return a.x != b.x ? a.x < b.x : a.y < b.y; });
    Polygon hull;
    for (int pass = 0; pass < 2; ++pass) {
        const std::size_t base = hull.size();
        for (const Point p : points) {
            while (hull.size() >= base + 2 &&
                   cam::cross(hull.back() - hull[hull.size() - 2], p - hull[hull.size() - 2]) <= 0.0)
                hull.pop_back();
            hull.push_back(p);
        }
        hull.pop_back();
        std::reverse(points.begin(), points.end());
    }
    return hull;
}

class Drawing
{
public:
    // `shift`: of the edges of dark features; see Canvas::end(). `forExtent`: draws what is outside of the
    // window, too, for extent() and base().
    Drawing(const cam::LayerImage &image, const cam::ExportOptions &options, const Window &window, int shift,
            bool forExtent = false)
        : m_image(image), m_canvas(window), m_export(cam::exportTransform(options, image.datum)),
          m_shift(shift), m_forExtent(forExtent)
    {
    }

    Bitmap layer()
    {
        Bitmap result = m_canvas.blank();
        step(m_image.top(), Transform(), result);
        return result;
    }

    // The profile's area; without a profile the box around everything that layer() drew.
    Bitmap base()
    {
        Bitmap result = m_canvas.blank();
        if (!m_image.profile.isEmpty()) {
            contours(m_image.profile, 0, m_image.profile.size(), m_export, true, result);
        } else if (!m_canvas.extent().isEmpty()) {
            const cam::Box box = m_canvas.extent();
            m_canvas.begin();
            m_canvas.fill({{box.low, {box.high.x, box.low.y}, box.high, {box.low.x, box.high.y}}});
            m_canvas.end(result, true, m_shift);
        }
        return result;
    }

    cam::Box extent() const { return m_canvas.extent(); }

private:
    void step(const cam::StepImage &step, const Transform &place, Bitmap &result)
    {
        if (step.features.negativeCount == 0) {
            features(step.features, place.then(m_export), true, result);
        } else { // negative features erase within their step only
            Bitmap picture = m_canvas.blank();
            features(step.features, place.then(m_export), true, picture);
            result.paint(picture, true, 0, picture.height() - 1);
        }
        for (const cam::StepRepeat &repeat : step.repeats) {
            for (std::uint32_t row = 0; row < repeat.ny; ++row) {
                for (std::uint32_t column = 0; column < repeat.nx; ++column) {
                    const Transform copy = Transform::translation({repeat.dx * column, repeat.dy * row});
                    this->step(m_image.steps[repeat.step], cam::placement(repeat).then(copy).then(place),
                               result);
                }
            }
        }
    }

    // `dark`: the colour of positive features.
    void features(const cam::FeatureSet &set, const Transform &map, bool dark, Bitmap &result)
    {
        for (const cam::Feature &feature : set.order) {
            const bool isDark = (feature.polarity == cam::Polarity::Positive) == dark;
            switch (feature.kind) {
            case cam::FeatureKind::Line: {
                const cam::Line &line = set.lines[feature.index];
                m_canvas.begin();
                sweep(line.symbol, {line.start, line.end}, map, isDark);
                finish(result, isDark);
                break;
            }
            case cam::FeatureKind::Arc: {
                const cam::Arc &arc = set.arcs[feature.index];
                Polygon path{arc.start};
                addArc(path, arc.start,
                       {arc.end, arc.center,
                        arc.clockwise ? cam::EdgeKind::ArcClockwise : cam::EdgeKind::ArcCounterClockwise});
                path.push_back(arc.end);
                m_canvas.begin();
                sweep(arc.symbol, path, map, isDark);
                finish(result, isDark);
                break;
            }
            case cam::FeatureKind::Pad:
                pad(set.pads[feature.index], map, isDark, result);
                break;
            case cam::FeatureKind::Surface: {
                const cam::Surface &surface = set.surfaces[feature.index];
                contours(set.contours, surface.firstContour, surface.contourCount, map, isDark, result);
                break;
            }
            }
        }
    }

    void pad(const cam::Pad &pad, const Transform &map, bool dark, Bitmap &result)
    {
        const cam::Symbol &symbol = m_image.symbols[pad.symbol];
        const Transform place = cam::placement(pad).then(map);
        if (symbol.standard) {
            const cam::Shape shape = cam::shapeOf(*symbol.standard);
            return contours(shape.contours, 0, shape.contours.size(), place, dark, result);
        }
        Bitmap picture = m_canvas.blank();
        const int shift = m_shift;
        m_shift = dark ? shift : -shift;
        features(*symbol.features, place, true, picture);
        m_shift = shift;
        result.paint(picture, dark, 0, picture.height() - 1);
    }

    void finish(Bitmap &result, bool dark) { m_canvas.end(result, dark, dark ? m_shift : -m_shift); }

    // What is in more islands than holes.
    void contours(const cam::ContourPool &pool, std::size_t first, std::size_t count, const Transform &map,
                  bool dark, Bitmap &result)
    {
        std::vector<Polygon> polygons;
        for (std::size_t i = first; i < first + count; ++i) {
            polygons.push_back(polygonOf(pool[i], map));
            makeCounterClockwise(polygons.back());
            if (pool[i].isHole)
                std::reverse(polygons.back().begin(), polygons.back().end());
        }
        m_canvas.begin();
        m_canvas.fill(polygons);
        if (!m_forExtent && m_shift != 0)
            touch(polygons, (dark ? m_shift : -m_shift) > 0);
        finish(result, dark);
    }

    // The tip of a spike may show, or not, in every pixel that it touches, and that of a notch as well:
    // pixels on an edge belong to what grows, and not to what shrinks.
    void touch(const std::vector<Polygon> &polygons, bool grows)
    {
        for (const Polygon &polygon : polygons) {
            for (std::size_t i = 0; i < polygon.size(); ++i) {
                const Point from = polygon[i], to = polygon[(i + 1) % polygon.size()];
                if (!m_canvas.mayShow({from, to}, 2.0 * pixel))
                    continue;
                Polygon touched;
                for (const Point corner : square(pixel / 2.0)) {
                    touched.push_back(from + corner);
                    touched.push_back(to + corner);
                }
                m_canvas.fill({convexHull(std::move(touched))}, grows);
            }
        }
    }

    // A convex symbol, and how far from its origin it reaches.
    struct Pen
    {
        Polygon outline;
        double reach = 0.0;
    };

    const Pen &penOf(std::uint32_t pen)
    {
        const auto known = m_pens.find(pen);
        if (known != m_pens.end())
            return known->second;
        const cam::Symbol &symbol = m_image.symbols[pen];
        if (!symbol.standard)
            throw cam::Error("a line drawn with the job's own symbol " + symbol.name);
        const cam::Shape shape = cam::shapeOf(*symbol.standard);
        if (shape.contours.size() > 1)
            throw cam::Error("a line drawn with the symbol " + symbol.name);
        Pen made;
        if (!shape.contours.isEmpty())
            made.outline = polygonOf(shape.contours[0], Transform());
        for (const Point corner : made.outline)
            made.reach = std::max(made.reach, cam::length(corner));
        return m_pens.emplace(pen, std::move(made)).first->second;
    }

    // A convex symbol moved along a path of straight pieces.
    void sweep(std::uint32_t pen, const Polygon &path, const Transform &map, bool dark)
    {
        const Polygon &outline = penOf(pen).outline;
        if (outline.empty())
            return;
        const double width = 2.0 * penOf(pen).reach * cam::largestStretch(map);
        const double reach = width / 2.0 + 2.0 * pixel;
        // A line thinner than a pixel may show, or not: it has no pixels of its own that could grow.
        const bool isHair = width < pixel && (dark ? m_shift : -m_shift) > 0;
        const Polygon spread = isHair ? square(pixel / 2.0) : Polygon{{0.0, 0.0}};
        Polygon placed;
        for (const Point at : path)
            placed.push_back(map(at));
        if (!m_forExtent && !m_canvas.mayShow(placed, reach))
            return;
        for (std::size_t i = 0; i + 1 < path.size(); ++i) {
            if (!m_forExtent && !m_canvas.mayShow({placed[i], placed[i + 1]}, reach))
                continue;
            Polygon ends;
            for (const Point corner : outline) {
                for (const Point more : spread) {
                    ends.push_back(placed[i] + map.linear(corner) + more);
                    ends.push_back(placed[i + 1] + map.linear(corner) + more);
                }
            }
            m_canvas.fill({convexHull(std::move(ends))});
        }
    }

    const cam::LayerImage &m_image;
    Canvas m_canvas;
    Transform m_export;
    int m_shift;
    bool m_forExtent;
    std::map<std::uint32_t, Pen> m_pens;
};

} // namespace

Bitmap rasterize(const cam::LayerImage &image, const cam::ExportOptions &options, const Window &window,
                 Edges edges)
{
    const int shift = edges == Edges::AsTheyAre ? 0 : edges == Edges::EveryEdgeOut ? 1 : -1;
    if (!options.negative)
        return Drawing(image, options, window, shift).layer();
    // What is taken from the base shrinks where the result grows.
    Drawing taken(image, options, window, -shift);
    const Bitmap layer = taken.layer();
    Drawing base(image, options, window, shift, image.profile.isEmpty());
    if (image.profile.isEmpty())
        base.layer(); // for its extent
    return base.base().without(layer);
}

cam::Box outputExtent(const cam::LayerImage &image, const cam::ExportOptions &options)
{
    Drawing drawing(image, options, Window{0.0, 0.0, 64, 1}, 0, true);
    drawing.layer();
    if (options.negative)
        drawing.base();
    return drawing.extent();
}

} // namespace crosscheck
