#include "workbench/view/printing.h"

#include "workbench/view/boardview.h"
#include "workbench/view/lengthunit.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPrinter>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <future>

namespace {

constexpr double nanometresOfMillimetre = 1e6;
constexpr double millimetresOfInch = 25.4;
// Lines and the scale bar are sharp beyond this; a page of A4 takes 60 MB with it.
constexpr double mostDotsPerInch = 400.0;
constexpr double footer = 12.0; // millimetres below the picture

struct Printing
{
    Q_DECLARE_TR_FUNCTIONS(Printing)
};

// Readable on white: the view's colours are made for a dark ground.
QColor onPaper(const QColor &color)
{
    return QColor::fromHsv(color.hsvHue(), color.hsvSaturation(), color.value() * 7 / 10);
}

// The layers that find room, at `dots` pixels an inch of paper.
QImage drawLayers(const BoardView &view, const PageLayout &layout, double dots)
{
    drawing::Viewport viewport = view.viewport();
    const double pixelsOfMillimetre = dots / millimetresOfInch * layout.factor;
    viewport.pixel = nanometresOfMillimetre / pixelsOfMillimetre;
    viewport.size = QSize(std::max(1, int(std::ceil(layout.printed().width() * pixelsOfMillimetre))),
                          std::max(1, int(std::ceil(layout.printed().height() * pixelsOfMillimetre))));
    std::vector<drawing::ColoredScene> scenes = view.scenes();
    for (drawing::ColoredScene &scene : scenes)
        scene.color = onPaper(scene.color);
    auto drawn =
        std::async(std::launch::async, [&] { return drawing::picture(scenes, viewport, QColor(Qt::white)); });
    while (drawn.wait_for(std::chrono::milliseconds(10)) != std::future_status::ready)
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return drawn.get();
}

// At the right end of `place`, in dots.
void drawScaleBar(QPainter &painter, const QRectF &place, const PageLayout &layout, LengthUnit unit)
{
    const double dots = painter.device()->logicalDpiX() / millimetresOfInch; // of a millimetre of paper
    const double unitOnPaper = nanometresOf(unit) / nanometresOfMillimetre * layout.factor; // millimetres
    const double length = roundLength(20.0 / unitOnPaper);                                  // in the unit
    const double across = length * unitOnPaper * dots;
    const double bottom = place.bottom() - dots;
    painter.setPen(QPen(Qt::black, 0.25 * dots));
    painter.drawLine(QPointF(place.right() - across, bottom), QPointF(place.right(), bottom));
    for (const double x : {place.right() - across, place.right()})
        painter.drawLine(QPointF(x, bottom - 1.5 * dots), QPointF(x, bottom));
    painter.drawText(QRectF(place.right() - across, place.top(), across, bottom - place.top() - dots),
                     Qt::AlignHCenter | Qt::AlignBottom | Qt::TextDontClip,
                     QString("%1 %2").arg(length).arg(nameOf(unit)));
}

} // namespace

QSizeF PageLayout::printed() const
{
    return seen.boundedTo(room / factor);
}

bool PageLayout::isCut() const
{
    return printed().width() < seen.width() * 0.999 || printed().height() < seen.height() * 0.999;
}

PageLayout pageLayout(const BoardView &view, const QPrinter &printer, double factor)
{
    PageLayout layout;
    layout.room = printer.pageLayout().paintRect(QPageLayout::Millimeter).size() - QSizeF(0.0, footer);
    const drawing::Viewport viewport = view.viewport();
    layout.seen = QSizeF(viewport.size) * (viewport.pixel / nanometresOfMillimetre);
    layout.factor = factor > 0.0 ? factor
                                 : std::min(layout.room.width() / layout.seen.width(),
                                            layout.room.height() / layout.seen.height());
    return layout;
}

void paintPage(const BoardView &view, QPainter &painter, const PageLayout &layout, const QString &title)
{
    const double dotsPerInch = painter.device()->logicalDpiX();
    const double device = dotsPerInch / millimetresOfInch; // dots of a millimetre of paper
    const double dots = std::min(mostDotsPerInch, dotsPerInch);
    const QImage layers = drawLayers(view, layout, dots);
    const QSizeF size = QSizeF(layers.size()) * (dotsPerInch / dots), room = layout.room * device;
    const QRectF place(QPointF(std::max(0.0, (room.width() - size.width()) / 2.0), 0.0), size);
    painter.drawImage(place, layers);
    painter.save();
    painter.setClipRect(place);
    painter.translate(place.center());
    const double pixel = view.pixel() * view.devicePixelRatioF() / nanometresOfMillimetre; // of the screen
    painter.scale(pixel * layout.factor * device, pixel * layout.factor * device);
    view.paintMarks(painter, Qt::black);
    painter.restore();

    const QRectF below(0.0, room.height() + 2.0 * device, room.width(), (footer - 2.0) * device);
    painter.setPen(Qt::black);
    QString text = title + "\n" + Printing::tr("Scale %1").arg(scaleText(layout.factor));
    if (view.isMirrored())
        text += "     " + Printing::tr("seen from below");
    painter.drawText(below, Qt::AlignLeft | Qt::AlignBottom, text);
    drawScaleBar(painter, below, layout, view.unit());
}

QString printView(const BoardView &view, QPrinter &printer, const PageLayout &layout, const QString &title)
{
    printer.setDocName(title);
    QPainter painter;
    if (!painter.begin(&printer))
        return Printing::tr("Nothing can be printed on %1.")
            .arg(printer.outputFileName().isEmpty() ? printer.printerName() : printer.outputFileName());
    paintPage(view, painter, layout, title);
    return painter.end() ? QString() : Printing::tr("The page was not printed.");
}
