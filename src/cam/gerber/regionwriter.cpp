#include "cam/gerber/regionwriter.h"

#include "cam/gerber/region.h"
#include "cam/polygon/clipping.h"
#include "cam/polygon/drawing.h"

#include <algorithm>

namespace cam {

void RegionWriter::contours(const ContourPool &contours, const Transform &map)
{
    if (map.keepsCircles())
        return this->contours(contours, 0, contours.size(), map, 0.0);
    std::vector<GridRing> rings;
    contourRings(contours, map, gerberGrid, rings);
    area(rings);
}

void RegionWriter::contours(const ContourPool &contours, std::size_t first, std::size_t count,
                            const Transform &map, double work)
{
    m_work = work;
    std::vector<GridOutline> outlines;
    std::vector<bool> isHole;
    for (std::size_t i = first; i < first + count; ++i) {
        outlines.push_back(onGrid(contours[i], map));
        isHole.push_back(contours[i].isHole);
    }
    const Regions regions = regionsOf(std::move(outlines), isHole);
    for (const GridOutline &region : regions.outlines)
        outline(region);
    for (const std::vector<std::uint32_t> &knot : regions.entangled) {
        std::vector<GridRing> rings;
        for (const std::uint32_t i : knot)
            contourRings(contours, first + i, 1, map, gerberGrid, rings);
        area(rings);
    }
    m_progress.advance(m_work);
    m_work = 0.0;
}

void RegionWriter::area(const std::vector<GridRing> &rings)
{
    emitSimple(cleaned(rings), mostRegionCorners, [this](const GridRing &ring) { polygon(ring); });
}

void RegionWriter::polygon(const GridRing &ring)
{
    m_stream.beginRegion();
    m_stream.moveTo(ring.front());
    for (std::size_t i = 1; i < ring.size(); ++i)
        m_stream.lineTo(ring[i]);
    m_stream.lineTo(ring.front());
    m_stream.endRegion();
}

void RegionWriter::outline(const GridOutline &outline)
{
    if (outline.edges.empty())
        return;
    m_stream.beginRegion();
    m_stream.moveTo(outline.start);
    for (const GridEdge &edge : outline.edges) {
        if (m_work > 0.0)
            advanceAnEdge();
        m_stream.edge(edge);
    }
    m_stream.endRegion();
}

// Slits add edges to a surface's own: no more than its work is counted.
void RegionWriter::advanceAnEdge()
{
    const double more = std::min(m_work, 1.0 / edgesPerLine);
    m_work -= more;
    m_progress.advance(more);
}

} // namespace cam
