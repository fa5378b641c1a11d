#include "drawing/figure.h"

#include "cam/model/winding.h"
#include "drawing/snapsearch.h"

#include <algorithm>

namespace drawing {

using cam::Point;

namespace {

double distanceToLine(const Figure &figure, Point at)
{
    double nearest = 1e300;
    Point from = figure.start;
    for (const cam::Edge &edge : figure.line) {
        nearest =
            std::min(nearest, edge.kind == cam::EdgeKind::Line ? cam::distanceToSegment(from, edge.end, at)
                                                               : cam::distanceToArc(from, edge, at));
        from = edge.end;
    }
    return std::max(0.0, nearest - figure.width / 2.0);
}

// 0 inside.
double distanceTo(const Figure &figure, Point at)
{
    if (figure.kind == Figure::Kind::Text)
        return cam::distance(figure.at, at);
    if (figure.outline.isEmpty())
        return distanceToLine(figure, at);
    if (covers(figure.outline, 0, figure.outline.size(), at))
        return 0.0;
    return distanceToContours(figure.outline, 0, figure.outline.size(), at);
}

} // namespace

void FigureScene::findTexts(const cam::Box & /*box*/, const TextVisit & /*visit*/) const {}

std::vector<Figure> figuresAt(const FigureScene &scene, Point at, double reach, std::size_t most)
{
    std::vector<Figure> found;
    scene.findFigures(boxAround(at, reach), [&](Figure &&figure) {
        if (distanceTo(figure, at) <= reach)
            found.push_back(std::move(figure));
        return true;
    });
    std::reverse(found.begin(), found.end());
    if (found.size() > most)
        found.resize(most);
    return found;
}

} // namespace drawing
