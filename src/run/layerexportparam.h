// What one checked row of the layer table asks of the export of its layer.
#pragma once

struct LayerExportParam
{
    double angle = 0.0; // degrees
    bool isMirror = false;
    double xScale = 1.0;
    double yScale = 1.0;
    bool isNegate = false;
    double seconds = 0.0; // whole seconds that the export took, 0 until it has run
};
