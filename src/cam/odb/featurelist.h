// Walks the features of a features file without reading their numbers: what a search wants of them.
#pragma once

#include "cam/model/featuresource.h"
#include "cam/odb/attributes.h"
#include "cam/odb/textfile.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace cam {

// One feature of a file. What it points to is valid during the visit.
struct ListedFeature
{
    FeatureSource source;
    char kind = ' ';                 // the letter of its record: L, P, A, T, B or S
    std::string_view symbol;         // as the file lists it; empty for a surface, a text or a barcode
    std::string_view text;           // of a text or a barcode
    std::string_view attributeField; // what AttributeTable::read takes
};

// `visit` gets the features in the file's order, with the table that their attributes refer to; false ends
// the walk. `check` is called every few thousand lines and may throw to cancel. A record that is no feature,
// or a broken one, is walked over: readFeatures() tells what is wrong with it.
using FeatureListVisit = std::function<bool(const ListedFeature &feature, const AttributeTable &table)>;
void listFeatures(
    LineReader &lines, const FeatureListVisit &visit, const std::function<void()> &check = [] {});

} // namespace cam
