// The tests' way to the private side of the Export dialog, for what neither its widgets nor its exports show.
#pragma once

#include "export/export.h"

struct ExportAccess
{
    static const QStandardItemModel *scaleModel(const Export &dialog) { return dialog.m_scaleModel; }
};
