// Measuring and inspecting: what the mouse catches, what is said, and pictures of it.
#include "tests/cam/support/layerbuilding.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/view/inspection.h"
#include "workbench/view/measuring.h"
#include "workbench/view/picturefile.h"

#include <QtTest>

#include <cmath>

using namespace testing;

class tst_Measuring : public QObject
{
    Q_OBJECT

private:
    // A pad of 1 x 2 mm at (5, 5), a line of 0.2 mm from (10, 0) to (20, 0), a plate from (30, 0) to (40, 10)
    // with a round pad of 1 mm over it.
    std::shared_ptr<const drawing::LayerScene> scene() const
    {
        cam::LayerImage image = emptyLayer();
        cam::FeatureSet &features = image.steps[0].features;
        addPad(features, symbol(image, "rect1000x2000"), at(5000, 5000));
        addLine(features, symbol(image, "r200"), at(10000, 0), at(20000, 0));
        const cam::Point corners[] = {at(30000, 0), at(40000, 0), at(40000, 10000), at(30000, 10000)};
        features.contours.addPolygon(corners, 4, false);
        addSurface(features, 0);
        addPad(features, symbol(image, "r1000"), at(35000, 5000), false);
        return std::make_shared<const drawing::LayerScene>(
            std::make_shared<const cam::LayerImage>(std::move(image)), cam::ExportOptions());
    }

private slots:
    void placesAreCaught_data()
    {
        using Kind = drawing::Snap::Kind;
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<double>("caughtX");
        QTest::addColumn<double>("caughtY");
        QTest::addColumn<int>("kind");
        QTest::newRow("center of a pad") << 5.05 << 5.02 << 5.0 << 5.0 << int(Kind::Center);
        QTest::newRow("corner of a pad") << 5.45 << 5.95 << 5.5 << 6.0 << int(Kind::Corner);
        QTest::newRow("edge of a pad") << 5.56 << 5.4 << 5.5 << 5.4 << int(Kind::Edge);
        QTest::newRow("end of a line") << 10.1 << 0.05 << 10.0 << 0.0 << int(Kind::End);
        QTest::newRow("edge of a line") << 13.0 << 0.14 << 13.0 << 0.1 << int(Kind::Edge);
        QTest::newRow("corner of a surface") << 40.1 << 10.1 << 40.0 << 10.0 << int(Kind::Corner);
        QTest::newRow("edge of a circle") << 35.55 << 5.0 << 35.5 << 5.0 << int(Kind::Edge);
    }
    void placesAreCaught()
    {
        QFETCH(const double, x);
        QFETCH(const double, y);
        QFETCH(const double, caughtX);
        QFETCH(const double, caughtY);
        QFETCH(const int, kind);
        const auto caught = drawing::snapTo(*scene(), at(1000 * x, 1000 * y), 200000.0);
        QVERIFY(bool(caught));
        QVERIFY2(cam::distance(caught->at, at(1000 * caughtX, 1000 * caughtY)) < 10.0,
                 qPrintable(QString("%1, %2").arg(caught->at.x).arg(caught->at.y)));
        QCOMPARE(int(caught->kind), kind);
    }

    void nothingIsCaughtWhereNothingIs() { QVERIFY(!drawing::snapTo(*scene(), at(25000, 5000), 200000.0)); }

    void measuresInEveryUnit()
    {
        const Measurement measured{at(1000, 1000), at(4000, 5000)};
        QCOMPARE(measured.distance(), 5e6);
        QVERIFY(std::fabs(measured.angle() - 53.1301) < 1e-3);
        QVERIFY(measured.text(LengthUnit::Millimetre).contains("5.000 mm"));
        QVERIFY(measured.text(LengthUnit::Millimetre).contains("dx 3.000 mm   dy 4.000 mm"));
        QVERIFY(measured.text(LengthUnit::Inch).contains("0.19685 in"));
        QVERIFY(measured.text(LengthUnit::Mil).contains("196.85 mil"));
        QVERIFY(measured.text(LengthUnit::Mil).contains(QString::fromUtf8("53.13°")));
    }

    void twoPressesMeasureAndTheThirdBeginsAgain()
    {
        Measuring measuring;
        measuring.setOn(true);
        measuring.setScenes({scene()});
        measuring.press(at(5050, 5020), 200000.0);
        measuring.moveTo(at(25000, 5000), 200000.0);
        QCOMPARE(measuring.measurement()->distance(), 20e6); // to the mouse
        measuring.press(at(10100, 50), 200000.0);
        QCOMPARE(measuring.measurement()->dx(), 5e6);
        QCOMPARE(measuring.measurement()->dy(), -5e6);
        measuring.press(at(20100, 50), 200000.0);
        QCOMPARE(measuring.measurement()->distance(), 0.0);
        QVERIFY(measuring.clear());
        QVERIFY(!measuring.measurement());
        QVERIFY(!measuring.clear());
    }

    void featuresUnderTheMouseAreToldTheUppermostFirst()
    {
        Inspection inspection;
        inspection.setLayers({{"top", scene()}});
        QVERIFY(inspection.press(at(35000, 5000), 10000.0));
        QString text = inspection.text(LengthUnit::Millimetre).join('\n');
        QVERIFY2(text.contains("Layer top") && text.contains("Pad, clears") && text.contains("r1000") &&
                     text.contains("x 35.000  y 5.000 mm") && text.contains("1.000 mm"),
                 qPrintable(text));
        QVERIFY(inspection.press(at(35000, 5000), 10000.0)); // the next one beneath
        text = inspection.text(LengthUnit::Millimetre).join('\n');
        QVERIFY2(text.contains("Surface") && text.contains("10.000 mm"), qPrintable(text));
        QVERIFY(!inspection.press(at(25000, 5000), 10000.0));
        QVERIFY(inspection.text(LengthUnit::Millimetre).isEmpty());
    }

    void aLevelLineIsMarked()
    {
        Inspection inspection;
        inspection.setLayers({{"top", scene()}});
        BoardView view;
        view.resize(900, 600); // the words lie beside the line
        view.setFrame(scene()->extent(), true);
        view.setScenes({{scene(), QColor(255, 215, 0), 1.0}});
        view.addOverlay(&inspection);
        QVERIFY(inspection.press(at(13000, 0), 10000.0));
        const QImage seen = view.grab().toImage();
        const QPoint middle = view.toScreen(at(13000, 0)).toPoint();
        bool isMarked = false;
        for (int y = middle.y() - 2; y <= middle.y() + 2; ++y) { // the mark lies between pixels
            const QColor color = seen.pixelColor(middle.x(), y);
            isMarked = isMarked || (color.red() > 120 && color.blue() > 120 && color.green() < 120);
        }
        QVERIFY(isMarked);
    }

    void picturesAreSaved_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("head");
        QTest::newRow("PNG") << "seen.png" << QByteArray("\x89PNG");
#if QT_CONFIG(pdf)
        QTest::newRow("PDF") << "seen.pdf" << QByteArray("%PDF-");
#endif
        QTest::newRow("SVG") << "seen.svg" << QByteArray("<?xml");
    }
    void picturesAreSaved()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, head);
        const TemporaryWorkingFolder folder;
        BoardView view;
        view.resize(300, 200);
        view.show();
        view.setFrame(scene()->extent(), true);
        view.setScenes({{scene(), QColor(255, 215, 0), 1.0}});
        QCOMPARE(savePicture(view, folder.filePath(name), 2), QString());
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(bytes.startsWith(head));
        if (name.endsWith("png")) {
            const QImage image = QImage::fromData(bytes);
            QCOMPARE(image.size(), QSize(600, 400));
            const QPointF plate = view.toScreen(at(32000, 5000)) * 2;
            QCOMPARE(image.pixel(plate.toPoint()), qRgb(255, 215, 0));
        }
        if (name.endsWith("svg")) // in its true size
            QVERIFY(
                bytes.contains(QString("width=\"%1mm\"").arg(300 * view.pixel() / 1e6, 0, 'f', 6).toUtf8()));
        QVERIFY(!savePicture(view, folder.filePath("nowhere/" + name), 1).isEmpty());
        QVERIFY(savePicture(view, folder.filePath("seen.txt"), 1).contains(".png"));
    }
};

QTEST_MAIN(tst_Measuring)
#include "tst_measuring.moc"
