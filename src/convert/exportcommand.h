// camconvert export.
#pragma once

#include "convert/arguments.h"
#include "convert/console.h"

#include <atomic>

namespace convert {

// Ends early, with what has been written in place and nothing half-written, once `cancelled` is set.
ExitCode runExport(const ExportArguments &arguments, Console &console, const std::atomic<bool> &cancelled);

} // namespace convert
