// Every message that the plug-in sends to the host's manager, and what it does with those that it receives.

#include "plugin/fileprocess.h"

#include "platform/gbktext.h"
#include "plugin/interface/pluginmanager.h"

#include <glog/logging.h>

namespace {

enum MessageType : qint32 {
    FileReady = 10000401,
    RequestJobContext = 10000402,
    JobContext = 10000503,
    NewProfileList = 10000603,
    RequestImport = 10000801,
    RequestExport = 10000802,
};

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
    google::LogMessage("fileprocess.cpp", line, google::GLOG_INFO).stream() << gbk(command) << gbk(text);
}

} // namespace

void FileProcess::recMsgFromManager(PluginMetaData data)
{
    switch (data.msgType) {
    case JobContext:
        InitExportInterface(static_cast<QObject *>(data.payload));
        break;
    case NewProfileList:
        exportNewProfile(static_cast<QObject *>(data.payload));
        break;
    case RequestImport:
        emit ImportSignal();
        break;
    case RequestExport:
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

    const PluginMetaData toView = message("Graphic_View.dll", RequestJobContext);
    sendMsgToManager(toView);
    if (!self)
        return;
    manager->recMegToPlugin(m_parentWidget, toView);
    if (!self)
        return;
    logStep(469, "Export：", "获取配置层信息");

    sendMsgToManager(message("Graphic_JobList.dll", RequestJobContext));
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
    sendMsgToManager(message("ListBar_PNList", FileReady, &path));
    logStep(435, "Import：", "料号路径以获取，即将开始导入");
}
