#include "platform/thread.h"

#include <sys/resource.h>
#include <unistd.h>

void platform::workInBackground()
{
#ifdef __linux__
    // A third of the processor against the main thread. On Linux each thread has its own value, and "who" 0
    // is the calling one; elsewhere it would be the whole process. More than the greatest value is that one.
    setpriority(PRIO_PROCESS, 0, getpriority(PRIO_PROCESS, static_cast<id_t>(getpid())) + 5);
#endif
}
