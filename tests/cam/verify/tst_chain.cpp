// Edges of two pictures against each other: what both have vanishes, what differs stays, closed.
#include "cam/verify/chain.h"

#include "cam/polygon/arrangement.h"

#include <QtTest>

#include <map>
#include <random>

using namespace cam::verify;
using cam::GridPoint;
using cam::GridRing;

namespace {

constexpr std::int64_t tolerance = 4;

// Squares all over a board, some corners of which lie as near each other as two pictures' may.
std::vector<GridRing> squares(int count)
{
    std::vector<GridRing> rings;
    for (int i = 0; i < count; ++i) {
        const std::int64_t x = (i % 100) * 5000, y = (i / 100) * 5000 + i % 7;
        rings.push_back({{x, y}, {x + 4000, y}, {x + 4000, y + 4000}, {x, y + 4000}});
    }
    return rings;
}

std::vector<GridRing> shaken(std::vector<GridRing> rings, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> shift(-int(tolerance), int(tolerance));
    for (GridRing &ring : rings) {
        for (GridPoint &p : ring)
            p = {p.x + shift(random), p.y + shift(random)};
    }
    return rings;
}

std::vector<DirectedEdge> leftOf(const std::vector<GridRing> &first, const std::vector<GridRing> &second)
{
    Chain chain(tolerance);
    for (const GridRing &ring : first)
        chain.addFirst(ring);
    for (const GridRing &ring : second)
        chain.addSecond(ring);
    return chain.take();
}

double areaOf(const std::vector<DirectedEdge> &edges)
{
    double sum = 0.0;
    for (const GridRing &ring : ringsOf(edges))
        sum += cam::doubledArea(ring) / 2.0;
    return sum;
}

} // namespace

class tst_Chain : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsLeftOfTheSame();
    void whatDiffersIsLeft();
    void cutsVanish();
    void ringsStayClosed();
    void edgesCountAsOftenAsTheyRun();
    void cornersAreTakenForTheNearest();
};

void tst_Chain::nothingIsLeftOfTheSame()
{
    const std::vector<GridRing> rings = squares(5000);
    QVERIFY(leftOf(rings, rings).empty());
    QVERIFY(leftOf(rings, shaken(rings, 1)).empty());
    QVERIFY(leftOf({}, {}).empty());
    // Two corners that are taken for one.
    GridRing cut = rings[0];
    cut.insert(cut.begin() + 1, {cut[1].x - 3, cut[1].y});
    QVERIFY(leftOf({rings[0]}, {cut}).empty());
    // The chain is empty afterwards.
    Chain chain(tolerance);
    chain.addFirst(rings[0]);
    QCOMPARE(chain.take().size(), std::size_t(4));
    QVERIFY(chain.take().empty());
}

void tst_Chain::whatDiffersIsLeft()
{
    const std::vector<GridRing> rings = squares(5000);
    std::vector<GridRing> other = shaken(rings, 2);
    other.erase(other.begin() + 1234);
    const std::vector<DirectedEdge> left = leftOf(rings, other);
    QCOMPARE(left.size(), std::size_t(4));
    QCOMPARE(areaOf(left), 4000.0 * 4000.0);
    // Farther than the tolerance.
    other = rings;
    for (GridPoint &p : other[77])
        p.x += tolerance + 1;
    QCOMPARE(leftOf(rings, other).size(), std::size_t(8));
}

// One square against its pieces, whose corners on the cuts are no corners of it.
void tst_Chain::cutsVanish()
{
    const GridRing whole = {{0, 0}, {4000, 0}, {8000, 0}, {8000, 8000}, {4000, 8000}, {0, 8000}};
    const std::vector<GridRing> pieces = {{{0, 0}, {4000, 0}, {4000, 8000}, {0, 8000}},
                                          {{4000, 0}, {8000, 0}, {8000, 8000}, {4000, 8000}}};
    QVERIFY(leftOf({whole}, pieces).empty());
    QVERIFY(leftOf(pieces, {whole}).empty());
}

// Corners that are taken for others are so for all edges that they have.
void tst_Chain::ringsStayClosed()
{
    for (unsigned seed = 0; seed < 20; ++seed) {
        std::mt19937 random(seed);
        std::uniform_int_distribution<std::int64_t> place(0, 300);
        const auto ring = [&](int corners) {
            GridRing made;
            for (int i = 0; i < corners; ++i)
                made.push_back({place(random), place(random)});
            return made;
        };
        std::vector<GridRing> first, second;
        for (int i = 0; i < 50; ++i) {
            first.push_back(ring(20));
            second.push_back(ring(20));
        }
        std::map<GridPoint, int, decltype(&cam::operator<)> balance(cam::operator<);
        for (const DirectedEdge &edge : leftOf(first, second)) {
            balance[edge.from] += edge.count;
            balance[edge.to] -= edge.count;
        }
        QVERIFY(!balance.empty());
        for (const auto &[at, sum] : balance)
            QCOMPARE(sum, 0);
    }
}

void tst_Chain::edgesCountAsOftenAsTheyRun()
{
    const GridRing square = squares(1)[0];
    GridRing reversed(square.rbegin(), square.rend());
    QVERIFY(leftOf({square, reversed}, {}).empty());
    const std::vector<DirectedEdge> twice = leftOf({square, square, square}, {square});
    QCOMPARE(twice.size(), std::size_t(4));
    for (const DirectedEdge &edge : twice)
        QCOMPARE(std::abs(edge.count), 2);
    QCOMPARE(ringsOf(twice).size(), std::size_t(2));
}

void tst_Chain::cornersAreTakenForTheNearest()
{
    std::mt19937 random(3);
    std::uniform_int_distribution<std::int64_t> place(-400, 400);
    std::vector<GridPoint> corners;
    for (int i = 0; i < 3000; ++i)
        corners.push_back({place(random), place(random)});
    const CornerIndex index(corners, tolerance);
    const auto far = [](GridPoint a, GridPoint b) {
        return std::max(std::abs(a.x - b.x), std::abs(a.y - b.y));
    };
    int snapped = 0;
    for (int i = 0; i < 3000; ++i) {
        const GridPoint at = {place(random) * 11 / 10, place(random) * 11 / 10};
        std::int64_t nearest = tolerance + 1;
        for (const GridPoint corner : corners)
            nearest = std::min(nearest, far(corner, at));
        const GridPoint found = index.snapped(at);
        QCOMPARE(far(found, at), nearest > tolerance ? 0 : nearest);
        snapped += found != at;
    }
    QVERIFY(snapped > 500 && snapped < 2900);
    QCOMPARE(CornerIndex({}, tolerance).snapped({-5, 7}), (GridPoint{-5, 7}));
}

QTEST_APPLESS_MAIN(tst_Chain)
#include "tst_chain.moc"
