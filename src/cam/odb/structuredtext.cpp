#include "cam/odb/structuredtext.h"

#include "cam/base/error.h"
#include "cam/base/numbers.h"
#include "cam/odb/lengthunit.h"
#include "cam/odb/textfile.h"

#include <algorithm>

namespace cam {

namespace {

std::string_view trimmed(std::string_view text)
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string upperCase(std::string_view text)
{
    std::string upper(text);
    for (char &c : upper) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - ('a' - 'A'));
    }
    return upper;
}

} // namespace

const StructuredField *StructuredBlock::find(std::string_view key) const
{
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [key](const StructuredField &field) { return field.key == key; });
    return found == fields.end() ? nullptr : &*found;
}

std::string StructuredBlock::value(std::string_view key, const std::string &otherwise) const
{
    const StructuredField *field = find(key);
    return field ? field->value : otherwise;
}

double StructuredText::number(const StructuredBlock &block, std::string_view key, double otherwise) const
{
    const StructuredField *field = block.find(key);
    if (!field || field->value.empty())
        return otherwise;
    const auto value = toNumber(field->value);
    if (!value)
        throw FormatError(file, field->line,
                          "a number for " + field->key + ", found \"" + field->value + "\"");
    return *value;
}

int StructuredText::integer(const StructuredBlock &block, std::string_view key, int otherwise) const
{
    const StructuredField *field = block.find(key);
    if (!field || field->value.empty())
        return otherwise;
    const auto value = toInteger(field->value);
    if (!value)
        throw FormatError(file, field->line,
                          "a whole number for " + field->key + ", found \"" + field->value + "\"");
    return *value;
}

std::optional<LengthUnit> StructuredText::units() const
{
    const StructuredField *field = top.find("UNITS");
    if (!field || field->value.empty())
        return std::nullopt;
    const std::optional<LengthUnit> unit = lengthUnit(field->value);
    if (!unit)
        throw FormatError(file, field->line, "INCH or MM for UNITS");
    return unit;
}

StructuredText parseStructuredText(std::string_view text, const std::string &file)
{
    StructuredText result;
    result.file = file;
    bool isInBlock = false;
    LineReader lines(text);
    TextLine line;
    while (lines.next(line)) {
        const std::string_view content = trimmed(line.text);
        if (content.empty() || content.front() == '#')
            continue;
        if (content == "}") {
            if (!isInBlock)
                throw FormatError(file, line.number, "a block before \"}\"");
            isInBlock = false;
        } else if (content.back() == '{' && content.find('=') == std::string_view::npos) {
            if (isInBlock)
                throw FormatError(file, line.number, "\"}\" before the next block");
            isInBlock = true;
            const std::string name = upperCase(trimmed(content.substr(0, content.size() - 1)));
            result.blocks.push_back({name, line.number, {}});
        } else {
            const std::size_t equals = content.find('=');
            if (equals == std::string_view::npos)
                throw FormatError(file, line.number, "KEY=VALUE, \"NAME {\" or \"}\"");
            StructuredBlock &block = isInBlock ? result.blocks.back() : result.top;
            block.fields.push_back({upperCase(trimmed(content.substr(0, equals))),
                                    std::string(trimmed(content.substr(equals + 1))), line.number});
        }
    }
    if (isInBlock)
        throw FormatError(file, result.blocks.back().line,
                          "\"}\" at the end of the block " + result.blocks.back().name);
    return result;
}

} // namespace cam
