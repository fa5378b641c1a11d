#include "cam/odb/components.h"

#include "cam/base/paths.h"
#include "cam/odb/fields.h"
#include "cam/odb/lengthunit.h"

#include <cmath>

namespace cam {

namespace {

class Reader
{
public:
    Reader(const std::string &file, LengthUnit unit, const AttributeTypes &types)
        : m_file(file), m_types(types), m_unit(nanometresPer(unit))
    {
    }

    std::vector<Component> read(LineReader &lines, const std::function<void()> &check);

private:
    void readLine(const TextLine &line);
    void readComponent(Fields &fields, const TextLine &line);
    void readToeprint(Fields &fields);
    void readProperty(Fields &fields);
    Point readPoint(Fields &fields, const char *what);

    const std::string &m_file;
    const AttributeTypes &m_types;
    double m_unit; // nanometres
    AttributeTable m_table;
    std::vector<Component> m_result;
};

std::vector<Component> Reader::read(LineReader &lines, const std::function<void()> &check)
{
    constexpr std::size_t linesPerCheck = 4096;
    TextLine line;
    while (lines.next(line)) {
        readLine(line);
        if (line.number % linesPerCheck == 0)
            check();
    }
    return std::move(m_result);
}

void Reader::readLine(const TextLine &line)
{
    if (m_table.take(line.text))
        return;
    // The text of a property may hold a semicolon.
    const bool isProperty = line.text.substr(0, 4) == "PRP ";
    Fields fields(isProperty ? line.text : line.text.substr(0, line.text.find(';')), line.number, m_file);
    const std::string_view word = fields.word();
    if (word == "CMP")
        readComponent(fields, line);
    else if (word == "TOP")
        readToeprint(fields);
    else if (word == "PRP")
        readProperty(fields);
    else if (word == "U")
        m_unit = nanometresPer(lengthUnit(fields.word(), fields));
    else if (lowerCase(word.substr(0, 6)) == "units=")
        m_unit = nanometresPer(lengthUnit(word.substr(6), fields));
}

Point Reader::readPoint(Fields &fields, const char *what)
{
    constexpr double farthest = 100e9; // nanometres: no board is larger
    const double x = fields.number(what);
    const Point point = Point{x, fields.number(what)} * m_unit;
    if (std::fabs(point.x) > farthest || std::fabs(point.y) > farthest)
        fields.fail("a position below 100 metres");
    return point;
}

std::optional<std::uint32_t> toIndex(int number)
{
    return number < 0 ? std::nullopt : std::optional<std::uint32_t>(static_cast<std::uint32_t>(number));
}

bool readMirror(Fields &fields)
{
    const std::string word = lowerCase(fields.word());
    if (word != "m" && word != "y" && word != "n")
        fields.fail("M (mirrored; some tools write Y) or N");
    return word != "n";
}

// "CMP package x y angle mirror name part"
void Reader::readComponent(Fields &fields, const TextLine &line)
{
    Component component;
    component.line = line.number;
    component.package = toIndex(fields.integer("the number of a package"));
    component.at = readPoint(fields, "a number for the component's position");
    component.angle = std::fmod(fields.number("the component's angle"), 360.0);
    component.isMirrored = readMirror(fields);
    component.name = std::string(fields.word());
    if (component.name.empty())
        fields.fail("the component's name");
    const std::string_view part = fields.rest(); // the format wants one word, which not all names are
    component.part = std::string(part.substr(0, part.find_last_not_of(" \t") + 1));
    component.attributes = m_table.read(attributeField(line.text), m_types);
    m_result.push_back(std::move(component));
}

// "TOP pin x y angle mirror net subnet name"
void Reader::readToeprint(Fields &fields)
{
    if (m_result.empty())
        fields.fail("CMP before TOP");
    fields.integer("the number of a pin");
    Toeprint toeprint;
    toeprint.at = readPoint(fields, "a number for the pin's position");
    fields.word(); // angle
    fields.word(); // mirror
    toeprint.net = toIndex(fields.integer("the number of a net"));
    fields.word(); // number within the net
    toeprint.name = std::string(fields.word());
    m_result.back().toeprints.push_back(std::move(toeprint));
}

// "PRP name 'text' number ..."
void Reader::readProperty(Fields &fields)
{
    if (m_result.empty())
        return; // some tools describe the layer so
    const std::string_view name = fields.word();
    std::string_view text = fields.rest();
    if (text.empty() || text[0] != '\'')
        return;
    const std::size_t close = text.rfind('\'');
    text = close == 0 ? text.substr(1) : text.substr(1, close - 1);
    m_result.back().properties.push_back({std::string(name), std::string(text)});
}

} // namespace

Transform placement(const Component &component, bool isBottom)
{
    Transform map = Transform::rotation(-component.angle);
    if (isBottom || component.isMirrored)
        map = map.then(Transform::mirrorX());
    return map.then(Transform::translation(component.at));
}

std::vector<Component> readComponents(LineReader &lines, const std::string &file, LengthUnit defaultUnit,
                                      const AttributeTypes &types, const std::function<void()> &check)
{
    return Reader(file, defaultUnit, types).read(lines, check);
}

} // namespace cam
