// Two names.
#include "cam/odb/lengthunit.h"

#include "cam/base/paths.h"

namespace cam {

std::optional<LengthUnit> lengthUnit(std::string_view name)
{
    const std::string folded = lowerCase(name);
    if (folded == "inch")
        return LengthUnit::Inch;
    if (folded == "mm")
        return LengthUnit::Millimetre;
    return std::nullopt;
}

LengthUnit lengthUnit(std::string_view name, const Fields &fields)
{
    const std::optional<LengthUnit> unit = lengthUnit(name);
    if (!unit)
        fields.fail("INCH or MM");
    return *unit;
}

} // namespace cam
