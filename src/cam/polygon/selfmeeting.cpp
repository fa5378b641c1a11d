#include "cam/polygon/selfmeeting.h"

#include "cam/polygon/orientation.h"

#include <algorithm>

namespace cam {

namespace {

// Whether the edges from `a` to `b` and from `c` to `d` meet in more than the corner between neighbours. One
// that leads back on the other encloses nothing.
bool meetBeyondCorner(GridPoint a, GridPoint b, GridPoint c, GridPoint d)
{
    if (b == c || d == a)
        return b == c && d == a;
    return sideOf(a, b, c) * sideOf(a, b, d) <= 0 && sideOf(c, d, a) * sideOf(c, d, b) <= 0;
}

int quadrant(GridPoint edge)
{
    return (edge.x < 0 ? 2 : 0) + (edge.y < 0 ? 1 : 0);
}

// Once around, turning to one side only: circles and most pads.
bool isConvex(const GridRing &ring)
{
    const auto leadsRight = [](GridPoint edge) { return edge.x > 0 || (edge.x == 0 && edge.y > 0); };
    bool turnsLeft = false, turnsRight = false;
    int changes = 0; // of the direction, from rightwards to leftwards or back
    GridPoint corner = ring.front(), edge = corner - ring.back();
    for (std::size_t i = 1; i <= ring.size(); ++i) {
        const GridPoint end = i < ring.size() ? ring[i] : ring.front();
        const GridPoint next = end - corner;
        const int turned = turn(edge, next);
        turnsLeft = turnsLeft || turned > 0;
        turnsRight = turnsRight || turned < 0;
        if ((turnsLeft && turnsRight) || next == GridPoint())
            return false;
        changes += leadsRight(edge) != leadsRight(next) ? 1 : 0;
        edge = next;
        corner = end;
    }
    return changes == 2 && turnsLeft != turnsRight;
}

// The corners of a ring, taken apart into chains that lead into one quadrant each: such a chain does not meet
// itself, and the box of any part of it is that of the part's two ends. What has many corners, arcs, has few
// chains.
class Chains
{
public:
    explicit Chains(const GridRing &ring);
    bool mayMeet();

private:
    struct Part
    {
        std::uint32_t first, last; // corners
        std::int64_t begin, end;   // along the longer side of the ring
        std::int64_t low, high;    // across
    };

    GridPoint corner(std::uint32_t i) const { return m_ring[i < m_ring.size() ? i : 0]; }
    Part part(std::uint32_t first, std::uint32_t last) const;
    bool mayMeet(const Part &one, const Part &other);

    const GridRing &m_ring;
    bool m_isTall = false;
    std::vector<Part> m_chains;
    std::size_t m_left = 0; // comparisons before it gives up
};

// A chain that goes on over the ring's first corner becomes two.
Chains::Chains(const GridRing &ring) : m_ring(ring)
{
    std::vector<std::uint32_t> ends{0};
    GridBox extent;
    extent.add(ring[0]);
    GridPoint edge = ring[0] - ring.back();
    for (std::uint32_t i = 0; i < ring.size(); ++i) {
        const GridPoint next = corner(i + 1) - ring[i];
        if (quadrant(next) != quadrant(edge)) {
            extent.add(ring[i]);
            if (i > 0)
                ends.push_back(i);
        }
        edge = next;
    }
    ends.push_back(static_cast<std::uint32_t>(ring.size()));
    m_isTall = extent.high.y - extent.low.y > extent.high.x - extent.low.x;
    m_chains.reserve(ends.size());
    for (std::size_t i = 1; i < ends.size(); ++i)
        m_chains.push_back(part(ends[i - 1], ends[i]));
}

Chains::Part Chains::part(std::uint32_t first, std::uint32_t last) const
{
    const GridPoint a = corner(first), b = corner(last);
    const auto [left, right] = std::minmax(a.x, b.x);
    const auto [bottom, top] = std::minmax(a.y, b.y);
    if (m_isTall)
        return {first, last, bottom, top, left, right};
    return {first, last, left, right, bottom, top};
}

bool Chains::mayMeet()
{
    m_left = 64 * m_ring.size();
    std::sort(m_chains.begin(), m_chains.end(),
              [](const Part &one, const Part &other) { return one.begin < other.begin; });
    for (auto one = m_chains.begin(); one != m_chains.end(); ++one) {
        for (auto other = one + 1; other != m_chains.end() && other->begin <= one->end; ++other) {
            if (mayMeet(*one, *other))
                return true;
        }
    }
    return false;
}

bool Chains::mayMeet(const Part &one, const Part &other)
{
    if (m_left == 0)
        return true;
    --m_left;
    if (other.high < one.low || other.low > one.high || other.end < one.begin || other.begin > one.end)
        return false;
    const std::uint32_t oneLength = one.last - one.first, otherLength = other.last - other.first;
    if (oneLength == 1 && otherLength == 1)
        return meetBeyondCorner(corner(one.first), corner(one.last), corner(other.first), corner(other.last));
    if (otherLength > oneLength)
        return mayMeet(other, one);
    const std::uint32_t middle = one.first + oneLength / 2;
    return mayMeet(part(one.first, middle), other) || mayMeet(part(middle, one.last), other);
}

} // namespace

bool mayMeetItself(const GridRing &ring)
{
    return !isConvex(ring) && Chains(ring).mayMeet();
}

} // namespace cam
