// Draws scenes in tiles, in background threads: what is seen first, and nothing that is not seen.
#pragma once

#include "drawing/picture.h"

#include <QImage>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QThreadPool>

#include <map>
#include <memory>
#include <vector>

class TilePainter : public QObject
{
    Q_OBJECT

public:
    static constexpr int side = 256; // pixels

    explicit TilePainter(QObject *parent = nullptr);
    // Ends what is being drawn.
    ~TilePainter() override;

    // The scenes, the lowest first. Tiles of the earlier ones stay until theirs are drawn.
    void setScenes(const std::vector<drawing::ColoredScene> &scenes);
    // Nanometres of a pixel, and whether x runs to the left. Pixel (0, 0) has the plane's origin at its upper
    // left corner; tile (i, j) begins at pixel (i * side, j * side). Forgets all tiles of another zoom.
    void setZoom(double pixel, bool mirrored);
    // Draws the tiles in `tiles` (their numbers), from the middle outwards, and no others.
    void want(const QRect &tiles);

    // Null while it has not been drawn. Format_ARGB32_Premultiplied.
    const QImage *tile(QPoint number) const;
    // Whether all that is wanted is drawn.
    bool isDone() const;

signals:
    // A tile is there.
    void drawn();
    // From a thread that draws.
    void finished(const QPoint &number, const QImage &tile, quint64 generation);

private:
    struct Shared;
    class Worker;
    struct Tile
    {
        QImage image;
        quint64 generation = 0; // of the scenes that it shows
    };
    struct Less
    {
        bool operator()(QPoint a, QPoint b) const { return a.y() != b.y() ? a.y() < b.y() : a.x() < b.x(); }
    };

    void take(const QPoint &number, const QImage &tile, quint64 generation);
    void queueMissing();

    std::shared_ptr<Shared> m_shared;
    QThreadPool m_pool;
    std::map<QPoint, Tile, Less> m_tiles;
    QRect m_wanted;
    quint64 m_firstOfZoom = 0; // the generation that the zoom began with
};
