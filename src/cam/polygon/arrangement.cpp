#include "cam/polygon/arrangement.h"

#include "cam/base/error.h"
#include "cam/polygon/orientation.h"
#include "cam/polygon/roundlimit.h"
#include "cam/polygon/selfmeeting.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace cam {

namespace {

constexpr std::uint32_t none = UINT32_MAX;
constexpr int usualRounds = 2; // of most polygons

// Whether `p` lies in the box of the edge from `a` to `b`.
bool isWithin(GridPoint p, GridPoint a, GridPoint b)
{
    return std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
           p.y <= std::max(a.y, b.y);
}

// Whether the line from `a` to `b` meets the square of one step around `p`.
bool passesThrough(GridPoint a, GridPoint b, GridPoint p)
{
    const GridPoint u = b - a, v = p - a;
    const std::int64_t half = (std::abs(u.x) + std::abs(u.y)) / 2;
    if (isSmall(u) && isSmall(v))
        return std::abs(u.x * v.y - u.y * v.x) <= half;
    return std::fabs(static_cast<double>(u.x) * static_cast<double>(v.y) -
                     static_cast<double>(u.y) * static_cast<double>(v.x)) <= static_cast<double>(half);
}

// An edge from its smaller end (further left, or further down) to its larger one, and how the two winding
// numbers grow from its right side to its left one.
struct Segment
{
    GridPoint a, b;
    int first = 0, second = 0;
    bool isNew = true; // not yet compared with the others
};

// A segment of the result, its area on the left.
struct Edge
{
    GridPoint from, to;
    std::uint32_t fromCorner = 0, toCorner = 0; // numbers of the arrangement's corners
    std::uint32_t below = none; // for the lowest edge at a place where a hole may begin: the edge below that
    std::uint32_t ring = none;
};

// Of a ring that crosses itself.
struct RepeatedArea
{
    double area = 0.0;      // enclosed a number of times other than 0 or 1
    double perimeter = 0.0; // of that area
};

class Arrangement
{
public:
    explicit Arrangement(BooleanOperation operation) : m_operation(operation) {}

    void add(const GridRing &ring, bool isSecond);
    std::vector<GridRing> result();
    RepeatedArea repeated();

private:
    void split();
    [[noreturn]] void failToSplit() const;
    void uniteEqual();
    void findCuts();
    bool drawTogether(std::uint32_t i, std::uint32_t j);
    void meet(std::uint32_t i, std::uint32_t j);
    void cut(std::uint32_t segment, GridPoint at);
    void applyCuts();

    void sortFromBelow();
    void sweep();
    void beginAt(std::uint32_t corner, std::size_t position, std::size_t firstSegment,
                 std::size_t endSegment);
    void addRepeated(const Segment &segment, bool isAbove);
    bool isInside(int first, int second) const
    {
        return first > 0 ? m_operation == BooleanOperation::Union || second <= 0
                         : second > 0 && m_operation == BooleanOperation::Union;
    }

    void chain();
    std::uint32_t next(std::uint32_t edge) const;
    std::uint32_t islandOf(std::uint32_t ring) const;

    struct Cut
    {
        std::uint32_t segment;
        GridPoint at;
        double along;
    };
    // What sorting looks at first.
    struct Place
    {
        std::int64_t x;
        std::uint32_t index;
    };
    // A segment that the sweep crosses, in the order from below.
    struct Crossed
    {
        GridPoint a, b;
        int first, second;  // winding numbers above it
        std::uint32_t edge; // of the result, or none
    };
    struct Ring
    {
        GridRing corners;
        std::uint32_t below = none; // for a hole: an edge of its island or of another hole of that
    };

    BooleanOperation m_operation;
    std::vector<Segment> m_segments;
    std::vector<Cut> m_cuts;
    int m_rounds = 0;            // of cuts that were applied
    std::vector<Place> m_places; // scratch
    std::vector<Crossed> m_crossed;
    std::vector<Edge> m_edges;
    std::vector<std::uint32_t> m_edgeOf;  // by segment
    std::vector<std::uint32_t> m_firstAt; // by corner, one more than corners: where in m_leaving
    std::vector<std::uint32_t> m_leaving; // edges by the corner they leave
    std::vector<Ring> m_rings;
    RepeatedArea m_repeated;
};

void Arrangement::add(const GridRing &ring, bool isSecond)
{
    for (std::size_t i = 0; i < ring.size(); ++i) {
        Segment segment;
        segment.a = ring[i];
        segment.b = ring[i + 1 < ring.size() ? i + 1 : 0];
        if (segment.a == segment.b)
            continue;
        (isSecond ? segment.second : segment.first) = segment.a < segment.b ? 1 : -1;
        if (segment.b < segment.a)
            std::swap(segment.a, segment.b);
        m_segments.push_back(segment);
    }
}

// Segments nearly upon each other cross anew wherever rounding has bent them, and each round makes more of
// them than it ends. So after the usual rounds the corners draw to them what passes them within half a step:
// what was nearly one becomes one. That this ends: a cut lies in the box of what it cuts and is no end of it,
// so that the widths and heights of the pieces sum up to those of the whole, and no piece is without both.
// Every round cuts at least one, and uniting takes some away: there are no more rounds than grid steps along
// all edges. That many would take for ever, though, so it gives up long before.
void Arrangement::split()
{
    uniteEqual();
    for (findCuts(); !m_cuts.empty(); findCuts()) {
        if (m_rounds == mostSnappingRounds)
            failToSplit();
        ++m_rounds;
        applyCuts();
        uniteEqual();
        if (m_rounds == usualRounds) {
            for (Segment &segment : m_segments)
                segment.isNew = true;
        }
    }
}

void Arrangement::failToSplit() const
{
    const GridPoint at = m_cuts.front().at;
    throw Error("the edges around " + std::to_string(at.x) + ", " + std::to_string(at.y) +
                " (steps of the grid) still cross each other after " + std::to_string(m_rounds) +
                " rounds of rounding: their polygons cannot be resolved");
}

// Sorts them, too: those that are not new are in order already.
void Arrangement::uniteEqual()
{
    m_places.clear();
    for (const bool areNew : {false, true}) {
        for (std::uint32_t i = 0; i < m_segments.size(); ++i) {
            if (m_segments[i].isNew == areNew)
                m_places.push_back({m_segments[i].a.x, i});
        }
    }
    const auto firstNew = std::find_if(m_places.begin(), m_places.end(),
                                       [this](const Place &p) { return m_segments[p.index].isNew; });
    const auto isBefore = [this](const Place &p, const Place &q) {
        if (p.x != q.x)
            return p.x < q.x;
        const Segment &s = m_segments[p.index], &t = m_segments[q.index];
        return s.a.y != t.a.y ? s.a.y < t.a.y : s.b < t.b;
    };
    std::sort(firstNew, m_places.end(), isBefore);
    std::inplace_merge(m_places.begin(), firstNew, m_places.end(), isBefore);
    std::vector<Segment> united;
    united.reserve(m_segments.size());
    const auto dropNothing = [&united] {
        if (!united.empty() && united.back().first == 0 && united.back().second == 0)
            united.pop_back();
    };
    for (const Place &place : m_places) {
        const Segment &segment = m_segments[place.index];
        if (!united.empty() && united.back().a == segment.a && united.back().b == segment.b) {
            Segment &before = united.back();
            before.first += segment.first;
            before.second += segment.second;
            before.isNew = before.isNew || segment.isNew;
        } else {
            dropNothing();
            united.push_back(segment);
        }
    }
    dropNothing();
    m_segments.swap(united);
}

// Every two segments of which one is new, and whose boxes meet. After the first time few are new: those that
// are not look at these only.
void Arrangement::findCuts()
{
    struct Active
    {
        std::int64_t low, high, right;
        std::uint32_t segment;
    };
    m_cuts.clear();
    std::vector<Active> newOnes, others;
    for (std::uint32_t i = 0; i < m_segments.size(); ++i) {
        Segment &segment = m_segments[i];
        const Active here = {std::min(segment.a.y, segment.b.y), std::max(segment.a.y, segment.b.y),
                             segment.b.x, i};
        const auto meetAll = [&](std::vector<Active> &active) {
            std::size_t kept = 0;
            for (std::size_t j = 0; j < active.size(); ++j) {
                const Active other = active[j];
                if (other.right < segment.a.x)
                    continue;
                if (kept != j)
                    active[kept] = other;
                ++kept;
                if (other.low <= here.high && here.low <= other.high)
                    meet(i, other.segment);
            }
            active.resize(kept);
        };
        meetAll(newOnes);
        if (segment.isNew)
            meetAll(others);
        (segment.isNew ? newOnes : others).push_back(here);
        segment.isNew = false;
    }
}

// Cuts each of two segments at the ends of the other that it passes within half a step. False where there are
// none.
bool Arrangement::drawTogether(std::uint32_t i, std::uint32_t j)
{
    const std::size_t before = m_cuts.size();
    for (const auto &[segment, other] : {std::pair(i, j), std::pair(j, i)}) {
        const GridPoint a = m_segments[segment].a, b = m_segments[segment].b;
        for (const GridPoint end : {m_segments[other].a, m_segments[other].b}) {
            if (isWithin(end, a, b) && passesThrough(a, b, end))
                cut(segment, end);
        }
    }
    return m_cuts.size() > before;
}

void Arrangement::meet(std::uint32_t i, std::uint32_t j)
{
    const Segment &p = m_segments[i], &q = m_segments[j];
    if (m_rounds >= usualRounds && drawTogether(i, j))
        return;
    const int qa = sideOf(p.a, p.b, q.a), qb = sideOf(p.a, p.b, q.b);
    if (qa != 0 && qa == qb)
        return;
    const int pa = sideOf(q.a, q.b, p.a), pb = sideOf(q.a, q.b, p.b);
    if (pa != 0 && pa == pb)
        return;
    if (qa == 0)
        cut(i, q.a);
    if (qb == 0)
        cut(i, q.b);
    if (pa == 0)
        cut(j, p.a);
    if (pb == 0)
        cut(j, p.b);
    if (qa == 0 || qb == 0 || pa == 0 || pb == 0)
        return;
    const auto distance = [&p](GridPoint at) {
        const GridPoint u = p.b - p.a, v = at - p.a;
        return static_cast<double>(u.x) * static_cast<double>(v.y) -
               static_cast<double>(u.y) * static_cast<double>(v.x);
    };
    const double fromA = distance(q.a), fromB = distance(q.b);
    const double share = fromA == fromB ? 0.5 : fromA / (fromA - fromB);
    const auto between = [share](std::int64_t from, std::int64_t to) {
        const double moved = share * static_cast<double>(to - from);
        return from + static_cast<std::int64_t>(moved < 0.0 ? moved - 0.5 : moved + 0.5);
    };
    // Within both boxes, or the pieces might be no shorter than the whole.
    const auto clamped = [](std::int64_t v, std::int64_t a, std::int64_t b, std::int64_t c, std::int64_t d) {
        return std::clamp(v, std::max(std::min(a, b), std::min(c, d)),
                          std::min(std::max(a, b), std::max(c, d)));
    };
    const GridPoint at = {clamped(between(q.a.x, q.b.x), p.a.x, p.b.x, q.a.x, q.b.x),
                          clamped(between(q.a.y, q.b.y), p.a.y, p.b.y, q.a.y, q.b.y)};
    cut(i, at);
    cut(j, at);
}

// Nothing when `at` is an end, or on the line beyond one.
void Arrangement::cut(std::uint32_t segment, GridPoint at)
{
    const GridPoint a = m_segments[segment].a, b = m_segments[segment].b;
    if (at == a || at == b || !isWithin(at, a, b))
        return;
    const double along = static_cast<double>(b.x - a.x) * static_cast<double>(at.x - a.x) +
                         static_cast<double>(b.y - a.y) * static_cast<double>(at.y - a.y);
    m_cuts.push_back({segment, at, along});
}

void Arrangement::applyCuts()
{
    std::sort(m_cuts.begin(), m_cuts.end(), [](const Cut &c, const Cut &d) {
        return c.segment != d.segment ? c.segment < d.segment
               : c.along != d.along   ? c.along < d.along
                                      : c.at < d.at;
    });
    for (std::size_t i = 0; i < m_cuts.size();) {
        const std::uint32_t cutSegment = m_cuts[i].segment;
        const Segment whole = m_segments[cutSegment];
        GridPoint from = whole.a;
        bool isFirst = true;
        const auto put = [&](GridPoint to) {
            if (from == to)
                return;
            Segment part = whole;
            part.a = from;
            part.b = to;
            part.isNew = true;
            if (to < from) {
                std::swap(part.a, part.b);
                part.first = -part.first;
                part.second = -part.second;
            }
            if (isFirst)
                m_segments[cutSegment] = part;
            else
                m_segments.push_back(part);
            isFirst = false;
            from = to;
        };
        // Rounding may have put a cut back behind the one before it: then it is left to the next round, which
        // finds it where it is still needed.
        for (; i < m_cuts.size() && m_cuts[i].segment == cutSegment; ++i) {
            if (isWithin(m_cuts[i].at, from, whole.b))
                put(m_cuts[i].at);
        }
        put(whole.b);
    }
}

// Segments that begin at the same corner.
void Arrangement::sortFromBelow()
{
    for (auto first = m_segments.begin(); first != m_segments.end();) {
        auto end = first + 1;
        while (end != m_segments.end() && end->a == first->a)
            ++end;
        if (end - first > 1) {
            std::sort(first, end,
                      [](const Segment &s, const Segment &t) { return sideOf(s.a, s.b, t.b) > 0; });
        }
        first = end;
    }
}

// From corner to corner, from left to right and upwards. Above a segment means left of it.
void Arrangement::sweep()
{
    sortFromBelow();
    m_places.clear();
    for (std::uint32_t i = 0; i < m_segments.size(); ++i)
        m_places.push_back({m_segments[i].b.x, i});
    std::sort(m_places.begin(), m_places.end(), [this](const Place &p, const Place &q) {
        return p.x != q.x ? p.x < q.x : m_segments[p.index].b.y < m_segments[q.index].b.y;
    });
    const auto endOf = [this](std::size_t place) { return m_segments[m_places[place].index].b; };
    m_edgeOf.assign(m_segments.size(), none);
    std::size_t start = 0, end = 0;
    for (std::uint32_t corner = 0; end < m_places.size(); ++corner) {
        GridPoint at = endOf(end);
        if (start < m_segments.size() && m_segments[start].a < at)
            at = m_segments[start].a;
        for (; end < m_places.size() && endOf(end) == at; ++end) {
            const std::uint32_t edge = m_edgeOf[m_places[end].index];
            if (edge != none)
                (m_edges[edge].to == at ? m_edges[edge].toCorner : m_edges[edge].fromCorner) = corner;
        }
        const auto position = std::partition_point(
            m_crossed.begin(), m_crossed.end(), [at](const Crossed &s) { return sideOf(s.a, s.b, at) > 0; });
        auto ended = position;
        while (ended != m_crossed.end() && ended->b == at)
            ++ended;
        const std::size_t below = static_cast<std::size_t>(position - m_crossed.begin());
        m_crossed.erase(position, ended);
        const std::size_t first = start;
        while (start < m_segments.size() && m_segments[start].a == at)
            ++start;
        if (start > first)
            beginAt(corner, below, first, start);
    }
}

// The segments that begin at a corner, from the lowest to the highest.
void Arrangement::beginAt(std::uint32_t corner, std::size_t position, std::size_t firstSegment,
                          std::size_t endSegment)
{
    int first = position > 0 ? m_crossed[position - 1].first : 0;
    int second = position > 0 ? m_crossed[position - 1].second : 0;
    m_crossed.insert(m_crossed.begin() + static_cast<std::ptrdiff_t>(position), endSegment - firstSegment,
                     Crossed());
    bool isLowest = true;
    for (std::size_t i = firstSegment; i < endSegment; ++i) {
        const Segment &segment = m_segments[i];
        const bool isBelowInside = isInside(first, second), isBelowRepeated = first < 0 || first > 1;
        first += segment.first;
        second += segment.second;
        Crossed &crossed = m_crossed[position + i - firstSegment];
        crossed = {segment.a, segment.b, first, second, none};
        const bool isRepeated = first < 0 || first > 1;
        if (isRepeated != isBelowRepeated)
            addRepeated(segment, isRepeated);
        if (isInside(first, second) == isBelowInside)
            continue;
        Edge edge;
        edge.from = isBelowInside ? segment.b : segment.a;
        edge.to = isBelowInside ? segment.a : segment.b;
        (isBelowInside ? edge.toCorner : edge.fromCorner) = corner;
        for (std::size_t j = position; isLowest && isBelowInside && edge.below == none && j > 0; --j)
            edge.below = m_crossed[j - 1].edge;
        isLowest = false;
        crossed.edge = m_edgeOf[i] = static_cast<std::uint32_t>(m_edges.size());
        m_edges.push_back(edge);
    }
}

// The strip between the segment and a line far below, to be added or taken away.
void Arrangement::addRepeated(const Segment &segment, bool isAbove)
{
    const GridPoint along = segment.b - segment.a, origin = m_segments.front().a;
    const double width = static_cast<double>(along.x), rise = static_cast<double>(along.y);
    const double strip = width * (static_cast<double>(segment.a.y - origin.y) + rise / 2.0);
    m_repeated.area += isAbove ? -strip : strip;
    m_repeated.perimeter += std::sqrt(width * width + rise * rise);
}

// The edge that goes on where `edge` ends: the first one clockwise, so that the area between them, and none
// else, is this ring's. Islands that meet in a corner stay apart.
std::uint32_t Arrangement::next(std::uint32_t edge) const
{
    const std::uint32_t corner = m_edges[edge].toCorner;
    const GridPoint back = m_edges[edge].from - m_edges[edge].to;
    const auto turned = [&](std::uint32_t leaving) {
        const int s = turn(back, m_edges[leaving].to - m_edges[leaving].from);
        return s < 0 ? 0 : s == 0 ? 1 : 2; // less than a half turn, a half, more
    };
    std::uint32_t best = m_leaving[m_firstAt[corner]];
    for (std::uint32_t i = m_firstAt[corner] + 1; i < m_firstAt[corner + 1]; ++i) {
        const std::uint32_t other = m_leaving[i];
        const int turnBest = turned(best), turnOther = turned(other);
        if (turnOther < turnBest ||
            (turnOther == turnBest &&
             turn(m_edges[best].to - m_edges[best].from, m_edges[other].to - m_edges[other].from) > 0))
            best = other;
    }
    return best;
}

void Arrangement::chain()
{
    std::uint32_t corners = 0;
    for (const Edge &edge : m_edges)
        corners = std::max({corners, edge.fromCorner + 1, edge.toCorner + 1});
    m_firstAt.assign(corners + 1, 0);
    for (const Edge &edge : m_edges)
        ++m_firstAt[edge.fromCorner + 1];
    for (std::uint32_t i = 0; i < corners; ++i)
        m_firstAt[i + 1] += m_firstAt[i];
    m_leaving.resize(m_edges.size());
    std::vector<std::uint32_t> free(m_firstAt.begin(), m_firstAt.end() - 1);
    for (std::uint32_t i = 0; i < m_edges.size(); ++i)
        m_leaving[free[m_edges[i].fromCorner]++] = i;

    for (std::uint32_t first = 0; first < m_edges.size(); ++first) {
        if (m_edges[first].ring != none)
            continue;
        // Edges come in the order of their corners: the first one begins or ends at the ring's leftmost.
        Ring ring;
        const std::uint32_t leftmost = std::min(m_edges[first].fromCorner, m_edges[first].toCorner);
        for (std::uint32_t i = first; m_edges[i].ring == none; i = next(i)) {
            Edge &edge = m_edges[i];
            edge.ring = static_cast<std::uint32_t>(m_rings.size());
            if (edge.below != none && std::min(edge.fromCorner, edge.toCorner) == leftmost)
                ring.below = edge.below;
            ring.corners.push_back(edge.from);
        }
        m_rings.push_back(std::move(ring));
    }
}

std::uint32_t Arrangement::islandOf(std::uint32_t ring) const
{
    while (m_rings[ring].below != none)
        ring = m_edges[m_rings[ring].below].ring;
    return ring;
}

// Leaves corners out that lie straight between their neighbours.
void straighten(GridRing &ring)
{
    std::size_t used = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const GridPoint after = ring[i + 1 < ring.size() ? i + 1 : 0];
        const GridPoint before = used > 0 ? ring[used - 1] : ring.back();
        if (sideOf(before, ring[i], after) != 0)
            ring[used++] = ring[i];
    }
    ring.resize(used);
}

std::vector<GridRing> Arrangement::result()
{
    split();
    sweep();
    chain();
    std::vector<std::pair<std::uint32_t, std::uint32_t>>
        order; // island, ring: an island comes before its holes
    for (std::uint32_t i = 0; i < m_rings.size(); ++i)
        order.emplace_back(islandOf(i), i);
    std::sort(order.begin(), order.end());
    std::vector<GridRing> rings;
    rings.reserve(order.size());
    for (const auto &[island, ring] : order) {
        straighten(m_rings[ring].corners);
        rings.push_back(std::move(m_rings[ring].corners));
    }
    return rings;
}

RepeatedArea Arrangement::repeated()
{
    split();
    sweep();
    return m_repeated;
}

} // namespace

bool crossesItself(const GridRing &ring)
{
    constexpr double widestSliver = 4.0; // area by perimeter: half of the width
    if (ring.size() < 4 || !mayMeetItself(ring))
        return false;
    GridRing turned = ring;
    makeCounterClockwise(turned);
    Arrangement arrangement(BooleanOperation::Union);
    arrangement.add(turned, false);
    const RepeatedArea repeated = arrangement.repeated();
    return repeated.area > widestSliver * repeated.perimeter;
}

double repeatedArea(const std::vector<GridRing> &rings)
{
    Arrangement arrangement(BooleanOperation::Union);
    for (const GridRing &ring : rings)
        arrangement.add(ring, false);
    return arrangement.repeated().area;
}

std::vector<GridRing> combined(BooleanOperation operation, const std::vector<GridRing> &area,
                               const std::vector<GridRing> &rings)
{
    Arrangement arrangement(operation);
    for (const GridRing &ring : area)
        arrangement.add(ring, false);
    for (const GridRing &ring : rings)
        arrangement.add(ring, true);
    return arrangement.result();
}

} // namespace cam
