#include "import/cleanup.h"

#include "archive/filesystem.h"
#include "archive/localpath.h"
#include "platform/commandline.h"
#include "platform/paths.h"
#include "platform/shell.h"

#include <QDir>
#include <QFileInfo>

namespace {

using platform::CommandLine;

// By what they are, not by their names.
bool areOneFolder(const QString &first, const QString &second)
{
    const auto local = [](const QString &path) {
        return archive::localPath(platform::toLocal(path).toStdWString());
    };
    return archive::isSame(local(first), local(second));
}

bool holds(const QString &folder, const QString &inner)
{
    const QString canonical = QFileInfo(platform::toLocal(inner)).canonicalFilePath();
    if (canonical.isEmpty())
        return false; // it is not there
    for (QDir above(canonical);;) {
        if (areOneFolder(folder, above.path()))
            return true;
        if (above.isRoot() || !above.cdUp())
            return false;
    }
}

} // namespace

QString cleanup::danger(const std::string &parameters, const QString &meant)
{
    const QString text = QString::fromStdWString(platform::wideFromSystemCodePage(parameters));
    const CommandLine line = platform::parseCommandLine(text);
    if (line.goesOn)
        return "it holds the begin of another command";
    if (text.count('%') > 1)
        return "it may hold the name of a variable";
    if (text.contains('^'))
        return "a caret in it would be dropped";
    if (!line.switches.isEmpty())
        return "a path in it reads as the switch " + line.switches.first();
    for (const QString &operand : line.operands) {
        if (line.command == CommandLine::Command::Delete && platform::delAsks(operand))
            return "it would ask whether to empty the folder " + operand;
        const bool isMeant = !meant.isEmpty() && areOneFolder(operand, meant);
        if (!isMeant && QFileInfo(platform::toLocal(operand)).isDir())
            return "it would act on the folder " + operand;
    }
    return QString();
}

bool cleanup::fallsApart(const QString &name)
{
    return platform::parseCommandLine("/c del " + name).operands != QStringList{name};
}

bool cleanup::areApart(const QString &first, const QString &second)
{
    return !holds(first, second) && !holds(second, first);
}
