// Paints a layer into a Gerber file: lines and arcs as draws of round apertures, pads as flashes, surfaces as
// regions, each with true arcs. What has no exact form in the file (a scale that makes circles into ellipses,
// surfaces that are resized, symbols with cut-outs of their own) goes through polygons.
#pragma once

#include "cam/gerber/paintplan.h"
#include "cam/gerber/regionwriter.h"
#include "cam/gerber/stepplan.h"
#include "cam/model/exportoptions.h"

namespace cam {

class Painter
{
public:
    // All arguments must outlive the painter. What `progress` throws passes through.
    Painter(DrawnSymbols &drawn, const ExportOptions &options, GerberStream &stream, RegionWriter &regions,
            ApertureTable &apertures, WorkProgress &progress);

    // Puts the apertures that paint() will use into the table, in the order of their first use.
    void collectApertures();
    // Paints the exported step with the steps nested in it; clear where the export is negative.
    void paint();

private:
    PaintPlan plan(std::uint32_t step, const Transform &map) const;
    void paintStep(const PlannedStep &step);
    void paintFeatures(PaintPlan &plan, double copies);
    void paintResolved(PaintPlan &plan, double copies);
    void paintFeature(PaintPlan &plan, std::uint32_t item, double work);

    void draw(const PaintPlan &plan, const Feature &feature, int aperture);
    void draw(const GridOutline &path);
    void paintRegion(const PaintPlan &plan, const Feature &feature, const ContourPool *padContours,
                     double work);
    void paintPolygons(PaintPlan &plan, std::uint32_t item);

    DrawnSymbols &m_drawn;
    const ExportOptions &m_options;
    GerberStream &m_stream;
    RegionWriter &m_regions;
    ApertureTable &m_apertures;
    WorkProgress &m_progress;
    Transform m_map; // from the exported step's coordinates to the output
};

} // namespace cam
