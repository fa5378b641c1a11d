// Areas with holes that are drawn as they are: where a file differs from its layer.
#pragma once

#include "cam/polygon/gridpolygon.h"
#include "drawing/featureindex.h"
#include "drawing/scene.h"

#include <vector>

namespace drawing {

class AreaScene : public Scene
{
public:
    // `rings`: islands counter-clockwise, each followed by its holes. `place` maps them to what is drawn.
    AreaScene(const std::vector<cam::GridRing> &rings, const cam::Transform &place);

    cam::Box extent() const override { return m_index.extent(); }
    // What is thin or small is seen as well.
    void draw(Canvas &canvas, const cam::Transform &toSamples, const DrawMode &mode) const override;

private:
    struct Island
    {
        Rings rings; // nanometres, mapped
        cam::Box box;
        double area = 0.0; // square nanometres
    };
    void drawIsland(const Island &island, const cam::Transform &map, Canvas &canvas,
                    const DrawMode &mode) const;

    std::vector<Island> m_islands;
    FeatureIndex m_index;
};

} // namespace drawing
