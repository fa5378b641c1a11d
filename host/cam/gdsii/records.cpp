#include "host/cam/gdsii/records.h"

#include "host/cam/error.h"

#include <cmath>

namespace cam::gdsii {

namespace {

// Most significant byte first.
void put32(std::uint32_t value, char *bytes)
{
    bytes[0] = static_cast<char>(value >> 24);
    bytes[1] = static_cast<char>((value >> 16) & 0xFF);
    bytes[2] = static_cast<char>((value >> 8) & 0xFF);
    bytes[3] = static_cast<char>(value & 0xFF);
}

} // namespace

void RecordWriter::beginLibrary(std::string_view name, const Date &date, double dbu)
{
    constexpr int streamVersion = 600;
    constexpr double metresPerMicrometre = 1e-6;
    start(Record::HEADER, 2);
    add16(streamVersion);
    addDates(Record::BGNLIB, date);
    addText(Record::LIBNAME, name);
    start(Record::UNITS, 16);
    addReal(dbu);
    addReal(dbu * metresPerMicrometre);
    flush();
}

void RecordWriter::endLibrary()
{
    start(Record::ENDLIB, 0);
    flush();
}

void RecordWriter::beginStructure(std::string_view name, const Date &date)
{
    addDates(Record::BGNSTR, date);
    addText(Record::STRNAME, name);
    flush();
}

void RecordWriter::endStructure()
{
    start(Record::ENDSTR, 0);
    flush();
}

void RecordWriter::boundary(const GridRing &corners, int layer, int datatype)
{
    start(Record::BOUNDARY, 0);
    start(Record::LAYER, 2);
    add16(layer);
    start(Record::DATATYPE, 2);
    add16(datatype);
    start(Record::XY, (corners.size() + 1) * 8);
    addPoints(corners.data(), corners.size());
    addPoint(corners.front());
    start(Record::ENDEL, 0);
    flush();
}

void RecordWriter::reference(std::string_view structure, GridPoint at)
{
    start(Record::SREF, 0);
    addText(Record::SNAME, structure);
    start(Record::XY, 8);
    addPoint(at);
    start(Record::ENDEL, 0);
    flush();
}

void RecordWriter::array(std::string_view structure, GridPoint at, int columns, int rows,
                         GridPoint columnStep, GridPoint rowStep)
{
    start(Record::AREF, 0);
    addText(Record::SNAME, structure);
    start(Record::COLROW, 4);
    add16(columns);
    add16(rows);
    start(Record::XY, 24);
    addPoint(at);
    addPoint({at.x + columnStep.x * columns, at.y + columnStep.y * columns});
    addPoint({at.x + rowStep.x * rows, at.y + rowStep.y * rows});
    start(Record::ENDEL, 0);
    flush();
}

void RecordWriter::start(Record record, std::size_t dataSize)
{
    add16(static_cast<std::int64_t>(dataSize + 4));
    add16(static_cast<std::int64_t>(record));
}

void RecordWriter::add16(std::int64_t value)
{
    m_bytes.push_back(static_cast<char>((value >> 8) & 0xFF));
    m_bytes.push_back(static_cast<char>(value & 0xFF));
}

void RecordWriter::add32(std::int64_t value)
{
    char bytes[4];
    put32(static_cast<std::uint32_t>(value), bytes);
    m_bytes.insert(m_bytes.end(), bytes, bytes + 4);
}

void RecordWriter::addPoint(GridPoint p)
{
    addPoints(&p, 1);
}

void RecordWriter::addPoints(const GridPoint *points, std::size_t count)
{
    std::size_t at = m_bytes.size();
    m_bytes.resize(at + count * 8);
    for (std::size_t i = 0; i < count; ++i, at += 8) {
        const auto x = static_cast<std::int32_t>(points[i].x), y = static_cast<std::int32_t>(points[i].y);
        if (x != points[i].x || y != points[i].y)
            throw Error("A coordinate of " + std::to_string(x != points[i].x ? points[i].x : points[i].y) +
                        " database units does not fit into a GDSII file: expected a larger database unit");
        put32(static_cast<std::uint32_t>(x), &m_bytes[at]);
        put32(static_cast<std::uint32_t>(y), &m_bytes[at + 4]);
    }
}

void RecordWriter::addReal(double value)
{
    const std::uint64_t bits = encodeReal(value);
    add32(static_cast<std::int64_t>(bits >> 32));
    add32(static_cast<std::int64_t>(bits & 0xFFFFFFFFu));
}

void RecordWriter::addText(Record record, std::string_view text)
{
    const bool isOdd = text.size() % 2 != 0;
    start(record, text.size() + (isOdd ? 1 : 0));
    m_bytes.insert(m_bytes.end(), text.begin(), text.end());
    if (isOdd)
        m_bytes.push_back('\0');
}

// The time of the last change, then that of the last access: the same.
void RecordWriter::addDates(Record record, const Date &date)
{
    start(record, 24);
    for (int time = 0; time < 2; ++time) {
        for (const std::int16_t field : date.fields)
            add16(field);
    }
}

void RecordWriter::flush()
{
    m_file.write(m_bytes.data(), m_bytes.size());
    m_bytes.clear();
}

std::uint64_t encodeReal(double value)
{
    if (value == 0.0)
        return 0;
    const std::uint64_t sign = value < 0.0 ? 1 : 0;
    int binaryExponent = 0;
    double fraction = std::frexp(std::fabs(value), &binaryExponent); // 0.5 <= fraction < 1
    int exponent = binaryExponent / 4;
    int shift = binaryExponent % 4;
    if (shift > 0) {
        shift -= 4;
        ++exponent;
    }
    fraction = std::ldexp(fraction, shift); // 1/16 <= fraction < 1
    const auto mantissa = static_cast<std::uint64_t>(std::ldexp(fraction, 56));
    return (sign << 63) | (static_cast<std::uint64_t>(exponent + 64) << 56) | mantissa;
}

std::string legalName(std::string_view text)
{
    constexpr std::size_t longest = 32;
    std::string name;
    for (const char c : text.substr(0, longest)) {
        const bool isLetter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        const bool isLegal = isLetter || (c >= '0' && c <= '9') || c == '_' || c == '?' || c == '$';
        name.push_back(isLegal ? c : '_');
    }
    return name.empty() ? "_" : name;
}

} // namespace cam::gdsii
