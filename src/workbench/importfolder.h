// Has the import's file dialog start in the folder that files were last imported from. The plug-in opens it
// in the folder of the jobs, where no archive is.
#pragma once

#include <QObject>

class WindowMemory;

class ImportFolder : public QObject
{
    Q_OBJECT

public:
    // Looks after the file dialogs that open as children of `window`; `memory` outlives this object.
    ImportFolder(QWidget &window, WindowMemory &memory);

    // `file` has been imported.
    void keepFolderOf(const QString &file);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget &m_window;
    WindowMemory &m_memory;
};
