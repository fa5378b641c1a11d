// The drawing of a GDSII file, from what the CAM library's reader finds in it.
#include "cam/gdsii/gdsreader.h"
#include "cam/base/error.h"
#include "workbench/view/layerdrawing.h"

namespace {

const int outlineDataType = 1;
const double mostAreas = 5e6; // a gigabyte of memory

} // namespace

LayerDrawing readGds(const QString &path)
{
    const std::string name = path.toStdString();
    const cam::GdsImage image = cam::readGdsFile(std::filesystem::u8path(name));
    const cam::Transform toMillimetres = cam::Transform::scaling(image.unit * 1e-6, image.unit * 1e-6);
    LayerDrawing drawing;
    const auto take = [&drawing](const cam::GdsShape &shape) {
        QPolygonF polygon;
        polygon.reserve(int(shape.corners.size()) + 1);
        for (const cam::Point corner : shape.corners)
            polygon << QPointF(corner.x, corner.y);
        if (!shape.isLine)
            polygon << polygon.first();
        const bool isOutline = shape.isLine || shape.on.datatype == outlineDataType;
        (isOutline ? drawing.outlines : drawing.areas) << polygon;
        drawing.bounds |= polygon.boundingRect();
    };
    double areas = 0.0;
    for (const std::size_t top : image.tops)
        areas += image.structures[top].shapesInAll;
    if (areas > mostAreas)
        throw cam::Error(name + ": expected at most " + std::to_string(int(mostAreas)) + " areas");
    for (const std::size_t top : image.tops)
        cam::placeShapes(image, top, toMillimetres, take);
    return drawing;
}
