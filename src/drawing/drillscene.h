// What a drill file makes, drawn: holes and paths as wide as their tools.
#pragma once

#include "cam/excellon/drillimage.h"
#include "drawing/figure.h"
#include "drawing/layerscene.h"

#include <vector>

namespace drawing {

class DrillScene : public FigureScene
{
public:
    // `report` as of a LayerScene.
    explicit DrillScene(
        const cam::DrillImage &image, const std::function<void(double)> &report = [](double) {});

    cam::Box extent() const override { return m_layer.extent(); }
    void draw(Canvas &canvas, const cam::Transform &toSamples, const DrawMode &mode) const override
    {
        m_layer.draw(canvas, toSamples, mode);
    }
    void findFigures(const cam::Box &box, const FigureVisit &visit) const override;

private:
    LayerScene m_layer;
    std::vector<cam::DrillTool> m_tools;
    std::vector<cam::DrillImage::Work> m_works;
};

} // namespace drawing
