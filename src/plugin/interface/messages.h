// The messages that the host's parts and this plug-in exchange: their numbers and what their payloads point
// at, and the names that they are addressed to. Numbers and names are the host's.
#pragma once

#include <QtGlobal>

namespace messages {

// PluginMetaData::msgType. A payload belongs to the sender and is valid during the delivery only.
enum Type : qint32 {
    // From the plug-in
    FileReady = 10000401,         // QString: the path of a file that was taken in
    RequestJobContext = 10000402, // no payload: asks for JobContext
    ExportReport = 10000403,      // QList<std::string>: the layers of an export; params["path"] is its folder
    JobFolder = 10000404,         // QString: the folder that holds the jobs, may be empty

    // To the plug-in
    JobContext = 10000503,     // ExportJobInfo, or null: opens the Export dialog
    NewProfileList = 10000603, // QList<std::string>, exchanged with the receiver's own
    RequestImport = 10000801,  // no payload: as a click on Import
    RequestExport = 10000802,  // no payload: as a click on Export
};

// PluginMetaData::toPlugin. The manager matches them without regard to a ".dll" at the end.
const char graphicView[] = "Graphic_View.dll";
const char jobList[] = "Graphic_JobList.dll";
const char layerList[] = "ListBar_PNList";
const char fileProcess[] = "File_Process"; // this plug-in

} // namespace messages
