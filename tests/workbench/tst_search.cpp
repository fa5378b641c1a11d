// The search of the open step, by the keys and the mouse of whoever searches.
#include "tests/support/temporaryworkingfolder.h"
#include "tests/workbench/partsjob.h"
#include "workbench/layerpanel.h"
#include "workbench/logcollector.h"
#include "workbench/mainwindow.h"
#include "workbench/search/searchpanel.h"
#include "workbench/view/boardview.h"
#include "workbench/view/graphicview.h"

#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>
#include <QtTest>

class tst_Search : public QObject
{
    Q_OBJECT

private:
    JobFolder job{"job/parts"};
    LogCollector log;
    std::unique_ptr<MainWindow> window;

    GraphicView &view() const { return *window->findChild<GraphicView *>(); }
    SearchPanel &panel() const { return *window->findChild<SearchPanel *>(); }
    QLineEdit *line() const { return panel().findChild<QLineEdit *>(); }
    QTreeWidget *results() const { return panel().findChild<QTreeWidget *>(); }
    QString status() const { return panel().findChild<QLabel *>()->text(); }

    void open()
    {
        QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier);
        QTRY_VERIFY(panel().isVisible());
        QTRY_VERIFY(line()->hasFocus());
        QTRY_VERIFY_WITH_TIMEOUT(!panel().isReading(), 20000);
    }
    void type(const QString &text)
    {
        line()->selectAll();
        QTest::keyClick(line(), Qt::Key_Delete);
        QTest::keyClicks(line(), text);
        QTest::qWait(200); // longer than it waits for another letter
    }
    // "Components: U1 | Nets: GND, VCC"
    QString found() const
    {
        QStringList groups;
        for (int i = 0; i < results()->topLevelItemCount(); ++i) {
            QStringList names;
            for (int j = 0; j < results()->topLevelItem(i)->childCount(); ++j)
                names << results()->topLevelItem(i)->child(j)->text(0);
            groups << results()->topLevelItem(i)->text(0) + ": " + names.join(", ");
        }
        return groups.join(" | ");
    }
    QPointF onScreen(double x, double y) const { return view().board().toScreen({x * 1e6, y * 1e6}); }
    bool isSeen(double x, double y) const { return QRectF(view().board().rect()).contains(onScreen(x, y)); }
    // Whether a mark's color is within two pixels of the place.
    bool isMarked(double x, double y) const
    {
        const QImage image = view().board().grab().toImage();
        const QPoint at = onScreen(x, y).toPoint();
        for (int dy = -2; dy <= 2; ++dy) {
            for (int dx = -2; dx <= 2; ++dx) {
                if (!image.rect().contains(at + QPoint(dx, dy)))
                    continue;
                const QColor color = image.pixelColor(at + QPoint(dx, dy));
                if (color.red() > 150 && color.blue() > 150 && color.green() < 120)
                    return true;
            }
        }
        return false;
    }
    void waitForView() { QTRY_VERIFY_WITH_TIMEOUT(window->isViewDrawn(), 20000); }

private slots:
    void initTestCase() { writePartsJob(job); }
    void init()
    {
        window.reset(new MainWindow(log));
        window->resize(1200, 800);
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        window->openJob("parts");
        waitForView();
    }
    void cleanup() { window.reset(); }

    void everyKindIsFound_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("reference") << "u1"
                                   << "Components: U1";
        QTest::newRow("part") << "lm35"
                              << "Components: U1";
        QTest::newRow("package") << "0603"
                                 << "Components: R1";
        QTest::newRow("net") << "gnd"
                             << "Nets: GND";
        QTest::newRow("symbol") << "rect2000"
                                << "Symbols: rect2000x500";
        QTest::newRow("attribute of a feature") << ".string"
                                                << "Attributes: .string = first pad";
        QTest::newRow("attribute of a component") << "mount"
                                                  << "Attributes: .comp_mount_type = smt";
        QTest::newRow("property of a component") << "someone"
                                                 << "Attributes: Maker = Someone";
        QTest::newRow("beginnings first") << "r"
                                          << "Components: R1 | Symbols: r200, r1000, rect2000x500 | "
                                             "Attributes: .string = first pad, Maker = Someone";
        QTest::newRow("any letters") << "r?00"
                                     << "Symbols: r200";
        QTest::newRow("nothing") << "no such thing"
                                 << "";
    }
    void everyKindIsFound()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        open();
        type(text);
        QCOMPARE(found(), expected);
        if (expected.isEmpty())
            QVERIFY(status().contains("Nothing of that name"));
    }

    void everythingIsListedAtFirst()
    {
        open();
        QCOMPARE(found(),
                 QString("Components: R1, U1 | Nets: GND, VCC | Symbols: r200, r1000, rect2000x500 | "
                         "Attributes: .comp_mount_type = smt, .smd, .string = first pad, Maker = Someone"));
    }

    void returnShowsAComponent()
    {
        open();
        type("u1");
        QTest::keyClick(line(), Qt::Key_Return);
        waitForView();
        QVERIFY(isSeen(12, 5) && !isSeen(5, 5));
        QVERIFY2(isMarked(11, 6) && isMarked(14, 5.5), "the outline is not marked");
        QVERIFY(!isMarked(11, 5.5));
        QVERIFY2(status().contains("1 place"), qPrintable(status()));
    }

    void returnGoesFromPlaceToPlace()
    {
        open();
        type("gnd");
        QTest::keyClick(line(), Qt::Key_Return);
        waitForView();
        QVERIFY(isSeen(5, 5) && isSeen(10, 5));
        QVERIFY2(isMarked(5.5, 5) && isMarked(8, 5), "pad and track are not marked");
        QVERIFY2(!isMarked(15, 5.25), "the pad of another net is marked");
        QCOMPARE(view().found().count(), std::size_t(2)); // of the layer that is seen
        QTest::keyClick(line(), Qt::Key_Return);
        QCOMPARE(status(), QString("Place 1 of 2"));
        waitForView();
        QVERIFY(isSeen(5, 5) && !isSeen(10, 5));
        QTest::keyClick(line(), Qt::Key_Return);
        QCOMPARE(status(), QString("Place 2 of 2"));
        QTest::keyClick(line(), Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(status(), QString("Place 1 of 2"));
        QTest::keyClick(window.get(), Qt::Key_F3);
        QCOMPARE(status(), QString("Place 2 of 2"));
    }

    void layerThatHasItIsShown()
    {
        auto *layers = window->findChild<LayerPanel *>();
        layers->chooseLayer("BOTTOM");
        waitForView();
        open();
        type("rect2000");
        QTest::keyClick(line(), Qt::Key_Return);
        QTRY_COMPARE_WITH_TIMEOUT(view().found().count(), std::size_t(1), 20000);
        QVERIFY(layers->isShown("TOP"));
        waitForView();
        QVERIFY(isSeen(15, 5) && isMarked(14.5, 5.25));
    }

    void arrowsAndMouseChoose()
    {
        open();
        type("r");
        QTest::keyClick(line(), Qt::Key_Down);
        QVERIFY(line()->hasFocus());
        QTest::keyClick(line(), Qt::Key_Down);
        QCOMPARE(results()->currentItem()->text(0), QString("r200")); // past the title of its kind
        QTest::keyClick(line(), Qt::Key_Return);
        waitForView();
        QCOMPARE(view().found().count(), std::size_t(1));
        QTreeWidgetItem *component = results()->topLevelItem(0)->child(0);
        QTest::mouseClick(results()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          results()->visualItemRect(component).center());
        waitForView();
        QVERIFY(isSeen(5, 2) && isMarked(5.4, 1.8));
    }

    void escapeCloses()
    {
        open();
        type("u1");
        QTest::keyClick(line(), Qt::Key_Return);
        QVERIFY(view().found().target());
        QTest::keyClick(line(), Qt::Key_Escape);
        QVERIFY(!panel().isVisible());
        QVERIFY(!view().found().target());
        QVERIFY(view().board().hasFocus());
        open();
        QCOMPARE(line()->selectedText(), QString("u1"));
    }

    void nestedStepsAreSearched()
    {
        QVERIFY(window->chooseStep("PANEL"));
        waitForView();
        open();
        type("u1");
        QTest::keyClick(line(), Qt::Key_Return);
        waitForView();
        QCOMPARE(view().found().count(), std::size_t(2)); // one in each copy
        QVERIFY(isSeen(12, 5) && isSeen(42, 5));
        QVERIFY(isMarked(11, 6) && isMarked(41, 6));
        type("rect2000");
        QTest::keyClick(line(), Qt::Key_Return);
        QTRY_COMPARE_WITH_TIMEOUT(view().found().count(), std::size_t(2), 20000);
    }

    void moreThanFitIsSaid()
    {
        QByteArray components = "UNITS=MM\n";
        for (int i = 0; i < 1000; ++i)
            components += "CMP 0 1 1 0 N C" + QByteArray::number(i) + " 100n\n";
        job.write("steps/pcb/layers/comp_+_bot/components", components);
        window->openJob("parts");
        open();
        type("C");
        QTreeWidgetItem *group = results()->topLevelItem(0);
        QCOMPARE(group->childCount(), 301);
        QCOMPARE(group->child(300)->text(0), QString("700 more: type more of the name"));
        QCOMPARE(group->child(2)->text(0), QString("C2")); // not C10
        writePartsJob(job);
    }

    void withoutAJobNothingIsFound()
    {
        open();
        type("u1");
        QTest::keyClick(line(), Qt::Key_Return);
        QVERIFY(view().found().target());
        view().showText("No job is open.");
        QCOMPARE(found(), QString());
        QVERIFY(status().contains("No job is open"));
        QVERIFY(!view().found().target());
        QTest::keyClick(line(), Qt::Key_Return); // nothing is chosen
    }

    void anotherStepIsReadAnew()
    {
        open();
        type("u1");
        QCOMPARE(found(), QString("Components: U1"));
        job.write("steps/pcb/layers/comp_+_top/components", "UNITS=MM\nCMP 0 12 5 0 N U17 X\n");
        window->openJob("parts");
        QTRY_VERIFY_WITH_TIMEOUT(found() == "Components: U17", 20000);
        writePartsJob(job);
    }
};

QTEST_MAIN(tst_Search)
#include "tst_search.moc"
