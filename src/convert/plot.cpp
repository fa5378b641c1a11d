#include "convert/plot.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QSaveFile>
#include <QSize>

#include <cmath>
#include <stdexcept>

namespace convert {

namespace {

constexpr double millimetre = 1e6; // nanometres
constexpr double margin = 0.03;    // of the longer side, on each side
constexpr double markRadius = 8.0; // pixels

// The part of the plane that is shown, in nanometres.
struct Frame
{
    double left = 0.0, top = 0.0, width = 0.0, height = 0.0;
};

Frame frameOf(const cam::GridBox &extent)
{
    if (extent.isEmpty())
        return {0.0, millimetre, millimetre, millimetre};
    const cam::Point low = pointOf(extent.low), high = pointOf(extent.high);
    const double rim = std::max(margin * std::max(high.x - low.x, high.y - low.y), 0.01 * millimetre);
    return {low.x - rim, high.y + rim, high.x - low.x + 2.0 * rim, high.y - low.y + 2.0 * rim};
}

[[noreturn]] void cannotWrite(const QSaveFile &file)
{
    throw std::runtime_error((file.fileName() + ": cannot be written: " + file.errorString()).toStdString());
}

class PngPlot : public Plot
{
public:
    PngPlot(const QString &file, const Frame &frame, const QSize &size, const QColor &background)
        : m_file(file), m_frame(frame), m_image(size, QImage::Format_ARGB32_Premultiplied)
    {
        if (m_image.isNull())
            throw std::runtime_error("there is no memory for the picture");
        m_pixel = frame.width / size.width();
        m_image.fill(background);
    }
    void begin(const QColor &color, double opacity) override
    {
        m_opacity = opacity;
        m_layer = QImage(m_image.size(), m_image.format());
        m_layer.fill(Qt::transparent);
        m_painter.begin(&m_layer);
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_brush = color;
    }
    void fill(const std::vector<cam::GridRing> &rings) override
    {
        QPainterPath path;
        path.setFillRule(Qt::WindingFill);
        for (const cam::GridRing &ring : rings) {
            // Corners that lie in one place of the picture are one.
            constexpr double same = 0.1; // pixels
            QPointF last;
            for (std::size_t i = 0; i < ring.size(); ++i) {
                const QPointF at = place(pointOf(ring[i]));
                if (i == 0)
                    path.moveTo(at);
                else if ((at - last).manhattanLength() < same)
                    continue;
                else
                    path.lineTo(at);
                last = at;
            }
            path.closeSubpath();
        }
        m_painter.fillPath(path, m_brush);
    }
    void mark(cam::Point at) override
    {
        m_painter.setPen(QPen(m_brush, 1.5));
        m_painter.drawEllipse(place(at), markRadius, markRadius);
    }
    void end() override
    {
        m_painter.end();
        QPainter painter(&m_image);
        painter.setOpacity(m_opacity);
        painter.drawImage(0, 0, m_layer);
        m_layer = QImage();
    }
    void save() override
    {
        // flush() sees a full disk, commit() does not.
        QSaveFile file(m_file);
        if (!file.open(QIODevice::WriteOnly) || !m_image.save(&file, "PNG") || !file.flush() ||
            !file.commit())
            cannotWrite(file);
    }

private:
    QPointF place(cam::Point at) const
    {
        return {(at.x - m_frame.left) / m_pixel, (m_frame.top - at.y) / m_pixel};
    }

    QString m_file;
    Frame m_frame;
    QImage m_image, m_layer;
    QPainter m_painter;
    QBrush m_brush;
    double m_opacity = 1.0;
};

// One path for everything of one colour; whole micrometres.
class SvgPlot : public Plot
{
public:
    SvgPlot(const QString &file, const Frame &frame, const QSize &size, bool isTrueSize,
            const QColor &background)
        : m_file(file), m_frame(frame)
    {
        m_pixel = frame.width / size.width();
        const QByteArray width = number(frame.width), height = number(frame.height);
        m_text = "<svg xmlns=\"http://www.w3.org/2000/svg\" ";
        if (isTrueSize)
            m_text += "width=\"" + QByteArray::number(frame.width / millimetre) + "mm\" height=\"" +
                      QByteArray::number(frame.height / millimetre) + "mm\"";
        else
            m_text += "width=\"" + QByteArray::number(size.width()) + "\" height=\"" +
                      QByteArray::number(size.height()) + "\"";
        m_text += " viewBox=\"0 0 " + width + ' ' + height + "\">\n<rect width=\"" + width + "\" height=\"" +
                  height + "\" fill=\"" + background.name().toLatin1() + "\"/>\n";
    }
    void begin(const QColor &color, double opacity) override
    {
        m_color = color.name().toLatin1();
        m_text += "<g fill=\"" + m_color + "\" opacity=\"" + QByteArray::number(opacity) +
                  "\" fill-rule=\"nonzero\">\n";
    }
    void fill(const std::vector<cam::GridRing> &rings) override
    {
        QByteArray data;
        for (const cam::GridRing &ring : rings) {
            std::vector<std::pair<qint64, qint64>> corners;
            for (const cam::GridPoint &corner : ring) {
                const cam::Point at = pointOf(corner);
                const std::pair<qint64, qint64> here(qRound64((at.x - m_frame.left) / 1000.0),
                                                     qRound64((m_frame.top - at.y) / 1000.0));
                if (corners.empty() || here != corners.back())
                    corners.push_back(here);
            }
            if (corners.size() < 3)
                continue;
            for (std::size_t i = 0; i < corners.size(); ++i) {
                const auto from = i > 0 ? corners[i - 1] : std::pair<qint64, qint64>();
                data += i == 0 ? "M" : i == 1 ? "l" : " ";
                data += QByteArray::number(corners[i].first - from.first) + ' ' +
                        QByteArray::number(corners[i].second - from.second);
            }
            data += 'z';
        }
        if (!data.isEmpty())
            m_text += "<path d=\"" + data + "\"/>\n";
    }
    void mark(cam::Point at) override
    {
        m_text += "<circle cx=\"" + number(at.x - m_frame.left) + "\" cy=\"" + number(m_frame.top - at.y) +
                  "\" r=\"" + number(markRadius * m_pixel) + "\" fill=\"none\" stroke=\"" + m_color +
                  "\" stroke-width=\"" + number(1.5 * m_pixel) + "\"/>\n";
    }
    void end() override { m_text += "</g>\n"; }
    void save() override
    {
        // flush() sees a full disk, commit() does not.
        QSaveFile file(m_file);
        m_text += "</svg>\n";
        if (!file.open(QIODevice::WriteOnly) || file.write(m_text) != m_text.size() || !file.flush() ||
            !file.commit())
            cannotWrite(file);
    }

private:
    static QByteArray number(double nanometres) { return QByteArray::number(nanometres / 1000.0, 'f', 1); }

    QString m_file;
    Frame m_frame;
    QByteArray m_text, m_color;
};

} // namespace

std::unique_ptr<Plot> makePlot(const QString &file, const cam::GridBox &extent, const PictureSize &size,
                               const QColor &background)
{
    const Frame frame = frameOf(extent);
    constexpr double usual = 2000.0, most = 16000.0, mostInAll = 100e6; // pixels
    double scale = usual / std::max(frame.width, frame.height);         // pixels a nanometre
    if (size.pixelsPerMillimetre > 0.0)
        scale = size.pixelsPerMillimetre / millimetre;
    else if (size.width > 0)
        scale = size.width / frame.width;
    const double width = std::max(1.0, std::round(frame.width * scale)),
                 height = std::max(1.0, std::round(frame.height * scale));
    if (!(width <= most && height <= most && width * height <= mostInAll))
        throw std::runtime_error(
            QString("a picture of %1 x %2 pixels; expected at most %3 a side, and %4 million")
                .arg(width, 0, 'f', 0)
                .arg(height, 0, 'f', 0)
                .arg(most)
                .arg(mostInAll / 1e6)
                .toStdString());
    const QSize pixels{int(width), int(height)};
    if (file.endsWith(".svg", Qt::CaseInsensitive))
        return std::make_unique<SvgPlot>(file, frame, pixels,
                                         size.pixelsPerMillimetre == 0.0 && size.width == 0, background);
    return std::make_unique<PngPlot>(file, frame, pixels, background);
}

} // namespace convert
