// Where the features of a set stand in their file. One record of a file may draw many features (a text) or
// none, and take many lines (a surface); most take one line and draw one feature each: runs of these are
// stored once.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

namespace cam {

struct FeatureSource
{
    std::uint32_t record = 0; // features of the file are counted from 0
    std::uint32_t line = 0;   // from 1
};

class FeatureSources
{
public:
    // Where the next feature comes from; records and lines come in ascending order.
    void add(FeatureSource source);

    std::uint32_t size() const { return m_count; }
    FeatureSource operator[](std::uint32_t feature) const;
    // The features that a record has drawn: the first one, and the one behind the last.
    std::pair<std::uint32_t, std::uint32_t> featuresOf(std::uint32_t record) const;

private:
    struct Run
    {
        std::uint32_t first = 0; // feature
        FeatureSource source;    // of the first
        bool isOne = false;      // all of the run come from it; else each has a record and a line of its own
    };
    std::uint32_t lengthOf(std::size_t run) const;

    std::vector<Run> m_runs;
    std::uint32_t m_count = 0;
    FeatureSource m_last;
};

} // namespace cam
