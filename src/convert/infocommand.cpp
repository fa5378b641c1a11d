// One walk over a job makes its JSON; the table is made of that.
#include "convert/infocommand.h"

#include "cam/base/error.h"
#include "cam/base/paths.h"
#include "cam/model/steps.h"
#include "cam/odb/job.h"
#include "cam/odb/structuredtext.h"
#include "cam/odb/textfile.h"
#include "convert/jobsource.h"
#include "convert/report.h"
#include "convert/table.h"
#include "version.h"

#include <QJsonArray>

namespace convert {

namespace {

QString text(const std::string &value)
{
    return QString::fromStdString(value);
}

// Of the profile, in millimetres; null without one.
QJsonValue extentOf(const cam::ContourPool &profile)
{
    cam::Box box;
    for (std::size_t i = 0; i < profile.size(); ++i)
        box.add(cam::extent(profile[i]));
    if (box.isEmpty())
        return QJsonValue();
    return QJsonArray{box.low.x / 1e6, box.low.y / 1e6, box.high.x / 1e6, box.high.y / 1e6};
}

// What the job says of its unit; the format's default where it says nothing.
QString unitOf(const std::filesystem::path &job)
{
    const auto folder = cam::findEntry(job, "misc");
    if (!folder || !cam::TextFile::exists(*folder, "info"))
        return "INCH";
    const cam::TextFile file(*folder, "info");
    return text(cam::parseStructuredText(file.text(), file.name()).top.value("UNITS", "INCH"));
}

// Features by kind, those of nested steps as often as they are placed.
QJsonObject countsOf(const cam::LayerImage &image)
{
    double lines = 0, arcs = 0, pads = 0, surfaces = 0, negative = 0;
    cam::forEachStep(image, cam::Copies::All, [&](std::uint32_t step, const cam::Transform &) {
        const cam::FeatureSet &features = image.steps[step].features;
        lines += double(features.lines.size());
        arcs += double(features.arcs.size());
        pads += double(features.pads.size());
        surfaces += double(features.surfaces.size());
        negative += double(features.negativeCount);
    });
    return {{"lines", lines}, {"arcs", arcs}, {"pads", pads}, {"surfaces", surfaces}, {"negative", negative}};
}

// A layer in one step.
QJsonObject describe(const cam::Job &job, const std::string &step, const cam::MatrixLayer &layer,
                     const std::atomic<bool> &cancelled, QJsonValue &extent)
{
    QJsonObject json;
    cam::ReadingNotes notes;
    try {
        const cam::LayerImage image = job.readLayer(step, layer.name, notes, [&cancelled](double) {
            if (cancelled)
                throw Cancelled();
        });
        json["features"] = countsOf(image);
        extent = extentOf(image.profile);
    } catch (const cam::Error &failure) {
        json["error"] = failure.what();
    }
    QJsonObject undrawable;
    for (const auto &[name, count] : notes.unsupported)
        undrawable[text(name)] = double(count);
    if (!undrawable.isEmpty())
        json["undrawable"] = undrawable;
    return json;
}

QJsonObject describe(const JobSource &source, const std::atomic<bool> &cancelled)
{
    const cam::Job job(source.folder());
    QJsonArray layers, steps;
    for (const cam::MatrixLayer &layer : job.matrix().layers)
        layers.append(QJsonObject{{"row", layer.row},
                                  {"name", text(layer.name)},
                                  {"context", text(layer.context)},
                                  {"type", text(layer.type)},
                                  {"polarity", text(layer.polarity)},
                                  {"from", text(layer.startName)},
                                  {"to", text(layer.endName)}});
    for (const std::string &name : job.matrix().steps) {
        QJsonArray contents;
        QJsonValue extent;
        for (const cam::MatrixLayer &layer : job.matrix().layers) {
            if (!layer.hasFeatures())
                continue;
            QJsonObject content = describe(job, name, layer, cancelled, extent);
            content["layer"] = text(layer.name);
            contents.append(content);
        }
        steps.append(QJsonObject{{"name", text(name)}, {"extent", extent}, {"layers", contents}});
    }
    return {{"version", reportVersion},
            {"program", "camconvert " FILE_PROCESS_VERSION},
            {"job", source.name()},
            {"source", source.path()},
            {"unit", unitOf(source.folder())},
            {"layers", layers},
            {"steps", steps}};
}

void print(const QJsonObject &job, Console &console)
{
    console.result(QString("%1: unit %2").arg(job["job"].toString(), job["unit"].toString()));
    QVector<Row> rows{{"row", "layer", "context", "type", "polarity", "span"}};
    for (const auto &value : job["layers"].toArray()) {
        const QJsonObject layer = value.toObject();
        const QString from = layer["from"].toString(), to = layer["to"].toString();
        rows << Row{QString::number(layer["row"].toInt()),
                    layer["name"].toString(),
                    layer["context"].toString(),
                    layer["type"].toString(),
                    layer["polarity"].toString(),
                    from.isEmpty() && to.isEmpty() ? QString() : from + " to " + to};
    }
    printTable(rows, console);
    for (const auto &value : job["steps"].toArray()) {
        const QJsonObject step = value.toObject();
        const QJsonArray extent = step["extent"].toArray();
        console.result(QString());
        console.result(QString("step %1: %2")
                           .arg(step["name"].toString(),
                                extent.isEmpty() ? QString("no profile")
                                                 : QString("%1 x %2 mm, from %3, %4")
                                                       .arg(extent[2].toDouble() - extent[0].toDouble())
                                                       .arg(extent[3].toDouble() - extent[1].toDouble())
                                                       .arg(extent[0].toDouble())
                                                       .arg(extent[1].toDouble())));
        rows = {{"layer", "lines", "arcs", "pads", "surfaces", "negative", "cannot be drawn"}};
        for (const auto &content : step["layers"].toArray()) {
            const QJsonObject layer = content.toObject(), counts = layer["features"].toObject();
            Row row{layer["layer"].toString()};
            for (const char *kind : {"lines", "arcs", "pads", "surfaces", "negative"})
                row << (counts.isEmpty() ? QString("-") : QString::number(counts[kind].toDouble(), 'f', 0));
            const QJsonObject undrawable = layer["undrawable"].toObject();
            QStringList what = undrawable.keys();
            for (QString &name : what)
                name += QString(" (%1)").arg(undrawable[name].toDouble());
            if (layer.contains("error"))
                what << layer["error"].toString();
            rows << (row << what.join("; "));
        }
        printTable(rows, console);
    }
}

} // namespace

ExitCode runInfo(const InfoArguments &arguments, Console &console, const std::atomic<bool> &cancelled)
{
    ExitCode code = Done;
    for (const QString &path : arguments.jobs) {
        try {
            JobSource source(path);
            source.open(cancelled);
            const QJsonObject job = describe(source, cancelled);
            if (arguments.asJson)
                console.json(lineOf(job));
            else
                print(job, console);
        } catch (const Cancelled &) {
            return SomethingFailed;
        } catch (const std::exception &failure) {
            console.error(path + ": " + QString::fromStdString(failure.what()));
            code = SomethingFailed;
        }
    }
    return code;
}

} // namespace convert
