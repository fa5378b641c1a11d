// Closed outlines made of straight and circular edges, many of them in one pool: a plane has a thousand
// contours and sixty thousand edges, and none of them costs an allocation of its own.
#pragma once

#include "cam/model/edgewalk.h"
#include "cam/model/point.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace cam {

enum class EdgeKind : std::uint8_t { Line, ArcClockwise, ArcCounterClockwise };

// An edge runs from the end of the edge before it (the first one from the contour's start) to `end`.
// An arc that ends where it starts is a full circle, never nothing.
struct Edge
{
    Point end;
    Point center; // of an arc; unused for a line
    EdgeKind kind = EdgeKind::Line;
};

// One contour of a pool. The last edge ends at `start`: the pool closes contours with a line where they are
// open.
struct ContourView
{
    Point start;
    const Edge *edges = nullptr;
    std::size_t edgeCount = 0;
    bool isHole = false;

    const Edge *begin() const { return edges; }
    const Edge *end() const { return edges + edgeCount; }
    // For loops of the form "for (const auto [from, edge] : contour.walk())".
    EdgeWalk<Point, Edge> walk() const { return {start, edges, edgeCount}; }
};

// Islands and holes in the order in which they were added; neither their order nor the direction in which
// they run means anything. Dark is what lies inside of more islands than holes: holes clear, islands in holes
// are dark again, islands that overlap unite.
class ContourPool
{
public:
    void begin(Point start, bool isHole);
    void lineTo(Point end) { m_edges.push_back({end, {}, EdgeKind::Line}); }
    void arcTo(Point end, Point center, bool clockwise)
    {
        m_edges.push_back({end, center, clockwise ? EdgeKind::ArcClockwise : EdgeKind::ArcCounterClockwise});
    }
    // Closes the contour that was begun last.
    void end();

    void addCircle(Point center, double radius, bool isHole);
    // A polygon of `count` corners.
    void addPolygon(const Point *corners, std::size_t count, bool isHole);
    // `contour`, mapped; `map` must keep circles when the contour has arcs.
    void add(const ContourView &contour, const Transform &map);

    std::size_t size() const { return m_headers.size(); }
    bool isEmpty() const { return m_headers.empty(); }
    ContourView operator[](std::size_t index) const;
    // The edges of all contours, in order.
    std::size_t edgeCount() const { return m_edges.size(); }
    void clear();

private:
    struct Header
    {
        Point start;
        std::size_t firstEdge;
        bool isHole;
    };
    std::vector<Header> m_headers;
    std::vector<Edge> m_edges;
};

// Degrees that an arc edge sweeps from `start`: positive counter-clockwise, 360 or -360 for a full circle.
double sweptDegrees(Point start, const Edge &arc);

// The exact area inside a contour in square nanometres, arcs included: positive when it runs
// counter-clockwise.
double signedArea(const ContourView &contour);

// The exact extent of a contour, arcs included.
Box extent(const ContourView &contour);

} // namespace cam
