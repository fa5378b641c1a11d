// Workers take tiles from one list; a generation is one state of scenes and zoom, and what is drawn for an
// earlier one ends at its next check.
#include "workbench/view/tilepainter.h"

#include "platform/thread.h"

#include <QCache>
#include <QRunnable>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <mutex>

namespace {

const int cachedKilobytes = 48 * 1024; // of what scenes cover
const int keptTiles = 160;

// How much a scene covers of a tile, at some zoom.
struct CoverageKey
{
    quint64 scene;
    double pixel;
    bool mirrored;
    QPoint number;
};

bool operator==(const CoverageKey &a, const CoverageKey &b)
{
    return a.scene == b.scene && a.pixel == b.pixel && a.mirrored == b.mirrored && a.number == b.number;
}

uint qHash(const CoverageKey &key, uint seed = 0)
{
    return ::qHash(key.scene, seed) ^ ::qHash(key.pixel) ^ uint(key.number.x() * 73856093) ^
           uint(key.number.y() * 19349663) ^ uint(key.mirrored);
}

} // namespace

struct TilePainter::Shared
{
    std::mutex mutex;
    std::vector<QPoint> queue; // the next one last
    std::vector<drawing::ColoredScene> scenes;
    double pixel = 1e5;
    bool mirrored = false;
    int workers = 0;
    QCache<CoverageKey, QImage> covered{cachedKilobytes};
    std::atomic<quint64> generation{1};
};

class TilePainter::Worker : public QRunnable
{
public:
    Worker(TilePainter &painter, std::shared_ptr<Shared> shared)
        : m_painter(painter), m_shared(std::move(shared))
    {
    }

    void run() override
    {
        const platform::BackgroundWork background;
        for (;;) {
            std::unique_lock<std::mutex> lock(m_shared->mutex);
            if (m_shared->queue.empty()) {
                --m_shared->workers;
                return;
            }
            m_number = m_shared->queue.back();
            m_shared->queue.pop_back();
            m_scenes = m_shared->scenes;
            m_pixel = m_shared->pixel;
            m_mirrored = m_shared->mirrored;
            m_generation = m_shared->generation;
            lock.unlock();
            try {
                const QImage tile = draw();
                emit m_painter.finished(m_number, tile, m_generation);
            } catch (const drawing::Cancelled &) { // another view is wanted
            }
            m_scenes.clear();
            lock.lock();
        }
    }

private:
    QImage draw()
    {
        QImage tile(side, side, QImage::Format_ARGB32_Premultiplied);
        tile.fill(Qt::transparent);
        for (const drawing::ColoredScene &scene : m_scenes)
            drawing::blend(tile, coverageOf(*scene.scene), scene.color, scene.opacity);
        return tile;
    }

    QImage coverageOf(const drawing::Scene &scene)
    {
        const CoverageKey key{scene.number(), m_pixel, m_mirrored, m_number};
        {
            const std::lock_guard<std::mutex> lock(m_shared->mutex);
            if (const QImage *known = m_shared->covered.object(key))
                return *known;
        }
        drawing::DrawMode mode;
        mode.check = [this] {
            if (m_shared->generation != m_generation)
                throw drawing::Cancelled();
        };
        mode.check();
        drawing::Viewport viewport;
        viewport.size = QSize(side, side);
        viewport.pixel = m_pixel;
        viewport.mirrored = m_mirrored;
        const double x = (m_number.x() + 0.5) * side * m_pixel;
        viewport.center = {m_mirrored ? -x : x, -(m_number.y() + 0.5) * side * m_pixel};
        const QImage covered = drawing::coverage(scene, viewport, mode);
        const std::lock_guard<std::mutex> lock(m_shared->mutex);
        m_shared->covered.insert(key, new QImage(covered), side * side / 1024);
        return covered;
    }

    TilePainter &m_painter;
    std::shared_ptr<Shared> m_shared;
    QPoint m_number; // of what is being drawn, as what follows
    std::vector<drawing::ColoredScene> m_scenes;
    double m_pixel = 1.0;
    bool m_mirrored = false;
    quint64 m_generation = 0;
};

TilePainter::TilePainter(QObject *parent) : QObject(parent), m_shared(new Shared)
{
    connect(this, &TilePainter::finished, this, &TilePainter::take, Qt::QueuedConnection);
}

TilePainter::~TilePainter()
{
    ++m_shared->generation;
    {
        const std::lock_guard<std::mutex> lock(m_shared->mutex);
        m_shared->queue.clear();
    }
    m_pool.waitForDone();
}

void TilePainter::setScenes(const std::vector<drawing::ColoredScene> &scenes)
{
    {
        const std::lock_guard<std::mutex> lock(m_shared->mutex);
        m_shared->scenes = scenes;
        m_shared->queue.clear();
    }
    ++m_shared->generation;
    queueMissing();
}

void TilePainter::setZoom(double pixel, bool mirrored)
{
    {
        const std::lock_guard<std::mutex> lock(m_shared->mutex);
        if (m_shared->pixel == pixel && m_shared->mirrored == mirrored)
            return;
        m_shared->pixel = pixel;
        m_shared->mirrored = mirrored;
        m_shared->queue.clear();
    }
    m_firstOfZoom = ++m_shared->generation;
    m_tiles.clear();
    m_wanted = QRect();
}

void TilePainter::want(const QRect &tiles)
{
    if (tiles == m_wanted)
        return;
    m_wanted = tiles;
    queueMissing();
}

void TilePainter::queueMissing()
{
    const quint64 generation = m_shared->generation;
    std::vector<QPoint> missing;
    for (int y = m_wanted.top(); y <= m_wanted.bottom(); ++y) {
        for (int x = m_wanted.left(); x <= m_wanted.right(); ++x) {
            const auto known = m_tiles.find(QPoint(x, y));
            if (known == m_tiles.end() || known->second.generation != generation)
                missing.emplace_back(x, y);
        }
    }
    const QPoint middle = m_wanted.center();
    std::sort(missing.begin(), missing.end(), [middle](QPoint a, QPoint b) {
        return (a - middle).manhattanLength() > (b - middle).manhattanLength();
    });
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    m_shared->queue = missing;
    while (m_shared->workers < std::min<int>(m_pool.maxThreadCount(), int(missing.size()))) {
        ++m_shared->workers;
        m_pool.start(new Worker(*this, m_shared));
    }
}

void TilePainter::take(const QPoint &number, const QImage &tile, quint64 generation)
{
    if (generation < m_firstOfZoom)
        return;
    Tile &known = m_tiles[number];
    if (known.generation > generation)
        return;
    known.image = tile;
    known.generation = generation;
    // Those that are out of sight go first.
    for (auto at = m_tiles.begin(); int(m_tiles.size()) > keptTiles && at != m_tiles.end();)
        at = m_wanted.contains(at->first) ? std::next(at) : m_tiles.erase(at);
    emit drawn();
}

const QImage *TilePainter::tile(QPoint number) const
{
    const auto known = m_tiles.find(number);
    return known == m_tiles.end() ? nullptr : &known->second.image;
}

bool TilePainter::isDone() const
{
    const quint64 generation = m_shared->generation;
    for (int y = m_wanted.top(); y <= m_wanted.bottom(); ++y) {
        for (int x = m_wanted.left(); x <= m_wanted.right(); ++x) {
            const auto known = m_tiles.find(QPoint(x, y));
            if (known == m_tiles.end() || known->second.generation != generation)
                return false;
        }
    }
    return true;
}
