// The view of a layer: what it draws, and how it is moved.
#include "tests/export/wheel.h"
#include "workbench/view/layerview.h"

#include <QSignalSpy>
#include <QtTest>

#include <cmath>
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

class tst_LayerView : public QObject
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

    // How bright the pixels are on the whole, 0 to 1 of the colour, in a part of the view without grid and
    // labels.
    double brightness(const QRect &part) const
    {
        const QImage image = view->grab(part).toImage().convertToFormat(QImage::Format_RGB32);
        double sum = 0.0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                sum += (qRed(image.pixel(x, y)) - 24) / (255.0 - 24);
        }
        return sum / (image.width() * image.height());
    }

    void smallAreasDoNotVanish_data()
    {
        QTest::addColumn<double>("width");
        QTest::addColumn<double>("height");
        QTest::newRow("a fifth of a pixel") << 0.2 << 0.2;
        QTest::newRow("a thousandth") << 0.001 << 0.001;
        QTest::newRow("nothing") << 0.0 << 0.0;
        QTest::newRow("almost a pixel") << 0.9 << 0.9;
        QTest::newRow("thin and high") << 0.01 << 7.0;
        QTest::newRow("thin and wide") << 7.0 << 0.01;
    }
    // One pixel a millimetre; the small area lies somewhere in its pixel.
    void smallAreasDoNotVanish()
    {
        QFETCH(double, width);
        QFETCH(double, height);
        for (const QPointF at : {QPointF(0.5, 0.5), QPointF(0.02, 0.07), QPointF(0.95, 0.3)}) {
            QVector<QPolygonF> areas{rectangle(0, 0, 276, 184)};
            areas[0] = rectangle(0, 0, 276, 2);
            areas << rectangle(0, 182, 276, 184);
            const double x = 60 + at.x(), y = 110 + at.y();
            areas << rectangle(x, y, x + width, y + height);
            view->showDrawing(drawingOf(areas), "", color, false);
            // No line of the grid runs there.
            const QRect part(70, 70, 20, 20);
            const double pixels = brightness(part) * part.width() * part.height();
            QVERIFY2(pixels > 0.3 && pixels < 17.0, qPrintable(QString::number(pixels)));
        }
    }

    // A hundred thousand pads of a third of a pixel, of which a quarter of the place is covered.
    void denseSmallAreasAreAsDarkAsTheyCover()
    {
        QVector<QPolygonF> areas;
        for (double x = 0; x < 276; x += 0.7) {
            for (double y = 0; y < 184; y += 0.7)
                areas << rectangle(x, y, x + 0.5, y + 0.5);
        }
        view->showDrawing(drawingOf(areas), "", color, false);
        const double share = brightness(QRect(100, 60, 60, 60));
        QVERIFY2(std::fabs(share - 0.51) < 0.08, qPrintable(QString::number(share)));
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

QTEST_MAIN(tst_LayerView)
#include "tst_layerview.moc"
