#include "platform/termination.h"

#include <cerrno>
#include <csignal>
#include <thread>
#include <unistd.h>

namespace platform {

namespace {

int signalPipe[2] = {-1, -1};

// Only what may be called at any instruction: the rest is done by the thread that reads the pipe.
void tellThread(int signal)
{
    const int before = errno;
    const auto number = static_cast<unsigned char>(signal);
    [[maybe_unused]] const ssize_t written = write(signalPipe[1], &number, 1);
    errno = before;
}

} // namespace

void onTermination(std::function<void(int signal)> handler)
{
    if (pipe(signalPipe) != 0)
        return;
    std::thread([handler = std::move(handler)] {
        unsigned char number = 0;
        for (;;) {
            const ssize_t count = read(signalPipe[0], &number, 1);
            if (count == 1)
                handler(number);
            else if (count == 0 || errno != EINTR)
                return;
        }
    }).detach();
    struct sigaction action = {};
    action.sa_handler = tellThread;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
}

} // namespace platform
