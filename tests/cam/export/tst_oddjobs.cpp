// Jobs as other programs write them, exported in both formats and read back: what is unusual and clear comes
// out right, what is damaged is refused by file and line.
#include "cam/base/error.h"
#include "cam/export/exportrequest.h"
#include "tests/cam/random/comparison.h"
#include "tests/cam/support/jobfolder.h"
#include "tests/cam/support/messages.h"

#include <QtTest>

using namespace testing;

namespace {

using Points = QVector<QPointF>; // millimetres

class Export
{
public:
    Export(const JobFolder &folder, cam::FileFormat format, const QString &layer = "top")
    {
        const QString file = folder.filePath("out");
        cam::ExportRequest request;
        request.job = folder.path();
        request.step = "PCB";
        request.layer = layer.toStdString();
        request.format = format;
        request.options.dbu = dbu;
        request.options.file = JobFolder::local(file);
        request.note = [this](const cam::ExportNote &note) { m_notes += QString::fromStdString(note.text); };
        m_message = messageOf([&] { cam::exportLayer(request); });
        if (m_message.isEmpty())
            m_picture = format == cam::FileFormat::Gerber ? WrittenPicture::gerber(file)
                                                          : WrittenPicture::gds(file, dbu);
    }

    QString message() const { return m_message; }
    QStringList notes() const { return m_notes; }
    // What is not as it should be.
    QStringList wrong(const Points &dark, const Points &clear) const
    {
        QStringList found = m_picture.faults();
        for (const QPointF at : dark) {
            if (!isDark(at))
                found += QString("%1, %2 is clear").arg(at.x()).arg(at.y());
        }
        for (const QPointF at : clear) {
            if (isDark(at))
                found += QString("%1, %2 is dark").arg(at.x()).arg(at.y());
        }
        return found;
    }

private:
    static constexpr double dbu = 0.001; // micrometres
    bool isDark(QPointF at) const { return m_picture.isDark({at.x() * 1e6, at.y() * 1e6}); }

    QString m_message;
    QStringList m_notes;
    WrittenPicture m_picture;
};

constexpr cam::FileFormat bothFormats[] = {cam::FileFormat::Gerber, cam::FileFormat::Gds};

// A font of one character: a stroke up its left side.
constexpr char font[] = "XSIZE 0.3\nYSIZE 0.3\nOFFSET 0\nCHAR A\nLINE 0 0 0 0.2 P R 0.012\nECHAR\n";

// The same, and two characters that UTF-8 begins with the same byte: a stroke a third farther right each.
constexpr char twoBytes[] = "XSIZE 0.3\nYSIZE 0.3\nOFFSET 0\nCHAR A\nLINE 0 0 0 0.2 P R 0.012\nECHAR\n"
                            "CHAR \xC3\x84\nLINE 0.1 0 0.1 0.2 P R 0.012\nECHAR\n"
                            "CHAR \xC3\x9C\nLINE 0.2 0 0.2 0.2 P R 0.012\nECHAR\n";

} // namespace

class tst_OddJobs : public QObject
{
    Q_OBJECT

private slots:
    void unusualFeaturesComeOutRight_data();
    void unusualFeaturesComeOutRight();
    void damagedFeaturesAreRefused_data();
    void damagedFeaturesAreRefused();
    void unitOfAFileThatStatesNone_data();
    void unitOfAFileThatStatesNone();
    void namesOfLayersMayBeUnusual_data();
    void namesOfLayersMayBeUnusual();
    void textsThatCannotBeDrawnInFullAreNoted();
    void barcodesAreNoted();
    void fontsBesideTheStandardOne_data();
    void fontsBesideTheStandardOne();
    void drillsMayStartWhereOthersEnd();
    void arcsWithCentresBeyondReachAreCorners();
    void boardsThatReadersCannotHoldAreRefused();
};

void tst_OddJobs::unusualFeaturesComeOutRight_data()
{
    QTest::addColumn<QByteArray>("features");
    QTest::addColumn<Points>("dark");
    QTest::addColumn<Points>("clear");
    const auto row = [](const char *name, const QByteArray &features, const Points &dark,
                        const Points &clear) { QTest::newRow(name) << features << dark << clear; };
    const QByteArray line = "L 0 0 10 0 0 P 0\n";
    const Points onLine{{0.1, 0.4}, {9.9, -0.4}, {10.4, 0}}, offLine{{5, 0.6}, {10.6, 0}, {-0.6, 0}};
    row("millimetres", "UNITS=MM\n$0 r1000\n" + line, onLine, offLine);
    row("inches", "UNITS=INCH\n$0 r39.37007874\nL 0 0 0.3937007874 0 0 P 0\n", onLine, offLine);
    row("the older unit line", "U MM\n$0 r1000\n" + line, onLine, offLine);
    row("small letters", "units=mm\n$0 R1000\nL 0 0 10 0 0 p 0\n", onLine, offLine);
    row("a blank at the unit", "UNITS = MM\n$0 r1000\n" + line, onLine, offLine);
    row("a unit behind the symbols", "$0 r1000\nUNITS=MM\n" + line, onLine, offLine);
    row("a symbol's own unit, before the file's", "$0 r39.37007874 I\nUNITS=MM\n" + line, onLine, offLine);
    row("ends of lines of other systems", "UNITS=MM\r\n#\r\n$0 r1000\r\nL 0 0 10 0 0 P 0\r\n", onLine,
        offLine);
    row("tabs", "UNITS=MM\n$0\tr1000\nL\t0\t0\t10\t0\t0\tP\t0\t;0=1\n", onLine, offLine);
    row("blanks in front", "  UNITS=MM\n $0 r1000\n\t L  0 0  10 0 0 P 0 \n", onLine, offLine);
    row("a byte order mark", "\xEF\xBB\xBFUNITS=MM\n$0 r1000\n" + line, onLine, offLine);
    row("no end of the last line", "UNITS=MM\n$0 r1000\nL 0 0 10 0 0 P 0", onLine, offLine);
    row("numbers with exponents and signs", "UNITS=MM\n$0 r1000\nL -0 +0.0e5 1.0E+001 -0.00 0 P 0\n", onLine,
        offLine);
    row("fractions without a digit in front", "UNITS=MM\n$0 r1000.0\nL -.0 .0 10. 0 0 P 0\n", onLine,
        offLine);
    row("attributes and identifiers",
        "UNITS=MM\nID=12\nF 1\n#\n@0 .net\n@1 .string\n&0 a b;c\n$0 r1000\nL 0 0 10 0 0 P 0;0=1,1=0;ID=204\n",
        onLine, offLine);
    row("a symbol's fractional size", "UNITS=MM\n$0 r999.9996\n" + line, onLine, offLine);
    row("a line without length and a square pen", "UNITS=MM\n$0 s1000\nL 3 3 3 3 0 P 0\n",
        {{2.55, 2.55}, {3.45, 3.45}}, {{2.45, 3}, {3.55, 3}});
    row("an arc without a radius", "UNITS=MM\n$0 r1000\nA 3 3 3 3 3 3 0 P 0 Y\n", {{3, 3}, {3.4, 3}},
        {{3.6, 3}});
    row("an arc of a nanometre", "UNITS=MM\n$0 r1000\nA 3 3 3.000001 3 3 3 0 P 0 N\n", {{3, 3}, {3.4, 3}},
        {{3.6, 3}});
    // Bulges by 12.5 um, once up and once down.
    row("an arc of five metres", "UNITS=MM\n$0 r100\nA 0 0 22.360612 0 11.180306 -4999.9875 0 P 0 Y\n",
        {{11.18, 0.058}, {11.18, -0.033}}, {{11.18, 0.066}, {11.18, -0.041}});
    row("an edge of five metres",
        "UNITS=MM\nS P 0\nOB 0 0 I\nOC 22.360612 0 11.180306 4999.9875 N\nOS 22.360612 5\nOS 0 5\nOS 0 "
        "0\nOE\nSE\n",
        {{11.18, -0.012}, {1, 4}}, {{11.18, -0.013}, {11.18, 5.001}});
    const QByteArray box = "OB 0 0 I\nOS 4 0\nOS 4 4\nOS 0 4\nOS 0 0\nOE\n";
    const QByteArray hole = "OB 1 1 H\nOS 1 2\nOS 2 2\nOS 2 1\nOS 1 1\nOE\n";
    const Points inBox{{0.5, 0.5}, {3, 3}}, notInBox{{1.5, 1.5}, {4.1, 2}};
    row("a surface whose hole comes first", "UNITS=MM\nS P 0\n" + hole + box + "SE\n", inBox, notInBox);
    row("a contour left open", "UNITS=MM\nS P 0\nOB 0 0 I\nOS 4 0\nOS 4 4\nOS 0 4\nOE\n" + hole + "SE\n",
        inBox, notInBox);
    row("corners twice",
        "UNITS=MM\nS P 0;;ID=3\nOB 0 0 I\nOS 0 0\nOS 4 0\nOS 4 0\nOS 4 4\nOS 0 4\nOS 0 4\nOS 0 0\nOS 0 "
        "0\nOE\n" +
            hole + "SE\n",
        inBox, notInBox);
    row("contours of one and two points",
        "UNITS=MM\nS P 0\nOB 7 7 I\nOE\nOB 7 7 I\nOS 8 8\nOE\nOB 7 7 I\nOS 8 8\nOS 7 7\nOE\n" + box + hole +
            "SE\n",
        inBox, notInBox + Points{{7, 7}, {7.5, 7.5}});
    row("an edge of no radius",
        "UNITS=MM\nS P 0\n" + box + "OB 1 1 H\nOC 1 1 1 1 Y\nOS 1 2\nOS 2 2\nOS 2 1\nOE\nSE\n", inBox,
        notInBox);
    row("full circles in both directions",
        "UNITS=MM\nS P 0\nOB 5 5 I\nOC 5 5 7 5 Y\nOE\nOB 6 5 H\nOC 6 5 7 5 N\nOE\nOB 15 5 I\nOC 15 5 13 5 "
        "N\nOE\nOB 14 5 H\nOC 14 5 13 5 Y\nOE\nSE\n",
        {{5.5, 5}, {7, 6.5}, {14.5, 5}, {13, 3.5}},
        {{7, 5}, {6.1, 5}, {4.9, 5}, {13, 5}, {13.9, 5}, {15.1, 5}});
    row("attributes of odd characters",
        "UNITS=MM\n@0 .nomenclature\n@1 \xff\xfe weird;=,name\n&0 a;b,c=d ; \"x\"\n&1\n$0 r1000\nL 0 0 10 0 "
        "0 P "
        "0 ; 0 = 1 ;;\n",
        onLine, offLine);
    row("a surface without contours", "UNITS=MM\n$0 r1000\nS P 0\nSE\n" + line, onLine, offLine);
    row("a line back and forth in an outline",
        "UNITS=MM\nS P 0\nOB 0 0 I\nOS 4 0\nOS 6 0\nOS 4 0\nOS 4 4\nOS 0 4\nOS 0 0\nOE\n" + hole + "SE\n",
        inBox, notInBox + Points{{5, 0.01}, {5, -0.01}});
    row("a text", "UNITS=INCH\nT 0.1 0.1 standard P 0 0.3 0.3 1 'A' 1;0=2;ID=7\n",
        {{2.54, 2.54}, {2.54, 7.6}}, {{2.8, 3}, {2.54, 7.9}});
    row("a text of semicolons and quotes", "UNITS=INCH\nT 0.1 0.1 standard P 0 0.3 0.3 1 ' 'A;' 1\n",
        {{17.78, 2.54}}, {{2.54, 2.54}});
    row("a barcode", "UNITS=MM\nB 1 1 UPC39 standard P 0 E 0.2 3 Y Y N N T 'A'\n", {{1.1, 1.1}, {10, 3.9}},
        {{0.9, 2}, {2, 4.1}, {10.7, 2}});
    row("a barcode, turned", "UNITS=MM\nB 1 1 UPC39 standard P 1 E 0.2 3 Y Y N Y B 'A'\n",
        {{1.1, 0.9}, {3.9, -8.5}}, {{2, 1.1}, {0.9, 0}, {2, -8.7}});
    row("a barcode, mirrored", "UNITS=MM\nB 11 1 UPC39 standard P 4 E 0.2 3 Y Y N N T 'A'\n",
        {{10.9, 1.1}, {2, 3.9}}, {{11.1, 2}, {1.3, 2}});
    row("a clear barcode",
        "UNITS=MM\n$0 r1000\nL 0 2 20 2 0 P 0\nB 1 1 UPC39 standard N 0 E 0.2 3 Y Y N N T 'A'\n",
        {{0.9, 2}, {10.7, 2}}, {{1.1, 2}, {10.5, 2}});
    row("a barcode below and left of its place",
        "UNITS=MM\nB 11 4 UPC39 standard P 0 E -0.2 -3 Y Y N N T 'A'\n", {{10.9, 3.9}, {2, 1.1}},
        {{11.1, 2}, {1.3, 2}, {5, 4.1}});
    row("a symbol listed twice alike", "UNITS=MM\n$0 r1000\n$0 R1000\n" + line, onLine, offLine);
}

void tst_OddJobs::unusualFeaturesComeOutRight()
{
    QFETCH(QByteArray, features);
    QFETCH(Points, dark);
    QFETCH(Points, clear);
    JobFolder folder;
    folder.write("steps/pcb/layers/top/features", features);
    folder.write("fonts/standard", font);
    for (const cam::FileFormat format : bothFormats) {
        const Export one(folder, format);
        QCOMPARE(one.message(), QString());
        QCOMPARE(one.wrong(dark, clear).join('\n'), QString());
    }
}

void tst_OddJobs::damagedFeaturesAreRefused_data()
{
    QTest::addColumn<QByteArray>("features");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, const QByteArray &features, const QString &message) {
        QTest::newRow(name) << features << message;
    };
    row("another unit between the features", "UNITS=MM\n$0 r1\nL 0 0 1 1 0 P 0\nUNITS=INCH\n",
        "features:4: expected the unit before the first feature");
    row("a unit that nobody knows", "UNITS=MIL\n", "features:1: expected INCH or MM");
    row("holes only", "S P 0\nOB 0 0 H\nOS 1 0\nOS 0 1\nOE\nSE\n",
        "features:6: expected an island in a surface that has holes");
    row("a decimal comma", "UNITS=MM\n$0 r1\nL 0,5 0 1 1 0 P 0\n",
        "features:3: expected a number for the line's start");
    row("no number", "UNITS=MM\n$0 r1\nL nan 0 1 1 0 P 0\n",
        "features:3: expected a number for the line's start");
    row("an endless number", "UNITS=MM\n$0 r1\nL 1e999 0 1 1 0 P 0\n",
        "features:3: expected a number for the line's start");
    row("a line cut off", "UNITS=MM\n$0 r1\nL 0 0 1\n", "features:3: expected a number for the line's end");
    const QString twice = "features:3: expected one symbol for each number";
    row("a number of two symbols", "UNITS=MM\n$0 r1000\n$0 r2000\nL 0 0 1 1 0 P 0\n", twice);
    row("a number of one symbol in two units", "UNITS=MM\n$0 r1000 M\n$0 r1000 I\nL 0 0 1 1 0 P 0\n", twice);
    row("a barcode cut off", "UNITS=MM\nB 1 1 UPC39 standard P 0 E 0.2\n",
        "features:2: expected a number for the barcode's element width and height");
    row("a barcode whose text does not end", "UNITS=MM\nB 1 1 UPC39 standard P 0 E 0.2 3 Y Y N N T 'A\n",
        "features:2: expected a quote at the end of the text");
}

void tst_OddJobs::damagedFeaturesAreRefused()
{
    QFETCH(QByteArray, features);
    QFETCH(QString, message);
    JobFolder folder;
    folder.write("steps/pcb/layers/top/features", features);
    for (const cam::FileFormat format : bothFormats) {
        const Export one(folder, format);
        QVERIFY2(one.message().endsWith(message), qPrintable(one.message()));
        QVERIFY(!QFile::exists(folder.filePath("out")));
    }
}

void tst_OddJobs::unitOfAFileThatStatesNone_data()
{
    QTest::addColumn<QByteArray>("info");
    QTest::addColumn<double>("size"); // millimetres
    QTest::addColumn<QString>("note");
    const QString noted = "files that state no unit: in millimetres, as misc/info says";
    QTest::newRow("MM") << QByteArray("JOB_NAME=board\nUNITS=MM\n") << 1.0 << noted;
    QTest::newRow("mm") << QByteArray("\xEF\xBB\xBFunits=mm\n") << 1.0 << noted;
    QTest::newRow("INCH") << QByteArray("JOB_NAME=board\nUNITS=INCH\n") << 25.4 << QString();
    QTest::newRow("none") << QByteArray("JOB_NAME=board\n") << 25.4 << QString();
}

// Of the features, of those of its symbols, and of the places of its steps.
void tst_OddJobs::unitOfAFileThatStatesNone()
{
    QFETCH(QByteArray, info);
    QFETCH(double, size);
    QFETCH(QString, note);
    JobFolder folder;
    folder.write("misc/info", info);
    folder.write("symbols/own/features", "$0 s1\nS P 0\nOB 0 0 I\nOS 1 0\nOS 1 1\nOS 0 1\nOS 0 0\nOE\nSE\n");
    folder.write("steps/pcb/stephdr", "STEP-REPEAT {\nNAME=unit\nX=4\nY=0\n}\n");
    folder.write("steps/unit/layers/top/features", "$0 s1000\nP 0 0 0 P 0 0\n");
    folder.write("steps/pcb/layers/top/features", "$0 own\nP 2 0 0 P 0 0\n");
    for (const cam::FileFormat format : bothFormats) {
        const Export one(folder, format);
        QCOMPARE(one.message(), QString());
        QCOMPARE(one.notes().join('\n'), note);
        QCOMPARE(one.wrong({{2.1 * size, 0.1 * size}, {2.9 * size, 0.9 * size}, {4.4 * size, 0.4 * size}},
                           {{1.9 * size, 0.1 * size}, {3.1 * size, 0.1 * size}, {4.6 * size, 0.1 * size}})
                     .join('\n'),
                 QString());
    }
}

void tst_OddJobs::namesOfLayersMayBeUnusual_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"Top Layer", "signal_1+2", "drill(1-2)", "a,b", "l#1", "100%", "c&d", "{x}",
                             "x=y", "-", "Kupfer-Ö", "ΩМ", "a'b", "top.old"})
        QTest::newRow(name) << QString::fromUtf8(name);
}

void tst_OddJobs::namesOfLayersMayBeUnusual()
{
    QFETCH(QString, name);
    JobFolder folder;
    folder.write("matrix/matrix",
                 "STEP {\nCOL=1\nNAME=Pcb\n}\nLAYER {\nROW=1\nCONTEXT=BOARD\nTYPE=DRILL\nNAME=" +
                     name.toUtf8() + "\n}\n");
    folder.write("steps/pcb/layers/" + name.toLower() + "/features", "UNITS=MM\n$0 r1000\nP 1 1 0 P 0 0\n");
    for (const cam::FileFormat format : bothFormats) {
        const Export one(folder, format, name);
        QCOMPARE(one.message(), QString());
        QCOMPARE(one.wrong({{1, 1}}, {{1.6, 1}}).join('\n'), QString());
    }
}

void tst_OddJobs::textsThatCannotBeDrawnInFullAreNoted()
{
    JobFolder folder;
    folder.write("fonts/standard", font);
    folder.features("T 1 1 standard P 0 1 1 1 'AxA' 1\nT 1 3 standard P 0 1 1 1 '$$DATE' 1\n");
    const Export one(folder, cam::FileFormat::Gds);
    QCOMPARE(one.message(), QString());
    const QString notes = one.notes().join('\n');
    QVERIFY2(notes.contains("character that the font lacks") && notes.contains("$$DATE"), qPrintable(notes));
}

void tst_OddJobs::barcodesAreNoted()
{
    JobFolder folder;
    folder.features(
        "B 1 1 UPC39 standard P 0 E 0.2 3 Y Y N N T 'A'\nB 1 9 QR standard P 0 E 0.2 3 Y Y N Y B 'A'\n");
    QCOMPARE(Export(folder, cam::FileFormat::Gds).notes().join('\n'),
             QString("barcode qr as its box, without its text, 1 times, drawn in a simpler form\n"
                     "barcode upc39 as its box, 1 times, drawn in a simpler form"));
}

void tst_OddJobs::fontsBesideTheStandardOne_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("note");
    QTest::addColumn<Points>("second"); // where the second character is dark
    const auto row = [](const char *name, const char *file, const QByteArray &fontName,
                        const QByteArray &second, const char *message, const char *note, const Points &dark) {
        QTest::newRow(name) << QString(file)
                            << QByteArray("T 1 1 " + fontName + " P 0 7.62 7.62 1 'A" + second + "' 1\n")
                            << QString(message) << QString(note) << dark;
    };
    row("its file", "simplex", "Simplex", "", "", "", {});
    row("its file in capitals", "SIMPLEX", "Simplex", "", "", "", {});
    row("a file with an ending", "simplex.fnt", "Simplex", "", "", "", {});
    row("a name with an ending", "simplex.fnt", "simplex.FNT", "", "", "", {});
    row("no file", "other", "Simplex", "", "simplex: no such file", "", {});
    // Each has its own strokes, though their first bytes are the same.
    row("a character of two bytes", "simplex", "Simplex", "\xC3\x84", "", "", {{11.16, 3}});
    row("another one", "simplex", "Simplex", "\xC3\x9C", "", "", {{13.7, 3}});
    const char *lacks = "character that the font lacks as a blank, 1 times, drawn in a simpler form";
    row("one that the font lacks", "simplex", "Simplex", "\xC3\x96", "", lacks, {});
    row("a byte that is no UTF-8", "simplex", "Simplex", "\xC3", "", lacks, {});
}

void tst_OddJobs::fontsBesideTheStandardOne()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    QFETCH(QString, note);
    QFETCH(Points, second);
    JobFolder folder;
    folder.write("fonts/standard", font);
    folder.write("fonts/" + file, twoBytes);
    folder.features(text);
    for (const cam::FileFormat format : bothFormats) {
        const Export one(folder, format);
        QVERIFY2(message.isEmpty() ? one.message().isEmpty() : one.message().contains(message),
                 qPrintable(one.message()));
        if (!message.isEmpty())
            continue;
        QCOMPARE(one.notes().join('\n'), note);
        Points clear{{3.54, 3}, {6.08, 3}, {8.62, 3}, {11.16, 3}, {13.7, 3}};
        for (const QPointF at : second)
            clear.removeOne(at);
        QCOMPARE(one.wrong(Points{{1, 1}, {1, 6}} + second, clear).join('\n'), QString());
    }
}

// Programs list the ends of a drill layer in either order.
void tst_OddJobs::drillsMayStartWhereOthersEnd()
{
    QByteArray functions[2];
    for (int reversed = 0; reversed < 2; ++reversed) {
        JobFolder folder;
        QByteArray matrix = "STEP {\nCOL=1\nNAME=PCB\n}\n";
        int row = 0;
        for (const char *copper : {"top", "in1", "in2", "bottom"})
            matrix += "LAYER {\nROW=" + QByteArray::number(++row) +
                      "\nCONTEXT=BOARD\nTYPE=SIGNAL\nNAME=" + copper + "\n}\n";
        matrix += QByteArray("LAYER {\nROW=5\nCONTEXT=BOARD\nTYPE=DRILL\nNAME=drill\nSTART_NAME=") +
                  (reversed ? "IN2" : "TOP") + "\nEND_NAME=" + (reversed ? "TOP" : "IN2") + "\n}\n";
        folder.write("matrix/matrix", matrix);
        folder.features("$0 r300\nP 1 1 0 P 0 0\n", "drill");
        folder.write("steps/pcb/layers/drill/tools",
                     "UNITS=MM\nTOOLS {\nNUM=1\nTYPE=PLATED\nDRILL_SIZE=300\n}\n");
        QCOMPARE(Export(folder, cam::FileFormat::Gerber, "drill").message(), QString());
        QFile file(folder.filePath("out"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = file.readAll().split('\n');
        for (const QByteArray &written : lines) {
            if (written.contains("TF.FileFunction"))
                functions[reversed] = written;
        }
    }
    QVERIFY2(functions[0].contains("Plated,1,3,Blind,Drill"), functions[0].constData());
    QCOMPARE(functions[1], functions[0]);
}

void tst_OddJobs::arcsWithCentresBeyondReachAreCorners()
{
    JobFolder folder;
    folder.features("$0 r100\nA 0 0 22.360612 0 11.180306 -4999.9875 0 P 0 Y\n");
    QCOMPARE(Export(folder, cam::FileFormat::Gerber).message(), QString());
    QFile file(folder.filePath("out"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QVERIFY2(text.contains("D01*") && !text.contains("G02*") && !text.contains("G03*"), text.constData());
}

void tst_OddJobs::boardsThatReadersCannotHoldAreRefused()
{
    JobFolder folder;
    folder.features("$0 r1000\nL 0 0 2200 0 0 P 0\n");
    for (const cam::FileFormat format : bothFormats) {
        const Export one(folder, format);
        QVERIFY2(one.message().contains("does not fit into a"), qPrintable(one.message()));
        QVERIFY(!QFile::exists(folder.filePath("out")));
    }
}

QTEST_APPLESS_MAIN(tst_OddJobs)
#include "tst_oddjobs.moc"
