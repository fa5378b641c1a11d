#include "cam/model/work.h"

namespace cam {

double workOf(const FeatureSet &features, const Feature &feature)
{
    if (feature.kind != FeatureKind::Surface)
        return 1.0;
    const Surface &surface = features.surfaces[feature.index];
    std::size_t edges = 0;
    for (std::uint32_t i = 0; i < surface.contourCount; ++i)
        edges += features.contours[surface.firstContour + i].edgeCount;
    return 1.0 + static_cast<double>(edges) / edgesPerLine;
}

double workOf(const FeatureSet &features)
{
    double sum = 0.0;
    for (const Feature &feature : features.order)
        sum += workOf(features, feature);
    return sum;
}

double workOf(const LayerImage &image, const StepImage &step)
{
    double sum = workOf(step.features);
    for (const StepRepeat &repeat : step.repeats)
        sum += static_cast<double>(repeat.nx) * repeat.ny * workOf(image, image.steps[repeat.step]);
    return sum;
}

} // namespace cam
