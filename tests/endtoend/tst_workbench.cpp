// The workbench's window with the built module in it.
#include "pluginmanger/pluginhost.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"
#include "workbench/logcollector.h"
#include "workbench/mainwindow.h"
#include "workbench/parentwidget.h"

#include <QAction>
#include <QApplication>
#include <QDirIterator>
#include <QFileDialog>
#include <QtTest>

#include <memory>

namespace {

QVector<QWidget *> exportDialogs()
{
    QVector<QWidget *> dialogs;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->inherits("Export"))
            dialogs << window;
    }
    return dialogs;
}

void closeExportDialogs()
{
    for (QWidget *dialog : exportDialogs())
        dialog->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void sendToPlugin(qint32 type)
{
    PluginMetaData data;
    data.toPlugin = "File_Process.dll";
    data.msgType = type;
    QVERIFY(PluginHost::instance().deliver(data));
}

} // namespace

class TestWorkbench : public QObject
{
    Q_OBJECT

private:
    TemporaryWorkingFolder folder;
    LogCollector log;
    std::unique_ptr<MainWindow> window;

private slots:
    void initTestCase()
    {
        QDirIterator files(SAMPLE_JOBS "/beacon", QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString target =
                folder.filePath("job/beacon/" + QDir(SAMPLE_JOBS "/beacon").relativeFilePath(files.next()));
            QVERIFY(QDir().mkpath(QFileInfo(target).path()) && QFile::copy(files.filePath(), target));
        }
    }

    void init()
    {
        window.reset(new MainWindow(log));
        window->show();
        QCOMPARE(PluginHost::instance().loadFolder(QCoreApplication::applicationDirPath() + "/plugins"), 1);
        window->addPlugins();
    }

    void cleanup()
    {
        closeExportDialogs();
        window.reset();
        PluginHost::instance().destroyPlugins();
    }

    void exportNeedsAnOpenJob()
    {
        QVERIFY(window->importAction()->isEnabled());
        QVERIFY(!window->exportAction()->isEnabled());
        window->openJob("beacon");
        QVERIFY(window->exportAction()->isEnabled());
    }

    void oneClickOpensOneDialogOfTheOpenJob()
    {
        window->openJob("beacon");
        window->pressButton(window->exportAction());
        QTRY_COMPARE(exportDialogs().size(), 1);
        QTest::qWait(100);
        QCOMPARE(exportDialogs().size(), 1);
    }

    void twoClicksOpenTwoDialogs()
    {
        window->openJob("beacon");
        window->pressButton(window->exportAction());
        QTRY_COMPARE(exportDialogs().size(), 1);
        window->exportAction()->trigger();
        QTRY_COMPARE(exportDialogs().size(), 2);
    }

    void exportRequestOfAnotherPluginDoesWhatAClickDoes()
    {
        window->openJob("beacon");
        sendToPlugin(10000802);
        QTRY_COMPARE(exportDialogs().size(), 1);
    }

    void exportRequestWithoutAJobOpensNothing()
    {
        sendToPlugin(10000802);
        QTest::qWait(100);
        QCOMPARE(exportDialogs().size(), 0);
    }

    void importRequestOfAnotherPluginOpensTheFileDialog()
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        ModalResponder responder;
        QString title;
        QWidget *parent = nullptr;
        responder.expect([&](QWidget *dialog) {
            title = dialog->windowTitle();
            parent = dialog->parentWidget();
            qobject_cast<QFileDialog *>(dialog)->reject();
        });
        sendToPlugin(10000801);
        QCOMPARE(responder.pending(), 0);
        QCOMPARE(title, QString("Import"));
        QCOMPARE(parent, static_cast<QWidget *>(window.get()));
    }

    void layerThatIsBeingReadDoesNotHoldTheExportUp()
    {
        window->openJob("beacon"); // begins to read its first copper layer
        QVERIFY(window->isReadingLayer());
        window->pressButton(window->exportAction());
        QTRY_COMPARE(exportDialogs().size(), 1);
        QVERIFY(!window->isReadingLayer());
    }

    void parentWidgetIsReachedThroughTheExportedName()
    {
        const LoadedPlugin &plugin = PluginHost::instance().plugins().first();
        QVERIFY(setPluginParentWidget(plugin, window.get()));
        LoadedPlugin other = plugin;
        other.file = QCoreApplication::applicationFilePath(); // a module without that name
        QVERIFY(!setPluginParentWidget(other, window.get()));
    }

    void closingTheProgramWithAnOpenDialogIsSafe()
    {
        window->openJob("beacon");
        window->pressButton(window->exportAction());
        QTRY_COMPARE(exportDialogs().size(), 1);
        QVERIFY(!window->close()); // the dialog is modal
        closeExportDialogs();
        QVERIFY(window->close());
    }
};

QTEST_MAIN(TestWorkbench)
#include "tst_workbench.moc"
