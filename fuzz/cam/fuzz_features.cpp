// A features file: read it, and draw what was read, with and without growth. Whatever it holds may end in an
// exception and in nothing else.
#include "cam/base/error.h"
#include "cam/odb/featuresfile.h"
#include "cam/polygon/drawing.h"
#include "cam/polygon/surfacepolygons.h"

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

void draw(const LayerImage &image, double growth)
{
    DrawnSymbols symbols(image, Grid(1.0), 8000);
    const FeatureSet &features = image.top().features;
    FeatureDrawing drawing(symbols, features, Transform::rotation(30.0), growth);
    PaintedArea area(drawing, 8000);
    std::size_t corners = 0;
    for (std::uint32_t i = 0; i < features.order.size(); ++i) {
        corners += drawing.corners(i);
        if (corners > 5000) // the fuzzer has better things to do
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
        if (ofSurface < 2000)
            emitArea(
                std::move(rings), mostCorners, [](const GridRing &) {}, [](double) {});
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    try {
        const LayerImage image = read({reinterpret_cast<const char *>(data), size});
        draw(image, 0.0);
        draw(image, 5000.0);
    } catch (const std::exception &) {
        // What a fault is answered with.
    }
    return 0;
}
