// Contours and polygons as regions of a Gerber file.
#pragma once

#include "cam/gerber/gerberstream.h"
#include "cam/gerber/gridoutline.h"
#include "cam/model/work.h"

#include <vector>

namespace cam {

// The file's grid: a nanometre.
inline const Grid gerberGrid(1.0);

// Corners of a region without arcs: only what is longer, or has a hole, makes more than one of it.
constexpr std::size_t mostRegionCorners = 1000000;

class RegionWriter
{
public:
    RegionWriter(GerberStream &stream, WorkProgress &progress) : m_stream(stream), m_progress(progress) {}

    // `contours`, as one area, under `map`: with their arcs where the map keeps circles, but for those that
    // cross. `work`, in lines, is advanced meanwhile.
    void contours(const ContourPool &contours, const Transform &map);
    void contours(const ContourPool &contours, std::size_t first, std::size_t count, const Transform &map,
                  double work);
    // The area of rings that need not be clean; see cleaned().
    void area(const std::vector<GridRing> &rings);
    // One polygon without holes.
    void polygon(const GridRing &ring);

private:
    void outline(const GridOutline &outline);
    void advanceAnEdge();

    GerberStream &m_stream;
    WorkProgress &m_progress;
    double m_work = 0.0; // left of what is written
};

} // namespace cam
