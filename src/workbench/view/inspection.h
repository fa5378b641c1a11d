// What a click on a feature shows: its kind, symbol, place, polarity and more, and its outline in the view.
#pragma once

#include "workbench/view/componentscene.h"
#include "workbench/view/featurefacts.h"
#include "workbench/view/featureoutline.h"

#include <QCoreApplication>
#include <QStringList>

#include <memory>
#include <optional>

// A feature in words, a fact a line.
QStringList describeFeature(const drawing::LayerScene &scene, const drawing::FoundFeature &feature,
                            LengthUnit unit);

// The same for a component.
QStringList describeComponent(const ComponentScene &scene, std::uint32_t step,
                              const cam::Component &component, LengthUnit unit);

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
    // Of the step that the layers are of.
    void setSource(const std::shared_ptr<StepSource> &source);

    // Looks for features at `place`; another press at the same place goes to the next one beneath. False when
    // there is none.
    bool press(cam::Point place, double reach);
    // False when nothing was shown.
    bool clear();

    // What the job's files say besides comes later: while it is read, look() asks for it, and is true when
    // it has come.
    bool isReading() const { return m_facts.isReading(); }
    bool look() { return m_facts.look(); }

    // What is shown, in words; empty when nothing is.
    QStringList text(LengthUnit unit) const;
    void paint(QPainter &painter, const BoardView &view) override;

private:
    struct Hit
    {
        Layer layer;
        drawing::FoundFeature feature;
        const cam::Component *component = nullptr; // of which the feature is a part
    };

    void findIn(const Layer &layer, cam::Point place, double reach);
    void addHit(const Hit &hit);
    void askForFacts();

    std::shared_ptr<StepSource> m_source;
    FeatureFacts m_facts;
    std::vector<Layer> m_layers;
    std::vector<Hit> m_hits;
    std::size_t m_current = 0;
    cam::Point m_place;
};
