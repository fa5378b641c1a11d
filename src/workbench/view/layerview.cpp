#include "workbench/view/layerview.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace {

const QColor background(24, 28, 32);
const QColor gridColour(44, 50, 56);
const QColor textColour(200, 206, 212);
const int oversampling = 2;
const double margin = 0.92;        // of the view's size that a fitted layer takes
const double smallestScale = 0.02; // pixels a millimetre
const double largestScale = 50000;

// The 1, 2 or 5 times a power of ten that is the smallest at least `value`.
double roundLength(double value)
{
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    for (const double step : {1.0, 2.0, 5.0}) {
        if (step * power >= value)
            return step * power;
    }
    return 10.0 * power;
}

// `text` with its upper left corner at `corner`, readable on whatever is drawn there.
void drawLabel(QPainter &painter, const QPoint &corner, const QString &text)
{
    if (text.isEmpty())
        return;
    const QRect place = painter.fontMetrics().boundingRect(text).adjusted(-6, -3, 6, 3);
    const QRect shown(corner, place.size());
    painter.fillRect(shown, QColor(24, 28, 32, 200));
    painter.drawText(shown, Qt::AlignCenter, text);
}

} // namespace

LayerView::LayerView(QWidget *parent) : QWidget(parent)
{
    setMouseTracking(true);
    setMinimumSize(200, 150);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void LayerView::showDrawing(const LayerDrawing &drawing, const QString &title, const QColor &color,
                            bool sameJob)
{
    const bool keepPlace = sameJob && m_hasDrawing && !m_fitted;
    m_drawing = drawing;
    m_hasDrawing = true;
    m_title = title;
    m_color = color;
    m_text = drawing.bounds.isNull() ? tr("The layer is empty.") : QString();
    m_progress.clear();
    if (!keepPlace)
        fit();
    changed();
}

void LayerView::showText(const QString &text)
{
    m_hasDrawing = false;
    m_drawing = LayerDrawing();
    m_title.clear();
    m_progress.clear();
    m_text = text;
    changed();
}

void LayerView::showProgress(const QString &title, double percent)
{
    m_progress = tr("Reading %1 ... %2 %").arg(title).arg(int(std::max(percent, 0.0)));
    update();
}

void LayerView::fit()
{
    m_fitted = true;
    const QRectF bounds = m_drawing.bounds;
    if (bounds.isNull())
        return;
    m_centre = bounds.center();
    const double across = std::max(bounds.width(), 1e-3);
    const double up = std::max(bounds.height(), 1e-3);
    m_scale =
        std::min(std::max(margin * std::min(width() / across, height() / up), smallestScale), largestScale);
    changed();
}

QPointF LayerView::toScreen(const QPointF &place) const
{
    return QPointF(width() / 2.0 + (place.x() - m_centre.x()) * m_scale,
                   height() / 2.0 - (place.y() - m_centre.y()) * m_scale);
}

QPointF LayerView::toPlace(const QPointF &screen) const
{
    return QPointF(m_centre.x() + (screen.x() - width() / 2.0) / m_scale,
                   m_centre.y() - (screen.y() - height() / 2.0) / m_scale);
}

void LayerView::zoomAbout(const QPointF &screen, double factor)
{
    const QPointF fixed = toPlace(screen);
    m_scale = std::min(std::max(m_scale * factor, smallestScale), largestScale);
    m_centre += fixed - toPlace(screen);
    m_fitted = false;
    changed();
}

void LayerView::changed()
{
    m_picture = QPixmap();
    update();
}

void LayerView::paintEvent(QPaintEvent *)
{
    if (m_picture.isNull())
        drawLayer();
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_picture);
    painter.setPen(textColour);
    if (!m_text.isEmpty() && m_progress.isEmpty())
        painter.drawText(rect().adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap, m_text);
    drawLabel(painter, QPoint(8, 6), m_progress.isEmpty() ? m_title : m_progress);
}

void LayerView::drawLayer()
{
    const qreal ratio = devicePixelRatioF();
    m_picture = QPixmap(size() * ratio);
    m_picture.setDevicePixelRatio(ratio);
    m_picture.fill(background);
    if (!m_hasDrawing || m_drawing.bounds.isNull())
        return;
    QPainter painter(&m_picture);
    drawGrid(painter);
    painter.drawImage(rect(), areasImage(ratio));
    drawOutlines(painter);
    drawScale(painter);
}

QTransform LayerView::toView() const
{
    QTransform transform; // the last call acts first
    transform.translate(width() / 2.0, height() / 2.0);
    transform.scale(m_scale, -m_scale);
    transform.translate(-m_centre.x(), -m_centre.y());
    return transform;
}

bool LayerView::isSeen(const QPolygonF &polygon) const
{
    const QRectF visible = QRectF(toPlace(QPointF(0, height())), toPlace(QPointF(width(), 0))).normalized();
    // A straight line has an empty rectangle, which intersects nothing.
    return polygon.boundingRect().adjusted(-1e-6, -1e-6, 1e-6, 1e-6).intersects(visible);
}

// Larger than shown and without antialiasing, then made smaller: antialiased one by one, areas that touch
// would show a seam between them.
QImage LayerView::areasImage(qreal pixelRatio) const
{
    const QSize pixels = size() * pixelRatio;
    QImage image(pixels * oversampling, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_color);
    const QTransform transform =
        toView() * QTransform::fromScale(pixelRatio * oversampling, pixelRatio * oversampling);
    for (const QPolygonF &area : m_drawing.areas) {
        if (isSeen(area))
            painter.drawPolygon(transform.map(area), Qt::WindingFill);
    }
    painter.end();
    return image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

void LayerView::drawOutlines(QPainter &painter) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 255, 190), 1));
    const QTransform transform = toView();
    for (const QPolygonF &outline : m_drawing.outlines) {
        if (isSeen(outline))
            painter.drawPolyline(transform.map(outline));
    }
}

void LayerView::drawGrid(QPainter &painter) const
{
    const double step = roundLength(40.0 / m_scale); // lines at least 40 pixels apart
    painter.setPen(gridColour);
    const QPointF from = toPlace(QPointF(0, height()));
    const QPointF to = toPlace(QPointF(width(), 0));
    for (double x = std::ceil(from.x() / step) * step; x <= to.x(); x += step) {
        const int at = int(std::lround(toScreen(QPointF(x, 0)).x()));
        painter.drawLine(at, 0, at, height());
    }
    for (double y = std::ceil(from.y() / step) * step; y <= to.y(); y += step) {
        const int at = int(std::lround(toScreen(QPointF(0, y)).y()));
        painter.drawLine(0, at, width(), at);
    }
}

void LayerView::drawScale(QPainter &painter) const
{
    const double length = roundLength(60.0 / m_scale); // mm
    const int pixels = int(length * m_scale);
    const int right = width() - 14;
    const int bottom = height() - 14;
    painter.fillRect(QRect(QPoint(right - pixels - 4, bottom - 7), QPoint(right + 4, bottom + 4)),
                     QColor(24, 28, 32, 200));
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(textColour);
    painter.drawLine(right - pixels, bottom, right, bottom);
    painter.drawLine(right - pixels, bottom - 4, right - pixels, bottom);
    painter.drawLine(right, bottom - 4, right, bottom);
    const QString text = length >= 0.1 ? tr("%1 mm").arg(length) : tr("%1 um").arg(length * 1000);
    const QSize size = painter.fontMetrics().boundingRect(text).adjusted(-6, -3, 6, 3).size();
    drawLabel(painter, QPoint(right - size.width(), bottom - 8 - size.height()), text);
}

void LayerView::resizeEvent(QResizeEvent *)
{
    if (m_fitted)
        fit();
    changed();
}

void LayerView::wheelEvent(QWheelEvent *event)
{
    if (m_hasDrawing)
        zoomAbout(m_mouse, std::pow(1.25, event->angleDelta().y() / 120.0));
    event->accept();
}

void LayerView::mousePressEvent(QMouseEvent *event)
{
    m_mouse = event->pos();
    if (m_hasDrawing)
        setCursor(Qt::ClosedHandCursor);
}

void LayerView::mouseMoveEvent(QMouseEvent *event)
{
    const QPoint before = m_mouse;
    m_mouse = event->pos();
    if (!m_hasDrawing)
        return;
    if (event->buttons() != Qt::NoButton && m_mouse != before) {
        m_centre += toPlace(before) - toPlace(m_mouse);
        m_fitted = false;
        changed();
    }
    const QPointF place = toPlace(event->pos());
    emit pointed(tr("x %1  y %2 mm").arg(place.x(), 0, 'f', 3).arg(place.y(), 0, 'f', 3));
}

void LayerView::mouseReleaseEvent(QMouseEvent *)
{
    unsetCursor();
}

void LayerView::mouseDoubleClickEvent(QMouseEvent *)
{
    fit();
}

void LayerView::leaveEvent(QEvent *)
{
    emit pointed(QString());
}
