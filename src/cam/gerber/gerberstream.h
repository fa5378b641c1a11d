// The records of an RS-274X file in 4.6 millimetre format: one function a record, which leaves out what the
// reader already knows (unchanged coordinates, aperture, polarity, interpolation).
#pragma once

#include "cam/base/outputfile.h"
#include "cam/gerber/gridoutline.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace cam {

// The file's grid is the nanometre: the sixth digit behind the point of a millimetre.
class GerberStream
{
public:
    explicit GerberStream(OutputFile &file) : m_file(file) {}

    // One line of comment, without the characters that end a record.
    void comment(std::string_view text);
    // An attribute, such as "TF.Part,Single", in the form of a comment: readers of the older format skip it
    // silently.
    void attribute(std::string_view text);
    // A command between percent signs, given without them and without its asterisk.
    void command(std::string_view text);
    // A macro: `body` is one line a primitive, each with its asterisk.
    void macro(std::string_view name, std::string_view body);
    void allQuadrants(); // G75
    void end();          // M02

    void polarity(bool dark);
    void aperture(int code);
    void moveTo(GridPoint at);
    void lineTo(GridPoint end);
    // From the current point about `center`; one that ends where it starts is a full circle, in two halves.
    void arcTo(GridPoint end, GridPoint center, bool clockwise);
    // From the current point along `edge`.
    void edge(const GridEdge &edge);
    void flash(GridPoint at);

    void beginRegion();
    void endRegion();
    // What follows, until endRepeat(), is set columns x rows times, `step` apart (both parts at least 0).
    void beginRepeat(std::uint32_t columns, std::uint32_t rows, GridPoint step);
    void endRepeat();

private:
    enum class Interpolation { Unknown, Line, Clockwise, CounterClockwise };

    void arcFromHere(GridPoint end, GridPoint center, bool clockwise);
    void interpolate(Interpolation kind);
    void coordinates(GridPoint at);
    void number(char letter, std::int64_t value);
    void forget();

    OutputFile &m_file;
    bool m_isPlaced = false; // whether the reader knows a current point
    GridPoint m_at;
    int m_aperture = 0; // 0: none selected
    int m_polarity = -1;
    bool m_hasPolarity = false; // one was stated, be it forgotten since
    Interpolation m_interpolation = Interpolation::Unknown;
};

// `nanometres` as millimetres, with as many digits as are needed: "0.25", "-3", "0".
std::string millimetres(std::int64_t nanometres);
std::int64_t roundToNanometre(double value);

} // namespace cam
