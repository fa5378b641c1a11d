// The area that dark and clear paint leave behind, as polygons without holes.
//
// The plane is cut in two, again and again, until a piece holds few corners; in each piece the polygons that
// reach it are united and subtracted in their order. The cost grows with the number of corners (times the
// depth of the cuts), and what is in work at any time is small. Pieces meet along the cuts without a gap.
#pragma once

#include "cam/model/featureset.h"
#include "cam/polygon/gridpolygon.h"

#include <deque>
#include <functional>
#include <vector>

namespace cam {

// Draws items on demand: a piece asks for the polygons of the few items that reach it.
class PaintSource
{
public:
    virtual ~PaintSource() = default;
    // Appends the rings of `item`. What is inside of them is where the winding numbers sum up to more than 0.
    virtual void rings(std::uint32_t item, std::vector<GridRing> &rings) = 0;
};

class PaintedArea
{
public:
    // `mostCorners`: of one polygon of the result.
    PaintedArea(PaintSource &source, std::size_t mostCorners);

    // Paints `item` over everything painted before. `box` holds all of its rings, `corners` says about how
    // many corners they have.
    void paint(std::uint32_t item, Polarity polarity, const GridBox &box, std::size_t corners);

    bool isEmpty() const { return m_items.empty(); }

    // Hands over the polygons, counter-clockwise, in an order that depends on the input only. `report` takes
    // the share that is done, 0 to 1, and may throw to cancel.
    void resolve(const std::function<void(const GridRing &)> &polygon,
                 const std::function<void(double)> &report) const;

    struct Item
    {
        GridBox box;
        std::uint32_t item = 0;
        std::uint32_t corners = 0;
        Polarity polarity = Polarity::Positive;
    };

private:
    PaintSource &m_source;
    std::size_t m_mostCorners;
    std::deque<Item> m_items; // in painting order; grows without a pause
};

} // namespace cam
