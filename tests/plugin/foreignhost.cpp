#include "tests/plugin/foreignhost.h"

using foreign_host::state;

foreign_host::State &foreign_host::state()
{
    static State theState;
    return theState;
}

QTpluginsManger4CAM *QTpluginsManger4CAM::instance()
{
    static QTpluginsManger4CAM manager;
    return &manager;
}

void QTpluginsManger4CAM::recMegToPlugin(void *sender, PluginMetaData message)
{
    state().senders.push_back(sender);
    state().messages.push_back(message);
}

namespace ORVEX::API {

std::string get_matrix(const std::string &job, std::vector<std::string> & /*names*/,
                       std::vector<layer_info> &layers)
{
    state().matrixJob = job;
    layers = state().layers;
    return {};
}

bool layer_export(const std::string &job, const std::string &step, const std::string &layer, export_type type,
                  std::string file, ORVEX::COMMON::progress_value<void> *progress, double /*dbu*/,
                  double /*resize*/, bool, bool, bool, bool, int, int, int, int, int, int, bool, double,
                  std::string, bool, double, double, bool, int, int, int, int,
                  std::vector<std::vector<point>>, int)
{
    foreign_host::State &seen = state();
    seen.job = job;
    seen.step = step;
    seen.layer = layer;
    seen.type = int(type);
    seen.file = file;
    {
        std::lock_guard<std::mutex> lock(progress->guard);
        seen.title = progress->title;
        seen.text = progress->text;
        seen.percent = progress->percent;
        seen.isCancelled = progress->isCancelled;
        progress->percent = 42.5;
    }
    return seen.isSeen.tryAcquire(1, 60000);
}

} // namespace ORVEX::API

bool ORVEX::DB::get_SaveFlag()
{
    return false;
}

void ORVEX::DB::layer_export_db_save(const std::string &, const std::string &, const std::string &,
                                     ORVEX::API::export_type, std::string,
                                     ORVEX::COMMON::progress_value<void> *, double, double, bool, bool, bool,
                                     bool, int, int, int, int, int, int, bool, double, std::string, bool,
                                     double, double, bool)
{
}
