#include "convert/taskpool.h"

#include <algorithm>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace convert {

TaskPool::TaskPool(int threads, double megabytes, const std::atomic<bool> &cancelled)
    : m_threads(threads), m_megabytes(megabytes), m_cancelled(cancelled)
{
}

void TaskPool::add(Task task)
{
    const auto key = [](const Task &t) { return std::make_tuple(t.rank, -t.megabytes); };
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto next = std::find_if(m_waiting.begin(), m_waiting.end(),
                                   [&](const Task &other) { return key(task) < key(other); });
    m_waiting.insert(next, std::move(task));
    m_changed.notify_all();
}

void TaskPool::run()
{
    std::vector<std::thread> others;
    for (int i = 1; i < m_threads; ++i)
        others.emplace_back([this] { work(); });
    work();
    for (std::thread &other : others)
        other.join();
}

bool TaskPool::take(Task &task)
{
    const auto fitting = std::find_if(m_waiting.begin(), m_waiting.end(), [this](const Task &waiting) {
        return m_running == 0 || m_taken + waiting.megabytes <= m_megabytes;
    });
    if (fitting == m_waiting.end())
        return false;
    task = std::move(*fitting);
    m_waiting.erase(fitting);
    return true;
}

void TaskPool::work()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        if (m_cancelled)
            m_waiting.clear();
        if (m_waiting.empty() && m_running == 0) {
            m_changed.notify_all();
            return;
        }
        Task task;
        if (!take(task)) {
            m_changed.wait(lock);
            continue;
        }
        ++m_running;
        m_taken += task.megabytes;
        lock.unlock();
        task.run();
        lock.lock();
        --m_running;
        m_taken -= task.megabytes;
        m_changed.notify_all();
    }
}

} // namespace convert
