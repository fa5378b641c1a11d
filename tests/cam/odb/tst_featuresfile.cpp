// Records of a features file: what each of them becomes, and what a fault is answered with.
#include "cam/base/error.h"
#include "cam/odb/featuresfile.h"
#include "tests/cam/support/messages.h"

#include <QtTest>

#include <cmath>

using namespace cam;

namespace {

constexpr double inch = 25.4e6;
constexpr double mm = 1e6;

// Knows every symbol but those that start with "no", and one font.
class Reading
{
public:
    FeaturesFile read(const QByteArray &text)
    {
        FeaturesContext context;
        context.symbolIndex = [this](std::string_view name, SymbolUnit unit) {
            if (name.substr(0, 2) == "no")
                throw SymbolError("unknown symbol");
            names.push_back(std::string(name) + (unit == SymbolUnit::Mils ? " I" : " M"));
            return static_cast<std::uint32_t>(names.size() - 1);
        };
        context.font = [this](std::string_view name) -> const Font & {
            if (name != "standard")
                throw Error("no font");
            return font;
        };
        return readFeatures(text.toStdString(), "f", context);
    }
    std::vector<std::string> names;
    Font font = parseFont("XSIZE 0.3\nYSIZE 0.3\nOFFSET 0\nCHAR A\nLINE 0 0 0.1 0.2 P R 0.012\n"
                          "LINE 0.1 0.2 0.2 0 P S 0.012\nECHAR\n",
                          "font");
};

bool isAt(Point p, double x, double y)
{
    return std::fabs(p.x - x) < 1e-3 && std::fabs(p.y - y) < 1e-3;
}

} // namespace

class tst_FeaturesFile : public QObject
{
    Q_OBJECT

private slots:
    void lineIsRead()
    {
        Reading reading;
        const FeatureSet set = reading.read("UNITS=MM\n$0 r100\nL 1 2 3.5 -4 0 P 5;0=1,2;ID=7\n").features;
        QCOMPARE(set.lines.size(), std::size_t(1));
        QVERIFY(isAt(set.lines[0].start, 1 * mm, 2 * mm) && isAt(set.lines[0].end, 3.5 * mm, -4 * mm));
        QVERIFY(set.order[0].kind == FeatureKind::Line && set.order[0].polarity == Polarity::Positive);
    }

    void arcIsRead()
    {
        Reading reading;
        const FeatureSet set =
            reading.read("UNITS=MM\n$0 r100\nA 1 0 0 1 0 0 0 N 0 Y\nA 1 0 0 1 0 0 0 P 0 N;1\n").features;
        QCOMPARE(set.arcs.size(), std::size_t(2));
        QVERIFY(set.arcs[0].clockwise && !set.arcs[1].clockwise);
        QVERIFY(isAt(set.arcs[0].end, 0, mm));
        QVERIFY(set.order[0].polarity == Polarity::Negative);
        QCOMPARE(set.negativeCount, std::size_t(1));
    }

    void orientationsOfAPad_data()
    {
        QTest::addColumn<QByteArray>("orientation");
        QTest::addColumn<double>("angle");
        QTest::addColumn<bool>("mirror");
        QTest::newRow("0") << QByteArray("0") << 0.0 << false;
        QTest::newRow("1") << QByteArray("1") << 90.0 << false;
        QTest::newRow("2") << QByteArray("2") << 180.0 << false;
        QTest::newRow("3") << QByteArray("3") << 270.0 << false;
        QTest::newRow("4") << QByteArray("4") << 0.0 << true;
        QTest::newRow("5") << QByteArray("5") << 90.0 << true;
        QTest::newRow("6") << QByteArray("6") << 180.0 << true;
        QTest::newRow("7") << QByteArray("7") << 270.0 << true;
        QTest::newRow("8") << QByteArray("8 22.5") << 22.5 << false;
        QTest::newRow("9") << QByteArray("9 225") << 225.0 << true;
        QTest::newRow("negative angle") << QByteArray("8 -90") << 270.0 << false;
        QTest::newRow("more than a turn") << QByteArray("8 450") << 90.0 << false;
        QTest::newRow("none") << QByteArray("") << 0.0 << false;
    }
    void orientationsOfAPad()
    {
        QFETCH(QByteArray, orientation);
        QFETCH(double, angle);
        QFETCH(bool, mirror);
        Reading reading;
        const FeatureSet set = reading.read("$0 rect10x20\nP 1 2 0 P 0 " + orientation + "\n").features;
        QCOMPARE(set.pads.size(), std::size_t(1));
        QCOMPARE(set.pads[0].angle, angle);
        QCOMPARE(set.pads[0].mirror, mirror);
        QCOMPARE(set.pads[0].growth, 0.0);
    }

    void padMayBeResized_data()
    {
        QTest::addColumn<QByteArray>("unit");
        QTest::addColumn<QByteArray>("number");
        QTest::addColumn<double>("growth"); // nanometres
        QTest::newRow("mils") << QByteArray("") << QByteArray("1.5") << 1.5 * 25'400.0;
        QTest::newRow("micrometres") << QByteArray("UNITS=MM\n") << QByteArray("50") << 50'000.0;
        QTest::newRow("shrunk") << QByteArray("UNITS=MM\n") << QByteArray("-50.5") << -50'500.0;
        QTest::newRow("not at all") << QByteArray("UNITS=MM\n") << QByteArray("0") << 0.0;
    }
    void padMayBeResized()
    {
        QFETCH(QByteArray, unit);
        QFETCH(QByteArray, number);
        QFETCH(double, growth);
        Reading reading;
        const FeaturesFile file =
            reading.read(unit + "$0 r1\n$1 r2\nP 1 2 -1 1 " + number + " N 0 8 90;0=1\n");
        const FeatureSet &set = file.features;
        QCOMPARE(set.pads[0].growth, growth);
        QCOMPARE(reading.names.at(set.pads[0].symbol).substr(0, 2), std::string("r2"));
        QCOMPARE(set.pads[0].angle, 90.0);
        QCOMPARE(file.readings.size(), std::size_t(growth == 0.0 ? 0 : 1));
    }

    void surfaceKeepsContoursInOrder()
    {
        Reading reading;
        const FeatureSet set = reading
                                   .read("UNITS=MM\nS P 0;;ID=3\nOB 0 0 I\nOS 10 0\nOS 10 10\nOS 0 10\nOE\n"
                                         "OB 4 5 H\nOC 6 5 5 5 Y\nOC 4 5 5 5 Y\nOE\nSE\n")
                                   .features;
        QCOMPARE(set.surfaces.size(), std::size_t(1));
        QCOMPARE(set.surfaces[0].contourCount, 2u);
        QVERIFY(!set.contours[0].isHole && set.contours[1].isHole);
        QVERIFY(std::fabs(signedArea(set.contours[0]) / (mm * mm) - 100.0) < 1e-6);
        QVERIFY(std::fabs(signedArea(set.contours[1]) / (mm * mm) + 3.14159265358979) < 1e-6);
    }

    void unitsComeFromTheFile_data()
    {
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<double>("unit");
        QTest::addColumn<QString>("symbol");
        QTest::newRow("none") << QByteArray() << inch << "r7 I";
        QTest::newRow("inch") << QByteArray("UNITS=INCH\n") << inch << "r7 I";
        QTest::newRow("mm") << QByteArray("UNITS=MM\n") << mm << "r7 M";
        QTest::newRow("older mm") << QByteArray("U MM\n") << mm << "r7 M";
        QTest::newRow("older inch") << QByteArray("U INCH\n") << inch << "r7 I";
        QTest::newRow("crlf") << QByteArray("UNITS=MM\r\n") << mm << "r7 M";
    }
    void unitsComeFromTheFile()
    {
        QFETCH(QByteArray, header);
        QFETCH(double, unit);
        QFETCH(QString, symbol);
        Reading reading;
        const FeatureSet set = reading.read(header + "$0 r7\nL 0 0 1 0 0 P 0\n").features;
        QVERIFY(isAt(set.lines[0].end, unit, 0.0));
        QCOMPARE(QString::fromStdString(reading.names.at(0)), symbol);
    }

    void symbolSuffixOverridesTheUnit()
    {
        Reading reading;
        reading.read(
            "UNITS=MM\n$0 R10 I\n$1 r20 M\n$2 r30\nL 0 0 1 0 0 P 0\nL 0 0 1 0 1 P 0\nL 0 0 1 0 2 P 0\n");
        QCOMPARE(reading.names, (std::vector<std::string>{"r10 I", "r20 M", "r30 M"}));
    }

    void symbolsAreLookedUpOnlyWhenUsed()
    {
        Reading reading;
        const FeaturesFile file = reading.read("$0 nothing\n$1 r1\nL 0 0 1 0 1 P 0\nL 0 0 1 0 1 P 0\n");
        QCOMPARE(reading.names.size(), std::size_t(1));
        QVERIFY(file.unsupported.empty());
    }

    void unknownSymbolsAreCountedByName()
    {
        Reading reading;
        const FeaturesFile file =
            reading.read("$0 nosuch\n$1 r1\nL 0 0 1 0 0 P 0\nP 0 0 0 P 0 0\nL 0 0 1 0 1 P 0\n");
        QCOMPARE(file.unsupported.size(), std::size_t(1));
        QCOMPARE(file.unsupported.at("symbol nosuch"), std::size_t(2));
        QCOMPARE(file.features.order.size(), std::size_t(1));
    }

    void unknownRecordsAreCountedByName()
    {
        Reading reading;
        const FeaturesFile file = reading.read("X 1 2 3\nX 4\nHELLO\n");
        QCOMPARE(file.unsupported.at("record X"), std::size_t(2));
        QCOMPARE(file.unsupported.at("record HELLO"), std::size_t(1));
    }

    void commentsTablesAndCountsAreSkipped()
    {
        Reading reading;
        const FeaturesFile file = reading.read("#\n# Layer\n\nF 12\nID=4\n@0 .smd\n&0 L 1 2 3\n   \n");
        QVERIFY(file.features.isEmpty() && file.unsupported.empty());
    }

    void textIsDrawnWithTheFont()
    {
        Reading reading;
        // Characters of 3 by 6 mm, strokes of 0.5 * 12 mils, turned by 90 degrees clockwise.
        const FeatureSet set = reading.read("UNITS=MM\nT 10 20 standard P 1 3 6 0.5 'AA' 1;;ID=2\n").features;
        QCOMPARE(set.lines.size(), std::size_t(4));
        QVERIFY(isAt(set.lines[0].start, 10 * mm, 20 * mm));
        QVERIFY(isAt(set.lines[0].end, 14 * mm, 19 * mm));   // (1, 4) turned clockwise
        QVERIFY(isAt(set.lines[2].start, 10 * mm, 17 * mm)); // the second character, 3 mm on
        QCOMPARE(reading.names.at(set.lines[0].symbol), std::string("r152.400 M"));
        QCOMPARE(reading.names.at(set.lines[1].symbol), std::string("s152.400 M"));
    }

    void textMayHoldQuotesAndSemicolons()
    {
        Reading reading;
        QCOMPARE(reading.read("T 0 0 standard P 0 1 1 1 'A;A'A' 1;0=2\n").features.lines.size(),
                 std::size_t(6));
    }

    void textWithoutItsFontIsAnError()
    {
        Reading reading;
        QCOMPARE(messageOf([&] { reading.read("T 0 0 other P 0 1 1 1 'A' 1\n"); }), QString("no font"));
    }

    void barcodeIsItsBox()
    {
        Reading reading;
        const FeaturesFile file = reading.read("UNITS=MM\nB 5 5 UPC39 standard P 0 E 0.2 4 N N N N 'AB'\n");
        QCOMPARE(file.features.surfaces.size(), std::size_t(1));
        const Box box = extent(file.features.contours[0]);
        QVERIFY(isAt(box.low, 5 * mm, 5 * mm));
        QVERIFY(isAt(box.high, (5 + 0.2 * 16 * 4) * mm, 9 * mm));
        QCOMPARE(file.simplified.at("barcode upc39 as its box"), std::size_t(1));
    }

    void faultsNameFileLineAndExpectation_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("message");
        QTest::newRow("number") << QByteArray("$0 r1\nL 0 0 1 x 0 P 0\n")
                                << "f:2: expected a number for the line's end";
        QTest::newRow("short line") << QByteArray("$0 r1\nL 0 0 1\n")
                                    << "f:2: expected a number for the line's end";
        QTest::newRow("polarity") << QByteArray("$0 r1\nL 0 0 1 1 0 Q 0\n")
                                  << "f:2: expected a polarity, P or N";
        QTest::newRow("symbol") << QByteArray("L 0 0 1 1 0 P 0\n")
                                << "f:1: expected the number of a symbol that the file lists";
        QTest::newRow("negative symbol") << QByteArray("$0 r1\nL 0 0 1 1 -1 P 0\n")
                                         << "f:2: expected the number of a symbol that the file lists";
        QTest::newRow("orientation") << QByteArray("$0 r1\nP 0 0 0 P 0 12\n")
                                     << "f:2: expected an orientation, 0 to 9";
        QTest::newRow("angle") << QByteArray("$0 r1\nP 0 0 0 P 0 8\n")
                               << "f:2: expected the angle of orientation 8 or 9";
        QTest::newRow("resize") << QByteArray("$0 r1\nP 0 0 -1 0 10000000000 P 0 0\n")
                                << "f:2: expected a resize of less than 100 metres";
        QTest::newRow("far away") << QByteArray("$0 r1\nL 0 0 1 1e7 0 P 0\n")
                                  << "f:2: expected a position or size below 100 metres";
        QTest::newRow("direction") << QByteArray("$0 r1\nA 0 0 1 1 0 0 0 P 0 X\n")
                                   << "f:2: expected the arc's direction, Y (clockwise) or N";
        QTest::newRow("holes only") << QByteArray("S P 0\nOB 0 0 H\nOE\nSE\n")
                                    << "f:4: expected an island in a surface that has holes";
        QTest::newRow("edge outside")
            << QByteArray("S P 0\nOS 0 0\n") << "f:2: expected OB or SE between contours";
        QTest::newRow("contour in contour")
            << QByteArray("S P 0\nOB 0 0 I\nOB 1 1 I\n") << "f:3: expected OS, OC or OE inside a contour";
        QTest::newRow("surface not closed")
            << QByteArray("S P 0\nOB 0 0 I\nOE\n")
            << "f:3: expected SE, the end of the last surface, before the end of the file";
        QTest::newRow("units") << QByteArray("UNITS=FEET\n") << "f:1: expected INCH or MM";
        QTest::newRow("symbol line") << QByteArray("$x r1\n") << "f:1: expected a symbol number after \"$\"";
        QTest::newRow("symbol name") << QByteArray("$0\n") << "f:1: expected a symbol name";
        QTest::newRow("far symbol") << QByteArray("$9000000 r1\n") << "f:1: expected symbol numbers in order";
        QTest::newRow("text's end") << QByteArray("T 0 0 standard P 0 1 1 1 'A 1\n")
                                    << "f:1: expected a quote at the end of the text";
    }
    void faultsNameFileLineAndExpectation()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, message);
        Reading reading;
        QCOMPARE(messageOf([&] { reading.read(text); }), message);
    }

    void fontFaultsAreNamed_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("message");
        QTest::newRow("no size") << QByteArray("CHAR A\nECHAR\n")
                                 << "font: expected XSIZE and YSIZE greater than 0";
        QTest::newRow("stroke outside")
            << QByteArray("LINE 0 0 1 1 P R 1\n") << "font:1: expected CHAR before LINE";
        QTest::newRow("word") << QByteArray("XSIZE 1\nBOLD\n")
                              << "font:2: expected XSIZE, YSIZE, OFFSET, CHAR, LINE or ECHAR";
    }
    void fontFaultsAreNamed()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, message);
        QCOMPARE(messageOf([&] { parseFont(text.toStdString(), "font"); }), message);
    }
};

QTEST_APPLESS_MAIN(tst_FeaturesFile)
#include "tst_featuresfile.moc"
