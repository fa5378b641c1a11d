// The library's own parts are called as layer_export calls them: its progress record has no place to hook in.
#include "bench/export/responding.h"

#include "cam/gdsii/gdswriter.h"
#include "cam/gerber/gerberwriter.h"
#include "cam/odb/job.h"

#include <algorithm>

#include <time.h>

namespace bench {

namespace {

// Processor time of this thread: what other programs do meanwhile does not count.
double processorSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

} // namespace

Responding measureResponding(const std::filesystem::path &job, const std::string &step,
                             const std::string &layer, const std::filesystem::path &file, bool isNegative)
{
    constexpr double readingShare = 0.3; // as in layer_export
    Responding result;
    const double start = processorSeconds();
    double last = start, lastShare = 0.0;
    const auto report = [&](double share) {
        const double now = processorSeconds();
        if (now - last > result.longestGap) {
            result.longestGap = now - last;
            result.gapBefore = 100.0 * share;
        }
        result.largestStep = std::max(result.largestStep, 100.0 * (share - lastShare));
        last = now;
        lastShare = share;
    };
    cam::ExportOptions options;
    options.file = file;
    options.negative = isNegative;
    options.report = [&](double share) { report(readingShare + (1.0 - readingShare) * share); };
    cam::ReadingNotes notes;
    const cam::LayerImage image =
        cam::Job(job).readLayer(step, layer, notes, [&](double share) { report(readingShare * share); });
    if (file.extension() == ".gds")
        cam::writeGds(image, options);
    else
        cam::writeGerber(image, options);
    report(1.0);
    result.seconds = last - start;
    return result;
}

} // namespace bench
