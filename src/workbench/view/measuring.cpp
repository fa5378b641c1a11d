#include "workbench/view/measuring.h"

#include "cam/model/trigonometry.h"

#include <QPainter>

#include <cmath>

double Measurement::angle() const
{
    return distance() > 0.0 ? std::atan2(dy(), dx()) * 180.0 / cam::pi : 0.0;
}

QString Measurement::text(LengthUnit unit) const
{
    return QString("%1\ndx %2   dy %3\n%4\u00b0")
        .arg(lengthText(distance(), unit), lengthText(dx(), unit), lengthText(dy(), unit))
        .arg(angle(), 0, 'f', 2);
}

void Measuring::setOn(bool on)
{
    m_isOn = on;
    m_hasMouse = false;
    if (!on)
        clear();
}

// The uppermost layer that has something near, points before edges.
drawing::Snap Measuring::snapped(cam::Point place, double reach, bool &isSnapped) const
{
    std::optional<drawing::Snap> edge;
    for (const auto &scene : m_scenes) {
        const std::optional<drawing::Snap> found = drawing::snapTo(*scene, place, reach);
        isSnapped = bool(found);
        if (found && found->kind != drawing::Snap::Kind::Edge)
            return *found;
        if (found && !edge)
            edge = found;
    }
    isSnapped = bool(edge);
    return edge ? *edge : drawing::Snap{place, drawing::Snap::Kind::Edge};
}

void Measuring::moveTo(cam::Point place, double reach)
{
    m_mouse = snapped(place, reach, m_isSnapped);
    m_hasMouse = true;
}

void Measuring::press(cam::Point place, double reach)
{
    moveTo(place, reach);
    if (!m_from || m_to) {
        m_from = m_mouse.at;
        m_to.reset();
    } else {
        m_to = m_mouse.at;
    }
}

bool Measuring::clear()
{
    const bool had = bool(m_from);
    m_from.reset();
    m_to.reset();
    return had;
}

std::optional<Measurement> Measuring::measurement() const
{
    if (!m_from || (!m_to && !m_hasMouse))
        return std::nullopt;
    return Measurement{*m_from, m_to ? *m_to : m_mouse.at};
}

void Measuring::paint(QPainter &painter, const BoardView &view)
{
    if (!m_isOn)
        return;
    const QColor color(120, 255, 120);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.5));
    if (m_hasMouse && !m_to) {
        const QPointF at = view.toScreen(m_mouse.at);
        if (!m_isSnapped)
            painter.drawLine(at - QPointF(5, 0), at + QPointF(5, 0));
        else if (m_mouse.kind == drawing::Snap::Kind::Center)
            painter.drawEllipse(at, 6, 6);
        else if (m_mouse.kind == drawing::Snap::Kind::Edge)
            painter.drawPolyline(QPolygonF(QVector<QPointF>{at + QPointF(-6, 5), at + QPointF(0, -6),
                                                            at + QPointF(6, 5), at + QPointF(-6, 5)}));
        else
            painter.drawRect(QRectF(at - QPointF(5, 5), QSizeF(10, 10)));
    }
    const std::optional<Measurement> measured = measurement();
    if (!measured)
        return;
    const QPointF from = view.toScreen(measured->from), to = view.toScreen(measured->to);
    painter.drawLine(from, to);
    painter.setPen(QPen(color, 1, Qt::DotLine));
    painter.drawPolyline(QPolygonF(QVector<QPointF>{from, QPointF(to.x(), from.y()), to}));
    for (const QPointF end : {from, to}) {
        painter.setPen(QPen(color, 1.5));
        painter.drawLine(end - QPointF(4, 4), end + QPointF(4, 4));
        painter.drawLine(end - QPointF(4, -4), end + QPointF(4, -4));
    }
    const QString text = measured->text(view.unit());
    QRect box = painter.fontMetrics().boundingRect(QRect(0, 0, 2000, 2000), 0, text).adjusted(-6, -4, 6, 4);
    box.moveTopLeft(to.toPoint() + QPoint(14, 10));
    box.moveRight(std::min(box.right(), view.width() - 4));
    box.moveBottom(std::min(box.bottom(), view.height() - 4));
    painter.fillRect(box, QColor(24, 28, 32, 220));
    painter.setPen(color);
    painter.drawText(box, Qt::AlignCenter, text);
}
