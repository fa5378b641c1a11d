// Sixty-four pixels at a time.
#include "tests/crosscheck/bitmap.h"

#include <algorithm>

namespace crosscheck {

namespace {

std::size_t bitCount(std::uint64_t word)
{
    std::size_t count = 0;
    for (; word != 0; word &= word - 1)
        ++count;
    return count;
}

// The row with each dark pixel spread to both sides; `flip` inverts the row first.
void spread(const std::uint64_t *row, std::size_t words, std::uint64_t flip,
            std::vector<std::uint64_t> &result)
{
    for (std::size_t i = 0; i < words; ++i) {
        const std::uint64_t here = row[i] ^ flip;
        const std::uint64_t before = i > 0 ? row[i - 1] ^ flip : 0;
        const std::uint64_t after = i + 1 < words ? row[i + 1] ^ flip : 0;
        result[i] |= here | here << 1 | here >> 1 | before >> 63 | after << 63;
    }
}

// Row `y` of `image` (inverted when `flip`), dark where it or one of its eight neighbours is.
void neighbourhood(const Bitmap &image, int y, std::uint64_t flip, std::vector<std::uint64_t> &result)
{
    std::fill(result.begin(), result.end(), 0);
    for (int near = std::max(0, y - 1); near <= std::min(image.height() - 1, y + 1); ++near)
        spread(image.row(near), image.wordsPerRow(), flip, result);
}

} // namespace

Bitmap::Bitmap(int width, int height)
    : m_width(width), m_height(height), m_words(static_cast<std::size_t>(width + 63) / 64),
      m_bits(m_words * static_cast<std::size_t>(height), 0)
{
}

void Bitmap::fill(int y, std::int64_t first, std::int64_t end, bool dark)
{
    first = std::max<std::int64_t>(first, 0);
    end = std::min<std::int64_t>(end, m_width);
    if (y < 0 || y >= m_height || first >= end)
        return;
    std::uint64_t *bits = row(y);
    for (std::int64_t word = first / 64; word <= (end - 1) / 64; ++word) {
        const std::int64_t low = std::max<std::int64_t>(first - word * 64, 0);
        const std::int64_t high = std::min<std::int64_t>(end - word * 64, 64);
        const std::uint64_t upTo = high == 64 ? ~std::uint64_t(0) : (std::uint64_t(1) << high) - 1;
        const std::uint64_t mask = upTo & ~((std::uint64_t(1) << low) - 1);
        bits[word] = dark ? bits[word] | mask : bits[word] & ~mask;
    }
}

void Bitmap::clear()
{
    std::fill(m_bits.begin(), m_bits.end(), 0);
}

void Bitmap::paint(const Bitmap &other, bool dark, int firstRow, int lastRow)
{
    for (int y = std::max(firstRow, 0); y <= std::min(lastRow, m_height - 1); ++y) {
        std::uint64_t *to = row(y);
        const std::uint64_t *from = other.row(y);
        for (std::size_t i = 0; i < m_words; ++i)
            to[i] = dark ? to[i] | from[i] : to[i] & ~from[i];
    }
}

void Bitmap::copyShifted(const Bitmap &other, bool grow, int firstRow, int lastRow)
{
    const std::uint64_t flip = grow ? 0 : ~std::uint64_t(0);
    std::vector<std::uint64_t> result(m_words);
    for (int y = std::max(firstRow, 0); y <= std::min(lastRow, m_height - 1); ++y) {
        neighbourhood(other, y, flip, result);
        for (std::size_t i = 0; i < m_words; ++i)
            row(y)[i] = result[i] ^ flip;
    }
}

Bitmap Bitmap::without(const Bitmap &other) const
{
    Bitmap result = *this;
    result.paint(other, false, 0, m_height - 1);
    return result;
}

std::size_t Bitmap::darkCount() const
{
    std::size_t count = 0;
    for (const std::uint64_t word : m_bits)
        count += bitCount(word);
    return count;
}

Difference compare(const Bitmap &a, const Bitmap &b, const Tolerance *tolerance)
{
    Difference difference;
    const std::size_t words = a.wordsPerRow();
    const std::uint64_t all = ~std::uint64_t(0);
    std::vector<std::uint64_t> aDark(words), aClear(words), bDark(words), bClear(words);
    for (int y = 1; y + 1 < a.height(); ++y) {
        neighbourhood(a, y, 0, aDark);
        neighbourhood(a, y, all, aClear);
        neighbourhood(b, y, 0, bDark);
        neighbourhood(b, y, all, bClear);
        for (std::size_t i = 0; i < words; ++i) {
            const std::uint64_t inA = a.row(y)[i], inB = b.row(y)[i];
            std::uint64_t inside = all;
            if (i == 0)
                inside &= ~std::uint64_t(1);
            const std::int64_t lastBit = a.width() - 1 - static_cast<std::int64_t>(i) * 64;
            if (lastBit < 64)
                inside &= lastBit <= 0 ? 0 : (std::uint64_t(1) << lastBit) - 1;
            difference.differing += bitCount((inA ^ inB) & inside);
            const std::uint64_t undecided =
                tolerance ? ~tolerance->least.row(y)[i] & tolerance->most.row(y)[i] : 0;
            const std::uint64_t beyond =
                ~undecided &
                ((inA & ~bDark[i]) | (inB & ~aDark[i]) | (~inA & ~bClear[i]) | (~inB & ~aClear[i])) & inside;
            if (beyond != 0 && difference.beyond == 0) {
                difference.x = static_cast<int>(i) * 64;
                for (std::uint64_t rest = beyond; (rest & 1u) == 0; rest >>= 1)
                    ++difference.x;
                difference.y = y;
            }
            difference.beyond += bitCount(beyond);
        }
    }
    return difference;
}

} // namespace crosscheck
