// Squares are divided, the most promising first, until the best disc found is as good as any that a square
// could still hold.
#include "cam/verify/thickness.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <queue>

namespace cam::verify {

namespace {

struct Side
{
    Point a, b;
};

double distanceTo(const Side &side, Point p)
{
    const Point along = side.b - side.a;
    const double square = dot(along, along);
    const double share = square > 0.0 ? std::clamp(dot(p - side.a, along) / square, 0.0, 1.0) : 0.0;
    return length(p - (side.a + along * share));
}

// The extent of the area across the direction of its longest side: no disc in it is wider.
double extentAcross(const std::vector<Side> &sides)
{
    const Side *longest = &sides.front();
    for (const Side &side : sides) {
        if (distance(side.a, side.b) > distance(longest->a, longest->b))
            longest = &side;
    }
    const Point along = (longest->b - longest->a) * (1.0 / distance(longest->a, longest->b));
    double low = std::numeric_limits<double>::infinity(), high = -low;
    for (const Side &side : sides) {
        const double across = cross(along, side.a - longest->a);
        low = std::min(low, across);
        high = std::max(high, across);
    }
    return high - low;
}

void addSides(const GridRing &ring, std::vector<Side> &sides)
{
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const GridPoint a = ring[i], b = ring[i + 1 < ring.size() ? i + 1 : 0];
        if (a != b)
            sides.push_back({{static_cast<double>(a.x), static_cast<double>(a.y)},
                             {static_cast<double>(b.x), static_cast<double>(b.y)}});
    }
}

// Sides by their index, those that may be the nearest of some point of a square.
using Nearby = std::shared_ptr<const std::vector<std::uint32_t>>;

struct Square
{
    Point center;
    double half = 0.0;
    double distance = 0.0; // from the centre to the nearest side; negative outside, where that is known
    double most = 0.0;     // radius of a disc whose centre lies in the square, at most
    Nearby nearby;

    bool operator<(const Square &other) const { return most < other.most; }
};

class Search
{
public:
    explicit Search(const std::vector<GridRing> &rings)
    {
        for (const GridRing &ring : rings) {
            m_extent.add(ring);
            addSides(ring, m_sides);
        }
    }

    // Until a disc of `enough` is found, until none of `least` can be left, or until the best found is as
    // good as any that is left, within a hundredth.
    void run(double enough, double least, int mostSquares);

    // Discs beside the longest sides, which decide most cases at once.
    void tryBesideSides(double radius);

    // Moves the best disc to where a larger one fits, as long as there is one beside it.
    void improve();

    Disc best() const { return m_best; }
    double bound() const { return std::max(m_bound, m_best.radius); } // of any disc
    bool isThrough() const { return m_isThrough; }
    double extent() const
    {
        const std::int64_t side =
            std::min(m_extent.high.x - m_extent.low.x, m_extent.high.y - m_extent.low.y);
        return m_sides.size() < 3 ? 0.0 : std::min(static_cast<double>(side), extentAcross(m_sides));
    }
    Point somewhere() const { return m_sides.empty() ? Point() : m_sides.front().a; }

private:
    Square square(Point center, double half, const Nearby &among) const;
    bool isInside(Point at) const;
    void take(const Square &square)
    {
        if (square.distance > m_best.radius && isInside(square.center))
            m_best = {square.center, square.distance};
        if (square.most > m_best.radius)
            m_squares.push(square);
    }

    std::vector<Side> m_sides;
    GridBox m_extent;
    std::priority_queue<Square> m_squares;
    Disc m_best;
    double m_bound = 0.0;
    bool m_isThrough = true;
};

bool Search::isInside(Point at) const
{
    bool isInside = false;
    for (const Side &side : m_sides) {
        const Point a = side.a, b = side.b;
        if ((a.y > at.y) != (b.y > at.y) && at.x < a.x + (b.x - a.x) * ((at.y - a.y) / (b.y - a.y)))
            isInside = !isInside;
    }
    return isInside;
}

Square Search::square(Point center, double half, const Nearby &among) const
{
    const double reach = half * std::sqrt(2.0);
    double nearest = std::numeric_limits<double>::infinity();
    std::vector<std::pair<double, std::uint32_t>> far;
    far.reserve(among->size());
    for (const std::uint32_t i : *among) {
        far.emplace_back(distanceTo(m_sides[i], center), i);
        nearest = std::min(nearest, far.back().first);
    }
    Square square{center, half, nearest, nearest + reach, among};
    // No side runs through it: it lies inside or outside as a whole.
    if (nearest > reach && !isInside(center)) {
        square.distance = square.most = -nearest;
        return square;
    }
    constexpr std::size_t few = 8;
    if (among->size() > few) {
        auto nearby = std::make_shared<std::vector<std::uint32_t>>();
        for (const auto &[distance, i] : far) {
            if (distance <= nearest + 2.0 * reach)
                nearby->push_back(i);
        }
        square.nearby = std::move(nearby);
    }
    return square;
}

void Search::run(double enough, double least, int mostSquares)
{
    const double width = static_cast<double>(m_extent.high.x - m_extent.low.x);
    const double height = static_cast<double>(m_extent.high.y - m_extent.low.y);
    m_bound = extent() / 2.0;
    if (!(m_bound > 0.0) || m_bound < least)
        return;
    auto all = std::make_shared<std::vector<std::uint32_t>>(m_sides.size());
    for (std::uint32_t i = 0; i < all->size(); ++i)
        (*all)[i] = i;
    const double bound = m_bound;
    const double half = std::max(width, height) / 2.0;
    take(square({static_cast<double>(m_extent.low.x) + half, static_cast<double>(m_extent.low.y) + half},
                half, all));
    for (int count = 0; !m_squares.empty(); ++count) {
        const Square square = m_squares.top();
        m_bound = std::min(bound, std::max(square.most, m_best.radius));
        if (m_best.radius >= enough || m_bound < least || m_bound <= m_best.radius * 1.01)
            return;
        if (count == mostSquares) {
            m_isThrough = false;
            return;
        }
        m_squares.pop();
        const double quarter = square.half / 2.0;
        for (const Point by : {Point{-quarter, -quarter}, Point{quarter, -quarter}, Point{-quarter, quarter},
                               Point{quarter, quarter}})
            take(this->square(square.center + by, quarter, square.nearby));
    }
    m_bound = m_best.radius;
}

void Search::tryBesideSides(double radius)
{
    constexpr std::size_t few = 8;
    std::vector<std::uint32_t> longest(m_sides.size());
    for (std::uint32_t i = 0; i < longest.size(); ++i)
        longest[i] = i;
    const auto end = longest.begin() + static_cast<std::ptrdiff_t>(std::min(few, longest.size()));
    std::partial_sort(longest.begin(), end, longest.end(), [this](std::uint32_t a, std::uint32_t b) {
        return distance(m_sides[a].a, m_sides[a].b) > distance(m_sides[b].a, m_sides[b].b);
    });
    for (auto i = longest.begin(); i != end && m_best.radius < radius; ++i) {
        const Side &side = m_sides[*i];
        const Point along = side.b - side.a;
        // The area lies to the left.
        const Point inwards = Point{-along.y, along.x} * (radius * 1.02 / length(along));
        const Point center = side.a + along * 0.5 + inwards;
        double nearest = std::numeric_limits<double>::infinity();
        for (const Side &other : m_sides)
            nearest = std::min(nearest, distanceTo(other, center));
        if (nearest > m_best.radius && isInside(center))
            m_best = {center, nearest};
    }
}

void Search::improve()
{
    for (double step = m_best.radius; step > m_best.radius * 0.005 && step > 0.5;) {
        const Disc before = m_best;
        for (const Point by : {Point{step, 0.0}, Point{-step, 0.0}, Point{0.0, step}, Point{0.0, -step}}) {
            const Point center = before.center + by;
            double nearest = std::numeric_limits<double>::infinity();
            for (const Side &side : m_sides)
                nearest = std::min(nearest, distanceTo(side, center));
            if (nearest > m_best.radius && isInside(center))
                m_best = {center, nearest};
        }
        if (m_best.radius <= before.radius)
            step /= 2.0;
    }
}

} // namespace

double boundOfThickness(const GridRing &ring)
{
    return Search({ring}).extent() / 2.0;
}

Disc largestDisc(const std::vector<GridRing> &rings)
{
    Search search(rings);
    search.tryBesideSides(search.extent() / 2.0 / 1.02);
    search.run(std::numeric_limits<double>::infinity(), 0.0, 500);
    search.improve();
    Disc best = search.best();
    if (best.radius == 0.0)
        best.center = search.somewhere();
    return best;
}

Fit discFits(const std::vector<GridRing> &rings, double radius)
{
    Search search(rings);
    search.tryBesideSides(radius);
    search.run(radius, radius, 200000);
    const bool fits = search.best().radius >= radius || !search.isThrough();
    return {fits, std::min(search.bound(), radius)};
}

} // namespace cam::verify
