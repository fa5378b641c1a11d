#include "platform/thread.h"

#include <algorithm>

#include <sys/resource.h>

void platform::workInBackground()
{
#ifdef __linux__
    // A third of the processor against a thread of ordinary priority. On Linux each thread has its own, and
    // "who" 0 is the calling one; elsewhere it would be the whole process.
    const int nice = 5;
    setpriority(PRIO_PROCESS, 0, std::max(nice, getpriority(PRIO_PROCESS, 0)));
#endif
}
