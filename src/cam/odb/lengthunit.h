// The units that a job's files state by name.
#pragma once

#include "cam/model/shape.h"
#include "cam/odb/fields.h"

#include <optional>
#include <string_view>

namespace cam {

// INCH or MM, whatever the case; nothing for any other name.
std::optional<LengthUnit> lengthUnit(std::string_view name);

// The same; throws FormatError, with the line of `fields`, for any other name.
LengthUnit lengthUnit(std::string_view name, const Fields &fields);

} // namespace cam
