// The host's settings file "oxconfig.ini", which the plug-in reads and never writes.

#include "plugin/fileprocess.h"

#include "platform/gbktext.h"
#include "platform/paths.h"
#include "plugin/interface/messages.h"

#include <QDebug>
#include <QDir>
#include <QSettings>

#include <glog/logging.h>

namespace {

// The factor that turns a number in `unit` into nanometres; 1 for every other text. Letter case counts.
double nanometresPer(const QString &unit)
{
    if (unit == "um")
        return 1000.0;
    if (unit == "mm")
        return 1000000.0;
    return 1.0;
}

} // namespace

void FileProcess::readCfgFile()
{
    QSettings settings("oxconfig.ini", QSettings::IniFormat);
    settings.setIniCodec("utf-8");
    const auto text = [&settings](const char *key) { return settings.value(key).toString(); };
    const auto isYes = [&text](const char *key) { return text(key).toLower() == "yes"; };

    const QString jobPath = text("Job_Path/path");
    CheckDir(jobPath);
    m_config.jobPath = jobPath;

    m_config.outputPath = text("Output_Path/path");
    qDebug() << m_config.outputPath;
    CheckDir(m_config.outputPath);

    m_config.outputPathSecond = text("Output_Path_Second/path");
    m_config.outputFormat = text("Output_Path_Format/format");
    m_config.resizeUnit = text("Resize/unit");
    m_config.resizeValue = settings.value("Resize/value").toDouble() * nanometresPer(m_config.resizeUnit);
    m_config.dbu = settings.value("Dbu/Dbu").toDouble();
    m_config.profileDot = isYes("Profile_Dot/Profile_Dot");
    m_config.mirror = isYes("Mirror/Mirror");

    qDebug() << m_config.jobPath;
    qDebug() << m_config.outputPath;
    qDebug() << m_config.outputPathSecond;
    qDebug() << m_config.outputFormat;
    qDebug() << m_config.resizeUnit;

    PluginMetaData data;
    data.toPlugin = messages::layerList;
    data.msgType = messages::JobFolder;
    data.payload = &m_config.jobPath;
    sendMsgToManager(data);
}

void FileProcess::CheckDir(QString path)
{
    qDebug() << path;
    if (path.isEmpty() || QDir(platform::toLocal(path)).exists())
        return;
    google::LogMessage("fileprocess.cpp", 416, google::GLOG_INFO).stream()
        << platform::gbk("路径：") << '"' << path.toStdString() << '"'
        << platform::gbk("不存在，将自动创建！");
    QDir().mkpath(platform::toLocal(path));
}
