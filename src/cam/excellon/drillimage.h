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
    // What the file leaves open and how it was taken, a sentence each; empty for a file that says all.
    std::vector<std::string> assumptions;
};

// The image as a layer that can be drawn: a round symbol for each tool, named "T3".
LayerImage layerOf(const DrillImage &image);

} // namespace cam
