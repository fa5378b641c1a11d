// Layers of two jobs by their names, or two files: compared side by side, shown as a table, as JSON, and as
// pictures.
#include "convert/diffcommand.h"

#include "cam/base/paths.h"
#include "cam/odb/job.h"
#include "cam/verify/painting.h"
#include "convert/jobsource.h"
#include "convert/plot.h"
#include "convert/report.h"
#include "convert/table.h"
#include "convert/taskpool.h"
#include "version.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

#include <chrono>
#include <optional>

namespace convert {

namespace {

const QColor background(255, 255, 255), commonColor(190, 190, 190), addedColor(0, 150, 0),
    removedColor(220, 0, 0);

struct LayerDifference
{
    enum class Status { Same, Different, Removed, Added, Failed };
    QString layer; // in lower case; empty for files
    Status status = Status::Failed;
    QStringList changes; // of the matrix
    cam::Comparison found;
    QString picture; // that has been written
    QString error;
};

const char *const statusWords[] = {"same", "different", "removed", "added", "failed"};

// A layer as a job or a file has it.
struct Content
{
    std::optional<cam::LayerImage> image; // else it is the file
    std::filesystem::path file;

    std::unique_ptr<cam::Painting> painting() const
    {
        static const cam::ExportOptions plain;
        if (image)
            return std::make_unique<cam::Painting>(*image, plain);
        return std::make_unique<cam::Painting>(file);
    }
};

// One of the two that are compared: a job, or a file, which is one layer without a name.
class Version
{
public:
    Version(const QString &path, bool isFile) : m_source(path), m_isFile(isFile) {}

    // Throws std::exception, Cancelled.
    void open(const QString &step, const std::atomic<bool> &cancelled)
    {
        m_hash = m_source.hash(cancelled);
        if (m_isFile)
            return;
        m_source.open(cancelled);
        m_matrix = cam::Job(m_source.folder()).matrix();
        m_step = chosenStep(m_matrix, step);
    }
    const QString &path() const { return m_source.path(); }
    bool isFile() const { return m_isFile; }
    const cam::Matrix &matrix() const { return m_matrix; }
    // In megabytes, of a layer at work.
    double estimate(const QString &layer) const
    {
        constexpr double timesFile = 10.0;
        return m_isFile ? timesFile * double(QFileInfo(path()).size()) / 1e6
                        : estimatedMegabytes(m_source.folder(), layer.toStdString());
    }
    // Null for a layer that is not there. Throws std::exception, and what `report` throws.
    std::unique_ptr<Content> read(const QString &layer, const std::function<void(double)> &report) const
    {
        auto content = std::make_unique<Content>();
        if (m_isFile) {
            content->file = localPath(path());
            return content;
        }
        if (!m_matrix.find(layer.toStdString()))
            return nullptr;
        cam::ExportRequest request;
        request.job = m_source.folder();
        request.step = m_step.toStdString();
        request.layer = layer.toStdString();
        request.options.report = report;
        content->image = cam::readLayer(request);
        return content;
    }
    QJsonObject toJson() const
    {
        QJsonObject json{{"source", path()}, {"sha256", m_hash}};
        if (!m_isFile)
            json["step"] = m_step;
        return json;
    }

private:
    JobSource m_source;
    bool m_isFile;
    QString m_hash, m_step;
    cam::Matrix m_matrix;
};

QStringList changesOf(const cam::MatrixLayer &before, const cam::MatrixLayer &after)
{
    QStringList changes;
    const auto compare = [&changes](const char *what, const std::string &from, const std::string &to) {
        const auto shown = [](const std::string &text) {
            return text.empty() ? QString("none") : QString::fromStdString(text);
        };
        if (from != to)
            changes << QString("%1 %2 to %3").arg(what, shown(from), shown(to));
    };
    compare("context", before.context, after.context);
    compare("type", before.type, after.type);
    compare("polarity", before.polarity, after.polarity);
    compare("start", cam::lowerCase(before.startName), cam::lowerCase(after.startName));
    compare("end", cam::lowerCase(before.endName), cam::lowerCase(after.endName));
    return changes;
}

QJsonArray toJson(cam::Point at)
{
    return {at.x / 1e6, at.y / 1e6};
}

QJsonObject toJson(const LayerDifference &difference)
{
    QJsonObject json{{"layer", difference.layer}, {"status", statusWords[int(difference.status)]}};
    if (!difference.changes.isEmpty())
        json["changes"] = QJsonArray::fromStringList(difference.changes);
    if (!difference.picture.isEmpty())
        json["picture"] = difference.picture;
    if (difference.status == LayerDifference::Status::Failed)
        json["error"] = difference.error;
    if (difference.status != LayerDifference::Status::Same &&
        difference.status != LayerDifference::Status::Different)
        return json;
    json["removed"] = difference.found.missingArea;
    json["added"] = difference.found.extraArea;
    json["placesInAll"] = double(difference.found.placesInAll);
    QJsonArray places;
    for (const cam::DifferencePlace &place : difference.found.places)
        places.append(QJsonObject{{"kind", place.isMissing ? "removed" : "added"},
                                  {"at", toJson(place.at)},
                                  {"width", place.width},
                                  {"area", place.area}});
    json["places"] = places;
    return json;
}

class Diff
{
public:
    Diff(const DiffArguments &arguments, Console &console, const std::atomic<bool> &cancelled)
        : m_arguments(arguments), m_console(console), m_cancelled(cancelled),
          m_before(arguments.first, arguments.areFiles), m_after(arguments.second, arguments.areFiles)
    {
    }

    // Throws std::exception for a job or a file that cannot be read, Cancelled.
    void compare();
    void print() const;
    QJsonObject toJson() const;
    ExitCode code() const;

private:
    void plan();
    void compare(LayerDifference &layer) const;
    void draw(LayerDifference &layer, const Content *before, const Content *after) const;
    std::function<void(double)> report() const
    {
        return [this](double) {
            if (m_cancelled)
                throw Cancelled();
        };
    }

    const DiffArguments &m_arguments;
    Console &m_console;
    const std::atomic<bool> &m_cancelled;
    Version m_before, m_after;
    std::vector<LayerDifference> m_layers;
    double m_seconds = 0.0;
};

void Diff::compare()
{
    const auto start = std::chrono::steady_clock::now();
    for (Version *version : {&m_before, &m_after}) {
        try {
            version->open(m_arguments.step, m_cancelled);
        } catch (const std::exception &failure) {
            // Readers of files name theirs.
            const std::string path = version->path().toStdString(), reason = failure.what();
            throw std::runtime_error(reason.compare(0, path.size(), path) == 0 ? reason
                                                                               : path + ": " + reason);
        }
    }
    plan();
    TaskPool pool(m_arguments.threads, m_arguments.megabytes, m_cancelled);
    std::atomic<int> done{0};
    for (LayerDifference &layer : m_layers) {
        if (!layer.error.isEmpty())
            continue;
        pool.add({0, m_before.estimate(layer.layer) + m_after.estimate(layer.layer), [this, &layer, &done] {
                      try {
                          compare(layer);
                      } catch (const Cancelled &) {
                          return;
                      } catch (const std::exception &failure) {
                          layer.status = LayerDifference::Status::Failed;
                          layer.error = QString::fromStdString(failure.what());
                      }
                      m_console.progress(++done, int(m_layers.size()));
                  }});
    }
    pool.run();
    if (m_cancelled)
        throw Cancelled();
    m_seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Layers in the order of the first matrix, then those that only the second one has.
void Diff::plan()
{
    if (m_before.isFile()) {
        m_layers.resize(1);
        return;
    }
    for (const QString &name : m_arguments.layers.missingIn(m_before.matrix())) {
        if (m_after.matrix().find(name.toStdString()))
            continue;
        LayerDifference missing;
        missing.layer = name;
        missing.error = "neither job has a layer of that name";
        m_layers.push_back(missing);
    }
    for (const cam::MatrixLayer &layer : m_before.matrix().layers) {
        const cam::MatrixLayer *other = m_after.matrix().find(layer.name);
        if (!m_arguments.layers.isMeant(layer) && !(other && m_arguments.layers.isMeant(*other)))
            continue;
        LayerDifference difference;
        difference.layer = lowerCase(layer.name);
        if (other)
            difference.changes = changesOf(layer, *other);
        m_layers.push_back(difference);
    }
    for (const cam::MatrixLayer &layer : m_after.matrix().layers) {
        if (!m_arguments.layers.isMeant(layer) || m_before.matrix().find(layer.name))
            continue;
        LayerDifference difference;
        difference.layer = lowerCase(layer.name);
        m_layers.push_back(difference);
    }
}

void Diff::compare(LayerDifference &layer) const
{
    using Status = LayerDifference::Status;
    const std::unique_ptr<Content> before = m_before.read(layer.layer, report()),
                                   after = m_after.read(layer.layer, report());
    if (!before || !after) {
        layer.status = before ? Status::Removed : Status::Added;
    } else {
        cam::VerifyControl control;
        control.report = report();
        control.wantsPolygons = !m_arguments.picture.isEmpty();
        layer.found = before->image ? cam::compareLayers(*before->image, {}, *after->image, {}, control)
                                    : cam::compareFiles(before->file, after->file, control);
        layer.status =
            layer.found.placesInAll == 0 && layer.changes.isEmpty() ? Status::Same : Status::Different;
    }
    if (!m_arguments.picture.isEmpty() && layer.status != Status::Same)
        draw(layer, before.get(), after.get());
}

void Diff::draw(LayerDifference &layer, const Content *before, const Content *after) const
{
    QString file = m_arguments.picture;
    if (!m_before.isFile() && m_arguments.layers.names.size() != 1) {
        const QFileInfo info(file);
        file = info.dir().filePath(info.completeBaseName() + '-' + layer.layer + '.' + info.suffix());
    }
    const std::unique_ptr<cam::Painting> first = before ? before->painting() : nullptr,
                                         second = after ? after->painting() : nullptr;
    cam::GridBox extent;
    for (cam::Painting *painting : {first.get(), second.get()}) {
        if (painting)
            extent.add(painting->extent());
    }
    const std::unique_ptr<Plot> plot = makePlot(file, extent, m_arguments.size, background);
    const auto fill = [&](cam::Painting *painting) {
        painting->forEachArea(
            std::int64_t(2.0 * plot->pixel()),
            [&plot](const std::vector<cam::GridRing> &rings) { plot->fill(rings); }, report());
    };
    plot->begin(first && second ? commonColor : first ? removedColor : addedColor, 1.0);
    for (cam::Painting *painting : {first.get(), second.get()}) {
        if (painting)
            fill(painting);
    }
    plot->end();
    for (const bool isMissing : {true, false}) {
        plot->begin(isMissing ? removedColor : addedColor, 1.0);
        plot->fill(isMissing ? layer.found.missing : layer.found.extra);
        for (const cam::DifferencePlace &place : layer.found.places) {
            if (place.isMissing == isMissing)
                plot->mark(place.at);
        }
        plot->end();
    }
    plot->save();
    layer.picture = file;
}

QString placeText(cam::Point at)
{
    return QString("%1, %2").arg(at.x / 1e6, 0, 'f', 4).arg(at.y / 1e6, 0, 'f', 4);
}

void Diff::print() const
{
    using Status = LayerDifference::Status;
    QVector<Row> rows{
        {m_before.isFile() ? "files" : "layer", "result", "removed mm2", "added mm2", "places", ""}};
    int differences = 0, failures = 0;
    for (const LayerDifference &layer : m_layers) {
        failures += layer.status == Status::Failed;
        differences += layer.status != Status::Same && layer.status != Status::Failed;
        Row row{m_before.isFile() ? "A, B" : layer.layer, statusWords[int(layer.status)]};
        if (layer.status == Status::Same || layer.status == Status::Different)
            row << QString::number(layer.found.missingArea) << QString::number(layer.found.extraArea)
                << QString::number(layer.found.placesInAll) << layer.changes.join("; ");
        if (layer.status == Status::Failed)
            m_console.error((layer.layer.isEmpty() ? QString() : layer.layer + ": ") + layer.error);
        rows << row;
    }
    if (m_arguments.json == "-")
        return;
    printTable(rows, m_console);
    for (const LayerDifference &layer : m_layers) {
        const cam::Comparison &found = layer.found;
        for (const cam::DifferencePlace &place : found.places)
            m_console.result(QString("%1 %2 at %3 mm: %4 um wide, %5 mm2")
                                 .arg(layer.layer, place.isMissing ? "removed" : "added", placeText(place.at))
                                 .arg(place.width / 1000.0, 0, 'f', 1)
                                 .arg(place.area)
                                 .trimmed());
        if (found.placesInAll > found.places.size())
            m_console.result(
                QString("%1 and %2")
                    .arg(layer.layer, counted(qint64(found.placesInAll - found.places.size()), "more place"))
                    .trimmed());
    }
    QString what = m_before.isFile() ? QString("the files %1").arg(differences ? "differ" : "are the same")
                                     : QString("%1 of %2 %3")
                                           .arg(differences)
                                           .arg(counted(int(m_layers.size()), "layer"),
                                                differences == 1 ? "differs" : "differ");
    if (failures > 0 && m_before.isFile())
        what = "the files were not compared";
    else if (failures > 0)
        what += QString(", %1 not compared").arg(failures);
    m_console.result(QString("%1, %2 s").arg(what).arg(m_seconds, 0, 'f', 2));
}

QJsonObject Diff::toJson() const
{
    QJsonArray layers;
    for (const LayerDifference &layer : m_layers)
        layers.append(convert::toJson(layer));
    return {{"version", reportVersion},
            {"program", "camconvert " FILE_PROCESS_VERSION},
            {"first", m_before.toJson()},
            {"second", m_after.toJson()},
            {"same", code() == Done},
            {"seconds", m_seconds},
            {"layers", layers}};
}

ExitCode Diff::code() const
{
    ExitCode code = Done;
    for (const LayerDifference &layer : m_layers) {
        if (layer.status == LayerDifference::Status::Failed)
            return SomethingFailed;
        if (layer.status != LayerDifference::Status::Same)
            code = NotProven;
    }
    return code;
}

} // namespace

ExitCode runDiff(const DiffArguments &arguments, Console &console, const std::atomic<bool> &cancelled)
{
    Diff diff(arguments, console, cancelled);
    try {
        diff.compare();
    } catch (const Cancelled &) {
        return SomethingFailed;
    } catch (const std::exception &failure) {
        console.error(QString::fromStdString(failure.what()));
        return SomethingFailed;
    }
    diff.print();
    if (!writeJson(arguments.json, lineOf(diff.toJson()) + '\n', console))
        return SomethingFailed;
    return diff.code();
}

} // namespace convert
