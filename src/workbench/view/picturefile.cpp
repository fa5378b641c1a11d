#include "workbench/view/picturefile.h"

#include "workbench/view/boardview.h"
#include "workbench/view/lengthunit.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFileInfo>
#include <QPainter>
#include <QSaveFile>
#if QT_CONFIG(pdf)
#include <QPdfWriter>
#endif

#include <chrono>
#include <future>

namespace {

constexpr double nanometresOfMillimetre = 1e6;

struct PictureFile
{
    Q_DECLARE_TR_FUNCTIONS(PictureFile)
};

QByteArray pngOf(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QByteArray svgOf(const QImage &image, double width, double height)
{
    return QString("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                   "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
                   "width=\"%1mm\" height=\"%2mm\" viewBox=\"0 0 %1 %2\">\n"
                   "<image width=\"%1\" height=\"%2\" preserveAspectRatio=\"none\" "
                   "xlink:href=\"data:image/png;base64,")
               .arg(width, 0, 'f', 6)
               .arg(height, 0, 'f', 6)
               .toUtf8() +
           pngOf(image).toBase64() + "\"/>\n</svg>\n";
}

#if QT_CONFIG(pdf)
QByteArray pdfOf(const QImage &image, double width, const QString &title)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setTitle(title);
    writer.setResolution(300);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageOrientation(QPageLayout::Landscape);
    writer.setPageMargins(QMarginsF(10, 10, 10, 10), QPageLayout::Millimeter);
    QPainter painter(&writer);
    const int line = painter.fontMetrics().height() * 2;
    const QSize room(writer.width(), writer.height() - line);
    const QSize size = image.size().scaled(room, Qt::KeepAspectRatio);
    painter.drawImage(QRect(QPoint((room.width() - size.width()) / 2, 0), size), image);
    const double onPaper = size.width() / 300.0 * 25.4; // millimetres
    painter.drawText(QRect(0, writer.height() - line, writer.width(), line), Qt::AlignLeft | Qt::AlignVCenter,
                     PictureFile::tr("%1     Scale %2").arg(title, scaleText(onPaper / width)));
    painter.end();
    return bytes;
}
#else
QByteArray pdfOf(const QImage &, double, const QString &)
{
    return {};
}
#endif

} // namespace

QStringList pictureFilePatterns()
{
#if QT_CONFIG(pdf)
    return {"*.png", "*.pdf", "*.svg"};
#else
    return {"*.png", "*.svg"};
#endif
}

QString savePicture(const BoardView &view, const QString &path, int factor)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (!pictureFilePatterns().contains("*." + suffix))
        return PictureFile::tr("%1: expected a name that ends in .png, .pdf or .svg").arg(path);
    drawing::Viewport viewport = view.viewport();
    viewport.size *= factor;
    viewport.pixel /= factor;
    // A copy: the view may change while events are processed below.
    const std::vector<drawing::ColoredScene> scenes = // NOLINT(performance-unnecessary-copy-initialization)
        view.scenes();
    auto drawn = std::async(std::launch::async,
                            [&] { return drawing::picture(scenes, viewport, QColor(Qt::transparent)); });
    while (drawn.wait_for(std::chrono::milliseconds(10)) != std::future_status::ready)
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    const QImage image = view.finished(drawn.get());
    const double width = viewport.size.width() * viewport.pixel / nanometresOfMillimetre;
    const double height = viewport.size.height() * viewport.pixel / nanometresOfMillimetre;
    const QByteArray bytes = suffix == "png"   ? pngOf(image)
                             : suffix == "svg" ? svgOf(image, width, height)
                                               : pdfOf(image, width, view.title());
    // flush() sees a full disk, commit() does not.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush() ||
        !file.commit())
        return PictureFile::tr("%1 cannot be written: %2").arg(path, file.errorString());
    return {};
}
