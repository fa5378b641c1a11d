// Hand-written drill files, in the dialects of many makers, against the holes and paths that they mean; and
// random ones, written in every unit and zero mode, against what was written.
#include "cam/base/error.h"
#include "cam/excellon/excellonreader.h"

#include <QtTest>

#include <random>

using cam::DrillImage;
using cam::FeatureKind;
using cam::Plating;
using cam::Point;

namespace {

const QByteArray metric = "M48\nFMAT,2\nMETRIC,TZ,000.000\nT1C0.8\nT2C2.0\n%\nT1\n";

DrillImage read(const QByteArray &text)
{
    return cam::readExcellon({text.constData(), std::size_t(text.size())}, "file");
}

QString place(Point at)
{
    return QString("%1,%2").arg(at.x / 1e6, 0, 'g', 12).arg(at.y / 1e6, 0, 'g', 12);
}

// "T1 hit 1,2", "T2 slot 1,2 3,2", "T2 rout ...", "T2 clockwise from to center": millimetres.
QStringList worksOf(const DrillImage &image)
{
    QStringList works;
    for (std::size_t i = 0; i < image.works.size(); ++i) {
        const cam::Feature &feature = image.features.order[i];
        const cam::DrillMove move = image.works[i].move;
        const auto tool = [&](std::uint32_t index) {
            return QString("T%1 ").arg(image.tools.at(index).number);
        };
        if (feature.kind == FeatureKind::Pad) {
            const cam::Pad &pad = image.features.pads[feature.index];
            works << tool(pad.symbol) + (move == cam::DrillMove::Hit ? "hit " : "? ") + place(pad.at);
        } else if (feature.kind == FeatureKind::Line) {
            const cam::Line &line = image.features.lines[feature.index];
            works << tool(line.symbol) + (move == cam::DrillMove::Slot ? "slot " : "rout ") +
                         place(line.start) + ' ' + place(line.end);
        } else {
            const cam::Arc &arc = image.features.arcs[feature.index];
            works << tool(arc.symbol) + (arc.clockwise ? "clockwise " : "counter ") + place(arc.start) + ' ' +
                         place(arc.end) + ' ' + place(arc.center);
        }
    }
    return works;
}

} // namespace

class tst_ExcellonReader : public QObject
{
    Q_OBJECT

private slots:
    void readsHolesAndPaths_data();
    void readsHolesAndPaths();
    void readsTheToolsOfBoardPrograms();
    void refusesByNameAndLine_data();
    void refusesByNameAndLine();
    void saysWhatItAssumed_data();
    void saysWhatItAssumed();
    void tellsDrillFilesByTheirContent_data();
    void tellsDrillFilesByTheirContent();
    void randomFilesAreReadBackExactly_data();
    void randomFilesAreReadBackExactly();
    void aLayerOfItHasRoundSymbols();
    void aFileThatIsNotThereIsNamed();
};

void tst_ExcellonReader::readsHolesAndPaths_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("works");
    QTest::newRow("steps of a micrometre") << metric + "X1000Y2000\nX-500Y+25\nM30\n"
                                           << QStringList{"T1 hit 1,2", "T1 hit -0.5,0.025"};
    QTest::newRow("decimal points") << metric + "X1.5Y-.25\nX2.\nM30\n"
                                    << QStringList{"T1 hit 1.5,-0.25", "T1 hit 2,-0.25"};
    QTest::newRow("coordinates stay") << metric + "X1000Y2000\nY3000\nX500\nM30\n"
                                      << QStringList{"T1 hit 1,2", "T1 hit 1,3", "T1 hit 0.5,3"};
    QTest::newRow("leading zeros are kept")
        << QByteArray("M48\nMETRIC,LZ,000.000\nT1C0.8\n%\nT1\nX001Y0025\nX-01Y1\nM30\n")
        << QStringList{"T1 hit 1,2.5", "T1 hit -10,100"};
    QTest::newRow("inches, leading zeros kept")
        << QByteArray("M48\nINCH,LZ\nT1C0.03\n%\nT1\nX01Y005\nM30\n") << QStringList{"T1 hit 25.4,12.7"};
    QTest::newRow("inches, trailing zeros kept")
        << QByteArray("M48\nINCH,TZ,00.0000\nT1C0.03\n%\nT1\nX10000Y5\nM30\n")
        << QStringList{"T1 hit 25.4,0.0127"};
    QTest::newRow("the format in a comment")
        << QByteArray("M48\n;FILE_FORMAT=4:4\nMETRIC,LZ\nT1F00S00C0.3\n%\nT01\nX0001Y00025\nM30\n")
        << QStringList{"T1 hit 1,2.5"};
    QTest::newRow("a command is worth more than a comment")
        << QByteArray("M48\n;FILE_FORMAT=2:5\nMETRIC,TZ,000.00\nT1C0.3\n%\nT1\nX100Y200\nM30\n")
        << QStringList{"T1 hit 1,2"};
    QTest::newRow("zeros in a comment")
        << QByteArray("M48\n; FORMAT={3:3/ absolute / metric / suppress trailing zeros}\nFMAT,2\nMETRIC\n"
                      "T1C0.3\n%\nT1\nX001Y002\nM30\n")
        << QStringList{"T1 hit 1,2"};
    QTest::newRow("M71") << QByteArray("M48\nM71\nT1C0.8\n%\nT1\nX1.0Y2.0\nM30\n")
                         << QStringList{"T1 hit 1,2"};
    QTest::newRow("M72") << QByteArray("M48\nM72\nT1C0.8\n%\nT1\nX1.0Y2.0\nM30\n")
                         << QStringList{"T1 hit 25.4,50.8"};
    QTest::newRow("no header") << QByteArray("M71\nT1C0.8\nX1.0Y2.0\nM30\n") << QStringList{"T1 hit 1,2"};
    QTest::newRow("CR and LF, blanks, line numbers, comments")
        << QByteArray(metric + "N1 X1000 Y2000 ; first\nN2\n(second)\nX2000\nM30\n").replace("\n", "\r\n")
        << QStringList{"T1 hit 1,2", "T1 hit 2,2"};
    QTest::newRow("CR alone") << QByteArray(metric + "X1000Y2000\nM30\n").replace('\n', '\r')
                              << QStringList{"T1 hit 1,2"};
    QTest::newRow("tools change") << metric + "X1000Y0\nT02\nX2000\nT0\nT1\nX3000\nM30\n"
                                  << QStringList{"T1 hit 1,0", "T2 hit 2,0", "T1 hit 3,0"};
    QTest::newRow("increments") << metric + "G91\nX1000Y1000\nX500\nY-500\nG90\nX0Y0\nM30\n"
                                << QStringList{"T1 hit 1,1", "T1 hit 1.5,1", "T1 hit 1.5,0.5", "T1 hit 0,0"};
    QTest::newRow("an origin that stays where it is") << metric + "G93X0Y0\nX1000Y1000\nM30\n"
                                                      << QStringList{"T1 hit 1,1"};
    QTest::newRow("ICI") << QByteArray("M48\nMETRIC,TZ\nICI,ON\nT1C1.0\n%\nT1\nX1.0Y1.0\nX1.0\nM30\n")
                         << QStringList{"T1 hit 1,1", "T1 hit 2,1"};
    QTest::newRow("repeats") << metric + "X1000Y1000\nR2X2540\nR1Y-1000\nM30\n"
                             << QStringList{"T1 hit 1,1", "T1 hit 3.54,1", "T1 hit 6.08,1", "T1 hit 6.08,0"};
    QTest::newRow("slots") << metric + "T2\nX1000Y1000G85X3000Y1000\nG85Y4000\nG91\nX1000G85X0Y500\nM30\n"
                           << QStringList{"T2 slot 1,1 3,1", "T2 slot 3,1 3,4", "T2 slot 4,4 4,4.5"};
    QTest::newRow("paths") << metric + "T2\nG00X1000Y1000\nM15\nG01X3000\nY2000\nM16\nG00X0Y0\nM15\nG01X500\n"
                                       "M17\nG05\nX9000Y9000\nM30\n"
                           << QStringList{"T2 rout 1,1 3,1", "T2 rout 3,1 3,2", "T2 rout 0,0 0.5,0",
                                          "T2 hit 9,9"};
    QTest::newRow("arcs by radius")
        << metric + "G00X0Y0\nM15\nG02X5000Y5000A5000\nG03X10000Y0A5000\nG02X0Y0A5000\nM16\nM30\n"
        << QStringList{"T1 clockwise 0,0 5,5 5,0", "T1 counter 5,5 10,0 10,5", "T1 clockwise 10,0 0,0 5,0"};
    QTest::newRow("arcs by centre")
        << metric + "G00X0Y0\nM15\nG03X5000Y5000I0J5000\nG02X5000Y5000I-5000\nM16\nM30\n"
        << QStringList{"T1 counter 0,0 5,5 0,5", "T1 clockwise 5,5 5,5 0,5"};
    QTest::newRow("nothing behind the end") << metric + "X1000Y0\nM30\nX2000\nnonsense\n"
                                            << QStringList{"T1 hit 1,0"};
    QTest::newRow("settings of the machine")
        << QByteArray(
               "M48\nVER,1\nFMAT,2\nATC,ON\nDETECT,ON\nTCST,OFF\nMETRIC,TZ\nT1C1.0F200S65H99B10Z-1.5\n%\n"
               "G81\nT1\nF100\nX1.0Y1.0\nM47,change the board\nM00\n")
        << QStringList{"T1 hit 1,1"};
    QTest::newRow("M95 ends the header")
        << QByteArray("%\nM48\nMETRIC,TZ\nT1C1.0\nM95\nT1\nX1.0Y1.0\nM30\n") << QStringList{"T1 hit 1,1"};
}

void tst_ExcellonReader::readsHolesAndPaths()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, works);
    const DrillImage image = read(text);
    QCOMPARE(worksOf(image), works);
    QCOMPARE(image.works.size(), image.features.order.size());
}

void tst_ExcellonReader::readsTheToolsOfBoardPrograms()
{
    const DrillImage one = read("M48\n;FILE_FORMAT=4:4\nMETRIC,LZ\n;TYPE=PLATED\nT1F00S00C0.30000\n"
                                ";TYPE=NON_PLATED\nT12F00S00C3.1\n%\nM30\n");
    QCOMPARE(int(one.tools.size()), 2);
    QCOMPARE(one.tools[0].number, 1);
    QCOMPARE(one.tools[0].diameter, 0.3e6);
    QCOMPARE(one.tools[0].plating, Plating::Plated);
    QCOMPARE(one.tools[1].number, 12);
    QCOMPARE(one.tools[1].diameter, 3.1e6);
    QCOMPARE(one.tools[1].plating, Plating::NonPlated);
    const DrillImage two = read("M48\nINCH\n; #@! TA.AperFunction,Plated,PTH,ViaDrill\nT1C0.0118\n"
                                "; #@! TA.AperFunction,NonPlated,NPTH,ComponentDrill\nT2C0.1\n%\nM30\n");
    QCOMPARE(two.tools[0].diameter, 0.0118 * 25.4e6);
    QCOMPARE(two.tools[0].plating, Plating::Plated);
    QCOMPARE(two.tools[1].plating, Plating::NonPlated);
}

void tst_ExcellonReader::refusesByNameAndLine_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
    const auto behind = [](const char *line) { return metric + line + "\nM30\n"; };
    QTest::newRow("no end") << metric + "X1000Y1000\n"
                            << "file:8: expected M30 before the end of the file";
    QTest::newRow("no unit") << QByteArray("M48\nT1C0.8\n%\nM30\n")
                             << "file:2: expected METRIC, INCH, M71 or M72 before the first length";
    QTest::newRow("two units") << QByteArray("M48\nMETRIC\nT1C0.8\n%\nM72\nM30\n")
                               << "file:5: expected one unit in the whole file";
    QTest::newRow("canned circle") << behind("G32X0Y0A1") << "file:8: expected nothing of the code G32";
    QTest::newRow("another origin") << behind("G93X0Y100")
                                    << "file:8: expected nothing of G93 (another origin)";
    QTest::newRow("an origin without coordinates") << behind("G93") << "file:8: expected nothing of G93";
    QTest::newRow("a path beside the tool") << behind("G41") << "file:8: expected nothing of G41";
    QTest::newRow("pattern") << behind("M25") << "file:8: expected nothing of the code M25";
    QTest::newRow("canned text") << behind("M97,A") << "file:8: expected a capital letter and a number";
    QTest::newRow("a setting of the header")
        << QByteArray("M48\nMETRIC\nXYZZY,1\n%\nM30\n") << "file:3: expected a number behind \"X\"";
    QTest::newRow("FMAT,1") << QByteArray("M48\nFMAT,1\n%\nM30\n")
                            << "file:2: expected format 2 of the commands";
    QTest::newRow("VER,2") << QByteArray("M48\nVER,2\n%\nM30\n") << "file:2: expected version 1 of the axes";
    QTest::newRow("no tool") << QByteArray("M48\nMETRIC,TZ\nT1C0.8\n%\nX1.0Y1.0\nM30\n")
                             << "file:5: expected a tool before the first hole";
    QTest::newRow("another tool") << behind("T7")
                                  << "file:8: expected a tool whose diameter is stated, not T7";
    QTest::newRow("tool without a size") << QByteArray("M48\nMETRIC,TZ\nT1C0.0\n%\nT1\nX1.0Y1.0\nM30\n")
                                         << "file:6: expected a tool with a diameter above 0";
    QTest::newRow("diameter in steps") << QByteArray("M48\nMETRIC,TZ\nT1C800\n%\nM30\n")
                                       << "file:3: expected a diameter with a decimal point, not C800";
    QTest::newRow("two diameters") << behind("T1C0.9") << "file:8: expected one diameter of the tool T1";
    QTest::newRow("too many digits")
        << QByteArray("M48\nMETRIC,LZ,000.000\nT1C0.8\n%\nT1\nX1234567Y0\nM30\n")
        << "file:6: expected at most 6 digits without a decimal point, not 1234567";
    QTest::newRow("two X") << behind("X1000X2000") << "file:8: expected each coordinate once";
    QTest::newRow("two points") << behind("X1.0.0")
                                << "file:8: expected a number of at most 15 digits, not 1.0.0";
    QTest::newRow("far away") << behind("X999999999.0") << "file:8: expected a length below 100 metres";
    QTest::newRow("small letters") << behind("x1000") << "file:8: expected a capital letter and a number";
    QTest::newRow("path with the tool up")
        << behind("G00X0Y0\nG01X1000") << "file:9: expected M15 before a path";
    QTest::newRow("tool down while drilling")
        << behind("M15") << "file:8: expected G00 before the tool goes down";
    QTest::newRow("tool left down") << behind("G00X0Y0\nM15\nG01X1000")
                                    << "expected M16 or M17 before the end";
    QTest::newRow("move with the tool down")
        << behind("G00X0Y0\nM15\nG00X1000") << "file:10: expected M16 or M17";
    QTest::newRow("arc without a centre")
        << behind("G00X0Y0\nM15\nG02X1000Y1000") << "file:10: expected either a radius";
    QTest::newRow("arc with a short radius")
        << behind("G00X0Y0\nM15\nG02X9000Y0A1000") << "file:10: expected an arc";
    QTest::newRow("uneven arc") << behind("G00X0Y0\nM15\nG02X9000Y0I1000")
                                << "file:10: expected an arc whose ends";
    QTest::newRow("centre of a hole") << behind("X0Y0I1000") << "file:8: expected X and Y of a hole only";
    QTest::newRow("half a slot") << behind("X0Y0G85") << "file:8: expected the end of the slot behind G85";
    QTest::newRow("slot while routing")
        << behind("G00X0Y0\nX0Y0G85X1000") << "file:9: expected G05 before a slot";
    QTest::newRow("repeat of nothing") << behind("R3X1000") << "file:8: expected a hole before its repeats";
    QTest::newRow("repeat of a pattern")
        << behind("X0Y0\nR3M02X1000") << "file:9: expected nothing of the code M02";
    QTest::newRow("too many repeats")
        << behind("X0Y0\nR100001X1") << "file:9: expected a number of repeats from 1";
    QTest::newRow("code behind coordinates")
        << behind("X0Y0G91") << "file:8: expected G codes before the coordinates";
    QTest::newRow("two codes") << behind("M15M16") << "file:8: expected";
    QTest::newRow("coordinate in the header") << QByteArray("M48\nMETRIC,TZ\nT1C0.8\nX0Y0\n%\nM30\n")
                                              << "file:4: expected a setting of the header, not \"X0Y0\"";
    QTest::newRow("format of other words") << QByteArray("M48\n;FILE_FORMAT=four\n%\nM30\n")
                                           << "file:2: expected two numbers of digits behind FILE_FORMAT";
    QTest::newRow("zeros of other words")
        << QByteArray("M48\nMETRIC,XZ\n%\nM30\n") << "file:2: expected LZ, TZ or a format such as 000.000";
}

void tst_ExcellonReader::refusesByNameAndLine()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    try {
        read(text);
        QFAIL("read without a word");
    } catch (const cam::FormatError &error) {
        QVERIFY2(QString(error.what()).contains(message), error.what());
    }
}

void tst_ExcellonReader::saysWhatItAssumed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("said");
    QTest::newRow("all is stated") << metric + "X1Y1\nM30\n" << QString();
    QTest::newRow("decimal points need nothing")
        << QByteArray("M48\nMETRIC\nT1C0.8\n%\nT1\nX1.0Y1.0\nM30\n") << QString();
    QTest::newRow("number format") << QByteArray("M48\nMETRIC,TZ\nT1C0.8\n%\nT1\nX1Y1\nM30\n")
                                   << "3 and 3 digits of a millimetre";
    QTest::newRow("zeros") << QByteArray("M48\nINCH,00.0000\nT1C0.8\n%\nT1\nX1Y1\nM30\n") << "leading zeros";
    QTest::newRow("zeros that make no difference")
        << QByteArray("M48\nINCH,00.0000\nT1C0.8\n%\nT1\nX010000Y-000001\nM30\n") << QString();
    QTest::newRow("both") << QByteArray("M48\nM72\nT1C0.8\n%\nT1\nX1Y1\nM30\n")
                          << "2 and 4 digits of an inch|leading zeros";
}

void tst_ExcellonReader::saysWhatItAssumed()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, said);
    const cam::DrillAssumptions assumed = read(text).assumptions;
    QStringList assumptions;
    if (assumed.digits)
        assumptions << QString("%1 and %2 digits of %3")
                           .arg(assumed.whole)
                           .arg(assumed.decimals)
                           .arg(assumed.isInch ? "an inch" : "a millimetre");
    if (assumed.leadingZeros)
        assumptions << "leading zeros";
    QCOMPARE(assumptions.join('|'), said);
    QCOMPARE(assumed.none(), said.isEmpty());
}

void tst_ExcellonReader::tellsDrillFilesByTheirContent_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("isDrill");
    QTest::newRow("header") << QByteArray("M48\nMETRIC\n") << true;
    QTest::newRow("comments first") << QByteArray("; made by hand\r\n\r\nM48\r\n") << true;
    QTest::newRow("leader") << QByteArray("%\nM48\n") << true;
    QTest::newRow("header of comments")
        << QByteArray(";HEADER:\n;   Holesize 1. = 0.2\n%\nG90\nX1Y1\n") << true;
    QTest::newRow("no header") << QByteArray("M72\nT01C.035F100\nX1Y1\n") << true;
    QTest::newRow("gerber") << QByteArray("G04 M48*\n%FSLAX46Y46*%\n%MOMM*%\n%ADD10C,1*%\n") << false;
    QTest::newRow("gerber with percent signs alone")
        << QByteArray("%\nFSLAX46Y46*\nMOMM*\nADD10C,1*\n%\n") << false;
    QTest::newRow("gdsii") << QByteArray("\0\6\0\2\0\7", 6) << false;
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("a milling program") << QByteArray("G21\nG90\nG00 X0 Y0\nM03 S1000\n") << false;
}

void tst_ExcellonReader::tellsDrillFilesByTheirContent()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, isDrill);
    QCOMPARE(cam::isExcellon({head.constData(), std::size_t(head.size())}), isDrill);
}

// ---- random files

namespace {

// How numbers are written: `zeros` is "LZ", "TZ", or empty for decimal points.
struct Style
{
    bool isMetric;
    QByteArray zeros;
    int whole, decimals;
    bool increments;
};

// The writer of the test: whole steps of the grid to text.
class Writer
{
public:
    explicit Writer(const Style &style) : m_style(style)
    {
        m_text = "M48\nFMAT,2\n";
        m_text += style.isMetric ? "METRIC" : "INCH";
        if (!style.zeros.isEmpty())
            m_text += ',' + style.zeros + ',' + QByteArray(style.whole, '0') + '.' +
                      QByteArray(style.decimals, '0');
        m_text += '\n';
    }
    QByteArray number(qint64 steps) const
    {
        QByteArray digits = QByteArray::number(qAbs(steps));
        digits = digits.rightJustified(m_style.decimals + 1, '0');
        if (m_style.zeros.isEmpty())
            digits.insert(digits.size() - m_style.decimals, '.');
        else if (m_style.zeros == "LZ") {
            digits = digits.rightJustified(m_style.whole + m_style.decimals, '0');
            while (digits.size() > 1 && digits.endsWith('0'))
                digits.chop(1);
        } else {
            while (digits.size() > 1 && digits.startsWith('0'))
                digits.remove(0, 1);
        }
        return (steps < 0 ? "-" : "") + digits;
    }
    void line(const QByteArray &text) { m_text += text + '\n'; }
    // The coordinates of a place, absolute or from the one before.
    QByteArray place(qint64 x, qint64 y)
    {
        const QByteArray text = 'X' + number(x - (m_style.increments ? m_x : 0)) + 'Y' +
                                number(y - (m_style.increments ? m_y : 0));
        m_x = x;
        m_y = y;
        return text;
    }
    QByteArray finished() { return m_text + "M30\n"; }

private:
    Style m_style;
    QByteArray m_text;
    qint64 m_x = 0, m_y = 0;
};

} // namespace

void tst_ExcellonReader::randomFilesAreReadBackExactly_data()
{
    QTest::addColumn<bool>("isMetric");
    QTest::addColumn<QByteArray>("zeros");
    QTest::addColumn<int>("whole");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<bool>("increments");
    for (const bool isMetric : {true, false}) {
        for (const char *zeros : {"LZ", "TZ", ""}) {
            for (const int decimals : {2, 3, 4, 5}) {
                for (const bool increments : {false, true})
                    QTest::newRow(qPrintable(QString("%1 %2 %3 %4")
                                                 .arg(isMetric ? "metric" : "inch", zeros)
                                                 .arg(decimals)
                                                 .arg(increments)))
                        << isMetric << QByteArray(zeros) << (isMetric ? 3 : 2) << decimals << increments;
            }
        }
    }
}

void tst_ExcellonReader::randomFilesAreReadBackExactly()
{
    QFETCH(bool, isMetric);
    QFETCH(QByteArray, zeros);
    QFETCH(int, whole);
    QFETCH(int, decimals);
    QFETCH(bool, increments);
    std::mt19937 random(4711u + unsigned(decimals));
    const auto below = [&](qint64 bound) { return qint64(random() % std::uint64_t(bound)); };
    for (int round = 0; round < 8; ++round) {
        Writer writer({isMetric, zeros, whole, decimals, increments});
        // Half the largest number, so that differences can be written as well.
        const qint64 most = qint64(std::pow(10.0, whole + decimals)) / 4;
        const double unit = (isMetric ? 1e6 : 25.4e6);
        const auto nanometres = [&](qint64 steps) { return double(steps) * unit / std::pow(10.0, decimals); };
        QVector<qint64> diameters;
        for (int tool = 0; tool < 5; ++tool) {
            diameters << 1 + below(9000);
            writer.line("T" + QByteArray::number(tool + 1) + "C" +
                        QByteArray::number(diameters.last() / 10000) + '.' +
                        QByteArray::number(diameters.last() % 10000).rightJustified(4, '0'));
        }
        writer.line("%");
        writer.line(increments ? "G91" : "G90");
        struct Wanted
        {
            cam::DrillMove move;
            int tool;
            Point from, to;
        };
        std::vector<Wanted> wanted;
        for (int i = 0; i < 100; ++i) {
            const int tool = int(below(5));
            writer.line("T" + QByteArray::number(tool + 1));
            const qint64 x = below(2 * most) - most, y = below(2 * most) - most;
            const qint64 toX = below(2 * most) - most, toY = below(2 * most) - most;
            const Point from{nanometres(x), nanometres(y)}, to{nanometres(toX), nanometres(toY)};
            switch (below(3)) {
            case 0:
                writer.line(writer.place(x, y));
                wanted.push_back({cam::DrillMove::Hit, tool, from, from});
                break;
            case 1: {
                const QByteArray start = writer.place(x, y);
                writer.line(start + "G85" + writer.place(toX, toY));
                wanted.push_back({cam::DrillMove::Slot, tool, from, to});
                break;
            }
            default:
                writer.line("G00" + writer.place(x, y));
                writer.line("M15");
                writer.line("G01" + writer.place(toX, toY));
                writer.line("M16");
                writer.line("G05");
                wanted.push_back({cam::DrillMove::Rout, tool, from, to});
            }
        }
        const DrillImage image = read(writer.finished());
        QVERIFY(image.assumptions.none());
        QCOMPARE(image.works.size(), wanted.size());
        for (int tool = 0; tool < 5; ++tool)
            QCOMPARE(image.tools[std::size_t(tool)].diameter, double(diameters[tool]) * unit / 10000.0);
        // Increments add up rounded numbers: exact to a thousandth of a nanometre.
        const double slack = increments ? 1e-3 : 0.0;
        const auto isAt = [&](Point a, Point b) { return cam::distance(a, b) <= slack; };
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            QCOMPARE(image.works[i].move, wanted[i].move);
            const cam::Feature &feature = image.features.order[i];
            if (wanted[i].move == cam::DrillMove::Hit) {
                const cam::Pad &pad = image.features.pads[feature.index];
                QVERIFY(int(pad.symbol) == wanted[i].tool && isAt(pad.at, wanted[i].from));
            } else {
                const cam::Line &line = image.features.lines[feature.index];
                QVERIFY(int(line.symbol) == wanted[i].tool && isAt(line.start, wanted[i].from) &&
                        isAt(line.end, wanted[i].to));
            }
        }
    }
}

void tst_ExcellonReader::aLayerOfItHasRoundSymbols()
{
    const cam::LayerImage layer = cam::layerOf(read(metric + "T2\nX1000Y1000\nM30\n"));
    QCOMPARE(int(layer.symbols.size()), 2);
    QCOMPARE(layer.symbols[1].name, std::string("T2"));
    const cam::Box box = cam::extent(cam::shapeOf(*layer.symbols[1].standard));
    QCOMPARE(box.high.x - box.low.x, 2e6);
    QCOMPARE(int(layer.top().features.pads.size()), 1);
}

void tst_ExcellonReader::aFileThatIsNotThereIsNamed()
{
    try {
        cam::readExcellonFile("no such file.drl");
        QFAIL("read without a word");
    } catch (const cam::Error &error) {
        QVERIFY2(QString(error.what()).contains("no such file.drl"), error.what());
    }
}

QTEST_APPLESS_MAIN(tst_ExcellonReader)
#include "tst_excellonreader.moc"
