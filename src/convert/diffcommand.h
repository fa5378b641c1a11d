// camconvert diff.
#pragma once

#include "convert/arguments.h"
#include "convert/console.h"

#include <atomic>

namespace convert {

// NotProven: there are differences.
ExitCode runDiff(const DiffArguments &arguments, Console &console, const std::atomic<bool> &cancelled);

} // namespace convert
