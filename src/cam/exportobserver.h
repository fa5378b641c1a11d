// What becomes of the exports that are asked for with layer_export; for hosts, which show it.
#pragma once

#include "cam/export/exportrequest.h"
#include "run/orvexapi_export.h"

#include <functional>
#include <string>
#include <vector>

namespace ORVEX::HOST {

struct ExportOutcome
{
    enum class State { Started, Written, Failed, Cancelled };

    State state = State::Started;
    std::string job;            // as it was asked for, UTF-8
    cam::ExportRequest request; // without its functions
    std::vector<cam::ExportNote> notes;
    bool isEmpty = false; // of a written file: its layer has no features
    std::string reason;   // of a failure: what was expected and what was found
};

// From now on `observer` is called when an export begins and when it has ended, on the export's thread. It
// must not throw. An empty function ends that.
ORVEX_API_DECL void observe_exports(std::function<void(const ExportOutcome &outcome)> observer);

// For the library itself: hands `outcome` to the observer, if there is one.
void tellExportObserver(ExportOutcome outcome);

} // namespace ORVEX::HOST
