// Reading GDSII files for the view.
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/view/layerdrawing.h"

#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <cmath>

namespace {

QByteArray record(int type, int dataType, const QByteArray &data = {})
{
    QByteArray bytes(4, '\0');
    qToBigEndian<quint16>(quint16(data.size() + 4), reinterpret_cast<uchar *>(bytes.data()));
    bytes[2] = char(type);
    bytes[3] = char(dataType);
    return bytes + data;
}

QByteArray shorts(const QVector<int> &values)
{
    QByteArray bytes(values.size() * 2, '\0');
    for (int i = 0; i < values.size(); ++i)
        qToBigEndian<qint16>(qint16(values[i]), reinterpret_cast<uchar *>(bytes.data()) + 2 * i);
    return bytes;
}

QByteArray longs(const QVector<int> &values)
{
    QByteArray bytes(values.size() * 4, '\0');
    for (int i = 0; i < values.size(); ++i)
        qToBigEndian<qint32>(values[i], reinterpret_cast<uchar *>(bytes.data()) + 4 * i);
    return bytes;
}

// 0.001 (of a user unit) and 1e-9 metres, as the format writes them.
QByteArray nanometreUnits()
{
    return record(0x03, 5, QByteArray::fromHex("3e4189374bc6a7ef") + QByteArray::fromHex("3944b82fa09b5a51"));
}

QByteArray name(int type, QByteArray text)
{
    if (text.size() % 2)
        text += '\0';
    return record(type, 6, text);
}

QByteArray boundary(int dataType, const QVector<int> &xy)
{
    return record(0x08, 0) + record(0x0d, 2, shorts({1})) + record(0x0e, 2, shorts({dataType})) +
           record(0x10, 3, longs(xy)) + record(0x11, 0);
}

QByteArray structure(const QByteArray &title, const QByteArray &elements)
{
    return record(0x05, 2, shorts({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0})) + name(0x06, title) + elements +
           record(0x07, 0);
}

QByteArray library(const QByteArray &structures)
{
    return record(0x00, 2, shorts({600})) + nanometreUnits() + structures + record(0x04, 0);
}

const QVector<int> square = {0, 0, 1000000, 0, 1000000, 2000000, 0, 2000000, 0, 0}; // 1 x 2 mm

} // namespace

class TestGdsReader : public QObject
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
        } catch (const GdsError &error) {
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
        const QByteArray reference = record(0x0a, 0) + name(0x12, "PAD") + record(0x1a, 1, shorts({-32768})) +
                                     record(0x1b, 5, QByteArray::fromHex("4120000000000000"))   // 2.0
                                     + record(0x1c, 5, QByteArray::fromHex("425a000000000000")) // 90.0
                                     + record(0x10, 3, longs({5000000, 0})) + record(0x11, 0);
        const LayerDrawing drawing =
            read(library(structure("PAD", boundary(0, square)) + structure("TOP", reference)));
        QCOMPARE(drawing.areas.size(), 1);
        // (x, y) -> (x, -y) -> (2x, -2y) -> (2y, 2x) -> (2y + 5, 2x)
        compareRects(drawing.bounds, QRectF(5, 0, 4, 2));
    }

    void arrayIsPlacedColumnByRow()
    {
        const QByteArray reference = record(0x0b, 0) + name(0x12, "PAD") + record(0x13, 2, shorts({3, 2})) +
                                     record(0x10, 3, longs({0, 0, 30000000, 0, 0, 10000000})) +
                                     record(0x11, 0);
        const LayerDrawing drawing =
            read(library(structure("PAD", boundary(0, square)) + structure("TOP", reference)));
        QCOMPARE(drawing.areas.size(), 6);
        compareRects(drawing.bounds, QRectF(0, 0, 21, 7));
    }

    void emptyLibraryHasNoBounds() { QVERIFY(read(library(structure("TOP", {}))).bounds.isNull()); }

    void brokenFilesNameTheByteAndTheExpectation_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        QTest::newRow("empty") << QByteArray()
                               << "byte 0: expected the record ENDLIB before the end of the file";
        QTest::newRow("text") << QByteArray("this is no GDSII file")
                              << "byte 0: expected a record of at least 4 bytes that ends within the file";
        QTest::newRow("cut") << library(structure("TOP", boundary(0, square))).left(100)
                             << "expected a record of at least 4 bytes that ends within the file";
        QTest::newRow("circle") << library(
                                       structure("TOP", boundary(0, square)) +
                                       structure("A", record(0x0a, 0) + name(0x12, "A") +
                                                          record(0x10, 3, longs({0, 0})) + record(0x11, 0)) +
                                       structure("B", record(0x0a, 0) + name(0x12, "A") +
                                                          record(0x10, 3, longs({0, 0})) + record(0x11, 0)))
                                << "the structure A contains itself";
        QTest::newRow("missing") << library(structure("TOP", record(0x0a, 0) + name(0x12, "GONE") +
                                                                 record(0x10, 3, longs({0, 0})) +
                                                                 record(0x11, 0)))
                                 << "expected a structure GONE";
        QTest::newRow("array without counts")
            << library(structure("TOP", record(0x0b, 0) + name(0x12, "PAD") +
                                            record(0x13, 2, shorts({0, 2})) +
                                            record(0x10, 3, longs({0, 0, 1, 1, 2, 2})) + record(0x11, 0)))
            << "expected a reference with 3 points and positive counts";
        QTest::newRow("array without end")
            << library(structure("PAD", boundary(0, square)) +
                       structure("TOP", record(0x0b, 0) + name(0x12, "PAD") +
                                            record(0x13, 2, shorts({32767, 32767})) +
                                            record(0x10, 3, longs({0, 0, 1, 1, 2, 2})) + record(0x11, 0)))
            << "expected at most 1000000 areas";
        QTest::newRow("half a point")
            << library(structure("TOP", record(0x08, 0) + record(0x10, 3, longs({0}))))
            << "expected pairs of 4-byte coordinates";
    }
    void brokenFilesNameTheByteAndTheExpectation()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        const QString error = errorOf(bytes);
        QVERIFY2(error.contains(message), qPrintable(error));
        QVERIFY2(error.contains("layer.gds"), qPrintable(error));
    }

    void missingFileIsNamed() { QVERIFY_EXCEPTION_THROWN(readGds(folder.filePath("nothing.gds")), GdsError); }
};

QTEST_GUILESS_MAIN(TestGdsReader)
#include "tst_gdsreader.moc"
