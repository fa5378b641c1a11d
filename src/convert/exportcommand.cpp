#include "convert/exportcommand.h"

#include "convert/jobexport.h"
#include "convert/table.h"

#include <QDir>
#include <QFileInfo>

namespace convert {

namespace {

// A line a file, then one for the job.
void print(const JobReport &report, const ExportArguments &arguments, Console &console)
{
    int files = 0, failures = 0, proven = 0;
    qint64 bytes = 0;
    for (const FileReport &file : report.files) {
        const QString what = QString("%1/%2/%3 (%4)").arg(report.job, report.step, file.layer, file.format);
        for (const QString &warning : file.warnings)
            console.warning(what + ": " + warning);
        if (file.status == FileReport::Status::Failed) {
            ++failures;
            console.error(what + ": " + file.error);
            continue;
        }
        ++files;
        bytes += file.bytes;
        const bool isVerified = !file.verification.isEmpty();
        proven += isVerified && file.isProven();
        if (!file.isProven())
            console.error(what + ": not proven: " + QString::fromUtf8(lineOf(file.verification)));
        if (arguments.json == "-")
            continue;
        const QString path = QDir::toNativeSeparators(QDir(arguments.folder).filePath(file.file));
        QString line =
            file.status == FileReport::Status::Kept
                ? QString("%1  %2  kept").arg(path, counted(file.bytes, "byte"))
                : QString("%1  %2  %3 s").arg(path, counted(file.bytes, "byte")).arg(file.seconds, 0, 'f', 2);
        if (isVerified)
            line += file.isProven() ? "  proven" : "  not proven";
        console.result(line);
    }
    if (!report.error.isEmpty()) {
        ++failures;
        console.error(report.source + ": " + report.error);
    }
    if (arguments.json == "-")
        return;
    QStringList sums{counted(files, "file"), counted(bytes, "byte"), counted(failures, "failure")};
    if (arguments.verify)
        sums << QString("%1 of %2 proven").arg(proven).arg(files);
    console.result(QString("%1: %2, %3 s").arg(report.job, sums.join(", ")).arg(report.seconds, 0, 'f', 2));
}

} // namespace

ExitCode runExport(const ExportArguments &arguments, Console &console, const std::atomic<bool> &cancelled)
{
    if (!QDir().mkpath(arguments.folder)) {
        console.error(QString("%1: %2").arg(arguments.folder, QFileInfo::exists(arguments.folder)
                                                                  ? "expected a folder, found a file"
                                                                  : "the folder cannot be made"));
        return SomethingFailed;
    }
    return runJobs(
        arguments, console, cancelled,
        [&](const QString &path, JobRun::Shared &run) {
            return std::make_unique<JobExport>(path, run, arguments);
        },
        [&](const JobReport &report) { print(report, arguments, console); });
}

} // namespace convert
