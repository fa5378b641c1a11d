// A system that has no more threads to give, for tests of what happens then.
#pragma once

// While it lives, only `allowed` more threads can be started in this process; further ones fail as at the
// system's limit.
class ThreadFailure
{
public:
    explicit ThreadFailure(int allowed);
    ~ThreadFailure();
    ThreadFailure(const ThreadFailure &) = delete;
    ThreadFailure &operator=(const ThreadFailure &) = delete;
};
