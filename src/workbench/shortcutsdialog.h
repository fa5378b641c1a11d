// Lists the keys of the program's commands, as the menus have them, and those of its panes.
#pragma once

#include <QDialog>

class QMainWindow;

class ShortcutsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ShortcutsDialog(const QMainWindow &window, QWidget *parent = nullptr);
};
