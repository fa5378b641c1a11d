// camconvert info.
#pragma once

#include "convert/arguments.h"
#include "convert/console.h"

#include <atomic>

namespace convert {

ExitCode runInfo(const InfoArguments &arguments, Console &console, const std::atomic<bool> &cancelled);

} // namespace convert
