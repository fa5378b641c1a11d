// Reads Gerber files (RS-274X, with the attributes and blocks that came later): the library's own, to verify
// them, and those of other makers. It shares nothing with the writer but points and contours.
//
//     GerberImage image = readGerberFile("top.gbr");
//     bool isCopper = image.isDark({12.7e6, 3.0e6}); // nanometres
//
// What it does not understand it refuses by name, with its line; nothing is guessed. docs/cam-library.md,
// "Reading Gerber files", lists what is read.
#pragma once

#include "cam/gerber/gerberimage.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace cam {

// `file` is for messages. `report` takes the share of the text that has been read, 0 to 1 and never less than
// before; what it throws, to cancel, is passed on. Throws FormatError.
GerberImage readGerber(
    std::string_view text, const std::string &file,
    const std::function<void(double)> &report = [](double) {});

// `report` as above. Throws Error when the file cannot be read, FormatError for what it holds.
GerberImage readGerberFile(
    const std::filesystem::path &file, const std::function<void(double)> &report = [](double) {});

} // namespace cam
