// One structure after the other: the exported step's goes first into the plan and last into the file, so that
// every structure stands behind those that it refers to.
#include "cam/gdsii/gdswriter.h"

#include "cam/base/error.h"
#include "cam/base/outputfile.h"
#include "cam/gdsii/arrays.h"
#include "cam/gdsii/records.h"
#include "cam/model/work.h"
#include "cam/polygon/drawing.h"
#include "cam/polygon/layerarea.h"
#include "cam/polygon/surfacepolygons.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace cam {

namespace {

using gdsii::mostCorners;

// A step as it comes to lie: its features under the linear part of a map, about the origin of its own
// coordinates.
struct StepVariant
{
    std::uint32_t step = 0;
    Transform map;
    std::string name;
};

constexpr int geometryType = 0;
constexpr int profileType = 1;

// Draws whole polygons that are kept already: the base of a negative, and what is taken from it. There may be
// millions: they are kept in blocks, so that neither growing nor going away makes a pause.
class StoredPolygons : public PaintSource
{
public:
    std::uint32_t add(const GridRing &ring)
    {
        if (m_blocks.empty() || m_blocks.back().capacity() - m_blocks.back().size() < ring.size()) {
            m_blocks.emplace_back();
            m_blocks.back().reserve(std::max(blockSize, ring.size()));
        }
        std::vector<GridPoint> &block = m_blocks.back();
        m_places.push_back({m_blocks.size() - 1, static_cast<std::uint32_t>(block.size()),
                            static_cast<std::uint32_t>(ring.size())});
        block.insert(block.end(), ring.begin(), ring.end());
        m_extent.add(ring);
        return static_cast<std::uint32_t>(m_places.size() - 1);
    }
    void rings(std::uint32_t item, std::vector<GridRing> &rings) override { rings.push_back(ring(item)); }
    GridRing ring(std::uint32_t item) const
    {
        const Place &place = m_places[item];
        const auto begin = m_blocks[place.block].begin() + place.begin;
        return {begin, begin + place.size};
    }
    std::size_t size() const { return m_places.size(); }
    const GridBox &extent() const { return m_extent; }

private:
    static constexpr std::size_t blockSize = 65536; // points
    struct Place
    {
        std::size_t block;
        std::uint32_t begin;
        std::uint32_t size;
    };
    std::vector<std::vector<GridPoint>> m_blocks;
    std::deque<Place> m_places;
    GridBox m_extent;
};

class Writer
{
public:
    Writer(const LayerImage &image, const ExportOptions &options);
    void write();

private:
    void planSteps(std::uint32_t step, const Transform &map);
    void writeSteps();
    void writeStep(const StepVariant &variant);
    void writeChildren(const StepImage &step, const Transform &map);
    void writeCopies(const StepRepeat &repeat, const Transform &map, const std::string &name);
    void writeSymbols(const FeatureSet &features, FeatureDrawing &drawing,
                      const std::vector<bool> &isPainted);
    void writeFeatures(const FeatureSet &features, FeatureDrawing &drawing,
                       const std::vector<bool> &isPainted);
    void writeSurface(const Feature &feature, FeatureDrawing &drawing, double work);
    void writePads(std::vector<std::vector<GridPoint>> &places);
    void writeNegative();
    void writeProfile();

    std::uint32_t variantNumber(std::uint32_t step, const Transform &map);
    std::string uniqueName(const std::string &wanted);
    void boundary(const GridRing &ring);

    const LayerImage &m_image;
    const ExportOptions &m_options;
    Transform m_map;
    OutputFile m_file;
    gdsii::RecordWriter m_records;
    gdsii::Date m_date;
    int m_layer;
    DrawnSymbols m_symbols;
    std::vector<std::string> m_symbolNames; // by drawn symbol; empty until its structure is in the file
    std::vector<StepVariant> m_steps;       // children before parents
    std::map<std::pair<std::uint32_t, LinearPart>, std::uint32_t> m_stepNumbers;
    std::set<std::string> m_names;
    WorkProgress m_progress;
};

} // namespace

void writeGds(const LayerImage &image, const ExportOptions &options)
{
    Writer(image, options).write();
}

namespace {

double unitOf(const ExportOptions &options)
{
    return options.dbu > 0.0 ? options.dbu : 0.001;
}

Writer::Writer(const LayerImage &image, const ExportOptions &options)
    : m_image(image), m_options(options), m_map(exportTransform(options, image.datum)), m_file(options.file),
      m_records(m_file), m_layer(std::clamp(image.row, 0, 32767)),
      m_symbols(image, Grid(unitOf(options) * 1000.0), mostCorners), m_progress(options.report, 1.0)
{
    std::copy(std::begin(image.saved), std::end(image.saved), std::begin(m_date.fields));
}

void Writer::write()
{
    m_records.beginLibrary(gdsii::legalName(m_image.job), m_date, unitOf(m_options));
    const auto top = static_cast<std::uint32_t>(m_image.steps.size() - 1);
    uniqueName(gdsii::legalName(m_image.top().name)); // the plain name is the exported step's
    if (m_options.negative)
        writeNegative();
    else {
        planSteps(top, m_map);
        writeSteps();
    }
    m_records.endLibrary();
    m_options.report(1.0); // the last that a cancel can stop: nothing has taken the old file's place yet
    m_file.commit();
    m_options.report(1.0);
}

// Strokes along arcs of some metres have more corners than a boundary may have.
void Writer::boundary(const GridRing &ring)
{
    if (ring.size() <= mostCorners)
        return m_records.boundary(ring, m_layer, geometryType);
    emitArea(
        {ring}, mostCorners,
        [this](const GridRing &part) { m_records.boundary(part, m_layer, geometryType); },
        [this](double) { m_progress.report(); });
}

std::string Writer::uniqueName(const std::string &wanted)
{
    std::string name = wanted;
    for (int number = 1; !m_names.insert(name).second; ++number) {
        const std::string suffix = "$" + std::to_string(number);
        name = wanted.substr(0, 32 - suffix.size()) + suffix;
    }
    return name;
}

std::uint32_t Writer::variantNumber(std::uint32_t step, const Transform &map)
{
    return m_stepNumbers.at({step, LinearPart(map)});
}

// Children are drawn about the origin of their own coordinates; only the exported step keeps the map's
// offset.
void Writer::planSteps(std::uint32_t step, const Transform &map)
{
    const auto key = std::make_pair(step, LinearPart(map));
    if (m_stepNumbers.count(key) != 0)
        return;
    const StepImage &image = m_image.steps[step];
    for (const StepRepeat &repeat : image.repeats) {
        Transform child = placement(repeat).then(map);
        child.offset = {};
        planSteps(repeat.step, child);
    }
    const bool isTop = step + 1 == m_image.steps.size();
    const std::string name = gdsii::legalName(image.name);
    m_stepNumbers.emplace(key, static_cast<std::uint32_t>(m_steps.size()));
    m_steps.push_back({step, map, isTop ? name : uniqueName(name)});
    m_progress.expect(workOf(image.features));
}

void Writer::writeSteps()
{
    for (const StepVariant &variant : m_steps)
        writeStep(variant);
}

void Writer::writeStep(const StepVariant &variant)
{
    const StepImage &step = m_image.steps[variant.step];
    FeatureDrawing drawing(m_symbols, step.features, variant.map, m_options.resize);
    // Negative features and what they reach are written as the area that is left, not feature by feature.
    const std::vector<bool> isPainted = drawing.reachedByNegatives([this] { m_progress.report(); });
    writeSymbols(step.features, drawing, isPainted);
    m_records.beginStructure(variant.name, m_date);
    writeFeatures(step.features, drawing, isPainted);
    writeChildren(step, variant.map);
    if (variant.step + 1 == m_image.steps.size() && m_options.profileOnTop)
        writeProfile();
    m_records.endStructure();
}

// The structures of the symbols that pads refer to, as far as they are not in the file yet.
void Writer::writeSymbols(const FeatureSet &features, FeatureDrawing &drawing,
                          const std::vector<bool> &isPainted)
{
    for (std::size_t i = 0; i < features.order.size(); ++i) {
        const Feature &feature = features.order[i];
        if (feature.kind != FeatureKind::Pad || (!isPainted.empty() && isPainted[i]))
            continue;
        const std::uint32_t number = drawing.padSymbol(feature);
        if (number >= m_symbolNames.size())
            m_symbolNames.resize(m_symbols.size());
        const DrawnSymbol &drawn = m_symbols[number];
        if (drawn.polygons.empty() || !m_symbolNames[number].empty())
            continue;
        m_symbolNames[number] = uniqueName(gdsii::legalName(m_image.symbols[drawn.symbol].name));
        m_records.beginStructure(m_symbolNames[number], m_date);
        for (const GridRing &polygon : drawn.polygons)
            boundary(polygon);
        m_records.endStructure();
    }
}

void Writer::writeFeatures(const FeatureSet &features, FeatureDrawing &drawing,
                           const std::vector<bool> &isPainted)
{
    constexpr double walkShare = 0.2; // of the work of what is painted
    const auto count = static_cast<std::uint32_t>(features.order.size());
    const std::function<void(const GridRing &)> emit = [this](const GridRing &ring) { boundary(ring); };
    double paintedWork = 0.0;
    PaintedArea painted(drawing, mostCorners);
    std::vector<std::vector<GridPoint>> places(m_symbolNames.size());
    for (std::uint32_t i = 0; i < count; ++i) {
        const Feature &feature = features.order[i];
        const double work = workOf(features, feature);
        if (!isPainted.empty() && isPainted[i]) {
            painted.paint(i, feature.polarity, drawing.box(i), drawing.corners(i));
            paintedWork += work * (1.0 - walkShare);
            m_progress.advance(work * walkShare);
            continue;
        }
        if (feature.kind == FeatureKind::Pad)
            places[drawing.padSymbol(feature)].push_back(drawing.padPosition(feature));
        else if (feature.kind == FeatureKind::Surface)
            writeSurface(feature, drawing, work);
        else
            drawing.sweep(feature, emit);
        m_progress.advance(work);
    }
    painted.resolve(emit, [&](double share) { m_progress.report(paintedWork * share); });
    m_progress.advance(paintedWork);
    writePads(places);
}

void Writer::writeSurface(const Feature &feature, FeatureDrawing &drawing, double work)
{
    std::vector<GridRing> rings;
    drawing.surface(feature, rings);
    emitArea(
        std::move(rings), mostCorners, [this](const GridRing &ring) { boundary(ring); },
        [this, work](double share) { m_progress.report(work * share); });
}

// `places`: by drawn symbol.
void Writer::writePads(std::vector<std::vector<GridPoint>> &places)
{
    for (std::size_t number = 0; number < places.size(); ++number) {
        if (m_symbolNames[number].empty())
            continue;
        m_progress.report();
        for (const gdsii::Placement &group : gdsii::groupPlaces(std::move(places[number]))) {
            if (group.columns == 1 && group.rows == 1)
                m_records.reference(m_symbolNames[number], group.at);
            else
                m_records.array(m_symbolNames[number], group.at, group.columns, group.rows,
                                {group.columnStep, 0}, {0, group.rowStep});
        }
    }
}

void Writer::writeChildren(const StepImage &step, const Transform &map)
{
    for (const StepRepeat &repeat : step.repeats) {
        Transform child = placement(repeat).then(map);
        child.offset = {};
        writeCopies(repeat, map, m_steps[variantNumber(repeat.step, child)].name);
    }
}

// An array where its steps are whole database units, else copy by copy, so that none is off by more than
// rounding.
void Writer::writeCopies(const StepRepeat &repeat, const Transform &map, const std::string &name)
{
    constexpr std::uint32_t longest = 32767;
    const Grid &grid = m_symbols.grid();
    const Transform placed = placement(repeat).then(map);
    const Point column = map.linear({repeat.dx, 0.0});
    const Point row = map.linear({0.0, repeat.dy});
    const auto isWhole = [&grid](Point step) {
        const GridPoint rounded = grid.round(step);
        const double offX = std::fabs(static_cast<double>(rounded.x) * grid.unit() - step.x);
        const double offY = std::fabs(static_cast<double>(rounded.y) * grid.unit() - step.y);
        return std::max(offX, offY) < grid.unit() * 1e-5;
    };
    const bool isArray = isWhole(column) && isWhole(row) && repeat.nx <= longest && repeat.ny <= longest;
    if (isArray && repeat.nx * repeat.ny > 1) {
        m_records.array(name, grid.round(placed.offset), static_cast<int>(repeat.nx),
                        static_cast<int>(repeat.ny), grid.round(column), grid.round(row));
        return;
    }
    for (std::uint32_t j = 0; j < repeat.ny; ++j) {
        for (std::uint32_t i = 0; i < repeat.nx; ++i) {
            const Point at = placed.offset + column * static_cast<double>(i) + row * static_cast<double>(j);
            m_records.reference(name, grid.round(at));
        }
    }
}

void Writer::writeProfile()
{
    std::vector<GridRing> rings;
    contourRings(m_image.profile, m_map, m_symbols.grid(), rings);
    emitArea(
        std::move(rings), mostCorners,
        [this](const GridRing &ring) { m_records.boundary(ring, m_layer, profileType); }, [](double) {});
}

void Writer::writeNegative()
{
    constexpr double takingShare = 0.3; // of the work
    const double taking = workOf(m_image, m_image.top());
    const double resolving = (1.0 + taking) / takingShare - taking;
    m_progress.expect(taking + resolving);
    StoredPolygons polygons;
    const auto store = [&polygons](const GridRing &ring) { polygons.add(ring); };
    LayerArea area(m_symbols, m_map, m_options.resize, m_progress);
    area.polygons(store);
    const auto takenCount = static_cast<std::uint32_t>(polygons.size());
    emitArea(area.negativeBase(polygons.extent()), mostCorners, store,
             [this](double) { m_progress.report(); });

    PaintedArea painted(polygons, mostCorners);
    const auto paint = [&](std::uint32_t i, Polarity polarity) {
        if (i % 1024 == 0)
            m_progress.report();
        GridBox box;
        const GridRing ring = polygons.ring(i);
        box.add(ring);
        painted.paint(i, polarity, box, ring.size());
    };
    for (std::uint32_t i = takenCount; i < polygons.size(); ++i)
        paint(i, Polarity::Positive);
    for (std::uint32_t i = 0; i < takenCount; ++i)
        paint(i, Polarity::Negative);
    m_records.beginStructure(gdsii::legalName(m_image.top().name), m_date);
    painted.resolve([this](const GridRing &ring) { boundary(ring); },
                    [&](double share) { m_progress.report(resolving * share); });
    if (m_options.profileOnTop)
        writeProfile();
    m_records.endStructure();
}

} // namespace

} // namespace cam
