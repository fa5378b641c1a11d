// The command interpreter's rules, for the systems that have none: how a command line falls into parameters,
// and what "del" and "rd" do with them.
#pragma once

#include <QString>
#include <QStringList>

namespace platform {

// One "cmd" command line, taken apart.
struct CommandLine
{
    enum class Command { None, Delete, RemoveTree };

    Command command = Command::None; // None: anything but the two forms below
    QStringList operands;            // the patterns of "/c del", the folders of "/c rd /s /q", without quotes
};

// Takes `parameters` apart as the interpreter does: blanks, tabs, commas, semicolons and equals signs
// separate, double quotes protect (an unbalanced one to the end of the line), a caret protects the next
// character, and
// "&", "|", "<" and ">" end the command.
CommandLine parseCommandLine(const QString &parameters);

// Whether the file name `name` matches `pattern`, with "*" and "?", without regard to letter case. "*.*" at
// the end also matches a name without a dot.
bool matchesWildcard(const QString &pattern, const QString &name);

// Deletes the files that `pattern` names. Only the last part of the path may hold wildcards; folders are not
// touched, and a name that matches nothing is no error.
void deleteFiles(const QString &pattern);

// Removes `folder` with all it holds; links in it are removed, not followed. A missing name or a file is no
// error.
void removeTree(const QString &folder);

} // namespace platform
