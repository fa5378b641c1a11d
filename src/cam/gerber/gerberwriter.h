// Writes a layer as RS-274X with X2 attributes.
#pragma once

#include "cam/model/exportoptions.h"

namespace cam {

// Writes `image` to options.file; the file appears there only when it is complete. Throws Error when the file
// cannot be written, and passes on whatever options.report throws.
void writeGerber(const LayerImage &image, const ExportOptions &options);

} // namespace cam
