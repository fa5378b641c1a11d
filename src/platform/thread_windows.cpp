#include "platform/thread.h"

#include <windows.h>

namespace platform {

BackgroundWork::BackgroundWork() : m_before(GetThreadPriority(GetCurrentThread()))
{
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
}

BackgroundWork::~BackgroundWork()
{
    if (m_before != THREAD_PRIORITY_ERROR_RETURN)
        SetThreadPriority(GetCurrentThread(), m_before);
}

} // namespace platform
