// What is done with the folder of a job: renaming it, showing it in the file manager, moving it to the
// wastebasket.
#pragma once

#include <QCoreApplication>
#include <QString>

class QWidget;

class JobCommands
{
    Q_DECLARE_TR_FUNCTIONS(JobCommands)

public:
    // `window` is the parent of what is asked and said; jobs are in `root`.
    JobCommands(QWidget *window, const QString &root) : m_window(window), m_root(root) {}

    // Asks for a new name until it can be taken. Returns it when the folder has it, otherwise an empty text.
    QString rename(const QString &job) const;
    // Asks, and moves the folder to the wastebasket. Returns whether it is gone.
    bool remove(const QString &job) const;
    void show(const QString &job) const;

private:
    QString folderOf(const QString &job) const { return m_root + "/" + job; }

    QWidget *m_window;
    QString m_root;
};
