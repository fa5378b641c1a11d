#include "drawing/snapping.h"

#include "cam/model/winding.h"
#include "drawing/figure.h"
#include "drawing/snapsearch.h"

#include <algorithm>
#include <cmath>

namespace drawing {

using cam::ContourView;
using cam::Edge;
using cam::EdgeKind;
using cam::Point;
using cam::Transform;

namespace {

// Half of how wide a pen draws.
double halfWidth(const LayerScene &scene, std::uint32_t symbol)
{
    const cam::Symbol &pen = scene.image().symbols[symbol];
    if (!pen.standard)
        return 0.0;
    const cam::Box box = cam::extent(cam::shapeOf(*pen.standard));
    return box.isEmpty() ? 0.0 : std::min(box.high.x - box.low.x, box.high.y - box.low.y) / 2.0;
}

void addLine(SnapSearch &search, const LayerScene &scene, const cam::Line &line, const Transform &place)
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

void addPad(SnapSearch &search, const LayerScene &scene, const cam::Pad &pad, const Transform &place)
{
    search.point(place(pad.at), Snap::Kind::Center);
    const cam::Symbol &symbol = scene.image().symbols[pad.symbol];
    if (!symbol.standard)
        return;
    const cam::Shape shape = cam::shapeOf(*symbol.standard, pad.growth);
    for (std::size_t i = 0; i < shape.contours.size(); ++i)
        search.contour(shape.contours[i], cam::placement(pad).then(place));
}

void addFeature(SnapSearch &search, const LayerScene &scene, const FoundFeature &found)
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
            search.contour(features.contours[surface.firstContour + i], found.place);
        return;
    }
    }
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
    std::vector<FoundFeature> found;
    scene.findFeatures(boxAround(at, reach),
                       [&](std::uint32_t step, std::uint32_t index, const Transform &place) {
                           if (found.size() < mostLookedAt)
                               found.push_back({step, index, place});
                       });
    return found;
}

std::optional<Snap> snapToFeature(const LayerScene &scene, Point at, double reach)
{
    const std::vector<FoundFeature> found = near(scene, at, reach);
    if (found.size() >= mostLookedAt)
        return std::nullopt;
    SnapSearch search(at, reach);
    for (const FoundFeature &feature : found)
        addFeature(search, scene, feature);
    return search.result();
}

bool isConvex(const ContourView &contour)
{
    bool left = false, right = false;
    for (std::size_t i = 0; i < contour.edgeCount; ++i) {
        const Point from = i == 0 ? contour.start : contour.edges[i - 1].end;
        const Point next = contour.edges[(i + 1) % contour.edgeCount].end;
        const double turn = cam::cross(contour.edges[i].end - from, next - contour.edges[i].end);
        left = left || turn > 0.0;
        right = right || turn < 0.0;
    }
    return !(left && right);
}

// Of a boundary without arcs, a circle as a polygon for instance, the middle is a centre when it is convex.
void addFigure(SnapSearch &search, const Figure &figure)
{
    const bool isBoundary = figure.kind == Figure::Kind::Boundary || figure.kind == Figure::Kind::Region;
    if (figure.line.empty() && !isBoundary)
        search.point(figure.at, Snap::Kind::Center);
    if (isBoundary && figure.outline.size() == 1 && isConvex(figure.outline[0]))
        search.point((figure.box.low + figure.box.high) * 0.5, Snap::Kind::Center);
    Point from = figure.start;
    for (const Edge &edge : figure.line) {
        search.line(from, edge, figure.outline.isEmpty() ? figure.width : 0.0);
        from = edge.end;
    }
    for (std::size_t i = 0; i < figure.outline.size(); ++i)
        search.contour(figure.outline[i]);
}

std::optional<Snap> snapToFigure(const FigureScene &scene, Point at, double reach)
{
    SnapSearch search(at, reach);
    std::size_t count = 0;
    scene.findFigures(boxAround(at, reach), [&](Figure &&figure) {
        addFigure(search, figure);
        return ++count < mostLookedAt;
    });
    return count < mostLookedAt ? search.result() : std::nullopt;
}

} // namespace

std::optional<Snap> snapTo(const Scene &scene, Point at, double reach)
{
    if (const auto *layer = dynamic_cast<const LayerScene *>(&scene))
        return snapToFeature(*layer, at, reach);
    if (const auto *figures = dynamic_cast<const FigureScene *>(&scene))
        return snapToFigure(*figures, at, reach);
    return std::nullopt;
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
