// Threads of the platform that notify. Many of them, while objects come and go: ../endurance/ThreadsCampaignTest.cpp.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

using namespace std::chrono_literals;

// How many records the log says were queued, dropped, purged, handled, and asked for without being there.
struct Counts {
    std::size_t queued = 0;
    std::size_t dropped = 0;
    std::size_t purged = 0;
    std::size_t handled = 0;

    static Counts OfLog() {
        Counts counts;
        for (const std::string& line : support::Log::Instance().Texts()) {
            counts.queued += line.starts_with("COipfVideoBroadcast::OnEvent(") ? 1 : 0;
            counts.dropped += line == "OnEvent m_npp is NULL!" ? 1 : 0;
            counts.purged += line.starts_with("Remove event ") ? 1 : 0;
            counts.handled += line == "COipfVideoBroadcast::m_HandleAsyncCall()" ? 1 : 0;
            counts.handled -= line.starts_with("Event id ") ? 1 : 0;
        }
        return counts;
    }
};

class Threads : public ObjectTest {
protected:
    // Runs `work` on threads of the platform until all are through; meanwhile `main` runs on the main thread.
    static void Run(std::size_t threads, const std::function<void(std::size_t)>& work,
                    const std::function<void()>& main) {
        std::atomic<std::size_t> running = threads;
        std::vector<std::thread> platformThreads;
        for (std::size_t i = 0; i < threads; ++i) {
            platformThreads.emplace_back([&, i] {
                work(i);
                --running;
            });
        }
        while (running != 0) main();
        for (std::thread& thread : platformThreads) thread.join();
    }
    // Some of the asynchronous calls, so that others are pending when objects end.
    void RunSome() {
        for (int i = 0; i < 20; ++i) browser.Async().RunOne();
    }
    // Another thread notifies the object, which must outlive it: whether that came to an end within reasonable time.
    static bool AnotherThreadGetsThrough(Object& object) {
        auto done = std::make_shared<std::promise<void>>();
        std::future<void> result = done->get_future();
        std::thread([&object, done] {
            object.UpdateLayout();
            done->set_value();
        }).detach();
        return result.wait_for(10s) == std::future_status::ready;
    }
};

// The browser as real ones are that run nothing but count: the numbers that were asked for.
std::mutex s_numbersMutex;
std::vector<std::uintptr_t> s_numbers;

TEST_F(Threads, EveryRecordIsAskedForWhateverTheOthersDo) {
    constexpr std::size_t kThreads = 3;
    constexpr std::size_t kEach = 12000;
    support::Log::Instance().SetLevel(0);
    s_numbers.clear();
    browser.Functions()->pluginthreadasynccall = [](NPP, void (*)(void*), void* data) {
        const std::lock_guard lock(s_numbersMutex);
        s_numbers.push_back(reinterpret_cast<std::uintptr_t>(data));
    };
    Probed object(browser);
    Run(kThreads, [&](std::size_t) {
        for (std::size_t i = 0; i < kEach; ++i) object->UpdateLayout();
    }, [] { std::this_thread::yield(); });

    std::ranges::sort(s_numbers);
    const auto [first, last] = std::ranges::minmax_element(s_numbers);
    EXPECT_EQ(*last - *first + 1, kThreads * kEach);
    const auto repeated = std::ranges::unique(s_numbers);
    EXPECT_EQ(std::ranges::distance(s_numbers.begin(), repeated.begin()),
              static_cast<std::ptrdiff_t>(kThreads * kEach));
}

TEST_F(Threads, ALivingObjectHandlesEveryNotificationOnce) {
    constexpr std::size_t kThreads = 3;
    constexpr std::size_t kEach = 12000;
    support::Log::Instance().SetLevel(0);
    Probed object(browser);
    // Ids without an action are counted by the error that each of them logs.
    Run(kThreads, [&](std::size_t thread) {
        for (std::size_t i = 0; i < kEach; ++i) object->OnEvent({2000 + static_cast<unsigned>(thread), 0});
    }, [&] { Pump(); });
    Pump();
    for (std::size_t thread = 0; thread < kThreads; ++thread) {
        ExpectLogged(0, "Recieved event " + std::to_string(2000 + thread) + " in m_OnEvent()", kEach);
    }
}

TEST_F(Threads, ThePlatformNotifiesWhileThePageTakesAndReleasesThePlayer) {
    constexpr std::size_t kEach = 3000;
    support::Log::Instance().SetLevel(0);
    Page();
    const std::function<void(IBroadcastPlayerListener&)> notifications[] = {
        [](IBroadcastPlayerListener& listener) { listener.ScrambledTune(0); },
        [](IBroadcastPlayerListener& listener) { listener.TuneSuccess(0); },
        [](IBroadcastPlayerListener& listener) { listener.UpdateLayout(); }};
    Run(std::size(notifications), [&](std::size_t thread) {
        for (std::size_t delivered = 0; delivered < kEach;) {
            if (platform.Notify(notifications[thread])) ++delivered;
        }
    }, [&] {
        Page().Call("nextChannel");
        RunSome();
        Page().Call("release");
    });
    Pump();
    EXPECT_EQ(platform.HandedOut(), 0u);
    EXPECT_EQ(browser.Async().Pending(), 0u);
}

TEST_F(Threads, TheBrowserIsAskedWithoutTheLock) {
    static Object* other;
    static std::atomic<bool> throughHeld;
    static std::atomic<int> depth;
    const Probed asked(browser);
    other = asked.Get();
    throughHeld = false;
    depth = 0;
    browser.Functions()->pluginthreadasynccall = [](NPP, void (*)(void*), void*) {
        if (depth++ == 0) throughHeld = AnotherThreadGetsThrough(*other);
    };
    Probed object(browser);
    object->UpdateLayout();
    EXPECT_TRUE(throughHeld);
    throughHeld = false;
    depth = 0;
    platform.DeliverStreamEvent(1, "name");
    EXPECT_TRUE(throughHeld);
}

TEST_F(Threads, ScriptRunsWithoutTheLock) {
    const Probed other(browser);
    bool through = false;
    SetHandler("onPlayStateChange", [&] { through = AnotherThreadGetsThrough(*other); });
    Native().ChannelChanged();
    Pump();
    EXPECT_TRUE(through);
}

TEST_F(Threads, ThePlayerIsGivenBackWithoutTheLock) {
    const Probed other(browser);
    bool through = false;
    When("browser.ReleaseBroadcastPlayer", [&] { through = AnotherThreadGetsThrough(*other); });
    Present();
    Page().Call("release");
    EXPECT_TRUE(through);
    through = false;
    Present();
    Page().Invalidate();
    EXPECT_TRUE(through);
}

TEST_F(Threads, InvalidationForgetsTheObjectWithTheLockHeld) {
    const Probed other(browser);
    std::promise<void> queued;
    std::future<void> result = queued.get_future();
    std::thread notifier;
    When("browser.IsMediaPlaybackMode", [&, first = std::make_shared<bool>(true)] {
        if (!std::exchange(*first, false)) return;
        notifier = std::thread([&] {
            other->UpdateLayout();
            queued.set_value();
        });
        EXPECT_EQ(result.wait_for(20ms), std::future_status::timeout);
    });
    Page().Invalidate();
    EXPECT_EQ(result.wait_for(10s), std::future_status::ready);
    notifier.join();
}

TEST_F(Threads, InvalidationWaitsForACallThatQueuesAndShutsOutLaterOnes) {
    constexpr int kRounds = 100;
    browser.pendingCallsEndWithInstance = false;
    for (int round = 0; round < kRounds; ++round) {
        Probed object(browser);
        ClearLog();
        std::atomic<bool> started = false;
        std::thread notifier([&] {
            started = true;
            for (int i = 0; i < 10; ++i) object->UpdateLayout();
        });
        while (!started) std::this_thread::yield();
        object.Invalidate();
        notifier.join();
        Pump();
        const Counts counts = Counts::OfLog();
        ASSERT_EQ(counts.queued + counts.dropped, 10u);
        ASSERT_EQ(counts.queued, counts.purged);
        ASSERT_EQ(counts.handled, 0u);
    }
}

}  // namespace
}  // namespace videobroadcast
