// The priority of threads.
#pragma once

namespace platform {

// The calling thread works in the background: it steps back whenever the user interface, or another program,
// wants the processor. A thread can be made no more important again on every system, so this is for threads
// that do nothing else. Where the system has no such thing, nothing happens.
void workInBackground();

} // namespace platform
