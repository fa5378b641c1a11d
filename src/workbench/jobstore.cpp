#include "workbench/jobstore.h"

#include <QDir>
#include <QFileInfo>

namespace {

QString matrixOf(const QString &folder)
{
    for (const char *name : {"/matrix/matrix", "/matrix/matrix.gz", "/matrix/matrix.Z", "/matrix/matrix.z"}) {
        if (QFileInfo(folder + name).isFile())
            return folder + name;
    }
    return {};
}

} // namespace

QVector<JobEntry> listJobs(const QString &root)
{
    QVector<JobEntry> jobs;
    const QDir::SortFlags byName = QDir::Name | QDir::IgnoreCase;
    for (const QFileInfo &folder : QDir(root).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, byName)) {
        const QString matrix = matrixOf(folder.absoluteFilePath());
        if (!matrix.isEmpty())
            jobs.append({folder.fileName(), folder.absoluteFilePath(), QFileInfo(matrix).lastModified()});
    }
    return jobs;
}
