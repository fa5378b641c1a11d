// A features file: read it, and draw what was read, with and without growth. Whatever it holds may end in an
// exception and in nothing else.
#include "cam/base/error.h"
#include "cam/odb/featuresfile.h"
#include "cam/polygon/drawing.h"
#include "cam/polygon/surfacepolygons.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

using namespace cam;

namespace {

const Font &smallFont()
{
    static const Font font =
        parseFont("XSIZE 0.3\nYSIZE 0.3\nOFFSET 0\nCHAR A\nLINE 0 0 0.1 0.2 P R 0.012\nECHAR\n", "font");
    return font;
}

LayerImage read(std::string_view text)
{
    LayerImage image;
    FeaturesContext context;
    context.symbolIndex = [&image](std::string_view name, SymbolUnit unit) {
        Symbol symbol;
        symbol.name = name;
        symbol.unit = unit;
        symbol.standard = parseStandardSymbol(name, unit);
        image.symbols.push_back(std::move(symbol));
        return static_cast<std::uint32_t>(image.symbols.size() - 1);
    };
    context.font = [](std::string_view) -> const Font & { return smallFont(); };
    image.steps.emplace_back();
    image.steps[0].features = readFeatures(text, "input", context).features;
    return image;
}

// The fuzzer learns from runs of milliseconds: what takes longer is more of the same.
bool isDrawnAtOnce(const LayerImage &image)
{
    const FeatureSet &features = image.top().features;
    return features.order.size() <= 32 && features.contours.edgeCount() <= 300 &&
           std::all_of(image.symbols.begin(), image.symbols.end(), [](const Symbol &symbol) {
               const StandardSymbol &standard = *symbol.standard;
               const double parts = standard.kind == SymbolKind::PadGrid ? standard.size[4] * standard.size[5]
                                    : standard.kind == SymbolKind::Moire ? standard.size[2]
                                                                         : 1.0;
               return parts <= 16.0;
           });
}

// Half of the side of a square that holds the layer, about.
double reachOf(const LayerImage &image)
{
    const FeatureSet &features = image.top().features;
    double reach = 1.0, largest = 0.0;
    const auto add = [&reach](Point p) { reach = std::max({reach, std::fabs(p.x), std::fabs(p.y)}); };
    for (const Line &line : features.lines) {
        add(line.start);
        add(line.end);
    }
    for (const Arc &arc : features.arcs) {
        add(arc.start);
        add(arc.end);
        add(arc.center);
    }
    for (const Pad &pad : features.pads) {
        add(pad.at);
        largest = std::max(largest, std::fabs(pad.growth));
    }
    for (std::size_t i = 0; i < features.contours.size(); ++i) {
        add(features.contours[i].start);
        for (const Edge &edge : features.contours[i]) {
            add(edge.end);
            add(edge.center);
        }
    }
    for (const Symbol &symbol : image.symbols)
        largest = std::max({largest, symbol.standard->size[0], symbol.standard->size[1]});
    return reach + largest;
}

// `growth`: of the layer's size. The layer is drawn small, so that circles have few corners.
void draw(const LayerImage &image, double growth)
{
    constexpr double drawnReach = 100e3; // nanometres
    const double reach = reachOf(image), scale = drawnReach / reach;
    DrawnSymbols symbols(image, Grid(1.0), 8000);
    const FeatureSet &features = image.top().features;
    FeatureDrawing drawing(symbols, features,
                           Transform::rotation(30.0).then(Transform::scaling(scale, scale)), growth * reach);
    PaintedArea area(drawing, 8000);
    std::size_t corners = 0;
    for (std::uint32_t i = 0; i < features.order.size(); ++i) {
        corners += drawing.corners(i);
        if (corners > 2000)
            break;
        area.paint(i, features.order[i].polarity, drawing.box(i), drawing.corners(i));
    }
    area.resolve([](const GridRing &) {}, [](double) {});

    // So few corners that every surface is cut.
    constexpr std::size_t mostCorners = 16;
    for (const Feature &feature : features.order) {
        if (feature.kind != FeatureKind::Surface)
            continue;
        std::vector<GridRing> rings;
        drawing.surface(feature, rings);
        std::size_t ofSurface = 0;
        for (const GridRing &ring : rings)
            ofSurface += ring.size();
        if (ofSurface < 500)
            emitArea(
                std::move(rings), mostCorners, [](const GridRing &) {}, [](double) {});
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    try {
        const LayerImage image = read({reinterpret_cast<const char *>(data), size});
        if (!isDrawnAtOnce(image))
            return 0;
        draw(image, 0.0);
        draw(image, 0.01);
    } catch (const std::exception &) {
        // What a fault is answered with.
    }
    return 0;
}
