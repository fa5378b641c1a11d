#include "cam/verify/tiles.h"

#include "cam/polygon/arrangement.h"
#include "cam/verify/corners.h"

#include <algorithm>

namespace cam::verify {

namespace {

constexpr std::size_t tileCorners = 1500; // of a tile at most, where it can be cut
constexpr std::size_t fewCorners = 8;     // as many are not worth to be kept cut
constexpr int deepest = 40;

struct Item
{
    std::uint32_t picture = 0;
    std::uint32_t paint = 0;
    std::size_t corners = 0;
    GridBox box;
    bool isCut = false;
    std::vector<GridRing> rings; // of what has been cut
};

struct Piece
{
    GridBox box;
    std::vector<Item> items; // in painting order
    std::vector<GridBox> where;
};

GridBox grown(GridBox box, std::int64_t by)
{
    box.low = {box.low.x - by, box.low.y - by};
    box.high = {box.high.x + by, box.high.y + by};
    return box;
}

GridBox common(const GridBox &a, const GridBox &b)
{
    GridBox box;
    box.low = {std::max(a.low.x, b.low.x), std::max(a.low.y, b.low.y)};
    box.high = {std::min(a.high.x, b.high.x), std::min(a.high.y, b.high.y)};
    return box;
}

class Resolver
{
public:
    Resolver(const std::vector<Picture *> &pictures, std::int64_t margin,
             const std::function<void(const Tile &)> &visit, const std::function<void(double)> &report)
        : m_pictures(pictures), m_margin(margin), m_visit(visit), m_report(report)
    {
    }

    void resolve(Piece piece, int depth, double from, double to);

private:
    Piece part(const Piece &piece, const GridBox &box) const;
    Item part(const Item &item, const GridBox &room) const;
    void dropCovered(std::vector<Item> &items, const GridBox &room) const;
    void resolveWhole(const Piece &piece);
    std::vector<GridRing> areaOf(const Piece &piece, std::uint32_t picture);

    const std::vector<Picture *> &m_pictures;
    std::int64_t m_margin;
    const std::function<void(const Tile &)> &m_visit;
    const std::function<void(double)> &m_report;
};

void Resolver::resolve(Piece piece, int depth, double from, double to)
{
    if (piece.where.empty())
        return;
    // What lies around everything that is asked for does not matter.
    GridBox wanted;
    for (const GridBox &box : piece.where)
        wanted.add(box);
    if (wanted.high.x - wanted.low.x < piece.box.high.x - piece.box.low.x ||
        wanted.high.y - wanted.low.y < piece.box.high.y - piece.box.low.y)
        piece = part(piece, common(piece.box, wanted));
    m_report(from);
    const std::int64_t width = piece.box.high.x - piece.box.low.x,
                       height = piece.box.high.y - piece.box.low.y;
    std::size_t corners = 0;
    for (const Item &item : piece.items)
        corners += item.corners;
    if (corners <= tileCorners || depth == 0 || std::max(width, height) <= 2 * m_margin + 100)
        return resolveWhole(piece);
    GridBox low = piece.box, high = piece.box;
    if (width >= height)
        low.high.x = high.low.x = piece.box.low.x + width / 2;
    else
        low.high.y = high.low.y = piece.box.low.y + height / 2;
    const double middle = (from + to) / 2.0;
    Piece first = part(piece, low);
    Piece second = part(piece, high);
    piece = Piece();
    resolve(std::move(first), depth - 1, from, middle);
    resolve(std::move(second), depth - 1, middle, to);
}

Piece Resolver::part(const Piece &piece, const GridBox &box) const
{
    Piece part;
    part.box = box;
    for (const GridBox &wanted : piece.where) {
        if (!wanted.touches(box))
            continue;
        const GridBox here = common(wanted, box);
        // What only touches the cut belongs to the other side, unless it has no other.
        if ((here.low.x == here.high.x && wanted.low.x != wanted.high.x) ||
            (here.low.y == here.high.y && wanted.low.y != wanted.high.y))
            continue;
        part.where.push_back(here);
    }
    if (part.where.empty())
        return part;
    const GridBox room = grown(box, m_margin);
    for (const Item &item : piece.items) {
        if (!item.box.touches(room))
            continue;
        part.items.push_back(this->part(item, room));
        if (part.items.back().isCut && part.items.back().rings.empty())
            part.items.pop_back();
    }
    dropCovered(part.items, room);
    return part;
}

bool covers(const Item &item, const GridBox &room)
{
    if (item.rings.size() != 1 || item.rings[0].size() != 4)
        return false;
    const GridRing all = room.ring();
    return std::is_permutation(all.begin(), all.end(), item.rings[0].begin()) &&
           doubledArea(item.rings[0]) > 0.0;
}

// What covers the whole room leaves nothing to see of what its group has painted before, nor of what is
// painted in the same colour before the next one of the other.
void Resolver::dropCovered(std::vector<Item> &items, const GridBox &room) const
{
    struct Group
    {
        std::uint32_t picture = 0, number = 0;
        bool isAllDark = false; // so far, from the first item on that is kept
        std::size_t first = 0;  // those before it are covered
    };
    std::vector<Group> groups;
    constexpr std::size_t noGroup = SIZE_MAX;
    std::vector<std::size_t> groupOf(items.size(), noGroup);
    std::vector<bool> isDropped(items.size(), false);
    for (std::size_t i = 0; i < items.size(); ++i) {
        const Picture &picture = *m_pictures[items[i].picture];
        if (!picture.arePaintsApart())
            continue;
        const Paint &paint = picture.paints()[items[i].paint];
        // Usually that of the item before.
        std::size_t number = groups.size();
        while (number > 0 &&
               (groups[number - 1].picture != items[i].picture || groups[number - 1].number != paint.group))
            --number;
        if (number == 0) {
            groups.push_back({items[i].picture, paint.group, false, 0});
            number = groups.size();
        }
        groupOf[i] = number - 1;
        Group &group = groups[number - 1];
        if (paint.dark && group.isAllDark) {
            isDropped[i] = true;
        } else if (covers(items[i], room)) {
            group.isAllDark = paint.dark;
            group.first = i;
        } else {
            group.isAllDark = false;
        }
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (isDropped[i] || (groupOf[i] != noGroup && i < groups[groupOf[i]].first))
            continue;
        if (kept != i)
            items[kept] = std::move(items[i]);
        ++kept;
    }
    items.resize(kept);
}

// What crosses the border of the room is drawn and cut, once for everything within: where thousands of paints
// lie over each other, few corners of each are left in a tile.
Item Resolver::part(const Item &item, const GridBox &room) const
{
    // Long ones may have nothing in the room but their box.
    const bool isLong = item.box.high.x - item.box.low.x > room.high.x - room.low.x ||
                        item.box.high.y - item.box.low.y > room.high.y - room.low.y;
    if (room.contains(item.box) || (item.corners <= fewCorners && !isLong))
        return item;
    Item cut;
    cut.picture = item.picture;
    cut.paint = item.paint;
    cut.isCut = true;
    if (item.isCut)
        cut.rings = item.rings;
    else
        m_pictures[item.picture]->rings(item.paint, cut.rings);
    clip(cut.rings, room);
    for (const GridRing &ring : cut.rings) {
        cut.corners += ring.size();
        cut.box.add(ring);
    }
    return cut;
}

void Resolver::resolveWhole(const Piece &piece)
{
    Tile tile;
    tile.box = piece.box;
    for (std::uint32_t i = 0; i < m_pictures.size(); ++i)
        tile.areas.push_back(areaOf(piece, i));
    m_visit(tile);
}

std::vector<GridRing> Resolver::areaOf(const Piece &piece, std::uint32_t picture)
{
    Picture &source = *m_pictures[picture];
    const GridBox room = grown(piece.box, m_margin);
    struct Group
    {
        std::uint32_t number = 0;
        std::vector<GridRing> area, run;
        bool isRunDark = true;
        void end()
        {
            if (run.empty())
                return;
            if (!isRunDark)
                area = combined(BooleanOperation::Difference, area, run);
            else
                area.insert(area.end(), run.begin(), run.end());
            run.clear();
        }
    };
    std::vector<Group> groups;
    for (const Item &item : piece.items) {
        if (item.picture != picture)
            continue;
        const Paint &paint = source.paints()[item.paint];
        auto group = std::find_if(groups.rbegin(), groups.rend(),
                                  [&paint](const Group &g) { return g.number == paint.group; });
        if (group == groups.rend()) {
            groups.emplace_back();
            groups.back().number = paint.group;
            group = groups.rbegin();
        }
        std::vector<GridRing> rings;
        if (item.isCut)
            rings = item.rings;
        else
            source.rings(item.paint, rings);
        if (!room.contains(item.box))
            clip(rings, room);
        if (paint.dark != group->isRunDark)
            group->end();
        group->isRunDark = paint.dark;
        group->run.insert(group->run.end(), std::make_move_iterator(rings.begin()),
                          std::make_move_iterator(rings.end()));
    }
    std::vector<GridRing> area, base;
    for (Group &group : groups) {
        group.end();
        std::vector<GridRing> &into = group.number == baseGroup ? base : area;
        into.insert(into.end(), group.area.begin(), group.area.end());
    }
    return source.isNegated() ? combined(BooleanOperation::Difference, base, area) : area;
}

} // namespace

void forEachTile(const std::vector<Picture *> &pictures, std::vector<GridBox> where, std::int64_t margin,
                 const std::function<void(const Tile &)> &visit, const std::function<void(double)> &report)
{
    Piece plane;
    for (std::uint32_t i = 0; i < pictures.size(); ++i) {
        const std::vector<Paint> &paints = pictures[i]->paints();
        for (std::uint32_t j = 0; j < paints.size(); ++j) {
            Item item;
            item.picture = i;
            item.paint = j;
            item.corners = paints[j].corners;
            item.box = paints[j].box;
            plane.box.add(item.box);
            plane.items.push_back(std::move(item));
        }
    }
    if (plane.box.isEmpty())
        return;
    plane.where = where.empty() ? std::vector<GridBox>{plane.box} : std::move(where);
    plane.box = GridBox();
    for (const GridBox &box : plane.where)
        plane.box.add(box);
    Resolver(pictures, margin, visit, report).resolve(std::move(plane), deepest, 0.0, 1.0);
    report(1.0);
}

} // namespace cam::verify
