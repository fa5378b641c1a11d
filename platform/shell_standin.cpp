#include "platform/shell_standin.h"

#include "platform/paths.h"
#include "platform/shell.h"
#include "platform/thread.h"

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
const unsigned long ShownStartMilliseconds = 250;

// Giving back the space of a file of this size takes about a millisecond.
const qint64 LargeFile = 8 * 1024 * 1024;

bool isSeparator(QChar c)
{
    return c == ' ' || c == '\t' || c == ',' || c == ';' || c == '=';
}

QStringList splitParameters(const QString &line)
{
    QStringList parts;
    QString part;
    bool inQuotes = false;
    for (int i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        if (c == '"') {
            inQuotes = !inQuotes;
            continue;
        }
        if (!inQuotes) {
            if (c == '&' || c == '|' || c == '<' || c == '>')
                break;
            if (isSeparator(c)) {
                if (!part.isEmpty())
                    parts << part;
                part.clear();
                continue;
            }
            if (c == '^') {
                if (++i < line.size())
                    part += line[i];
                continue;
            }
        }
        part += c;
    }
    if (!part.isEmpty())
        parts << part;
    return parts;
}

bool matches(const QString &pattern, int p, const QString &name, int n)
{
    for (; p < pattern.size(); ++p, ++n) {
        if (pattern[p] == '*') {
            for (int rest = n; rest <= name.size(); ++rest) {
                if (matches(pattern, p + 1, name, rest))
                    return true;
            }
            return false;
        }
        if (n == name.size() || (pattern[p] != '?' && pattern[p] != name[n]))
            return false;
    }
    return n == name.size();
}

// The interpreter does its work in another process, at no cost to who waits in an event loop. What a large
// file costs is giving back its space, which happens when its last user closes it: a thread of its own is
// that user.
void removeFile(const QFileInfo &file)
{
    int descriptor = -1;
    if (file.isFile() && file.size() >= LargeFile)
        descriptor = ::open(QFile::encodeName(file.filePath()).constData(),
                            O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    QFile::remove(file.filePath());
    if (descriptor < 0)
        return;
    try {
        std::thread([descriptor] {
            workInBackground();
            ::close(descriptor);
        }).detach();
    } catch (const std::system_error &) { // no thread to be had
        ::close(descriptor);
    }
}

} // namespace

CommandLine parseCommandLine(const QString &parameters)
{
    QStringList parts = splitParameters(parameters);
    const auto take = [&parts](const char *word) {
        if (parts.isEmpty() || parts.first().compare(QLatin1String(word), Qt::CaseInsensitive) != 0)
            return false;
        parts.removeFirst();
        return true;
    };
    if (!take("/c"))
        return {};
    if (take("del"))
        return {CommandLine::Command::Delete, parts};
    if (take("rd") && take("/s") && take("/q"))
        return {CommandLine::Command::RemoveTree, parts};
    return {};
}

bool matchesWildcard(const QString &pattern, const QString &name)
{
    const QString foldedPattern = pattern.toCaseFolded();
    const QString foldedName = name.toCaseFolded();
    if (matches(foldedPattern, 0, foldedName, 0))
        return true;
    return foldedPattern.endsWith("*.*") &&
           matches(foldedPattern.left(foldedPattern.size() - 2), 0, foldedName, 0);
}

void deleteFiles(const QString &pattern)
{
    const QString local = toLocal(pattern);
    const int slash = local.lastIndexOf('/');
    const QString folder = slash < 0 ? QString(".") : local.left(slash + 1);
    const QString namePattern = local.mid(slash + 1);
    if (folder.contains('*') || folder.contains('?'))
        return;
    QDir dir(folder);
    for (const QFileInfo &file : dir.entryInfoList(QDir::Files | QDir::System)) {
        if (matchesWildcard(namePattern, file.fileName()))
            removeFile(file);
    }
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

void shellExecuteAndWait(const std::wstring &program, const std::wstring &parameters, ShowState show)
{
    if (program != L"cmd")
        return;
    if (show == ShowState::Shown)
        QThread::msleep(ShownStartMilliseconds);

    const CommandLine line = parseCommandLine(QString::fromStdWString(parameters));
    for (const QString &operand : line.operands) {
        if (line.command == CommandLine::Command::Delete)
            deleteFiles(operand);
        else
            removeTree(operand);
    }
}

} // namespace platform
