// Booleans: dark and clear paint, pieces, holes, growth.
#include "cam/model/trigonometry.h"
#include "cam/polygon/clipping.h"
#include "cam/polygon/cutting.h"
#include "cam/polygon/neighbourhood.h"
#include "cam/polygon/paintedarea.h"
#include "cam/polygon/surfacepolygons.h"

#include <QElapsedTimer>
#include <QtTest>

#include <cmath>
#include <stdexcept>

using namespace cam;

namespace {

GridRing box(std::int64_t left, std::int64_t bottom, std::int64_t right, std::int64_t top)
{
    return {{left, bottom}, {right, bottom}, {right, top}, {left, top}};
}

GridRing circle(GridPoint center, double radius, int corners)
{
    GridRing ring;
    for (int i = 0; i < corners; ++i) {
        const SineCosine at = sineCosine(360.0 * i / corners);
        ring.push_back(
            {center.x + std::llround(radius * at.cosine), center.y + std::llround(radius * at.sine)});
    }
    return ring;
}

GridRing reversed(GridRing ring)
{
    std::reverse(ring.begin(), ring.end());
    return ring;
}

class Painting : public PaintSource
{
public:
    void paint(std::vector<GridRing> rings, Polarity polarity)
    {
        m_polarities.push_back(polarity);
        m_items.push_back(std::move(rings));
    }
    void rings(std::uint32_t item, std::vector<GridRing> &rings) override
    {
        rings.insert(rings.end(), m_items[item].begin(), m_items[item].end());
    }
    std::vector<GridRing> resolve(std::size_t mostCorners = 8190)
    {
        PaintedArea area(*this, mostCorners);
        for (std::uint32_t i = 0; i < m_items.size(); ++i) {
            GridBox extent;
            std::size_t corners = 0;
            for (const GridRing &ring : m_items[i]) {
                extent.add(ring);
                corners += ring.size();
            }
            area.paint(i, m_polarities[i], extent, corners);
        }
        std::vector<GridRing> result;
        area.resolve([&result](const GridRing &ring) { result.push_back(ring); },
                     [this](double share) {
                         m_isRising = m_isRising && share >= m_share;
                         m_share = share;
                     });
        return result;
    }
    bool isRising() const { return m_isRising; }
    double share() const { return m_share; }

private:
    std::vector<std::vector<GridRing>> m_items;
    std::vector<Polarity> m_polarities;
    double m_share = 0.0;
    bool m_isRising = true;
};

double areaOf(const std::vector<GridRing> &rings)
{
    double sum = 0.0;
    for (const GridRing &ring : rings)
        sum += doubledArea(ring) / 2.0;
    return sum;
}

} // namespace

class tst_PaintedArea : public QObject
{
    Q_OBJECT

private slots:
    void medianHasHalfOfThePositionsOnEachSide()
    {
        QCOMPARE(median({7}), std::int64_t(7));
        QCOMPARE(median({5, 1, 4, 2, 3}), std::int64_t(3));
        QCOMPARE(median({4, 1, 2, 3}), std::int64_t(3));
    }

    void cutsKeepAwayFromTheEnds()
    {
        QCOMPARE(medianCut({40, 50, 60}, 0, 80), std::int64_t(50));
        QCOMPARE(medianCut({0, 0, 0, 80}, 0, 80), std::int64_t(10));
        QCOMPARE(medianCut({80, 80, 80}, 0, 80), std::int64_t(70));
        QCOMPARE(medianCut({100}, 100, 102), std::int64_t(101));
    }

    void ringsEncloseByParity()
    {
        const GridRing notched = {{0, 0}, {100, 0}, {100, 100}, {50, 20}, {0, 100}};
        QVERIFY(encloses(notched, {50, 10}));
        QVERIFY(encloses(reversed(notched), {50, 10}));
        QVERIFY(!encloses(notched, {50, 60})); // in the notch
        QVERIFY(encloses(notched, {10, 20}));  // level with a corner
        QVERIFY(encloses(notched, {90, 20}));
        QVERIFY(!encloses(notched, {-10, 20}));
        QVERIFY(!encloses(notched, {110, 20}));
        QVERIFY(!encloses(notched, {50, -10}));
    }

    void clearPaintTakesFromWhatIsBelowIt()
    {
        Painting painting;
        painting.paint({box(0, 0, 100, 100)}, Polarity::Positive);
        painting.paint({box(50, -10, 200, 110)}, Polarity::Negative);
        QCOMPARE(areaOf(painting.resolve()), 5000.0);
    }

    void orderDecides()
    {
        Painting painting;
        painting.paint({box(20, 20, 40, 40)}, Polarity::Negative); // nothing below it
        painting.paint({box(0, 0, 100, 100)}, Polarity::Positive);
        painting.paint({box(20, 20, 60, 60)}, Polarity::Negative);
        painting.paint({box(30, 30, 40, 40)}, Polarity::Positive);
        QCOMPARE(areaOf(painting.resolve()), 10000.0 - 1600.0 + 100.0);
    }

    void overlappingPaintCountsOnce()
    {
        Painting painting;
        painting.paint({box(0, 0, 100, 100)}, Polarity::Positive);
        painting.paint({box(50, 0, 150, 100)}, Polarity::Positive);
        painting.paint({box(200, 0, 201, 1)}, Polarity::Negative);
        QCOMPARE(areaOf(painting.resolve()), 15000.0);
    }

    // The overlap of two holes of one surface must not take from another surface.
    void overlappingHolesTakeNothingFromOthers()
    {
        Painting painting;
        painting.paint({box(0, 0, 100, 100), reversed(box(10, 10, 60, 60)), reversed(box(40, 40, 90, 90))},
                       Polarity::Positive);
        painting.paint({box(45, 45, 55, 55)}, Polarity::Positive);
        QCOMPARE(areaOf(painting.resolve()), 10000.0 - 2500.0 - 2500.0 + 400.0 + 100.0);
    }

    void islandInsideAHoleStays()
    {
        const std::vector<GridRing> rings = {box(0, 0, 100, 100), reversed(box(10, 10, 90, 90)),
                                             box(20, 20, 30, 30)};
        std::vector<GridRing> polygons;
        emitSimple(cleaned(rings), 8190, [&polygons](const GridRing &ring) { polygons.push_back(ring); });
        QCOMPARE(areaOf(polygons), 10000.0 - 6400.0 + 100.0);
        QCOMPARE(polygons.size(), std::size_t(2));
    }

    void holesAreLinkedWithoutChangingTheArea()
    {
        GridRing island = box(0, 0, 1000, 1000);
        std::vector<GridRing> holes;
        double taken = 0.0;
        for (int i = 0; i < 9; ++i) {
            for (int j = 0; j < 9; ++j) {
                holes.push_back(reversed(circle({100 + 100 * i, 100 + 100 * j}, 30.0, 12)));
                taken -= doubledArea(holes.back()) / 2.0;
            }
        }
        const GridRing linked = linkHoles(island, holes);
        QCOMPARE(doubledArea(linked) / 2.0, 1e6 - taken);
        QVERIFY(linked.size() <= 4 + 81 * (12 + 3));
    }

    void slitsCloseWhenTheAreaGrowsAndDoNotOpenWhenItShrinks()
    {
        // A ring of paint whose outline runs in and out along a slit of no width.
        const GridRing slit = {{0, 0},   {100, 0}, {100, 100}, {0, 100}, {0, 50},  {30, 50},
                               {30, 70}, {70, 70}, {70, 30},   {30, 30}, {30, 50}, {0, 50}};
        const std::vector<GridRing> clean = cleaned({slit});
        QCOMPARE(areaOf(clean), 10000.0 - 1600.0);
        QCOMPARE(areaOf(resized(clean, 5.0)), 110.0 * 110.0 - 30.0 * 30.0);
        QCOMPARE(areaOf(resized(clean, -5.0)), 90.0 * 90.0 - 50.0 * 50.0);
    }

    void cutsKeepTheArea()
    {
        const GridRing star = circle({500, 500}, 400.0, 64);
        GridRing low, high;
        cutRing(star, true, 431, true, low);
        cutRing(star, true, 431, false, high);
        QVERIFY(std::fabs(doubledArea(low) + doubledArea(high) - doubledArea(star)) < 2000.0);
        for (const GridPoint p : low)
            QVERIFY(p.x <= 431);
        for (const GridPoint p : high)
            QVERIFY(p.x >= 431);
    }

    void areaCutApartStaysWhole_data()
    {
        QTest::addColumn<bool>("alongX");
        QTest::addColumn<int>("at");
        for (const bool alongX : {true, false}) {
            for (const int at : {-1, 0, 300, 500, 549, 550, 600, 999})
                QTest::newRow(qPrintable(QString("%1%2").arg(alongX ? 'x' : 'y').arg(at))) << alongX << at;
        }
    }
    void areaCutApartStaysWhole()
    {
        QFETCH(bool, alongX);
        QFETCH(int, at);
        std::vector<BoxedRing> rings, low, high;
        rings.push_back(boxed(box(0, 0, 1000, 1000)));
        rings.push_back(boxed(reversed(box(200, 200, 800, 800))));
        rings.push_back(boxed(box(450, 450, 550, 550)));
        rings.push_back(boxed(reversed(box(20, 20, 40, 40))));
        // A comb, whose teeth end on the line, with a slit.
        rings.push_back(boxed({{2000, 0},
                               {3000, 0},
                               {3000, 600},
                               {2900, 600},
                               {2900, 300},
                               {2500, 300},
                               {2500, 550},
                               {2500, 300},
                               {2100, 300},
                               {2100, 600},
                               {2000, 600}}));
        double whole = 0.0, parts = 0.0;
        for (const BoxedRing &ring : rings)
            whole += doubledArea(ring.ring);
        QVERIFY(cutApart(rings, alongX, at, low, high));
        QVERIFY(rings.empty());
        for (const BoxedRing &ring : low) {
            parts += doubledArea(ring.ring);
            QVERIFY((alongX ? ring.box.high.x : ring.box.high.y) <= at);
        }
        for (const BoxedRing &ring : high) {
            parts += doubledArea(ring.ring);
            QVERIFY((alongX ? ring.box.low.x : ring.box.low.y) >= at);
        }
        QCOMPARE(parts, whole);
    }

    void whatIsNoAreaIsNotCut()
    {
        std::vector<BoxedRing> rings, low, high;
        rings.push_back(boxed(box(0, 0, 100, 100)));
        rings.push_back(boxed(box(50, 50, 150, 150))); // overlaps the first
        QVERIFY(!cutApart(rings, true, 75, low, high));
        QVERIFY(low.empty() && high.empty());
    }

    void faultySurfaceIsResolvedAllTheSame()
    {
        const std::vector<GridRing> rings = {
            circle({0, 0}, 1e6, 6000), reversed(circle({0, 0}, 5e5, 4000)),
            reversed(circle({300'000, 0}, 5e5, 4000))}; // two holes that overlap
        std::vector<GridRing> polygons;
        double share = 0.0;
        emitArea(
            rings, 4094, [&polygons](const GridRing &ring) { polygons.push_back(ring); },
            [&share](double done) { share = done; });
        const double lens = 5e5 * 5e5 * (2.0 * std::acos(0.3) - 0.6 * std::sqrt(1.0 - 0.09));
        const double exact = pi * (1e12 - 2 * 0.25e12) + lens;
        const double ratio = areaOf(polygons) / exact;
        QVERIFY2(std::fabs(ratio - 1.0) < 1e-5, qPrintable(QString::number(ratio, 'g', 10)));
        QCOMPARE(share, 1.0);
    }

    void noPolygonExceedsTheLimit()
    {
        Painting painting;
        painting.paint({circle({0, 0}, 1e8, 40'000)}, Polarity::Positive);
        painting.paint({circle({0, 0}, 5e7, 20'000)}, Polarity::Negative);
        const std::vector<GridRing> polygons = painting.resolve(500);
        for (const GridRing &polygon : polygons)
            QVERIFY(polygon.size() <= 500);
        const double exact = pi * (1e16 - 0.25e16);
        QVERIFY(std::fabs(areaOf(polygons) / exact - 1.0) < 1e-6);
    }

    void sameInputGivesTheSamePolygons()
    {
        const auto paintAndResolve = [] {
            Painting painting;
            painting.paint({box(0, 0, 1'000'000, 1'000'000)}, Polarity::Positive);
            for (int i = 0; i < 400; ++i)
                painting.paint({circle({i % 20 * 50'000 + 9'999, i / 20 * 50'000 + 7'777}, 20'000.0, 40)},
                               Polarity::Negative);
            return painting.resolve();
        };
        QVERIFY(paintAndResolve() == paintAndResolve());
    }

    // Ten times as many clear features may take about ten times as long, not a hundred times.
    void costGrowsWithTheNumberOfFeatures()
    {
        const auto seconds = [](int side) {
            Painting painting;
            const std::int64_t pitch = 100'000;
            painting.paint({box(0, 0, side * pitch, side * pitch)}, Polarity::Positive);
            double taken = 0.0;
            for (int i = 0; i < side * side; ++i) {
                const GridRing hole =
                    circle({i % side * pitch + pitch / 2, i / side * pitch + pitch / 2}, 30'000.0, 24);
                taken += doubledArea(hole) / 2.0;
                painting.paint({hole}, Polarity::Negative);
            }
            QElapsedTimer timer;
            timer.start();
            const std::vector<GridRing> polygons = painting.resolve();
            const double elapsed = static_cast<double>(timer.nsecsElapsed()) * 1e-9;
            const double whole = static_cast<double>(side) * side * 1e10;
            if (std::fabs(areaOf(polygons) / (whole - taken) - 1.0) > 1e-6 || !painting.isRising() ||
                painting.share() < 0.999)
                return -1.0;
            return elapsed;
        };
        const double few = seconds(60);
        const double many = seconds(190);
        QVERIFY(few > 0.0 && many > 0.0);
        QVERIFY2(many < few * 10.0 * 4.0, qPrintable(QString("%1 s and %2 s").arg(few).arg(many)));
    }

    void neighbourhoodMissesNothing()
    {
        std::vector<GridBox> boxes;
        for (std::int64_t i = 0; i < 300; ++i) {
            GridBox one;
            one.add(GridPoint{i * 7919 % 100'003, i * 104'729 % 99'991});
            one.add(GridPoint{one.low.x + i % 700, one.low.y + i * 3 % 500});
            boxes.push_back(one);
        }
        const Neighbourhood neighbourhood(boxes);
        int far = 0;
        for (std::int64_t i = 0; i < 5000; ++i) {
            GridBox asked;
            asked.add(GridPoint{i * 15'485 % 120'000 - 10'000, i * 32'452 % 120'000 - 10'000});
            asked.add(GridPoint{asked.low.x + i % 90, asked.low.y + i % 70});
            const bool touches = std::any_of(boxes.begin(), boxes.end(),
                                             [&](const GridBox &box) { return box.touches(asked); });
            if (!neighbourhood.mayTouch(asked)) {
                ++far;
                QVERIFY(!touches);
            }
        }
        QVERIFY(far > 3000); // and most of what is far away is known to be
        QVERIFY(!Neighbourhood({}).mayTouch(boxes[0]));
    }

    // A cancel comes as anything thrown by the report.
    void throwingReportEndsTheWork()
    {
        class Endless : public PaintSource
        {
        public:
            void rings(std::uint32_t, std::vector<GridRing> &rings) override
            {
                rings.push_back(box(0, 0, 10, 10));
            }
        } source;
        PaintedArea area(source, 100);
        GridBox extent;
        extent.add(box(0, 0, 10, 10));
        area.paint(0, Polarity::Positive, extent, 4);
        QVERIFY_EXCEPTION_THROWN(
            area.resolve([](const GridRing &) {}, [](double) { throw std::runtime_error("stop"); }),
            std::runtime_error);
    }
};

QTEST_APPLESS_MAIN(tst_PaintedArea)
#include "tst_paintedarea.moc"
