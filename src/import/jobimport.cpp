#include "import/jobimport.h"

#include "import/cleanup.h"
#include "import/progresswindow.h"
#include "import/unzipprogress.h"
#include "platform/paths.h"
#include "run/backgroundturn.h"

#include <QApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QRegExp>
#include <QThread>

#include <glog/logging.h>

#include <algorithm>
#include <system_error>

namespace {

const unsigned long pollMilliseconds = 20;

bool isFolder(const QString &path)
{
    return QDir(platform::toLocal(path)).exists();
}

QMessageBox::StandardButton ask(const QString &title, const QString &text,
                                QMessageBox::StandardButtons buttons)
{
    QMessageBox box;
    box.setWindowTitle(title);
    box.setText(text);
    box.setStandardButtons(buttons);
    box.setWindowModality(Qt::ApplicationModal);
    return QMessageBox::StandardButton(box.exec());
}

// A name of dots and blanks alone is that of the job root or of a folder around it; a separator leads to
// another folder.
bool namesAJob(const QString &name)
{
    const auto isDotOrBlank = [](QChar c) { return c == '.' || c.isSpace(); };
    return !std::all_of(name.begin(), name.end(), isDotOrBlank) && !name.contains('\\') &&
           !name.contains('/');
}

} // namespace

JobImport::JobImport(const ImportPlugin &plugin, const QString &archive)
    : m_plugin(plugin), m_archive(archive)
{
}

bool JobImport::run(QString &name)
{
    if (!namesAJob(name)) {
        LOG(ERROR) << "the archive " << m_archive.toStdString() << " was not imported: its name names no job";
        tellFailure();
        return false;
    }
    m_name = name;
    chooseJobRoot();
    const ProgressWindow progress(m_plugin.dialogParent());
    if (isFolder(m_jobFolder)) {
        m_isOverwriting = askToOverwrite();
        if (!m_plugin.isAlive())
            return false;
    }

    const BackgroundTurn turn("An archive is being unpacked", "the import");
    if (!turn.isMine())
        return false;
    progress.show();
    UnzipProgress job; // after a failure it cleans up while the user is told
    setJobStatics();
    const bool isUnpacked = start(job) && waitFor(job, progress);
    progress.close();
    if (!isUnpacked) {
        tellFailure();
        return false;
    }
    name = QString::fromStdWString(UnzipProgress::tarName);
    if (m_plugin.isAlive()) // otherwise the job stays as it was unpacked
        tidyUp(name);
    return true;
}

void JobImport::chooseJobRoot()
{
    const QString jobPath = m_plugin.jobPath();
    m_rootFolder = !jobPath.isEmpty() && isFolder(jobPath) ? jobPath : QString(".\\job");
    m_plugin.createFolder(m_rootFolder);
    m_jobFolder = m_rootFolder + "\\" + m_name;
    m_tarFile = m_name + ".tar";
}

// Whatever the answer, the archive is unpacked.
bool JobImport::askToOverwrite() const
{
    return ask(tr("Information"),
               tr("The job with the same name already exists, do you want to overwrite it?"),
               QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

void JobImport::tellFailure() const
{
    ask(tr("Error"), tr("The job unzipped failed, please check your files!"), QMessageBox::Yes);
}

// The path stands without quotes.
std::string JobImport::deleteCommand() const
{
    return "/c del " + m_jobFolder.toStdString() + "*.tar";
}

void JobImport::setJobStatics() const
{
    UnzipProgress::sourcePath = QString(m_archive).replace(QRegExp("/"), "\\").toStdWString();
    UnzipProgress::tarName = m_tarFile.toStdWString();
    UnzipProgress::unzipedFilePath = (m_rootFolder + "\\").toStdWString();
    UnzipProgress::removeCmd = deleteCommand();
    UnzipProgress::mergeFolder = m_isOverwriting ? m_name.toStdWString() : std::wstring();
}

// False when the system has no thread for the job.
bool JobImport::start(UnzipProgress &job)
{
    try {
        job.do_process();
        return true;
    } catch (const std::system_error &error) {
        LOG(ERROR) << "the unpacking cannot be started: " << error.what();
        return false;
    }
}

// Keeps the user interface alive until the job has ended (true) or reports a failure (false).
bool JobImport::waitFor(UnzipProgress &job, const ProgressWindow &progress)
{
    bool isFinished = job.isFinish();
    while (!isFinished) {
        const double value = job.get_value();
        if (value < 0.0)
            return false;
        progress.setValue(int(value));
        QApplication::processEvents();
        QThread::msleep(pollMilliseconds);
        isFinished = job.isFinish();
    }
    return true;
}

// `folderName` is that of the job inside the archive, empty when the archive was.
void JobImport::tidyUp(const QString &folderName) const
{
    deleteTar();
    if (!isFolder(m_rootFolder))
        return;
    const QString newFolder = m_rootFolder + "\\" + folderName;
    qDebug() << newFolder;
    qDebug() << m_jobFolder;
    if (m_isOverwriting && newFolder != m_jobFolder)
        removeOldJob(folderName.isEmpty() ? QString() : newFolder);
    // Fails when the old job was kept, or when the folder has this name already; then it keeps the name it
    // has.
    QFile::rename(platform::toLocal(newFolder), platform::toLocal(m_jobFolder));
}

void JobImport::deleteTar() const
{
    const std::string command = deleteCommand();
    const QString danger = cleanup::danger(command);
    if (danger.isEmpty()) {
        m_plugin.runHidden("cmd", command);
        return;
    }
    LOG(ERROR) << "only " << m_tarFile.toStdString()
               << " was deleted, without the command for it: " << danger.toStdString();
    QFile::remove(platform::toLocal(m_rootFolder + "\\" + m_tarFile));
}

// `newFolder` is the unpacked job, empty when the archive was.
void JobImport::removeOldJob(const QString &newFolder) const
{
    const std::string command = "/c rd /s /q " + m_jobFolder.toStdString();
    const QString danger = dangerOfRemoval(command, newFolder);
    if (danger.isEmpty()) {
        m_plugin.runHidden("cmd", command);
        QDir().rmdir(platform::toLocal(m_jobFolder));
    } else {
        LOG(ERROR) << "the old job " << m_jobFolder.toStdString() << " stays: " << danger.toStdString();
    }
}

// Why `command` must not remove the old job; empty when it may.
QString JobImport::dangerOfRemoval(const std::string &command, const QString &newFolder) const
{
    if (!UnzipProgress::mergeFolder.empty())
        return "the archive was unpacked over it";
    if (!newFolder.isEmpty() && !isFolder(newFolder))
        return "there is no new one";
    if (!newFolder.isEmpty() && !cleanup::areApart(m_jobFolder, newFolder))
        return "it is, holds or lies in the folder " + newFolder;
    return cleanup::danger(command, m_jobFolder);
}
