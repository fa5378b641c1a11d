// Walks the blank-separated fields of one line.
#pragma once

#include "cam/base/error.h"
#include "cam/base/numbers.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace cam {

class Fields
{
public:
    // `file` must outlive the walk.
    Fields(std::string_view line, std::size_t number, const std::string &file)
        : m_at(line.data()), m_end(line.data() + line.size()), m_number(number), m_file(file)
    {
    }

    // The next field; empty at the end of the line.
    std::string_view word()
    {
        skipBlanks();
        const char *const begin = m_at;
        while (m_at != m_end && !isBlank(*m_at))
            ++m_at;
        return {begin, static_cast<std::size_t>(m_at - begin)};
    }

    // `what` names the field in the message of the FormatError that anything but a number raises.
    double number(const char *what)
    {
        skipBlanks();
        double value = 0.0;
        if (!readNumber(m_at, m_end, value) || (m_at != m_end && !isBlank(*m_at)))
            fail(what);
        return value;
    }

    int integer(const char *what)
    {
        const auto value = toInteger(word());
        if (!value)
            fail(what);
        return *value;
    }

    // One of the two capitals `yes` and `no`, or their small letters; true for `yes`.
    bool letter(char yes, char no, const char *what)
    {
        const std::string_view field = word();
        const char letter = field.size() == 1 ? capital(field[0]) : '\0';
        if (letter != yes && letter != no)
            fail(what);
        return letter == yes;
    }

    bool atEnd()
    {
        skipBlanks();
        return m_at == m_end;
    }

    // Everything behind the fields walked so far.
    std::string_view rest()
    {
        skipBlanks();
        return {m_at, static_cast<std::size_t>(m_end - m_at)};
    }

    [[noreturn]] void fail(const char *expected) const { throw FormatError(m_file, m_number, expected); }

private:
    static char capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
    static bool isBlank(char c) { return c == ' ' || c == '\t'; }
    void skipBlanks()
    {
        while (m_at != m_end && isBlank(*m_at))
            ++m_at;
    }

    const char *m_at;
    const char *m_end;
    std::size_t m_number;
    const std::string &m_file;
};

} // namespace cam
