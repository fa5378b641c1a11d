#include "platform/module.h"

#include <dlfcn.h>

void platform::keepModuleLoaded()
{
    Dl_info module = {};
    if (!dladdr(reinterpret_cast<void *>(&keepModuleLoaded), &module))
        return;
    // RTLD_NODELETE stays with the module when the handle is given back.
    if (void *handle = dlopen(module.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE))
        dlclose(handle);
}
