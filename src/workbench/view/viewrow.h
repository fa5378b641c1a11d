// One row of the layer panel, as the view shows it: a layer of the open job, or a part of a file that belongs
// to no job.
#pragma once

#include "cam/model/exportoptions.h"

#include <QColor>
#include <QString>
#include <QVector>

struct ViewRow
{
    QString name; // of the layer, or of the part of the file
    QString file; // empty for a layer of the job
    // Of the file; `wholeFile` while it is not known what the file holds.
    int part = 0;
    static constexpr int wholeFile = -1;
    QColor color;
    double opacity = 1.0;       // 0 to 1
    cam::ExportOptions options; // what an export makes of a layer of the job
    QString change;             // the same in words; empty where nothing is changed
};
