// The outline of a feature in the view: how what is inspected or found is marked.
#pragma once

#include "drawing/snapping.h"
#include "workbench/view/boardview.h"

// The color of all marks.
QColor markColor();
// Draws the feature's outline, the middle of a line or an arc, with the painter's pen.
void paintFeature(QPainter &painter, const BoardView &view, const drawing::LayerScene &scene,
                  const drawing::FoundFeature &feature);
// The same for contours; `place` maps them to what is drawn.
void paintContours(QPainter &painter, const BoardView &view, const cam::ContourPool &contours,
                   const cam::Transform &place);
// A line in pixels of the screen.
void paintLine(QPainter &painter, const BoardView &view, const QPolygonF &shown);
// Holds what is drawn of the feature, in the view's coordinates.
cam::Box featureBox(const drawing::LayerScene &scene, const drawing::FoundFeature &feature);
