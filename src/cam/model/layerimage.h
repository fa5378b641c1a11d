// Everything that a writer needs to know of one layer: the symbols, and the features of the chosen step and
// of the steps nested in it. Nothing in it is transformed: ExportOptions says what the writer has to do to
// it.
#pragma once

#include "cam/model/featureset.h"
#include "cam/model/shape.h"
#include "cam/model/standardsymbol.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cam {

// A symbol that the layer uses, directly or through other symbols. Exactly one of `standard` and `features`
// is set.
struct Symbol
{
    std::string name; // lower case, as in the features file, without the unit suffix
    SymbolUnit unit = SymbolUnit::Mils;
    std::optional<StandardSymbol> standard;
    // A symbol of the job's own: its drawing, about its own origin, with lines, pads (of other symbols),
    // negative features and so on.
    std::unique_ptr<FeatureSet> features;
};

using SymbolTable = std::vector<Symbol>;

// A step placed in another one, nx times ny times. Copy (i, j) is the child turned by `angle` about its own
// datum, then mirrored, then set with its datum at `at` + (i*dx, j*dy).
struct StepRepeat
{
    std::uint32_t step = 0; // index into LayerImage::steps
    Point at;
    double angle = 0.0; // degrees, CLOCKWISE as in the job's files
    bool mirror = false;
    std::uint32_t nx = 1, ny = 1;
    double dx = 0.0, dy = 0.0; // nanometres between copies
    Point childDatum;          // the child's datum in the child's own coordinates
};

// The map from the child's coordinates to the parent's for the first copy, and for copy (column, row).
Transform placement(const StepRepeat &repeat);
Transform placement(const StepRepeat &repeat, std::uint32_t column, std::uint32_t row);

struct StepImage
{
    std::string name; // lower case
    Point datum;      // in the step's own coordinates
    FeatureSet features;
    std::vector<StepRepeat> repeats;
};

// Of the holes of a drill or rout layer. Mixed: some are plated, some are not.
enum class Plating : std::uint8_t { Unknown, Plated, NonPlated, Mixed };

// Children stand before their parents in `steps`; the exported step is the last one.
struct LayerImage
{
    std::string job, layer; // lower case
    std::string context;    // of the matrix row: "BOARD", "MISC", ...
    std::string type;       // of the matrix row: "SIGNAL", "SOLDER_MASK", ...
    Polarity polarity = Polarity::Positive;
    int row = 0;              // of the matrix
    int copperRank = 0;       // 1 for the topmost copper layer of the board, 0 for a layer that is not copper
    int copperCount = 0;      // copper layers of the board
    bool aboveCopper = false; // stands above the first copper layer of the matrix
    // Of a drill or rout layer: how its holes are made, and the copper layers, counted from 1 at the top,
    // between which they lie; 0 where the job does not say.
    Plating plating = Plating::Unknown;
    int firstCopper = 0, lastCopper = 0;
    // When the job was saved, by its own account: year, month, day, hour, minute, second; all 0 when it does
    // not say.
    std::int16_t saved[6] = {0, 0, 0, 0, 0, 0};
    SymbolTable symbols;
    std::vector<StepImage> steps;
    ContourPool profile; // of the exported step; empty when it has none
    Point datum;         // of the exported step

    const StepImage &top() const { return steps.back(); }
};

} // namespace cam
