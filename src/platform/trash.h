// The system's wastebasket.
#pragma once

#include <QString>

namespace platform {

// Moves the file or folder `path` there. Returns why that is not possible, and then nothing has happened;
// empty when it has been moved. Nothing is ever deleted instead.
QString moveToTrash(const QString &path);

} // namespace platform
