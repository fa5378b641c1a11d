// What surfaces and symbols look like as regions of a file: that they cover what their contours say, in
// whatever order these come, and that every contour goes around each place once at most.
#include "cam/gerber/gerberwriter.h"
#include "tests/cam/gerber/shapesampling.h"
#include "tests/cam/gerber/writtenregions.h"
#include "tests/cam/support/layerbuilding.h"

#include <QtTest>

#include <QRegularExpression>
#include <QTemporaryDir>

#include <random>

using cam::ContourPool;
using cam::LayerImage;
using cam::Point;
using testing::addPad;
using testing::addRectangle;
using testing::addSurface;
using testing::at;
using testing::emptyLayer;
using testing::symbol;
using testing::WrittenRegions;

namespace {

QString written(const LayerImage &image, cam::ExportOptions options = {})
{
    const QTemporaryDir folder;
    const QString path = folder.path() + "/layer.gerber";
    options.file = path.toStdString();
    cam::writeGerber(image, options);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

LayerImage layerOf(const ContourPool &contours)
{
    LayerImage image = emptyLayer();
    for (std::size_t i = 0; i < contours.size(); ++i)
        image.steps[0].features.contours.add(contours[i], cam::Transform());
    addSurface(image.steps[0].features, 0);
    return image;
}

// Contours of a surface, boxed so that they can be put into another order.
ContourPool shuffled(const ContourPool &contours, std::mt19937 &random)
{
    std::vector<std::size_t> order(contours.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    for (std::size_t i = order.size(); i > 1; --i)
        std::swap(order[i - 1], order[random() % i]);
    ContourPool result;
    for (const std::size_t i : order)
        result.add(contours[i], cam::Transform());
    return result;
}

// Rounding moves edges by a nanometre, and arcs become corners where contours meet.
bool isNearAnEdge(const ContourPool &contours, Point p)
{
    for (std::size_t i = 0; i < contours.size(); ++i) {
        const std::vector<Point> corners = testing::cornersOf(contours[i]);
        for (std::size_t k = 0; k < corners.size(); ++k) {
            const Point a = corners[k], along = corners[(k + 1) % corners.size()] - a;
            const double reach = cam::dot(along, along);
            const double share = reach > 0.0 ? std::clamp(cam::dot(p - a, along) / reach, 0.0, 1.0) : 0.0;
            if (cam::distance(p, a + along * share) < 200.0)
                return true;
        }
    }
    return false;
}

// Compares the file with the contours at random places. What differs, or nothing.
QString difference(const ContourPool &contours, const WrittenRegions &regions, std::mt19937 &random,
                   double reach)
{
    const testing::SampledShape shape(contours);
    std::uniform_real_distribution<double> place(-reach, reach);
    for (int i = 0; i < 200; ++i) {
        const Point p = at(place(random), place(random));
        if (shape.isDark(p) != regions.isDark(p) && !isNearAnEdge(contours, p))
            return QString("at %1, %2 um the file is %3")
                .arg(p.x / testing::micrometre)
                .arg(p.y / testing::micrometre)
                .arg(shape.isDark(p) ? "clear" : "dark");
    }
    return {};
}

void addRing(ContourPool &pool, double x, double y, double outer, double inner)
{
    pool.addCircle(at(x, y), outer * testing::micrometre, false);
    pool.addCircle(at(x, y), inner * testing::micrometre, true);
}

const char *const symbols[] = {"r300",
                               "s300",
                               "rect300x200",
                               "rect300x200xr50",
                               "rect300x200xr50x13",
                               "rect300x200xc50x2",
                               "oval300x200",
                               "di300x200",
                               "oct300x200x50",
                               "el300x200",
                               "donut_r300x200",
                               "donut_s300x200",
                               "donut_s300x200xr80",
                               "donut_sr300x200",
                               "donut_rc300x200x40",
                               "donut_rc300x200x40xr60x24",
                               "donut_o300x200x40",
                               "hex_l300x200x60",
                               "hex_s300x200x60",
                               "bfr300",
                               "bfs300",
                               "tri300x200",
                               "oval_h300x200",
                               "oval_h60x200",
                               "thr300x200x45x4x50",
                               "thr300x220x20x3x40",
                               "ths300x200x45x4x50",
                               "ths300x200x30x3x50",
                               "ths300x100x0x4x120",
                               "s_ths300x200x45x4x50",
                               "s_ths300x200x0x4x50xr80",
                               "s_tho300x200x45x4x50",
                               "s_thr300x200x45x4x40",
                               "sr_ths300x200x45x4x50",
                               "rc_ths300x200x45x4x50x40",
                               "rc_tho300x200x0x2x50x40",
                               "o_ths300x200x45x4x50x40",
                               "oblong_ths300x200x90x2x50x40xr",
                               "oblong_ths300x200x90x2x50x40xs",
                               "moire20x30x2x10x300x20",
                               "hole200xpx1x1"};

} // namespace

class tst_WrittenRegions : public QObject
{
    Q_OBJECT
private slots:
    void holesBehindAllIslandsKeepTheirPlace();
    void islandsInHolesAreDarkInAnyOrder();
    void holeOfTwoIslandsIsDarkWhereBothCover();
    void holeThatLeavesItsIslandIsClear();
    void contourThatCrossesItselfIsTakenApart();
    void contourWithASlitKeepsItsArcs();
    void nestedContoursInAnyOrder_data();
    void nestedContoursInAnyOrder();
    void contoursThatMeetInAnyOrder_data();
    void contoursThatMeetInAnyOrder();
    void symbolsAreWeaklySimple_data();
    void symbolsAreWeaklySimple();
    void thousandsOfHolesBehindTheirIslandsTakeNoQuadraticTime();
};

void tst_WrittenRegions::holesBehindAllIslandsKeepTheirPlace()
{
    ContourPool pool;
    addRectangle(pool, 0, 0, 1000, 1000);
    addRectangle(pool, 2000, 0, 1000, 1000);
    pool.addCircle(at(500, 500), 100 * testing::micrometre, true);
    pool.addCircle(at(2500, 500), 100 * testing::micrometre, true);
    const QString text = written(layerOf(pool));
    const WrittenRegions regions(text);
    QCOMPARE(regions.list().size(), std::size_t(2));
    for (const double x : {500.0, 2500.0}) {
        QVERIFY(!regions.isDark(at(x, 500)));
        QVERIFY(regions.isDark(at(x, 650)));
    }
    QCOMPARE(regions.faults(), QString());
    QVERIFY(text.contains("G02*") || text.contains("G03*")); // true arcs
}

void tst_WrittenRegions::islandsInHolesAreDarkInAnyOrder()
{
    ContourPool pool;
    for (int i = 0; i < 3; ++i)
        addRing(pool, 0, 0, 1000 - 300 * i, 850 - 300 * i);
    std::mt19937 random(1);
    for (int i = 0; i < 10; ++i) {
        const WrittenRegions regions(written(layerOf(shuffled(pool, random))));
        QCOMPARE(regions.list().size(), std::size_t(3));
        for (const double x : {925.0, 625.0, 325.0})
            QVERIFY(regions.isDark(at(x, 1)) && !regions.isDark(at(x - 150, 1)));
        QCOMPARE(regions.faults(), QString());
    }
}

void tst_WrittenRegions::holeOfTwoIslandsIsDarkWhereBothCover()
{
    ContourPool pool;
    addRectangle(pool, 0, 0, 1000, 1000);
    addRectangle(pool, 500, 0, 1000, 1000);
    addRectangle(pool, 250, 250, 1000, 500, true);
    const WrittenRegions regions(written(layerOf(pool)));
    QVERIFY(!regions.isDark(at(400, 500)));
    QVERIFY(regions.isDark(at(750, 500)));
    QVERIFY(!regions.isDark(at(1100, 500)));
    QCOMPARE(regions.faults(), QString());
}

void tst_WrittenRegions::holeThatLeavesItsIslandIsClear()
{
    ContourPool pool; // an L, and a hole in its box that crosses both of its inner edges
    const Point corners[] = {at(0, 0), at(1000, 0), at(1000, 300), at(300, 300), at(300, 1000), at(0, 1000)};
    pool.addPolygon(corners, 6, false);
    addRectangle(pool, 200, 200, 300, 300, true);
    const WrittenRegions regions(written(layerOf(pool)));
    QVERIFY(!regions.isDark(at(250, 250)));
    QVERIFY(!regions.isDark(at(400, 400)));
    QVERIFY(regions.isDark(at(100, 100)));
    QCOMPARE(regions.faults(), QString());
}

void tst_WrittenRegions::contourThatCrossesItselfIsTakenApart()
{
    ContourPool pool; // a loop that goes around its middle twice
    const Point corners[] = {at(0, 0),     at(1000, 0),   at(1000, 1000), at(0, 1000),
                             at(0, -200),  at(600, -200), at(600, 600),   at(200, 600),
                             at(200, 300), at(-300, 300), at(-300, 0)};
    pool.addPolygon(corners, 11, false);
    const WrittenRegions regions(written(layerOf(pool)));
    QVERIFY(regions.list().size() >= 1);
    QVERIFY(regions.isDark(at(400, 400)));
    QCOMPARE(regions.faults(), QString());
}

void tst_WrittenRegions::contourWithASlitKeepsItsArcs()
{
    ContourPool pool; // a hole of the job's own making: out along a slit, around, and back
    pool.begin(at(0, 0), false);
    pool.lineTo(at(1000, 0));
    pool.lineTo(at(1000, 1000));
    pool.lineTo(at(0, 1000));
    pool.lineTo(at(0, 500));
    pool.lineTo(at(400, 500));
    pool.arcTo(at(400, 500), at(500, 500), true);
    pool.lineTo(at(0, 500));
    pool.end();
    pool.addCircle(at(800, 500.25), 50 * testing::micrometre, true); // right of both sides of the slit
    pool.addCircle(at(200, 500.5), 10 * testing::micrometre, true);  // upon it
    const QString text = written(layerOf(pool));
    const WrittenRegions regions(text);
    QVERIFY(!regions.isDark(at(500, 500)) && !regions.isDark(at(800, 500)) && !regions.isDark(at(200, 505)));
    QVERIFY(regions.isDark(at(100, 100)));
    QCOMPARE(regions.faults(), QString());

    ContourPool alone;
    alone.add(pool[0], cam::Transform());
    alone.add(pool[1], cam::Transform());
    const WrittenRegions rest(written(layerOf(alone)));
    QVERIFY(!rest.isDark(at(500, 500)) && !rest.isDark(at(800, 500)) && rest.isDark(at(200, 505)));
    QCOMPARE(rest.faults(), QString());
    // A circle in two halves, and one with its left half split at the tip.
    QCOMPARE(written(layerOf(alone)).count(QRegularExpression("I-?[0-9]+J")), 5);
}

void tst_WrittenRegions::nestedContoursInAnyOrder_data()
{
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 15; ++seed)
        QTest::newRow(qPrintable(QString::number(seed))) << seed;
}

// Contours that do not touch: rings in rings, some of them with islands around islands.
void tst_WrittenRegions::nestedContoursInAnyOrder()
{
    QFETCH(unsigned, seed);
    std::mt19937 random(seed);
    ContourPool pool;
    const auto chance = [&random](unsigned of) { return random() % of == 0; };
    struct Nest
    {
        double x, y, reach;
        bool isHole;
    };
    std::vector<Nest> nests{{0, 0, 4000, true}};
    for (std::size_t n = 0; n < nests.size() && pool.size() < 60; ++n) {
        const Nest nest = nests[n];
        if (nest.reach < 60)
            continue;
        for (const int quarter : {0, 1, 2, 3}) {
            if (chance(4))
                continue;
            Nest child = nest;
            child.reach = nest.reach * (0.2 + 0.02 * static_cast<double>(random() % 8));
            child.x += (quarter % 2 == 0 ? -0.34 : 0.34) * nest.reach;
            child.y += (quarter / 2 == 0 ? -0.34 : 0.34) * nest.reach;
            child.isHole = chance(5) ? nest.isHole : !nest.isHole;
            if (chance(2))
                pool.addCircle(at(child.x, child.y), child.reach * testing::micrometre, child.isHole);
            else
                addRectangle(pool, child.x - child.reach, child.y - child.reach, 2 * child.reach,
                             2 * child.reach, child.isHole);
            nests.push_back(child);
        }
    }
    const ContourPool contours = shuffled(pool, random);
    const WrittenRegions regions(written(layerOf(contours)));
    QCOMPARE(regions.faults(), QString());
    QCOMPARE(difference(contours, regions, random, 4200), QString());
}

void tst_WrittenRegions::contoursThatMeetInAnyOrder_data()
{
    nestedContoursInAnyOrder_data();
}

// On a coarse grid, so that edges and corners often lie upon each other.
void tst_WrittenRegions::contoursThatMeetInAnyOrder()
{
    QFETCH(unsigned, seed);
    std::mt19937 random(seed);
    ContourPool pool;
    const auto coordinate = [&random] { return 100.0 * static_cast<double>(random() % 30); };
    for (int i = 0; i < 12; ++i) {
        const double x = coordinate() - 1500, y = coordinate() - 1500;
        const double width = 100 + coordinate() / 3, height = 100 + coordinate() / 3;
        const bool isHole = random() % 2 == 0;
        if (random() % 3 == 0)
            pool.addCircle(at(x, y), width / 2 * testing::micrometre, isHole);
        else
            addRectangle(pool, x, y, width, height, isHole);
    }
    const WrittenRegions regions(written(layerOf(pool)));
    QCOMPARE(regions.faults(), QString());
    QCOMPARE(difference(pool, regions, random, 2600), QString());
}

void tst_WrittenRegions::symbolsAreWeaklySimple_data()
{
    QTest::addColumn<bool>("negated");
    QTest::addColumn<bool>("mirrored");
    QTest::addColumn<double>("angle");
    for (const bool negated : {false, true}) {
        for (const bool mirrored : {false, true}) {
            for (const double angle : {0.0, 90.0, 33.0})
                QTest::newRow(qPrintable(
                    QString("negated %1, mirrored %2, %3 degrees").arg(negated).arg(mirrored).arg(angle)))
                    << negated << mirrored << angle;
        }
    }
}

void tst_WrittenRegions::symbolsAreWeaklySimple()
{
    QFETCH(bool, negated);
    QFETCH(bool, mirrored);
    QFETCH(double, angle);
    for (const char *name : symbols) {
        for (const bool padMirrored : {false, true}) {
            LayerImage image = emptyLayer();
            addRectangle(image.profile, -300, -300, 600, 600);
            cam::FeatureSet &set = image.steps[0].features;
            const auto square = set.contours.size();
            addRectangle(set.contours, -200, -200, 400, 400);
            addSurface(set, square, negated);
            addPad(set, symbol(image, name), at(0, 0), negated, 20.0, padMirrored); // clear, either way
            cam::ExportOptions how;
            how.negative = negated;
            how.mirror = mirrored;
            how.angle = angle;
            const WrittenRegions regions(written(image, how));
            QVERIFY2(!regions.list().empty(), name);
            QVERIFY2(regions.faults().isEmpty(), qPrintable(QString(name) + ": " + regions.faults()));
        }
    }
}

void tst_WrittenRegions::thousandsOfHolesBehindTheirIslandsTakeNoQuadraticTime()
{
    const auto seconds = [](int perRow) {
        ContourPool pool;
        for (int island = 0; island < 5; ++island)
            addRectangle(pool, island * 100.0 * (perRow + 2), 0, 100.0 * (perRow + 1), 100.0 * (perRow + 1));
        for (int island = 0; island < 5; ++island) {
            for (int i = 0; i < perRow * perRow; ++i)
                pool.addCircle(at(island * 100.0 * (perRow + 2) + 100.0 * (i % perRow + 1),
                                  100.0 * (i / perRow + 1) + 0.091 * (i % perRow)),
                               40 * testing::micrometre, true);
        }
        const LayerImage image = layerOf(pool);
        QElapsedTimer timer;
        timer.start();
        const QString text = written(image);
        return text.count("G36") == 5 ? timer.nsecsElapsed() / 1e9 : -1.0;
    };
    const double few = seconds(10), many = seconds(80); // 500 and 32 000 holes
    QVERIFY(few > 0.0 && many > 0.0);
    QVERIFY2(many < 1000.0 * few, qPrintable(QString("%1 s, then %2 s").arg(few).arg(many)));
}

QTEST_APPLESS_MAIN(tst_WrittenRegions)
#include "tst_writtenregions.moc"
