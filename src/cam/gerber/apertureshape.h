// The shapes of a Gerber file's apertures: standard ones and the primitives of macros, as contours.
#pragma once

#include "cam/gerber/gerberimage.h"
#include "cam/gerber/macro.h"

#include <string>

namespace cam {

// Puts shapes, part by part, into an image's pools. Lengths in nanometres, angles in degrees.
class ShapeBuilder
{
public:
    explicit ShapeBuilder(GerberImage &image);

    void beginPart(bool exposed);
    void circle(Point center, double diameter);
    // Straight sides, turned by `degrees` about the origin.
    void polygon(const std::vector<Point> &corners, double degrees = 0.0);
    void rectangle(Point center, double width, double height, double degrees = 0.0);
    void obround(double width, double height);
    void regularPolygon(Point center, double diameter, int corners, double degrees);
    // A line of `width` from `from` to `to`, its ends cut straight.
    void bar(Point from, Point to, double width, double degrees);
    // A ring without the two bars of width `gap` that cross in its middle; turned about the origin.
    void thermal(Point center, double outer, double inner, double gap, double degrees);
    // Rings of `thickness` inside each other, `gap` apart, and a cross, all about `center`; turned about the
    // origin.
    struct Moire
    {
        Point center;
        double outer = 0.0, thickness = 0.0, gap = 0.0; // `outer`: the diameter of the largest ring
        int mostRings = 0;
        double crossWidth = 0.0, crossLength = 0.0;
    };
    void moire(const Moire &form, double degrees);
    // What a disc covers on its way along an edge.
    void stroke(Point from, const Edge &edge, double diameter);
    // What a rectangle covers on its way along a line.
    void rectangleStroke(Point from, Point to, double width, double height);
    // `shape` of the image, mapped.
    void add(const GerberShape &shape, const Transform &map);

    // The shape of everything since the builder was made; its number.
    std::uint32_t finish();

    // A contour edge by edge, of a part that has been begun.
    ContourPool &contours() { return m_image.contours; }

private:
    void closePart();
    void ring(Point center, double outerRadius, double innerRadius);

    GerberImage &m_image;
    std::uint32_t m_firstPart;
    bool m_isInPart = false;
};

// Adds a primitive to the shape; `unit`: nanometres of its numbers. Throws FormatError.
void addPrimitive(ShapeBuilder &shape, const MacroPrimitive &primitive, double unit, const std::string &file);

} // namespace cam
