// The jobs on disk: every folder of the job root that holds an ODB++ matrix.
#pragma once

#include <QDateTime>
#include <QString>
#include <QVector>

#include <atomic>

struct JobEntry
{
    QString name; // the folder's name
    QString folder;
    QDateTime modified; // of its matrix
    QDateTime saved;    // as the job itself says; invalid when it does not
    QString tool;       // the program that wrote the job, as the job says; may be empty
    QString source;     // what it was made from, as the job says; may be empty
};

// The jobs in `root`, sorted by name without regard to case.
QVector<JobEntry> listJobs(const QString &root);

// The bytes of all files in `folder`, however deep, or -1 when `cancelled` became true meanwhile. Links are
// not followed.
qint64 folderSize(const QString &folder, const std::atomic<bool> &cancelled);

// Why a job folder in `root` cannot be called `name`; empty when it can.
QString jobNameProblem(const QString &root, const QString &name);
