// Where the workbench keeps what is the user's: in the places that the system has for it.
#pragma once

#include <QString>

// Absolute, local paths; a folder need not exist.
struct UserFolders
{
    QString settings; // the settings file and what the windows remember
    QString jobs;     // as a new user's settings have it, as what follows
    QString exports;
    QString history; // SQLite file in which exports are recorded

    // Those of the system's user. Jobs are where the import can tidy up: under a path without a blank, when
    // there is such a place.
    static UserFolders ofSystem();
    // All of them in `folder`.
    static UserFolders below(const QString &folder);
};
