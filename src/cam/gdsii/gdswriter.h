// Writes a layer as a GDSII stream file.
#pragma once

#include "cam/model/exportoptions.h"

namespace cam {

// Writes `image` to options.file; the file appears there only when it is complete. The geometry has the
// matrix row as its layer number and datatype 0, the profile (options.profileOnTop) datatype 1. There is a
// structure for each symbol, as it comes to lie, one for each nested step, and last the exported step's own,
// which bears the step's name. Throws Error when the file cannot be written or a coordinate does not fit, and
// passes on whatever options.report throws.
void writeGds(const LayerImage &image, const ExportOptions &options);

} // namespace cam
