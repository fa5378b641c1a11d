// What the host's own parts do with the plug-in's messages.
#include "plugin/interface/messages.h"
#include "pluginmanger/pluginhost.h"
#include "workbench/hostmessages.h"

#include <QSignalSpy>
#include <QtTest>

#include <string>

namespace {

void send(const QString &to, qint32 type, void *payload = nullptr, const QVariant &path = {})
{
    PluginMetaData data;
    data.toPlugin = to;
    data.msgType = type;
    data.payload = payload;
    if (path.isValid())
        data.params["path"] = path;
    PluginHost::instance().deliver(data);
}

void clickExport()
{
    send(messages::graphicView, messages::RequestJobContext);
    send(messages::graphicView, messages::RequestJobContext);
    send(messages::jobList, messages::RequestJobContext);
    send(messages::graphicView, messages::RequestJobContext);
}

ExportJobInfo contextOf(const QString &job)
{
    ExportJobInfo context;
    context.jobName = job;
    context.stepName = "pcb";
    context.folderPath = "/jobs/" + job;
    return context;
}

} // namespace

class tst_WorkbenchMessages : public QObject
{
    Q_OBJECT

private:
    QVector<ExportJobInfo> answers;

private slots:
    void init()
    {
        answers.clear();
        PluginHost::instance().addReceiver("File_Process", [this](const PluginMetaData &data) {
            QCOMPARE(data.msgType, qint32(messages::JobContext));
            answers << *static_cast<ExportJobInfo *>(data.payload);
        });
    }
    void cleanup() { PluginHost::instance().removeReceiver("File_Process"); }

    void oneClickGetsOneAnswer()
    {
        HostMessages messages;
        messages.setJobContext(contextOf("beacon"));
        clickExport();
        QCOMPARE(answers.size(), 0); // not before the click has been handled
        QTRY_COMPARE(answers.size(), 1);
        QTest::qWait(50);
        QCOMPARE(answers.size(), 1);
        QCOMPARE(answers[0].jobName, QString("beacon"));
        QCOMPARE(answers[0].stepName, QString("pcb"));
        QCOMPARE(answers[0].folderPath, QString("/jobs/beacon"));
    }

    void theNextClickGetsTheNextAnswer()
    {
        HostMessages messages;
        messages.setJobContext(contextOf("beacon"));
        clickExport();
        QTRY_COMPARE(answers.size(), 1);
        messages.setJobContext(contextOf("amplifier"));
        clickExport();
        QTRY_COMPARE(answers.size(), 2);
        QCOMPARE(answers[1].jobName, QString("amplifier"));
    }

    void eitherPartAnswersAlone_data()
    {
        QTest::addColumn<QString>("receiver");
        QTest::newRow("view") << messages::graphicView;
        QTest::newRow("job list") << messages::jobList;
    }
    void eitherPartAnswersAlone()
    {
        QFETCH(QString, receiver);
        HostMessages messages;
        messages.setJobContext(contextOf("beacon"));
        send(receiver, messages::RequestJobContext);
        QTRY_COMPARE(answers.size(), 1);
    }

    void withoutAnOpenJobTheExportIsRefused()
    {
        HostMessages messages;
        QSignalSpy refused(&messages, &HostMessages::exportRefused);
        clickExport();
        QTRY_COMPARE(refused.count(), 1);
        QCOMPARE(answers.size(), 0);
    }

    void contextIsAnnouncedBeforeItIsGiven()
    {
        HostMessages messages;
        messages.setJobContext(contextOf("beacon"));
        int answersThen = -1;
        connect(&messages, &HostMessages::contextRequested, this, [&] { answersThen = answers.size(); });
        clickExport();
        QTRY_COMPARE(answers.size(), 1);
        QCOMPARE(answersThen, 0);
    }

    void otherMessagesToTheViewAreIgnored()
    {
        HostMessages messages;
        messages.setJobContext(contextOf("beacon"));
        send(messages::graphicView, messages::ExportReport);
        QTest::qWait(20);
        QCOMPARE(answers.size(), 0);
    }

    void importedFileIsPassedOnDuringTheDelivery()
    {
        HostMessages messages;
        QSignalSpy imported(&messages, &HostMessages::fileImported);
        QString path = "/in/beacon.tgz";
        send(messages::layerList, messages::FileReady, &path);
        QCOMPARE(imported.count(), 1);
        QCOMPARE(imported[0][0].toString(), path);
    }

    void exportReportCarriesFolderAndLayers()
    {
        HostMessages messages;
        QSignalSpy reported(&messages, &HostMessages::exportReported);
        QList<std::string> layers = {"BOTTOM", "TOP"};
        send(messages::layerList, messages::ExportReport, &layers, "/out/OX/beacon");
        QCOMPARE(reported.count(), 1);
        QCOMPARE(reported[0][0].toString(), QString("/out/OX/beacon"));
        QCOMPARE(reported[0][1].toStringList(), (QStringList{"BOTTOM", "TOP"}));
    }

    void jobFolderIsPassedOn()
    {
        HostMessages messages;
        QSignalSpy announced(&messages, &HostMessages::jobFolderAnnounced);
        QString folder;
        send(messages::layerList, messages::JobFolder, &folder);
        folder = "D:/jobs";
        send(messages::layerList, messages::JobFolder, &folder);
        QCOMPARE(announced.count(), 2);
        QCOMPARE(announced[0][0].toString(), QString());
        QCOMPARE(announced[1][0].toString(), folder);
    }

    void messageWithoutPayloadIsIgnored()
    {
        HostMessages messages;
        QSignalSpy imported(&messages, &HostMessages::fileImported);
        QSignalSpy reported(&messages, &HostMessages::exportReported);
        QSignalSpy announced(&messages, &HostMessages::jobFolderAnnounced);
        for (qint32 type : {messages::FileReady, messages::ExportReport, messages::JobFolder})
            send(messages::layerList, type);
        QCOMPARE(imported.count() + reported.count() + announced.count(), 0);
    }

    void partsThatAreGoneAnswerNothing()
    {
        {
            HostMessages messages;
            messages.setJobContext(contextOf("beacon"));
            clickExport(); // answered later, when nobody is there any more
        }
        QTest::qWait(20);
        QCOMPARE(answers.size(), 0);
        PluginMetaData data;
        data.toPlugin = messages::layerList;
        QVERIFY(!PluginHost::instance().deliver(data));
    }
};

QTEST_GUILESS_MAIN(tst_WorkbenchMessages)
#include "tst_workbenchmessages.moc"
