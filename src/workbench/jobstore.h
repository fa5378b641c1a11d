// The jobs on disk: every folder of the job root that holds an ODB++ matrix.
#pragma once

#include <QDateTime>
#include <QString>
#include <QVector>

struct JobEntry
{
    QString name; // the folder's name
    QString folder;
    QDateTime modified; // of its matrix
};

// The jobs in `root`, sorted by name without regard to case.
QVector<JobEntry> listJobs(const QString &root);
