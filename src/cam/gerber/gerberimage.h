// What a Gerber file paints: the objects in the order in which they are painted, each with its true arcs. The
// reader (gerberreader.h) makes it; nothing in it comes from the library's own writer.
#pragma once

#include "cam/model/contour.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace cam {

// Contours that are filled by winding number, all of them together: a point is covered where their windings
// add up to anything but 0. (Contours of the pool may run in either direction; isHole is not used.)
struct GerberPart
{
    std::uint32_t firstContour = 0, contourCount = 0;
    // Whether the part is added to the shape, or taken out of what the parts before it have made of it.
    bool exposed = true;
};

// An aperture, a stroke or a region: parts firstPart ... firstPart + partCount - 1 of the image, in order.
struct GerberShape
{
    std::uint32_t firstPart = 0, partCount = 0;
    Box extent; // empty for what makes no image
};

enum class GerberObjectKind : std::uint8_t { Stroke, Flash, Region };

// What a stroke is drawn along, before it is moved by its object's `at`.
struct GerberStroke
{
    Point from;
    Edge edge;
    double width = 0.0; // nanometres; of a rectangle its shorter side
};

struct GerberAperture
{
    std::string shape;                // C, R, O, P or the name of a macro
    double width = 0.0, height = 0.0; // nanometres
};

// A shape, moved by `at`, painted dark or clear.
struct GerberObject
{
    std::uint32_t shape = 0;
    std::uint32_t stroke = 0; // index into the image's strokes, of a stroke
    int aperture = 0;         // D10 is 10; 0 for a region
    GerberObjectKind kind = GerberObjectKind::Stroke;
    bool dark = true;
    Point at;             // nanometres
    std::size_t line = 0; // of the file
};

// What a reader of the file may take otherwise than it was meant.
enum class GerberDoubt : std::uint8_t {
    OpenContour,          // a contour that does not end where it started: a straight line closes it
    UnevenArc,            // an arc whose ends lie at clearly different distances from its centre
    KeptModeBehindRegion, // a draw behind G37 whose mode (G01, G02, G03) was last stated before it: some
                          // readers go back to the mode that held before G36
    KeptModeInRegion,     // the same behind G36
    UnstatedMode,         // a draw before the first G01, G02 or G03: taken for a straight line
    UnstatedPosition,     // a draw or flash before both coordinates: 0 is taken for what is missing
};

struct GerberRemark
{
    GerberDoubt doubt = GerberDoubt::OpenContour;
    std::size_t line = 0;
};

struct GerberImage
{
    ContourPool contours;
    std::vector<GerberPart> parts;
    std::vector<GerberShape> shapes;
    std::vector<GerberStroke> strokes;
    std::vector<GerberObject> objects;
    std::map<int, GerberAperture> apertures; // by their numbers
    std::vector<GerberRemark> remarks;

    bool covers(const GerberShape &shape, Point at) const; // `at` in the shape's own coordinates
    // The colour of a point: that of the last object that covers it, clear without one.
    bool isDark(Point at) const;
    Box extent() const; // of all objects, dark and clear
};

// Objects with a contour that is not weakly simple (it crosses itself, or covers some place twice), so that
// filling by parity and filling by winding number differ, or may: their lines, in order, each once. Places
// that are thinner than `tolerance` nanometres do not count.
std::vector<std::size_t> crossingContours(const GerberImage &image, double tolerance = 50.0);

} // namespace cam
