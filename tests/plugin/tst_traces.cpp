// The lines that the plug-in writes to the debug stream and to the log: their texts, and their places among
// what else it does.

#include "plugin/interface/exportjobinfo.h"
#include "tests/archive/archivebuilder.h"
#include "tests/export/opendialog.h"
#include "tests/support/fileprocessaccess.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"
#include "tests/support/trace.h"

#include <QAction>
#include <QFileDialog>
#include <QtTest>

using recording_host::layer;
using recording_host::state;

namespace {

QString utf8(const char *text)
{
    return QString::fromUtf8(text);
}

// The log line about a folder that is not there.
QString missing(const QString &path)
{
    return utf8("fileprocess.cpp:416: 路径：\"%1\"不存在，将自动创建！").arg(path);
}

} // namespace

class tst_Traces : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_folder.reset(); }
    void readingTheSettings();
    void aFolderIsLoggedBeforeItIsMade();
    void askingForTheJobContext();
    void importingAnArchive();
    void importingIntoTheFoldersOfOthers();
    void importingAPlainFile();
    void importingADamagedArchive();
    void openingTheDialog();
    void openingTheDialogWithAConfiguredFolder();
    void typingAPath();
    void settingParameters();
    void exportingLayers();
    void exportingNothing();

private:
    void watch(FileProcess &plugin, Trace &trace);
    // Runs the Import command on `file`, and answers its dialog.
    void import(FileProcess &plugin, const QString &file);
    QString put(const QString &name, const QByteArray &bytes);

    std::unique_ptr<TemporaryWorkingFolder> m_folder;
};

void tst_Traces::init()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    recording_host::reset();
    m_folder = std::make_unique<TemporaryWorkingFolder>();
}

void tst_Traces::watch(FileProcess &plugin, Trace &trace)
{
    connect(&plugin, &FileProcess::sendMsgToManager, [&trace](const PluginMetaData &data) {
        trace.add(QString("signal %1 %2").arg(data.msgType).arg(data.toPlugin));
    });
    state().onDelivery = [&trace](const recording_host::Delivery &delivery) {
        trace.add(QString("direct %1 %2").arg(delivery.data.msgType).arg(delivery.data.toPlugin));
    };
}

void tst_Traces::import(FileProcess &plugin, const QString &file)
{
    ModalResponder user;
    user.expect([file](QWidget *window) {
        window->findChild<QLineEdit *>("fileNameEdit")->setText(file);
        QMetaObject::invokeMethod(window, "accept");
    });
    plugin.on_ImportACT_clicked();
    QCOMPARE(user.pending(), 0);
}

QString tst_Traces::put(const QString &name, const QByteArray &bytes)
{
    m_folder->write(name, bytes);
    return m_folder->filePath(name);
}

void tst_Traces::readingTheSettings()
{
    put("oxconfig.ini", "[Job_Path]\npath=jobs\n[Output_Path]\npath=out\n[Output_Path_Second]\npath=second\n"
                        "[Output_Path_Format]\nformat=.gds\n[Resize]\nunit=um\n");
    FileProcess plugin;
    Trace trace;
    watch(plugin, trace);
    delete plugin.InitImportTool(nullptr);
    QCOMPARE(trace.entries(),
             QStringList({"debug: \"jobs\"", missing("jobs"), "debug: \"out\"", "debug: \"out\"",
                          missing("out"), "debug: \"jobs\"", "debug: \"out\"", "debug: \"second\"",
                          "debug: \".gds\"", "debug: \"um\"", "signal 10000404 ListBar_PNList"}));
}

void tst_Traces::aFolderIsLoggedBeforeItIsMade()
{
    FileProcess plugin;
    Trace trace;
    bool isThere = true;
    trace.onEntry = [&isThere](const QString &) { isThere = QDir("jobs").exists(); };
    FileProcessAccess::checkDir(plugin, "jobs");
    QCOMPARE(trace.entries(), QStringList({"debug: \"jobs\"", missing("jobs")}));
    QVERIFY(!isThere);
    QVERIFY(QDir("jobs").exists());
}

void tst_Traces::askingForTheJobContext()
{
    FileProcess plugin;
    Trace trace;
    watch(plugin, trace);
    plugin.on_ExportACT_clicked();
    QCOMPARE(trace.entries(),
             QStringList(
                 {"signal 10000402 Graphic_View.dll", "direct 10000402 Graphic_View.dll",
                  utf8("fileprocess.cpp:469: Export：获取配置层信息"), "signal 10000402 Graphic_JobList.dll",
                  utf8("fileprocess.cpp:475: Export：准备料号信息"), "direct 10000402 Graphic_View.dll"}));
}

void tst_Traces::importingAnArchive()
{
    const QString file = put("mail/ABC.tgz", gzip(TarBuilder().folder("XYZ/").file("XYZ/x", "x").bytes()));
    FileProcess plugin;
    Trace trace;
    watch(plugin, trace);
    import(plugin, file);
    QCOMPARE(trace.entries(),
             QStringList({Trace::debug(".\\job"), missing(".\\job"), Trace::debug(".\\job\\ABC"),
                          Trace::debug(".\\job\\XYZ"), Trace::debug(".\\job\\ABC"), Trace::debug("XYZ"),
                          "signal 10000401 ListBar_PNList",
                          utf8("fileprocess.cpp:435: Import：料号路径以获取，即将开始导入")}));
}

void tst_Traces::importingIntoTheFoldersOfOthers()
{
    const QString file = put("mail/A.B.tgz", gzip(TarBuilder().file("XYZ/x", "x").bytes(), "inner.tar"));
    QVERIFY(QDir().mkpath("jobs"));
    FileProcess plugin;
    FileProcessAccess::config(plugin).jobPath = "jobs";
    Trace trace;
    import(plugin, file);
    const QStringList lines = trace.entries();
    QCOMPARE(lines.mid(0, 3),
             QStringList({Trace::debug("jobs"), Trace::debug("jobs"), Trace::debug("jobs\\inner")}));
    QVERIFY(
        lines.contains(Trace::debug("jobs\\A.B"))); // the archive's name less ".tgz", not less all its dots
}

void tst_Traces::importingAPlainFile()
{
    const QString file = put("mail/top.gds", "GDSII");
    FileProcess plugin;
    Trace trace;
    watch(plugin, trace);
    import(plugin, file);
    QCOMPARE(trace.entries(),
             QStringList({"signal 10000401 ListBar_PNList",
                          utf8("fileprocess.cpp:435: Import：料号路径以获取，即将开始导入")}));
}

void tst_Traces::importingADamagedArchive()
{
    const QString file = put("mail/ABC.tgz", "this is no gzip file");
    FileProcess plugin;
    Trace trace;
    watch(plugin, trace);
    ModalResponder user;
    user.expect([file](QWidget *window) {
        window->findChild<QLineEdit *>("fileNameEdit")->setText(file);
        QMetaObject::invokeMethod(window, "accept");
    });
    user.expectMessageBox(QMessageBox::Yes);
    plugin.on_ImportACT_clicked();
    QCOMPARE(user.pending(), 0);
    const QStringList lines = trace.entries();
    QCOMPARE(lines.mid(0, 2), QStringList({Trace::debug(".\\job"), missing(".\\job")}));
    QCOMPARE(lines.last(), utf8("ERROR Progress:139: 解压文件异常！ 异常位置：Progress : 139"));
    QVERIFY(lines.filter("signal").isEmpty());
}

void tst_Traces::openingTheDialog()
{
    Trace trace;
    state().onMatrix = [&trace](std::vector<ORVEX::API::layer_info> &) { trace.add("get_matrix"); };
    OpenDialog dialog({layer("MISC", "DOCUMENT", "notes"), layer("BOARD", "SIGNAL", "top"),
                       layer("MISC", "GDS", "skipped"), layer("board", "SIGNAL", "bot")});
    QCOMPARE(
        trace.entries(),
        QStringList({Trace::debug(dialog.folder().replace('/', '\\')), "get_matrix", "debug: \"notes\"",
                     "debug: \"bot\"", utf8("Export:492: Export: 已获取导出层列表。料号：Job1；STEP：Pcb")}));
}

void tst_Traces::openingTheDialogWithAConfiguredFolder()
{
    ExportConfig config;
    config.outputPath = m_folder->path();
    Trace trace;
    OpenDialog dialog({}, config);
    QCOMPARE(trace.entries(),
             QStringList({Trace::debug(dialog.folder().replace('/', '\\')),
                          Trace::debug(m_folder->path().replace('/', '\\')),
                          utf8("Export:492: Export: 已获取导出层列表。料号：Job1；STEP：Pcb")}));
}

void tst_Traces::typingAPath()
{
    OpenDialog dialog;
    QLineEdit *path = dialog.edit("PathLineEdit");
    path->setFocus();
    path->setText("no such folder");
    Trace trace;
    ModalResponder user;
    user.expect([&trace](QWidget *box) {
        trace.add("warning");
        qobject_cast<QDialog *>(box)->accept();
    });
    QTest::keyClick(path, Qt::Key_Return);
    QCOMPARE(trace.entries(), QStringList({"debug: \"no such folder\"", "warning"}));
}

void tst_Traces::settingParameters()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    Trace trace;
    dialog->on_SetParamater_clicked(); // without a current row
    dialog.table()->setCurrentCell(3, layer_column::Layer);
    dialog->on_SetParamater_clicked();
    QCOMPARE(trace.entries(), QStringList({"debug: -1", "debug: 3"}));
}

void tst_Traces::exportingLayers()
{
    OpenDialog dialog(
        {layer("BOARD", "SIGNAL", "top"), layer("BOARD", "SIGNAL", "gnd"), layer("BOARD", "SIGNAL", "bot")});
    dialog.setChecked({0, 2});
    dialog.edit("SecondDirLineEdit")->clear();
    Trace trace;
    // The folder is made before the rows are read, and thus before the report.
    const QString output = dialog.folder() + "/Job1";
    QStringList folders;
    trace.onEntry = [&](const QString &entry) {
        if (folders.size() < 2)
            folders << QString("%1 %2").arg(entry).arg(QDir(output).exists());
    };
    connect(dialog.get(), &Export::on_send_exprot_xml_to_fileprocess,
            [&](const PluginMetaData &data) { trace.add(QString("report %1").arg(data.msgType)); });
    state().onExport = [&trace](const recording_host::ExportCall &call) {
        trace.add("export " + QString::fromStdString(call.layer));
        return true;
    };
    dialog.button("OKButton")->click();
    QCOMPARE(trace.entries(),
             QStringList({"debug: null prefix", "debug: true", "debug: 1", "debug: false", "debug: 1",
                          "debug: true", "debug: 2", "report 10000403", "export bot", "export top",
                          "debug: true", "debug: false", "debug: true"}));
    QCOMPARE(folders, QStringList({"debug: null prefix 0", "debug: true 1"}));
}

void tst_Traces::exportingNothing()
{
    OpenDialog dialog({layer("BOARD", "SIGNAL", "top")});
    Trace trace;
    dialog.button("OKButton")->click();
    QCOMPARE(trace.entries(), QStringList({"debug: false", "debug: 0", "debug: false"}));
}

QTEST_MAIN(tst_Traces)
#include "tst_traces.moc"
