#include "workbench/exportrepeat.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <cmath>

QStringList ExportRepeat::fill(ExportDialog &dialog, const PastExport &past, double resize)
{
    QStringList notes;
    // The files were in PATH/SECOND/JOB.
    const QFileInfo second(QFileInfo(past.folder).path());
    if (QFileInfo(second.path()).isDir()) {
        dialog.enterPath(QDir::toNativeSeparators(second.path()));
        dialog.enterSecondFolder(second.fileName());
    } else {
        notes << tr("The folder %1 is gone.").arg(QDir::toNativeSeparators(second.path()));
    }
    dialog.chooseFormat(past.format);
    QStringList missing;
    for (const PastLayer &layer : past.layers) {
        int row = dialog.rowCount() - 1;
        while (row >= 0 && dialog.layer(row).compare(layer.layer, Qt::CaseInsensitive) != 0)
            --row;
        if (row < 0)
            missing << layer.layer;
        else if (!dialog.setRow(row, layer.change))
            notes << tr("The parameters of the layer %1 cannot be chosen.").arg(layer.layer);
    }
    if (!missing.isEmpty())
        notes << tr("The job has no layer %1 any more.").arg(missing.join(", "));
    if (std::fabs(past.resize - resize) >= 0.5)
        notes << tr("That export resized by %1 \u00b5m; the settings now ask for %2 \u00b5m.")
                     .arg(QLocale().toString(past.resize / 1000.0, 'g', 10),
                          QLocale().toString(resize / 1000.0, 'g', 10));
    return notes;
}
