#include "convert/jobrun.h"

#include "cam/base/paths.h"
#include "cam/odb/job.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <map>
#include <set>

namespace convert {

namespace {

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

JobRun::JobRun(const QString &path, Shared &run)
    : m_run(run), m_source(path), m_start(std::chrono::steady_clock::now())
{
    m_report.source = path;
    m_report.job = m_source.name();
}

void JobRun::start()
{
    m_start = std::chrono::steady_clock::now();
    m_left = 1; // the opening itself
    try {
        open();
    } catch (const Cancelled &) {
        return;
    } catch (const std::exception &failure) {
        m_report.error = QString::fromStdString(failure.what());
    }
    partDone();
}

void JobRun::open()
{
    if (!QFileInfo::exists(m_source.path()))
        throw std::runtime_error("there is no such file or folder");
    if (mayBeDoneAlready()) {
        m_report.hash = m_source.hash(m_run.cancelled);
        m_isDoneAlready = isDoneAlready();
        if (m_isDoneAlready)
            return;
    } else {
        // Nobody waits for it before the job is done.
        ++m_left;
        m_run.pool.add({0, 0.0, [this] { takeHash(); }});
    }
    m_source.open(m_run.cancelled);
    const cam::Matrix matrix = cam::Job(m_source.folder()).matrix();
    plan(matrix);
    planned(matrix);
    m_left += m_layers.size();
    m_unread = m_layers.size();
    m_run.layersInAll += int(m_layers.size());
    for (const LayerTask &layer : m_layers)
        m_run.pool.add(
            {0, estimatedMegabytes(m_source.folder(), layer.name), [this, &layer] { workOn(layer); }});
}

void JobRun::takeHash()
{
    try {
        m_report.hash = m_source.hash(m_run.cancelled);
    } catch (const Cancelled &) {
        return;
    } catch (const std::exception &failure) {
        m_hashError = QString::fromStdString(failure.what());
    }
    partDone();
}

void JobRun::plan(const cam::Matrix &matrix)
{
    const LayerArguments &arguments = m_run.arguments;
    m_report.step = chosenStep(matrix, arguments.step);
    // A layer that is not there is a file that failed.
    for (const QString &name : arguments.layers.missingIn(matrix)) {
        FileReport missing;
        missing.layer = name;
        missing.format = wordOf(arguments.formats.front());
        missing.error = "the job has no layer of that name";
        m_report.files.push_back(missing);
    }
    for (const cam::MatrixLayer &layer : matrix.layers) {
        if (!arguments.layers.isMeant(layer))
            continue;
        LayerTask task;
        task.name = layer.name;
        task.isNegative = layer.polarity == "NEGATIVE";
        for (const cam::FileFormat format : arguments.formats) {
            task.files.push_back(m_report.files.size());
            FileReport file;
            file.layer = lowerCase(layer.name);
            file.format = wordOf(format);
            file.file = fileName(m_report.step, layer, format);
            m_report.files.push_back(file);
        }
        m_layers.push_back(task);
    }
    refuseSharedNames();
}

QString JobRun::fileName(const QString &step, const cam::MatrixLayer &layer, cam::FileFormat format) const
{
    QString name = m_run.arguments.namePattern;
    name.replace('\\', '/');
    const std::pair<const char *, QString> words[] = {
        {"{job}", m_report.job},
        {"{step}", step},
        {"{layer}", lowerCase(layer.name)},
        {"{type}", lowerCase(layer.type)},
        {"{row}", QString::number(layer.row)},
        {"{ext}", format == cam::FileFormat::Gds ? ".gds" : ".gerber"}};
    // Word by word from the left: a layer's name may look like one.
    QString result;
    for (int at = 0; at < name.size();) {
        const auto word = std::find_if(std::begin(words), std::end(words), [&](const auto &entry) {
            return name.midRef(at).startsWith(QLatin1String(entry.first));
        });
        if (word == std::end(words)) {
            result += name[at++];
            continue;
        }
        result += word->second;
        at += int(qstrlen(word->first));
    }
    return result;
}

// Files whose names differ only in case are one file on many systems.
void JobRun::refuseSharedNames()
{
    std::map<std::string, std::vector<std::size_t>> owners;
    for (std::size_t i = 0; i < m_report.files.size(); ++i) {
        if (!m_report.files[i].file.isEmpty())
            owners[cam::lowerCase(m_report.files[i].file.toStdString())].push_back(i);
    }
    for (const auto &[name, files] : owners) {
        if (files.size() == 1)
            continue;
        QStringList layers;
        for (const std::size_t file : files)
            layers << m_report.files[file].layer;
        for (const std::size_t file : files)
            m_report.files[file].error = QString("%1 is the file of several layers: %2")
                                             .arg(m_report.files[file].file, layers.join(", "));
    }
    for (LayerTask &layer : m_layers) {
        const auto isRefused = [this](std::size_t file) { return !m_report.files[file].error.isEmpty(); };
        layer.files.erase(std::remove_if(layer.files.begin(), layer.files.end(), isRefused),
                          layer.files.end());
    }
    m_layers.erase(std::remove_if(m_layers.begin(), m_layers.end(),
                                  [](const LayerTask &layer) { return layer.files.empty(); }),
                   m_layers.end());
}

QString JobRun::pathOf(const FileReport &file) const
{
    return QDir(m_run.arguments.folder).filePath(file.file);
}

std::function<void(double)> JobRun::report() const
{
    return [&cancelled = m_run.cancelled](double) {
        if (cancelled)
            throw Cancelled();
    };
}

void JobRun::workOn(const LayerTask &task)
{
    const LayerArguments &arguments = m_run.arguments;
    cam::ExportRequest request;
    request.job = m_source.folder();
    request.step = m_report.step.toStdString();
    request.layer = task.name;
    request.options = arguments.options;
    // Of a layer that holds what is not copper, a positive image is the negative of what it holds.
    request.options.negative = arguments.options.negative != (arguments.positive && task.isNegative);
    request.options.report = report();
    QStringList warnings;
    request.note = [&](const cam::ExportNote &note) { warnings << QString::fromStdString(note.text); };
    const auto start = std::chrono::steady_clock::now();
    try {
        const cam::LayerImage image = readLayer(request);
        const double readingSeconds = secondsSince(start);
        for (const std::size_t i : task.files) {
            FileReport &file = m_report.files[i];
            const auto fileStart = std::chrono::steady_clock::now();
            file.warnings = warnings;
            request.format = file.format == "gds" ? cam::FileFormat::Gds : cam::FileFormat::Gerber;
            try {
                work(image, request, file);
            } catch (const std::exception &failure) {
                file.error = QString::fromStdString(failure.what());
            }
            file.seconds = readingSeconds / double(task.files.size()) + secondsSince(fileStart);
        }
    } catch (const Cancelled &) {
        return;
    } catch (const std::exception &failure) {
        for (const std::size_t i : task.files) {
            m_report.files[i].error = QString::fromStdString(failure.what());
            m_report.files[i].warnings = warnings;
        }
    }
    ++m_run.layersDone;
    m_run.advanced();
    partDone();
}

// The last layer that is read lets go of what was unpacked, while others are still written.
cam::LayerImage JobRun::readLayer(const cam::ExportRequest &request)
{
    const auto hasRead = [this] {
        if (--m_unread > 0)
            return;
        ++m_left;
        m_run.pool.add({0, 0.0, [this] {
                            m_source.close();
                            partDone();
                        }});
    };
    try {
        cam::LayerImage image = cam::readLayer(request);
        hasRead();
        return image;
    } catch (const std::exception &) {
        hasRead();
        throw;
    }
}

void JobRun::partDone()
{
    if (--m_left == 0)
        finish();
}

void JobRun::finish()
{
    m_source.close();
    if (m_isDoneAlready)
        return m_run.finished(m_report);
    if (!m_hashError.isEmpty())
        m_report.error = m_hashError;
    m_report.seconds = secondsSince(m_start);
    try {
        completed();
    } catch (const std::exception &failure) {
        m_report.error = QString::fromStdString(failure.what());
    }
    m_run.finished(m_report);
}

ExitCode runJobs(const LayerArguments &arguments, Console &console, const std::atomic<bool> &cancelled,
                 const std::function<std::unique_ptr<JobRun>(const QString &path, JobRun::Shared &run)> &make,
                 const std::function<void(const JobReport &report)> &print)
{
    TaskPool pool(arguments.threads, arguments.megabytes, cancelled);
    std::mutex mutex;
    bool isDone = true, isProven = true;
    QByteArray lines;
    JobRun::Shared run{arguments, pool, cancelled, {0}, {0}, {}, {}};
    run.advanced = [&] { console.progress(run.layersDone, run.layersInAll); };
    run.finished = [&](const JobReport &report) {
        const std::lock_guard<std::mutex> lock(mutex);
        isDone = isDone && report.isDone();
        isProven = isProven && report.isProven();
        print(report);
        const QByteArray line = lineOf(report.toJson());
        lines += line + '\n';
        if (arguments.json == "-")
            console.json(line);
    };

    // Jobs begin when there is no layer of another one left to begin, so that few are unpacked at a time.
    constexpr int jobRank = 1;
    constexpr double jobMegabytes = 30.0;
    std::vector<std::unique_ptr<JobRun>> jobs;
    std::set<QString> names;
    for (const QString &path : arguments.jobs) {
        const QString name = JobSource(path).name();
        if (!names.insert(name).second) {
            JobReport report;
            report.job = name;
            report.source = path;
            report.error = "a job of that name came before it, which has the same files";
            run.finished(report);
            continue;
        }
        jobs.push_back(make(path, run));
        pool.add({jobRank, jobMegabytes, [job = jobs.back().get()] { job->start(); }});
    }
    pool.run();
    if (arguments.json != "-" && !cancelled)
        isDone = writeJson(arguments.json, lines, console) && isDone;
    if (!isDone)
        return SomethingFailed;
    return isProven ? Done : NotProven;
}

} // namespace convert
