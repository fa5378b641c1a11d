// Fills an Export dialog with what an export of the past was asked for.
#pragma once

#include "workbench/exporthistory.h"

#include <QCoreApplication>

class ExportRepeat
{
    Q_DECLARE_TR_FUNCTIONS(ExportRepeat)

public:
    // Chooses in `dialog`, which is open, the layers and parameters of `past`, its format and its folder.
    // Returns what could not be chosen, in sentences for the user. `resize` is what the settings ask for now,
    // in nanometres: the dialog does not.
    static QStringList fill(ExportDialog &dialog, const PastExport &past, double resize);
};
