#include "cam/gdsii/records.h"

#include "cam/base/error.h"

#include <QtEndian>

#include <cmath>

namespace cam::gdsii {

namespace {

// Most significant byte first; return what follows.
char *put16(std::uint32_t value, char *bytes)
{
    qToBigEndian(static_cast<quint16>(value), bytes);
    return bytes + 2;
}

char *put32(std::uint32_t value, char *bytes)
{
    qToBigEndian(static_cast<quint32>(value), bytes);
    return bytes + 4;
}

char *putHead(Record record, std::size_t dataSize, char *bytes)
{
    bytes = put16(static_cast<std::uint32_t>(dataSize + 4), bytes);
    return put16(static_cast<std::uint32_t>(record), bytes);
}

// Throws Error when a coordinate does not fit.
char *putPoint(GridPoint p, char *bytes)
{
    const auto x = static_cast<std::int32_t>(p.x), y = static_cast<std::int32_t>(p.y);
    if (x != p.x || y != p.y)
        throw Error("A coordinate of " + std::to_string(x != p.x ? p.x : p.y) +
                    " database units does not fit into a GDSII file: expected a larger database unit");
    return put32(static_cast<std::uint32_t>(y), put32(static_cast<std::uint32_t>(x), bytes));
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

// Nearly all of a file are boundaries: they are made where the file's buffer is.
void RecordWriter::boundary(const GridRing &corners, int layer, int datatype)
{
    if (corners.size() > mostCorners)
        throw Error("A polygon of " + std::to_string(corners.size()) +
                    " corners does not fit into a GDSII file: expected at most " +
                    std::to_string(mostCorners));
    const std::size_t pointBytes = (corners.size() + 1) * 8;
    constexpr std::size_t otherBytes = 4 + 6 + 6 + 4 + 4;
    static_assert((mostCorners + 1) * 8 + otherBytes <= OutputFile::mostRoom);
    char *at = m_file.room(otherBytes + pointBytes);
    at = putHead(Record::BOUNDARY, 0, at);
    at = put16(static_cast<std::uint32_t>(layer), putHead(Record::LAYER, 2, at));
    at = put16(static_cast<std::uint32_t>(datatype), putHead(Record::DATATYPE, 2, at));
    at = putHead(Record::XY, pointBytes, at);
    for (const GridPoint corner : corners)
        at = putPoint(corner, at);
    at = putPoint(corners.front(), at);
    putHead(Record::ENDEL, 0, at);
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
    char bytes[4];
    putHead(record, dataSize, bytes);
    m_bytes.insert(m_bytes.end(), bytes, bytes + sizeof bytes);
}

void RecordWriter::add16(std::int64_t value)
{
    char bytes[2];
    put16(static_cast<std::uint32_t>(value), bytes);
    m_bytes.insert(m_bytes.end(), bytes, bytes + sizeof bytes);
}

void RecordWriter::add32(std::int64_t value)
{
    char bytes[4];
    put32(static_cast<std::uint32_t>(value), bytes);
    m_bytes.insert(m_bytes.end(), bytes, bytes + sizeof bytes);
}

void RecordWriter::addPoint(GridPoint p)
{
    char bytes[8];
    putPoint(p, bytes);
    m_bytes.insert(m_bytes.end(), bytes, bytes + sizeof bytes);
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
