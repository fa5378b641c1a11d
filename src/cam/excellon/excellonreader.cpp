// One class that walks the text line by line: the header up to "%" or M95, then the work.
#include "cam/excellon/excellonreader.h"

#include "cam/base/error.h"
#include "cam/base/inputfile.h"
#include "cam/base/numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>

namespace cam {

namespace {

constexpr std::size_t mostFeatures = 5'000'000;
constexpr int mostRepeats = 100'000;
constexpr std::size_t mostDigits = 15; // that a double holds exactly

// How far the ends of an arc may miss their circle by rounding: steps of the file's grid.
constexpr double mostUnevenSteps = 3.0;

// No board is larger; what is farther away is a damaged number.
constexpr double farthest = 100e9; // nanometres

constexpr double inch = 25.4e6, millimetre = 1e6; // nanometres

// Which zeros a number without a decimal point keeps.
enum class Zeros : std::uint8_t { Leading, Trailing };

// Digits before and behind the decimal point that is left out.
struct Digits
{
    int whole = 0, decimals = 0;
};

struct Word
{
    char letter = ' ';
    std::string_view value;
};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

std::string_view trimmed(std::string_view text)
{
    const auto isBlank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = std::min(text.find(separator), text.size());
        parts.push_back(trimmed(text.substr(0, end)));
        if (end == text.size())
            return parts;
        text.remove_prefix(end + 1);
    }
}

// "4:4", "3:3": nothing for anything else, such as "-:-".
std::optional<Digits> digitsOf(std::string_view text)
{
    const std::vector<std::string_view> parts = split(text, ':');
    if (parts.size() != 2)
        return std::nullopt;
    const std::optional<int> whole = toInteger(parts[0]), decimals = toInteger(parts[1]);
    if (!whole || !decimals || *whole < 1 || *decimals < 0 || *whole + *decimals > 12)
        return std::nullopt;
    return Digits{*whole, *decimals};
}

// "000.000" stands for 3 and 3.
std::optional<Digits> patternOf(std::string_view text)
{
    const std::size_t point = text.find('.');
    if (point == std::string_view::npos || point == 0 || text.size() > 13 ||
        text.find_first_not_of("0.") != std::string_view::npos ||
        text.find('.', point + 1) != std::string_view::npos)
        return std::nullopt;
    return Digits{static_cast<int>(point), static_cast<int>(text.size() - point - 1)};
}

// Settings of the machine that move no hole.
bool isMachineSetting(std::string_view command)
{
    const std::string_view name = command.substr(0, command.find(','));
    constexpr std::array<std::string_view, 9> names{"ATC", "DETECT", "TCST", "AFS", "SBK",
                                                    "SG",  "OSTOP",  "FSB",  "HPCK"};
    return std::find(names.begin(), names.end(), name) != names.end();
}

class Reader
{
public:
    Reader(std::string_view text, const std::string &file, const std::function<void(double)> &report)
        : m_text(text), m_file(file), m_progress(report, text.size())
    {
    }

    DrillImage read();

private:
    [[noreturn]] void fail(const std::string &expected) const { throw FormatError(m_file, m_line, expected); }
    [[noreturn]] void refuse(const std::string &what) const
    {
        fail("nothing of " + what + ", which is not supported");
    }
    bool nextLine(std::string_view &line);
    void takeLine(std::string_view line);
    void takeComment(std::string_view text);

    // ---- header
    bool takeSetting(std::string_view line);
    void takeUnit(double unit, const std::vector<std::string_view> &options);
    void takeKnownUnit(double unit);
    void takeIncrements(std::string_view line);

    // ---- work
    std::vector<Word> wordsOf(std::string_view line) const;
    void takeWords(std::string_view line);
    void takeOrigin(const std::vector<Word> &words);
    void takeG(int code);
    void takeM(int code);
    void takeTool(const std::vector<Word> &words);
    void drill(const std::vector<Word> &words);
    void drillSlot(const std::vector<Word> &words, std::size_t g85);
    void repeat(const std::vector<Word> &words);
    void rout(const std::vector<Word> &words);
    Edge arcTo(Point end, std::optional<double> radius, std::optional<Point> offset) const;
    std::optional<double> find(const std::vector<Word> &words, char letter);
    // Where X and Y of `words` lead from `from`; a coordinate that is not given stays.
    Point placeOf(const std::vector<Word> &words, Point from);
    void hit(Point at);
    void addWork(DrillMove move);
    std::uint32_t requireTool() const;

    // ---- numbers
    double length(std::string_view text);
    double requireUnit() const;
    Digits digits() const;
    double gridStep() const { return requireUnit() / std::pow(10.0, digits().decimals); }
    int integer(std::string_view text, const char *what) const;
    void addAssumptions();

    std::string_view m_text;
    const std::string &m_file;
    ReadingProgress m_progress;
    std::size_t m_at = 0;
    std::size_t m_line = 0;
    bool m_isHeader = false;
    bool m_isEnded = false;

    double m_unit = 0.0; // nanometres; 0 while it is not stated
    // As a command states it; as a comment does, where no command does.
    std::optional<Digits> m_digits, m_commentedDigits;
    std::optional<Zeros> m_zeros, m_commentedZeros;
    bool m_assumesDigits = false, m_assumesZeros = false; // it has mattered

    std::map<int, std::uint32_t> m_toolIndex; // into the image's tools
    Plating m_plating = Plating::Unknown;     // of the tools that follow
    int m_tool = 0;                           // 0: none

    enum class Mode : std::uint8_t { Drill, Move, Line, Clockwise, CounterClockwise } m_mode = Mode::Drill;
    bool m_isIncremental = false;
    bool m_isDown = false;
    Point m_position;
    bool m_hasPosition = false; // something has been drilled, so that it can be repeated

    DrillImage m_image;
};

// ---- lines

DrillImage Reader::read()
{
    std::string_view line;
    while (!m_isEnded && nextLine(line))
        takeLine(line);
    if (!m_isEnded)
        fail("M30 before the end of the file");
    if (m_isDown)
        fail("M16 or M17 before the end of the work");
    addAssumptions();
    return std::move(m_image);
}

// Lines end with LF, CR and LF, or CR.
bool Reader::nextLine(std::string_view &line)
{
    if (m_at >= m_text.size())
        return false;
    m_progress.reach(m_at);
    ++m_line;
    const std::size_t end = std::min(m_text.find_first_of("\r\n", m_at), m_text.size());
    line = trimmed(m_text.substr(m_at, end - m_at));
    m_at = end + 1;
    if (end + 1 < m_text.size() && m_text[end] == '\r' && m_text[end + 1] == '\n')
        ++m_at;
    return true;
}

void Reader::takeLine(std::string_view line)
{
    const std::size_t semicolon = line.find(';');
    if (semicolon != std::string_view::npos) {
        takeComment(trimmed(line.substr(semicolon + 1)));
        line = trimmed(line.substr(0, semicolon));
    }
    if (line.empty() || (line.front() == '(' && line.back() == ')'))
        return;
    if (line == "M48") {
        m_isHeader = true;
    } else if (line == "%" || line == "M95") {
        m_isHeader = false;
    } else if (startsWith(line, "M47")) { // a text for the operator
        return;
    } else if (!takeSetting(line)) {
        takeWords(line);
    }
}

// ";FILE_FORMAT=4:4", ";TYPE=PLATED", "; FORMAT={3:3/ absolute / metric / suppress leading zeros}",
// "; #@! TA.AperFunction,Plated,PTH,ViaDrill"; all others say nothing of holes.
void Reader::takeComment(std::string_view text)
{
    if (startsWith(text, "FILE_FORMAT=")) {
        const std::optional<Digits> found = digitsOf(text.substr(12));
        if (!found)
            fail("two numbers of digits behind FILE_FORMAT, such as 4:4");
        m_commentedDigits = found;
    } else if (startsWith(text, "TYPE=PLATED")) {
        m_plating = Plating::Plated;
    } else if (startsWith(text, "TYPE=NON_PLATED")) {
        m_plating = Plating::NonPlated;
    } else if (startsWith(text, "#@! TA.AperFunction,")) {
        m_plating = text.find(",Plated,") != std::string_view::npos      ? Plating::Plated
                    : text.find(",NonPlated,") != std::string_view::npos ? Plating::NonPlated
                                                                         : Plating::Unknown;
    } else if (startsWith(text, "FORMAT={") && text.back() == '}') {
        const std::vector<std::string_view> parts = split(text.substr(8, text.size() - 9), '/');
        m_commentedDigits = digitsOf(parts[0]);
        for (const std::string_view part : parts) {
            if (part == "suppress leading zeros" || part == "keep zeros")
                m_commentedZeros = Zeros::Trailing;
            else if (part == "suppress trailing zeros")
                m_commentedZeros = Zeros::Leading;
        }
    }
}

// ---- header

bool Reader::takeSetting(std::string_view line)
{
    const std::vector<std::string_view> parts = split(line, ',');
    if (parts[0] == "METRIC" || parts[0] == "INCH")
        takeUnit(parts[0] == "METRIC" ? millimetre : inch, parts);
    else if (parts[0] == "M71" || parts[0] == "M72")
        takeUnit(parts[0] == "M71" ? millimetre : inch, parts);
    else if (parts[0] == "ICI")
        takeIncrements(line);
    else if (parts[0] == "FMAT") {
        if (line != "FMAT,2")
            fail("format 2 of the commands (FMAT,2), not \"" + std::string(line) + "\"");
    } else if (parts[0] == "VER") {
        if (line != "VER,1") // another one turns the axes
            fail("version 1 of the axes (VER,1), not \"" + std::string(line) + "\"");
    } else
        return isMachineSetting(line);
    return true;
}

void Reader::takeKnownUnit(double unit)
{
    if (m_unit != 0.0 && m_unit != unit)
        fail("one unit in the whole file");
    m_unit = unit;
}

// "METRIC,LZ,000.000"
void Reader::takeUnit(double unit, const std::vector<std::string_view> &options)
{
    takeKnownUnit(unit);
    for (std::size_t i = 1; i < options.size(); ++i) {
        const std::optional<Digits> pattern = patternOf(options[i]);
        if (options[i] == "LZ")
            m_zeros = Zeros::Leading;
        else if (options[i] == "TZ")
            m_zeros = Zeros::Trailing;
        else if (pattern)
            m_digits = pattern;
        else
            fail("LZ, TZ or a format such as 000.000 behind the unit, not \"" + std::string(options[i]) +
                 "\"");
    }
}

void Reader::takeIncrements(std::string_view line)
{
    if (line != "ICI" && line != "ICI,ON" && line != "ICI,OFF")
        fail("ON or OFF behind ICI");
    m_isIncremental = line != "ICI,OFF";
}

// ---- work

std::vector<Word> Reader::wordsOf(std::string_view line) const
{
    std::vector<Word> words;
    std::size_t at = 0;
    while (at < line.size()) {
        if (line[at] == ' ' || line[at] == '\t') {
            ++at;
            continue;
        }
        const char letter = line[at];
        if (letter < 'A' || letter > 'Z')
            fail("a capital letter and a number at \"" + std::string(line.substr(at, 32)) + "\"");
        const std::size_t first = ++at;
        while (at < line.size() && (isDigit(line[at]) || line[at] == '.' ||
                                    (at == first && (line[at] == '+' || line[at] == '-'))))
            ++at;
        words.push_back({letter, line.substr(first, at - first)});
        if (words.back().value.find_first_of("0123456789") == std::string_view::npos)
            fail("a number behind \"" + std::string(1, letter) + "\" in \"" +
                 std::string(line.substr(0, 64)) + "\"");
    }
    return words;
}

void Reader::takeWords(std::string_view line)
{
    std::vector<Word> words = wordsOf(line);
    words.erase(std::remove_if(words.begin(), words.end(),
                               [](const Word &word) { return word.letter == 'N'; }), // a line's number
                words.end());
    if (words.empty())
        return;
    if (words[0].letter == 'T')
        return takeTool(words);
    if (m_isHeader && words[0].letter != 'G' && words[0].letter != 'M')
        fail("a setting of the header, not \"" + std::string(line.substr(0, 64)) + "\"");
    if (words[0].letter == 'R')
        return repeat(words);
    if (words[0].letter == 'G' && toInteger(words[0].value) == 93)
        return takeOrigin(words);
    std::size_t g85 = words.size();
    bool hasPlace = false;
    for (std::size_t i = 0; i < words.size() && !m_isEnded; ++i) {
        const Word &word = words[i];
        if (word.letter == 'G' && integer(word.value, "a code") == 85) {
            if (g85 < words.size())
                fail("one G85 of a slot");
            g85 = i;
        } else if (word.letter == 'G') {
            if (hasPlace)
                fail("G codes before the coordinates");
            takeG(integer(word.value, "a code"));
        } else if (word.letter == 'M') {
            if (i > 0)
                fail("an M code on a line of its own");
            takeM(integer(word.value, "a code"));
            if (!m_isEnded && words.size() > 1)
                fail("an M code on a line of its own");
        } else if (std::string_view("XYAIJ").find(word.letter) != std::string_view::npos) {
            hasPlace = true;
        } else if (std::string_view("FSBHZ").find(word.letter) == std::string_view::npos) { // feeds, depths
            refuse("the code " + std::string(1, word.letter) + std::string(word.value));
        }
    }
    if (m_isEnded || !hasPlace) {
        if (g85 < words.size())
            fail("the ends of the slot before and behind G85");
        return;
    }
    if (m_isHeader)
        fail("\"%\" or M95 at the end of the header before the first coordinate");
    if (g85 < words.size())
        drillSlot(words, g85);
    else if (m_mode == Mode::Drill)
        drill(words);
    else
        rout(words);
}

// "G93X0Y0" leaves the origin where it is.
void Reader::takeOrigin(const std::vector<Word> &words)
{
    for (std::size_t i = 1; i < words.size(); ++i) {
        const bool isPlace = words[i].letter == 'X' || words[i].letter == 'Y';
        if (!isPlace || words[i].value.find_first_of("123456789") != std::string_view::npos)
            refuse("G93 (another origin)");
    }
    if (words.size() == 1)
        refuse("G93 (another origin)");
}

void Reader::takeG(int code)
{
    switch (code) {
    case 0:
        if (m_isDown)
            fail("M16 or M17 before a move (G00)");
        m_mode = Mode::Move;
        return;
    case 1:
        m_mode = Mode::Line;
        return;
    case 2:
        m_mode = Mode::Clockwise;
        return;
    case 3:
        m_mode = Mode::CounterClockwise;
        return;
    case 5:
    case 81:
        if (m_isDown)
            fail("M16 or M17 before drilling (G05)");
        m_mode = Mode::Drill;
        return;
    case 40: // the tool's middle runs along the path
        return;
    case 90:
        m_isIncremental = false;
        return;
    case 91:
        m_isIncremental = true;
        return;
    case 41:
    case 42:
        refuse("G" + std::to_string(code) + " (a path beside the tool)");
    default:
        refuse("the code G" + std::to_string(code));
    }
}

void Reader::takeM(int code)
{
    switch (code) {
    case 0:
    case 30:
        m_isEnded = true;
        return;
    case 15:
        if (m_mode == Mode::Drill)
            fail("G00 before the tool goes down (M15)");
        requireTool();
        m_isDown = true;
        return;
    case 16:
    case 17:
        m_isDown = false;
        return;
    case 71:
    case 72:
        return takeKnownUnit(code == 71 ? millimetre : inch);
    case 6: // stops for the operator
    case 9:
        return;
    default:
        refuse("the code M" + std::to_string(code));
    }
}

// "T01C0.8F200S65" in the header; in the work "T01" chooses a tool, or defines it as well.
void Reader::takeTool(const std::vector<Word> &words)
{
    const int number = integer(words[0].value, "the number of a tool");
    if (number < 0 || number > 99999)
        fail("the number of a tool from 0 to 99999");
    std::optional<double> diameter;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const Word &word = words[i];
        if (word.letter == 'C') {
            if (word.value.find('.') == std::string_view::npos)
                fail("a diameter with a decimal point, not C" + std::string(word.value));
            diameter = length(word.value);
            if (*diameter < 0.0)
                fail("a diameter that is not negative");
        } else if (std::string_view("FSBHZ").find(word.letter) == std::string_view::npos) {
            refuse(std::string(1, word.letter) + std::string(word.value) + " behind a tool");
        }
    }
    if (m_isDown)
        fail("M16 or M17 before another tool");
    if (diameter) {
        if (number == 0)
            fail("tools from T1 on");
        const auto [known, isNew] =
            m_toolIndex.emplace(number, static_cast<std::uint32_t>(m_image.tools.size()));
        if (isNew)
            m_image.tools.push_back({number, *diameter, m_plating});
        else if (m_image.tools[known->second].diameter != *diameter)
            fail("one diameter of the tool T" + std::to_string(number));
    } else if (!m_isHeader && number != 0 && !m_toolIndex.count(number)) {
        fail("a tool whose diameter is stated, not T" + std::to_string(number));
    }
    if (!m_isHeader)
        m_tool = number;
}

std::uint32_t Reader::requireTool() const
{
    const auto known = m_toolIndex.find(m_tool);
    if (known == m_toolIndex.end())
        fail("a tool before the first hole");
    if (!(m_image.tools[known->second].diameter > 0.0))
        fail("a tool with a diameter above 0");
    return known->second;
}

std::optional<double> Reader::find(const std::vector<Word> &words, char letter)
{
    std::optional<double> found;
    for (const Word &word : words) {
        if (word.letter != letter)
            continue;
        if (found)
            fail("each coordinate once");
        found = length(word.value);
    }
    return found;
}

Point Reader::placeOf(const std::vector<Word> &words, Point from)
{
    const std::optional<double> x = find(words, 'X'), y = find(words, 'Y');
    if (m_isIncremental)
        return from + Point{x.value_or(0.0), y.value_or(0.0)};
    return {x.value_or(from.x), y.value_or(from.y)};
}

void Reader::addWork(DrillMove move)
{
    if (m_image.works.size() >= mostFeatures)
        fail("at most " + std::to_string(mostFeatures) + " holes and paths");
    m_image.works.push_back({move, m_line});
}

void Reader::hit(Point at)
{
    Pad pad;
    pad.at = at;
    pad.symbol = requireTool();
    m_image.features.add(pad, Polarity::Positive);
    addWork(DrillMove::Hit);
}

void Reader::drill(const std::vector<Word> &words)
{
    for (const char letter : {'A', 'I', 'J'}) {
        if (find(words, letter))
            fail("X and Y of a hole only; an arc needs G02 or G03");
    }
    m_position = placeOf(words, m_position);
    m_hasPosition = true;
    hit(m_position);
}

// "X0Y0G85X2.5Y0"
void Reader::drillSlot(const std::vector<Word> &words, std::size_t g85)
{
    if (m_mode != Mode::Drill)
        fail("G05 before a slot (G85)");
    const auto middle = words.begin() + static_cast<std::ptrdiff_t>(g85);
    const Point start = placeOf({words.begin(), middle}, m_position);
    const std::vector<Word> behind{middle + 1, words.end()};
    if (!find(behind, 'X') && !find(behind, 'Y'))
        fail("the end of the slot behind G85");
    m_position = placeOf(behind, start);
    m_hasPosition = false;
    m_image.features.add(Line{start, m_position, requireTool()}, Polarity::Positive);
    addWork(DrillMove::Slot);
}

// "R5X2.54": five more hits, each so far from the one before.
void Reader::repeat(const std::vector<Word> &words)
{
    const int count = integer(words[0].value, "a number of repeats");
    if (count < 1 || count > mostRepeats)
        fail("a number of repeats from 1 to " + std::to_string(mostRepeats));
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (words[i].letter != 'X' && words[i].letter != 'Y')
            refuse("the code " + std::string(1, words[i].letter) + std::string(words[i].value) +
                   " behind a repeat");
    }
    if (m_mode != Mode::Drill || !m_hasPosition)
        fail("a hole before its repeats (R)");
    const std::optional<double> x = find(words, 'X'), y = find(words, 'Y');
    if (!x && !y)
        fail("the distance of the repeats behind R" + std::string(words[0].value));
    const Point first = m_position;
    for (int i = 1; i <= count; ++i) {
        m_position = first + Point{x.value_or(0.0), y.value_or(0.0)} * i;
        if (std::fabs(m_position.x) > farthest || std::fabs(m_position.y) > farthest)
            fail("repeats within 100 metres");
        hit(m_position);
    }
}

void Reader::rout(const std::vector<Word> &words)
{
    const Point end = placeOf(words, m_position);
    const std::optional<double> a = find(words, 'A'), i = find(words, 'I'), j = find(words, 'J');
    const bool isArc = m_mode == Mode::Clockwise || m_mode == Mode::CounterClockwise;
    if (!isArc && (a || i || j))
        fail("G02 or G03 before a radius or a centre");
    if (m_mode != Mode::Move) {
        if (!m_isDown)
            fail("M15 before a path that is routed");
        const std::uint32_t tool = requireTool();
        if (isArc) {
            std::optional<Point> offset;
            if (i || j)
                offset = Point{i.value_or(0.0), j.value_or(0.0)};
            const Edge edge = arcTo(end, a, offset);
            m_image.features.add(Arc{m_position, end, edge.center, tool, m_mode == Mode::Clockwise},
                                 Polarity::Positive);
        } else {
            m_image.features.add(Line{m_position, end, tool}, Polarity::Positive);
        }
        addWork(DrillMove::Rout);
    }
    m_position = end;
    m_hasPosition = false;
}

// By its radius, an arc of at most half a turn; or by the centre, as seen from its start.
Edge Reader::arcTo(Point end, std::optional<double> radius, std::optional<Point> offset) const
{
    const bool clockwise = m_mode == Mode::Clockwise;
    const EdgeKind kind = clockwise ? EdgeKind::ArcClockwise : EdgeKind::ArcCounterClockwise;
    const double slack = mostUnevenSteps * gridStep();
    if (bool(radius) == bool(offset))
        fail("either a radius (A) or a centre (I, J) of an arc");
    if (offset) {
        const Point center = m_position + *offset;
        const double from = distance(m_position, center), to = distance(end, center);
        if (!(from > 0.0) || std::fabs(from - to) > slack)
            fail("an arc whose ends are equally far from its centre");
        return {end, center, kind};
    }
    const Point chord = end - m_position;
    const double half = cam::length(chord) / 2.0;
    if (!(half > 0.0) || *radius < half - slack)
        fail("an arc that ends elsewhere than it starts, with a radius that reaches from end to end");
    const double beside = std::sqrt(std::max(0.0, (*radius - half) * (*radius + half)));
    const Point left = Point{-chord.y, chord.x} * (1.0 / (2.0 * half));
    return {end, m_position + chord * 0.5 + left * (clockwise ? -beside : beside), kind};
}

// ---- numbers

double Reader::requireUnit() const
{
    if (m_unit == 0.0)
        fail("METRIC, INCH, M71 or M72 before the first length");
    return m_unit;
}

Digits Reader::digits() const
{
    if (m_digits)
        return *m_digits;
    if (m_commentedDigits)
        return *m_commentedDigits;
    return m_unit == inch ? Digits{2, 4} : Digits{3, 3}; // the machine's own
}

// Rounded once: digits as a whole number, times the unit, over a power of ten.
double Reader::length(std::string_view text)
{
    const double unit = requireUnit();
    const std::string whole(text);
    const bool isNegative = text[0] == '-';
    if (isNegative || text[0] == '+')
        text.remove_prefix(1);
    const std::size_t point = text.find('.');
    std::string figures(text.substr(0, point));
    std::size_t decimals = 0;
    if (point != std::string_view::npos) {
        figures += text.substr(point + 1);
        decimals = text.size() - point - 1;
    } else {
        const Digits format = digits();
        const auto all = static_cast<std::size_t>(format.whole) + static_cast<std::size_t>(format.decimals);
        const std::optional<Zeros> zeros = m_zeros ? m_zeros : m_commentedZeros;
        m_assumesDigits = m_assumesDigits || (!m_digits && !m_commentedDigits);
        m_assumesZeros = m_assumesZeros || (!zeros && figures.size() != all);
        if (zeros == Zeros::Leading) {
            if (figures.size() > all)
                fail("at most " + std::to_string(all) + " digits without a decimal point, not " + whole);
            figures.resize(all, '0');
        }
        decimals = static_cast<std::size_t>(format.decimals);
    }
    if (figures.empty() || figures.size() > mostDigits ||
        figures.find_first_not_of("0123456789") != std::string::npos)
        fail("a number of at most 15 digits, not " + whole);
    double value = 0.0;
    for (const char digit : figures)
        value = value * 10.0 + (digit - '0');
    value = value * unit / std::pow(10.0, static_cast<double>(decimals));
    if (value > farthest)
        fail("a length below 100 metres, not " + whole);
    return isNegative ? -value : value;
}

int Reader::integer(std::string_view text, const char *what) const
{
    const std::optional<int> value = toInteger(text);
    if (!value)
        fail(std::string(what) + ", not \"" + std::string(text) + "\"");
    return *value;
}

void Reader::addAssumptions()
{
    const Digits format = digits();
    m_image.assumptions = {m_assumesDigits, format.whole, format.decimals, m_unit == inch, m_assumesZeros};
}

} // namespace

DrillImage readExcellon(std::string_view text, const std::string &file,
                        const std::function<void(double)> &report)
{
    DrillImage image = Reader(text, file, report).read();
    report(1.0);
    return image;
}

DrillImage readExcellonFile(const std::filesystem::path &file, const std::function<void(double)> &report)
{
    const std::string text = readWholeFile(file, [&report](double share) { report(wholeFileShare * share); });
    return readExcellon(text, file.u8string(),
                        [&report](double share) { report(wholeFileShare + (1.0 - wholeFileShare) * share); });
}

// A header, or without one a tool with its diameter; a Gerber file's blocks end with "*".
bool isExcellon(std::string_view head)
{
    bool found = false;
    std::size_t at = 0;
    while (at < head.size()) {
        const std::size_t end = std::min(head.find_first_of("\r\n", at), head.size());
        const std::string_view line = trimmed(head.substr(at, end - at));
        at = end + 1;
        if (line.empty() || line[0] == ';' || line[0] == '(')
            continue;
        if (line.back() == '*' || line.substr(0, 3) == "%FS" || line.find('\0') != std::string_view::npos)
            return false;
        // A percent sign alone ends a header, which may hold nothing else.
        found = found || line == "M48" || line == "%" ||
                (line[0] == 'T' && line.size() > 2 && isDigit(line[1]) &&
                 line.find('C') != std::string_view::npos);
    }
    return found;
}

} // namespace cam
