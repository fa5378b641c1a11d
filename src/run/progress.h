// The background job that exports one layer. The parameters of the current export are the class's statics:
// they are written on the user-interface thread while no job runs, and read on the job's thread.
#pragma once

#include "plugin/interface/export_macro.h"
#include "run/backgroundjob.h"
#include "run/orvexapi.h"

#include <string>

class FILE_PROCESS_EXPORT Progress : public BackgroundJob
{
public:
    Progress();
    // Waits until a running task has ended.
    ~Progress();

    // Starts the export of the current statics on a thread of its own; throws std::system_error when there is
    // none.
    void do_process();
    // The progress that the host has reported: 0 to 100, or -1.0.
    double get_value();
    // Whether no export is running: it has ended, in whatever way, or was never started.
    bool isFinish();

    static std::string m_job_name; // the names are lower case
    static std::string m_step;
    static std::string m_layer_name;
    static std::string m_file_name; // full path of the output file, lower case as a whole
    static ORVEX::API::export_type m_Suffix;
    static double dbuValue; // micrometres
    static double resize;   // nanometres
    static double XScale;
    static double YScale;
    static double angle; // degrees
    static bool isProfiletop;
    static bool isReserse; // negate the layer
    static bool isMirror;
    static bool isRotate; // angle is not 0
    static bool isScale;  // the scales are not both 1

private:
    static void process(ORVEX::COMMON::progress_value<void> *pv);
};
