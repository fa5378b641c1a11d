#include "run/progress.h"

using ORVEX::API::export_type;

std::string Progress::m_job_name;
std::string Progress::m_step;
std::string Progress::m_layer_name;
std::string Progress::m_file_name;
export_type Progress::m_Suffix = export_type::gds;
double Progress::dbuValue = 0.001;
double Progress::resize = 0.0;
double Progress::XScale = 1.0;
double Progress::YScale = 1.0;
double Progress::angle = 0.0;
bool Progress::isProfiletop = true;
bool Progress::isReserse = false;
bool Progress::isMirror = false;
bool Progress::isRotate = false;
bool Progress::isScale = false;

Progress::Progress() = default;
Progress::~Progress() = default;

void Progress::do_process()
{
    start(this, &Progress::process);
}

double Progress::get_value()
{
    return currentValue();
}

bool Progress::isFinish()
{
    return hasEnded();
}

void Progress::process(ORVEX::COMMON::progress_value<void> *pv)
{
    const std::string axis = "X";
    // The host's results and exceptions stay in the task: nobody asks for them.
    if (ORVEX::DB::get_SaveFlag()) {
        ORVEX::DB::layer_export_db_save(m_job_name, m_step, m_layer_name, m_Suffix, m_file_name, pv, dbuValue,
                                        resize, isReserse, isMirror, isRotate, isScale, 0, 0, 0, 0, 0, 0,
                                        isProfiletop, angle, axis, true, XScale, YScale, true);
    }
    ORVEX::API::layer_export(m_job_name, m_step, m_layer_name, m_Suffix, m_file_name, pv, dbuValue, resize,
                             isReserse, isMirror, isRotate, isScale, 0, 0, 0, 0, 0, 0, isProfiletop, angle,
                             axis, true, XScale, YScale, true, 2, 6, 1, 0, {}, 1);
}
