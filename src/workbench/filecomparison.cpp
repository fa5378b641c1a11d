#include "workbench/filecomparison.h"

#include <QDir>
#include <QFileInfo>

FileComparison compareWithLayers(const QStringList &files, const QString &job, const QString &step,
                                 const QStringList &layers, const QString &chosen,
                                 const std::function<cam::ExportOptions(const QString &layer)> &optionsOf)
{
    FileComparison comparison;
    comparison.files.job = QDir(job).dirName();
    for (const QString &file : files) {
        const QString name = QFileInfo(file).completeBaseName();
        QString layer;
        for (const QString &known : layers) {
            if (known.compare(name, Qt::CaseInsensitive) == 0)
                layer = known;
        }
        if (layer.isEmpty() && files.size() == 1)
            layer = chosen;
        if (layer.isEmpty()) {
            comparison.unknown << QFileInfo(file).fileName();
            continue;
        }
        LayerResult result;
        result.layer = layer;
        result.state = LayerResult::State::Found;
        result.file = file;
        result.bytes = QFileInfo(file).size();
        result.request.job = std::filesystem::u8path(job.toStdString());
        result.request.step = step.toStdString();
        result.request.layer = layer.toStdString();
        result.request.options = optionsOf(layer);
        result.request.options.file = std::filesystem::u8path(file.toStdString());
        comparison.files.layers << result;
    }
    return comparison;
}
