// What a drill file makes, drawn: holes and paths as wide as their tools.
#pragma once

#include "cam/excellon/drillimage.h"
#include "drawing/layerscene.h"

#include <vector>

namespace drawing {

class DrillScene : public Scene
{
public:
    explicit DrillScene(const cam::DrillImage &image);

    cam::Box extent() const override { return m_layer.extent(); }
    void draw(Canvas &canvas, const cam::Transform &toSamples, const DrawMode &mode) const override
    {
        m_layer.draw(canvas, toSamples, mode);
    }

private:
    LayerScene m_layer;
};

} // namespace drawing
