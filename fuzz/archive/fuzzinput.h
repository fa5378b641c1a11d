// Reads numbers and texts out of the bytes that the fuzzer makes up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

class FuzzInput
{
public:
    FuzzInput(const std::uint8_t *data, std::size_t size) : m_data(data), m_size(size) {}

    bool isEmpty() const { return m_size == 0; }

    std::uint8_t byte()
    {
        if (m_size == 0)
            return 0;
        --m_size;
        return *m_data++;
    }

    std::uint64_t number(int bytes)
    {
        std::uint64_t value = 0;
        for (int i = 0; i < bytes; ++i)
            value = value << 8 | byte();
        return value;
    }

    // A text up to the next zero byte. Bytes above 0xF0 stand for characters that names are checked for.
    std::wstring text()
    {
        static const wchar_t special[] = {L'/',      L'.',     L'\\',   L':',      L'\xF05C',
                                          L'\xEF80', L' ',     L'~',    L'\xD800', L'\xDC00',
                                          L'\xFFFF', L'\x131', L'\xA0', L'\x7F',   L'/'};
        std::wstring made;
        while (!isEmpty()) {
            const std::uint8_t next = byte();
            if (next == 0)
                break;
            made += next > 0xF0 ? special[next - 0xF1] : wchar_t(next);
        }
        return made;
    }

private:
    const std::uint8_t *m_data;
    std::size_t m_size;
};
