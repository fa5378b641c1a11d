// The files of tests/data/gerber, one for each construct of the format's description, against areas and
// places that follow from their geometry.
#include "cam/base/error.h"
#include "cam/gerber/gerberreader.h"

#include <QtTest>

#include <cmath>

namespace {

constexpr double pi = 3.14159265358979323846;

// Square millimetres, from the colours of points that lie evenly, and on no line with any edge.
double darkArea(const cam::GerberImage &image)
{
    constexpr int count = 150'000;
    const cam::Box box = image.extent();
    const double width = box.high.x - box.low.x, height = box.high.y - box.low.y;
    int dark = 0;
    for (int i = 0; i < count; ++i) {
        const double x = std::fmod(i * 0.7548776662466927, 1.0), y = std::fmod(i * 0.5698402909980532, 1.0);
        dark += image.isDark(box.low + cam::Point{x * width, y * height}) ? 1 : 0;
    }
    return double(dark) / count * width * height / 1e12;
}

// Points in millimetres: "x,y x,y".
QString wrongPoints(const cam::GerberImage &image, const QString &points, bool dark)
{
    QString wrong;
    for (const QString &point : points.split(' ')) {
        const QStringList xy = point.split(',');
        if (image.isDark({xy[0].toDouble() * 1e6, xy[1].toDouble() * 1e6}) != dark)
            wrong += ' ' + point;
    }
    return wrong;
}

// Of a strip of width `width` along a radius, what lies between two circles about the same centre.
double stripBetween(double innerRadius, double outerRadius, double width)
{
    const auto reach = [width](double radius) {
        const double y = width / 2.0;
        return y * std::sqrt(radius * radius - y * y) + radius * radius * std::asin(y / radius);
    };
    return reach(outerRadius) - reach(innerRadius);
}

} // namespace

class tst_GerberExamples : public QObject
{
    Q_OBJECT

private slots:
    void areasAreThoseOfTheGeometry_data()
    {
        QTest::addColumn<double>("area"); // square millimetres
        QTest::addColumn<QString>("dark");
        QTest::addColumn<QString>("clear");
        const auto row = [](const char *file, double area, const char *dark, const char *clear) {
            QTest::newRow(file) << area << QString(dark) << QString(clear);
        };
        row("cut_ins", (100.0 - 16.0) + (100.0 - 4.0 - 4.0), "1,5.1 25,5.1 21,4.9", "5,5 23,5 27,5");
        row("contours", 16.0 + 16.0 - 4.0 + 4.0 * pi, "3,3 1,1 5,5 10,2 11.9,2", "5,1 1,5 8.1,3.9");
        const double block = 2.0 * (2.0 + pi / 4.0);
        row("blocks", block * (1.0 + 1.0 + 1.0 + 4.0),
            "0.5,0.5 3,1 3,4 19.5,0.5 17,4 39.5,0.5 39,3 36,3 51,-1 56,-2 56.9,-8",
            "20.5,0.5 40.5,0.5 51,1 3,2 56,2");
        row("block_strokes", 2.0 * (6.0 + pi + pi / 4.0),
            "0,0 5,0.4 7.41,0.59 8,2.4 5,19.6 7.41,19.41 8,17.6", "8,0 8,20 8,22 0,1");
        row("block_polarity", (4.0 - 1.0) * pi + 49.0 - (4.0 - 1.0) * pi, "1.5,0 20,0 20.9,0 23.4,3.4",
            "0,0 0.9,0 21.5,0");
        row("step_and_repeat", 6.0 * (2.25 - 0.25) * pi + 12.0 - 1.0, "1,0 11,4 30,0 28.6,0 32.4,0",
            "0,0 5,4 10,0 31,0");
        row("mirror_rotate_scale", 6.0 * (6.0 + 0.25) + 10.0 + pi,
            "2.5,0.5 0.5,3.5 7.5,0.5 9.5,3.5 22.5,-0.5 20.5,-3.5 27.5,-0.5 29.5,-3.5 41.915,1.683 49.5,-2.5 "
            "46.5,-0.5 61.25,0.25 -0.9,20 5.9,20 2,20.9",
            "2,2 12.5,0.5 22.5,0.5 42.5,0.5 50.5,0.5 62,0.25 2,21.1");
        row("polarity", 400.0 - 25.0 * pi + 16.0, "1,1 10,10 11.9,11.9", "13,10 10,5.1 6,8");
        const double moire = (9.0 - 6.25 + 4.0 - 2.25) * pi + (2.0 * 8.0 * 0.2 - 0.04) -
                             4.0 * (stripBetween(2.5, 3.0, 0.2) + stripBetween(1.5, 2.0, 0.2));
        const double thermal = (4.0 - 1.0) * pi - 4.0 * stripBetween(1.0, 2.0, 0.5);
        row("macro_primitives", pi + 1.5 + 8.0 + 2.0 + 6.0 + 1.5 * std::sqrt(3.0) * 4.0 + moire + thermal,
            "1.732,1 11.299,0.75 21.3,1.3 30.9,0.4 1,12 11.8,10.5 20,13.9 23.9,10 18,12 31.2,11.2",
            "2,0 11.5,0 21.9,-0.1 31.1,0 2,12 11.41,11.41 20.5,10.5 21.6,11.6 31.5,10 30,11.5");
        row("macro_variables",
            24.0 - (4.0 - pi) + 9.0 - 0.25 * (4.0 - pi) + (9.0 - 2.25 + 16.0 - 6.25) * pi / 4.0,
            "0,0 2.5,1.5 8.7,1.3 11.4,-1.2 21.4,0 31.4,0", "2.5,-1.5 11.45,1.45 20.7,0 31.2,0");
        row("multi_quadrant_arcs", 6.0 * pi + 4.5 * pi + pi / 4.0, "3.4,0 -2.6,0 10,3 7,0 10.4,-3 13,-0.4",
            "0,0 12.2,-2.2 10.6,-3");
        row("single_quadrant_arcs", 36.0 - (4.0 - pi) + 2.0 * pi + pi / 4.0,
            "0.3,0.3 5.7,5.7 3,3 12.83,2.83 9.6,4 14,-0.4", "0.2,0.2 5.8,0.2 0.2,5.8 10,0");
        row("zero_size", 25.0, "1,1 4.9,4.9", "-1,-1 10,10");
        row("attributes", pi + 3.0 + 4.0, "0,0 11.4,0.4 21,1", "5,0 23,1");
        row("holes", (4.0 - 1.0) * pi + 1.0 + (8.0 - pi / 4.0) + (6.0 + 2.25 * pi - pi / 4.0),
            "0,0 1.5,0 11.3,1.3 22.4,0", "0.8,0 10,0 20,0.4");
    }
    void areasAreThoseOfTheGeometry()
    {
        QFETCH(const double, area);
        QFETCH(const QString, dark);
        QFETCH(const QString, clear);
        const std::string file = std::string(TEST_DATA) + "/gerber/" + QTest::currentDataTag() + ".gbr";
        try {
            const cam::GerberImage image = cam::readGerberFile(std::filesystem::u8path(file));
            QCOMPARE(wrongPoints(image, dark, true), QString());
            QCOMPARE(wrongPoints(image, clear, false), QString());
            const double found = darkArea(image);
            QVERIFY2(std::fabs(found - area) < 0.002 * area,
                     qPrintable(QString("%1 mm2 instead of %2").arg(found).arg(area)));
        } catch (const cam::Error &error) {
            QFAIL(error.what());
        }
    }
};

QTEST_APPLESS_MAIN(tst_GerberExamples)
#include "tst_gerberexamples.moc"
