// A stand-in for the host's plug-in manager and CAM library: it records every call in order, and answers with
// what the test sets. The calls of the CAM library come from the export job's thread.
#pragma once

#include "plugin/interface/pluginmetadata.h"
#include "run/orvexapi.h"

#include <functional>
#include <string>
#include <vector>

#ifndef RECORDING_HOST_DECL
#define RECORDING_HOST_DECL
#endif

namespace recording_host {

// A record handed to QTpluginsManger4CAM::recMegToPlugin.
struct Delivery
{
    void *sender = nullptr;
    PluginMetaData data;
};

// The arguments of layer_export, or the first 25 of them from layer_export_db_save (`isDbSave`).
struct ExportCall
{
    bool isDbSave = false;
    std::string job, step, layer;
    ORVEX::API::export_type type = ORVEX::API::export_type::gerber;
    std::string fileName;
    ORVEX::COMMON::progress_value<void> *progress = nullptr;
    double dbu = 0, resize = 0;
    bool isNegative = false, isMirror = false, isRotate = false, isScale = false;
    std::vector<int> optionInts;
    bool isProfileTop = false;
    double angle = 0;
    std::string axis;
    bool flagOption1 = false;
    double xScale = 0, yScale = 0;
    bool flagOption2 = false;
    int mode1 = 0, mode2 = 0, mode3 = 0, mode4 = 0; // layer_export only, as what follows
    std::vector<std::vector<ORVEX::API::point>> polygons;
    int mode5 = 0;
};

struct State
{
    std::vector<Delivery> deliveries;
    std::vector<std::string> matrixJobs; // the job of each get_matrix call
    std::vector<std::string> calls;      // "get_SaveFlag", "layer_export_db_save", "layer_export", in order
    std::vector<ExportCall> exports;

    std::vector<ORVEX::API::layer_info> layers; // what get_matrix appends
    std::vector<std::string> names;
    // Runs inside get_matrix after the call is recorded; what it throws, get_matrix throws.
    std::function<void(std::vector<ORVEX::API::layer_info> &)> onMatrix;
    bool saveFlag = false;
    std::function<void()> onSaveFlag; // runs inside get_SaveFlag, on the job's thread; may throw
    std::function<bool(const ExportCall &)> onExport; // runs inside layer_export, on the job's thread
    std::function<void(const Delivery &)> onDelivery;
};

// The one state of the stand-in; read it only while no export runs.
RECORDING_HOST_DECL State &state();
// Forgets all calls and answers.
RECORDING_HOST_DECL void reset();

// A matrix record as the plug-in reads it.
inline ORVEX::API::layer_info layer(const std::string &context, const std::string &type,
                                    const std::string &name, const std::string &polarity = "POSITIVE")
{
    ORVEX::API::layer_info info;
    info.context = context;
    info.type = type;
    info.name = name;
    info.polarity = polarity;
    return info;
}

} // namespace recording_host
