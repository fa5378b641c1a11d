#include "workbench/view/componentnames.h"

#include "cam/model/steps.h"
#include "workbench/view/featurefacts.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double smallest = 7.0, largest = 15.0; // pixels, of letters
constexpr double letterWidth = 0.62;             // of a letter's height

QRectF onScreen(const cam::Box &box, const cam::Transform &map, const BoardView &view)
{
    const cam::Box shown = drawing::mapped(box, map);
    return QRectF(view.toScreen(shown.low), view.toScreen(shown.high)).normalized();
}

// Along the longer side of `box`; nothing where it would be too small to read.
void paintName(QPainter &painter, const QRectF &box, const QString &name, const QColor &color)
{
    const bool isUpright = box.height() > 1.5 * box.width();
    const double along = isUpright ? box.height() : box.width();
    const double across = isUpright ? box.width() : box.height();
    const double size =
        std::min({0.8 * across, 0.95 * along / (letterWidth * std::max(1, name.size())), largest});
    if (size < smallest)
        return;
    QFont font = painter.font();
    font.setPixelSize(int(size));
    painter.setFont(font);
    painter.save();
    painter.translate(box.center());
    if (isUpright)
        painter.rotate(-90.0);
    const QRectF place(-along, -across, 2.0 * along, 2.0 * across);
    painter.setPen(QColor(24, 28, 32)); // a rim, so that it can be read over copper
    for (const QPointF &offset : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)})
        painter.drawText(place.translated(offset), Qt::AlignCenter, name);
    painter.setPen(color);
    painter.drawText(place, Qt::AlignCenter, name);
    painter.restore();
}

} // namespace

void ComponentNames::paint(QPainter &painter, const BoardView &view)
{
    const QRectF seen = view.rect();
    for (const Layer &layer : m_layers) {
        const ComponentScene &scene = *layer.scene;
        QColor color = layer.color.lighter(130);
        const auto paintStep = [&](std::uint32_t step, const cam::Transform &place) {
            const cam::Transform map = place.then(scene.placement());
            for (const ComponentScene::Placed &placed : scene.components()[step]) {
                const QRectF box = onScreen(placed.box, map, view);
                if (std::max(box.width(), box.height()) >= smallest && box.intersects(seen))
                    paintName(painter, box, fileText(placed.component->name), color);
            }
        };
        cam::forEachStep(scene.image(), cam::Copies::All, paintStep);
    }
}
