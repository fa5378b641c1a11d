#include "drawing/snapping.h"

#include "cam/model/winding.h"

#include <algorithm>
#include <cmath>

namespace drawing {

using cam::ContourView;
using cam::Edge;
using cam::EdgeKind;
using cam::Point;
using cam::Transform;

namespace {

// Beyond this a box around the mouse holds too much to look at one by one; nothing is snapped to then.
constexpr std::size_t mostLookedAt = 5000;

// Looks for the nearest place of each rank: points first, edges where there is none.
class Search
{
public:
    Search(Point at, double reach) : m_at(at), m_reach(reach) {}

    void point(Point place, Snap::Kind kind)
    {
        const double far = cam::distance(place, m_at);
        if (far <= m_reach && far < m_pointFar) {
            m_pointFar = far;
            m_point = Snap{place, kind};
        }
    }
    void segment(Point from, Point to)
    {
        const Point along = to - from;
        const double square = cam::dot(along, along);
        const double share =
            square > 0.0 ? std::min(1.0, std::max(0.0, cam::dot(m_at - from, along) / square)) : 0.0;
        edge(from + along * share);
    }
    // On the circle about `center`, if the way from `from` to `to` passes there.
    void arc(Point from, const Edge &arc)
    {
        const Point spoke = m_at - arc.center;
        const double far = cam::length(spoke), radius = cam::distance(from, arc.center);
        if (!(far > 0.0))
            return;
        const Point place = arc.center + spoke * (radius / far);
        if (cam::distanceToArc(from, arc, place) < radius * 1e-6 + 1.0)
            edge(place);
    }
    std::optional<Snap> result() const { return m_point ? m_point : m_edge; }

private:
    void edge(Point place)
    {
        const double far = cam::distance(place, m_at);
        if (far <= m_reach && far < m_edgeFar) {
            m_edgeFar = far;
            m_edge = Snap{place, Snap::Kind::Edge};
        }
    }

    Point m_at;
    double m_reach;
    double m_pointFar = 1e300, m_edgeFar = 1e300;
    std::optional<Snap> m_point, m_edge;
};

// `map` must keep circles where there are arcs.
void addContour(Search &search, const ContourView &contour, const Transform &map)
{
    for (const auto [from, edge] : contour.walk()) {
        const Point a = map(from), b = map(edge.end);
        if (edge.kind == EdgeKind::Line) {
            search.segment(a, b);
            search.point(b, Snap::Kind::Corner);
            continue;
        }
        Edge mappedArc{b, map(edge.center), edge.kind};
        if (map.turnsOver())
            mappedArc.kind =
                edge.kind == EdgeKind::ArcClockwise ? EdgeKind::ArcCounterClockwise : EdgeKind::ArcClockwise;
        search.arc(a, mappedArc);
        search.point(mappedArc.center, Snap::Kind::Center);
        if (a != b)
            search.point(b, Snap::Kind::Corner);
    }
}

// Half of how wide a pen draws.
double halfWidth(const LayerScene &scene, std::uint32_t symbol)
{
    const cam::Symbol &pen = scene.image().symbols[symbol];
    if (!pen.standard)
        return 0.0;
    const cam::Box box = cam::extent(cam::shapeOf(*pen.standard));
    return box.isEmpty() ? 0.0 : std::min(box.high.x - box.low.x, box.high.y - box.low.y) / 2.0;
}

void addLine(Search &search, const LayerScene &scene, const cam::Line &line, const Transform &place)
{
    search.point(place(line.start), Snap::Kind::End);
    search.point(place(line.end), Snap::Kind::End);
    search.point(place((line.start + line.end) * 0.5), Snap::Kind::Center);
    const Point along = line.end - line.start;
    const double far = cam::length(along);
    if (!(far > 0.0))
        return;
    const Point aside = Point{-along.y, along.x} * (halfWidth(scene, line.symbol) / far);
    search.segment(place(line.start + aside), place(line.end + aside));
    search.segment(place(line.start - aside), place(line.end - aside));
}

void addPad(Search &search, const LayerScene &scene, const cam::Pad &pad, const Transform &place)
{
    search.point(place(pad.at), Snap::Kind::Center);
    const cam::Symbol &symbol = scene.image().symbols[pad.symbol];
    if (!symbol.standard)
        return;
    const cam::Shape shape = cam::shapeOf(*symbol.standard, pad.growth);
    for (std::size_t i = 0; i < shape.contours.size(); ++i)
        addContour(search, shape.contours[i], cam::placement(pad).then(place));
}

void addFeature(Search &search, const LayerScene &scene, const FoundFeature &found)
{
    const cam::FeatureSet &features = scene.image().steps[found.step].features;
    const cam::Feature &feature = features.order[found.index];
    switch (feature.kind) {
    case cam::FeatureKind::Line:
        return addLine(search, scene, features.lines[feature.index], found.place);
    case cam::FeatureKind::Arc: {
        const cam::Arc &arc = features.arcs[feature.index];
        search.point(found.place(arc.start), Snap::Kind::End);
        search.point(found.place(arc.end), Snap::Kind::End);
        search.point(found.place(arc.center), Snap::Kind::Center);
        return;
    }
    case cam::FeatureKind::Pad:
        return addPad(search, scene, features.pads[feature.index], found.place);
    case cam::FeatureKind::Surface: {
        const cam::Surface &surface = features.surfaces[feature.index];
        for (std::uint32_t i = 0; i < surface.contourCount; ++i)
            addContour(search, features.contours[surface.firstContour + i], found.place);
        return;
    }
    }
}

// Whether a contour that stands for `isHole` covers the point, summed up over a surface.
bool covers(const cam::ContourPool &pool, std::size_t first, std::size_t count, Point at)
{
    int depth = 0;
    for (std::size_t i = first; i < first + count; ++i) {
        if (cam::windingNumber(pool[i], at) != 0)
            depth += pool[i].isHole ? -1 : 1;
    }
    return depth > 0;
}

double distanceToContours(const cam::ContourPool &pool, std::size_t first, std::size_t count, Point at)
{
    double nearest = 1e300;
    for (std::size_t i = first; i < first + count; ++i)
        nearest = std::min(nearest, cam::distanceTo(pool[i], at));
    return nearest;
}

// In the step's own coordinates; 0 inside.
double distanceToFeature(const LayerScene &scene, const cam::FeatureSet &features,
                         const cam::Feature &feature, Point at)
{
    switch (feature.kind) {
    case cam::FeatureKind::Line: {
        const cam::Line &line = features.lines[feature.index];
        return std::max(0.0,
                        cam::distanceToSegment(line.start, line.end, at) - halfWidth(scene, line.symbol));
    }
    case cam::FeatureKind::Arc: {
        const cam::Arc &arc = features.arcs[feature.index];
        const Edge edge{arc.end, arc.center,
                        arc.clockwise ? EdgeKind::ArcClockwise : EdgeKind::ArcCounterClockwise};
        return std::max(0.0, cam::distanceToArc(arc.start, edge, at) - halfWidth(scene, arc.symbol));
    }
    case cam::FeatureKind::Pad: {
        const cam::Pad &pad = features.pads[feature.index];
        const cam::Symbol &symbol = scene.image().symbols[pad.symbol];
        const Point here = inverse(cam::placement(pad))(at);
        if (symbol.standard) {
            const cam::Shape shape = cam::shapeOf(*symbol.standard, pad.growth);
            if (covers(shape.contours, 0, shape.contours.size(), here))
                return 0.0;
            return distanceToContours(shape.contours, 0, shape.contours.size(), here);
        }
        double nearest = 1e300;
        for (const cam::Feature &part : symbol.features->order) {
            if (part.polarity == cam::Polarity::Positive)
                nearest = std::min(nearest, distanceToFeature(scene, *symbol.features, part, here));
        }
        return nearest;
    }
    case cam::FeatureKind::Surface:
        break;
    }
    const cam::Surface &surface = features.surfaces[feature.index];
    if (covers(features.contours, surface.firstContour, surface.contourCount, at))
        return 0.0;
    return distanceToContours(features.contours, surface.firstContour, surface.contourCount, at);
}

std::vector<FoundFeature> near(const LayerScene &scene, Point at, double reach)
{
    cam::Box box;
    box.add(at - Point{reach, reach});
    box.add(at + Point{reach, reach});
    std::vector<FoundFeature> found;
    scene.findFeatures(box, [&](std::uint32_t step, std::uint32_t index, const Transform &place) {
        if (found.size() < mostLookedAt)
            found.push_back({step, index, place});
    });
    return found;
}

} // namespace

std::optional<Snap> snapTo(const LayerScene &scene, Point at, double reach)
{
    const std::vector<FoundFeature> found = near(scene, at, reach);
    if (found.size() >= mostLookedAt)
        return std::nullopt;
    Search search(at, reach);
    for (const FoundFeature &feature : found)
        addFeature(search, scene, feature);
    return search.result();
}

std::vector<FoundFeature> featuresAt(const LayerScene &scene, Point at, double reach, std::size_t most)
{
    std::vector<FoundFeature> found = near(scene, at, reach), hit;
    std::reverse(found.begin(), found.end());
    for (const FoundFeature &feature : found) {
        if (hit.size() >= most)
            break;
        const cam::FeatureSet &features = scene.image().steps[feature.step].features;
        const double stretch = std::sqrt(std::fabs(feature.place.determinant()));
        const Point here = inverse(feature.place)(at);
        if (distanceToFeature(scene, features, features.order[feature.index], here) * stretch <= reach)
            hit.push_back(feature);
    }
    return hit;
}

} // namespace drawing
