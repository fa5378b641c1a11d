// One layer as the view draws it: closed areas and the board's outline, in millimetres with y pointing up.
#pragma once

#include <QMetaType>
#include <QPolygonF>
#include <QRectF>
#include <QString>
#include <QVector>

struct LayerDrawing
{
    QVector<QPolygonF> areas; // filled by winding number
    QVector<QPolygonF> outlines;
    QRectF bounds; // of both; null when there is nothing
};
Q_DECLARE_METATYPE(LayerDrawing)

// Reads the GDSII stream file `path` into a drawing of its top structures, with everything they refer to.
// Boundaries of data type 1 and paths without a width are outline, everything else is area. Throws cam::Error
// for what cannot be read, and for more than five million areas.
LayerDrawing readGds(const QString &path);
