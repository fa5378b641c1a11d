#include "platform/thread.h"

#include <sys/resource.h>
#include <unistd.h>

namespace platform {

#ifdef __linux__

// On Linux each thread has its own value, and "who" 0 is the calling one; elsewhere it would be the whole
// process.

BackgroundWork::BackgroundWork() : m_before(getpriority(PRIO_PROCESS, 0))
{
    // A third of the processor against the main thread. More than the greatest value is that one.
    setpriority(PRIO_PROCESS, 0, getpriority(PRIO_PROCESS, static_cast<id_t>(getpid())) + 5);
}

BackgroundWork::~BackgroundWork()
{
    setpriority(PRIO_PROCESS, 0, m_before); // refused without a privilege
}

#else

BackgroundWork::BackgroundWork() = default;
BackgroundWork::~BackgroundWork() = default;

#endif

} // namespace platform
