// The outline of the file: head, apertures, image, end.
#include "cam/gerber/gerberwriter.h"

#include "cam/base/outputfile.h"
#include "cam/gerber/aperture.h"
#include "cam/gerber/aperturetable.h"
#include "cam/gerber/fileattributes.h"
#include "cam/gerber/gerberstream.h"
#include "cam/gerber/painter.h"

namespace cam {

namespace {

// Readers take a file without an aperture or without a coordinate for one of the older kind, and warn of it:
// a file of regions only defines this aperture (nanometres), an empty one moves once.
constexpr double smallestAperture = 10000.0;

void writeHead(const LayerImage &image, const ExportOptions &options, GerberStream &stream)
{
    for (const std::string &attribute : fileAttributes(image, options.negative))
        stream.attribute(attribute);
    stream.comment("job " + image.job + ", step " + image.top().name + ", layer " + image.layer);
    stream.command("FSLAX46Y46");
    stream.command("MOMM");
    stream.allQuadrants();
}

// The area of the profile, or the extent of the layer where there is none, less the layer.
void paintNegative(const LayerImage &image, GerberStream &stream, Painter &painter)
{
    const GridBox extent = image.profile.isEmpty() ? painter.darkExtent() : GridBox();
    stream.polarity(true);
    if (!image.profile.isEmpty())
        painter.paintContours(image.profile);
    else if (!extent.isEmpty())
        painter.paintBox(extent);
    painter.paint();
    // Negative features are painted dark now, and may reach out of what the layer is taken from.
    if (!painter.hasNegativeFeatures())
        return;
    if (!image.profile.isEmpty())
        painter.clearOutside(image.profile);
    else
        painter.clearOutside(extent);
}

} // namespace

void writeGerber(const LayerImage &image, const ExportOptions &options)
{
    OutputFile file(options.file);
    GerberStream stream(file);
    ApertureTable apertures;
    Painter painter(image, options, stream, apertures);
    options.report(0.0);
    writeHead(image, options, stream);
    painter.collectApertures();
    const bool drawsProfile = options.profileOnTop && !image.profile.isEmpty();
    const int profileCode = drawsProfile ? apertures.profileCode() : 0;
    if (apertures.isEmpty())
        apertures.code(circleAperture(smallestAperture));
    apertures.write(stream);
    if (painter.isEmpty())
        stream.moveTo({0, 0});
    if (options.negative)
        paintNegative(image, stream, painter);
    else
        painter.paint();
    if (drawsProfile) {
        stream.polarity(true);
        painter.drawContours(image.profile, profileCode);
    }
    stream.end();
    file.commit();
    options.report(1.0);
}

} // namespace cam
