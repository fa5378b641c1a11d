// Whether a disc fits into an area, also where it nearly does.
#include "cam/verify/thickness.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <random>

using namespace cam::verify;
using cam::GridPoint;
using cam::GridRing;

namespace {

GridPoint around(double angle, double radius)
{
    return {std::llround(radius * std::cos(angle)), std::llround(radius * std::sin(angle))};
}

// A strip of a circle, counter-clockwise, its ends tapered.
GridRing crescent(double radius, double width, int corners)
{
    GridRing ring;
    for (int i = 0; i <= corners; ++i)
        ring.push_back(around(2.0 * i / corners, radius + (i == 0 || i == corners ? 0.0 : width)));
    for (int i = corners - 1; i > 0; --i)
        ring.push_back(around(2.0 * i / corners, radius));
    return ring;
}

} // namespace

class tst_Thickness : public QObject
{
    Q_OBJECT

private slots:
    void stripsNearlyThickEnoughAreTold_data();
    void stripsNearlyThickEnoughAreTold();
    void sliversHoldNone();
    void cornersHoldADiscBetweenThem();
    void randomShapesHoldTheirLargestDisc();
};

void tst_Thickness::stripsNearlyThickEnoughAreTold_data()
{
    QTest::addColumn<double>("width");
    QTest::addColumn<bool>("fits");
    QTest::newRow("thinner") << 397.0 << false;
    QTest::newRow("thicker") << 403.0 << true;
}

// Twenty millimetres long: many squares of a nanometre.
void tst_Thickness::stripsNearlyThickEnoughAreTold()
{
    QFETCH(double, width);
    QFETCH(bool, fits);
    const Fit fit = discFits({crescent(1e7, width, 400)}, 200.0);
    QCOMPARE(fit.fits, fits);
    const double widest = 2.0 * largestDisc({crescent(1e7, width, 400)}).radius;
    QVERIFY2(widest > 0.98 * width && widest < 1.01 * width, qPrintable(QString::number(widest)));
    QVERIFY(fit.bound <= 200.0 && fit.bound > 190.0);
}

// Their tips are sharper than any rounding.
void tst_Thickness::sliversHoldNone()
{
    std::mt19937 random(1);
    for (int i = 0; i < 300; ++i) {
        const auto below = [&random](unsigned end) { return static_cast<std::int64_t>(random() % end); };
        const GridPoint far = {100 + below(1000000), 100 + below(1000000)};
        GridRing ring{{0, 0}, far, {far.x - below(80), far.y + 1 + below(80)}};
        if (i % 2 == 0)
            ring.push_back({far.x / 2 - below(20), far.y / 2 + 1 + below(40)});
        if (doubledArea(ring) <= 0.0)
            continue;
        QVERIFY2(!discFits({ring}, 200.0).fits, qPrintable(QString::number(i)));
        QVERIFY2(largestDisc({ring}).radius < 120.0, qPrintable(QString::number(i)));
    }
}

// Three long thorns point at the middle: a disc there touches their points only.
void tst_Thickness::cornersHoldADiscBetweenThem()
{
    constexpr double pi = 3.14159265358979323846;
    GridRing ring;
    for (int i = 0; i < 3; ++i) {
        const double at = 2.0 * pi * i / 3.0;
        ring.push_back(around(at - 0.03, 1000000.0));
        ring.push_back(around(at, 220.0));
        ring.push_back(around(at + 0.03, 1000000.0));
    }
    // Walls beside the thorns leave no room elsewhere: thinner than the disc.
    GridRing thin;
    for (int i = 0; i < 3; ++i) {
        const double at = 2.0 * pi * i / 3.0, between = at + pi / 3.0;
        thin.push_back(around(at, 220.0));
        thin.push_back(around(between, 480.0));
    }
    QVERIFY(discFits({ring}, 200.0).fits);
    QVERIFY(discFits({thin}, 200.0).fits);
    QVERIFY(!discFits({thin}, 260.0).fits);
}

void tst_Thickness::randomShapesHoldTheirLargestDisc()
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> share(0.02, 1.0);
    for (int i = 0; i < 120; ++i) {
        GridRing ring;
        const int corners = 3 + i % 40;
        for (int j = 0; j < corners; ++j)
            ring.push_back(around(6.283185307179586 * j / corners, 1e6 * share(random)));
        std::vector<GridRing> rings{ring};
        if (i % 3 == 0) {
            GridRing hole;
            for (int j = 0; j < corners; ++j)
                hole.push_back({ring[corners - 1 - j].x / 2, ring[corners - 1 - j].y / 2});
            rings.push_back(hole);
        }
        const double radius = largestDisc(rings).radius;
        QVERIFY2(discFits(rings, radius * 0.98).fits, qPrintable(QString::number(i)));
        QVERIFY2(!discFits(rings, radius * 1.02).fits, qPrintable(QString::number(i)));
    }
}

QTEST_APPLESS_MAIN(tst_Thickness)
#include "tst_thickness.moc"
