// Where the copies of structures lie, and what paths cover.
#include "cam/gdsii/gdsimage.h"

#include "cam/model/trigonometry.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace cam {

namespace {

Point leftOf(Point direction)
{
    return {-direction.y, direction.x};
}

// One side of a path, from its begin to its end; the other side is that of the path run backwards.
class Side
{
public:
    Side(const std::vector<Point> &spine, double half) : m_spine(spine), m_half(half)
    {
        for (std::size_t i = 0; i + 1 < spine.size(); ++i) {
            const Point along = spine[i + 1] - spine[i];
            m_directions.push_back(along * (1.0 / length(along)));
        }
    }

    // From beside the begin to beside the end, each moved outwards.
    void add(double beginBeyond, double endBeyond, std::vector<Point> &outline) const
    {
        const Point first = m_directions.front(), last = m_directions.back();
        outline.push_back(m_spine.front() - first * beginBeyond + leftOf(first) * m_half);
        for (std::size_t i = 1; i < m_directions.size(); ++i)
            addCorner(m_spine[i], m_directions[i - 1], m_directions[i], outline);
        outline.push_back(m_spine.back() + last * endBeyond + leftOf(last) * m_half);
    }

    // The half circle about the end, from the left to the right of it, without its ends.
    void addRoundEnd(std::vector<Point> &outline) const
    {
        const double tolerance = std::max(0.5, m_half * 0.02);
        const double step = m_half > tolerance ? 2.0 * std::acos(1.0 - tolerance / m_half) : pi;
        const int count = std::max(4, static_cast<int>(std::ceil(pi / step)));
        const Point along = m_directions.back(), left = leftOf(along);
        for (int i = 1; i < count; ++i) {
            const double angle = pi * i / count;
            outline.push_back(m_spine.back() + (left * std::cos(angle) + along * std::sin(angle)) * m_half);
        }
    }

private:
    void addCorner(Point at, Point in, Point out, std::vector<Point> &outline) const
    {
        const Point inLeft = leftOf(in), outLeft = leftOf(out);
        if (cross(in, out) > 0.0) { // the inner side: by way of the spine, so that no part winds backwards
            outline.push_back(at + inLeft * m_half);
            outline.push_back(at);
            outline.push_back(at + outLeft * m_half);
        } else if (dot(in, out) >= 0.0) {
            outline.push_back(at + (inLeft + outLeft) * (m_half / (1.0 + dot(inLeft, outLeft))));
        } else {
            outline.push_back(at + (inLeft + in) * m_half);
            outline.push_back(at + (outLeft - out) * m_half);
        }
    }

    const std::vector<Point> &m_spine;
    double m_half;
    std::vector<Point> m_directions;
};

} // namespace

Transform GdsReference::placement(int column, int row) const
{
    const double across = static_cast<double>(column) / columns, up = static_cast<double>(row) / rows;
    const Point origin = pointOf(at);
    Transform map = Transform::scaling(magnification, mirror ? -magnification : magnification)
                        .then(Transform::rotation(angle));
    map.offset = origin;
    if (columns > 1 || rows > 1)
        map.offset = map.offset + (pointOf(columnsEnd) - origin) * across + (pointOf(rowsEnd) - origin) * up;
    return map;
}

std::vector<Point> outline(const GdsPath &path)
{
    std::vector<Point> spine, outline;
    for (const GridPoint p : path.points) {
        if (spine.empty() || spine.back() != pointOf(p))
            spine.push_back(pointOf(p));
    }
    const double half = static_cast<double>(path.width) / 2.0;
    if (half <= 0.0 || spine.empty())
        return outline;
    const bool isDot = spine.size() == 1;
    if (isDot) // a direction, so that round and extended ends have one
        spine.push_back(spine[0] + Point{1e-3, 0.0});
    double begin = 0.0, end = 0.0;
    if (path.ends == GdsPath::Ends::HalfWidth)
        begin = end = half;
    else if (path.ends == GdsPath::Ends::Given) {
        begin = static_cast<double>(path.beginBeyond);
        end = static_cast<double>(path.endBeyond);
    }
    if (isDot && path.ends != GdsPath::Ends::Round && begin + end <= 0.0)
        return outline;
    std::vector<Point> backwards(spine.rbegin(), spine.rend());
    const Side left(spine, half), right(backwards, half);
    left.add(begin, end, outline);
    if (path.ends == GdsPath::Ends::Round)
        left.addRoundEnd(outline);
    right.add(end, begin, outline);
    if (path.ends == GdsPath::Ends::Round)
        right.addRoundEnd(outline);
    std::reverse(outline.begin(), outline.end());
    return outline;
}

void placeShapes(const GdsImage &image, std::size_t structure, const Transform &map,
                 const std::function<void(const GdsShape &)> &take)
{
    const GdsStructure &found = image.structures[structure];
    GdsShape shape;
    const auto hand = [&] {
        for (Point &corner : shape.corners)
            corner = map(corner);
        if (!shape.corners.empty())
            take(shape);
    };
    for (const GdsBoundary &boundary : found.boundaries) {
        shape.on = boundary.on;
        shape.corners.clear();
        for (std::size_t i = boundary.first; i < boundary.first + boundary.count; ++i)
            shape.corners.push_back(pointOf(found.corners[i]));
        hand();
    }
    for (const GdsPath &path : found.paths) {
        shape.on = path.on;
        shape.isLine = path.width == 0;
        shape.corners = outline(path);
        if (shape.isLine)
            std::transform(path.points.begin(), path.points.end(), std::back_inserter(shape.corners),
                           pointOf);
        hand();
    }
    for (const GdsReference &reference : found.references) {
        if (image.structures[reference.structure].shapesInAll == 0.0)
            continue;
        for (int row = 0; row < reference.rows; ++row) {
            for (int column = 0; column < reference.columns; ++column)
                placeShapes(image, reference.structure, reference.placement(column, row).then(map), take);
        }
    }
}

} // namespace cam
