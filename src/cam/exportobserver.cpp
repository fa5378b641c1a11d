#include "cam/exportobserver.h"

#include <mutex>

namespace ORVEX::HOST {

namespace {

struct Observer
{
    std::mutex mutex;
    std::function<void(const ExportOutcome &)> function;
};

Observer &observer()
{
    static Observer instance;
    return instance;
}

} // namespace

void observe_exports(std::function<void(const ExportOutcome &outcome)> function)
{
    const std::lock_guard<std::mutex> lock(observer().mutex);
    observer().function = std::move(function);
}

void tellExportObserver(ExportOutcome outcome)
{
    std::function<void(const ExportOutcome &)> function;
    {
        const std::lock_guard<std::mutex> lock(observer().mutex);
        function = observer().function;
    }
    if (!function)
        return;
    // What they refer to ends with the export.
    outcome.request.note = {};
    outcome.request.options.report = {};
    function(outcome);
}

} // namespace ORVEX::HOST
