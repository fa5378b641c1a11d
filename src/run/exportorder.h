// What an export run works on: the fields of the Export dialog and its checked rows, as they stand when the
// run begins.
#pragma once

#include "run/layerexportparam.h"

#include <QString>

#include <map>
#include <string>

// The checked rows by the layer's name (UTF-8), in ascending byte order.
using LayerExportParams = std::map<std::string, LayerExportParam>;

struct ExportOrder
{
    QString jobName;
    QString stepName;
    QString outputDir;   // with "/" and backslashes mixed, as the user and the plug-in wrote it
    QString format;      // its text, also the ending of the files
    double resize = 0.0; // nanometres
    double dbu = 0.0;    // database unit in micrometres
    bool isProfileTop = false;
    LayerExportParams layers;
};
