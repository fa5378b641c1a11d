// The "KEY=VALUE" and "NAME { ... }" files of a job: matrix, stephdr, misc/info.
#pragma once

#include "cam/model/shape.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cam {

struct StructuredField
{
    std::string key; // upper case
    std::string value;
    std::size_t line = 0;
};

// The fields between two braces; also the file's outermost level, whose name is empty.
struct StructuredBlock
{
    std::string name; // upper case
    std::size_t line = 0;
    std::vector<StructuredField> fields;

    // The value of the first field of that name, or `otherwise`.
    std::string value(std::string_view key, const std::string &otherwise = {}) const;
    const StructuredField *find(std::string_view key) const;
};

struct StructuredText
{
    std::string file; // for messages
    StructuredBlock top;
    std::vector<StructuredBlock> blocks;

    // Numbers of a field; `otherwise` when the field is missing or empty. Throws FormatError for anything
    // else.
    double number(const StructuredBlock &block, std::string_view key, double otherwise) const;
    int integer(const StructuredBlock &block, std::string_view key, int otherwise) const;
    // What UNITS says; nothing where it is missing or empty. Throws FormatError for other units.
    std::optional<LengthUnit> units() const;
};

// Throws FormatError for braces that do not match and lines that are neither field, brace nor comment ("#").
StructuredText parseStructuredText(std::string_view text, const std::string &file);

} // namespace cam
