#include "cam/verify/filepicture.h"

#include "cam/base/error.h"
#include "cam/excellon/excellonreader.h"
#include "cam/gdsii/gdsreader.h"
#include "cam/gerber/gerberreader.h"
#include "cam/polygon/arrangement.h"
#include "cam/verify/sourcepicture.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <string>

namespace cam::verify {

namespace {

GridBox movedBy(GridBox box, GridPoint by)
{
    box.low = {box.low.x + by.x, box.low.y + by.y};
    box.high = {box.high.x + by.x, box.high.y + by.y};
    return box;
}

void addMoved(const std::vector<GridRing> &from, GridPoint by, std::vector<GridRing> &rings)
{
    for (const GridRing &ring : from) {
        rings.push_back(ring);
        for (GridPoint &p : rings.back())
            p = {p.x + by.x, p.y + by.y};
    }
}

} // namespace

// ---- Gerber

GerberPicture::GerberPicture(GerberImage image, ArcCorners curves)
    : m_image(std::move(image)), m_curves(curves)
{
    m_drawn.resize(m_image.shapes.size());
    std::vector<GridRing> rings;
    for (std::uint32_t i = 0; i < m_image.objects.size(); ++i) {
        const GerberObject &object = m_image.objects[i];
        const bool isFlash = object.kind == GerberObjectKind::Flash;
        Drawn &known = m_drawn[object.shape];
        Paint paint;
        paint.dark = object.dark;
        Cleanness cleanness = Cleanness::Clean;
        if (!isFlash || !known.isKnown) {
            rings.clear();
            draw(object, isFlash ? Point() : object.at, isFlash, cleanness, rings);
            std::size_t corners = 0;
            for (const GridRing &ring : rings) {
                paint.box.add(ring);
                corners += ring.size();
            }
            paint.corners = static_cast<std::uint32_t>(corners);
            if (isFlash)
                known = {true, rings, paint.box, paint.corners};
            else
                cleanness = object.kind == GerberObjectKind::Stroke ? Cleanness::Clean : Cleanness::Unknown;
        }
        if (isFlash && known.corners > 0) {
            paint.at = Grid(1.0).round(object.at);
            paint.shape = object.shape + 1;
            paint.box = movedBy(known.box, paint.at);
            paint.corners = known.corners;
        }
        if (paint.corners == 0)
            continue;
        m_paints.push_back(paint);
        m_objects.push_back(i);
        m_cleanness.push_back(cleanness);
    }
}

bool GerberPicture::take(std::uint32_t paint, std::vector<GridRing> &rings, bool areClean)
{
    const GerberObject &object = m_image.objects[m_objects[paint]];
    if (object.kind == GerberObjectKind::Flash) {
        addMoved(m_drawn[object.shape].rings, m_paints[paint].at, rings);
        return true;
    }
    return draw(object, object.at, areClean, m_cleanness[paint], rings);
}

// `cleanness` says whether contours have to be looked at, and learns what they are. False for what is not
// asked to be clean, is not known to be so, and is more than one ring.
bool GerberPicture::draw(const GerberObject &object, Point at, bool areClean, Cleanness &cleanness,
                         std::vector<GridRing> &rings) const
{
    const GerberShape &shape = m_image.shapes[object.shape];
    const bool isStroke = object.kind == GerberObjectKind::Stroke;
    const bool isFlash = object.kind == GerberObjectKind::Flash;
    const Transform place = Transform::translation(at);
    const std::size_t first = rings.size();
    std::vector<Point> corners;
    std::vector<GridRing> own;
    for (std::uint32_t i = 0; i < shape.partCount; ++i) {
        const GerberPart &part = m_image.parts[shape.firstPart + i];
        own.clear();
        for (std::uint32_t j = 0; j < part.contourCount; ++j) {
            corners.clear();
            addCorners(m_image.contours[part.firstContour + j], m_curves, curveTolerance, corners);
            GridRing ring = onGrid(corners, place);
            if (ring.empty())
                continue;
            // The reader's own strokes go around counter-clockwise, but for the inner side of a ring.
            if (!isStroke)
                makeCounterClockwise(ring);
            if (areClean && (isFlash || cleanness != Cleanness::Clean) && !isClean({ring})) {
                for (GridRing &whole : filled(ring))
                    own.push_back(std::move(whole));
            } else {
                own.push_back(std::move(ring));
            }
        }
        if (part.exposed) {
            rings.insert(rings.end(), std::make_move_iterator(own.begin()),
                         std::make_move_iterator(own.end()));
            continue;
        }
        std::vector<GridRing> before(rings.begin() + static_cast<std::ptrdiff_t>(first), rings.end());
        rings.resize(first);
        for (GridRing &ring : combined(BooleanOperation::Difference, before, own))
            rings.push_back(std::move(ring));
    }
    return areClean || cleanness == Cleanness::Clean || rings.size() - first == 1;
}

// ---- GDSII

GdsPicture::GdsPicture(GdsImage image, std::uint16_t datatype, bool isOther)
    : m_image(std::move(image)), m_datatype(datatype), m_isOther(isOther)
{
    // Eight bytes of a file's real number do not always say it.
    if (std::fabs(m_image.unit - 1.0) < 1e-9)
        m_image.unit = 1.0;
    constexpr double mostShapes = 2e7; // more can only be meant to fill the memory
    double shapes = 0.0;
    for (const std::size_t top : m_image.tops)
        shapes += m_image.structures[top].shapesInAll;
    if (!(shapes <= mostShapes))
        throw Error("a GDSII file of more than 20 million shapes is not compared");
    m_partsOf.resize(m_image.structures.size());
    for (std::size_t i = 0; i < m_image.structures.size(); ++i)
        addParts(i);
    for (const std::size_t top : m_image.tops)
        place(top, Transform::scaling(m_image.unit, m_image.unit));
}

void GdsPicture::addParts(std::size_t number)
{
    const GdsStructure &structure = m_image.structures[number];
    const auto boundaries = static_cast<std::uint32_t>(structure.boundaries.size());
    const auto count = boundaries + static_cast<std::uint32_t>(structure.paths.size());
    constexpr std::uint32_t fewShapes = 64;
    const bool isTop = std::find(m_image.tops.begin(), m_image.tops.end(), number) != m_image.tops.end();
    const bool isOne = !isTop && structure.references.empty() && count <= fewShapes;
    for (std::uint32_t i = 0; i < count; ++i) {
        const GdsLayer on = i < boundaries ? structure.boundaries[i].on : structure.paths[i - boundaries].on;
        if (isWanted(on) && i >= boundaries && structure.paths[i - boundaries].width == 0)
            throw Error("a path without width makes no image: structure " + structure.name);
        if (isOne ? i > 0 : !isWanted(on))
            continue;
        Part part;
        part.structure = static_cast<std::uint32_t>(number);
        part.first = i;
        part.count = isOne ? count : 1;
        std::vector<GridRing> rings;
        draw(part, Transform(), rings);
        for (const GridRing &ring : rings) {
            part.box.add(ring);
            part.corners += static_cast<std::uint32_t>(ring.size());
        }
        if (part.corners == 0)
            continue;
        m_partsOf[number].push_back(static_cast<std::uint32_t>(m_parts.size()));
        m_parts.push_back(part);
    }
}

void GdsPicture::place(std::size_t number, const Transform &map)
{
    const GdsStructure &structure = m_image.structures[number];
    if (structure.shapesInAll == 0.0)
        return;
    const auto here = static_cast<std::uint32_t>(m_maps.size());
    if (!m_partsOf[number].empty())
        m_maps.push_back(map);
    const bool isPlain = map.xx == m_image.unit && map.yy == m_image.unit && map.xy == 0.0 && map.yx == 0.0;
    for (const std::uint32_t i : m_partsOf[number]) {
        const Part &part = m_parts[i];
        Paint paint;
        const GridPoint low = part.box.low, high = part.box.high;
        for (const GridPoint corner : {low, high, GridPoint{low.x, high.y}, GridPoint{high.x, low.y}})
            paint.box.add(
                Grid(1.0).round(map({static_cast<double>(corner.x), static_cast<double>(corner.y)})));
        paint.corners = part.corners;
        // Where the map is the file's own, rounded corners do not depend on the place.
        if (isPlain && m_image.unit == 1.0) {
            paint.shape = i + 1;
            paint.at = Grid(1.0).round(map.offset);
        }
        m_paints.push_back(paint);
        m_origins.push_back({i, here});
    }
    for (const GdsReference &reference : structure.references) {
        for (int row = 0; row < reference.rows; ++row) {
            for (int column = 0; column < reference.columns; ++column)
                place(reference.structure, reference.placement(column, row).then(map));
        }
    }
}

// In nanometres, each ring counter-clockwise.
void GdsPicture::draw(const Part &part, const Transform &map, std::vector<GridRing> &rings) const
{
    const GdsStructure &structure = m_image.structures[part.structure];
    const auto boundaries = static_cast<std::uint32_t>(structure.boundaries.size());
    std::vector<Point> corners;
    for (std::uint32_t i = part.first; i < part.first + part.count; ++i) {
        corners.clear();
        if (i < boundaries) {
            const GdsBoundary &boundary = structure.boundaries[i];
            if (!isWanted(boundary.on))
                continue;
            for (std::size_t j = boundary.first; j < boundary.first + boundary.count; ++j)
                corners.push_back({static_cast<double>(structure.corners[j].x),
                                   static_cast<double>(structure.corners[j].y)});
        } else {
            const GdsPath &path = structure.paths[i - boundaries];
            if (!isWanted(path.on))
                continue;
            corners = outline(path);
        }
        GridRing ring = onGrid(corners, map);
        if (ring.empty())
            continue;
        makeCounterClockwise(ring);
        rings.push_back(std::move(ring));
    }
}

bool GdsPicture::take(std::uint32_t paint, std::vector<GridRing> &rings, bool areClean)
{
    const Origin &origin = m_origins[paint];
    Part &part = m_parts[origin.part];
    const std::size_t first = rings.size();
    draw(part, m_maps[origin.map], rings);
    if (!areClean)
        return part.cleanness == Cleanness::Clean || rings.size() - first == 1;
    if (part.cleanness == Cleanness::Unknown) {
        part.cleanness = Cleanness::Clean;
        for (std::size_t i = first; i < rings.size(); ++i) {
            if (!isClean({rings[i]}))
                part.cleanness = Cleanness::Unclean;
        }
    }
    if (part.cleanness == Cleanness::Unclean) {
        const std::vector<GridRing> drawn(
            std::make_move_iterator(rings.begin() + static_cast<std::ptrdiff_t>(first)),
            std::make_move_iterator(rings.end()));
        rings.resize(first);
        for (const GridRing &ring : drawn) {
            for (GridRing &whole : filled(ring))
                rings.push_back(std::move(whole));
        }
    }
    return true;
}

// ---- Any of them

namespace {

// The first bytes, by which a file is known; fewer when it has no more.
std::string headOf(const std::filesystem::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw Error(file.u8string() + ": cannot be opened");
    std::string head(4096, '\0');
    stream.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(stream.gcount()));
    return head;
}

// The record HEADER: six bytes, type 0, data type 2.
bool beginsAsGds(std::string_view head)
{
    constexpr std::string_view header("\0\6\0\2", 4);
    return head.substr(0, header.size()) == header;
}

// What the picture of a drill file is drawn from, made before it.
struct DrillLayer
{
    explicit DrillLayer(const DrillImage &drill) : image(layerOf(drill)) {}
    LayerImage image;
    ExportOptions asItIs;
};

class DrillPicture : DrillLayer, public SourcePicture
{
public:
    explicit DrillPicture(const DrillImage &drill)
        : DrillLayer(drill), SourcePicture(image, asItIs, ArcCorners::Compass)
    {
    }
};

std::unique_ptr<Picture> readDrillPicture(const std::filesystem::path &file,
                                          const std::function<void(double)> &report)
{
    const DrillImage drill = readExcellonFile(file, report);
    if (!drill.assumptions.none())
        throw Error(file.u8string() + ": the drill file does not say how its numbers are written: expected " +
                    (drill.assumptions.digits ? "a number format" : "which zeros are left out"));
    return std::make_unique<DrillPicture>(drill);
}

} // namespace

bool isGds(const std::filesystem::path &file)
{
    return beginsAsGds(headOf(file));
}

std::unique_ptr<Picture> readPicture(const std::filesystem::path &file, std::optional<std::uint16_t> layer,
                                     const std::function<void(double)> &report)
{
    // What stands on it is the step's profile, beside the layer.
    constexpr std::uint16_t profileDatatype = 1;
    const std::string head = headOf(file);
    if (isExcellon(head))
        return readDrillPicture(file, report);
    if (!beginsAsGds(head))
        return std::make_unique<GerberPicture>(readGerberFile(file, report), ArcCorners::Compass);
    GdsImage image = readGdsFile(file, report);
    const auto check = [&](GdsLayer on) {
        if (layer && on.layer != *layer)
            throw Error(file.u8string() + ": expected all shapes on layer " + std::to_string(*layer) +
                        ", found one on layer " + std::to_string(on.layer));
    };
    for (const GdsStructure &structure : image.structures) {
        for (const GdsBoundary &boundary : structure.boundaries)
            check(boundary.on);
        for (const GdsPath &path : structure.paths)
            check(path.on);
    }
    return std::make_unique<GdsPicture>(std::move(image), profileDatatype, true);
}

} // namespace cam::verify
