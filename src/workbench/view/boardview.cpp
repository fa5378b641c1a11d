#include "workbench/view/boardview.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleHints>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace {

const QColor background(24, 28, 32);
const QColor gridColor(255, 255, 255, 22);
const QColor textColor(210, 216, 222);
const QColor profileColor(255, 255, 255, 190);
const QColor datumColor(255, 96, 96);
const double smallestPixel = 10.0; // nanometres
const double largestPixel = 2e7;

// `text` with its upper left corner at `corner`, readable on whatever is drawn there.
void drawLabel(QPainter &painter, const QPoint &corner, const QString &text)
{
    if (text.isEmpty())
        return;
    const QRect place =
        painter.fontMetrics().boundingRect(QRect(0, 0, 4000, 4000), 0, text).adjusted(-6, -3, 6, 3);
    const QRect shown(corner, place.size());
    painter.fillRect(shown, QColor(24, 28, 32, 210));
    painter.setPen(textColor);
    painter.drawText(shown, Qt::AlignCenter, text);
}

} // namespace

BoardView::BoardView(QWidget *parent) : QWidget(parent)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(200, 150);
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(&m_tiles, &TilePainter::drawn, this, QOverload<>::of(&QWidget::update));
}

// ---- what is shown

void BoardView::setScenes(const std::vector<drawing::ColoredScene> &scenes)
{
    m_scenes = scenes;
    m_text.clear();
    m_tiles.setScenes(scenes);
    m_kept = Kept();
    viewChanged();
}

void BoardView::setFrame(const cam::Box &frame, bool isNew)
{
    m_frame = frame;
    if (isNew)
        fitFrame();
}

void BoardView::setBoard(const QVector<QPolygonF> &profile, cam::Point datum)
{
    m_profile = profile;
    m_datum = datum;
    m_hasBoard = true;
    update();
}

void BoardView::showText(const QString &text)
{
    m_scenes.clear();
    m_tiles.setScenes({});
    m_kept = Kept();
    m_profile.clear();
    m_hasBoard = false;
    m_frame = cam::Box();
    m_title.clear();
    m_progress.clear();
    m_text = text;
    m_fitted = Fitted::Frame;
    update();
}

void BoardView::setTitle(const QString &title)
{
    m_title = title;
    update();
}

void BoardView::setHint(const QString &text)
{
    m_text = text;
    update();
}

void BoardView::setProgress(const QString &text)
{
    if (text == m_progress)
        return;
    m_progress = text;
    update();
}

void BoardView::setUnit(LengthUnit unit)
{
    m_unit = unit;
    if (m_hasMouse)
        emit pointed(pointedText());
    update();
}

void BoardView::setMirrored(bool mirrored)
{
    if (mirrored == m_mirrored)
        return;
    m_mirrored = mirrored;
    viewChanged();
}

// ---- which part is seen

QSize BoardView::pixels() const
{
    return size() * devicePixelRatioF();
}

QPointF BoardView::planeOf(cam::Point place) const
{
    return QPointF((m_mirrored ? -place.x : place.x) / m_pixel, -place.y / m_pixel);
}

QPointF BoardView::corner() const
{
    const QPointF center = planeOf(m_center);
    return QPointF(std::round(center.x() - pixels().width() / 2.0),
                   std::round(center.y() - pixels().height() / 2.0));
}

QPointF BoardView::toScreen(cam::Point place) const
{
    return (planeOf(place) - corner()) / devicePixelRatioF();
}

cam::Point BoardView::toPlace(const QPointF &screen) const
{
    const QPointF plane = screen * devicePixelRatioF() + corner();
    return {(m_mirrored ? -plane.x() : plane.x()) * m_pixel, -plane.y() * m_pixel};
}

drawing::Viewport BoardView::viewport() const
{
    drawing::Viewport viewport;
    viewport.center = m_center;
    viewport.pixel = m_pixel;
    viewport.size = pixels();
    viewport.mirrored = m_mirrored;
    return viewport;
}

void BoardView::setViewport(cam::Point center, double pixel)
{
    keepPicture();
    m_center = center;
    m_pixel = std::min(std::max(pixel, smallestPixel), largestPixel);
    m_fitted = Fitted::No;
    viewChanged();
}

void BoardView::goTo(const cam::Box &box)
{
    if (box.isEmpty())
        return;
    keepPicture();
    const drawing::Viewport viewport = drawing::Viewport::showing(box, pixels());
    m_center = viewport.center;
    m_pixel = std::min(std::max(viewport.pixel, smallestPixel), largestPixel);
    viewChanged();
}

void BoardView::showBox(const cam::Box &box)
{
    goTo(box);
    m_fitted = Fitted::No;
}

void BoardView::fitFrame()
{
    m_fitted = Fitted::Frame;
    goTo(m_frame);
}

void BoardView::fitAll()
{
    cam::Box all;
    for (const drawing::ColoredScene &scene : m_scenes)
        all.add(scene.scene->extent());
    m_fitted = Fitted::All;
    goTo(all.isEmpty() ? m_frame : all);
}

void BoardView::zoomAbout(const QPointF &screen, double factor)
{
    const double pixel = std::min(std::max(m_pixel / factor, smallestPixel), largestPixel);
    if (pixel == m_pixel)
        return;
    keepPicture();
    const cam::Point fixed = toPlace(screen);
    m_pixel = pixel;
    m_center = m_center + (fixed - toPlace(screen));
    m_fitted = Fitted::No;
    viewChanged();
}

void BoardView::moveBy(const QPointF &screen)
{
    m_center = m_center + (toPlace(QPointF()) - toPlace(screen));
    m_fitted = Fitted::No;
    viewChanged();
}

QRect BoardView::tilesSeen() const
{
    const QPointF first = corner();
    const auto tileOf = [](double pixel) { return int(std::floor(pixel / TilePainter::side)); };
    return QRect(QPoint(tileOf(first.x()), tileOf(first.y())),
                 QPoint(tileOf(first.x() + pixels().width() - 1), tileOf(first.y() + pixels().height() - 1)));
}

void BoardView::viewChanged()
{
    m_tiles.setZoom(m_pixel, m_mirrored);
    m_tiles.want(m_scenes.empty() ? QRect() : tilesSeen());
    update();
}

// Of a picture that has just come there is little yet: the one before it serves longer.
void BoardView::keepPicture()
{
    if (m_scenes.empty() || !isVisible() || (!m_kept.image.isNull() && !m_tiles.isDone()))
        return;
    QImage image(pixels(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawTiles(painter);
    m_kept = {image, corner(), m_pixel, m_mirrored};
}

// ---- painting

// In the screen's own pixels.
void BoardView::drawTiles(QPainter &painter) const
{
    const QRect seen = tilesSeen();
    const QPointF first = corner();
    QRegion missing(QRect(QPoint(), pixels()));
    for (int y = seen.top(); y <= seen.bottom(); ++y) {
        for (int x = seen.left(); x <= seen.right(); ++x) {
            const QImage *tile = m_tiles.tile(QPoint(x, y));
            if (!tile)
                continue;
            const QPoint at(int(x * double(TilePainter::side) - first.x()),
                            int(y * double(TilePainter::side) - first.y()));
            painter.drawImage(at, *tile);
            missing -= QRect(at, tile->size());
        }
    }
    if (missing.isEmpty() || m_kept.image.isNull() || m_kept.mirrored != m_mirrored)
        return;
    const double scale = m_kept.pixel / m_pixel;
    painter.save();
    painter.setClipRegion(missing);
    painter.drawImage(QRectF(m_kept.corner * scale - first, QSizeF(m_kept.image.size()) * scale),
                      m_kept.image);
    painter.restore();
}

void BoardView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), background);
    const bool hasPlaces = !m_scenes.empty() || m_hasBoard;
    if (hasPlaces)
        drawAll(painter, devicePixelRatioF(), [&] { drawTiles(painter); });
    painter.setPen(textColor);
    if (!m_text.isEmpty() && m_progress.isEmpty())
        painter.drawText(rect().adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap, m_text);
    drawLabel(painter, QPoint(8, 6), m_progress.isEmpty() ? m_title : m_progress);
}

void BoardView::drawAll(QPainter &painter, double ratio, const std::function<void()> &drawLayers) const
{
    drawGrid(painter);
    painter.save();
    painter.scale(1.0 / ratio, 1.0 / ratio);
    drawLayers();
    painter.restore();
    drawBoard(painter, profileColor);
    drawOverlays(painter);
    drawScale(painter);
}

void BoardView::drawOverlays(QPainter &painter) const
{
    for (Overlay *overlay : m_overlays) {
        painter.save();
        overlay->paint(painter, *this);
        painter.restore();
    }
}

void BoardView::paintMarks(QPainter &painter, const QColor &outline) const
{
    QFont pixels = font(); // points would be those of the painter's device
    pixels.setPixelSize(QFontInfo(pixels).pixelSize());
    painter.setFont(pixels);
    painter.translate(-toScreen(m_center));
    drawBoard(painter, outline);
    drawOverlays(painter);
}

QImage BoardView::finished(const QImage &layers) const
{
    QImage image(layers.size(), QImage::Format_RGB32);
    image.fill(background);
    QPainter painter(&image);
    const double factor = static_cast<double>(layers.width()) / width();
    painter.scale(factor, factor);
    drawAll(painter, factor, [&] { painter.drawImage(0, 0, layers); });
    drawLabel(painter, QPoint(8, 6), m_title);
    return image;
}

void BoardView::drawGrid(QPainter &painter) const
{
    const double unit = nanometresOf(m_unit);
    const double pixel = m_pixel * devicePixelRatioF();
    const double step = roundLength(40.0 * pixel / unit) * unit; // lines at least 40 pixels apart
    painter.setPen(gridColor);
    const cam::Point a = toPlace(QPointF(0, height())), b = toPlace(QPointF(width(), 0));
    const double left = std::min(a.x, b.x), right = std::max(a.x, b.x);
    for (double x = std::ceil(left / step) * step; x <= right; x += step) {
        const int at = int(std::lround(toScreen({x, 0.0}).x()));
        painter.drawLine(at, 0, at, height());
    }
    for (double y = std::ceil(a.y / step) * step; y <= b.y; y += step) {
        const int at = int(std::lround(toScreen({0.0, y}).y()));
        painter.drawLine(0, at, width(), at);
    }
}

void BoardView::drawBoard(QPainter &painter, const QColor &outline) const
{
    if (!m_hasBoard)
        return;
    painter.setPen(outline);
    const QRectF seen = QRectF(rect()).adjusted(-2, -2, 2, 2);
    for (const QPolygonF &ring : m_profile) {
        QPolygonF shown;
        shown.reserve(ring.size());
        for (const QPointF &corner : ring)
            shown << toScreen({corner.x(), corner.y()});
        for (int i = 0; i + 1 < shown.size(); ++i) {
            // Far outside, a painter's numbers overflow.
            const QRectF box = QRectF(shown[i], shown[i + 1]).normalized();
            if (box.left() <= seen.right() && seen.left() <= box.right() && box.top() <= seen.bottom() &&
                seen.top() <= box.bottom() && box.width() < 1e6 && box.height() < 1e6)
                painter.drawLine(shown[i], shown[i + 1]);
        }
    }
    const QPointF datum = toScreen(m_datum);
    if (!seen.contains(datum))
        return;
    painter.setPen(datumColor);
    painter.drawLine(datum - QPointF(9, 0), datum + QPointF(9, 0));
    painter.drawLine(datum - QPointF(0, 9), datum + QPointF(0, 9));
    painter.drawEllipse(datum, 4, 4);
}

void BoardView::drawScale(QPainter &painter) const
{
    const double unit = nanometresOf(m_unit), pixel = m_pixel * devicePixelRatioF();
    const double length = roundLength(60.0 * pixel / unit); // in the unit
    const int across = int(std::lround(length * unit / pixel));
    const int right = width() - 14, bottom = height() - 14;
    painter.fillRect(QRect(QPoint(right - across - 4, bottom - 7), QPoint(right + 4, bottom + 4)),
                     QColor(24, 28, 32, 210));
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(textColor);
    painter.drawLine(right - across, bottom, right, bottom);
    painter.drawLine(right - across, bottom - 4, right - across, bottom);
    painter.drawLine(right, bottom - 4, right, bottom);
    const bool isFine = m_unit == LengthUnit::Millimetre && length < 0.1;
    const QString text = isFine ? QString("%1 \u00b5m").arg(length * 1000.0)
                                : QString("%1 %2").arg(length).arg(nameOf(m_unit));
    const QSize size = painter.fontMetrics().boundingRect(text).adjusted(-6, -3, 6, 3).size();
    drawLabel(painter, QPoint(right - size.width() + 4, bottom - 10 - size.height()), text);
    if (m_mirrored)
        drawLabel(painter, QPoint(8, height() - 10 - size.height()), tr("seen from below"));
}

// ---- mouse and keys

void BoardView::resizeEvent(QResizeEvent *)
{
    if (m_fitted == Fitted::Frame)
        fitFrame();
    else if (m_fitted == Fitted::All)
        fitAll();
    else
        viewChanged();
}

void BoardView::wheelEvent(QWheelEvent *event)
{
    m_mouse = event->posF();
    if (!m_scenes.empty() || m_hasBoard)
        zoomAbout(m_mouse, std::pow(1.25, event->angleDelta().y() / 120.0));
    event->accept();
}

void BoardView::mousePressEvent(QMouseEvent *event)
{
    m_mouse = m_pressed = event->localPos();
    m_isDragging = false;
    if (event->button() == Qt::MiddleButton)
        m_isDragging = true;
}

void BoardView::mouseMoveEvent(QMouseEvent *event)
{
    const QPointF before = m_mouse;
    m_mouse = event->localPos();
    m_hasMouse = true;
    if (m_scenes.empty() && !m_hasBoard)
        return;
    if (event->buttons() != Qt::NoButton) {
        const int far = QGuiApplication::styleHints()->startDragDistance();
        if (!m_isDragging && (m_mouse - m_pressed).manhattanLength() >= far) {
            m_isDragging = true;
            setCursor(Qt::ClosedHandCursor);
            moveBy(before - m_pressed);
        }
        if (m_isDragging)
            moveBy(m_mouse - before);
    }
    emit pointed(pointedText());
    emit moved(toPlace(m_mouse));
}

void BoardView::mouseReleaseEvent(QMouseEvent *event)
{
    unsetCursor();
    if (!m_isDragging && event->button() == Qt::LeftButton && (!m_scenes.empty() || m_hasBoard))
        emit clicked(toPlace(event->localPos()));
    m_isDragging = false;
}

void BoardView::mouseDoubleClickEvent(QMouseEvent *)
{
    fitFrame();
}

void BoardView::keyPressEvent(QKeyEvent *event)
{
    const double far = std::min(width(), height()) / 8.0;
    switch (event->key()) {
    case Qt::Key_Left:
        return moveBy(QPointF(far, 0));
    case Qt::Key_Right:
        return moveBy(QPointF(-far, 0));
    case Qt::Key_Up:
        return moveBy(QPointF(0, far));
    case Qt::Key_Down:
        return moveBy(QPointF(0, -far));
    case Qt::Key_Escape:
        emit escaped();
        return;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return zoomAbout(QRectF(rect()).center(), 1.25);
    case Qt::Key_Minus:
        return zoomAbout(QRectF(rect()).center(), 1.0 / 1.25);
    default:
        QWidget::keyPressEvent(event);
    }
}

void BoardView::leaveEvent(QEvent *)
{
    m_hasMouse = false;
    emit pointed(QString());
}

QString BoardView::pointedText() const
{
    return placeText(toPlace(m_mouse), m_unit);
}
