// Reading GDSII files: what is read, what paths cover, what is refused, and the writer's own files.
#include "cam/base/error.h"
#include "cam/export/exportrequest.h"
#include "cam/gdsii/gdsreader.h"
#include "tests/cam/support/gdsfile.h"
#include "tests/cam/support/gdsrecords.h"
#include "tests/cam/support/jobfolder.h"

#include <QtTest>

#include <cmath>
#include <sstream>

using namespace cam;
using namespace gdsrecords;

namespace {

const QVector<int> square = {0, 0, 10, 0, 10, 20, 0, 20, 0, 0};

GdsImage read(const QByteArray &bytes)
{
    std::istringstream stream(bytes.toStdString());
    return readGds(stream, "some.gds");
}

QString errorOf(const QByteArray &bytes)
{
    try {
        read(bytes);
    } catch (const Error &error) {
        return QString::fromUtf8(error.what());
    }
    return {};
}

QVector<GdsShape> shapes(const GdsImage &image)
{
    QVector<GdsShape> found;
    for (const std::size_t top : image.tops)
        placeShapes(image, top, Transform(), [&](const GdsShape &shape) { found.append(shape); });
    return found;
}

double areaOf(const std::vector<Point> &corners)
{
    double doubled = 0.0;
    for (std::size_t i = 0; i < corners.size(); ++i)
        doubled += cross(corners[i], corners[(i + 1) % corners.size()]);
    return doubled / 2.0;
}

Box boxOf(const std::vector<Point> &corners)
{
    Box box;
    for (const Point corner : corners)
        box.add(corner);
    return box;
}

QString textOf(const Box &box)
{
    return QString("%1 %2 %3 %4").arg(box.low.x).arg(box.low.y).arg(box.high.x).arg(box.high.y);
}

// "x y, x y" with a thousandth of a unit.
QString textOf(const std::vector<Point> &corners)
{
    QStringList points;
    for (const Point corner : corners)
        points << QString("%1 %2")
                      .arg(std::round(corner.x * 1000) / 1000 + 0.0)
                      .arg(std::round(corner.y * 1000) / 1000 + 0.0);
    return points.join(", ");
}

GdsPath onlyPath(const QByteArray &element)
{
    return read(library(structure("TOP", element))).structures.at(0).paths.at(0);
}

} // namespace

class tst_GdsReader : public QObject
{
    Q_OBJECT

private slots:
    void headUnitsAndStructures()
    {
        const GdsImage image = read(library(structure("A", {}) + structure("B", reference("A", {1, 2}))));
        QCOMPARE(image.version, 600);
        QCOMPARE(image.library, std::string("LIB"));
        QVERIFY(std::abs(image.unit - 1.0) < 1e-12);
        QCOMPARE(image.structures.size(), std::size_t(2));
        QCOMPARE(image.tops.size(), std::size_t(1));
        QCOMPARE(image.structures[image.tops[0]].name, std::string("B"));
    }

    void recordsOfTheHeadThatChangeNothingAreSkipped()
    {
        const QByteArray dates = record(0x01, 2, shorts({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
        const QByteArray bytes =
            record(0x00, 2, shorts({7})) + dates + record(0x39, 2, shorts({3})) + name(0x3a, "rules") +
            record(0x3b, 2, shorts({0, 0, 0})) + name(0x02, "LIB") + name(0x1f, "OTHER") +
            name(0x20, "font") + name(0x23, "attributes") + record(0x22, 2, shorts({3})) +
            record(0x36, 2, shorts({1})) + name(0x37, "1 5-7 10") + record(0x38, 0) + nanometreUnits() +
            structure("TOP", record(0x34, 1, shorts({0})) + boundary(0, square)) + record(0x04, 0);
        QCOMPARE(shapes(read(bytes)).size(), 1);
    }

    void elementsWithFlagsAndProperties()
    {
        const QByteArray element = record(0x08, 0) + record(0x26, 1, shorts({1})) +
                                   record(0x2f, 3, longs({7})) + record(0x0d, 2, shorts({-1})) +
                                   record(0x0e, 2, shorts({300})) + record(0x10, 3, longs(square)) +
                                   record(0x2b, 2, shorts({1})) + name(0x2c, "net=GND") +
                                   record(0x2b, 2, shorts({2})) + name(0x2c, "x") + record(0x11, 0);
        const GdsImage image = read(library(structure("TOP", element)));
        const cam::GdsBoundary &boundary = image.structures[0].boundaries.at(0);
        QVERIFY((boundary.on == GdsLayer{65535, 300})); // both count from 0 to 65535
        QCOMPARE(boundary.count, std::uint32_t(4));
    }

    void boxTextAndNode()
    {
        const QByteArray layer = record(0x0d, 2, shorts({4}));
        const QByteArray box = record(0x2d, 0) + layer + record(0x2e, 2, shorts({5})) +
                               record(0x10, 3, longs(square)) + record(0x11, 0);
        const QByteArray text = record(0x0c, 0) + layer + record(0x16, 2, shorts({6})) +
                                record(0x17, 1, shorts({5})) + record(0x21, 2, shorts({1})) +
                                record(0x0f, 3, longs({3})) + record(0x1a, 1, shorts({0})) +
                                record(0x1b, 5, QByteArray::fromHex("4120000000000000")) +
                                record(0x10, 3, longs({-7, 8})) + name(0x19, "R12") + record(0x11, 0);
        const QByteArray node = record(0x15, 0) + layer + record(0x2a, 2, shorts({0})) +
                                record(0x10, 3, longs({1, 1})) + record(0x11, 0);
        const GdsImage image = read(library(structure("TOP", box + text + node)));
        const cam::GdsStructure &top = image.structures[0];
        QVERIFY((top.boundaries.at(0).on == GdsLayer{4, 5}));
        QVERIFY((top.texts.at(0).on == GdsLayer{4, 6}));
        QCOMPARE(top.texts.at(0).text, std::string("R12"));
        QVERIFY((top.texts.at(0).at == GridPoint{-7, 8}));
        QCOMPARE(top.shapesInAll, 1.0);
    }

    void referenceMirrorsThenMagnifiesThenRotatesThenMoves()
    {
        const QByteArray turns = record(0x1a, 1, shorts({-32768})) +
                                 record(0x1b, 5, QByteArray::fromHex("4120000000000000"))    // 2.0
                                 + record(0x1c, 5, QByteArray::fromHex("425a000000000000")); // 90.0
        const GdsImage image = read(library(structure("PAD", boundary(0, square)) +
                                            structure("TOP", reference("PAD", {50, 0}, turns))));
        // (x, y) -> (x, -y) -> (2x, -2y) -> (2y, 2x) -> (2y + 50, 2x)
        QCOMPARE(textOf(boxOf(shapes(image).at(0).corners)), QString("50 0 90 20"));
    }

    void arrayMayBeSkewAndItsStepsFractions()
    {
        const GdsImage image = read(library(structure("TOP", array("PAD", {3, 2}, {0, 0, 10, 2, 5, 100})) +
                                            structure("PAD", boundary(0, square))));
        const QVector<GdsShape> found = shapes(image);
        QCOMPARE(found.size(), 6);
        QCOMPARE(image.structures[image.tops[0]].shapesInAll, 6.0);
        QCOMPARE(textOf(std::vector<Point>{found[1].corners[0]}), QString("3.333 0.667"));
        QCOMPARE(textOf(std::vector<Point>{found[3].corners[0]}), QString("2.5 50"));
    }

    void pathEnds_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("box");
        QTest::newRow("flat") << 0 << "0 -50 1000 50";
        QTest::newRow("round") << 1 << "-50 -50 1050 50";
        QTest::newRow("half a width") << 2 << "-50 -50 1050 50";
        QTest::newRow("given") << 4 << "-7 -50 980 50";
    }
    void pathEnds()
    {
        QFETCH(int, type);
        QFETCH(QString, box);
        QByteArray extensions;
        if (type == 4)
            extensions = record(0x30, 3, longs({7})) + record(0x31, 3, longs({-20}));
        const std::vector<Point> corners = outline(onlyPath(path(type, 100, {0, 0, 1000, 0}, extensions)));
        QVERIFY(areaOf(corners) > 0.0);
        if (type != 1) {
            QCOMPARE(textOf(boxOf(corners)), box);
            return;
        }
        QVERIFY(std::abs(areaOf(corners) - (100000.0 + 2500 * 3.14159265)) < 100000.0 * 0.01);
        QVERIFY(boxOf(corners).low.x >= -50.0 && boxOf(corners).low.x < -49.0);
        QVERIFY(boxOf(corners).high.x <= 1050.0 && boxOf(corners).high.x > 1049.0);
    }

    void pathCornersAreMitredAndSharpOnesCutOff()
    {
        const GdsPath right = onlyPath(path(0, 20, {0, 0, 100, 0, 100, 100}));
        QCOMPARE(textOf(outline(right)),
                 QString("0 -10, 110 -10, 110 100, 90 100, 90 0, 100 0, 100 10, 0 10"));
        const GdsPath back = onlyPath(path(0, 20, {0, 0, 100, 0, 0, 0}));
        QCOMPARE(textOf(boxOf(outline(back))), QString("0 -10 110 10"));
    }

    void pathOfNoLengthCoversItsEnds()
    {
        QVERIFY(outline(onlyPath(path(0, 100, {5, 5, 5, 5}))).empty());
        QCOMPARE(qRound(boxOf(outline(onlyPath(path(2, 100, {5, 5, 5, 5})))).high.y), 55);
        QVERIFY(areaOf(outline(onlyPath(path(1, 100, {5, 5, 5, 5})))) > 7500.0);
    }

    void pathWithoutWidthIsALine()
    {
        const QVector<GdsShape> found = shapes(read(library(structure("TOP", path(0, 0, {0, 0, 5, 5})))));
        QVERIFY(found.at(0).isLine);
        QCOMPARE(textOf(found.at(0).corners), QString("0 0, 5 5"));
    }

    void absoluteWidthIsReadWhereNothingMagnifies()
    {
        const GdsPath path = onlyPath(gdsrecords::path(0, -100, {0, 0, 5, 5}));
        QVERIFY(path.keepsWidth);
        QCOMPARE(path.width, std::int64_t(100));
    }

    // The writer's file, read by two readers that share nothing.
    void writersFileIsReadAsByTheTestsOwnReader()
    {
        JobFolder job;
        job.features("$0 r200\n$1 rect500x300\n$2 donut_r800x400\nL 1 1 4 5 0 P 0\nP 2 2 1 P 0 0\n"
                     "P 3 2 1 P 0 1\nP 4 2 1 P 0 0\nP 5 2 1 P 0 0\nP 6 6 2 P 0 0\nS P 0\nOB 10 1 I\n"
                     "OS 14 1\nOS 14 5\nOS 10 5\nOE\nOB 11 2 H\nOS 11 3\nOS 12 3\nOS 12 2\nOE\nSE\n");
        ExportRequest request;
        request.job = job.path();
        request.step = "pcb";
        request.layer = "top";
        request.options.profileOnTop = true;
        request.options.angle = 30.0;
        request.options.file = JobFolder::local(job.filePath("top.gds"));
        exportLayer(request);
        const GdsFile expected = GdsFile::open(job.filePath("top.gds"));
        const GdsImage image = readGdsFile(request.options.file);
        QVERIFY(std::abs(image.unit - 1.0) < 1e-12);
        for (const int datatype : {0, 1}) {
            QVector<QPolygon> found;
            for (const GdsShape &shape : shapes(image)) {
                if (shape.on.datatype != datatype)
                    continue;
                QPolygon polygon;
                for (const Point corner : shape.corners)
                    polygon << QPoint(int(corner.x), int(corner.y));
                found << polygon;
            }
            const QVector<QPolygon> wanted = expected.flat(expected.tops().value(0), datatype);
            QVERIFY(!wanted.isEmpty());
            QCOMPARE(found.size(), wanted.size());
            QCOMPARE(GdsFile::area(found), GdsFile::area(wanted));
            QCOMPARE(GdsFile::extent(found), GdsFile::extent(wanted));
            for (const QPolygon &polygon : wanted)
                QVERIFY(found.contains(polygon));
        }
    }

    void everyCutOfAFileIsRefused()
    {
        const QByteArray whole =
            library(structure("PAD", boundary(0, square)) +
                    structure("TOP", array("PAD", {3, 2}, {0, 0, 9, 0, 0, 9}) + path(1, 100, {0, 0, 5, 5})));
        QCOMPARE(errorOf(whole), QString());
        for (int length = 0; length < whole.size(); ++length)
            QVERIFY2(errorOf(whole.left(length)).contains("found the end of the file"),
                     qPrintable(QString("%1: %2").arg(length).arg(errorOf(whole.left(length)))));
        QCOMPARE(errorOf(whole + QByteArray(2048, '\0')), QString()); // the rest of a tape's block
        QVERIFY(errorOf(whole + "x").contains("nothing but zeros behind ENDLIB"));
    }

    void brokenFilesNameTheByteAndTheExpectation_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *title, const QByteArray &bytes, const char *message) {
            QTest::newRow(title) << bytes << QString(message);
        };
        const auto top = [](const QByteArray &elements) { return library(structure("TOP", elements)); };
        const QByteArray layer = record(0x0d, 2, shorts({1})), type = record(0x0e, 2, shorts({0}));
        const QByteArray end = record(0x11, 0);
        row("text", "this is no GDSII file",
            "byte 0: expected nothing of the record 0x6973, which is not supported");
        row("odd length", head() + QByteArray::fromHex("0005030500"),
            "byte 42: expected a record with an even length of at least 4, found 5");
        row("length of nothing", head() + QByteArray::fromHex("00000305"),
            "even length of at least 4, found 0");
        row("unknown record", top(record(0x3c, 0)), "nothing of the record 0x3c00, which is not supported");
        row("another type of data", top(record(0x08, 0) + record(0x0d, 3, longs({1}))),
            "expected LAYER with data of type 2, found type 3");
        row("no head", nanometreUnits(), "byte 0: expected HEADER, found UNITS");
        row("no units", head() + structure("TOP", {}) + record(0x04, 0), "expected UNITS, found BGNSTR");
        row("short units", head() + record(0x03, 5, QByteArray(8, '\0')),
            "expected 16 bytes of data in UNITS, found 8");
        row("unit of nothing", head() + record(0x03, 5, QByteArray(16, '\0')),
            "expected a database unit above 0");
        row("unit of a mile",
            head() + record(0x03, 5, QByteArray::fromHex("41100000000000004364900000000000")),
            "expected a database unit above 0 and up to a metre");
        row("record of a tape", library(record(0x32, 2, shorts({1}))),
            "expected BGNSTR or ENDLIB, found TAPENUM");
        row("mask without end", head() + record(0x36, 2, shorts({1})) + name(0x37, "1") + nanometreUnits(),
            "expected ENDMASKS, found UNITS");
        row("structure without name", library(record(0x05, 2, QByteArray(24, '\0')) + record(0x07, 0)),
            "expected STRNAME, found ENDSTR");
        row("empty name", library(structure("", {})), "expected a name for the structure");
        row("zero within a name", library(structure(QByteArray("A\0B", 3), {})),
            "expected no zero within the text of STRNAME");
        row("same name twice", library(structure("A", {}) + structure("A", {})),
            "expected one structure of the name \"A\", found a second");
        row("element outside", library(boundary(0, square)), "expected BGNSTR or ENDLIB, found BOUNDARY");
        row("no element", top(layer), "expected an element or ENDSTR, found LAYER");
        row("no layer", top(record(0x08, 0) + type), "expected LAYER, found DATATYPE");
        row("no end of an element",
            top(record(0x08, 0) + layer + type + record(0x10, 3, longs(square)) + layer),
            "expected ENDEL, found LAYER");
        row("property without value",
            top(record(0x08, 0) + layer + type + record(0x10, 3, longs(square)) +
                record(0x2b, 2, shorts({1})) + end),
            "expected PROPVALUE, found ENDEL");
        row("open boundary", top(boundary(0, {0, 0, 1, 0, 1, 1, 0, 1})),
            "expected four points or more, the last one equal to the first");
        row("boundary of two points", top(boundary(0, {0, 0, 1, 0, 0, 0})), "expected four points or more");
        row("half a point", top(boundary(0, {0, 0, 1, 0, 1, 1, 0, 0, 0})), "expected four points or more");
        row("box of three corners",
            top(record(0x2d, 0) + layer + record(0x2e, 2, shorts({0})) +
                record(0x10, 3, longs({0, 0, 1, 0, 1, 1, 0, 0})) + end),
            "expected five points in a box");
        row("path of one point", top(path(0, 10, {0, 0})), "expected two points or more of a path");
        row("path type", top(path(3, 10, {0, 0, 1, 1})), "expected a path type of 0, 1, 2 or 4, found 3");
        row("circle",
            library(structure("TOP", boundary(0, square)) + structure("A", reference("B", {0, 0})) +
                    structure("B", reference("A", {0, 0}))),
            "expected no structure that contains itself, found \"A\" in a circle");
        row("in itself", top(reference("TOP", {0, 0})), "found \"TOP\" in a circle");
        row("missing", top(reference("GONE", {0, 0})),
            "expected a structure \"GONE\", which others refer to");
        row("array of nothing", top(array("TOP", {0, 2}, {0, 0, 1, 1, 2, 2})),
            "expected at least one column and one row");
        row("array of two points", top(array("TOP", {1, 2}, {0, 0, 1, 1})),
            "expected 24 bytes of data in XY, found 16");
        row("reference to two places", top(reference("TOP", {0, 0, 1, 1})),
            "expected 8 bytes of data in XY, found 16");
        row("magnification of nothing",
            top(reference("TOP", {0, 0},
                          record(0x1a, 1, shorts({0})) + record(0x1b, 5, QByteArray(8, '\0')))),
            "expected a magnification above 0");
        row("absolute angle", top(reference("TOP", {0, 0}, record(0x1a, 1, shorts({2})))),
            "nothing of an absolute magnification or angle");
        row("magnification without STRANS",
            top(reference("TOP", {0, 0}, record(0x1b, 5, QByteArray::fromHex("4120000000000000")))),
            "expected XY, found MAG");
        row("absolute width, magnified",
            library(
                structure("PAD", path(0, -10, {0, 0, 1, 1})) + structure("MID", reference("PAD", {0, 0})) +
                structure("TOP", reference("MID", {0, 0},
                                           record(0x1a, 1, shorts({0})) +
                                               record(0x1b, 5, QByteArray::fromHex("4120000000000000"))))),
            "absolute width in a magnified structure (\"PAD\")");
        row("out of all bounds",
            library(
                structure("PAD", boundary(0, square)) +
                structure("TOP", reference("PAD", {0, 0},
                                           record(0x1a, 1, shorts({0})) +
                                               record(0x1b, 5, QByteArray::fromHex("7f20000000000000"))))),
            "expected places within 2^53 database units, found the structure \"TOP\" reaching beyond");
    }
    void brokenFilesNameTheByteAndTheExpectation()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        const QString error = errorOf(bytes);
        QVERIFY2(error.contains(message), qPrintable(error));
        QVERIFY2(error.startsWith("some.gds"), qPrintable(error));
    }

    void depthIsLimited()
    {
        const auto nested = [](int levels) {
            QByteArray bytes = structure("S0", boundary(0, square));
            for (int i = 1; i <= levels; ++i)
                bytes += structure("S" + QByteArray::number(i),
                                   reference("S" + QByteArray::number(i - 1), {1, 1}));
            return library(bytes);
        };
        QCOMPARE(textOf(boxOf(shapes(read(nested(256))).at(0).corners)), QString("256 256 266 276"));
        QVERIFY(errorOf(nested(257)).contains("at most 256 levels"));
    }

    // A few bytes that stand for more shapes than there are atoms.
    void copiesOfCopiesAreCountedNotMade()
    {
        QByteArray bytes = structure("S0", boundary(0, square));
        for (int i = 1; i <= 20; ++i)
            bytes += structure("S" + QByteArray::number(i), array("S" + QByteArray::number(i - 1),
                                                                  {1000, 1000}, {0, 0, 1000, 0, 0, 1000}));
        const GdsImage image = read(library(bytes));
        QVERIFY(image.structures[image.tops.at(0)].shapesInAll > 1e100);
    }

    void missingFileIsNamed()
    {
        try {
            readGdsFile("nosuchfile.gds");
            QFAIL("it was read");
        } catch (const Error &error) {
            QCOMPARE(QString(error.what()), QString("nosuchfile.gds: cannot be opened"));
        }
    }
};

QTEST_APPLESS_MAIN(tst_GdsReader)
#include "tst_gdsreader.moc"
