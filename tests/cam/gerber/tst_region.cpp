// Outlines on the nanometre grid, and the slits that lead to holes.
#include "cam/gerber/region.h"
#include "cam/model/flatten.h"

#include <QtTest>

#include <cmath>

using cam::ContourPool;
using cam::EdgeKind;
using cam::GridOutline;
using cam::GridPoint;
using cam::Point;
using cam::Transform;

namespace {

// A pool that encloses what the outline does, to measure it.
double signedArea(const GridOutline &outline)
{
    const auto point = [](GridPoint p) { return Point{static_cast<double>(p.x), static_cast<double>(p.y)}; };
    ContourPool pool;
    pool.begin(point(outline.start), false);
    for (const cam::GridEdge &edge : outline.edges) {
        if (edge.kind == EdgeKind::Line)
            pool.lineTo(point(edge.end));
        else
            pool.arcTo(point(edge.end), point(edge.center), edge.kind == EdgeKind::ArcClockwise);
    }
    pool.end();
    return cam::signedArea(pool[0]);
}

GridOutline square(double x, double y, double side)
{
    const Point corners[] = {{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}};
    ContourPool pool;
    pool.addPolygon(corners, 4, false);
    return cam::onGrid(pool[0], Transform());
}

GridOutline hole(double x, double y, double diameter)
{
    ContourPool pool;
    pool.addCircle({x, y}, diameter / 2.0, true);
    return cam::onGrid(pool[0], Transform());
}

double circle(double diameter)
{
    return std::acos(-1.0) * diameter * diameter / 4.0;
}

cam::Regions regions(GridOutline island, std::vector<GridOutline> holes)
{
    holes.insert(holes.begin(), std::move(island));
    std::vector<bool> isHole(holes.size(), true);
    isHole.front() = false;
    return cam::regionsOf(std::move(holes), isHole);
}

// The only outline; an empty one where there are several, or contours meet.
GridOutline slit(GridOutline island, std::vector<GridOutline> holes)
{
    const cam::Regions found = regions(std::move(island), std::move(holes));
    return found.outlines.size() == 1 && found.entangled.empty() ? found.outlines.front() : GridOutline();
}

bool isClosed(const GridOutline &outline)
{
    return !outline.edges.empty() && outline.edges.back().end == outline.start;
}

// Straight edges that are run through in both directions.
int slitCount(const GridOutline &outline)
{
    int count = 0;
    for (std::size_t i = 0; i < outline.edges.size(); ++i) {
        for (std::size_t k = i + 1; k < outline.edges.size(); ++k) {
            const bool areLines =
                outline.edges[i].kind == EdgeKind::Line && outline.edges[k].kind == EdgeKind::Line;
            if (areLines && outline.startOf(i) == outline.edges[k].end &&
                outline.startOf(k) == outline.edges[i].end)
                ++count;
        }
    }
    return count;
}

} // namespace

class tst_Region : public QObject
{
    Q_OBJECT
private slots:
    void coordinatesAreRoundedToNanometres();
    void mirroringTurnsArcsOver();
    void edgesThatVanishAreLeftOut();
    void arcOfTwoRadiiBecomesLines();
    void fullCircleStaysOneArc();
    void oneHoleIsReachedByOneSlit();
    void slitMeetsAnArc();
    void arcOfOneNanometreIsNotMade();
    void holesInARowAreLinkedToEachOther();
    void holesAreReachedThroughOtherHoles_data();
    void holesAreReachedThroughOtherHoles();
    void outlinesThatMeetTakeBooleans_data();
    void outlinesThatMeetTakeBooleans();
    void straightAndRoundEdgesThatCrossTakeBooleans();
    void holeInsideOfAHoleTakesNothing();
    void holeOutsideOfTheIslandTakesNothing();
    void holeLevelWithCornersIsKept_data();
    void holeLevelWithCornersIsKept();
    void hundredThousandHolesTakeNoQuadraticTime();
};

void tst_Region::coordinatesAreRoundedToNanometres()
{
    const Point corners[] = {{0.4, -0.6}, {10.5, 0.0}, {7.2, 9.9}};
    ContourPool pool;
    pool.addPolygon(corners, 3, false);
    const GridOutline outline = cam::onGrid(pool[0], Transform());
    QVERIFY((outline.start == GridPoint{0, -1}));
    QVERIFY((outline.edges[0].end == GridPoint{11, 0}));
    QVERIFY((outline.edges[1].end == GridPoint{7, 10}));
    QVERIFY(isClosed(outline));
}

void tst_Region::mirroringTurnsArcsOver()
{
    ContourPool pool;
    pool.begin({1000, 0}, false);
    pool.arcTo({0, 1000}, {0, 0}, false);
    pool.end();
    const GridOutline outline = cam::onGrid(pool[0], Transform::mirrorX());
    QCOMPARE(outline.edges[0].kind, EdgeKind::ArcClockwise);
    QVERIFY((outline.start == GridPoint{-1000, 0}));
}

void tst_Region::edgesThatVanishAreLeftOut()
{
    const Point corners[] = {{0, 0}, {1000, 0}, {1000.3, 0.2}, {1000, 1000}};
    ContourPool pool;
    pool.addPolygon(corners, 4, false);
    QCOMPARE(cam::onGrid(pool[0], Transform()).edges.size(), std::size_t(3));
    pool.clear();
    pool.begin({0, 0}, false);
    pool.arcTo({0.2, 0.2}, {500, -300}, true); // a short arc, not a full circle
    pool.lineTo({1000, 1000});
    pool.end();
    for (const cam::GridEdge &edge : cam::onGrid(pool[0], Transform()).edges)
        QCOMPARE(edge.kind, EdgeKind::Line);
}

void tst_Region::arcOfTwoRadiiBecomesLines()
{
    for (const double more : {0.0, 70.0, 130.0, 3000.0}) {
        ContourPool pool;
        pool.begin({1000000, 0}, false);
        pool.arcTo({0, 1000000 + more}, {0, 0}, false);
        pool.end();
        const GridOutline outline = cam::onGrid(pool[0], Transform());
        const bool isRounding = more < cam::radiusTolerance;
        QCOMPARE(outline.edges.size() > 10, !isRounding);
        QCOMPARE(outline.edges[0].kind, isRounding ? EdgeKind::ArcCounterClockwise : EdgeKind::Line);
    }
}

void tst_Region::fullCircleStaysOneArc()
{
    const GridOutline outline = hole(0, 0, 2000);
    QCOMPARE(outline.edges.size(), std::size_t(1));
    QVERIFY(outline.edges[0].end == outline.start);
}

void tst_Region::oneHoleIsReachedByOneSlit()
{
    const GridOutline outline = slit(square(0, 0, 10000), {hole(5000, 5000, 2000)});
    QVERIFY(isClosed(outline));
    QCOMPARE(slitCount(outline), 1);
    QVERIFY(std::fabs(signedArea(outline) - (1e8 - circle(2000))) < 1.0);
}

void tst_Region::slitMeetsAnArc()
{
    ContourPool disc;
    disc.addCircle({0, 0}, 10000, false);
    const GridOutline outline =
        slit(cam::onGrid(disc[0], Transform()), {hole(2000, 3000, 2000), hole(2000, -3000, 2000)});
    QVERIFY(isClosed(outline));
    QCOMPARE(slitCount(outline), 2);
    const double expected = circle(20000) - 2 * circle(2000);
    QVERIFY(std::fabs(signedArea(outline) - expected) < 1e-4 * expected); // ends of arcs are whole nanometres
}

// Rounded, the arc's circle reaches a nanometre beyond the arc's own end.
void tst_Region::arcOfOneNanometreIsNotMade()
{
    const GridPoint leftEnd = {45843948, 30670245}, center = {46097952, 30670245};
    GridOutline rounded;
    rounded.start = leftEnd;
    for (const GridPoint corner : {GridPoint{45843948, 31000000}, GridPoint{47000000, 31000000},
                                   GridPoint{47000000, 30416240}, GridPoint{46097952, 30416240}})
        rounded.edges.push_back({corner, {}, EdgeKind::Line});
    rounded.edges.push_back({leftEnd, center, EdgeKind::ArcClockwise});
    const GridOutline outline = slit(square(45e6, 30e6, 3e6), {rounded});
    QVERIFY(isClosed(outline));
    int arcs = 0;
    for (std::size_t i = 0; i < outline.edges.size(); ++i)
        arcs += outline.edges[i].kind == EdgeKind::Line ? 0 : 1;
    QCOMPARE(arcs, 1);
    const double radius = 254005.0;
    const double clear = 1156052.0 * 583760.0 - radius * radius + circle(2.0 * radius) / 4.0;
    QVERIFY(std::fabs(signedArea(outline) - (9e12 - clear)) < 1e-5 * clear);
}

void tst_Region::holesInARowAreLinkedToEachOther()
{
    const GridOutline outline =
        slit(square(0, 0, 10000), {hole(7000, 5000, 1000), hole(3000, 5000, 1000), hole(5000, 5000, 1000)});
    QCOMPARE(slitCount(outline), 3);
    QVERIFY(std::fabs(signedArea(outline) - (1e8 - 3 * circle(1000))) < 1.0);
}

void tst_Region::holesAreReachedThroughOtherHoles_data()
{
    QTest::addColumn<int>("perRow");
    QTest::newRow("a few") << 3;
    QTest::newRow("hundreds") << 20;
    QTest::newRow("ten thousand") << 100;
}

void tst_Region::holesAreReachedThroughOtherHoles()
{
    QFETCH(int, perRow);
    std::vector<GridOutline> holes;
    double expected = 0.0;
    for (int row = 0; row < perRow; ++row) {
        for (int column = 0; column < perRow; ++column) {
            const double diameter = 4000 + 200 * ((row * 7 + column * 3) % 10);
            holes.push_back(
                hole(10000 * (column + 1) + 137 * row, 10000 * (row + 1) + 91 * column, diameter));
            expected -= circle(diameter);
        }
    }
    const double side = 10000 * (perRow + 2) + 137.0 * perRow;
    expected += side * side;
    const GridOutline outline = slit(square(0, 0, side), std::move(holes));
    QVERIFY(isClosed(outline));
    QVERIFY(std::fabs(signedArea(outline) - expected) < 1e-6 * expected);
}

void tst_Region::outlinesThatMeetTakeBooleans_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<bool>(
        "meets"); // a round hole of 2000 at x, y, in a square of 10000 with a round hole in its middle
    QTest::newRow("apart") << 2500.0 << 5000.0 << false;
    QTest::newRow("overlaps the other hole") << 3500.0 << 5000.0 << true;
    QTest::newRow("touches the other hole") << 3000.0 << 5000.0 << true;
    QTest::newRow("equals the other hole") << 5000.0 << 5000.0 << true;
    QTest::newRow("overlaps the island's edge") << 500.0 << 2000.0 << true;
    QTest::newRow("touches the island's edge") << 1000.0 << 2000.0 << true;
    QTest::newRow("reaches over the island's corner") << 9800.0 << 9800.0 << true;
}

void tst_Region::outlinesThatMeetTakeBooleans()
{
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(bool, meets);
    const cam::Regions found = regions(square(0, 0, 10000), {hole(5000, 5000, 2000), hole(x, y, 2000)});
    QCOMPARE(!found.entangled.empty(), meets);
    QCOMPARE(found.outlines.empty(), meets);
}

void tst_Region::straightAndRoundEdgesThatCrossTakeBooleans()
{
    const auto meet = [](const GridOutline &a, const GridOutline &b) {
        return !regions(square(0, 0, 10000), {a, b}).entangled.empty();
    };
    QVERIFY(meet(square(2000, 2000, 2000), hole(4000, 3000, 1000)));
    QVERIFY(meet(square(2000, 2000, 2000), square(3000, 3000, 2000)));
    QVERIFY(!meet(square(2000, 2000, 2000), hole(4600, 3000, 1000)));
}

void tst_Region::holeInsideOfAHoleTakesNothing()
{
    const GridOutline outline = slit(square(0, 0, 10000), {hole(5000, 5000, 1000), hole(5000, 5000, 4000)});
    QVERIFY(std::fabs(signedArea(outline) - (1e8 - circle(4000))) < 1.0);
}

void tst_Region::holeOutsideOfTheIslandTakesNothing()
{
    for (const double x : {-3000.0, 13000.0}) {
        const GridOutline outline =
            slit(square(0, 0, 10000), {hole(x, 5000, 1000), hole(x + 1500, 5000, 1000)});
        QVERIFY(std::fabs(signedArea(outline) - 1e8) < 1.0);
    }
}

void tst_Region::holeLevelWithCornersIsKept_data()
{
    QTest::addColumn<QVector<QPointF>>(
        "left"); // a hole left of the round one, corners at the height of its leftmost point
    const QVector<QPointF> diamond{{1000, 5000}, {2000, 4000}, {3000, 5000}, {2000, 6000}};
    QTest::newRow("diamond") << diamond;
    QTest::newRow("tooth above") << QVector<QPointF>{{1000, 7000}, {2000, 5000}, {3000, 7000}};
    QTest::newRow("tooth below") << QVector<QPointF>{{1000, 3000}, {3000, 3000}, {2000, 5000}};
    QTest::newRow("step") << QVector<QPointF>{{1000, 3000}, {3000, 3000}, {3000, 5000},
                                              {2000, 5000}, {2000, 7000}, {1000, 7000}};
    QTest::newRow("bay to the right")
        << QVector<QPointF>{{1000, 3000}, {3000, 3000}, {2000, 5000}, {3000, 7000}, {1000, 7000}};
    QTest::newRow("flat side") << QVector<QPointF>{{1000, 5000}, {3000, 5000}, {3000, 6000}, {1000, 6000}};
}

void tst_Region::holeLevelWithCornersIsKept()
{
    QFETCH(QVector<QPointF>, left);
    for (const bool mirrored : {false, true}) {
        std::vector<Point> corners;
        for (const QPointF corner : left)
            corners.push_back({corner.x(), corner.y()});
        if (mirrored)
            std::reverse(corners.begin(), corners.end());
        ContourPool pool;
        pool.addPolygon(corners.data(), corners.size(), true);
        const double expected = 1e8 - circle(2000) - std::fabs(cam::signedArea(pool[0]));
        const GridOutline leftHole = cam::onGrid(pool[0], Transform());
        const GridOutline outline = slit(square(0, 0, 10000), {hole(6000, 5000, 2000), leftHole});
        QVERIFY2(std::fabs(signedArea(outline) - expected) < 1.0,
                 qPrintable(QString("%1 instead of %2").arg(signedArea(outline)).arg(expected)));
    }
}

void tst_Region::hundredThousandHolesTakeNoQuadraticTime()
{
    const auto seconds = [](int perRow) {
        std::vector<GridOutline> holes;
        for (int row = 0; row < perRow; ++row) {
            for (int column = 0; column < perRow; ++column)
                holes.push_back(hole(10000 * (column + 1), 10000 * (row + 1) + 91 * column, 4000));
        }
        QElapsedTimer timer;
        timer.start();
        const GridOutline outline = slit(square(0, 0, 10000.0 * perRow + 60000), std::move(holes));
        return outline.edges.size() > 4u * static_cast<unsigned>(perRow * perRow) ? timer.nsecsElapsed() / 1e9
                                                                                  : -1.0;
    };
    const double few = seconds(32), many = seconds(316); // 1 024 and 99 856 holes
    QVERIFY(few > 0.0 && many > 0.0);
    // Quadratic growth would make it 9 500 times; an even hundredfold and what caches cost stay far below
    // this.
    QVERIFY2(many < 1500.0 * few, qPrintable(QString("%1 s, then %2 s").arg(few).arg(many)));
}

QTEST_APPLESS_MAIN(tst_Region)
#include "tst_region.moc"
