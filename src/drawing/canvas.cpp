// Spans of samples are words of bits.
#include "drawing/canvas.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace drawing {

using cam::Point;

namespace {

// Of a pixel that something small lies in, so that it is seen.
constexpr float leastShare = 0.35F;

constexpr int samplesOfPixel = Canvas::samples * Canvas::samples;

int bitsOf(unsigned nibble)
{
    constexpr std::uint8_t counts[16] = {0, 1, 1, 2, 1, 2, 2, 3, 1, 2, 2, 3, 2, 3, 3, 4};
    return counts[nibble & 15U];
}

// The first sample whose centre is not below `x`, within 0 to `most`.
std::int64_t sampleFrom(double x, int most)
{
    const double at = std::ceil(x - 0.5);
    return at <= 0.0 ? 0 : at >= most ? most : static_cast<std::int64_t>(at);
}

struct Rows
{
    int first, end;
};

Rows rowsBetween(double low, double high, int most)
{
    return {static_cast<int>(sampleFrom(low, most)), static_cast<int>(sampleFrom(high, most))};
}

// The part of a segment within a box from (0, 0); false when there is none.
bool clip(Point &from, Point &to, double width, double height)
{
    double first = 0.0, last = 1.0;
    const Point along = to - from;
    const auto cut = [&](double start, double step, double most) {
        if (step == 0.0)
            return start >= 0.0 && start <= most;
        double a = -start / step, b = (most - start) / step;
        if (a > b)
            std::swap(a, b);
        first = std::max(first, a);
        last = std::min(last, b);
        return first <= last;
    };
    if (!cut(from.x, along.x, width) || !cut(from.y, along.y, height))
        return false;
    to = from + along * last;
    from = from + along * first;
    return true;
}

} // namespace

Canvas::Canvas(int width, int height, bool keepsOrder)
    : m_width(width), m_height(height), m_keepsOrder(keepsOrder), m_words((width * samples + 63) / 64),
      m_bits(static_cast<std::size_t>(m_words) * static_cast<std::size_t>(height * samples)),
      m_firstUsed(height * samples)
{
}

void Canvas::clear()
{
    for (int row = m_firstUsed; row <= m_lastUsed; ++row)
        std::fill_n(m_bits.begin() + static_cast<std::ptrdiff_t>(row) * m_words, m_words, 0);
    m_firstUsed = m_height * samples;
    m_lastUsed = -1;
    m_small.clear();
}

// ---- painting

void Canvas::begin(bool dark)
{
    m_isDark = dark;
    m_isMasked = m_keepsOrder && !m_small.empty();
    if (!m_isMasked)
        return;
    m_mask.resize(m_bits.size());
    m_lowRow = m_height * samples;
    m_highRow = -1;
    m_lowColumn = m_width * samples;
    m_highColumn = -1;
}

void Canvas::span(int row, std::int64_t first, std::int64_t end)
{
    if (first >= end)
        return;
    std::uint64_t *const words = (m_isMasked ? m_mask : m_bits).data() +
                                 static_cast<std::size_t>(row) * static_cast<std::size_t>(m_words);
    const bool sets = m_isMasked || m_isDark;
    const auto put = [sets](std::uint64_t &word, std::uint64_t bits) {
        word = sets ? word | bits : word & ~bits;
    };
    const auto firstWord = static_cast<std::size_t>(first / 64),
               lastWord = static_cast<std::size_t>((end - 1) / 64);
    const std::uint64_t from = ~std::uint64_t(0) << (first % 64);
    const std::uint64_t to = ~std::uint64_t(0) >> (63 - (end - 1) % 64);
    if (firstWord == lastWord) {
        put(words[firstWord], from & to);
    } else {
        put(words[firstWord], from);
        for (std::size_t word = firstWord + 1; word < lastWord; ++word)
            words[word] = sets ? ~std::uint64_t(0) : 0;
        put(words[lastWord], to);
    }
    m_firstUsed = std::min(m_firstUsed, row);
    m_lastUsed = std::max(m_lastUsed, row);
    if (m_isMasked) {
        m_lowRow = std::min(m_lowRow, row);
        m_highRow = std::max(m_highRow, row);
        m_lowColumn = std::min(m_lowColumn, first);
        m_highColumn = std::max(m_highColumn, end - 1);
    }
}

// What is painted replaces as much of what was small as it covers.
void Canvas::finish()
{
    if (!m_isMasked || m_highRow < 0)
        return;
    const int firstX = static_cast<int>(m_lowColumn) / samples,
              lastX = static_cast<int>(m_highColumn) / samples;
    for (int y = m_lowRow / samples; y <= m_highRow / samples; ++y) {
        float *const small = m_small.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width);
        for (int x = firstX; x <= lastX; ++x) {
            if (small[x] != 0.0F)
                small[x] *= static_cast<float>(samplesOfPixel - share(m_mask, x, y)) / samplesOfPixel;
        }
    }
    const std::size_t first = static_cast<std::size_t>(m_lowRow) * static_cast<std::size_t>(m_words);
    const std::size_t end = static_cast<std::size_t>(m_highRow + 1) * static_cast<std::size_t>(m_words);
    for (std::size_t i = first; i < end; ++i) {
        m_bits[i] = m_isDark ? m_bits[i] | m_mask[i] : m_bits[i] & ~m_mask[i];
        m_mask[i] = 0;
    }
}

void Canvas::fill(const Rings &rings, FillRule rule, bool dark)
{
    const int rowsInAll = m_height * samples, columns = m_width * samples;
    // Row, column and direction in one number, to be sorted: rows and columns are far below 2^24.
    m_crossings.clear();
    std::size_t first = 0;
    for (const std::size_t end : rings.ends) {
        Point from = first < end ? rings.corners[end - 1] : Point();
        for (std::size_t i = first; i < end; ++i) {
            const Point to = rings.corners[i];
            const bool isUpwards = to.y > from.y;
            const Point low = isUpwards ? from : to, high = isUpwards ? to : from;
            from = to;
            const Rows rows = rowsBetween(low.y, high.y, rowsInAll);
            if (rows.first >= rows.end)
                continue;
            const double slope = (high.x - low.x) / (high.y - low.y);
            for (int row = rows.first; row < rows.end; ++row) {
                const double x = low.x + (row + 0.5 - low.y) * slope;
                m_crossings.push_back(static_cast<std::uint64_t>(row) << 32 |
                                      static_cast<std::uint64_t>(sampleFrom(x, columns)) << 1 |
                                      (isUpwards ? 1U : 0U));
            }
        }
        first = end;
    }
    std::sort(m_crossings.begin(), m_crossings.end());
    begin(dark);
    int winding = 0;
    for (std::size_t i = 0; i + 1 < m_crossings.size(); ++i) {
        const std::uint64_t here = m_crossings[i], next = m_crossings[i + 1];
        // Where y points up, what runs upwards has the inside of a counter-clockwise ring on its left.
        winding += (here & 1U) != 0 ? -1 : 1;
        const bool isCovered = rule == FillRule::Positive   ? winding > 0
                               : rule == FillRule::Negative ? winding < 0
                                                            : winding != 0;
        if (isCovered && here >> 32 == next >> 32)
            span(static_cast<int>(here >> 32), static_cast<std::int64_t>((here & 0xffffffffU) >> 1),
                 static_cast<std::int64_t>((next & 0xffffffffU) >> 1));
    }
    finish();
}

void Canvas::fillConvex(const std::vector<Point> &corners, bool dark)
{
    const int rowsInAll = m_height * samples, columns = m_width * samples;
    double low = std::numeric_limits<double>::infinity(), high = -low;
    for (const Point p : corners) {
        low = std::min(low, p.y);
        high = std::max(high, p.y);
    }
    const Rows rows = rowsBetween(low, high, rowsInAll);
    if (corners.empty() || rows.first >= rows.end)
        return;
    const auto count = static_cast<std::size_t>(rows.end - rows.first);
    m_left.assign(count, std::numeric_limits<double>::infinity());
    m_right.assign(count, -std::numeric_limits<double>::infinity());
    Point from = corners.back();
    for (const Point to : corners) {
        const Point below = from.y < to.y ? from : to, above = from.y < to.y ? to : from;
        from = to;
        const Rows own = rowsBetween(below.y, above.y, rowsInAll);
        const double slope = own.first < own.end ? (above.x - below.x) / (above.y - below.y) : 0.0;
        for (int row = own.first; row < own.end; ++row) {
            const double x = below.x + (row + 0.5 - below.y) * slope;
            const auto at = static_cast<std::size_t>(row - rows.first);
            m_left[at] = std::min(m_left[at], x);
            m_right[at] = std::max(m_right[at], x);
        }
    }
    begin(dark);
    for (int row = rows.first; row < rows.end; ++row) {
        const auto at = static_cast<std::size_t>(row - rows.first);
        span(row, sampleFrom(m_left[at], columns), sampleFrom(m_right[at], columns));
    }
    finish();
}

void Canvas::fillDisc(Point center, double radius, bool dark)
{
    const int columns = m_width * samples;
    const Rows rows = rowsBetween(center.y - radius, center.y + radius, m_height * samples);
    begin(dark);
    for (int row = rows.first; row < rows.end; ++row) {
        const double up = row + 0.5 - center.y;
        const double half = std::sqrt(std::max(0.0, radius * radius - up * up));
        span(row, sampleFrom(center.x - half, columns), sampleFrom(center.x + half, columns));
    }
    finish();
}

// ---- what is small

void Canvas::addShare(int x, int y, double share, bool dark)
{
    if (x < 0 || y < 0 || x >= m_width || y >= m_height)
        return;
    if (m_small.empty())
        m_small.resize(static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height));
    float &small = m_small[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                           static_cast<std::size_t>(x)];
    if (dark) {
        // What has no area is seen as well.
        small += static_cast<float>(share) + std::numeric_limits<float>::min();
        return;
    }
    const float covered = static_cast<float>(this->share(m_bits, x, y)) / samplesOfPixel + small;
    small -= std::min(1.0F, static_cast<float>(share)) * std::min(1.0F, std::max(0.0F, covered));
}

void Canvas::addSmall(Point at, double area, bool dark)
{
    if (!(at.x >= 0.0 && at.y >= 0.0 && at.x < m_width * samples && at.y < m_height * samples))
        return;
    addShare(static_cast<int>(at.x) / samples, static_cast<int>(at.y) / samples, area / samplesOfPixel, dark);
}

void Canvas::addThin(Point from, Point to, double width, bool dark)
{
    if (!clip(from, to, m_width * samples, m_height * samples))
        return;
    const Point along = to - from;
    const double far = std::max(std::fabs(along.x), std::fabs(along.y)) / samples;
    const int steps = std::max(1, static_cast<int>(std::ceil(far)));
    const double share = width * cam::length(along) / steps / samplesOfPixel;
    for (int i = 0; i < steps; ++i) {
        const Point at = from + along * ((i + 0.5) / steps);
        addShare(static_cast<int>(at.x) / samples, static_cast<int>(at.y) / samples, share, dark);
    }
}

// ---- canvases as a whole

void Canvas::add(const Canvas &other)
{
    if (other.m_lastUsed >= 0) {
        const std::size_t first =
            static_cast<std::size_t>(other.m_firstUsed) * static_cast<std::size_t>(m_words);
        const std::size_t end =
            static_cast<std::size_t>(other.m_lastUsed + 1) * static_cast<std::size_t>(m_words);
        for (std::size_t i = first; i < end; ++i)
            m_bits[i] |= other.m_bits[i];
        m_firstUsed = std::min(m_firstUsed, other.m_firstUsed);
        m_lastUsed = std::max(m_lastUsed, other.m_lastUsed);
    }
    if (other.m_small.empty())
        return;
    if (m_small.empty())
        m_small = other.m_small;
    else
        std::transform(m_small.begin(), m_small.end(), other.m_small.begin(), m_small.begin(), std::plus<>());
}

void Canvas::remove(const Canvas &other)
{
    if (other.m_lastUsed < 0)
        return;
    for (int y = 0; y < m_height && !m_small.empty(); ++y) {
        for (int x = 0; x < m_width; ++x)
            m_small[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                    static_cast<std::size_t>(x)] *=
                static_cast<float>(samplesOfPixel - share(other.m_bits, x, y)) / samplesOfPixel;
    }
    const std::size_t first = static_cast<std::size_t>(other.m_firstUsed) * static_cast<std::size_t>(m_words);
    const std::size_t end =
        static_cast<std::size_t>(other.m_lastUsed + 1) * static_cast<std::size_t>(m_words);
    for (std::size_t i = first; i < end; ++i)
        m_bits[i] &= ~other.m_bits[i];
}

void Canvas::negate(const Canvas &base)
{
    for (int y = 0; y < m_height && !m_small.empty(); ++y) {
        for (int x = 0; x < m_width; ++x)
            m_small[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                    static_cast<std::size_t>(x)] *=
                -static_cast<float>(share(base.m_bits, x, y)) / samplesOfPixel;
    }
    std::transform(m_bits.begin(), m_bits.end(), base.m_bits.begin(), m_bits.begin(),
                   [](std::uint64_t taken, std::uint64_t from) { return from & ~taken; });
    m_firstUsed = 0;
    m_lastUsed = m_height * samples - 1;
}

int Canvas::share(const std::vector<std::uint64_t> &bits, int x, int y) const
{
    const int shift = x % (64 / samples) * samples;
    std::size_t word = static_cast<std::size_t>(y * samples) * static_cast<std::size_t>(m_words) +
                       static_cast<std::size_t>(x / (64 / samples));
    int count = 0;
    for (int row = 0; row < samples; ++row, word += static_cast<std::size_t>(m_words))
        count += bitsOf(static_cast<unsigned>(bits[word] >> shift));
    return count;
}

bool Canvas::sample(int x, int y) const
{
    return (m_bits[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_words) +
                   static_cast<std::size_t>(x / 64)] >>
                (x % 64) &
            1U) != 0;
}

void Canvas::levels(std::uint8_t *row, int y) const
{
    const float *const small =
        m_small.empty() ? nullptr
                        : m_small.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width);
    for (int x = 0; x < m_width; ++x) {
        float covered = static_cast<float>(share(m_bits, x, y)) / samplesOfPixel;
        if (small && small[x] > 0.0F)
            covered = std::max(covered + small[x], leastShare);
        else if (small)
            covered += small[x];
        row[x] = static_cast<std::uint8_t>(std::lround(255.0F * std::min(1.0F, std::max(0.0F, covered))));
    }
}

} // namespace drawing
