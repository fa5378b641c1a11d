#include "workbench/hostsettings.h"

#include "platform/paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSettings>
#include <QTemporaryDir>

#include <glog/logging.h>

#include <cmath>

namespace {

const char fileName[] = "oxconfig.ini";

void openAsUtf8(QSettings &settings)
{
    settings.setIniCodec("utf-8");
}

// Copies the settings of `file`. A relative path of them counts from the folder that the file is in.
void copySettings(const QString &file, QSettings &to)
{
    QSettings from(file, QSettings::IniFormat);
    openAsUtf8(from);
    const QDir folder = QFileInfo(file).dir();
    for (const QString &key : from.allKeys()) {
        QString value = from.value(key).toString();
        if (key.endsWith("/path") && key != "Output_Path_Second/path" && !value.isEmpty())
            value = QDir::cleanPath(folder.absoluteFilePath(platform::toLocal(value)));
        if (key == "Job_Path/path")
            value = platform::toHandedOver(value);
        to.setValue(key, value);
    }
    to.sync();
}

// Writes the job folder of an existing settings file as plug-ins take it.
void mendJobFolder()
{
    QSettings settings(fileName, QSettings::IniFormat);
    openAsUtf8(settings);
    const QString folder = settings.value("Job_Path/path").toString();
    if (!folder.contains('/'))
        return;
    settings.setValue("Job_Path/path", platform::toHandedOver(folder));
    LOG(INFO) << "the job folder " << folder.toStdString() << " is written with backslashes now";
}

} // namespace

HostSettings hostsettings::read()
{
    const HostSettings defaults;
    QSettings settings(fileName, QSettings::IniFormat);
    openAsUtf8(settings);
    HostSettings values;
    values.jobFolder = platform::toLocal(settings.value("Job_Path/path").toString());
    values.outputFolder = settings.value("Output_Path/path").toString();
    values.secondFolder = settings.value("Output_Path_Second/path").toString();
    values.resize = settings.value("Resize/value", defaults.resize).toDouble();
    values.resizeUnit = settings.value("Resize/unit", defaults.resizeUnit).toString();
    values.databaseUnit = settings.value("Dbu/Dbu", defaults.databaseUnit).toDouble();
    values.withProfile = settings.value("Profile_Dot/Profile_Dot").toString().toLower() == "yes";
    values.exportDatabase = settings.value("Export_Database/path").toString();
    return values;
}

bool hostsettings::write(const HostSettings &values)
{
    QSettings settings(fileName, QSettings::IniFormat);
    openAsUtf8(settings);
    settings.setValue("Job_Path/path", platform::toHandedOver(values.jobFolder));
    settings.setValue("Output_Path/path", values.outputFolder);
    settings.setValue("Output_Path_Second/path", values.secondFolder);
    settings.setValue("Resize/value", values.resize);
    settings.setValue("Resize/unit", values.resizeUnit);
    settings.setValue("Dbu/Dbu", values.databaseUnit);
    settings.setValue("Profile_Dot/Profile_Dot", values.withProfile ? "yes" : "no");
    settings.setValue("Export_Database/path", values.exportDatabase);
    settings.sync();
    const std::string path = QDir::current().absoluteFilePath(fileName).toStdString();
    if (settings.status() != QSettings::NoError) {
        LOG(ERROR) << path << " cannot be written";
        return false;
    }
    LOG(INFO) << "wrote the settings to " << path;
    return true;
}

hostsettings::Entered hostsettings::enter(const UserFolders &folders)
{
    const QString before = QDir::current().absoluteFilePath(fileName);
    const QDir folder(folders.settings);
    if (!QDir().mkpath(folder.path()) || !QFileInfo(folder.path()).isWritable() ||
        !QDir::setCurrent(folder.path()))
        return {{},
                QCoreApplication::translate("hostsettings", "%1 is no folder that can be written to.")
                    .arg(QDir::toNativeSeparators(folder.path()))};
    if (QFileInfo::exists(fileName)) {
        mendJobFolder();
        return {};
    }
    HostSettings defaults;
    defaults.jobFolder = folders.jobs;
    defaults.outputFolder = folders.exports;
    defaults.exportDatabase = folders.history;
    if (!QFileInfo::exists(before)) {
        write(defaults);
        return {};
    }
    {
        QSettings settings(fileName, QSettings::IniFormat);
        openAsUtf8(settings);
        copySettings(before, settings);
    }
    HostSettings taken = read();
    if (taken.jobFolder.isEmpty())
        taken.jobFolder = QFileInfo(before).dir().filePath("job");
    if (taken.outputFolder.isEmpty())
        taken.outputFolder = QFileInfo(taken.jobFolder).dir().filePath("export");
    if (taken.exportDatabase.isEmpty())
        taken.exportDatabase = defaults.exportDatabase;
    write(taken);
    return {before, {}};
}

double hostsettings::resizeInNanometres(double value, const QString &unit)
{
    return unit == "mm" ? value * 1e6 : unit == "um" ? value * 1e3 : value;
}

QString hostsettings::resizeText(double value, const QString &unit)
{
    const double micrometres = resizeInNanometres(value, unit) / 1000.0;
    if (std::fabs(micrometres) < 0.0005)
        return QCoreApplication::translate("hostsettings", "Features keep their size.");
    const QLocale locale;
    const auto text = [&locale](double number) { return locale.toString(std::fabs(number), 'g', 10); };
    const QString sentence =
        micrometres > 0
            ? QCoreApplication::translate("hostsettings",
                                          "Exports grow features by %1 \u00b5m, %2 \u00b5m on each side.")
            : QCoreApplication::translate("hostsettings",
                                          "Exports shrink features by %1 \u00b5m, %2 \u00b5m on each side.");
    return sentence.arg(text(micrometres), text(micrometres / 2.0));
}

QString hostsettings::jobRoot(const QString &configured)
{
    const QString folder = platform::toLocal(configured);
    const bool usable = !folder.isEmpty() && QFileInfo(folder).isDir();
    return QDir::cleanPath(QDir::current().absoluteFilePath(usable ? folder : QString("job")));
}

RunFolder::RunFolder(const QString &jobFolder, const UserFolders &folders)
    : m_before(QDir::currentPath()), m_folder(new QTemporaryDir)
{
    const QString ofUser = QDir(folders.settings).filePath(fileName);
    const QString source = QFileInfo::exists(ofUser) ? ofUser : QDir::current().absoluteFilePath(fileName);
    QSettings settings(m_folder->filePath(fileName), QSettings::IniFormat);
    openAsUtf8(settings);
    copySettings(source, settings);
    const QString folder =
        jobFolder.isEmpty() ? hostsettings::jobRoot(settings.value("Job_Path/path").toString()) : jobFolder;
    settings.setValue("Job_Path/path", platform::toHandedOver(folder));
    settings.sync();
    QDir::setCurrent(m_folder->path());
}

RunFolder::~RunFolder()
{
    QDir::setCurrent(m_before);
}
