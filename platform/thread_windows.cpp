#include "platform/thread.h"

#include <windows.h>

void platform::workInBackground()
{
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
}
