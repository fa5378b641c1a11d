// The view of a layer: what it draws, and how it is moved.
#include "tests/export/wheel.h"
#include "workbench/view/layerview.h"

#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

QPolygonF rectangle(double left, double bottom, double right, double top)
{
    return QPolygonF({{left, bottom}, {right, bottom}, {right, top}, {left, top}, {left, bottom}});
}

LayerDrawing drawingOf(const QVector<QPolygonF> &areas, const QVector<QPolygonF> &outlines = {})
{
    LayerDrawing drawing;
    drawing.areas = areas;
    drawing.outlines = outlines;
    for (const QPolygonF &polygon : areas + outlines)
        drawing.bounds |= polygon.boundingRect();
    return drawing;
}

} // namespace

class TestLayerView : public QObject
{
    Q_OBJECT

private:
    const QColor color{255, 215, 0};
    std::unique_ptr<LayerView> view;

    QRgb pixel(int x, int y) const
    {
        return view->grab().toImage().convertToFormat(QImage::Format_RGB32).pixel(x, y);
    }

    // A board of 30 x 20 mm fills 276 of 300 pixels: 9.2 pixels a millimetre, its middle in the middle.
    void showBoard() { view->showDrawing(drawingOf({rectangle(0, 0, 30, 20)}), "TOP", color, false); }

    QString placeAt(const QPoint &point)
    {
        QSignalSpy pointed(view.get(), &LayerView::pointed);
        QMouseEvent move(QEvent::MouseMove, point, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(view.get(), &move);
        return pointed.value(0).value(0).toString();
    }

    // The view zooms about the place that the mouse was moved to last.
    void turnWheelAt(const QPoint &point, int steps)
    {
        placeAt(point);
        turnWheel(view.get(), steps);
    }

private slots:
    void init()
    {
        view.reset(new LayerView);
        view->resize(300, 200);
        view->show();
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
        view->showDrawing(drawingOf({rectangle(0, 10, 30, 20)}, {rectangle(0, 0, 30, 20)}), "TOP", color,
                          false);
        QCOMPARE(pixel(150, 60), color.rgb());
        QVERIFY(pixel(150, 140) != color.rgb());
    }

    void areasThatTouchShowNoSeam()
    {
        // The border between them lies between two pixels.
        view->showDrawing(drawingOf({rectangle(0, 0, 14.98765, 20), rectangle(14.98765, 0, 30, 20)}), "TOP",
                          color, false);
        for (int x = 140; x < 160; ++x)
            QCOMPARE(pixel(x, 100), color.rgb());
    }

    void placesUnderTheMouseAreInMillimetres()
    {
        showBoard();
        QCOMPARE(placeAt(QPoint(150, 100)), QString("x 15.000  y 10.000 mm"));
        QCOMPARE(placeAt(QPoint(242, 54)), QString("x 25.000  y 15.000 mm"));
    }

    void wheelZoomsAboutTheMouse()
    {
        showBoard();
        const QPoint mouse(242, 54);
        const QString before = placeAt(mouse);
        turnWheelAt(mouse, 4);
        QCOMPARE(placeAt(mouse), before);
        QVERIFY(placeAt(QPoint(150, 100)) != QString("x 15.000  y 10.000 mm"));
    }

    void draggingMovesTheLayerWithTheMouse()
    {
        showBoard();
        QMouseEvent press(QEvent::MouseButtonPress, QPoint(150, 100), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(view.get(), &press);
        QMouseEvent move(QEvent::MouseMove, QPoint(196, 100), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view.get(), &move);
        QCOMPARE(placeAt(QPoint(196, 100)), QString("x 15.000  y 10.000 mm"));
    }

    void doubleClickShowsEverythingAgain()
    {
        showBoard();
        turnWheelAt(QPoint(10, 10), 10);
        QTest::mouseDClick(view.get(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
        QCOMPARE(placeAt(QPoint(150, 100)), QString("x 15.000  y 10.000 mm"));
    }

    void fittedLayerFollowsTheWindow()
    {
        showBoard();
        view->resize(600, 400);
        QTRY_COMPARE(placeAt(QPoint(300, 200)), QString("x 15.000  y 10.000 mm"));
        QCOMPARE(placeAt(QPoint(484, 200)), QString("x 25.000  y 10.000 mm"));
    }

    void anotherLayerOfTheJobKeepsThePlace()
    {
        showBoard();
        turnWheelAt(QPoint(242, 54), 4);
        const QString corner = placeAt(QPoint(0, 0));
        view->showDrawing(drawingOf({rectangle(0, 0, 5, 5)}), "BOTTOM", color, true);
        QCOMPARE(placeAt(QPoint(0, 0)), corner);
        view->showDrawing(drawingOf({rectangle(0, 0, 5, 5)}), "BOTTOM", color, false);
        QVERIFY(placeAt(QPoint(0, 0)) != corner);
    }

    void textStandsInForADrawing()
    {
        showBoard();
        view->showText("No job is open.");
        QVERIFY(pixel(60, 60) != color.rgb());
        QCOMPARE(placeAt(QPoint(150, 100)), QString()); // nothing to point at
    }

    void emptyLayerIsShownAsEmpty()
    {
        view->showDrawing(LayerDrawing(), "EMPTY", color, false);
        QVERIFY(pixel(150, 100) != color.rgb());
    }
};

QTEST_MAIN(TestLayerView)
#include "tst_layerview.moc"
