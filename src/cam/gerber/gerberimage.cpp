// Points against shapes, and the search for contours that cross themselves.
#include "cam/gerber/gerberimage.h"

#include "cam/model/selfcrossing.h"
#include "cam/model/winding.h"

#include <algorithm>

namespace cam {

namespace {

bool contains(const Box &box, Point at)
{
    return box.low.x <= at.x && at.x <= box.high.x && box.low.y <= at.y && at.y <= box.high.y;
}

} // namespace

bool GerberImage::covers(const GerberShape &shape, Point at) const
{
    if (!contains(shape.extent, at))
        return false;
    for (std::uint32_t part = shape.firstPart + shape.partCount; part-- > shape.firstPart;) {
        const GerberPart &contoursOf = parts[part];
        int winding = 0;
        for (std::uint32_t i = 0; i < contoursOf.contourCount; ++i)
            winding += windingNumber(contours[contoursOf.firstContour + i], at);
        if (winding != 0)
            return contoursOf.exposed;
    }
    return false;
}

bool GerberImage::isDark(Point at) const
{
    for (auto object = objects.rbegin(); object != objects.rend(); ++object) {
        if (covers(shapes[object->shape], at - object->at))
            return object->dark;
    }
    return false;
}

Box GerberImage::extent() const
{
    Box box;
    for (const GerberObject &object : objects) {
        const Box &shape = shapes[object.shape].extent;
        if (!shape.isEmpty()) {
            box.add(shape.low + object.at);
            box.add(shape.high + object.at);
        }
    }
    return box;
}

std::vector<std::size_t> crossingContours(const GerberImage &image, double tolerance)
{
    std::vector<char> crosses(image.shapes.size(), 0), isKnown(image.shapes.size(), 0);
    std::vector<std::size_t> lines;
    for (const GerberObject &object : image.objects) {
        // Strokes are this reader's own outlines.
        if (object.kind == GerberObjectKind::Stroke)
            continue;
        const GerberShape &shape = image.shapes[object.shape];
        if (!isKnown[object.shape]) {
            isKnown[object.shape] = 1;
            for (std::uint32_t part = 0; part < shape.partCount && !crosses[object.shape]; ++part) {
                const GerberPart &of = image.parts[shape.firstPart + part];
                for (std::uint32_t i = 0; i < of.contourCount && !crosses[object.shape]; ++i)
                    crosses[object.shape] = crossesItself(image.contours[of.firstContour + i], tolerance);
            }
        }
        if (crosses[object.shape] && (lines.empty() || lines.back() != object.line))
            lines.push_back(object.line);
    }
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    return lines;
}

} // namespace cam
