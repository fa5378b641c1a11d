// What a layer looks like, point by point, from its features alone: no booleans, no strokes made of corners,
// no drawing of the library's. Features are walked in order; a point is as dark as the last one that covers
// it.
#pragma once

#include "cam/model/exportoptions.h"

#include <functional>
#include <map>
#include <memory>
#include <random>
#include <vector>

namespace testing {

class ExactPicture
{
public:
    // The image that `options` make of `image`, which must outlive the picture.
    ExactPicture(const cam::LayerImage &image, const cam::ExportOptions &options);
    ~ExactPicture();

    struct Reading
    {
        bool dark = false;
        // Whether no edge of a feature lies within `near` of the point, so that the colour is beyond doubt.
        // Corners of surfaces that grow or shrink are in doubt as far as they may reach, and so is what a
        // layer without a profile is negated from, where only clear features say how far it is dark.
        bool isCertain = true;
    };
    // `at` in output coordinates; `near` in nanometres of the output.
    Reading at(cam::Point at, double near) const;

    // Points on the edges of the source: ends and middles, in output coordinates.
    std::vector<cam::Point> edgePoints() const;

private:
    struct Hit
    {
        bool covered = false;
        bool isCertain = true;
    };
    class Figure;
    class StrokeFigure;
    class SweptFigure;
    class ContourFigure;
    class OwnPenFigure;
    class OwnFigure;
    using PointTaker = std::function<void(cam::Point)>;
    // The features of a step or a symbol, made ready.
    struct Drawing
    {
        struct Item
        {
            std::unique_ptr<Figure> figure;
            cam::Box box; // with room for every edge
            bool positive = true;
        };
        std::vector<Item> items;

        Hit at(cam::Point at, double near) const;
        void edgePoints(const cam::Transform &map, const PointTaker &take) const;
        void outline(const cam::Transform &map, const PointTaker &take) const;
    };

    void findExtent();
    bool isExtentCertain() const;
    const Drawing &drawing(const cam::FeatureSet &features, double growth);
    std::unique_ptr<Figure> figure(const cam::FeatureSet &features, const cam::Feature &feature,
                                   double growth);
    std::vector<cam::Shape> shapesOf(const cam::FeatureSet &features, double growth) const;
    Hit stepAt(const cam::StepImage &step, cam::Point at, double near) const;
    using DrawingTaker = std::function<void(const Drawing &, const cam::Transform &map)>;
    // The drawings of a step and of all its copies, and how they come into the output.
    void stepDrawings(const cam::StepImage &step, const cam::Transform &map, const DrawingTaker &take) const;

    const cam::LayerImage &m_image;
    const cam::ExportOptions &m_options;
    cam::Transform m_toOutput, m_toSource;
    double m_leastStretch = 1.0; // of lengths on their way into the output
    std::map<std::pair<const cam::FeatureSet *, double>, std::unique_ptr<Drawing>> m_drawings;
    std::unique_ptr<Figure> m_profile;
    cam::Box m_profileBox;
    // Without a profile: boxes around what is dark, of the output; the true one lies between them.
    cam::Box m_leastExtent, m_mostExtent;
};

} // namespace testing
