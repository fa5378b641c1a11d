// Squares are divided, the most promising first, until the best disc found is as good as any that a square
// could still hold. Strips nearly as thick as what is asked for would take squares without end: there a disc
// is led along their sides.
#include "cam/verify/thickness.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
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

bool isInsideOf(const std::vector<Side> &sides, Point at)
{
    bool isInside = false;
    for (const Side &side : sides) {
        const Point a = side.a, b = side.b;
        if ((a.y > at.y) != (b.y > at.y) && at.x < a.x + (b.x - a.x) * ((at.y - a.y) / (b.y - a.y)))
            isInside = !isInside;
    }
    return isInside;
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
    bool isInside(Point at) const { return isInsideOf(m_sides, at); }
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

// Whether a disc of `radius` fits, beyond doubt: one that does can be moved until it lies beside a side, or
// until two corners hold it. Beside a side the other sides forbid an interval each, as a disc's centre may
// not come near to them and what is near to a straight side is convex.
class DiscWalk
{
public:
    DiscWalk(const std::vector<GridRing> &rings, double radius);
    // The centre of one.
    std::optional<Point> find();

private:
    struct Interval
    {
        double low, high;
    };
    struct Near // a side and where it lies
    {
        Point low, high;
        std::uint32_t side;
    };
    void findNeighbours();
    std::optional<Point> beside(std::uint32_t side);
    std::optional<Point> betweenCorners(std::uint32_t side) const;
    Interval forbiddenBy(const Side &other, Point from, Point along, double length) const;

    static constexpr double hair = 1e-3; // nanometres that a disc is moved away from its side

    const double m_radius;
    std::vector<Side> m_sides;
    std::vector<bool> m_turnsRight; // where the side begins: the area bends around this corner
    std::vector<std::vector<std::uint32_t>> m_neighbours;
    std::vector<Interval> m_forbidden; // scratch
};

DiscWalk::DiscWalk(const std::vector<GridRing> &rings, double radius) : m_radius(radius)
{
    for (const GridRing &ring : rings) {
        const std::size_t first = m_sides.size();
        addSides(ring, m_sides);
        for (std::size_t i = first; i < m_sides.size(); ++i) {
            const Side &before = m_sides[i > first ? i - 1 : m_sides.size() - 1];
            m_turnsRight.push_back(cross(before.b - before.a, m_sides[i].b - m_sides[i].a) < 0.0);
        }
    }
    findNeighbours();
}

void DiscWalk::findNeighbours()
{
    std::vector<Near> all;
    for (std::uint32_t i = 0; i < m_sides.size(); ++i) {
        const Point a = m_sides[i].a, b = m_sides[i].b;
        const Point reach = {m_radius + 1.0, m_radius + 1.0};
        all.push_back({Point{std::min(a.x, b.x), std::min(a.y, b.y)} - reach,
                       Point{std::max(a.x, b.x), std::max(a.y, b.y)} + reach, i});
    }
    std::sort(all.begin(), all.end(), [](const Near &one, const Near &other) {
        return std::pair(one.low.x, one.side) < std::pair(other.low.x, other.side);
    });
    m_neighbours.resize(m_sides.size());
    std::vector<Near> open;
    for (const Near &here : all) {
        open.erase(std::remove_if(open.begin(), open.end(),
                                  [&here](const Near &other) { return other.high.x < here.low.x; }),
                   open.end());
        for (const Near &other : open) {
            if (other.high.y < here.low.y || here.high.y < other.low.y)
                continue;
            m_neighbours[here.side].push_back(other.side);
            m_neighbours[other.side].push_back(here.side);
        }
        open.push_back(here);
    }
}

std::optional<Point> DiscWalk::find()
{
    for (std::uint32_t i = 0; i < m_sides.size(); ++i) {
        if (const std::optional<Point> center = beside(i))
            return center;
        if (const std::optional<Point> center = betweenCorners(i))
            return center;
    }
    return {};
}

// Along a line of centres: `from` and then up to `length` in direction `along`.
DiscWalk::Interval DiscWalk::forbiddenBy(const Side &other, Point from, Point along, double length) const
{
    // What only continues the side is not in the way; what runs back, however near to it, is.
    const double radius = dot(other.b - other.a, along) > 0.0 ? m_radius : m_radius + 2.0 * hair;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Interval forbidden = {infinity, -infinity};
    const auto add = [&forbidden](double low, double high) {
        if (low < high)
            forbidden = {std::min(forbidden.low, low), std::max(forbidden.high, high)};
    };
    for (const Point end : {other.a, other.b}) {
        const double middle = dot(end - from, along), aside = cross(along, end - from);
        const double square = radius * radius - aside * aside;
        if (square > 0.0)
            add(middle - std::sqrt(square), middle + std::sqrt(square));
    }
    // Beside the other side itself, where its ends are not nearest.
    const double otherLength = distance(other.a, other.b);
    const Point direction = (other.b - other.a) * (1.0 / otherLength);
    Interval beside = {-1.0, length + 1.0}; // the ends themselves are in it
    const auto limit = [&beside](double start, double slope, double low, double high) {
        if (slope == 0.0) {
            if (start < low || start > high)
                beside.high = -1.0;
            return;
        }
        const double one = (low - start) / slope, two = (high - start) / slope;
        beside = {std::max(beside.low, std::min(one, two)), std::min(beside.high, std::max(one, two))};
    };
    limit(dot(from - other.a, direction), dot(along, direction), 0.0, otherLength);
    limit(cross(direction, from - other.a), cross(direction, along), -radius, radius);
    add(beside.low, beside.high);
    return forbidden;
}

std::optional<Point> DiscWalk::beside(std::uint32_t side)
{
    const Point a = m_sides[side].a;
    const double length = distance(a, m_sides[side].b);
    const Point along = (m_sides[side].b - a) * (1.0 / length);
    // The area lies to the left.
    const Point from = a + Point{-along.y, along.x} * (m_radius + hair);
    m_forbidden.clear();
    for (const std::uint32_t i : m_neighbours[side]) {
        const Interval here = forbiddenBy(m_sides[i], from, along, length);
        if (here.low < here.high)
            m_forbidden.push_back(here);
    }
    std::sort(m_forbidden.begin(), m_forbidden.end(),
              [](const Interval &one, const Interval &other) { return one.low < other.low; });
    double reached = 0.0;
    for (const Interval &here : m_forbidden) {
        if (here.low > reached)
            break;
        reached = std::max(reached, here.high);
    }
    return reached <= length ? std::optional<Point>(from + along * reached) : std::nullopt;
}

// Two corners that the area bends around hold a disc between them.
std::optional<Point> DiscWalk::betweenCorners(std::uint32_t side) const
{
    if (!m_turnsRight[side])
        return {};
    const Point a = m_sides[side].a;
    const std::vector<std::uint32_t> &neighbours = m_neighbours[side];
    for (const std::uint32_t i : neighbours) {
        const Point across = m_sides[i].a - a;
        const double apart = length(across);
        if (!m_turnsRight[i] || apart == 0.0 || apart > 2.0 * m_radius)
            continue;
        const double rise = std::sqrt(m_radius * m_radius - apart * apart / 4.0) / apart;
        for (const double sign : {-1.0, 1.0}) {
            const Point center = a + across * 0.5 + Point{-across.y, across.x} * (sign * rise);
            const auto isInTheWay = [&](std::uint32_t other) {
                return distanceTo(m_sides[other], center) < m_radius - hair;
            };
            if (!isInTheWay(side) && std::none_of(neighbours.begin(), neighbours.end(), isInTheWay) &&
                isInsideOf(m_sides, center))
                return center;
        }
    }
    return {};
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
    // Squares take long to find the widest place of a strip.
    constexpr double thin = 1000.0;
    if (!search.isThrough() && best.radius < thin) {
        double low = best.radius, high = std::min(search.bound(), thin);
        for (double radius = high; high - low > 0.01 * high; radius = (low + high) / 2.0) {
            if (const std::optional<Point> center = DiscWalk(rings, radius).find())
                best = {*center, low = radius};
            else
                high = radius;
        }
    }
    if (best.radius == 0.0)
        best.center = search.somewhere();
    return best;
}

Fit discFits(const std::vector<GridRing> &rings, double radius)
{
    Search search(rings);
    search.tryBesideSides(radius);
    constexpr int fewSquares = 500; // enough for what is much thicker or much thinner
    search.run(radius, radius, fewSquares);
    const bool fits =
        search.best().radius >= radius || (!search.isThrough() && DiscWalk(rings, radius).find().has_value());
    return {fits, std::min(search.bound(), radius)};
}

} // namespace cam::verify
