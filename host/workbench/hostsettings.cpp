#include "host/workbench/hostsettings.h"

#include "platform/paths.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>

#include <glog/logging.h>

namespace {

const char fileName[] = "oxconfig.ini";

void openAsUtf8(QSettings &settings)
{
    settings.setIniCodec("utf-8");
}

} // namespace

bool hostsettings::writeDefaults()
{
    if (QFileInfo::exists(fileName))
        return true;
    QSettings settings(fileName, QSettings::IniFormat);
    openAsUtf8(settings);
    settings.setValue("Job_Path/path", QDir::current().absoluteFilePath("job"));
    settings.setValue("Output_Path/path", "");
    settings.setValue("Output_Path_Second/path", "");
    settings.setValue("Output_Path_Format/format", ".gds");
    settings.setValue("Resize/unit", "um");
    settings.setValue("Resize/value", 0);
    settings.setValue("Dbu/Dbu", 0.001);
    settings.setValue("Profile_Dot/Profile_Dot", "no");
    settings.setValue("Mirror/Mirror", "no");
    settings.sync();
    if (settings.status() != QSettings::NoError) {
        LOG(ERROR) << QDir::current().absoluteFilePath(fileName).toStdString() << " cannot be written";
        return false;
    }
    LOG(INFO) << "wrote the default settings to " << QDir::current().absoluteFilePath(fileName).toStdString();
    return true;
}

QString hostsettings::jobRoot(const QString &configured)
{
    const QString folder = platform::toLocal(configured);
    const bool usable = !folder.isEmpty() && QFileInfo(folder).isDir();
    return QDir::cleanPath(QDir::current().absoluteFilePath(usable ? folder : QString("job")));
}

SessionFolder::SessionFolder(const QString &jobFolder)
    : m_before(QDir::currentPath()), m_folder(new QTemporaryDir)
{
    QSettings settings(m_folder->filePath(fileName), QSettings::IniFormat);
    openAsUtf8(settings);
    QSettings source(QDir::current().absoluteFilePath(fileName), QSettings::IniFormat);
    openAsUtf8(source);
    for (const QString &key : source.allKeys()) {
        QString value = source.value(key).toString();
        // A relative path counts from the user's folder, not from this one.
        if (key.endsWith("/path") && key != "Output_Path_Second/path" && !value.isEmpty())
            value = QDir(m_before).absoluteFilePath(platform::toLocal(value));
        settings.setValue(key, value);
    }
    settings.setValue("Job_Path/path", jobFolder);
    settings.sync();
    QDir::setCurrent(m_folder->path());
}

SessionFolder::~SessionFolder()
{
    QDir::setCurrent(m_before);
}
