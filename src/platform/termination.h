// The wish of the system, or of a person at the console, that the program end.
#pragma once

#include <functional>

namespace platform {

// From now on such a wish calls `handler`, on a thread of its own, instead of ending the process at once:
// SIGINT, SIGTERM and SIGHUP, with their numbers; on Windows Ctrl-C, Ctrl-Break and the closing of the
// console, as SIGINT, SIGBREAK and SIGTERM. To be called once.
void onTermination(std::function<void(int signal)> handler);

} // namespace platform
