// Unions and differences whose edges touch, overlap and lie upon each other, against the winding numbers of
// what went in.
#include "cam/polygon/clipping.h"
#include "cam/polygon/paintedarea.h"
#include "cam/polygon/surfacepolygons.h"

#include <QtTest>

#include <cmath>
#include <random>

using namespace cam;

namespace {

using Rings = std::vector<GridRing>;

GridRing box(std::int64_t left, std::int64_t bottom, std::int64_t right, std::int64_t top)
{
    return {{left, bottom}, {right, bottom}, {right, top}, {left, top}};
}

double areaOf(const Rings &rings)
{
    double sum = 0.0;
    for (const GridRing &ring : rings)
        sum += doubledArea(ring) / 2.0;
    return sum;
}

struct PlainPoint
{
    double x, y;
};

struct PlainEdge
{
    PlainPoint from, to;
    double length() const { return std::hypot(to.x - from.x, to.y - from.y); }
};

PlainPoint plain(GridPoint p)
{
    return {static_cast<double>(p.x), static_cast<double>(p.y)};
}

std::vector<PlainEdge> edgesOf(const Rings &rings)
{
    std::vector<PlainEdge> edges;
    for (const GridRing &ring : rings) {
        for (std::size_t i = 0; i < ring.size(); ++i)
            edges.push_back({plain(ring[i]), plain(ring[(i + 1) % ring.size()])});
    }
    return edges;
}

int windingNumber(PlainPoint p, const Rings &rings)
{
    int winding = 0;
    for (const PlainEdge &edge : edgesOf(rings)) {
        if ((edge.from.y > p.y) == (edge.to.y > p.y))
            continue;
        const double share = (p.y - edge.from.y) / (edge.to.y - edge.from.y);
        if (edge.from.x + share * (edge.to.x - edge.from.x) < p.x)
            winding += edge.from.y > edge.to.y ? 1 : -1;
    }
    return winding;
}

double distance(PlainPoint p, const PlainEdge &edge)
{
    const double dx = edge.to.x - edge.from.x, dy = edge.to.y - edge.from.y;
    const double squared = dx * dx + dy * dy;
    double share = squared > 0.0 ? ((p.x - edge.from.x) * dx + (p.y - edge.from.y) * dy) / squared : 0.0;
    share = std::min(1.0, std::max(0.0, share));
    return std::hypot(p.x - edge.from.x - share * dx, p.y - edge.from.y - share * dy);
}

bool isNear(PlainPoint p, const Rings &rings)
{
    constexpr double units = 4.0;
    for (const PlainEdge &edge : edgesOf(rings)) {
        if (distance(p, edge) < units)
            return true;
    }
    return false;
}

// How far two edges lie upon each other, in opposite directions.
double overlap(const PlainEdge &a, const PlainEdge &b)
{
    const double dx = a.to.x - a.from.x, dy = a.to.y - a.from.y;
    const double length = a.length();
    if (dx * (b.to.y - b.from.y) != dy * (b.to.x - b.from.x) ||
        dx * (b.from.y - a.from.y) != dy * (b.from.x - a.from.x))
        return 0.0;
    const auto along = [&](PlainPoint p) { return ((p.x - a.from.x) * dx + (p.y - a.from.y) * dy) / length; };
    const double start = along(b.to), end = along(b.from);
    return std::max(0.0, std::min(length, end) - std::max(0.0, start));
}

bool haveEdgesUponEachOther(const Rings &rings)
{
    const std::vector<PlainEdge> edges = edgesOf(rings);
    for (std::size_t i = 0; i < edges.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (overlap(edges[i], edges[j]) > 0.0)
                return true;
        }
    }
    return false;
}

// Shapes on a coarse grid, so that corners and edges often meet.
enum class Kind { Boxes, Diamonds, Triangles };
constexpr int cells = 8;
constexpr std::int64_t cell = 1000;

GridRing randomShape(Kind kind, std::mt19937 &random)
{
    const auto below = [&random](int end) { return static_cast<std::int64_t>(random() % unsigned(end)); };
    if (kind == Kind::Boxes) {
        const std::int64_t left = below(cells), bottom = below(cells);
        const std::int64_t right = left + 1 + below(cells - static_cast<int>(left)),
                           top = bottom + 1 + below(cells - static_cast<int>(bottom));
        return box(left * cell, bottom * cell, right * cell, top * cell);
    }
    if (kind == Kind::Diamonds) {
        const std::int64_t x = below(cells) * cell, y = below(cells) * cell, r = (1 + below(3)) * cell;
        return {{x - r, y}, {x, y - r}, {x + r, y}, {x, y + r}};
    }
    GridRing ring;
    do {
        ring.clear();
        for (int i = 0; i < 3; ++i)
            ring.push_back({below(cells + 1) * cell, below(cells + 1) * cell});
    } while (doubledArea(ring) == 0.0);
    makeCounterClockwise(ring);
    return ring;
}

// Hands over stored rings.
class Painting : public PaintSource
{
public:
    explicit Painting(const Rings &all) : m_rings(all) {}
    void rings(std::uint32_t item, Rings &rings) override { rings.push_back(m_rings[item]); }

private:
    const Rings &m_rings;
};

} // namespace

class tst_Booleans : public QObject
{
    Q_OBJECT

private slots:
    // Three clear boxes, of which one touches both others.
    void clearBoxesThatTouchLeaveNoLineBetweenThem()
    {
        const Rings left = subtracted({box(0, 0, 3, 3)}, {box(0, 0, 1, 2), box(1, 2, 2, 3), box(0, 1, 2, 2)});
        QCOMPARE(areaOf(left), 5.0);
        QCOMPARE(left.size(), std::size_t(2)); // apart but for the corner at 1, 2
        QVERIFY(!haveEdgesUponEachOther(left));
    }

    void clearBoxesThatTouchTakeTheirArea()
    {
        const Rings left = subtracted({box(0, 0, 5, 5)},
                                      {box(0, 1, 1, 4), box(2, 3, 4, 4), box(0, 4, 4, 5), box(1, 1, 3, 3)});
        QCOMPARE(areaOf(left), 12.0);
    }

    void holeThatTouchesItsOutlineBelongsToIt()
    {
        const Rings left = subtracted({box(0, 0, 40, 40)}, {{{0, 20}, {20, 10}, {30, 20}, {20, 30}}});
        QCOMPARE(left.size(), std::size_t(1));
        QCOMPARE(areaOf(left), 1600.0 - 300.0);
    }

    void holesThatTouchAreOne()
    {
        const Rings left = subtracted({box(0, 0, 40, 40)}, {box(10, 10, 20, 20), box(20, 20, 30, 30)});
        QCOMPARE(left.size(), std::size_t(2));
        QCOMPARE(areaOf(left), 1600.0 - 200.0);
    }

    void islandsThatTouchStayApart()
    {
        const Rings both = united({box(0, 0, 10, 10)}, {box(10, 10, 20, 20)});
        QCOMPARE(both.size(), std::size_t(2));
        QCOMPARE(areaOf(both), 200.0);
    }

    void holesFollowTheirIslands()
    {
        Rings rings;
        for (int i = 0; i < 3; ++i) {
            const int at = 100 * i;
            rings.push_back(box(at, 0, at + 90, 90));
            rings.push_back(box(at + 10, 10, at + 40, 80));
            makeClockwise(rings.back());
            rings.push_back(box(at + 50, 10, at + 80, 80));
            makeClockwise(rings.back());
            rings.push_back(box(at + 60, 20, at + 70, 70)); // in the hole
        }
        const Rings clean = cleaned(rings);
        QCOMPARE(clean.size(), std::size_t(12));
        QCOMPARE(areaOf(clean), 3.0 * (8100.0 - 2.0 * 2100.0 + 500.0));
        GridBox island;
        for (const GridRing &ring : clean) {
            GridBox extent;
            extent.add(ring);
            if (doubledArea(ring) > 0.0)
                island = extent;
            else
                QVERIFY(island.contains(extent));
        }
    }

    // Beyond 31 bits the products of coordinates take more than 64.
    void farCoordinatesAreComparedExactly()
    {
        const std::int64_t far = std::int64_t(1) << 40;
        const GridRing thin = {{-far, -far}, {far, far - 1}, {far, far}};
        const Rings left = subtracted({thin}, {box(-far, -far, 0, far)});
        QCOMPARE(left.size(), std::size_t(1));
        // At x = 0 the edges are half a unit apart: rounded to none or one.
        QVERIFY(std::fabs(areaOf(left) / (0.75 * static_cast<double>(far)) - 1.0) < 0.34);
        for (const GridPoint p : left[0])
            QVERIFY(p.x >= 0);
    }

    void randomShapesGiveWhatTheirWindingNumbersSay_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("boxes") << static_cast<int>(Kind::Boxes);
        QTest::newRow("diamonds") << static_cast<int>(Kind::Diamonds);
        QTest::newRow("triangles") << static_cast<int>(Kind::Triangles);
    }
    // The result covers what it should, and is made of polygons of which no edge runs through clear area:
    // links between outline and holes have the polygon's own area on both sides.
    void randomShapesGiveWhatTheirWindingNumbersSay()
    {
        QFETCH(int, kind);
        std::mt19937 random(1);
        for (int round = 0; round < 1500; ++round) {
            Rings dark, clear;
            for (unsigned i = 0; i <= random() % 4u; ++i)
                dark.push_back(randomShape(static_cast<Kind>(kind), random));
            for (unsigned i = 0; i <= random() % 8u; ++i)
                clear.push_back(randomShape(static_cast<Kind>(kind), random));
            const Rings left = subtracted(cleaned(dark), clear);
            Rings polygons;
            emitSimple(left, round % 2 == 0 ? 4090 : 8,
                       [&polygons](const GridRing &ring) { polygons.push_back(ring); });
            const QByteArray where = "round " + QByteArray::number(round);
            QVERIFY2(!haveEdgesUponEachOther(left), where);
            const auto isDark = [&](PlainPoint p) {
                return windingNumber(p, dark) > 0 && windingNumber(p, clear) <= 0;
            };
            for (int i = 0; i < 40; ++i) {
                const PlainPoint p = {random() % 9000u - 499.5, random() % 9000u - 499.5};
                if (isNear(p, dark) || isNear(p, clear))
                    continue;
                QVERIFY2(windingNumber(p, left) == (isDark(p) ? 1 : 0), where);
                QVERIFY2(windingNumber(p, polygons) == (isDark(p) ? 1 : 0), where);
            }
            // What runs along no edge of the input is a link or a cut: it has area on both sides.
            for (const PlainEdge &edge : edgesOf(polygons)) {
                const PlainPoint middle = {(edge.from.x + edge.to.x) / 2.0, (edge.from.y + edge.to.y) / 2.0};
                QVERIFY2(isNear(middle, dark) || isNear(middle, clear) || isDark(middle), where);
            }
        }
    }

    // Islands and holes of a surface in any order, touching, nested and crossing: also where a hole leaves an
    // island that is not convex, and so stays within its box.
    void surfacesInAnyOrderGiveWhatTheirWindingNumbersSay()
    {
        std::mt19937 random(1);
        for (int round = 0; round < 400; ++round) {
            Rings rings;
            for (unsigned i = 0; i <= random() % 8u; ++i) {
                GridRing ring = randomShape(static_cast<Kind>(random() % 3u), random);
                GridBox extent;
                extent.add(ring);
                if (ring.size() == 4 && random() % 2u == 0) // a notch in its upper right
                    ring = {extent.low,
                            {extent.high.x, extent.low.y},
                            {extent.high.x, extent.low.y + 300},
                            {extent.low.x + 300, extent.low.y + 300},
                            {extent.low.x + 300, extent.high.y},
                            {extent.low.x, extent.high.y}};
                if (random() % 2u == 0)
                    std::reverse(ring.begin(), ring.end());
                const std::int64_t aside = random() % 2u == 0 ? 0 : random() % 900u;
                for (GridPoint &corner : ring)
                    corner = {corner.x + aside, corner.y + aside / 2};
                rings.push_back(std::move(ring));
            }
            Rings polygons;
            emitArea(
                rings, round % 2 == 0 ? 4090 : 40,
                [&polygons](const GridRing &ring) { polygons.push_back(ring); }, [](double) {});
            const QByteArray where = "round " + QByteArray::number(round);
            for (int i = 0; i < 60; ++i) {
                const PlainPoint p = {random() % 10000u - 499.5, random() % 10000u - 499.5};
                if (isNear(p, rings))
                    continue;
                bool isDark = false;
                for (const GridRing &polygon : polygons) {
                    const int winding = windingNumber(p, {polygon});
                    QVERIFY2(winding == 0 || winding == 1, where);
                    isDark = isDark || winding == 1;
                }
                QVERIFY2(isDark == (windingNumber(p, rings) > 0), where);
            }
        }
    }

    // Readers fill such a polygon in two ways. The larger loop says which way it runs; a place that is
    // enclosed twice is dark, and a loop that runs the other way is not.
    void surfaceOfOneContourThatCrossesItselfIsTakenApart()
    {
        const GridRing twoLoops = {{0, 0}, {3000, 3000}, {3000, 0}, {0, 3000 - 1000}}; // unequal
        const GridRing twice = {{0, 0},       {9000, 0},    {9000, 9000}, {0, 9000}, {0, 1000},
                                {5000, 1000}, {5000, 5000}, {1000, 5000}, {1000, 0}};
        for (GridRing ring : {twoLoops, twice}) {
            makeCounterClockwise(ring);
            for (const std::size_t most : {std::size_t{4090}, std::size_t{8}}) {
                Rings polygons;
                emitArea(
                    {ring}, most, [&polygons](const GridRing &polygon) { polygons.push_back(polygon); },
                    [](double) {});
                std::mt19937 random(1);
                for (int i = 0; i < 2000; ++i) {
                    const PlainPoint p = {random() % 9100u - 49.5, random() % 9100u - 49.5};
                    if (isNear(p, {ring}))
                        continue;
                    int dark = 0;
                    for (const GridRing &polygon : polygons) {
                        const int winding = windingNumber(p, {polygon});
                        QVERIFY(winding == 0 || winding == 1);
                        dark += winding;
                    }
                    QCOMPARE(dark, windingNumber(p, {ring}) > 0 ? 1 : 0);
                }
            }
        }
    }

    // Long edges that run within a few units of each other, and cross at flat angles: each crossing that is
    // rounded bends them, and makes others.
    void bundlesOfLongEdgesAreResolved()
    {
        std::mt19937 random(1);
        const auto below = [&random](unsigned end) { return static_cast<std::int64_t>(random() % end); };
        constexpr std::int64_t length = 1'000'000'000;
        for (int round = 0; round < 60; ++round) {
            const std::int64_t rise = round % 3 == 0 ? below(7) : below(length);
            Rings rings;
            for (int i = 0; i < 40; ++i) {
                rings.push_back({{below(9), below(9)},
                                 {length + below(9), rise + below(9)},
                                 {below(length), rise / 2 + (below(2) == 0 ? length : -length)}});
                makeCounterClockwise(rings.back());
            }
            const Rings left = cleaned(rings);
            const QByteArray where = "round " + QByteArray::number(round);
            QVERIFY2(!haveEdgesUponEachOther(left), where);
            for (int i = 0; i < 200; ++i) {
                const PlainPoint p = {static_cast<double>(below(length)) + 0.5,
                                      static_cast<double>(2 * below(length) - length) + 0.5};
                if (!isNear(p, rings))
                    QVERIFY2(windingNumber(p, left) == (windingNumber(p, rings) > 0 ? 1 : 0), where);
            }
        }
    }

    // Rings upon each other have the same corners on both sides of every cut.
    void manyRingsUponEachOtherComeToAnEnd()
    {
        for (const std::size_t most : {std::size_t{4090}, std::size_t{12}}) {
            Rings rings, polygons;
            for (std::int64_t i = 0; i < 600; ++i)
                rings.push_back(box(i % 3, 0, 1'000'000'000, 1'000'000'000 - i % 5));
            double share = 0.0;
            emitArea(
                rings, most, [&polygons](const GridRing &polygon) { polygons.push_back(polygon); },
                [&share](double done) { share = done; });
            QVERIFY(polygons.size() < 50);
            QCOMPARE(share, 1.0);
        }
    }

    // Cut into pieces, the area is the same, and no piece has a line of its cut in clear area.
    void piecesHaveNoLinesAlongTheirCuts()
    {
        std::mt19937 random(1);
        Rings all = {box(0, 0, 600 * cell, 400 * cell)};
        double taken = 0.0;
        for (int x = 10; x < 590; x += 10) {
            for (int y = 10; y < 390; y += 10) {
                const auto size = static_cast<std::int64_t>(random() % 10u + 1u);
                all.push_back(box(x * cell, y * cell, (x + size) * cell, (y + size) * cell));
                taken += static_cast<double>(size * size * cell * cell);
            }
        }
        Painting source(all);
        PaintedArea area(source, 4090);
        for (std::uint32_t i = 0; i < all.size(); ++i) {
            GridBox extent;
            extent.add(all[i]);
            area.paint(i, i == 0 ? Polarity::Positive : Polarity::Negative, extent, all[i].size());
        }
        Rings polygons;
        area.resolve([&polygons](const GridRing &ring) { polygons.push_back(ring); }, [](double) {});
        QVERIFY(polygons.size() > 4);
        QCOMPARE(areaOf(polygons), areaOf({all[0]}) - taken);
        const auto isClear = [&all](double x, double y) {
            const int column = static_cast<int>(x / (10.0 * cell)), row = static_cast<int>(y / (10.0 * cell));
            if (column < 1 || column > 58 || row < 1 || row > 38)
                return false;
            const GridRing &hole = all[static_cast<std::size_t>(1 + (column - 1) * 38 + row - 1)];
            return x < static_cast<double>(hole[2].x) && y < static_cast<double>(hole[2].y);
        };
        for (const PlainEdge &edge : edgesOf(polygons)) {
            const double x = (edge.from.x + edge.to.x) / 2.0, y = (edge.from.y + edge.to.y) / 2.0;
            const double dx = (edge.to.x - edge.from.x) / edge.length() * 0.5,
                         dy = (edge.to.y - edge.from.y) / edge.length() * 0.5;
            QVERIFY(!isClear(x - dy, y + dx) || !isClear(x + dy, y - dx));
        }
    }
};

QTEST_APPLESS_MAIN(tst_Booleans)
#include "tst_booleans.moc"
