// The television's thread, and the gate before the page's listener.
#include <gtest/gtest.h>

#include <atomic>
#include <future>

#include "television/ListenerGate.h"
#include "television/TaskQueue.h"
#include "tests/television/RecordingListener.h"

namespace television::test {
namespace {

using namespace std::chrono_literals;

TEST(TaskQueue, DoesTasksInTheirOrderOnOneThread) {
    TaskQueue queue;
    std::vector<int> done;
    std::vector<std::thread::id> threads;
    for (int i = 0; i < 100; ++i)
        queue.Post([&, i] {
            done.push_back(i);
            threads.push_back(std::this_thread::get_id());
        });
    queue.Drain();
    ASSERT_EQ(done.size(), 100u);
    for (int i = 0; i < 100; ++i) EXPECT_EQ(done[static_cast<std::size_t>(i)], i);
    EXPECT_EQ(std::count(threads.begin(), threads.end(), threads[0]), 100);
    EXPECT_NE(threads[0], std::this_thread::get_id());
}

TEST(TaskQueue, DoesWhatIsDueBeforeWhatIsNot) {
    TaskQueue queue;
    std::vector<int> done;
    std::promise<void> allPosted, last;
    queue.PostAt(TaskQueue::Clock::now() + 1h, [&] { done.push_back(4); });
    queue.Post([&] { allPosted.get_future().wait(); });  // else one is done before a sooner one is posted
    const auto now = TaskQueue::Clock::now();
    queue.PostAt(now + 60ms, [&] {
        done.push_back(3);
        last.set_value();
    });
    queue.PostAt(now + 30ms, [&] { done.push_back(2); });
    queue.PostAt(now, [&] { done.push_back(1); });
    allPosted.set_value();
    last.get_future().wait();
    EXPECT_EQ(done, (std::vector{1, 2, 3}));
}

TEST(TaskQueue, DropsWhatIsNotDueWhenItStops) {
    bool done = false;
    {
        TaskQueue queue;
        queue.PostAt(TaskQueue::Clock::now() + 1h, [&] { done = true; });
        queue.Drain();
    }
    EXPECT_FALSE(done);
}

TEST(ListenerGate, CallsOnlyWhatIsStillWanted) {
    Watch watch;
    RecordingListener listener(watch);
    ListenerGate gate;
    const auto tell = [](IBroadcastPlayerListener& l) { l.NoSignal(); };
    EXPECT_FALSE(gate.Tell([] { return true; }, tell)) << "there is no listener";
    gate.Set(&listener);
    EXPECT_FALSE(gate.Tell([] { return false; }, tell));
    EXPECT_TRUE(gate.Tell([] { return true; }, tell));
    EXPECT_EQ(listener.Told(), std::vector<std::string>{"NoSignal"});
}

TEST(ListenerGateThreads, NoCallIsInProgressWhenTheListenerIsTakenAway) {
    Watch watch;
    ListenerGate gate;
    TaskQueue queue;
    std::atomic<bool> stop = false;
    std::function<void()> tell = [&] {
        gate.Tell([] { return true; }, [](IBroadcastPlayerListener& l) { l.ChannelChanged(); });
        if (!stop) queue.Post(tell);
    };
    queue.Post(tell);
    for (int i = 0; i < 1000; ++i) {
        auto listener = std::make_unique<RecordingListener>(watch);
        gate.Set(listener.get());
        std::this_thread::yield();
        gate.Set(nullptr);
        listener.reset();
    }
    stop = true;
    queue.Drain();
}

TEST(ListenerGateThreads, WhatChangesWhileItIsClosedIsSeenByEveryLaterCall) {
    Watch watch;
    RecordingListener listener(watch);
    ListenerGate gate;
    gate.Set(&listener);
    TaskQueue queue;
    std::atomic<int> request = 0;
    for (int i = 1; i <= 1000; ++i) {
        {
            const auto closed = gate.Close();
            request = i;
        }
        const auto told = listener.Told().size();
        for (const int asked : {i - 1, i})
            queue.Post([&, asked] {
                gate.Tell([&] { return request == asked; }, [](IBroadcastPlayerListener& l) { l.ChannelChanged(); });
            });
        if (i % 2) queue.Drain();
        EXPECT_LE(told, static_cast<std::size_t>(i));
    }
    queue.Drain();
    EXPECT_LE(listener.Told().size(), 1000u);
    EXPECT_GE(listener.Told().size(), 500u);
}

}  // namespace
}  // namespace television::test
