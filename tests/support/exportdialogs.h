// The Export dialogs that are open.
#pragma once

#include "export/export.h"

#include <QApplication>
#include <QList>

inline QList<Export *> openExportDialogs()
{
    QList<Export *> dialogs;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (auto *dialog = qobject_cast<Export *>(window))
            dialogs << dialog;
    }
    return dialogs;
}
