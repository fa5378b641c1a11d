// The export defaults that the plug-in reads from the host's settings file and hands to each Export dialog.
#pragma once

#include <QString>

struct ExportConfig
{
    QString jobPath;          // the folder that holds the host's jobs
    QString outputPath;       // default output folder
    QString outputPathSecond; // default second directory
    QString outputFormat;     // default format, such as ".gds"
    QString resizeUnit;       // "um", "mm" or anything else, as read
    double resizeValue = 0.0; // nanometres when resizeUnit is "um" or "mm", otherwise as read
    double dbu = 0.0;         // database unit of the exports
    bool profileDot = false;
    bool mirror = false;
};
