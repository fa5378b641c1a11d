// The sweep of a symbol along a line or an arc: what it covers on its way, as polygons. The polygons of one
// sweep may overlap; the sweep is their union.
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

// A symbol made ready to be swept along many features, never turned on the way.
class SweptSymbol
{
public:
    // `growth`: nanometres by which the symbol is resized, half to each side. `tolerance`: nanometres; see
    // arcTolerance. Throws SymbolError where the numbers of `symbol` make no shape.
    SweptSymbol(const StandardSymbol &symbol, double growth, double tolerance);
    // Of any shape: counter-clockwise polygons in nanometres, each of them dark.
    SweptSymbol(std::vector<std::vector<Point>> polygons, double tolerance);

    // Sweeps cover nothing: a round of diameter 0.
    bool isEmpty() const;

    // About how many corners its sweep along a line has.
    std::size_t corners() const;

    // Hands the polygons of one sweep to `sink`, in nanometres.
    void sweep(const Line &line, PolygonSink &sink);
    void sweep(const Arc &arc, PolygonSink &sink);

private:
    enum class Form { Round, Rectangle, Any };

    void makeRound(double radius);
    void addCap(Point at, Point direction);
    void sweepRound(Point start, Point end, PolygonSink &sink);
    void sweepRectangle(Point start, Point end, PolygonSink &sink);
    void sweepAny(Point start, Point end, PolygonSink &sink);
    void sweepRoundArc(const Arc &arc, PolygonSink &sink);
    void sweepSector(Point center, Point from, double degrees, PolygonSink &sink);
    void sweepSegment(Point start, Point end, PolygonSink &sink);

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
