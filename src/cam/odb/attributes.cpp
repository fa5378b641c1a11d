#include "cam/odb/attributes.h"

#include "cam/base/numbers.h"
#include "cam/base/paths.h"
#include "cam/odb/structuredtext.h"

#include <algorithm>
#include <optional>

namespace cam {

namespace {

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::vector<std::string> split(std::string_view text, char separator)
{
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        parts.emplace_back(trimmed(text.substr(begin, end - begin)));
        begin = end + 1;
    }
    return parts;
}

// The number that `text` begins with, taken off it.
std::optional<std::size_t> takeNumber(std::string_view &text)
{
    constexpr std::size_t most = 10'000'000;
    const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
    const auto number = toInteger(text.substr(0, end));
    if (!number || static_cast<std::size_t>(*number) > most)
        return std::nullopt;
    text.remove_prefix(end);
    return static_cast<std::size_t>(*number);
}

void put(std::vector<std::string> &table, std::size_t number, std::string_view text)
{
    constexpr std::size_t largestGap = 100'000;
    if (number > table.size() + largestGap)
        return;
    if (number >= table.size())
        table.resize(number + 1);
    table[number] = std::string(text);
}

} // namespace

AttributeTypes::AttributeTypes()
{
    for (const char *text : {".bit", ".comment", ".diff_pair", ".electrical_class", ".fiducial_name",
                             ".geometry", ".net_type", ".string"})
        m_types[text].isText = true;
    m_types[".comp_mount_type"].options = {"other", "smt", "thmt", "pressfit"};
    m_types[".drill"].options = {"plated", "non_plated", "via"};
    m_types[".pad_usage"].options = {"toeprint",   "via",          "g_fiducial",
                                     "l_fiducial", "tooling_hole", "bond_finger"};
}

void AttributeTypes::add(std::string_view text, const std::string &file)
{
    for (const StructuredBlock &block : parseStructuredText(text, file).blocks) {
        const std::string name = lowerCase(block.value("NAME"));
        if (name.empty())
            continue;
        m_types.erase(name);
        if (block.name == "TEXT")
            m_types[name].isText = true;
        else if (block.name == "OPTION")
            m_types[name].options = split(block.value("OPTIONS"), ';');
    }
}

const AttributeTypes::Type *AttributeTypes::find(std::string_view name) const
{
    auto found = m_types.find(name);
    if (found == m_types.end())
        found = m_types.find(lowerCase(name));
    return found == m_types.end() ? nullptr : &found->second;
}

bool AttributeTable::take(std::string_view line)
{
    if (!line.empty() && line[0] == '#')
        line.remove_prefix(1);
    if (line.empty() || (line[0] != '@' && line[0] != '&'))
        return false;
    std::vector<std::string> &table = line[0] == '@' ? m_names : m_texts;
    line.remove_prefix(1);
    const auto number = takeNumber(line);
    if (!number)
        return false;
    put(table, *number, trimmed(line));
    return true;
}

std::vector<Attribute> AttributeTable::read(std::string_view field, const AttributeTypes &types) const
{
    std::vector<Attribute> attributes;
    for (const std::string &part : split(field.substr(0, field.find(';')), ',')) {
        std::string_view rest = part;
        const auto number = takeNumber(rest);
        if (!number || *number >= m_names.size() || m_names[*number].empty())
            continue;
        Attribute attribute{m_names[*number], {}};
        if (!rest.empty() && rest[0] == '=')
            attribute.value = std::string(trimmed(rest.substr(1)));
        const AttributeTypes::Type *type = types.find(attribute.name);
        const auto value = toInteger(attribute.value);
        if (type && value && *value >= 0) {
            const std::vector<std::string> &words = type->isText ? m_texts : type->options;
            if (static_cast<std::size_t>(*value) < words.size())
                attribute.value = words[static_cast<std::size_t>(*value)];
        }
        attributes.push_back(std::move(attribute));
    }
    return attributes;
}

std::string_view attributeField(std::string_view record)
{
    const std::size_t mark = record.find(';');
    return mark == std::string_view::npos ? std::string_view() : trimmed(record.substr(mark + 1));
}

} // namespace cam
