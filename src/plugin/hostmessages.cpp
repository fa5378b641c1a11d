// Every message that the plug-in sends to the host's manager, and what it does with those that it receives.

#include "plugin/fileprocess.h"

#include "platform/gbktext.h"
#include "plugin/interface/messages.h"
#include "plugin/interface/pluginmanager.h"

#include <glog/logging.h>

namespace {

PluginMetaData message(const QString &receiver, qint32 type, void *payload = nullptr)
{
    PluginMetaData data;
    data.toPlugin = receiver;
    data.msgType = type;
    data.payload = payload;
    return data;
}

void logStep(int line, const char *command, const char *text)
{
    google::LogMessage("fileprocess.cpp", line, google::GLOG_INFO).stream()
        << platform::gbk(command) << platform::gbk(text);
}

} // namespace

void FileProcess::recMsgFromManager(PluginMetaData data)
{
    switch (data.msgType) {
    case messages::JobContext:
        InitExportInterface(static_cast<QObject *>(data.payload));
        break;
    case messages::NewProfileList:
        exportNewProfile(static_cast<QObject *>(data.payload));
        break;
    case messages::RequestImport:
        emit ImportSignal();
        break;
    case messages::RequestExport:
        emit ExportSignal();
        break;
    default:
        break;
    }
}

void FileProcess::on_ExportACT_clicked()
{
    QTpluginsManger4CAM *manager = QTpluginsManger4CAM::instance();
    const QPointer<FileProcess> self(this); // any receiver may destroy this object

    const PluginMetaData toView = message(messages::graphicView, messages::RequestJobContext);
    sendMsgToManager(toView);
    if (!self)
        return;
    manager->recMegToPlugin(m_parentWidget, toView);
    if (!self)
        return;
    logStep(469, "Export：", "获取配置层信息");

    sendMsgToManager(message(messages::jobList, messages::RequestJobContext));
    if (!self)
        return;
    logStep(475, "Export：", "准备料号信息");

    // The view is asked once more; the job list gets its request through the signal only.
    manager->recMegToPlugin(m_parentWidget, toView);
}

void FileProcess::on_send_exprot_xml(PluginMetaData &data)
{
    sendMsgToManager(data);
}

void FileProcess::sendPath2Mangager()
{
    QString path = m_filePath;
    sendMsgToManager(message(messages::layerList, messages::FileReady, &path));
    logStep(435, "Import：", "料号路径以获取，即将开始导入");
}
