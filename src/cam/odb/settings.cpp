#include "cam/odb/settings.h"

#include "cam/base/paths.h"
#include "cam/odb/textfile.h"

#include <cstdint>
#include <fstream>
#include <iterator>

namespace cam {

namespace {

std::string_view trimmed(std::string_view text)
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

int hexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// Qt writes \x with one UTF-16 unit: surrogates do not occur in the alphabets of paths that are expected
// here.
void appendUtf8(std::uint32_t letter, std::string &text)
{
    if (letter < 0x80) {
        text.push_back(static_cast<char>(letter));
    } else if (letter < 0x800) {
        text.push_back(static_cast<char>(0xC0 | (letter >> 6)));
        text.push_back(static_cast<char>(0x80 | (letter & 0x3F)));
    } else {
        text.push_back(static_cast<char>(0xE0 | ((letter >> 12) & 0x0F)));
        text.push_back(static_cast<char>(0x80 | ((letter >> 6) & 0x3F)));
        text.push_back(static_cast<char>(0x80 | (letter & 0x3F)));
    }
}

// Reads the escape behind the backslash at `at`; an unknown one vanishes with its letter, as with Qt.
void readEscape(std::string_view raw, std::size_t &at, std::string &text)
{
    constexpr std::string_view letters = "abfnrtv\"?'\\";
    constexpr std::string_view meanings = "\a\b\f\n\r\t\v\"?'\\";
    if (++at >= raw.size())
        return;
    const std::size_t known = letters.find(raw[at]);
    if (known != std::string_view::npos) {
        text.push_back(meanings[known]);
        return;
    }
    if (raw[at] != 'x')
        return;
    std::uint32_t letter = 0;
    while (at + 1 < raw.size() && hexDigit(raw[at + 1]) >= 0 && letter < 0x1000)
        letter = letter * 16 + static_cast<std::uint32_t>(hexDigit(raw[++at]));
    appendUtf8(letter, text);
}

// A comma outside quotes makes a list of the value, which is no text.
std::string unescaped(std::string_view raw)
{
    std::string text;
    bool isQuoted = false;
    for (std::size_t at = 0; at < raw.size(); ++at) {
        const char c = raw[at];
        if (c == '\\')
            readEscape(raw, at, text);
        else if (c == '"')
            isQuoted = !isQuoted;
        else if (c == ',' && !isQuoted)
            return {};
        else if (c == ';' && !isQuoted)
            break;
        else
            text.push_back(c);
    }
    return text;
}

} // namespace

std::string settingIn(std::string_view text, std::string_view section, std::string_view key)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.substr(0, byteOrderMark.size()) == byteOrderMark)
        text.remove_prefix(byteOrderMark.size());
    std::string current, value;
    LineReader lines(text);
    TextLine line;
    while (lines.next(line)) {
        const std::string_view content = trimmed(line.text);
        if (content.empty() || content[0] == ';' || content[0] == '#')
            continue;
        if (content.front() == '[' && content.back() == ']') {
            current = lowerCase(trimmed(content.substr(1, content.size() - 2)));
            continue;
        }
        const std::size_t equals = content.find('=');
        if (equals == std::string_view::npos || current != lowerCase(section))
            continue;
        if (lowerCase(trimmed(content.substr(0, equals))) == lowerCase(key))
            value = unescaped(trimmed(content.substr(equals + 1)));
    }
    return value;
}

std::string readSetting(std::string_view section, std::string_view key)
{
    std::ifstream file("oxconfig.ini", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return settingIn(text, section, key);
}

} // namespace cam
