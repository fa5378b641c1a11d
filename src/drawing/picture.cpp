#include "drawing/picture.h"

#include <algorithm>
#include <cmath>

namespace drawing {

using cam::Transform;

namespace {

constexpr int tileSide = 256; // pixels

// `share` of 255, rounded.
inline unsigned part(unsigned value, unsigned share)
{
    const unsigned product = value * share + 128;
    return (product + (product >> 8)) >> 8;
}

} // namespace

Transform Viewport::toPixels() const
{
    const double scale = 1.0 / pixel;
    return Transform::translation(-center)
        .then(Transform::scaling(mirrored ? -scale : scale, -scale))
        .then(Transform::translation({size.width() / 2.0, size.height() / 2.0}));
}

Viewport Viewport::showing(const cam::Box &box, const QSize &size, double margin)
{
    Viewport viewport;
    viewport.size = size;
    if (box.isEmpty() || size.isEmpty())
        return viewport;
    viewport.center = (box.low + box.high) * 0.5;
    const double room = 1.0 - 2.0 * margin;
    viewport.pixel = std::max({(box.high.x - box.low.x) / (room * size.width()),
                               (box.high.y - box.low.y) / (room * size.height()), 1.0});
    return viewport;
}

QImage coverage(const Scene &scene, const Viewport &viewport, const DrawMode &mode)
{
    Canvas canvas(viewport.size.width(), viewport.size.height());
    scene.draw(canvas, viewport.toPixels().then(Transform::scaling(Canvas::samples, Canvas::samples)), mode);
    QImage image(viewport.size, QImage::Format_Grayscale8);
    for (int y = 0; y < image.height(); ++y)
        canvas.levels(image.scanLine(y), y);
    return image;
}

void blend(QImage &picture, const QImage &coverage, const QColor &color, double opacity)
{
    const auto opaque = static_cast<unsigned>(std::lround(255.0 * std::min(1.0, std::max(0.0, opacity))));
    const auto red = static_cast<unsigned>(color.red()), green = static_cast<unsigned>(color.green()),
               blue = static_cast<unsigned>(color.blue());
    for (int y = 0; y < picture.height(); ++y) {
        auto *const line = reinterpret_cast<QRgb *>(picture.scanLine(y));
        const uchar *const covered = coverage.constScanLine(y);
        for (int x = 0; x < picture.width(); ++x) {
            if (covered[x] == 0)
                continue;
            const unsigned over = part(covered[x], opaque), under = 255 - over;
            const QRgb below = line[x];
            line[x] =
                qRgba(static_cast<int>(part(red, over) + part(static_cast<unsigned>(qRed(below)), under)),
                      static_cast<int>(part(green, over) + part(static_cast<unsigned>(qGreen(below)), under)),
                      static_cast<int>(part(blue, over) + part(static_cast<unsigned>(qBlue(below)), under)),
                      static_cast<int>(over + part(static_cast<unsigned>(qAlpha(below)), under)));
        }
    }
}

QImage picture(const std::vector<ColoredScene> &scenes, const Viewport &viewport, const QColor &background,
               const DrawMode &mode)
{
    QImage result(viewport.size, QImage::Format_ARGB32_Premultiplied);
    result.fill(background);
    const Transform toPixels = viewport.toPixels();
    for (int top = 0; top < result.height(); top += tileSide) {
        for (int left = 0; left < result.width(); left += tileSide) {
            const QRect part = QRect(left, top, tileSide, tileSide) & result.rect();
            QImage tile = result.copy(part);
            for (const ColoredScene &scene : scenes) {
                Canvas canvas(part.width(), part.height());
                const Transform toSamples = toPixels.then(Transform::translation({-1.0 * left, -1.0 * top}))
                                                .then(Transform::scaling(Canvas::samples, Canvas::samples));
                scene.scene->draw(canvas, toSamples, mode);
                QImage covered(part.size(), QImage::Format_Grayscale8);
                for (int y = 0; y < covered.height(); ++y)
                    canvas.levels(covered.scanLine(y), y);
                blend(tile, covered, scene.color, scene.opacity);
            }
            for (int y = 0; y < tile.height(); ++y)
                std::copy_n(reinterpret_cast<const QRgb *>(tile.constScanLine(y)), tile.width(),
                            reinterpret_cast<QRgb *>(result.scanLine(top + y)) + left);
        }
    }
    return result;
}

} // namespace drawing
