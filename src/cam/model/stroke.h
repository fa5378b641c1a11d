// What a symbol covers when it is drawn along a line or an arc, as polygons. The polygons of one stroke may
// overlap; the stroke is their union.
#pragma once

#include "cam/model/featureset.h"
#include "cam/model/shape.h"
#include "cam/model/standardsymbol.h"

#include <vector>

namespace cam {

// Takes polygons: counter-clockwise, the first corner not repeated.
class PolygonSink
{
public:
    virtual ~PolygonSink() = default;
    virtual void polygon(const Point *corners, std::size_t count) = 0;
};

// A symbol made ready to be drawn along many features.
class Pen
{
public:
    // `growth`: nanometres by which the symbol grows, half to each side. `tolerance`: see arcTolerance.
    Pen(const StandardSymbol &symbol, double growth, double tolerance);
    // A pen of any shape: counter-clockwise polygons, each of them dark.
    Pen(std::vector<std::vector<Point>> polygons, double tolerance);

    // Nothing is drawn by it: a round of diameter 0.
    bool isEmpty() const;

    // About how many corners a line drawn with it has.
    std::size_t corners() const;

    void draw(const Line &line, PolygonSink &sink);
    void draw(const Arc &arc, PolygonSink &sink);

private:
    enum class Form { Round, Rectangle, Any };

    void makeRound(double radius);
    void addCap(Point at, Point direction);
    void drawRound(Point start, Point end, PolygonSink &sink);
    void drawRectangle(Point start, Point end, PolygonSink &sink);
    void drawAny(Point start, Point end, PolygonSink &sink);
    void drawRoundArc(const Arc &arc, PolygonSink &sink);
    void drawSector(Point center, Point from, double degrees, PolygonSink &sink);
    void drawSegment(Point start, Point end, PolygonSink &sink);

    Form m_form = Form::Any;
    double m_tolerance;
    double m_radius = 0.0;
    Point m_half; // of a rectangle: half its width and height
    // Of a round: unit vectors from -90 to 90 degrees, the ends included.
    std::vector<Point> m_cap;
    std::vector<std::vector<Point>> m_polygons;
    std::vector<Point> m_corners; // scratch
};

} // namespace cam
