// A small module that keeps itself in memory when it is asked to, and remembers a number while it is there.
#include "platform/module.h"

#include <QtGlobal>

namespace {
int number = 0;
}

extern "C" Q_DECL_EXPORT void keep()
{
    platform::keepModuleLoaded();
}

extern "C" Q_DECL_EXPORT void remember(int value)
{
    number = value;
}

extern "C" Q_DECL_EXPORT int remembered()
{
    return number;
}
