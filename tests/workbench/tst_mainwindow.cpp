// The workbench's window: the jobs, and what it does when a plug-in took in a file.
#include "plugin/interface/messages.h"
#include "pluginmanger/pluginhost.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/layerpanel.h"
#include "workbench/logcollector.h"
#include "workbench/logpane.h"
#include "workbench/mainwindow.h"
#include "workbench/manual.h"
#include "workbench/messagebar.h"
#include "workbench/windowmemory.h"
#include "workbench/windowplacer.h"

#include <QAction>
#include <QDialog>
#include <QDirIterator>
#include <QDockWidget>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScreen>
#include <QStatusBar>
#include <QTableWidget>
#include <QTreeWidget>
#include <QWindow>
#include <QtTest>
#if QT_CONFIG(textbrowser)
#include <QTextBlock>
#include <QTextBrowser>
#endif

namespace {

bool copyFolder(const QString &from, const QString &to)
{
    QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString target = to + "/" + QDir(from).relativeFilePath(files.next());
        if (!QDir().mkpath(QFileInfo(target).path()) || !QFile::copy(files.filePath(), target))
            return false;
    }
    return true;
}

void announceFile(QString path)
{
    PluginMetaData data;
    data.toPlugin = messages::layerList;
    data.msgType = messages::FileReady;
    data.payload = &path;
    PluginHost::instance().deliver(data);
}

} // namespace

class tst_MainWindow : public QObject
{
    Q_OBJECT

private:
    TemporaryWorkingFolder folder;
    LogCollector log;

    void addJob(const QString &name)
    {
        QVERIFY(copyFolder(SAMPLE_JOBS "/beacon", folder.filePath("job/" + name)));
    }

    // The name of the layer in the row `row` of the open job's matrix.
    static QString layerName(MainWindow &window, int row)
    {
        return window.findChild<LayerPanel *>()->findChild<QTableWidget *>()->item(row, 0)->text();
    }
    void renameFirstLayer()
    {
        QFile matrix(folder.filePath("job/beacon/matrix/matrix"));
        QVERIFY(matrix.open(QIODevice::ReadWrite));
        const QByteArray text = matrix.readAll().replace("NAME=STACKUP", "NAME=RENAMED");
        matrix.resize(0);
        matrix.seek(0);
        matrix.write(text);
    }

private slots:
    void cleanup() { QDir(folder.filePath("job")).removeRecursively(); }

    void withoutJobsNothingIsOpen()
    {
        MainWindow window(log);
        QCOMPARE(window.jobNames(), QStringList());
        QCOMPARE(window.openJobName(), QString());
        QCOMPARE(window.jobRoot(), folder.filePath("job"));
        QVERIFY(!window.importAction());
    }

    void openJobShowsItsStepsAndLayers()
    {
        addJob("beacon");
        MainWindow window(log);
        QCOMPARE(window.jobNames(), QStringList{"beacon"});
        window.openJob("beacon");
        QCOMPARE(window.openJobName(), QString("beacon"));
        QVERIFY(window.windowTitle().startsWith("beacon"));
        auto *layers = window.findChild<LayerPanel *>();
        QVERIFY(layers->layerCount() > 10);
        QCOMPARE(layers->currentStep().toLower(), QString("pcb"));
        QVERIFY(window.chooseStep("panel"));
        QCOMPARE(layers->currentStep().toLower(), QString("panel"));
        QVERIFY(!window.chooseStep("no such step"));
        QTRY_VERIFY_WITH_TIMEOUT(!window.isReadingLayer(), 20000);
    }

    void importedArchiveOpensItsJob()
    {
        MainWindow window(log);
        QSignalSpy imported(&window, &MainWindow::fileImported);
        addJob("beacon");
        announceFile("/somewhere/beacon.tgz");
        QCOMPARE(window.jobNames(), QStringList{"beacon"});
        QCOMPARE(window.openJobName(), QString("beacon"));
        QCOMPARE(imported.count(), 1);
        QCOMPARE(imported[0][1].toString(), QString("beacon"));
    }

    void archiveUnpackedUnderItsInnerNameOpensThatJob()
    {
        addJob("board");
        MainWindow window(log);
        addJob("inner");
        announceFile("/somewhere/board.tgz");
        QCOMPARE(window.openJobName(), QString("inner"));
    }

    void archiveOfAJobThatWasThereOpensItAgain()
    {
        addJob("beacon");
        addJob("other");
        MainWindow window(log);
        window.openJob("other");
        announceFile("/somewhere/beacon.tgz");
        QCOMPARE(window.openJobName(), QString("beacon"));
    }

    void archiveWithoutAJobOpensNothing()
    {
        MainWindow window(log);
        announceFile("/somewhere/holiday.tgz");
        QCOMPARE(window.openJobName(), QString());
        auto *bar = window.findChild<MessageBar *>();
        QVERIFY2(bar->text().contains("holiday.tgz holds no ODB++ job"), qPrintable(bar->text()));
        QVERIFY(bar->isFailure());
        // Nor does what is said for a few seconds cover it.
        announceFile("/somewhere/mask.gerber");
        QVERIFY(bar->text().contains("holiday.tgz holds no ODB++ job"));
    }

    void layerFileLeavesTheOpenJob()
    {
        addJob("beacon");
        MainWindow window(log);
        window.openJob("beacon");
        QVERIFY(folder.write("mask.gerber", "%FSLAX26Y26*%\n%MOMM*%\n%ADD10C,1*%\nD10*\nX0Y0D03*\nM02*\n"));
        announceFile(folder.filePath("mask.gerber"));
        QCOMPARE(window.openJobName(), QString("beacon"));
        auto *layers = window.findChild<LayerPanel *>();
        QTRY_COMPARE(layers->files(), QStringList{folder.filePath("mask.gerber")});
        QVERIFY(layers->isShown("mask.gerber"));
        QTRY_VERIFY_WITH_TIMEOUT(!window.isReadingLayer(), 20000);
    }

    void brokenGdsFileIsReportedInTheLog()
    {
        MainWindow window(log);
        QVERIFY(folder.write("mask.gds", "no stream"));
        announceFile(folder.filePath("mask.gds"));
        QCOMPARE(window.openJobName(), QString());
        QTRY_VERIFY(window.findChild<LogPane *>()->text().contains("mask.gds, byte 0: expected a record"));
        auto *bar = window.findChild<MessageBar *>();
        QVERIFY(bar->isFailure() && bar->text().contains("mask.gds"));
    }

    void jobThatIsGoneIsClosedOnRefresh()
    {
        addJob("beacon");
        MainWindow window(log);
        window.openJob("beacon");
        QTRY_VERIFY_WITH_TIMEOUT(!window.isReadingLayer(), 20000);
        QVERIFY(QDir(folder.filePath("job/beacon")).removeRecursively());
        window.refreshJobs();
        QCOMPARE(window.openJobName(), QString());
        QCOMPARE(window.findChild<LayerPanel *>()->layerCount(), 0);
    }

    void openJobIsReadAgain_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("F5") << true;
        QTest::newRow("click on the open job") << false;
    }
    void openJobIsReadAgain()
    {
        QFETCH(bool, byKey);
        addJob("beacon");
        MainWindow window(log);
        window.show();
        window.openJob("beacon");
        auto *layers = window.findChild<LayerPanel *>();
        QVERIFY(window.chooseStep("panel"));
        QVERIFY(layers->chooseLayer("GND"));
        QStringList names;
        for (int row = 0; row < layers->layerCount(); ++row)
            names << layerName(window, row);
        QVERIFY(names.contains("STACKUP"));
        renameFirstLayer();
        if (byKey) {
            for (QAction *action : window.findChildren<QAction *>()) {
                if (action->shortcut() == QKeySequence(QKeySequence::Refresh))
                    action->trigger();
            }
        } else {
            auto *list = window.findChild<QTreeWidget *>("Jobs");
            QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                              list->visualItemRect(list->topLevelItem(0)).center());
        }
        names.replaceInStrings("STACKUP", "RENAMED");
        for (int row = 0; row < layers->layerCount(); ++row)
            QCOMPARE(layerName(window, row), names[row]);
        QCOMPARE(layers->currentStep().toLower(), QString("panel"));
        QCOMPARE(QString::fromStdString(layers->currentLayer()->name), QString("GND"));
        QTRY_VERIFY_WITH_TIMEOUT(!window.isReadingLayer(), 20000);
    }

    void windowAndLastJobAreRemembered()
    {
        addJob("beacon");
        addJob("other");
        const QString file = folder.filePath("memory.ini");
        {
            WindowMemory memory(file);
            MainWindow window(log);
            window.remember(memory);
            window.show();
            window.resize(900, 640);
            window.findChild<QDockWidget *>("LogDock")->hide();
            window.openJob("beacon");
            window.openJob("other");
            QVERIFY(window.close());
        }
        WindowMemory memory(file);
        MainWindow window(log);
        window.remember(memory);
        window.show();
        QCOMPARE(window.size(), QSize(900, 640));
        QVERIFY(!window.findChild<QDockWidget *>("LogDock")->isVisible());
        QCOMPARE(memory.recentJobs(),
                 (QStringList{folder.filePath("job/other"), folder.filePath("job/beacon")}));
        window.openLastJob();
        QCOMPARE(window.openJobName(), QString("other"));
        QVERIFY(window.close());
        // A job that is gone is not opened.
        QVERIFY(QDir(folder.filePath("job/other")).removeRecursively());
        MainWindow later(log);
        later.remember(memory);
        later.openLastJob();
        QCOMPARE(later.openJobName(), QString());
        QVERIFY(QFile::remove(file));
    }

    void resizeOfTheSettingsIsSeen()
    {
        MainWindow plain(log);
        plain.addPlugins();
        QVERIFY(plain.findChild<QLabel *>("ResizeStatus")->isHidden());
        QVERIFY(folder.write("oxconfig.ini", "[Resize]\nvalue=-3\nunit=um\n"));
        MainWindow window(log);
        window.addPlugins();
        auto *status = window.findChild<QLabel *>("ResizeStatus");
        QVERIFY(!status->isHidden());
        QVERIFY2(status->text().contains("shrink features by 3 "), qPrintable(status->text()));
        QVERIFY(QFile::remove("oxconfig.ini"));
    }

#if QT_CONFIG(textbrowser) && QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    void linksOfTheGuideLeadSomewhereOrNowhere()
    {
        MainWindow window(log);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(&window, Qt::Key_F1);
        auto *browser = window.findChild<Manual *>()->findChild<QTextBrowser *>();
        const QUrl guide = browser->source();
        QStringList links;
        for (QTextBlock block = browser->document()->begin(); block.isValid(); block = block.next()) {
            for (auto part = block.begin(); !part.atEnd(); ++part) {
                const QString link = part.fragment().charFormat().anchorHref();
                if (!link.isEmpty() && !links.contains(link) && !QUrl(link).path().isEmpty())
                    links << link;
            }
        }
        QVERIFY(!links.isEmpty());
        for (const QString &link : links) {
            if (!QUrl(link).isRelative())
                continue;
            browser->setSource(guide.resolved(link));
            QCOMPARE(browser->source(), guide.resolved(link));
            QVERIFY(browser->toPlainText().size() > 1000);
        }
        LogCollector warnings;
        QSignalSpy logged(&warnings, &LogCollector::logged);
        const QUrl before = browser->source();
        browser->setSource(guide.resolved(QUrl("no-such-page.md")));
        QCOMPARE(browser->source(), before);
        QCOMPARE(logged.size(), 0);
    }
#endif

    void helpKeysOpenTheGuideAndTheListOfKeys()
    {
        MainWindow window(log);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(&window, Qt::Key_F1);
        auto *manual = window.findChild<Manual *>();
        QVERIFY(manual && manual->isVisible());
#if QT_CONFIG(textbrowser) && QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
        auto *browser = manual->findChild<QTextBrowser *>();
        QVERIFY(browser->toPlainText().contains("First steps"));
        QVERIFY(!browser->toPlainText().contains("## ")); // it is shown as it is meant
#elif !QT_CONFIG(textbrowser)
        QVERIFY(manual->findChild<QPlainTextEdit *>()->toPlainText().contains("First steps"));
#endif
        QTest::keyClick(&window, Qt::Key_F1);
        QCOMPARE(window.findChildren<Manual *>().size(), 1);
        QVERIFY(QTest::qWaitForWindowActive(manual));
        QTest::keyClick(manual, Qt::Key_Escape);
        QTRY_VERIFY(!window.findChild<Manual *>());

        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        ModalResponder responder;
        QStringList keys;
        responder.expect([&keys](QWidget *dialog) {
            QTreeWidgetItemIterator row(dialog->findChild<QTreeWidget *>());
            for (; *row; ++row)
                keys << (*row)->text(1);
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        QTest::keyClick(&window, Qt::Key_F1, Qt::ControlModifier);
        QCOMPARE(responder.pending(), 0);
        for (const char *key : {"F1", "F5", "Ctrl+Q", "F2"})
            QVERIFY2(keys.contains(key), key);
    }

    void noKeyHasTwoMeanings()
    {
        MainWindow window(log);
        window.addPlugins();
        QMap<QString, QString> commands;
        for (const QAction *action : window.findChildren<QAction *>()) {
            for (const QKeySequence &key : action->shortcuts()) {
                const QString other = commands.value(key.toString());
                QVERIFY2(other.isEmpty(), qPrintable(key.toString() + ": " + other + ", " + action->text()));
                commands[key.toString()] = action->text();
            }
        }
        QVERIFY(commands.size() > 5);
    }

    void windowsArePlacedOnTheScreen()
    {
        const QRect screen(100, 50, 1024, 600);
        QCOMPARE(WindowPlacer::placed({400, 300}, {200, 100, 800, 500}, screen), QRect(400, 200, 400, 300));
        QCOMPARE(WindowPlacer::placed({1200, 900}, {200, 100, 800, 500}, screen), screen);
        // Over a window at the edge they stay on the screen.
        QVERIFY(screen.contains(WindowPlacer::placed({500, 400}, {1000, 500, 800, 500}, screen)));
        QVERIFY(screen.contains(WindowPlacer::placed({500, 400}, {-300, -300, 350, 350}, screen)));
    }

    void windowOfAPluginBelongsToTheMainWindow()
    {
        MainWindow window(log);
        window.keepToScreen();
        window.show();
        QWidget plugins;
        plugins.resize(4000, 3000);
        plugins.show();
        QVERIFY(plugins.windowHandle()->transientParent() == window.windowHandle());
        QVERIFY(window.windowHandle()->screen()->availableGeometry().contains(plugins.geometry()));
        // What a plug-in has put somewhere stays there.
        QWidget corner;
        corner.resize(50, 50);
        corner.move(3, 4);
        corner.show();
        QCOMPARE(corner.pos(), QPoint(3, 4));
    }

    void unreadableMatrixIsReportedInTheWindowAndTheLog()
    {
        QVERIFY(folder.write("job/broken/matrix/matrix", "LAYER {\n"));
        MainWindow window(log);
        window.openJob("broken");
        QCOMPARE(window.findChild<LayerPanel *>()->layerCount(), 0);
        QTRY_VERIFY(
            window.findChild<LogPane *>()->text().contains("the layers of the job broken cannot be read"));
    }

    void windowStaysOpenWhileAModalDialogIsOpen()
    {
        MainWindow window(log);
        window.show();
        QDialog dialog;
        dialog.setWindowTitle("Choices");
        dialog.setModal(true);
        dialog.show();
        QVERIFY(!window.close());
        QVERIFY(window.isVisible());
        QVERIFY(window.statusBar()->currentMessage().contains("Choices"));
        dialog.close();
        QVERIFY(window.close());
    }
};

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
