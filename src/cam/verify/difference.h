// The comparison of two pictures: first by their edges, then, where that does not settle it, by exact
// booleans.
#pragma once

#include "cam/verify/picture.h"
#include "cam/verify/verification.h"

namespace cam::verify {

Comparison compare(Picture &first, Picture &second, const VerifyControl &control);

} // namespace cam::verify
