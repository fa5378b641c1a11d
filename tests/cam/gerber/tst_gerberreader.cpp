// Hand-written Gerber texts, in the dialects of many makers, against points whose colour is known.
#include "cam/base/error.h"
#include "cam/gerber/gerberreader.h"
#include "cam/model/selfcrossing.h"
#include "cam/model/trigonometry.h"
#include "cam/model/winding.h"
#include "tests/cam/gerber/shapesampling.h"

#include <QtTest>

#include <random>

using cam::GerberImage;
using cam::Point;

namespace {

const QByteArray head = "%FSLAX46Y46*%\n%MOMM*%\nG75*\nG01*\n";

GerberImage read(const QByteArray &text)
{
    return cam::readGerber({text.constData(), std::size_t(text.size())}, "file");
}

// Points in millimetres: "x,y x,y".
QString wrongPoints(const GerberImage &image, const QString &points, bool dark)
{
    QString wrong;
    for (const QString &point : points.simplified().split(' ')) {
        if (point.isEmpty())
            continue;
        const QStringList xy = point.split(',');
        if (image.isDark({xy[0].toDouble() * 1e6, xy[1].toDouble() * 1e6}) != dark)
            wrong += ' ' + point;
    }
    return wrong;
}

} // namespace

class tst_GerberReader : public QObject
{
    Q_OBJECT

private slots:
    void paintsWhatTheFileSays_data();
    void paintsWhatTheFileSays();
    void refusesByNameAndLine_data();
    void refusesByNameAndLine();
    void remarksOnWhatReadersDoubt_data();
    void remarksOnWhatReadersDoubt();
    void findsContoursThatCrossThemselves_data();
    void findsContoursThatCrossThemselves();
    void windingNumbersAreThoseOfFinePolygons();
    void strokesOfBlocksAreTurnedWithThem();
    void singleQuadrantArcsGoTheShortWay();
    void aFileThatIsNotThereIsNamed();
};

void tst_GerberReader::paintsWhatTheFileSays_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("dark");
    QTest::addColumn<QString>("clear");
    const auto body = [](const char *name, const QByteArray &text, const char *dark, const char *clear) {
        QTest::newRow(name) << head + text + "M02*\n" << QString(dark) << QString(clear);
    };
    const auto whole = [](const char *name, const QByteArray &text, const char *dark, const char *clear) {
        QTest::newRow(name) << text << QString(dark) << QString(clear);
    };

    // ---- apertures
    body("circle", "%ADD10C,2*%\nD10*\nX1000000Y0D03*\n", "1,0 1.99,0 1,0.99", "2.01,0 1.8,0.8 -0.1,0");
    body("circle with a hole", "%ADD10C,2X1*%\nD10*\nX0Y0D03*\n", "0.6,0 0,-0.9", "0,0 0.49,0 1.1,0");
    body("the hole shows what is below", "%ADD10C,2X1*%\n%ADD11C,0.2*%\nD11*\nX0Y0D03*\nD10*\nX0Y0D03*\n",
         "0,0 0.6,0", "0.2,0");
    body("rectangle", "%ADD10R,2X1*%\nD10*\nX0Y0D03*\n", "0.99,0.49 -0.99,-0.49", "1.01,0 0,0.51");
    body("rectangle with a hole", "%ADD10R,2X2X1*%\nD10*\nX0Y0D03*\n", "0.9,0.9 0.6,0", "0,0 0.4,0");
    body("obround, lying", "%ADD10O,3X1*%\nD10*\nX0Y0D03*\n", "1.49,0 1,0.49 -1.4,0.2",
         "1.4,0.4 0,0.51 1.51,0");
    body("obround, standing", "%ADD10O,1X3*%\nD10*\nX0Y0D03*\n", "0,1.49 0.49,1", "0.4,1.4 0.51,0");
    body("obround as wide as high, with a hole", "%ADD10O,2X2X1*%\nD10*\nX0Y0D03*\n", "0.6,0.6",
         "0,0 0.8,0.8");
    body("polygon", "%ADD10P,2X4*%\nD10*\nX0Y0D03*\n", "0.99,0 0.49,0.49", "0.6,0.6 1.01,0");
    body("polygon, turned, with a hole", "%ADD10P,2X4X45X0.5*%\nD10*\nX0Y0D03*\n", "0.7,0.7 0.7,0 0.3,0",
         "0.72,0 0.2,0 0,0");

    // ---- macros
    body("macro: circle", "%AMA*1,1,1,2,0*%\n%ADD10A*%\nD10*\nX0Y0D03*\n", "2,0 2.49,0", "0,0 2.51,0");
    body("macro: circle, turned", "%AMA*1,1,1,2,0,90*%\n%ADD10A*%\nD10*\nX0Y0D03*\n", "0,2 0,2.49",
         "0,0 2,0");
    body("macro: vector line", "%AMA*20,1,0.5,0,0,2,0,90*%\n%ADD10A*%\nD10*\nX0Y0D03*\n", "0,1 0.24,1.9",
         "1,0 0.26,1 0,-0.1 0,2.1");
    body("macro: line by its centre", "%AMA*21,1,2,1,1,0,0*%\n%ADD10A*%\nD10*\nX0Y0D03*\n", "0.1,0 1.9,0.49",
         "-0.1,0 1,0.51");
    body("macro: line by its corner", "%AMA*22,1,2,1,1,0,0*%\n%ADD10A*%\nD10*\nX0Y0D03*\n", "1.1,0.1 2.9,0.9",
         "0.9,0.5 1.1,-0.1");
    body("macro: outline", "%AMA*4,1,3,0,0,2,0,0,2,0,0,0*%\n%ADD10A*%\nD10*\nX0Y0D03*\n", "0.9,0.9 0.1,0.1",
         "1.1,1.1");
    body("macro: polygon", "%AMA*5,1,6,0,0,2,0*%\n%ADD10A*%\nD10*\nX0Y0D03*\n", "0.99,0 0,0.86",
         "0,0.9 0.9,0.4");
    body("macro: thermal", "%AMA*7,0,0,4,2,0.5,0*%\n%ADD10A*%\nD10*\nX0Y0D03*\n", "1.1,1.1 -1.1,1.1 1.5,0.26",
         "1.5,0.24 0,0 0.5,0.5 0,1.5 1.5,1.5");
    body("macro: thermal, turned", "%AMA*7,0,0,4,2,0.5,45*%\n%ADD10A*%\nD10*\nX0Y0D03*\n", "1.5,0 0,-1.5",
         "1.1,1.1");
    body("macro: a thermal's gaps show what is below",
         "%AMA*1,1,0.4,1.5,0*7,0,0,4,2,0.5,0*%\n%ADD10A*%\nD10*\nX0Y0D03*\n", "1.5,0 1.1,1.1",
         "1.8,0 -1.5,0");
    body("macro: exposure off takes out of this flash only",
         "%AMA*1,1,4,0,0*1,0,2,0,0*1,1,1,0,0*%\n%ADD10A*%\n%ADD11R,1X9*%\nD11*\nX800000Y0D03*\nD10*\nX0Y0D03*"
         "\n",
         "0,0 1.5,0 0.8,0 0.8,3", "-0.8,0");
    body("macro: variables and arithmetic",
         "%AMA*0 a comment $1*$3=$1x2-(1+$2)/-2*\n1,1,$3,-$2X3+1,0*%\n%ADD10A,1.5X1*%\nD10*\nX0Y0D03*\n",
         "-2,0 -0.01,0 -3.99,0", "0.01,0 -4.01,0"); // diameter 3 + 1 = 4, at -2
    body("macro: a variable that nothing sets is 0", "%AMA*1,1,$1,$2,0*%\n%ADD10A,2*%\nD10*\nX0Y0D03*\n",
         "0,0 0.9,0", "1.1,0");

    // ---- strokes
    body("line", "%ADD10C,1*%\nD10*\nX0Y0D02*\nX5000000D01*\n", "5.4,0 -0.4,0 2,0.49",
         "5.6,0 2,0.51 5.4,0.4");
    body("line of no length", "%ADD10C,1*%\nD10*\nX0Y0D02*\nX0D01*\n", "0.4,0", "0.6,0");
    body("line of a rectangle", "%ADD10R,1X2*%\nD10*\nX0Y0D02*\nX5000000Y5000000D01*\n",
         "-0.4,-0.9 5.4,5.9 2,2.5 2,3.4", "-0.45,1.2 2,3.6 5.4,3.9");
    body("line of a rectangle, falling", "%ADD10R,1X2*%\nD10*\nX0Y5000000D02*\nX5000000Y0D01*\n",
         "-0.4,5.9 5.4,-0.9 2,3", "-0.45,3.8 5.4,1.1");
    body("arc, counter-clockwise", "%ADD10C,1*%\nD10*\nX2000000Y0D02*\nG03*\nX0Y2000000I-2000000J0D01*\n",
         "1.41,1.41 2.49,-0.01 2,-0.4 1.8,1.6", "0,-2 -2,0 0.9,0.9 2,-0.6");
    body("arc, clockwise", "%ADD10C,1*%\nD10*\nX2000000Y0D02*\nG02*\nX0Y2000000I-2000000J0D01*\n",
         "0,-2 -2,0 -1.4,1.4", "1.41,1.41 0,0");
    body("full circle", "%ADD10C,1*%\nD10*\nX2000000Y0D02*\nG02*\nX2000000Y0I-2000000J0D01*\n",
         "0,-2 -2,0 1.4,1.4", "0,0 1.4,0 2.6,0");
    body("full circle of a pen wider than it",
         "%ADD10C,3*%\nD10*\nX1000000Y0D02*\nG02*\nX1000000Y0I-1000000J0D01*\n", "0,0 2.4,0 -2.4,0", "2.6,0");
    body("arc of a pen wider than it", "%ADD10C,3*%\nD10*\nX1000000Y0D02*\nG03*\nX0Y1000000I-1000000J0D01*\n",
         "0,0 -0.4,-0.2 2.4,0 1.7,1.7", "-1.3,-0.8 -0.9,-0.9");
    body("single quadrant: the signs are found",
         "G74*\n%ADD10C,0.2*%\nD10*\nX0Y2000000D02*\nG03*\nX-2000000Y0I0J2000000D01*\n", "-1.41,1.41",
         "1.41,1.41 0,0");
    body("single quadrant: equal ends draw a point",
         "G74*\n%ADD10C,1*%\nD10*\nX2000000Y0D02*\nG02*\nX2000000Y0I2000000J0D01*\n", "2.4,0", "0,0 -2,0");
    // To the right of it, and to the left, clockwise and not: none runs around its centre.
    for (const char *arc :
         {"G02*\nX10000Y9997I20J3D01*\n", "G03*\nX10000Y9997I20J3D01*\n", "G02*\nX10000Y10002I20J2D01*\n",
          "G03*\nX9999Y10001I15J16D01*\n", "G02*\nX10003Y10000I3J20D01*\n", "G03*\nX10001Y10000I0J20D01*\n"})
        whole(("single quadrant, short: " + QByteArray(arc).simplified()).constData(),
              "%FSLAX24Y24*%\n%MOIN*%\nG74*\n%ADD10C,0.0002*%\nD10*\nX10000Y10000D02*\n" + QByteArray(arc) +
                  "M02*\n",
              "25.4,25.4", "25.5016,25.4 25.2984,25.4 25.4,25.5016 25.4,25.2984 25.50,25.39 25.30,25.39");
    body("D01 holds on", "%ADD10C,1*%\nD10*\nX0Y0D02*\nX3000000D01*\nY3000000*\n", "3,2", "1,2");
    body("a stroke of no width makes no image", "%ADD10C,0*%\nD10*\nX0Y0D02*\nX5000000D01*\n", "", "2,0");

    // ---- regions
    body("region", "G36*\nX0Y0D02*\nX5000000D01*\nY5000000D01*\nX0Y0D01*\nG37*\n", "4,1", "1,4 6,1");
    body("region of several contours",
         "G36*\nX0Y0D02*\nX1000000D01*\nY1000000D01*\nX0Y0D01*\nX3000000Y0D02*\nX3000000Y1000000D01*"
         "\nX4000000D01*\n"
         "X3000000Y0D01*\nG37*\n",
         "0.9,0.1 3.1,0.9", "2,0.5");
    body("region with a circle", "G36*\nX1000000Y0D02*\nG02*\nX1000000Y0I-1000000J0D01*\nG37*\n",
         "0,0 0.9,0 -0.6,-0.6", "0.8,0.8");
    body("region: what is covered twice is dark",
         "G36*\nX0Y0D02*\nX9000000D01*\nY9000000D01*\nX0D01*\nY0D01*\nX3000000Y3000000D01*\nX6000000D01*"
         "\nY6000000D01*\n"
         "X3000000D01*\nY3000000D01*\nX0Y0D01*\nG37*\n",
         "4,4 1,1", "10,1");
    body("region: a slit to a hole that runs against its outline",
         "G36*\nX0Y0D02*\nX9000000D01*\nY9000000D01*\nX0D01*\nY3000000D01*\nX3000000D01*\nY6000000D01*"
         "\nX6000000D01*\n"
         "Y3000000D01*\nX3000000D01*\nX0D01*\nY0D01*\nG37*\n",
         "1,1 1,3.01 7,4", "4,4");
    body("region that starts where the position is",
         "X0Y0D02*\nG36*\nX5000000D01*\nY5000000D01*\nX0Y0D01*\nG37*\n", "4,1", "1,4");
    body("an aperture is chosen inside of a region",
         "%ADD10C,1*%\nG36*\nD10*\nX0Y0D02*\nX5000000D01*\nY5000000D01*\nX0Y0D01*\nG37*\n", "4,1", "1,4");

    // ---- polarity, repeats, blocks
    body("clear clears what is below, and nothing above",
         "%ADD10C,4*%\n%ADD11C,2*%\n%ADD12C,1*%\nD10*\nX0Y0D03*\n%LPC*%\nD11*\nX0Y0D03*\n%LPD*%\nD12*"
         "\nX0Y0D03*\n",
         "0.4,0 1.5,0", "0.8,0");
    body("step and repeat", "%ADD10C,1*%\n%SRX3Y2I5J4*%\nD10*\nX0Y0D03*\n%SR*%\nX0Y20000000D03*\n",
         "0,0 10,4 5,4 0,20", "15,0 0,8 5,20");
    body("a repeat ends another",
         "%ADD10C,1*%\nD10*\n%SRX2Y1I5J0*%\nX0Y0D03*\n%SRX1Y2I0J5*%\nX0Y20000000D03*\n", "5,0 0,25",
         "0,5 5,20");
    body("repeated clear objects clear the copies before them",
         "%ADD10C,4*%\n%ADD11C,2*%\n%SRX2Y1I2J0*%\n%LPD*%\nD10*\nX0Y0D03*\n%LPC*%\nD11*\nX1500000Y0D03*\n%SR*"
         "%\n",
         "0,0 2,0", "3.5,0");
    body("block aperture",
         "%ABD12*%\n%ADD10C,2*%\nD10*\nX0Y0D03*\n%LPC*%\n%ADD11C,1*%\nD11*\nX0Y0D03*\n%AB*%\n%LPD*%\n"
         "D12*\nX5000000Y0D03*\nX9000000D03*\n",
         "5.8,0 9.8,0", "5,0 0.8,0 9,0");
    body("block aperture flashed clear",
         "%ABD12*%\n%ADD10C,2*%\nD10*\nX0Y0D03*\n%AB*%\n%ADD11R,8X8*%\nD11*\nX0Y0D03*\n"
         "%LPC*%\nD12*\nX1000000Y0D03*\n",
         "-0.1,0 3,3", "1,0 1.9,0");
    body("block aperture, mirrored and turned over a block that is",
         "%ABD12*%\n%ADD10R,4X1*%\n%LR90*%\nD10*\nX2000000Y0D03*\n%LR0*%\n%AB*%\n"
         "%ABD13*%\n%LMX*%\nD12*\nX0Y0D03*\n%LMN*%\n%AB*%\n%LR90*%\n%LS2*%\nD13*\nX20000000Y0D03*\n",
         "20,-4 16.1,-4 23.9,-4", "20,4 20,-5.1 24.1,-4");
    body("blocks inside each other",
         "%ABD12*%\n%ABD13*%\n%ADD10C,1*%\nD10*\nX0Y0D03*\n%AB*%\nD13*\nX0Y0D03*\n"
         "X2000000D03*\n%AB*%\nD12*\nX0Y5000000D03*\n",
         "0,5 2,5", "0,0 2,0 4,5");

    // ---- mirrored, turned and scaled apertures
    body("LM", "%AMA*1,1,1,2,1*%\n%ADD10A*%\nD10*\n%LMX*%\nX0Y0D03*\n%LMXY*%\nX10000000D03*\n", "-2,1 8,-1",
         "2,1 12,1");
    body("LR", "%ADD10R,4X1*%\nD10*\n%LR90*%\nX0Y0D03*\n%LR0*%\nX10000000D03*\n", "0,1.9 11.9,0",
         "1.9,0 10,1.9");
    body("LM before LR", "%AMA*1,1,1,2,0*%\n%ADD10A*%\nD10*\n%LMX*%\n%LR90*%\nX0Y0D03*\n", "0,-2",
         "0,2 2,0 -2,0");
    body("LS", "%ADD10R,4X1*%\nD10*\n%LS0.5*%\nX0Y0D03*\nX0Y5000000D02*\n%ADD11C,2*%\nD11*\nX5000000D01*\n",
         "0.9,0.2 2,5.4", "1.1,0 2,5.6");

    // ---- dialects
    whole("inch, two and four digits", "%FSLAX24Y24*%\n%MOIN*%\n%ADD10C,0.1*%\nG54D10*\nX10000Y0D03*\nM02*\n",
          "25.4,0 26.6,0", "26.7,0 0,0");
    whole("trailing zeros left out",
          "%FSTAX24Y24*%\n%MOIN*%\n%ADD10C,0.1*%\nD10*\nX01Y00D03*\nX-0105Y00D03*\nM02*\n", "25.4,0 -26.67,0",
          "0,0");
    whole("units by G70, several commands in one", "%FSLAX24Y24*ADD10C,0.1*%\nM02*\n", "", "0,0");
    whole("units by G71", "G71*\n%FSLAX33Y33*%\n%ADD10C,1*%\nG55D10*X1000Y-2000D03*\nM00*\n", "1,-2", "0,0");
    whole("harmless old commands, code digits in FS",
          "%ASAXBY*%\n%FSLAN2G2X34Y34D2*%\n%MOMM*%\n%IPPOS*%\n%IR0*%\n%MIA0B0*%\n%OFA0.0B0*%\n%SFA1.0B1*%\n%"
          "INname*%\n"
          "%LNlayer*%\nG90*\n%ADD10C,1*%\nD10*\nX0Y0D03*\nM02*\n",
          "0,0", "1,0");
    whole("attributes and comments",
          "G04 a comment, with X12Y34D03 in it*\n%TF.FileFunction,Copper,L1,Top*%\n"
          "G04 #@! TF.Part,Single*\n%FSLAX46Y46*MOMM*%\n%TA.AperFunction,ViaPad*%\n"
          "%ADD10C,1*%\n%TD*%\nD10*%TO.N,GND*%X0Y0D03*\nM02*\n",
          "0,0", "1,0");
    whole(
        "modes and coordinates in one block",
        "%FSLAX33Y33*MOMM*%\n%ADD10C,1*%\nD10*\nG01X0Y0D02*\nG01X5000D01*\nG75G03X0Y5000I-5000J0D01*\nM02*\n",
        "2,0 3.53,3.53", "-1,0 0,3");
    whole("Windows line ends, and lines broken inside of commands",
          "%FSLAX33Y33*%\r\n%MOMM*%\r\n%AMA*\r\n4,1,3,\r\n0,0,\r\n2,0,\r\n0,2,\r\n0,0,0*%\r\n%ADD10A*%"
          "\r\nD10*\r\nX0Y0D03*\r\nM02*\r\n",
          "0.5,0.5", "1.5,1.5");
    whole("no mode before the first draw, as some board programs begin",
          "%FSLAX33Y33*%\n%MOMM*%\n%ADD10C,1*%\nD10*\nX0Y0D02*\nX5000D01*\nM02*\n", "2,0", "2,1");
    whole("the position is the origin at first",
          "%FSLAX33Y33*%\n%MOMM*%\n%ADD10C,1*%\nG01*D02*D10*\nX5000D01*\nM02*\n", "0,0 2,0", "2,1");
    whole("a comment with a % in it",
          "G04 #@! %TF.Part,Single*\nG04 === 100% ===*%FSLAX33Y33*MOMM*%\n%ADD10C,1*%\nD10*\nX0Y0D03*\nM02*"
          "\n",
          "0,0", "1,0");
    whole("a comment of several lines",
          "G04 one\ntwo X1Y1D03*\n%FSLAX33Y33*MOMM*%\n%ADD10C,1*%\nD10*\nX0Y0D03*\nM02*\n", "0,0", "1,0");
    whole("characters by ICAS", "%ICAS*%\n%FSLAX33Y33*MOMM*%\n%ADD10C,1*%\nD10*\nX0Y0D03*\nM02*\n", "0,0",
          "1,0");
    whole("no zeros left out",
          "%FSAX24Y24*MOIN*%\n%ADD10C,0.1*%\nD10*\nX010000Y-010000D03*\nX0Y0D03*\nM02*\n", "25.4,-25.4 0,0",
          "2.54,0");
    whole("what stands behind M02 is not looked at", "%FSLAX33Y33*MOMM*ADD10C,1*%D10*X0Y0D03*M02*\nX9Q",
          "0,0", "1,0");
}

void tst_GerberReader::paintsWhatTheFileSays()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QString, dark);
    QFETCH(const QString, clear);
    if (QByteArray(QTest::currentDataTag()) == "units by G70, several commands in one") {
        // An aperture before any unit has no size.
        QVERIFY_EXCEPTION_THROWN(read(text), cam::FormatError);
        return;
    }
    try {
        const GerberImage image = read(text);
        QCOMPARE(wrongPoints(image, dark, true), QString());
        QCOMPARE(wrongPoints(image, clear, false), QString());
    } catch (const cam::Error &error) {
        QFAIL(error.what());
    }
}

void tst_GerberReader::refusesByNameAndLine_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
    const auto refused = [](const char *name, const QByteArray &text, const char *message) {
        QTest::newRow(name) << text << QString(message);
    };
    const QByteArray c10 = head + "%ADD10C,1*%\nD10*\n"; // six lines
    refused("an empty file", "", "file:1: expected M02 before the end of the file");
    refused("no end", c10 + "X0Y0D03*\n", "file:8: expected M02 before the end of the file");
    refused("no end of a block", c10 + "X0Y0D03", "file:7: expected \"*\" at the end of a block");
    refused("no end of a command", "%FSLAX46Y46*\n",
            "file:2: expected \"*\" and \"%\" at the end of a command");
    refused("an unknown command", head + "%XY12*%\n",
            "file:5: expected nothing of the command XY12, which is not supported");
    refused("an unknown G code", head + "G10*\n",
            "file:5: expected nothing of the code G10, which is not supported");
    refused("incremental", "%FSLIX46Y46*%\n",
            "file:1: expected nothing of incremental coordinates (FSLIX46Y46), which is not supported");
    refused("incremental by G91", head + "G91*\n",
            "file:5: expected nothing of G91 (incremental coordinates), which is not supported");
    refused("negative image", head + "%IPNEG*%\n",
            "file:5: expected nothing of the command IPNEG, which is not supported");
    refused("scale", head + "%SFA2.0B1.0*%\n",
            "file:5: expected nothing of the command SFA2.0B1.0, which is not supported");
    refused("offset", head + "%OFA2.0B1.0*%\n",
            "file:5: expected nothing of the command OFA2.0B1.0, which is not supported");
    refused("image rotation", head + "%IR90*%\n",
            "file:5: expected nothing of the command IR90, which is not supported");
    refused("knock out", head + "%KOD*%\n",
            "file:5: expected nothing of the command KOD, which is not supported");
    refused("a coordinate before FS", "%MOMM*%\nX0Y0D02*\n",
            "file:2: expected the command FS before the first coordinate");
    refused("a coordinate before MO", "%FSLAX46Y46*%\nX0Y0D02*\n",
            "file:2: expected the unit (MO) before the first length");
    refused("a decimal point", c10 + "X0.5Y0D03*\n",
            "file:7: expected a capital letter and digits at \".5Y0D03\"");
    refused("too many digits", c10 + "X12345678901Y0D03*\n",
            "file:7: expected a coordinate of at most 10 digits");
    refused("two units", head + "%MOIN*%\n", "file:5: expected one unit in the whole file");
    refused("two formats", head + "%FSLAX24Y24*%\n", "file:5: expected one format in the whole file");
    refused("an aperture that is not defined", head + "D12*\n",
            "file:5: expected the number of an aperture that is defined, not D12");
    refused("no aperture chosen", head + "X0Y0D03*\n",
            "file:5: expected an aperture (D10 or higher) before the first D01 or D03");
    refused("an aperture twice", c10 + "%ADD10C,2*%\n", "file:7: expected each aperture once, not D10 again");
    refused("an aperture below D10", head + "%ADD9C,2*%\n", "file:5: expected an aperture from D10 on");
    refused("an unknown macro", head + "%ADD10A,2*%\n",
            "file:5: expected C, R, O, P or the name of a macro that is defined, not \"A\"");
    refused("a rectangular hole", head + "%ADD10C,2X1X1*%\n",
            "file:5: expected 1 to 2 sizes of the aperture C");
    refused("a size that is no number", head + "%ADD10C,2..0*%\n", "file:5: expected a number, not \"2..0\"");
    refused("a polygon of 13 corners", head + "%ADD10P,2X13*%\n",
            "file:5: expected a polygon of 3 to 12 corners");
    refused("a macro's unknown primitive", head + "%AMA*\n3,0,0*%\n%ADD10A*%\n",
            "file:6: expected a primitive that is known (1, 4, 5, 6, 7, 20, 21) in the macro's primitive 3");
    refused("a macro's exposure", head + "%AMA*\n1,2,1,0,0*%\n%ADD10A*%\n",
            "file:6: expected an exposure of 0 or 1 in the macro's primitive 1");
    refused("a macro's size without end", head + "%AMA*\n1,1,$1X1000000,0,0*%\n%ADD10A,1000000*%\n",
            "file:6: expected a diameter below 100 metres in the macro's primitive 1");
    refused("a moire of half a ring", head + "%AMA*\n6,0,0,5,0.5,0.5,2.5,0.1,6,0*%\n%ADD10A*%\n",
            "file:6: expected a number of rings from 0 to 10000 in the macro's primitive 6");
    refused("a scale without end", c10 + "%LS1000000*%\nX0Y0D03*\n",
            "file:8: expected shapes and places below 100 metres");
    refused("steps without end", c10 + "%SRX2Y1I1000000J0*%\nX0Y0D03*\n%SR*%\n",
            "file:9: expected shapes and places below 100 metres");
    refused("scales within scales",
            head + "%ADD10C,1000*%\n%ABD11*%\nD10*\nX0Y0D03*\n%AB*%\n%LS400*%\nD11*\nX0Y0D03*\n",
            "file:12: expected shapes and places below 100 metres");
    refused("a macro's outline that is open", head + "%AMA*\n4,1,2,0,0,1,0,1,1,0*%\n%ADD10A*%\n",
            "file:6: expected an outline that ends where it starts in the macro's primitive 4");
    refused("a macro's missing parameter", head + "%AMA*\n1,1,1,0*%\n%ADD10A*%\n",
            "file:6: expected a centre in the macro's primitive 1");
    refused("a macro's expression", head + "%AMA*\n1,1,(1,0,0*%\n",
            "file:6: expected \")\" in a macro's expression");
    refused("a division by 0", head + "%AMA*\n1,1,1/$1,0,0*%\n%ADD10A*%\n",
            "file:6: expected a macro's expression that has a value");
    refused("a flash in a region", c10 + "G36*\nX0Y0D03*\n", "file:8: expected no D03 between G36 and G37");
    refused("a polarity in a region", c10 + "G36*\n%LPC*%\n",
            "file:8: expected no command between G36 and G37 but attributes");
    refused("a region in a region", c10 + "G36*\nG36*\n", "file:8: expected G37 before another G36");
    refused("a region that does not end", c10 + "G36*\nM02*\n",
            "file:8: expected G37 before the end of the file");
    refused("an end of no region", c10 + "G37*\n", "file:7: expected G36 before G37");
    refused("a polarity of no kind", head + "%LPX*%\n", "file:5: expected D or C behind LP, not \"X\"");
    refused("an arc without a mode", "%FSLAX46Y46*%\n%MOMM*%\n%ADD10C,1*%\nD10*\nX0Y0D02*\nX5I3D01*\n",
            "file:6: expected G02 or G03 before the first I or J");
    refused("a comment behind an operation", c10 + "X0Y0D03G04 here*\n",
            "file:7: expected a comment (G04) in a block of its own");
    refused("two operations in a block", c10 + "X0Y0D02D01*\n",
            "file:7: expected one operation and one aperture in a block");
    refused("two apertures in a block", c10 + "D10D10*\n",
            "file:7: expected one operation and one aperture in a block");
    refused("a comment that does not end on its line", "G04 one\n%FSLAX46Y46*%\n",
            "file:1: expected \"*\" at the end of a block");
    refused("fewer digits where no zeros are left out", "%FSDAX24Y24*MOIN*%\nX10000Y010000D02*\n",
            "file:2: expected a coordinate of 6 digits, as FS says of no zeros that they are left out");
    refused("incremental, no zeros left out", "%FSIX24Y24*%\n",
            "file:1: expected nothing of incremental coordinates (FSIX24Y24), which is not supported");
    refused("a format without A", "%FSLX24Y24*%\n",
            "file:1: expected L or T, and A, behind FS, not \"LX24Y24\"");
    refused("other characters", "%ICEB*%\n",
            "file:1: expected nothing of the command ICEB, which is not supported");
    refused("no quadrant mode", "%FSLAX46Y46*%\n%MOMM*%\n%ADD10C,1*%\nD10*\nX0Y0D02*\nG02*\nX5I5D01*\n",
            "file:7: expected G74 or G75 before the first arc");
    refused("an arc about its start", c10 + "X0Y0D02*\nG02*\nX5000000D01*\n",
            "file:9: expected an arc about a centre that is none of its ends");
    refused("an arc of more than a quarter under G74",
            c10 + "G74*\nX0Y0D02*\nG02*\nX4000000Y0I2000000J0D01*\n",
            "file:10: expected an arc of at most a quarter under G74");
    refused("a stroke of an obround", head + "%ADD10O,2X1*%\nD10*\nX0Y0D02*\nX5D01*\n",
            "file:8: expected nothing of a stroke of an aperture other than a circle or a rectangle without "
            "a hole, which is not supported");
    refused("an arc of a rectangle", head + "%ADD10R,2X1*%\nD10*\nX0Y0D02*\nG02*\nX5000000I2500000D01*\n",
            "file:9: expected nothing of an arc drawn with a rectangle, which is not supported");
    refused("no operation", c10 + "X0Y0*\n", "file:7: expected D01, D02 or D03 behind coordinates");
    refused("a coordinate twice", c10 + "X0X1Y0D02*\n", "file:7: expected each coordinate once");
    refused("copies without number", c10 + "%SRXYI5J5*%\n", "file:7: expected a number of copies, not \"\"");
    refused("too many copies", c10 + "%SRX1000000*%\n",
            "file:7: expected a number of copies from 1 to 100000");
    refused("a block that is not ended", head + "%ABD12*%\nM02*\n",
            "file:6: expected %AB*% before the end of the file");
    refused("a block that was not begun", head + "%AB*%\n", "file:5: expected a block that %AB*% ends");
}

void tst_GerberReader::refusesByNameAndLine()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QString, message);
    try {
        read(text);
        QFAIL("was read");
    } catch (const cam::FormatError &error) {
        QCOMPARE(QString::fromStdString(error.what()), message);
    }
}

void tst_GerberReader::remarksOnWhatReadersDoubt_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("remarks");                // doubt and line
    const QByteArray c10 = head + "%ADD10C,1*%\nD10*\n"; // six lines
    const QByteArray region =
        "G36*\nG01*\nX0Y0D02*\nX5000000D01*\nY5000000D01*\nX0Y0D01*\nG37*\n"; // seven lines
    QTest::newRow("nothing") << c10 + region + "G01*\nX0D02*\nX5000000D01*\n"
                             << "";
    QTest::newRow("a draw behind a region") << c10 + region + "X0D02*\nX5000000D01*\nX0D01*\n"
                                            << "2@15";
    QTest::newRow("a flash behind a region") << c10 + region + "X0Y0D03*\n"
                                             << "";
    QTest::newRow("a region that keeps the mode")
        << c10 + "G36*\nX0Y0D02*\nX5000000D01*\nY5000000D01*\nX0Y0D01*\nG37*\n"
        << "3@9";
    QTest::newRow("an open contour") << c10 + "G36*\nG01*\nX0Y0D02*\nX5000000D01*\nY5000000D01*\nG37*\n"
                                     << "0@12";
    QTest::newRow("no mode at all") << QByteArray(head).replace("G01*\n", "") +
                                           "%ADD10C,1*%\nD10*\nX0Y0D02*\nX1D01*\nX2D01*\n"
                                    << "4@7";
    QTest::newRow("no position at all") << c10 + "D03*\nX1D02*\n"
                                        << "5@7";
    QTest::newRow("half a position") << c10 + "X1D02*\nX2D01*\nX3Y1D01*\n"
                                     << "5@8";
    QTest::newRow("moved without a coordinate") << c10 + "D02*\nX1Y1D02*\n"
                                                << "";
    QTest::newRow("an uneven arc") << c10 + "G02*\nX0Y0D02*\nX5000000I2400000D01*\n"
                                   << "1@9";
    QTest::newRow("an arc that rounding made uneven") << c10 + "G02*\nX0Y0D02*\nX5000000I2500001D01*\n"
                                                      << "";
}

void tst_GerberReader::remarksOnWhatReadersDoubt()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QString, remarks);
    QStringList found;
    for (const cam::GerberRemark &remark : read(text + "M02*\n").remarks)
        found.append(QString("%1@%2").arg(int(remark.doubt)).arg(remark.line));
    QCOMPARE(found.join(' '), remarks);
}

void tst_GerberReader::findsContoursThatCrossThemselves_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("crosses");
    const QByteArray begin = head + "G36*\nX0Y0D02*\n", end = "G37*\nM02*\n";
    QTest::newRow("a square") << begin + "X9000000D01*\nY9000000D01*\nX0D01*\nY0D01*\n" + end << false;
    QTest::newRow("an eight") << begin + "X9000000D01*\nX0Y9000000D01*\nX9000000D01*\nX0Y0D01*\n" + end
                              << true;
    QTest::newRow("a hole with its outline")
        << begin +
               "X9000000D01*\nY9000000D01*\nX0D01*\nY3000000D01*\nX3000000D01*\nX6000000D01*\nY6000000D01*\n"
               "X3000000D01*\nY3000000D01*\nX0D01*\nY0D01*\n" +
               end
        << true;
    QTest::newRow("a hole against its outline")
        << begin +
               "X9000000D01*\nY9000000D01*\nX0D01*\nY3000000D01*\nX3000000D01*\nY6000000D01*\nX6000000D01*\n"
               "Y3000000D01*\nX3000000D01*\nX0D01*\nY0D01*\n" +
               end
        << false;
    QTest::newRow("a round hole with its outline")
        << begin +
               "X9000000D01*\nY9000000D01*\nX0D01*\nY4000000D01*\nX2000000D01*\nG03*\nI2000000J0D01*\nG01*"
               "\nX0D01*\n"
               "Y0D01*\n" +
               end
        << true;
    QTest::newRow("a round hole against its outline")
        << begin +
               "X9000000D01*\nY9000000D01*\nX0D01*\nY4000000D01*\nX2000000D01*\nG02*\nI2000000J0D01*\nG01*"
               "\nX0D01*\n"
               "Y0D01*\n" +
               end
        << false;
    QTest::newRow("around twice") << begin + "G03*\nI2000000J0D01*\nI2000000J0D01*\n" + end << true;
    QTest::newRow("touching itself in a corner")
        << begin +
               "X4000000D01*\nX2000000Y2000000D01*\nX4000000Y4000000D01*\nX0D01*\nX2000000Y2000000D01*"
               "\nX0Y0D01*\n" +
               end
        << false;
    QTest::newRow("a fold within a step of rounding")
        << begin + "X9000000D01*\nY9000000D01*\nX1D01*\nX0Y5000000D01*\nX2Y4000000D01*\nX0Y0D01*\n" + end
        << false;
    QTest::newRow("in a macro") << head +
                                       "%AMA*4,1,4,0,0,2,0,0,2,2,2,0,0,0*%\n%ADD10A*%\nD10*\nX0Y0D03*\nM02*\n"
                                << true;
}

void tst_GerberReader::findsContoursThatCrossThemselves()
{
    QFETCH(const QByteArray, text);
    QFETCH(const bool, crosses);
    QCOMPARE(!cam::crossingContours(read(text)).empty(), crosses);
}

// Random contours of lines and arcs, also of unequal radii, against polygons in small steps.
void tst_GerberReader::windingNumbersAreThoseOfFinePolygons()
{
    std::mt19937 random(7);
    const auto any = [&random](int low, int high) {
        return double(std::uniform_int_distribution<int>(low, high)(random)) * 1000.0;
    };
    int judged = 0;
    for (int round = 0; round < 300; ++round) {
        cam::ContourPool pool;
        Point from = {any(-9, 9), any(-9, 9)};
        pool.begin(from, false);
        for (int i = 0; i < 4; ++i) {
            const Point end = {any(-9, 9), any(-9, 9)};
            const Point middle = (from + end) * 0.5, across = {middle.y - from.y, from.x - middle.x};
            if (any(0, 1) == 0.0)
                pool.lineTo(end);
            else
                pool.arcTo(end, middle + across * (any(-3, 3) / 1000.0), any(0, 1) == 0.0);
            from = end;
        }
        pool.end();
        const std::vector<Point> corners = testing::cornersOf(pool[0]);
        for (int i = 0; i < 60; ++i) {
            const Point at = {any(-20, 20) + 1.0, any(-20, 20) + (i % 2 == 0 ? 0.0 : 1.0)};
            if (cam::distanceTo(pool[0], at) < 5.0)
                continue;
            ++judged;
            QVERIFY2((cam::windingNumber(pool[0], at) % 2 != 0) == testing::isInside(corners, at),
                     qPrintable(QString("round %1 at %2, %3").arg(round).arg(at.x).arg(at.y)));
        }
    }
    QVERIFY(judged > 10000);
}

// What the view shows as the stroke's middle line.
void tst_GerberReader::strokesOfBlocksAreTurnedWithThem()
{
    const GerberImage image =
        read(head + "%ADD10C,1*%\n%ABD12*%\nD10*\nX2000000Y0D02*\nG03*\nX0Y2000000I-2000000J0D01*\n%AB*%\n"
                    "%LMX*%\n%LS3*%\nD12*\nX50000000Y0D03*\nX90000000D03*\nM02*\n");
    QCOMPARE(image.objects.size(), std::size_t(2));
    QCOMPARE(image.objects[0].stroke, image.objects[1].stroke);
    const cam::GerberStroke &stroke = image.strokes[image.objects[0].stroke];
    QCOMPARE(stroke.width, 3e6);
    QVERIFY(stroke.from == Point({-6e6, 0.0}) && stroke.edge.end == Point({0.0, 6e6}));
    QVERIFY(stroke.edge.kind == cam::EdgeKind::ArcClockwise && stroke.edge.center == Point({0.0, 0.0}));
    QVERIFY(image.objects[1].at == Point({90e6, 0.0}));
}

// Of all sizes down to a few steps of the grid: none goes around the other way.
void tst_GerberReader::singleQuadrantArcsGoTheShortWay()
{
    std::mt19937 random(11);
    const auto any = [&random](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    for (int round = 0; round < 3000; ++round) {
        const double radius = std::exp(any(1.5, 8.0)), first = any(0.0, 360.0);
        const double turn = any(0.0, 1.0) < 0.5 ? any(0.0, 90.0) : any(0.0, std::min(90.0, 300.0 / radius));
        const auto at = [&](double degrees) {
            return cam::Point{std::round(radius * std::cos(degrees * cam::pi / 180.0)),
                              std::round(radius * std::sin(degrees * cam::pi / 180.0))};
        };
        const bool clockwise = round % 2 == 0;
        const Point from = at(first), to = at(clockwise ? first - turn : first + turn);
        const QByteArray text = "%FSLAX46Y46*%\n%MOMM*%\nG74*\n%ADD10C,0.000001*%\nD10*\n" +
                                QString("X%1Y%2D02*\n%3X%4Y%5I%6J%7D01*\nM02*\n")
                                    .arg(int(from.x))
                                    .arg(int(from.y))
                                    .arg(clockwise ? "G02" : "G03")
                                    .arg(int(to.x))
                                    .arg(int(to.y))
                                    .arg(std::abs(int(from.x)))
                                    .arg(std::abs(int(from.y)))
                                    .toLatin1();
        try {
            const GerberImage image = read(text);
            QCOMPARE(image.strokes.size(), std::size_t(1));
            const cam::Edge edge = image.strokes[0].edge;
            const double swept = edge.kind == cam::EdgeKind::Line || from == to
                                     ? 0.0
                                     : std::fabs(cam::sweptDegrees(from, edge));
            // Rounding turns an end by a step at most.
            QVERIFY2(std::fabs(swept - turn) < 3.0 * 60.0 / radius + 0.01, text.constData());
        } catch (const cam::Error &error) {
            QFAIL((error.what() + text).constData());
        }
    }
}

void tst_GerberReader::aFileThatIsNotThereIsNamed()
{
    try {
        cam::readGerberFile("no/such/file.gbr");
        QFAIL("was read");
    } catch (const cam::Error &error) {
        QCOMPARE(QString(error.what()), QString("no/such/file.gbr: cannot be opened"));
    }
}

QTEST_APPLESS_MAIN(tst_GerberReader)
#include "tst_gerberreader.moc"
