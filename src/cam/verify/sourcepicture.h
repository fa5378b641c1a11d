// A layer of a job as it has to come out, drawn from the job's model alone: a walk of its own over steps and
// features, with nothing of the writers' ways of drawing.
#pragma once

#include "cam/model/exportoptions.h"
#include "cam/verify/cleanness.h"
#include "cam/verify/corners.h"
#include "cam/verify/picture.h"

#include <functional>
#include <map>
#include <tuple>

namespace cam::verify {

class SourcePicture : public Picture
{
public:
    // What `options` make of `image`; both must outlive the picture. `curves`: where corners stand on curves,
    // as in what it will be compared with. Throws Error for an export that is refused as well (a scale of 0).
    SourcePicture(const LayerImage &image, const ExportOptions &options, ArcCorners curves);

    void rings(std::uint32_t paint, std::vector<GridRing> &rings) override;
    bool plainRings(std::uint32_t paint, std::vector<GridRing> &rings) override;

private:
    // Features under one map, grown alike.
    struct Frame
    {
        Transform map;
        bool keepsCircles = true;
        double stretch = 1.0; // of lengths at most
        double growth = 0.0;  // nanometres of positive features, half to each side
        ArcCorners curves = ArcCorners::Even;
    };
    // Where the rings of a paint come from.
    struct Origin
    {
        const FeatureSet *features = nullptr; // null: the base of a negated picture
        std::uint32_t feature = 0;
        std::uint32_t frame = 0;
        Cleanness cleanness = Cleanness::Clean;
    };
    // A symbol as it comes to lie, about its own origin.
    struct Drawn
    {
        std::vector<GridRing> rings;
        GridBox box;
        std::uint32_t corners = 0;
        std::uint32_t number = 0; // from 1 on
    };
    using DrawnKey = std::tuple<std::uint32_t, double, double, double, double, double>;

    void addStep(std::uint32_t step, const Transform &map);
    void addBase();
    GridBox darkExtent();
    void addPaint(const Origin &origin, std::uint32_t group, bool dark);
    bool addRoundLine(const FeatureSet &features, const Feature &feature, const Frame &frame,
                      Paint &paint) const;
    Frame frame(const Transform &map, double growth) const;
    static std::vector<GridRing> cleaned(const std::vector<GridRing> &rings);

    void featureRings(const FeatureSet &features, const Feature &feature, const Frame &frame,
                      std::vector<GridRing> &rings);
    void strokeRings(Point from, const Edge &edge, std::uint32_t symbol, double growth, const Frame &frame,
                     std::vector<GridRing> &rings);
    void sweep(const std::vector<std::vector<Point>> &outlines, const std::vector<Point> &path,
               const Frame &frame, std::vector<GridRing> &rings);
    void surfaceRings(const FeatureSet &features, const Surface &surface, double growth, const Frame &frame,
                      std::vector<GridRing> &rings);
    const Drawn &drawn(std::uint32_t symbol, const Transform &map, double growth);
    void drawOwn(const FeatureSet &features, const Frame &frame, std::vector<GridRing> &rings);
    void poolRings(const ContourPool &pool, std::size_t first, std::size_t count, const Frame &frame,
                   std::vector<GridRing> &rings) const;

    const LayerImage &m_image;
    const ExportOptions &m_options;
    ArcCorners m_curves;
    std::vector<Origin> m_origins; // by paint
    std::vector<Frame> m_frames;
    std::vector<GridRing> m_base;
    std::map<DrawnKey, Drawn> m_drawn;
    std::uint32_t m_groups = 1; // group 0: what nothing clears
};

} // namespace cam::verify
