#include "platform/trash.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace {

// The context of this file's texts.
struct Trash
{
    Q_DECLARE_TR_FUNCTIONS(Trash)
};

} // namespace

QString platform::moveToTrash(const QString &path)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 15, 0)
    // Qt makes the wastebasket itself, but none of the folders around it.
    QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    QFile file(path);
    if (file.moveToTrash())
        return {};
    return Trash::tr("The system does not move %1 to the wastebasket.").arg(QDir::toNativeSeparators(path));
#else
    return Trash::tr(
               "This program was built with a Qt that knows no wastebasket; remove %1 in the file manager.")
        .arg(QDir::toNativeSeparators(path));
#endif
}
