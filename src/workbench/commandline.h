// What the workbench is asked for on its command line.
#pragma once

#include "plugin/interface/exportformat.h"

#include <QString>
#include <QStringList>

struct CommandLine
{
    bool batch = false;
    QStringList formats = {export_format::gds, export_format::gerber}; // of the exports, in this order
    QString outputFolder;     // empty: what the Export dialog proposes
    QString jobFolder;        // the job root; empty: what the settings file says
    QString settingsFolder;   // empty: the one that the system has for the user
    QString step;             // empty: the job's first one
    QString screenshotFolder; // empty: no pictures
    bool overwrite = false;
    bool verbose = false;
    QString openJob; // to show at the start
    QStringList archives;

    bool showHelp = false;
    bool showVersion = false;
    QString help;  // the text of --help
    QString error; // not empty: the command line makes no sense, and why

    // `arguments` begins with the program's name. All paths become absolute.
    static CommandLine parse(const QStringList &arguments);
};
