// The list of jobs under the job root, with a filter, and what to do when there is none.
#pragma once

#include "workbench/jobstore.h"

#include <QWidget>

class QLabel;
class QLineEdit;
class QListWidget;
class QStackedWidget;

class JobListPanel : public QWidget
{
    Q_OBJECT

public:
    explicit JobListPanel(QWidget *parent = nullptr);

    void setJobs(const QString &root, const QVector<JobEntry> &jobs);
    QStringList jobNames() const;

    // Chooses the job without announcing it; an empty or unknown name chooses none.
    void setCurrentJob(const QString &name);

signals:
    void jobChosen(const QString &name);

private:
    void applyFilter();

    QLabel *m_root;
    QLineEdit *m_filter;
    QListWidget *m_list;
    QLabel *m_empty;
    QStackedWidget *m_stack;
};
