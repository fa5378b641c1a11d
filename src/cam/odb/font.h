// A job's stroke font: what its texts are drawn with.
#pragma once

#include "cam/model/point.h"
#include "cam/model/shape.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace cam {

// One stroke of a character, in the font's own units (inches), about the character's origin.
struct FontStroke
{
    Point start;
    Point end;
    bool isNegative = false;
    bool isSquare = false; // square ends instead of round ones
};

struct Font
{
    double xSize = 0.0; // of the cell of one character, in the font's units
    double ySize = 0.0;
    double offset = 0.0; // of the first character's origin
    std::map<std::string, std::vector<FontStroke>, std::less<>> characters;
};

// The character that `text`, which is not empty, begins with: one of UTF-8 as a whole, else a byte.
std::string_view firstCharacter(std::string_view text);

// Throws FormatError for lines that are no part of a font.
Font parseFont(std::string_view text, const std::string &file);

} // namespace cam
