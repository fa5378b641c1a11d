#include "cam/odb/font.h"

#include "cam/odb/fields.h"
#include "cam/odb/textfile.h"

namespace cam {

namespace {

// "LINE xs ys xe ye polarity shape width"; the width is not read: a text states its own.
FontStroke parseStroke(Fields &fields)
{
    FontStroke stroke;
    stroke.start.x = fields.number("a number for the stroke's start x");
    stroke.start.y = fields.number("a number for the stroke's start y");
    stroke.end.x = fields.number("a number for the stroke's end x");
    stroke.end.y = fields.number("a number for the stroke's end y");
    stroke.isNegative = !fields.letter('P', 'N', "the stroke's polarity, P or N");
    stroke.isSquare = !fields.letter('R', 'S', "the stroke's shape, R or S");
    return stroke;
}

} // namespace

std::string_view firstCharacter(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t size = lead >= 0xF0 && lead < 0xF5   ? 4
                             : lead >= 0xE0 && lead < 0xF0 ? 3
                             : lead >= 0xC2                ? 2
                                                           : 1;
    if (lead >= 0xF5 || size > text.size())
        return text.substr(0, 1);
    for (std::size_t i = 1; i < size; ++i) {
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80)
            return text.substr(0, 1);
    }
    return text.substr(0, size);
}

Font parseFont(std::string_view text, const std::string &file)
{
    Font font;
    std::vector<FontStroke> *character = nullptr;
    LineReader lines(text);
    TextLine line;
    while (lines.next(line)) {
        Fields fields(line.text, line.number, file);
        const std::string_view keyword = fields.word();
        if (keyword.empty())
            continue;
        if (keyword == "XSIZE") {
            font.xSize = fields.number("a number for XSIZE");
        } else if (keyword == "YSIZE") {
            font.ySize = fields.number("a number for YSIZE");
        } else if (keyword == "OFFSET") {
            font.offset = fields.number("a number for OFFSET");
        } else if (keyword == "CHAR") {
            const std::string_view word = fields.word();
            const std::string_view name = word.empty() ? " " : word; // of a blank nothing
            if (firstCharacter(name) != name)
                fields.fail("one character behind CHAR");
            character = &font.characters[std::string(name)];
            character->clear();
        } else if (keyword == "LINE") {
            if (!character)
                fields.fail("CHAR before LINE");
            character->push_back(parseStroke(fields));
        } else if (keyword == "ECHAR") {
            character = nullptr;
        } else if (keyword[0] != '#') {
            fields.fail("XSIZE, YSIZE, OFFSET, CHAR, LINE or ECHAR");
        }
    }
    if (font.xSize <= 0.0 || font.ySize <= 0.0)
        throw FormatError(file, 0, "XSIZE and YSIZE greater than 0");
    return font;
}

} // namespace cam
