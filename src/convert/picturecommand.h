// camconvert picture.
#pragma once

#include "convert/arguments.h"
#include "convert/console.h"

#include <atomic>

namespace convert {

ExitCode runPicture(const PictureArguments &arguments, Console &console, const std::atomic<bool> &cancelled);

} // namespace convert
