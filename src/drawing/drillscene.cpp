#include "drawing/drillscene.h"

namespace drawing {

DrillScene::DrillScene(const cam::DrillImage &image, const std::function<void(double)> &report)
    : m_layer(std::make_shared<const cam::LayerImage>(cam::layerOf(image)), {}, report), m_tools(image.tools),
      m_works(image.works)
{
}

void DrillScene::findFigures(const cam::Box &box, const FigureVisit &visit) const
{
    const cam::FeatureSet &features = m_layer.image().top().features;
    bool goesOn = true;
    m_layer.findFeatures(box, [&](std::uint32_t, std::uint32_t index, const cam::Transform &) {
        if (!goesOn)
            return;
        const cam::Feature &feature = features.order[index];
        Figure figure;
        std::uint32_t tool = 0;
        if (feature.kind == cam::FeatureKind::Pad) {
            const cam::Pad &pad = features.pads[feature.index];
            tool = pad.symbol;
            figure.at = pad.at;
            figure.outline.addCircle(pad.at, m_tools[tool].diameter / 2.0, false);
        } else if (feature.kind == cam::FeatureKind::Line) {
            const cam::Line &line = features.lines[feature.index];
            tool = line.symbol;
            figure.start = line.start;
            figure.line.push_back({line.end, {}, cam::EdgeKind::Line});
        } else {
            const cam::Arc &arc = features.arcs[feature.index];
            tool = arc.symbol;
            figure.start = arc.start;
            figure.line.push_back(
                {arc.end, arc.center,
                 arc.clockwise ? cam::EdgeKind::ArcClockwise : cam::EdgeKind::ArcCounterClockwise});
        }
        const cam::DrillMove move = m_works[index].move;
        figure.kind = move == cam::DrillMove::Hit    ? Figure::Kind::Hit
                      : move == cam::DrillMove::Slot ? Figure::Kind::Slot
                                                     : Figure::Kind::Rout;
        figure.width = m_tools[tool].diameter;
        figure.number = m_tools[tool].number;
        figure.plating = m_tools[tool].plating;
        figure.lineNumber = m_works[index].line;
        goesOn = visit(std::move(figure));
    });
}

} // namespace drawing
