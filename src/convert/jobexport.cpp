#include "convert/jobexport.h"

#include "cam/base/paths.h"
#include "cam/odb/job.h"
#include "cam/verify/verification.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

#include <algorithm>
#include <map>

namespace convert {

namespace fs = std::filesystem;

namespace {

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

QString lowerCase(const std::string &text)
{
    return QString::fromStdString(cam::lowerCase(text));
}

QString wordOf(cam::FileFormat format)
{
    return format == cam::FileFormat::Gds ? "gds" : "gerber";
}

// All that a file's bytes depend on, but for the input and the program.
QByteArray textOf(const ExportArguments &arguments)
{
    const cam::ExportOptions &options = arguments.options;
    QStringList words{
        arguments.step,        arguments.layers.join(','),           arguments.onlyBoard ? "board" : "all",
        arguments.namePattern, arguments.positive ? "positive" : "", arguments.verify ? "verify" : ""};
    for (const cam::FileFormat format : arguments.formats)
        words << wordOf(format);
    for (const double number : {options.dbu, options.resize, options.angle, options.xScale, options.yScale})
        words << QString::number(number, 'g', 17);
    for (const bool flag : {options.negative, options.profileOnTop, options.mirror})
        words << QString::number(flag);
    return words.join('\n').toUtf8();
}

// What reading the file back and comparing it with its layer shows.
QJsonObject verification(const cam::LayerImage &image, const cam::ExportOptions &options)
{
    cam::VerifyControl control;
    control.report = options.report;
    const cam::Comparison found = cam::verifyFile(image, options, options.file, control);
    if (!found.reason.empty())
        return {{"proven", false}, {"reason", QString::fromStdString(found.reason)}};
    QJsonObject json{{"proven", found.isProven()},
                     {"missing", found.missingArea},
                     {"extra", found.extraArea},
                     {"deviation", found.deviation},
                     {"places", double(found.placesInAll)}};
    if (!found.places.empty()) {
        const cam::Point at = found.places.front().at;
        json["first"] = QJsonArray{at.x / 1e6, at.y / 1e6};
    }
    return json;
}

} // namespace

JobExport::JobExport(const QString &path, Run &run, std::function<void(const JobReport &)> finished)
    : m_run(run), m_source(path), m_finished(std::move(finished)), m_start(std::chrono::steady_clock::now())
{
    m_report.source = path;
    m_report.job = m_source.name();
}

void JobExport::start()
{
    m_start = std::chrono::steady_clock::now();
    try {
        open();
    } catch (const Cancelled &) {
        return;
    } catch (const std::exception &failure) {
        m_report.error = QString::fromStdString(failure.what());
        finish();
    }
}

void JobExport::open()
{
    if (!QFileInfo::exists(m_source.path()))
        throw std::runtime_error(m_source.path().toStdString() + ": there is no such file or folder");
    m_report.hash = m_source.hash(m_run.cancelled);
    if (m_run.arguments.resume) {
        if (std::optional<JobReport> earlier = earlierReport()) {
            m_report = std::move(*earlier);
            for (FileReport &file : m_report.files)
                file.status = FileReport::Status::Kept;
            m_report.source = m_source.path();
            m_finished(m_report);
            return;
        }
    }
    m_source.open(m_run.cancelled);
    plan();
    m_left = m_layers.size();
    m_run.layersInAll += int(m_layers.size());
    if (m_layers.empty())
        return finish();
    for (const LayerTask &layer : m_layers)
        m_run.pool.add({0, estimatedMegabytes(layer.name), [this, &layer] { exportLayer(layer); }});
}

void JobExport::plan()
{
    const ExportArguments &arguments = m_run.arguments;
    const cam::Matrix matrix = cam::Job(m_source.folder()).matrix();
    const std::string wanted = cam::lowerCase(arguments.step.toStdString());
    QStringList steps;
    for (const std::string &step : matrix.steps) {
        steps << lowerCase(step);
        if (m_report.step.isEmpty() && (wanted.empty() || cam::lowerCase(step) == wanted))
            m_report.step = steps.back();
    }
    if (m_report.step.isEmpty())
        throw std::runtime_error("expected a step" + (wanted.empty() ? "" : " " + wanted) + ", found " +
                                 (steps.isEmpty() ? "none" : steps.join(", ").toStdString()));
    for (const cam::MatrixLayer *layer : chosenLayers(matrix)) {
        LayerTask task;
        task.name = layer->name;
        task.isNegative = layer->polarity == "NEGATIVE";
        for (const cam::FileFormat format : arguments.formats) {
            task.files.push_back(m_report.files.size());
            FileReport file;
            file.layer = lowerCase(layer->name);
            file.format = wordOf(format);
            file.file = fileName(*layer, format);
            m_report.files.push_back(file);
        }
        m_layers.push_back(task);
    }
    refuseSharedNames();
}

// In the matrix's order. A layer that is not there is a file that failed.
std::vector<const cam::MatrixLayer *> JobExport::chosenLayers(const cam::Matrix &matrix)
{
    const ExportArguments &arguments = m_run.arguments;
    std::vector<const cam::MatrixLayer *> chosen;
    for (const QString &name : arguments.layers) {
        if (matrix.find(name.toStdString()))
            continue;
        FileReport missing;
        missing.layer = name;
        missing.format = wordOf(arguments.formats.front());
        missing.error = "the job has no layer of that name";
        m_report.files.push_back(missing);
    }
    for (const cam::MatrixLayer &layer : matrix.layers) {
        const bool isNamed =
            std::any_of(arguments.layers.begin(), arguments.layers.end(), [&](const QString &name) {
                return cam::lowerCase(name.toStdString()) == cam::lowerCase(layer.name);
            });
        const bool isMeant =
            arguments.layers.isEmpty() && layer.hasFeatures() && (!arguments.onlyBoard || layer.isBoard());
        if (isNamed || isMeant)
            chosen.push_back(&layer);
    }
    return chosen;
}

QString JobExport::fileName(const cam::MatrixLayer &layer, cam::FileFormat format) const
{
    QString name = m_run.arguments.namePattern;
    name.replace('\\', '/');
    const std::pair<const char *, QString> words[] = {
        {"{job}", m_report.job},
        {"{step}", m_report.step},
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
void JobExport::refuseSharedNames()
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

// An export takes about fifteen times its features' file, and more where that is packed or small.
double JobExport::estimatedMegabytes(const std::string &layer) const
{
    double bytes = 0.0;
    const auto steps = cam::findEntry(m_source.folder(), "steps");
    std::error_code ignored;
    for (fs::directory_iterator step(steps.value_or(fs::path()), ignored), end; step != end;
         step.increment(ignored)) {
        const auto layers = cam::findEntry(step->path(), "layers");
        const auto folder = layers ? cam::findEntry(*layers, layer) : std::nullopt;
        if (!folder)
            continue;
        for (const auto &[name, factor] :
             {std::pair("features", 1.0), std::pair("features.Z", 4.0), std::pair("features.gz", 6.0)}) {
            if (const auto file = cam::findEntry(*folder, name))
                bytes += factor * double(fs::file_size(*file, ignored));
        }
    }
    return 10.0 + 15.0 * bytes / 1e6;
}

void JobExport::exportLayer(const LayerTask &task)
{
    const ExportArguments &arguments = m_run.arguments;
    cam::ExportRequest request;
    request.job = m_source.folder();
    request.step = m_report.step.toStdString();
    request.layer = task.name;
    request.options = arguments.options;
    // Of a layer that holds what is not copper, a positive image is the negative of what it holds.
    request.options.negative = arguments.options.negative != (arguments.positive && task.isNegative);
    request.options.report = [this](double) {
        if (m_run.cancelled)
            throw Cancelled();
    };
    QStringList warnings;
    request.note = [&](const cam::ExportNote &note) { warnings << QString::fromStdString(note.text); };
    const auto start = std::chrono::steady_clock::now();
    try {
        const cam::LayerImage image = cam::readLayer(request);
        const double readingSeconds = secondsSince(start);
        for (const std::size_t i : task.files) {
            FileReport &file = m_report.files[i];
            const auto fileStart = std::chrono::steady_clock::now();
            file.warnings = warnings;
            request.format = file.format == "gds" ? cam::FileFormat::Gds : cam::FileFormat::Gerber;
            if (task.isNegative && !request.options.negative && request.format == cam::FileFormat::Gds)
                file.warnings
                    << "the layer's polarity is negative, which a GDSII file cannot say; --positive "
                       "writes it as a positive image";
            try {
                write(image, request, file);
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
    layerDone();
}

void JobExport::write(const cam::LayerImage &image, const cam::ExportRequest &request, FileReport &file) const
{
    const QString path = QDir(m_run.arguments.outputFolder).filePath(file.file);
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder))
        throw std::runtime_error(folder.toStdString() + ": the folder cannot be made");
    cam::ExportRequest complete = request;
    complete.options.file = localPath(path);
    cam::writeLayer(image, complete);
    file.status = FileReport::Status::Written;
    file.bytes = QFileInfo(path).size();
    file.hash = hashOfFile(path);
    if (m_run.arguments.verify)
        file.verification = verification(image, complete.options);
}

void JobExport::layerDone()
{
    ++m_run.layersDone;
    m_run.advanced();
    if (--m_left == 0)
        finish();
}

void JobExport::finish()
{
    m_source.close();
    m_report.seconds = secondsSince(m_start);
    if (m_report.isProven()) {
        try {
            writeRecord();
        } catch (const std::exception &failure) {
            m_report.error = QString::fromStdString(failure.what());
        }
    }
    m_finished(m_report);
}

// One a job and combination of options, so that the formats of a job may be written by two runs.
QString JobExport::recordPath() const
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(textOf(m_run.arguments));
    const QString options = QString::fromLatin1(hash.result().toHex().left(12));
    return QDir(m_run.arguments.outputFolder)
        .filePath(QString(".camconvert/%1-%2.json").arg(m_report.job, options));
}

void JobExport::writeRecord() const
{
    const QString path = recordPath();
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    const QByteArray bytes = lineOf(m_report.toJson()) + '\n';
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw std::runtime_error(
            (path + ": the record cannot be written: " + file.errorString()).toStdString());
}

// What the record says, when input and program are the same and every file is what it was.
std::optional<JobReport> JobExport::earlierReport() const
{
    QFile record(recordPath());
    if (!record.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QJsonObject json = QJsonDocument::fromJson(record.readAll()).object();
    JobReport earlier = reportFrom(json);
    if (json["version"].toInt() != reportVersion ||
        json["program"].toString() != "camconvert " PROGRAM_VERSION || earlier.hash != m_report.hash ||
        earlier.job != m_report.job || !earlier.isProven())
        return std::nullopt;
    for (const FileReport &file : earlier.files) {
        const QString path = QDir(m_run.arguments.outputFolder).filePath(file.file);
        if (QFileInfo(path).size() != file.bytes || !QFileInfo(path).isFile() ||
            hashOfFile(path) != file.hash)
            return std::nullopt;
    }
    return earlier;
}

} // namespace convert
