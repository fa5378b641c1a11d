// Features onto the file: lines and arcs as strokes of round apertures, pads as flashes, surfaces as regions,
// each with true arcs. What has no exact form in the file (a scale that makes circles into ellipses, surfaces
// that grow, symbols with cut-outs of their own) goes through polygons.
#pragma once

#include "cam/gerber/aperturetable.h"
#include "cam/gerber/copyclashes.h"
#include "cam/gerber/gerberstream.h"
#include "cam/gerber/region.h"
#include "cam/model/exportoptions.h"
#include "cam/polygon/drawing.h"

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

namespace cam {

class Painter
{
public:
    Painter(const LayerImage &image, const ExportOptions &options, GerberStream &stream,
            ApertureTable &apertures);

    // Finds the apertures that paint() will use, in the order of their first use.
    void collectApertures();
    // Paints the exported step with the steps nested in it; dark where `negative` is false.
    void paint();

    // Contours that belong to no feature (the profile), in the exported step's coordinates.
    void paintContours(const ContourPool &contours);
    void drawContours(const ContourPool &contours, int aperture);
    // Clears what lies outside of `contours`, as far as paint() may have painted.
    void clearOutside(const ContourPool &contours);
    void clearOutside(const GridBox &box);

    // A box, in output coordinates, around what the steps darken; empty when that is nothing.
    GridBox darkExtent();
    void paintBox(const GridBox &box);
    bool hasNegativeFeatures() const;
    bool isEmpty() const { return m_workInAll == 0.0; }

private:
    enum class PadForm : std::uint8_t { Nothing, Flash, Region, Features, Polygons };
    // How a pad is painted.
    struct PadPlan
    {
        PadForm form = PadForm::Nothing;
        int code = 0;
        Shape shape; // of a region
    };
    struct PadKey
    {
        double angle, growth;
        std::uint32_t symbol;
        bool mirror;
        Polarity polarity;
        bool operator==(const PadKey &other) const;
    };
    struct PadKeyHash
    {
        std::size_t operator()(const PadKey &key) const;
    };
    // Features under one map, and what is known about drawing them.
    struct Context
    {
        const FeatureSet &features;
        Transform map;
        double growth; // nanometres, of positive features
        bool inverted; // positive features are painted clear
        bool keepsCircles;
        std::vector<int> pens[2]; // by polarity, then symbol: see penCode(); unknown: -1
        std::unordered_map<PadKey, PadPlan, PadKeyHash> pads;
        std::unique_ptr<FeatureDrawing> polygons; // made when first needed

        bool isDark(Polarity polarity) const { return (polarity == Polarity::Positive) != inverted; }
        double growthOf(Polarity polarity) const { return polarity == Polarity::Positive ? growth : -growth; }
    };

    Context context(const FeatureSet &features, const Transform &map, double growth, bool inverted) const;
    FeatureDrawing &polygonsOf(Context &context);

    // Calls `visit` with each step of the image, once for each of its places; the map leads to the exported
    // step.
    void forEachStep(const std::function<void(const StepImage &, const Transform &)> &visit) const;
    void forEachStep(const StepImage &step, const Transform &place,
                     const std::function<void(const StepImage &, const Transform &)> &visit) const;

    void collect(Context &context);
    void collectRepeated(const StepImage &step, const Transform &place);
    void paintStep(std::uint32_t step, const Transform &place);
    void paintRepeat(const StepRepeat &repeat, const Transform &place);
    bool paintAsBlock(const StepRepeat &repeat, const Transform &place);
    bool copiesClash(std::uint32_t step, const Transform &first, std::uint32_t columns, std::uint32_t rows,
                     GridPoint pitch);

    void paintFeatures(Context &context, bool isStep);
    void paintFeature(Context &context, std::uint32_t item);
    void paintResolved(Context &context);
    void paintLine(Context &context, const Feature &feature, std::uint32_t item);
    void paintArc(Context &context, const Feature &feature, std::uint32_t item);
    void paintPad(Context &context, const Feature &feature, std::uint32_t item);
    void paintSurface(Context &context, const Feature &feature, std::uint32_t item);
    void paintStroke(Context &context, const Feature &feature);
    void paintPolygons(Context &context, std::uint32_t item);

    // The aperture that draws lines with `symbol`: 0 when they make no image, polygonPen when there is none.
    int penCode(Context &context, std::uint32_t symbol, Polarity polarity);
    const PadPlan &padPlan(Context &context, const Pad &pad, Polarity polarity);
    PadPlan planOf(const Context &context, const Pad &pad, Polarity polarity);
    bool isOnlyPositive(const FeatureSet &features) const;
    Context symbolContext(const Context &context, const Pad &pad, Polarity polarity) const;

    void regions(const ContourPool &contours, std::size_t first, std::size_t count, const Transform &map);
    void region(const GridOutline &outline);
    void region(const GridRing &ring);

    // `more` work has been done on each of the copies that are painted at once; reports now and then.
    void advance(double more);
    void advanceAnEdge();
    void report();
    void clearOutside(std::vector<GridRing> rings);
    GridBox darkExtent(const StepImage &step, const Transform &map);

    const LayerImage &m_image;
    const ExportOptions &m_options;
    GerberStream &m_stream;
    ApertureTable &m_apertures;
    DrawnSymbols m_drawn;
    CopyClashes m_clashes;
    Transform m_export;
    double m_workInAll = 0.0;
    double m_workDone = 0.0;
    double m_workReported = 0.0;
    double m_copies = 1.0;   // that are painted at once
    double m_edgeWork = 0.0; // left of the surface that is painted
};

} // namespace cam
