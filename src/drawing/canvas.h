// A part of a picture while it is drawn: black and white, sixteen samples a pixel, so that what features
// cover is kept exactly where they meet, overlap and clear each other; and the share of each pixel that is
// covered by what is too small for samples.
#pragma once

#include "cam/model/point.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace drawing {

// Closed rings in one list, without an allocation for each.
struct Rings
{
    std::vector<cam::Point> corners;
    std::vector<std::size_t> ends; // of each ring: one behind its last corner

    void clear()
    {
        corners.clear();
        ends.clear();
    }
    void endRing() { ends.push_back(corners.size()); }
};

// What rings cover: where their windings add up to more than 0, to less, or to anything but 0.
enum class FillRule : std::uint8_t { Positive, Negative, NonZero };

class Canvas
{
public:
    static constexpr int samples = 4; // of a pixel, along each side

    // Pixels; nothing is dark. `keepsOrder`: what is drawn small and what is drawn large may be mixed, and
    // the later one counts. Needed where something is cleared; slower.
    Canvas(int width, int height, bool keepsOrder = false);

    int width() const { return m_width; }
    int height() const { return m_height; }
    void clear();

    // Coordinates are samples: sample (i, j) of row j lies at (i + 0.5, j + 0.5). What lies outside of the
    // canvas is left out. Dark features darken the samples that they cover, others clear them.
    void fill(const Rings &rings, FillRule rule, bool dark);
    void fillConvex(const std::vector<cam::Point> &corners, bool dark);
    void fillDisc(cam::Point center, double radius, bool dark);

    // What is smaller than a pixel at `at`, or thinner than one from `from` to `to`: its area is added to the
    // pixels there. `area` and `width` in samples.
    void addSmall(cam::Point at, double area, bool dark);
    void addThin(cam::Point from, cam::Point to, double width, bool dark);

    // Adds what is dark in another canvas of the same size, or takes it away.
    void add(const Canvas &other);
    void remove(const Canvas &other);
    // Leaves what is dark in `base` and not here.
    void negate(const Canvas &base);

    bool sample(int x, int y) const;
    // How much of each pixel is covered, 0 to 255; what is small is never quite invisible.
    void levels(std::uint8_t *row, int y) const;

private:
    void begin(bool dark);
    void span(int row, std::int64_t first, std::int64_t end);
    void finish();
    int share(const std::vector<std::uint64_t> &bits, int x, int y) const; // 0 to 16
    void addShare(int x, int y, double share, bool dark);

    int m_width, m_height;
    bool m_keepsOrder;
    int m_words; // a row of samples has
    std::vector<std::uint64_t> m_bits;
    std::vector<float> m_small; // share of each pixel; empty while there is none
    // What is being painted, where it has to be known as a whole.
    std::vector<std::uint64_t> m_mask;
    bool m_isMasked = false;
    bool m_isDark = true;
    int m_lowRow = 0, m_highRow = -1; // of the mask, as what follows
    std::int64_t m_lowColumn = 0, m_highColumn = -1;
    int m_firstUsed, m_lastUsed = -1; // rows of samples that hold anything
    std::vector<std::uint64_t> m_crossings;
    std::vector<double> m_left, m_right;
};

} // namespace drawing
