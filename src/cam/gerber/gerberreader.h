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
#include <string>
#include <string_view>

namespace cam {

// `file` is for messages. Throws FormatError.
GerberImage readGerber(std::string_view text, const std::string &file);

// Throws Error when the file cannot be read, FormatError for what it holds.
GerberImage readGerberFile(const std::filesystem::path &file);

} // namespace cam
