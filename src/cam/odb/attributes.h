// Attributes of features, components and nets: what stands behind the ";" of their lines, put into words.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace cam {

struct Attribute
{
    std::string name;
    std::string value; // empty for one that is only there or not
};

// What the numbers of an attribute mean, by its name.
class AttributeTypes
{
public:
    // Those of the format's own attributes whose values are texts or options.
    AttributeTypes();

    // Adds the definitions of a file such as misc/sysattr or misc/userattr. Throws FormatError for a text
    // that holds none.
    void add(std::string_view text, const std::string &file);

    struct Type
    {
        bool isText = false;              // the value is a number of the file's table of texts
        std::vector<std::string> options; // the value is a number of one of them
    };
    // Null where the value speaks for itself.
    const Type *find(std::string_view name) const;

private:
    std::map<std::string, Type, std::less<>> m_types; // by name in lower case
};

// The names and texts that a file lists once, for the numbers that its records hold.
class AttributeTable
{
public:
    // Takes a line "@7 .smd" or "&3 some text", with or without "#" before it. False for any other line.
    bool take(std::string_view line);

    // `field` is what follows the first ";" of a record: "7,0=3;ID=12". A part that names no listed attribute
    // is left out, and so is the identifier. A number of a text that the file does not list stays a number.
    std::vector<Attribute> read(std::string_view field, const AttributeTypes &types) const;

private:
    std::vector<std::string> m_names, m_texts;
};

// What stands behind the first ";" of a record, without blanks at its ends; empty where there is none.
std::string_view attributeField(std::string_view record);

} // namespace cam
