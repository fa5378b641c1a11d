// Puts a layer's image together: the step's own file, the steps below it, and every symbol that they name.
#include "cam/odb/job.h"

#include "cam/base/error.h"
#include "cam/base/numbers.h"
#include "cam/base/paths.h"
#include "cam/odb/featuresfile.h"
#include "cam/odb/stepheader.h"
#include "cam/odb/structuredtext.h"
#include "cam/odb/textfile.h"
#include "cam/odb/tools.h"

#include <algorithm>
#include <numeric>
#include <set>

namespace cam {

namespace fs = std::filesystem;

namespace {

// "folder/name" with both looked up without regard to case; nothing when there is none.
std::optional<fs::path> findFolder(const fs::path &parent, std::string_view folder, std::string_view name)
{
    const auto outer = findEntry(parent, folder);
    return outer ? findEntry(*outer, name) : std::nullopt;
}

// Copies of copies are soon more than any disk holds. Panels of a million features have a hundredth of it.
constexpr double mostFigures = 1e8;

class LayerReader
{
public:
    // `unit` holds in files that state none.
    LayerReader(const fs::path &job, const MatrixLayer &layer, LengthUnit unit, ReadingNotes &notes,
                const std::function<void(double)> &report)
        : m_job(job), m_layer(layer), m_unit(unit), m_notes(notes), m_report(report)
    {
        m_image.layer = lowerCase(layer.name);
    }

    LayerImage read(const std::string &step);

private:
    std::uint32_t readStep(const std::string &name, bool isTop);
    FeatureSet readStepFeatures(const fs::path &stepFolder);
    void readTools(const fs::path &layerFolder);
    void noteEmptiness();
    std::uint32_t symbolIndex(std::string_view name, SymbolUnit unit);
    void noteReading(const StandardSymbol &symbol, const std::string &name);
    std::unique_ptr<FeatureSet> readOwnSymbol(const std::string &name);
    const Font &font(std::string_view name);
    FeatureSet takeFeatures(FeaturesFile &&file);
    FeaturesContext context();
    double figuresOf(const FeatureSet &features) const;
    void refuseTooMany(double figures, const std::string &what) const;

    const fs::path &m_job;
    const MatrixLayer &m_layer;
    LengthUnit m_unit;
    ReadingNotes &m_notes;
    const std::function<void(double)> &m_report;
    double m_furthest = 0.0; // what was reported last
    LayerImage m_image;
    std::map<std::pair<std::string, SymbolUnit>, std::uint32_t> m_symbols;
    std::map<std::string, std::uint32_t> m_steps;
    // How many figures each of the image's symbols and steps draws, with what is nested in it.
    std::vector<double> m_symbolFigures, m_stepFigures;
    std::vector<std::string> m_openSteps; // from the exported step down to the one being read
    ToolKinds m_tools;                    // of all of the steps
    std::size_t m_layerFolders = 0;       // in how many of the steps
    std::size_t m_foldersWithoutFeatures = 0;
    std::set<std::string> m_openSymbols;
    std::map<std::string, Font, std::less<>> m_fonts;
};

LayerImage LayerReader::read(const std::string &step)
{
    readStep(lowerCase(step), true);
    noteEmptiness();
    m_image.plating = platingOf(m_tools, m_layer.addType);
    m_report(1.0);
    return std::move(m_image);
}

FeaturesContext LayerReader::context()
{
    FeaturesContext context;
    context.symbolIndex = [this](std::string_view name, SymbolUnit unit) { return symbolIndex(name, unit); };
    context.font = [this](std::string_view name) -> const Font & { return font(name); };
    context.report = [this](double share) { // each nested step is read from 0 to 1
        m_furthest = std::max(m_furthest, share);
        m_report(m_furthest);
    };
    return context;
}

FeatureSet LayerReader::takeFeatures(FeaturesFile &&file)
{
    for (const auto &[name, count] : file.unsupported)
        m_notes.unsupported[name] += count;
    for (const auto &[name, count] : file.simplified)
        m_notes.simplified[name] += count;
    for (const auto &[name, count] : file.readings)
        m_notes.readings[name] += count;
    return std::move(file.features);
}

// Children are read, and stand in the image, before their parents.
std::uint32_t LayerReader::readStep(const std::string &name, bool isTop)
{
    if (const auto known = m_steps.find(name); known != m_steps.end())
        return known->second;
    if (std::find(m_openSteps.begin(), m_openSteps.end(), name) != m_openSteps.end())
        throw Error(m_job.u8string() + ": the step " + name + " repeats itself");
    const auto folder = findFolder(m_job, "steps", name);
    if (!folder)
        throw Error(m_job.u8string() + ": expected a step " + name);

    m_openSteps.push_back(name);
    StepImage step;
    step.name = name;
    double figures = 0.0;
    StepHeader header;
    if (TextFile::exists(*folder, "stephdr")) {
        const TextFile file(*folder, "stephdr");
        header = parseStepHeader(file.text(), file.name(), m_unit);
    }
    for (const StepHeaderRepeat &repeat : header.repeats) {
        StepRepeat placed;
        placed.step = readStep(repeat.step, false);
        placed.at = repeat.at;
        placed.angle = repeat.angle;
        placed.mirror = repeat.mirror;
        placed.nx = static_cast<std::uint32_t>(repeat.nx);
        placed.ny = static_cast<std::uint32_t>(repeat.ny);
        placed.dx = repeat.dx;
        placed.dy = repeat.dy;
        placed.childDatum = m_image.steps[placed.step].datum;
        step.repeats.push_back(placed);
        figures += static_cast<double>(placed.nx) * placed.ny * std::max(1.0, m_stepFigures[placed.step]);
    }
    step.datum = header.datum;
    step.features = readStepFeatures(*folder);
    figures += figuresOf(step.features);
    refuseTooMany(figures, "step " + name);
    if (isTop) {
        m_image.datum = header.datum;
        if (TextFile::exists(*folder, "profile")) {
            const TextFile file(*folder, "profile");
            m_image.profile = readContours(file.text(), file.name(), m_unit);
        }
    }
    m_openSteps.pop_back();
    const auto index = static_cast<std::uint32_t>(m_image.steps.size());
    m_image.steps.push_back(std::move(step));
    m_stepFigures.push_back(figures);
    m_steps.emplace(name, index);
    return index;
}

double LayerReader::figuresOf(const FeatureSet &features) const
{
    const auto add = [this](double sum, const auto &drawn) {
        return sum + std::max(1.0, m_symbolFigures[drawn.symbol]);
    };
    const double lines = std::accumulate(features.lines.begin(), features.lines.end(), 0.0, add);
    const double arcs = std::accumulate(features.arcs.begin(), features.arcs.end(), lines, add);
    const double pads = std::accumulate(features.pads.begin(), features.pads.end(), arcs, add);
    return pads + static_cast<double>(features.surfaces.size());
}

void LayerReader::refuseTooMany(double figures, const std::string &what) const
{
    if (figures > mostFigures)
        throw Error(m_job.u8string() + ": the " + what +
                    " draws more than 100 million figures, with its copies of others");
}

// A step need not have the layer: what a panel shows is often only in its boards. But a layer's folder that
// has lost its features must not come out as an empty layer.
FeatureSet LayerReader::readStepFeatures(const fs::path &stepFolder)
{
    const auto folder = findFolder(stepFolder, "layers", m_image.layer);
    if (!folder)
        return {};
    ++m_layerFolders;
    if (m_layer.isDrilled())
        readTools(*folder);
    if (!TextFile::exists(*folder, "features") && !m_layer.hasFeatures()) {
        ++m_foldersWithoutFeatures;
        return {};
    }
    LineFile file(*folder, "features");
    return takeFeatures(readFeatures(file.lines(), file.name(), context(), m_unit));
}

// The holes are drawn without it: a damaged one costs what a file says about them, not the layer.
void LayerReader::readTools(const fs::path &layerFolder)
{
    if (!TextFile::exists(layerFolder, "tools"))
        return;
    try {
        const TextFile file(layerFolder, "tools");
        const ToolKinds kinds = parseTools(file.text(), file.name());
        m_tools.plated |= kinds.plated;
        m_tools.nonPlated |= kinds.nonPlated;
        m_tools.unclear |= kinds.unclear;
    } catch (const Error &failure) {
        m_tools.unclear = true;
        ++m_notes.readings[std::string("how its holes are plated is not known: ") + failure.what()];
    }
}

void LayerReader::noteEmptiness()
{
    if (m_layerFolders == 0)
        ++(m_layer.hasFeatures() ? m_notes.readings
                                 : m_notes.expected)["no step has a folder for it, it is empty"];
    else if (m_foldersWithoutFeatures == m_layerFolders)
        ++m_notes.expected["it has no features file, it is empty as layers of its type may be"];
}

// A standard name always means the standard symbol; the job's own symbols are looked for behind it. Only a
// name with a suffix, or one that as a standard one would draw nothing, may well be the job's own.
std::uint32_t LayerReader::symbolIndex(std::string_view name, SymbolUnit unit)
{
    const std::pair<std::string, SymbolUnit> key(name, unit);
    if (const auto known = m_symbols.find(key); known != m_symbols.end())
        return known->second;

    Symbol symbol;
    symbol.name = key.first;
    symbol.unit = unit;
    try {
        symbol.standard = parseStandardSymbol(name, unit);
    } catch (const SymbolError &) {
        symbol.features = readOwnSymbol(key.first);
        if (!symbol.features)
            throw;
    }
    if (symbol.standard && (symbol.standard->hasNoSize || symbol.standard->hasAngle)) {
        symbol.features = readOwnSymbol(key.first);
        if (symbol.features)
            symbol.standard.reset();
    }
    if (symbol.standard)
        noteReading(*symbol.standard, key.first);
    m_symbolFigures.push_back(symbol.features ? figuresOf(*symbol.features) : 1.0);
    refuseTooMany(m_symbolFigures.back(), "symbol " + key.first);
    const auto index = static_cast<std::uint32_t>(m_image.symbols.size());
    m_image.symbols.push_back(std::move(symbol));
    m_symbols.emplace(key, index);
    return index;
}

void LayerReader::noteReading(const StandardSymbol &symbol, const std::string &name)
{
    if (symbol.hasNoSize)
        ++m_notes.readings["symbol " + name + ": a size is not positive, it draws nothing"];
    if (symbol.hasAngle)
        ++m_notes.readings["angles behind the names of symbols: counter-clockwise"];
    if (isStencilSymbol(symbol))
        ++m_notes.readings
              ["symbols for solder stencils: drawn as the CAM library's documentation reads their names"];
}

// Null when the job has none of that name.
std::unique_ptr<FeatureSet> LayerReader::readOwnSymbol(const std::string &name)
{
    const auto folder = findFolder(m_job, "symbols", name);
    if (!folder || !TextFile::exists(*folder, "features"))
        return nullptr;
    if (!m_openSymbols.insert(name).second)
        throw Error(folder->u8string() + ": the symbol " + name + " is drawn with itself");
    const TextFile file(*folder, "features");
    FeaturesContext context = this->context();
    context.report = [](double) {};
    auto features =
        std::make_unique<FeatureSet>(takeFeatures(readFeatures(file.text(), file.name(), context, m_unit)));
    m_openSymbols.erase(name);
    return features;
}

const Font &LayerReader::font(std::string_view name)
{
    if (const auto known = m_fonts.find(name); known != m_fonts.end())
        return known->second;
    const auto folder = findEntry(m_job, "fonts");
    if (!folder)
        throw Error(m_job.u8string() + ": expected a folder fonts");
    // Some fonts are kept with the ending that they have elsewhere.
    const std::string withEnding = std::string(name) + ".fnt";
    const bool hasEnding = !TextFile::exists(*folder, name) && TextFile::exists(*folder, withEnding);
    const TextFile file(*folder, hasEnding ? withEnding : name);
    return m_fonts.emplace(std::string(name), parseFont(file.text(), file.name())).first->second;
}

// The copper layers between which the holes lie. START_NAME and END_NAME may stand in either order, and may
// name a layer that is no copper: it stands for the copper next to it, towards the other end. Without names
// the holes go through the board.
void describeSpan(LayerImage &image, const Matrix &matrix, const MatrixLayer &drill)
{
    const MatrixLayer *first = &matrix.layers.front(), *last = &matrix.layers.back();
    if (!drill.startName.empty())
        first = matrix.find(drill.startName);
    if (!drill.endName.empty())
        last = matrix.find(drill.endName);
    if (!first || !last)
        return;
    if (last < first)
        std::swap(first, last);
    int rank = 0, firstCopper = 0, lastCopper = 0;
    for (const MatrixLayer &layer : matrix.layers) {
        if (!layer.isCopper())
            continue;
        ++rank;
        if (&layer >= first && firstCopper == 0)
            firstCopper = rank;
        if (&layer <= last)
            lastCopper = rank;
    }
    if (firstCopper > 0 && firstCopper <= lastCopper) {
        image.firstCopper = firstCopper;
        image.lastCopper = lastCopper;
    }
}

// What a writer says about the layer in its file.
void describe(LayerImage &image, const Matrix &matrix, const MatrixLayer &layer)
{
    image.context = layer.context;
    image.type = layer.type;
    image.polarity = layer.polarity == "NEGATIVE" ? Polarity::Negative : Polarity::Positive;
    image.row = layer.row;
    image.aboveCopper = layer.isBoard();
    for (const MatrixLayer &other : matrix.layers) {
        if (!other.isCopper())
            continue;
        ++image.copperCount;
        if (&other == &layer)
            image.copperRank = image.copperCount;
        if (other.row < layer.row || &other == &layer)
            image.aboveCopper = false;
    }
    if (layer.isDrilled())
        describeSpan(image, matrix, layer);
}

// misc/info; empty where the job has none.
StructuredText readInfo(const fs::path &job)
{
    const auto folder = findEntry(job, "misc");
    if (!folder || !TextFile::exists(*folder, "info"))
        return {};
    const TextFile file(*folder, "info");
    return parseStructuredText(file.text(), file.name());
}

// SAVE_DATE, or CREATION_DATE, as "yyyymmdd.hhmmss"; a date of another form counts as none.
void readSaveDate(const StructuredText &info, std::int16_t (&saved)[6])
{
    const std::string date = info.top.value("SAVE_DATE", info.top.value("CREATION_DATE"));
    constexpr std::string_view form = "yyyymmdd.hhmmss";
    if (date.size() != form.size() || date[8] != '.')
        return;
    constexpr std::size_t starts[] = {0, 4, 6, 9, 11, 13};
    std::int16_t fields[6] = {};
    for (int i = 0; i < 6; ++i) {
        const auto field = toInteger(std::string_view(date).substr(starts[i], i == 0 ? 4 : 2));
        if (!field)
            return;
        fields[i] = static_cast<std::int16_t>(*field);
    }
    std::copy(std::begin(fields), std::end(fields), std::begin(saved));
}

fs::path matrixFolder(const fs::path &job)
{
    const auto folder = findEntry(job, "matrix");
    if (!folder)
        throw Error(job.u8string() + ": expected a folder matrix");
    return *folder;
}

} // namespace

Job::Job(fs::path folder) : m_folder(std::move(folder)), m_name(lowerCase(m_folder.filename().u8string()))
{
    const TextFile file(matrixFolder(m_folder), "matrix");
    m_matrix = parseMatrix(file.text(), file.name());
}

LayerImage Job::readLayer(const std::string &step, const std::string &layer, ReadingNotes &notes,
                          const std::function<void(double)> &report) const
{
    const MatrixLayer *row = m_matrix.find(layer);
    if (!row)
        throw Error(m_folder.u8string() + ": expected a layer " + lowerCase(layer) + " in the matrix");
    const StructuredText info = readInfo(m_folder);
    const LengthUnit unit = info.units().value_or(LengthUnit::Inch);
    LayerImage image = LayerReader(m_folder, *row, unit, notes, report).read(step);
    image.job = m_name;
    describe(image, m_matrix, *row);
    readSaveDate(info, image.saved);
    return image;
}

LayerImage Job::readSteps(const std::string &step) const
{
    const MatrixLayer none; // no folder has its name
    ReadingNotes notes;
    const std::function<void(double)> report = [](double) {};
    LayerImage image = LayerReader(m_folder, none, defaultUnit(), notes, report).read(step);
    image.job = m_name;
    return image;
}

LengthUnit Job::defaultUnit() const
{
    return readInfo(m_folder).units().value_or(LengthUnit::Inch);
}

} // namespace cam
