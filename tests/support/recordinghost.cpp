#include "tests/support/recordinghost.h"

#include "plugin/interface/pluginmanager.h"

namespace recording_host {

State &state()
{
    static State theState;
    return theState;
}

void reset()
{
    state() = State();
}

} // namespace recording_host

using recording_host::state;

QTpluginsManger4CAM *QTpluginsManger4CAM::instance()
{
    static QTpluginsManger4CAM manager;
    return &manager;
}

void QTpluginsManger4CAM::recMegToPlugin(void *sender, PluginMetaData data)
{
    const recording_host::Delivery delivery{sender, data};
    state().deliveries.push_back(delivery);
    if (state().onDelivery)
        state().onDelivery(delivery);
}

std::string ORVEX::API::get_matrix(const std::string &job, std::vector<std::string> &names,
                                   std::vector<layer_info> &layers)
{
    state().matrixJobs.push_back(job);
    if (state().onMatrix)
        state().onMatrix(layers);
    names.insert(names.end(), state().names.begin(), state().names.end());
    layers.insert(layers.end(), state().layers.begin(), state().layers.end());
    return {};
}

bool ORVEX::API::layer_export(const std::string &job, const std::string &step, const std::string &layer,
                              export_type type, std::string file_name,
                              ORVEX::COMMON::progress_value<void> *progress, double dbu, double resize,
                              bool is_negative, bool is_mirror, bool is_rotate, bool is_scale,
                              int option_int_1, int option_int_2, int option_int_3, int option_int_4,
                              int option_int_5, int option_int_6, bool is_profile_top, double angle,
                              std::string axis, bool flag_option_1, double x_scale, double y_scale,
                              bool flag_option_2, int mode_1, int mode_2, int mode_3, int mode_4,
                              std::vector<std::vector<point>> polygons, int mode_5)
{
    const recording_host::ExportCall call{
        false,          job,
        step,           layer,
        type,           file_name,
        progress,       dbu,
        resize,         is_negative,
        is_mirror,      is_rotate,
        is_scale,       {option_int_1, option_int_2, option_int_3, option_int_4, option_int_5, option_int_6},
        is_profile_top, angle,
        axis,           flag_option_1,
        x_scale,        y_scale,
        flag_option_2,  mode_1,
        mode_2,         mode_3,
        mode_4,         polygons,
        mode_5};
    state().calls.push_back("layer_export");
    state().exports.push_back(call);
    return state().onExport ? state().onExport(call) : true;
}

bool ORVEX::DB::get_SaveFlag()
{
    state().calls.push_back("get_SaveFlag");
    if (state().onSaveFlag)
        state().onSaveFlag();
    return state().saveFlag;
}

void ORVEX::DB::layer_export_db_save(const std::string &job, const std::string &step,
                                     const std::string &layer, ORVEX::API::export_type type,
                                     std::string file_name, ORVEX::COMMON::progress_value<void> *progress,
                                     double dbu, double resize, bool is_negative, bool is_mirror,
                                     bool is_rotate, bool is_scale, int option_int_1, int option_int_2,
                                     int option_int_3, int option_int_4, int option_int_5, int option_int_6,
                                     bool is_profile_top, double angle, std::string axis, bool flag_option_1,
                                     double x_scale, double y_scale, bool flag_option_2)
{
    recording_host::ExportCall call;
    call.isDbSave = true;
    call.job = job;
    call.step = step;
    call.layer = layer;
    call.type = type;
    call.fileName = file_name;
    call.progress = progress;
    call.dbu = dbu;
    call.resize = resize;
    call.isNegative = is_negative;
    call.isMirror = is_mirror;
    call.isRotate = is_rotate;
    call.isScale = is_scale;
    call.optionInts = {option_int_1, option_int_2, option_int_3, option_int_4, option_int_5, option_int_6};
    call.isProfileTop = is_profile_top;
    call.angle = angle;
    call.axis = axis;
    call.flagOption1 = flag_option_1;
    call.xScale = x_scale;
    call.yScale = y_scale;
    call.flagOption2 = flag_option_2;
    state().calls.push_back("layer_export_db_save");
    state().exports.push_back(call);
}
