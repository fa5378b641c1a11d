// Matrix words to the vocabulary of the Gerber format.
#include "cam/gerber/fileattributes.h"

#include "version.h"

namespace cam {

namespace {

std::string copperFunction(const LayerImage &image)
{
    const char *side = image.copperRank == 1 ? "Top" : image.copperRank == image.copperCount ? "Bot" : "Inr";
    return "Copper,L" + std::to_string(image.copperRank) + ',' + side;
}

// Attribute fields may hold neither the characters that end them nor control characters.
std::string field(std::string text)
{
    for (char &c : text) {
        if (c == ',' || c == '*' || c == '%' || c == '\\' || static_cast<unsigned char>(c) < ' ')
            c = '_';
    }
    return text;
}

// A hole of a round tool, which is drilled; everything else is routed.
bool isDrilled(const LayerImage &image, std::uint32_t symbol)
{
    const auto &standard = image.symbols[symbol].standard;
    return standard && (standard->kind == SymbolKind::Round || standard->kind == SymbolKind::Hole ||
                        standard->kind == SymbolKind::RoundDonut);
}

// The word for how the holes are made, by what the layer holds, else by its type.
const char *machining(const LayerImage &image)
{
    bool drilled = false, routed = false;
    for (const StepImage &step : image.steps) {
        for (const Pad &pad : step.features.pads)
            (isDrilled(image, pad.symbol) ? drilled : routed) = true;
        for (const Line &line : step.features.lines) {
            const bool isHole = line.start.x == line.end.x && line.start.y == line.end.y;
            (isHole && isDrilled(image, line.symbol) ? drilled : routed) = true;
        }
        routed = routed || !step.features.arcs.empty() || !step.features.surfaces.empty();
    }
    if (drilled && routed)
        return "Mixed";
    return routed || (!drilled && image.type == "ROUT") ? "Rout" : "Drill";
}

std::string drillFunction(const LayerImage &image)
{
    const bool isKnown = image.plating == Plating::Plated || image.plating == Plating::NonPlated;
    // The vocabulary has no word for holes of both kinds, nor for those of which nothing is known. To call
    // them plated, or not, would be a guess about somebody's board.
    if (image.plating == Plating::Mixed)
        return "Other," + field(image.layer) + " (plated and non-plated)";
    if (!isKnown || image.firstCopper == 0)
        return "Other," + field(image.layer);
    const bool isPlated = image.plating == Plating::Plated;
    const bool meetsTop = image.firstCopper == 1, meetsBottom = image.lastCopper == image.copperCount;
    std::string depth = isPlated ? "PTH" : "NPTH";
    if (!meetsTop || !meetsBottom)
        depth = meetsTop || meetsBottom ? "Blind" : "Buried";
    return std::string(isPlated ? "Plated," : "NonPlated,") + std::to_string(image.firstCopper) + ',' +
           std::to_string(image.lastCopper) + ',' + depth + ',' + machining(image);
}

std::string function(const LayerImage &image)
{
    const std::string side = image.aboveCopper ? ",Top" : ",Bot";
    if (image.context == "BOARD" && image.copperRank > 0)
        return copperFunction(image);
    if (image.context == "BOARD") {
        if (image.type == "SOLDER_MASK")
            return "Soldermask" + side;
        if (image.type == "SILK_SCREEN")
            return "Legend" + side;
        if (image.type == "SOLDER_PASTE")
            return "Paste" + side;
        if (image.type == "DRILL" || image.type == "ROUT")
            return drillFunction(image);
    }
    return "Other," + field(image.layer);
}

} // namespace

std::vector<std::string> fileAttributes(const LayerImage &image, bool negative)
{
    const bool isNegative = (image.polarity == Polarity::Negative) != negative;
    const bool isPanel = !image.top().repeats.empty();
    return {"TF.GenerationSoftware,File_Process,ORVEX_API," FILE_PROCESS_VERSION,
            "TF.FileFunction," + function(image),
            std::string("TF.FilePolarity,") + (isNegative ? "Negative" : "Positive"),
            std::string("TF.Part,") + (isPanel ? "Array" : "Single")};
}

} // namespace cam
