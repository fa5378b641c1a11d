#include "workbench/importwindows.h"

#include <QFileDialog>
#include <QProgressBar>

void deleteClosedImportWindows(const QWidget &parent)
{
    for (QWidget *window : parent.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (window->windowType() != Qt::Dialog || !window->isHidden())
            continue;
        const bool isProgress = window->findChild<QProgressBar *>(QString(), Qt::FindDirectChildrenOnly);
        if (isProgress || qobject_cast<QFileDialog *>(window))
            window->deleteLater();
    }
}
