#include "workbench/jobstore.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QMap>

#include <algorithm>

namespace {

// The context of this file's texts.
struct Jobs
{
    Q_DECLARE_TR_FUNCTIONS(Jobs)
};

const qint64 largestInfoFile = 100000; // bytes; one has a few hundred

QString matrixOf(const QString &folder)
{
    for (const char *name : {"/matrix/matrix", "/matrix/matrix.gz", "/matrix/matrix.Z", "/matrix/matrix.z"}) {
        if (QFileInfo(folder + name).isFile())
            return folder + name;
    }
    return {};
}

// The lines NAME=VALUE of the job's file misc/info, which not every job has.
QMap<QString, QString> infoOf(const QString &folder)
{
    QMap<QString, QString> info;
    QFile file(folder + "/misc/info");
    if (!file.open(QIODevice::ReadOnly))
        return info;
    for (const QByteArray &line : file.read(largestInfoFile).split('\n')) {
        const int equals = line.indexOf('=');
        if (equals > 0)
            info[QString::fromLatin1(line.left(equals)).trimmed()] =
                QString::fromUtf8(line.mid(equals + 1)).trimmed();
    }
    return info;
}

QDateTime dateIn(const QMap<QString, QString> &info)
{
    for (const char *key : {"SAVE_DATE", "CREATION_DATE"}) {
        const QDateTime date = QDateTime::fromString(info[key], "yyyyMMdd.hhmmss");
        if (date.isValid())
            return date;
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
        if (matrix.isEmpty())
            continue;
        const QMap<QString, QString> info = infoOf(folder.absoluteFilePath());
        jobs.append({folder.fileName(), folder.absoluteFilePath(), QFileInfo(matrix).lastModified(),
                     dateIn(info), info["SAVE_APP"], info["ODB_SOURCE"]});
    }
    return jobs;
}

qint64 folderSize(const QString &folder, const std::atomic<bool> &cancelled)
{
    qint64 bytes = 0;
    QDirIterator files(folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        if (cancelled)
            return -1;
        files.next();
        bytes += files.fileInfo().size();
    }
    return bytes;
}

QString jobNameProblem(const QString &root, const QString &name)
{
    const auto isDotOrBlank = [](QChar c) { return c == '.' || c.isSpace(); };
    if (std::all_of(name.begin(), name.end(), isDotOrBlank))
        return Jobs::tr("A job needs a name.");
    for (const QChar c : name) {
        if (QString("/\\:*?\"<>|").contains(c) || c.unicode() < 0x20)
            return Jobs::tr("\"%1\" cannot stand in a job's name.").arg(c);
    }
    // The command interpreter takes a blank for the end of a path, when an import replaces the job.
    if (name.contains(' '))
        return Jobs::tr("A blank in a job's name would keep imports from replacing the job.");
    // Exports find jobs without regard to case.
    for (const QString &other :
         QDir(root).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden)) {
        if (other.compare(name, Qt::CaseInsensitive) == 0)
            return Jobs::tr("There is a %1 already.").arg(other);
    }
    return {};
}
