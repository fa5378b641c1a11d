#include "cam/odb/stepheader.h"

#include "cam/base/error.h"
#include "cam/base/paths.h"
#include "cam/odb/structuredtext.h"

namespace cam {

namespace {

bool parseYesNo(const StructuredText &text, const StructuredBlock &block, std::string_view key)
{
    const StructuredField *field = block.find(key);
    const std::string word = field ? lowerCase(field->value) : std::string();
    if (word.empty() || word == "no" || word == "n")
        return false;
    if (word == "yes" || word == "y")
        return true;
    throw FormatError(text.file, field->line, "YES or NO for " + field->key);
}

StepHeaderRepeat parseRepeat(const StructuredText &text, const StructuredBlock &block, double unit)
{
    constexpr int most = 1'000'000;
    StepHeaderRepeat repeat;
    repeat.step = lowerCase(block.value("NAME"));
    if (repeat.step.empty())
        throw FormatError(text.file, block.line, "NAME in STEP-REPEAT");
    repeat.at = Point{text.number(block, "X", 0.0), text.number(block, "Y", 0.0)} * unit;
    repeat.dx = text.number(block, "DX", 0.0) * unit;
    repeat.dy = text.number(block, "DY", 0.0) * unit;
    repeat.nx = text.integer(block, "NX", 1);
    repeat.ny = text.integer(block, "NY", 1);
    if (repeat.nx < 1 || repeat.ny < 1 || repeat.nx > most || repeat.ny > most)
        throw FormatError(text.file, block.line, "NX and NY from 1 to 1000000 in STEP-REPEAT");
    repeat.angle = text.number(block, "ANGLE", 0.0);
    repeat.mirror = parseYesNo(text, block, "MIRROR");
    // A flipped step lies on its back: other layers would have to be drawn, and descriptions leave open
    // which.
    if (parseYesNo(text, block, "FLIP"))
        throw FormatError(text.file, block.find("FLIP")->line, "NO for FLIP, flipped steps cannot be drawn");
    return repeat;
}

} // namespace

StepHeader parseStepHeader(std::string_view text, const std::string &file, LengthUnit defaultUnit)
{
    const StructuredText parsed = parseStructuredText(text, file);
    const double unit = nanometresPer(parsed.units().value_or(defaultUnit));
    StepHeader header;
    header.datum =
        Point{parsed.number(parsed.top, "X_DATUM", 0.0), parsed.number(parsed.top, "Y_DATUM", 0.0)} * unit;
    for (const StructuredBlock &block : parsed.blocks) {
        if (block.name == "STEP-REPEAT")
            header.repeats.push_back(parseRepeat(parsed, block, unit));
    }
    return header;
}

} // namespace cam
