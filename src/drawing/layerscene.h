// A layer of a job, drawn straight from the CAM library's geometry: symbols are made once and referred to,
// nested steps stay references, features are found by a spatial index.
//
//     auto image = std::make_shared<const cam::LayerImage>(job.readLayer("pcb", "top", notes));
//     LayerScene scene(image, {}, report);
#pragma once

#include "cam/model/exportoptions.h"
#include "drawing/featureindex.h"
#include "drawing/featurepainter.h"

#include <memory>

namespace drawing {

class LayerScene : public Scene
{
public:
    // What an export by `options` makes of the layer (resize, negation, scale, mirror, rotation); the file
    // and its format do not matter. `report` takes the share of a step that is done, 0 to 1, every few
    // thousand features, and may throw to cancel.
    // Throws cam::Error for a layer that cannot be drawn.
    LayerScene(
        std::shared_ptr<const cam::LayerImage> image, const cam::ExportOptions &options,
        const std::function<void(double)> &report = [](double) {});

    const cam::LayerImage &image() const { return *m_image; }
    // From the step's own coordinates to those that are drawn.
    const cam::Transform &placement() const { return m_map; }
    const cam::ExportOptions &options() const { return m_options; }

    cam::Box extent() const override;
    void draw(Canvas &canvas, const cam::Transform &toSamples, const DrawMode &mode) const override;

    // Features of the exported step and of those nested in it whose boxes touch `box` (of what is drawn), in
    // the order in which they are painted. `place` maps the step's coordinates to those that are drawn.
    using FeatureVisit =
        std::function<void(std::uint32_t step, std::uint32_t feature, const cam::Transform &place)>;
    void findFeatures(const cam::Box &box, const FeatureVisit &visit) const;
    // Holds what is drawn of one feature, in its step's coordinates.
    cam::Box featureBox(std::uint32_t step, std::uint32_t feature) const
    {
        return boxOf(m_steps[step].drawing, feature);
    }

private:
    struct StepScene
    {
        DrawableFeatures drawing;
        FeatureIndex index;
        cam::Box extent;   // with the steps nested in it
        double area = 0.0; // that its features cover at most, with those nested in it
    };
    // What one thread draws with.
    struct Work
    {
        FeaturePainter painter;
        Canvas own; // of a step that clears something
        const DrawMode &mode;
        std::vector<std::uint32_t> found;
        std::size_t drawn = 0;
    };

    void addStep(const cam::StepImage &step, const std::function<void(double)> &report);
    void addShapes(const cam::FeatureSet &features);
    cam::Box boxOf(const DrawableFeatures &drawing, std::uint32_t feature) const;
    double areaOf(const DrawableFeatures &drawing, std::uint32_t feature) const;
    void drawStep(std::uint32_t step, const cam::Transform &map, Canvas &canvas, Work &work) const;
    void drawFeatures(const StepScene &step, const cam::Box &visible, const cam::Transform &map,
                      Canvas &canvas, Work &work) const;
    void findIn(std::uint32_t step, const cam::Box &box, const cam::Transform &place,
                const FeatureVisit &visit) const;

    std::shared_ptr<const cam::LayerImage> m_image;
    cam::ExportOptions m_options;
    cam::Transform m_map;
    SymbolShapes m_shapes;
    std::vector<StepScene> m_steps; // as in the image
};

} // namespace drawing
