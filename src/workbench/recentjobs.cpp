#include "workbench/recentjobs.h"

#include <QFileInfo>

RecentJobs::RecentJobs(QWidget *parent) : QMenu(tr("Recent &jobs"), parent)
{
    setObjectName("RecentJobs");
}

void RecentJobs::fill(const QStringList &folders, const QString &root, const QStringList &jobs)
{
    clear();
    for (const QString &folder : folders) {
        const QString name = QFileInfo(folder).fileName();
        if (QFileInfo(folder).path() != root || !jobs.contains(name))
            continue;
        const int number = actions().size() + 1;
        const QString label = QString(name).replace("&", "&&");
        addAction(number < 10 ? QString("&%1  %2").arg(number).arg(label) : label, this,
                  [this, name] { emit jobChosen(name); });
    }
    if (isEmpty())
        addAction(tr("No job has been opened yet"))->setEnabled(false);
}
