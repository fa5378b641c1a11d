// The "tools" file of a drill or rout layer: how the holes of each tool are made.
#pragma once

#include "cam/model/layerimage.h"

#include <string>
#include <string_view>

namespace cam {

// The kinds that occur among the tools of a layer.
struct ToolKinds
{
    bool plated = false; // vias too
    bool nonPlated = false;
    bool unclear = false; // a tool without a type, or of a type with another name
};

// Throws FormatError for a text that is no tools file.
ToolKinds parseTools(std::string_view text, const std::string &file);

// What a layer's holes are: by its tools, which speak of each hole, else by the layer's ADD_TYPE in the
// matrix.
Plating platingOf(const ToolKinds &kinds, std::string_view addType);

} // namespace cam
