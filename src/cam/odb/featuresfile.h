// Reads a features file (of a layer, a symbol or a profile) into compact records, in one pass over its text.
#pragma once

#include "cam/model/featureset.h"
#include "cam/model/shape.h"
#include "cam/odb/font.h"
#include "cam/odb/textfile.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace cam {

// What the reader needs from the job around the file.
struct FeaturesContext
{
    // The index in the layer's symbol table of the symbol `name` (lower case, without suffix) with its
    // numbers in `unit`. Called once for each symbol that a feature of the file uses. May throw SymbolError.
    std::function<std::uint32_t(std::string_view name, SymbolUnit unit)> symbolIndex;
    // The font `name`; throws Error when the job has none of that name.
    std::function<const Font &(std::string_view name)> font;
    // Takes the share of the text that has been read, 0 to 1, every few thousand lines and
    // at least every few hundredths; may throw to cancel.
    std::function<void(double)> report;
};

struct FeaturesFile
{
    FeatureSet features;
    // Things that were not drawn, by name ("record X", "symbol foo"), and how often each occurred. A features
    // file is drawn truly only when this is empty.
    std::map<std::string, std::size_t> unsupported;
    // Things that were drawn in a simpler form than asked for ("barcode as its box").
    std::map<std::string, std::size_t> simplified;
    // Things that descriptions of the format show in more than one way, and how they were read.
    std::map<std::string, std::size_t> readings;
};

// `file` is for messages. `defaultUnit` holds where the file states none. Throws FormatError for a record
// that cannot be read, and passes on what the context throws, but for SymbolError, which is counted in
// `unsupported`.
FeaturesFile readFeatures(LineReader &lines, const std::string &file, const FeaturesContext &context,
                          LengthUnit defaultUnit = LengthUnit::Inch);
FeaturesFile readFeatures(std::string_view text, const std::string &file, const FeaturesContext &context,
                          LengthUnit defaultUnit = LengthUnit::Inch);

// Only the contours of the surfaces of `text`, as a profile file holds them.
ContourPool readContours(std::string_view text, const std::string &file,
                         LengthUnit defaultUnit = LengthUnit::Inch);

} // namespace cam
