// Boxes inside of boxes, each with a shape that knows which box inside of it its children may use.
#include "tests/cam/random/randomsurface.h"

#include <algorithm>

namespace testing {

using cam::Point;

namespace {

struct Cells
{
    int left, bottom, right, top;
    int width() const { return right - left; }
    int height() const { return top - bottom; }
};

class SurfaceMaker
{
public:
    SurfaceMaker(std::mt19937 &random, Point corner, double step, std::size_t most, bool meetsItself)
        : m_random(random), m_corner(corner), m_step(step), m_most(most), m_lastForm(meetsItself ? 9 : 7)
    {
    }

    std::vector<cam::ContourPool> contours(int cells)
    {
        place({0, 0, cells, cells}, false);
        if (m_contours.empty())
            m_contours.push_back(contour({0, 0, cells, cells}, false, 0));
        return std::move(m_contours);
    }

private:
    int any(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_random); }
    bool oneIn(int count) { return any(1, count) == 1; }

    // Fills parts of `cells` with contours of one kind; parts may share edges.
    void place(Cells cells, bool isHole)
    {
        if (cells.width() < 1 || cells.height() < 1 || m_contours.size() >= m_most)
            return;
        const bool mayCut = cells.width() > 1 || cells.height() > 1;
        if (mayCut && !oneIn(3)) {
            Cells low = cells, high = cells;
            if (cells.height() <= 1 || (cells.width() > 1 && oneIn(2)))
                low.right = high.left = any(cells.left + 1, cells.right - 1);
            else
                low.top = high.bottom = any(cells.bottom + 1, cells.top - 1);
            if (!oneIn(5))
                place(low, isHole);
            if (!oneIn(5))
                place(high, isHole);
            return;
        }
        // Often without any distance to what is around and beside it.
        if (!oneIn(3))
            cells = {any(cells.left, cells.left + cells.width() / 3),
                     any(cells.bottom, cells.bottom + cells.height() / 3),
                     any(cells.right - cells.width() / 3, cells.right),
                     any(cells.top - cells.height() / 3, cells.top)};
        const int form = any(0, m_lastForm);
        m_contours.push_back(contour(cells, isHole, form));
        const Cells inner = innerOf(cells, form);
        if (!oneIn(4))
            place(inner, !isHole);
    }

    // What lies inside of the form, its edges included.
    static Cells innerOf(Cells c, int form)
    {
        const int cut = std::min(c.width(), c.height());
        switch (form) {
        case 1: // chamfers and round corners of a cell
        case 2:
            return cut >= 3 ? Cells{c.left + 1, c.bottom + 1, c.right - 1, c.top - 1} : Cells{0, 0, 0, 0};
        case 3: { // a circle: less than the square inside of it
            const int side = cut / 2, margin = (side * 3 + 9) / 10;
            const int x = c.left + side, y = c.bottom + side;
            return {x - side + margin, y - side + margin, x + side - margin, y + side - margin};
        }
        case 4: // the foot of an L
            return {c.left, c.bottom, c.right, c.bottom + c.height() / 2};
        case 5: { // the middle of a slot with round ends
            const int radius = c.height() / 2;
            return c.width() > 2 * radius && c.height() % 2 == 0
                       ? Cells{c.left + radius, c.bottom, c.right - radius, c.top}
                       : Cells{0, 0, 0, 0};
        }
        case 6: // half of it, as a triangle: nothing
        case 8: // what touches itself
        case 9:
            return {0, 0, 0, 0};
        default:
            return c;
        }
    }

    Point at(double x, double y) const { return m_corner + Point{x * m_step, y * m_step}; }

    cam::ContourPool contour(Cells c, bool isHole, int form)
    {
        struct Corner
        {
            Point at;
            cam::EdgeKind kind; // of the edge that leads here
            Point center;
        };
        const auto line = cam::EdgeKind::Line, arc = cam::EdgeKind::ArcCounterClockwise;
        const double l = c.left, b = c.bottom, r = c.right, t = c.top;
        std::vector<Corner> corners;
        const auto add = [&](double x, double y) { corners.push_back({at(x, y), line, {}}); };
        const auto addArc = [&](double x, double y, double cx, double cy) {
            corners.push_back({at(x, y), arc, at(cx, cy)});
        };
        const int cut = std::min(c.width(), c.height());
        if ((form == 1 || form == 2) && cut >= 3) {
            add(l + 1, b);
            add(r - 1, b);
            form == 1 ? add(r, b + 1) : addArc(r, b + 1, r - 1, b + 1);
            add(r, t - 1);
            form == 1 ? add(r - 1, t) : addArc(r - 1, t, r - 1, t - 1);
            add(l + 1, t);
            form == 1 ? add(l, t - 1) : addArc(l, t - 1, l + 1, t - 1);
            add(l, b + 1);
            if (form == 2)
                addArc(l + 1, b, l + 1, b + 1);
        } else if (form == 3 && cut >= 2) {
            const double radius = cut / 2;
            const double x = l + radius, y = b + radius;
            if (oneIn(2)) { // whole
                addArc(x + radius, y, x, y);
            } else {
                addArc(x, y + radius, x, y);
                addArc(x - radius, y, x, y);
                addArc(x + radius, y, x, y);
            }
        } else if (form == 4 && cut >= 2) {
            const double x = c.left + any(1, c.width() - 1), y = c.bottom + c.height() / 2;
            add(l, b);
            add(r, b);
            add(r, y);
            add(x, y);
            add(x, t);
            add(l, t);
        } else if (form == 5 && c.width() > 2 * (c.height() / 2) && c.height() % 2 == 0) {
            const double radius = c.height() / 2;
            add(l + radius, b);
            add(r - radius, b);
            addArc(r - radius, t, r - radius, b + radius);
            add(l + radius, t);
            addArc(l + radius, b, l + radius, b + radius);
        } else if (form == 6) {
            add(l, b);
            add(r, b);
            add(r, t);
        } else if (form == 8 && cut >= 3) { // a frame, cut open from the hole to the left
            add(l, b);
            add(r, b);
            add(r, t);
            add(l, t);
            add(l, b + 1);
            add(l + 1, b + 1);
            add(l + 1, t - 1);
            add(r - 1, t - 1);
            add(r - 1, b + 1);
            add(l + 1, b + 1);
            add(l, b + 1);
        } else if (form == 9 && cut >= 2) { // two boxes with a corner in common
            add(l, b);
            add(l + 1, b);
            add(l + 1, b + 1);
            add(r, b + 1);
            add(r, t);
            add(l + 1, t);
            add(l + 1, b + 1);
            add(l, b + 1);
        } else {
            add(l, b);
            add(r, b);
            add(r, t);
            add(l, t);
        }

        // Any start, any direction.
        std::rotate(corners.begin(), corners.begin() + any(0, int(corners.size()) - 1), corners.end());
        cam::ContourPool pool;
        const bool backwards = oneIn(2);
        const std::size_t count = corners.size();
        pool.begin(corners[count - 1].at, isHole);
        for (std::size_t i = 0; i < count; ++i) {
            // Forwards along edge i; backwards from corner count - 1 - i to the one before it, along its
            // edge.
            const Corner &edge = backwards ? corners[count - 1 - i] : corners[i];
            const Point end = backwards ? corners[(2 * count - 2 - i) % count].at : edge.at;
            if (edge.kind == line)
                pool.lineTo(end);
            else
                pool.arcTo(end, edge.center, backwards);
        }
        pool.end();
        return pool;
    }

    std::mt19937 &m_random;
    Point m_corner;
    double m_step;
    std::size_t m_most;
    int m_lastForm;
    std::vector<cam::ContourPool> m_contours; // of one contour each, each parent before its children
};

} // namespace

void addRandomSurface(cam::FeatureSet &features, std::mt19937 &random, Point corner, double step, int cells,
                      std::size_t mostContours, bool positive, bool meetsItself)
{
    std::vector<cam::ContourPool> contours =
        SurfaceMaker(random, corner, step, mostContours, meetsItself).contours(cells);
    const int order = std::uniform_int_distribution<int>(0, 2)(random);
    const auto isHole = [](const cam::ContourPool &pool) { return pool[0].isHole; };
    if (order > 0) {
        std::shuffle(contours.begin(), contours.end(), random);
        if (order == 1) // all islands, then all holes
            std::stable_partition(contours.begin(), contours.end(),
                                  [&](const auto &c) { return !isHole(c); });
        else // files begin with an island
            std::iter_swap(contours.begin(), std::find_if_not(contours.begin(), contours.end(), isHole));
    }
    cam::Surface surface;
    surface.firstContour = static_cast<std::uint32_t>(features.contours.size());
    surface.contourCount = static_cast<std::uint32_t>(contours.size());
    for (const cam::ContourPool &contour : contours)
        features.contours.add(contour[0], cam::Transform());
    features.add(surface, positive ? cam::Polarity::Positive : cam::Polarity::Negative);
}

} // namespace testing
