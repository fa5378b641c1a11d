// Job archives that are dropped on the window are imported, by the plug-in's own command: its button is
// pressed, and its file dialog is filled in.
#pragma once

#include <QObject>
#include <QStringList>

class MainWindow;

class ArchiveDrop : public QObject
{
    Q_OBJECT

public:
    explicit ArchiveDrop(MainWindow &window);

    // Imports them one after the other; the plug-in's questions are the user's to answer.
    void import(const QStringList &archives);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    MainWindow &m_window;
    bool m_isImporting = false;
};
