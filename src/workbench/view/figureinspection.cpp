#include "workbench/view/figureinspection.h"

#include "cam/model/flatten.h"
#include "cam/model/trigonometry.h"
#include "workbench/view/featureoutline.h"
#include "workbench/view/textlabels.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

using Kind = drawing::Figure::Kind;

QString text(const char *source)
{
    return QCoreApplication::translate("FigureInspection", source);
}

QString nameOf(Kind kind)
{
    switch (kind) {
    case Kind::Boundary:
        return text(QT_TRANSLATE_NOOP("FigureInspection", "Boundary"));
    case Kind::Path:
        return text(QT_TRANSLATE_NOOP("FigureInspection", "Path"));
    case Kind::Text:
        return text(QT_TRANSLATE_NOOP("FigureInspection", "Text"));
    case Kind::Flash:
        return text(QT_TRANSLATE_NOOP("FigureInspection", "Flash"));
    case Kind::Stroke:
        return text(QT_TRANSLATE_NOOP("FigureInspection", "Stroke"));
    case Kind::Region:
        return text(QT_TRANSLATE_NOOP("FigureInspection", "Region"));
    case Kind::Hit:
        return text(QT_TRANSLATE_NOOP("FigureInspection", "Hole"));
    case Kind::Slot:
        return text(QT_TRANSLATE_NOOP("FigureInspection", "Slot"));
    case Kind::Rout:
        break;
    }
    return text(QT_TRANSLATE_NOOP("FigureInspection", "Routed path"));
}

// What Gerber calls C, R, O and P; anything else is the name of a macro.
QString shapeText(const std::string &shape)
{
    if (shape == "C")
        return text(QT_TRANSLATE_NOOP("FigureInspection", "circle"));
    if (shape == "R")
        return text(QT_TRANSLATE_NOOP("FigureInspection", "rectangle"));
    if (shape == "O")
        return text(QT_TRANSLATE_NOOP("FigureInspection", "obround"));
    if (shape == "P")
        return text(QT_TRANSLATE_NOOP("FigureInspection", "polygon"));
    return text(QT_TRANSLATE_NOOP("FigureInspection", "macro %1")).arg(QString::fromStdString(shape));
}

QString sizeText(double width, double height, LengthUnit unit)
{
    return QString("%1 \u00d7 %2").arg(lengthText(width, unit), lengthText(height, unit));
}

QString boxText(const cam::Box &box, LengthUnit unit)
{
    return box.isEmpty() ? QString() : sizeText(box.high.x - box.low.x, box.high.y - box.low.y, unit);
}

void addLine(QStringList &lines, const drawing::Figure &figure, LengthUnit unit)
{
    double length = 0.0;
    cam::Point from = figure.start;
    for (const cam::Edge &edge : figure.line) {
        if (edge.kind == cam::EdgeKind::Line)
            length += cam::distance(from, edge.end);
        else
            length +=
                cam::distance(from, edge.center) * std::fabs(cam::sweptDegrees(from, edge)) * cam::pi / 180.0;
        from = edge.end;
    }
    lines << text(QT_TRANSLATE_NOOP("FigureInspection", "From %1")).arg(placeText(figure.start, unit))
          << text(QT_TRANSLATE_NOOP("FigureInspection", "To %1")).arg(placeText(from, unit))
          << text(QT_TRANSLATE_NOOP("FigureInspection", "Length %1")).arg(lengthText(length, unit));
    if (figure.line.size() == 1 && figure.line[0].kind != cam::EdgeKind::Line)
        lines << text(QT_TRANSLATE_NOOP("FigureInspection", "Center %1"))
                     .arg(placeText(figure.line[0].center, unit))
              << text(QT_TRANSLATE_NOOP("FigureInspection", "Radius %1"))
                     .arg(lengthText(cam::distance(figure.start, figure.line[0].center), unit));
}

QString apertureText(const drawing::Figure &figure, LengthUnit unit)
{
    return text(QT_TRANSLATE_NOOP("FigureInspection", "Aperture D%1, %2, %3"))
        .arg(QString::number(figure.number), shapeText(figure.name),
             sizeText(figure.size.x, figure.size.y, unit));
}

QString toolText(const drawing::Figure &figure, LengthUnit unit)
{
    const QString plating = figure.plating == cam::Plating::Plated
                                ? text(QT_TRANSLATE_NOOP("FigureInspection", ", plated"))
                            : figure.plating == cam::Plating::NonPlated
                                ? text(QT_TRANSLATE_NOOP("FigureInspection", ", not plated"))
                                : QString();
    return text(QT_TRANSLATE_NOOP("FigureInspection", "Tool T%1, %2"))
               .arg(QString::number(figure.number), lengthText(figure.width, unit)) +
           plating;
}

} // namespace

QStringList describeFigure(const drawing::Figure &figure, LengthUnit unit)
{
    QStringList lines{nameOf(figure.kind) +
                      (figure.dark ? QString() : text(QT_TRANSLATE_NOOP("FigureInspection", ", clears")))};
    const QString place =
        text(QT_TRANSLATE_NOOP("FigureInspection", "At %1")).arg(placeText(figure.at, unit));
    switch (figure.kind) {
    case Kind::Boundary:
    case Kind::Region: {
        std::size_t edges = 0;
        for (std::size_t i = 0; i < figure.outline.size(); ++i)
            edges += figure.outline[i].edgeCount;
        lines << boxText(figure.box, unit)
              << text(QT_TRANSLATE_NOOP("FigureInspection", "Center %1"))
                     .arg(placeText((figure.box.low + figure.box.high) * 0.5, unit))
              << text(QT_TRANSLATE_NOOP("FigureInspection", "%1 contours, %2 edges"))
                     .arg(figure.outline.size())
                     .arg(edges);
        break;
    }
    case Kind::Path:
        lines << text(QT_TRANSLATE_NOOP("FigureInspection", "Width %1")).arg(lengthText(figure.width, unit));
        addLine(lines, figure, unit);
        break;
    case Kind::Text:
        lines << QString("\u201c%1\u201d").arg(TextLabels::textOf(figure.words)) << place;
        break;
    case Kind::Flash:
        lines << apertureText(figure, unit) << place;
        break;
    case Kind::Stroke:
        lines << apertureText(figure, unit);
        addLine(lines, figure, unit);
        break;
    case Kind::Hit:
        lines << toolText(figure, unit) << place;
        break;
    case Kind::Slot:
    case Kind::Rout:
        lines << toolText(figure, unit);
        addLine(lines, figure, unit);
        break;
    }
    if (figure.lineNumber > 0)
        lines << text(QT_TRANSLATE_NOOP("FigureInspection", "Line %1 of the file")).arg(figure.lineNumber);
    else if (!figure.name.empty())
        lines << text(QT_TRANSLATE_NOOP("FigureInspection", "Structure %1"))
                     .arg(QString::fromStdString(figure.name));
    return lines;
}

void FigureInspection::setLayers(const std::vector<Layer> &layers)
{
    const bool isSame =
        std::equal(layers.begin(), layers.end(), m_layers.begin(), m_layers.end(),
                   [](const Layer &a, const Layer &b) { return a.name == b.name && a.scene == b.scene; });
    m_layers = layers;
    if (!isSame)
        clear();
}

bool FigureInspection::press(cam::Point place, double reach)
{
    const bool isAgain = !m_hits.empty() && cam::distance(place, m_place) <= reach;
    if (isAgain && m_current + 1 < m_hits.size()) {
        ++m_current;
        return true;
    }
    clear();
    if (isAgain) // what lies beneath all of them has its turn
        return false;
    m_place = place;
    for (const Layer &layer : m_layers) {
        for (drawing::Figure &figure : drawing::figuresAt(*layer.scene, place, reach))
            m_hits.push_back({layer.name, std::move(figure)});
    }
    return !m_hits.empty();
}

bool FigureInspection::clear()
{
    const bool had = !m_hits.empty();
    m_hits.clear();
    m_current = 0;
    return had;
}

QStringList FigureInspection::text(LengthUnit unit) const
{
    if (m_hits.empty())
        return {};
    const Hit &hit = m_hits[m_current];
    QStringList lines{tr("Layer %1").arg(hit.layer)};
    lines << describeFigure(hit.figure, unit);
    if (m_hits.size() > 1)
        lines << tr("%1 of %2 here; click again for the next").arg(m_current + 1).arg(m_hits.size());
    return lines;
}

void FigureInspection::paint(QPainter &painter, const BoardView &view)
{
    if (m_hits.empty())
        return;
    const drawing::Figure &figure = m_hits[m_current].figure;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(markColor(), 2));
    painter.setClipRect(view.rect());
    paintContours(painter, view, figure.outline, {});
    if (!figure.line.empty()) {
        std::vector<cam::Point> corners{figure.start};
        cam::Point from = figure.start;
        for (const cam::Edge &edge : figure.line) {
            if (edge.kind == cam::EdgeKind::Line)
                corners.push_back(edge.end);
            else
                cam::flattenArc(from, edge, view.pixel() / 4.0, corners);
            from = edge.end;
        }
        QPolygonF shown;
        for (const cam::Point corner : corners)
            shown << view.toScreen(corner);
        paintLine(painter, view, shown);
    }
    if (figure.kind == Kind::Flash || figure.kind == Kind::Hit || figure.kind == Kind::Text) {
        const QPointF at = view.toScreen(figure.at);
        painter.drawLine(at - QPointF(6, 0), at + QPointF(6, 0));
        painter.drawLine(at - QPointF(0, 6), at + QPointF(0, 6));
    }
    const QString text = this->text(view.unit()).join('\n');
    QRect box = painter.fontMetrics().boundingRect(QRect(0, 0, 2000, 2000), 0, text).adjusted(-8, -5, 8, 5);
    box.moveTopRight(QPoint(view.width() - 8, 6 + 2 * painter.fontMetrics().height())); // below the title
    painter.fillRect(box, QColor(24, 28, 32, 225));
    painter.setPen(QColor(240, 220, 255));
    painter.drawText(box.adjusted(8, 5, -8, -5), Qt::AlignLeft, text);
}
