// The import of one job archive, on the user-interface thread: the question before a job is replaced, the
// progress window, the wait for the unpacking, and the tidying up afterwards.
#pragma once

#include "import/importplugin.h"

#include <QCoreApplication>
#include <QString>

#include <string>

class UnzipProgress;
class ProgressWindow;

class JobImport
{
    Q_DECLARE_TR_FUNCTIONS(FileProcess) // the texts are the plug-in object's, for the translators

public:
    // `archive` is a path with "/", as the file dialog gives it.
    JobImport(const ImportPlugin &plugin, const QString &archive);

    // Imports the archive as the job `name`, its base name; returns when it is done, and handles events
    // meanwhile. After a success (true) `name` is that of the job's folder inside the archive. After a
    // failure the user has been told; while another import or an export is under way only the log has been.
    bool run(QString &name);

private:
    void chooseJobRoot();
    bool askToOverwrite() const;
    void tellFailure() const;
    std::string deleteCommand() const;
    void setJobStatics() const;
    static bool start(UnzipProgress &job);
    static bool waitFor(UnzipProgress &job, const ProgressWindow &progress);

    void tidyUp(const QString &folderName) const;
    void deleteTar() const;
    void removeOldJob(const QString &newFolder) const;
    QString dangerOfRemoval(const std::string &command, const QString &newFolder) const;

    const ImportPlugin &m_plugin;
    const QString m_archive;
    // The plug-in's way of writing paths: with backslashes.
    QString m_name;
    QString m_rootFolder;         // that holds all jobs
    QString m_jobFolder;          // the job's in it
    QString m_tarFile;            // name of the tar between the two stages of the unpacking
    bool m_isOverwriting = false; // the user has agreed that the job may be replaced
};
