// Black-and-white images and the comparison that allows for what different programs make of an edge.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace crosscheck {

// Row 0 is the lowest one.
class Bitmap
{
public:
    Bitmap() = default;
    Bitmap(int width, int height);

    int width() const { return m_width; }
    int height() const { return m_height; }
    bool at(int x, int y) const { return row(y)[x / 64] >> (x % 64) & 1u; }
    void set(int x, int y) { row(y)[x / 64] |= std::uint64_t(1) << (x % 64); }
    // Pixels first ... end - 1 of a row, as far as they lie inside.
    void fill(int y, std::int64_t first, std::int64_t end, bool dark);
    void clear();

    // Adds the dark pixels of `other`, or takes them away, in rows firstRow ... lastRow.
    void paint(const Bitmap &other, bool dark, int firstRow, int lastRow);
    // Takes rows firstRow ... lastRow of `other`, its dark parts grown by a pixel to all sides, or shrunk by
    // one.
    void copyShifted(const Bitmap &other, bool grow, int firstRow, int lastRow);
    // *this where `other` is not dark.
    Bitmap without(const Bitmap &other) const;

    std::size_t darkCount() const;
    std::size_t wordsPerRow() const { return m_words; }
    const std::uint64_t *row(int y) const { return m_bits.data() + static_cast<std::size_t>(y) * m_words; }
    std::uint64_t *row(int y) { return m_bits.data() + static_cast<std::size_t>(y) * m_words; }

private:
    int m_width = 0;
    int m_height = 0;
    std::size_t m_words = 0;
    std::vector<std::uint64_t> m_bits;
};

struct Difference
{
    std::size_t differing = 0; // pixels that are not equal
    std::size_t beyond = 0;    // of these, the ones that no edge explains
    int x = -1, y = -1;        // the first of these
};

// How far edges may lie: `least` is dark where every edge moved inwards by a pixel still leaves it dark,
// `most` where every edge moved outwards makes it dark.
struct Tolerance
{
    Bitmap least, most;
};

// A pixel may differ when the other image has the same colour right beside it, in both directions: only edges
// differ then, by at most one pixel. At the tip of a sharp notch a small move of its two edges moves the tip
// by several pixels; such a pixel may differ when it lies between `least` and `most`. The outermost pixels
// are not looked at, they have no neighbours.
Difference compare(const Bitmap &a, const Bitmap &b, const Tolerance *tolerance = nullptr);

} // namespace crosscheck
