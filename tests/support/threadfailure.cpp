// The limit is put before the C library's own function: the program's symbols come before those of the
// libraries.
#include "tests/support/threadfailure.h"

#include <QtGlobal>

#include <atomic>
#include <cerrno>

#include <dlfcn.h>
#include <pthread.h>

namespace {

const int Unlimited = -1;
std::atomic<int> threadsLeft{Unlimited};

bool takeThread()
{
    int left = threadsLeft;
    while (left != Unlimited) {
        if (left == 0)
            return false;
        if (threadsLeft.compare_exchange_weak(left, left - 1))
            return true;
    }
    return true;
}

} // namespace

ThreadFailure::ThreadFailure(int allowed)
{
    threadsLeft = allowed;
}

ThreadFailure::~ThreadFailure()
{
    threadsLeft = Unlimited;
}

extern "C" Q_DECL_EXPORT int pthread_create(pthread_t *thread, const pthread_attr_t *attributes,
                                            void *(*run)(void *), void *argument) noexcept
{
    using Create = int (*)(pthread_t *, const pthread_attr_t *, void *(*)(void *), void *);
    static const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
    return takeThread() ? create(thread, attributes, run, argument) : EAGAIN;
}
