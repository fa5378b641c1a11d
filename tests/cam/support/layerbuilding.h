// Small layers, built feature by feature, in micrometres.
#pragma once

#include "cam/model/layerimage.h"

#include <string>

namespace testing {

constexpr double micrometre = 1000.0; // nanometres

inline cam::Point at(double x, double y)
{
    return {x * micrometre, y * micrometre};
}

// A layer of one step, "pcb", to which the functions below add.
inline cam::LayerImage emptyLayer()
{
    cam::LayerImage image;
    image.job = "job";
    image.layer = "top";
    image.context = "BOARD";
    image.type = "SIGNAL";
    image.copperRank = 1;
    image.copperCount = 2;
    image.steps.emplace_back();
    image.steps.back().name = "pcb";
    return image;
}

// The number of the standard symbol `name`, sizes in micrometres; added when it is new.
inline std::uint32_t symbol(cam::LayerImage &image, const std::string &name)
{
    for (std::uint32_t i = 0; i < image.symbols.size(); ++i) {
        if (image.symbols[i].name == name)
            return i;
    }
    cam::Symbol added;
    added.name = name;
    added.unit = cam::SymbolUnit::Micrometres;
    added.standard = cam::parseStandardSymbol(name, added.unit);
    image.symbols.push_back(std::move(added));
    return static_cast<std::uint32_t>(image.symbols.size() - 1);
}

// A symbol of the job's own.
inline std::uint32_t ownSymbol(cam::LayerImage &image, const std::string &name, cam::FeatureSet features)
{
    cam::Symbol added;
    added.name = name;
    added.features = std::make_unique<cam::FeatureSet>(std::move(features));
    image.symbols.push_back(std::move(added));
    return static_cast<std::uint32_t>(image.symbols.size() - 1);
}

inline cam::Polarity polarity(bool positive)
{
    return positive ? cam::Polarity::Positive : cam::Polarity::Negative;
}

inline void addLine(cam::FeatureSet &set, std::uint32_t pen, cam::Point from, cam::Point to,
                    bool positive = true)
{
    set.add(cam::Line{from, to, pen}, polarity(positive));
}

inline void addPad(cam::FeatureSet &set, std::uint32_t shape, cam::Point where, bool positive = true,
                   double angle = 0.0, bool mirror = false, double growth = 0.0)
{
    cam::Pad pad;
    pad.at = where;
    pad.symbol = shape;
    pad.angle = angle;
    pad.mirror = mirror;
    pad.growth = growth;
    set.add(pad, polarity(positive));
}

// A rectangle, its corners counter-clockwise from the lower left.
inline void addRectangle(cam::ContourPool &pool, double x, double y, double width, double height,
                         bool isHole = false)
{
    const cam::Point corners[] = {at(x, y), at(x + width, y), at(x + width, y + height), at(x, y + height)};
    pool.addPolygon(corners, 4, isHole);
}

// The contours that were added to the set's pool since it held `first` of them, as one surface.
inline void addSurface(cam::FeatureSet &set, std::size_t first, bool positive = true)
{
    cam::Surface surface;
    surface.firstContour = static_cast<std::uint32_t>(first);
    surface.contourCount = static_cast<std::uint32_t>(set.contours.size() - first);
    set.add(surface, polarity(positive));
}

} // namespace testing
