// How important the system takes a thread to be.
#pragma once

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/resource.h>
#endif

// Of the calling thread: 0 is the ordinary one, less is less important.
inline int threadPriority()
{
#ifdef _WIN32
    return GetThreadPriority(GetCurrentThread());
#else
    return -getpriority(PRIO_PROCESS, 0);
#endif
}
