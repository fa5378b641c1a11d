// The exports of the past, from the record that the CAM library keeps: a row a layer there, a run here.
#pragma once

#include "cam/export/exportrequest.h"
#include "workbench/exportdialog.h"

#include <QDateTime>
#include <QString>
#include <QVector>

#include <optional>

struct PastLayer
{
    QString layer; // in lower case, as exports are asked for
    QString file;  // local, as it is spelt on disk where it is still there
    LayerChange change;
    std::optional<bool> isProven; // nothing for a file that was not verified
};

struct PastExport
{
    QDateTime time; // when the first layer began; local time
    QString job, step;
    QString format;            // ".gds" or ".gerber"
    QString folder;            // of the files: local
    double resize = 0.0;       // nanometres
    double databaseUnit = 0.0; // um
    bool withProfile = false;
    QVector<PastLayer> layers; // in the order in which they were exported
};

// Keeps with the newest export of that layer what its verification has found. `record` is the SQLite file;
// what goes wrong with it is logged.
void keepVerdict(const QString &record, const cam::ExportRequest &layer, bool isProven);

// The exports recorded in the SQLite file `path`, the newest first. `error` says why they cannot be read,
// else it becomes empty.
QVector<PastExport> readHistory(const QString &path, QString &error);
