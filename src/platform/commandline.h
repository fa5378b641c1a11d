// How the command interpreter takes a command line apart. The plug-in's commands carry paths without quotes:
// what they do is up to these rules.
#pragma once

#include <QString>
#include <QStringList>

namespace platform {

// One "cmd" command line, taken apart.
struct CommandLine
{
    enum class Command { None, Delete, RemoveTree };

    Command command = Command::None; // None: anything but "/c del ..." and "/c rd /s /q ..."
    QStringList operands;            // the patterns of "del", the folders of "rd", without quotes
    QStringList switches;            // beyond the "/s /q" of "rd", each with its "/"
    bool goesOn = false; // "&", "|", "<" or ">" ends it: what follows is another command or a file
};

// Takes `parameters` apart as the interpreter does: blanks, tabs, commas, semicolons, equals signs and the
// like separate, double quotes protect (an unbalanced one to the end of the line), a caret protects the next
// character,
// "&", "|", "<" and ">" end the command, and a "/" begins a switch wherever it stands. Variables ("%NAME%")
// are not replaced.
CommandLine parseCommandLine(const QString &parameters);

// Whether the file name `name` matches `pattern`, with "*" and "?", without regard to letter case. "*.*" at
// the end also matches a name without a dot. Takes no more steps than the lengths of both multiplied.
bool matchesWildcard(const QString &pattern, const QString &name);

// Whether "del" asks before it deletes what `operand` names, because that is all of a folder: the folder
// itself, or
// "*" or "*.*" in it.
bool delAsks(const QString &operand);

} // namespace platform
