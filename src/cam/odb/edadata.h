// A step's "eda/data" file: its nets with the features that belong to them, and the packages of its
// components.
#pragma once

#include "cam/model/contour.h"
#include "cam/model/shape.h"
#include "cam/odb/attributes.h"
#include "cam/odb/textfile.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace cam {

struct Net
{
    std::string name;
    std::vector<Attribute> attributes;
};

struct PackagePin
{
    std::string name;
    Point at; // nanometres, about the package's origin
};

struct Package
{
    std::string name;
    Box box;             // nanometres, as the file states it
    ContourPool outline; // about the package's origin; empty where the file has none
    std::vector<PackagePin> pins;
};

// A feature of a net: `feature` counts the records of a features file from 0.
struct NetFeature
{
    std::uint32_t net = 0;   // index into EdaData::nets
    std::uint32_t layer = 0; // index into EdaData::layers
    std::uint32_t feature = 0;
};

struct EdaData
{
    std::vector<std::string> layers; // lower case
    std::vector<Net> nets;
    std::vector<Package> packages;
    std::vector<NetFeature> features; // by layer, then by feature

    // The net of a feature of the layer (lower case); null when it has none.
    const Net *netOf(std::string_view layer, std::uint32_t feature) const;
};

// `file` is for messages; `defaultUnit` holds where the file states none. `check` is called every few
// thousand lines and may throw to cancel. Records of other kinds are skipped. Throws FormatError for a record
// that would mislead: one without the numbers that it must have, or that belongs to nothing before it.
EdaData readEdaData(
    LineReader &lines, const std::string &file, LengthUnit defaultUnit, const AttributeTypes &types,
    const std::function<void()> &check = [] {});

} // namespace cam
