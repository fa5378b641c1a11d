// The menu of the jobs that were opened last.
#pragma once

#include <QMenu>

class RecentJobs : public QMenu
{
    Q_OBJECT

public:
    explicit RecentJobs(QWidget *parent = nullptr);

    // Lists those of `folders` that are jobs of `root`, in their order; `jobs` are the names of the jobs
    // there.
    void fill(const QStringList &folders, const QString &root, const QStringList &jobs);

signals:
    void jobChosen(const QString &name);
};
