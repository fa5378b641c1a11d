#include "workbench/userfolders.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

namespace {

// The first folder above `path` that exists, or `path`.
QString existing(QString path)
{
    while (!QFileInfo::exists(path) && path != QFileInfo(path).path())
        path = QFileInfo(path).path();
    return path;
}

QString placeForJobs()
{
    QStringList places{QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + "/CAM"};
    places << QDir::homePath() + "/CAM" << QStandardPaths::standardLocations(QStandardPaths::AppDataLocation);
    const auto suits = [](const QString &place) {
        return !place.contains(' ') && QFileInfo(existing(place)).isWritable();
    };
    const auto found = std::find_if(places.cbegin(), places.cend(), suits);
    return found == places.cend() ? places.first() : *found;
}

} // namespace

UserFolders UserFolders::ofSystem()
{
    const QString jobs = placeForJobs();
    const QString settings = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    return {settings, jobs + "/jobs", jobs + "/export", data + "/exports.sqlite"};
}

UserFolders UserFolders::below(const QString &folder)
{
    return {folder, folder + "/job", folder + "/export", folder + "/exports.sqlite"};
}
