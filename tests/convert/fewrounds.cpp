// For camconvert_fewrounds, which gives up at the first crossing of edges: stands in for roundlimit.cpp.
#include "cam/polygon/roundlimit.h"

namespace cam {

const int mostSnappingRounds = 0;

} // namespace cam
