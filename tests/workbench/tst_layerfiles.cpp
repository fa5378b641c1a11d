// Files of other makers over the job: how they are opened, and what is seen of them.
#include "plugin/interface/messages.h"
#include "pluginmanger/pluginhost.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/layerpanel.h"
#include "workbench/logcollector.h"
#include "workbench/logpane.h"
#include "workbench/mainwindow.h"
#include "workbench/messagebar.h"
#include "workbench/view/boardview.h"
#include "workbench/view/graphicview.h"

#include <QAction>
#include <QDropEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMimeData>
#include <QtTest>

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

} // namespace

class tst_LayerFiles : public QObject
{
    Q_OBJECT

private:
    TemporaryWorkingFolder folder;
    LogCollector log;

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
};

QTEST_MAIN(tst_LayerFiles)
#include "tst_layerfiles.moc"
