// A component layer as it is drawn: the outline of each component's package, where the component lies, and a
// dot on its first pin. The job's own features of the layer, mostly none, are drawn as well.
#pragma once

#include "drawing/snapping.h"
#include "workbench/view/stepsource.h"

// Adds the components to `image`, a component layer of the step that `contents` tells of. A feature that is
// part of a component has the source record componentRecord() + its index on the side.
void addComponents(cam::LayerImage &image, const StepContents &contents);
constexpr std::uint32_t componentRecord()
{
    return std::uint32_t(1) << 30; // more than a file has
}

// The box of a component in its step's coordinates.
cam::Box componentBox(const cam::Component &component, const cam::ComponentSide &side,
                      const cam::EdaData &eda);
// The contours of the package's outline in its step's coordinates; its box where it has none.
cam::ContourPool outlineOf(const cam::Component &component, const cam::ComponentSide &side,
                           const cam::EdaData &eda);
// Null where the job does not say.
const cam::Package *packageOf(const cam::Component &component, const cam::EdaData &eda);

class ComponentScene : public drawing::LayerScene
{
public:
    struct Placed
    {
        const cam::Component *component;
        cam::Box box; // in the step's coordinates
    };

    // `image` after addComponents().
    ComponentScene(std::shared_ptr<const cam::LayerImage> image, std::shared_ptr<const StepContents> contents,
                   const cam::ExportOptions &options, const std::function<void(double)> &report);

    const StepContents &contents() const { return *m_contents; }
    // Of each step of the image.
    const std::vector<std::vector<Placed>> &components() const { return m_components; }
    // Null for a feature that is no component's.
    const cam::Component *componentOf(std::uint32_t step, std::uint32_t feature) const;

    // One feature of each component whose box holds `place`, the smallest box first.
    std::vector<drawing::FoundFeature> componentsAt(cam::Point place) const;

private:
    std::shared_ptr<const StepContents> m_contents;
    std::vector<std::vector<Placed>> m_components;
};
