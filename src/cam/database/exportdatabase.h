// The host's record of exports: one SQLite table, one row an export. Beside it a table of what a verification
// has found of them, which only hosts write that verify; the table of exports is as it is without them.
#pragma once

#include <optional>
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

// Keeps what the verification of a file has found, with the newest row of that job, step, layer and format,
// which are compared without regard to case. Nothing happens where there is no such row. Throws Error with
// the database's own message.
void saveVerdict(const std::string &path, const ExportRecord &record, bool isProven);

struct SavedExport
{
    std::string time; // "YYYY-MM-DD hh:mm:ss", UTC
    ExportRecord record;
    std::optional<bool> isProven; // nothing for a file that was not verified
};

// The newest `most` rows of the database file `path`, the newest first; none when there is no such file or no
// table in it yet. Throws Error with the database's own message when the file cannot be read.
std::vector<SavedExport> readExports(const std::string &path, int most);

} // namespace cam
