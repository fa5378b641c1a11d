#include "workbench/foldercheck.h"

#include "platform/shell.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

namespace {

using Weight = FolderCheck::Weight;

QString native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

// By writing: what a folder's rights say is not all that there is to know, on Windows least of all.
bool takesFiles(const QString &folder)
{
    QTemporaryFile probe(folder + "/.workbench-XXXXXX");
    return probe.open();
}

// Whether `folder`, which must be absolute, is or can be made one that files can be written to.
FolderCheck ofFolder(const QString &folder)
{
    if (!QDir::isAbsolutePath(folder))
        return {Weight::Error, FolderCheck::tr("The path must be absolute, from the drive or the root on.")};
    QString there = QDir::cleanPath(folder);
    while (!QFileInfo::exists(there) && there != QFileInfo(there).path())
        there = QFileInfo(there).path();
    if (!QFileInfo(there).isDir())
        return {Weight::Error, FolderCheck::tr("%1 is no folder.").arg(native(there))};
    if (!takesFiles(there))
        return {Weight::Error,
                FolderCheck::tr("Nothing can be written in %1: it is read-only.").arg(native(there))};
    if (there != QDir::cleanPath(folder))
        return {Weight::Note, FolderCheck::tr("This folder does not exist yet; it will be made.")};
    return {};
}

// The import's clean-up commands are handed to the command interpreter in the system's code page.
bool survivesTheCodePage(const QString &path)
{
    return QString::fromStdWString(platform::wideFromSystemCodePage(path.toStdString())) == path;
}

} // namespace

FolderCheck FolderCheck::ofJobs(const QString &path)
{
    if (path.isEmpty())
        return {Weight::Error, tr("Imported jobs need a folder.")};
    const FolderCheck check = ofFolder(path);
    if (check.weight == Weight::Error)
        return check;
    if (path.contains(' '))
        return {
            Weight::Warning,
            tr("The path has a blank. The commands with which an import tidies up take it for the end of the "
               "path: an unpacked .tar may stay behind, and an old job stays although it was to be "
               "replaced.")};
    if (!survivesTheCodePage(path))
        return {
            Weight::Warning,
            tr("The path has letters that this system's code page lacks. An import cannot tidy up there: an "
               "unpacked .tar stays behind, and an old job stays although it was to be replaced.")};
    return check;
}

FolderCheck FolderCheck::ofExports(const QString &path, const QString &jobs)
{
    if (path.isEmpty())
        return {Weight::Note,
                tr("Files land inside the job's own folder: whoever replaces or removes the job loses "
                   "them.")};
    const FolderCheck check = ofFolder(path);
    if (check.weight != Weight::Error && !jobs.isEmpty() &&
        (QDir::cleanPath(path) + "/").startsWith(QDir::cleanPath(jobs) + "/"))
        return {Weight::Warning,
                tr("This folder lies in the folder of the jobs: whoever replaces or removes a job of "
                   "its name loses the files.")};
    return check;
}

FolderCheck FolderCheck::ofRecord(const QString &path)
{
    if (path.isEmpty())
        return {Weight::Note, tr("Exports are not recorded, and the history stays as it is.")};
    if (QFileInfo(path).isDir())
        return {Weight::Error, tr("%1 is a folder, not a file.").arg(native(path))};
    if (QFileInfo::exists(path) && !QFileInfo(path).isWritable())
        return {Weight::Error, tr("%1 is read-only.").arg(native(path))};
    const FolderCheck check = ofFolder(QFileInfo(path).path());
    return check.weight == Weight::Error ? check : FolderCheck();
}
