// What ends up in a GDSII file: structures, arrays, boundaries, transforms, negative paint, steps.
#include "cam/base/error.h"
#include "cam/gdsii/arrays.h"
#include "cam/gdsii/gdswriter.h"
#include "cam/gdsii/records.h"
#include "cam/odb/job.h"
#include "tests/cam/support/gdsfile.h"
#include "tests/cam/support/jobfolder.h"
#include "tests/cam/support/messages.h"

#include <QtTest>

#include <algorithm>
#include <cmath>

using namespace cam;

namespace {

constexpr double pi = 3.14159265358979323846;

// Writes the layer "top" of `step` and reads the file back.
GdsFile exported(const JobFolder &folder, ExportOptions options = {}, const std::string &step = "pcb")
{
    ReadingNotes notes;
    const LayerImage image = Job(folder.path()).readLayer(step, "top", notes);
    options.file = JobFolder::local(folder.filePath("top.gds"));
    writeGds(image, options);
    return GdsFile::open(folder.filePath("top.gds"));
}

// In square millimetres, of a file in nanometres.
double areaOf(const GdsFile &file)
{
    return GdsFile::area(file.flat()) * 1e-12;
}

// Left, bottom, right, top in micrometres.
QVector<double> extentOf(const GdsFile &file)
{
    const QRect box = GdsFile::extent(file.flat());
    return {box.left() * 1e-3, box.top() * 1e-3, box.right() * 1e-3, box.bottom() * 1e-3};
}

// The area of a circle whose corners lie on it, at the writer's tolerance, is a little smaller than the
// circle's.
bool isRoundArea(double drawn, double exact, double circumference)
{
    return drawn <= exact * (1 + 1e-6) && exact - drawn < circumference * 100e-6;
}

} // namespace

class tst_GdsWriter : public QObject
{
    Q_OBJECT

private slots:
    void headerIsTheJobs()
    {
        JobFolder folder;
        folder.features("");
        const GdsFile file = exported(folder);
        QCOMPARE(file.version, 600);
        QCOMPARE(file.nameOfLibrary, QString("board"));
        QCOMPARE(file.date, (QVector<int>{2024, 2, 29, 13, 14, 15, 2024, 2, 29, 13, 14, 15}));
        QCOMPARE(file.tops(), QStringList{"pcb"});
        QVERIFY(std::fabs(file.userUnit - 0.001) < 1e-18 && std::fabs(file.metres - 1e-9) < 1e-24);
    }

    void realNumbersAreTheFormats_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<quint64>("bits");
        QTest::newRow("0") << 0.0 << quint64(0);
        QTest::newRow("1") << 1.0 << quint64(0x4110000000000000);
        QTest::newRow("-2") << -2.0 << quint64(0xC120000000000000);
        QTest::newRow("0.001") << 0.001 << quint64(0x3E4189374BC6A7F0);
        QTest::newRow("1e-9") << 1e-9 << quint64(0x3944B82FA09B5A54);
        QTest::newRow("1/16") << 0.0625 << quint64(0x4010000000000000);
    }
    void realNumbersAreTheFormats()
    {
        QFETCH(double, value);
        QFETCH(quint64, bits);
        // A double has 53 bits, the format 56: the last three are 0.
        QVERIFY((gdsii::encodeReal(value) ^ bits) < 8);
    }

    void databaseUnitScalesTheCoordinates()
    {
        JobFolder folder;
        folder.features("$0 rect1000x500\nP 1 2 0 P 0 0\n");
        ExportOptions options;
        options.dbu = 0.25;
        const GdsFile file = exported(folder, options);
        QCOMPARE(file.userUnit, 0.25);
        QCOMPARE(GdsFile::extent(file.flat()), QRect(QPoint(2000, 7000), QPoint(6000, 9000)));
        options.dbu = -1.0; // means the default
        QVERIFY(std::fabs(exported(folder, options).userUnit - 0.001) < 1e-18);
    }

    void coordinateBeyondTheFormatIsAnError()
    {
        JobFolder folder;
        folder.features("$0 rect1000x500\nP 3000 2 0 P 0 0\n");
        const QString message = messageOf([&] { exported(folder); });
        QVERIFY2(message.contains("does not fit into a GDSII file"), qPrintable(message));
        QVERIFY(!QFile::exists(folder.filePath("top.gds")) &&
                !QFile::exists(folder.filePath("top.gds.part")));
    }

    void layerNumberIsTheMatrixRow()
    {
        JobFolder folder;
        folder.features("$0 s100\nL 0 0 1 0 0 P 0\n");
        const GdsFile file = exported(folder);
        QCOMPARE(file.structures["pcb"].boundaries[0].layer, 2);
        QCOMPARE(file.structures["pcb"].boundaries[0].datatype, 0);
    }

    void squareLineIsAHexagon()
    {
        JobFolder folder;
        folder.features("$0 s100\nL 0 0 1 2 0 P 0\n");
        const GdsFile file = exported(folder);
        QCOMPARE(file.structures["pcb"].boundaries.size(), 1);
        QCOMPARE(file.structures["pcb"].boundaries[0].corners, QPolygon(QVector<QPoint>{{-50000, -50000},
                                                                                        {50000, -50000},
                                                                                        {1050000, 1950000},
                                                                                        {1050000, 2050000},
                                                                                        {950000, 2050000},
                                                                                        {-50000, 50000}}));
    }

    void roundLineIsAStadium()
    {
        JobFolder folder;
        folder.features("$0 r200\nL 1 1 4 5 0 P 0\n");
        const GdsFile file = exported(folder);
        QCOMPARE(file.structures["pcb"].boundaries.size(), 1);
        QVERIFY(isRoundArea(areaOf(file), 5 * 0.2 + pi * 0.01, pi * 0.2));
    }

    void arcIsDrawnAlongItsCurve()
    {
        JobFolder folder;
        folder.features("$0 r200\nA 5 0 0 5 0 0 0 P 0 N\n"); // a quarter turn
        const GdsFile file = exported(folder);
        const QRect box = GdsFile::extent(file.flat());
        QCOMPARE(box.right() + 0, 5100000);
        QCOMPARE(box.top(), -100000);
        folder.features("$0 r200\nA 5 0 5 0 0 0 0 P 0 Y\n"); // a full circle
        // What the outer corners lose the inner ones gain.
        QVERIFY(std::fabs(areaOf(exported(folder)) - pi * (5.1 * 5.1 - 4.9 * 4.9)) < 2 * pi * 5 * 100e-6);
    }

    void penWiderThanItsArcCoversTheMiddle()
    {
        JobFolder folder;
        folder.features("$0 r2000\nA 0.5 0 0.5 0 0 0 0 P 0 Y\n");
        const double drawn = areaOf(exported(folder));
        QVERIFY2(isRoundArea(drawn, pi * 1.5 * 1.5, 2 * pi * 1.5),
                 qPrintable(QString::number(drawn, 'g', 12)));
    }

    void padIsAReferenceToItsSymbolsStructure()
    {
        JobFolder folder;
        folder.features("$0 rect300x100\nP 1 2 0 P 0 0\nP 3 2 0 P 0 1\n");
        const GdsFile file = exported(folder);
        const GdsStructure &top = file.structures["pcb"];
        QVERIFY(top.boundaries.isEmpty());
        QCOMPARE(top.references.size(), 2);
        QCOMPARE(top.references[0].structure, QString("rect300x100"));
        QCOMPARE(top.references[0].at, QPoint(1000000, 2000000));
        QVERIFY(top.references[1].structure != top.references[0].structure); // turned
        QCOMPARE(GdsFile::extent(file.flat("rect300x100")),
                 QRect(QPoint(-150000, -50000), QPoint(150000, 50000)));
        QCOMPARE(GdsFile::extent(file.flat(top.references[1].structure)),
                 QRect(QPoint(-50000, -150000), QPoint(50000, 150000)));
    }

    void structuresStandBeforeTheirReferences()
    {
        JobFolder folder;
        folder.features("$0 rect300x100\nP 1 2 0 P 0 0\n");
        const GdsFile file = exported(folder);
        QCOMPARE(file.order, (QStringList{"rect300x100", "pcb"}));
    }

    void roundPadNeedsOneStructureForAllAngles()
    {
        JobFolder folder;
        folder.features("$0 r300\nP 1 2 0 P 0 0\nP 3 5 0 P 0 8 33\nP 4 4 0 P 0 6\n");
        QCOMPARE(exported(folder).structures.size(), 2);
    }

    void orientationTurnsClockwiseThenMirrors()
    {
        JobFolder folder;
        // Not symmetric at all: a triangle's tip is up, so an arrow of two rectangles says more.
        folder.write("symbols/flag/features", "UNITS=MM\nS P 0\nOB 0 0 I\nOS 1 2\nOS 0 2\nOE\nSE\n");
        const auto extentOfPad = [&folder](const QByteArray &orientation) {
            folder.features("$0 flag\nP 0 0 0 P 0 " + orientation + "\n");
            return extentOf(exported(folder));
        };
        QCOMPARE(extentOfPad("0"), (QVector<double>{0, 0, 1000, 2000}));
        QCOMPARE(extentOfPad("1"), (QVector<double>{0, -1000, 2000, 0}));
        QCOMPARE(extentOfPad("5"), (QVector<double>{-2000, -1000, 0, 0}));
        QCOMPARE(extentOfPad("8 90"), (QVector<double>{0, -1000, 2000, 0}));
        QCOMPARE(extentOfPad("9 90"), (QVector<double>{-2000, -1000, 0, 0}));
    }

    void resizedPadGrows()
    {
        JobFolder folder;
        folder.features("$0 rect300x100\nP 0 0 -1 0 20 P 0 0\n");
        QCOMPARE(extentOf(exported(folder)), (QVector<double>{-160, -60, 160, 60}));
    }

    void repeatedPadsBecomeAnArray()
    {
        JobFolder folder;
        QByteArray text = "$0 s100\n";
        for (int row = 0; row < 4; ++row) {
            for (int column = 0; column < 5; ++column)
                text += "P " + QByteArray::number(1.27 * column) + " " + QByteArray::number(2.54 * row) +
                        " 0 P 0 0\n";
        }
        folder.features(text + "P 30 30 0 P 0 0\n");
        const GdsFile file = exported(folder);
        QCOMPARE(file.structures["pcb"].references.size(), 2);
        const GdsReference &array = file.structures["pcb"].references[0];
        QCOMPARE(array.columns * array.rows, 20);
        QCOMPARE(array.columnStep, QPoint(1270000, 0));
        QCOMPARE(array.rowStep, QPoint(0, 2540000));
        QCOMPARE(file.flat().size(), 21);
    }

    void placesAreGroupedWithoutLossOrGain()
    {
        std::vector<GridPoint> places;
        for (std::int64_t i = 0; i < 3000; ++i)
            places.push_back({i * i * 7919 % 97 * 10, i * 104729 % 89 * 10});
        std::vector<GridPoint> spread;
        for (const gdsii::Placement &group : gdsii::groupPlaces(places)) {
            for (int row = 0; row < group.rows; ++row) {
                for (int column = 0; column < group.columns; ++column)
                    spread.push_back(
                        {group.at.x + column * group.columnStep, group.at.y + row * group.rowStep});
            }
        }
        std::sort(places.begin(), places.end());
        places.erase(std::unique(places.begin(), places.end()), places.end());
        std::sort(spread.begin(), spread.end());
        QVERIFY(places == spread);
    }

    void surfaceWithHolesHasItsArea()
    {
        JobFolder folder;
        folder.features(
            "S P 0\nOB 0 0 I\nOS 10 0\nOS 10 10\nOS 0 10\nOE\nOB 2 2 H\nOS 4 2\nOS 4 4\nOS 2 4\nOE\n"
            "OB 6 6 H\nOS 8 6\nOS 8 8\nOS 6 8\nOE\nOB 2.5 2.5 I\nOS 3 2.5\nOS 3 3\nOS 2.5 3\nOE\nSE\n");
        QVERIFY(std::fabs(areaOf(exported(folder)) / (100.0 - 4.0 - 4.0 + 0.25) - 1.0) < 1e-6);
    }

    void overlappingHolesAreCutOnce()
    {
        JobFolder folder;
        folder.features(
            "S P 0\nOB 0 0 I\nOS 10 0\nOS 10 10\nOS 0 10\nOE\nOB 2 2 H\nOS 5 2\nOS 5 5\nOS 2 5\nOE\n"
            "OB 4 4 H\nOS 8 4\nOS 8 8\nOS 4 8\nOE\nSE\n");
        QVERIFY(std::fabs(areaOf(exported(folder)) / (100.0 - 9.0 - 16.0 + 1.0) - 1.0) < 1e-6);
    }

    void hugeSurfaceIsCutIntoLegalBoundaries()
    {
        JobFolder folder;
        QByteArray text = "S P 0\nOB 0 0 I\n";
        constexpr int teeth = 15'000;
        for (int i = 0; i < teeth; ++i)
            text += "OS " + QByteArray::number(i * 0.01 + 0.005) + " " + QByteArray::number(5) + "\nOS " +
                    QByteArray::number(i * 0.01 + 0.01) + " " + QByteArray::number(1) + "\n";
        text += "OS " + QByteArray::number(teeth * 0.01) + " 0\nOE\nSE\n";
        folder.features(text);
        const GdsFile file = exported(folder);
        for (const QPolygon &polygon : file.flat())
            QVERIFY(polygon.size() <= 4090);
        // The first tooth starts at 0, all others at 1 mm.
        const double exact = teeth * 0.01 * 3.0 - 0.5 * 0.005 * 1.0;
        QVERIFY2(std::fabs(areaOf(file) / exact - 1.0) < 1e-6,
                 qPrintable(QString::number(areaOf(file), 'g', 12)));
    }

    void hugeArcIsCutIntoLegalBoundaries()
    {
        JobFolder folder;
        folder.features("$0 r1000\nA 1000 0 -1000 0 0 0 0 P 0 N\n");
        const GdsFile file = exported(folder);
        for (const QPolygon &polygon : file.flat())
            QVERIFY(polygon.size() <= 4090);
        // Half a ring of a metre, and a disc at both ends.
        const double exact = pi * 1000.0 + 2.0 * pi * 0.25;
        QVERIFY2(std::fabs(areaOf(file) / exact - 1.0) < 2e-4,
                 qPrintable(QString::number(areaOf(file), 'g', 12)));
    }

    void negativeFeaturesTakeFromWhatIsBefore()
    {
        JobFolder folder;
        folder.features(
            "$0 rect2000x2000\n$1 rect1000x1000\nP 0 0 0 P 0 0\nP 0 0 1 N 0 0\nP 0 0 -1 1 -500 P 0 0\n"
            "P 50 50 0 P 0 0\n");
        const GdsFile file = exported(folder);
        QVERIFY(std::fabs(areaOf(file) - (4.0 - 1.0 + 0.25 + 4.0)) < 1e-9);
        QCOMPARE(file.structures["pcb"].references.size(),
                 1); // what meets nothing negative stays a reference
        QCOMPARE(file.tops(), QStringList{"pcb"});
    }

    void negativeRoundClearancesHaveTheirArea()
    {
        JobFolder folder;
        QByteArray text = "$0 r600\n$1 rect40000x40000\nP 20 20 1 P 0 0\n";
        for (int i = 0; i < 400; ++i)
            text += "P " + QByteArray::number(1 + i % 20 * 1.9) + " " + QByteArray::number(1 + i / 20 * 1.9) +
                    " 0 N 0 0\n";
        folder.features(text);
        const double exact = 1600.0 - 400 * pi * 0.09;
        const double drawn = areaOf(exported(folder));
        QVERIFY(drawn >= exact && drawn - exact < 400 * pi * 0.6 * 100e-6);
    }

    void ownSymbolWithNegativePartsIsResolvedInItself()
    {
        JobFolder folder;
        folder.write("symbols/frame/features",
                     "UNITS=MM\n$0 rect2000x2000\n$1 rect1000x1000\nP 0 0 0 P 0 0\nP 0 0 1 N 0 0\n");
        folder.features("$0 frame\n$1 r100\nP 0 0 1 P 0 0\nP 0 0 0 P 0 0\n");
        const GdsFile file = exported(folder);
        QVERIFY(
            isRoundArea(areaOf(file), 3.0 + pi * 0.0025, pi * 0.1)); // the dot below the frame's window stays
        QCOMPARE(file.structures["pcb"].references.size(), 2);
    }

    void transformIsScaleThenMirrorThenRotation()
    {
        JobFolder folder;
        folder.features("$0 rect2000x1000\nP 10 20 0 P 0 0\n");
        ExportOptions options;
        options.xScale = 2.0;
        options.yScale = 3.0;
        options.mirror = true;
        options.angle = 90.0;
        // 10,20 -> 20,60 -> -20,60 -> -60,-20; a box of 4 by 3 turned
        QCOMPARE(extentOf(exported(folder, options)), (QVector<double>{-61500, -22000, -58500, -18000}));
    }

    void transformKeepsTheDatum()
    {
        JobFolder folder;
        folder.write("steps/pcb/stephdr", "UNITS=MM\nX_DATUM=10\nY_DATUM=20\n");
        folder.features("$0 rect2000x1000\nP 10 20 0 P 0 0\n");
        ExportOptions options;
        options.angle = 90.0;
        QCOMPARE(extentOf(exported(folder, options)), (QVector<double>{9500, 19000, 10500, 21000}));
    }

    void unequalScalesMakeEllipses()
    {
        JobFolder folder;
        folder.features("$0 r1000\nP 0 0 0 P 0 0\nL 10 0 10 0 0 P 0\n");
        ExportOptions options;
        options.xScale = 2.0;
        const GdsFile file = exported(folder, options);
        QVERIFY(isRoundArea(areaOf(file), 2 * pi * 0.5, 2 * 6.0));
        const QVector<double> box = extentOf(file);
        QCOMPARE(box[0], -1000.0);
        QCOMPARE(box[2], 21000.0);
    }

    void resizeMovesEveryEdge_data()
    {
        QTest::addColumn<QByteArray>("features");
        QTest::addColumn<double>("grown");  // area after 200 micrometres more
        QTest::addColumn<double>("shrunk"); // and less
        QTest::newRow("pad") << QByteArray("$0 rect2000x1000\nP 0 0 0 P 0 0\n") << 2.2 * 1.2 << 1.8 * 0.8;
        QTest::newRow("resized pad") << QByteArray("$0 rect1800x800\nP 0 0 -1 0 200 P 0 0\n") << 2.2 * 1.2
                                     << 1.8 * 0.8;
        QTest::newRow("line") << QByteArray("$0 s500\nL 0 0 2 0 0 P 0\n") << 2.7 * 0.7 << 2.3 * 0.3;
        const QByteArray frame =
            "S P 0\nOB 0 0 I\nOS 4 0\nOS 4 4\nOS 0 4\nOE\nOB 1 1 H\nOS 3 1\nOS 3 3\nOS 1 3\nOE\nSE\n";
        QTest::newRow("surface and its hole") << frame << 4.2 * 4.2 - 1.8 * 1.8 << 3.8 * 3.8 - 2.2 * 2.2;
        QTest::newRow("negative feature") << QByteArray("$0 s4000\n$1 s2000\nP 0 0 0 P 0 0\nP 0 0 1 N 0 0\n")
                                          << 4.2 * 4.2 - 1.8 * 1.8 << 3.8 * 3.8 - 2.2 * 2.2;
    }
    void resizeMovesEveryEdge()
    {
        QFETCH(QByteArray, features);
        QFETCH(double, grown);
        QFETCH(double, shrunk);
        JobFolder folder;
        folder.features(features);
        ExportOptions options;
        options.resize = 200'000.0;
        QVERIFY(std::fabs(areaOf(exported(folder, options)) - grown) < 1e-6);
        options.resize = -200'000.0;
        QVERIFY(std::fabs(areaOf(exported(folder, options)) - shrunk) < 1e-6);
    }

    void nothingIsLeftOfWhatIsThinnerThanTheShrinking()
    {
        JobFolder folder;
        folder.features("$0 r100\n$1 rect100x1000\nL 0 0 1 0 0 P 0\nP 5 5 1 P 0 0\nP 6 6 0 P 0 0\n");
        ExportOptions options;
        options.resize = -100'000.0;
        const GdsFile file = exported(folder, options);
        QVERIFY(file.flat().isEmpty());
        QCOMPARE(file.structures.size(), 1);
    }

    void negativeIsTheProfileLessTheLayer()
    {
        JobFolder folder;
        folder.features("$0 rect2000x1000\nP 10 5 0 P 0 0\nP 11 5 0 P 0 0\nP 30 5 0 P 0 0\n");
        ExportOptions options;
        options.negative = true;
        QVERIFY(std::fabs(areaOf(exported(folder, options)) - (200.0 - 3.0)) < 1e-9);
    }

    void negativeWithoutAProfileUsesTheExtent()
    {
        JobFolder folder;
        QFile::remove(folder.filePath("board/steps/pcb/profile"));
        folder.features("$0 rect1000x1000\nP 1 1 0 P 0 0\nP 5 3 0 P 0 0\n");
        ExportOptions options;
        options.negative = true;
        QVERIFY(std::fabs(areaOf(exported(folder, options)) - (5.0 * 3.0 - 2.0)) < 1e-9);
    }

    void negativeOfAPanelTakesEveryCopy()
    {
        JobFolder folder;
        folder.features("$0 rect1000x1000\nP 1 1 0 P 0 0\n");
        folder.features("", "top", "panel");
        folder.write("steps/panel/stephdr",
                     "UNITS=MM\nSTEP-REPEAT {\nNAME=PCB\nX=0\nY=0\nDX=3\nDY=3\nNX=2\nNY=2\n}\n");
        folder.write("steps/panel/profile",
                     "UNITS=MM\nS P 0\nOB 0 0 I\nOS 10 0\nOS 10 10\nOS 0 10\nOE\nSE\n");
        ExportOptions options;
        options.negative = true;
        QVERIFY(std::fabs(areaOf(exported(folder, options, "panel")) - 96.0) < 1e-9);
    }

    void profileIsAddedAsDatatype1()
    {
        JobFolder folder;
        folder.features("$0 rect2000x1000\nP 10 5 0 P 0 0\n");
        ExportOptions options;
        options.profileOnTop = true;
        options.angle = 90.0;
        const GdsFile file = exported(folder, options);
        QCOMPARE(file.flat("pcb", 1).size(), 1);
        QCOMPARE(GdsFile::extent(file.flat("pcb", 1)), QRect(QPoint(-10000000, 0), QPoint(0, 20000000)));
        options.negative = true;
        QCOMPARE(exported(folder, options).flat("pcb", 1).size(), 1);
    }

    void nestedStepsAreStructuresAndArrays()
    {
        JobFolder folder;
        folder.features("$0 rect1000x500\nP 0 0 0 P 0 0\n");
        folder.features("", "top", "array");
        folder.features("$0 s100\nP 0 0 0 P 0 0\n", "top", "panel");
        folder.write("steps/array/stephdr",
                     "UNITS=MM\nSTEP-REPEAT {\nNAME=PCB\nX=0\nY=0\nDX=2\nDY=1\nNX=3\nNY=2\n}\n");
        folder.write("steps/panel/stephdr", "UNITS=MM\nSTEP-REPEAT {\nNAME=ARRAY\nX=10\nY=10\nANGLE=90\n}\n"
                                            "STEP-REPEAT {\nNAME=ARRAY\nX=20\nY=10\nMIRROR=YES\n}\n");
        const GdsFile file = exported(folder, {}, "panel");
        QCOMPARE(file.tops(), QStringList{"panel"});
        QCOMPARE(file.flat().size(), 13);
        // Turned clockwise the array of 2 mm along x runs down; mirrored it runs to the left.
        QCOMPARE(extentOf(file), (QVector<double>{-50, -50, 20500, 11250}));
        QVERIFY(std::fabs(areaOf(file) - (12 * 0.5 + 0.01)) < 1e-9);
    }

    void stepPitchThatIsNoWholeUnitIsNotAnArray()
    {
        JobFolder folder;
        folder.features("$0 rect1000x500\nP 0 0 0 P 0 0\n");
        folder.features("", "top", "panel");
        folder.write("steps/panel/stephdr",
                     "UNITS=MM\nSTEP-REPEAT {\nNAME=PCB\nX=0\nY=0\nDX=2.0000004\nDY=1\nNX=1000\nNY=1\n}\n");
        const GdsFile file = exported(folder, {}, "panel");
        QCOMPARE(file.structures["panel"].references.size(), 1000);
        QCOMPARE(file.structures["panel"].references[999].at.x(), 1998000400);
    }

    void linesOfADiameterOfZeroDrawNothing()
    {
        JobFolder folder;
        folder.features("$0 r0\nL 0 0 1 0 0 P 0\nP 1 1 0 P 0 0\n");
        const GdsFile file = exported(folder);
        QVERIFY(file.flat().isEmpty());
        QCOMPARE(file.structures.size(), 1);
    }

    void progressMovesInSmallSteps_data()
    {
        QTest::addColumn<QByteArray>("features");
        QTest::addColumn<bool>("negative");
        QByteArray lines = "$0 r200\n";
        for (int i = 0; i < 20'000; ++i)
            lines += "L 1 " + QByteArray::number(i % 97) + " 4 5 0 P 0\n";
        QByteArray plane = "$0 r100\nS P 0\nOB 0 0 I\nOS 60 0\nOS 60 60\nOS 0 60\nOE\nSE\n";
        for (int i = 0; i < 10'000; ++i)
            plane += "P " + QByteArray::number(0.5 + i % 100 * 0.5) + " " +
                     QByteArray::number(0.5 + i / 100 * 0.5) + " 0 N 0 0\n";
        QByteArray surface = "S P 0\nOB 0 0 I\n";
        for (int i = 0; i < 150'000; ++i)
            surface += "OS " + QByteArray::number(i * 0.002) + " " + QByteArray::number(5 - i % 2) + "\n";
        surface += "OS 400 0\nOE\nSE\n";
        QTest::newRow("lines") << lines << false;
        QTest::newRow("plane") << plane << false;
        QTest::newRow("one surface") << surface << false;
        QTest::newRow("negative") << plane << true;
    }
    void progressMovesInSmallSteps()
    {
        QFETCH(QByteArray, features);
        QFETCH(bool, negative);
        JobFolder folder;
        folder.features(features);
        ExportOptions options;
        options.negative = negative;
        double last = 0.0, largest = 0.0;
        bool isRising = true;
        options.report = [&](double share) {
            isRising = isRising && share >= last - 1e-12 && share <= 1.0 + 1e-12;
            largest = std::max(largest, share - last);
            last = share;
        };
        exported(folder, options);
        QVERIFY(isRising);
        QVERIFY2(largest <= 0.035, qPrintable(QString::number(largest)));
        QCOMPARE(last, 1.0);
    }

    void sameInputGivesTheSameBytes()
    {
        JobFolder folder;
        folder.features("$0 r600\n$1 rect40000x40000\nP 20 20 1 P 0 0\nP 7 9 0 N 0 0\nL 1 1 30 17 0 N 0\nA 5 "
                        "0 0 5 0 0 0 P 0 N\n");
        const auto bytes = [&folder] {
            exported(folder);
            QFile file(folder.filePath("top.gds"));
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        const QByteArray first = bytes();
        QVERIFY(!first.isEmpty());
        QCOMPARE(bytes(), first);
    }

    void namesBecomeLegal_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("legal");
        QTest::newRow("plain") << "rect20x30"
                               << "rect20x30";
        QTest::newRow("point") << "r6.5"
                               << "r6_5";
        QTest::newRow("plus") << "drill_symbol1+1"
                              << "drill_symbol1_1";
        QTest::newRow("long") << QString(40, 'a') << QString(32, 'a');
        QTest::newRow("empty") << ""
                               << "_";
        QTest::newRow("umlaut") << QString::fromUtf8("\u00fc") << "__";
    }
    void namesBecomeLegal()
    {
        QFETCH(QString, name);
        QFETCH(QString, legal);
        QCOMPARE(QString::fromStdString(gdsii::legalName(name.toStdString())), legal);
    }

    void namesThatBecomeEqualStayApart()
    {
        JobFolder folder;
        folder.features("$0 r6.5\n$1 r6.5 I\n$2 pcb\nP 1 1 0 P 0 0\nP 2 2 1 P 0 0\nP 3 3 2 P 0 0\n");
        folder.write("symbols/pcb/features", "UNITS=MM\n$0 s100\nP 0 0 0 P 0 0\n");
        const GdsFile file = exported(folder);
        QCOMPARE(file.order, (QStringList{"r6_5", "r6_5$1", "pcb$1", "pcb"}));
    }
};

QTEST_APPLESS_MAIN(tst_GdsWriter)
#include "tst_gdswriter.moc"
