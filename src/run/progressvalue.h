// The host's progress record of a background task. The host declares it in a header, so that host and plug-in
// build the same code: the host's library writes the progress through a pointer to it.
#pragma once

#include <future>
#include <mutex>
#include <string>

namespace ORVEX::COMMON {

template <typename Result>
class progress_value
{
public:
    // Stores `v` as the task's progress (0 to 100, or -1.0 after a failure). When a cancel has been requested
    // it stores -1.0 instead and throws the text "progress_cancle", which ends the task.
    void set_value(double v)
    {
        std::lock_guard<std::mutex> lock(mutex);
        if (cancel) {
            value = -1.0;
            throw "progress_cancle";
        }
        value = v;
    }

    std::string name;
    std::string message = "Start calculating, please wait!";
    std::future<Result> task;
    double value = 0.0; // guarded by mutex
    std::mutex mutex;
    bool cancel = false; // guarded by mutex
};

} // namespace ORVEX::COMMON
