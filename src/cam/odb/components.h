// The "components" file of a component layer: what is placed on one side of the board.
#pragma once

#include "cam/model/point.h"
#include "cam/model/shape.h"
#include "cam/odb/attributes.h"
#include "cam/odb/textfile.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace cam {

// A pin of a component, as it lies on the board.
struct Toeprint
{
    Point at; // nanometres
    std::string name;
    std::optional<std::uint32_t> net; // index into the nets of eda/data
};

struct Component
{
    std::string name; // reference designator
    std::string part;
    std::optional<std::uint32_t> package; // index into the packages of eda/data
    Point at;                             // nanometres
    double angle = 0.0;                   // degrees, clockwise
    bool isMirrored = false;              // by its own record, besides what the side of the board does
    std::vector<Attribute> attributes;
    std::vector<Attribute> properties;
    std::vector<Toeprint> toeprints;
    std::size_t line = 0;
};

// From the package's coordinates to the board's: turned, then mirrored (x to -x). A component of the bottom
// side is mirrored whether its record says so or not: most tools leave the mark out.
Transform placement(const Component &component, bool isBottom);

// `check` is called every few thousand lines and may throw to cancel. Records of other kinds are skipped.
// Throws FormatError for a record that would mislead: one without the numbers that it must have, or that
// belongs to nothing before it.
std::vector<Component> readComponents(
    LineReader &lines, const std::string &file, LengthUnit defaultUnit, const AttributeTypes &types,
    const std::function<void()> &check = [] {});

} // namespace cam
