// The steps of a layer, walked with everything that is nested in them.
#pragma once

#include "cam/model/layerimage.h"

#include <functional>

namespace cam {

// Which copies of a repeated step a walk goes to.
enum class Copies : std::uint8_t { All, First };

// `step` is an index into LayerImage::steps; `place` maps the step's coordinates to the exported step's.
using StepVisit = std::function<void(std::uint32_t step, const Transform &place)>;
// `place` is that of the step in which `repeat` stands. True when the visit has dealt with all copies: the
// walk then leaves them out.
using RepeatVisit = std::function<bool(const StepRepeat &repeat, const Transform &place)>;

// Calls `visit` with the exported step and with every step nested in it, parents before children, copies row
// by row. `visitRepeat`, where given, is asked before each repeat. What they throw passes through.
void forEachStep(const LayerImage &image, Copies copies, const StepVisit &visit,
                 const RepeatVisit &visitRepeat = {});

} // namespace cam
