// Faults around the Export dialog: odd settings, odd answers of the host's layer matrix, odd messages. The
// dialog opens and works whatever comes; what nobody has to see is logged.

#include "plugin/fileprocess.h"
#include "plugin/interface/messages.h"
#include "run/progress.h"
#include "tests/export/opendialog.h"
#include "tests/support/exportdialogs.h"
#include "tests/support/modalresponder.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QAction>
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressDialog>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <thread>

using namespace layer_column;
using recording_host::ExportCall;
using recording_host::layer;
using recording_host::state;

namespace {

PluginMetaData received(qint32 type, void *payload)
{
    PluginMetaData data;
    data.msgType = type;
    data.payload = payload;
    return data;
}

ExportJobInfo jobIn(const QString &folder)
{
    ExportJobInfo job;
    job.stepName = "Pcb";
    job.jobName = "Job1";
    job.folderPath = folder;
    return job;
}

// Random bytes with line ends, brackets and "=" among them, the same ones each time.
QByteArray garbage(int size)
{
    QByteArray bytes(size, '\0');
    quint32 number = 12345;
    for (char &byte : bytes) {
        number = number * 1664525u + 1013904223u;
        byte = (number >> 28) == 0 ? "\n[]=\\\"%x"[(number >> 8) % 8] : char(number >> 24);
    }
    return bytes;
}

} // namespace

class tst_ExportFaults : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void settingsOfAnyKindOpenTheDialog_data();
    void settingsOfAnyKindOpenTheDialog();
    void oddLayerNamesAreShownAndExported_data();
    void oddLayerNamesAreShownAndExported();
    void oddRecordsBecomeRows();
    void throwingMatrixLeavesAWorkingDialog();
    void twoContextsOpenTwoDialogs();
    void contextWithoutPayloadOpensAnEmptyDialog();
    void jobWithoutLayersOpensAnEmptyDialog();
    void oddJobNamesAreCarriedThrough();
    void slowExportKeepsTheDialogAlive();
    void exportThatWritesNothingIsNotNoticed();
    void throwingSaveFlagEndsTheLayerOnly();
    void profileListOfAClosedDialogIsSafe();
    void contextDuringARunOpensAnotherDialog();
    void pluginDestroyedBeforeItsDialog();

private:
    std::unique_ptr<TemporaryWorkingFolder> m_folder;
};

void tst_ExportFaults::init()
{
    recording_host::reset();
    m_folder = std::make_unique<TemporaryWorkingFolder>();
}

void tst_ExportFaults::cleanup()
{
    qDeleteAll(openExportDialogs());
    m_folder.reset();
}

void tst_ExportFaults::settingsOfAnyKindOpenTheDialog_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("absent") << 0;
    QTest::newRow("empty") << 1;
    QTest::newRow("garbage") << 2;
    QTest::newRow("10 MB of garbage") << 3;
    QTest::newRow("10 MB of settings") << 4;
    QTest::newRow("a folder") << 5;
    QTest::newRow("odd values") << 6;
}

void tst_ExportFaults::settingsOfAnyKindOpenTheDialog()
{
    QFETCH(int, kind);
    if (kind == 1)
        QVERIFY(m_folder->write("oxconfig.ini", QByteArray()));
    else if (kind == 2)
        QVERIFY(m_folder->write("oxconfig.ini", garbage(5000)));
    else if (kind == 3)
        QVERIFY(m_folder->write("oxconfig.ini", garbage(10000000)));
    else if (kind == 4)
        QVERIFY(m_folder->write("oxconfig.ini", "[Filler]\n" + QByteArray("key=value\n").repeated(1000000) +
                                                    "[Output_Path_Second]\npath=sub\n"));
    else if (kind == 5)
        QVERIFY(QDir().mkdir("oxconfig.ini"));
    else if (kind == 6)
        QVERIFY(m_folder->write("oxconfig.ini", "[Resize]\nunit=mm\nvalue=lots\n[Dbu]\nDbu=nan\n"
                                                "[Output_Path_Format]\nformat=.step\n"));

    QElapsedTimer timer;
    timer.start();
    FileProcess plugin;
    const std::unique_ptr<QAction> action(plugin.InitImportTool(nullptr));
    ExportJobInfo job = jobIn(m_folder->path());
    plugin.recMsgFromManager(received(messages::JobContext, &job));
    const QList<Export *> dialogs = openExportDialogs();
    QCOMPARE(dialogs.size(), 1);
    QVERIFY(dialogs[0]->isVisible());
    QCOMPARE(dialogs[0]->findChild<QLineEdit *>("SecondDirLineEdit")->text(),
             QString(kind == 4 ? "sub" : "OX"));
    QCOMPARE(dialogs[0]->findChild<QComboBox *>("FormatComboBox")->currentIndex(), 0);
    QVERIFY2(timer.elapsed() < 60000, "reading the settings took a minute");
}

void tst_ExportFaults::oddLayerNamesAreShownAndExported_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("blank") << QByteArray(" ");
    QTest::newRow("10 000 characters") << QByteArray(10000, 'n');
    QTest::newRow("control characters") << QByteArray("a\n\t\r\x01\x7f\x1b[2Jb");
    QTest::newRow("a zero") << QByteArray("a\0b", 3);
    QTest::newRow("Chinese") << QByteArray("\xE9\xA1\xB6\xE5\xB1\x82");
    QTest::newRow("Arabic") << QByteArray("\xD8\xB7\xD8\xA8\xD9\x82\xD8\xA9");
    QTest::newRow("outside the first plane") << QByteArray("\xF0\x9F\x94\xA7");
    QTest::newRow("no UTF-8") << QByteArray("a\xff\xfe\xc3");
    QTest::newRow("marked-up") << QByteArray("<h1>&amp;</h1>");
    QTest::newRow("placeholders") << QByteArray("%1 %s %n &x");
}

void tst_ExportFaults::oddLayerNamesAreShownAndExported()
{
    QFETCH(QByteArray, name);
    const QString shown = QString::fromStdString(name.toStdString());
    OpenDialog dialog({layer("BOARD", "SIGNAL", name.toStdString()), layer("BOARD", "SIGNAL", "other")});
    QCOMPARE(dialog.text(0, Layer), shown);
    dialog->grab();
    dialog.pressCell(0, Check);
    QTest::mouseClick(dialog.button("OKButton"), Qt::LeftButton);
    QCOMPARE(state().exports.size(), size_t(1));
    QCOMPARE(state().exports[0].layer, shown.toLower().toStdString());
    QVERIFY(QString::fromStdString(state().exports[0].fileName).endsWith("\\" + shown.toLower() + ".gds"));
    QVERIFY(dialog.table()->cellWidget(0, Time));
}

void tst_ExportFaults::oddRecordsBecomeRows()
{
    std::vector<ORVEX::API::layer_info> layers(3);
    layers[1].type = std::string(10000, 'T');
    layers[1].context = "BOARD\n";
    layers[2].row = -2147483647;
    layers[2].polarity = "\xff";
    OpenDialog dialog(layers);
    QCOMPARE(dialog.table()->rowCount(), 3);
    for (int row = 0; row < 3; ++row)
        QCOMPARE(dialog.table()->item(row, Layer)->background().color(), QColor(72, 209, 204));
    dialog->on_SelectAll_clicked();
    dialog->on_BoardLayer_clicked();
    QTest::mouseClick(dialog.button("OKButton"), Qt::LeftButton);
    QCOMPARE(state().exports.size(), size_t(1)); // all three have the same, empty name
}

void tst_ExportFaults::throwingMatrixLeavesAWorkingDialog()
{
    state().onMatrix = [](std::vector<ORVEX::API::layer_info> &) { throw std::runtime_error("no matrix"); };
    OpenDialog dialog;
    dialog->on_BoardLayer_clicked();
    dialog->on_SetParamater_clicked();
    QTest::mouseClick(dialog.button("OKButton"), Qt::LeftButton);
    QVERIFY(state().exports.empty());
    const QPointer<Export> alive(dialog.get());
    QTest::mouseClick(dialog.button("CancelButton"), Qt::LeftButton);
    QTRY_VERIFY(!alive);
}

void tst_ExportFaults::twoContextsOpenTwoDialogs()
{
    state().layers = OpenDialog::sixLayers();
    FileProcess plugin;
    ExportJobInfo job = jobIn(m_folder->path());
    plugin.recMsgFromManager(received(messages::JobContext, &job));
    plugin.recMsgFromManager(received(messages::JobContext, &job));
    QCOMPARE(openExportDialogs().size(), 2);
    for (Export *dialog : openExportDialogs()) {
        QVERIFY(dialog->isVisible());
        dialog->findChild<QTableWidget *>("PNListTable")->item(0, Check)->setData(Qt::EditRole, true);
        dialog->findChild<QPushButton *>("OKButton")->click();
    }
    QCOMPARE(state().exports.size(), size_t(2));
}

void tst_ExportFaults::contextWithoutPayloadOpensAnEmptyDialog()
{
    FileProcess plugin;
    plugin.recMsgFromManager(received(messages::JobContext, nullptr));
    QCOMPARE(openExportDialogs().size(), 1);
    Export *dialog = openExportDialogs().first();
    QVERIFY(dialog->isVisible());
    QCOMPARE(dialog->findChild<QLineEdit *>("PathLineEdit")->text(), QString());
    QCOMPARE(dialog->findChild<QTableWidget *>("PNListTable")->rowCount(), 0);
}

void tst_ExportFaults::jobWithoutLayersOpensAnEmptyDialog()
{
    FileProcess plugin;
    ExportJobInfo job = jobIn(m_folder->path());
    plugin.recMsgFromManager(received(messages::JobContext, &job));
    Export *dialog = openExportDialogs().first();
    dialog->findChild<QPushButton *>("OKButton")->click();
    QVERIFY(state().calls.empty());
    QVERIFY(dialog->isVisible());
}

void tst_ExportFaults::oddJobNamesAreCarriedThrough()
{
    for (const QString &name : {QString(), QString(10000, 'j'), QString("a\nb\tc"), QString(QChar(0x5C42))}) {
        recording_host::reset();
        state().layers = {layer("BOARD", "SIGNAL", "top")};
        ExportJobInfo job = jobIn(m_folder->path());
        job.jobName = name;
        job.stepName = name;
        Export dialog(nullptr);
        dialog.setExportConfig(ExportConfig());
        dialog.setJobInfo(&job);
        dialog.findChild<QTableWidget *>("PNListTable")->item(0, Check)->setData(Qt::EditRole, true);
        dialog.findChild<QPushButton *>("OKButton")->click();
        QCOMPARE(state().matrixJobs, std::vector<std::string>{name.toStdString()});
        QCOMPARE(state().exports.size(), size_t(1));
        QCOMPARE(state().exports[0].job, name.toStdString());
        QCOMPARE(state().exports[0].step, name.toStdString());
    }
}

void tst_ExportFaults::slowExportKeepsTheDialogAlive()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2});
    state().onExport = [](const ExportCall &) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        return true;
    };
    int passes = 0;
    QTimer everyPass;
    QObject::connect(&everyPass, &QTimer::timeout, [&passes] { ++passes; });
    everyPass.start(10);
    QTest::mouseClick(dialog.button("OKButton"), Qt::LeftButton);
    QVERIFY2(passes >= 3, qPrintable(QString::number(passes)));
    // A whole second at least; more on a busy machine.
    QString time = dialog.table()->cellWidget(2, Time)->findChild<QLabel *>()->text();
    QVERIFY2(time.endsWith('s'), qPrintable(time));
    time.chop(1);
    QVERIFY2(time.toInt() >= 1, qPrintable(time));
}

void tst_ExportFaults::exportThatWritesNothingIsNotNoticed()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2});
    QTest::mouseClick(dialog.button("OKButton"), Qt::LeftButton);
    QVERIFY(QDir(dialog.folder() + "/OX/Job1").entryList(QDir::Files).isEmpty());
    QVERIFY(dialog.table()->cellWidget(2, Time));
    QCOMPARE(QApplication::activeModalWidget(), static_cast<QWidget *>(dialog.get()));
}

void tst_ExportFaults::throwingSaveFlagEndsTheLayerOnly()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2, 4});
    state().onSaveFlag = [] { throw std::runtime_error("no database"); };
    QTest::mouseClick(dialog.button("OKButton"), Qt::LeftButton);
    QCOMPARE(state().calls, std::vector<std::string>({"get_SaveFlag", "get_SaveFlag"}));
    QVERIFY(dialog.table()->cellWidget(2, Time));
    QVERIFY(dialog.table()->cellWidget(4, Time));
}

void tst_ExportFaults::profileListOfAClosedDialogIsSafe()
{
    FileProcess plugin;
    ExportJobInfo job = jobIn(m_folder->path());
    plugin.recMsgFromManager(received(messages::JobContext, &job));
    delete openExportDialogs().first();
    QList<std::string> list{"a"};
    plugin.recMsgFromManager(received(messages::NewProfileList, &list));
    plugin.recMsgFromManager(received(messages::NewProfileList, nullptr));
    plugin.recMsgFromManager(received(messages::JobContext, &job));
    QCOMPARE(openExportDialogs().size(), 1);
}

void tst_ExportFaults::contextDuringARunOpensAnotherDialog()
{
    state().layers = OpenDialog::sixLayers();
    FileProcess plugin;
    ExportJobInfo job = jobIn(m_folder->path());
    plugin.recMsgFromManager(received(messages::JobContext, &job));
    Export *first = openExportDialogs().first();
    first->findChild<QTableWidget *>("PNListTable")->item(0, Check)->setData(Qt::EditRole, true);
    state().onExport = [](const ExportCall &) {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        return true;
    };
    QTimer::singleShot(20, [&] {
        plugin.recMsgFromManager(received(messages::JobContext, &job));
        QCOMPARE(openExportDialogs().size(), 2);
    });
    first->findChild<QPushButton *>("OKButton")->click();
    QCOMPARE(openExportDialogs().size(), 2);
    QCOMPARE(state().exports.size(), size_t(1));
}

void tst_ExportFaults::pluginDestroyedBeforeItsDialog()
{
    state().layers = OpenDialog::sixLayers();
    auto plugin = std::make_unique<FileProcess>();
    ExportJobInfo job = jobIn(m_folder->path());
    plugin->recMsgFromManager(received(messages::JobContext, &job));
    plugin.reset();
    Export *dialog = openExportDialogs().first();
    dialog->findChild<QTableWidget *>("PNListTable")->item(0, Check)->setData(Qt::EditRole, true);
    dialog->findChild<QPushButton *>("OKButton")->click(); // a report that nobody takes
    QCOMPARE(state().exports.size(), size_t(1));
}

QTEST_MAIN(tst_ExportFaults)
#include "tst_exportfaults.moc"
