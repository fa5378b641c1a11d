// How important the system takes a thread to be.
#pragma once

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/resource.h>

#include <thread>
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

// Whether a thread may become more important again, which takes a privilege on some systems.
inline bool mayRaisePriority()
{
#ifdef _WIN32
    return true;
#else
    bool mayRaise = false;
    std::thread([&mayRaise] {
        const int before = getpriority(PRIO_PROCESS, 0);
        setpriority(PRIO_PROCESS, 0, before + 1);
        mayRaise = setpriority(PRIO_PROCESS, 0, before) == 0;
    }).join();
    return mayRaise;
#endif
}
