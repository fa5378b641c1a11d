// camconvert verify.
#pragma once

#include "convert/arguments.h"
#include "convert/console.h"

#include <atomic>

namespace convert {

ExitCode runVerify(const LayerArguments &arguments, Console &console, const std::atomic<bool> &cancelled);

} // namespace convert
