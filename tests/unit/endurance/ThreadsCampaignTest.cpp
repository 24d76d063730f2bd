// Platform threads that report everything there is to report while objects come and go: each record is handled once or
// purged with its object, and none is lost. CAMPAIGN_NOTIFICATIONS in the environment sets how many reports are made.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/support/CallList.h"
#include "tests/support/LogTap.h"
#include "tests/support/RecordingPlatform.h"
#include "tests/unit/endurance/Allocations.h"
#include "tests/unit/endurance/CountingBrowser.h"

namespace endurance {
namespace {

using support::RecordingPlatform;
using Object = Embedded::Object;

constexpr std::size_t kThreads = 8;
constexpr std::size_t kTurn = 1000;
constexpr long kBacklog = 500;  // the platform waits for a browser that is this far behind

std::size_t Notifications() {
    const char* wanted = std::getenv("CAMPAIGN_NOTIFICATIONS");
    return wanted != nullptr ? std::strtoul(wanted, nullptr, 10) : 100000;
}

// The records, by what they report; the name is what the log calls it when it is handled.
struct Kind {
    unsigned id;
    std::string_view name;
};
constexpr std::array<Kind, 17> kKinds{{{Object::E_ON_PROGRAMMES_CHANGED, "E_ON_PROGRAMMES_CHANGED"},
                                       {Object::E_ON_PARENTAL_RATING_CH, "E_ON_PARENTAL_RATING_CH"},
                                       {Object::E_ON_STREAM_EVENT, "E_ON_STREAM_EVENT"},
                                       {Object::E_SUSPEND, "E_SUSPEND"},
                                       {Object::E_RESUME, "E_RESUME"},
                                       {Object::E_CHANNEL_CHANGE, "E_CHANNEL_CHANGE"},
                                       {Object::E_TUNE_SUCCESS, "E_TUNE_SUCCESS"},
                                       {Object::E_TUNE_FAIL, "E_TUNE_FAIL"},
                                       {Object::E_SERVICE_NOT_AVAILABLE, "E_SERVICE_NOT_AVAILABLE"},
                                       {Object::E_CH_LOCKED, "E_CH_LOCKED"},
                                       {Object::E_CH_TUNED_LOCKED, "E_CH_TUNED_LOCKED"},
                                       {Object::E_CH_UNLOCKED, "E_CH_UNLOCKED"},
                                       {Object::E_UPDATE_LAYOUT, "E_UPDATE_LAYOUT"},
                                       {Object::E_CH_SCRAMBLED, "E_CH_SCRAMBLED"},
                                       {Object::E_CH_SCRAMBLED_TUNE, "(not logged)"},
                                       {Object::E_CH_UNSCRAMBLED, "E_CH_UNSCRAMBLED"},
                                       {Object::E_SAS_MSG, "E_SAS_MSG"}}};

std::size_t IndexOf(unsigned id) {
    return static_cast<std::size_t>(std::ranges::find(kKinds, id, &Kind::id) - kKinds.begin());
}
std::size_t IndexOf(std::string_view name) {
    return static_cast<std::size_t>(std::ranges::find(kKinds, name, &Kind::name) - kKinds.begin());
}

// One more than there are kinds: a record of a kind that nobody knows would be counted there.
using Counters = std::array<std::atomic<std::size_t>, kKinds.size() + 1>;

std::size_t Sum(const Counters& counters) {
    std::size_t sum = 0;
    for (const auto& counter : counters) sum += counter;
    return sum;
}

void Add(std::atomic<std::size_t>& counter, std::size_t count = 1) {
    counter.fetch_add(count, std::memory_order_relaxed);
}

// What the plug-in logged about its records.
struct Records {
    Counters queued{}, purged{}, handled{};
    std::atomic<std::size_t> dropped = 0, asked = 0, missing = 0;
    std::atomic<long> pending = 0;
};
Records* s_records = nullptr;

// What the call that this thread makes came to.
thread_local std::size_t t_queued = 0, t_dropped = 0;

void CountLine(const char* format, va_list* arguments) {
    const std::string_view line(format);
    if (line == "COipfVideoBroadcast::OnEvent(%d)") {
        Add(s_records->queued[IndexOf(va_arg(*arguments, unsigned))]);
        s_records->pending.fetch_add(1, std::memory_order_relaxed);
        ++t_queued;
    } else if (line == "%s m_npp is NULL!") {
        if (std::string_view(va_arg(*arguments, const char*)) != "OnEvent") return;
        Add(s_records->dropped);
        ++t_dropped;
    } else if (line == "Remove event %d pending in s_asyncEvent map") {
        Add(s_records->purged[IndexOf(va_arg(*arguments, unsigned))]);
        s_records->pending.fetch_sub(1, std::memory_order_relaxed);
    } else if (line == "%s %s") {
        if (std::string_view(va_arg(*arguments, const char*)) != "m_ProcessEvent") return;
        Add(s_records->handled[IndexOf(std::string_view(va_arg(*arguments, const char*)))]);
    } else if (line == "COipfVideoBroadcast::m_HandleAsyncCall()") {
        Add(s_records->asked);
        s_records->pending.fetch_sub(1, std::memory_order_relaxed);
    } else if (line == "Event id %d not in s_asyncEvent map") {
        Add(s_records->missing);
        s_records->pending.fetch_add(1, std::memory_order_relaxed);
    }
}

// The objects that the platform may call.
class Targets {
public:
    void Add(Object* object) {
        const std::lock_guard lock(m_mutex);
        m_targets.push_back(std::make_shared<Target>(object));
    }
    // When this returns no call of the object is under way, as the platform promises for a player that is given back.
    void Remove(const Object* object) {
        std::shared_ptr<Target> removed;
        {
            const std::lock_guard lock(m_mutex);
            const auto found = std::ranges::find(m_targets, object, [](const auto& target) { return target->object; });
            removed = *found;
            m_targets.erase(found);
        }
        while (removed->calls != 0) std::this_thread::yield();
    }
    // False when there is nobody to call.
    template <class Notification>
    bool Call(std::size_t number, Notification notification) {
        std::shared_ptr<Target> target;
        {
            const std::lock_guard lock(m_mutex);
            if (m_targets.empty()) return false;
            target = m_targets[number % m_targets.size()];
            ++target->calls;
        }
        notification(*target->object);
        --target->calls;
        return true;
    }

private:
    struct Target {
        explicit Target(Object* called) : object(called) {}
        Object* const object;
        std::atomic<int> calls = 0;
    };

    std::mutex m_mutex;
    std::vector<std::shared_ptr<Target>> m_targets;
};

constexpr std::size_t kOperations = 17;  // of the listener
constexpr std::size_t kProgrammeChange = 16;

void Notify(Object& object, std::size_t operation, unsigned channel) {
    const auto number = static_cast<unsigned short>(channel);
    switch (operation) {
        case 0:
            return object.Suspend();
        case 1:
            return object.Resume();
        case 2:
            return object.ChannelChanged();
        case 3:
            return object.TuneSuccess(channel);
        case 4:
            return object.TuneFail(channel);
        case 5:
            return object.ServiceNotAvailable(channel);
        case 6:
            return object.ParentalRatingChanged(static_cast<char>(channel));
        case 7:
            return object.ParentalRatingBlocked(channel, true);
        case 8:
            return object.ParentalRatingBlocked(channel, false);
        case 9:
            return object.ParentalRatingUnblocked(channel);
        case 10:
            return object.NoSignal();
        case 11:
            return object.Scrambled(number);
        case 12:
            return object.ScrambledTune(channel);
        case 13:
            return object.Unscrambled(number);
        case 14:
            return object.UpdateLayout();
        case 15:
            return object.OnSASMessageReceived(new SASMessage{4, number, 0, {{7, {1}}}});
        case kProgrammeChange:
            return object.ProgrammeChanged();
    }
}

// The reports that the threads made, and what became of those that no line tells of.
struct Reports {
    std::atomic<std::size_t> made = 0;       // listener operations, and copies of stream events
    std::atomic<std::size_t> coalesced = 0;  // programme changes while one was pending
    std::atomic<std::size_t> lost = 0;       // neither queued nor dropped nor coalesced, or more than one of them
};

class ThreadsCampaign : public ::testing::Test {
protected:
    ThreadsCampaign() {
        platform.Reset();
        s_records = &records;
        browser.onConstruct = [this](std::string_view script) { CountChannel(script); };
        programmes = browser.MakeFunction([this](const NPVariant&) { ++programmesChanges; });
        rights = browser.MakeFunction([this](const NPVariant&) { ++rightsErrors; });
        streamEvents = browser.MakeFunction([this](const NPVariant&) { ++streamEventCalls; });
    }
    void SetUp() override { channels.resize(Notifications() + kThreads + 1); }
    void TearDown() override {
        for (NPObject* function : {programmes, rights, streamEvents}) CountingBrowser::Release(function);
        EXPECT_EQ(browser.Held(), Holdings{});
        platform.ExpectBalanced();
    }

    // What a thread reports with a channel's id, each of which is used once.
    static std::size_t OperationOf(std::size_t channel) {
        return ((channel - 1) / kThreads + (channel - 1) % kThreads) % (kOperations + 1);
    }
    // One thread of the platform.
    void Report(std::size_t thread, std::size_t count) {
        for (std::size_t made = 0; made < count;) {
            if (records.pending.load(std::memory_order_relaxed) > kBacklog) {
                std::this_thread::yield();
                continue;
            }
            const auto channel = static_cast<unsigned>(made * kThreads + thread + 1);
            const std::size_t operation = OperationOf(channel);
            if (operation == kOperations ? DeliverStreamEvent() : CallListener(thread + made, operation, channel))
                ++made;
        }
    }
    bool DeliverStreamEvent() {
        t_queued = t_dropped = 0;
        const bool delivered = platform.DeliverStreamEvent(1, "a name that needs memory of its own", "data");
        Add(reports.made, t_queued);
        Add(reports.lost, t_dropped);  // the objects that get a copy are alive
        return delivered;
    }
    bool CallListener(std::size_t number, std::size_t operation, unsigned channel) {
        return targets.Call(number, [&](Object& object) {
            t_queued = t_dropped = 0;
            Notify(object, operation, channel);
            Add(reports.made);
            const std::size_t records = t_queued + t_dropped;
            if (records == 0 && operation == kProgrammeChange)
                Add(reports.coalesced);
            else if (records != 1)
                Add(reports.lost);
        });
    }

    // The main thread: a page that handles what comes, and after each kTurn calls makes an object and removes one.
    void TurnThePage() {
        for (int i = 0; i < 50 && browser.Async().RunOne(); ++i) ++sinceTurn;
        if (objects.empty() || sinceTurn >= kTurn) {
            sinceTurn = 0;
            MakeOne();
            if (objects.size() > kObjects) EndOne();
        }
        support::CallList::Instance().Clear();
        platform.windows.clear();
    }
    void MakeOne() {
        objects.push_back(std::make_unique<Embedded>(browser));
        Embedded& object = *objects.back();
        browser.Set(object.Get(), "onProgrammesChanged", programmes);
        browser.Set(object.Get(), "onDRMRightsError", rights);
        browser.Set(object.Get(), "onStreamEvent", streamEvents);
        if (platform.HandedOut() == 0) browser.Call(object.Get(), "bindToCurrentChannel");
        targets.Add(object.Get());
        ++objectsMade;
    }
    // Every second object is still called for a while after its invalidation.
    void EndOne() {
        Embedded& oldest = *objects.front();
        for (const char* handler : {"onProgrammesChanged", "onDRMRightsError", "onStreamEvent"}) {
            browser.Set(oldest.Get(), handler, nullptr);
        }
        targets.Remove(oldest.Get());
        objects.erase(objects.begin());
        if (++ended % 2 == 0 && !objects.empty()) objects.front()->Invalidate();
    }

    // All threads report while the page turns; at the end nobody is left.
    void Run(std::size_t notifications) {
        const support::LogTap tap(CountLine);
        std::atomic<std::size_t> running = kThreads;
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < kThreads; ++i) {
            threads.emplace_back([this, i, &running, each = notifications / kThreads] {
                Report(i, each);
                --running;
            });
        }
        while (running != 0) TurnThePage();
        for (std::thread& thread : threads) thread.join();
        browser.Async().RunAll();
        EXPECT_EQ(records.pending, 0) << "records that the browser was not asked to have handled";
        while (!objects.empty()) EndOne();
        browser.Async().RunAll();
        support::CallList::Instance().Clear();
    }

    void ExpectEachReportBecameOneRecord() {
        EXPECT_EQ(reports.lost, 0u);
        EXPECT_EQ(reports.made, Sum(records.queued) + records.dropped + reports.coalesced);
        EXPECT_GE(reports.made, Notifications() / kThreads * kThreads / (kOperations + 1) * kOperations);
        EXPECT_GT(records.dropped, 0u);
        EXPECT_EQ(records.queued.back(), 0u) << "of an unknown kind";
    }
    void ExpectEachRecordWasHandledOrPurged() {
        EXPECT_EQ(Sum(records.queued), HandledInAll() + Sum(records.purged));
        for (std::size_t kind = 0; kind < kKinds.size(); ++kind) {
            if (kKinds[kind].id == Object::E_CH_SCRAMBLED_TUNE) continue;
            EXPECT_EQ(records.queued[kind], records.handled[kind] + records.purged[kind]) << kKinds[kind].name;
            EXPECT_GT(records.handled[kind], 0u) << kKinds[kind].name;
        }
    }
    // The page heard of each record that was handled, once.
    void ExpectThePageHeardOfEach() {
        EXPECT_EQ(programmesChanges, HandledOf(Object::E_ON_PROGRAMMES_CHANGED));
        EXPECT_EQ(streamEventCalls, HandledOf(Object::E_ON_STREAM_EVENT));
        EXPECT_EQ(rightsErrors, HandledOf(Object::E_CH_SCRAMBLED) + HandledOf(Object::E_CH_UNSCRAMBLED) +
                                    HandledOf(Object::E_SAS_MSG));
        std::array<std::size_t, kOperations + 1> told{};
        for (std::size_t channel = 1; channel < channels.size(); ++channel) {
            EXPECT_LE(channels[channel], 1) << "channel " << channel;
            told[OperationOf(channel)] += channels[channel];
        }
        EXPECT_EQ(told[3], HandledOf(Object::E_TUNE_SUCCESS));
        EXPECT_EQ(told[5], HandledOf(Object::E_SERVICE_NOT_AVAILABLE));
        EXPECT_EQ(told[8], HandledOf(Object::E_CH_TUNED_LOCKED));
        EXPECT_EQ(told[12], HandledInAll() - Sum(records.handled)) << "scrambled tunes";
        EXPECT_LE(told[4], HandledOf(Object::E_TUNE_FAIL)) << "which a lost signal is, too";
    }
    std::size_t HandledInAll() const { return records.asked - records.missing; }
    std::size_t HandledOf(unsigned id) const { return records.handled[IndexOf(id)]; }

    void CountChannel(std::string_view script) {
        constexpr std::string_view kBeginning = "new Channel(\"key\", ";
        if (!script.starts_with(kBeginning)) return;
        std::size_t channel = 0;
        std::from_chars(script.data() + kBeginning.size(), script.data() + script.size(), channel);
        ++channels.at(channel);
    }

    static constexpr std::size_t kObjects = 4;

    RecordingPlatform& platform = RecordingPlatform::Instance();
    Records records;
    CountingBrowser browser;
    Targets targets;
    Reports reports;
    std::vector<std::unique_ptr<Embedded>> objects;
    std::vector<unsigned char> channels;  // how often each was told to the page
    std::size_t sinceTurn = 0, objectsMade = 0, ended = 0;
    std::size_t programmesChanges = 0, rightsErrors = 0, streamEventCalls = 0;
    NPObject *programmes, *rights, *streamEvents;
};

TEST_F(ThreadsCampaign, EachReportOfAThreadIsHandledOrPurgedOnce) {
    const std::size_t notifications = Notifications();
    const auto begin = std::chrono::steady_clock::now();
    Run(notifications);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    ExpectEachReportBecameOneRecord();
    ExpectEachRecordWasHandledOrPurged();
    ExpectThePageHeardOfEach();
    std::printf("%zu reports to %zu objects in %.1f s: %zu handled, %zu purged, %zu dropped, %zu coalesced\n",
                reports.made.load(), objectsMade, seconds.count(), HandledInAll(), Sum(records.purged),
                records.dropped.load(), reports.coalesced.load());
}

// Twice: what a first run leaves in containers that stay is there before the second.
TEST_F(ThreadsCampaign, NoThreadLeavesARecordOrItsPayloadBehind) {
    const auto run = [this] {
        Run(5000);
        platform.ExpectBalanced();
        platform.Reset();  // its books too
        return Allocations::Alive().blocks - static_cast<std::ptrdiff_t>(objectsMade);
    };
    const auto blocks = run();
    EXPECT_EQ(run(), blocks) << "beside the browser's record of each instance";
}

}  // namespace
}  // namespace endurance
