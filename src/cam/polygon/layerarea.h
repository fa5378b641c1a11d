// What the steps of a layer darken together, and the area that a negative export is taken from.
#pragma once

#include "cam/model/work.h"
#include "cam/polygon/drawing.h"

namespace cam {

// The image of the drawn symbols under one map.
class LayerArea
{
public:
    // `map`: from the exported step's coordinates to the output. `growth`: see ExportOptions::resize. What
    // `progress` throws on a cancel passes through all functions.
    LayerArea(DrawnSymbols &symbols, const Transform &map, double growth, WorkProgress &progress);

    // Hands over polygons without holes that cover what is dark, step by step; they may overlap. Advances the
    // progress by the work of all steps.
    void polygons(const std::function<void(const GridRing &)> &polygon);
    // A box around what is dark; empty when nothing is.
    GridBox extent();
    // A box around all features, dark and clear; it may be a little too large.
    GridBox reach();

    // What a negative is taken from: the profile's rings or, where the step has none, `extent`. Empty when
    // both are.
    std::vector<GridRing> negativeBase(const GridBox &extent) const;

private:
    GridBox extentOf(std::uint32_t step, const Transform &map);

    DrawnSymbols &m_symbols;
    const LayerImage &m_image;
    Transform m_map;
    double m_growth;
    WorkProgress &m_progress;
};

} // namespace cam
