#include "workbench/importfolder.h"

#include "workbench/windowmemory.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>

ImportFolder::ImportFolder(QWidget &window, WindowMemory &memory)
    : QObject(&window), m_window(window), m_memory(memory)
{
    QCoreApplication::instance()->installEventFilter(this);
}

void ImportFolder::keepFolderOf(const QString &file)
{
    m_memory.setImportFolder(QFileInfo(file).absolutePath());
}

bool ImportFolder::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && watched->parent() == &m_window) {
        auto *dialog = qobject_cast<QFileDialog *>(watched);
        const QString folder = m_memory.importFolder();
        // The one dialog that asks for job archives is the import's.
        if (dialog && dialog->nameFilters().join(' ').contains("*.tgz") && QDir(folder).exists())
            dialog->setDirectory(folder);
    }
    return QObject::eventFilter(watched, event);
}
