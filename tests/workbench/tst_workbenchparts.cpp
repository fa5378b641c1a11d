// Components, nets and attributes in the view: component layers, and what a click says. Through real events.
#include "tests/support/temporaryworkingfolder.h"
#include "tests/workbench/partsjob.h"
#include "workbench/layerpanel.h"
#include "workbench/logcollector.h"
#include "workbench/mainwindow.h"
#include "workbench/view/boardview.h"
#include "workbench/view/graphicview.h"

#include <QtTest>

class tst_WorkbenchParts : public QObject
{
    Q_OBJECT

private:
    JobFolder job{"job/parts"};
    LogCollector log;
    QString logged;
    std::unique_ptr<MainWindow> window;

    GraphicView &view() const { return *window->findChild<GraphicView *>(); }
    LayerPanel &layers() const { return *window->findChild<LayerPanel *>(); }
    void showOnly(const QString &layer)
    {
        layers().chooseNone();
        for (const char *name : {"COMP_+_TOP", "TOP", "BOTTOM", "COMP_+_BOT"})
            layers().setShown(name, layer == name);
        QTRY_VERIFY_WITH_TIMEOUT(window->isViewDrawn(), 20000);
    }
    void click(double x, double y)
    {
        QTest::mouseClick(&view().board(), Qt::LeftButton, Qt::NoModifier,
                          view().board().toScreen({x * 1e6, y * 1e6}).toPoint());
    }
    // What the view says about the place, when all of it has come.
    QString said(double x, double y)
    {
        click(x, y);
        if (!QTest::qWaitFor([this] { return !view().isInspecting(); }, 20000))
            qFatal("the files are read for too long");
        return view().inspected().join('\n');
    }
    QColor colorAt(double x, double y)
    {
        const QImage image = view().board().grab().toImage();
        const QPoint at = view().board().toScreen({x * 1e6, y * 1e6}).toPoint();
        QColor brightest(Qt::black);
        for (int dy = -1; dy <= 1; ++dy) {
            for (int dx = -1; dx <= 1; ++dx) {
                const QColor color = image.pixelColor(at + QPoint(dx, dy));
                if (color.lightness() > brightest.lightness())
                    brightest = color;
            }
        }
        return brightest;
    }

private slots:
    void initTestCase()
    {
        writePartsJob(job);
        connect(&log, &LogCollector::logged, this,
                [this](const LogRecord &record) { logged += record.text + '\n'; });
    }
    void init()
    {
        window.reset(new MainWindow(log));
        window->resize(1200, 800);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        window->openJob("parts");
    }
    void cleanup() { window.reset(); }

    void aClickTellsNetAttributesAndLine()
    {
        showOnly("TOP");
        const QString pad = said(4.7, 5);
        QVERIFY2(pad.contains("Pad") && pad.contains("r1000") && pad.contains("Net GND"), qPrintable(pad));
        QVERIFY2(pad.contains(".smd\n") && pad.contains(".string = first pad"), qPrintable(pad));
        QVERIFY2(pad.contains("feature 1, line 8 of its file"), qPrintable(pad));
        const QString other = said(15.9, 5.1);
        QVERIFY2(other.contains("Net VCC") && other.contains("line 11 of its file"), qPrintable(other));
    }

    void textIsOneThing()
    {
        showOnly("TOP");
        const QString text = said(2.066, 8.133);
        QVERIFY2(text.contains("Text \"A A\"") && text.contains("feature 3, line 10"), qPrintable(text));
        QVERIFY2(!text.contains("click again"), qPrintable(text));
    }

    void componentLayersDrawTheirComponents_data()
    {
        QTest::addColumn<QString>("layer");
        QTest::addColumn<QPointF>("onOutline");
        QTest::addColumn<QPointF>("beside");
        QTest::newRow("top") << "COMP_+_TOP" << QPointF(10, 5.5) << QPointF(9.5, 5.5);
        // R1 is turned by 90 degrees: 0.8 wide, 1.6 high.
        QTest::newRow("bottom") << "COMP_+_BOT" << QPointF(5.4, 1.8) << QPointF(5.8, 1.8);
    }
    void componentLayersDrawTheirComponents()
    {
        QFETCH(QString, layer);
        QFETCH(QPointF, onOutline);
        QFETCH(QPointF, beside);
        showOnly(layer);
        view().board().showBox([] {
            cam::Box box;
            box.add(cam::Point{2e6, 0});
            box.add(cam::Point{14e6, 8e6});
            return box;
        }());
        QTRY_VERIFY_WITH_TIMEOUT(window->isViewDrawn(), 20000);
        QVERIFY(colorAt(onOutline.x(), onOutline.y()).lightness() > 90);
        QVERIFY(colorAt(beside.x(), beside.y()).lightness() < 60);
    }

    void namesAreDrawnWhereThereIsRoom()
    {
        showOnly("COMP_+_TOP");
        const auto bright = [this](double reach) {
            cam::Box box;
            box.add(cam::Point{(12 - reach) * 1e6, (5 - reach) * 1e6});
            box.add(cam::Point{(12 + reach) * 1e6, (5 + reach) * 1e6});
            view().board().showBox(box);
            if (!QTest::qWaitFor([this] { return window->isViewDrawn(); }, 20000))
                qFatal("the view is not drawn");
            // Inside of the outline, right of the dot on the first pin.
            const QRect inside(view().board().toScreen({11.2e6, 5.8e6}).toPoint(),
                               view().board().toScreen({13.2e6, 4.2e6}).toPoint());
            const QImage image = view().board().grab(inside).toImage();
            int pixels = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    pixels += image.pixelColor(x, y).lightness() > 90;
            }
            return pixels;
        };
        QVERIFY(bright(4) > 10);
        QCOMPARE(bright(200), 0);
    }

    void aClickInAComponentTellsOfIt()
    {
        showOnly("COMP_+_TOP");
        const QString u1 = said(12.9, 5.6);
        for (const char *fact : {"Component U1", "Part LM358", "Package SO8", "4.000 mm", "On the top side",
                                 "2 pins", ".comp_mount_type = smt", "Maker = Someone", "line 3 of its file"})
            QVERIFY2(u1.contains(fact), qPrintable(u1));
        showOnly("COMP_+_BOT");
        const QString r1 = said(5.2, 2.5);
        QVERIFY2(r1.contains("Component R1") && r1.contains("On the bottom side"), qPrintable(r1));
    }

    void nestedStepsHaveTheirPartsToo()
    {
        QVERIFY(window->chooseStep("PANEL"));
        showOnly("TOP");
        const QString pad = said(45.9, 5.1);
        QVERIFY2(pad.contains("Net VCC") && pad.contains("Step pcb"), qPrintable(pad));
        showOnly("COMP_+_TOP");
        const QString u1 = said(42.9, 5.6);
        QVERIFY2(u1.contains("Component U1"), qPrintable(u1));
    }

    void brokenFilesCostWhatTheyWouldTell()
    {
        job.write("steps/pcb/eda/data", "NET GND\nFID C what\n");
        job.write("steps/pcb/layers/comp_+_top/components", "CMP 0 1\n");
        window->openJob("parts");
        showOnly("TOP");
        const QString pad = said(4.7, 5);
        QVERIFY2(pad.contains(".string = first pad") && !pad.contains("Net"), qPrintable(pad));
        showOnly("COMP_+_TOP");
        QVERIFY(said(12, 5).isEmpty());
        QVERIFY2(logged.contains("data:2: expected the number of a layer"), qPrintable(logged));
        QVERIFY2(logged.contains("components:1: expected"), qPrintable(logged));
        writePartsJob(job);
    }
};

QTEST_MAIN(tst_WorkbenchParts)
#include "tst_workbenchparts.moc"
