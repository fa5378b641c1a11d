// What the two background jobs have in common: the start on a thread of its own, the progress, and the end.
//
// It adds no fields to the host's progress record, because the host gets a pointer to the job as one.
#pragma once

#include "run/progressvalue.h"

#include <chrono>
#include <future>
#include <mutex>

class BackgroundJob : public ORVEX::COMMON::progress_value<void>
{
protected:
    BackgroundJob() = default;
    // Waits until a running task has ended. The base would destroy its mutex first, which the task still
    // locks.
    ~BackgroundJob()
    {
        if (task.valid())
            task.wait();
    }

    // Runs `work` with `job`, this object, on a new thread; throws std::system_error when there is none.
    template <typename Job>
    void start(Job *job, void (*work)(ORVEX::COMMON::progress_value<void> *))
    {
        task = std::async(std::launch::async, work, job);
    }

    // Whether no task is running: it has ended, in whatever way, or was never started. Waits a microsecond at
    // most, under the lock: the task's set_value may block for that long.
    bool hasEnded()
    {
        std::lock_guard<std::mutex> lock(mutex);
        return !task.valid() || task.wait_for(std::chrono::microseconds(1)) == std::future_status::ready;
    }

    // What the task has reported: 0 to 100, or -1.0.
    double currentValue()
    {
        std::lock_guard<std::mutex> lock(mutex);
        return value;
    }
};
