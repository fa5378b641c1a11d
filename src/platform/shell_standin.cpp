#include "platform/shell_standin.h"

#include "platform/commandline.h"
#include "platform/paths.h"
#include "platform/shell.h"
#include "platform/thread.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <system_error>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

// At least what starting the interpreter in a window of its own takes. The poll that has to see a failed
// import before its clean-up ends relies on it, also on a machine that is busy with other things.
const unsigned long shownStartMilliseconds = 250;

// Giving back the space of a file of this size takes about a millisecond.
const qint64 largeFile = 8 * 1024 * 1024;

// The interpreter does its work in another process, at no cost to who waits in an event loop. What a large
// file costs is giving back its space, which happens when its last user closes it: a thread of its own is
// that user.
void removeFile(const QFileInfo &file)
{
    int descriptor = -1;
    if (file.isFile() && file.size() >= largeFile)
        descriptor = ::open(QFile::encodeName(file.filePath()).constData(),
                            O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    QFile::remove(file.filePath());
    if (descriptor < 0)
        return;
    try {
        std::thread([descriptor] {
            const BackgroundWork stepBack;
            ::close(descriptor);
        }).detach();
    } catch (const std::system_error &) { // no thread to be had
        ::close(descriptor);
    }
}

} // namespace

bool deleteFiles(const QString &pattern)
{
    if (delAsks(pattern))
        return false;
    const QString local = toLocal(pattern);
    const int slash = local.lastIndexOf('/');
    const QString folder = slash < 0 ? QString(".") : local.left(slash + 1);
    const QString namePattern = local.mid(slash + 1);
    if (folder.contains('*') || folder.contains('?'))
        return true;
    QDir dir(folder);
    for (const QFileInfo &file : dir.entryInfoList(QDir::Files | QDir::System)) {
        if (matchesWildcard(namePattern, file.fileName()))
            removeFile(file);
    }
    return true;
}

void removeTree(const QString &folder)
{
    const QFileInfo info(toLocal(folder));
    if (info.isSymLink() && info.isDir())
        QFile::remove(info.filePath());
    else if (info.isDir())
        QDir(info.filePath()).removeRecursively();
}

std::wstring wideFromSystemCodePage(const std::string &text)
{
    return QString::fromLocal8Bit(text.data(), int(text.size())).toStdWString();
}

std::wstring wideFromThreadCodePage(const std::string &text)
{
    return wideFromSystemCodePage(text); // a system's threads share one here
}

void shellExecuteAndWait(const std::wstring &program, const std::wstring &parameters, ShowState show)
{
    if (program != L"cmd")
        return;
    if (show == ShowState::Shown)
        QThread::msleep(shownStartMilliseconds);

    const CommandLine line = parseCommandLine(QString::fromStdWString(parameters));
    if (!line.switches.isEmpty())
        return; // none that both commands take is left: the interpreter says so, and does nothing
    for (const QString &operand : line.operands) {
        if (line.command == CommandLine::Command::Delete) {
            if (!deleteFiles(operand)) {
                qWarning() << "del asks whether to empty" << operand << "and gets no answer";
                return;
            }
        } else if (line.command == CommandLine::Command::RemoveTree) {
            removeTree(operand);
        }
    }
}

} // namespace platform
