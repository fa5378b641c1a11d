// The plug-in object as the host sees it: interfaces, meta-object, actions, and the way to the Export dialog.

#include "plugin/interface/exportjobinfo.h"
#include "tests/support/exportdialogs.h"
#include "tests/support/fileprocessaccess.h"
#include "tests/support/recordinghost.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QAction>
#include <QLineEdit>
#include <QTableWidget>
#include <QToolBar>
#include <QtTest>

#include <memory>

extern "C" QObject *qt_plugin_instance();

namespace {

PluginMetaData jobContext(ExportJobInfo *job)
{
    PluginMetaData data;
    data.msgType = 10000503;
    data.payload = job;
    return data;
}

} // namespace

class tst_FileProcess : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theEntryKeepsOneObjectWhileItLives();
    void castsAnswerTheInterfaceNames_data();
    void castsAnswerTheInterfaceNames();
    void methodsHaveTheirIndices_data();
    void methodsHaveTheirIndices();
    void theRecordsMetaTypeHasTwoNames();
    void aQueuedCallOfTheFirstSignalEmitsIt();
    void toolsHaveTheirTextsAndIcons();
    void toolbarActionsHaveTheIconsOfTheirFiles();
    void toolbarGetsImportThenExport();
    void toolbarImportIsNotConnected();
    void toolbarExportIsConnected();
    void bothWaysTogetherSendTheRequestsTwice();
    void everyCallMakesNewActions();
    void importToolReadsTheSettings();
    void noDialogOpensWithoutAnAnswer();
    void theContextOpensTheDialog();
    void aSecondContextOpensASecondDialog();
    void aContextWithoutJobOpensAnEmptyDialog();
    void theDialogTakesTheSettings();
    void theSecondConstructorLeavesTheMetaTypeAlone();

private:
    TemporaryWorkingFolder m_folder;
};

void tst_FileProcess::init()
{
    recording_host::reset();
    QFile::remove("oxconfig.ini");
}

void tst_FileProcess::cleanup()
{
    qDeleteAll(openExportDialogs());
}

void tst_FileProcess::theEntryKeepsOneObjectWhileItLives()
{
    QPointer<QObject> first = qt_plugin_instance();
    QVERIFY(qobject_cast<FileProcess *>(first));
    QCOMPARE(qt_plugin_instance(), first.data());
    delete first;
    QVERIFY(!first);
    QPointer<QObject> second = qt_plugin_instance();
    QVERIFY(qobject_cast<FileProcess *>(second));
    delete second;
}

void tst_FileProcess::castsAnswerTheInterfaceNames_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("answer");
    QTest::newRow("object") << QByteArray("FileProcess") << "object";
    QTest::newRow("interface") << QByteArray("FileProInterface") << "interface";
    QTest::newRow("identifier") << QByteArray("PluginManager.FileProInterface") << "interface";
    QTest::newRow("base interface") << QByteArray("PluginInterface") << "null";
    QTest::newRow("QObject") << QByteArray("QObject") << "object";
    QTest::newRow("other") << QByteArray("Export") << "null";
}

void tst_FileProcess::castsAnswerTheInterfaceNames()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, answer);
    FileProcess plugin;
    void *expected = nullptr;
    if (answer == "object")
        expected = &plugin;
    else if (answer == "interface")
        expected = static_cast<FileProInterface *>(&plugin);
    QCOMPARE(plugin.qt_metacast(name.constData()), expected);
}

void tst_FileProcess::methodsHaveTheirIndices_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<bool>("isSignal");
    QTest::addColumn<QByteArray>("parameter");
    QTest::newRow("0") << 0 << QByteArray("sendMsgToManager(PluginMetaData)") << true << QByteArray("data");
    QTest::newRow("1") << 1 << QByteArray("ImportSignal()") << true << QByteArray();
    QTest::newRow("2") << 2 << QByteArray("ExportSignal()") << true << QByteArray();
    QTest::newRow("3") << 3 << QByteArray("on_ExportACT_clicked()") << false << QByteArray();
    QTest::newRow("4") << 4 << QByteArray("on_ImportACT_clicked()") << false << QByteArray();
    QTest::newRow("5") << 5 << QByteArray("on_send_exprot_xml(PluginMetaData&)") << false
                       << QByteArray("data");
}

void tst_FileProcess::methodsHaveTheirIndices()
{
    QFETCH(int, index);
    QFETCH(QByteArray, signature);
    QFETCH(bool, isSignal);
    QFETCH(QByteArray, parameter);
    const QMetaObject &meta = FileProcess::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 6);
    const QMetaMethod method = meta.method(meta.methodOffset() + index);
    QCOMPARE(method.methodSignature(), signature);
    QCOMPARE(method.methodType(), isSignal ? QMetaMethod::Signal : QMetaMethod::Slot);
    QCOMPARE(method.access(), QMetaMethod::Public);
    QCOMPARE(method.parameterNames(),
             parameter.isEmpty() ? QList<QByteArray>() : QList<QByteArray>{parameter});
}

void tst_FileProcess::theRecordsMetaTypeHasTwoNames()
{
    FileProcess plugin;
    QVERIFY(QMetaType::type("PluginMetaData") != QMetaType::UnknownType);
    QCOMPARE(QMetaType::type("PluginMetaData&"), QMetaType::type("PluginMetaData"));
}

void tst_FileProcess::aQueuedCallOfTheFirstSignalEmitsIt()
{
    FileProcess plugin;
    QString receiver;
    connect(&plugin, &FileProcess::sendMsgToManager, [&](PluginMetaData data) { receiver = data.toPlugin; });
    PluginMetaData data;
    data.toPlugin = "somebody";
    QVERIFY(QMetaObject::invokeMethod(&plugin, "sendMsgToManager", Qt::QueuedConnection,
                                      Q_ARG(PluginMetaData, data)));
    QCOMPARE(receiver, QString());
    QCoreApplication::processEvents();
    QCOMPARE(receiver, QString("somebody"));
}

void tst_FileProcess::toolsHaveTheirTextsAndIcons()
{
    FileProcess plugin;
    QScopedPointer<QAction> import(plugin.InitImportTool(nullptr));
    QScopedPointer<QAction> exportAction(plugin.InitExportTool());
    QCOMPARE(import->text(), QString("import"));
    QCOMPARE(exportAction->text(), QString("export"));
    for (QAction *action : {import.data(), exportAction.data()}) {
        QVERIFY(!action->icon().pixmap(32).isNull());
        QVERIFY(action->objectName().isEmpty());
        QVERIFY(action->shortcut().isEmpty());
        QVERIFY(!action->parent());
    }
    QVERIFY(import->icon().pixmap(32).toImage() != exportAction->icon().pixmap(32).toImage());
    QVERIFY(QFile::exists(":/File_Process/Resources/import.png"));
    QVERIFY(QFile::exists(":/File_Process/Resources/export.png"));
}

void tst_FileProcess::toolbarActionsHaveTheIconsOfTheirFiles()
{
    FileProcess plugin;
    QToolBar bar;
    plugin.CreateFileProTools();
    plugin.GetFileProActions(&bar);
    const std::unique_ptr<QAction> importAction(plugin.InitImportTool(nullptr));
    const std::unique_ptr<QAction> exportAction(plugin.InitExportTool());
    const auto picture = [](const QIcon &icon) { return icon.pixmap(32).toImage(); };
    const QImage importPicture = picture(QIcon(":/File_Process/Resources/import.png"));
    const QImage exportPicture = picture(QIcon(":/File_Process/Resources/export.png"));
    QVERIFY(!importPicture.isNull() && importPicture != exportPicture);
    QCOMPARE(picture(bar.actions().at(0)->icon()), importPicture);
    QCOMPARE(picture(bar.actions().at(1)->icon()), exportPicture);
    QCOMPARE(picture(importAction->icon()), importPicture);
    QCOMPARE(picture(exportAction->icon()), exportPicture);
}

void tst_FileProcess::toolbarGetsImportThenExport()
{
    FileProcess plugin;
    QToolBar bar;
    plugin.CreateFileProTools();
    plugin.GetFileProActions(&bar);
    QCOMPARE(bar.actions().size(), 2);
    QCOMPARE(bar.actions().at(0)->text(), QString("import"));
    QCOMPARE(bar.actions().at(1)->text(), QString("export"));
}

void tst_FileProcess::toolbarImportIsNotConnected()
{
    FileProcess plugin;
    QToolBar bar;
    plugin.CreateFileProTools();
    plugin.GetFileProActions(&bar);
    bar.actions().at(0)->trigger(); // would wait in the file dialog
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_FileProcess::toolbarExportIsConnected()
{
    FileProcess plugin;
    QToolBar bar;
    plugin.CreateFileProTools();
    plugin.GetFileProActions(&bar);
    bar.actions().at(1)->trigger();
    QCOMPARE(recording_host::state().deliveries.size(), size_t(2));
}

void tst_FileProcess::bothWaysTogetherSendTheRequestsTwice()
{
    FileProcess plugin;
    QToolBar bar;
    QScopedPointer<QAction> action(plugin.InitExportTool());
    plugin.GetFileProActions(&bar);
    action->trigger();
    QCOMPARE(recording_host::state().deliveries.size(), size_t(4));
}

void tst_FileProcess::everyCallMakesNewActions()
{
    FileProcess plugin;
    QScopedPointer<QAction> first(plugin.InitExportTool());
    QScopedPointer<QAction> second(plugin.InitExportTool());
    QVERIFY(first.data() != second.data());
    first->trigger(); // the earlier action keeps its connection
    QCOMPARE(recording_host::state().deliveries.size(), size_t(2));
}

void tst_FileProcess::importToolReadsTheSettings()
{
    QVERIFY(m_folder.write("oxconfig.ini", "[Dbu]\nDbu=0.002\n"));
    FileProcess plugin;
    QCOMPARE(FileProcessAccess::config(plugin).dbu, 0.0);
    delete plugin.InitImportTool(nullptr);
    QCOMPARE(FileProcessAccess::config(plugin).dbu, 0.002);
}

void tst_FileProcess::noDialogOpensWithoutAnAnswer()
{
    FileProcess plugin;
    plugin.on_ExportACT_clicked();
    QVERIFY(openExportDialogs().isEmpty());
}

void tst_FileProcess::theContextOpensTheDialog()
{
    recording_host::state().layers = {recording_host::layer("BOARD", "SIGNAL", "top")};
    FileProcess plugin;
    ExportJobInfo job{"pcb", "C:/jobs/board", "board", {"x"}};
    plugin.recMsgFromManager(jobContext(&job));

    QCOMPARE(openExportDialogs().size(), 1);
    Export *dialog = openExportDialogs().first();
    QCOMPARE(FileProcessAccess::exportDialog(plugin), dialog);
    QVERIFY(dialog->isVisible());
    QVERIFY(dialog->isWindow());
    QVERIFY(!dialog->parent());
    QCOMPARE(recording_host::state().matrixJobs, std::vector<std::string>{"board"});
    QCOMPARE(dialog->findChild<QTableWidget *>()->rowCount(), 1);
    QVERIFY(job.list.empty()); // exchanged with the dialog's
}

void tst_FileProcess::aSecondContextOpensASecondDialog()
{
    FileProcess plugin;
    ExportJobInfo job{"pcb", "C:/jobs/board", "board", {}};
    plugin.recMsgFromManager(jobContext(&job));
    QPointer<Export> first = FileProcessAccess::exportDialog(plugin);
    plugin.recMsgFromManager(jobContext(&job));
    QCOMPARE(openExportDialogs().size(), 2);
    QVERIFY(first && first->isVisible());
    QVERIFY(FileProcessAccess::exportDialog(plugin) != first);
}

void tst_FileProcess::aContextWithoutJobOpensAnEmptyDialog()
{
    FileProcess plugin;
    plugin.recMsgFromManager(jobContext(nullptr));
    QCOMPARE(openExportDialogs().size(), 1);
    QCOMPARE(openExportDialogs().first()->findChild<QTableWidget *>()->rowCount(), 0);
    QCOMPARE(openExportDialogs().first()->findChild<QLineEdit *>("PathLineEdit")->text(), QString());
}

void tst_FileProcess::theDialogTakesTheSettings()
{
    QVERIFY(m_folder.write("oxconfig.ini", "[Output_Path_Second]\npath=second\n"));
    FileProcess plugin;
    delete plugin.InitImportTool(nullptr);
    ExportJobInfo job{"pcb", "C:/jobs/board", "board", {}};
    plugin.recMsgFromManager(jobContext(&job));
    QCOMPARE(openExportDialogs().first()->findChild<QLineEdit *>("SecondDirLineEdit")->text(),
             QString("second"));
    QCOMPARE(openExportDialogs().first()->findChild<QLineEdit *>("PathLineEdit")->text(),
             QString("C:\\jobs\\board"));
}

void tst_FileProcess::theSecondConstructorLeavesTheMetaTypeAlone()
{
    QWidget widget;
    FileProcess plugin(&widget);
    QVERIFY(!plugin.parent());
    QVERIFY(!FileProcessAccess::exportDialog(plugin));
}

QTEST_MAIN(tst_FileProcess)
#include "tst_fileprocess.moc"
