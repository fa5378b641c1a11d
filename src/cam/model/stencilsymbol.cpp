// Each shape is drawn from corners with a radius each.
#include "cam/model/stencilsymbol.h"

#include "cam/model/coveredarea.h"
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

// Half sizes.
struct Frame
{
    double x;
    double y;
};

Frame frameOf(const StandardSymbol &symbol)
{
    return {symbol.size[0] / 2.0, symbol.size[1] / 2.0};
}

void addConvexPlate(Shape &shape, Corners corners, const Radii &radii)
{
    corners = properCorners(corners);
    giveRadii(corners, radii);
    addSolid(shape, corners);
}

void addHomePlate(Shape &shape, const StandardSymbol &symbol, const Frame &frame)
{
    const double x = frame.x, y = frame.y, shoulder = std::max(-x, x - symbol.size[2]);
    addConvexPlate(shape, {{{-x, -y}}, {{shoulder, -y}}, {{x, 0.0}}, {{shoulder, y}}, {{-x, y}}},
                   {symbol.size[3], symbol.size[4]});
}

void addFlatPlate(Shape &shape, const StandardSymbol &symbol, const Frame &frame)
{
    const double x = frame.x, y = frame.y;
    const double flat = std::max(0.0, y - symbol.size[2]), shoulder = std::max(-x, x - symbol.size[3]);
    addConvexPlate(shape,
                   {{{-x, -y}}, {{shoulder, -y}}, {{x, -flat}}, {{x, flat}}, {{shoulder, y}}, {{-x, y}}},
                   {symbol.size[4], symbol.size[5]});
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
        return addConvexPlate(shape, box(-x, -y, x, y, 0.0), radii);
    Corners corners = {{{-x, -y}}, {{x, -y}}, {{x - cut, 0.0}}, {{x, y}}, {{-x, y}}};
    giveRadii(corners, radii);
    fitRadii(corners);
    if (x - cut > -x)
        return addSolid(shape, corners);
    // The notch reaches through the plate and leaves two pieces.
    const Corners upper = {{{-x, 0.0}, 0.0}, corners[3], corners[4]};
    addSolid(shape, upper);
    addSolid(shape, mirroredDown(upper));
}

// A circle about the middle of the right end is bitten out of the plate.
void addBittenPlate(Shape &shape, const StandardSymbol &symbol, const Frame &frame)
{
    const double bite = symbol.size[2] / 2.0;
    Corners corners = box(-frame.x, -frame.y, frame.x, frame.y, symbol.size[3]);
    fitRadii(corners);
    // The arcs at the right end leave the bite as it is.
    for (const std::size_t atBite : {1, 2})
        corners[atBite].radius = std::clamp(corners[atBite].radius, 0.0, std::max(0.0, frame.y - bite));
    const Outline plate = outlineOf(corners), circle = circleOutline({frame.x, 0.0}, bite);
    addCoveredArea(shape.contours, {plate, circle},
                   [&](Point at) { return contains(plate, at) && !contains(circle, at); });
}

// The right end is an arc through its middle, `relief` higher than its ends.
void addRoundPlate(Shape &shape, const StandardSymbol &symbol, const Frame &frame)
{
    const double relief = std::min(symbol.size[2], frame.y), shoulder = frame.x - relief;
    Corners straight = box(-frame.x, -frame.y, shoulder, frame.y, 0.0);
    straight[0].radius = straight[3].radius = symbol.size[3];
    if (shoulder > -frame.x + least)
        fitRadii(straight);
    else
        straight[0].radius = straight[3].radius = 0.0;
    Corners corners = box(-frame.x, -frame.y, frame.x, frame.y, 0.0);
    corners[0].radius = corners[3].radius = straight[0].radius;
    if (relief <= 0.0)
        return addSolid(shape, corners);
    const double arcRadius = (frame.y * frame.y + relief * relief) / (2.0 * relief);
    const Outline plate = outlineOf(corners), circle = circleOutline({frame.x - arcRadius, 0.0}, arcRadius);
    addCoveredArea(shape.contours, {plate, circle}, [&](Point at) {
        return contains(plate, at) && (at.x < shoulder || contains(circle, at));
    });
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
    const double aside = vertical / 2.0, above = horizontal / 2.0;
    const bool isRound = symbol.ends == EndStyle::Round;
    const double atSide = isRound ? above : 0.0, atTop = isRound ? aside : 0.0;
    const double inner = symbol.cornerSize;
    const bool hasHorizontal = horizontal > 0.0, hasVertical = vertical > 0.0;
    const double left = x - aside, right = x + aside, bottom = y - above, top = y + above;
    if (hasHorizontal && hasVertical) {
        addSolid(shape, {{{frame.x, bottom}, atSide},
                         {{frame.x, top}, atSide},
                         {{right, top}, inner},
                         {{right, frame.y}, atTop},
                         {{left, frame.y}, atTop},
                         {{left, top}, inner},
                         {{-frame.x, top}, atSide},
                         {{-frame.x, bottom}, atSide},
                         {{left, bottom}, inner},
                         {{left, -frame.y}, atTop},
                         {{right, -frame.y}, atTop},
                         {{right, bottom}, inner}});
    } else if (hasHorizontal) {
        addSolid(shape, box(-frame.x, bottom, frame.x, top, atSide));
    } else if (hasVertical) {
        addSolid(shape, box(left, -frame.y, right, frame.y, atTop));
    }
}

// Two horizontal bars, joined by a vertical one.
void addDogbone(Shape &shape, const StandardSymbol &symbol, const Frame &frame)
{
    const double horizontal = symbol.size[2], vertical = std::min(symbol.size[3], symbol.size[0]);
    const double x = crossPoint(symbol.size[4], frame.x, vertical);
    const double aside = vertical / 2.0, above = horizontal / 2.0;
    const double end = symbol.ends == EndStyle::Round ? above : 0.0;
    const double inner = symbol.cornerSize;
    const double bar = frame.y - horizontal; // from the axis to a bar's inner edge
    const double left = x - aside, right = x + aside;
    const bool hasBars = horizontal > 0.0, hasJoint = vertical > 0.0;
    if (hasBars && bar <= 0.0) { // no gap between the bars
        addSolid(shape, box(-frame.x, -frame.y, frame.x, frame.y, end));
    } else if (hasBars && hasJoint) {
        addSolid(shape, {{{-frame.x, -frame.y}, end},
                         {{frame.x, -frame.y}, end},
                         {{frame.x, -bar}, end},
                         {{right, -bar}, inner},
                         {{right, bar}, inner},
                         {{frame.x, bar}, end},
                         {{frame.x, frame.y}, end},
                         {{-frame.x, frame.y}, end},
                         {{-frame.x, bar}, end},
                         {{left, bar}, inner},
                         {{left, -bar}, inner},
                         {{-frame.x, -bar}, end}});
    } else if (hasBars) {
        addSolid(shape, box(-frame.x, -frame.y, frame.x, -bar, end));
        addSolid(shape, box(-frame.x, bar, frame.x, frame.y, end));
    } else if (hasJoint) {
        addSolid(shape, box(left, -frame.y, right, frame.y, 0.0));
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
    const double radius = std::min(symbol.size[6], std::min(width, height) / 2.0);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const double left = -frame.x + column * (width + symbol.size[2]);
            const double bottom = -frame.y + row * (height + symbol.size[3]);
            addSolid(shape, box(left, bottom, left + width, bottom + height, radius));
        }
    }
}

} // namespace

void addStencilSymbol(Shape &shape, const StandardSymbol &symbol)
{
    const Frame frame = frameOf(symbol);
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
