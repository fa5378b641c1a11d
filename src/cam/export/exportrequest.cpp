// Reader and writer of a layer put together.
#include "cam/export/exportrequest.h"

#include "cam/base/error.h"
#include "cam/gdsii/gdswriter.h"
#include "cam/gerber/gerberwriter.h"
#include "cam/odb/job.h"

#include <algorithm>
#include <cmath>

namespace cam {

namespace {

void expectFinite(double value, const char *name)
{
    if (!std::isfinite(value))
        throw Error(std::string("expected a number for ") + name);
}

void checkOptions(const ExportOptions &options)
{
    expectFinite(options.dbu, "the database unit");
    expectFinite(options.resize, "the resize amount");
    expectFinite(options.angle, "the angle");
    expectFinite(options.xScale, "the x scale");
    expectFinite(options.yScale, "the y scale");
    if (options.xScale == 0.0 || options.yScale == 0.0)
        throw Error("expected scales other than 0");
}

void passOn(const ReadingNotes &found, const std::function<void(const ExportNote &)> &note)
{
    const auto counted = [](const auto &entry, const char *what) {
        return entry.first + ", " + std::to_string(entry.second) + " times, " + what;
    };
    for (const auto &entry : found.simplified)
        note({ExportNote::Kind::Simplified, counted(entry, "drawn in a simpler form")});
    for (const auto &entry : found.readings)
        note({ExportNote::Kind::Reading, entry.first});
    for (const auto &entry : found.expected)
        note({ExportNote::Kind::Expected, entry.first});
    for (const auto &entry : found.unsupported)
        note({ExportNote::Kind::Unsupported, counted(entry, "not supported: nothing is exported")});
}

} // namespace

LayerImage readLayer(const ExportRequest &request)
{
    checkOptions(request.options);
    ReadingNotes found;
    LayerImage image = Job(request.job).readLayer(request.step, request.layer, found, request.options.report);
    passOn(found, request.note);
    if (!found.unsupported.empty())
        throw Error("the layer has records or symbols that cannot be drawn");
    return image;
}

void writeLayer(const LayerImage &image, const ExportRequest &request)
{
    checkOptions(request.options);
    if (request.format == FileFormat::Gds)
        writeGds(image, request.options);
    else
        writeGerber(image, request.options);
}

ExportResult exportLayer(const ExportRequest &request)
{
    // Reading takes about a third of the time of an export without booleans.
    constexpr double readingShare = 0.3;
    const auto &report = request.options.report;
    ExportRequest part = request;
    part.options.report = [&](double share) { report(readingShare * share); };
    const LayerImage image = readLayer(part);
    part.options.report = [&](double share) { report(readingShare + (1.0 - readingShare) * share); };
    writeLayer(image, part);
    return {std::all_of(image.steps.begin(), image.steps.end(),
                        [](const StepImage &step) { return step.features.isEmpty(); })};
}

} // namespace cam
