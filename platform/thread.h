// The priority of threads.
#pragma once

namespace platform {

// The calling thread works in the background: it steps back whenever the user interface, or another program,
// wants the processor. Not every system lets it become more important again, so this is for threads that do
// nothing else. Where threads have no priority of their own, nothing happens.
void workInBackground();

} // namespace platform
