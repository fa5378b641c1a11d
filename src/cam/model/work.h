// What drawing features costs, in lines: writers tell their progress by it.
#pragma once

#include "cam/model/layerimage.h"

#include <functional>

namespace cam {

// A surface's cost is that of its edges.
constexpr double edgesPerLine = 4.0;

// In lines: what one of `features`, or all of them, cost.
double workOf(const FeatureSet &features, const Feature &feature);
double workOf(const FeatureSet &features);
// Of a step with everything that is nested in it, copy by copy.
double workOf(const LayerImage &image, const StepImage &step);

// Counts the work that a writer has done, and reports its share now and then.
class WorkProgress
{
public:
    // `report` takes the share that is done, 0 to 1; what it throws (a cancel) passes through. `expected`:
    // the work in all, in lines.
    WorkProgress(const std::function<void(double)> &report, double expected)
        : m_report(report), m_expected(expected)
    {
    }
    void expect(double more) { m_expected += more; }
    double expected() const { return m_expected; }

    // `more` work has been done; reports after a hundredth of a percent, and at least every thousand lines.
    void advance(double more);
    // Reports at once what is done and `underWay` besides it.
    void report(double underWay = 0.0) const;

private:
    const std::function<void(double)> &m_report;
    double m_expected;
    double m_done = 0.0;
    double m_reported = 0.0;
};

} // namespace cam
