#include "cam/polygon/roundlimit.h"

namespace cam {

const int mostSnappingRounds = 200;

} // namespace cam
