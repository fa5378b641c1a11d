#include "cam/excellon/drillimage.h"

namespace cam {

LayerImage layerOf(const DrillImage &image)
{
    LayerImage layer;
    for (const DrillTool &tool : image.tools) {
        Symbol symbol;
        symbol.name = "T" + std::to_string(tool.number);
        symbol.standard.emplace();
        symbol.standard->kind = SymbolKind::Round;
        symbol.standard->size[0] = tool.diameter;
        layer.symbols.push_back(std::move(symbol));
    }
    layer.steps.emplace_back();
    layer.steps.back().features = image.features;
    return layer;
}

} // namespace cam
