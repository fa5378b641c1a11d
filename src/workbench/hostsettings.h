// The host's own settings file, "oxconfig.ini" in the working folder. The host writes it; plug-ins and the
// CAM library read it, each for itself and by that relative name. So the host makes the folder that has the
// user's settings the working folder of the process.
#pragma once

#include "workbench/userfolders.h"

#include <QString>

#include <memory>

class QTemporaryDir;

struct HostSettings
{
    QString jobFolder;           // local; in the file with backslashes, as plug-ins take it
    QString outputFolder;        // empty: the job's own folder
    QString secondFolder;        // empty: what the Export dialog proposes
    double resize = 0.0;         // in resizeUnit
    QString resizeUnit = "um";   // "um" or "mm"
    double databaseUnit = 0.001; // um
    bool withProfile = false;
    QString exportDatabase; // SQLite file in which exports are recorded; empty: none
};

namespace hostsettings {

// What the settings file of the working folder says; a missing file or key gives the value of a new
// HostSettings.
HostSettings read();
// Writes these values; other keys of the file stay as they are. Returns whether the file could be written.
bool write(const HostSettings &values);

// Makes the settings folder of `folders` where it is missing, makes it the working folder of the process, and
// gives it a settings file when it has none: the one in the folder that the program was started in, whose
// paths become absolute, or one with the defaults. A file that is there has its job folder written as
// plug-ins take it: with backslashes.
struct Entered
{
    QString takenOver; // the file whose settings were taken over; empty when none was
    QString failure;   // why the folder cannot be used; then nothing has happened
};
Entered enter(const UserFolders &folders);

// A resize by `value` in `unit` in nanometres, as plug-ins read it: an unknown unit is that.
double resizeInNanometres(double value, const QString &unit);

// What a resize by `value` in `unit` ("um" or "mm") does to what is exported, as a sentence; in nanometres,
// as plug-ins take it, a value below half of one is none.
QString resizeText(double value, const QString &unit);

// The folder that holds the jobs when the settings give `configured`: that folder when it exists, else "job"
// in the working folder. Plug-ins fall back in the same way. Absolute and local.
QString jobRoot(const QString &configured);

} // namespace hostsettings

// A working folder for one run, which leaves nothing behind. Its settings file is that of `folders`, or of
// the folder that the program was started in when the user has none, but with jobs in `jobFolder`, or, when
// that is empty, where the settings have them. While the object lives it is the working folder of the
// process.
class RunFolder
{
public:
    RunFolder(const QString &jobFolder, const UserFolders &folders);
    ~RunFolder();

private:
    QString m_before;
    std::unique_ptr<QTemporaryDir> m_folder;
};
