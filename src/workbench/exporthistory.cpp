#include "workbench/exporthistory.h"

#include "cam/base/paths.h"
#include "cam/database/exportdatabase.h"
#include "plugin/interface/exportformat.h"

#include <QDir>
#include <QFileInfo>

#include <glog/logging.h>

#include <algorithm>

namespace {

const int rowsToRead = 20000; // some hundred exports of a board

// A layer of its export; the export's own layers are left empty.
PastExport exportOf(const cam::SavedExport &row)
{
    const cam::ExportRecord &record = row.record;
    PastExport past;
    past.time = QDateTime::fromString(QString::fromStdString(row.time), "yyyy-MM-dd hh:mm:ss");
    past.time.setTimeSpec(Qt::UTC);
    past.time = past.time.toLocalTime();
    past.job = QString::fromStdString(record.job);
    past.step = QString::fromStdString(record.step);
    past.format = record.format == "gds" ? export_format::gds : export_format::gerber;
    past.resize = record.resize;
    past.databaseUnit = record.dbu;
    past.withProfile = record.isProfileTop;
    PastLayer layer;
    layer.layer = QString::fromStdString(record.layer);
    layer.file = QString::fromStdString(cam::resolveIgnoringCase(record.file).u8string());
    layer.change.angle = record.isRotate ? record.angle : 0.0;
    layer.change.mirror = record.isMirror;
    layer.change.xScale = record.isScale ? record.xScale : 1.0;
    layer.change.yScale = record.isScale ? record.yScale : 1.0;
    layer.change.negate = record.isNegative;
    layer.isProven = row.isProven;
    past.folder = QFileInfo(layer.file).path();
    past.layers << layer;
    return past;
}

// One run exports each layer once, all of them of one step into one folder.
bool belongsTo(const PastExport &run, const PastExport &layer)
{
    const QString name = layer.layers.first().layer;
    return run.job == layer.job && run.step == layer.step && run.format == layer.format &&
           run.folder == layer.folder &&
           std::none_of(run.layers.cbegin(), run.layers.cend(),
                        [&name](const PastLayer &other) { return other.layer == name; });
}

} // namespace

void keepVerdict(const QString &record, const cam::ExportRequest &layer, bool isProven)
{
    if (record.isEmpty())
        return;
    cam::ExportRecord exported;
    exported.job = layer.job.filename().u8string();
    exported.step = layer.step;
    exported.layer = layer.layer;
    exported.format = layer.format == cam::FileFormat::Gds ? "gds" : "gerber";
    try {
        cam::saveVerdict(record.toStdString(), exported, isProven);
    } catch (const std::exception &failure) {
        LOG(WARNING) << "what the verification found is not recorded: " << failure.what();
    }
}

QVector<PastExport> readHistory(const QString &path, QString &error)
{
    error.clear();
    QVector<PastExport> runs; // the oldest first
    try {
        std::vector<cam::SavedExport> rows = cam::readExports(path.toStdString(), rowsToRead);
        std::reverse(rows.begin(), rows.end());
        for (const cam::SavedExport &row : rows) {
            const PastExport layer = exportOf(row);
            if (runs.isEmpty() || !belongsTo(runs.last(), layer))
                runs << layer;
            else
                runs.last().layers << layer.layers;
        }
    } catch (const std::exception &failure) {
        error = QString::fromStdString(failure.what());
    }
    std::reverse(runs.begin(), runs.end());
    return runs;
}
