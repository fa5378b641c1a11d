#include "cam/verify/sourcepicture.h"

#include "cam/base/error.h"
#include "cam/polygon/arrangement.h"
#include "cam/verify/tiles.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace cam::verify {

namespace {

// No nanometre is lost to it, and no number of the grid overflows: a hundred metres.
constexpr double farthest = 1e11;

Transform clockwise(double degrees)
{
    // Whole quarters are exact.
    return Transform::rotation(-degrees);
}

Transform padMap(const Pad &pad)
{
    Transform map = clockwise(pad.angle);
    if (pad.mirror)
        map = map.then(Transform::scaling(-1.0, 1.0));
    return map.then(Transform::translation(pad.at));
}

// The copy in `column` and `row`: turned about the child's datum, mirrored, set in place.
Transform copyMap(const StepRepeat &repeat, std::uint32_t column, std::uint32_t row)
{
    Transform map = Transform::translation(-repeat.childDatum).then(clockwise(repeat.angle));
    if (repeat.mirror)
        map = map.then(Transform::scaling(-1.0, 1.0));
    return map.then(Transform::translation(repeat.at + Point{repeat.dx * column, repeat.dy * row}));
}

Transform outputMap(const ExportOptions &options, Point datum)
{
    Transform map = Transform::translation(-datum).then(Transform::scaling(options.xScale, options.yScale));
    if (options.mirror)
        map = map.then(Transform::scaling(-1.0, 1.0));
    return map.then(clockwise(-options.angle)).then(Transform::translation(datum));
}

// The larger singular value.
double mostStretch(const Transform &map)
{
    const double square = map.xx * map.xx + map.xy * map.xy + map.yx * map.yx + map.yy * map.yy;
    const double determinant = map.determinant();
    return std::sqrt((square + std::sqrt(std::max(0.0, square * square - 4.0 * determinant * determinant))) /
                     2.0);
}

// As much as rounding to a millionth of an inch makes the radii of one arc differ: what differs by more is
// drawn as a polygon in every file.
constexpr double mostUneven = 100.0;

bool isCircular(Point from, const Edge &arc)
{
    return std::fabs(distance(from, arc.center) - distance(arc.end, arc.center)) <= mostUneven;
}

Edge mapped(const Edge &edge, const Transform &map)
{
    Edge result = {map(edge.end), map(edge.center), edge.kind};
    if (edge.kind != EdgeKind::Line && map.turnsOver())
        result.kind =
            edge.kind == EdgeKind::ArcClockwise ? EdgeKind::ArcCounterClockwise : EdgeKind::ArcClockwise;
    return result;
}

Edge edgeOf(const Arc &arc)
{
    return {arc.end, arc.center, arc.clockwise ? EdgeKind::ArcClockwise : EdgeKind::ArcCounterClockwise};
}

double areaOf(const std::vector<Point> &corners)
{
    double sum = 0.0;
    for (std::size_t i = 1; i + 1 < corners.size(); ++i)
        sum += cross(corners[i] - corners[0], corners[i + 1] - corners[0]);
    return sum;
}

void addOriented(std::vector<GridRing> &rings, GridRing ring, bool isHole)
{
    if (ring.empty())
        return;
    const double area = doubledArea(ring);
    if (area == 0.0)
        return;
    if ((area < 0.0) != isHole)
        std::reverse(ring.begin(), ring.end());
    rings.push_back(std::move(ring));
}

// Corners of the convex hull, counter-clockwise.
std::vector<Point> hull(std::vector<Point> points)
{
    std::sort(points.begin(), points.end(),
              [](Point a, Point b) { return a.x != b.x ? a.x < b.x : a.y < b.y; });
    std::vector<Point> corners;
    for (int side = 0; side < 2; ++side) {
        const std::size_t first = corners.size();
        for (const Point p : points) {
            while (corners.size() >= first + 2 &&
                   cross(corners.back() - corners[corners.size() - 2], p - corners.back()) <= 0.0)
                corners.pop_back();
            corners.push_back(p);
        }
        corners.pop_back();
        std::reverse(points.begin(), points.end());
    }
    return corners;
}

bool isConvex(const std::vector<Point> &corners)
{
    // Of a symbol's outline, which does not cross itself.
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Point a = corners[i], b = corners[(i + 1) % corners.size()],
                    c = corners[(i + 2) % corners.size()];
        if (cross(b - a, c - b) < -1e-3 * length(b - a))
            return false;
    }
    return true;
}

} // namespace

SourcePicture::SourcePicture(const LayerImage &image, const ExportOptions &options, ArcCorners curves)
    : m_image(image), m_options(options), m_curves(curves)
{
    const Transform map = outputMap(options, image.datum);
    if (!(std::fabs(map.determinant()) > 0.0))
        throw Error("a scale of 0 leaves nothing to compare");
    addStep(static_cast<std::uint32_t>(image.steps.size() - 1), map);
    if (options.negative)
        addBase();
}

SourcePicture::Frame SourcePicture::frame(const Transform &map, double growth) const
{
    Frame frame;
    frame.map = map;
    frame.keepsCircles = map.keepsCircles();
    frame.stretch = mostStretch(map);
    frame.growth = growth;
    frame.curves = frame.keepsCircles ? m_curves : ArcCorners::Even;
    return frame;
}

void SourcePicture::addStep(std::uint32_t number, const Transform &map)
{
    const StepImage &step = m_image.steps[number];
    const std::uint32_t group = step.features.negativeCount > 0 ? m_groups++ : 0;
    const auto here = static_cast<std::uint32_t>(m_frames.size());
    m_frames.push_back(frame(map, m_options.resize));
    for (std::uint32_t i = 0; i < step.features.order.size(); ++i)
        addPaint({&step.features, i, here, Cleanness::Clean}, group,
                 step.features.order[i].polarity == Polarity::Positive);
    for (const StepRepeat &repeat : step.repeats) {
        for (std::uint32_t row = 0; row < repeat.ny; ++row) {
            for (std::uint32_t column = 0; column < repeat.nx; ++column)
                addStep(repeat.step, copyMap(repeat, column, row).then(map));
        }
    }
}

void SourcePicture::addPaint(const Origin &origin, std::uint32_t group, bool dark)
{
    Paint paint;
    paint.group = group;
    paint.dark = dark;
    const Feature &feature = origin.features->order[origin.feature];
    const Frame &here = m_frames[origin.frame];
    Origin known = origin;
    if (feature.kind == FeatureKind::Pad) {
        const Pad &pad = origin.features->pads[feature.index];
        const Drawn &symbol =
            drawn(pad.symbol, padMap(pad).then(here.map), (dark ? here.growth : -here.growth) + pad.growth);
        if (symbol.rings.empty())
            return;
        paint.at = Grid(1.0).round(here.map(pad.at));
        paint.shape = symbol.number;
        paint.box.add(GridPoint{symbol.box.low.x + paint.at.x, symbol.box.low.y + paint.at.y});
        paint.box.add(GridPoint{symbol.box.high.x + paint.at.x, symbol.box.high.y + paint.at.y});
        paint.corners = symbol.corners;
    } else if (!addRoundLine(*origin.features, feature, here, paint)) {
        // Drawn once to see where it lies.
        std::vector<GridRing> drawnRings;
        featureRings(*origin.features, feature, here, drawnRings);
        std::size_t corners = 0;
        for (const GridRing &ring : drawnRings) {
            paint.box.add(ring);
            corners += ring.size();
        }
        if (corners == 0)
            return;
        paint.corners = static_cast<std::uint32_t>(corners);
        if (feature.kind == FeatureKind::Surface && here.growth == 0.0)
            known.cleanness = Cleanness::Unknown;
    }
    if (paint.corners == 0)
        return;
    if (static_cast<double>(std::max({std::abs(paint.box.low.x), std::abs(paint.box.low.y),
                                      std::abs(paint.box.high.x), std::abs(paint.box.high.y)})) > farthest)
        throw Error("coordinates beyond 100 metres are not compared");
    m_paints.push_back(paint);
    m_origins.push_back(known);
}

// The box of a line with a round symbol, without drawing it; false for anything else.
bool SourcePicture::addRoundLine(const FeatureSet &features, const Feature &feature, const Frame &frame,
                                 Paint &paint) const
{
    if (feature.kind != FeatureKind::Line || !frame.keepsCircles)
        return false;
    const Line &line = features.lines[feature.index];
    const Symbol &symbol = m_image.symbols[line.symbol];
    if (!symbol.standard || symbol.standard->kind != SymbolKind::Round)
        return false;
    const double growth = feature.polarity == Polarity::Positive ? frame.growth : -frame.growth;
    const double radius = (symbol.standard->size[0] + growth) / 2.0 * frame.map.scale();
    if (!(radius > 0.0))
        return true;
    const Grid grid(1.0);
    for (const Point end : {frame.map(line.start), frame.map(line.end)}) {
        paint.box.add(grid.round(end - Point{radius + 1.0, radius + 1.0}));
        paint.box.add(grid.round(end + Point{radius + 1.0, radius + 1.0}));
    }
    constexpr double usual = 64.0; // corners; as many as a line of a fifth of a millimetre has
    paint.corners = static_cast<std::uint32_t>(usual);
    return true;
}

// The area of the profile, or the extent of what is dark without one.
void SourcePicture::addBase()
{
    const Frame here = frame(outputMap(m_options, m_image.datum), 0.0);
    poolRings(m_image.profile, 0, m_image.profile.size(), here, m_base);
    if (!isClean(m_base))
        m_base = combined(BooleanOperation::Union, m_base, {});
    if (m_base.empty()) {
        const GridBox extent = darkExtent();
        if (!extent.isEmpty())
            m_base.push_back(
                {extent.low, {extent.high.x, extent.low.y}, extent.high, {extent.low.x, extent.high.y}});
    }
    m_isNegated = true;
    Paint paint;
    paint.group = baseGroup;
    for (const GridRing &ring : m_base) {
        paint.box.add(ring);
        paint.corners += static_cast<std::uint32_t>(ring.size());
    }
    if (m_base.empty())
        return;
    m_paints.push_back(paint);
    m_origins.push_back({});
}

GridBox SourcePicture::darkExtent()
{
    GridBox extent;
    bool isPlain = true;
    for (const Paint &paint : m_paints)
        isPlain = isPlain && paint.dark;
    if (isPlain) {
        for (const Paint &paint : m_paints)
            extent.add(paint.box);
        return extent;
    }
    forEachTile({this}, {}, 0, [&extent](const Tile &tile) {
        std::vector<GridRing> dark = tile.areas[0];
        clip(dark, tile.box);
        for (const GridRing &ring : combined(BooleanOperation::Union, dark, {}))
            extent.add(ring);
    });
    return extent;
}

bool SourcePicture::plainRings(std::uint32_t paint, std::vector<GridRing> &rings)
{
    const Origin &origin = m_origins[paint];
    if (!origin.features)
        rings.insert(rings.end(), m_base.begin(), m_base.end());
    else
        featureRings(*origin.features, origin.features->order[origin.feature], m_frames[origin.frame], rings);
    return origin.cleanness == Cleanness::Clean || rings.size() == 1;
}

void SourcePicture::rings(std::uint32_t paint, std::vector<GridRing> &rings)
{
    std::vector<GridRing> own;
    plainRings(paint, own);
    Cleanness &cleanness = m_origins[paint].cleanness;
    if (cleanness == Cleanness::Unknown)
        cleanness = isClean(own) ? Cleanness::Clean : Cleanness::Unclean;
    if (cleanness == Cleanness::Unclean)
        own = cleaned(own);
    rings.insert(rings.end(), std::make_move_iterator(own.begin()), std::make_move_iterator(own.end()));
}

// Each contour by itself, then islands less holes.
std::vector<GridRing> SourcePicture::cleaned(const std::vector<GridRing> &rings)
{
    std::vector<GridRing> sum;
    for (const GridRing &contour : rings) {
        const bool isHole = doubledArea(contour) < 0.0;
        for (const GridRing &ring : filled(contour))
            sum.push_back(isHole ? reversed(ring) : ring);
    }
    return combined(BooleanOperation::Union, sum, {});
}

void SourcePicture::featureRings(const FeatureSet &features, const Feature &feature, const Frame &frame,
                                 std::vector<GridRing> &rings)
{
    const double growth = feature.polarity == Polarity::Positive ? frame.growth : -frame.growth;
    switch (feature.kind) {
    case FeatureKind::Line: {
        const Line &line = features.lines[feature.index];
        return strokeRings(line.start, {line.end, {}, EdgeKind::Line}, line.symbol, growth, frame, rings);
    }
    case FeatureKind::Arc: {
        const Arc &arc = features.arcs[feature.index];
        return strokeRings(arc.start, edgeOf(arc), arc.symbol, growth, frame, rings);
    }
    case FeatureKind::Pad: {
        const Pad &pad = features.pads[feature.index];
        const Drawn &symbol = drawn(pad.symbol, padMap(pad).then(frame.map), growth + pad.growth);
        const GridPoint at = Grid(1.0).round(frame.map(pad.at));
        for (const GridRing &ring : symbol.rings) {
            rings.push_back(ring);
            for (GridPoint &p : rings.back())
                p = {p.x + at.x, p.y + at.y};
        }
        return;
    }
    case FeatureKind::Surface:
        return surfaceRings(features, features.surfaces[feature.index], growth, frame, rings);
    }
}

void SourcePicture::poolRings(const ContourPool &pool, std::size_t first, std::size_t count,
                              const Frame &frame, std::vector<GridRing> &rings) const
{
    std::vector<Point> corners;
    for (std::size_t i = first; i < first + count; ++i) {
        corners.clear();
        if (frame.curves == ArcCorners::Compass) {
            // Fixed directions are those of the output.
            ContourPool turned;
            turned.add(pool[i], frame.map);
            addCorners(turned[0], frame.curves, curveTolerance, corners);
            addOriented(rings, onGrid(corners, Transform()), pool[i].isHole);
        } else {
            addCorners(pool[i], frame.curves, curveTolerance / frame.stretch, corners);
            addOriented(rings, onGrid(corners, frame.map), pool[i].isHole);
        }
    }
}

// ---- strokes

void SourcePicture::strokeRings(Point from, const Edge &edge, std::uint32_t number, double growth,
                                const Frame &frame, std::vector<GridRing> &rings)
{
    const Symbol &symbol = m_image.symbols[number];
    const bool isRound = symbol.standard && symbol.standard->kind == SymbolKind::Round;
    std::vector<Point> path; // without its start
    if (edge.kind == EdgeKind::Line)
        path.push_back(edge.end);
    else
        addCorners(from, edge, ArcCorners::Even, curveTolerance / frame.stretch, path);
    if (isRound) {
        const double radius = (symbol.standard->size[0] + growth) / 2.0;
        const bool isPath = edge.kind != EdgeKind::Line && !isCircular(from, edge);
        ContourPool pool;
        const bool isInOutput = frame.curves == ArcCorners::Compass;
        const Transform first = isInOutput ? frame.map : Transform();
        const double here = isInOutput ? radius * frame.map.scale() : radius;
        if (isPath) {
            Point at = from;
            for (const Point next : path) {
                addStroke(pool, first(at), {first(next), {}, EdgeKind::Line}, here, frame.curves);
                at = next;
            }
        } else {
            addStroke(pool, first(from), mapped(edge, first), here, frame.curves);
        }
        Frame rest = frame;
        if (isInOutput)
            rest.map = Transform();
        return poolRings(pool, 0, pool.size(), rest, rings);
    }
    // A hole of the symbol is filled by the stroke.
    std::vector<std::vector<Point>> outlines;
    if (symbol.standard) {
        const Shape shape = shapeOf(*symbol.standard, growth);
        for (std::size_t i = 0; i < shape.contours.size(); ++i) {
            if (shape.contours[i].isHole)
                continue;
            outlines.emplace_back();
            addCorners(shape.contours[i], ArcCorners::Even, curveTolerance / frame.stretch, outlines.back());
            if (areaOf(outlines.back()) < 0.0)
                std::reverse(outlines.back().begin(), outlines.back().end());
        }
    } else {
        // Of the job's own: where the ends do not fill them, its openings stay.
        for (const GridRing &ring : drawn(number, Transform(), growth).rings) {
            outlines.emplace_back();
            for (const GridPoint p : ring)
                outlines.back().push_back({static_cast<double>(p.x), static_cast<double>(p.y)});
        }
    }
    path.insert(path.begin(), from);
    sweep(outlines, path, frame, rings);
}

// The outlines at all corners of the path, and what their sides sweep in between.
void SourcePicture::sweep(const std::vector<std::vector<Point>> &outlines, const std::vector<Point> &path,
                          const Frame &frame, std::vector<GridRing> &rings)
{
    std::vector<Point> corners;
    const auto put = [&](bool isHole) { addOriented(rings, onGrid(corners, frame.map), isHole); };
    for (const std::vector<Point> &outline : outlines) {
        const bool isHole = areaOf(outline) < 0.0;
        const bool isSolid = !isHole && isConvex(outline);
        for (std::size_t i = 0; i < path.size(); ++i) {
            const bool isMoving = i + 1 < path.size() && path[i] != path[i + 1];
            if (isSolid && isMoving) {
                corners.clear();
                for (const Point corner : outline) {
                    corners.push_back(corner + path[i]);
                    corners.push_back(corner + path[i + 1]);
                }
                corners = hull(std::move(corners));
                put(false);
            } else if (!isSolid || path.size() == 1 || (i == 0 && path.size() == 2)) {
                corners.clear();
                for (const Point corner : outline)
                    corners.push_back(corner + path[i]);
                put(isHole);
            }
            for (std::size_t j = 0; !isSolid && isMoving && j < outline.size(); ++j) {
                const Point a = outline[j], b = outline[(j + 1) % outline.size()];
                corners = {a + path[i], b + path[i], b + path[i + 1], a + path[i + 1]};
                put(false);
            }
        }
    }
}

// ---- surfaces

namespace {

// What the edges of `ring` sweep when they move by `distance` to their right: outwards for an island, into it
// where `distance` is negative. Corners stay sharp up to twice the distance; sharper ones are cut off there.
void addMovedEdges(const std::vector<Point> &ring, double distance, const Transform &map,
                   std::vector<GridRing> &rings)
{
    std::vector<Point> normals;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point along = ring[(i + 1) % ring.size()] - ring[i];
        const double size = length(along);
        normals.push_back(size > 0.0 ? Point{along.y, -along.x} * (distance / size) : Point());
    }
    std::vector<Point> corners;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point a = ring[i], b = ring[(i + 1) % ring.size()], normal = normals[i];
        if (a == b)
            continue;
        corners = {a, b, b + normal, a + normal};
        addOriented(rings, onGrid(corners, map), false);
        // The wedge at b, on the outside of the bend.
        const Point next = normals[(i + 1) % ring.size()];
        const double bend = cross(normal, next);
        if ((distance > 0.0) != (bend > 0.0) || next == Point())
            continue;
        const double square = distance * distance, cosine = dot(normal, next) / square;
        const Point middle = normal + next;
        constexpr double sharpest =
            -0.5; // of the cosine between normals: the tip lies twice as far out as the edges
        if (cosine >= sharpest) {
            const Point tip = middle * (1.0 / (1.0 + cosine));
            corners = {b, b + normal, b + tip, b + next};
        } else {
            // Cut across, at the distance of the edges from the corner.
            const double toMiddle = length(middle);
            const Point out =
                toMiddle > 0.0 ? middle * (std::fabs(distance) / toMiddle) : Point{-normal.y, normal.x};
            // Where the moved edges meet that line.
            const double share =
                (1.0 - dot(normal, out) / square) / (dot({-normal.y, normal.x}, out) / square);
            const double nextShare = (1.0 - dot(next, out) / square) / (dot({-next.y, next.x}, out) / square);
            corners = {b, b + normal, b + normal + Point{-normal.y, normal.x} * share,
                       b + next + Point{-next.y, next.x} * nextShare, b + next};
        }
        addOriented(rings, onGrid(corners, map), false);
    }
}

} // namespace

void SourcePicture::surfaceRings(const FeatureSet &features, const Surface &surface, double growth,
                                 const Frame &frame, std::vector<GridRing> &rings)
{
    if (growth == 0.0)
        return poolRings(features.contours, surface.firstContour, surface.contourCount, frame, rings);
    // In the job's own plane, at an eighth of a nanometre.
    constexpr double unit = 1.0 / 8.0;
    const Transform fine = Transform::scaling(1.0 / unit, 1.0 / unit);
    std::vector<GridRing> source;
    std::vector<Point> corners;
    for (std::size_t i = 0; i < surface.contourCount; ++i) {
        const ContourView contour = features.contours[surface.firstContour + i];
        corners.clear();
        addCorners(contour, ArcCorners::Even, curveTolerance / frame.stretch, corners);
        addOriented(source, onGrid(corners, fine), contour.isHole);
    }
    const Transform map = Transform::scaling(unit, unit).then(frame.map);
    const double distance = growth / 2.0 / unit;
    std::vector<GridRing> moved, area;
    for (const GridRing &ring : combined(BooleanOperation::Union, source, {})) {
        corners.clear();
        for (const GridPoint p : ring)
            corners.push_back({static_cast<double>(p.x), static_cast<double>(p.y)});
        addMovedEdges(corners, distance, map, moved);
        addOriented(area, onGrid(corners, map), doubledArea(ring) < 0.0);
    }
    if (growth > 0.0)
        area.insert(area.end(), moved.begin(), moved.end());
    else
        area = combined(BooleanOperation::Difference, area, moved);
    rings.insert(rings.end(), area.begin(), area.end());
}

// ---- symbols

const SourcePicture::Drawn &SourcePicture::drawn(std::uint32_t number, const Transform &map, double growth)
{
    const Symbol &symbol = m_image.symbols[number];
    Transform linear = map;
    linear.offset = {};
    // A circle is the same however it is turned.
    if (symbol.standard && symbol.standard->kind == SymbolKind::Round && linear.keepsCircles())
        linear = Transform::scaling(linear.scale(), linear.scale());
    const DrawnKey key(number, linear.xx + 0.0, linear.xy + 0.0, linear.yx + 0.0, linear.yy + 0.0,
                       growth + 0.0);
    const auto known = m_drawn.find(key);
    if (known != m_drawn.end())
        return known->second;
    Drawn made;
    const Frame here = frame(linear, growth);
    if (symbol.standard) {
        const Shape shape = shapeOf(*symbol.standard, growth);
        poolRings(shape.contours, 0, shape.contours.size(), here, made.rings);
    } else {
        drawOwn(*symbol.features, here, made.rings);
    }
    std::size_t corners = 0;
    for (const GridRing &ring : made.rings) {
        made.box.add(ring);
        corners += ring.size();
    }
    made.corners = static_cast<std::uint32_t>(corners);
    made.number = static_cast<std::uint32_t>(m_drawn.size() + 1);
    return m_drawn.emplace(key, std::move(made)).first->second;
}

// An image of its own: its negative features clear within it only.
void SourcePicture::drawOwn(const FeatureSet &features, const Frame &frame, std::vector<GridRing> &rings)
{
    std::vector<GridRing> area, run;
    for (std::size_t i = 0; i < features.order.size(); ++i) {
        const Feature &feature = features.order[i];
        std::vector<GridRing> one;
        featureRings(features, feature, frame, one);
        if (feature.kind == FeatureKind::Surface && frame.growth == 0.0 && !isClean(one))
            one = cleaned(one);
        run.insert(run.end(), one.begin(), one.end());
        const bool isLast = i + 1 == features.order.size();
        if (!isLast && features.order[i + 1].polarity == feature.polarity)
            continue;
        if (feature.polarity == Polarity::Negative)
            area = combined(BooleanOperation::Difference, area, run);
        else
            area.insert(area.end(), run.begin(), run.end());
        run.clear();
    }
    rings.insert(rings.end(), area.begin(), area.end());
}

} // namespace cam::verify
