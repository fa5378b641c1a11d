// How an export keeps its host informed: the longest time without a report, and the largest step of one.
#pragma once

#include <filesystem>
#include <string>

namespace bench {

struct Responding
{
    double seconds = 0.0;     // of processor time, for the whole export
    double longestGap = 0.0;  // seconds of processor time between two reports
    double gapBefore = 0.0;   // percent that were reported at the end of that time
    double largestStep = 0.0; // percent
};

// Exports the layer to `file`, whose ending says in which format.
Responding measureResponding(const std::filesystem::path &job, const std::string &step,
                             const std::string &layer, const std::filesystem::path &file, bool isNegative);

} // namespace bench
