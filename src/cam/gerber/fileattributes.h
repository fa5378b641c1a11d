// The attributes at the head of a file: what it is to a fabricator.
#pragma once

#include "cam/model/layerimage.h"

#include <string>
#include <vector>

namespace cam {

// "TF.FileFunction,Copper,L1,Top" and so on, in the order in which they are written. `negative`: whether the
// export inverts the layer.
std::vector<std::string> fileAttributes(const LayerImage &image, bool negative);

} // namespace cam
