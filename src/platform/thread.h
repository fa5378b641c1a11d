// The priority of threads.
#pragma once

namespace platform {

// While the object lives, the calling thread works in the background: it steps back whenever the user
// interface, or another program, wants the processor. Afterwards it has the priority that it had before,
// where the system lets it become more important again: a thread may belong to a pool that gives it other
// work. Where threads have no priority of their own, nothing happens.
class BackgroundWork
{
public:
    BackgroundWork();
    ~BackgroundWork();
    BackgroundWork(const BackgroundWork &) = delete;
    BackgroundWork &operator=(const BackgroundWork &) = delete;

private:
    int m_before = 0; // the system's number for the priority
};

} // namespace platform
