// What an export run asks of the dialog that started it, and changes in it.
#pragma once

#include "plugin/interface/pluginmetadata.h"
#include "run/exportorder.h"

class ExportRun;

class ExportRunDialog
{
public:
    // Lets the dialog know the run that begins; null when it is over. In between the buttons are disabled.
    virtual void setRun(ExportRun *run) = 0;
    // Reads the dialog's fields; the order has no layers yet.
    virtual ExportOrder takeFields() = 0;
    // Reads the checked rows of the table.
    virtual LayerExportParams takeLayers() = 0;
    // Hands `report` to whoever is connected. May throw what a receiver throws.
    virtual void sendReport(const PluginMetaData &report) = 0;
    // Shows the times of the layers in the rows that are checked.
    virtual void showTimes(const LayerExportParams &layers) = 0;

protected:
    ~ExportRunDialog() = default;
};
