#include "workbench/recentfiles.h"

#include <QDir>
#include <QFileInfo>

RecentFiles::RecentFiles(QWidget *parent) : QMenu(tr("Recent &layer files"), parent)
{
    setObjectName("RecentFiles");
    setToolTipsVisible(true);
}

void RecentFiles::fill(const QStringList &paths)
{
    clear();
    for (const QString &path : paths) {
        if (!QFileInfo(path).isFile())
            continue;
        const int number = actions().size() + 1;
        const QString label = QFileInfo(path).fileName().replace("&", "&&");
        addAction(number < 10 ? QString("&%1  %2").arg(number).arg(label) : label, this, [this, path] {
            emit fileChosen(path);
        })->setToolTip(QDir::toNativeSeparators(path));
    }
    if (isEmpty())
        addAction(tr("No layer file has been opened yet"))->setEnabled(false);
}
