// Layer files that no export of this session has written, each with the layer that it is compared with.
#pragma once

#include "workbench/exportwatch.h"

struct FileComparison
{
    ExportResults files; // as if an export had written them
    QStringList unknown; // names of files that no layer is named like
};

// Files are named like their layers, as exports name them, without regard to case. One file alone may have
// any name: then it is compared with `chosen`, unless that is empty. `optionsOf` says how layers are changed.
FileComparison compareWithLayers(const QStringList &files, const QString &job, const QString &step,
                                 const QStringList &layers, const QString &chosen,
                                 const std::function<cam::ExportOptions(const QString &layer)> &optionsOf);
