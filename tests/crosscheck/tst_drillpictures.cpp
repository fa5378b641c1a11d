// Drill files as gerbv draws them, against the library's own picture of what it read. Holes and slots only:
// gerbv draws no routed path.
#include "cam/excellon/excellonreader.h"
#include "tests/crosscheck/otherprograms.h"

#include <QTemporaryDir>
#include <QtTest>

class tst_DrillPictures : public QObject
{
    Q_OBJECT

private slots:
    void gerbvDrawsTheSame_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("decimal points") << QByteArray(
            "M48\n; FORMAT={-:-/ absolute / metric / decimal}\nFMAT,2\nMETRIC\nT1C0.300\nT2C1.000\n%\n"
            "G90\nG05\nT1\nX1.0Y-5.0\nX2.27Y-5.0\nT2\nX5.0Y-5.0\nX5.0Y-2.0G85X8.0Y-1.0\nT0\nM30\n");
        // Not with LZ: there gerbv takes a number of fewer digits for one whose leading zeros are left out.
        QTest::newRow("a format in a comment") << QByteArray(
            "M48\n;Layer_Color=9474304\n;FILE_FORMAT=4:4\nMETRIC,TZ\n;TYPE=PLATED\nT1F00S00C0.30000\n"
            ";TYPE=NON_PLATED\nT2F00S00C3.00000\n%\nT01\nX10000Y20000\nX-15000Y25000\nT02\n"
            "X50000Y70000\nM30\n");
        QTest::newRow("inches, leading zeros left out") << QByteArray(
            "M48\nINCH,TZ\nFMAT,2\nT01C0.0320F200S65\nT02C0.02\n%\nT01\nX1000Y2000\nX5000Y500\nT02\n"
            "X5000Y4000G85X4000Y3000\nM30\n");
        QTest::newRow("inches, trailing zeros left out")
            << QByteArray("M48\nINCH,LZ\nFMAT,2\nT01C0.0320\n%\nT01\nX001Y002\nX005Y0005\nX00525\nM30\n");
        QTest::newRow("millimetres, leading zeros left out")
            << QByteArray("M48\nMETRIC,TZ\nFMAT,2\nT01C0.5\n%\nT01\nX1000Y2000\nR4X1270\nY5250\nM30\n");
        QTest::newRow("millimetres, trailing zeros left out")
            << QByteArray("M48\nMETRIC,LZ\nFMAT,2\nT01C0.5\n%\nT01\nX001Y002\nX00325Y0004\nM30\n");
    }
    void gerbvDrawsTheSame()
    {
        QFETCH(const QByteArray, text);
        const QTemporaryDir folder;
        QFile file(folder.filePath("file.drl"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        const cam::LayerImage layer =
            cam::layerOf(cam::readExcellonFile(std::filesystem::u8path(file.fileName().toStdString())));
        const cam::Box box = crosscheck::outputExtent(layer, {});
        crosscheck::Picture picture;
        picture.file = file.fileName();
        picture.image = folder.filePath("picture.pgm");
        const double margin = 20.0 * crosscheck::pixel;
        picture.window = {box.low.x - margin, box.low.y - margin,
                          int((box.high.x - box.low.x + 2.0 * margin) / crosscheck::pixel),
                          int((box.high.y - box.low.y + 2.0 * margin) / crosscheck::pixel)};
        const QString said = crosscheck::drawGerber({picture});
        QVERIFY2(said.isEmpty(), qPrintable(said));
        const crosscheck::Bitmap theirs = crosscheck::read(picture);
        const crosscheck::Bitmap ours = crosscheck::rasterize(layer, {}, picture.window);
        QVERIFY(ours.darkCount() > 1000);
        const crosscheck::Difference difference = crosscheck::compare(ours, theirs);
        QVERIFY2(difference.beyond == 0,
                 qPrintable(QString("%1 pixels differ, first at %2, %3; %4 and %5 are dark")
                                .arg(difference.beyond)
                                .arg(difference.x)
                                .arg(difference.y)
                                .arg(ours.darkCount())
                                .arg(theirs.darkCount())));
    }
};

QTEST_GUILESS_MAIN(tst_DrillPictures)
#include "tst_drillpictures.moc"
