// Points, boxes and affine maps of the geometry model. All lengths are nanometres held in doubles: they are
// exact to far below a nanometre over metres, and are rounded only once, by the writer that puts them into a
// file.
#pragma once

#include <algorithm>
#include <array>
#include <limits>

namespace cam {

struct Point
{
    double x = 0.0; // nanometres, to the right
    double y = 0.0; // nanometres, upwards
};

inline Point operator+(Point a, Point b)
{
    return {a.x + b.x, a.y + b.y};
}
inline Point operator-(Point a, Point b)
{
    return {a.x - b.x, a.y - b.y};
}
inline Point operator-(Point a)
{
    return {-a.x, -a.y};
}
inline Point operator*(Point a, double factor)
{
    return {a.x * factor, a.y * factor};
}
inline bool operator==(Point a, Point b)
{
    return a.x == b.x && a.y == b.y;
}
inline bool operator!=(Point a, Point b)
{
    return !(a == b);
}
inline double dot(Point a, Point b)
{
    return a.x * b.x + a.y * b.y;
}
inline double cross(Point a, Point b)
{
    return a.x * b.y - a.y * b.x;
}
// Nanometres.
double length(Point a);
double distance(Point a, Point b);

// An axis-parallel box; empty until the first point is put into it.
struct Box
{
    Point low{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
    Point high{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

    bool isEmpty() const { return low.x > high.x || low.y > high.y; }
    void add(Point p)
    {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    void add(const Box &other)
    {
        if (!other.isEmpty()) {
            add(other.low);
            add(other.high);
        }
    }
    bool touches(const Box &other) const
    {
        return low.x <= other.high.x && other.low.x <= high.x && low.y <= other.high.y &&
               other.low.y <= high.y;
    }
};

// The affine map x' = xx*x + xy*y + offset.x, y' = yx*x + yy*y + offset.y.
struct Transform
{
    double xx = 1.0, xy = 0.0;
    double yx = 0.0, yy = 1.0;
    Point offset;

    static Transform translation(Point by) { return {1.0, 0.0, 0.0, 1.0, by}; }
    static Transform scaling(double x, double y) { return {x, 0.0, 0.0, y, {}}; }
    static Transform mirrorX() { return {-1.0, 0.0, 0.0, 1.0, {}}; } // x to -x
    // Counter-clockwise about the origin; exact for multiples of 90 degrees.
    static Transform rotation(double degrees);

    Point operator()(Point p) const { return linear(p) + offset; }
    // The map of a direction: without the offset.
    Point linear(Point v) const { return {xx * v.x + xy * v.y, yx * v.x + yy * v.y}; }
    // Applies *this first and `next` to its result.
    Transform then(const Transform &next) const;

    double determinant() const { return xx * yy - xy * yx; }
    // Whether clockwise becomes counter-clockwise.
    bool turnsOver() const { return determinant() < 0.0; }
    // Whether circles stay circles: the same scale in every direction.
    bool keepsCircles() const;
    // The scale of lengths, where keepsCircles().
    double scale() const;
};

// The linear part of a map as a key of tables: maps that differ in their offset, or in the sign of a zero,
// are equal.
class LinearPart
{
public:
    explicit LinearPart(const Transform &map)
        : m_entries{map.xx + 0.0, map.xy + 0.0, map.yx + 0.0, map.yy + 0.0}
    {
    }
    friend bool operator<(const LinearPart &a, const LinearPart &b) { return a.m_entries < b.m_entries; }

private:
    std::array<double, 4> m_entries; // -0.0 + 0.0 is 0.0
};

} // namespace cam
