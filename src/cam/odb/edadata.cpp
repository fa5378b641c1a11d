#include "cam/odb/edadata.h"

#include "cam/base/paths.h"
#include "cam/odb/fields.h"
#include "cam/odb/lengthunit.h"

#include <algorithm>
#include <cmath>

namespace cam {

namespace {

bool comesBefore(const NetFeature &a, const NetFeature &b)
{
    return a.layer != b.layer ? a.layer < b.layer : a.feature < b.feature;
}

class Reader
{
public:
    Reader(const std::string &file, LengthUnit unit, const AttributeTypes &types)
        : m_file(file), m_types(types), m_unit(nanometresPer(unit))
    {
    }

    EdaData read(LineReader &lines, const std::function<void()> &check);

private:
    // What the records below a NET, PKG or FGR belong to.
    enum class Part { None, Net, Package, Pin, Other };

    void readLine(const TextLine &line);
    void readNet(Fields &fields, std::string_view attributes);
    void readFeature(Fields &fields);
    void readPackage(Fields &fields);
    void readPin(Fields &fields);
    void readOutline(std::string_view word, Fields &fields);
    Point readPoint(Fields &fields, const char *what);
    double readLength(Fields &fields, const char *what);

    const std::string &m_file;
    const AttributeTypes &m_types;
    double m_unit; // nanometres
    AttributeTable m_table;
    Part m_part = Part::None;
    bool m_isInContour = false;
    ContourPool m_pinOutline; // nobody asks for it, but its records are as exact as a package's
    EdaData m_result;
};

EdaData Reader::read(LineReader &lines, const std::function<void()> &check)
{
    constexpr std::size_t linesPerCheck = 4096;
    TextLine line;
    while (lines.next(line)) {
        readLine(line);
        if (line.number % linesPerCheck == 0)
            check();
    }
    if (m_isInContour)
        throw FormatError(m_file, line.number, "OE, the end of the last contour, before the end of the file");
    std::stable_sort(m_result.features.begin(), m_result.features.end(), comesBefore);
    return std::move(m_result);
}

bool isEdge(std::string_view word)
{
    return word == "OS" || word == "OC" || word == "OE";
}

void Reader::readLine(const TextLine &line)
{
    if (m_table.take(line.text))
        return;
    const std::string_view record = line.text.substr(0, line.text.find(';'));
    Fields fields(record, line.number, m_file);
    const std::string_view word = fields.word();
    if (word.empty() || word[0] == '#')
        return;
    // Another record would go on with another outline, or leave this one open.
    if (m_isInContour && !isEdge(word))
        fields.fail("OS, OC or OE inside a contour");
    if (word == "NET") {
        readNet(fields, attributeField(line.text));
    } else if (word == "SNT") {
        if (m_part != Part::Net)
            fields.fail("NET before SNT");
    } else if (word == "FID") {
        readFeature(fields);
    } else if (word == "PKG") {
        readPackage(fields);
    } else if (word == "PIN") {
        readPin(fields);
    } else if (word == "LYR") {
        for (std::string_view name = fields.word(); !name.empty(); name = fields.word())
            m_result.layers.push_back(lowerCase(name));
    } else if (word == "FGR") {
        m_part = Part::Other;
    } else if (word == "U") {
        m_unit = nanometresPer(lengthUnit(fields.word(), fields));
    } else if (lowerCase(word.substr(0, 6)) == "units=") {
        m_unit = nanometresPer(lengthUnit(word.substr(6), fields));
    } else {
        readOutline(word, fields);
    }
}

double Reader::readLength(Fields &fields, const char *what)
{
    constexpr double farthest = 100e9; // nanometres: no board is larger
    const double length = fields.number(what) * m_unit;
    if (std::fabs(length) > farthest)
        fields.fail("a position or size below 100 metres");
    return length;
}

Point Reader::readPoint(Fields &fields, const char *what)
{
    const double x = readLength(fields, what);
    return {x, readLength(fields, what)};
}

// "NET name"
void Reader::readNet(Fields &fields, std::string_view attributes)
{
    const std::string_view name = fields.word();
    if (name.empty())
        fields.fail("a name after NET");
    m_result.nets.push_back({std::string(name), m_table.read(attributes, m_types)});
    m_part = Part::Net;
}

// "FID type layer feature"; below an FGR, which groups features that make up a text, it says nothing of nets.
void Reader::readFeature(Fields &fields)
{
    if (m_part == Part::Other)
        return;
    if (m_part != Part::Net)
        fields.fail("NET before FID");
    fields.word(); // copper, laminate or hole
    const int layer = fields.integer("the number of a layer");
    const int feature = fields.integer("the number of a feature");
    if (layer < 0 || feature < 0 || static_cast<std::size_t>(layer) >= m_result.layers.size())
        return; // of a layer that the job does not have, which is no matter
    m_result.features.push_back({static_cast<std::uint32_t>(m_result.nets.size() - 1),
                                 static_cast<std::uint32_t>(layer), static_cast<std::uint32_t>(feature)});
}

// "PKG name pitch xmin ymin xmax ymax"
void Reader::readPackage(Fields &fields)
{
    Package package;
    package.name = std::string(fields.word());
    if (package.name.empty())
        fields.fail("a name after PKG");
    fields.number("the pitch of the package's pins");
    package.box.add(readPoint(fields, "a number for the package's lower left corner"));
    package.box.add(readPoint(fields, "a number for the package's upper right corner"));
    m_result.packages.push_back(std::move(package));
    m_part = Part::Package;
}

// "PIN name type x y ..."
void Reader::readPin(Fields &fields)
{
    if (m_part != Part::Package && m_part != Part::Pin)
        fields.fail("PKG before PIN");
    PackagePin pin;
    pin.name = std::string(fields.word());
    fields.word(); // through hole, surface, blind
    pin.at = readPoint(fields, "a number for the pin's position");
    m_result.packages.back().pins.push_back(std::move(pin));
    m_part = Part::Pin;
    m_pinOutline.clear();
}

// The records of an outline: a rectangle, a square, a circle, or contours between CT and CE. Those before the
// first PIN are the package's.
void Reader::readOutline(std::string_view word, Fields &fields)
{
    if (m_part != Part::Package && m_part != Part::Pin)
        return;
    ContourPool &outline = m_part == Part::Package ? m_result.packages.back().outline : m_pinOutline;
    if (isEdge(word) && !m_isInContour)
        fields.fail("OB before OS, OC and OE");
    const auto addBox = [&outline](Point low, Point high) {
        const Point corners[] = {low, {high.x, low.y}, high, {low.x, high.y}};
        outline.addPolygon(corners, 4, false);
    };
    if (word == "RC") {
        const Point low = readPoint(fields, "a number for the rectangle's lower left corner");
        addBox(low, low + readPoint(fields, "a number for the rectangle's size"));
    } else if (word == "SQ") {
        const Point center = readPoint(fields, "a number for the square's centre");
        const double half = readLength(fields, "half the side of the square");
        addBox(center - Point{half, half}, center + Point{half, half});
    } else if (word == "CR") {
        const Point center = readPoint(fields, "a number for the circle's centre");
        outline.addCircle(center, std::fabs(readLength(fields, "the circle's radius")), false);
    } else if (word == "OB") {
        const Point start = readPoint(fields, "a number for the start of the contour");
        outline.begin(start, fields.letter('H', 'I', "the contour's kind, I (island) or H (hole)"));
        m_isInContour = true;
    } else if (word == "OS") {
        outline.lineTo(readPoint(fields, "a number for the end of the edge"));
    } else if (word == "OC") {
        const Point end = readPoint(fields, "a number for the end of the arc");
        const Point center = readPoint(fields, "a number for the centre of the arc");
        outline.arcTo(end, center, fields.letter('Y', 'N', "the arc's direction, Y (clockwise) or N"));
    } else if (word == "OE") {
        outline.end();
        m_isInContour = false;
    }
}

} // namespace

const Net *EdaData::netOf(std::string_view layer, std::uint32_t feature) const
{
    const auto known = std::find(layers.begin(), layers.end(), layer);
    if (known == layers.end())
        return nullptr;
    const NetFeature wanted{0, static_cast<std::uint32_t>(known - layers.begin()), feature};
    const auto found = std::lower_bound(features.begin(), features.end(), wanted, comesBefore);
    if (found == features.end() || found->layer != wanted.layer || found->feature != feature)
        return nullptr;
    return &nets[found->net];
}

EdaData readEdaData(LineReader &lines, const std::string &file, LengthUnit defaultUnit,
                    const AttributeTypes &types, const std::function<void()> &check)
{
    return Reader(file, defaultUnit, types).read(lines, check);
}

} // namespace cam
