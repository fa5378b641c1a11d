// Whether rings cover each place once.
#pragma once

#include "cam/polygon/gridpolygon.h"

#include <vector>

namespace cam::verify {

enum class Cleanness : std::uint8_t { Unknown, Clean, Unclean };

// Whether the winding numbers of `rings` are 0 or 1 everywhere, but for places too small to count.
bool isClean(const std::vector<GridRing> &rings);

} // namespace cam::verify
