// What a click on a feature shows: its kind, symbol, place, polarity and more, and its outline in the view.
#pragma once

#include "drawing/snapping.h"
#include "workbench/view/boardview.h"

#include <QCoreApplication>
#include <QStringList>

#include <memory>
#include <optional>

// A feature in words, a fact a line.
QStringList describeFeature(const drawing::LayerScene &scene, const drawing::FoundFeature &feature,
                            LengthUnit unit);

class Inspection : public BoardView::Overlay
{
    Q_DECLARE_TR_FUNCTIONS(Inspection)

public:
    struct Layer
    {
        QString name;
        std::shared_ptr<const drawing::LayerScene> scene;
    };
    // The layers that are seen, the uppermost first.
    void setLayers(const std::vector<Layer> &layers);

    // Looks for features at `place`; another press at the same place goes to the next one beneath. False when
    // there is none.
    bool press(cam::Point place, double reach);
    // False when nothing was shown.
    bool clear();

    // What is shown, in words; empty when nothing is.
    QStringList text(LengthUnit unit) const;
    void paint(QPainter &painter, const BoardView &view) override;

private:
    struct Hit
    {
        Layer layer;
        drawing::FoundFeature feature;
    };

    std::vector<Layer> m_layers;
    std::vector<Hit> m_hits;
    std::size_t m_current = 0;
    cam::Point m_place;
};
