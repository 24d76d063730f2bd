// A page that runs for days: what comes a hundred thousand times leaves the heap and the browser's books as they were.
#include <gtest/gtest.h>

#include <charconv>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/IJSChannelCache.h"
#include "tests/support/CallList.h"
#include "tests/support/Log.h"
#include "tests/support/RecordingPlatform.h"
#include "tests/unit/endurance/Allocations.h"
#include "tests/unit/endurance/CountingBrowser.h"

namespace endurance {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kRounds = 10000;
#else
constexpr int kRounds = 100000;
#endif
constexpr int kWarmUp = 500;  // until every container has the size that it needs

using support::RecordingPlatform;

// One object with all its handlers and listeners, whose page reads everything that an event has.
class Growth : public ::testing::Test {
protected:
    Growth() {
        platform.Reset();
        support::CallList::Instance().Reset();
        support::Log::Instance().SetLevel(-1);
        browser.onConstruct = [](std::string_view script) { GiveBackTheHoldOf(script); };
        reader = browser.MakeFunction([this](const NPVariant& argument) { ReadAll(argument); });
    }
    void SetUp() override { Embed(); }
    void TearDown() override {
        for (const char* handler : kHandlers) EXPECT_TRUE(browser.Set(object->Get(), handler, nullptr));
        for (const char* type : kTypes) {
            EXPECT_TRUE(browser.Call(object->Get(), "removeEventListener", {type, reader, false}));
        }
        object.reset();
        CountingBrowser::Release(reader);
        platform.ExpectBalanced();
        EXPECT_EQ(browser.Held(), Holdings{});
        for (unsigned id = 1; id <= kChannels; ++id) EXPECT_EQ(platform.Holds(id), 0) << id;
    }

    void Embed() {
        object.emplace(browser);
        for (const char* handler : kHandlers) EXPECT_TRUE(browser.Set(object->Get(), handler, reader));
        for (const char* type : kTypes) {
            EXPECT_TRUE(browser.Call(object->Get(), "addEventListener", {type, reader, false}));
        }
    }
    void Pump() {
        browser.Async().RunAll();
        support::CallList::Instance().Clear();
        platform.windows.clear();
    }
    // What `round` leaves behind after the first few times is what it leaves after all of them.
    void ExpectNoGrowth(int rounds, const std::function<void(int)>& round) {
        for (int i = 0; i < kWarmUp; ++i) round(i);
        const Holdings held = browser.Held();
        const Allocations alive = Allocations::Alive();
        for (int i = 0; i < rounds; ++i) round(i);
        const Allocations now = Allocations::Alive();
        EXPECT_EQ(now.blocks, alive.blocks);
        EXPECT_EQ(now.bytes, alive.bytes);
        EXPECT_EQ(browser.Held().objects, held.objects);
        EXPECT_EQ(browser.Held().references, held.references);
        EXPECT_EQ(browser.Held().blocks, held.blocks);
        EXPECT_GT(reads, static_cast<long>(rounds));
    }
    NPObject* Function() const { return reader; }

    static constexpr unsigned kChannels = 50;
    static constexpr const char* kHandlers[] = {"onChannelChangeError",
                                                "onChannelChangeSucceeded",
                                                "onPlayStateChange",
                                                "onFullScreenChange",
                                                "onFocus",
                                                "onBlur",
                                                "onProgrammesChanged",
                                                "onParentalRatingChange",
                                                "onParentalRatingError",
                                                "onDRMRightsError",
                                                "onStreamEvent"};
    static constexpr const char* kTypes[] = {"ChannelChangeError", "ChannelChangeSucceeded", "PlayStateChange",
                                             "ProgrammesChanged",  "ParentalRatingChange",   "ParentalRatingError",
                                             "DrmRightsError"};

    RecordingPlatform& platform = RecordingPlatform::Instance();
    CountingBrowser browser;
    NPObject* reader = nullptr;
    std::optional<Embedded> object;
    long reads = 0;

private:
    // An object of the page's Channel class gives its hold back when it dies, which is at once.
    static void GiveBackTheHoldOf(std::string_view script) {
        constexpr std::string_view kBeginning = "new Channel(\"key\", ";
        if (!script.starts_with(kBeginning)) return;
        unsigned id = 0;
        std::from_chars(script.data() + kBeginning.size(), script.data() + script.size(), id);
        IJSChannelCache::Instance()->ReleaseChannel(id);
    }
    void ReadAll(const NPVariant& argument) {
        ++reads;
        const auto* object = argument.type == NPVariantType_Object ? argument.value.objectValue : nullptr;
        if (object == nullptr || object->_class->getProperty == nullptr) return;
        for (const char* name : {"type", "target", "channel", "state", "error", "rating", "DRMSystemID", "name", "data",
                                 "text", "status"}) {
            browser.Get(argument.value.objectValue, name);
        }
    }
};

TEST_F(Growth, ChannelChangesLeaveNothing) {
    std::vector<NPObject*> channels;
    for (unsigned id = 1; id <= kChannels; ++id) channels.push_back(browser.MakeObject({{"mid", id}}));
    ExpectNoGrowth(kRounds, [&](int i) {
        const auto id = static_cast<unsigned>(i) % kChannels + 1;
        EXPECT_TRUE(browser.Call(object->Get(), "setChannel", {channels[id - 1]}));
        platform.TakeHold(id);
        i % 8 == 0 ? (*object)->TuneFail(id) : (*object)->TuneSuccess(id);
        Pump();
    });
    for (NPObject* channel : channels) CountingBrowser::Release(channel);
}

TEST_F(Growth, ChannelsByTripletAndDescriptorLeaveNothing) {
    NPObject* byTriplet = browser.MakeObject({{"idType", 12}, {"onid", 1}, {"tsid", 2}, {"sid", 3}});
    NPObject* byDsd = browser.MakeObject({{"dsd", "5A0B02"}, {"idType", 12}, {"sid", 3}});
    ExpectNoGrowth(kRounds / 10, [&](int i) {
        EXPECT_TRUE(browser.Call(object->Get(), "setChannel", {i % 2 == 0 ? byTriplet : byDsd}));
        EXPECT_TRUE(browser.Get(object->Get(), "currentChannel"));
        EXPECT_TRUE(browser.Get(object->Get(), "programmes"));
        EXPECT_TRUE(browser.Call(object->Get(), "stop"));
        platform.dsds.clear();
        Pump();
    });
    CountingBrowser::Release(byTriplet);
    CountingBrowser::Release(byDsd);
}

TEST_F(Growth, RatingsLeaveNothing) {
    ExpectNoGrowth(kRounds, [&](int i) {
        (*object)->ParentalRatingChanged(static_cast<char>(i % 20));
        Pump();
    });
}

TEST_F(Growth, RightsLeaveNothing) {
    ExpectNoGrowth(kRounds, [&](int i) {
        const auto status = static_cast<unsigned char>(i % 2);
        (*object)->OnSASMessageReceived(new SASMessage{4, 1, 0, {{7, {status}}, {6, {'a', 'b', 'c'}}}});
        Pump();
    });
}

TEST_F(Growth, ScramblingLeavesNothing) {
    EXPECT_TRUE(browser.Call(object->Get(), "bindToCurrentChannel"));
    ExpectNoGrowth(kRounds / 10, [&](int i) {
        i % 2 == 0 ? (*object)->Scrambled(7) : (*object)->Unscrambled(7);
        Pump();
    });
}

TEST_F(Growth, StreamEventsLeaveNothing) {
    EXPECT_TRUE(browser.Call(object->Get(), "addStreamEventListener", {"dvb:/events", "name", Function()}));
    ExpectNoGrowth(kRounds, [&](int) {
        platform.DeliverStreamEvent(1, "a name that needs memory of its own", "data");
        Pump();
    });
}

// An entry whose listener was removed stays until the next event for it.
TEST_F(Growth, StreamEventListenersThatComeAndGoLeaveNothing) {
    unsigned long job = 0;
    ExpectNoGrowth(kRounds / 10, [&](int) {
        EXPECT_TRUE(browser.Call(object->Get(), "addStreamEventListener", {"events", "name", Function()}));
        platform.DeliverStreamEvent(++job, "name", "data");
        Pump();
        EXPECT_TRUE(browser.Call(object->Get(), "removeStreamEventListener", {"events", "name", Function()}));
        platform.DeliverStreamEvent(job, "name", "data");
        Pump();
    });
}

TEST_F(Growth, ObjectsThatComeAndGoLeaveOnlyTheirHandlersAndListeners) {
    constexpr int kBefore = 50;
    constexpr int kObjects = kRounds / 50;
    constexpr long kKept = std::size(kHandlers) + std::size(kTypes);
    const auto replace = [&] {
        object.reset();
        Embed();
        EXPECT_TRUE(browser.Call(object->Get(), "bindToCurrentChannel"));
        platform.DeliverStreamEvent(1, "name");
        Pump();
    };
    for (int i = 0; i < kBefore; ++i) replace();
    const long references = browser.Held().references;
    const Allocations alive = Allocations::Alive();
    for (int i = 0; i < kObjects; ++i) replace();
    EXPECT_EQ(browser.Held().references, references + kObjects * kKept);
    EXPECT_EQ(Allocations::Alive().blocks, alive.blocks + kObjects) << "the browser keeps a record of each instance";
    for (int i = 0; i < kBefore + kObjects; ++i) {
        for (long kept = 0; kept < kKept; ++kept) CountingBrowser::Release(reader);
    }
}

}  // namespace
}  // namespace endurance
