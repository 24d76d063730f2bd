// The thread behind the queue.
#include "television/TaskQueue.h"

#include <future>

namespace television {

TaskQueue::TaskQueue() : m_thread([this] { Run(); }) {}

void TaskQueue::Stop() {
    {
        std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable()) m_thread.join();
}

void TaskQueue::PostAt(Clock::time_point when, Task task) {
    {
        std::lock_guard lock(m_mutex);
        m_tasks.emplace(when, std::move(task));
    }
    m_changed.notify_all();
}

void TaskQueue::Drain() {
    std::promise<void> done;
    Post([&done] { done.set_value(); });
    done.get_future().wait();
}

void TaskQueue::Run() {
    std::unique_lock lock(m_mutex);
    while (!m_stop) {
        if (m_tasks.empty()) {
            m_changed.wait(lock);
        } else if (m_tasks.begin()->first > Clock::now()) {
            m_changed.wait_until(lock, m_tasks.begin()->first);
        } else {
            const Task task = std::move(m_tasks.extract(m_tasks.begin()).mapped());
            lock.unlock();
            task();
            lock.lock();
        }
    }
}

}  // namespace television
