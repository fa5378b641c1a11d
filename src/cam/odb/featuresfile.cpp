// One class that walks the lines, with one function a record, and a smaller one that draws texts.
#include "cam/odb/featuresfile.h"

#include "cam/base/error.h"
#include "cam/base/paths.h"
#include "cam/model/trigonometry.h"
#include "cam/odb/fields.h"
#include "cam/odb/lengthunit.h"
#include "cam/odb/textfile.h"

#include <algorithm>
#include <cmath>

namespace cam {

namespace {

// How a pad, a text or a barcode is turned, as its record states it.
struct Orientation
{
    double angle = 0.0; // degrees, clockwise
    bool mirror = false;
};

// 0 to 3: 0, 90, 180, 270 degrees clockwise; 4 to 7: the same, then mirrored; 8 and 9: any angle, 9 mirrored.
Orientation parseOrientation(Fields &fields)
{
    const int code = fields.integer("an orientation, 0 to 9");
    if (code < 0 || code > 9)
        fields.fail("an orientation, 0 to 9");
    if (code < 8)
        return {90.0 * (code % 4), code >= 4};
    double angle = std::fmod(fields.number("the angle of orientation 8 or 9"), 360.0);
    if (angle < 0.0)
        angle += 360.0;
    return {angle, code == 9};
}

Polarity parsePolarity(Fields &fields)
{
    return fields.letter('P', 'N', "a polarity, P or N") ? Polarity::Positive : Polarity::Negative;
}

// A symbol of the file's own list, looked up in the layer's table when a feature first uses it.
struct SymbolEntry
{
    std::string name;
    SymbolUnit unit = SymbolUnit::Mils;
    bool hasOwnUnit = false; // stated behind its name
    enum { Unlisted, Listed, Known, Unsupported } state = Unlisted;
    std::uint32_t index = 0;
};

class Reader
{
public:
    Reader(const std::string &file, const FeaturesContext &context, LengthUnit unit)
        : m_file(file), m_context(context)
    {
        setUnit(unit);
    }

    FeaturesFile read(LineReader &lines);

private:
    void readLine(const TextLine &line);
    void readHeaderLine(const TextLine &line);
    void readUnits(const TextLine &line, std::string_view word);
    void readSymbolName(const TextLine &line);
    void readLineRecord(Fields &fields);
    void readPadRecord(Fields &fields);
    void readArcRecord(Fields &fields);
    void readTextRecord(Fields &fields);
    void readBarcodeRecord(Fields &fields);
    void readSurfaceRecord(Fields &fields);
    void readSurfaceLine(const TextLine &line);
    void drawText(const Font &font, std::string_view text, const Transform &place, Point characterSize,
                  double strokeWidth, Polarity polarity);

    template <typename Record>
    void add(const Record &record, Polarity polarity)
    {
        m_result.features.add(record, polarity);
        m_result.features.sources.add(m_source);
    }
    void setUnit(LengthUnit unit);
    Point readPoint(Fields &fields, const char *what);
    // False when the symbol cannot be drawn; it has then been counted.
    bool readSymbol(Fields &fields, std::uint32_t &index);
    bool useSymbol(int number, Fields &fields, std::uint32_t &index);
    std::uint32_t roundSymbol(double diameter, bool isSquare);

    const std::string &m_file;
    const FeaturesContext &m_context;
    double m_unit = 0.0;    // nanometres
    bool m_hasUnit = false; // stated by the file
    SymbolUnit m_symbolUnit = SymbolUnit::Mils;
    std::vector<SymbolEntry> m_symbols; // by the file's own numbers
    FeaturesFile m_result;
    std::uint32_t m_recordCount = 0;
    FeatureSource m_source; // of the record that is being read

    bool m_isInSurface = false;
    bool m_isInContour = false;
    Surface m_surface;
    Polarity m_surfacePolarity = Polarity::Positive;
    bool m_hasIsland = false;
};

void Reader::setUnit(LengthUnit unit)
{
    m_unit = nanometresPer(unit);
    m_symbolUnit = unit == LengthUnit::Inch ? SymbolUnit::Mils : SymbolUnit::Micrometres;
    for (SymbolEntry &entry : m_symbols) {
        if (!entry.hasOwnUnit)
            entry.unit = m_symbolUnit;
    }
}

FeaturesFile Reader::read(LineReader &lines)
{
    // Often enough for a host, in small files as in large ones.
    constexpr std::size_t linesPerReport = 4096, linesPerLook = 32;
    constexpr double shareOfReport = 0.01;
    double reported = 0.0;
    TextLine line;
    while (lines.next(line)) {
        readLine(line);
        if (line.number % linesPerLook != 0 || !m_context.report)
            continue;
        const double share = lines.share();
        if (line.number % linesPerReport != 0 && share < reported + shareOfReport)
            continue;
        m_context.report(share);
        reported = share;
    }
    if (m_isInSurface)
        throw FormatError(m_file, line.number, "SE, the end of the last surface, before the end of the file");
    if (!m_hasUnit && m_unit != nanometresPer(LengthUnit::Inch) && !m_result.features.order.empty())
        ++m_result.readings["files that state no unit: in millimetres, as misc/info says"];
    return std::move(m_result);
}

bool isFeature(char record)
{
    return record == 'L' || record == 'P' || record == 'A' || record == 'T' || record == 'B' || record == 'S';
}

void Reader::readLine(const TextLine &line)
{
    const std::string_view text =
        line.text.substr(std::min(line.text.find_first_not_of(" \t"), line.text.size()));
    // Attributes and the identifier stand behind ";".
    const bool isText = !text.empty() && (text[0] == 'T' || text[0] == 'B');
    const std::string_view record = isText ? text : text.substr(0, text.find(';'));
    if (m_isInSurface)
        return readSurfaceLine({record, line.number});

    const bool isRecord = record.size() > 1 && (record[1] == ' ' || record[1] == '\t');
    if (!isRecord)
        return readHeaderLine({text, line.number});
    if (isFeature(record[0]))
        m_source = {m_recordCount++, static_cast<std::uint32_t>(line.number)};
    Fields fields(record.substr(2), line.number, m_file);
    switch (record[0]) {
    case 'L':
        return readLineRecord(fields);
    case 'P':
        return readPadRecord(fields);
    case 'A':
        return readArcRecord(fields);
    case 'T':
        return readTextRecord(fields);
    case 'B':
        return readBarcodeRecord(fields);
    case 'S':
        return readSurfaceRecord(fields);
    default:
        return readHeaderLine(line);
    }
}

// Everything that is no feature: units, names, counts, comments.
void Reader::readHeaderLine(const TextLine &line)
{
    Fields fields(line.text, line.number, m_file);
    const std::string_view word = fields.word();
    if (word.empty())
        return;
    switch (word[0]) {
    case '#':
    case '@': // an attribute's name
    case '&': // an attribute's text
        return;
    case '$':
        return readSymbolName(line);
    default:
        break;
    }
    const std::string key = lowerCase(word.substr(0, word.find('=')));
    const std::size_t equals = line.text.find('=');
    if (key == "units" && equals != std::string_view::npos)
        return readUnits(line, line.text.substr(equals + 1));
    if (key == "u")
        return readUnits(line, fields.word());
    if (word == "F" || word.substr(0, 3) == "ID=") // the number of features, the layer's identifier
        return;
    ++m_result.unsupported["record " + std::string(word.substr(0, 32))];
}

void Reader::readUnits(const TextLine &line, std::string_view word)
{
    Fields fields(word, line.number, m_file);
    const LengthUnit unit = lengthUnit(fields.word(), fields);
    if (nanometresPer(unit) != m_unit && !m_result.features.order.empty())
        fields.fail("the unit before the first feature");
    m_hasUnit = true;
    setUnit(unit);
}

// "$number name" with "I" or "M" behind it where the symbol's unit is not the file's.
void Reader::readSymbolName(const TextLine &line)
{
    constexpr int mostSymbols = 10'000'000;
    Fields fields(line.text, line.number, m_file);
    const auto number = toInteger(fields.word().substr(1));
    if (!number || *number < 0 || *number > mostSymbols)
        fields.fail("a symbol number after \"$\"");
    const std::string_view name = fields.word();
    if (name.empty())
        fields.fail("a symbol name");
    const std::string_view suffix = fields.word();
    const auto index = static_cast<std::size_t>(*number);
    if (index >= m_symbols.size()) {
        if (index > m_symbols.size() + 100'000)
            fields.fail("symbol numbers in order");
        m_symbols.resize(index + 1);
    }
    SymbolEntry entry;
    entry.name = lowerCase(name);
    entry.hasOwnUnit = suffix == "I" || suffix == "M";
    entry.unit = suffix == "I" ? SymbolUnit::Mils : suffix == "M" ? SymbolUnit::Micrometres : m_symbolUnit;
    entry.state = SymbolEntry::Listed;
    SymbolEntry &known = m_symbols[index];
    if (known.state == SymbolEntry::Unlisted)
        known = entry;
    else if (known.name != entry.name || known.unit != entry.unit)
        fields.fail("one symbol for each number");
}

// No board is larger; what is farther away is a damaged number.
constexpr double farthest = 100e9; // nanometres

Point Reader::readPoint(Fields &fields, const char *what)
{
    const double x = fields.number(what);
    const double y = fields.number(what);
    const Point point = Point{x, y} * m_unit;
    if (std::fabs(point.x) > farthest || std::fabs(point.y) > farthest)
        fields.fail("a position or size below 100 metres");
    return point;
}

bool Reader::readSymbol(Fields &fields, std::uint32_t &index)
{
    return useSymbol(fields.integer("a symbol number"), fields, index);
}

bool Reader::useSymbol(int number, Fields &fields, std::uint32_t &index)
{
    const auto listed = static_cast<std::size_t>(number);
    if (number < 0 || listed >= m_symbols.size() || m_symbols[listed].state == SymbolEntry::Unlisted)
        fields.fail("the number of a symbol that the file lists");
    SymbolEntry &entry = m_symbols[listed];
    if (entry.state == SymbolEntry::Listed) {
        try {
            entry.index = m_context.symbolIndex(entry.name, entry.unit);
            entry.state = SymbolEntry::Known;
        } catch (const SymbolError &) {
            entry.state = SymbolEntry::Unsupported;
        }
    }
    if (entry.state == SymbolEntry::Unsupported) {
        ++m_result.unsupported["symbol " + entry.name];
        return false;
    }
    index = entry.index;
    return true;
}

// "L xs ys xe ye symbol polarity dcode"
void Reader::readLineRecord(Fields &fields)
{
    Line line;
    line.start = readPoint(fields, "a number for the line's start");
    line.end = readPoint(fields, "a number for the line's end");
    const bool isDrawable = readSymbol(fields, line.symbol);
    const Polarity polarity = parsePolarity(fields);
    if (isDrawable)
        add(line, polarity);
}

// "P x y symbol polarity dcode orientation", where symbol may be "-1 symbol growth". The format calls the
// growth a resize factor, but in thousandths of the file's unit, as symbol sizes are; it may be negative.
void Reader::readPadRecord(Fields &fields)
{
    Pad pad;
    pad.at = readPoint(fields, "a number for the pad's position");
    int symbol = fields.integer("a symbol number");
    if (symbol == -1) {
        symbol = fields.integer("a symbol number after -1");
        pad.growth = fields.number("what the resized pad grows by") * nanometresPer(m_symbolUnit);
        if (std::fabs(pad.growth) > farthest)
            fields.fail("a resize of less than 100 metres");
    }
    const bool isDrawable = useSymbol(symbol, fields, pad.symbol);
    const Polarity polarity = parsePolarity(fields);
    fields.word(); // the aperture number of the file that the job was made from
    const Orientation orientation = fields.atEnd() ? Orientation{} : parseOrientation(fields);
    pad.angle = orientation.angle;
    pad.mirror = orientation.mirror;
    if (pad.growth != 0.0)
        ++m_result.readings["resized pads: grown by their number in mils, micrometres in a metric file"];
    if (isDrawable)
        add(pad, polarity);
}

// "A xs ys xe ye xc yc symbol polarity dcode clockwise"
void Reader::readArcRecord(Fields &fields)
{
    Arc arc;
    arc.start = readPoint(fields, "a number for the arc's start");
    arc.end = readPoint(fields, "a number for the arc's end");
    arc.center = readPoint(fields, "a number for the arc's centre");
    const bool isDrawable = readSymbol(fields, arc.symbol);
    const Polarity polarity = parsePolarity(fields);
    fields.word(); // the aperture number, as above
    arc.clockwise = fields.letter('Y', 'N', "the arc's direction, Y (clockwise) or N");
    if (isDrawable)
        add(arc, polarity);
}

// Whether no more than the version of a text and the attributes follows.
bool isBehindText(std::string_view rest)
{
    const std::size_t end = rest.find_first_not_of(" \t0123456789");
    return end == std::string_view::npos || rest[end] == ';';
}

// The text between two quotes; without quotes, everything up to the attributes.
std::string_view quotedText(Fields &fields)
{
    const std::string_view rest = fields.rest();
    if (rest.empty() || rest[0] != '\'')
        return rest.substr(0, rest.find(';'));
    // The text may hold quotes and semicolons itself.
    std::size_t close = rest.rfind('\'');
    while (close > 0 && !isBehindText(rest.substr(close + 1)))
        close = rest.rfind('\'', close - 1);
    if (close == 0)
        fields.fail("a quote at the end of the text");
    return rest.substr(1, close - 1);
}

std::uint32_t Reader::roundSymbol(double diameter, bool isSquare)
{
    const double micrometres = diameter / nanometresPer(SymbolUnit::Micrometres);
    // Thousandths of a micrometre keep the name short and the diameter exact to a picometre's worth.
    std::string digits = std::to_string(std::llround(micrometres * 1000.0));
    if (digits.size() < 4)
        digits.insert(0, 4 - digits.size(), '0');
    digits.insert(digits.size() - 3, ".");
    return m_context.symbolIndex((isSquare ? "s" : "r") + digits, SymbolUnit::Micrometres);
}

// "T x y font polarity orientation xsize ysize width text version"
void Reader::readTextRecord(Fields &fields)
{
    const Point at = readPoint(fields, "a number for the text's position");
    const std::string fontName = lowerCase(fields.word());
    if (fontName.empty())
        fields.fail("a font name");
    const Polarity polarity = parsePolarity(fields);
    const Orientation orientation = parseOrientation(fields);
    const Point size = readPoint(fields, "a number for the size of the text's characters");
    // The width is a factor of 12 mils.
    const double strokeWidth = fields.number("a number for the width of the text's strokes") * 12.0 * 25400.0;
    if (!(strokeWidth >= 0.0 && strokeWidth <= farthest))
        fields.fail("a width of the text's strokes between 0 and 100 metres");
    const std::string_view text = quotedText(fields);
    Pad place;
    place.at = at;
    place.angle = orientation.angle;
    place.mirror = orientation.mirror;
    drawText(m_context.font(fontName), text, placement(place), size, strokeWidth, polarity);
}

void Reader::drawText(const Font &font, std::string_view text, const Transform &place, Point characterSize,
                      double strokeWidth, Polarity polarity)
{
    const Point scale = {characterSize.x / font.xSize, characterSize.y / font.ySize};
    double x = font.offset * scale.x;
    if (text.substr(0, 2) == "$$")
        ++m_result.simplified["text " + std::string(text) + " as it stands in the file"];
    static const std::vector<FontStroke> nothing;
    for (std::string_view left = text; !left.empty();) {
        const std::string_view character = firstCharacter(left);
        left.remove_prefix(character.size());
        const auto known = font.characters.find(character);
        const std::vector<FontStroke> &strokes = known != font.characters.end() ? known->second : nothing;
        if (character != " " && strokes.empty())
            ++m_result.simplified["character that the font lacks as a blank"];
        for (const FontStroke &stroke : strokes) {
            const bool isNegative = stroke.isNegative != (polarity == Polarity::Negative);
            Line line;
            line.start = place({x + stroke.start.x * scale.x, stroke.start.y * scale.y});
            line.end = place({x + stroke.end.x * scale.x, stroke.end.y * scale.y});
            line.symbol = roundSymbol(strokeWidth, stroke.isSquare);
            add(line, isNegative ? Polarity::Negative : Polarity::Positive);
        }
        x += characterSize.x;
    }
}

// Narrow elements that a code takes for a text of `count` characters, quiet zones not counted.
double barcodeElements(std::string_view code, std::size_t count)
{
    const auto characters = static_cast<double>(count);
    if (code == "upc39")
        return 16.0 * (characters + 2.0);    // start and stop, a gap behind each
    return 11.0 * (characters + 2.0) + 13.0; // code 128: start, check and a longer stop
}

// "B x y barcode font polarity orientation e w h fasc cs bg astr astr_pos text": e is a constant, w the width
// of a narrow element, h the height.
void Reader::readBarcodeRecord(Fields &fields)
{
    const Point at = readPoint(fields, "a number for the barcode's position");
    const std::string code = lowerCase(fields.word());
    fields.word(); // font of the text below the bars
    const Polarity polarity = parsePolarity(fields);
    const Orientation orientation = parseOrientation(fields);
    fields.word(); // constant
    const Point size = readPoint(fields, "a number for the barcode's element width and height");
    for (int option = 0; option < 3; ++option)
        fields.word(); // full ASCII, checksum, inverted background
    const bool hasText = lowerCase(fields.word()) == "y";
    if (const std::string_view rest = fields.rest(); !rest.empty() && rest[0] != '\'')
        fields.word(); // where the additional text stands
    const std::string_view text = quotedText(fields);

    Pad place;
    place.at = at;
    place.angle = orientation.angle;
    place.mirror = orientation.mirror;
    const Transform map = placement(place);
    const double width = size.x * barcodeElements(code, text.size());
    const Point corners[4] = {map({0.0, 0.0}), map({width, 0.0}), map({width, size.y}), map({0.0, size.y})};
    Surface box;
    box.firstContour = static_cast<std::uint32_t>(m_result.features.contours.size());
    box.contourCount = 1;
    m_result.features.contours.addPolygon(corners, 4, false);
    add(box, polarity);
    ++m_result.simplified["barcode " + code + " as its box" + (hasText ? ", without its text" : "")];
}

// "S polarity dcode", then contours, then "SE"
void Reader::readSurfaceRecord(Fields &fields)
{
    m_surfacePolarity = parsePolarity(fields);
    m_surface.firstContour = static_cast<std::uint32_t>(m_result.features.contours.size());
    m_surface.contourCount = 0;
    m_hasIsland = false;
    m_isInSurface = true;
}

void Reader::readSurfaceLine(const TextLine &line)
{
    Fields fields(line.text, line.number, m_file);
    const std::string_view keyword = fields.word();
    if (keyword.empty() || keyword[0] == '#')
        return;
    ContourPool &contours = m_result.features.contours;
    const bool isEdge = keyword == "OS" || keyword == "OC" || keyword == "OE";
    if (isEdge != m_isInContour)
        fields.fail(m_isInContour ? "OS, OC or OE inside a contour" : "OB or SE between contours");
    if (keyword == "OS") {
        contours.lineTo(readPoint(fields, "a number for the end of the edge"));
    } else if (keyword == "OC") {
        const Point end = readPoint(fields, "a number for the end of the arc");
        const Point center = readPoint(fields, "a number for the centre of the arc");
        contours.arcTo(end, center, fields.letter('Y', 'N', "the arc's direction, Y (clockwise) or N"));
    } else if (keyword == "OB") {
        const Point start = readPoint(fields, "a number for the start of the contour");
        const bool isHole = fields.letter('H', 'I', "the contour's kind, I (island) or H (hole)");
        contours.begin(start, isHole);
        m_hasIsland = m_hasIsland || !isHole;
        m_isInContour = true;
    } else if (keyword == "OE") {
        contours.end();
        ++m_surface.contourCount;
        m_isInContour = false;
    } else if (keyword == "SE") {
        if (m_surface.contourCount > 0 && !m_hasIsland)
            fields.fail("an island in a surface that has holes");
        add(m_surface, m_surfacePolarity);
        m_isInSurface = false;
    } else {
        fields.fail("OB, OS, OC, OE or SE inside a surface");
    }
}

} // namespace

FeaturesFile readFeatures(LineReader &lines, const std::string &file, const FeaturesContext &context,
                          LengthUnit defaultUnit)
{
    return Reader(file, context, defaultUnit).read(lines);
}

FeaturesFile readFeatures(std::string_view text, const std::string &file, const FeaturesContext &context,
                          LengthUnit defaultUnit)
{
    LineReader lines(text);
    return readFeatures(lines, file, context, defaultUnit);
}

ContourPool readContours(std::string_view text, const std::string &file, LengthUnit defaultUnit)
{
    FeaturesContext context;
    context.symbolIndex = [](std::string_view, SymbolUnit) -> std::uint32_t { return 0; };
    context.font = [&file](std::string_view) -> const Font & {
        throw FormatError(file, 0, "surfaces, no texts, in a profile");
    };
    return std::move(readFeatures(text, file, context, defaultUnit).features.contours);
}

} // namespace cam
