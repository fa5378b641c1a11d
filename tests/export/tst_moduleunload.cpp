// A host that unloads the module while its windows are open.

#include "plugin/interface/fileprointerface.h"
#include "plugin/interface/messages.h"
#include "tests/support/modalresponder.h"
#include "tests/support/recordinghost.h"

#include "plugin/interface/exportjobinfo.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QLibrary>
#include <QMenu>
#include <QPluginLoader>
#include <QPointer>
#include <QProgressDialog>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

#include <chrono>
#include <memory>
#include <thread>

namespace {

QString modulePath()
{
    const QDir folder(QCoreApplication::applicationDirPath() + "/testplugins");
    for (const QFileInfo &file : folder.entryInfoList(QDir::Files)) {
        if (QLibrary::isLibrary(file.fileName()))
            return file.absoluteFilePath();
    }
    return {};
}

// The open Export dialog, or null.
QWidget *findDialog()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->inherits("Export"))
            return window;
    }
    return nullptr;
}

} // namespace

class tst_ModuleUnload : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void dialogOutlivesItsModule();
    void exportRunsAfterTheUnloading();
    void unloadingDuringARunIsSafe();
    void unloadingWhileTheImportAsksForFilesIsSafe();
    void moduleCanBeLoadedAgain();
    void loadingManyTimesIsSafe();

private:
    void load();
    QWidget *openDialog();

    std::unique_ptr<QPluginLoader> m_loader;
    QTemporaryDir m_folder;
};

void tst_ModuleUnload::init()
{
    recording_host::reset();
    recording_host::state().layers = {recording_host::layer("BOARD", "SIGNAL", "top"),
                                      recording_host::layer("BOARD", "SIGNAL", "bot")};
    load();
}

void tst_ModuleUnload::cleanup()
{
    m_loader->unload(); // false when the test has done it
    while (QWidget *dialog = findDialog())
        delete dialog;
}

void tst_ModuleUnload::load()
{
    m_loader = std::make_unique<QPluginLoader>(modulePath());
    QVERIFY2(m_loader->load(), qPrintable(m_loader->errorString()));
}

// Sends the job context and returns the dialog that it opens.
QWidget *tst_ModuleUnload::openDialog()
{
    auto *plugin = qobject_cast<FileProInterface *>(m_loader->instance());
    ExportJobInfo job;
    job.jobName = "job";
    job.folderPath = m_folder.path();
    PluginMetaData context;
    context.msgType = messages::JobContext;
    context.payload = &job;
    plugin->recMsgFromManager(context);
    QWidget *dialog = findDialog();
    if (!dialog)
        qFatal("no Export dialog was opened");
    return dialog;
}

void tst_ModuleUnload::dialogOutlivesItsModule()
{
    const QPointer<QWidget> dialog = openDialog();
    const QPointer<QObject> plugin = m_loader->instance();
    QVERIFY(QTest::qWaitForWindowExposed(dialog));
    QVERIFY(m_loader->unload());
    QVERIFY(!plugin);
    QVERIFY(dialog); // the plug-in does not own it

    auto *table = dialog->findChild<QTableWidget *>("PNListTable");
    dialog->resize(900, 700);
    QTest::qWait(20);
    QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
                      table->visualRect(table->model()->index(1, 0)).center());
    QCOMPARE(table->item(1, 0)->data(Qt::DisplayRole).toBool(), true);
    ModalResponder responder;
    responder.expect([](QWidget *menu) { menu->close(); });
    QMetaObject::invokeMethod(dialog, "on_PNListTable_customContextMenuRequest", Q_ARG(QPoint, QPoint()));
    QTest::mouseClick(dialog->findChild<QPushButton *>("CancelButton"), Qt::LeftButton);
    QTRY_VERIFY(!dialog);
}

void tst_ModuleUnload::exportRunsAfterTheUnloading()
{
    QWidget *dialog = openDialog();
    QVERIFY(m_loader->unload());
    dialog->findChild<QTableWidget *>("PNListTable")->item(0, 0)->setData(Qt::EditRole, true);
    dialog->findChild<QPushButton *>("OKButton")->click();
    QCOMPARE(recording_host::state().exports.size(), size_t(1));
    QVERIFY(dialog->findChild<QTableWidget *>("PNListTable")->cellWidget(0, 7));
}

void tst_ModuleUnload::unloadingDuringARunIsSafe()
{
    QWidget *dialog = openDialog();
    recording_host::state().onExport = [](const recording_host::ExportCall &) {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        return true;
    };
    auto *table = dialog->findChild<QTableWidget *>("PNListTable");
    table->item(0, 0)->setData(Qt::EditRole, true);
    table->item(1, 0)->setData(Qt::EditRole, true);
    bool isUnloaded = false;
    QTimer::singleShot(50, [this, &isUnloaded] { isUnloaded = m_loader->unload(); });
    dialog->findChild<QPushButton *>("OKButton")->click();
    QVERIFY(isUnloaded);
    QCOMPARE(recording_host::state().exports.size(), size_t(2));
}

void tst_ModuleUnload::unloadingWhileTheImportAsksForFilesIsSafe()
{
    auto *plugin = qobject_cast<FileProInterface *>(m_loader->instance());
    QWidget window;
    const std::unique_ptr<QAction> action(plugin->InitImportTool(&window));
    bool isUnloaded = false;
    ModalResponder responder;
    responder.expect([this, &isUnloaded](QWidget *dialog) {
        isUnloaded = m_loader->unload();
        dialog->close();
    });
    action->trigger();
    QVERIFY(isUnloaded);
}

void tst_ModuleUnload::moduleCanBeLoadedAgain()
{
    const QPointer<QWidget> before = openDialog();
    QVERIFY(m_loader->unload());
    load();
    delete before;
    QWidget *dialog = openDialog();
    QCOMPARE(dialog->findChild<QTableWidget *>("PNListTable")->rowCount(), 2);
    // The record's meta-type still works.
    const int type = QMetaType::type("PluginMetaData");
    QVERIFY(type != QMetaType::UnknownType);
    void *record = QMetaType::create(type);
    QVERIFY(record);
    QMetaType::destroy(type, record);
}

void tst_ModuleUnload::loadingManyTimesIsSafe()
{
    for (int i = 0; i < 20; ++i) {
        const QPointer<QWidget> dialog = openDialog();
        QVERIFY(m_loader->unload());
        dialog->close();
        QTRY_VERIFY(!dialog);
        load();
    }
}

QTEST_MAIN(tst_ModuleUnload)
#include "tst_moduleunload.moc"
