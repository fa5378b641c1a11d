// The exports of the past, from the record that the CAM library keeps: a row a layer there, a run here.
#pragma once

#include "workbench/exportdialog.h"

#include <QDateTime>
#include <QString>
#include <QVector>

struct PastLayer
{
    QString layer; // in lower case, as exports are asked for
    QString file;  // local, as it is spelt on disk where it is still there
    LayerChange change;
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

// The exports recorded in the SQLite file `path`, the newest first. `error` says why they cannot be read,
// else it becomes empty.
QVector<PastExport> readHistory(const QString &path, QString &error);
