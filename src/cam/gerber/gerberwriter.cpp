// The outline of the file: head, apertures, image, end.
#include "cam/gerber/gerberwriter.h"

#include "cam/base/outputfile.h"
#include "cam/gerber/aperture.h"
#include "cam/gerber/aperturetable.h"
#include "cam/gerber/fileattributes.h"
#include "cam/gerber/gerberstream.h"
#include "cam/gerber/painter.h"
#include "cam/gerber/regionwriter.h"
#include "cam/model/flatten.h"
#include "cam/model/steps.h"
#include "cam/polygon/layerarea.h"

#include <algorithm>

namespace cam {

namespace {

// Readers take a file without an aperture or without a coordinate for one of the older kind, and warn of it:
// a file of regions only defines this aperture (nanometres), an empty one moves once.
constexpr double smallestAperture = 10000.0;

// How far below the full share painting may report: closing the file comes after it.
constexpr double paintingShare = 0.99;

void writeHead(const LayerImage &image, const ExportOptions &options, GerberStream &stream)
{
    for (const std::string &attribute : fileAttributes(image, options.negative))
        stream.attribute(attribute);
    stream.comment("job " + image.job + ", step " + image.top().name + ", layer " + image.layer);
    stream.command("FSLAX46Y46");
    stream.command("MOMM");
    stream.allQuadrants();
}

class Writer
{
public:
    Writer(const LayerImage &image, const ExportOptions &options);
    void write();

private:
    void writeNegative();
    void clearOutside(std::vector<GridRing> base, GridBox reach);
    void drawProfile(int aperture);
    GridOutline profileOutline(std::size_t contour) const;

    const LayerImage &m_image;
    const ExportOptions &m_options;
    Transform m_map; // from the exported step's coordinates to the output
    OutputFile m_file;
    GerberStream m_stream;
    ApertureTable m_apertures;
    std::function<void(double)> m_report;
    WorkProgress m_progress;
    DrawnSymbols m_drawn;
    RegionWriter m_regions;
    Painter m_painter;
};

Writer::Writer(const LayerImage &image, const ExportOptions &options)
    : m_image(image), m_options(options), m_map(exportTransform(options, image.datum)), m_file(options.file),
      m_stream(m_file), m_report([this](double share) { m_options.report(paintingShare * share); }),
      m_progress(m_report, workOf(image, image.top())), m_drawn(image, gerberGrid, mostRegionCorners),
      m_regions(m_stream, m_progress),
      m_painter(m_drawn, options, m_stream, m_regions, m_apertures, m_progress)
{
}

void Writer::write()
{
    m_options.report(0.0);
    writeHead(m_image, m_options, m_stream);
    m_painter.collectApertures();
    const bool drawsProfile = m_options.profileOnTop && !m_image.profile.isEmpty();
    const int profileAperture = drawsProfile ? m_apertures.profileCode() : 0;
    if (m_apertures.isEmpty())
        m_apertures.code(circleAperture(smallestAperture));
    m_apertures.write(m_stream);
    const bool hasFeatures = m_progress.expected() > 0.0;
    if (!hasFeatures)
        m_stream.moveTo({0, 0});
    if (m_options.negative)
        writeNegative();
    else
        m_painter.paint();
    if (drawsProfile) {
        m_stream.polarity(true);
        drawProfile(profileAperture);
    }
    m_stream.end();
    m_file.commit();
    m_options.report(1.0);
}

// The area that the negative is taken from, dark, then the layer with its polarity turned.
void Writer::writeNegative()
{
    LayerArea area(m_drawn, m_map, m_options.resize, m_progress);
    const bool hasProfile = !m_image.profile.isEmpty();
    const std::vector<GridRing> base = area.negativeBase(hasProfile ? GridBox() : area.extent());
    m_stream.polarity(true);
    if (hasProfile)
        m_regions.contours(m_image.profile, m_map);
    else if (!base.empty())
        m_regions.polygon(base.front());
    m_painter.paint();
    bool hasNegatives = false;
    forEachStep(m_image, Copies::First, [&](std::uint32_t step, const Transform &) {
        hasNegatives = hasNegatives || m_image.steps[step].features.negativeCount > 0;
    });
    // Negative features are painted dark now, and may reach out of what the layer is taken from.
    if (hasNegatives)
        clearOutside(base, area.reach());
}

// Clears what lies outside of `base`, as far as `reach`: a frame as the island, what the base encloses as
// holes in it, and the holes of the base as islands again.
void Writer::clearOutside(std::vector<GridRing> base, GridBox reach)
{
    constexpr std::int64_t margin = 1000000; // nanometres
    for (GridRing &ring : base) {
        reach.add(ring);
        std::reverse(ring.begin(), ring.end());
    }
    const GridBox frame = {{reach.low.x - margin, reach.low.y - margin},
                           {reach.high.x + margin, reach.high.y + margin}};
    base.insert(base.begin(), frame.ring());
    m_stream.polarity(false);
    m_regions.area(base);
}

void Writer::drawProfile(int aperture)
{
    m_stream.aperture(aperture);
    for (std::size_t i = 0; i < m_image.profile.size(); ++i) {
        const GridOutline outline = profileOutline(i);
        m_stream.moveTo(outline.start);
        for (const GridEdge &edge : outline.edges)
            m_stream.edge(edge);
    }
}

GridOutline Writer::profileOutline(std::size_t contour) const
{
    if (m_map.keepsCircles())
        return onGrid(m_image.profile[contour], m_map);
    std::vector<Point> corners;
    flatten(m_image.profile[contour], arcTolerance / largestStretch(m_map), corners);
    ContourPool polygon;
    polygon.addPolygon(corners.data(), corners.size(), false);
    return onGrid(polygon[0], m_map);
}

} // namespace

void writeGerber(const LayerImage &image, const ExportOptions &options)
{
    Writer(image, options).write();
}

} // namespace cam
