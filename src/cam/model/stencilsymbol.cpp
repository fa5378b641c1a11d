// Each shape is drawn from corners with a radius each. Growing moves edges, so a rounded corner keeps its
// centre: an outer one gets rounder, an inner one sharper.
#include "cam/model/stencilsymbol.h"

#include "cam/model/outline.h"

#include <algorithm>
#include <cmath>

namespace cam {

namespace {

constexpr double least = 1.0;     // nanometres: what is shorter is no side of a symbol
constexpr double shortest = 1e-3; // nanometres: closer points are one

struct Corner
{
    Point at;
    double radius = 0.0;
};

using Corners = std::vector<Corner>; // counter-clockwise

const Corner &before(const Corners &corners, std::size_t index)
{
    return corners[(index + corners.size() - 1) % corners.size()];
}

const Corner &behind(const Corners &corners, std::size_t index)
{
    return corners[(index + 1) % corners.size()];
}

// Positive where the outline turns left.
double turnAt(const Corners &corners, std::size_t index)
{
    const Point at = corners[index].at;
    return cross(at - before(corners, index).at, behind(corners, index).at - at);
}

// Leaves out corners that are equal to the one before or lie on a straight line: sizes may make a side
// vanish.
Corners properCorners(const Corners &corners)
{
    Corners distinct;
    for (const Corner &corner : corners) {
        if (distinct.empty() || distance(distinct.back().at, corner.at) > shortest)
            distinct.push_back(corner);
    }
    while (distinct.size() > 1 && distance(distinct.front().at, distinct.back().at) <= shortest)
        distinct.pop_back();
    Corners proper;
    for (std::size_t i = 0; i < distinct.size(); ++i) {
        const double sides = distance(before(distinct, i).at, behind(distinct, i).at);
        if (std::fabs(turnAt(distinct, i)) > shortest * sides)
            proper.push_back(distinct[i]);
    }
    return proper;
}

// How much of each side the arc of a corner takes.
double toTouch(const Corners &corners, std::size_t index)
{
    const Point back = before(corners, index).at - corners[index].at;
    const Point ahead = behind(corners, index).at - corners[index].at;
    const double cosine = dot(back, ahead) / (length(back) * length(ahead));
    return corners[index].radius * std::sqrt(std::max(0.0, 1.0 + cosine) / (1.0 - cosine));
}

// Cuts radii to what the sides allow: where two arcs need more than their side has, both shrink alike.
void fitRadii(Corners &corners)
{
    std::vector<double> taken(corners.size());
    for (std::size_t i = 0; i < corners.size(); ++i)
        taken[i] = toTouch(corners, i);
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const std::size_t next = (i + 1) % corners.size();
        const double needed = taken[i] + taken[next];
        const double side = distance(corners[i].at, corners[next].at);
        if (needed <= side)
            continue;
        for (const std::size_t end : {i, next}) {
            const double fitting = taken[end] > 0.0 ? side / needed : 1.0;
            corners[end].radius *= fitting;
            taken[end] *= fitting;
        }
    }
}

// A radius about the same centre once the edges have moved outwards by `distance`.
double movedRadius(double radius, double distance)
{
    return radius > 0.0 ? std::max(0.0, radius + distance) : 0.0;
}

Outline outlineOf(Corners corners)
{
    corners = properCorners(corners);
    if (corners.size() < 3)
        return {};
    fitRadii(corners);
    Polygon polygon;
    std::vector<double> radii;
    for (const Corner &corner : corners) {
        polygon.push_back(corner.at);
        radii.push_back(corner.radius);
    }
    return roundedOutline(polygon, radii);
}

void addSolid(Shape &shape, const Corners &corners)
{
    add(shape.contours, outlineOf(corners), false);
}

Corners box(double left, double bottom, double right, double top, double radius)
{
    return {
        {{left, bottom}, radius}, {{right, bottom}, radius}, {{right, top}, radius}, {{left, top}, radius}};
}

// ---- plates: the right end is cut to a point or to a shorter flat, or has a notch or a bite

// Name's radii: `acute` is for corners of up to 90 degrees, `obtuse` for wider ones. The flat plate tells
// that right angles count as acute: it has no others for that radius.
struct Radii
{
    double acute = 0.0;
    double obtuse = 0.0;
};

void giveRadii(Corners &corners, const Radii &radii)
{
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Point back = before(corners, i).at - corners[i].at;
        const Point ahead = behind(corners, i).at - corners[i].at;
        const bool isInner = turnAt(corners, i) < 0.0;
        const double slack = 1e-9 * length(back) * length(ahead);
        corners[i].radius = !isInner && dot(back, ahead) >= -slack ? radii.acute : radii.obtuse;
    }
}

// A convex outline with every edge moved outwards by `distance`. A corner keeps its radius where its edges
// still meet.
Corners movedConvex(const Corners &corners, double distance)
{
    struct Start
    {
        Point at;
        std::size_t edge; // the one that begins here
    };
    const std::size_t count = corners.size();
    const auto edge = [&](std::size_t index) {
        const Point from = corners[index].at, along = behind(corners, index).at - from;
        return Straight{from + Point{along.y, -along.x} * (distance / length(along)), along};
    };
    std::vector<Start> starts;
    // Outwards, the moved edges meet in the order in which they were; inwards, some may be gone.
    for (std::size_t i = 0; i < count; ++i)
        starts.push_back(
            {distance > 0.0 ? intersection(edge((i + count - 1) % count), edge(i)) : corners[i].at, i});
    for (std::size_t i = 0; i < count && distance < 0.0; ++i) {
        const Straight cut = edge(i);
        std::vector<Start> left;
        for (std::size_t k = 0; k < starts.size(); ++k) {
            const Start from = starts[k];
            const Point to = starts[(k + 1) % starts.size()].at;
            const double here = cross(cut.direction, from.at - cut.at);
            const double there = cross(cut.direction, to - cut.at);
            if (here >= 0.0)
                left.push_back(from);
            if ((here > 0.0 && there < 0.0) || (here < 0.0 && there > 0.0))
                left.push_back(
                    {from.at + (to - from.at) * (here / (here - there)), here > 0.0 ? i : from.edge});
        }
        starts = std::move(left);
    }
    Corners moved;
    for (std::size_t k = 0; k < starts.size(); ++k) {
        const std::size_t coming = starts[(k + starts.size() - 1) % starts.size()].edge;
        const bool isAsBefore = (coming + 1) % count == starts[k].edge;
        moved.push_back(
            {starts[k].at, isAsBefore ? movedRadius(corners[starts[k].edge].radius, distance) : 0.0});
    }
    return moved;
}

// Half sizes, and how far the edges move outwards.
struct Frame
{
    double x;
    double y;
    double moved;

    double left() const { return -x - moved; }
    double right() const { return x + moved; }
    double top() const { return y + moved; }
    bool isEmpty() const { return x + moved <= 0.0 || y + moved <= 0.0; }
};

Frame frameOf(const StandardSymbol &symbol, double growth)
{
    return {symbol.size[0] / 2.0, symbol.size[1] / 2.0, growth / 2.0};
}

void addConvexPlate(Shape &shape, Corners corners, const Radii &radii, double moved)
{
    corners = properCorners(corners);
    giveRadii(corners, radii);
    fitRadii(corners);
    addSolid(shape, movedConvex(corners, moved));
}

void addHomePlate(Shape &shape, const StandardSymbol &symbol, const Frame &frame)
{
    const double x = frame.x, y = frame.y, shoulder = std::max(-x, x - symbol.size[2]);
    addConvexPlate(shape, {{{-x, -y}}, {{shoulder, -y}}, {{x, 0.0}}, {{shoulder, y}}, {{-x, y}}},
                   {symbol.size[3], symbol.size[4]}, frame.moved);
}

void addFlatPlate(Shape &shape, const StandardSymbol &symbol, const Frame &frame)
{
    const double x = frame.x, y = frame.y;
    const double flat = std::max(0.0, y - symbol.size[2]), shoulder = std::max(-x, x - symbol.size[3]);
    addConvexPlate(shape,
                   {{{-x, -y}}, {{shoulder, -y}}, {{x, -flat}}, {{x, flat}}, {{shoulder, y}}, {{-x, y}}},
                   {symbol.size[4], symbol.size[5]}, frame.moved);
}

Corners mirroredDown(const Corners &corners)
{
    Corners mirrored;
    for (auto corner = corners.rbegin(); corner != corners.rend(); ++corner)
        mirrored.push_back({{corner->at.x, -corner->at.y}, corner->radius});
    return mirrored;
}

// A notch whose sides run from the corners of the right end to a point on the axis.
void addInvertedPlate(Shape &shape, const StandardSymbol &symbol, const Frame &frame)
{
    const double x = frame.x, y = frame.y, cut = symbol.size[2];
    const Radii radii{symbol.size[3], symbol.size[4]};
    if (cut <= 0.0)
        return addConvexPlate(shape, box(-x, -y, x, y, 0.0), radii, frame.moved);
    Corners corners = {{{-x, -y}}, {{x, -y}}, {{x - cut, 0.0}}, {{x, y}}, {{-x, y}}};
    giveRadii(corners, radii);
    fitRadii(corners);
    const double slope = cut / y;
    const double bottom = x - cut + frame.moved * std::sqrt(1.0 + slope * slope); // of the notch, on the axis
    const double tip = bottom + slope * frame.top();
    if (frame.top() <= 0.0 || tip <= frame.left())
        return;
    const double tipRadius = movedRadius(corners[1].radius, frame.moved);
    const double boxRadius = movedRadius(corners[0].radius, frame.moved);
    if (bottom > frame.left()) {
        addSolid(shape, {{{frame.left(), -frame.top()}, boxRadius},
                         {{tip, -frame.top()}, tipRadius},
                         {{bottom, 0.0}, movedRadius(corners[2].radius, -frame.moved)},
                         {{tip, frame.top()}, tipRadius},
                         {{frame.left(), frame.top()}, boxRadius}});
        return;
    }
    // The notch reaches through the plate and leaves two pieces.
    const Corners upper = {{{frame.left(), (frame.left() - bottom) / slope}, 0.0},
                           {{tip, frame.top()}, tipRadius},
                           {{frame.left(), frame.top()}, boxRadius}};
    addSolid(shape, upper);
    addSolid(shape, mirroredDown(upper));
}

// `outline` with `way`, which runs from one point of a straight side to another, in the place of what lies
// between them.
Outline withWay(Outline outline, Point from, Point to, std::vector<Edge> way)
{
    for (std::size_t i = 0; i < outline.edges.size(); ++i) {
        const Point start = outline.startOf(i), end = outline.edges[i].end;
        const double detour =
            distance(start, from) + distance(from, to) + distance(to, end) - distance(start, end);
        if (outline.edges[i].kind != EdgeKind::Line || detour > shortest)
            continue;
        if (distance(start, from) > shortest)
            way.insert(way.begin(), {from, {}, EdgeKind::Line});
        if (distance(to, end) > shortest)
            way.push_back({end, {}, EdgeKind::Line});
        const auto side = outline.edges.begin() + static_cast<std::ptrdiff_t>(i);
        *side = way.back();
        outline.edges.insert(side, way.begin(), way.end() - 1);
        break;
    }
    return outline;
}

double halfChord(double radius, double fromCentre)
{
    return std::sqrt(std::max(0.0, radius * radius - fromCentre * fromCentre));
}

// A circle about the middle of the right end is bitten out of the plate.
void addBittenPlate(Shape &shape, const StandardSymbol &symbol, const Frame &frame)
{
    const Point centre = {frame.x, 0.0};
    const double bite = symbol.size[2] / 2.0, radius = bite - frame.moved;
    if (frame.isEmpty())
        return;
    Corners plain = box(-frame.x, -frame.y, frame.x, frame.y, symbol.size[3]);
    // The arcs at the right end leave the bite as it is.
    const double lip = frame.y - bite;
    fitRadii(plain);
    for (const std::size_t atBite : {1, 2})
        plain[atBite].radius = std::clamp(plain[atBite].radius, 0.0, std::max(0.0, lip));
    const double leftRadius = movedRadius(plain[0].radius, frame.moved);
    const double rightRadius = movedRadius(plain[1].radius, frame.moved);
    if (bite <= 0.0 || radius <= 0.0) {
        addSolid(shape, {{{frame.left(), -frame.top()}, leftRadius},
                         {{frame.right(), -frame.top()}, rightRadius},
                         {{frame.right(), frame.top()}, rightRadius},
                         {{frame.left(), frame.top()}, leftRadius}});
        return;
    }
    const double reach = frame.x - radius; // where the bite crosses the axis
    const double mouth = frame.moved > 0.0 ? radius : halfChord(radius, frame.moved); // half of it
    const bool hasEnd = mouth + least < frame.top(); // something is left of the right end beside the bite
    // Where the bite's arc ends at the top: at the right end, or on the long side.
    const Point arcEnd = !hasEnd             ? Point{frame.x - halfChord(radius, frame.top()), frame.top()}
                         : frame.moved > 0.0 ? Point{frame.x, radius}
                                             : Point{frame.right(), mouth};
    const auto below = [](Point p) { return Point{p.x, -p.y}; };
    if (reach <= frame.left()) { // two pieces
        if (arcEnd.x <= frame.left())
            return;
        Outline upper;
        const Point atLeft = {frame.left(), halfChord(radius, frame.left() - frame.x)};
        upper.start = {frame.left(), frame.top()};
        upper.lineTo(atLeft);
        upper.arcTo(arcEnd, centre, EdgeKind::ArcClockwise);
        if (hasEnd) {
            upper.lineTo({frame.right(), mouth});
            upper.lineTo({frame.right(), frame.top()});
        }
        upper.lineTo(upper.start);
        add(shape.contours, upper, false);
        Outline lower;
        lower.start = below(upper.start);
        for (std::size_t i = upper.edges.size(); i-- > 0;) {
            const Edge &edge = upper.edges[i];
            lower.edges.push_back({below(upper.startOf(i)), below(edge.center), edge.kind});
        }
        add(shape.contours, lower, false);
        return;
    }
    const Point to = hasEnd ? Point{frame.right(), mouth} : arcEnd;
    Corners corners = box(frame.left(), -frame.top(), to.x, frame.top(), leftRadius);
    corners[1].radius = corners[2].radius = hasEnd ? std::min(rightRadius, frame.top() - mouth) : 0.0;
    std::vector<Edge> way;
    if (arcEnd != to)
        way.push_back({below(arcEnd), {}, EdgeKind::Line});
    way.push_back({arcEnd, centre, EdgeKind::ArcClockwise});
    if (arcEnd != to)
        way.push_back({to, {}, EdgeKind::Line});
    add(shape.contours, withWay(outlineOf(corners), below(to), to, way), false);
}

// The right end is an arc through its middle, `relief` higher than its ends.
void addRoundPlate(Shape &shape, const StandardSymbol &symbol, const Frame &frame)
{
    const double relief = std::min(symbol.size[2], frame.y);
    if (frame.isEmpty())
        return;
    Corners plain = box(-frame.x, -frame.y, frame.x - relief, frame.y, 0.0);
    plain[0].radius = plain[3].radius = symbol.size[3];
    const bool isOnlyArc = relief >= 2.0 * frame.x;
    if (isOnlyArc)
        plain[0].radius = 0.0;
    else
        fitRadii(plain);
    const double radius = movedRadius(plain[0].radius, frame.moved);
    if (relief <= 0.0) {
        Corners corners = box(frame.left(), -frame.top(), frame.right(), frame.top(), 0.0);
        corners[0].radius = corners[3].radius = radius;
        return addSolid(shape, corners);
    }
    const double arcRadius = (frame.y * frame.y + relief * relief) / (2.0 * relief);
    const Point centre = {frame.x - arcRadius, 0.0};
    const double moved = arcRadius + frame.moved;
    if (centre.x + moved <= frame.left())
        return;
    Point end = {centre.x + halfChord(moved, frame.top()), frame.top()};
    Corners corners;
    const bool hasSides = !isOnlyArc || relief == frame.y; // a half circle stays one with straight ends
    if (hasSides && end.x > frame.left() + least)
        corners = {
            {{frame.left(), -end.y}, radius}, {{end.x, -end.y}}, {end}, {{frame.left(), end.y}, radius}};
    else
        end = {frame.left(), halfChord(moved, frame.left() - centre.x)};
    const Point from = {end.x, -end.y};
    if (corners.empty()) { // a segment of the circle
        Outline segment;
        segment.start = from;
        segment.arcTo(end, centre);
        segment.lineTo(from);
        return add(shape.contours, segment, false);
    }
    add(shape.contours,
        withWay(outlineOf(corners), from, end, {{end, centre, EdgeKind::ArcCounterClockwise}}), false);
}

// ---- bars

// Bars of a cross or a dogbone: `line` is the radius of their round ends, `inner` of the corners between
// them.
struct BarRadii
{
    double line = 0.0;
    double inner = 0.0;
};

// The middle of a bar of `width` at `percent` of a side from -half to half, moved to where the bar stays
// inside.
double crossPoint(double percent, double half, double width)
{
    const double reach = std::max(0.0, half - width / 2.0);
    return std::clamp(-half + 2.0 * half * percent / 100.0, -reach, reach);
}

void addCross(Shape &shape, const StandardSymbol &symbol, const Frame &frame)
{
    const double horizontal = std::min(symbol.size[2], symbol.size[1]); // widths of the bars
    const double vertical = std::min(symbol.size[3], symbol.size[0]);
    const double x = crossPoint(symbol.size[4], frame.x, vertical);
    const double y = crossPoint(symbol.size[5], frame.y, horizontal);
    const double aside = vertical / 2.0 + frame.moved, above = horizontal / 2.0 + frame.moved;
    const bool isRound = symbol.ends == EndStyle::Round;
    const double atSide = isRound ? above : 0.0, atTop = isRound ? aside : 0.0;
    const double inner = movedRadius(symbol.cornerSize, -frame.moved);
    const bool hasHorizontal = horizontal > 0.0 && above > 0.0 && frame.right() > 0.0;
    const bool hasVertical = vertical > 0.0 && aside > 0.0 && frame.top() > 0.0;
    const double left = x - aside, right = x + aside, bottom = y - above, top = y + above;
    if (hasHorizontal && hasVertical) {
        addSolid(shape, {{{frame.right(), bottom}, atSide},
                         {{frame.right(), top}, atSide},
                         {{right, top}, inner},
                         {{right, frame.top()}, atTop},
                         {{left, frame.top()}, atTop},
                         {{left, top}, inner},
                         {{frame.left(), top}, atSide},
                         {{frame.left(), bottom}, atSide},
                         {{left, bottom}, inner},
                         {{left, -frame.top()}, atTop},
                         {{right, -frame.top()}, atTop},
                         {{right, bottom}, inner}});
    } else if (hasHorizontal) {
        addSolid(shape, box(frame.left(), bottom, frame.right(), top, atSide));
    } else if (hasVertical) {
        addSolid(shape, box(left, -frame.top(), right, frame.top(), atTop));
    }
}

// Two horizontal bars, joined by a vertical one.
void addDogbone(Shape &shape, const StandardSymbol &symbol, const Frame &frame)
{
    const double horizontal = symbol.size[2], vertical = std::min(symbol.size[3], symbol.size[0]);
    const double x = crossPoint(symbol.size[4], frame.x, vertical);
    const double aside = vertical / 2.0 + frame.moved, above = horizontal / 2.0 + frame.moved;
    const double end = symbol.ends == EndStyle::Round ? above : 0.0;
    const double inner = movedRadius(symbol.cornerSize, -frame.moved);
    const double bar = frame.y - horizontal - frame.moved; // from the axis to a bar's inner edge
    const double left = x - aside, right = x + aside;
    if (frame.isEmpty())
        return;
    const bool hasBars = horizontal > 0.0 && above > 0.0;
    const bool hasJoint = vertical > 0.0 && aside > 0.0;
    if (hasBars && bar <= 0.0) { // no gap between the bars
        addSolid(shape, box(frame.left(), -frame.top(), frame.right(), frame.top(), end));
    } else if (hasBars && hasJoint) {
        addSolid(shape, {{{frame.left(), -frame.top()}, end},
                         {{frame.right(), -frame.top()}, end},
                         {{frame.right(), -bar}, end},
                         {{right, -bar}, inner},
                         {{right, bar}, inner},
                         {{frame.right(), bar}, end},
                         {{frame.right(), frame.top()}, end},
                         {{frame.left(), frame.top()}, end},
                         {{frame.left(), bar}, end},
                         {{left, bar}, inner},
                         {{left, -bar}, inner},
                         {{frame.left(), -bar}, end}});
    } else if (hasBars) {
        addSolid(shape, box(frame.left(), -frame.top(), frame.right(), -bar, end));
        addSolid(shape, box(frame.left(), bar, frame.right(), frame.top(), end));
    } else if (hasJoint) {
        addSolid(shape, box(left, -frame.top(), right, frame.top(), 0.0));
    }
}

// ---- a grid of pads

double padSize(double side, double gap, int count)
{
    return (side - gap * (count - 1)) / count;
}

void addPadGrid(Shape &shape, const StandardSymbol &symbol, const Frame &frame)
{
    const int columns = static_cast<int>(symbol.size[4]), rows = static_cast<int>(symbol.size[5]);
    const double width = padSize(symbol.size[0], symbol.size[2], columns);
    const double height = padSize(symbol.size[1], symbol.size[3], rows);
    const double moved = frame.moved;
    if (width + 2.0 * moved <= 0.0 || height + 2.0 * moved <= 0.0)
        return;
    const double radius = movedRadius(std::min(symbol.size[6], std::min(width, height) / 2.0), moved);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const double left = -frame.x + column * (width + symbol.size[2]);
            const double bottom = -frame.y + row * (height + symbol.size[3]);
            addSolid(shape, box(left - moved, bottom - moved, left + width + moved, bottom + height + moved,
                                radius));
        }
    }
}

} // namespace

void addStencilSymbol(Shape &shape, const StandardSymbol &symbol, double growth)
{
    const Frame frame = frameOf(symbol, growth);
    switch (symbol.kind) {
    case SymbolKind::HomePlate:
        return addHomePlate(shape, symbol, frame);
    case SymbolKind::InvertedHomePlate:
        return addInvertedPlate(shape, symbol, frame);
    case SymbolKind::FlatHomePlate:
        return addFlatPlate(shape, symbol, frame);
    case SymbolKind::BittenHomePlate:
        return addBittenPlate(shape, symbol, frame);
    case SymbolKind::RoundHomePlate:
        return addRoundPlate(shape, symbol, frame);
    case SymbolKind::Cross:
        return addCross(shape, symbol, frame);
    case SymbolKind::Dogbone:
        return addDogbone(shape, symbol, frame);
    case SymbolKind::PadGrid:
        return addPadGrid(shape, symbol, frame);
    default:
        return;
    }
}

} // namespace cam
