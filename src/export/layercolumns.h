// The columns of the layer table, in their order.
#pragma once

namespace layer_column {

enum Column {
    Check,  // the check state, a boolean in the item's display and edit value
    Layer,  // the layer's name
    Rotate, // cell widget: combo box
    Mirror, // cell widget: combo box
    XScale,
    YScale,
    Negate, // cell widget: combo box
    Time,   // cell widget after a run: progress bar and seconds
    Count
};

} // namespace layer_column
