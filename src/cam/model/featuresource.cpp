#include "cam/model/featuresource.h"

#include <algorithm>

namespace cam {

void FeatureSources::add(FeatureSource source)
{
    const std::uint32_t feature = m_count++;
    const bool isSame = feature > 0 && source.record == m_last.record;
    m_last = source;
    if (!m_runs.empty()) {
        Run &run = m_runs.back();
        const std::uint32_t length = feature - run.first;
        if (isSame && (run.isOne || length == 1)) {
            run.isOne = true;
            return;
        }
        if (isSame) { // the feature before was taken for the next one of its run
            m_runs.push_back({feature - 1, source, true});
            return;
        }
        if (!run.isOne && source.record == run.source.record + length &&
            source.line == run.source.line + length)
            return;
    }
    m_runs.push_back({feature, source, false});
}

std::uint32_t FeatureSources::lengthOf(std::size_t run) const
{
    return (run + 1 < m_runs.size() ? m_runs[run + 1].first : m_count) - m_runs[run].first;
}

FeatureSource FeatureSources::operator[](std::uint32_t feature) const
{
    const auto after =
        std::upper_bound(m_runs.begin(), m_runs.end(), feature,
                         [](std::uint32_t wanted, const Run &run) { return wanted < run.first; });
    if (after == m_runs.begin() || feature >= m_count)
        return {};
    const Run &run = *(after - 1);
    const std::uint32_t distance = run.isOne ? 0 : feature - run.first;
    return {run.source.record + distance, run.source.line + distance};
}

std::pair<std::uint32_t, std::uint32_t> FeatureSources::featuresOf(std::uint32_t record) const
{
    const auto after =
        std::upper_bound(m_runs.begin(), m_runs.end(), record,
                         [](std::uint32_t wanted, const Run &run) { return wanted < run.source.record; });
    if (after == m_runs.begin())
        return {0, 0};
    const Run &run = *(after - 1);
    const std::uint32_t length = lengthOf(static_cast<std::size_t>(after - 1 - m_runs.begin()));
    const std::uint32_t distance = record - run.source.record;
    if (run.isOne)
        return distance == 0 ? std::make_pair(run.first, run.first + length) : std::make_pair(0u, 0u);
    return distance < length ? std::make_pair(run.first + distance, run.first + distance + 1)
                             : std::make_pair(0u, 0u);
}

} // namespace cam
