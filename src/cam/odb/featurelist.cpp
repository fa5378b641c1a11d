#include "cam/odb/featurelist.h"

#include "cam/base/numbers.h"

#include <algorithm>

namespace cam {

namespace {

std::string_view withoutBlanksBefore(std::string_view text)
{
    return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
}

std::string_view takeWord(std::string_view &text)
{
    text = withoutBlanksBefore(text);
    const std::string_view word = text.substr(0, text.find_first_of(" \t"));
    text.remove_prefix(word.size());
    return word;
}

// Where the texts of a record end, which may hold semicolons themselves.
std::size_t endOfText(std::string_view line)
{
    std::size_t close = line.rfind('\'');
    while (close != std::string_view::npos && close > 0) {
        const std::size_t next = line.find_first_not_of(" \t0123456789", close + 1);
        if (next == std::string_view::npos || line[next] == ';')
            return close;
        close = line.rfind('\'', close - 1);
    }
    return std::string_view::npos;
}

class Walk
{
public:
    explicit Walk(const FeatureListVisit &visit) : m_visit(visit) {}

    bool take(const TextLine &line);

private:
    bool takeFeature(const TextLine &line, std::string_view record);
    void takeSymbol(std::string_view line);
    std::string_view symbolOf(char kind, std::string_view record) const;

    const FeatureListVisit &m_visit;
    AttributeTable m_table;
    std::vector<std::string> m_symbols;
    std::uint32_t m_recordCount = 0;
    bool m_isInSurface = false;
};

bool Walk::take(const TextLine &line)
{
    const std::string_view record = withoutBlanksBefore(line.text);
    if (record.empty())
        return true;
    if (m_isInSurface) {
        m_isInSurface = record.substr(0, 2) != "SE";
        return true;
    }
    const bool isRecord = record.size() > 1 && (record[1] == ' ' || record[1] == '\t');
    constexpr std::string_view kinds = "LPATBS";
    if (isRecord && kinds.find(record[0]) != std::string_view::npos)
        return takeFeature(line, record);
    if (record[0] == '$')
        takeSymbol(record.substr(1));
    else
        m_table.take(record);
    return true;
}

void Walk::takeSymbol(std::string_view line)
{
    constexpr std::size_t largestGap = 100'000;
    const auto number = toInteger(takeWord(line));
    if (!number || *number < 0 || static_cast<std::size_t>(*number) > m_symbols.size() + largestGap)
        return;
    const auto index = static_cast<std::size_t>(*number);
    m_symbols.resize(std::max(m_symbols.size(), index + 1));
    m_symbols[index] = std::string(takeWord(line));
}

std::string_view Walk::symbolOf(char kind, std::string_view record) const
{
    const int wordsBefore = kind == 'L' ? 4 : kind == 'P' ? 2 : kind == 'A' ? 6 : -1;
    if (wordsBefore < 0)
        return {};
    for (int i = 0; i < wordsBefore; ++i)
        takeWord(record);
    auto number = toInteger(takeWord(record));
    if (number == -1) // a resized pad
        number = toInteger(takeWord(record));
    const bool isListed = number && *number >= 0 && static_cast<std::size_t>(*number) < m_symbols.size();
    return isListed ? std::string_view(m_symbols[static_cast<std::size_t>(*number)]) : std::string_view();
}

bool Walk::takeFeature(const TextLine &line, std::string_view record)
{
    ListedFeature feature;
    feature.source = {m_recordCount++, static_cast<std::uint32_t>(line.number)};
    feature.kind = record[0];
    if (feature.kind == 'T' || feature.kind == 'B') {
        const std::size_t open = record.find('\''), close = endOfText(record);
        if (close != std::string_view::npos && open < close) {
            feature.text = record.substr(open + 1, close - open - 1);
            feature.attributeField = attributeField(record.substr(close));
        } else {
            feature.attributeField = attributeField(record);
        }
    } else {
        feature.attributeField = attributeField(record);
        feature.symbol = symbolOf(feature.kind, record.substr(2));
    }
    m_isInSurface = feature.kind == 'S';
    return m_visit(feature, m_table);
}

} // namespace

void listFeatures(LineReader &lines, const FeatureListVisit &visit, const std::function<void()> &check)
{
    constexpr std::size_t linesPerCheck = 4096;
    Walk walk(visit);
    TextLine line;
    while (lines.next(line)) {
        if (!walk.take(line))
            return;
        if (line.number % linesPerCheck == 0)
            check();
    }
}

} // namespace cam
