#include "drawing/filescene.h"

#include "drawing/flattening.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <unordered_map>

namespace drawing {

using cam::Box;
using cam::Point;
using cam::Transform;

namespace {

constexpr double pixel = Canvas::samples;
constexpr std::size_t shapesPerCheck = 256; // that are drawn
constexpr std::size_t shapesPerLook = 8192; // that are only looked at

double areaOf(const std::vector<Point> &corners)
{
    double sum = 0.0;
    for (std::size_t i = 1; i + 1 < corners.size(); ++i)
        sum += cam::cross(corners[i] - corners[0], corners[i + 1] - corners[0]);
    return std::fabs(sum) / 2.0;
}

// A polygon in samples, filled by winding number.
void fillPolygon(Canvas &canvas, const std::vector<Point> &corners, const DrawMode &mode)
{
    Box box;
    for (const Point corner : corners)
        box.add(corner);
    if (box.high.x < 0.0 || box.high.y < 0.0 || box.low.x > canvas.width() * Canvas::samples ||
        box.low.y > canvas.height() * Canvas::samples)
        return;
    if (mode.levelOfDetail) {
        double around = 0.0;
        for (std::size_t i = 0; i < corners.size(); ++i)
            around += cam::distance(corners[i], corners[(i + 1) % corners.size()]);
        const double area = areaOf(corners);
        if (std::max(box.high.x - box.low.x, box.high.y - box.low.y) < pixel)
            return canvas.addSmall((box.low + box.high) * 0.5, area, true);
        if (2.0 * area < around * pixel) {
            for (std::size_t i = 0; i < corners.size(); ++i)
                canvas.addThin(corners[i], corners[(i + 1) % corners.size()], 0.0, true);
        }
    }
    const Flattening flattening(Transform(), mode.levelOfDetail);
    Rings rings;
    for (const Point corner : corners)
        flattening.addCorner(corner, rings);
    rings.endRing();
    canvas.fill(rings, FillRule::NonZero, true);
}

// Copies of an array, none where the last one stands before the first one.
struct CopyRange
{
    int firstColumn = 0, lastColumn = -1, firstRow = 0, lastRow = -1;
};

// The copies that may touch `part`, of a structure with `extent`: all others are passed over without a look,
// for an array may have a million. A copy is `across` and `up` away from the one before it.
CopyRange copiesIn(const cam::GdsReference &reference, const Box &extent, const Box &part)
{
    CopyRange range{0, reference.columns - 1, 0, reference.rows - 1};
    if (extent.isEmpty())
        return {};
    const Transform first = reference.placement(0, 0);
    const Box box = mapped(extent, first);
    Point across = reference.placement(1, 0).offset - first.offset;
    Point up = reference.placement(0, 1).offset - first.offset;
    if (reference.columns == 1)
        across = {up.y, -up.x};
    if (reference.rows == 1)
        up = {-across.y, across.x};
    const Transform steps{across.x, up.x, across.y, up.y, {}};
    if (steps.determinant() == 0.0)
        return range;
    // How far copies are moved that touch the part, then how many steps that is.
    Box moves;
    moves.add(part.low - box.high);
    moves.add(part.high - box.low);
    if (moves.isEmpty())
        return {};
    const Box counts = mapped(moves, inverse(steps));
    const auto whole = [](double count, int least, int most) {
        return static_cast<int>(std::min<double>(most, std::max<double>(least, count)));
    };
    constexpr double rounding = 1e-6;
    range.firstColumn = whole(std::ceil(counts.low.x - rounding), 0, reference.columns);
    range.lastColumn = whole(std::floor(counts.high.x + rounding), -1, reference.columns - 1);
    range.firstRow = whole(std::ceil(counts.low.y - rounding), 0, reference.rows);
    range.lastRow = whole(std::floor(counts.high.y + rounding), -1, reference.rows - 1);
    return range;
}

// What a part takes out is a hole.
void addPart(cam::ContourPool &outline, const cam::ContourPool &contours, const cam::GerberPart &part,
             Point at)
{
    for (std::uint32_t i = part.firstContour; i < part.firstContour + part.contourCount; ++i) {
        const cam::ContourView contour = contours[i];
        outline.begin(contour.start + at, !part.exposed);
        for (const cam::Edge &edge : contour) {
            if (edge.kind == cam::EdgeKind::Line)
                outline.lineTo(edge.end + at);
            else
                outline.arcTo(edge.end + at, edge.center + at, edge.kind == cam::EdgeKind::ArcClockwise);
        }
        outline.end();
    }
}

} // namespace

// ---- GDSII

std::vector<cam::GdsLayer> layersOf(const cam::GdsImage &image)
{
    std::set<std::pair<int, int>> found;
    for (const cam::GdsStructure &structure : image.structures) {
        for (const cam::GdsBoundary &boundary : structure.boundaries)
            found.emplace(boundary.on.layer, boundary.on.datatype);
        for (const cam::GdsPath &path : structure.paths)
            found.emplace(path.on.layer, path.on.datatype);
        for (const cam::GdsText &text : structure.texts)
            found.emplace(text.on.layer, text.on.datatype);
    }
    std::vector<cam::GdsLayer> layers;
    layers.reserve(found.size());
    for (const auto &[layer, datatype] : found)
        layers.push_back({static_cast<std::uint16_t>(layer), static_cast<std::uint16_t>(datatype)});
    return layers;
}

GdsScene::GdsScene(std::shared_ptr<const cam::GdsImage> image, cam::GdsLayer on,
                   const std::function<void()> &check)
    : m_image(std::move(image)), m_on(on), m_structures(m_image->structures.size())
{
    for (const std::size_t top : m_image->tops)
        prepare(top, check);
}

void GdsScene::prepare(std::size_t number, const std::function<void()> &check)
{
    Structure &made = m_structures[number];
    if (made.isKnown)
        return;
    made.isKnown = true;
    check();
    const cam::GdsStructure &structure = m_image->structures[number];
    for (std::uint32_t i = 0; i < structure.boundaries.size(); ++i) {
        if (structure.boundaries[i].on == m_on)
            made.boundaries.push_back(i);
    }
    for (std::uint32_t i = 0; i < structure.paths.size(); ++i) {
        if (structure.paths[i].on == m_on)
            made.paths.push_back(i);
    }
    for (std::uint32_t i = 0; i < structure.texts.size(); ++i) {
        if (structure.texts[i].on == m_on)
            made.texts.push_back(i);
    }
    made.textIndex = FeatureIndex(static_cast<std::uint32_t>(made.texts.size()), [&](std::uint32_t i) {
        Box box;
        box.add(cam::pointOf(structure.texts[made.texts[i]].at));
        return box;
    });
    made.index = FeatureIndex(static_cast<std::uint32_t>(made.boundaries.size() + made.paths.size()),
                              [&](std::uint32_t i) {
                                  if (i % shapesPerLook == 0)
                                      check();
                                  return boxOf(number, i);
                              });
    made.extent = made.index.extent();
    made.extent.add(made.textIndex.extent());
    for (const cam::GdsReference &reference : structure.references) {
        prepare(reference.structure, check);
        for (const int column : {0, reference.columns - 1}) {
            for (const int row : {0, reference.rows - 1})
                made.extent.add(
                    mapped(m_structures[reference.structure].extent, reference.placement(column, row)));
        }
    }
}

Box GdsScene::boxOf(std::size_t number, std::uint32_t shape) const
{
    const Structure &here = m_structures[number];
    const cam::GdsStructure &structure = m_image->structures[number];
    Box box;
    if (shape < here.boundaries.size()) {
        const cam::GdsBoundary &boundary = structure.boundaries[here.boundaries[shape]];
        for (std::size_t i = boundary.first; i < boundary.first + boundary.count; ++i)
            box.add(cam::pointOf(structure.corners[i]));
        return box;
    }
    const cam::GdsPath &path = structure.paths[here.paths[shape - here.boundaries.size()]];
    for (const cam::GridPoint p : path.points)
        box.add(cam::pointOf(p));
    // Mitred corners reach no farther than this.
    const double reach = static_cast<double>(std::max({path.width, path.beginBeyond, path.endBeyond})) * 1.5;
    box.add(box.low - Point{reach, reach});
    box.add(box.high + Point{reach, reach});
    return box;
}

Box GdsScene::extent() const
{
    Box box;
    for (const std::size_t top : m_image->tops)
        box.add(m_structures[top].extent);
    return mapped(box, Transform::scaling(m_image->unit, m_image->unit));
}

void GdsScene::draw(Canvas &canvas, const Transform &toSamples, const DrawMode &mode) const
{
    for (const std::size_t top : m_image->tops)
        drawStructure(top, Transform::scaling(m_image->unit, m_image->unit).then(toSamples), canvas, mode);
}

void GdsScene::drawStructure(std::size_t number, const Transform &map, Canvas &canvas,
                             const DrawMode &mode) const
{
    const Structure &here = m_structures[number];
    const Box visible = visiblePart(canvas, map);
    if (here.extent.isEmpty() || !here.extent.touches(visible))
        return;
    std::vector<std::uint32_t> found;
    here.index.find(visible, found);
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (i % shapesPerCheck == 0)
            mode.check();
        drawShape(number, found[i], map, canvas, mode);
    }
    if (!here.texts.empty()) {
        found.clear();
        here.textIndex.find(visible, found);
        for (const std::uint32_t i : found)
            canvas.addSmall(map(cam::pointOf(m_image->structures[number].texts[here.texts[i]].at)),
                            pixel * pixel, true);
    }
    mode.check();
    for (const cam::GdsReference &reference : m_image->structures[number].references) {
        const CopyRange copies = copiesIn(reference, m_structures[reference.structure].extent, visible);
        for (int row = copies.firstRow; row <= copies.lastRow; ++row) {
            for (int column = copies.firstColumn; column <= copies.lastColumn; ++column)
                drawStructure(reference.structure, reference.placement(column, row).then(map), canvas, mode);
        }
    }
}

void GdsScene::drawShape(std::size_t number, std::uint32_t shape, const Transform &map, Canvas &canvas,
                         const DrawMode &mode) const
{
    const Structure &here = m_structures[number];
    const cam::GdsStructure &structure = m_image->structures[number];
    std::vector<Point> corners;
    if (shape < here.boundaries.size()) {
        const cam::GdsBoundary &boundary = structure.boundaries[here.boundaries[shape]];
        for (std::size_t i = boundary.first; i < boundary.first + boundary.count; ++i)
            corners.push_back(map(cam::pointOf(structure.corners[i])));
        return fillPolygon(canvas, corners, mode);
    }
    const cam::GdsPath &path = structure.paths[here.paths[shape - here.boundaries.size()]];
    if (path.width == 0) { // covers nothing, but is seen
        for (std::size_t i = 0; i + 1 < path.points.size(); ++i)
            canvas.addThin(map(cam::pointOf(path.points[i])), map(cam::pointOf(path.points[i + 1])), 0.0,
                           true);
        return;
    }
    for (const Point corner : cam::outline(path))
        corners.push_back(map(corner));
    if (!corners.empty())
        fillPolygon(canvas, corners, mode);
}

bool GdsScene::findStructures(std::size_t number, const Box &box, const Transform &map,
                              const StructureVisit &visit) const
{
    const Structure &here = m_structures[number];
    const Box part = mapped(box, inverse(map));
    if (here.extent.isEmpty() || !here.extent.touches(part))
        return true;
    if (!visit(number, part, map))
        return false;
    for (const cam::GdsReference &reference : m_image->structures[number].references) {
        const CopyRange copies = copiesIn(reference, m_structures[reference.structure].extent, part);
        for (int row = copies.firstRow; row <= copies.lastRow; ++row) {
            for (int column = copies.firstColumn; column <= copies.lastColumn; ++column) {
                if (!findStructures(reference.structure, box, reference.placement(column, row).then(map),
                                    visit))
                    return false;
            }
        }
    }
    return true;
}

Figure GdsScene::figureOf(std::size_t number, std::uint32_t shape, const Transform &map) const
{
    const Structure &here = m_structures[number];
    const cam::GdsStructure &structure = m_image->structures[number];
    Figure figure;
    figure.name = structure.name;
    std::vector<Point> corners;
    if (shape < here.boundaries.size()) {
        const cam::GdsBoundary &boundary = structure.boundaries[here.boundaries[shape]];
        for (std::size_t i = boundary.first; i < boundary.first + boundary.count; ++i)
            corners.push_back(map(cam::pointOf(structure.corners[i])));
    } else {
        const cam::GdsPath &path = structure.paths[here.paths[shape - here.boundaries.size()]];
        figure.kind = Figure::Kind::Path;
        figure.width = static_cast<double>(path.width) * std::sqrt(std::fabs(map.determinant()));
        figure.start = map(cam::pointOf(path.points.front()));
        for (std::size_t i = 1; i < path.points.size(); ++i)
            figure.line.push_back({map(cam::pointOf(path.points[i])), {}, cam::EdgeKind::Line});
        for (const Point corner : cam::outline(path))
            corners.push_back(map(corner));
    }
    for (const Point corner : corners)
        figure.box.add(corner);
    if (!corners.empty())
        figure.outline.addPolygon(corners.data(), corners.size(), false);
    return figure;
}

void GdsScene::findFigures(const Box &box, const FigureVisit &visit) const
{
    const auto visitOne = [&](std::size_t number, const Box &part, const Transform &map) {
        const Structure &here = m_structures[number];
        std::vector<std::uint32_t> found;
        here.index.find(part, found);
        for (const std::uint32_t shape : found) {
            if (!visit(figureOf(number, shape, map)))
                return false;
        }
        found.clear();
        here.textIndex.find(part, found);
        for (const std::uint32_t i : found) {
            const cam::GdsText &text = m_image->structures[number].texts[here.texts[i]];
            Figure figure;
            figure.kind = Figure::Kind::Text;
            figure.at = map(cam::pointOf(text.at));
            figure.words = text.text;
            figure.name = m_image->structures[number].name;
            if (!visit(std::move(figure)))
                return false;
        }
        return true;
    };
    for (const std::size_t top : m_image->tops) {
        if (!findStructures(top, box, Transform::scaling(m_image->unit, m_image->unit), visitOne))
            return;
    }
}

void GdsScene::findTexts(const Box &box, const TextVisit &visit) const
{
    const auto visitOne = [&](std::size_t number, const Box &part, const Transform &map) {
        const Structure &here = m_structures[number];
        std::vector<std::uint32_t> found;
        here.textIndex.find(part, found);
        return std::all_of(found.begin(), found.end(), [&](std::uint32_t i) {
            const cam::GdsText &text = m_image->structures[number].texts[here.texts[i]];
            return visit(map(cam::pointOf(text.at)), text.text);
        });
    };
    for (const std::size_t top : m_image->tops) {
        if (!findStructures(top, box, Transform::scaling(m_image->unit, m_image->unit), visitOne))
            return;
    }
}

// ---- Gerber

GerberScene::GerberScene(std::shared_ptr<const cam::GerberImage> image, const std::function<void()> &check)
    : m_image(std::move(image))
{
    m_index = FeatureIndex(static_cast<std::uint32_t>(m_image->objects.size()), [&](std::uint32_t i) {
        if (i % shapesPerLook == 0)
            check();
        return boxOf(i);
    });
    m_clears = std::any_of(m_image->objects.begin(), m_image->objects.end(),
                           [](const cam::GerberObject &object) { return !object.dark; });
}

Box GerberScene::boxOf(std::uint32_t number) const
{
    const cam::GerberObject &object = m_image->objects[number];
    Box box = m_image->shapes[object.shape].extent;
    if (!box.isEmpty()) {
        box.low = box.low + object.at;
        box.high = box.high + object.at;
    }
    return box;
}

struct GerberScene::Work
{
    // A shape about its own origin, in samples.
    struct PlacedShape
    {
        std::vector<Rings> parts;
        double area = 0.0, around = 0.0;
        Box box;
        bool isKnown = false;
    };
    Canvas &canvas;
    Canvas own; // of a shape that takes something out of itself
    Transform map, linear;
    Box visible; // in what `map` maps
    const DrawMode &mode;
    std::unordered_map<std::uint32_t, PlacedShape> shapes; // those that are flashed
    PlacedShape once;
};

void GerberScene::draw(Canvas &canvas, const Transform &toSamples, const DrawMode &mode) const
{
    Canvas image(canvas.width(), canvas.height(), m_clears);
    Work work{image,
              {canvas.width(), canvas.height(), true},
              toSamples,
              toSamples,
              visiblePart(canvas, toSamples),
              mode,
              {},
              {}};
    work.linear.offset = {};
    std::vector<std::uint32_t> found;
    m_index.find(work.visible, found);
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (i % shapesPerCheck == 0)
            mode.check();
        drawObject(found[i], work);
    }
    canvas.add(image);
}

void GerberScene::drawObject(std::uint32_t number, Work &work) const
{
    const cam::GerberObject &object = m_image->objects[number];
    const cam::GerberShape &shape = m_image->shapes[object.shape];
    if (shape.extent.isEmpty() || !boxOf(number).touches(work.visible))
        return;
    const bool isFlash = object.kind == cam::GerberObjectKind::Flash;
    Work::PlacedShape &placed = isFlash ? work.shapes[object.shape] : work.once;
    if (!isFlash)
        placed = {};
    if (!placed.isKnown) {
        placed.isKnown = true;
        placed.box = mapped(shape.extent, work.linear);
        const Flattening flattening(work.linear, work.mode.levelOfDetail);
        for (std::uint32_t i = shape.firstPart; i < shape.firstPart + shape.partCount; ++i) {
            Rings rings;
            const cam::GerberPart &part = m_image->parts[i];
            for (std::uint32_t j = part.firstContour; j < part.firstContour + part.contourCount; ++j) {
                const std::size_t first = rings.corners.size();
                flattening.add(m_image->contours[j], rings);
                double area = 0.0;
                for (std::size_t k = first; k < rings.corners.size(); ++k) {
                    const Point a = rings.corners[k],
                                b = rings.corners[k + 1 < rings.corners.size() ? k + 1 : first];
                    area += cam::cross(a, b) / 2.0;
                    placed.around += cam::distance(a, b);
                }
                placed.area += part.exposed ? std::fabs(area) : -std::fabs(area);
                rings.endRing();
            }
            placed.parts.push_back(std::move(rings));
        }
    }
    const Point at = work.map(object.at);
    const double longer =
        std::max(placed.box.high.x - placed.box.low.x, placed.box.high.y - placed.box.low.y);
    if (work.mode.levelOfDetail && longer < pixel)
        return work.canvas.addSmall(at + (placed.box.low + placed.box.high) * 0.5, std::max(0.0, placed.area),
                                    object.dark);
    const bool isThin = work.mode.levelOfDetail && object.dark && 2.0 * placed.area < placed.around * pixel;
    const bool isOwnImage = std::any_of(m_image->parts.begin() + shape.firstPart,
                                        m_image->parts.begin() + shape.firstPart + shape.partCount,
                                        [](const cam::GerberPart &part) { return !part.exposed; });
    if (isOwnImage)
        work.own.clear();
    for (std::uint32_t i = 0; i < shape.partCount; ++i) {
        Rings rings = placed.parts[i];
        for (Point &corner : rings.corners)
            corner = corner + at;
        const bool exposed = m_image->parts[shape.firstPart + i].exposed;
        if (isThin && exposed) {
            std::size_t first = 0;
            for (const std::size_t end : rings.ends) {
                for (std::size_t k = first; k < end; ++k)
                    work.canvas.addThin(rings.corners[k], rings.corners[k + 1 < end ? k + 1 : first], 0.0,
                                        true);
                first = end;
            }
        }
        if (isOwnImage)
            work.own.fill(rings, FillRule::NonZero, exposed);
        else
            work.canvas.fill(rings, FillRule::NonZero, object.dark);
    }
    if (isOwnImage && object.dark)
        work.canvas.add(work.own);
    else if (isOwnImage)
        work.canvas.remove(work.own);
}

void GerberScene::findFigures(const Box &box, const FigureVisit &visit) const
{
    std::vector<std::uint32_t> found;
    m_index.find(box, found);
    for (const std::uint32_t number : found) {
        const cam::GerberObject &object = m_image->objects[number];
        const cam::GerberShape &shape = m_image->shapes[object.shape];
        Figure figure;
        figure.dark = object.dark;
        figure.lineNumber = object.line;
        figure.number = object.aperture;
        if (const auto known = m_image->apertures.find(object.aperture); known != m_image->apertures.end()) {
            figure.name = known->second.shape;
            figure.size = {known->second.width, known->second.height};
        }
        figure.box = boxOf(number);
        if (object.kind == cam::GerberObjectKind::Stroke) {
            const cam::GerberStroke &stroke = m_image->strokes[object.stroke];
            figure.kind = Figure::Kind::Stroke;
            figure.width = stroke.width;
            figure.start = stroke.from + object.at;
            figure.line.push_back(
                {stroke.edge.end + object.at, stroke.edge.center + object.at, stroke.edge.kind});
        } else {
            const bool isFlash = object.kind == cam::GerberObjectKind::Flash;
            figure.kind = isFlash ? Figure::Kind::Flash : Figure::Kind::Region;
            figure.at = object.at;
        }
        // A stroke with a circle is as wide as its line.
        if (figure.kind != Figure::Kind::Stroke || figure.name != "C") {
            for (std::uint32_t i = shape.firstPart; i < shape.firstPart + shape.partCount; ++i)
                addPart(figure.outline, m_image->contours, m_image->parts[i], object.at);
        }
        if (!visit(std::move(figure)))
            return;
    }
}

} // namespace drawing
