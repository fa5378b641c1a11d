// What a GDSII file holds: its structures, with the references between them kept. The reader (gdsreader.h)
// makes it; nothing in it comes from the library's own writer. Coordinates are the file's whole database
// units.
#pragma once

#include "cam/polygon/gridpolygon.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace cam {

// What an element is for: two numbers from 0 to 65535.
struct GdsLayer
{
    std::uint16_t layer = 0;
    std::uint16_t datatype = 0; // of a BOX its BOXTYPE, of a TEXT its TEXTTYPE
};

inline bool operator==(GdsLayer a, GdsLayer b)
{
    return a.layer == b.layer && a.datatype == b.datatype;
}

// A BOUNDARY or a BOX: `count` corners of the structure from `first` on, the first one not repeated. It may
// touch and cross itself: filled by winding number.
struct GdsBoundary
{
    GdsLayer on;
    std::uint32_t count = 0;
    std::size_t first = 0;
};

// A line of a width. Without one it covers nothing.
struct GdsPath
{
    enum class Ends : std::uint8_t { Flat, Round, HalfWidth, Given };
    GdsLayer on;
    Ends ends = Ends::Flat;
    std::int64_t width = 0;
    bool keepsWidth = false;                     // absolute: of structures that are not magnified only
    std::int64_t beginBeyond = 0, endBeyond = 0; // of ends that are given
    std::vector<GridPoint> points;               // two or more
};

struct GdsText
{
    GdsLayer on;
    GridPoint at;
    std::string text;
};

// `columns` times `rows` copies of a structure: each mirrored (y to -y), magnified, rotated, and moved to its
// place.
struct GdsReference
{
    std::size_t structure = 0; // index into GdsImage::structures
    bool mirror = false;
    double magnification = 1.0;
    double angle = 0.0; // degrees, counter-clockwise
    int columns = 1, rows = 1;
    GridPoint at;
    // Of an array: where the copy behind the last column, and that behind the last row, would be.
    GridPoint columnsEnd, rowsEnd;

    // The map of the copy in `column` and `row`, from the structure's coordinates to those around it.
    Transform placement(int column, int row) const;
};

struct GdsStructure
{
    std::string name;
    std::vector<GridPoint> corners; // of the boundaries
    std::vector<GdsBoundary> boundaries;
    std::vector<GdsPath> paths;
    std::vector<GdsText> texts;
    std::vector<GdsReference> references;
    // Boundaries and paths, those of the references included. Not exact beyond 2^53.
    double shapesInAll = 0.0;
};

struct GdsImage
{
    int version = 0;
    std::string library;
    double unit = 0.0; // of the database, in nanometres
    std::vector<GdsStructure> structures;
    std::vector<std::size_t> tops; // the structures that no other refers to, in the file's order
};

// The outline of a path, in database units: filled by winding number. Corners are mitred; those that turn by
// more than a right angle are cut off half a width beyond their point. Round ends keep within a hundredth of
// the width, and within half a unit where that is more. Empty where the path covers nothing.
std::vector<Point> outline(const GdsPath &path);

// A boundary or a path where it comes to lie.
struct GdsShape
{
    GdsLayer on;
    bool isLine = false; // a path without width: its points; else closed and filled by winding number
    std::vector<Point> corners;
};

// Hands over each boundary and each path below `structure`, its corners mapped by `map`. The order is the
// file's. Nothing is limited: GdsStructure::shapesInAll says how many there are.
void placeShapes(const GdsImage &image, std::size_t structure, const Transform &map,
                 const std::function<void(const GdsShape &)> &take);

} // namespace cam
