// Whether a ring on the grid may meet itself: a quick answer that spares most rings an arrangement.
#pragma once

#include "cam/polygon/gridpolygon.h"

namespace cam {

// False only where the ring, of three corners at least, encloses no place twice, and none on the wrong side:
// where no edge meets one that is not its neighbour. Yes also where that would take long to find out, because
// edges are long and many.
bool mayMeetItself(const GridRing &ring);

} // namespace cam
