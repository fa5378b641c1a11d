// Matrix words to the vocabulary of the Gerber format.
#include "host/cam/gerber/fileattributes.h"

#include <algorithm>

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

std::string drillFunction(const LayerImage &image)
{
    const bool isUnplated =
        image.layer.find("non") != std::string::npos || image.layer.find("npt") != std::string::npos;
    const std::string span = "1," + std::to_string(std::max(1, image.copperCount));
    return isUnplated ? "NonPlated," + span + ",NPTH,Drill" : "Plated," + span + ",PTH,Drill";
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
        if (image.type == "DRILL")
            return drillFunction(image);
    }
    return "Other," + field(image.layer);
}

} // namespace

std::vector<std::string> fileAttributes(const LayerImage &image, bool negative)
{
    const bool isNegative = (image.polarity == Polarity::Negative) != negative;
    const bool isPanel = !image.top().repeats.empty();
    return {"TF.GenerationSoftware,File_Process,ORVEX_API,1.0", "TF.FileFunction," + function(image),
            std::string("TF.FilePolarity,") + (isNegative ? "Negative" : "Positive"),
            std::string("TF.Part,") + (isPanel ? "Array" : "Single")};
}

} // namespace cam
