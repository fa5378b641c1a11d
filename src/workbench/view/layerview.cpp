#include "workbench/view/layerview.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

const QColor background(24, 28, 32);
const QColor gridColour(44, 50, 56);
const QColor textColour(200, 206, 212);
const int oversampling = 2;
const double leastCoverage = 0.35; // of the pixel that a small area lies in, so that it is seen
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

// Whether two boxes have a point in common. One may be a line or a point.
bool overlap(const QRectF &first, const QRectF &second)
{
    return first.left() <= second.right() && second.left() <= first.right() &&
           first.top() <= second.bottom() && second.top() <= first.bottom();
}

// The pixel that a point lies in.
QPoint cellOf(const QPointF &point)
{
    return QPoint(int(std::floor(point.x())), int(std::floor(point.y())));
}

// Of a closed polygon, without its sign.
double areaOf(const QPolygonF &polygon)
{
    double twice = 0.0;
    for (int i = 0; i + 1 < polygon.size(); ++i)
        twice += polygon[i].x() * polygon[i + 1].y() - polygon[i + 1].x() * polygon[i].y();
    return std::fabs(twice) / 2.0;
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
    m_sizes.clear();
    m_sizes.reserve(drawing.areas.size());
    for (const QPolygonF &polygon : drawing.areas) {
        AreaSize size;
        size.box = polygon.boundingRect();
        size.area = areaOf(polygon);
        const double longer = std::max(size.box.width(), size.box.height());
        size.thickness = longer > 0.0 ? size.area / longer : 0.0;
        m_sizes << size;
    }
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
    m_sizes.clear();
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

QRectF LayerView::visiblePlaces() const
{
    return QRectF(toPlace(QPointF(0, height())), toPlace(QPointF(width(), 0))).normalized();
}

// Larger than shown and without antialiasing, then made smaller: antialiased one by one, areas that touch
// would show a seam between them. Nothing vanishes: what is thinner than a pixel is drawn a pixel wide, and
// what is smaller in both directions darkens its pixel by its share of it, but never so little that it is not
// seen.
QImage LayerView::areasImage(qreal pixelRatio) const
{
    const QSize pixels = size() * pixelRatio;
    QImage image(pixels * oversampling, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setBrush(m_color);
    const QPen hairline(m_color, oversampling);
    const QTransform transform =
        toView() * QTransform::fromScale(pixelRatio * oversampling, pixelRatio * oversampling);
    const QTransform toPixels = toView() * QTransform::fromScale(pixelRatio, pixelRatio);
    const double pixel = 1.0 / (m_scale * pixelRatio); // millimetres
    const QRectF visible = visiblePlaces();
    std::vector<float> coverage; // of each pixel by areas smaller than one
    for (int i = 0; i < m_drawing.areas.size(); ++i) {
        const AreaSize &area = m_sizes[i];
        if (!overlap(area.box, visible))
            continue;
        if (area.box.width() >= pixel || area.box.height() >= pixel) {
            painter.setPen(area.thickness < pixel ? hairline : QPen(Qt::NoPen));
            painter.drawPolygon(transform.map(m_drawing.areas[i]), Qt::WindingFill);
            continue;
        }
        if (coverage.empty())
            coverage.resize(std::size_t(pixels.width()) * std::size_t(pixels.height()));
        const QPoint at = cellOf(toPixels.map(area.box.center()));
        if (QRect(QPoint(), pixels).contains(at))
            coverage[std::size_t(at.y()) * std::size_t(pixels.width()) + std::size_t(at.x())] +=
                float(area.area / (pixel * pixel)) + std::numeric_limits<float>::min();
    }
    painter.end();
    image = image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (!coverage.empty())
        addCoverage(image, coverage);
    return image;
}

// Puts the colour over the pixels that small areas cover, as dense as they cover it.
void LayerView::addCoverage(QImage &image, const std::vector<float> &coverage) const
{
    auto share = coverage.cbegin();
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x, ++share) {
            if (*share == 0.0f)
                continue;
            const double over = std::min(std::max(double(*share), leastCoverage), 1.0);
            const double alpha = over + (1.0 - over) * qAlpha(line[x]) / 255.0;
            line[x] = qPremultiply(
                qRgba(m_color.red(), m_color.green(), m_color.blue(), int(std::lround(255.0 * alpha))));
        }
    }
}

void LayerView::drawOutlines(QPainter &painter) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 255, 190), 1));
    const QTransform transform = toView();
    const QRectF visible = visiblePlaces();
    for (const QPolygonF &outline : m_drawing.outlines) {
        if (overlap(outline.boundingRect(), visible))
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
