#include "workbench/hostmessages.h"

#include "plugin/interface/messages.h"
#include "pluginmanger/pluginhost.h"

#include <QTimer>

#include <glog/logging.h>

#include <string>

using namespace messages;

HostMessages::HostMessages(QObject *parent) : QObject(parent)
{
    PluginHost &host = PluginHost::instance();
    for (const char *name : {graphicView, jobList})
        host.addReceiver(name, [this, name](const PluginMetaData &data) { takeContextRequest(name, data); });
    host.addReceiver(layerList, [this](const PluginMetaData &data) { takeListMessage(data); });
}

HostMessages::~HostMessages()
{
    for (const char *name : {graphicView, jobList, layerList})
        PluginHost::instance().removeReceiver(name);
}

void HostMessages::takeContextRequest(const QString &receiver, const PluginMetaData &data)
{
    if (data.msgType != RequestJobContext)
        return;
    // One click asks several times, of both parts. The answer waits until the click has been handled, and is
    // one.
    if (m_answerPending)
        return;
    m_answerPending = true;
    QTimer::singleShot(0, this, [this, receiver] { answerContextRequest(receiver); });
}

void HostMessages::answerContextRequest(const QString &sender)
{
    m_answerPending = false;
    if (m_context.jobName.isEmpty()) {
        emit exportRefused();
        return;
    }
    emit contextRequested();
    ExportJobInfo context = m_context; // a copy, because the receiver takes the list out of it
    PluginMetaData answer;
    answer.fromPlugin = sender;
    answer.toPlugin = fileProcess;
    answer.msgType = JobContext;
    answer.payload = &context;
    PluginHost::instance().deliver(answer);
}

void HostMessages::takeListMessage(const PluginMetaData &data)
{
    if (!data.payload) {
        LOG(WARNING) << "the message " << data.msgType << " from \"" << data.fromPlugin.toStdString()
                     << "\" has no payload and is ignored";
        return;
    }
    switch (data.msgType) {
    case FileReady:
        emit fileImported(*static_cast<const QString *>(data.payload));
        break;
    case ExportReport: {
        QStringList layers;
        for (const std::string &layer : *static_cast<const QList<std::string> *>(data.payload))
            layers << QString::fromStdString(layer);
        emit exportReported(data.params.value("path").toString(), layers);
        break;
    }
    case JobFolder:
        emit jobFolderAnnounced(*static_cast<const QString *>(data.payload));
        break;
    default:
        break;
    }
}
