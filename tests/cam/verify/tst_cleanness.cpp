// Whether rings cover each place once: by a grid of edges, against the area that an exact sweep finds.
#include "cam/verify/cleanness.h"

#include "cam/polygon/arrangement.h"

#include <QtTest>

#include <cmath>
#include <random>

using cam::GridPoint;
using cam::GridRing;
using Rings = std::vector<GridRing>;
Q_DECLARE_METATYPE(Rings)

namespace {

GridRing rectangle(std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height)
{
    return {{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}};
}

GridRing hole(GridRing ring)
{
    std::reverse(ring.begin(), ring.end());
    return ring;
}

// A star: it never crosses itself.
GridRing star(std::mt19937 &random, GridPoint center, double radius, int corners)
{
    std::uniform_real_distribution<double> share(0.5, 1.0);
    GridRing ring;
    for (int i = 0; i < corners; ++i) {
        const double angle = 6.283185307179586 * i / corners, here = radius * share(random);
        ring.push_back({center.x + std::llround(here * std::cos(angle)),
                        center.y + std::llround(here * std::sin(angle))});
    }
    return ring;
}

bool isCleanBySweep(const Rings &rings)
{
    return std::fabs(cam::repeatedArea(rings)) <= 200.0 * 200.0;
}

} // namespace

class tst_Cleanness : public QObject
{
    Q_OBJECT

private slots:
    void isToldApart_data();
    void isToldApart();
    void agreesWithTheSweep();
    void holdsForLinkedHoles();
};

void tst_Cleanness::isToldApart_data()
{
    QTest::addColumn<Rings>("rings");
    QTest::addColumn<bool>("isClean");
    const GridRing large = rectangle(0, 0, 100000, 100000), small = rectangle(20000, 20000, 9000, 9000);
    QTest::newRow("nothing") << Rings{} << true;
    QTest::newRow("an island") << Rings{large} << true;
    QTest::newRow("a hole without an island") << Rings{hole(large)} << false;
    QTest::newRow("a hole in an island") << Rings{large, hole(small)} << true;
    QTest::newRow("the hole first") << Rings{hole(small), large} << true;
    QTest::newRow("a hole beside the island") << Rings{small, hole(rectangle(50000, 0, 9000, 9000))} << false;
    QTest::newRow("an island in an island") << Rings{large, small} << false;
    QTest::newRow("an island in a hole")
        << Rings{large, hole(rectangle(10000, 10000, 50000, 50000)), small} << true;
    QTest::newRow("a hole in a hole")
        << Rings{large, hole(rectangle(10000, 10000, 50000, 50000)), hole(small)} << false;
    QTest::newRow("islands over each other") << Rings{large, rectangle(90000, 90000, 30000, 30000)} << false;
    QTest::newRow("islands side by side") << Rings{large, rectangle(100000, 20000, 30000, 30000)} << true;
    QTest::newRow("islands that touch in a corner")
        << Rings{large, rectangle(100000, 100000, 30000, 30000)} << true;
    QTest::newRow("the same twice") << Rings{large, large} << false;
    QTest::newRow("nothing is left") << Rings{large, hole(large)} << true;
    QTest::newRow("crossed by a slit")
        << Rings{{{0, 0}, {50000, 0}, {50000, 20000}, {50000, 0}, {90000, 0}, {90000, 90000}, {0, 90000}}}
        << true;
    QTest::newRow("a spike outwards")
        << Rings{{{0, 0}, {50000, 0}, {50000, -20000}, {50000, 0}, {90000, 0}, {90000, 90000}, {0, 90000}}}
        << true;
    QTest::newRow("an eight") << Rings{{{0, 0}, {90000, 90000}, {90000, 0}, {0, 90000}}} << false;
    QTest::newRow("twice around") << Rings{{{0, 0},
                                            {90000, 0},
                                            {90000, 90000},
                                            {0, 90000},
                                            {0, 10000},
                                            {70000, 10000},
                                            {70000, 70000},
                                            {-20000, 70000},
                                            {-20000, 0}}}
                                  << false;
    QTest::newRow("a loop from a corner") << Rings{{{0, 0},
                                                    {50000, 0},
                                                    {50000, -30000},
                                                    {80000, -30000},
                                                    {50000, 0},
                                                    {90000, 0},
                                                    {90000, 90000},
                                                    {0, 90000}}}
                                          << true;
    QTest::newRow("a loop the wrong way round from a corner") << Rings{{{0, 0},
                                                                        {50000, 0},
                                                                        {80000, -30000},
                                                                        {50000, -30000},
                                                                        {50000, 0},
                                                                        {90000, 0},
                                                                        {90000, 90000},
                                                                        {0, 90000}}}
                                                              << false;
    // Crossed at a corner of both, where no edges cross.
    QTest::newRow("over each other through corners")
        << Rings{{{0, 0}, {40000, 0}, {40000, 20000}, {40000, 40000}, {0, 40000}},
                 {{20000, 10000}, {40000, 20000}, {60000, 20000}, {60000, 30000}, {20000, 30000}}}
        << false;
    QTest::newRow("far away") << Rings{{{90000000000, 0}, {90000100000, 1}, {90000050000, 70000}},
                                       rectangle(-90000000000, 0, 9000, 9000)}
                              << true;
    QTest::newRow("far away, over each other")
        << Rings{{{90000000000, 0}, {90000100000, 1}, {90000050000, 70000}},
                 rectangle(90000040000, 100, 9000, 9000)}
        << false;
}

void tst_Cleanness::isToldApart()
{
    QFETCH(const Rings, rings);
    QFETCH(const bool, isClean);
    QCOMPARE(isCleanBySweep(rings), isClean);
    QCOMPARE(cam::verify::isClean(rings), isClean);
    // Turned by a quarter: rows and columns are not treated alike.
    Rings turned = rings;
    for (GridRing &ring : turned) {
        for (GridPoint &p : ring)
            p = {-p.y, p.x};
    }
    QCOMPARE(cam::verify::isClean(turned), isClean);
}

// Islands and holes of many corners at random places: some clean, some not.
void tst_Cleanness::agreesWithTheSweep()
{
    int clean = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        std::mt19937 random(seed);
        const auto upTo = [&random](int most) { return std::uniform_int_distribution<int>(0, most)(random); };
        Rings rings;
        const int count = 1 + upTo(12), spread = 1 + upTo(10);
        for (int i = 0; i < count; ++i) {
            const GridPoint center = {upTo(spread) * 400000, upTo(spread) * 400000};
            const double radius = 20000.0 + upTo(170000);
            rings.push_back(star(random, center, radius, 3 + upTo(200)));
            if (upTo(2) > 0)
                rings.push_back(hole(star(random, center, radius * (0.3 + 0.1 * upTo(4)), 3 + upTo(60))));
        }
        const bool isClean = isCleanBySweep(rings);
        clean += isClean ? 1 : 0;
        QVERIFY2(cam::verify::isClean(rings) == isClean, qPrintable(QString("seed %1").arg(seed)));
    }
    QVERIFY2(clean > 30 && clean < 270, qPrintable(QString::number(clean)));
}

// As surfaces stand in files: one ring around everything, along slits, which may be cut in turn.
void tst_Cleanness::holdsForLinkedHoles()
{
    std::mt19937 random(1);
    std::vector<GridRing> holes;
    for (int i = 0; i < 900; ++i)
        holes.push_back(
            hole(star(random, {(i % 30) * 100000 + 50000, (i / 30) * 100000 + 50000}, 40000.0, 20)));
    const GridRing linked = cam::linkHoles(rectangle(0, 0, 3000000, 3000000), holes);
    QVERIFY(cam::verify::isClean({linked}));
    GridRing part;
    cam::cutRing(linked, true, 1534567, true, part);
    QVERIFY(cam::verify::isClean({part}));
    // One of the holes filled again by what stands beside.
    QVERIFY(cam::verify::isClean({part, rectangle(47000, 47000, 6000, 6000)}));
    QVERIFY(!cam::verify::isClean({part, rectangle(100000, 47000, 6000, 6000)}));
    QVERIFY(!cam::verify::isClean({part, rectangle(45000, 5000, 6000, 6000)}));
}

QTEST_APPLESS_MAIN(tst_Cleanness)
#include "tst_cleanness.moc"
