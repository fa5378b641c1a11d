// The host's record of exports: one SQLite table, one row an export.
#pragma once

#include <string>
#include <vector>

namespace cam {

// The columns in their order; numbers as they are, flags as 0 and 1.
struct ExportRecord
{
    std::string job, step, layer;
    std::string format; // "gds" or "gerber"
    std::string file;
    double dbu = 0.0, resize = 0.0;
    bool isNegative = false, isMirror = false, isRotate = false, isScale = false, isProfileTop = false;
    double angle = 0.0;
    std::string axis;
    double xScale = 1.0, yScale = 1.0;
};

// Appends `record` to the table "exports" of the database file `path` (UTF-8); file, folders and table are
// made where they are missing. The row also bears the time, UTC, by the database's clock. Throws Error with
// the database's own message when that fails.
void saveExport(const std::string &path, const ExportRecord &record);

struct SavedExport
{
    std::string time; // "YYYY-MM-DD hh:mm:ss", UTC
    ExportRecord record;
};

// The newest `most` rows of the database file `path`, the newest first; none when there is no such file or no
// table in it yet. Throws Error with the database's own message when the file cannot be read.
std::vector<SavedExport> readExports(const std::string &path, int most);

} // namespace cam
