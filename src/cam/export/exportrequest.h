// One export: which layer of which job, the file that it becomes, and what happens to it on the way. What a
// program links that wants files without the shared library and its log.
#pragma once

#include "cam/model/exportoptions.h"

#include <filesystem>
#include <functional>
#include <string>

namespace cam {

enum class FileFormat { Gds, Gerber };

// Something to know about a file, or about why there is none.
struct ExportNote
{
    enum class Kind {
        Expected,   // the rule for a layer of that type
        Reading,    // descriptions of ODB++ leave room here: how it was read
        Simplified, // drawn in a simpler form
        Unsupported // cannot be drawn: nothing is exported
    };
    Kind kind = Kind::Reading;
    std::string text;
};

struct ExportRequest
{
    std::filesystem::path job; // the job's folder, which holds matrix/, steps/ and so on
    std::string step, layer;   // names of the job's matrix, UTF-8, without regard to case
    FileFormat format = FileFormat::Gds;
    // The file, and what is done to the geometry, with the units of each. `options.report` takes the share of
    // the whole export, reading included: 0 to 1, never less than before.
    ExportOptions options;
    // Takes what there is to know, on the thread of the export, before anything is written.
    std::function<void(const ExportNote &)> note = [](const ExportNote &) {};
};

struct ExportResult
{
    bool isEmpty = false; // the layer has no features, nor has any step nested in its step
};

// Writes the file. It appears under its name only when it is complete; until then, and after a failure, what
// was there before stays. Several threads may export at once, into different files. Throws Error when a
// parameter is no finite number or a scale is 0, when the job cannot be read or drawn, or the file not
// written; passes on what `options.report` throws to cancel.
ExportResult exportLayer(const ExportRequest &request);

// Its two halves, for several files of one layer: the reading, and the writing of what has been read.
// `options.report` takes the share of each.
LayerImage readLayer(const ExportRequest &request);
void writeLayer(const LayerImage &image, const ExportRequest &request);

} // namespace cam
