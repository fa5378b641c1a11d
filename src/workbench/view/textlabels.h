// The texts of GDSII files, each at its place in the color of its row, as many as there is room for.
#pragma once

#include "drawing/figure.h"
#include "workbench/view/boardview.h"

#include <QColor>

#include <memory>

class TextLabels : public BoardView::Overlay
{
public:
    struct Layer
    {
        std::shared_ptr<const drawing::FigureScene> scene;
        QColor color;
    };
    // The rows of files that are seen, the uppermost first: its texts have the room first.
    void setLayers(const std::vector<Layer> &layers) { m_layers = layers; }
    // The words of a file: UTF-8, or Latin-1 where it is none.
    static QString textOf(const std::string &words);
    void paint(QPainter &painter, const BoardView &view) override;

private:
    std::vector<Layer> m_layers;
};
