// What a click on a figure of a file shows: what it is, its aperture, tool or width, its place, and its
// outline in the view.
#pragma once

#include "drawing/figure.h"
#include "workbench/view/boardview.h"

#include <QCoreApplication>
#include <QStringList>

#include <memory>

// A figure in words, a fact a line.
QStringList describeFigure(const drawing::Figure &figure, LengthUnit unit);

class FigureInspection : public BoardView::Overlay
{
    Q_DECLARE_TR_FUNCTIONS(FigureInspection)

public:
    struct Layer
    {
        QString name;
        std::shared_ptr<const drawing::FigureScene> scene;
    };
    // The rows of files that are seen, the uppermost first. What is shown stays while they are the same.
    void setLayers(const std::vector<Layer> &layers);

    // Looks for figures at `place`; another press at the same place goes to the next one beneath. False when
    // there is none, or none beneath.
    bool press(cam::Point place, double reach);
    // False when nothing was shown.
    bool clear();

    // What is shown, in words; empty when nothing is.
    QStringList text(LengthUnit unit) const;
    void paint(QPainter &painter, const BoardView &view) override;

private:
    struct Hit
    {
        QString layer;
        drawing::Figure figure;
    };

    std::vector<Layer> m_layers;
    std::vector<Hit> m_hits;
    std::size_t m_current = 0;
    cam::Point m_place;
};
