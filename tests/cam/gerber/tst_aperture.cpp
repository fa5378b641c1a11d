// Which aperture each symbol becomes, and that it covers what the symbol covers.
#include "cam/gerber/aperture.h"
#include "tests/cam/gerber/shapesampling.h"

#include <QtTest>

#include <QStringList>

#include <cmath>

using cam::Point;
using cam::Transform;

namespace {

cam::StandardSymbol symbol(const QString &name)
{
    return cam::parseStandardSymbol(name.toStdString(), cam::SymbolUnit::Micrometres);
}

struct Turn
{
    double angle = 0.0; // counter-clockwise
    bool mirror = false;
    double scale = 1.0;
    Transform map() const
    {
        const Transform turned = Transform::scaling(scale, scale).then(Transform::rotation(angle));
        return mirror ? turned.then(Transform::mirrorX()) : turned;
    }
};

// One primitive of a macro as the format defines it. Lengths in nanometres.
bool covers(const QStringList &fields, Point at)
{
    const auto number = [&fields](int index) { return fields.at(index).toDouble(); };
    const auto length = [&number](int index) { return number(index) * 1e6; };
    if (fields.first() == "1")
        return std::hypot(at.x - length(3), at.y - length(4)) <= length(2) / 2.0;
    if (fields.first() == "4") {
        std::vector<Point> corners;
        for (int i = 0; i < fields.at(2).toInt(); ++i)
            corners.push_back({length(3 + 2 * i), length(4 + 2 * i)});
        return testing::isInside(corners, at);
    }
    Q_ASSERT(fields.first() == "7");
    const Point p = Transform::rotation(-number(6)).linear(at);
    const double radius = std::hypot(p.x, p.y);
    const bool inRing = radius <= length(3) / 2.0 && radius >= length(4) / 2.0;
    return inRing && std::fabs(p.x) > length(5) / 2.0 && std::fabs(p.y) > length(5) / 2.0;
}

bool macroIsDark(const QString &body, Point at)
{
    bool dark = false;
    for (const QString &line : body.split('\n')) {
        if (line.isEmpty())
            continue;
        const QStringList fields = QString(line).remove('*').split(',');
        const bool exposure = fields.first() == "7" || fields.at(1) == "1";
        if (covers(fields, at))
            dark = exposure;
    }
    return dark;
}

} // namespace

class tst_Aperture : public QObject
{
    Q_OBJECT
private slots:
    void simpleSymbolIsAStandardAperture_data();
    void simpleSymbolIsAStandardAperture();
    void macroCoversWhatTheSymbolCovers_data();
    void macroCoversWhatTheSymbolCovers();
    void moireWhoseRingsGrowTogetherHasNoAperture();
    void gapWithoutWidthIsNotCutOut();
    void symbolWithoutExactFormHasNoAperture_data();
    void symbolWithoutExactFormHasNoAperture();
    void gapsThatGrowTogetherAreNotFilled();
    void fourGapsAreTheFormatsOwnThermal();
    void onlyMacrosWithCutOutsHaveClearParts();
};

void tst_Aperture::simpleSymbolIsAStandardAperture_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("angle");
    QTest::addColumn<double>("growth"); // micrometres
    QTest::addColumn<QString>("shape");
    const auto row = [](const char *name, double angle, double growth, const char *shape) {
        QTest::newRow(qPrintable(QString("%1 at %2 by %3").arg(name).arg(angle).arg(growth)))
            << QString(name) << angle << growth << QString(shape);
    };
    row("r200", 0, 0, "C,0.2");
    row("r200.5", 37, 0, "C,0.2005");
    row("r200", 0, 50, "C,0.25");
    row("hole200xpx1x1", 0, 0, "C,0.2");
    row("s200", 90, 0, "R,0.2X0.2");
    row("rect300x200", 0, 0, "R,0.3X0.2");
    row("rect300x200", 90, 0, "R,0.2X0.3");
    row("rect300x200", 180, -100, "R,0.2X0.1");
    row("oval300x200", 270, 0, "O,0.2X0.3");
    row("donut_r300x200", 45, 0, "C,0.3X0.2");
    row("donut_r300x200", 0, 20, "C,0.32X0.18");
    row("donut_r300x200", 0, 200, "C,0.5");
    row("donut_sr300x200", 0, 200, "R,0.5X0.5");
    row("el200x200", 0, 0, "");
    row("rect300x200_90", 0, 0, "R,0.2X0.3");
    row("rect300x200_30", -30, 0, "R,0.3X0.2");
    row("r200_30", 0, 0, "C,0.2");
}

void tst_Aperture::simpleSymbolIsAStandardAperture()
{
    QFETCH(QString, name);
    QFETCH(double, angle);
    QFETCH(double, growth);
    QFETCH(QString, shape);
    const auto aperture = cam::apertureOf(symbol(name), growth * 1000.0, Transform::rotation(angle));
    QCOMPARE(aperture.has_value(), !shape.isEmpty());
    if (aperture) {
        QVERIFY(!aperture->isMacro);
        QCOMPARE(QString::fromStdString(aperture->shape), shape);
    }
}

void tst_Aperture::macroCoversWhatTheSymbolCovers_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("angle");
    QTest::addColumn<bool>("mirror");
    QTest::addColumn<double>("growth"); // micrometres
    for (const char *name : {"rect300x200xr50",
                             "rect300x200xr50x13",
                             "rect300x200xc50x2",
                             "di300x200",
                             "oct300x200x50",
                             "donut_s300x200",
                             "donut_s300x200xr80",
                             "donut_rc300x200x40xr60x24",
                             "donut_o300x200x40",
                             "hex_l300x200x60",
                             "hex_s300x200x60",
                             "bfr300",
                             "bfs300",
                             "tri300x200",
                             "oval_h300x200",
                             "thr300x200x45x4x50",
                             "thr300x220x20x3x40",
                             "ths300x200x45x4x50",
                             "ths300x200x10x4x50",
                             "ths300x200x30x3x50",
                             "s_ths300x200x45x4x50",
                             "s_tho300x200x45x4x50",
                             "s_thr300x200x45x4x40",
                             "sr_ths300x200x45x4x50",
                             "rc_ths300x200x45x4x50x40",
                             "rc_tho300x200x0x2x50x40",
                             "moire20x30x2x10x300x20",
                             "hplate300x200x100",
                             "hplate300x200x100x20x30",
                             "rhplate300x200x100",
                             "rhplate300x200x300",
                             "fhplate300x200x50x100x20x30",
                             "dshape300x200x100x20",
                             "cross300x300x40x60x20x60xs",
                             "cross300x300x40x60x50x50xr",
                             "dogbone300x200x40x60x20xs",
                             "dogbone300x200x40x60x50xr",
                             "dpack300x200x30x20x3x2x10",
                             "rect300x200_30",
                             "tri300x200_20"}) {
        QTest::newRow(name) << QString(name) << 0.0 << false << 0.0;
        QTest::newRow(qPrintable(QString(name) + " turned and mirrored"))
            << QString(name) << 33.0 << true << 0.0;
        if (!QString(name).startsWith("bfr"))
            QTest::newRow(qPrintable(QString(name) + " grown")) << QString(name) << 90.0 << false << 6.0;
    }
    QTest::newRow("donut_sr300x200") << QString("donut_sr300x200") << 0.0 << false << 0.0;
    for (const char *name : {"rect300x200", "oval300x200", "donut_sr300x200"})
        QTest::newRow(qPrintable(QString(name) + " turned")) << QString(name) << 33.0 << false << 0.0;
}

void tst_Aperture::macroCoversWhatTheSymbolCovers()
{
    QFETCH(QString, name);
    QFETCH(double, angle);
    QFETCH(bool, mirror);
    QFETCH(double, growth);
    const Turn turn{angle, mirror, 1.25};
    const auto aperture = cam::apertureOf(symbol(name), growth * 1000.0, turn.map());
    QVERIFY(aperture.has_value());
    QVERIFY(aperture->isMacro);
    const QString body = QString::fromStdString(aperture->shape);
    const testing::SampledShape shape(cam::shapeOf(symbol(name), growth * 1000.0));
    int dark = 0;
    const int steps = 60;
    const double reach = 180.0e3;
    for (int i = 0; i < steps; ++i) {
        for (int k = 0; k < steps; ++k) {
            // Odd fractions of the reach: no sample lies on an edge of the symbols above.
            const Point at{reach * (2.0 * (i + 0.4713) / steps - 1.0),
                           reach * (2.0 * (k + 0.5359) / steps - 1.0)};
            const bool expected = shape.isDark(at);
            const bool found = macroIsDark(body, turn.map().linear(at));
            QVERIFY2(found == expected, qPrintable(QString("at %1, %2 um the macro is %3")
                                                       .arg(at.x / 1e3)
                                                       .arg(at.y / 1e3)
                                                       .arg(found ? "dark" : "clear")));
            dark += found ? 1 : 0;
        }
    }
    QVERIFY(dark > 100);
}

// Its circles, dark and clear in turn, would clear what is dark.
void tst_Aperture::moireWhoseRingsGrowTogetherHasNoAperture()
{
    const cam::StandardSymbol moire = symbol("moire45x45x3x30x895x30");
    QVERIFY(cam::apertureOf(moire, 40000.0, Transform()).has_value());
    QVERIFY(!cam::apertureOf(moire, 50000.0, Transform()).has_value());
}

// It would open when the symbol shrinks.
void tst_Aperture::gapWithoutWidthIsNotCutOut()
{
    for (const char *name : {"ths300x200x0x4x0", "thr300x200x0x3x0", "sr_ths300x200x0x4x0"})
        QVERIFY2(!cam::apertureOf(symbol(name), -20000.0, Transform()).has_value(), name);
}

void tst_Aperture::symbolWithoutExactFormHasNoAperture_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"el300x200", "oval_h60x200", "oblong_ths300x200x90x2x50x40xr", "o_ths300x200x45x4x50x40",
          "s_ths300x200x0x4x50xr80", "rhplate300x200x100x20x30", "radhplate300x200x100", "dshape300x200x50",
          "cross300x300x40x60x50x50xr10", "dogbone300x200x40x60x50xrx10", "ths300x100x0x4x120", "r0", "null1",
          "rect0x200"})
        QTest::newRow(name) << QString(name);
}

void tst_Aperture::symbolWithoutExactFormHasNoAperture()
{
    QFETCH(QString, name);
    QVERIFY(!cam::apertureOf(symbol(name), 0.0, Transform()).has_value());
}

// Grown by more than its gaps, the outline has notches that the circles of its ends would fill.
void tst_Aperture::gapsThatGrowTogetherAreNotFilled()
{
    QVERIFY(!cam::apertureOf(symbol("o_ths837x1440x0x4x117x318"), 274300.0, Transform()).has_value());
}

void tst_Aperture::fourGapsAreTheFormatsOwnThermal()
{
    const auto aperture = cam::apertureOf(symbol("ths300x200x45x4x50"), 0.0, Transform());
    QCOMPARE(QString::fromStdString(aperture->shape), QString("7,0,0,0.3,0.2,0.05,45*\n"));
}

void tst_Aperture::onlyMacrosWithCutOutsHaveClearParts()
{
    QVERIFY(!cam::apertureOf(symbol("rect300x200xr50"), 0.0, Transform())->hasClearParts);
    QVERIFY(!cam::apertureOf(symbol("ths300x200x45x4x50"), 0.0, Transform())->hasClearParts);
    QVERIFY(!cam::apertureOf(symbol("donut_r300x200"), 0.0, Transform())->hasClearParts);
    QVERIFY(cam::apertureOf(symbol("donut_s300x200"), 0.0, Transform())->hasClearParts);
    QVERIFY(cam::apertureOf(symbol("thr300x200x45x4x50"), 0.0, Transform())->hasClearParts);
}

QTEST_APPLESS_MAIN(tst_Aperture)
#include "tst_aperture.moc"
