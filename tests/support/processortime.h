// The processor time that this process has used, for tests that must not count what other programs use.
#pragma once

#ifdef _WIN32
#include <windows.h>
#else
#include <ctime>
#endif

// In milliseconds, of all threads together. On Windows clock() would count the time of day.
inline double processorMilliseconds()
{
#ifdef _WIN32
    FILETIME unused, kernel, user;
    GetProcessTimes(GetCurrentProcess(), &unused, &unused, &kernel, &user);
    const auto milliseconds = [](const FILETIME &time) {
        return (time.dwHighDateTime * 4294967296.0 + time.dwLowDateTime) / 10000; // from units of 100 ns
    };
    return milliseconds(kernel) + milliseconds(user);
#else
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
#endif
}
