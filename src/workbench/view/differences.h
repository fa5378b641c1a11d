// Where files differ from their layers, over the layers: what is missing and what is too much filled in two
// colors, and each place marked, so that it is found from afar.
#pragma once

#include "drawing/layerscene.h"
#include "workbench/exportverifier.h"
#include "workbench/view/boardview.h"

#include <QColor>

#include <map>
#include <memory>
#include <optional>

class Differences : public BoardView::Overlay
{
public:
    // Of the file: what its layer has and it lacks, or the other way round. Marked with minus and plus.
    static QColor color(bool isMissing);

    void setProofs(const QVector<LayerProof> &proofs);
    // The layers that are seen, of `step` of the job in the folder `job`.
    struct Layer
    {
        QString name;
        std::shared_ptr<const drawing::LayerScene> scene;
    };
    void setLayers(const QString &job, const QString &step, const std::vector<Layer> &layers);

    // What is to be drawn above the layers.
    std::vector<drawing::ColoredScene> scenes() const;
    void paint(QPainter &painter, const BoardView &view) override;

    // Marks one place more than the others: the number `place` of a layer's.
    void choose(const QString &layer, int place);
    // The chosen place with some room around it, as the view draws its layer; nothing while that is not seen.
    std::optional<cam::Box> chosenBox() const;

private:
    // A layer that is seen and differs.
    struct Shown
    {
        const LayerProof *proof = nullptr;
        cam::Transform place; // from the file to what is drawn
        std::shared_ptr<const drawing::Scene> missing, extra;
    };

    QVector<LayerProof> m_proofs;
    std::vector<Shown> m_shown;
    QString m_chosenLayer;
    int m_chosenPlace = -1;
};
