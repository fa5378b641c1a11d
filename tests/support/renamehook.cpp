// The hook is put before the C library's own functions: the program's symbols come before those of the
// libraries.
#include "tests/support/renamehook.h"

#include <QtGlobal>

#include <cerrno>

#include <dlfcn.h>

namespace {

RenameHook::Before &hook()
{
    static RenameHook::Before before;
    return before;
}

bool isAllowed(const char *from, const char *to, bool atomic)
{
    const int error = hook() ? hook()(from, to, atomic) : 0;
    if (error != 0)
        errno = error;
    return error == 0;
}

} // namespace

RenameHook::RenameHook(Before before)
{
    hook() = std::move(before);
}

RenameHook::~RenameHook()
{
    hook() = nullptr;
}

extern "C" Q_DECL_EXPORT int rename(const char *from, const char *to) noexcept
{
    using Rename = int (*)(const char *, const char *);
    static const auto real = reinterpret_cast<Rename>(dlsym(RTLD_NEXT, "rename"));
    return isAllowed(from, to, false) ? real(from, to) : -1;
}

extern "C" Q_DECL_EXPORT int renameat2(int fromFolder, const char *from, int toFolder, const char *to,
                                       unsigned flags) noexcept
{
    using Rename = int (*)(int, const char *, int, const char *, unsigned);
    static const auto real = reinterpret_cast<Rename>(dlsym(RTLD_NEXT, "renameat2"));
    return isAllowed(from, to, true) ? real(fromFolder, from, toFolder, to, flags) : -1;
}
