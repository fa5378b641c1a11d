// The view: what it draws over each other, how it is moved, what stays where it is.
#include "drawing/layerscene.h"
#include "tests/cam/support/layerbuilding.h"
#include "tests/export/wheel.h"
#include "workbench/view/boardview.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace testing;

namespace {

// A layer with one rectangle, corners in millimetres.
std::shared_ptr<const drawing::Scene> plate(double left, double bottom, double right, double top)
{
    cam::LayerImage image = emptyLayer();
    cam::FeatureSet &features = image.steps[0].features;
    const cam::Point corners[] = {at(1000 * left, 1000 * bottom), at(1000 * right, 1000 * bottom),
                                  at(1000 * right, 1000 * top), at(1000 * left, 1000 * top)};
    features.contours.addPolygon(corners, 4, false);
    addSurface(features, 0);
    return std::make_shared<drawing::LayerScene>(std::make_shared<const cam::LayerImage>(std::move(image)),
                                                 cam::ExportOptions());
}

cam::Box box(double left, double bottom, double right, double top)
{
    cam::Box made;
    made.add(at(1000 * left, 1000 * bottom));
    made.add(at(1000 * right, 1000 * top));
    return made;
}

} // namespace

class tst_BoardView : public QObject
{
    Q_OBJECT

private:
    const QColor color{255, 215, 0};
    std::unique_ptr<BoardView> view;

    QRgb pixel(int x, int y) const
    {
        return view->grab().toImage().convertToFormat(QImage::Format_RGB32).pixel(x, y);
    }
    void waitForTiles() { QTRY_VERIFY(view->isDrawn()); }

    // A board of 30 x 20 mm fills 276 of 300 pixels: 9.2 pixels a millimetre, its middle in the middle.
    void showBoard()
    {
        view->setFrame(box(0, 0, 30, 20), true);
        view->setScenes({{plate(0, 0, 30, 20), color, 1.0}});
        waitForTiles();
    }

    QString placeAt(const QPoint &point)
    {
        QSignalSpy pointed(view.get(), &BoardView::pointed);
        QMouseEvent move(QEvent::MouseMove, point, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(view.get(), &move);
        return pointed.value(0).value(0).toString();
    }
    void drag(const QPoint &from, const QPoint &to)
    {
        QTest::mousePress(view.get(), Qt::LeftButton, Qt::NoModifier, from);
        for (const QPoint at : {from + (to - from) / 2, to}) {
            QMouseEvent move(QEvent::MouseMove, at, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(view.get(), &move);
        }
        QTest::mouseRelease(view.get(), Qt::LeftButton, Qt::NoModifier, to);
    }

private slots:
    void init()
    {
        view.reset(new BoardView);
        view->resize(300, 200);
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.get()));
    }

    void areasAreFilledAndTheRestIsNot()
    {
        showBoard();
        QCOMPARE(pixel(150, 100), color.rgb());
        QCOMPARE(pixel(20, 100), color.rgb());
        QVERIFY(pixel(4, 100) != color.rgb());
    }

    void yPointsUp()
    {
        view->setFrame(box(0, 0, 30, 20), true);
        view->setScenes({{plate(0, 10, 30, 20), color, 1.0}});
        waitForTiles();
        QCOMPARE(pixel(150, 60), color.rgb());
        QVERIFY(pixel(150, 140) != color.rgb());
    }

    void laterScenesLieAbove()
    {
        view->setFrame(box(0, 0, 30, 20), true);
        view->setScenes({{plate(0, 0, 30, 20), color, 1.0}, {plate(15, 0, 30, 20), Qt::blue, 1.0}});
        waitForTiles();
        QCOMPARE(pixel(100, 100), color.rgb());
        QCOMPARE(pixel(200, 100), QColor(Qt::blue).rgb());
        view->setScenes({{plate(15, 0, 30, 20), Qt::blue, 1.0}, {plate(0, 0, 30, 20), color, 0.5}});
        waitForTiles();
        const QColor mixed(pixel(200, 100));
        QVERIFY(std::abs(mixed.red() - 128) < 4 && std::abs(mixed.blue() - 127) < 4);
    }

    void fromBelowXRunsToTheLeft()
    {
        view->setFrame(box(0, 0, 30, 20), true);
        view->setScenes({{plate(0, 0, 15, 20), color, 1.0}});
        view->setMirrored(true);
        waitForTiles();
        QVERIFY(pixel(100, 100) != color.rgb());
        QCOMPARE(pixel(200, 100), color.rgb());
        QCOMPARE(placeAt(QPoint(242, 54)), QString("x 5.000  y 15.000 mm"));
        drag(QPoint(150, 100), QPoint(196, 100));
        QCOMPARE(placeAt(QPoint(196, 100)), QString("x 15.000  y 10.000 mm"));
    }

    void placesUnderTheMouseAreInTheChosenUnit()
    {
        showBoard();
        QCOMPARE(placeAt(QPoint(150, 100)), QString("x 15.000  y 10.000 mm"));
        view->setUnit(LengthUnit::Inch);
        QCOMPARE(placeAt(QPoint(150, 100)), QString("x 0.59055  y 0.39370 in"));
        view->setUnit(LengthUnit::Mil);
        QCOMPARE(placeAt(QPoint(150, 100)), QString("x 590.55  y 393.70 mil"));
    }

    void wheelZoomsAboutTheMouse()
    {
        showBoard();
        const QPoint mouse(242, 54);
        const cam::Point before = view->toPlace(mouse);
        turnWheel(view.get(), mouse, 4);
        QVERIFY(cam::distance(view->toPlace(mouse), before) < view->pixel());
        QVERIFY(placeAt(QPoint(150, 100)) != QString("x 15.000  y 10.000 mm"));
    }

    // What was there is scaled: the middle of the board is never seen empty while tiles are drawn.
    void whileTilesAreDrawnTheOldPictureIsScaled()
    {
        showBoard();
        turnWheel(view.get(), QPoint(150, 100), 3);
        QCOMPARE(pixel(150, 100), color.rgb());
        turnWheel(view.get(), QPoint(150, 100), -8);
        QCOMPARE(pixel(150, 100), color.rgb());
    }

    void draggingMovesTheLayersWithTheMouse()
    {
        showBoard();
        drag(QPoint(150, 100), QPoint(196, 100));
        QCOMPARE(placeAt(QPoint(196, 100)), QString("x 15.000  y 10.000 mm"));
        waitForTiles();
        QCOMPARE(pixel(196, 100), color.rgb());
        QVERIFY(pixel(30, 100) != color.rgb());
    }

    void clickIsNoDrag()
    {
        showBoard();
        QSignalSpy clicked(view.get(), &BoardView::clicked);
        drag(QPoint(150, 100), QPoint(196, 100));
        QCOMPARE(clicked.count(), 0);
        QTest::mouseClick(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(196, 100));
        QCOMPARE(clicked.count(), 1);
        const cam::Point place = clicked[0][0].value<cam::Point>();
        QVERIFY(cam::distance(place, at(15000, 10000)) < 1000.0);
    }

    void doubleClickShowsTheBoardAgain()
    {
        showBoard();
        turnWheel(view.get(), QPoint(10, 10), 10);
        QTest::mouseDClick(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
        QCOMPARE(placeAt(QPoint(150, 100)), QString("x 15.000  y 10.000 mm"));
    }

    void keysMoveAndZoom()
    {
        showBoard();
        QTest::keyClick(view.get(), Qt::Key_Right);
        QVERIFY(placeAt(QPoint(150, 100)) != QString("x 15.000  y 10.000 mm"));
        QTest::keyClick(view.get(), Qt::Key_Left);
        QCOMPARE(placeAt(QPoint(150, 100)), QString("x 15.000  y 10.000 mm"));
        const double before = view->pixel();
        QTest::keyClick(view.get(), Qt::Key_Plus);
        QVERIFY(view->pixel() < before);
    }

    void fittedBoardFollowsTheWindow()
    {
        showBoard();
        view->resize(600, 400);
        QTRY_COMPARE(placeAt(QPoint(300, 200)), QString("x 15.000  y 10.000 mm"));
        QCOMPARE(placeAt(QPoint(484, 200)), QString("x 25.000  y 10.000 mm"));
    }

    // Layers come and go; the place stays, whatever their extents.
    void otherLayersKeepThePlace()
    {
        showBoard();
        const QString corner = placeAt(QPoint(0, 0));
        view->setScenes({{plate(-50, -50, 5, 5), color, 1.0}});
        QCOMPARE(placeAt(QPoint(0, 0)), corner);
        view->fitAll();
        QVERIFY(placeAt(QPoint(0, 0)) != corner);
        QVERIFY(cam::distance(view->toPlace(QPointF(150, 100)), at(-22500, -22500)) < view->pixel());
        view->fitFrame();
        QCOMPARE(placeAt(QPoint(0, 0)), corner);
    }

    void profileAndDatumAreDrawn()
    {
        showBoard();
        view->setBoard({QPolygonF({{0, 0}, {30e6, 0}, {30e6, 20e6}, {0, 20e6}, {0, 0}})}, at(10000, 10000));
        // The datum's cross in its color, the outline at the plate's edge.
        const QPoint datum = view->toScreen(at(10000, 10000)).toPoint();
        QVERIFY(pixel(datum.x() + 7, datum.y()) != color.rgb());
        const QPoint corner = view->toScreen(at(0, 20000)).toPoint();
        QVERIFY(qBlue(pixel(corner.x(), corner.y() + 20)) > 100);
    }

    void textStandsInForADrawing()
    {
        showBoard();
        view->showText("No job is open.");
        QVERIFY(pixel(60, 60) != color.rgb());
        QCOMPARE(placeAt(QPoint(150, 100)), QString()); // nothing to point at
    }
};

QTEST_MAIN(tst_BoardView)
#include "tst_boardview.moc"
