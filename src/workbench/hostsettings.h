// The host's own settings file, "oxconfig.ini" in the working folder. The host writes it; plug-ins and the
// CAM library read it, each for itself and by that relative name.
#pragma once

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

// Writes a settings file with the defaults when the working folder has none: jobs in its folder "job",
// exports as GDS with a database unit of 0.001 um. Returns whether the folder has a settings file now.
bool writeDefaults();

// Writes the job folder of an existing settings file as plug-ins take it: with backslashes.
void mendJobFolder();

// A resize by `value` in `unit` in nanometres, as plug-ins read it: an unknown unit is that.
double resizeInNanometres(double value, const QString &unit);

// What a resize by `value` in `unit` ("um" or "mm") does to what is exported, as a sentence; in nanometres,
// as plug-ins take it, a value below half of one is none.
QString resizeText(double value, const QString &unit);

// The folder that holds the jobs when the settings give `configured`: that folder when it exists, else "job"
// in the working folder. Plug-ins fall back in the same way. Absolute and local.
QString jobRoot(const QString &configured);

} // namespace hostsettings

// A working folder for one run whose settings file is the user's, where there is one, but with jobs in
// `jobFolder`, or, when that is empty, where the user's settings have them. While the object lives it is the
// working folder of the process.
class RunFolder
{
public:
    explicit RunFolder(const QString &jobFolder);
    ~RunFolder();

private:
    QString m_before;
    std::unique_ptr<QTemporaryDir> m_folder;
};
