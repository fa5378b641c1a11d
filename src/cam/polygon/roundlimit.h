// How often an arrangement of polygons rounds its crossings anew before it gives up.
#pragma once

namespace cam {

// Real layers take up to five rounds, bundles of edges made for it twenty. In a file of its own, so that a
// test can link a smaller one.
extern const int mostSnappingRounds;

} // namespace cam
