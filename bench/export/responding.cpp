// The reports of one export, and the processor time between them.
#include "bench/export/responding.h"

#include "cam/export/exportrequest.h"

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
    cam::ExportRequest request;
    request.job = job;
    request.step = step;
    request.layer = layer;
    request.format = file.extension() == ".gds" ? cam::FileFormat::Gds : cam::FileFormat::Gerber;
    request.options.file = file;
    request.options.negative = isNegative;
    request.options.report = report;
    cam::exportLayer(request);
    report(1.0);
    result.seconds = last - start;
    return result;
}

} // namespace bench
