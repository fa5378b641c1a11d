// One class that walks the text block by block: words between "*", commands between "%".
#include "cam/gerber/gerberreader.h"

#include "cam/base/error.h"
#include "cam/base/inputfile.h"
#include "cam/base/numbers.h"
#include "cam/gerber/apertureshape.h"
#include "cam/gerber/macro.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <tuple>

namespace cam {

namespace {

// Panels have a million; more copies than these can only be meant to fill the memory.
constexpr std::size_t mostObjects = 5'000'000;
constexpr int mostRepeats = 100'000;
// Of all shapes, when LM, LR and LS make others of them.
constexpr std::size_t mostEdges = 10'000'000;

// Copies are made many at a time, of a few bytes of the file.
constexpr std::size_t objectsPerReport = 0x10000;

// How far the two radii of an arc may differ by rounding: steps of the file's grid.
constexpr double mostUnevenSteps = 3.0;

// No board is larger; what is farther away is a damaged number.
constexpr double farthest = 100e9; // nanometres

enum class Mode : std::uint8_t { Unknown, Line, Clockwise, CounterClockwise };

// One of the two coordinate formats of FS.
struct Digits
{
    int whole = 0, decimals = 0;
};

struct ReadAperture
{
    enum Kind : std::uint8_t { Circle, Rectangle, Other, Block } kind = Other;
    double width = 0.0, height = 0.0; // nanometres; of a circle: the diameter in both
    bool hasHole = false;
    std::uint32_t shape = 0;
    std::vector<GerberObject> objects; // of a block, about its origin
};

// What LM, LR and LS make of apertures.
struct Placing
{
    bool mirrorX = false, mirrorY = false; // x to -x, y to -y
    double degrees = 0.0, scale = 1.0;

    bool isIdentity() const { return !mirrorX && !mirrorY && degrees == 0.0 && scale == 1.0; }
    Transform map() const
    {
        return Transform::scaling(mirrorX ? -scale : scale, mirrorY ? -scale : scale)
            .then(Transform::rotation(degrees));
    }
    auto key(std::uint32_t number) const { return std::make_tuple(number, mirrorX, mirrorY, degrees, scale); }
    using Key = std::tuple<std::uint32_t, bool, bool, double, double>;
};

class Reader
{
public:
    Reader(std::string_view text, const std::string &file, const std::function<void(double)> &report)
        : m_text(text), m_file(file), m_progress(report, text.size())
    {
    }

    GerberImage read();

private:
    // ---- text
    [[noreturn]] void fail(const std::string &expected) const { throw FormatError(m_file, m_line, expected); }
    [[noreturn]] void refuse(const std::string &what) const
    {
        fail("nothing of " + what + ", which is not supported");
    }
    bool skipComment();
    bool readBlock(std::string &block);
    void readCommands();

    // ---- words outside of "%"
    struct Word
    {
        char letter;
        std::string_view digits;
    };
    using Coordinates = std::array<std::optional<double>, 4>; // X, Y, I, J
    // Of a comment: none.
    std::vector<Word> wordsOf(std::string_view block);
    void takeBlock(std::string_view block);
    // Without a number: what stood in the block before.
    void takeOperation(std::optional<int> operation, const Coordinates &coordinates);
    void takeG(int code);
    void takeD(int code);
    void takeOperation(int code);
    double coordinate(std::string_view digits, char letter) const;

    // ---- commands
    void takeCommand(std::string_view command);
    void takeFormat(std::string_view text);
    void takeUnit(std::string_view text);
    void takeApertureDefinition(std::string_view text);
    ReadAperture definedAperture(std::string_view name, const std::vector<double> &sizes);
    void checkSizes(std::string_view name, const std::vector<double> &sizes, std::size_t least,
                    std::size_t most);
    void takePolarity(std::string_view text);
    void takeRepeat(std::string_view text);
    void takeBlockAperture(std::string_view text);
    void takeMirroring(std::string_view text);
    void takeOldCommand(std::string_view name, std::string_view text);
    void endRepeat();
    void checkScale(std::string_view text);
    double requireUnit() const;
    std::vector<double> numbers(std::string_view text, char separator) const;
    double number(std::string_view text, const char *what) const;
    int integer(std::string_view text, const char *what) const;

    // ---- painting
    void drawTo(Point end, Point offset);
    std::optional<Edge> edgeTo(Point end, Point offset);
    std::optional<Point> singleQuadrantCenter(Point end, Point offset) const;
    void stroke(const Edge &edge);
    void flash(Point at);
    void paint(std::uint32_t shape, GerberObjectKind kind, Point at, std::size_t line);
    void add(const GerberObject &object);
    void checkReach(const Box &box) const;
    std::uint32_t placedShape(std::uint32_t shape);
    std::uint32_t placedStroke(std::uint32_t stroke);
    const ReadAperture &currentAperture() const;
    void beginRegion();
    void endRegion();
    void beginContour(Point start);
    void endContour();
    void remark(GerberDoubt doubt) { m_image.remarks.push_back({doubt, m_line}); }

    std::string_view m_text;
    const std::string &m_file;
    ReadingProgress m_progress;
    std::size_t m_at = 0;
    std::size_t m_nextLine = 1;
    std::size_t m_line = 1; // where the current block starts
    bool m_isEnded = false;

    // FS and MO
    std::optional<Digits> m_x, m_y;
    bool m_omitsTrailing = false, m_omitsNothing = false;
    double m_unit = 0.0; // nanometres; 0 when not stated yet

    std::map<std::string, ApertureMacro, std::less<>> m_macros;
    std::map<int, ReadAperture> m_apertures;
    std::map<Placing::Key, std::uint32_t> m_placedShapes, m_placedStrokes; // by what they were made of

    // The graphics state.
    Point m_position;
    bool m_hasX = false, m_hasY = false;
    int m_aperture = 0; // 0: none chosen yet
    bool m_isDark = true;
    Placing m_placing;
    Mode m_mode = Mode::Unknown;
    int m_quadrants = 0; // G74: 1, G75: 4
    int m_lastOperation = 0;
    // Since the last G36 or G37 no mode has been stated.
    bool m_keepsModeBehindRegion = false, m_keepsModeInRegion = false;

    bool m_isInRegion = false;
    std::unique_ptr<ShapeBuilder> m_region;
    bool m_isInContour = false;
    Point m_contourStart;
    std::size_t m_regionLine = 0;

    // Of SR: where its objects start, and its copies.
    bool m_isRepeating = false;
    std::size_t m_repeatFirst = 0;
    int m_columns = 1, m_rows = 1;
    Point m_repeatStep;

    // Blocks (AB) that are being defined, the innermost last.
    struct OpenBlock
    {
        int code;
        std::vector<GerberObject> objects; // of what is around it, as long as it is open
    };
    std::vector<OpenBlock> m_blocks;

    GerberImage m_image;
};

// ---- text

GerberImage Reader::read()
{
    while (!m_isEnded) {
        m_progress.reach(m_at);
        while (m_at < m_text.size() && static_cast<unsigned char>(m_text[m_at]) <= ' ')
            m_nextLine += m_text[m_at++] == '\n' ? 1 : 0;
        m_line = m_nextLine;
        if (m_at == m_text.size())
            fail("M02 before the end of the file");
        if (m_text[m_at] == '%') {
            ++m_at;
            readCommands();
            continue;
        }
        if (skipComment())
            continue;
        std::string block;
        if (!readBlock(block))
            fail("\"*\" at the end of a block");
        takeBlock(block);
    }
    if (m_isInRegion)
        fail("G37 before the end of the file");
    if (!m_blocks.empty())
        fail("%AB*% before the end of the file");
    if (m_isRepeating)
        endRepeat();
    return std::move(m_image);
}

// A comment that ends on its line: some have a "%" in them.
bool Reader::skipComment()
{
    if (m_text.substr(m_at, 3) != "G04")
        return false;
    const std::size_t end = m_text.find_first_of("*\r\n", m_at);
    if (end == std::string_view::npos || m_text[end] != '*')
        return false;
    m_at = end + 1;
    return true;
}

// Up to the next "*", without line breaks; false when a "%" or the end of the file comes first.
bool Reader::readBlock(std::string &block)
{
    block.clear();
    for (; m_at < m_text.size(); ++m_at) {
        const char c = m_text[m_at];
        if (c == '*') {
            ++m_at;
            return true;
        }
        if (c == '%')
            return false;
        if (c == '\n')
            ++m_nextLine;
        else if (c != '\r')
            block += c;
    }
    return false;
}

// What stands between two "%".
void Reader::readCommands()
{
    std::vector<std::pair<std::string, std::size_t>> macro;
    std::string macroName;
    for (;;) {
        m_progress.reach(m_at);
        while (m_at < m_text.size() && static_cast<unsigned char>(m_text[m_at]) <= ' ')
            m_nextLine += m_text[m_at++] == '\n' ? 1 : 0;
        const std::size_t line = m_nextLine;
        if (m_at < m_text.size() && m_text[m_at] == '%') {
            ++m_at;
            break;
        }
        m_line = line;
        std::string block;
        if (!readBlock(block))
            fail("\"*\" and \"%\" at the end of a command");
        if (!macroName.empty())
            macro.emplace_back(std::move(block), line);
        else if (block.substr(0, 2) == "AM")
            macroName = block;
        else
            takeCommand(block);
    }
    if (!macroName.empty())
        m_macros.insert_or_assign(macroName.substr(2), ApertureMacro(macro, m_file));
}

// ---- words outside of "%"

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// "G01X12Y34D01": G codes first, then coordinates, then a D or M code.
std::vector<Reader::Word> Reader::wordsOf(std::string_view block)
{
    std::vector<Word> words;
    std::size_t at = 0;
    const auto skipBlanks = [&] {
        while (at < block.size() && (block[at] == ' ' || block[at] == '\t'))
            ++at;
    };
    for (skipBlanks(); at < block.size(); skipBlanks()) {
        const char letter = block[at];
        if (letter < 'A' || letter > 'Z')
            fail("a capital letter and digits at \"" + std::string(block.substr(at, 32)) + "\"");
        const std::size_t first = ++at;
        if (at < block.size() && (block[at] == '+' || block[at] == '-'))
            ++at;
        while (at < block.size() && isDigit(block[at]))
            ++at;
        words.push_back({letter, block.substr(first, at - first)});
        if (letter == 'G' && toInteger(words.back().digits) == 4) {
            const bool standsAlone = std::all_of(words.begin(), words.end() - 1,
                                                 [](const Word &word) { return word.letter == 'N'; });
            if (!standsAlone)
                fail("a comment (G04) in a block of its own");
            return {};
        }
        if (words.back().digits.empty())
            fail("digits behind \"" + std::string(1, letter) + "\"");
    }
    return words;
}

void Reader::takeBlock(std::string_view block)
{
    Coordinates coordinates;
    bool hasCoordinates = false;
    std::optional<int> operation, aperture;
    bool ends = false;
    for (const Word &word : wordsOf(block)) {
        const std::size_t which = std::string_view("XYIJ").find(word.letter);
        if (which != std::string_view::npos) {
            if (coordinates[which])
                fail("each coordinate once");
            coordinates[which] = coordinate(word.digits, word.letter);
            hasCoordinates = true;
            continue;
        }
        if (word.letter == 'N') // a block's number
            continue;
        const int code = integer(word.digits, "a code");
        if (word.letter == 'G')
            takeG(code);
        else if (word.letter == 'D') {
            std::optional<int> &number = code >= 1 && code <= 3 ? operation : aperture;
            if (number)
                fail("one operation and one aperture in a block");
            number = code;
        } else if (word.letter == 'M' && (code == 0 || code == 2))
            ends = true;
        else
            refuse("the code " + std::string(1, word.letter) + std::string(word.digits));
    }
    if (aperture)
        takeD(*aperture);
    if (hasCoordinates || operation)
        takeOperation(operation, coordinates);
    if (ends)
        m_isEnded = true;
}

void Reader::takeOperation(std::optional<int> operation, const Coordinates &coordinates)
{
    if (!operation) {
        // Older files leave out a D01 that stands in the block before.
        if (m_lastOperation != 1)
            fail("D01, D02 or D03 behind coordinates");
        operation = 1;
    }
    const Point before = m_position;
    if (coordinates[0]) {
        m_position.x = *coordinates[0];
        m_hasX = true;
    }
    if (coordinates[1]) {
        m_position.y = *coordinates[1];
        m_hasY = true;
    }
    // The position is the origin at first; moving there draws nothing.
    if (*operation != 2 && (!m_hasX || !m_hasY)) {
        remark(GerberDoubt::UnstatedPosition);
        m_hasX = m_hasY = true;
    }
    m_lastOperation = *operation;
    const Point end = m_position;
    switch (*operation) {
    case 1:
        m_position = before;
        drawTo(end, {coordinates[2].value_or(0.0), coordinates[3].value_or(0.0)});
        m_position = end;
        break;
    case 2:
        if (m_isInRegion)
            beginContour(end);
        break;
    default:
        flash(end);
        break;
    }
}

void Reader::takeG(int code)
{
    switch (code) {
    case 1:
    case 2:
    case 3:
        m_mode = code == 1 ? Mode::Line : code == 2 ? Mode::Clockwise : Mode::CounterClockwise;
        m_keepsModeBehindRegion = m_keepsModeInRegion = false;
        return;
    case 36:
        return beginRegion();
    case 37:
        return endRegion();
    case 54: // an aperture or a flash comes: of no meaning by itself
    case 55:
    case 90: // absolute coordinates, as FS says
        return;
    case 70:
        return takeUnit("IN");
    case 71:
        return takeUnit("MM");
    case 74:
        m_quadrants = 1;
        return;
    case 75:
        m_quadrants = 4;
        return;
    case 91:
        refuse("G91 (incremental coordinates)");
    default:
        refuse("the code G" + std::to_string(code));
    }
}

void Reader::takeD(int code)
{
    if (code < 10)
        fail("an aperture from D10 on, or an operation D01 to D03");
    if (!m_apertures.count(code))
        fail("the number of an aperture that is defined, not D" + std::to_string(code));
    m_aperture = code;
}

double Reader::coordinate(std::string_view digits, char letter) const
{
    const std::optional<Digits> &format = letter == 'X' || letter == 'I' ? m_x : m_y;
    if (!format)
        fail("the command FS before the first coordinate");
    const bool isNegative = digits[0] == '-';
    if (!isDigit(digits[0]))
        digits.remove_prefix(1);
    const auto all = static_cast<std::size_t>(format->whole) + static_cast<std::size_t>(format->decimals);
    const std::size_t significant = digits.size() - std::min(digits.find_first_not_of('0'), digits.size());
    if (digits.empty() || (m_omitsTrailing ? digits.size() : significant) > all)
        fail("a coordinate of at most " + std::to_string(all) + " digits");
    if (m_omitsNothing && significant > 0 && digits.size() < all)
        fail("a coordinate of " + std::to_string(all) +
             " digits, as FS says of no zeros that they are left out");
    double value = 0.0;
    for (const char digit : digits)
        value = value * 10.0 + (digit - '0');
    if (m_omitsTrailing) {
        for (std::size_t i = digits.size(); i < all; ++i)
            value *= 10.0;
    }
    const double nanometres = value * (requireUnit() / std::pow(10.0, format->decimals));
    if (nanometres > farthest)
        fail("a coordinate below 100 metres");
    return isNegative ? -nanometres : nanometres;
}

// ---- commands

double Reader::requireUnit() const
{
    if (m_unit == 0.0)
        fail("the unit (MO) before the first length");
    return m_unit;
}

double Reader::number(std::string_view text, const char *what) const
{
    if (!text.empty() && text[0] == '+')
        text.remove_prefix(1);
    const auto value = toNumber(text);
    if (!value)
        fail(std::string(what) + ", not \"" + std::string(text) + "\"");
    return *value;
}

int Reader::integer(std::string_view text, const char *what) const
{
    const auto value = toInteger(text);
    if (!value)
        fail(std::string(what) + ", not \"" + std::string(text) + "\"");
    return *value;
}

std::vector<double> Reader::numbers(std::string_view text, char separator) const
{
    std::vector<double> values;
    for (;;) {
        const std::size_t end = text.find(separator);
        std::string_view one = text.substr(0, end);
        while (!one.empty() && one.front() == ' ')
            one.remove_prefix(1);
        while (!one.empty() && one.back() == ' ')
            one.remove_suffix(1);
        values.push_back(number(one, "a number"));
        if (end == std::string_view::npos)
            return values;
        text.remove_prefix(end + 1);
    }
}

void Reader::takeCommand(std::string_view command)
{
    if (command.size() < 2)
        fail("a command of at least two letters");
    const std::string_view name = command.substr(0, 2), text = command.substr(2);
    if (name[0] == 'T') { // attributes: TF, TA, TO, TD
        if (name == "TF" || name == "TA" || name == "TO" || name == "TD")
            return;
    }
    if (m_isInRegion)
        fail("no command between G36 and G37 but attributes");
    if (name == "FS")
        return takeFormat(text);
    if (name == "MO")
        return takeUnit(text);
    if (name == "AD")
        return takeApertureDefinition(text);
    if (name == "LP")
        return takePolarity(text);
    if (name == "SR")
        return takeRepeat(text);
    if (name == "AB")
        return takeBlockAperture(text);
    if (name == "LM")
        return takeMirroring(text);
    if (name == "LR") {
        m_placing.degrees = number(text, "an angle in degrees behind LR");
        return;
    }
    if (name == "LS") {
        m_placing.scale = number(text, "a scale behind LS");
        if (!(m_placing.scale > 0.0))
            fail("a scale greater than 0 behind LS");
        return;
    }
    takeOldCommand(name, text);
}

// Commands of the first editions: those that say what holds anyway are passed over.
void Reader::takeOldCommand(std::string_view name, std::string_view text)
{
    const auto isOneOf = [text](std::initializer_list<std::string_view> harmless) {
        return std::find(harmless.begin(), harmless.end(), text) != harmless.end();
    };
    if (name == "IN" || name == "LN") // names of the image and of a layer
        return;
    if (name == "IC" && isOneOf({"AS"})) // characters are ASCII
        return;
    if ((name == "AS" && isOneOf({"AXBY"})) || (name == "IP" && isOneOf({"POS"})) ||
        (name == "IR" && isOneOf({"0"})) || (name == "MI" && isOneOf({"", "A0B0", "A0", "B0"})))
        return;
    if (name == "OF" || name == "SF" || name == "IO") {
        // "A1.0B1.0": scales of 1, offsets of 0.
        std::string numbersOf;
        for (const char c : text)
            numbersOf += c == 'A' || c == 'B' ? ' ' : c;
        const double neutral = name == "SF" ? 1.0 : 0.0;
        bool isNeutral = true;
        for (std::size_t at = 0; at < numbersOf.size();) {
            const std::size_t end = std::min(numbersOf.find(' ', at), numbersOf.size());
            if (end > at)
                isNeutral = isNeutral &&
                            number(std::string_view(numbersOf).substr(at, end - at), "a number") == neutral;
            at = end + 1;
        }
        if (isNeutral)
            return;
    }
    refuse("the command " + std::string(name) + std::string(text.substr(0, 32)));
}

// "LAX24Y24"; "AX24Y24" and "DAX24Y24" when no zeros are left out.
void Reader::takeFormat(std::string_view text)
{
    const std::string_view all = text;
    const auto take = [&text](char c) {
        if (text.empty() || text[0] != c)
            return false;
        text.remove_prefix(1);
        return true;
    };
    if (take('T'))
        m_omitsTrailing = true;
    else if (!take('L'))
        m_omitsNothing = take('D') || (!text.empty() && (text[0] == 'A' || text[0] == 'I'));
    if (take('I'))
        refuse("incremental coordinates (FS" + std::string(all) + ")");
    if (!take('A'))
        fail("L or T, and A, behind FS, not \"" + std::string(all) + "\"");
    const auto digits = [&](char letter) -> Digits {
        if (!take(letter) || text.size() < 2 || !isDigit(text[0]) || !isDigit(text[1]))
            fail("X and Y with two digits each behind FSLA, not \"" + std::string(all) + "\"");
        const Digits result = {text[0] - '0', text[1] - '0'};
        text.remove_prefix(2);
        if (result.whole + result.decimals == 0)
            fail("a format of at least one digit");
        return result;
    };
    // Numbers of digits of N, G, D and M codes: they matter to nobody.
    const auto skipCodes = [&] {
        while (text.size() >= 2 && std::string_view("NGDM").find(text[0]) != std::string_view::npos &&
               isDigit(text[1]))
            text.remove_prefix(2);
    };
    skipCodes();
    const Digits x = digits('X'), y = digits('Y');
    skipCodes();
    if (!text.empty())
        fail("the end of FS at \"" + std::string(text) + "\"");
    if (m_x && (m_x->whole != x.whole || m_x->decimals != x.decimals || m_y->whole != y.whole ||
                m_y->decimals != y.decimals))
        fail("one format in the whole file");
    m_x = x;
    m_y = y;
}

void Reader::takeUnit(std::string_view text)
{
    double unit = 0.0;
    if (text == "MM")
        unit = 1e6;
    else if (text == "IN")
        unit = 25.4e6;
    else
        fail("MM or IN behind MO, not \"" + std::string(text) + "\"");
    if (m_unit != 0.0 && m_unit != unit)
        fail("one unit in the whole file");
    m_unit = unit;
}

// "D10C,0.5X0.2"
void Reader::takeApertureDefinition(std::string_view text)
{
    if (text.empty() || text[0] != 'D')
        fail("D and a number behind AD");
    std::size_t at = 1;
    while (at < text.size() && isDigit(text[at]))
        ++at;
    const int code = integer(text.substr(1, at - 1), "the number of an aperture");
    if (code < 10)
        fail("an aperture from D10 on");
    const std::size_t comma = std::min(text.find(',', at), text.size());
    const std::string_view name = text.substr(at, comma - at);
    std::vector<double> sizes;
    if (comma + 1 < text.size())
        sizes = numbers(text.substr(comma + 1), 'X');

    const ReadAperture aperture = definedAperture(name, sizes);
    const Box box = m_image.shapes[aperture.shape].extent;
    GerberAperture &told = m_image.apertures[code];
    told.shape = name;
    if (!box.isEmpty()) {
        told.width = box.high.x - box.low.x;
        told.height = box.high.y - box.low.y;
    }
    if (!m_apertures.emplace(code, aperture).second)
        fail("each aperture once, not D" + std::to_string(code) + " again");
}

// `name` is one of the format's own shapes or of a macro; `sizes` are in the file's unit.
ReadAperture Reader::definedAperture(std::string_view name, const std::vector<double> &sizes)
{
    ReadAperture aperture;
    ShapeBuilder shape(m_image);
    const double unit = requireUnit();
    // The round hole, which is the last size.
    const auto hole = [&](std::size_t index) {
        if (sizes.size() <= index)
            return;
        aperture.hasHole = sizes[index] > 0.0;
        shape.beginPart(false);
        shape.circle({}, sizes[index] * unit);
    };
    if (name == "C") {
        checkSizes(name, sizes, 1, 2);
        aperture.kind = ReadAperture::Circle;
        aperture.width = aperture.height = sizes[0] * unit;
        shape.beginPart(true);
        shape.circle({}, aperture.width);
        hole(1);
    } else if (name == "R" || name == "O") {
        checkSizes(name, sizes, 2, 3);
        aperture.kind = name == "R" ? ReadAperture::Rectangle : ReadAperture::Other;
        aperture.width = sizes[0] * unit;
        aperture.height = sizes[1] * unit;
        shape.beginPart(true);
        if (name == "R")
            shape.rectangle({}, aperture.width, aperture.height);
        else
            shape.obround(aperture.width, aperture.height);
        hole(2);
    } else if (name == "P") {
        checkSizes(name, sizes, 2, 4);
        if (sizes[1] < 3.0 || sizes[1] > 12.0 || sizes[1] != std::floor(sizes[1]))
            fail("a polygon of 3 to 12 corners");
        shape.beginPart(true);
        shape.regularPolygon({}, sizes[0] * unit, static_cast<int>(sizes[1]),
                             sizes.size() > 2 ? sizes[2] : 0.0);
        hole(3);
    } else {
        const auto macro = m_macros.find(name);
        if (macro == m_macros.end())
            fail("C, R, O, P or the name of a macro that is defined, not \"" + std::string(name) + "\"");
        for (const MacroPrimitive &primitive : macro->second.evaluate(sizes))
            addPrimitive(shape, primitive, unit, m_file);
    }
    aperture.shape = shape.finish();
    checkReach(m_image.shapes[aperture.shape].extent);
    return aperture;
}

void Reader::checkSizes(std::string_view name, const std::vector<double> &sizes, std::size_t least,
                        std::size_t most)
{
    if (sizes.size() < least || sizes.size() > most)
        fail(std::to_string(least) + " to " + std::to_string(most) + " sizes of the aperture " +
             std::string(name));
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        if (sizes[i] < 0.0 && !(name == "P" && i == 2))
            fail("sizes of apertures that are not negative");
        if (sizes[i] * requireUnit() > farthest)
            fail("sizes of apertures below 100 metres");
    }
}

void Reader::takePolarity(std::string_view text)
{
    if (text != "D" && text != "C")
        fail("D or C behind LP, not \"" + std::string(text) + "\"");
    m_isDark = text == "D";
}

void Reader::takeMirroring(std::string_view text)
{
    if (text != "N" && text != "X" && text != "Y" && text != "XY")
        fail("N, X, Y or XY behind LM, not \"" + std::string(text) + "\"");
    m_placing.mirrorX = text.find('X') != std::string_view::npos;
    m_placing.mirrorY = text.find('Y') != std::string_view::npos;
}

// "X3Y2I5.0J4.0"; nothing, or one copy, ends the repeat before it.
void Reader::takeRepeat(std::string_view text)
{
    if (m_isRepeating)
        endRepeat();
    if (text.empty())
        return;
    std::map<char, std::string_view> values;
    while (!text.empty()) {
        const char letter = text[0];
        text.remove_prefix(1);
        const std::size_t end = std::min(text.find_first_of("XYIJ"), text.size());
        if (std::string_view("XYIJ").find(letter) == std::string_view::npos ||
            !values.emplace(letter, text.substr(0, end)).second)
            fail("X, Y, I and J behind SR");
        text.remove_prefix(end);
    }
    const auto count = [&](char letter) {
        if (!values.count(letter))
            return 1;
        const int value = integer(values[letter], "a number of copies");
        if (value < 1 || value > mostRepeats)
            fail("a number of copies from 1 to " + std::to_string(mostRepeats));
        return value;
    };
    const auto step = [&](char letter) {
        return values.count(letter) ? number(values[letter], "a distance of copies") * requireUnit() : 0.0;
    };
    m_columns = count('X');
    m_rows = count('Y');
    m_repeatStep = {step('I'), step('J')};
    if (m_repeatStep.x < 0.0 || m_repeatStep.y < 0.0)
        fail("distances of copies that are not negative");
    if (m_columns == 1 && m_rows == 1)
        return;
    m_isRepeating = true;
    m_repeatFirst = m_image.objects.size();
}

// Columns from left to right, in each the copies from below upwards.
void Reader::endRepeat()
{
    m_isRepeating = false;
    const std::size_t end = m_image.objects.size();
    for (int column = 0; column < m_columns; ++column) {
        for (int row = 0; row < m_rows; ++row) {
            if (column == 0 && row == 0)
                continue;
            for (std::size_t i = m_repeatFirst; i < end; ++i) {
                GerberObject copy = m_image.objects[i];
                copy.at = copy.at + Point{m_repeatStep.x * column, m_repeatStep.y * row};
                add(copy);
            }
        }
    }
}

// "D12" begins a block, nothing ends it.
void Reader::takeBlockAperture(std::string_view text)
{
    if (m_isRepeating)
        fail("no AB inside of SR");
    if (!text.empty()) {
        if (text[0] != 'D')
            fail("D and a number behind AB");
        const int code = integer(text.substr(1), "the number of an aperture");
        if (code < 10 || m_apertures.count(code))
            fail("the number of a new aperture from D10 on behind AB");
        constexpr std::size_t deepest = 50;
        if (m_blocks.size() == deepest)
            fail("at most 50 blocks inside each other");
        m_blocks.push_back({code, std::move(m_image.objects)});
        m_image.objects.clear();
        return;
    }
    if (m_blocks.empty())
        fail("a block that %AB*% ends");
    ReadAperture aperture;
    aperture.kind = ReadAperture::Block;
    aperture.objects = std::move(m_image.objects);
    m_image.objects = std::move(m_blocks.back().objects);
    const int code = m_blocks.back().code;
    m_blocks.pop_back();
    if (!m_apertures.emplace(code, std::move(aperture)).second)
        fail("each aperture once, not D" + std::to_string(code) + " again");
}

// ---- painting

void Reader::add(const GerberObject &object)
{
    if (m_image.objects.size() >= mostObjects)
        fail("at most " + std::to_string(mostObjects) + " objects");
    checkReach({object.at, object.at});
    m_image.objects.push_back(object);
    if (m_image.objects.size() % objectsPerReport == 0)
        m_progress.repeat();
}

void Reader::paint(std::uint32_t shape, GerberObjectKind kind, Point at, std::size_t line)
{
    GerberObject object;
    object.shape = shape;
    object.kind = kind;
    object.dark = m_isDark;
    object.at = at;
    if (kind != GerberObjectKind::Region)
        object.aperture = m_aperture;
    if (kind == GerberObjectKind::Stroke)
        object.stroke = static_cast<std::uint32_t>(m_image.strokes.size() - 1);
    object.line = line;
    add(object);
}

const ReadAperture &Reader::currentAperture() const
{
    const auto found = m_apertures.find(m_aperture);
    if (found == m_apertures.end())
        fail("an aperture (D10 or higher) before the first D01 or D03");
    return found->second;
}

std::uint32_t Reader::placedShape(std::uint32_t original)
{
    if (m_placing.isIdentity())
        return original;
    const auto key = m_placing.key(original);
    const auto known = m_placedShapes.find(key);
    if (known != m_placedShapes.end())
        return known->second;
    if (m_image.contours.edgeCount() > mostEdges)
        fail("at most " + std::to_string(mostEdges) + " edges");
    const GerberShape copied = m_image.shapes[original];
    ShapeBuilder shape(m_image);
    shape.add(copied, m_placing.map());
    const std::uint32_t number = shape.finish();
    checkReach(m_image.shapes[number].extent);
    m_placedShapes.emplace(key, number);
    return number;
}

// Of a block's stroke.
std::uint32_t Reader::placedStroke(std::uint32_t original)
{
    if (m_placing.isIdentity())
        return original;
    const auto number = static_cast<std::uint32_t>(m_image.strokes.size());
    const auto [known, isNew] = m_placedStrokes.emplace(m_placing.key(original), number);
    if (!isNew)
        return known->second;
    const Transform map = m_placing.map();
    GerberStroke stroke = m_image.strokes[original];
    stroke.from = map(stroke.from);
    stroke.edge.end = map(stroke.edge.end);
    stroke.edge.center = map(stroke.edge.center);
    if (stroke.edge.kind != EdgeKind::Line && map.turnsOver())
        stroke.edge.kind = stroke.edge.kind == EdgeKind::ArcClockwise ? EdgeKind::ArcCounterClockwise
                                                                      : EdgeKind::ArcClockwise;
    stroke.width *= m_placing.scale;
    m_image.strokes.push_back(stroke);
    return number;
}

// Scales within scales, steps and macros may make of small numbers what no program can count with.
void Reader::checkReach(const Box &box) const
{
    if (!box.isEmpty() && !(box.low.x >= -farthest && box.low.y >= -farthest && box.high.x <= farthest &&
                            box.high.y <= farthest))
        fail("shapes and places below 100 metres");
}

void Reader::flash(Point at)
{
    if (m_isInRegion)
        fail("no D03 between G36 and G37");
    const ReadAperture &aperture = currentAperture();
    if (aperture.kind != ReadAperture::Block)
        return paint(placedShape(aperture.shape), GerberObjectKind::Flash, at, m_line);
    const Transform map = m_placing.isIdentity() ? Transform() : m_placing.map();
    for (const GerberObject &part : aperture.objects) {
        GerberObject object = part;
        object.shape = placedShape(part.shape);
        if (part.kind == GerberObjectKind::Stroke)
            object.stroke = placedStroke(part.stroke);
        object.at = map(part.at) + at;
        object.dark = part.dark == m_isDark;
        add(object);
    }
}

// G74: an arc of at most a quarter; the offsets have no sign. Nothing for an arc that is a straight line.
std::optional<Point> Reader::singleQuadrantCenter(Point end, Point offset) const
{
    if (offset.x < 0.0 || offset.y < 0.0)
        fail("offsets I and J without a sign under G74");
    const bool clockwise = m_mode == Mode::Clockwise;
    const double slack = mostUnevenSteps * m_unit / std::pow(10.0, m_x->decimals);
    std::optional<Point> best;
    double bestDifference = 0.0;
    for (const double x : {offset.x, -offset.x}) {
        for (const double y : {offset.y, -offset.y}) {
            const Point center = m_position + Point{x, y};
            const Point from = m_position - center, to = end - center;
            const double turn = clockwise ? -cross(from, to) : cross(from, to);
            const double radius = std::max(length(from), slack);
            // Rounded numbers make a quarter a little more than one. What turns the other way, however
            // little, is no short arc but nearly a circle.
            if (turn <= 0.0 || dot(from, to) < -slack * radius)
                continue;
            const double difference = std::fabs(length(from) - length(to));
            if (difference <= slack && (!best || difference < bestDifference)) {
                best = center;
                bestDifference = difference;
            }
        }
    }
    // So short that rounding has taken its turn away.
    if (!best && distance(m_position, end) <= slack)
        return std::nullopt;
    if (!best)
        fail("an arc of at most a quarter under G74");
    return best;
}

// Nothing for an arc without length.
std::optional<Edge> Reader::edgeTo(Point end, Point offset)
{
    if (m_mode == Mode::Unknown) {
        if (offset != Point{})
            fail("G02 or G03 before the first I or J");
        remark(GerberDoubt::UnstatedMode);
        m_mode = Mode::Line;
    }
    if (m_isInRegion ? m_keepsModeInRegion : m_keepsModeBehindRegion) {
        remark(m_isInRegion ? GerberDoubt::KeptModeInRegion : GerberDoubt::KeptModeBehindRegion);
        m_keepsModeInRegion = m_keepsModeBehindRegion = false;
    }
    if (m_mode == Mode::Line)
        return Edge{end, {}, EdgeKind::Line};
    if (m_quadrants == 0)
        fail("G74 or G75 before the first arc");
    const EdgeKind kind = m_mode == Mode::Clockwise ? EdgeKind::ArcClockwise : EdgeKind::ArcCounterClockwise;
    if (m_position == end && (m_quadrants == 1 || offset == Point{}))
        return std::nullopt;
    Point center = m_position + offset;
    if (m_quadrants == 1) {
        const std::optional<Point> found = singleQuadrantCenter(end, offset);
        if (!found)
            return Edge{end, {}, EdgeKind::Line};
        center = *found;
    }
    const double start = distance(m_position, center), stop = distance(end, center);
    if (!(start > 0.0) || !(stop > 0.0))
        fail("an arc about a centre that is none of its ends");
    if (std::fabs(start - stop) > mostUnevenSteps * m_unit / std::pow(10.0, m_x->decimals))
        remark(GerberDoubt::UnevenArc);
    return Edge{end, center, kind};
}

void Reader::drawTo(Point end, Point offset)
{
    if (m_isInRegion && !m_isInContour)
        beginContour(m_position);
    const std::optional<Edge> edge = edgeTo(end, offset);
    if (!m_isInRegion)
        return stroke(edge.value_or(Edge{end, {}, EdgeKind::Line}));
    if (!edge)
        return;
    if (edge->kind == EdgeKind::Line)
        m_region->contours().lineTo(edge->end);
    else
        m_region->contours().arcTo(edge->end, edge->center, edge->kind == EdgeKind::ArcClockwise);
}

void Reader::stroke(const Edge &edge)
{
    const ReadAperture &aperture = currentAperture();
    if (aperture.hasHole || aperture.kind == ReadAperture::Other || aperture.kind == ReadAperture::Block)
        refuse("a stroke of an aperture other than a circle or a rectangle without a hole");
    ShapeBuilder shape(m_image);
    shape.beginPart(true);
    if (aperture.kind == ReadAperture::Circle) {
        shape.stroke(m_position, edge, aperture.width * m_placing.scale);
    } else {
        if (edge.kind != EdgeKind::Line)
            refuse("an arc drawn with a rectangle");
        if (std::fmod(m_placing.degrees, 180.0) != 0.0)
            refuse("a line drawn with a turned rectangle");
        if (aperture.width > 0.0 && aperture.height > 0.0)
            shape.rectangleStroke(m_position, edge.end, aperture.width * m_placing.scale,
                                  aperture.height * m_placing.scale);
    }
    m_image.strokes.push_back(
        {m_position, edge, std::min(aperture.width, aperture.height) * m_placing.scale});
    paint(shape.finish(), GerberObjectKind::Stroke, {}, m_line);
}

void Reader::beginRegion()
{
    if (m_isInRegion)
        fail("G37 before another G36");
    m_isInRegion = true;
    m_isInContour = false;
    m_regionLine = m_line;
    m_region = std::make_unique<ShapeBuilder>(m_image);
    m_keepsModeInRegion = true;
}

void Reader::endRegion()
{
    if (!m_isInRegion)
        fail("G36 before G37");
    endContour();
    m_isInRegion = false;
    const std::uint32_t shape = m_region->finish();
    m_region.reset();
    if (m_image.shapes[shape].partCount > 0)
        paint(shape, GerberObjectKind::Region, {}, m_regionLine);
    m_keepsModeBehindRegion = true;
}

void Reader::beginContour(Point start)
{
    endContour();
    m_region->beginPart(true);
    m_region->contours().begin(start, false);
    m_contourStart = start;
    m_isInContour = true;
}

void Reader::endContour()
{
    if (!m_isInContour)
        return;
    m_isInContour = false;
    ContourPool &contours = m_region->contours();
    const ContourView contour = contours[contours.size() - 1];
    if (contour.edgeCount > 0 && contour.edges[contour.edgeCount - 1].end != m_contourStart)
        remark(GerberDoubt::OpenContour);
    contours.end();
}

} // namespace

GerberImage readGerber(std::string_view text, const std::string &file,
                       const std::function<void(double)> &report)
{
    GerberImage image = Reader(text, file, report).read();
    report(1.0);
    return image;
}

GerberImage readGerberFile(const std::filesystem::path &file, const std::function<void(double)> &report)
{
    const std::string text = readWholeFile(file, [&report](double share) { report(wholeFileShare * share); });
    return readGerber(text, file.u8string(),
                      [&report](double share) { report(wholeFileShare + (1.0 - wholeFileShare) * share); });
}

} // namespace cam
