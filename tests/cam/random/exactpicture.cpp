// One class for each way in which a feature covers points.
#include "tests/cam/random/exactpicture.h"

#include "cam/model/winding.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace testing {

using cam::Box;
using cam::Edge;
using cam::EdgeKind;
using cam::Point;
using cam::Transform;

namespace {

constexpr double halfTurn = 3.14159265358979323846;

Transform clockwise(double degrees)
{
    const double angle = -degrees * halfTurn / 180.0;
    return {std::cos(angle), -std::sin(angle), std::sin(angle), std::cos(angle), {}};
}

// Turned clockwise, mirrored, set in place.
Transform padMap(const cam::Pad &pad)
{
    Transform map = clockwise(pad.angle);
    if (pad.mirror)
        map = map.then(Transform::scaling(-1.0, 1.0));
    return map.then(Transform::translation(pad.at));
}

// The copy in `column` and `row`: turned about the child's datum, mirrored, set in place.
Transform copyMap(const cam::StepRepeat &repeat, std::uint32_t column, std::uint32_t row)
{
    Transform map = Transform::translation(-repeat.childDatum).then(clockwise(repeat.angle));
    if (repeat.mirror)
        map = map.then(Transform::scaling(-1.0, 1.0));
    return map.then(Transform::translation(repeat.at + Point{repeat.dx * column, repeat.dy * row}));
}

Transform outputMap(const cam::ExportOptions &options, Point datum)
{
    Transform map = Transform::translation(-datum).then(Transform::scaling(options.xScale, options.yScale));
    if (options.mirror)
        map = map.then(Transform::scaling(-1.0, 1.0));
    return map.then(clockwise(-options.angle)).then(Transform::translation(datum));
}

Transform inverse(const Transform &map)
{
    const double determinant = map.determinant();
    Transform back{
        map.yy / determinant, -map.xy / determinant, -map.yx / determinant, map.xx / determinant, {}};
    back.offset = -back.linear(map.offset);
    return back;
}

double leastStretch(const Transform &map)
{
    // The smaller singular value.
    const double square = map.xx * map.xx + map.xy * map.xy + map.yx * map.yx + map.yy * map.yy;
    const double determinant = std::fabs(map.determinant());
    const double root = std::sqrt(std::max(0.0, square * square / 4.0 - determinant * determinant));
    return determinant / std::sqrt(square / 2.0 + root);
}

bool contains(const Box &box, Point at, double more = 0.0)
{
    return box.low.x - more <= at.x && at.x <= box.high.x + more && box.low.y - more <= at.y &&
           at.y <= box.high.y + more;
}

Box larger(Box box, double by)
{
    if (!box.isEmpty()) {
        box.low = box.low - Point{by, by};
        box.high = box.high + Point{by, by};
    }
    return box;
}

// All of the circle where there is an arc.
Box roomFor(Point from, const Edge &edge)
{
    Box box;
    box.add(from);
    box.add(edge.end);
    if (edge.kind != EdgeKind::Line) {
        const double radius =
            std::max(cam::distance(from, edge.center), cam::distance(edge.end, edge.center));
        box.add(edge.center - Point{radius, radius});
        box.add(edge.center + Point{radius, radius});
    }
    return box;
}

double distanceToEdge(Point from, const Edge &edge, Point at)
{
    return edge.kind == EdgeKind::Line ? cam::distanceToSegment(from, edge.end, at)
                                       : cam::distanceToArc(from, edge, at);
}

// How many chords stay within `tolerance` of an edge.
int stepsOf(Point from, const Edge &edge, double tolerance)
{
    if (edge.kind == EdgeKind::Line)
        return 1;
    const double radius = std::max(cam::distance(from, edge.center), 8.0 * tolerance);
    const double sweep = std::fabs(cam::sweptDegrees(from, edge)) * halfTurn / 180.0;
    return static_cast<int>(sweep / (2.0 * std::sqrt(2.0 * tolerance / radius))) + 1;
}

constexpr double outlineTolerance = 5.0; // nanometres

} // namespace

// ---- the kinds of figures

class ExactPicture::Figure
{
public:
    virtual ~Figure() = default;
    virtual Hit at(Point at, double near) const = 0;
    virtual Box room() const = 0;
    virtual void edgePoints(const Transform &map, const PointTaker &take) const = 0;
    // Points as close to each other as it takes for their box to be the figure's.
    virtual void outline(const Transform &map, const PointTaker &take) const = 0;
};

// A round pen along a line or an arc.
class ExactPicture::StrokeFigure : public Figure
{
public:
    StrokeFigure(Point from, const Edge &edge, double radius) : m_from(from), m_edge(edge), m_radius(radius)
    {
    }

    Hit at(Point at, double near) const override
    {
        if (!(m_radius > 0.0))
            return {};
        const double far = distanceToEdge(m_from, m_edge, at);
        return {far <= m_radius, std::fabs(far - m_radius) > near};
    }
    Box room() const override { return larger(roomFor(m_from, m_edge), m_radius); }
    void edgePoints(const Transform &map, const PointTaker &take) const override
    {
        if (!(m_radius > 0.0))
            return;
        for (const double share : {0.0, 0.01, 0.25, 0.5, 0.75, 0.99, 1.0}) {
            const cam::EdgePoint on = cam::pointOf(m_from, m_edge, share);
            take(map(on.at + on.left * m_radius));
            take(map(on.at - on.left * m_radius));
            if (share == 0.0 || share == 1.0) {
                const Point ahead = {on.left.y, -on.left.x};
                take(map(on.at + ahead * m_radius));
                take(map(on.at - ahead * m_radius));
            }
        }
    }
    void outline(const Transform &map, const PointTaker &take) const override
    {
        if (!(m_radius > 0.0))
            return;
        const Point spoke{m_radius, 0.0};
        const int steps = stepsOf(m_from, m_edge, outlineTolerance);
        for (int i = 0; i <= steps; ++i) {
            const double share = static_cast<double>(i) / steps, step = 0.5 / steps;
            const Point at = cam::pointOf(m_from, m_edge, share).at;
            // Where the radius runs from one to another, the way ahead is not across the spoke.
            const Point ahead = cam::pointOf(m_from, m_edge, std::min(share + step, 1.0)).at -
                                cam::pointOf(m_from, m_edge, std::max(share - step, 0.0)).at;
            if (!(length(ahead) > 0.0))
                continue;
            const Point aside = Point{-ahead.y, ahead.x} * (m_radius / length(ahead));
            take(map(at + aside));
            take(map(at - aside));
        }
        for (const Point end : {m_from, m_edge.end}) {
            constexpr int count = 2000;
            for (int i = 0; i < count; ++i)
                take(map(end + clockwise(360.0 * i / count)(spoke)));
        }
    }

private:
    Point m_from;
    Edge m_edge;
    double m_radius;
};

// Any other pen. A point is covered when its way backwards along the path meets the symbol; the symbol's
// holes are filled by the stroke.
class ExactPicture::SweptFigure : public Figure
{
public:
    SweptFigure(Point from, const Edge &edge, const cam::Shape &shape)
    {
        constexpr double tolerance = 30.0; // nanometres
        m_path = {from};
        const int pathSteps = stepsOf(from, edge, tolerance);
        for (int i = 1; i < pathSteps; ++i)
            m_path.push_back(cam::pointOf(from, edge, static_cast<double>(i) / pathSteps).at);
        m_path.push_back(edge.end);
        for (const Point p : m_path)
            m_pathBox.add(p);
        for (std::size_t i = 0; i < shape.contours.size(); ++i) {
            const cam::ContourView contour = shape.contours[i];
            if (contour.isHole)
                continue;
            std::vector<Point> corners{contour.start};
            Point at = contour.start;
            for (const Edge &side : contour) {
                const int steps = stepsOf(at, side, tolerance);
                for (int j = 1; j < steps; ++j)
                    corners.push_back(cam::pointOf(at, side, static_cast<double>(j) / steps).at);
                corners.push_back(side.end);
                m_corners.push_back(side.end);
                at = side.end;
            }
            corners.pop_back();
            for (const Point corner : corners) {
                m_reach = std::max(m_reach, cam::length(corner));
                m_shapeBox.add(corner);
            }
            m_polygons.push_back(std::move(corners));
        }
    }

    Hit at(Point at, double near) const override
    {
        if (m_polygons.empty())
            return {};
        const bool covered = covers(at);
        for (int i = 0; i < 16; ++i) {
            const double angle = halfTurn * i / 8.0;
            if (covers(at + Point{std::cos(angle), std::sin(angle)} * (near * 1.1)) != covered)
                return {covered, false};
        }
        return {covered, true};
    }
    Box room() const override { return larger(m_pathBox, m_reach); }
    void edgePoints(const Transform &map, const PointTaker &take) const override
    {
        for (const std::size_t i : {std::size_t{0}, m_path.size() / 2, m_path.size() - 1}) {
            for (const Point corner : m_corners)
                take(map(m_path[i] + corner));
        }
    }
    void outline(const Transform &map, const PointTaker &take) const override
    {
        for (const Point at : m_path) {
            for (const std::vector<Point> &polygon : m_polygons) {
                for (const Point corner : polygon)
                    take(map(at + corner));
            }
        }
    }

private:
    bool covers(Point at) const
    {
        for (std::size_t i = 0; i + 1 < m_path.size(); ++i) {
            const Point from = at - m_path[i], to = at - m_path[i + 1];
            Box way;
            way.add(from);
            way.add(to);
            if (way.touches(m_shapeBox) && meets(from, to))
                return true;
        }
        return false;
    }

    bool meets(Point from, Point to) const
    {
        for (const std::vector<Point> &polygon : m_polygons) {
            bool inside = false;
            for (std::size_t i = 0; i < polygon.size(); ++i) {
                const Point a = polygon[i], b = polygon[i + 1 < polygon.size() ? i + 1 : 0];
                if ((a.y > from.y) != (b.y > from.y) &&
                    from.x < a.x + (b.x - a.x) * (from.y - a.y) / (b.y - a.y))
                    inside = !inside;
                const double sideA = cam::cross(to - from, a - from), sideB = cam::cross(to - from, b - from);
                const double sideFrom = cam::cross(b - a, from - a), sideTo = cam::cross(b - a, to - a);
                if ((sideA > 0.0) != (sideB > 0.0) && (sideFrom > 0.0) != (sideTo > 0.0))
                    return true;
            }
            if (inside)
                return true;
        }
        return false;
    }

    std::vector<Point> m_path;
    std::vector<std::vector<Point>> m_polygons;
    std::vector<Point> m_corners;
    Box m_pathBox, m_shapeBox;
    double m_reach = 0.0;
};

// Contours of a surface, of a standard symbol or of the profile, under a map that keeps circles.
class ExactPicture::ContourFigure : public Figure
{
public:
    // `growth`: nanometres by which the area's edges move apart, half of it on each side.
    ContourFigure(const cam::ContourPool &pool, std::size_t first, std::size_t count, const Transform &map,
                  double growth = 0.0)
        : m_map(map), m_back(inverse(map)), m_stretch(leastStretch(map)), m_move(growth / 2.0)
    {
        for (std::size_t i = first; i < first + count; ++i) {
            m_contours.add(pool[i], Transform());
            Box box;
            Point from = pool[i].start;
            for (const Edge &edge : pool[i]) {
                box.add(roomFor(from, edge));
                from = edge.end;
            }
            m_boxes.push_back(box);
        }
        if (m_move != 0.0)
            findBorder();
    }

    Hit at(Point outside, double outsideNear) const override
    {
        const Point at = m_back(outside);
        const double near = outsideNear / m_stretch;
        const bool covered = covers(at);
        const double move = m_move;
        if (move == 0.0)
            return {covered, !hasEdgeWithin(at, near)};
        // A corner may reach twice as far as the edges are moved.
        if (hasCornerWithin(at, 2.0 * std::fabs(move) + near))
            return {covered, false};
        const double reach = std::fabs(move), far = distanceToBorder(at);
        const bool isReached = far <= reach;
        if (std::fabs(far - reach) <= near)
            return {covered, false};
        return {move > 0.0 ? covered || isReached : covered && !isReached, true};
    }

    Box room() const override
    {
        Box box;
        for (const Box &contour : m_boxes) {
            if (contour.isEmpty())
                continue;
            const Box here = larger(contour, 2.0 * std::fabs(m_move));
            for (const Point corner :
                 {here.low, here.high, Point{here.low.x, here.high.y}, Point{here.high.x, here.low.y}})
                box.add(m_map(corner));
        }
        return box;
    }

    void edgePoints(const Transform &outer, const PointTaker &take) const override
    {
        const Transform map = m_map.then(outer);
        for (std::size_t i = 0; i < m_contours.size(); ++i) {
            Point from = m_contours[i].start;
            for (const Edge &edge : m_contours[i]) {
                for (const double share : {0.0, 0.01, 0.5, 0.99}) {
                    const cam::EdgePoint on = cam::pointOf(from, edge, share);
                    take(map(on.at));
                    if (m_move != 0.0) {
                        take(map(on.at + on.left * m_move));
                        take(map(on.at - on.left * m_move));
                    }
                }
                from = edge.end;
            }
        }
    }
    void outline(const Transform &outer, const PointTaker &take) const override
    {
        const Transform map = m_map.then(outer);
        for (std::size_t i = 0; i < m_contours.size(); ++i) {
            Point from = m_contours[i].start;
            for (const Edge &edge : m_contours[i]) {
                const int steps = stepsOf(from, edge, outlineTolerance);
                for (int j = 0; j <= steps; ++j) {
                    const Point at = cam::pointOf(from, edge, static_cast<double>(j) / steps).at;
                    take(map(at));
                    for (const double turn : {0.0, 90.0, 180.0, 270.0}) {
                        if (m_move > 0.0) // as far as a corner may reach
                            take(map(at + clockwise(turn)(Point{2.0 * m_move, 0.0})));
                    }
                }
                from = edge.end;
            }
        }
    }

private:
    // Islands count 1, holes -1.
    bool covers(Point at) const
    {
        int sum = 0;
        for (std::size_t i = 0; i < m_contours.size(); ++i) {
            if (contains(m_boxes[i], at) && cam::windingNumber(m_contours[i], at) != 0)
                sum += m_contours[i].isHole ? -1 : 1;
        }
        return sum > 0;
    }
    bool hasEdgeWithin(Point at, double near) const
    {
        for (std::size_t i = 0; i < m_contours.size(); ++i) {
            if (contains(m_boxes[i], at, near) && cam::distanceTo(m_contours[i], at) <= near)
                return true;
        }
        return false;
    }
    bool hasCornerWithin(Point at, double near) const
    {
        return std::any_of(m_border.begin(), m_border.end(), [&](const Side &side) {
            return cam::distance(side.from, at) <= near || cam::distance(side.edge.end, at) <= near;
        });
    }
    double distanceToBorder(Point at) const
    {
        double least = 1e300;
        for (const Side &side : m_border)
            least = std::min(least, distanceToEdge(side.from, side.edge, at));
        return least;
    }

    // Where contours touch each other or themselves, an edge has the same colour on both sides: it is none of
    // the picture. All edges are divided where others end on them.
    void findBorder()
    {
        std::vector<Point> ends;
        for (std::size_t i = 0; i < m_contours.size(); ++i) {
            for (const Edge &edge : m_contours[i])
                ends.push_back(edge.end);
        }
        for (std::size_t i = 0; i < m_contours.size(); ++i) {
            Point from = m_contours[i].start;
            for (const Edge &edge : m_contours[i]) {
                addBorder(from, edge, ends);
                from = edge.end;
            }
        }
    }
    void addBorder(Point from, const Edge &edge, const std::vector<Point> &ends)
    {
        constexpr double onEdge = 1.0, beside = 20.0; // nanometres
        std::vector<double> cuts{0.0, 1.0};
        for (const Point end : ends) {
            if (end != from && end != edge.end && distanceToEdge(from, edge, end) <= onEdge)
                cuts.push_back(shareOf(from, edge, end));
        }
        std::sort(cuts.begin(), cuts.end());
        for (std::size_t i = 0; i + 1 < cuts.size(); ++i) {
            if (cuts[i + 1] - cuts[i] < 1e-6)
                continue;
            const cam::EdgePoint middle = cam::pointOf(from, edge, (cuts[i] + cuts[i + 1]) / 2.0);
            if (covers(middle.at + middle.left * beside) == covers(middle.at - middle.left * beside))
                continue;
            Edge piece = edge;
            piece.end = cuts[i + 1] == 1.0 ? edge.end : cam::pointOf(from, edge, cuts[i + 1]).at;
            m_border.push_back({cuts[i] == 0.0 ? from : cam::pointOf(from, edge, cuts[i]).at, piece});
        }
    }
    // Where a point of an edge lies on its way.
    static double shareOf(Point from, const Edge &edge, Point at)
    {
        if (edge.kind != EdgeKind::Line)
            return cam::sweptDegrees(from, {at, edge.center, edge.kind}) / cam::sweptDegrees(from, edge);
        return cam::distance(from, at) / cam::distance(from, edge.end);
    }

    struct Side
    {
        Point from;
        Edge edge;
    };

    Transform m_map, m_back;
    double m_stretch;
    double m_move;
    cam::ContourPool m_contours;
    std::vector<Box> m_boxes;
    std::vector<Side> m_border; // of what moves
};

// A pen that is a symbol of the job's own: each of its pads is swept.
class ExactPicture::OwnPenFigure : public Figure
{
public:
    OwnPenFigure(Point from, const Edge &edge, const std::vector<cam::Shape> &shapes)
    {
        for (const cam::Shape &shape : shapes)
            m_pads.emplace_back(from, edge, shape);
    }

    Hit at(Point at, double near) const override
    {
        Hit result;
        for (const SweptFigure &pad : m_pads) {
            const Hit hit = pad.at(at, near);
            if (!hit.isCertain)
                return {false, false};
            result.covered = result.covered || hit.covered;
        }
        return result;
    }
    Box room() const override
    {
        Box box;
        for (const SweptFigure &pad : m_pads)
            box.add(pad.room());
        return box;
    }
    void edgePoints(const Transform &map, const PointTaker &take) const override
    {
        for (const SweptFigure &pad : m_pads)
            pad.edgePoints(map, take);
    }
    void outline(const Transform &map, const PointTaker &take) const override
    {
        for (const SweptFigure &pad : m_pads)
            pad.outline(map, take);
    }

private:
    std::vector<SweptFigure> m_pads;
};

// A pad of a symbol of the job's own: an image of its own.
class ExactPicture::OwnFigure : public Figure
{
public:
    OwnFigure(const Drawing &drawing, const Transform &map)
        : m_drawing(drawing), m_map(map), m_back(inverse(map)), m_stretch(leastStretch(map))
    {
    }
    Hit at(Point at, double near) const override { return m_drawing.at(m_back(at), near / m_stretch); }
    Box room() const override
    {
        Box box;
        for (const Drawing::Item &item : m_drawing.items) {
            const Box &here = item.box;
            if (here.isEmpty())
                continue;
            for (const Point corner :
                 {here.low, here.high, Point{here.low.x, here.high.y}, Point{here.high.x, here.low.y}})
                box.add(m_map(corner));
        }
        return box;
    }
    void edgePoints(const Transform &map, const PointTaker &take) const override
    {
        m_drawing.edgePoints(m_map.then(map), take);
    }
    void outline(const Transform &map, const PointTaker &take) const override
    {
        m_drawing.outline(m_map.then(map), take);
    }

private:
    const Drawing &m_drawing;
    Transform m_map, m_back;
    double m_stretch;
};

// ---- the picture

ExactPicture::ExactPicture(const cam::LayerImage &image, const cam::ExportOptions &options)
    : m_image(image), m_options(options), m_toOutput(outputMap(options, image.datum)),
      m_toSource(inverse(m_toOutput)), m_leastStretch(leastStretch(m_toOutput))
{
    for (const cam::StepImage &step : image.steps)
        drawing(step.features, options.resize);
    if (!options.negative)
        return;
    if (image.profile.isEmpty()) {
        findExtent();
        return;
    }
    m_profile = std::make_unique<ContourFigure>(image.profile, 0, image.profile.size(), Transform());
    m_profileBox = larger(m_profile->room(), 1e6);
}

ExactPicture::~ExactPicture() = default;

// Whether the outlines of the positive features say how far the layer is dark.
bool ExactPicture::isExtentCertain() const
{
    const auto isCertain = [this](const cam::FeatureSet &set) {
        return set.negativeCount == 0 && (m_options.resize == 0.0 || set.surfaces.empty());
    };
    return std::all_of(m_image.steps.begin(), m_image.steps.end(),
                       [&](const cam::StepImage &step) { return isCertain(step.features); }) &&
           std::all_of(m_image.symbols.begin(), m_image.symbols.end(), [&](const cam::Symbol &symbol) {
               return !symbol.features || isCertain(*symbol.features);
           });
}

void ExactPicture::findExtent()
{
    std::vector<Point> outline;
    stepDrawings(m_image.top(), m_toOutput, [&outline](const Drawing &drawing, const Transform &map) {
        drawing.outline(map, [&outline](Point at) { outline.push_back(at); });
    });
    for (const Point at : outline)
        m_mostExtent.add(at);
    m_leastExtent = m_mostExtent;
    if (isExtentCertain())
        return;
    m_leastExtent = Box();
    constexpr std::size_t most = 20000; // points that are looked at
    for (std::size_t i = 0; i < outline.size(); i += outline.size() / most + 1) {
        for (const double turn : {45.0, 135.0, 225.0, 315.0}) {
            const Point beside = outline[i] + clockwise(turn)(Point{500.0, 0.0});
            const Hit hit = stepAt(m_image.top(), m_toSource(beside), 0.0);
            if (hit.isCertain && hit.covered)
                m_leastExtent.add(beside);
        }
    }
}

const ExactPicture::Drawing &ExactPicture::drawing(const cam::FeatureSet &features, double growth)
{
    const auto known = m_drawings.find({&features, growth});
    if (known != m_drawings.end())
        return *known->second;
    auto made = std::make_unique<Drawing>();
    for (const cam::Feature &feature : features.order) {
        const bool positive = feature.polarity == cam::Polarity::Positive;
        Drawing::Item item;
        item.positive = positive;
        item.figure = figure(features, feature, positive ? growth : -growth);
        item.box = larger(item.figure->room(), 10000.0);
        made->items.push_back(std::move(item));
    }
    return *m_drawings.emplace(std::make_pair(&features, growth), std::move(made)).first->second;
}

// Of a symbol of the job's own that has positive pads of standard symbols only.
std::vector<cam::Shape> ExactPicture::shapesOf(const cam::FeatureSet &features, double growth) const
{
    std::vector<cam::Shape> shapes;
    for (const cam::Feature &feature : features.order) {
        if (feature.kind != cam::FeatureKind::Pad || feature.polarity != cam::Polarity::Positive)
            throw std::invalid_argument("a pen that is more than positive pads");
        const cam::Pad &pad = features.pads[feature.index];
        const cam::Symbol &symbol = m_image.symbols[pad.symbol];
        if (!symbol.standard)
            throw std::invalid_argument("a pen of symbols of the job's own");
        const cam::Shape plain = cam::shapeOf(*symbol.standard, growth + pad.growth);
        shapes.emplace_back();
        for (std::size_t i = 0; i < plain.contours.size(); ++i)
            shapes.back().contours.add(plain.contours[i], padMap(pad));
    }
    return shapes;
}

std::unique_ptr<ExactPicture::Figure> ExactPicture::figure(const cam::FeatureSet &features,
                                                           const cam::Feature &feature, double growth)
{
    const auto stroke = [&](Point from, const Edge &edge, std::uint32_t number) -> std::unique_ptr<Figure> {
        const cam::Symbol &symbol = m_image.symbols[number];
        if (!symbol.standard)
            return std::make_unique<OwnPenFigure>(from, edge, shapesOf(*symbol.features, growth));
        if (symbol.standard->kind == cam::SymbolKind::Round)
            return std::make_unique<StrokeFigure>(from, edge, (symbol.standard->size[0] + growth) / 2.0);
        return std::make_unique<SweptFigure>(from, edge, cam::shapeOf(*symbol.standard, growth));
    };
    switch (feature.kind) {
    case cam::FeatureKind::Line: {
        const cam::Line &line = features.lines[feature.index];
        return stroke(line.start, {line.end, {}, EdgeKind::Line}, line.symbol);
    }
    case cam::FeatureKind::Arc: {
        const cam::Arc &arc = features.arcs[feature.index];
        return stroke(
            arc.start,
            {arc.end, arc.center, arc.clockwise ? EdgeKind::ArcClockwise : EdgeKind::ArcCounterClockwise},
            arc.symbol);
    }
    case cam::FeatureKind::Pad: {
        const cam::Pad &pad = features.pads[feature.index];
        const cam::Symbol &symbol = m_image.symbols[pad.symbol];
        if (!symbol.standard)
            return std::make_unique<OwnFigure>(drawing(*symbol.features, growth + pad.growth), padMap(pad));
        const cam::Shape shape = cam::shapeOf(*symbol.standard, growth + pad.growth);
        return std::make_unique<ContourFigure>(shape.contours, 0, shape.contours.size(), padMap(pad));
    }
    case cam::FeatureKind::Surface:
        break;
    }
    const cam::Surface &surface = features.surfaces[feature.index];
    return std::make_unique<ContourFigure>(features.contours, surface.firstContour, surface.contourCount,
                                           Transform(), growth);
}

ExactPicture::Hit ExactPicture::Drawing::at(Point at, double near) const
{
    Hit result;
    // From the last feature backwards: what the first one that covers the point hides cannot be in doubt, but
    // its edges count all the same, as they do in a drawing that unites features.
    for (auto item = items.rbegin(); item != items.rend(); ++item) {
        if (!contains(item->box, at))
            continue;
        const Hit hit = item->figure->at(at, near);
        if (!hit.isCertain)
            return {false, false};
        if (hit.covered) {
            result.covered = item->positive;
            return result;
        }
    }
    return result;
}

void ExactPicture::Drawing::outline(const Transform &map, const PointTaker &take) const
{
    for (const Item &item : items) {
        if (item.positive)
            item.figure->outline(map, take);
    }
}

void ExactPicture::Drawing::edgePoints(const Transform &map, const PointTaker &take) const
{
    for (const Item &item : items)
        item.figure->edgePoints(map, take);
}

ExactPicture::Hit ExactPicture::stepAt(const cam::StepImage &step, Point at, double near) const
{
    Hit result = m_drawings.at({&step.features, m_options.resize})->at(at, near);
    if (!result.isCertain)
        return result;
    for (const cam::StepRepeat &repeat : step.repeats) {
        for (std::uint32_t row = 0; row < repeat.ny; ++row) {
            for (std::uint32_t column = 0; column < repeat.nx; ++column) {
                const Hit copy =
                    stepAt(m_image.steps[repeat.step], inverse(copyMap(repeat, column, row))(at), near);
                if (!copy.isCertain)
                    return copy;
                result.covered = result.covered || copy.covered;
            }
        }
    }
    return result;
}

void ExactPicture::stepDrawings(const cam::StepImage &step, const Transform &map,
                                const DrawingTaker &take) const
{
    take(*m_drawings.at({&step.features, m_options.resize}), map);
    for (const cam::StepRepeat &repeat : step.repeats) {
        for (std::uint32_t row = 0; row < repeat.ny; ++row) {
            for (std::uint32_t column = 0; column < repeat.nx; ++column)
                stepDrawings(m_image.steps[repeat.step], copyMap(repeat, column, row).then(map), take);
        }
    }
}

ExactPicture::Reading ExactPicture::at(Point output, double outputNear) const
{
    const Point at = m_toSource(output);
    const double near = outputNear / m_leastStretch;
    Hit base{true, true};
    if (m_options.negative && !m_profile) {
        base.covered = contains(m_leastExtent, output, -outputNear);
        base.isCertain = base.covered || !contains(m_mostExtent, output, outputNear);
    } else if (m_options.negative) {
        base = contains(m_profileBox, at) ? m_profile->at(at, near) : Hit{};
    }
    if (!base.isCertain)
        return {false, false};
    if (!base.covered)
        return {};
    const Hit layer = stepAt(m_image.top(), at, near);
    return {m_options.negative ? !layer.covered : layer.covered, layer.isCertain};
}

std::vector<Point> ExactPicture::edgePoints() const
{
    std::vector<Point> points;
    const PointTaker take = [&points](Point at) { points.push_back(at); };
    stepDrawings(m_image.top(), m_toOutput,
                 [&take](const Drawing &drawing, const Transform &map) { drawing.edgePoints(map, take); });
    if (m_profile)
        m_profile->edgePoints(m_toOutput, take);
    return points;
}

} // namespace testing
