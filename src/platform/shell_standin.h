// What the command interpreter's "del" and "rd" do, for the systems that have none.
#pragma once

#include <QString>

namespace platform {

// Deletes the files that `pattern` names. Only the last part of the path may hold wildcards; folders are not
// touched, and a name that matches nothing is no error. False, and nothing is deleted, where "del" would ask
// first: nobody could answer.
bool deleteFiles(const QString &pattern);

// Removes `folder` with all it holds; links in it are removed, not followed. A missing name or a file is no
// error.
void removeTree(const QString &folder);

} // namespace platform
