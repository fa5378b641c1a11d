#include "convert/verifycommand.h"

#include "convert/jobverify.h"
#include "convert/table.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

namespace convert {

namespace {

Row rowOf(const FileReport &file)
{
    const QJsonObject &found = file.verification;
    Row row{QDir::toNativeSeparators(file.file)};
    if (file.status == FileReport::Status::Failed)
        return row << "failed";
    if (file.status == FileReport::Status::Stray)
        return row << "no layer";
    if (found.contains("reason"))
        return row << "cannot say"
                   << ""
                   << ""
                   << ""
                   << "" << found["reason"].toString();
    const QJsonArray first = found["first"].toArray();
    const int places = found["places"].toInt();
    return row << (file.isProven() ? "proven" : "not proven") << QString::number(found["missing"].toDouble())
               << QString::number(found["extra"].toDouble())
               << QString::number(found["deviation"].toDouble(), 'f', 0)
               << (first.isEmpty() ? QString()
                                   : QString("%1, %2")
                                         .arg(first[0].toDouble(), 0, 'f', 4)
                                         .arg(first[1].toDouble(), 0, 'f', 4))
               << (places > 1 ? "and " + counted(places - 1, "more place") : QString());
}

// A line a file, then one for the job.
void print(const JobReport &report, bool hasTable, Console &console)
{
    int compared = 0, proven = 0;
    QVector<Row> rows{{"file", "result", "missing mm2", "extra mm2", "deviation nm", "widest at mm", ""}};
    for (const FileReport &file : report.files) {
        const QString what = QString("%1/%2/%3 (%4)").arg(report.job, report.step, file.layer, file.format);
        for (const QString &warning : file.warnings)
            console.warning(what + ": " + warning);
        if (file.status == FileReport::Status::Failed)
            console.error(what + ": " + file.error);
        compared += file.status != FileReport::Status::Stray;
        proven += file.status == FileReport::Status::Checked && file.isProven();
        rows << rowOf(file);
    }
    if (!report.error.isEmpty())
        console.error(report.source + ": " + report.error);
    if (!hasTable)
        return;
    if (rows.size() > 1)
        printTable(rows, console);
    const int strays = int(report.files.size()) - compared;
    console.result(QString("%1: %2 of %3 proven%4, %5 s")
                       .arg(report.job)
                       .arg(proven)
                       .arg(counted(compared, "file"),
                            strays > 0 ? ", " + counted(strays, "file") + " without a layer" : QString())
                       .arg(report.seconds, 0, 'f', 2));
}

} // namespace

ExitCode runVerify(const LayerArguments &arguments, Console &console, const std::atomic<bool> &cancelled)
{
    if (!QFileInfo(arguments.folder).isDir()) {
        console.error(arguments.folder + (QFileInfo::exists(arguments.folder)
                                              ? ": expected a folder, found a file"
                                              : ": there is no such folder"));
        return SomethingFailed;
    }
    return runJobs(
        arguments, console, cancelled,
        [](const QString &path, JobRun::Shared &run) { return std::make_unique<JobVerify>(path, run); },
        [&](const JobReport &report) { print(report, arguments.json != "-", console); });
}

} // namespace convert
