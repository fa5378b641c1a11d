// Writes the records of the GDSII stream format (version 600).
#pragma once

#include "cam/base/outputfile.h"
#include "cam/gdsii/recordtable.h"
#include "cam/polygon/gridpolygon.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace cam::gdsii {

// The most corners that a boundary is given: its record counts bytes in 16 bits, which readers take for a
// signed number or warn of from 0x8000 on, and the first corner is repeated.
constexpr std::size_t mostCorners = 4090;

// Year, month, day, hour, minute, second; all 0 when not known.
struct Date
{
    std::int16_t fields[6] = {0, 0, 0, 0, 0, 0};
};

// Puts records into a file, most significant byte first.
class RecordWriter
{
public:
    explicit RecordWriter(OutputFile &file) : m_file(file) {}

    // `dbu`: database unit in micrometres, which are the user units.
    void beginLibrary(std::string_view name, const Date &date, double dbu);
    void endLibrary();
    void beginStructure(std::string_view name, const Date &date);
    void endStructure();

    // At most `mostCorners`. Throws Error when a corner lies beyond the 32 bits of a coordinate.
    void boundary(const GridRing &corners, int layer, int datatype);
    void reference(std::string_view structure, GridPoint at);
    // `columns` times `rows` copies, `columnStep` and `rowStep` apart; at most 32767 each way.
    void array(std::string_view structure, GridPoint at, int columns, int rows, GridPoint columnStep,
               GridPoint rowStep);

private:
    void start(Record record, std::size_t dataSize);
    void add16(std::int64_t value);
    void add32(std::int64_t value);
    void addReal(double value);
    void addPoint(GridPoint p);
    void addText(Record record, std::string_view text);
    void addDates(Record record, const Date &date);
    void flush();

    OutputFile &m_file;
    std::vector<char> m_bytes;
};

// The format's 8-byte floating-point number: sign, exponent of 16 with excess 64, 56 bits of fraction.
std::uint64_t encodeReal(double value);

// `text` as a structure's name: letters, digits, "_", "?" and "$", at most 32 of them; never empty.
std::string legalName(std::string_view text);

} // namespace cam::gdsii
