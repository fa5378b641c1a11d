// The list of jobs under the job root, with a filter, and what to do when there is none. The highlighted job
// is the open one; the arrow keys move a frame, and Return, a double click or the menu act on the job in it.
#pragma once

#include "workbench/jobstore.h"

#include <QWidget>

#include <memory>

class QAction;
class QLabel;
class QLineEdit;
class QStackedWidget;
class QTreeWidget;
class QTreeWidgetItem;

class JobListPanel : public QWidget
{
    Q_OBJECT

public:
    explicit JobListPanel(QWidget *parent = nullptr);
    ~JobListPanel() override;

    void setJobs(const QString &root, const QVector<JobEntry> &jobs);
    QStringList jobNames() const;

    // Highlights the job without announcing it; an empty or unknown name highlights none.
    void setCurrentJob(const QString &name);

    // What can be done with the job in the frame: open, rename, show, remove.
    QList<QAction *> jobActions() const { return m_actions; }

    // Widths and order of the columns.
    QByteArray state() const;
    void restoreState(const QByteArray &state);

signals:
    void jobChosen(const QString &name);
    void renameAsked(const QString &name);
    void folderAsked(const QString &name);
    void removeAsked(const QString &name);

protected:
    void changeEvent(QEvent *event) override;

private:
    void buildActions();
    void retranslate();
    void applyFilter();
    void showMenu(const QPoint &place);
    QString nameInFrame() const;
    void countSizes(const QVector<JobEntry> &jobs);
    void showSize(const QString &folder, qint64 bytes);
    void describe(QTreeWidgetItem *item) const;

    QLabel *m_root;
    QLineEdit *m_filter;
    QTreeWidget *m_list;
    QLabel *m_empty;
    QStackedWidget *m_stack;
    QList<QAction *> m_actions;
    QString m_rootFolder;
    QVector<JobEntry> m_jobs;
    QString m_openJob;
    // Shared with the task that counts, which may outlive this object.
    std::shared_ptr<std::atomic<bool>> m_stopCounting;
};
