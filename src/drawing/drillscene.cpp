#include "drawing/drillscene.h"

namespace drawing {

DrillScene::DrillScene(const cam::DrillImage &image)
    : m_layer(std::make_shared<const cam::LayerImage>(cam::layerOf(image)), {})
{
}

} // namespace drawing
