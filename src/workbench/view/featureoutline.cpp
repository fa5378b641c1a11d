#include "workbench/view/featureoutline.h"

#include "cam/model/flatten.h"

#include <QPainter>

#include <cmath>

namespace {

// The edges of a contour as a polygon of the screen.
QPolygonF polygonOf(const cam::ContourView &contour, const cam::Transform &map, const BoardView &view)
{
    std::vector<cam::Point> corners;
    cam::flatten(contour, view.pixel() / cam::largestStretch(map) / 4.0, corners);
    QPolygonF shown;
    for (const cam::Point corner : corners)
        shown << view.toScreen(map(corner));
    if (!shown.isEmpty())
        shown << shown.first();
    return shown;
}

} // namespace

// What lies far outside would overflow a painter's numbers.
void paintLine(QPainter &painter, const BoardView &view, const QPolygonF &shown)
{
    // A rectangle without a height, as that of a level line, is contained in none.
    const QRectF box = shown.boundingRect().adjusted(-1, -1, 1, 1);
    if (QRectF(view.rect()).adjusted(-1e5, -1e5, 1e5, 1e5).contains(box))
        painter.drawPolyline(shown);
}

QColor markColor()
{
    return QColor(255, 80, 255);
}

void paintContours(QPainter &painter, const BoardView &view, const cam::ContourPool &contours,
                   const cam::Transform &place)
{
    for (std::size_t i = 0; i < contours.size(); ++i)
        paintLine(painter, view, polygonOf(contours[i], place, view));
}

void paintFeature(QPainter &painter, const BoardView &view, const drawing::LayerScene &scene,
                  const drawing::FoundFeature &found)
{
    const cam::FeatureSet &features = scene.image().steps[found.step].features;
    const cam::Feature &feature = features.order[found.index];
    const cam::Transform &place = found.place;
    if (feature.kind == cam::FeatureKind::Line) {
        const cam::Line &drawn = features.lines[feature.index];
        paintLine(
            painter, view,
            QPolygonF(QVector<QPointF>{view.toScreen(place(drawn.start)), view.toScreen(place(drawn.end))}));
    } else if (feature.kind == cam::FeatureKind::Arc) {
        const cam::Arc &arc = features.arcs[feature.index];
        std::vector<cam::Point> corners{arc.start};
        cam::flattenArc(arc.start,
                        {arc.end, arc.center,
                         arc.clockwise ? cam::EdgeKind::ArcClockwise : cam::EdgeKind::ArcCounterClockwise},
                        view.pixel() / cam::largestStretch(place) / 4.0, corners);
        QPolygonF shown;
        for (const cam::Point corner : corners)
            shown << view.toScreen(place(corner));
        paintLine(painter, view, shown);
    } else if (feature.kind == cam::FeatureKind::Pad) {
        const cam::Pad &pad = features.pads[feature.index];
        const cam::Symbol &symbol = scene.image().symbols[pad.symbol];
        const QPointF at = view.toScreen(place(pad.at));
        painter.drawLine(at - QPointF(6, 0), at + QPointF(6, 0));
        painter.drawLine(at - QPointF(0, 6), at + QPointF(0, 6));
        if (symbol.standard)
            paintContours(painter, view, cam::shapeOf(*symbol.standard, pad.growth).contours,
                          cam::placement(pad).then(place));
    } else {
        const cam::Surface &surface = features.surfaces[feature.index];
        for (std::uint32_t i = 0; i < surface.contourCount; ++i)
            paintLine(painter, view, polygonOf(features.contours[surface.firstContour + i], place, view));
    }
}

cam::Box featureBox(const drawing::LayerScene &scene, const drawing::FoundFeature &found)
{
    return drawing::mapped(scene.featureBox(found.step, found.index), found.place);
}
