// Reads GDSII stream files: the library's own, to verify and to show them, and those of other makers. It
// shares nothing with the writer but points and the table of records.
//
//     GdsImage image = readGdsFile("top.gds");
//     placeShapes(image, image.tops.at(0), Transform::scaling(image.unit, image.unit), takeNanometres);
//
// What it does not understand it refuses by name, with its byte; nothing is guessed. docs/cam-library.md,
// "Reading GDSII files", lists what is read.
#pragma once

#include "cam/gdsii/gdsimage.h"

#include <filesystem>
#include <functional>
#include <istream>
#include <string>

namespace cam {

// `file` is for messages. `report` takes the share of the stream that has been read, 0 to 1 and never less
// than before (0 until the end where the stream does not know its size); what it throws, to cancel, is passed
// on. Throws Error.
GdsImage readGds(
    std::istream &stream, const std::string &file, const std::function<void(double)> &report = [](double) {});

// `report` as above. Throws Error when the file cannot be read, and for what it holds.
GdsImage readGdsFile(
    const std::filesystem::path &file, const std::function<void(double)> &report = [](double) {});

} // namespace cam
