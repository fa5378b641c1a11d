// Reading symbol names: one table row a family, one letter a parameter.
#include "cam/model/standardsymbol.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

namespace cam {

namespace {

// What a family accepts after its plain parameters.
enum class Tail : std::uint8_t {
    Nothing,
    Rounded,          // xr<radius>[x<corners>]
    RoundedChamfered, // xr<radius>[x<corners>] or xc<size>[x<corners>]
    Ends,             // xr or xs
    EndsAndCorners,   // xr or xs, then perhaps the radius of inner corners, as "xr5" or "xrx5"
    Words             // any words: they draw nothing
};

// Parameters: s an outer size, l another length, d a length that is not larger than the one before, a an
// angle, n a count, p a percentage; in capitals: optional. Only an outer size may be negative.
struct Family
{
    std::string_view name;
    SymbolKind kind;
    std::string_view parameters;
    Tail tail;
};

constexpr Family families[] = {
    {"r", SymbolKind::Round, "s", Tail::Nothing},
    {"s", SymbolKind::Square, "s", Tail::Nothing},
    {"rect", SymbolKind::Rectangle, "ss", Tail::RoundedChamfered},
    {"oval", SymbolKind::Oval, "ss", Tail::Nothing},
    {"di", SymbolKind::Diamond, "ss", Tail::Nothing},
    {"oct", SymbolKind::Octagon, "ssl", Tail::Nothing},
    {"donut_r", SymbolKind::RoundDonut, "sd", Tail::Nothing},
    {"donut_s", SymbolKind::SquareDonut, "sd", Tail::Rounded},
    {"donut_sr", SymbolKind::SquareRoundDonut, "sd", Tail::Nothing},
    {"donut_rc", SymbolKind::RectangleDonut, "ssl", Tail::Rounded},
    {"donut_o", SymbolKind::OvalDonut, "ssl", Tail::Nothing},
    {"hex_l", SymbolKind::HorizontalHexagon, "ssl", Tail::Nothing},
    {"hex_s", SymbolKind::VerticalHexagon, "ssl", Tail::Nothing},
    {"bfr", SymbolKind::Butterfly, "s", Tail::Nothing},
    {"bfs", SymbolKind::SquareButterfly, "s", Tail::Nothing},
    {"tri", SymbolKind::Triangle, "ss", Tail::Nothing},
    {"oval_h", SymbolKind::HalfOval, "ss", Tail::Nothing},
    {"thr", SymbolKind::RoundedThermal, "sdanl", Tail::Nothing},
    {"ths", SymbolKind::RoundThermal, "sdanl", Tail::Nothing},
    {"s_ths", SymbolKind::SquareThermal, "sdanl", Tail::Rounded},
    {"s_tho", SymbolKind::OpenSquareThermal, "sdanl", Tail::Nothing},
    {"s_thr", SymbolKind::LineThermal, "sdanl", Tail::Nothing},
    {"sr_ths", SymbolKind::SquareRoundThermal, "sdanl", Tail::Nothing},
    {"rc_ths", SymbolKind::RectangleThermal, "ssanll", Tail::Rounded},
    {"rc_tho", SymbolKind::OpenRectangleThermal, "ssanll", Tail::Nothing},
    {"o_ths", SymbolKind::OvalThermal, "ssanll", Tail::Nothing},
    {"oblong_ths", SymbolKind::OblongThermal, "ssanll", Tail::Ends},
    {"el", SymbolKind::Ellipse, "ss", Tail::Nothing},
    {"moire", SymbolKind::Moire, "llnlla", Tail::Nothing},
    {"hole", SymbolKind::Hole, "s", Tail::Words},
    {"hplate", SymbolKind::HomePlate, "sslLL", Tail::Nothing},
    {"rhplate", SymbolKind::InvertedHomePlate, "sslLL", Tail::Nothing},
    {"fhplate", SymbolKind::FlatHomePlate, "ssllLL", Tail::Nothing},
    {"radhplate", SymbolKind::BittenHomePlate, "sslL", Tail::Nothing},
    {"dshape", SymbolKind::RoundHomePlate, "sslL", Tail::Nothing},
    {"cross", SymbolKind::Cross, "ssllpp", Tail::EndsAndCorners},
    {"dogbone", SymbolKind::Dogbone, "ssllp", Tail::EndsAndCorners},
    {"dpack", SymbolKind::PadGrid, "ssllnnL", Tail::Nothing},
    {"null", SymbolKind::Null, "N", Tail::Nothing},
};

[[noreturn]] void refuse(std::string_view name, const std::string &why)
{
    throw SymbolError("symbol \"" + std::string(name) + "\": " + why);
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Walks a name from its first number on, up to its suffix.
class NameReader
{
public:
    NameReader(std::string_view name, std::size_t at, std::size_t end, SymbolUnit unit)
        : m_name(name), m_text(name.substr(0, end)), m_at(at), m_lengthUnit(nanometresPer(unit))
    {
    }

    bool atEnd() const { return m_at == m_text.size(); }

    // The number at the reading position; the text behind it must be the end or an "x".
    double number(bool mayBeNegative = false)
    {
        const char *first = m_text.data() + m_at;
        const char *last = m_text.data() + m_text.size();
        const char *digits = first + (mayBeNegative && first != last && *first == '-');
        double value = 0.0;
        const auto end = std::from_chars(first, last, value, std::chars_format::fixed);
        const bool startsRight = digits != last && (isDigit(*digits) || *digits == '.');
        if (!startsRight || end.ec != std::errc() || (end.ptr != last && *end.ptr != 'x'))
            refuse(m_name, "expected a number at \"" + std::string(m_text.substr(m_at)) + "\"");
        m_at = static_cast<std::size_t>(end.ptr - m_text.data());
        return value;
    }

    double count()
    {
        const double value = number();
        if (value != std::floor(value) || value > 1000.0)
            refuse(m_name, "expected a count up to 1000, not " + std::to_string(value));
        return value;
    }

    double percentage()
    {
        const double value = number();
        if (value > 100.0)
            refuse(m_name, "expected a percentage, not " + std::to_string(value));
        return value;
    }

    double parameter(char kind)
    {
        switch (kind) {
        case 's':
            return length(true);
        case 'l':
        case 'L':
        case 'd':
            return length();
        case 'n':
        case 'N':
            return count();
        case 'p':
            return percentage();
        default:
            return number();
        }
    }

    double length(bool mayBeNegative = false)
    {
        const double value = number(mayBeNegative) * m_lengthUnit;
        // A hundred metres: beyond it the last digits of a double are no longer far below a nanometre.
        if (std::fabs(value) > 1e11)
            refuse(m_name, "expected a length below 100 metres");
        return value;
    }

    void separator()
    {
        if (atEnd() || m_text[m_at] != 'x')
            refuse(m_name, "expected another parameter");
        ++m_at;
    }

    // Takes `letter` if it stands at the reading position.
    bool take(char letter)
    {
        if (atEnd() || m_text[m_at] != letter)
            return false;
        ++m_at;
        return true;
    }

    // "1".."4" in any number and order: bit 0 for corner 1.
    std::uint8_t cornerList()
    {
        unsigned mask = 0;
        for (; !atEnd(); ++m_at) {
            const char corner = m_text[m_at];
            if (corner < '1' || corner > '4')
                refuse(m_name, "expected corners from 1 to 4");
            mask |= 1u << (corner - '1');
        }
        if (mask == 0)
            refuse(m_name, "expected corners from 1 to 4");
        return static_cast<std::uint8_t>(mask);
    }

    void skipWords() { m_at = m_text.size(); }

private:
    std::string_view m_name; // for messages
    std::string_view m_text; // without the suffix
    std::size_t m_at;
    double m_lengthUnit;
};

const Family *familyOf(std::string_view name, std::size_t &end)
{
    end = 0;
    while (end < name.size() && ((name[end] >= 'a' && name[end] <= 'z') || name[end] == '_'))
        ++end;
    for (const Family &family : families) {
        if (family.name == name.substr(0, end))
            return &family;
    }
    return nullptr;
}

void readCorners(NameReader &reader, StandardSymbol &symbol, bool mayBeChamfered, std::string_view name)
{
    reader.separator();
    if (reader.take('r'))
        symbol.corners = CornerStyle::Rounded;
    else if (mayBeChamfered && reader.take('c'))
        symbol.corners = CornerStyle::Chamfered;
    else
        refuse(name, "expected corners as xr<radius>" + std::string(mayBeChamfered ? " or xc<size>" : ""));
    symbol.cornerSize = reader.length();
    symbol.cornerMask = 0xf;
    if (!reader.atEnd()) {
        reader.separator();
        symbol.cornerMask = reader.cornerList();
    }
}

void readEnds(NameReader &reader, StandardSymbol &symbol, std::string_view name)
{
    reader.separator();
    if (reader.take('r'))
        symbol.ends = EndStyle::Round;
    else if (!reader.take('s'))
        refuse(name, "expected the ends as xr or xs");
}

void readTail(NameReader &reader, StandardSymbol &symbol, Tail tail, std::string_view name)
{
    if (tail == Tail::Ends || tail == Tail::EndsAndCorners) {
        readEnds(reader, symbol, name);
        if (tail == Tail::EndsAndCorners && !reader.atEnd()) {
            reader.take('x');
            symbol.cornerSize = reader.length();
        }
    } else if (tail == Tail::Words)
        reader.skipWords();
    else if (tail != Tail::Nothing && !reader.atEnd())
        readCorners(reader, symbol, tail == Tail::RoundedChamfered, name);
    if (!reader.atEnd())
        refuse(name, "expected its end after the last parameter");
}

// Relative slack for sizes that a job rounded: "oct19.685x19.685x9.8426" is meant to be a diamond.
constexpr double roundingSlack = 1.0001;

void requireWithin(double value, double limit, std::string_view name, const char *what)
{
    if (value > limit * roundingSlack)
        refuse(name, std::string("expected ") + what);
}

void checkThermal(const StandardSymbol &symbol, std::string_view name)
{
    const bool isOpen =
        symbol.kind == SymbolKind::OpenSquareThermal || symbol.kind == SymbolKind::OpenRectangleThermal;
    const double angle = symbol.size[2];
    const double spokes = symbol.size[3];
    if (isOpen &&
        (std::fmod(angle, 45.0) != 0.0 || (spokes != 0.0 && spokes != 1.0 && spokes != 2.0 && spokes != 4.0)))
        refuse(name, "expected gaps at multiples of 45 degrees and 1, 2 or 4 spokes");
    if (symbol.kind == SymbolKind::LineThermal && (angle != 45.0 || spokes != 4.0))
        refuse(name, "expected 4 spokes at 45 degrees");
    if (spokes > 64.0)
        refuse(name, "expected at most 64 spokes");
    if (symbol.kind >= SymbolKind::RectangleThermal && symbol.kind <= SymbolKind::OblongThermal)
        requireWithin(2.0 * symbol.size[5], std::min(symbol.size[0], symbol.size[1]), name,
                      "a line width of at most half the symbol");
}

void checkStencil(const StandardSymbol &symbol, std::string_view name)
{
    const auto &size = symbol.size;
    switch (symbol.kind) {
    case SymbolKind::HomePlate:
    case SymbolKind::InvertedHomePlate:
        return requireWithin(size[2], size[0], name, "a cut of at most the width");
    case SymbolKind::FlatHomePlate:
        requireWithin(size[2], size[1] / 2.0, name, "a vertical cut of at most half the height");
        return requireWithin(size[3], size[0], name, "a horizontal cut of at most the width");
    case SymbolKind::BittenHomePlate:
        return requireWithin(size[2], size[0], name, "a curve of at most the width");
    case SymbolKind::RoundHomePlate:
        requireWithin(size[2], size[0], name, "a relief of at most the width");
        return requireWithin(size[2], size[1] / 2.0, name, "a relief of at most half the height");
    case SymbolKind::Cross:
    case SymbolKind::Dogbone:
        requireWithin(size[2], size[1], name, "a horizontal line of at most the height");
        return requireWithin(size[3], size[0], name, "a vertical line of at most the width");
    default:
        break;
    }
    const double columns = size[4], rows = size[5], most = 100.0; // of a PadGrid
    if (columns < 1.0 || rows < 1.0 || columns > most || rows > most)
        refuse(name, "expected from 1 to 100 pads in each direction");
    if (size[2] * (columns - 1.0) >= size[0] || size[3] * (rows - 1.0) >= size[1])
        refuse(name, "expected gaps that leave room for the pads");
}

void checkSizes(const StandardSymbol &symbol, std::string_view name)
{
    const auto &size = symbol.size;
    const double half = std::min(size[0], size[1]) / 2.0;
    switch (symbol.kind) {
    case SymbolKind::Octagon:
        return requireWithin(size[2], half, name, "corners of at most half the symbol");
    case SymbolKind::HorizontalHexagon:
        return requireWithin(size[2], size[0] / 2.0, name, "corners of at most half the width");
    case SymbolKind::VerticalHexagon:
        return requireWithin(size[2], size[1] / 2.0, name, "corners of at most half the height");
    case SymbolKind::RectangleDonut:
    case SymbolKind::OvalDonut:
        return requireWithin(size[2], half, name, "a line width of at most half the symbol");
    default:
        if (symbol.kind >= SymbolKind::RoundedThermal && symbol.kind <= SymbolKind::OblongThermal)
            checkThermal(symbol, name);
        else if (isStencilSymbol(symbol))
            checkStencil(symbol, name);
    }
}

// Takes the suffix "_angle" off: the length of the name without it. Families have underscores of their own,
// so only one behind the first number counts.
std::size_t readAngle(StandardSymbol &symbol, std::string_view name, std::size_t numbersAt)
{
    const std::size_t bar = name.rfind('_');
    if (bar == std::string_view::npos || bar <= numbersAt)
        return name.size();
    const std::string_view text = name.substr(bar + 1);
    double angle = 0.0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), angle, std::chars_format::fixed);
    if (end.ec != std::errc() || end.ptr != text.data() + text.size() || !std::isfinite(angle))
        refuse(name, "expected an angle in degrees at \"" + std::string(text) + "\"");
    symbol.hasAngle = true;
    angle = std::fmod(angle, 360.0);
    symbol.angle = angle < 0.0 ? angle + 360.0 : angle;
    return bar;
}

} // namespace

bool isStencilSymbol(const StandardSymbol &symbol)
{
    return symbol.kind >= SymbolKind::HomePlate && symbol.kind <= SymbolKind::PadGrid;
}

StandardSymbol parseStandardSymbol(std::string_view name, SymbolUnit unit)
{
    std::size_t numbersAt = 0;
    const Family *family = familyOf(name, numbersAt);
    if (!family)
        refuse(name, "is none of the standard symbols");
    StandardSymbol symbol;
    symbol.kind = family->kind;
    const std::size_t end = readAngle(symbol, name, numbersAt);
    NameReader reader(name, numbersAt, end, unit);
    for (std::size_t i = 0; i < family->parameters.size(); ++i) {
        const char kind = family->parameters[i];
        const bool isOptional = kind >= 'A' && kind <= 'Z';
        if (isOptional && reader.atEnd())
            break;
        if (i > 0)
            reader.separator();
        symbol.size[i] = reader.parameter(kind);
        if (kind == 's' && symbol.size[i] <= 0.0)
            symbol.hasNoSize = true;
        if (kind == 'd' && !symbol.hasNoSize && symbol.size[i] > symbol.size[i - 1])
            refuse(name, "expected an inner size that is not larger than the outer one");
    }
    readTail(reader, symbol, family->tail, name);
    if (symbol.hasNoSize)
        symbol.kind = SymbolKind::Null;
    else
        checkSizes(symbol, name);
    return symbol;
}

} // namespace cam
