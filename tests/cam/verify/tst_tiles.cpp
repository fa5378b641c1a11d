// Pictures resolved piece by piece: what the pieces cover, and how often paints are drawn for it.
#include "cam/verify/tiles.h"

#include "cam/polygon/arrangement.h"
#include "cam/verify/corners.h"

#include <QtTest>

#include <cmath>
#include <random>

using namespace cam::verify;
using cam::GridBox;
using cam::GridPoint;
using cam::GridRing;

namespace {

// Discs and other rings, counting how often each is drawn.
class Discs : public Picture
{
public:
    void add(GridRing ring)
    {
        Paint paint;
        paint.box.add(ring);
        paint.corners = static_cast<std::uint32_t>(ring.size());
        m_paints.push_back(paint);
        all.push_back(std::move(ring));
    }
    void add(GridPoint center, double radius, int corners)
    {
        GridRing ring;
        for (int i = 0; i < corners; ++i) {
            const double angle = 6.283185307179586 * i / corners;
            ring.push_back({center.x + std::llround(radius * std::cos(angle)),
                            center.y + std::llround(radius * std::sin(angle))});
        }
        add(std::move(ring));
    }
    void rings(std::uint32_t paint, std::vector<GridRing> &rings) override
    {
        ++drawn;
        rings.push_back(all[paint]);
    }

    std::vector<GridRing> all;
    int drawn = 0;
};

double areaOf(const std::vector<GridRing> &rings)
{
    double sum = 0.0;
    for (const GridRing &ring : rings)
        sum += cam::doubledArea(ring) / 2.0;
    return sum;
}

double areaByTiles(Picture &picture, std::vector<GridBox> where)
{
    double sum = 0.0;
    forEachTile({&picture}, std::move(where), 1000, [&sum](const Tile &tile) {
        std::vector<GridRing> here = tile.areas[0];
        clip(here, tile.box);
        sum += areaOf(cam::combined(cam::BooleanOperation::Union, here, {}));
    });
    return sum;
}

} // namespace

class tst_Tiles : public QObject
{
    Q_OBJECT

private slots:
    void coverThePicture();
    void coverWhatIsAskedFor();
    void drawPaintsFewTimes();
    void leaveOutWhatHasOnlyItsBoxThere();
};

void tst_Tiles::coverThePicture()
{
    Discs picture;
    std::mt19937 random(1);
    std::uniform_int_distribution<int> place(0, 3000000), radius(5000, 200000);
    for (int i = 0; i < 400; ++i)
        picture.add({place(random), place(random)}, radius(random), 48);
    const double whole = areaOf(cam::combined(cam::BooleanOperation::Union, picture.all, {}));
    const double byTiles = areaByTiles(picture, {});
    // Crossings with the sides of tiles are rounded.
    QVERIFY2(std::fabs(byTiles - whole) < 1e-6 * whole,
             qPrintable(QString::number(byTiles / whole, 'g', 12)));
}

void tst_Tiles::coverWhatIsAskedFor()
{
    Discs picture;
    for (int i = 0; i < 100; ++i)
        picture.add({i * 100000, 0}, 40000.0, 48);
    const double one = areaOf({picture.all[0]});
    const double three =
        areaByTiles(picture, {picture.paints()[3].box, picture.paints()[50].box, picture.paints()[51].box});
    QVERIFY2(std::fabs(three - 3.0 * one) < 1e-6 * one, qPrintable(QString::number(three / one)));
}

// Strokes of a filled drawing lie over each other by the thousand: tiles cannot part them.
void tst_Tiles::drawPaintsFewTimes()
{
    Discs picture;
    std::mt19937 random(2);
    std::uniform_int_distribution<int> place(0, 100000);
    constexpr int count = 300;
    for (int i = 0; i < count; ++i)
        picture.add({place(random), place(random)}, 60000.0, 64);
    areaByTiles(picture, {});
    QVERIFY2(picture.drawn <= 4 * count, qPrintable(QString("%1 drawn").arg(picture.drawn)));
}

// Slanted strokes beside each other: every tile lies in the boxes of all of them.
void tst_Tiles::leaveOutWhatHasOnlyItsBoxThere()
{
    Discs picture;
    for (int i = 0; i < 500; ++i) {
        const std::int64_t x = i * 10000;
        picture.add(GridRing{{x, 0}, {x + 1000, 0}, {x + 10001000, 10000000}, {x + 10000000, 10000000}});
    }
    int tiles = 0;
    double sum = 0.0;
    forEachTile({&picture}, {}, 1000, [&](const Tile &tile) {
        if (++tiles > 1000)
            QFAIL("too many tiles");
        std::vector<GridRing> here = tile.areas[0];
        clip(here, tile.box);
        sum += areaOf(here);
    });
    QVERIFY(std::fabs(sum / (500.0 * 1000.0 * 10000000.0) - 1.0) < 1e-3);
}

QTEST_APPLESS_MAIN(tst_Tiles)
#include "tst_tiles.moc"
