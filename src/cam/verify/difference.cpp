// 1. What n (see chain.h) differs by, for each run of dark and of clear paints: usually nothing.
// 2. What is left of the edges encloses all places where a run differs. Where that is thin nothing is wrong.
// 3. Where it is not, and where clear paints stand in one picture and not in the other, both pictures are
// resolved to
//    areas and compared exactly.
#include "cam/verify/difference.h"

#include "cam/polygon/arrangement.h"
#include "cam/verify/chain.h"
#include "cam/verify/corners.h"
#include "cam/verify/thickness.h"
#include "cam/verify/tiles.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace cam::verify {

namespace {

// A difference in which a disc of this radius fits is one, in nanometres. Half a micrometre is promised; both
// sides stand for their curves with chords, each up to 0.09 micrometres beside them, and what is drawn as a
// strip half a micrometre wide must be found at its inner side.
constexpr double leastRadius = 200.0;

// Around tiles: what is found at their border is as wide as it is.
constexpr std::int64_t margin = 1000;

constexpr std::int64_t sameCorner = 4; // see CornerIndex

constexpr double squareMillimetre = 1e12; // in square nanometres

GridBox grown(GridBox box, std::int64_t by)
{
    box.low = {box.low.x - by, box.low.y - by};
    box.high = {box.high.x + by, box.high.y + by};
    return box;
}

GridBox boxOf(const GridRing &ring)
{
    GridBox box;
    box.add(ring);
    return box;
}

// Paints of one colour without any of the other in between.
struct Run
{
    bool dark = true;
    std::vector<std::uint32_t> paints;
};

void append(std::vector<Run> &runs, bool dark, std::uint32_t paint)
{
    if (runs.empty() || runs.back().dark != dark)
        runs.push_back({dark, {}});
    runs.back().paints.push_back(paint);
}

struct Runs
{
    std::vector<Run> runs;
    bool isWhole = true; // they make the picture when they are painted in their order
};

// A picture as one list of paints: of the groups, one at most may clear.
Runs runsOf(const Picture &picture)
{
    const std::vector<Paint> &paints = picture.paints();
    Runs result;
    std::uint32_t clearing = baseGroup;
    for (const Paint &paint : paints) {
        if (paint.dark)
            continue;
        if (clearing != baseGroup && clearing != paint.group)
            result.isWhole = false;
        clearing = paint.group;
    }
    if (picture.isNegated()) {
        for (std::uint32_t i = 0; i < paints.size(); ++i) {
            if (paints[i].group == baseGroup)
                append(result.runs, true, i);
        }
        for (std::uint32_t i = 0; i < paints.size(); ++i) {
            if (paints[i].group != baseGroup)
                append(result.runs, !paints[i].dark, i);
        }
        // What it clears in the layer may become dark outside of the base.
        result.isWhole = clearing == baseGroup;
        return result;
    }
    for (std::uint32_t i = 0; i < paints.size(); ++i) {
        if (paints[i].group == clearing)
            append(result.runs, paints[i].dark, i);
    }
    for (std::uint32_t i = 0; i < paints.size(); ++i) {
        if (paints[i].group != clearing)
            append(result.runs, paints[i].dark, i);
    }
    return result;
}

// Rings whose winding numbers may sum up to anything: the picture is dark where they do so to more than 0.
class RingPicture : public Picture
{
public:
    RingPicture() { m_arePaintsApart = false; }
    void add(GridRing ring)
    {
        Paint paint;
        paint.box.add(ring);
        paint.corners = static_cast<std::uint32_t>(ring.size());
        m_paints.push_back(paint);
        m_rings.push_back(std::move(ring));
    }
    void rings(std::uint32_t paint, std::vector<GridRing> &rings) override
    {
        rings.push_back(m_rings[paint]);
    }

private:
    std::vector<GridRing> m_rings;
};

// Calls `take` with each island of clean rings and its holes.
template <typename Take>
void forEachIsland(const std::vector<GridRing> &rings, Take take)
{
    for (std::size_t i = 0; i < rings.size();) {
        std::size_t end = i + 1;
        while (end < rings.size() && doubledArea(rings[end]) < 0.0)
            ++end;
        take(std::vector<GridRing>(rings.begin() + static_cast<std::ptrdiff_t>(i),
                                   rings.begin() + static_cast<std::ptrdiff_t>(end)));
        i = end;
    }
}

double areaOf(const std::vector<GridRing> &rings)
{
    double sum = 0.0;
    for (const GridRing &ring : rings)
        sum += doubledArea(ring) / 2.0;
    return sum;
}

class Comparer
{
public:
    Comparer(Picture &first, Picture &second, const VerifyControl &control)
        : m_first(first), m_second(second), m_control(control)
    {
    }

    Comparison compare();

private:
    void compareRuns(std::vector<std::uint32_t> first, std::vector<std::uint32_t> second, double from,
                     double to);
    void dropEqual(std::vector<std::uint32_t> &first, std::vector<std::uint32_t> &second, std::int64_t shift);
    bool areEqual(std::uint32_t first, std::uint32_t second);
    bool areEqualShapes(const Paint &first, std::uint32_t firstPaint, const Paint &second,
                        std::uint32_t secondPaint);
    void judgeLeft();
    void addExact(const GridBox &box) { m_exact.push_back(grown(box, margin)); }
    void compareExactly();
    void compareTile(const Tile &tile);
    void conclude();

    Picture &m_first, &m_second;
    const VerifyControl &m_control;
    std::vector<std::vector<GridRing>> m_left; // by run: what is left of the edges
    std::vector<GridBox> m_exact;              // where exact booleans have to decide
    std::vector<GridRing> m_missing, m_extra;
    std::vector<DifferencePlace> m_mixed; // found where neither alone is wide enough
    Comparison m_result;
    std::map<std::pair<std::uint32_t, std::uint32_t>, bool> m_equalShapes;
    std::vector<GridRing> m_firstRings, m_secondRings; // scratch
};

Comparison Comparer::compare()
{
    m_control.report(0.0);
    const Runs first = runsOf(m_first), second = runsOf(m_second);
    bool isAlike = first.isWhole && second.isWhole && first.runs.size() == second.runs.size();
    for (std::size_t i = 0; isAlike && i < first.runs.size(); ++i)
        isAlike = first.runs[i].dark == second.runs[i].dark;
    constexpr double chainShare = 0.4;
    if (isAlike) {
        const double step = chainShare / static_cast<double>(std::max<std::size_t>(1, first.runs.size()));
        for (std::size_t i = 0; i < first.runs.size(); ++i)
            compareRuns(first.runs[i].paints, second.runs[i].paints, step * static_cast<double>(i),
                        step * static_cast<double>(i + 1));
    } else {
        // A negative meets areas that were cut out of one: no paint of theirs is the other's.
        if (m_first.isNegated() != m_second.isNegated()) {
            GridBox all;
            for (const Picture *picture : {&m_first, &m_second}) {
                for (const Paint &paint : picture->paints())
                    all.add(paint.box);
            }
            if (!all.isEmpty())
                addExact(all);
            compareExactly();
            conclude();
            m_control.report(1.0);
            return std::move(m_result);
        }
        // Beside everything that is clear, both are what they paint dark.
        std::vector<std::uint32_t> dark[2];
        for (const int side : {0, 1}) {
            const Picture &picture = side == 0 ? m_first : m_second;
            for (const Run &run : (side == 0 ? first : second).runs) {
                for (const std::uint32_t paint : run.paints) {
                    if (run.dark)
                        dark[side].push_back(paint);
                    else
                        addExact(picture.paints()[paint].box);
                }
            }
            if (picture.isNegated() && !(side == 0 ? first : second).isWhole) {
                for (const Paint &paint : picture.paints())
                    addExact(paint.box);
            }
        }
        compareRuns(dark[0], dark[1], 0.0, chainShare);
    }
    judgeLeft();
    compareExactly();
    conclude();
    m_control.report(1.0);
    return std::move(m_result);
}

bool isNear(GridPoint a, GridPoint b)
{
    return std::abs(a.x - b.x) <= sameCorner && std::abs(a.y - b.y) <= sameCorner;
}

// Whether both have the same corners in the same order, from whichever they start.
bool areEqual(const GridRing &first, const GridRing &second)
{
    if (first.size() != second.size())
        return false;
    for (std::size_t start = 0; start < second.size(); ++start) {
        if (!isNear(first[0], second[start]))
            continue;
        std::size_t i = 1;
        for (std::size_t j = start + 1; i < first.size(); ++i, ++j) {
            if (j == second.size())
                j = 0;
            if (!isNear(first[i], second[j]))
                break;
        }
        if (i == first.size())
            return true;
    }
    return false;
}

bool Comparer::areEqual(std::uint32_t firstPaint, std::uint32_t secondPaint)
{
    const Paint &first = m_first.paints()[firstPaint], &second = m_second.paints()[secondPaint];
    if (first.shape != 0 && second.shape != 0)
        return isNear(first.at, second.at) && areEqualShapes(first, firstPaint, second, secondPaint);
    m_firstRings.clear();
    m_secondRings.clear();
    // A ring that stands alone covers the same as one that is like it, whatever it crosses.
    const bool arePlain =
        m_first.plainRings(firstPaint, m_firstRings) && m_second.plainRings(secondPaint, m_secondRings);
    if (!arePlain || m_firstRings.size() != m_secondRings.size())
        return false;
    for (std::size_t i = 0; i < m_firstRings.size(); ++i) {
        if (!verify::areEqual(m_firstRings[i], m_secondRings[i]))
            return false;
    }
    return true;
}

// About their own origins; found out once.
bool Comparer::areEqualShapes(const Paint &first, std::uint32_t firstPaint, const Paint &second,
                              std::uint32_t secondPaint)
{
    const auto [known, isNew] = m_equalShapes.emplace(std::make_pair(first.shape, second.shape), false);
    if (!isNew)
        return known->second;
    Chain chain(sameCorner);
    const auto add = [&chain](Picture &picture, std::uint32_t paint, GridPoint at, bool isFirst) {
        std::vector<GridRing> rings;
        picture.rings(paint, rings);
        for (GridRing &ring : rings) {
            for (GridPoint &p : ring)
                p = {p.x - at.x, p.y - at.y};
            isFirst ? chain.addFirst(ring) : chain.addSecond(ring);
        }
    };
    add(m_first, firstPaint, first.at, true);
    add(m_second, secondPaint, second.at, false);
    known->second = chain.take().empty();
    return known->second;
}

// Takes out paints that both have: what is painted over or beside them stays as it is. They are looked for by
// their middles in cells of 64 nanometres, which `shift` moves.
void Comparer::dropEqual(std::vector<std::uint32_t> &first, std::vector<std::uint32_t> &second,
                         std::int64_t shift)
{
    struct Place
    {
        std::uint64_t cell;
        std::uint32_t index;
        bool isTaken;
    };
    const auto cellOf = [shift](const GridBox &box) {
        const auto x = static_cast<std::uint64_t>(((box.low.x + box.high.x) / 2 + shift) >> 6);
        const auto y = static_cast<std::uint64_t>(((box.low.y + box.high.y) / 2 + shift) >> 6);
        return x << 32 ^ (y & UINT32_MAX);
    };
    std::vector<Place> places;
    places.reserve(first.size());
    for (const std::uint32_t i : first)
        places.push_back({cellOf(m_first.paints()[i].box), i, false});
    std::sort(places.begin(), places.end(), [](const Place &a, const Place &b) {
        return a.cell != b.cell ? a.cell < b.cell : a.index < b.index;
    });
    std::vector<std::uint32_t> left;
    for (const std::uint32_t i : second) {
        constexpr int mostTries = 8; // among paints about one middle
        const std::uint64_t cell = cellOf(m_second.paints()[i].box);
        auto place = std::lower_bound(places.begin(), places.end(), cell,
                                      [](const Place &p, std::uint64_t value) { return p.cell < value; });
        bool isFound = false;
        for (int tries = 0; tries < mostTries && place != places.end() && place->cell == cell && !isFound;
             ++place) {
            if (place->isTaken)
                continue;
            ++tries;
            isFound = place->isTaken = areEqual(place->index, i);
        }
        if (!isFound)
            left.push_back(i);
    }
    second.swap(left);
    first.clear();
    for (const Place &place : places) {
        if (!place.isTaken)
            first.push_back(place.index);
    }
    std::sort(first.begin(), first.end());
}

// Block by block, so that what is in work stays near; what two blocks disagree in for no other reason than
// where their border runs vanishes in a last pass.
void Comparer::compareRuns(std::vector<std::uint32_t> first, std::vector<std::uint32_t> second, double from,
                           double to)
{
    for (const std::int64_t shift : {0, 32})
        dropEqual(first, second, shift);
    constexpr double blockCorners = 40000.0;
    GridBox extent;
    double corners = 0.0;
    for (const int side : {0, 1}) {
        const std::vector<Paint> &paints = (side == 0 ? m_first : m_second).paints();
        for (const std::uint32_t i : side == 0 ? first : second) {
            extent.add(paints[i].box);
            corners += paints[i].corners;
        }
    }
    if (extent.isEmpty())
        return;
    const auto across = static_cast<std::size_t>(std::ceil(std::sqrt(corners / blockCorners)));
    const std::size_t side = std::clamp<std::size_t>(across, 1, 200);
    const auto blockOf = [&](const GridBox &box) {
        const double width = static_cast<double>(extent.high.x - extent.low.x) + 1.0;
        const double height = static_cast<double>(extent.high.y - extent.low.y) + 1.0;
        const double fromLeft =
            static_cast<double>(box.low.x + box.high.x) / 2.0 - static_cast<double>(extent.low.x);
        const double fromBottom =
            static_cast<double>(box.low.y + box.high.y) / 2.0 - static_cast<double>(extent.low.y);
        const auto x = static_cast<std::size_t>(fromLeft / width * static_cast<double>(side));
        const auto y = static_cast<std::size_t>(fromBottom / height * static_cast<double>(side));
        return std::min(x, side - 1) + side * std::min(y, side - 1);
    };
    std::vector<std::vector<std::uint32_t>> blocks[2];
    for (const int which : {0, 1}) {
        blocks[which].resize(side * side);
        const std::vector<Paint> &paints = (which == 0 ? m_first : m_second).paints();
        for (const std::uint32_t i : which == 0 ? first : second)
            blocks[which][blockOf(paints[i].box)].push_back(i);
    }

    Chain chain(sameCorner);
    std::vector<DirectedEdge> left;
    std::vector<GridRing> rings;
    for (std::size_t block = 0; block < side * side; ++block) {
        m_control.report(from + (to - from) * static_cast<double>(block) / static_cast<double>(side * side));
        if (blocks[0][block].empty() && blocks[1][block].empty())
            continue;
        for (const int which : {0, 1}) {
            for (const std::uint32_t i : blocks[which][block]) {
                rings.clear();
                (which == 0 ? m_first : m_second).rings(i, rings);
                for (const GridRing &ring : rings)
                    which == 0 ? chain.addFirst(ring) : chain.addSecond(ring);
            }
        }
        const std::vector<DirectedEdge> here = chain.take();
        left.insert(left.end(), here.begin(), here.end());
    }
    if (side > 1) {
        for (const DirectedEdge &edge : left) {
            if (edge.count > 0)
                chain.addFirst(edge);
        }
        for (const DirectedEdge &edge : left) {
            if (edge.count < 0)
                chain.addSecond(edge);
        }
        left = chain.take();
    }
    m_left.push_back(ringsOf(left));
    m_control.report(to);
}

// Everything that differs lies where the winding numbers of what is left are not 0.
void Comparer::judgeLeft()
{
    // A ring by itself and this narrow hides nothing, nor do two or three that meet.
    constexpr double narrow = 50.0; // half its width
    constexpr std::size_t fewNeighbours = 3;
    struct Ring
    {
        GridBox box;
        bool isNarrow = false;
    };
    std::vector<Ring> all;
    for (const std::vector<GridRing> &rings : m_left) {
        for (const GridRing &ring : rings) {
            const double radius = boundOfThickness(ring);
            all.push_back({boxOf(ring), radius < narrow});
            if (radius < narrow)
                m_result.deviation = std::max(m_result.deviation, 2.0 * radius);
        }
    }
    if (all.empty())
        return;
    std::vector<std::uint32_t> order(all.size());
    for (std::uint32_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::sort(order.begin(), order.end(),
              [&all](std::uint32_t a, std::uint32_t b) { return all[a].box.low.x < all[b].box.low.x; });
    std::vector<std::uint8_t> neighbours(all.size(), 0);
    std::vector<std::uint32_t> open;
    const auto near = static_cast<std::int64_t>(2.0 * leastRadius);
    for (const std::uint32_t i : order) {
        const GridBox room = grown(all[i].box, near);
        std::size_t kept = 0;
        for (const std::uint32_t j : open) {
            if (all[j].box.high.x < room.low.x)
                continue;
            open[kept++] = j;
            if (!all[j].box.touches(room))
                continue;
            for (const std::uint32_t k : {i, j})
                neighbours[k] = static_cast<std::uint8_t>(std::min(neighbours[k] + 1, 255));
        }
        open.resize(kept);
        open.push_back(i);
    }
    std::vector<GridBox> where;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (!all[i].isNarrow || neighbours[i] >= fewNeighbours)
            where.push_back(grown(all[i].box, near));
    }
    if (where.empty())
        return;

    std::vector<RingPicture> pictures(2 * m_left.size());
    std::vector<Picture *> pointers;
    pointers.reserve(pictures.size());
    for (std::size_t run = 0; run < m_left.size(); ++run) {
        for (const GridRing &ring : m_left[run]) {
            pictures[2 * run].add(ring);
            pictures[2 * run + 1].add(reversed(ring));
        }
    }
    for (RingPicture &picture : pictures)
        pointers.push_back(&picture);
    forEachTile(
        pointers, std::move(where), margin,
        [this](const Tile &tile) {
            std::vector<GridRing> region;
            for (std::size_t i = 0; i < tile.areas.size(); i += 2) {
                const std::vector<GridRing> differs =
                    combined(BooleanOperation::Union, tile.areas[i], tile.areas[i + 1]);
                region = region.empty() ? differs : combined(BooleanOperation::Union, region, differs);
            }
            forEachIsland(region, [this](const std::vector<GridRing> &island) {
                const Fit fit = discFits(island, leastRadius);
                if (fit.fits)
                    addExact(boxOf(island[0]));
                else
                    m_result.deviation = std::max(m_result.deviation, 2.0 * fit.bound);
            });
        },
        [this](double share) { m_control.report(0.4 + 0.1 * share); });
}

void Comparer::compareExactly()
{
    if (m_exact.empty())
        return;
    forEachTile(
        {&m_first, &m_second}, std::move(m_exact), margin, [this](const Tile &tile) { compareTile(tile); },
        [this](double share) { m_control.report(0.5 + 0.45 * share); });
}

void Comparer::compareTile(const Tile &tile)
{
    // Each by itself first: where edges of both run along each other within a nanometre they would cross many
    // times, and every crossing, rounded, makes others. What both have then vanishes, usually everything.
    Chain chain(sameCorner);
    for (const GridRing &ring : combined(BooleanOperation::Union, tile.areas[0], {}))
        chain.addFirst(ring);
    for (const GridRing &ring : combined(BooleanOperation::Union, tile.areas[1], {}))
        chain.addSecond(ring);
    std::vector<GridRing> left = ringsOf(chain.take());
    if (left.empty())
        return;
    const std::vector<GridRing> missing = combined(BooleanOperation::Union, left, {});
    std::transform(left.begin(), left.end(), left.begin(), reversed);
    const std::vector<GridRing> extra = combined(BooleanOperation::Union, left, {});
    bool isFound = false;
    const auto judge = [&](const std::vector<GridRing> &rings, std::vector<GridRing> &found) {
        forEachIsland(rings, [&](std::vector<GridRing> island) {
            const Fit fit = discFits(island, leastRadius);
            m_result.deviation = std::max(m_result.deviation, 2.0 * fit.bound);
            if (!fit.fits)
                return;
            isFound = true;
            clip(island, tile.box);
            found.insert(found.end(), island.begin(), island.end());
        });
    };
    judge(missing, m_missing);
    judge(extra, m_extra);
    if (isFound || missing.empty() || extra.empty())
        return;
    forEachIsland(
        combined(BooleanOperation::Union, missing, extra), [&](const std::vector<GridRing> &island) {
            const Fit fit = discFits(island, leastRadius);
            m_result.deviation = std::max(m_result.deviation, 2.0 * fit.bound);
            if (!fit.fits)
                return;
            const Disc disc = largestDisc(island);
            m_mixed.push_back({disc.center, 2.0 * disc.radius, areaOf(island) / squareMillimetre, true});
        });
}

// Puts the pieces of tiles together, and tells what they are.
void Comparer::conclude()
{
    struct Island
    {
        std::vector<GridRing> rings;
        double area = 0.0;
        bool isMissing = false;
    };
    std::vector<Island> islands;
    const auto take = [&](std::vector<GridRing> &rings, bool isMissing, double &area,
                          std::vector<GridRing> &polygons) {
        RingPicture picture;
        for (GridRing &ring : rings)
            picture.add(std::move(ring));
        std::size_t corners = 0;
        for (const Paint &paint : picture.paints())
            corners += paint.corners;
        // So many that one sweep would take too long stay cut as they are.
        constexpr std::size_t mostCorners = 200000;
        const auto add = [&](const std::vector<GridRing> &island) {
            islands.push_back({island, areaOf(island) / squareMillimetre, isMissing});
            area += islands.back().area;
            if (m_control.wantsPolygons)
                polygons.insert(polygons.end(), island.begin(), island.end());
        };
        std::vector<GridRing> whole;
        for (std::uint32_t i = 0; i < picture.paints().size(); ++i)
            picture.rings(i, whole);
        if (corners <= mostCorners)
            return forEachIsland(combined(BooleanOperation::Union, whole, {}), add);
        forEachTile({&picture}, {}, 0, [&](const Tile &tile) {
            std::vector<GridRing> here = combined(BooleanOperation::Union, tile.areas[0], {});
            forEachIsland(here, add);
        });
    };
    take(m_missing, true, m_result.missingArea, m_result.missing);
    take(m_extra, false, m_result.extraArea, m_result.extra);
    // Where there are very many, the widest are looked for among the largest.
    constexpr std::size_t mostMeasured = 500;
    m_result.placesInAll = islands.size() + m_mixed.size();
    std::stable_sort(islands.begin(), islands.end(),
                     [](const Island &a, const Island &b) { return a.area > b.area; });
    if (islands.size() > mostMeasured)
        islands.resize(mostMeasured);
    std::vector<DifferencePlace> &places = m_result.places;
    for (const Island &island : islands) {
        const Disc disc = largestDisc(island.rings);
        places.push_back({disc.center, 2.0 * disc.radius, island.area, island.isMissing});
        m_result.deviation = std::max(m_result.deviation, 2.0 * disc.radius);
    }
    places.insert(places.end(), m_mixed.begin(), m_mixed.end());
    std::stable_sort(places.begin(), places.end(),
                     [](const DifferencePlace &a, const DifferencePlace &b) { return a.width > b.width; });
    if (places.size() > m_control.mostPlaces)
        places.resize(m_control.mostPlaces);
}

} // namespace

Comparison compare(Picture &first, Picture &second, const VerifyControl &control)
{
    return Comparer(first, second, control).compare();
}

} // namespace cam::verify
