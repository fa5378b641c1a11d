// What is compared: an image as paint on the grid of one nanometre, whether it comes from a job or from a
// file.
#pragma once

#include "cam/polygon/gridpolygon.h"

#include <cstdint>
#include <vector>

namespace cam::verify {

// Half of what a straight edge may lie beside the curve it stands for, on either side of a comparison, is
// never more than this, in nanometres: the tolerance of the library's own output, so that what it writes and
// what is drawn here have the same corners.
constexpr double curveTolerance = 90.0;

// Something that is painted over everything that its group has painted before.
struct Paint
{
    GridBox box;               // holds all of its rings
    std::uint32_t corners = 0; // about how many its rings have
    std::uint32_t group = 0;
    bool dark = true;
    // Paints of one shape are the same but for their place. 0: a shape of its own.
    std::uint32_t shape = 0;
    GridPoint at;
};

// The group that a negated picture is cut out of.
constexpr std::uint32_t baseGroup = UINT32_MAX;

// Groups are images of their own, and the picture is dark where one of them is: a nested step clears in its
// own image only. A negated picture is its base group less all others.
class Picture
{
public:
    virtual ~Picture() = default;

    const std::vector<Paint> &paints() const { return m_paints; }
    bool isNegated() const { return m_isNegated; }
    // Whether each paint covers what it covers whatever the others do. Otherwise the winding numbers of all
    // rings sum up, and may be below 0.
    bool arePaintsApart() const { return m_arePaintsApart; }

    // Appends the rings of a paint. Their winding numbers sum up to more than 0 where it covers the plane,
    // and to 0 elsewhere, never to less.
    virtual void rings(std::uint32_t paint, std::vector<GridRing> &rings) = 0;

    // The same as it was drawn: a ring that stands alone may cross itself, and covers all places around which
    // it runs. False where there is no such form of it.
    virtual bool plainRings(std::uint32_t paint, std::vector<GridRing> &rings)
    {
        this->rings(paint, rings);
        return true;
    }

protected:
    std::vector<Paint> m_paints;
    bool m_isNegated = false;
    bool m_arePaintsApart = true;
};

} // namespace cam::verify
