// Records leave out what the reader knows already.
#include "cam/gerber/gerberstream.h"

#include "cam/base/error.h"

#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>

namespace cam {

std::int64_t roundToNanometre(double value)
{
    return static_cast<std::int64_t>(std::llround(value));
}

std::string millimetres(std::int64_t nanometres)
{
    const std::uint64_t size =
        nanometres < 0 ? 0 - static_cast<std::uint64_t>(nanometres) : static_cast<std::uint64_t>(nanometres);
    std::string text = nanometres < 0 ? "-" : "";
    text += std::to_string(size / 1000000);
    std::string fraction = std::to_string(1000000 + size % 1000000).substr(1);
    fraction.erase(fraction.find_last_not_of('0') + 1);
    if (!fraction.empty())
        text += '.' + fraction;
    return text;
}

void GerberStream::comment(std::string_view text)
{
    m_file.write("G04 ");
    for (const char c : text) {
        const bool endsRecord = c == '*' || c == '%' || static_cast<unsigned char>(c) < ' ';
        m_file.write(endsRecord ? std::string_view("_") : std::string_view(&c, 1));
    }
    m_file.write("*\n");
}

void GerberStream::attribute(std::string_view text)
{
    comment("#@! " + std::string(text));
}

void GerberStream::command(std::string_view text)
{
    m_file.write("%");
    m_file.write(text);
    m_file.write("*%\n");
}

void GerberStream::macro(std::string_view name, std::string_view body)
{
    m_file.write("%AM");
    m_file.write(name);
    m_file.write("*\n");
    m_file.write(body);
    m_file.write("%\n");
}

void GerberStream::allQuadrants()
{
    m_file.write("G75*\n");
}

void GerberStream::end()
{
    m_file.write("M02*\n");
}

void GerberStream::polarity(bool dark)
{
    if (m_polarity == (dark ? 1 : 0))
        return;
    m_polarity = dark ? 1 : 0;
    // Some readers take a file whose first polarity is clear for the negative of an image, and invert all of
    // it.
    if (!dark && !m_hasPolarity)
        command("LPD");
    m_hasPolarity = true;
    command(dark ? "LPD" : "LPC");
}

void GerberStream::aperture(int code)
{
    if (m_aperture == code)
        return;
    m_aperture = code;
    number('D', code);
    m_file.write("*\n");
}

void GerberStream::moveTo(GridPoint at)
{
    if (m_isPlaced && m_at == at)
        return;
    coordinates(at);
    m_file.write("D02*\n");
}

void GerberStream::lineTo(GridPoint end)
{
    interpolate(Interpolation::Line);
    coordinates(end);
    m_file.write("D01*\n");
}

void GerberStream::arcTo(GridPoint end, GridPoint center, bool clockwise)
{
    const GridPoint from = m_at;
    if (from == end) // gerbv takes some full circles for arcs of no length
        arcTo({2 * center.x - from.x, 2 * center.y - from.y}, center, clockwise);
    arcFromHere(end, center, clockwise);
}

void GerberStream::arcFromHere(GridPoint end, GridPoint center, bool clockwise)
{
    const GridPoint from = m_at;
    interpolate(clockwise ? Interpolation::Clockwise : Interpolation::CounterClockwise);
    coordinates(end);
    number('I', center.x - from.x);
    number('J', center.y - from.y);
    m_file.write("D01*\n");
}

void GerberStream::edge(const GridEdge &edge)
{
    if (edge.kind == EdgeKind::Line)
        lineTo(edge.end);
    else
        arcTo(edge.end, edge.center, edge.kind == EdgeKind::ArcClockwise);
}

void GerberStream::flash(GridPoint at)
{
    coordinates(at);
    m_file.write("D03*\n");
}

void GerberStream::beginRegion()
{
    m_file.write("G36*\n");
    m_isPlaced = false; // every contour of a region starts with a move
    m_interpolation =
        Interpolation::Unknown; // gerbv takes a region's first arc for a line when it is not told again
}

void GerberStream::endRegion()
{
    m_file.write("G37*\n");
    // Aperture, position and mode hold on by the format; gerbv goes back to the mode from before the region.
    const int polarity = m_polarity;
    forget();
    m_polarity = polarity;
}

void GerberStream::beginRepeat(std::uint32_t columns, std::uint32_t rows, GridPoint step)
{
    command("SRX" + std::to_string(columns) + "Y" + std::to_string(rows) + "I" + millimetres(step.x) + "J" +
            millimetres(step.y));
    forget();
}

void GerberStream::endRepeat()
{
    command("SR");
    forget();
}

void GerberStream::interpolate(Interpolation kind)
{
    if (m_interpolation == kind)
        return;
    m_interpolation = kind;
    m_file.write(kind == Interpolation::Line        ? "G01*\n"
                 : kind == Interpolation::Clockwise ? "G02*\n"
                                                    : "G03*\n");
}

namespace {

// The format has room for ten metres, but some readers count nanometres in 32 bits.
void expectToFit(GridPoint at)
{
    constexpr std::int64_t farthest = std::numeric_limits<std::int32_t>::max();
    for (const std::int64_t coordinate : {at.x, at.y}) {
        if (coordinate > farthest || coordinate < -farthest)
            throw Error("A coordinate of " + millimetres(coordinate) +
                        " mm does not fit into a Gerber file: expected 2147 mm at most");
    }
}

} // namespace

void GerberStream::coordinates(GridPoint at)
{
    expectToFit(at);
    const bool known = m_isPlaced;
    const bool sameX = known && m_at.x == at.x;
    const bool sameY = known && m_at.y == at.y;
    if (!sameX)
        number('X', at.x);
    if (!sameY || sameX) // a record without any coordinate is one that some readers skip
        number('Y', at.y);
    m_at = at;
    m_isPlaced = true;
}

void GerberStream::number(char letter, std::int64_t value)
{
    char buffer[24] = {letter};
    const char *const end = std::to_chars(buffer + 1, std::end(buffer), value).ptr;
    m_file.write(buffer, static_cast<std::size_t>(end - buffer));
}

void GerberStream::forget()
{
    m_isPlaced = false;
    m_aperture = 0;
    m_polarity = -1;
    m_interpolation = Interpolation::Unknown;
}

} // namespace cam
