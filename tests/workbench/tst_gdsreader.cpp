// The view's drawing of a GDSII file.
#include "cam/base/error.h"
#include "tests/cam/support/gdsrecords.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/view/layerdrawing.h"

#include <QtTest>

#include <algorithm>
#include <cmath>

namespace {

using namespace gdsrecords;

const QVector<int> square = {0, 0, 1000000, 0, 1000000, 2000000, 0, 2000000, 0, 0}; // 1 x 2 mm

} // namespace

class tst_GdsReader : public QObject
{
    Q_OBJECT

private:
    TemporaryWorkingFolder folder;

    LayerDrawing read(const QByteArray &bytes)
    {
        if (!folder.write("layer.gds", bytes))
            qFatal("cannot write the test file");
        return readGds(folder.filePath("layer.gds"));
    }

    QString errorOf(const QByteArray &bytes)
    {
        try {
            read(bytes);
        } catch (const cam::Error &error) {
            return error.what();
        }
        return {};
    }

    static void compareRects(const QRectF &actual, const QRectF &expected)
    {
        const double distance = std::max(
            {std::abs(actual.left() - expected.left()), std::abs(actual.top() - expected.top()),
             std::abs(actual.right() - expected.right()), std::abs(actual.bottom() - expected.bottom())});
        QVERIFY2(distance < 1e-9, qPrintable(QString("%1 %2 %3 %4")
                                                 .arg(actual.left())
                                                 .arg(actual.top())
                                                 .arg(actual.right())
                                                 .arg(actual.bottom())));
    }

private slots:
    void coordinatesBecomeMillimetres()
    {
        const LayerDrawing drawing = read(library(structure("TOP", boundary(0, square))));
        QCOMPARE(drawing.areas.size(), 1);
        QCOMPARE(drawing.outlines.size(), 0);
        compareRects(drawing.bounds, QRectF(0, 0, 1, 2));
    }

    void dataTypeOneIsOutline()
    {
        const LayerDrawing drawing =
            read(library(structure("TOP", boundary(1, square) + boundary(0, square))));
        QCOMPARE(drawing.areas.size(), 1);
        QCOMPARE(drawing.outlines.size(), 1);
    }

    void referenceIsMirroredThenScaledThenRotatedThenMoved()
    {
        const QByteArray turns = record(0x1a, 1, shorts({-32768})) +
                                 record(0x1b, 5, QByteArray::fromHex("4120000000000000"))    // 2.0
                                 + record(0x1c, 5, QByteArray::fromHex("425a000000000000")); // 90.0
        const LayerDrawing drawing = read(library(structure("PAD", boundary(0, square)) +
                                                  structure("TOP", reference("PAD", {5000000, 0}, turns))));
        QCOMPARE(drawing.areas.size(), 1);
        // (x, y) -> (x, -y) -> (2x, -2y) -> (2y, 2x) -> (2y + 5, 2x)
        compareRects(drawing.bounds, QRectF(5, 0, 4, 2));
    }

    void arrayIsPlacedColumnByRow()
    {
        const LayerDrawing drawing =
            read(library(structure("PAD", boundary(0, square)) +
                         structure("TOP", array("PAD", {3, 2}, {0, 0, 30000000, 0, 0, 10000000}))));
        QCOMPARE(drawing.areas.size(), 6);
        compareRects(drawing.bounds, QRectF(0, 0, 21, 7));
    }

    void emptyLibraryHasNoBounds() { QVERIFY(read(library(structure("TOP", {}))).bounds.isNull()); }

    void pathIsAsWideAsItSays()
    {
        const LayerDrawing drawing = read(
            library(structure("TOP", path(0, 500000, {0, 0, 3000000, 0}) + path(0, 0, {0, 0, 0, 1000000}))));
        QCOMPARE(drawing.areas.size(), 1);
        QCOMPARE(drawing.outlines.size(), 1); // without a width: a line
        compareRects(drawing.areas[0].boundingRect(), QRectF(0, -0.25, 3, 0.5));
    }

    void brokenFileIsNamed()
    {
        const QString error = errorOf("this is no GDSII file");
        QVERIFY2(error.contains("layer.gds, byte 0: expected"), qPrintable(error));
    }

    void arrayWithoutEndIsRefused()
    {
        const QString error =
            errorOf(library(structure("PAD", boundary(0, square)) +
                            structure("TOP", array("PAD", {32767, 32767}, {0, 0, 1, 1, 2, 2}))));
        QVERIFY2(error.contains("expected at most 5000000 areas"), qPrintable(error));
    }

    void missingFileIsNamed()
    {
        QVERIFY_EXCEPTION_THROWN(readGds(folder.filePath("nothing.gds")), cam::Error);
    }
};

QTEST_GUILESS_MAIN(tst_GdsReader)
#include "tst_gdsreader.moc"
