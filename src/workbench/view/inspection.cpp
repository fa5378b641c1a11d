#include "workbench/view/inspection.h"

#include "cam/model/flatten.h"

#include <QPainter>

#include <cmath>

namespace {

QString text(const char *source)
{
    return QCoreApplication::translate("Inspection", source);
}

QString nameOf(cam::FeatureKind kind)
{
    switch (kind) {
    case cam::FeatureKind::Line:
        return text(QT_TRANSLATE_NOOP("Inspection", "Line"));
    case cam::FeatureKind::Arc:
        return text(QT_TRANSLATE_NOOP("Inspection", "Arc"));
    case cam::FeatureKind::Pad:
        return text(QT_TRANSLATE_NOOP("Inspection", "Pad"));
    case cam::FeatureKind::Surface:
        break;
    }
    return text(QT_TRANSLATE_NOOP("Inspection", "Surface"));
}

QString symbolText(const cam::Symbol &symbol, LengthUnit unit)
{
    QString line =
        text(QT_TRANSLATE_NOOP("Inspection", "Symbol %1")).arg(QString::fromStdString(symbol.name));
    if (!symbol.standard)
        return line + text(QT_TRANSLATE_NOOP("Inspection", ", the job's own"));
    const cam::Box box = cam::extent(cam::shapeOf(*symbol.standard));
    if (box.isEmpty())
        return line;
    return line +
           QString(", %1 \u00d7 %2")
               .arg(lengthText(box.high.x - box.low.x, unit), lengthText(box.high.y - box.low.y, unit));
}

// The edges of a contour as a polygon of the screen.
QPolygonF outlineOf(const cam::ContourView &contour, const cam::Transform &map, const BoardView &view)
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

QStringList describeFeature(const drawing::LayerScene &scene, const drawing::FoundFeature &found,
                            LengthUnit unit)
{
    const cam::StepImage &step = scene.image().steps[found.step];
    const cam::FeatureSet &features = step.features;
    const cam::Feature &feature = features.order[found.index];
    const auto symbol = [&](std::uint32_t number) { return symbolText(scene.image().symbols[number], unit); };
    QStringList lines;
    lines << nameOf(feature.kind) + (feature.polarity == cam::Polarity::Positive
                                         ? QString()
                                         : text(QT_TRANSLATE_NOOP("Inspection", ", clears")));
    switch (feature.kind) {
    case cam::FeatureKind::Line: {
        const cam::Line &line = features.lines[feature.index];
        lines << symbol(line.symbol)
              << text(QT_TRANSLATE_NOOP("Inspection", "From %1")).arg(placeText(line.start, unit))
              << text(QT_TRANSLATE_NOOP("Inspection", "To %1")).arg(placeText(line.end, unit))
              << text(QT_TRANSLATE_NOOP("Inspection", "Length %1"))
                     .arg(lengthText(cam::distance(line.start, line.end), unit));
        break;
    }
    case cam::FeatureKind::Arc: {
        const cam::Arc &arc = features.arcs[feature.index];
        lines << symbol(arc.symbol)
              << text(QT_TRANSLATE_NOOP("Inspection", "From %1")).arg(placeText(arc.start, unit))
              << text(QT_TRANSLATE_NOOP("Inspection", "To %1")).arg(placeText(arc.end, unit))
              << text(QT_TRANSLATE_NOOP("Inspection", "Center %1")).arg(placeText(arc.center, unit))
              << text(QT_TRANSLATE_NOOP("Inspection", "Radius %1"))
                     .arg(lengthText(cam::distance(arc.start, arc.center), unit));
        break;
    }
    case cam::FeatureKind::Pad: {
        const cam::Pad &pad = features.pads[feature.index];
        lines << symbol(pad.symbol)
              << text(QT_TRANSLATE_NOOP("Inspection", "At %1")).arg(placeText(pad.at, unit));
        if (pad.angle != 0.0)
            lines << text(QT_TRANSLATE_NOOP("Inspection", "Turned clockwise by %1\u00b0")).arg(pad.angle);
        if (pad.mirror)
            lines << text(QT_TRANSLATE_NOOP("Inspection", "Mirrored"));
        if (pad.growth != 0.0)
            lines << text(QT_TRANSLATE_NOOP("Inspection", "Resized by %1")).arg(lengthText(pad.growth, unit));
        break;
    }
    case cam::FeatureKind::Surface: {
        const cam::Surface &surface = features.surfaces[feature.index];
        cam::Box box;
        std::size_t edges = 0;
        for (std::uint32_t i = 0; i < surface.contourCount; ++i) {
            box.add(cam::extent(features.contours[surface.firstContour + i]));
            edges += features.contours[surface.firstContour + i].edgeCount;
        }
        lines << QString("%1 \u00d7 %2")
                     .arg(lengthText(box.high.x - box.low.x, unit), lengthText(box.high.y - box.low.y, unit))
              << text(QT_TRANSLATE_NOOP("Inspection", "%1 contours, %2 edges"))
                     .arg(surface.contourCount)
                     .arg(edges);
        break;
    }
    }
    lines << text(QT_TRANSLATE_NOOP("Inspection", "Step %1, feature %2"))
                 .arg(QString::fromStdString(step.name))
                 .arg(found.index + 1);
    return lines;
}

void Inspection::setLayers(const std::vector<Layer> &layers)
{
    m_layers = layers;
    clear();
}

bool Inspection::press(cam::Point place, double reach)
{
    if (!m_hits.empty() && cam::distance(place, m_place) <= reach) {
        m_current = (m_current + 1) % m_hits.size();
        return true;
    }
    clear();
    m_place = place;
    for (const Layer &layer : m_layers) {
        for (const drawing::FoundFeature &feature : drawing::featuresAt(*layer.scene, place, reach))
            m_hits.push_back({layer, feature});
    }
    return !m_hits.empty();
}

bool Inspection::clear()
{
    const bool had = !m_hits.empty();
    m_hits.clear();
    m_current = 0;
    return had;
}

QStringList Inspection::text(LengthUnit unit) const
{
    if (m_hits.empty())
        return {};
    const Hit &hit = m_hits[m_current];
    QStringList lines{tr("Layer %1").arg(hit.layer.name)};
    lines << describeFeature(*hit.layer.scene, hit.feature, unit);
    if (m_hits.size() > 1)
        lines << tr("%1 of %2 here; click again for the next").arg(m_current + 1).arg(m_hits.size());
    return lines;
}

void Inspection::paint(QPainter &painter, const BoardView &view)
{
    if (m_hits.empty())
        return;
    const Hit &hit = m_hits[m_current];
    const drawing::LayerScene &scene = *hit.layer.scene;
    const cam::FeatureSet &features = scene.image().steps[hit.feature.step].features;
    const cam::Feature &feature = features.order[hit.feature.index];
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(255, 80, 255), 2));
    painter.setClipRect(view.rect());
    const auto line = [&](const QPolygonF &shown) {
        if (QRectF(view.rect()).adjusted(-1e5, -1e5, 1e5, 1e5).contains(shown.boundingRect()))
            painter.drawPolyline(shown);
    };
    const cam::Transform &place = hit.feature.place;
    if (feature.kind == cam::FeatureKind::Line) {
        const cam::Line &drawn = features.lines[feature.index];
        line(QPolygonF(QVector<QPointF>{view.toScreen(place(drawn.start)), view.toScreen(place(drawn.end))}));
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
        line(shown);
    } else if (feature.kind == cam::FeatureKind::Pad) {
        const cam::Pad &pad = features.pads[feature.index];
        const cam::Symbol &symbol = scene.image().symbols[pad.symbol];
        const QPointF at = view.toScreen(place(pad.at));
        painter.drawLine(at - QPointF(6, 0), at + QPointF(6, 0));
        painter.drawLine(at - QPointF(0, 6), at + QPointF(0, 6));
        if (symbol.standard) {
            const cam::Shape shape = cam::shapeOf(*symbol.standard, pad.growth);
            for (std::size_t i = 0; i < shape.contours.size(); ++i)
                line(outlineOf(shape.contours[i], cam::placement(pad).then(place), view));
        }
    } else {
        const cam::Surface &surface = features.surfaces[feature.index];
        for (std::uint32_t i = 0; i < surface.contourCount; ++i)
            line(outlineOf(features.contours[surface.firstContour + i], place, view));
    }
    const QString text = this->text(view.unit()).join('\n');
    QRect box = painter.fontMetrics().boundingRect(QRect(0, 0, 2000, 2000), 0, text).adjusted(-8, -5, 8, 5);
    box.moveTopRight(QPoint(view.width() - 8, 6 + 2 * painter.fontMetrics().height())); // below the title
    painter.fillRect(box, QColor(24, 28, 32, 225));
    painter.setPen(QColor(240, 220, 255));
    painter.drawText(box.adjusted(8, 5, -8, -5), Qt::AlignLeft, text);
}
