// Symbol names and their shapes: areas to 1e-6 of what a formula gives, extents, single points where a
// picture decides, and names that are refused.
#include "host/cam/geometry/trigonometry.h"
#include "host/cam/symbols/standardsymbol.h"

#include <QtTest>

#include <cmath>

using cam::Point;
using cam::Shape;
using cam::SymbolUnit;

namespace {

const double pi = std::acos(-1.0);

Shape shapeOf(const char *name, double growthMicrometres = 0.0)
{
    return cam::shapeOf(cam::parseStandardSymbol(name, SymbolUnit::Micrometres), growthMicrometres * 1000.0);
}

// Square micrometres.
double areaOf(const Shape &shape)
{
    return cam::area(shape) / 1e6;
}

double circle(double diameter)
{
    return pi * diameter * diameter / 4.0;
}

// The part of a circle's upper half plane strip from y = 0 to `height`, right of the centre.
double strip(double radius, double height)
{
    return (height * std::sqrt(radius * radius - height * height) +
            radius * radius * std::asin(height / radius)) /
           2.0;
}

// What one gap takes away from a round ring.
double gapInRing(double outer, double inner, double gap)
{
    return 2.0 * (strip(outer / 2.0, gap / 2.0) - strip(inner / 2.0, gap / 2.0));
}

// The sides of a contour that a ray to the right of `at` crosses, arcs taken as 2-degree chords.
bool isInside(const cam::ContourView &contour, Point at)
{
    std::vector<Point> corners{contour.start};
    for (const cam::Edge &edge : contour) {
        const Point from = corners.back();
        if (edge.kind != cam::EdgeKind::Line) {
            const double swept = cam::sweptDegrees(from, edge);
            const int steps = static_cast<int>(std::fabs(swept) / 2.0) + 1;
            for (int i = 1; i < steps; ++i)
                corners.push_back(edge.center +
                                  cam::Transform::rotation(swept * i / steps).linear(from - edge.center));
        }
        corners.push_back(edge.end);
    }
    bool inside = false;
    for (std::size_t i = 0; i + 1 < corners.size(); ++i) {
        const Point a = corners[i], b = corners[i + 1];
        if ((a.y > at.y) != (b.y > at.y) && at.x < a.x + (b.x - a.x) * (at.y - a.y) / (b.y - a.y))
            inside = !inside;
    }
    return inside;
}

// Whether the point, in micrometres, is dark.
bool isDark(const Shape &shape, double x, double y)
{
    const Point at{x * 1000.0, y * 1000.0};
    bool dark = false, inIsland = false;
    for (std::size_t i = 0; i < shape.contours.size(); ++i) {
        const cam::ContourView contour = shape.contours[i];
        if (!contour.isHole) {
            dark = dark || inIsland;
            inIsland = isInside(contour, at);
        } else if (isInside(contour, at)) {
            inIsland = false;
        }
    }
    return dark || inIsland;
}

} // namespace

class StandardSymbolTest : public QObject
{
    Q_OBJECT
private slots:
    void areaIsWhatTheNameSays_data();
    void areaIsWhatTheNameSays();
    void extentIsWhatTheNameSays_data();
    void extentIsWhatTheNameSays();
    void growthMovesEveryEdgeByHalfOfIt_data();
    void growthMovesEveryEdgeByHalfOfIt();
    void pointIsDarkWhereThePictureShowsIt_data();
    void pointIsDarkWhereThePictureShowsIt();
    void milsAreThousandthsOfAnInch();
    void roundCornersAreTrueArcs();
    void shrinkingAThinSymbolLeavesNothing();
    void symbolWithoutAPositiveSizeDrawsNothing_data();
    void symbolWithoutAPositiveSizeDrawsNothing();
    void unknownNameIsRefusedByName_data();
    void unknownNameIsRefusedByName();
};

void StandardSymbolTest::areaIsWhatTheNameSays_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("area"); // square micrometres
    const auto row = [](const char *name, double area) { QTest::newRow(name) << QString(name) << area; };
    row("r200", circle(200));
    row("r0", 0);
    row("s200", 40000);
    row("rect300x200", 60000);
    row("rect300.5x200.25", 300.5 * 200.25);
    row("rect300x200xr50", 60000 - (10000 - circle(100)));
    row("rect300x200xr50x13", 60000 - (10000 - circle(100)) / 2);
    row("rect300x200xr100", 100 * 200 + circle(200));
    row("rect300x200xr400", 100 * 200 + circle(200)); // cut to half of the smaller side
    row("rect300x200xc50", 60000 - 4 * 1250);
    row("rect300x200xc50x2", 60000 - 1250);
    row("oval300x200", 100 * 200 + circle(200));
    row("oval200x300", 100 * 200 + circle(200));
    row("oval200x200", circle(200));
    row("di300x200", 30000);
    row("oct300x200x50", 60000 - 4 * 1250);
    row("oct200x200x100", 20000);
    row("donut_r300x200", circle(300) - circle(200));
    row("donut_r300x0", circle(300));
    row("donut_s300x200", 90000 - 40000);
    row("donut_s300x200xr80", 90000 - (160 * 160 - circle(160)) - 40000 + (60 * 60 - circle(60)));
    row("donut_s300x200xr80x1", 90000 - (160 * 160 - circle(160)) / 4 - 40000 + (60 * 60 - circle(60)) / 4);
    row("donut_sr300x200", 90000 - circle(200));
    row("donut_rc300x200x40", 60000 - 220 * 120);
    row("donut_rc300x200x40xr60", 60000 - (120 * 120 - circle(120)) - 220 * 120 + (40 * 40 - circle(40)));
    row("donut_o300x200x40", 100 * 200 + circle(200) - 100 * 120 - circle(120));
    row("hex_l300x200x60", 180 * 200 + 60 * 200);
    row("hex_s300x200x60", 80 * 300 + 60 * 300);
    row("bfr300", circle(300) / 2);
    row("bfs300", 45000);
    row("tri300x200", 30000);
    row("oval_h300x200", 200 * 200 + circle(200) / 2);
    row("oval_h60x200", 80 * 60 + circle(120) / 2);
    row("ths300x200x0x4x50", circle(300) - circle(200) - 4 * gapInRing(300, 200, 50));
    row("ths300x200x45x4x50", circle(300) - circle(200) - 4 * gapInRing(300, 200, 50));
    row("ths300x200x30x3x50", circle(300) - circle(200) - 3 * gapInRing(300, 200, 50));
    row("ths300x200x90x2x50", circle(300) - circle(200) - 2 * gapInRing(300, 200, 50));
    row("ths300x200x0x1x50", circle(300) - circle(200) - gapInRing(300, 200, 50));
    row("ths300x200x0x0x50", circle(300) - circle(200));
    row("ths300x100x0x2x120", circle(300) - 4 * strip(150, 60)); // gaps wider than the opening
    // One gap wider than the opening: half of the opening stays open to it.
    row("ths300x100x0x1x120", circle(300) - 2 * strip(150, 60) - circle(100) / 2);
    row("s_ths300x200x0x4x50", 50000 - 4 * 50 * 50);
    row("s_ths300x200x45x4x50", 50000 - 4 * 2 * 50 * 50 * std::sqrt(0.5));
    row("s_ths300x200x0x4x50xr80",
        90000 - (160 * 160 - circle(160)) - 40000 + (60 * 60 - circle(60)) - 4 * 50 * 50);
    row("s_tho300x200x45x4x50", 4 * 50 * (200 - 2 * 50 * std::sqrt(0.5)));
    row("s_tho300x200x0x4x50", 4 * 50 * 150);
    row("s_tho300x200x0x2x50", 2 * 50 * 150 + 2 * 50 * 200);
    row("s_thr300x200x45x4x40", 4 * (50 * 2 * (125 - 90 * std::sqrt(0.5)) + circle(50)));
    row("sr_ths300x200x0x4x50", 90000 - circle(200) - 4 * (50 * 150 - 2 * strip(100, 25)));
    row("rc_ths300x200x0x4x50x40", 60000 - 220 * 120 - 4 * 50 * 40);
    row("rc_ths300x200x45x4x50x40", 60000 - 220 * 120 - 4 * 2 * 40 * 50 * std::sqrt(0.5));
    row("rc_ths300x200x0x2x50x40xr60",
        60000 - (120 * 120 - circle(120)) - 220 * 120 + (40 * 40 - circle(40)) - 2 * 50 * 40);
    row("rc_tho300x200x45x4x50x40", 2 * 40 * (220 + 120 - 4 * 50 * std::sqrt(0.5)));
    row("rc_tho300x200x90x2x50x40", 2 * 40 * 120 + 2 * 40 * 170);
    row("o_ths300x200x90x2x50x40", 100 * 200 + circle(200) - 100 * 120 - circle(120) - 2 * 50 * 40);
    row("oblong_ths300x200x90x2x50x40xs", 100 * 200 + circle(200) - 100 * 120 - circle(120) - 2 * 50 * 40);
    // The two cut stretches lose the gap and a line width each, and get two half circles back.
    row("oblong_ths300x200x90x2x50x40xr",
        100 * 200 + circle(200) - 100 * 120 - circle(120) - 2 * 90 * 40 + 2 * circle(40));
    {
        // A ring of middle radius 125 and width 50, less four sectors, plus eight half circles.
        const double halfGap = std::asin((25 + 25) / 125.0);
        row("thr300x200x45x4x50",
            (circle(300) - circle(200)) * (1 - 8 * halfGap / (2 * pi)) + 4 * circle(50));
    }
    row("el200x200", circle(200));
    row("moire20x30x2x10x0x0", circle(20) + (circle(120) - circle(80)) + (circle(220) - circle(180)));
    row("moire0x30x2x10x400x45", 2 * (400 * 10 + circle(10)));
    row("hole300xpx10x10", circle(300));
    row("null7", 0);
}

void StandardSymbolTest::areaIsWhatTheNameSays()
{
    QFETCH(QString, name);
    QFETCH(double, area);
    const double found = areaOf(shapeOf(name.toLatin1().constData()));
    QVERIFY2(std::fabs(found - area) <= 1e-6 * std::max(area, 1.0),
             qPrintable(QString("%1 instead of %2").arg(found, 0, 'f', 6).arg(area, 0, 'f', 6)));
}

void StandardSymbolTest::extentIsWhatTheNameSays_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("width"); // micrometres
    QTest::addColumn<double>("height");
    const auto row = [](const char *name, double w, double h) {
        QTest::newRow(name) << QString(name) << w << h;
    };
    row("r200", 200, 200);
    row("rect300x200xr50", 300, 200);
    row("oval300x200", 300, 200);
    row("oct300x200x50", 300, 200);
    row("hex_l300x200x60", 300, 200);
    row("hex_s300x200x60", 300, 200);
    row("tri300x200", 300, 200);
    row("oval_h300x200", 300, 200);
    row("el300x200", 300, 200);
    row("thr300x200x45x4x50", 300, 300);
    row("s_tho300x200x45x4x50", 300, 300);
    row("rc_ths300x200x45x4x50x40", 300, 200);
    row("oblong_ths300x200x0x2x50x40xr", 300, 200);
    row("moire20x30x2x10x400x0", 410, 410);
}

void StandardSymbolTest::extentIsWhatTheNameSays()
{
    QFETCH(QString, name);
    QFETCH(double, width);
    QFETCH(double, height);
    const cam::Box box = cam::extent(shapeOf(name.toLatin1().constData()));
    // Gaps take the outermost points of a cut ring away: the bounds may fall short, never over.
    const bool isCut = name.contains("th");
    const double foundWidth = (box.high.x - box.low.x) / 1000.0;
    const double foundHeight = (box.high.y - box.low.y) / 1000.0;
    QVERIFY(foundWidth <= width + 1e-6 && foundHeight <= height + 1e-6);
    QVERIFY2(isCut || (std::fabs(foundWidth - width) < 1e-6 && std::fabs(foundHeight - height) < 1e-6),
             qPrintable(QString("%1 x %2").arg(foundWidth).arg(foundHeight)));
    QVERIFY(std::fabs(box.high.x + box.low.x) < 1e-3 && std::fabs(box.high.y + box.low.y) < 1e-3);
}

void StandardSymbolTest::growthMovesEveryEdgeByHalfOfIt_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("growth"); // micrometres
    QTest::addColumn<QString>("same");  // the symbol that the grown one equals in area
    const auto row = [](const char *name, double growth, const char *same) {
        QTest::newRow(qPrintable(QString("%1 by %2").arg(name).arg(growth)))
            << QString(name) << growth << QString(same);
    };
    row("r200", 20, "r220");
    row("r200", -20, "r180");
    row("s200", 20, "s220");
    row("rect300x200", 20, "rect320x220");
    row("rect300x200xr50", 20, "rect320x220xr60");
    row("oval300x200", -20, "oval280x180");
    row("donut_r300x200", 20, "donut_r320x180");
    row("donut_s300x200", 20, "donut_s320x180");
    row("donut_rc300x200x40", 20, "donut_rc320x220x60");
    row("donut_o300x200x40", -20, "donut_o280x180x20");
    row("ths300x200x0x4x50", 20, "ths320x180x0x4x30");
    row("ths300x200x0x4x50", 60, "donut_r360x140"); // the gaps have closed
    row("thr300x200x0x4x50", 20, "thr320x180x0x4x30");
    row("sr_ths300x200x0x4x50", 20, "sr_ths320x180x0x4x30");
    row("oval_h300x200", 20, "oval_h320x220");
    row("di200x200", 20.0 * std::sqrt(2.0), "di240x240");
    row("bfs300", 0.0, "bfs300");
}

void StandardSymbolTest::growthMovesEveryEdgeByHalfOfIt()
{
    QFETCH(QString, name);
    QFETCH(double, growth);
    QFETCH(QString, same);
    const double found = areaOf(shapeOf(name.toLatin1().constData(), growth));
    const double expected = areaOf(shapeOf(same.toLatin1().constData()));
    QVERIFY2(std::fabs(found - expected) <= 1e-6 * expected,
             qPrintable(QString("%1 instead of %2").arg(found, 0, 'f', 6).arg(expected, 0, 'f', 6)));
}

void StandardSymbolTest::pointIsDarkWhereThePictureShowsIt_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("x"); // micrometres
    QTest::addColumn<double>("y");
    QTest::addColumn<bool>("dark");
    const auto row = [](const char *what, const char *name, double x, double y, bool dark) {
        QTest::newRow(what) << QString(name) << x << y << dark;
    };
    row("corner 1 is top right", "rect200x200xc40x1", 95, 95, false);
    row("corner 2 is top left", "rect200x200xr40x2", -97, 97, false);
    row("corner 3 is bottom left", "rect200x200xc40x3", -95, -95, false);
    row("corner 4 is bottom right", "rect200x200xr40x4", 97, -97, false);
    row("a corner not named is sharp", "rect200x200xc40x1", -99, 99, true);
    row("a butterfly is dark at the upper left", "bfr200", -50, 50, true);
    row("a butterfly is dark at the lower right", "bfs200", 50, -50, true);
    row("a butterfly is clear at the upper right", "bfr200", 50, 50, false);
    row("a triangle points up", "tri200x200", 0, 95, true);
    row("a triangle stands on its base", "tri200x200", 95, -98, true);
    row("a half oval is flat on the left", "oval_h200x100", -98, 48, true);
    row("a half oval is round on the right", "oval_h200x100", 98, 48, false);
    row("a gap of angle 0 is on the right", "ths200x100x0x1x20", 75, 0, false);
    row("a gap of angle 0 leaves the left", "ths200x100x0x1x20", -75, 0, true);
    row("angles turn counter-clockwise", "ths200x100x90x1x20", 0, 75, false);
    row("a diagonal gap runs through a rectangle's corner", "rc_ths300x200x45x4x30x40", 130, 80, false);
    row("it leaves the sides", "rc_ths300x200x45x4x30x40", 130, 0, true);
    row("open corners are open", "s_tho200x100x0x4x20", 75, 75, false);
    row("a donut's opening is clear", "donut_r200x100", 0, 0, false);
    row("a moire has a dot", "moire20x30x2x0x0x0", 0, 0, true);
    row("a moire's first gap", "moire20x30x2x0x0x0", 25, 0, false);
    row("a moire's first ring", "moire20x30x2x0x0x0", 50, 0, true);
    row("a moire's line", "moire20x30x2x10x400x0", 195, 0, true);
}

void StandardSymbolTest::pointIsDarkWhereThePictureShowsIt()
{
    QFETCH(QString, name);
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(bool, dark);
    QCOMPARE(isDark(shapeOf(name.toLatin1().constData()), x, y), dark);
}

void StandardSymbolTest::milsAreThousandthsOfAnInch()
{
    const Shape shape = cam::shapeOf(cam::parseStandardSymbol("rect20x10", SymbolUnit::Mils));
    const cam::Box box = cam::extent(shape);
    QCOMPARE(box.high.x - box.low.x, 20 * 25400.0);
    QCOMPARE(box.high.y - box.low.y, 10 * 25400.0);
}

void StandardSymbolTest::roundCornersAreTrueArcs()
{
    const Shape shape = shapeOf("rect300x200xr50");
    int arcs = 0, lines = 0;
    for (const cam::Edge &edge : shape.contours[0])
        ++(edge.kind == cam::EdgeKind::Line ? lines : arcs);
    QCOMPARE(arcs, 4);
    QCOMPARE(lines, 4);
}

void StandardSymbolTest::shrinkingAThinSymbolLeavesNothing()
{
    for (const char *name :
         {"r200", "s200", "rect900x200", "oval900x200", "di200x200", "tri200x200", "oct200x200x50",
          "donut_r300x200", "bfs200", "el900x200", "thr300x200x45x4x50", "s_tho300x200x45x4x50"}) {
        QVERIFY2(areaOf(shapeOf(name, -400)) == 0.0, name);
    }
}

void StandardSymbolTest::symbolWithoutAPositiveSizeDrawsNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("hasNoSize");
    for (const char *name :
         {"r-13.1234", "r0", "s-1", "rect0x5", "rect5x-5", "rect0x5xr2", "oct-10x20x5", "donut_r0x10",
          "donut_rc-5x20x3", "ths-300x200x45x4x50", "oblong_ths0x200x0x2x50x40xr", "hole-1xpx0x0"})
        QTest::newRow(name) << QString(name) << true;
    QTest::newRow("null1") << QString("null1") << false; // meant to draw nothing
}

void StandardSymbolTest::symbolWithoutAPositiveSizeDrawsNothing()
{
    QFETCH(QString, name);
    QFETCH(bool, hasNoSize);
    const auto symbol = cam::parseStandardSymbol(name.toStdString(), SymbolUnit::Micrometres);
    QCOMPARE(symbol.hasNoSize, hasNoSize);
    for (const double growth : {0.0, 50'000.0, -50'000.0})
        QVERIFY(cam::shapeOf(symbol, growth).contours.isEmpty());
}

void StandardSymbolTest::unknownNameIsRefusedByName_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"",
                             "x",
                             "radio_mark",
                             "r",
                             "rx",
                             "r-",
                             "r--5",
                             "donut_r20x-5",
                             "rect20x30xr-5",
                             "ths300x200x45x4x-50",
                             "moire-20x30x2x10x0x0",
                             "r1e3",
                             "r10_tp",
                             "r10x",
                             "r10x20",
                             "s1.2.3",
                             "rect20",
                             "rect20x",
                             "rect20x30x",
                             "rect20x30xr",
                             "rect20x30xq5",
                             "rect20x30xr5x5",
                             "rect20x30xr5x",
                             "donut_r20x30",
                             "oct20x20x11",
                             "hex_l20x20x11",
                             "donut_rc20x20x11",
                             "thr300x200x45",
                             "thr300x200x45x2.5x50",
                             "s_tho300x200x30x4x50",
                             "s_tho300x200x45x3x50",
                             "s_thr300x200x0x4x50",
                             "rc_ths300x200x0x4x50x101",
                             "oblong_ths300x200x0x2x50x40",
                             "moire20x30",
                             "donut_s300x200xc20",
                             "r99999999999999999999",
                             "ths300x200x0x65x1"})
        QTest::newRow(name) << QString(name);
}

void StandardSymbolTest::unknownNameIsRefusedByName()
{
    QFETCH(QString, name);
    try {
        cam::parseStandardSymbol(name.toStdString(), SymbolUnit::Mils);
    } catch (const cam::SymbolError &error) {
        QVERIFY(QString(error.what()).contains('"' + name + '"'));
        return;
    }
    QFAIL("the name was taken");
}

QTEST_APPLESS_MAIN(StandardSymbolTest)
#include "tst_standardsymbol.moc"
