// A large job out of a small one: a layer's features written again and again, side by side.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace bench {

// What is to be repeated: a layer of a step of a job folder.
struct LayerSource
{
    std::filesystem::path job;
    std::string step;
    std::string layer;
};

// Writes to `target` a job of one step, "panel", with one layer of the source's name, which holds at least
// `featureCount` features: as many copies of the source's as that takes, in a square, each as text of its
// own. Returns the number of features.
std::size_t writeFlatPanel(const LayerSource &source, const std::filesystem::path &target,
                           std::size_t featureCount);

// The same board, but as a step that is repeated.
std::size_t writeNestedPanel(const LayerSource &source, const std::filesystem::path &target,
                             std::size_t featureCount);

// Writes to `target` a job of one step, "pcb", with one layer, "plane": a surface with `count` round
// clearances as negative pads.
void writePlane(const std::filesystem::path &target, std::size_t count);

} // namespace bench
