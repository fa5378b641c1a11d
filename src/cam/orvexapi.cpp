// The calls that hosts and the plug-in make: they put reader and writers together, and turn what these throw
// into log lines and results.
#include "run/orvexapi.h"

#include "cam/base/error.h"
#include "cam/base/paths.h"
#include "cam/database/exportdatabase.h"
#include "cam/gdsii/gdswriter.h"
#include "cam/gerber/gerberwriter.h"
#include "cam/jobroot.h"
#include "cam/odb/job.h"
#include "cam/odb/settings.h"

#include <cmath>

#include <glog/logging.h>

namespace ORVEX {

namespace {

using Progress = ORVEX::COMMON::progress_value<void>;

std::vector<std::filesystem::path> findJobs(const std::string &job)
{
    const std::string root = HOST::job_root();
    std::vector<std::filesystem::path> found = cam::findEntries(cam::resolveIgnoringCase(root), job);
    if (found.empty())
        throw cam::Error(root + ": expected a job \"" + job + "\"");
    return found;
}

// Exports are asked for with the job's name in lower case: of jobs whose names differ only in case, any may
// be meant, and a layer of the wrong one must not pass for the right one's.
cam::Job openOnlyJob(const std::string &job)
{
    const std::vector<std::filesystem::path> found = findJobs(job);
    if (found.size() > 1)
        throw cam::Error("expected one job of the name \"" + job + "\" but for case, found " +
                         found[0].u8string() + " and " + found[1].u8string() + "; rename one of them");
    return cam::Job(found[0]);
}

// Writes one log line for each kind of thing; whether there was any.
bool logNotes(const std::map<std::string, std::size_t> &notes, const std::string &layer, const char *what)
{
    for (const auto &[name, count] : notes)
        LOG(ERROR) << "layer_export " << layer << ": " << name << ", " << count << " times, " << what;
    return !notes.empty();
}

// Descriptions of the format leave room here: nothing is wrong, but whoever compares pictures should know.
void logReadings(const std::map<std::string, std::size_t> &readings, const std::string &layer)
{
    for (const auto &[reading, count] : readings)
        LOG(WARNING) << "layer_export " << layer << ": " << reading;
}

double finite(double value, const char *name)
{
    if (!std::isfinite(value))
        throw cam::Error(std::string("expected a number for ") + name);
    return value;
}

// The switches decide whether the numbers behind them count.
cam::ExportOptions makeOptions(const std::string &fileName, double dbu, double resize, bool isNegative,
                               bool isMirror, bool isRotate, bool isScale, bool isProfileTop, double angle,
                               const std::string &axis, double xScale, double yScale)
{
    cam::ExportOptions options;
    options.file = cam::resolveOutputPath(fileName);
    options.dbu = finite(dbu, "the database unit");
    options.resize = finite(resize, "the resize amount");
    options.negative = isNegative;
    options.profileOnTop = isProfileTop;
    options.mirror = isMirror;
    options.angle = isRotate ? finite(angle, "the angle") : 0.0;
    if (isScale) {
        options.xScale = finite(xScale, "the x scale");
        options.yScale = finite(yScale, "the y scale");
    }
    if (options.xScale == 0.0 || options.yScale == 0.0)
        throw cam::Error("expected scales other than 0");
    const std::string mirrorAxis = cam::lowerCase(axis);
    if (isMirror && mirrorAxis == "y")
        options.angle += 180.0; // y to -y is x to -x and half a turn
    else if (isMirror && mirrorAxis != "x")
        throw cam::Error("expected X or Y for the axis, found \"" + axis + "\"");
    return options;
}

} // namespace

namespace API {

std::string get_matrix(const std::string &job, std::vector<std::string> &names,
                       std::vector<layer_info> &layers)
{
    names.clear();
    layers.clear();
    try {
        const cam::Job opened(findJobs(job).front());
        names = opened.matrix().steps;
        for (const cam::MatrixLayer &layer : opened.matrix().layers)
            layers.push_back({layer.context, layer.type, layer.name, layer.oldName, layer.polarity,
                              layer.startName, layer.endName, layer.addType, layer.color, layer.row});
    } catch (const std::exception &failure) {
        LOG(ERROR) << "get_matrix: " << failure.what();
        return failure.what();
    }
    return {};
}

bool layer_export(const std::string &job, const std::string &step, const std::string &layer, export_type type,
                  std::string file_name, Progress *progress, double dbu, double resize, bool is_negative,
                  bool is_mirror, bool is_rotate, bool is_scale, int, int, int, int, int, int,
                  bool is_profile_top, double angle, std::string axis, bool, double x_scale, double y_scale,
                  bool, int, int, int, int, std::vector<std::vector<point>>, int)
{
    // Reading takes about a third of the time of an export without booleans.
    constexpr double readingShare = 30.0; // percent
    const auto setValue = [progress](double percent) {
        if (progress)
            progress->set_value(percent);
    };
    const std::string name = job + "/" + step + "/" + layer;
    try {
        setValue(0.0);
        cam::ExportOptions options = makeOptions(file_name, dbu, resize, is_negative, is_mirror, is_rotate,
                                                 is_scale, is_profile_top, angle, axis, x_scale, y_scale);
        options.report = [&](double share) { setValue(readingShare + (100.0 - readingShare) * share); };
        cam::ReadingNotes notes;
        const auto reportReading = [&](double share) { setValue(readingShare * share); };
        const cam::LayerImage image = openOnlyJob(job).readLayer(step, layer, notes, reportReading);
        logNotes(notes.simplified, name, "drawn in a simpler form");
        logReadings(notes.readings, name);
        if (logNotes(notes.unsupported, name, "not supported: nothing is exported"))
            throw cam::Error("the layer has records or symbols that cannot be drawn");
        if (type == export_type::gds)
            cam::writeGds(image, options);
        else
            cam::writeGerber(image, options);
        return true;
    } catch (const std::exception &failure) {
        LOG(ERROR) << "layer_export " << name << ": " << failure.what();
    }
    setValue(-1.0);
    return false;
}

} // namespace API

namespace DB {

namespace {

std::string databasePath()
{
    return cam::readSetting("Export_Database", "path");
}

} // namespace

bool get_SaveFlag()
{
    return !databasePath().empty();
}

void layer_export_db_save(const std::string &job, const std::string &step, const std::string &layer,
                          API::export_type type, std::string file_name, Progress *, double dbu, double resize,
                          bool is_negative, bool is_mirror, bool is_rotate, bool is_scale, int, int, int, int,
                          int, int, bool is_profile_top, double angle, std::string axis, bool, double x_scale,
                          double y_scale, bool)
{
    cam::ExportRecord record;
    record.job = job;
    record.step = step;
    record.layer = layer;
    record.format = type == API::export_type::gds ? "gds" : "gerber";
    record.file = std::move(file_name);
    record.dbu = dbu;
    record.resize = resize;
    record.isNegative = is_negative;
    record.isMirror = is_mirror;
    record.isRotate = is_rotate;
    record.isScale = is_scale;
    record.isProfileTop = is_profile_top;
    record.angle = angle;
    record.axis = std::move(axis);
    record.xScale = x_scale;
    record.yScale = y_scale;
    const std::string path = databasePath();
    try {
        if (!path.empty())
            cam::saveExport(path, record);
    } catch (const std::exception &failure) {
        LOG(ERROR) << "layer_export_db_save: " << failure.what();
    }
}

} // namespace DB

} // namespace ORVEX
