// Symbol names and their shapes: areas to 1e-6 of what a formula gives, extents, single points where a
// picture decides, and names that are refused.
#include "cam/model/standardsymbol.h"
#include "cam/model/trigonometry.h"

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

// What rounding a corner of `degrees` takes away.
double roundedOff(double degrees, double radius)
{
    const double half = degrees * pi / 360.0;
    return radius * radius * (1.0 / std::tan(half) - (pi / 2.0 - half));
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

class tst_StandardSymbol : public QObject
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
    void cornersOfStencilSymbolsAreTrueArcs();
    void suffixCountsInMilsToo();
    void shrinkingAThinSymbolLeavesNothing();
    void symbolWithoutAPositiveSizeDrawsNothing_data();
    void symbolWithoutAPositiveSizeDrawsNothing();
    void unknownNameIsRefusedByName_data();
    void unknownNameIsRefusedByName();
    void ringsThatShrinkToNothingLeaveNothing();
};

void tst_StandardSymbol::areaIsWhatTheNameSays_data()
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

    const auto degrees = [](double rise, double run) { return std::atan2(rise, run) * 180.0 / pi; };
    row("hplate300x200x100", 60000 - 10000);
    row("hplate300x200x300", 30000);
    row("hplate300x200x0", 60000);
    row("hplate300x200x100x20x30", 50000 - 3 * roundedOff(90, 20) - 2 * roundedOff(135, 30));
    row("hplate300x200x50x20x30", 55000 - 2 * roundedOff(90, 20) - roundedOff(2 * degrees(100, 50), 30) -
                                      2 * roundedOff(180 - degrees(100, 50), 30)); // its tip is obtuse
    row("hplate300x200x100x0x30", 50000 - 2 * roundedOff(135, 30));
    row("hplate300x200x100x20", 50000 - 3 * roundedOff(90, 20));
    row("rhplate300x200x100", 60000 - 10000);
    row("rhplate300x200x300", 30000); // two pieces
    row("rhplate300x200x100x20x30",
        50000 - 2 * roundedOff(90, 20) - 2 * roundedOff(45, 20) + roundedOff(90, 30));
    row("fhplate300x200x50x100", 60000 - 5000);
    row("fhplate300x200x100x100", 60000 - 10000); // a point again
    row("fhplate300x200x50x100x20x30", 55000 - 2 * roundedOff(90, 20) -
                                           2 * roundedOff(180 - degrees(50, 100), 30) -
                                           2 * roundedOff(180 - degrees(100, 50), 30));
    row("radhplate300x200x100", 60000 - circle(100) / 2);
    row("radhplate300x200x0", 60000);
    row("radhplate300x200x100x20", 60000 - circle(100) / 2 - 4 * roundedOff(90, 20));
    row("radhplate300x200x100x80", 60000 - circle(100) / 2 - 2 * roundedOff(90, 80) -
                                       2 * roundedOff(90, 50)); // no room for more beside the bite
    row("radhplate300x200x240", 60000 - 2 * strip(120, 100));   // wider than the end
    row("dshape300x200x100", 200 * 200 + circle(200) / 2);
    row("dshape300x200x100x20", 200 * 200 + circle(200) / 2 - 2 * roundedOff(90, 20));
    row("dshape300x200x50", 250 * 200 + 125 * 125 * std::asin(0.8) - 100 * 75);
    row("dshape300x200x0", 60000);
    row("dshape200x400x200", circle(400) / 2);
    row("cross300x300x40x60x50x50xs", 300 * 40 + 300 * 60 - 40 * 60);
    row("cross300x200x40x60x20x75xs", 300 * 40 + 200 * 60 - 40 * 60);
    row("cross300x300x40x60x0x100xs", 300 * 40 + 300 * 60 - 40 * 60); // an angle
    row("cross300x300x40x60x50x50xr", 27600 - (1600 - circle(40)) - (3600 - circle(60)));
    row("cross300x300x40x60x50x50xs10", 27600 + 4 * roundedOff(90, 10));
    row("cross300x300x40x60x50x50xrx10",
        27600 - (1600 - circle(40)) - (3600 - circle(60)) + 4 * roundedOff(90, 10));
    row("cross300x300x40x0x50x50xs", 300 * 40);
    row("dogbone300x200x40x60x50xs", 2 * 300 * 40 + 120 * 60);
    row("dogbone300x200x40x60x0xs", 2 * 300 * 40 + 120 * 60);
    row("dogbone300x200x40x60x50xr", 31200 - 2 * (1600 - circle(40)));
    row("dogbone300x200x40x60x50xsx20", 31200 + 4 * roundedOff(90, 20));
    row("dogbone300x200x40x0x50xs", 2 * 300 * 40);
    row("dogbone300x60x40x60x50xs", 300 * 60); // no gap
    row("dpack300x200x30x20x3x2", 6 * 80 * 90);
    row("dpack300x200x30x20x3x2x10", 6 * (80 * 90 - 400 + circle(20)));
    row("dpack300x200x30x20x1x1x500", 100 * 200 + circle(200)); // cut to half of the smaller side

    row("rect300x200_30", 60000);
    row("hex_l300x200x60_17.5", 180 * 200 + 60 * 200);
    row("s_ths300x200x0x4x50xr80_45",
        90000 - (160 * 160 - circle(160)) - 40000 + (60 * 60 - circle(60)) - 4 * 50 * 50);
    row("hole300xpx10x10_30", circle(300));
    row("null1_30", 0);
    row("null7", 0);
}

void tst_StandardSymbol::areaIsWhatTheNameSays()
{
    QFETCH(QString, name);
    QFETCH(double, area);
    const double found = areaOf(shapeOf(name.toLatin1().constData()));
    QVERIFY2(std::fabs(found - area) <= 1e-6 * std::max(area, 1.0),
             qPrintable(QString("%1 instead of %2").arg(found, 0, 'f', 6).arg(area, 0, 'f', 6)));
}

void tst_StandardSymbol::extentIsWhatTheNameSays_data()
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
    for (const char *name : {"hplate300x200x100", "rhplate300x200x100", "fhplate300x200x50x100x10x10",
                             "radhplate300x200x100x20", "dshape300x200x40x20", "cross300x200x40x60x20x75xr10",
                             "dogbone300x200x40x60x50xrx10", "dpack300x200x30x20x3x2x10"})
        row(name, 300, 200);
    row("rect300x200_90", 200, 300);
    row("s200_45", 200 * std::sqrt(2.0), 200 * std::sqrt(2.0));
}

void tst_StandardSymbol::extentIsWhatTheNameSays()
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

void tst_StandardSymbol::growthMovesEveryEdgeByHalfOfIt_data()
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
    row("hplate300x200x100", 20, "hplate324.142135623731x220x110");
    row("hplate300x200x100x20x30", 20, "hplate324.142135623731x220x110x30x40");
    row("hplate300x200x100x20x30", -20, "hplate275.857864376269x180x90x10x20");
    row("hplate300x200x100x20x30", -150, "hplate118.933982822018x50x25"); // radii used up
    row("rhplate300x200x100", 20, "rhplate334.142135623731x220x110");
    row("rhplate300x200x100", -20, "rhplate265.857864376269x180x90");
    row("rhplate300x200x100x20x30", -20, "rhplate265.857864376269x180x90x10x40");
    row("fhplate300x200x50x50x20x30", 20, "fhplate320x220x55.857864376269x55.857864376269x30x40");
    row("fhplate300x200x90x50", -100, "hplate198.35761032785x100x27.7777777777778"); // the flat end is gone
    // A half circle less, and what the end has moved on; the same inwards.
    row("radhplate300x200x100", 20, "rect67095.139134x1");
    row("radhplate300x200x100", -20, "rect45939.554286908x1");
    row("dshape300x200x100x20", 20, "dshape320x220x110x30");
    row("dshape300x200x50", 20, "dshape320x220x56.73762078750736");
    row("cross300x300x40x60x50x50xr", 20, "cross320x320x60x80x50x50xr");
    row("cross300x300x40x60x50x50xr10", -10, "cross290x290x30x50x50x50xr15");
    row("cross300x300x40x60x50x50xr10", -50, "rect3074.117272x1"); // of the thinner line, arcs are left
    row("dogbone300x200x40x60x50xrx20", 20, "dogbone320x220x60x80x50xrx10");
    row("dogbone300x200x40x60x50xr", 130, "rect130810.731914x1"); // bars meet
    row("dpack300x200x30x20x3x2x10", 10, "dpack310x210x20x10x3x2x15");
    row("rect300x200_30", 20, "rect320x220");
}

void tst_StandardSymbol::growthMovesEveryEdgeByHalfOfIt()
{
    QFETCH(QString, name);
    QFETCH(double, growth);
    QFETCH(QString, same);
    const double found = areaOf(shapeOf(name.toLatin1().constData(), growth));
    const double expected = areaOf(shapeOf(same.toLatin1().constData()));
    QVERIFY2(std::fabs(found - expected) <= 1e-6 * expected,
             qPrintable(QString("%1 instead of %2").arg(found, 0, 'f', 6).arg(expected, 0, 'f', 6)));
}

void tst_StandardSymbol::pointIsDarkWhereThePictureShowsIt_data()
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
    row("a home plate points to the right", "hplate300x200x100", 145, 0, true);
    row("its shoulders are cut", "hplate300x200x100", 140, 80, false);
    row("its left is whole", "hplate300x200x100", -145, 95, true);
    row("a notch is at the right", "rhplate300x200x100", 60, 0, false);
    row("beside the notch", "rhplate300x200x100", 140, 95, true);
    row("before the notch", "rhplate300x200x100", 40, 0, true);
    row("a flat plate is flat at the right", "fhplate300x200x50x100", 148, 45, true);
    row("above the flat", "fhplate300x200x50x100", 148, 60, false);
    row("its left is whole", "fhplate300x200x50x100", -148, 97, true);
    row("the vertical cut is the first", "fhplate300x200x20x100", 100, 95, false);
    row("a bite is round", "radhplate300x200x100", 105, 0, false);
    row("before the bite", "radhplate300x200x100", 95, 0, true);
    row("beside the bite", "radhplate300x200x100", 148, 60, true);
    row("a bite between round corners", "radhplate300x200x100x30", 120, 0, false);
    row("a D is round at the right", "dshape300x200x50", 148, 5, true);
    row("a D's right corner", "dshape300x200x50", 140, 95, false);
    row("a D's left corner", "dshape300x200x50", -148, 98, true);
    row("a cross's vertical line, in percent from the left", "cross300x300x20x20x10x90xs", -120, -140, true);
    row("a cross's horizontal line, in percent from below", "cross300x300x20x20x10x90xs", 140, 120, true);
    row("a cross is open between", "cross300x300x20x20x10x90xs", 0, 0, false);
    row("an inner corner is round", "cross300x300x40x40x50x50xs30", 25, 25, true);
    row("a dogbone's bars are horizontal", "dogbone300x200x40x60x50xs", 140, 90, true);
    row("a dogbone is open at its sides", "dogbone300x200x40x60x50xs", 140, 0, false);
    row("a dogbone's bars are joined", "dogbone300x200x40x60x50xs", 0, 0, true);
    row("a dogbone's joint, in percent from the left", "dogbone300x200x40x60x0xs", -145, 0, true);
    row("columns come before rows", "dpack300x200x30x20x3x2", -55, 50, false);
    row("a gap between rows", "dpack300x200x30x20x3x2", -100, 0, false);
    row("a pad of a grid", "dpack300x200x30x20x3x2", -100, 50, true);
    row("a suffix turns counter-clockwise", "rect300x20_30", 125, 72, true);
    row("not clockwise", "rect300x20_30", 125, -72, false);
    row("a triangle turned by 90 points to the left", "tri200x200_90", -95, 0, true);
    row("a negative suffix turns clockwise", "tri200x200_-90", 95, 0, true);
    row("a suffix adds to a thermal's own angle", "ths200x100x90x1x20_90", -75, 0, false);
}

void tst_StandardSymbol::pointIsDarkWhereThePictureShowsIt()
{
    QFETCH(QString, name);
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(bool, dark);
    QCOMPARE(isDark(shapeOf(name.toLatin1().constData()), x, y), dark);
}

void tst_StandardSymbol::milsAreThousandthsOfAnInch()
{
    const Shape shape = cam::shapeOf(cam::parseStandardSymbol("rect20x10", SymbolUnit::Mils));
    const cam::Box box = cam::extent(shape);
    QCOMPARE(box.high.x - box.low.x, 20 * 25400.0);
    QCOMPARE(box.high.y - box.low.y, 10 * 25400.0);
}

void tst_StandardSymbol::roundCornersAreTrueArcs()
{
    const Shape shape = shapeOf("rect300x200xr50");
    int arcs = 0, lines = 0;
    for (const cam::Edge &edge : shape.contours[0])
        ++(edge.kind == cam::EdgeKind::Line ? lines : arcs);
    QCOMPARE(arcs, 4);
    QCOMPARE(lines, 4);
}

void tst_StandardSymbol::cornersOfStencilSymbolsAreTrueArcs()
{
    const auto arcsOf = [](const char *name) {
        int clockwise = 0, counterClockwise = 0;
        const Shape shape = shapeOf(name);
        for (std::size_t i = 0; i < shape.contours.size(); ++i) {
            for (const cam::Edge &edge : shape.contours[i]) {
                clockwise += edge.kind == cam::EdgeKind::ArcClockwise;
                counterClockwise += edge.kind == cam::EdgeKind::ArcCounterClockwise;
            }
        }
        return std::make_pair(counterClockwise, clockwise);
    };
    QCOMPARE(arcsOf("hplate300x200x100x20x30"), std::make_pair(5, 0));
    QCOMPARE(arcsOf("rhplate300x200x100x20x30"), std::make_pair(4, 1));
    QCOMPARE(arcsOf("fhplate300x200x50x100x20x30"), std::make_pair(6, 0));
    QCOMPARE(arcsOf("radhplate300x200x100x20"), std::make_pair(4, 1));
    QCOMPARE(arcsOf("dshape300x200x50x20"), std::make_pair(3, 0));
    QCOMPARE(arcsOf("cross300x300x40x60x50x50xr10"), std::make_pair(8, 4));
    QCOMPARE(arcsOf("dogbone300x200x40x60x50xrx10"), std::make_pair(8, 4));
    QCOMPARE(arcsOf("dpack300x200x30x20x3x2x10"), std::make_pair(24, 0));
}

void tst_StandardSymbol::suffixCountsInMilsToo()
{
    const cam::Box box =
        cam::extent(cam::shapeOf(cam::parseStandardSymbol("rect20x10_90", SymbolUnit::Mils)));
    QCOMPARE(box.high.x - box.low.x, 10 * 25400.0);
    QCOMPARE(box.high.y - box.low.y, 20 * 25400.0);
}

void tst_StandardSymbol::shrinkingAThinSymbolLeavesNothing()
{
    for (const char *name : {"r200",
                             "s200",
                             "rect900x200",
                             "oval900x200",
                             "di200x200",
                             "tri200x200",
                             "oct200x200x50",
                             "donut_r300x200",
                             "bfs200",
                             "el900x200",
                             "thr300x200x45x4x50",
                             "s_tho300x200x45x4x50",
                             "hplate900x200x100x20x30",
                             "rhplate900x200x100x20x30",
                             "fhplate900x200x50x100",
                             "radhplate900x200x100x20",
                             "dshape900x200x50x20",
                             "cross900x900x40x60x50x50xr10",
                             "dogbone900x900x40x60x50xrx10",
                             "dpack900x900x30x20x3x3x10"}) {
        QVERIFY2(areaOf(shapeOf(name, -400)) == 0.0, name);
    }
}

void tst_StandardSymbol::symbolWithoutAPositiveSizeDrawsNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("hasNoSize");
    for (const char *name :
         {"r-13.1234", "r0", "s-1", "rect0x5", "rect5x-5", "rect0x5xr2", "oct-10x20x5", "donut_r0x10",
          "donut_rc-5x20x3", "ths-300x200x45x4x50", "oblong_ths0x200x0x2x50x40xr", "hole-1xpx0x0",
          "rect0x5_30", "cross-1x300x40x60x50x50xs", "dpack300x0x30x20x3x2"})
        QTest::newRow(name) << QString(name) << true;
    QTest::newRow("null1") << QString("null1") << false; // meant to draw nothing
}

void tst_StandardSymbol::symbolWithoutAPositiveSizeDrawsNothing()
{
    QFETCH(QString, name);
    QFETCH(bool, hasNoSize);
    const auto symbol = cam::parseStandardSymbol(name.toStdString(), SymbolUnit::Micrometres);
    QCOMPARE(symbol.hasNoSize, hasNoSize);
    for (const double growth : {0.0, 50'000.0, -50'000.0})
        QVERIFY(cam::shapeOf(symbol, growth).contours.isEmpty());
}

void tst_StandardSymbol::unknownNameIsRefusedByName_data()
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
                             "ths300x200x0x65x1",
                             "hplate300x200",
                             "hplate300x200x301",
                             "hplate300x200x-5",
                             "hplate300x200x100x1x1x1",
                             "rhplate300x200x301",
                             "fhplate300x200x100",
                             "fhplate300x200x101x50",
                             "fhplate300x200x50x301",
                             "radhplate200x300x201",
                             "dshape300x200x101",
                             "dshape100x300x101",
                             "cross300x300x40x60x50x50",
                             "cross300x300x40x60x50x50xq",
                             "cross300x300x40x60x101x50xs",
                             "cross300x300x301x60x50x50xs",
                             "dogbone300x200x40x301x50xr",
                             "dogbone300x200x40x60x50xrx",
                             "dpack300x200x30x20x0x2",
                             "dpack300x200x30x20x3x2.5",
                             "dpack300x200x150x20x3x2",
                             "dpack300x200x1x1x101x2",
                             "rect20x30_",
                             "rect20x30_up",
                             "rect20x30_1e3",
                             "rect20x30_45_45",
                             "rect_45",
                             "_45"})
        QTest::newRow(name) << QString(name);
}

void tst_StandardSymbol::unknownNameIsRefusedByName()
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

// The inner edge would be the larger one, and take away what else is there: the lines of a moire.
void tst_StandardSymbol::ringsThatShrinkToNothingLeaveNothing()
{
    for (const char *name :
         {"donut_r1000x900", "donut_s1000x900", "donut_rc1000x800x50", "donut_o1000x800x50"}) {
        const cam::StandardSymbol symbol = cam::parseStandardSymbol(name, cam::SymbolUnit::Micrometres);
        QVERIFY2(!cam::shapeOf(symbol, -49000.0).contours.isEmpty(), name);
        QVERIFY2(cam::shapeOf(symbol, -51000.0).contours.isEmpty(), name);
    }
    // A dot and three rings of 27 um, without which two lines are left.
    const cam::Shape moire = cam::shapeOf(
        cam::parseStandardSymbol("moire27x27x3x40x545x0", cam::SymbolUnit::Micrometres), -30000.0);
    for (std::size_t i = 0; i < moire.contours.size(); ++i)
        QVERIFY(!moire.contours[i].isHole);
}

QTEST_APPLESS_MAIN(tst_StandardSymbol)
#include "tst_standardsymbol.moc"
