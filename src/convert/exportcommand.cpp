#include "convert/exportcommand.h"

#include "convert/jobexport.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <set>

namespace convert {

namespace {

// A line a file, then one for the job.
void print(const JobReport &report, const ExportArguments &arguments, Console &console)
{
    int files = 0, failures = 0;
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
        if (!file.isProven())
            console.error(what + ": not proven: " + QString::fromUtf8(lineOf(file.verification)));
        if (arguments.json == "-")
            continue;
        const QString path = QDir::toNativeSeparators(QDir(arguments.outputFolder).filePath(file.file));
        console.result(
            file.status == FileReport::Status::Kept
                ? QString("%1  %2 bytes  kept").arg(path).arg(file.bytes)
                : QString("%1  %2 bytes  %3 s").arg(path).arg(file.bytes).arg(file.seconds, 0, 'f', 2));
    }
    if (!report.error.isEmpty()) {
        ++failures;
        console.error(report.source + ": " + report.error);
    }
    if (arguments.json != "-")
        console.result(QString("%1: %2 files, %3 bytes, %4 failures, %5 s")
                           .arg(report.job)
                           .arg(files)
                           .arg(bytes)
                           .arg(failures)
                           .arg(report.seconds, 0, 'f', 2));
}

bool writeLines(const QString &path, const QByteArray &lines, Console &console)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(lines) == lines.size() && file.commit())
        return true;
    console.error(QString("%1: cannot be written: %2").arg(path, file.errorString()));
    return false;
}

} // namespace

ExitCode runExport(const ExportArguments &arguments, Console &console, const std::atomic<bool> &cancelled)
{
    if (!QDir().mkpath(arguments.outputFolder)) {
        console.error(QString("%1: %2").arg(arguments.outputFolder, QFileInfo::exists(arguments.outputFolder)
                                                                        ? "expected a folder, found a file"
                                                                        : "the folder cannot be made"));
        return SomethingFailed;
    }
    TaskPool pool(arguments.threads, arguments.megabytes, cancelled);
    std::mutex mutex;
    bool isDone = true, isProven = true;
    QByteArray lines;
    const auto finish = [&](const JobReport &report) {
        const std::lock_guard<std::mutex> lock(mutex);
        isDone = isDone && report.isDone();
        isProven = isProven && report.isProven();
        print(report, arguments, console);
        const QByteArray line = lineOf(report.toJson());
        lines += line + '\n';
        if (arguments.json == "-")
            console.json(line);
    };
    JobExport::Run run{arguments, pool, cancelled, {0}, {0}, {}};
    run.advanced = [&] { console.progress(run.layersDone, run.layersInAll); };

    // Jobs begin when there is no layer of another one left to begin, so that few are unpacked at a time.
    constexpr int jobRank = 1;
    constexpr double jobMegabytes = 30.0;
    std::vector<std::unique_ptr<JobExport>> jobs(std::size_t(arguments.jobs.size()));
    std::set<QString> names;
    for (int i = 0; i < arguments.jobs.size(); ++i) {
        const QString &path = arguments.jobs[i];
        std::unique_ptr<JobExport> &job = jobs[std::size_t(i)];
        const QString name = JobSource(path).name();
        if (!names.insert(name).second) {
            JobReport report;
            report.job = name;
            report.source = path;
            report.error = "a job of that name came before it, whose files it would replace";
            finish(report);
            continue;
        }
        pool.add({jobRank, jobMegabytes, [&job, &run, &finish, path] {
                      job = std::make_unique<JobExport>(path, run, finish);
                      job->start();
                  }});
    }
    pool.run();
    if (!arguments.json.isEmpty() && arguments.json != "-" && !cancelled)
        isDone = writeLines(arguments.json, lines, console) && isDone;
    if (!isDone)
        return SomethingFailed;
    return isProven ? Done : NotProven;
}

} // namespace convert
