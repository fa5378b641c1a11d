// The geometry model: angles, maps, areas and extents of contours, curves as corners, strokes.
#include "cam/model/arccrossing.h"
#include "cam/model/exportoptions.h"
#include "cam/model/featureset.h"
#include "cam/model/flatten.h"
#include "cam/model/layerimage.h"
#include "cam/model/sweep.h"
#include "cam/model/trigonometry.h"
#include "cam/model/winding.h"
#include "cam/polygon/gridpolygon.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <random>

using namespace cam;

namespace {

constexpr double mm = 1e6;

bool isNear(double a, double b, double tolerance = 1e-6)
{
    return std::fabs(a - b) <= tolerance;
}

bool isNear(Point a, Point b, double tolerance = 1e-6)
{
    return isNear(a.x, b.x, tolerance) && isNear(a.y, b.y, tolerance);
}

double areaOf(const std::vector<Point> &corners)
{
    double doubled = 0.0;
    for (std::size_t i = 0; i < corners.size(); ++i)
        doubled += cross(corners[i], corners[(i + 1) % corners.size()]);
    return doubled / 2.0;
}

class Polygons : public PolygonSink
{
public:
    void polygon(const Point *corners, std::size_t count) override
    {
        list.emplace_back(corners, corners + count);
    }
    std::vector<std::vector<Point>> list;
};

StandardSymbol symbol(const char *name)
{
    return parseStandardSymbol(name, SymbolUnit::Micrometres);
}

bool contains(const std::vector<Point> &polygon, Point at)
{
    bool isIn = false;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Point a = polygon[i], b = polygon[(i + 1) % polygon.size()];
        if ((a.y > at.y) != (b.y > at.y) && at.x < a.x + (b.x - a.x) * (at.y - a.y) / (b.y - a.y))
            isIn = !isIn;
    }
    return isIn;
}

} // namespace

class tst_Geometry : public QObject
{
    Q_OBJECT

private slots:
    void sineAndCosineAgreeWithTheLibraryFunctions()
    {
        for (double degrees = -725.0; degrees < 725.0; degrees += 0.37) {
            const SineCosine at = sineCosine(degrees);
            QVERIFY2(isNear(at.sine, std::sin(degrees * pi / 180.0), 1e-14),
                     qPrintable(QString::number(degrees)));
            QVERIFY2(isNear(at.cosine, std::cos(degrees * pi / 180.0), 1e-14),
                     qPrintable(QString::number(degrees)));
        }
    }

    void rightAnglesAreExact()
    {
        for (int quarter = -4; quarter <= 4; ++quarter) {
            const Transform turn = Transform::rotation(90.0 * quarter);
            const Point x = turn({1.0, 0.0});
            const Point expected[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
            QVERIFY(x == expected[(quarter + 4) % 4]);
        }
    }

    void directionsAgreeWithTheLibraryFunction()
    {
        for (double degrees = 0.0; degrees < 360.0; degrees += 0.73) {
            const double radians = degrees * pi / 180.0;
            QVERIFY(
                isNear(directionDegrees(3.0 * std::cos(radians), 3.0 * std::sin(radians)), degrees, 1e-11));
        }
        QCOMPARE(directionDegrees(0.0, 0.0), 0.0);
        QVERIFY(isNear(arcCosineDegrees(0.5), 60.0, 1e-12));
    }

    // Against the arc as ten thousand short lines.
    void arcsCrossLevelsWhereTheyRun()
    {
        std::mt19937 random(1);
        const auto number = [&random](double low, double high) {
            return std::uniform_real_distribution<double>(low, high)(random);
        };
        int found = 0;
        for (int round = 0; round < 300; ++round) {
            const Point center = {number(-50, 50), number(-50, 50)};
            const double radius = number(10, 100), start = number(0, 360);
            const double sweep = round % 5 == 0 ? 360.0 : number(1, 359);
            const bool clockwise = round % 2 == 0;
            const auto pointAt = [&](double share) {
                const SineCosine at = sineCosine(start + (clockwise ? -sweep : sweep) * share);
                return center + Point{radius * at.cosine, radius * at.sine};
            };
            const Point from = pointAt(0.0), to = sweep == 360.0 ? from : pointAt(1.0);
            const EdgeKind kind = clockwise ? EdgeKind::ArcClockwise : EdgeKind::ArcCounterClockwise;
            const double y = center.y + radius * number(-1.1, 1.1);

            std::vector<LevelCrossing> expected;
            Point before = from;
            constexpr int steps = 10000;
            for (int i = 1; i <= steps; ++i) {
                const Point next = i == steps ? to : pointAt(static_cast<double>(i) / steps);
                if ((before.y <= y) != (next.y <= y))
                    expected.push_back({before.x, (i - 0.5) / steps, next.y > y});
                before = next;
            }
            const ArcCrossings crossings = crossingsOf(from, {to, center, kind}, y);
            QCOMPARE(crossings.count, static_cast<int>(expected.size()));
            for (const LevelCrossing &each : expected) {
                QVERIFY(
                    std::any_of(crossings.begin(), crossings.end(), [&each](const LevelCrossing &crossing) {
                        return isNear(crossing.x, each.x, 2.0) && isNear(crossing.share, each.share, 2e-4) &&
                               crossing.isUpwards == each.isUpwards;
                    }));
                ++found;
            }
        }
        QVERIFY(found > 300);
    }

    void contoursWindAroundWhatLiesInside()
    {
        ContourPool pool;
        pool.begin({0, 0}, false); // a box whose right side bulges, and a half circle cut out of its top
        pool.lineTo({100, 0});
        pool.arcTo({100, 100}, {100, 50}, false);
        pool.lineTo({70, 100});
        pool.arcTo({30, 100}, {50, 100}, true);
        pool.lineTo({0, 100});
        pool.end();
        QCOMPARE(windingNumber(pool[0], {50, 79}), 1);
        QCOMPARE(windingNumber(pool[0], {50, 81}), 0);
        QCOMPARE(windingNumber(pool[0], {149, 50}), 1);
        QCOMPARE(windingNumber(pool[0], {151, 50}), 0);
        QCOMPARE(windingNumber(pool[0], {140, 85}), 0);
        pool.addCircle({0, 0}, 10, true);
        QCOMPARE(windingNumber(pool[1], {-9, 1}), -1);
        QCOMPARE(windingNumber(pool[1], {-9, 5}), 0);
    }

    // A pad's angle runs clockwise, and the mirroring comes after the turn.
    void padIsTurnedClockwiseThenMirrored_data()
    {
        QTest::addColumn<double>("angle");
        QTest::addColumn<bool>("mirror");
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::newRow("0") << 0.0 << false << 2.0 << 1.0;
        QTest::newRow("90") << 90.0 << false << 1.0 << -2.0;
        QTest::newRow("180") << 180.0 << false << -2.0 << -1.0;
        QTest::newRow("270") << 270.0 << false << -1.0 << 2.0;
        QTest::newRow("mirrored") << 0.0 << true << -2.0 << 1.0;
        QTest::newRow("90 mirrored") << 90.0 << true << -1.0 << -2.0;
    }
    void padIsTurnedClockwiseThenMirrored()
    {
        QFETCH(double, angle);
        QFETCH(bool, mirror);
        QFETCH(double, x);
        QFETCH(double, y);
        Pad pad;
        pad.at = {100.0, 200.0};
        pad.angle = angle;
        pad.mirror = mirror;
        QVERIFY(isNear(placement(pad)({2.0, 1.0}), {100.0 + x, 200.0 + y}));
    }

    void repeatedStepStandsWithItsDatumAtItsPlace()
    {
        StepRepeat repeat;
        repeat.at = {50.0, 60.0};
        repeat.angle = 90.0;
        repeat.childDatum = {10.0, 20.0};
        QVERIFY(isNear(placement(repeat)({10.0, 20.0}), {50.0, 60.0}));
        QVERIFY(isNear(placement(repeat)({13.0, 20.0}), {50.0, 57.0}));
    }

    // Scale, then mirror, then rotation, about the datum.
    void exportTransformKeepsItsOrder()
    {
        ExportOptions options;
        options.xScale = 2.0;
        options.yScale = 3.0;
        options.mirror = true;
        options.angle = 90.0;
        const Transform map = exportTransform(options, {10.0, 10.0});
        QVERIFY(isNear(map({10.0, 10.0}), {10.0, 10.0}));
        QVERIFY(isNear(map({11.0, 10.0}), {10.0, 8.0})); // (1,0) -> (2,0) -> (-2,0) -> (0,-2)
        QVERIFY(isNear(map({10.0, 11.0}), {7.0, 10.0})); // (0,1) -> (0,3) -> (0,3) -> (-3,0)
    }

    void areaOfRoundContoursIsExact()
    {
        ContourPool pool;
        pool.addCircle({5 * mm, 3 * mm}, 2 * mm, false);
        // A stadium: a square of 2 mm with half circles left and right.
        pool.begin({-mm, -mm}, false);
        pool.lineTo({mm, -mm});
        pool.arcTo({mm, mm}, {mm, 0.0}, false);
        pool.lineTo({-mm, mm});
        pool.arcTo({-mm, -mm}, {-mm, 0.0}, false);
        pool.end();
        QVERIFY(isNear(signedArea(pool[0]) / (mm * mm), 4.0 * pi, 1e-9));
        QVERIFY(isNear(signedArea(pool[1]) / (mm * mm), 4.0 + pi, 1e-9));
    }

    void contourIsClosedWhereTheFileLeavesItOpen()
    {
        ContourPool pool;
        pool.begin({0, 0}, false);
        pool.lineTo({4, 0});
        pool.lineTo({4, 2});
        pool.end();
        QCOMPARE(pool[0].edgeCount, std::size_t(3));
        QVERIFY(isNear(signedArea(pool[0]), 4.0));
    }

    void extentKnowsHowFarAnArcBulges()
    {
        ContourPool pool;
        pool.begin({1, 0}, false);
        pool.arcTo({-1, 0}, {0, 0}, false);
        pool.end();
        const Box upper = extent(pool[0]);
        QVERIFY(isNear(upper.high, {1, 1}) && isNear(upper.low, {-1, 0}));
        pool.begin({1, 0}, false);
        pool.arcTo({-1, 0}, {0, 0}, true);
        pool.end();
        const Box lower = extent(pool[1]);
        QVERIFY(isNear(lower.high, {1, 0}) && isNear(lower.low, {-1, -1}));
    }

    void mirroredContourRunsTheOtherWay()
    {
        ContourPool pool, mirrored;
        pool.begin({1, 0}, false);
        pool.arcTo({0, 1}, {0, 0}, false);
        pool.lineTo({0, 0});
        pool.end();
        mirrored.add(pool[0], Transform::mirrorX());
        QVERIFY(isNear(signedArea(mirrored[0]), -signedArea(pool[0])));
        QVERIFY(isNear(extent(mirrored[0]).low, {-1, 0}));
    }

    void cornersOfAnArcLieOnItAndChordsWithinTheTolerance_data()
    {
        QTest::addColumn<double>("radius");
        for (double radius : {50.0, 1000.0, 50'000.0, 1e6, 3e8})
            QTest::newRow(qPrintable(QString::number(radius))) << radius;
    }
    void cornersOfAnArcLieOnItAndChordsWithinTheTolerance()
    {
        QFETCH(double, radius);
        ContourPool pool;
        pool.addCircle({7.0, -3.0}, radius, false);
        std::vector<Point> corners;
        flatten(pool[0], arcTolerance, corners);
        QCOMPARE(corners.size() % 4, std::size_t(0));
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const Point a = corners[i], b = corners[(i + 1) % corners.size()];
            QVERIFY(isNear(distance(a, {7.0, -3.0}), radius, radius * 1e-9));
            QVERIFY(radius - distance((a + b) * 0.5, {7.0, -3.0}) <= 100.0);
        }
    }

    // Radii that differ by rounding, as in real files, must not make a step at the arc's end.
    void arcWithUnequalRadiiEndsWhereItShould()
    {
        const Edge arc = {{0.0, 1000.5}, {0.0, 0.0}, EdgeKind::ArcCounterClockwise};
        std::vector<Point> corners;
        flattenArc({1000.0, 0.0}, arc, 1.0, corners);
        QVERIFY(corners.back() == Point({0.0, 1000.5}));
        QVERIFY(std::fabs(distance(corners[corners.size() - 2], {0, 0}) - 1000.5) < 0.1);
    }

    void roundLineIsAStadium()
    {
        SweptSymbol swept(symbol("r200"), 0.0, arcTolerance);
        Polygons polygons;
        Line line;
        line.start = {0, 0};
        line.end = {3 * mm, 4 * mm};
        swept.sweep(line, polygons);
        QCOMPARE(polygons.list.size(), std::size_t(1));
        const double exact = 5 * mm * 0.2 * mm + pi * 0.1 * mm * 0.1 * mm;
        const double drawn = areaOf(polygons.list[0]);
        QVERIFY(drawn > 0.0 && drawn <= exact && exact - drawn < pi * 0.2 * mm * arcTolerance);
    }

    void roundOfDiameterZeroDrawsNothing()
    {
        SweptSymbol swept(symbol("r0"), 0.0, arcTolerance);
        QVERIFY(swept.isEmpty());
        Polygons polygons;
        swept.sweep(Line{{0, 0}, {mm, 0}, 0}, polygons);
        swept.sweep(Arc{{mm, 0}, {mm, 0}, {0, 0}, 0, false}, polygons);
        QVERIFY(polygons.list.empty());
    }

    void penTurnsBySuffixOfItsName()
    {
        SweptSymbol swept(symbol("s200_45"), 0.0, arcTolerance);
        Polygons polygons;
        swept.sweep(Line{{0, 0}, {0, 0}, 0}, polygons);
        QCOMPARE(polygons.list.size(), std::size_t(1));
        Box box;
        for (const Point corner : polygons.list[0])
            box.add(corner);
        QVERIFY(isNear(box.high.x, 0.1 * mm * std::sqrt(2.0), 1.0));
        QVERIFY(isNear(areaOf(polygons.list[0]), 0.04 * mm * mm, 1e3));
    }

    void squareLineIsNotTurned_data()
    {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::newRow("right") << 1.0 << 0.0;
        QTest::newRow("up") << 0.0 << 1.0;
        QTest::newRow("up right") << 1.0 << 1.0;
        QTest::newRow("down right") << 1.0 << -1.0;
        QTest::newRow("up left") << -1.0 << 1.0;
        QTest::newRow("down left") << -1.0 << -1.0;
        QTest::newRow("point") << 0.0 << 0.0;
    }
    void squareLineIsNotTurned()
    {
        QFETCH(double, x);
        QFETCH(double, y);
        SweptSymbol swept(symbol("s100"), 0.0, arcTolerance);
        Polygons polygons;
        swept.sweep(Line{{0, 0}, {x * mm, y * mm}, 0}, polygons);
        QCOMPARE(polygons.list.size(), std::size_t(1));
        const double area = 0.1 * mm * (std::fabs(x) + std::fabs(y)) * mm + 0.01 * mm * mm;
        QVERIFY(isNear(areaOf(polygons.list[0]), area, 1.0));
    }

    void fullCircleOfARoundPenIsARing()
    {
        SweptSymbol swept(symbol("r200"), 0.0, arcTolerance);
        Polygons polygons;
        swept.sweep(Arc{{mm, 0}, {mm, 0}, {0, 0}, 0, true}, polygons);
        double drawn = 0.0;
        for (const auto &polygon : polygons.list)
            drawn += std::fabs(areaOf(polygon));
        const double exact = pi * (1.1 * 1.1 - 0.9 * 0.9) * mm * mm;
        QVERIFY(isNear(drawn, exact, 2 * pi * 2.0 * mm * arcTolerance));
    }

    // The radius runs evenly from one end to the other, as along the outline of a surface.
    void strokeAlongUnequalRadiiRunsEvenly()
    {
        SweptSymbol swept(symbol("r100"), 0.0, arcTolerance);
        Polygons polygons;
        swept.sweep(Arc{{mm, 0}, {0, 1.4 * mm}, {0, 0}, 0, false}, polygons);
        for (const double share : {0.25, 0.5, 0.75}) {
            const Point direction = Transform::rotation(90.0 * share).linear({1.0, 0.0});
            for (const double aside : {-0.07, -0.04, 0.0, 0.04, 0.07}) {
                const Point at = direction * ((1.0 + 0.4 * share + aside) * mm);
                bool isCovered = false;
                for (const auto &polygon : polygons.list)
                    isCovered = isCovered || contains(polygon, at);
                QCOMPARE(isCovered, std::fabs(aside) < 0.05);
            }
        }
    }

    // The union is what counts; here only that nothing of it is missing or turned over.
    void anySymbolSweepsCounterClockwisePolygons()
    {
        SweptSymbol swept(symbol("di200x100"), 0.0, arcTolerance);
        Polygons polygons;
        swept.sweep(Line{{0, 0}, {mm, 0.2 * mm}, 0}, polygons);
        QCOMPARE(polygons.list.size(), std::size_t(2 + 4)); // at both ends, and one for each edge
        for (const auto &polygon : polygons.list)
            QVERIFY(areaOf(polygon) > 0.0);
    }

    void growthWidensTheStroke()
    {
        SweptSymbol resized(symbol("r200"), 50'000.0, arcTolerance);
        SweptSymbol gone(symbol("r200"), -200'000.0, arcTolerance);
        QVERIFY(gone.isEmpty());
        Polygons polygons;
        resized.sweep(Line{{0, 0}, {mm, 0}, 0}, polygons);
        double high = 0.0;
        for (const Point p : polygons.list[0])
            high = std::max(high, p.y);
        QVERIFY(isNear(high, 0.125 * mm));
    }

    void gridRoundsHalvesAwayFromZeroAndDropsEqualNeighbours()
    {
        const Grid grid(1.0);
        const Point corners[] = {{0.5, -0.5}, {0.6, -0.6}, {10.0, 0.0}, {10.0, 10.4}, {0.7, -0.9}};
        GridRing ring;
        grid.round(corners, 5, Transform(), ring);
        const GridRing expected = {{1, -1}, {10, 0}, {10, 10}};
        QVERIFY(ring == expected);
    }
};

QTEST_APPLESS_MAIN(tst_Geometry)
#include "tst_geometry.moc"
