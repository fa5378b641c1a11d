// The import's clean-up commands carry paths without quotes, which the command interpreter takes apart at
// blanks and more. What that does to files is kept; a folder must not be hit by it.
#pragma once

#include <QString>

#include <string>

namespace cleanup {

// Why the command interpreter must not get `parameters`, a "/c del" or "/c rd /s /q" command in UTF-8: it
// would act on a folder other than `meant` (empty for none), or "del" would ask and wait for ever for an
// answer, or nobody can tell what it would do. Empty when it may be run.
QString danger(const std::string &parameters, const QString &meant = QString());

// Whether the command interpreter reads `name` as more than one.
bool fallsApart(const QString &name);

// Whether neither of two paths, as the plug-in writes them, is or holds the other, whatever their names say.
// What is not there is apart from everything.
bool areApart(const QString &first, const QString &second);

} // namespace cleanup
