// Files of other makers over the job: how they are opened, and what is seen of them.
#include "plugin/interface/messages.h"
#include "pluginmanger/pluginhost.h"
#include "tests/cam/support/gdsrecords.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/languages.h"
#include "workbench/layerpanel.h"
#include "workbench/logcollector.h"
#include "workbench/logpane.h"
#include "workbench/mainwindow.h"
#include "workbench/messagebar.h"
#include "workbench/view/boardview.h"
#include "workbench/view/featureoutline.h"
#include "workbench/view/graphicview.h"
#include "workbench/windowmemory.h"

#include <QAction>
#include <QDropEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QTableWidget>
#include <QtTest>

#include <cmath>

namespace {

// A hole of 1 mm at (0, 0), one of 2 mm at (10, 0), a slot of 1 mm from (0, 10) to (10, 10).
const QByteArray drill = "M48\nFMAT,2\nMETRIC,TZ,000.000\nT1C1.0\nT2C2.0\n%\nT1\nX0Y0\nT2\nX10000Y0\nT1\n"
                         "X0Y10000G85X10000Y10000\nM30\n";

void announceFile(QString path)
{
    PluginMetaData data;
    data.toPlugin = messages::layerList;
    data.msgType = messages::FileReady;
    data.payload = &path;
    PluginHost::instance().deliver(data);
}

// The color that is seen at a place, in millimetres.
QColor seenAt(const MainWindow &window, double x, double y)
{
    BoardView &board = window.findChild<GraphicView *>()->board();
    const QPointF at = board.toScreen({x * 1e6, y * 1e6}) * board.devicePixelRatioF();
    return board.grab().toImage().pixelColor(at.toPoint());
}

bool isDrawnAt(const MainWindow &window, double x, double y)
{
    return seenAt(window, x, y).lightness() > 80;
}

// On layer 4: a text at (1, 2) mm of texttype 6; on layer 1: a square of 2 mm about (5, 5), a path of 0.2 mm
// from (10, 0) to (20, 0), and another copy of the text's structure 5 mm higher.
QByteArray layout()
{
    using namespace gdsrecords;
    const QByteArray text = record(0x0c, 0) + record(0x0d, 2, shorts({4})) + record(0x16, 2, shorts({6})) +
                            record(0x10, 3, longs({1000000, 2000000})) + name(0x19, "R12") + record(0x11, 0);
    const QByteArray square = boundary(
        0, {4000000, 4000000, 6000000, 4000000, 6000000, 6000000, 4000000, 6000000, 4000000, 4000000});
    return library(structure("WORDS", text) +
                   structure("TOP", square + path(0, 200000, {10000000, 0, 20000000, 0}) +
                                        reference("WORDS", {0, 0}) + reference("WORDS", {0, 5000000})));
}

// A flash of 1 mm at (5, 5), one of 1 x 2 mm at (0, 0), a stroke of 0.2 mm from (10, 0) to (20, 0), a region
// of 10 x 10 mm at (30, 0), and a clear flash in its middle.
const QByteArray gerber =
    "%FSLAX46Y46*%\n%MOMM*%\n%ADD10C,1*%\n%ADD11R,1X2*%\n%ADD12C,0.2*%\nG01*\nD10*\nX5000000Y5000000D03*\n"
    "D11*\nX0Y0D03*\nD12*\nX10000000Y0D02*\nX20000000Y0D01*\nG36*\nX30000000Y0D02*\nG01*\n"
    "X40000000Y0D01*\nX40000000Y10000000D01*\nX30000000Y10000000D01*\nX30000000Y0D01*\nG37*\n%LPC*%\nD10*\n"
    "X35000000Y5000000D03*\nM02*\n";

// With `file` open and drawn.
void open(MainWindow &window, const QString &file)
{
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    announceFile(file);
    QTRY_COMPARE(window.findChild<LayerPanel *>()->files(), QStringList{file});
    QTRY_VERIFY_WITH_TIMEOUT(window.isViewDrawn(), 20000);
}

// Whether anything is drawn in the color of marks.
bool isMarked(BoardView &board)
{
    const QImage image = board.grab().toImage();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == markColor())
                return true;
        }
    }
    return false;
}

void click(MainWindow &window, double x, double y)
{
    BoardView &board = window.findChild<GraphicView *>()->board();
    QTest::mouseClick(&board, Qt::LeftButton, Qt::NoModifier, board.toScreen({x * 1e6, y * 1e6}).toPoint());
}

} // namespace

class tst_LayerFiles : public QObject
{
    Q_OBJECT

private:
    TemporaryWorkingFolder folder;
    LogCollector log;

    // A grid of flashes of 1 mm from (0, 0) on.
    QString addLargeFile()
    {
        QByteArray text = "%FSLAX46Y46*%\n%MOMM*%\n%ADD10C,1*%\nD10*\n";
        for (int i = 0; i < 30000; ++i)
            text +=
                "X" + QByteArray::number(i % 200) + "000000Y" + QByteArray::number(i / 200) + "000000D03*\n";
        return folder.write("large.gbr", text + "M02*\n") ? folder.filePath("large.gbr") : QString();
    }
    // No event is handled after that: it is not done, however fast it is.
    void startReading(MainWindow &window, const QString &path)
    {
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        announceFile(path);
        QVERIFY(window.isReadingLayer());
    }

private slots:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    void drillFilesAreOpened_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<QString>("name");
        QTest::newRow("Ctrl+O") << "key"
                                << "board.drl";
        QTest::newRow("drop") << "drop"
                              << "board.xln";
        QTest::newRow("drop, by its content") << "drop"
                                              << "board.tap";
        QTest::newRow("import") << "import"
                                << "board.exc";
        QTest::newRow("by its content") << "import"
                                        << "board.txt";
    }
    void drillFilesAreOpened()
    {
        QFETCH(const QString, way);
        QFETCH(const QString, name);
        QVERIFY(folder.write(name, drill));
        const QString path = folder.filePath(name);
        MainWindow window(log);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        ModalResponder responder;
        auto *view = window.findChild<GraphicView *>();
        if (way == "key") {
            responder.expect([&](QWidget *dialog) {
                auto *field = dialog->findChild<QLineEdit *>("fileNameEdit");
                field->setText(path);
                QTest::keyClick(field, Qt::Key_Return);
            });
            QTest::keyClick(&window, Qt::Key_O, Qt::ControlModifier);
            QCOMPARE(responder.pending(), 0);
        } else if (way == "drop") {
            QMimeData data;
            data.setUrls({QUrl::fromLocalFile(path)});
            const QPoint place(50, 50);
            QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(view, &enter);
            QVERIFY(enter.isAccepted());
            QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(view, &drop);
        } else {
            announceFile(path);
        }
        auto *layers = window.findChild<LayerPanel *>();
        QTRY_COMPARE(layers->files(), QStringList{path});
        QVERIFY(layers->isShown(name));
        QTRY_VERIFY_WITH_TIMEOUT(window.isViewDrawn(), 20000);
        QVERIFY(isDrawnAt(window, 0.0, 0.0));
        QVERIFY(isDrawnAt(window, 10.8, 0.0));
        QVERIFY(!isDrawnAt(window, 0.8, 0.0));
        QVERIFY(isDrawnAt(window, 5.0, 10.3));
        QVERIFY(!isDrawnAt(window, 5.0, 5.3));
        QCOMPARE(window.findChild<MessageBar *>()->text(), QString());
    }

    void aFileThatIsBeingReadIsListedAndSaysHowFarItIs()
    {
        const QString path = addLargeFile();
        MainWindow window(log);
        startReading(window, path);
        auto *layers = window.findChild<LayerPanel *>();
        QCOMPARE(layers->files(), QStringList{path});
        QVERIFY(layers->isShown("large.gbr"));
        const BoardView &board = window.findChild<GraphicView *>()->board();
        QVERIFY(QRegularExpression("^Reading large.gbr ... \\d+ %$").match(board.progress()).hasMatch());
        QTRY_VERIFY_WITH_TIMEOUT(window.isViewDrawn(), 60000);
        QCOMPARE(layers->files(), QStringList{path});
        QCOMPARE(board.progress(), QString());
        QVERIFY(isDrawnAt(window, 0.0, 0.0));
    }

    // By its menu.
    void aFileThatIsRemovedIsReadNoFurther()
    {
        const QString path = addLargeFile();
        MainWindow window(log);
        startReading(window, path);
        auto *layers = window.findChild<LayerPanel *>();
        auto *table = layers->findChild<QTableWidget *>();
        const QPoint place = table->visualItemRect(table->item(table->rowCount() - 1, 0)).center();
        bool isChosen = false;
        QTimer::singleShot(0, &window, [&isChosen] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            if (!menu)
                return;
            for (QAction *action : menu->actions()) {
                if (!action->text().startsWith("Remove large.gbr"))
                    continue;
                isChosen = true;
                QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier,
                                  menu->actionGeometry(action).center());
                return;
            }
            menu->close();
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, table->viewport()->mapToGlobal(place));
        QApplication::sendEvent(table->viewport(), &event);
        QVERIFY(isChosen);
        QVERIFY(layers->files().isEmpty());
        QVERIFY(!window.isReadingLayer());
        const BoardView &board = window.findChild<GraphicView *>()->board();
        QTRY_COMPARE(board.progress(), QString());
        window.findChild<GraphicView *>()->stopReading();
        QTest::qWait(100); // what has ended is taken in
        QVERIFY(layers->files().isEmpty());
        QCOMPARE(window.findChild<MessageBar *>()->text(), QString());
    }

    void aHiddenFileIsReadNoFurtherUntilItIsShown()
    {
        const QString path = addLargeFile();
        MainWindow window(log);
        startReading(window, path);
        auto *layers = window.findChild<LayerPanel *>();
        auto *table = layers->findChild<QTableWidget *>();
        const QPoint eye = table->visualItemRect(table->item(table->rowCount() - 1, 2)).center();
        QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, eye);
        QVERIFY(!layers->isShown("large.gbr"));
        QVERIFY(!window.isReadingLayer());
        QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, eye);
        QVERIFY(window.isReadingLayer());
        QTRY_VERIFY_WITH_TIMEOUT(window.isViewDrawn(), 60000);
        QVERIFY(isDrawnAt(window, 0.0, 0.0));
    }

    // Once more, or another one.
    void openingAFileAgainReadsItFromItsBegin()
    {
        const QString path = addLargeFile();
        MainWindow window(log);
        startReading(window, path);
        QVERIFY(folder.write("large.gbr", gerber)); // the earlier reading would not end well
        announceFile(path);
        auto *layers = window.findChild<LayerPanel *>();
        QCOMPARE(layers->files(), QStringList{path});
        QTRY_VERIFY_WITH_TIMEOUT(window.isViewDrawn(), 60000);
        QVERIFY(isDrawnAt(window, 5.0, 5.0));
        QCOMPARE(window.findChild<MessageBar *>()->text(), QString());
    }

    void quittingEndsTheReading()
    {
        const QString path = addLargeFile();
        {
            MainWindow window(log);
            startReading(window, path);
            QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier);
            QVERIFY(!window.isVisible());
        }
        QVERIFY(QFile::remove(path)); // nothing holds it any more, on Windows
    }

    void filesAreSeenWhenTheJobIsGone()
    {
        QVERIFY(QDir().mkpath(folder.filePath("job/gone/matrix")));
        QVERIFY(folder.write("job/gone/matrix/matrix", "STEP {\n   COL=1\n   NAME=PCB\n}\n"));
        QVERIFY(folder.write("kept.gbr", gerber));
        MainWindow window(log);
        window.openJob("gone");
        open(window, folder.filePath("kept.gbr"));
        QVERIFY(isDrawnAt(window, 5.0, 5.0));
        QVERIFY(QDir(folder.filePath("job/gone")).removeRecursively());
        window.refreshJobs();
        QCOMPARE(window.openJobName(), QString());
        QTRY_VERIFY_WITH_TIMEOUT(window.isViewDrawn(), 20000);
        QVERIFY(isDrawnAt(window, 5.0, 5.0));
    }

    void whatADrillFileLeavesOpenIsSaidInTheUsersLanguage_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("zeros");
        QTest::addColumn<QString>("digits");
        QTest::newRow("German")
            << "de" << QString::fromUtf8("open.drl: Es ist nicht angegeben, welche Nullen weggelassen sind")
            << QString::fromUtf8("gelesen als Zoll mit 2 Stellen vor und 4 hinter dem Dezimalpunkt");
        QTest::newRow("Chinese") << "zh_CN" << QString::fromUtf8("open.drl：未注明省略哪些零")
                                 << QString::fromUtf8("按英寸、小数点前 2 位、小数点后 4 位读取");
    }
    void whatADrillFileLeavesOpenIsSaidInTheUsersLanguage()
    {
        QFETCH(const QString, language);
        QFETCH(const QString, zeros);
        QFETCH(const QString, digits);
        QVERIFY(folder.write("open.drl", "M48\nM72\nT1C.04\n%\nT1\nX10000Y0\nM30\n"));
        Languages languages;
        languages.choose(language);
        MainWindow window(log);
        announceFile(folder.filePath("open.drl"));
        auto *bar = window.findChild<MessageBar *>();
        QTRY_VERIFY2(bar->text().contains(zeros), qPrintable(bar->text()));
        QVERIFY2(bar->text().contains(digits), qPrintable(bar->text()));
    }

    void whatADrillFileLeavesOpenIsSaid()
    {
        QVERIFY(folder.write("open.drl", "M48\nM72\nT1C.04\n%\nT1\nX10000Y0\nM30\n"));
        MainWindow window(log);
        announceFile(folder.filePath("open.drl"));
        auto *bar = window.findChild<MessageBar *>();
        QTRY_VERIFY2(bar->text().contains("open.drl: it is not stated which zeros are left out"),
                     qPrintable(bar->text()));
        QVERIFY(bar->text().contains("open.drl: the number format is not stated"));
        QVERIFY(!bar->isFailure());
        QVERIFY(window.findChild<LogPane *>()->text().contains("open.drl: the number format is not stated"));
    }

    void aDrillFileThatIsNotUnderstoodIsRefusedByLine()
    {
        QVERIFY(folder.write("bad.drl", "M48\nMETRIC,TZ\nT1C1.0\n%\nT1\nG32X0Y0A1\nM30\n"));
        MainWindow window(log);
        announceFile(folder.filePath("bad.drl"));
        auto *bar = window.findChild<MessageBar *>();
        QTRY_VERIFY(bar->isFailure());
        QVERIFY2(bar->text().contains("bad.drl:6: expected nothing of the code G32"),
                 qPrintable(bar->text()));
        QVERIFY(window.findChild<LayerPanel *>()->files().isEmpty());
    }

    void textsOfGdsiiFilesAreDrawn()
    {
        QVERIFY(folder.write("words.gds", layout()));
        MainWindow window(log);
        open(window, folder.filePath("words.gds"));
        auto *layers = window.findChild<LayerPanel *>();
        const QString row = "words.gds 4/6"; // the texttype is a row of its own
        QVERIFY(layers->isShown(row));
        BoardView &board = window.findChild<GraphicView *>()->board();
        const auto letters = [&](double x, double y) {
            const QRect beside(board.toScreen({x * 1e6, y * 1e6}).toPoint() + QPoint(4, -16), QSize(20, 14));
            const QImage image = board.grab(beside).toImage();
            int bright = 0;
            for (int i = 0; i < image.height(); ++i) {
                for (int j = 0; j < image.width(); ++j)
                    bright += image.pixelColor(j, i).lightness() > 110 ? 1 : 0;
            }
            return bright;
        };
        QVERIFY2(letters(1, 2) > 20, qPrintable(QString::number(letters(1, 2))));
        QVERIFY(letters(1, 7) > 20);
        QVERIFY(isDrawnAt(window, 1, 2)); // the point at its place
        layers->setShown(row, false);
        QTRY_VERIFY_WITH_TIMEOUT(window.isViewDrawn(), 20000);
        QCOMPARE(letters(1, 2), 0);
    }

    void aClickNamesTheFigure_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<QStringList>("said");
        QTest::newRow("flash") << "a.gbr" << gerber << 5.2 << 5.1
                               << QStringList{"Layer a.gbr", "Flash",
                                              QString::fromUtf8("Aperture D10, circle, 1.000 mm × 1.000 mm"),
                                              "At x 5.000  y 5.000 mm", "Line 8 of the file"};
        QTest::newRow("rectangle") << "a.gbr" << gerber << 0.2 << 0.7
                                   << QStringList{
                                          "Flash",
                                          QString::fromUtf8("Aperture D11, rectangle, 1.000 mm × 2.000 mm")};
        QTest::newRow("stroke") << "a.gbr" << gerber << 15.0 << 0.0
                                << QStringList{"Stroke", "Aperture D12, circle", "From x 10.000  y 0.000 mm",
                                               "To x 20.000  y 0.000 mm", "Length 10.000 mm"};
        QTest::newRow("region") << "a.gbr" << gerber << 32.0 << 2.0
                                << QStringList{"Region", QString::fromUtf8("10.000 mm × 10.000 mm"),
                                               "1 contours, 4 edges"};
        QTest::newRow("clear flash") << "a.gbr" << gerber << 35.0 << 5.0
                                     << QStringList{"Flash, clears", "Aperture D10",
                                                    "1 of 2 here; click again for the next"};
        QTest::newRow("boundary") << "a.gds" << layout() << 5.0 << 5.0
                                  << QStringList{"Layer a.gds 1/0", "Boundary", "Center x 5.000  y 5.000 mm",
                                                 QString::fromUtf8("2.000 mm × 2.000 mm"), "Structure TOP"};
        QTest::newRow("path") << "a.gds" << layout() << 15.0 << 0.0
                              << QStringList{"Path", "Width 0.200 mm", "Length 10.000 mm"};
        QTest::newRow("text") << "a.gds" << layout() << 1.0 << 7.0
                              << QStringList{"Layer a.gds 4/6", "Text", QString::fromUtf8("“R12”"),
                                             "At x 1.000  y 7.000 mm", "Structure WORDS"};
        QTest::newRow("hole") << "a.drl" << drill << 10.4 << 0.3
                              << QStringList{"Layer a.drl", "Hole", "Tool T2, 2.000 mm",
                                             "At x 10.000  y 0.000 mm", "Line 10 of the file"};
        QTest::newRow("slot") << "a.drl" << drill << 5.0 << 10.2
                              << QStringList{"Slot", "Tool T1, 1.000 mm", "Length 10.000 mm"};
    }
    void aClickNamesTheFigure()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, bytes);
        QFETCH(const double, x);
        QFETCH(const double, y);
        QFETCH(const QStringList, said);
        QVERIFY(folder.write(name, bytes));
        MainWindow window(log);
        open(window, folder.filePath(name));
        auto *view = window.findChild<GraphicView *>();
        QCOMPARE(view->inspected(), QStringList());
        click(window, x, y);
        for (const QString &fact : said)
            QVERIFY2(view->inspected().join('\n').contains(fact), qPrintable(view->inspected().join('\n')));
        QVERIFY(isMarked(view->board()));
        QTest::keyClick(&view->board(), Qt::Key_Escape);
        QVERIFY(!isMarked(view->board()));
        QCOMPARE(view->inspected(), QStringList());
    }

    void measurementsSnapToFigures_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QPointF>("from"); // millimetres, near the place
        QTest::addColumn<QPointF>("to");
        QTest::addColumn<QPointF>("offset"); // what is measured
        QTest::newRow("center of a flash to the end of a stroke")
            << "m.gbr" << gerber << QPointF(5.1, 5.1) << QPointF(10.1, 0.05) << QPointF(5, -5);
        QTest::newRow("corner of a flash to the corner of a region")
            << "m.gbr" << gerber << QPointF(0.55, 1.05) << QPointF(29.9, -0.1) << QPointF(29.5, -1);
        QTest::newRow("center and corner of a boundary")
            << "m.gds" << layout() << QPointF(5.1, 5.1) << QPointF(6.1, 6.1) << QPointF(1, 1);
        QTest::newRow("end and corner of a path")
            << "m.gds" << layout() << QPointF(10.05, 0.02) << QPointF(20.01, 0.12) << QPointF(10, 0.1);
        QTest::newRow("text to text")
            << "m.gds" << layout() << QPointF(1.1, 2.1) << QPointF(1.1, 7.1) << QPointF(0, 5);
        QTest::newRow("hole to the end of a slot")
            << "m.drl" << drill << QPointF(0.1, 0.1) << QPointF(10.1, 10.05) << QPointF(10, 10);
    }
    void measurementsSnapToFigures()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, bytes);
        QFETCH(const QPointF, from);
        QFETCH(const QPointF, to);
        QFETCH(const QPointF, offset);
        QVERIFY(folder.write(name, bytes));
        MainWindow window(log);
        open(window, folder.filePath(name));
        auto *view = window.findChild<GraphicView *>();
        BoardView &board = view->board();
        QTest::keyClick(&board, Qt::Key_M);
        // So near that the snap's eight pixels are a quarter of a millimetre.
        for (const QPointF &place : {from, to}) {
            board.setViewport({place.x() * 1e6, place.y() * 1e6}, 3e4 / board.devicePixelRatioF());
            click(window, place.x(), place.y());
        }
        const std::optional<Measurement> measured = view->measurement();
        QVERIFY(bool(measured));
        QVERIFY2(std::fabs(measured->dx() - offset.x() * 1e6) < 10.0 &&
                     std::fabs(measured->dy() - offset.y() * 1e6) < 10.0,
                 qPrintable(QString("%1 %2").arg(measured->dx()).arg(measured->dy())));
    }

    void filesStayListedAfterARestart()
    {
        QVERIFY(folder.write("kept.drl", drill));
        const QString path = folder.filePath("kept.drl");
        const QString memoryFile = folder.filePath("memory.ini");
        {
            WindowMemory memory(memoryFile);
            MainWindow window(log);
            window.remember(memory);
            open(window, path);
        }
        WindowMemory memory(memoryFile);
        MainWindow window(log);
        window.remember(memory);
        window.show();
        auto *menu = window.findChild<QMenu *>("RecentFiles");
        emit menu->aboutToShow();
        QCOMPARE(menu->actions().size(), 1);
        QCOMPARE(menu->actions().first()->text(), QString("&1  kept.drl"));
        menu->actions().first()->trigger();
        QTRY_COMPARE(window.findChild<LayerPanel *>()->files(), QStringList{path});
        QVERIFY(QFile::remove(path));
        emit menu->aboutToShow();
        QVERIFY(!menu->actions().first()->isEnabled());
    }
};

QTEST_MAIN(tst_LayerFiles)
#include "tst_layerfiles.moc"
