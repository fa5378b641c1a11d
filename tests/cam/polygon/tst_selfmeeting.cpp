// The quick answer whether a ring may meet itself, against a comparison of every two of its edges; and the
// side of a line, against wider numbers.
#include "cam/polygon/arrangement.h"
#include "cam/polygon/orientation.h"
#include "cam/polygon/selfmeeting.h"

#include <QtTest>

#include <cmath>
#include <random>

using namespace cam;

namespace {

bool isOn(GridPoint p, GridPoint a, GridPoint b)
{
    return sideOf(a, b, p) == 0 && std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) &&
           std::min(a.y, b.y) <= p.y && p.y <= std::max(a.y, b.y);
}

bool haveCommonPoint(GridPoint a, GridPoint b, GridPoint c, GridPoint d)
{
    if (isOn(a, c, d) || isOn(b, c, d) || isOn(c, a, b) || isOn(d, a, b))
        return true;
    return sideOf(a, b, c) * sideOf(a, b, d) < 0 && sideOf(c, d, a) * sideOf(c, d, b) < 0;
}

// Whether two edges that are not neighbours have a point in common, or neighbours more than their corner.
bool meetsItself(const GridRing &ring)
{
    const std::size_t count = ring.size();
    for (std::size_t i = 0; i < count; ++i) {
        const GridPoint a = ring[i], b = ring[(i + 1) % count], c = ring[(i + 2) % count];
        if (isOn(c, a, b) || isOn(a, b, c))
            return true;
        for (std::size_t k = i + 2; k < count && (k + 1) % count != i; ++k) {
            if (haveCommonPoint(a, b, ring[k], ring[(k + 1) % count]))
                return true;
        }
    }
    return false;
}

QString written(const GridRing &ring)
{
    QString text;
    for (const GridPoint p : ring)
        text += QString(" (%1, %2)").arg(p.x).arg(p.y);
    return text;
}

// Around a centre, at distances that may change from corner to corner: meets itself nowhere.
GridRing star(std::mt19937 &random, std::size_t corners, double roughness)
{
    std::uniform_real_distribution<double> distance(1.0 - roughness, 1.0);
    const double step = 2.0 * std::acos(-1.0) / static_cast<double>(corners);
    GridRing ring;
    for (std::size_t i = 0; i < corners; ++i) {
        const double radius = 1e6 * distance(random), angle = step * static_cast<double>(i);
        ring.push_back({std::llround(radius * std::cos(angle)), std::llround(radius * std::sin(angle))});
    }
    return ring;
}

} // namespace

class tst_SelfMeeting : public QObject
{
    Q_OBJECT

private slots:
    void noRingThatMeetsItselfIsMissed_data();
    void noRingThatMeetsItselfIsMissed();
    void ringsThatDoNotAreFound();
    void aRingThatCrossesItselfIsToldWhicheverWayItRuns();
    void sidesAreExactWhereverPointsLie();
};

void tst_SelfMeeting::noRingThatMeetsItselfIsMissed_data()
{
    QTest::addColumn<int>("most");     // corners
    QTest::addColumn<int>("farthest"); // coordinate
    QTest::newRow("few corners on few places") << 7 << 4;
    QTest::newRow("few corners") << 7 << 1000;
    QTest::newRow("more corners") << 24 << 40;
    QTest::newRow("far away") << 7 << 2'000'000'000;
}

void tst_SelfMeeting::noRingThatMeetsItselfIsMissed()
{
    QFETCH(int, most);
    QFETCH(int, farthest);
    std::mt19937 random(4);
    std::uniform_int_distribution<int> coordinate(-farthest, farthest), corners(3, most);
    int meeting = 0, apart = 0;
    for (int i = 0; i < 20000; ++i) {
        GridRing ring;
        for (int k = corners(random); k > 0; --k) {
            const GridPoint p{coordinate(random), coordinate(random)};
            if (ring.empty() || (ring.back() != p && ring.front() != p))
                ring.push_back(p);
        }
        if (ring.size() < 3)
            continue;
        const bool meets = meetsItself(ring);
        ++(meets ? meeting : apart);
        // Edges that only touch, or lead back on the one before, enclose nothing twice.
        if (meets && !mayMeetItself(ring)) {
            makeCounterClockwise(ring);
            QVERIFY2(repeatedArea({ring}) == 0.0, qPrintable(written(ring)));
        }
        if (!meets)
            QVERIFY2(!mayMeetItself(ring), qPrintable(written(ring)));
    }
    QVERIFY(meeting > 1000);
    QVERIFY(apart > 100);
}

void tst_SelfMeeting::ringsThatDoNotAreFound()
{
    std::mt19937 random(5);
    for (const std::size_t corners : {3, 4, 5, 17, 360, 5000}) {
        for (const double roughness : {0.0, 0.001, 0.3}) {
            if (corners == 5000 && roughness == 0.3) // long edges, and many: it gives up
                continue;
            const GridRing ring = star(random, corners, roughness);
            QVERIFY2(!mayMeetItself(ring), qPrintable(QString("%1 corners, %2").arg(corners).arg(roughness)));
        }
    }
}

// One corner of a circle pulled over to the other side and back: the smallest crossing there is in many
// corners.
void tst_SelfMeeting::aRingThatCrossesItselfIsToldWhicheverWayItRuns()
{
    std::mt19937 random(6);
    for (const std::size_t corners : {5, 17, 360, 5000}) {
        GridRing ring = star(random, corners, 0.0);
        ring[corners / 3] = {-ring[corners / 3].x * 2, -ring[corners / 3].y * 2};
        for (int turned = 0; turned < 2; ++turned) {
            for (std::size_t start = 0; start < corners; start += 1 + corners / 7) {
                GridRing from = ring;
                std::rotate(from.begin(), from.begin() + static_cast<std::ptrdiff_t>(start), from.end());
                QVERIFY(mayMeetItself(from));
                QVERIFY(crossesItself(from));
            }
            std::reverse(ring.begin(), ring.end());
        }
    }
}

void tst_SelfMeeting::sidesAreExactWhereverPointsLie()
{
    std::mt19937_64 random(7);
    for (const std::int64_t farthest : {3LL, 1000LL, 1LL << 31, 1LL << 50, 1LL << 56}) {
        std::uniform_int_distribution<std::int64_t> coordinate(-farthest, farthest);
        for (int i = 0; i < 20000; ++i) {
            const GridPoint u{coordinate(random), coordinate(random)};
            GridPoint v{coordinate(random), coordinate(random)};
            if (i % 4 == 0)
                v = {u.x, u.y + i % 3 - 1}; // nearly the same direction
            // The difference of the rounded products, where it is larger than their errors; otherwise it fits
            // into 64 bits, and so is exact modulo 2^64.
            const double rough = static_cast<double>(u.x) * static_cast<double>(v.y) -
                                 static_cast<double>(u.y) * static_cast<double>(v.x);
            const auto exact =
                static_cast<std::int64_t>(static_cast<std::uint64_t>(u.x) * static_cast<std::uint64_t>(v.y) -
                                          static_cast<std::uint64_t>(u.y) * static_cast<std::uint64_t>(v.x));
            const bool isFar = std::fabs(rough) > std::ldexp(1.0, 62);
            const int expected = isFar ? (rough > 0.0 ? 1 : -1) : (exact > 0) - (exact < 0);
            QCOMPARE(turn(u, v), expected);
            QCOMPARE(turn(v, u), -expected);
        }
    }
}

QTEST_APPLESS_MAIN(tst_SelfMeeting)
#include "tst_selfmeeting.moc"
