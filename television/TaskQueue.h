// One thread that does what is posted, in order: the television's own.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace television {

class TaskQueue {
public:
    using Clock = std::chrono::steady_clock;
    using Task = std::function<void()>;

    TaskQueue();
    ~TaskQueue() { Stop(); }
    TaskQueue(const TaskQueue&) = delete;
    TaskQueue& operator=(const TaskQueue&) = delete;

    // Any thread. Tasks that are due are done in the order of their times, and of being posted at equal ones.
    void Post(Task task) { PostAt(Clock::now(), std::move(task)); }
    void PostAt(Clock::time_point when, Task task);
    // Ends the thread after the task under way; what is still queued, or is posted later, is not done.
    void Stop();
    // Waits until everything that was due when it was called is done. Not on the queue's own thread, not after Stop.
    void Drain();

private:
    void Run();

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::multimap<Clock::time_point, Task> m_tasks;
    bool m_stop = false;
    std::thread m_thread;
};

}  // namespace television
