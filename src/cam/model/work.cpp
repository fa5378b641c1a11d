#include "cam/model/work.h"

#include <algorithm>

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

void WorkProgress::advance(double more)
{
    m_done += more;
    if (m_done - m_reported < std::min(1000.0, m_expected * 1e-4))
        return;
    m_reported = m_done;
    report();
}

void WorkProgress::report(double underWay) const
{
    m_report(m_expected > 0.0 ? std::min(1.0, (m_done + underWay) / m_expected) : 1.0);
}

} // namespace cam
