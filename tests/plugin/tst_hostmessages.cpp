// Every message that the plug-in sends and receives: receivers, types, payloads, order and log lines.

#include "plugin/interface/exportjobinfo.h"
#include "tests/support/exportdialogs.h"
#include "tests/support/fileprocessaccess.h"
#include "tests/support/logcapture.h"
#include "tests/support/modalresponder.h"
#include "tests/support/recordinghost.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QAction>
#include <QtTest>

namespace {

// What left the plug-in, by which way, in the order in which it left.
struct Sent
{
    QString way; // "signal" or "direct"
    PluginMetaData data;
    void *sender = nullptr;
};

PluginMetaData received(qint32 type, void *payload = nullptr)
{
    PluginMetaData data;
    data.msgType = type;
    data.payload = payload;
    return data;
}

} // namespace

class tst_HostMessages : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void exportAsksTheViewThreeTimesAndTheJobListOnce();
    void exportLogsItsTwoSteps();
    void theFilePathTravelsAsACopy();
    void theJobFolderPayloadStaysValid();
    void theJobFolderMessageNamesNoSenderAndNoParameters();
    void importRequestsRunTheImportCommand();
    void exportRequestsRunTheExportCommand();
    void requestsDoNothingBeforeTheToolsAreMade();
    void unknownMessagesAreIgnored_data();
    void unknownMessagesAreIgnored();
    void aProfileListWaitsForTheFirstDialog();
    void twoProfileListsInARowAreExchangedBack();
    void aProfileListWithoutPayloadIsIgnored();
    void aProfileListAfterTheDialogHasClosedStaysWithThePlugin();
    void reportsAreRelayedUnchanged();
    void aReportOfTheDialogReachesTheManager();
    void onlyTheTypeOfAMessageCounts();

private:
    void record(FileProcess &plugin)
    {
        connect(&plugin, &FileProcess::sendMsgToManager, [this](PluginMetaData data) {
            m_sent.push_back({"signal", data, nullptr});
        });
        recording_host::state().onDelivery = [this](const recording_host::Delivery &delivery) {
            m_sent.push_back({"direct", delivery.data, delivery.sender});
        };
    }

    std::vector<Sent> m_sent;
    TemporaryWorkingFolder m_folder;
};

void tst_HostMessages::init()
{
    m_sent.clear();
    recording_host::reset();
}

void tst_HostMessages::cleanup()
{
    qDeleteAll(openExportDialogs());
}

void tst_HostMessages::exportAsksTheViewThreeTimesAndTheJobListOnce()
{
    FileProcess plugin;
    QWidget host;
    plugin.setParentWidget(&host);
    record(plugin);

    plugin.on_ExportACT_clicked();

    const std::vector<std::pair<QString, QString>> expected{{"signal", "Graphic_View.dll"},
                                                            {"direct", "Graphic_View.dll"},
                                                            {"signal", "Graphic_JobList.dll"},
                                                            {"direct", "Graphic_View.dll"}};
    QCOMPARE(m_sent.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        QCOMPARE(m_sent[i].way, expected[i].first);
        QCOMPARE(m_sent[i].data.toPlugin, expected[i].second);
        QCOMPARE(m_sent[i].data.fromPlugin, QString());
        QCOMPARE(m_sent[i].data.msgType, 10000402);
        QVERIFY(m_sent[i].data.params.isEmpty());
        QCOMPARE(m_sent[i].data.payload, static_cast<void *>(nullptr));
        if (m_sent[i].way == "direct")
            QCOMPARE(m_sent[i].sender, static_cast<void *>(&host));
    }
}

void tst_HostMessages::exportLogsItsTwoSteps()
{
    FileProcess plugin;
    LogCapture log;
    plugin.on_ExportACT_clicked();
    QCOMPARE(log.lines().size(), size_t(2));
    QCOMPARE(log.lines()[0].file, std::string("fileprocess.cpp"));
    QCOMPARE(log.lines()[0].line, 469);
    QCOMPARE(log.lines()[0].message,
             std::string("Export\xa3\xba\xbb\xf1\xc8\xa1\xc5\xe4\xd6\xc3\xb2\xe3\xd0\xc5\xcf\xa2"));
    QCOMPARE(log.lines()[1].line, 475);
    QCOMPARE(log.lines()[1].message,
             std::string("Export\xa3\xba\xd7\xbc\xb1\xb8\xc1\xcf\xba\xc5\xd0\xc5\xcf\xa2"));
    QCOMPARE(log.lines()[1].severity, int(google::GLOG_INFO));
}

void tst_HostMessages::theFilePathTravelsAsACopy()
{
    FileProcess plugin;
    FileProcessAccess::filePath(plugin) = "C:/jobs/a.tgz";
    LogCapture log;
    QString path;
    connect(&plugin, &FileProcess::sendMsgToManager, [&](PluginMetaData data) {
        QCOMPARE(data.toPlugin, QString("ListBar_PNList"));
        QCOMPARE(data.fromPlugin, QString());
        QCOMPARE(data.msgType, 10000401);
        QVERIFY(data.params.isEmpty());
        QVERIFY(data.payload != &FileProcessAccess::filePath(plugin));
        path = *static_cast<QString *>(data.payload);
        QVERIFY(log.lines().empty()); // the line follows the message
    });
    FileProcessAccess::sendPath(plugin);
    QCOMPARE(path, QString("C:/jobs/a.tgz"));
    QCOMPARE(
        QByteArray::fromStdString(log.find("fileprocess.cpp", 435).message),
        QByteArray(
            "Import\xa3\xba\xc1\xcf\xba\xc5\xc2\xb7\xbe\xb6\xd2\xd4\xbb\xf1\xc8\xa1\xa3\xac\xbc\xb4\xbd\xab"
            "\xbf\xaa\xca\xbc\xb5\xbc\xc8\xeb"));
}

void tst_HostMessages::theJobFolderPayloadStaysValid()
{
    QVERIFY(m_folder.write("oxconfig.ini", "[Job_Path]\npath=jobs\n"));
    FileProcess plugin;
    record(plugin);
    delete plugin.InitImportTool(nullptr);
    QVERIFY(QFile::remove("oxconfig.ini"));
    QCOMPARE(m_sent.size(), size_t(1));
    QCOMPARE(m_sent[0].way, QString("signal"));
    QCOMPARE(m_sent[0].data.toPlugin, QString("ListBar_PNList"));
    QCOMPARE(m_sent[0].data.msgType, 10000404);
    QCOMPARE(m_sent[0].data.payload, static_cast<void *>(&FileProcessAccess::config(plugin).jobPath));
    QCOMPARE(*static_cast<QString *>(m_sent[0].data.payload), QString("jobs"));
}

void tst_HostMessages::theJobFolderMessageNamesNoSenderAndNoParameters()
{
    FileProcess plugin;
    record(plugin);
    delete plugin.InitImportTool(nullptr);
    QCOMPARE(m_sent.size(), size_t(1));
    QCOMPARE(m_sent[0].data.msgType, 10000404);
    QCOMPARE(m_sent[0].data.fromPlugin, QString());
    QVERIFY(m_sent[0].data.params.isEmpty());
    QVERIFY(recording_host::state().deliveries.empty());
}

void tst_HostMessages::importRequestsRunTheImportCommand()
{
    FileProcess plugin;
    delete plugin.InitImportTool(nullptr);
    bool fileDialogOpened = false;
    ModalResponder responder;
    responder.expect([&fileDialogOpened](QWidget *window) {
        fileDialogOpened = window->inherits("QFileDialog");
        window->close();
    });
    plugin.recMsgFromManager(received(10000801));
    QVERIFY(fileDialogOpened);
}

void tst_HostMessages::exportRequestsRunTheExportCommand()
{
    FileProcess plugin;
    delete plugin.InitExportTool();
    record(plugin);
    plugin.recMsgFromManager(received(10000802));
    QCOMPARE(m_sent.size(), size_t(4));
}

void tst_HostMessages::requestsDoNothingBeforeTheToolsAreMade()
{
    FileProcess plugin;
    record(plugin);
    plugin.recMsgFromManager(received(10000801));
    plugin.recMsgFromManager(received(10000802));
    QVERIFY(m_sent.empty());
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_HostMessages::unknownMessagesAreIgnored_data()
{
    QTest::addColumn<int>("type");
    for (int type : {0, -1, 10000401, 10000402, 10000403, 10000404, 10000504, 10000803, 2147483647})
        QTest::newRow(qPrintable(QString::number(type))) << type;
}

void tst_HostMessages::unknownMessagesAreIgnored()
{
    QFETCH(int, type);
    FileProcess plugin;
    delete plugin.InitImportTool(nullptr);
    delete plugin.InitExportTool();
    record(plugin);
    plugin.recMsgFromManager(received(type));
    QVERIFY(m_sent.empty());
    QVERIFY(!FileProcessAccess::exportDialog(plugin));
}

void tst_HostMessages::aProfileListWaitsForTheFirstDialog()
{
    FileProcess plugin;
    QList<std::string> list{"a", "b"};
    plugin.recMsgFromManager(received(10000603, &list));
    QVERIFY(list.isEmpty());
    QCOMPARE(FileProcessAccess::newProfileList(plugin), QList<std::string>({"a", "b"}));

    ExportJobInfo job;
    plugin.recMsgFromManager(received(10000503, &job));
    QVERIFY(FileProcessAccess::newProfileList(plugin).isEmpty());

    // The dialog holds the list now: an exchange with it brings the list back.
    QList<std::string> probe;
    FileProcessAccess::exportDialog(plugin)->setNewProfileList(probe);
    QCOMPARE(probe, QList<std::string>({"a", "b"}));
}

void tst_HostMessages::twoProfileListsInARowAreExchangedBack()
{
    FileProcess plugin;
    ExportJobInfo job;
    plugin.recMsgFromManager(received(10000503, &job));
    QList<std::string> first{"first"};
    QList<std::string> second{"second"};
    QList<std::string> third{"third"};

    plugin.recMsgFromManager(received(10000603, &first));
    QVERIFY(first.isEmpty());
    plugin.recMsgFromManager(received(10000603, &second));
    QVERIFY(second.isEmpty()); // the plug-in held the dialog's empty list
    QCOMPARE(FileProcessAccess::newProfileList(plugin), QList<std::string>({"first"}));
    plugin.recMsgFromManager(received(10000603, &third));
    QCOMPARE(third, QList<std::string>({"first"}));
    QCOMPARE(FileProcessAccess::newProfileList(plugin), QList<std::string>({"second"}));
}

void tst_HostMessages::aProfileListWithoutPayloadIsIgnored()
{
    FileProcess plugin;
    QList<std::string> list{"a"};
    plugin.recMsgFromManager(received(10000603, &list));
    plugin.recMsgFromManager(received(10000603, nullptr));
    QCOMPARE(FileProcessAccess::newProfileList(plugin), QList<std::string>({"a"}));
}

void tst_HostMessages::aProfileListAfterTheDialogHasClosedStaysWithThePlugin()
{
    FileProcess plugin;
    ExportJobInfo job;
    plugin.recMsgFromManager(received(10000503, &job));
    FileProcessAccess::exportDialog(plugin)->close();
    QTRY_VERIFY(!FileProcessAccess::exportDialog(plugin));
    QList<std::string> list{"a"};
    plugin.recMsgFromManager(received(10000603, &list));
    QCOMPARE(FileProcessAccess::newProfileList(plugin), QList<std::string>({"a"}));
}

void tst_HostMessages::reportsAreRelayedUnchanged()
{
    FileProcess plugin;
    record(plugin);
    QList<std::string> layers{"top"};
    PluginMetaData report;
    report.fromPlugin = "File_Process";
    report.toPlugin = "ListBar_PNList";
    report.msgType = 10000403;
    report.params["path"] = "d:/out";
    report.payload = &layers;

    plugin.on_send_exprot_xml(report);

    QCOMPARE(m_sent.size(), size_t(1));
    QCOMPARE(m_sent[0].way, QString("signal"));
    QCOMPARE(m_sent[0].data.fromPlugin, QString("File_Process"));
    QCOMPARE(m_sent[0].data.toPlugin, QString("ListBar_PNList"));
    QCOMPARE(m_sent[0].data.msgType, 10000403);
    QCOMPARE(m_sent[0].data.params, report.params);
    QCOMPARE(m_sent[0].data.payload, static_cast<void *>(&layers));
}

void tst_HostMessages::aReportOfTheDialogReachesTheManager()
{
    FileProcess plugin;
    ExportJobInfo job;
    plugin.recMsgFromManager(received(10000503, &job));
    record(plugin);
    PluginMetaData report;
    report.fromPlugin = "File_Process";
    report.msgType = 10000403;
    emit FileProcessAccess::exportDialog(plugin)->on_send_exprot_xml_to_fileprocess(report);
    QCOMPARE(m_sent.size(), size_t(1));
    QCOMPARE(m_sent[0].data.fromPlugin, QString("File_Process"));
}

void tst_HostMessages::onlyTheTypeOfAMessageCounts()
{
    FileProcess plugin;
    ExportJobInfo job;
    PluginMetaData data = received(10000503, &job);
    data.fromPlugin = "somebody";
    data.toPlugin = "somebody else";
    plugin.recMsgFromManager(data);
    QVERIFY(FileProcessAccess::exportDialog(plugin));
}

QTEST_MAIN(tst_HostMessages)
#include "tst_hostmessages.moc"
