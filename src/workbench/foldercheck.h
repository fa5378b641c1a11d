// What stands against a folder or file that the settings name, said before it counts.
#pragma once

#include <QCoreApplication>
#include <QString>

struct FolderCheck
{
    Q_DECLARE_TR_FUNCTIONS(FolderCheck)

public:
    enum class Weight { None, Note, Warning, Error };

    Weight weight = Weight::None; // with Error the path cannot be used
    QString text;                 // with why it matters; empty for None

    // A folder for jobs, which the import unpacks and tidies up in. It is made when it is missing.
    static FolderCheck ofJobs(const QString &path);
    // A folder for exported files, where jobs are in `jobs`. It is made when it is missing; empty stands for
    // the job's own folder.
    static FolderCheck ofExports(const QString &path, const QString &jobs);
    // A file for the record of exports; empty stands for none.
    static FolderCheck ofRecord(const QString &path);
};
