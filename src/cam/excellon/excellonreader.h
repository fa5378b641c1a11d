// Reads drill and rout files in Excellon's form, format 2, as drilling machines and board programs write it.
// The rules are those of the machine's own commands (Excellon's CNC-7 programmer's commands) and of the
// exchange format that was cut out of them (XNC, by Ucamco); the header comments are those of common board
// programs: ";FILE_FORMAT=4:4", ";TYPE=PLATED", "; FORMAT={3:3/ absolute / metric / suppress leading zeros}".
//
//     DrillImage image = readExcellonFile("board.drl");
//
// What it does not understand it refuses by name, with its line; nothing is guessed. Where a file leaves open
// how digits are to be read, DrillImage::assumptions says how they were. docs/cam-library.md, "Reading drill
// files", lists what is read.
#pragma once

#include "cam/excellon/drillimage.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace cam {

// `file` is for messages. `report` takes the share of the text that has been read, 0 to 1 and never less than
// before; what it throws, to cancel, is passed on. Throws FormatError.
DrillImage readExcellon(
    std::string_view text, const std::string &file,
    const std::function<void(double)> &report = [](double) {});

// `report` as above. Throws Error when the file cannot be read, FormatError for what it holds.
DrillImage readExcellonFile(
    const std::filesystem::path &file, const std::function<void(double)> &report = [](double) {});

// Whether `head`, the first few thousand bytes of a file, are of a drill file, whatever the file's name.
bool isExcellon(std::string_view head);

} // namespace cam
