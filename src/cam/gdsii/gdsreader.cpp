// The grammar of the format, one function a part of it: each takes its records in their order.
#include "cam/gdsii/gdsreader.h"

#include "cam/base/error.h"
#include "cam/base/inputfile.h"
#include "cam/gdsii/recordtable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <initializer_list>
#include <unordered_map>

namespace cam {

namespace {

using gdsii::Record;

// Levels of references. A deeper file is only made to fill the stack of its readers.
constexpr std::size_t deepest = 256;
// Database units from the origin: up to here doubles hold them exactly.
constexpr double farthest = 9007199254740992.0;

constexpr int mirrored = 0x8000; // bits of STRANS
constexpr int absoluteMagnification = 0x0004, absoluteAngle = 0x0002;

// By the type of the record, whatever the type of its data.
constexpr auto knownTypes = [] {
    std::array<const gdsii::RecordName *, 256> types{};
    for (const gdsii::RecordName &known : gdsii::recordNames)
        types[static_cast<std::size_t>(known.record) >> 8] = &known;
    return types;
}();

// Of a record that is known.
std::string nameOf(Record record)
{
    return knownTypes[static_cast<std::size_t>(record) >> 8]->name;
}

std::string hex(int value)
{
    constexpr const char *digits = "0123456789abcdef";
    std::string text = "0x";
    for (int shift = 12; shift >= 0; shift -= 4)
        text.push_back(digits[(value >> shift) & 0xF]);
    return text;
}

// Of what is left of a stream, in bytes; 0 when it does not know.
std::size_t sizeOf(std::streambuf &stream)
{
    const std::streamoff here = stream.pubseekoff(0, std::ios::cur, std::ios::in);
    if (here < 0)
        return 0;
    const std::streamoff end = stream.pubseekoff(0, std::ios::end, std::ios::in);
    stream.pubseekpos(here, std::ios::in);
    return end > here ? static_cast<std::size_t>(end - here) : 0;
}

// Takes a file apart into records. The current one has been read and is not yet accepted by the grammar.
class RecordReader
{
public:
    RecordReader(std::istream &stream, const std::string &file, const std::function<void(double)> &report)
        : m_stream(*stream.rdbuf()), m_file(file), m_progress(report, sizeOf(m_stream))
    {
        next();
    }

    Record record() const { return m_record; }
    std::size_t size() const { return m_size; } // of the data, in bytes

    [[noreturn]] void fail(const std::string &expected) const
    {
        throw Error(m_file + ", byte " + std::to_string(m_at) + ": expected " + expected);
    }
    [[noreturn]] void refuse(const std::string &what) const
    {
        fail("nothing of " + what + ", which is not supported");
    }
    [[noreturn]] void failOrder(const std::string &expected) const
    {
        fail(expected + ", found " + nameOf(m_record));
    }

    // Reads the next record. Throws Error for one that is none, or that is not known.
    void next();
    // Behind the last record: zeros fill the block of a tape.
    void expectEnd();

    void expect(Record record) const
    {
        if (m_record != record)
            failOrder(nameOf(record));
    }
    void expectSize(std::size_t bytes) const
    {
        if (m_size != bytes)
            fail(std::to_string(bytes) + " bytes of data in " + nameOf(m_record) + ", found " +
                 std::to_string(m_size));
    }

    std::uint16_t unsigned16(std::size_t index) const
    {
        return static_cast<std::uint16_t>(byte(2 * index) << 8 | byte(2 * index + 1));
    }
    int integer16(std::size_t index) const { return static_cast<std::int16_t>(unsigned16(index)); }
    std::int32_t integer32(std::size_t index) const
    {
        const std::uint32_t high = unsigned16(2 * index), low = unsigned16(2 * index + 1);
        return static_cast<std::int32_t>(high << 16 | low);
    }
    double real(std::size_t index) const;
    GridPoint point(std::size_t index) const { return {integer32(2 * index), integer32(2 * index + 1)}; }
    std::string text() const;

private:
    int byte(std::size_t index) const { return static_cast<unsigned char>(m_data[index]); }
    bool read(std::size_t count) // into m_data
    {
        const auto wanted = static_cast<std::streamsize>(count);
        return m_stream.sgetn(m_data.data(), wanted) == wanted;
    }

    std::streambuf &m_stream;
    const std::string &m_file;
    ReadingProgress m_progress;
    std::array<char, 0x10000> m_data{};
    std::size_t m_at = 0; // byte of the current record in the file
    std::size_t m_size = 0;
    std::size_t m_next = 0;
    Record m_record = Record::HEADER;
};

void RecordReader::next()
{
    m_at = m_next;
    m_progress.reach(m_at);
    if (!read(4))
        fail("a record, found the end of the file");
    const std::size_t length = unsigned16(0);
    const int number = unsigned16(1);
    if (length < 4 || length % 2 != 0)
        fail("a record with an even length of at least 4, found " + std::to_string(length));
    m_record = static_cast<Record>(number);
    const gdsii::RecordName *known = knownTypes[static_cast<std::size_t>(number) >> 8];
    if (!known)
        refuse("the record " + hex(number));
    if (known->record != m_record)
        fail(std::string(known->name) + " with data of type " +
             std::to_string(static_cast<int>(known->record) & 0xFF) + ", found type " +
             std::to_string(number & 0xFF));
    m_size = length - 4;
    m_next = m_at + length;
    if (!read(m_size))
        fail("the " + std::to_string(m_size) + " bytes of " + nameOf(m_record) +
             ", found the end of the file");
}

void RecordReader::expectEnd()
{
    constexpr auto end = std::char_traits<char>::eof();
    for (m_at = m_next;; ++m_at) {
        const auto found = m_stream.sbumpc();
        if (found == end)
            return;
        if (found != 0)
            fail("nothing but zeros behind ENDLIB");
    }
}

// A sign, an exponent to the base of 16 with excess 64, and 56 bits of fraction.
double RecordReader::real(std::size_t index) const
{
    double fraction = 0.0;
    for (std::size_t i = 7; i > 0; --i)
        fraction = (fraction + byte(8 * index + i)) / 256.0;
    const int head = byte(8 * index);
    const double value = std::ldexp(fraction, 4 * ((head & 0x7F) - 64));
    return head & 0x80 ? -value : value;
}

// Texts of an odd length end in a zero.
std::string RecordReader::text() const
{
    std::size_t length = m_size;
    if (length > 0 && m_data[length - 1] == '\0')
        --length;
    std::string found(m_data.data(), length);
    if (found.find('\0') != std::string::npos)
        fail("no zero within the text of " + nameOf(m_record));
    return found;
}

class Reader
{
public:
    Reader(std::istream &stream, const std::string &file, const std::function<void(double)> &report)
        : m_records(stream, file, report), m_file(file)
    {
    }
    GdsImage read();

private:
    void readHead();
    void readUnits();
    void readStructure();
    void readBoundary(Record type, GdsStructure &structure);
    void readPath(GdsStructure &structure);
    void readText(GdsStructure &structure);
    void readNode();
    void readReference(bool isArray, GdsStructure &structure);
    void readElementEnd();

    void skipFlags();
    bool skip(Record record);
    void take(Record record, std::size_t size);
    GdsLayer readLayer(Record typeRecord);
    double positiveReal(const char *what);
    void readTransformation(GdsReference &reference);
    std::size_t structureNumber(const std::string &name);
    void linkStructures();
    std::vector<std::size_t> sortStructures();
    void refuseKeptWidths(const std::vector<std::size_t> &sorted) const;
    double reach(const GdsStructure &structure, const std::vector<double> &reaches) const;
    [[noreturn]] void fail(const std::string &expected) const
    {
        throw Error(m_file + ": expected " + expected);
    }

    bool isAt(Record record) const { return m_records.record() == record; }

    RecordReader m_records;
    const std::string &m_file;
    GdsImage m_image;
    std::unordered_map<std::string, std::size_t> m_numbers; // of the structures
    std::vector<bool> m_isDefined;
    std::vector<std::size_t> m_order; // the structures as they stand in the file
};

GdsImage Reader::read()
{
    readHead();
    while (isAt(Record::BGNSTR))
        readStructure();
    if (!isAt(Record::ENDLIB))
        m_records.failOrder("BGNSTR or ENDLIB");
    m_records.expectSize(0);
    m_records.expectEnd();
    linkStructures();
    return std::move(m_image);
}

void Reader::take(Record record, std::size_t size)
{
    m_records.expect(record);
    m_records.expectSize(size);
}

// A record that may be there and changes nothing of the picture.
bool Reader::skip(Record record)
{
    if (!isAt(record))
        return false;
    m_records.next();
    return true;
}

void Reader::readHead()
{
    take(Record::HEADER, 2);
    m_image.version = m_records.integer16(0);
    m_records.next();
    m_records.expect(Record::BGNLIB);
    m_records.next();
    for (const Record record : {Record::LIBDIRSIZE, Record::SRFNAME, Record::LIBSECUR})
        skip(record);
    m_records.expect(Record::LIBNAME);
    m_image.library = m_records.text();
    m_records.next();
    for (const Record record : {Record::REFLIBS, Record::FONTS, Record::ATTRTABLE, Record::GENERATIONS})
        skip(record);
    if (skip(Record::FORMAT) && isAt(Record::MASK)) {
        while (skip(Record::MASK)) {
        }
        m_records.expect(Record::ENDMASKS);
        m_records.next();
    }
    readUnits();
}

// A database unit in user units, and in metres; only the latter means something outside of the program that
// wrote the file.
void Reader::readUnits()
{
    take(Record::UNITS, 16);
    const double userUnits = m_records.real(0), metres = m_records.real(1);
    constexpr double largest = 1.0; // metres; also keeps the nanometres of all coordinates finite
    if (!(userUnits > 0.0) || !(metres > 0.0) || metres > largest)
        m_records.fail("a database unit above 0 and up to a metre");
    m_image.unit = metres * 1e9;
    m_records.next();
}

std::size_t Reader::structureNumber(const std::string &name)
{
    const auto [found, isNew] = m_numbers.emplace(name, m_image.structures.size());
    if (isNew) {
        m_image.structures.emplace_back();
        m_image.structures.back().name = name;
        m_isDefined.push_back(false);
    }
    return found->second;
}

void Reader::readStructure()
{
    m_records.next();
    m_records.expect(Record::STRNAME);
    const std::string name = m_records.text();
    if (name.empty())
        m_records.fail("a name for the structure");
    const std::size_t number = structureNumber(name);
    if (m_isDefined[number])
        m_records.fail("one structure of the name \"" + name + "\", found a second");
    m_isDefined[number] = true;
    m_order.push_back(number);
    m_records.next();
    skip(Record::STRCLASS);
    // References make structures: no reference into their list is held meanwhile.
    GdsStructure structure;
    structure.name = name;
    while (!isAt(Record::ENDSTR)) {
        const Record element = m_records.record();
        switch (element) {
        case Record::BOUNDARY:
        case Record::BOX:
            readBoundary(element, structure);
            break;
        case Record::PATH:
            readPath(structure);
            break;
        case Record::TEXT:
            readText(structure);
            break;
        case Record::NODE:
            readNode();
            break;
        case Record::SREF:
        case Record::AREF:
            readReference(element == Record::AREF, structure);
            break;
        default:
            m_records.failOrder("an element or ENDSTR");
        }
        readElementEnd();
    }
    m_records.expectSize(0);
    m_records.next();
    m_image.structures[number] = std::move(structure);
}

// Every element begins with them.
void Reader::skipFlags()
{
    m_records.expectSize(0);
    m_records.next();
    skip(Record::ELFLAGS);
    skip(Record::PLEX);
}

// Properties are texts for programs.
void Reader::readElementEnd()
{
    while (skip(Record::PROPATTR)) {
        m_records.expect(Record::PROPVALUE);
        m_records.next();
    }
    take(Record::ENDEL, 0);
    m_records.next();
}

GdsLayer Reader::readLayer(Record typeRecord)
{
    GdsLayer on;
    take(Record::LAYER, 2);
    on.layer = m_records.unsigned16(0);
    m_records.next();
    take(typeRecord, 2);
    on.datatype = m_records.unsigned16(0);
    m_records.next();
    return on;
}

void Reader::readBoundary(Record type, GdsStructure &structure)
{
    skipFlags();
    GdsBoundary boundary;
    boundary.on = readLayer(type == Record::BOX ? Record::BOXTYPE : Record::DATATYPE);
    m_records.expect(Record::XY);
    const std::size_t count = m_records.size() / 8;
    const bool isWhole = m_records.size() % 8 == 0;
    if (!isWhole || count < 4 || m_records.point(0) != m_records.point(count - 1))
        m_records.fail("four points or more, the last one equal to the first");
    if (type == Record::BOX && count != 5)
        m_records.fail("five points in a box");
    boundary.first = structure.corners.size();
    boundary.count = static_cast<std::uint32_t>(count - 1);
    for (std::size_t i = 0; i + 1 < count; ++i)
        structure.corners.push_back(m_records.point(i));
    structure.boundaries.push_back(boundary);
    m_records.next();
}

void Reader::readPath(GdsStructure &structure)
{
    skipFlags();
    GdsPath path;
    path.on = readLayer(Record::DATATYPE);
    if (isAt(Record::PATHTYPE)) {
        m_records.expectSize(2);
        switch (m_records.integer16(0)) {
        case 0:
            break;
        case 1:
            path.ends = GdsPath::Ends::Round;
            break;
        case 2:
            path.ends = GdsPath::Ends::HalfWidth;
            break;
        case 4:
            path.ends = GdsPath::Ends::Given;
            break;
        default:
            m_records.fail("a path type of 0, 1, 2 or 4, found " + std::to_string(m_records.integer16(0)));
        }
        m_records.next();
    }
    if (isAt(Record::WIDTH)) {
        m_records.expectSize(4);
        const std::int64_t width = m_records.integer32(0);
        path.keepsWidth = width < 0;
        path.width = std::abs(width);
        m_records.next();
    }
    for (const Record record : {Record::BGNEXTN, Record::ENDEXTN}) {
        if (!isAt(record))
            continue;
        m_records.expectSize(4);
        (record == Record::BGNEXTN ? path.beginBeyond : path.endBeyond) = m_records.integer32(0);
        m_records.next();
    }
    m_records.expect(Record::XY);
    const std::size_t count = m_records.size() / 8;
    if (m_records.size() % 8 != 0 || count < 2)
        m_records.fail("two points or more of a path");
    for (std::size_t i = 0; i < count; ++i)
        path.points.push_back(m_records.point(i));
    structure.paths.push_back(std::move(path));
    m_records.next();
}

void Reader::readText(GdsStructure &structure)
{
    skipFlags();
    GdsText text;
    text.on = readLayer(Record::TEXTTYPE);
    for (const Record record : {Record::PRESENTATION, Record::PATHTYPE, Record::WIDTH})
        skip(record);
    GdsReference unused;
    readTransformation(unused);
    take(Record::XY, 8);
    text.at = m_records.point(0);
    m_records.next();
    m_records.expect(Record::STRING);
    text.text = m_records.text();
    m_records.next();
    structure.texts.push_back(std::move(text));
}

// Points of an electrical net: no picture.
void Reader::readNode()
{
    skipFlags();
    readLayer(Record::NODETYPE);
    m_records.expect(Record::XY);
    m_records.next();
}

double Reader::positiveReal(const char *what)
{
    m_records.expectSize(8);
    const double value = m_records.real(0);
    if (!(value > 0.0))
        m_records.fail(std::string(what) + " above 0");
    return value;
}

void Reader::readTransformation(GdsReference &reference)
{
    if (!isAt(Record::STRANS))
        return;
    m_records.expectSize(2);
    const int bits = m_records.unsigned16(0);
    if (bits & (absoluteMagnification | absoluteAngle))
        m_records.refuse("an absolute magnification or angle");
    reference.mirror = (bits & mirrored) != 0;
    m_records.next();
    if (isAt(Record::MAG)) {
        reference.magnification = positiveReal("a magnification");
        m_records.next();
    }
    if (isAt(Record::ANGLE)) {
        m_records.expectSize(8);
        reference.angle = std::fmod(m_records.real(0), 360.0);
        m_records.next();
    }
}

void Reader::readReference(bool isArray, GdsStructure &structure)
{
    skipFlags();
    GdsReference reference;
    m_records.expect(Record::SNAME);
    reference.structure = structureNumber(m_records.text());
    m_records.next();
    readTransformation(reference);
    if (isArray) {
        take(Record::COLROW, 4);
        reference.columns = m_records.integer16(0);
        reference.rows = m_records.integer16(1);
        if (reference.columns < 1 || reference.rows < 1)
            m_records.fail("at least one column and one row");
        m_records.next();
    }
    take(Record::XY, isArray ? 24 : 8);
    reference.at = m_records.point(0);
    if (isArray) {
        reference.columnsEnd = m_records.point(1);
        reference.rowsEnd = m_records.point(2);
    }
    structure.references.push_back(reference);
    m_records.next();
}

// Every structure that is referred to is there, none lies within itself, and each knows how much it holds.
void Reader::linkStructures()
{
    std::vector<GdsStructure> &structures = m_image.structures;
    for (std::size_t i = 0; i < structures.size(); ++i) {
        if (!m_isDefined[i])
            fail("a structure \"" + structures[i].name + "\", which others refer to");
    }
    const std::vector<std::size_t> sorted = sortStructures();
    refuseKeptWidths(sorted);
    std::vector<double> reaches(structures.size(), 0.0);
    for (auto number = sorted.rbegin(); number != sorted.rend(); ++number) {
        GdsStructure &structure = structures[*number];
        structure.shapesInAll = static_cast<double>(structure.boundaries.size() + structure.paths.size());
        for (const GdsReference &reference : structure.references)
            structure.shapesInAll +=
                structures[reference.structure].shapesInAll * reference.columns * reference.rows;
        reaches[*number] = reach(structure, reaches);
        if (!(reaches[*number] <= farthest))
            fail("places within 2^53 database units, found the structure \"" + structure.name +
                 "\" reaching beyond");
    }
}

// Parents before children; sets the tops.
std::vector<std::size_t> Reader::sortStructures()
{
    const std::vector<GdsStructure> &structures = m_image.structures;
    std::vector<std::size_t> parents(structures.size(), 0), level(structures.size(), 0);
    for (const GdsStructure &structure : structures) {
        for (const GdsReference &reference : structure.references)
            ++parents[reference.structure];
    }
    for (const std::size_t number : m_order) {
        if (parents[number] == 0)
            m_image.tops.push_back(number);
    }
    std::vector<std::size_t> sorted = m_image.tops;
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        const std::size_t parent = sorted[i];
        if (level[parent] > deepest)
            fail("at most " + std::to_string(deepest) + " levels of structures in each other");
        for (const GdsReference &reference : structures[parent].references) {
            level[reference.structure] = std::max(level[reference.structure], level[parent] + 1);
            if (--parents[reference.structure] == 0)
                sorted.push_back(reference.structure);
        }
    }
    const auto circle = std::find_if(parents.begin(), parents.end(), [](std::size_t n) { return n > 0; });
    if (circle != parents.end())
        fail("no structure that contains itself, found \"" +
             structures[static_cast<std::size_t>(circle - parents.begin())].name + "\" in a circle");
    return sorted;
}

// A width that magnification does not change would make a path another shape in each place.
void Reader::refuseKeptWidths(const std::vector<std::size_t> &sorted) const
{
    std::vector<bool> isMagnified(m_image.structures.size(), false);
    for (const std::size_t number : sorted) {
        const GdsStructure &structure = m_image.structures[number];
        for (const GdsPath &path : structure.paths) {
            if (path.keepsWidth && isMagnified[number])
                fail("nothing of a path of absolute width in a magnified structure (\"" + structure.name +
                     "\"), which is not supported");
        }
        for (const GdsReference &reference : structure.references) {
            if (isMagnified[number] || reference.magnification != 1.0)
                isMagnified[reference.structure] = true;
        }
    }
}

// No place of the structure is farther from its origin. `reaches`: of the structures that it refers to.
double Reader::reach(const GdsStructure &structure, const std::vector<double> &reaches) const
{
    const auto fromOrigin = [](GridPoint p) {
        return std::hypot(static_cast<double>(p.x), static_cast<double>(p.y));
    };
    double most = 0.0;
    for (const GridPoint corner : structure.corners)
        most = std::max(most, fromOrigin(corner));
    for (const GdsPath &path : structure.paths) {
        const auto beyond =
            static_cast<double>(path.width + std::abs(path.beginBeyond) + std::abs(path.endBeyond));
        for (const GridPoint p : path.points)
            most = std::max(most, fromOrigin(p) + beyond);
    }
    for (const GdsReference &reference : structure.references) {
        const double places =
            2.0 * fromOrigin(reference.at) + fromOrigin(reference.columnsEnd) + fromOrigin(reference.rowsEnd);
        most = std::max(most, 2.0 * places + reference.magnification * reaches[reference.structure]);
    }
    return most;
}

} // namespace

GdsImage readGds(std::istream &stream, const std::string &file, const std::function<void(double)> &report)
{
    GdsImage image = Reader(stream, file, report).read();
    report(1.0);
    return image;
}

GdsImage readGdsFile(const std::filesystem::path &file, const std::function<void(double)> &report)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw Error(file.u8string() + ": cannot be opened");
    try {
        return readGds(stream, file.u8string(), report);
    } catch (const std::ios_base::failure &) { // of a read; it names no file
        throw Error(file.u8string() + ": cannot be read");
    }
}

} // namespace cam
