// The workbench's window: the jobs, and what it does when a plug-in took in a file.
#include "pluginmanger/pluginhost.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/layerpanel.h"
#include "workbench/logcollector.h"
#include "workbench/logpane.h"
#include "workbench/mainwindow.h"

#include <QDialog>
#include <QDirIterator>
#include <QStatusBar>
#include <QtTest>

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
    data.toPlugin = "ListBar_PNList";
    data.msgType = 10000401;
    data.payload = &path;
    PluginHost::instance().deliver(data);
}

} // namespace

class TestMainWindow : public QObject
{
    Q_OBJECT

private:
    TemporaryWorkingFolder folder;
    LogCollector log;

    void addJob(const QString &name)
    {
        QVERIFY(copyFolder(SAMPLE_JOBS "/beacon", folder.filePath("job/" + name)));
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
        QVERIFY(window.statusBar()->currentMessage().contains("holiday.tgz holds no ODB++ job"));
    }

    void layerFileLeavesTheOpenJob()
    {
        addJob("beacon");
        MainWindow window(log);
        window.openJob("beacon");
        announceFile("/somewhere/mask.gerber");
        QCOMPARE(window.openJobName(), QString("beacon"));
        QVERIFY(window.statusBar()->currentMessage().contains("mask.gerber belongs to no job"));
    }

    void brokenGdsFileIsReportedInTheLog()
    {
        MainWindow window(log);
        QVERIFY(folder.write("mask.gds", "no stream"));
        announceFile(folder.filePath("mask.gds"));
        QCOMPARE(window.openJobName(), QString());
        QTRY_VERIFY(window.findChild<LogPane *>()->text().contains("mask.gds, byte 0: expected a record"));
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

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
