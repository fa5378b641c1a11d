// The names of the components that are seen, each within its outline, readable from whichever side.
#pragma once

#include "workbench/view/boardview.h"
#include "workbench/view/componentscene.h"

#include <QColor>

class ComponentNames : public BoardView::Overlay
{
public:
    struct Layer
    {
        std::shared_ptr<const ComponentScene> scene;
        QColor color;
    };
    void setLayers(const std::vector<Layer> &layers) { m_layers = layers; }
    void paint(QPainter &painter, const BoardView &view) override;

private:
    std::vector<Layer> m_layers;
};
