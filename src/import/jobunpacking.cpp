// Unpacks a job archive into the job root, on the user-interface thread's side: the question before a job is
// replaced, the progress window, the poll loop, and the tidying up afterwards.

#include "plugin/fileprocess.h"

#include "import/cleanup.h"
#include "import/unzipprogress.h"
#include "platform/paths.h"
#include "run/backgroundturn.h"

#include <QApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QRegExp>
#include <QThread>

#include <glog/logging.h>

#include <algorithm>
#include <system_error>

namespace {

const unsigned long PollMilliseconds = 20;
const int BarWidth = 500; // pixels

bool isFolder(const QString &path)
{
    return QDir(platform::toLocal(path)).exists();
}

QString withoutEnding(const QString &path)
{
    return path.left(path.lastIndexOf('.'));
}

// The parent may delete them whenever events are handled.
struct ProgressWindow
{
    QPointer<QWidget> window;
    QPointer<QProgressBar> bar;

    void show() const
    {
        if (window)
            window->show();
    }
    void close() const
    {
        if (window)
            window->close();
    }
};

// A window without a frame, above all others, with a bar that only shows that something is going on. It stays
// with `parent`, which deletes it.
ProgressWindow makeProgressWindow(QWidget *parent)
{
    auto *window = new QWidget(parent);
    window->setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::FramelessWindowHint |
                           Qt::WindowStaysOnTopHint | Qt::CustomizeWindowHint);
    window->setWindowModality(Qt::ApplicationModal);

    auto *bar = new QProgressBar(window);
    bar->setFixedWidth(BarWidth);
    bar->setOrientation(Qt::Horizontal);
    bar->setRange(0, 0);

    auto *layout = new QHBoxLayout(window);
    layout->addWidget(bar);
    return {window, bar};
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

// Keeps the user interface alive until the job has ended (true) or reports a failure (false).
bool waitFor(UnzipProgress &job, const QPointer<QProgressBar> &bar)
{
    bool isFinished = job.isFinish();
    while (!isFinished) {
        const double value = job.get_value();
        if (value < 0.0)
            return false;
        if (bar)
            bar->setValue(int(value));
        QApplication::processEvents();
        QThread::msleep(PollMilliseconds);
        isFinished = job.isFinish();
    }
    return true;
}

// False when the system has no thread for the job.
bool start(UnzipProgress &job)
{
    try {
        job.do_process();
        return true;
    } catch (const std::system_error &error) {
        LOG(ERROR) << "the unpacking cannot be started: " << error.what();
        return false;
    }
}

// Why `command` must not remove the job `oldDir` for the job `newDir`, which is empty when the archive was;
// empty when it may.
QString dangerOfRemoval(const std::string &command, const QString &oldDir, const QString &newDir)
{
    if (!UnzipProgress::mergeFolder.empty())
        return "the archive was unpacked over it";
    if (!newDir.isEmpty() && !isFolder(newDir))
        return "there is no new one";
    if (!newDir.isEmpty() && !cleanup::areApart(oldDir, newDir))
        return "it is, holds or lies in the folder " + newDir;
    return cleanup::danger(command, oldDir);
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

bool FileProcess::copyDirectory(QString source, QString &name, bool)
{
    if (!namesAJob(name)) {
        LOG(ERROR) << "the archive " << source.toStdString() << " was not imported: its name names no job";
        ask(tr("Error"), tr("The job unzipped failed, please check your files!"), QMessageBox::Yes);
        return false;
    }
    const bool hasJobPath = !m_config.jobPath.isEmpty() && isFolder(m_config.jobPath);
    const QString rootFolder = hasJobPath ? m_config.jobPath : QString(".\\job");
    const QString jobRoot = rootFolder + "\\";
    CheckDir(rootFolder);

    const QString tarFile = name + ".tar";
    const QString jobDir = jobRoot + name;
    const ProgressWindow progress = makeProgressWindow(m_importParent);
    const QPointer<FileProcess> self(this); // whatever handles events below may destroy this object

    bool overwrite = false;
    if (isFolder(jobDir)) {
        overwrite = ask(tr("Information"),
                        tr("The job with the same name already exists, do you want to overwrite it?"),
                        QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
        if (!self)
            return false;
    }

    const BackgroundTurn turn("An archive is being unpacked", "the import");
    if (!turn.isMine())
        return false;
    progress.show();
    UnzipProgress job;
    UnzipProgress::sourcePath = QString(source).replace(QRegExp("/"), "\\").toStdWString();
    UnzipProgress::tarName = tarFile.toStdWString();
    UnzipProgress::unzipedFilePath = jobRoot.toStdWString();
    // The paths stand without quotes.
    const std::string deleteCommand =
        std::string("/c del ") + jobRoot.toStdString() + name.toStdString() + std::string("*.tar");
    UnzipProgress::removeCmd = deleteCommand;
    UnzipProgress::mergeFolder = overwrite ? name.toStdWString() : std::wstring();

    if (!start(job) || !waitFor(job, progress.bar)) {
        progress.close();
        ask(tr("Error"), tr("The job unzipped failed, please check your files!"), QMessageBox::Yes);
        return false;
    }

    progress.close();
    name = QString::fromStdWString(UnzipProgress::tarName);
    if (!self) // the host has unloaded the plug-in: the job stays as it was unpacked
        return true;
    const QString deleteDanger = cleanup::danger(deleteCommand);
    if (deleteDanger.isEmpty()) {
        mysystem("cmd", deleteCommand);
    } else {
        LOG(ERROR) << "only " << tarFile.toStdString()
                   << " was deleted, without the command for it: " << deleteDanger.toStdString();
        QFile::remove(platform::toLocal(jobRoot + tarFile));
    }
    if (!isFolder(rootFolder))
        return true;

    qDebug() << jobRoot + name;
    const QString oldDir = jobRoot + withoutEnding(tarFile);
    qDebug() << oldDir;
    const QString newDir = jobRoot + name;
    if (overwrite && newDir != oldDir) {
        const std::string removeCommand = "/c rd /s /q " + oldDir.toStdString();
        const QString removeDanger =
            dangerOfRemoval(removeCommand, oldDir, name.isEmpty() ? QString() : newDir);
        if (removeDanger.isEmpty()) {
            mysystem("cmd", removeCommand);
            QDir().rmdir(platform::toLocal(oldDir));
        } else {
            LOG(ERROR) << "the old job " << oldDir.toStdString() << " stays: " << removeDanger.toStdString();
        }
    }
    // Fails when the old job was kept, or when the folder has this name already; then it keeps the name it
    // has.
    QFile::rename(platform::toLocal(newDir), platform::toLocal(oldDir));
    return true;
}
