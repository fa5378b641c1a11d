// Runs tasks side by side, as many as there are threads and as their memory allows. Tasks may add others.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>

namespace convert {

struct Task
{
    int rank = 0;              // lower ones go first; of equal ranks the larger ones
    double megabytes = 0.0;    // an estimate
    std::function<void()> run; // must not throw
};

class TaskPool
{
public:
    // Tasks begin while those at work stay within `megabytes` together; one that is larger runs alone. Once
    // `cancelled` is set no further one begins.
    TaskPool(int threads, double megabytes, const std::atomic<bool> &cancelled);

    void add(Task task);
    // Returns when all tasks have ended, those that were added meanwhile included.
    void run();

private:
    void work();
    bool take(Task &task); // under the lock

    const int m_threads;
    const double m_megabytes;
    const std::atomic<bool> &m_cancelled;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::list<Task> m_waiting; // in the order in which they are to begin
    int m_running = 0;
    double m_taken = 0.0; // megabytes
};

} // namespace convert
