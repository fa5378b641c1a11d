// The calls that hosts and the plug-in make: they put reader and writers together, and turn what these throw
// into log lines and results.
#include "run/orvexapi.h"

#include "cam/base/error.h"
#include "cam/base/paths.h"
#include "cam/database/exportdatabase.h"
#include "cam/export/exportrequest.h"
#include "cam/exportobserver.h"
#include "cam/jobroot.h"
#include "cam/odb/job.h"
#include "cam/settings.h"

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
std::filesystem::path findOnlyJob(const std::string &job)
{
    const std::vector<std::filesystem::path> found = findJobs(job);
    if (found.size() > 1)
        throw cam::Error("expected one job of the name \"" + job + "\" but for case, found " +
                         found[0].u8string() + " and " + found[1].u8string() + "; rename one of them");
    return found[0];
}

void logNote(const cam::ExportNote &note, const std::string &layer)
{
    if (note.kind == cam::ExportNote::Kind::Expected)
        LOG(INFO) << "layer_export " << layer << ": " << note.text;
    // Nothing is wrong with a reading, but whoever compares pictures should know.
    else if (note.kind == cam::ExportNote::Kind::Reading)
        LOG(WARNING) << "layer_export " << layer << ": " << note.text;
    else
        LOG(ERROR) << "layer_export " << layer << ": " << note.text;
}

// Mirrored about the axis, by its letter.
void mirror(const std::string &axis, cam::ExportOptions &options)
{
    options.mirror = true;
    const std::string letter = cam::lowerCase(axis);
    if (letter == "y")
        options.angle += 180.0; // y to -y is x to -x and half a turn
    else if (letter != "x")
        throw cam::Error("expected X or Y for the axis, found \"" + axis + "\"");
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
    const auto setValue = [progress](double percent) {
        if (progress)
            progress->set_value(percent);
    };
    using State = HOST::ExportOutcome::State;
    const std::string name = job + "/" + step + "/" + layer;
    HOST::ExportOutcome outcome;
    outcome.job = job;
    cam::ExportRequest &request = outcome.request;
    const auto tell = [&outcome](State state) {
        outcome.state = state;
        HOST::tellExportObserver(outcome);
    };
    try {
        setValue(0.0);
        request.step = step;
        request.layer = layer;
        request.format = type == export_type::gds ? cam::FileFormat::Gds : cam::FileFormat::Gerber;
        request.options.file = cam::resolveOutputPath(file_name);
        request.options.dbu = dbu;
        request.options.resize = resize;
        request.options.negative = is_negative;
        request.options.profileOnTop = is_profile_top;
        // The switches decide whether the numbers behind them count.
        if (is_rotate)
            request.options.angle = angle;
        if (is_scale) {
            request.options.xScale = x_scale;
            request.options.yScale = y_scale;
        }
        if (is_mirror)
            mirror(axis, request.options);
        request.options.report = [&](double share) { setValue(100.0 * share); };
        request.note = [&](const cam::ExportNote &note) {
            logNote(note, name);
            outcome.notes.push_back(note);
        };
        request.job = findOnlyJob(job);
        tell(State::Started);
        outcome.isEmpty = cam::exportLayer(request).isEmpty;
        tell(State::Written);
        return true;
    } catch (const std::exception &failure) {
        LOG(ERROR) << "layer_export " << name << ": " << failure.what();
        outcome.reason = failure.what();
        tell(State::Failed);
    } catch (...) { // how a cancel ends it
        tell(State::Cancelled);
        throw;
    }
    setValue(-1.0);
    return false;
}

} // namespace API

namespace DB {

namespace {

std::string databasePath()
{
    return cam::hostSetting("Export_Database/path");
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
