// The module that this code was linked into.
#pragma once

namespace platform {

// Keeps the module's code in memory until the process ends, also when the host unloads it. Qt holds on to
// code of the module: to the functions of meta-types, and to the windows that are still open.
void keepModuleLoaded();

} // namespace platform
