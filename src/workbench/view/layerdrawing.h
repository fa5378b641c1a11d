// One layer as the view draws it: closed areas and the board's outline, in millimetres with y pointing up.
#pragma once

#include <QMetaType>
#include <QPolygonF>
#include <QRectF>
#include <QString>
#include <QVector>

#include <stdexcept>

struct LayerDrawing
{
    QVector<QPolygonF> areas;
    QVector<QPolygonF> outlines;
    QRectF bounds; // of both; null when there is nothing
};
Q_DECLARE_METATYPE(LayerDrawing)

// A GDSII file that cannot be read; the message names the file, the byte and what was expected.
class GdsError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// Reads the GDSII stream file `path` into a drawing of its top structures, with everything they refer to.
// Data type 1 is outline, every other is area. Throws GdsError.
LayerDrawing readGds(const QString &path);
