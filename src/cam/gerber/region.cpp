// Which contour lies in which, and slits from each hole to the left.
#include "cam/gerber/region.h"

#include "cam/gerber/edgecells.h"
#include "cam/polygon/arrangement.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

namespace cam {

namespace {

constexpr std::uint32_t none = UINT32_MAX;

// Walks an island, and at each landing the hole behind it, without recursion: a row of holes is as deep as it
// is long.
class SlitWalk
{
public:
    SlitWalk(const std::vector<GridOutline> &outlines, std::vector<Landing> landings)
        : m_outlines(outlines), m_landings(std::move(landings)), m_firstLanding(outlines.size() + 1, 0)
    {
        std::stable_sort(m_landings.begin(), m_landings.end(), [](const Landing &a, const Landing &b) {
            if (a.outline != b.outline)
                return a.outline < b.outline;
            return a.edge != b.edge ? a.edge < b.edge : a.share < b.share;
        });
        for (const Landing &landing : m_landings)
            ++m_firstLanding[landing.outline + 1];
        for (std::size_t i = 1; i < m_firstLanding.size(); ++i)
            m_firstLanding[i] += m_firstLanding[i - 1];
    }

    GridOutline walk(std::uint32_t island)
    {
        m_result = GridOutline();
        m_result.start = m_outlines[island].start;
        m_at = m_result.start;
        m_stack.push_back({island, 0, m_firstLanding[island], {}});
        while (!m_stack.empty())
            step();
        return std::move(m_result);
    }

private:
    struct Place
    {
        std::uint32_t outline;
        std::size_t edge;
        std::size_t landing; // the next one of this outline
        GridPoint slitStart; // where the slit to this hole begins
    };

    void step()
    {
        Place &place = m_stack.back();
        const GridOutline &outline = m_outlines[place.outline];
        if (place.edge == outline.edges.size()) {
            const GridPoint back = place.slitStart;
            m_stack.pop_back();
            if (!m_stack.empty())
                lineTo(back);
            return;
        }
        const bool hasLanding =
            place.landing < m_firstLanding[place.outline + 1] && m_landings[place.landing].edge == place.edge;
        if (!hasLanding) {
            edgeTo(outline.edges[place.edge], outline.edges[place.edge].end);
            ++place.edge;
            return;
        }
        const Landing &landing = m_landings[place.landing];
        ++place.landing;
        edgeTo(outline.edges[place.edge], landing.at);
        const GridOutline &hole = m_outlines[landing.hole];
        lineTo(hole.start);
        m_stack.push_back({landing.hole, 0, m_firstLanding[landing.hole], landing.at});
    }

    void lineTo(GridPoint end)
    {
        if (end != m_at)
            m_result.edges.push_back({end, {}, EdgeKind::Line});
        m_at = end;
    }

    // The part of `edge` from the current point to `end`.
    void edgeTo(const GridEdge &edge, GridPoint end)
    {
        if (end != m_at)
            m_result.edges.push_back({end, edge.center, edge.kind});
        m_at = end;
    }

    const std::vector<GridOutline> &m_outlines;
    std::vector<Landing> m_landings;
    std::vector<std::size_t> m_firstLanding; // by outline
    std::vector<Place> m_stack;
    GridOutline m_result;
    GridPoint m_at;
};

// Whether `at` lies inside: of the polygon of the corners, but for the segments between arcs and their
// chords.
bool encloses(const GridOutline &outline, Point at)
{
    bool inside = false;
    for (const auto [start, edge] : outline.walk()) {
        const Point from = pointOf(start), to = pointOf(edge.end);
        if (runsLeftOf(at, from, to))
            inside = !inside;
        if (edge.kind != EdgeKind::Line) {
            const double side = cross(to - from, at - from); // positive: left of the chord
            const bool bulgesLeft = edge.kind == EdgeKind::ArcClockwise;
            const bool isOnArcSide = bulgesLeft ? side > 0.0 : side < 0.0;
            if (isOnArcSide && distance(at, pointOf(edge.center)) < distance(from, pointOf(edge.center)))
                inside = !inside;
        }
    }
    return inside;
}

// Rectangles, regular polygons: straight edges that turn one way only, once around.
bool isConvexPolygon(const GridOutline &outline)
{
    int turn = 0, changes = 0, towards = 0; // left or right; how often these change
    Point before = pointOf(outline.start) - pointOf(outline.startOf(outline.edges.size() - 1));
    for (std::size_t i = 0; i < 2 * outline.edges.size(); ++i) {
        const std::size_t at = i % outline.edges.size();
        const GridEdge &edge = outline.edges[at];
        if (edge.kind != EdgeKind::Line)
            return false;
        const Point along = pointOf(edge.end) - pointOf(outline.startOf(at));
        const double side = cross(before, along);
        const int turnHere = side > 0.0 ? 1 : side < 0.0 ? -1 : 0;
        if (turnHere == 0 ? dot(before, along) < 0.0 : turnHere == -turn)
            return false;
        turn = turnHere == 0 ? turn : turnHere;
        const int towardsHere = along.x > 0.0 ? 1 : along.x < 0.0 ? -1 : 0;
        changes += towardsHere != 0 && towardsHere == -towards ? 1 : 0;
        towards = towardsHere == 0 ? towards : towardsHere;
        before = along;
    }
    return changes <= 4; // twice around
}

bool isSimple(const GridOutline &outline)
{
    return outline.edges.size() < 3 || isConvexPolygon(outline);
}

// Contours as a forest: which lies in which. Contours that meet others, or are in the same tree as such, are
// not sorted further.
class Nesting
{
public:
    Nesting(std::vector<GridOutline> contours, const std::vector<bool> &isHole);

    // One island, and holes in it, none in another.
    bool isIslandWithHoles() const;
    Regions take();
    std::vector<GridOutline> &contours() { return m_outlines; }

private:
    struct Contour
    {
        std::uint32_t group = 0; // union-find: the tree
        std::uint32_t parent = none;
        int depth = 0; // islands less holes around its inside
        bool isEntangled = false;
        GridPoint leftmost;
    };

    bool isHole(std::uint32_t i) const { return m_isHole[i]; }
    int depthAround(std::uint32_t i) const
    {
        return m_contours[i].parent == none ? 0 : m_contours[m_contours[i].parent].depth;
    }
    // Whether the area on both sides of it is dark, or on neither.
    bool isIdle(std::uint32_t i) const { return (depthAround(i) > 0) == (m_contours[i].depth > 0); }

    void orient();
    void findMeetings();
    void findParents();
    std::uint32_t groupOf(std::uint32_t i);
    void unite(std::uint32_t i, std::uint32_t k);

    std::vector<GridOutline> m_outlines;
    std::vector<bool> m_isHole;
    std::vector<Contour> m_contours;
    std::unique_ptr<EdgeCells> m_cells;
};

Nesting::Nesting(std::vector<GridOutline> contours, const std::vector<bool> &isHole)
    : m_outlines(std::move(contours)), m_isHole(isHole), m_contours(m_outlines.size())
{
    for (std::uint32_t i = 0; i < m_contours.size(); ++i)
        m_contours[i].group = i;
    orient();
    findMeetings();
    findParents();
}

// Islands counter-clockwise, holes clockwise: so their slits make one outline of them that encloses no place
// twice.
void Nesting::orient()
{
    for (std::uint32_t i = 0; i < m_outlines.size(); ++i) {
        GridOutline &outline = m_outlines[i];
        if (outline.edges.empty())
            continue;
        splitCircles(outline);
        if (runsCounterClockwise(outline) == isHole(i))
            reverse(outline);
        if (isHole(i))
            startAtLeftmost(outline);
        m_contours[i].leftmost = isHole(i) ? outline.start : leftmostOf(outline);
    }
}

// Whether an outline that touches itself encloses places twice, or some on the wrong side.
bool crossesItself(const GridOutline &outline)
{
    return crossesItself(ringOf(outline));
}

void Nesting::findMeetings()
{
    m_cells = std::make_unique<EdgeCells>(m_outlines);
    std::vector<bool> touchesItself(m_outlines.size());
    m_cells->forEachMeeting(
        [&](std::uint32_t i, std::uint32_t k) {
            return i == k ? !touchesItself[i] : groupOf(i) != groupOf(k);
        },
        [&](std::uint32_t i, std::uint32_t k) {
            if (i == k) {
                touchesItself[i] = true;
                return;
            }
            m_contours[i].isEntangled = m_contours[k].isEntangled = true;
            unite(i, k);
        });
    for (std::uint32_t i = 0; i < m_outlines.size(); ++i) {
        if (touchesItself[i] && crossesItself(m_outlines[i]))
            m_contours[i].isEntangled = true;
    }
}

// From left to right: what lies left of a contour's leftmost point has been looked at before.
void Nesting::findParents()
{
    std::vector<std::uint32_t> order;
    for (std::uint32_t i = 0; i < m_outlines.size(); ++i) {
        if (!m_outlines[i].edges.empty())
            order.push_back(i);
    }
    std::stable_sort(order.begin(), order.end(), [this](std::uint32_t i, std::uint32_t k) {
        return m_contours[i].leftmost < m_contours[k].leftmost;
    });
    std::vector<bool> isLeftOut(m_outlines.size());
    for (const std::uint32_t i : order) {
        Contour &contour = m_contours[i];
        Landing landing;
        isLeftOut[i] = true;
        if (order.size() > 1 && m_cells->findLeft(contour.leftmost, isLeftOut, landing)) {
            const std::uint32_t left = landing.outline;
            // Outlines do not meet, so the whole of this one lies on one side of what is left of it.
            bool isWithin = landing.isUpwards == isHole(left);
            if (landing.isAmbiguous)
                isWithin = encloses(m_outlines[left], pointOf(contour.leftmost) + Point{-0.5, 0.5});
            contour.parent = isWithin ? left : m_contours[left].parent;
            if (contour.parent != none)
                unite(i, contour.parent);
            if (m_contours[left].isEntangled)
                unite(i, left); // where it lies takes a boolean, too
        }
        isLeftOut[i] = false;
        contour.depth = depthAround(i) + (isHole(i) ? -1 : 1);
    }
}

std::uint32_t Nesting::groupOf(std::uint32_t i)
{
    while (m_contours[i].group != i)
        i = m_contours[i].group = m_contours[m_contours[i].group].group;
    return i;
}

// The smaller number stands for the group.
void Nesting::unite(std::uint32_t i, std::uint32_t k)
{
    i = groupOf(i);
    k = groupOf(k);
    m_contours[std::max(i, k)].group = std::min(i, k);
}

bool Nesting::isIslandWithHoles() const
{
    for (std::uint32_t i = 0; i < m_contours.size(); ++i) {
        const int expected = isHole(i) ? 0 : 1;
        const bool isEmpty = m_outlines[i].edges.empty();
        if (!isEmpty && (m_contours[i].isEntangled || m_contours[i].depth != expected))
            return false;
    }
    return true;
}

Regions Nesting::take()
{
    const auto count = static_cast<std::uint32_t>(m_outlines.size());
    std::vector<bool> isTreeEntangled(count); // by group
    for (std::uint32_t i = 0; i < count; ++i) {
        if (m_contours[i].isEntangled)
            isTreeEntangled[groupOf(i)] = true;
    }
    std::vector<bool> isLeftOut(count);
    std::vector<std::vector<std::uint32_t>> entangled(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        const bool isInKnot = isTreeEntangled[groupOf(i)];
        isLeftOut[i] = isInKnot || isIdle(i);
        if (isInKnot && !m_outlines[i].edges.empty())
            entangled[groupOf(i)].push_back(i);
    }
    std::vector<Landing> landings;
    for (std::uint32_t i = 0; i < count; ++i) {
        Landing landing;
        if (!isHole(i) || isLeftOut[i])
            continue;
        isLeftOut[i] = true;
        if (m_cells->findLeft(m_outlines[i].start, isLeftOut, landing)) {
            landing.hole = i;
            landings.push_back(landing);
        }
        isLeftOut[i] = false;
    }
    Regions regions;
    SlitWalk walk(m_outlines, std::move(landings));
    for (std::uint32_t i = 0; i < count; ++i) {
        if (!isHole(i) && !isLeftOut[i])
            regions.outlines.push_back(walk.walk(i));
    }
    for (std::vector<std::uint32_t> &knot : entangled) {
        if (!knot.empty())
            regions.entangled.push_back(std::move(knot));
    }
    return regions;
}

} // namespace

Regions regionsOf(std::vector<GridOutline> contours, const std::vector<bool> &isHole)
{
    Regions regions;
    if (contours.size() == 1 && !isHole.front() && isSimple(contours.front())) {
        regions.outlines = std::move(contours);
        return regions;
    }
    // Most jobs write each island with its holes behind it. Where that holds, islands may overlap each other,
    // and are painted one by one.
    bool isInOrder = contours.empty() || !isHole.front();
    for (std::size_t i = 0; i < contours.size() && isInOrder;) {
        std::size_t end = i + 1;
        while (end < contours.size() && isHole[end])
            ++end;
        const auto at = [](auto &list, std::size_t index) {
            return list.begin() + static_cast<std::ptrdiff_t>(index);
        };
        Nesting island({std::make_move_iterator(at(contours, i)), std::make_move_iterator(at(contours, end))},
                       {at(isHole, i), at(isHole, end)});
        isInOrder = island.isIslandWithHoles();
        if (isInOrder) {
            Regions part = island.take();
            std::move(part.outlines.begin(), part.outlines.end(), std::back_inserter(regions.outlines));
        }
        std::move(island.contours().begin(), island.contours().end(), at(contours, i));
        i = end;
    }
    return isInOrder ? regions : Nesting(std::move(contours), isHole).take();
}

} // namespace cam
