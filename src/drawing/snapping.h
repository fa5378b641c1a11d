// The places of features that a measurement snaps to: centres, corners, ends, edges.
#pragma once

#include "drawing/layerscene.h"

#include <optional>
#include <vector>

namespace drawing {

struct Snap
{
    enum class Kind { Center, Corner, End, Edge };
    cam::Point at; // nanometres, of what is drawn
    Kind kind = Kind::Edge;
};

// The place of a feature, or of a file's figure, nearest to `at`, at most `reach` away: a centre, a corner or
// an end where one is near enough, else a point on an edge. Nothing where none is near.
std::optional<Snap> snapTo(const Scene &scene, cam::Point at, double reach);

// A feature as it is found under the mouse.
struct FoundFeature
{
    std::uint32_t step = 0;  // index into the image's steps
    std::uint32_t index = 0; // in the step's drawing order
    cam::Transform place;    // from the step's coordinates to those that are drawn
};

// The features that cover `at`, or come nearer to it than `reach`: the one that was painted last comes first.
// At most `most` of them.
std::vector<FoundFeature> featuresAt(const LayerScene &scene, cam::Point at, double reach,
                                     std::size_t most = 20);

} // namespace drawing
