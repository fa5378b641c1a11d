// What a drill file makes: hits, slots and routed paths as features, each with its tool. The reader
// (excellonreader.h) makes it.
#pragma once

#include "cam/model/layerimage.h"

#include <cstdint>
#include <string>
#include <vector>

namespace cam {

struct DrillTool
{
    int number = 0;        // T3: 3
    double diameter = 0.0; // nanometres; 0 while the file has not said it
    Plating plating = Plating::Unknown;
};

enum class DrillMove : std::uint8_t {
    Hit,
    Slot, // G85: drilled from end to end
    Rout  // with the tool down
};

// How numbers were read of which the file does not say it; only what has made a difference.
struct DrillAssumptions
{
    bool digits = false; // as many before and behind the decimal point as the following
    int whole = 0, decimals = 0;
    bool isInch = false;       // the unit that the file states
    bool leadingZeros = false; // that these are the ones that are left out

    bool none() const { return !digits && !leadingZeros; }
};

struct DrillImage
{
    // One feature of a drill file, beside its geometry.
    struct Work
    {
        DrillMove move = DrillMove::Hit;
        std::size_t line = 0; // of the file
    };

    std::vector<DrillTool> tools;
    // Hits are pads, slots and straight paths lines, arcs arcs. `symbol` is an index into `tools`.
    FeatureSet features;
    std::vector<Work> works; // one for each of features.order
    DrillAssumptions assumptions;
};

// The image as a layer that can be drawn: a round symbol for each tool, named "T3".
LayerImage layerOf(const DrillImage &image);

} // namespace cam
