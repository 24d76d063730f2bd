// How notifications get from the platform's calls to the browser's main thread.
#include <utility>

#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

struct Callback {
    const char* name;
    unsigned id;
    std::function<void(Object&)> call;
    Lines lines;           // that the callback logs
    const char* caseLine;  // of its handling
    friend void PrintTo(const Callback& callback, std::ostream* out) { *out << callback.name; }
};

const std::vector<Callback>& Callbacks() {
    static const std::vector<Callback> callbacks = {
        {"Suspend", 1000, [](Object& o) { o.Suspend(); }, {"COipfVideoBroadcast::Suspend()"}, "E_SUSPEND"},
        {"Resume", 1001, [](Object& o) { o.Resume(); }, {"Resume"}, "E_RESUME"},
        {"ChannelChanged", 1002, [](Object& o) { o.ChannelChanged(); }, {"ChannelChanged"}, "E_CHANNEL_CHANGE"},
        {"TuneSuccess", 1003, [](Object& o) { o.TuneSuccess(7); }, {"TuneSuccess 7"}, "E_TUNE_SUCCESS"},
        {"TuneFail", 1004, [](Object& o) { o.TuneFail(7); }, {"TuneFail"}, "E_TUNE_FAIL"},
        {"ServiceNotAvailable", 1005, [](Object& o) { o.ServiceNotAvailable(7); }, {"ServiceNotAvailable"},
         "E_SERVICE_NOT_AVAILABLE"},
        {"ProgrammeChanged", 9, [](Object& o) { o.ProgrammeChanged(); }, {}, "E_ON_PROGRAMMES_CHANGED"},
        {"ParentalRatingChanged", 10, [](Object& o) { o.ParentalRatingChanged(9); }, {"ParentalRatingChanged"},
         "E_ON_PARENTAL_RATING_CH"},
        {"ParentalRatingBlocked", 1006, [](Object& o) { o.ParentalRatingBlocked(7, true); },
         {"ParentalRatingBlocked"}, "E_CH_LOCKED"},
        {"ParentalRatingBlockedByTune", 1007, [](Object& o) { o.ParentalRatingBlocked(7, false); },
         {"ParentalRatingBlocked"}, "E_CH_TUNED_LOCKED"},
        {"ParentalRatingUnblocked", 1008, [](Object& o) { o.ParentalRatingUnblocked(7); },
         {"ParentalRatingUnblocked"}, "E_CH_UNLOCKED"},
        {"NoSignal", 1004, [](Object& o) { o.NoSignal(); }, {}, "E_TUNE_FAIL"},
        {"Scrambled", 1010, [](Object& o) { o.Scrambled(0x0B00); }, {"Scrambled ca_sid = b00"}, "E_CH_SCRAMBLED"},
        {"ScrambledTune", 1011, [](Object& o) { o.ScrambledTune(7); }, {"ScrambledTune"}, nullptr},
        {"Unscrambled", 1012, [](Object& o) { o.Unscrambled(0xFFFF); }, {"Unscrambled ca_sid = ffff"},
         "E_CH_UNSCRAMBLED"},
        {"UpdateLayout", 1009, [](Object& o) { o.UpdateLayout(); }, {}, "E_UPDATE_LAYOUT"},
        {"OnSASMessageReceived", 1013,
         [](Object& o) { o.OnSASMessageReceived(new SASMessage{1, 2, 3, {{7, {5}}, {6, {}}}}); },
         {"COipfVideoBroadcast::OnSASMessageReceived()"}, "E_SAS_MSG"},
    };
    return callbacks;
}

class NotificationQueue : public ObjectTest {};
class EachCallback : public ObjectTest, public ::testing::WithParamInterface<Callback> {};

INSTANTIATE_TEST_SUITE_P(Callbacks, EachCallback, ::testing::ValuesIn(Callbacks()),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(EachCallback, LogsItsNameAndQueuesOneRecord) {
    Native();
    Forget();
    GetParam().call(Native());
    Lines expected = GetParam().lines;
    expected.push_back("COipfVideoBroadcast::OnEvent(" + std::to_string(GetParam().id) + ")");
    EXPECT_EQ(support::Log::Instance().Texts(), expected);
    for (const std::string& line : expected) ExpectLogged(3, line);
    EXPECT_EQ(browser.Async().Pending(), 1u);
    EXPECT_TRUE(Calls().empty());
}

TEST_P(EachCallback, IsHandledUnderItsName) {
    Native();
    GetParam().call(Native());
    Forget();
    Pump();
    const Lines lines = support::Log::Instance().Texts();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0], "COipfVideoBroadcast::m_HandleAsyncCall()");
    ExpectLogged(3, lines[0]);
    if (GetParam().caseLine != nullptr) {
        ASSERT_GT(lines.size(), 1u);
        EXPECT_EQ(lines[1], std::string("m_ProcessEvent ") + GetParam().caseLine);
        ExpectLogged(3, lines[1]);
    }
    EXPECT_EQ(LinesWith("m_ProcessEvent"), GetParam().caseLine != nullptr ? 1u : 0u);
    EXPECT_EQ(LinesWith("Recieved event"), 0u);
}

TEST_P(EachCallback, IsDroppedAfterInvalidation) {
    Page().Invalidate();
    Forget();
    GetParam().call(Native());
    Lines expected = GetParam().lines;
    expected.emplace_back("OnEvent m_npp is NULL!");
    EXPECT_EQ(support::Log::Instance().Texts(), expected);
    ExpectLogged(2, "OnEvent m_npp is NULL!");
    EXPECT_EQ(browser.Async().Pending(), 0u);
}

TEST_P(EachCallback, IsQueuedAsOftenAsItComesButProgrammeChanges) {
    for (int i = 0; i < 3; ++i) GetParam().call(Native());
    EXPECT_EQ(browser.Async().Pending(), GetParam().id == 9 ? 1u : 3u);
    Pump();
}

TEST_F(NotificationQueue, ChannelIdsAreLoggedSigned) {
    Native().TuneSuccess(4294967295u);
    ExpectLogged(3, "TuneSuccess -1");
}

TEST_F(NotificationQueue, NotificationIdsAreLoggedSigned) {
    Native().OnEvent({4294967295u, 0});
    ExpectLogged(3, "COipfVideoBroadcast::OnEvent(-1)");
    Pump();
    ExpectLogged(0, "Recieved event -1 in m_OnEvent()");
}

TEST_F(NotificationQueue, TwoProgrammeChangesBeforeTheFirstIsHandledAreOne) {
    SetHandler("onProgrammesChanged");
    Forget();
    Native().ProgrammeChanged();
    Native().ProgrammeChanged();
    ExpectLogged(3, "COipfVideoBroadcast::OnEvent(9)");
    EXPECT_EQ(Pump(), 1u);
    Native().ProgrammeChanged();
    EXPECT_EQ(Pump(), 1u);
    EXPECT_EQ(Told(), (Lines{"script.onProgrammesChanged()", "script.onProgrammesChanged()"}));
}

TEST_F(NotificationQueue, AProgrammeChangeOfAnotherObjectCountsAsPendingToo) {
    Probed other(browser);
    SetHandler(other.Get(), "onProgrammesChanged");
    SetHandler("onProgrammesChanged");
    other->ProgrammeChanged();
    Native().ProgrammeChanged();
    EXPECT_EQ(Pump(), 1u);
    EXPECT_EQ(Told().size(), 1u);
    Native().ProgrammeChanged();
    Pump();
    EXPECT_EQ(Told().size(), 2u);
}

TEST_F(NotificationQueue, APendingProgrammeChangeOfAnEndedObjectCountsNoMore) {
    Probed other(browser);
    SetHandler("onProgrammesChanged");
    other->ProgrammeChanged();
    other.Invalidate();
    Native().ProgrammeChanged();
    Pump();
    EXPECT_EQ(Told(), Lines{"script.onProgrammesChanged()"});
}

TEST_F(NotificationQueue, TheInstanceIsLookedAtBeforeThePendingProgrammeChanges) {
    Probed ended(browser);
    ended.Invalidate();
    Native().ProgrammeChanged();
    Forget();
    ended->ProgrammeChanged();
    EXPECT_EQ(support::Log::Instance().Texts(), Lines{"OnEvent m_npp is NULL!"});
    Native().ProgrammeChanged();
    EXPECT_EQ(support::Log::Instance().Texts(), Lines{"OnEvent m_npp is NULL!"});
    Pump();
}

TEST_F(NotificationQueue, OtherPendingRecordsDoNotHoldAProgrammeChangeBack) {
    SetHandler("onProgrammesChanged");
    Native().UpdateLayout();
    Native().ProgrammeChanged();
    EXPECT_EQ(Pump(), 2u);
    EXPECT_EQ(Told(), Lines{"script.onProgrammesChanged()"});
}

TEST_F(NotificationQueue, AProgrammeChangeThatComesWhileOneIsHandledIsQueued) {
    bool again = false;
    SetHandler("onProgrammesChanged", [&] {
        if (!std::exchange(again, true)) Native().ProgrammeChanged();
    });
    Native().ProgrammeChanged();
    EXPECT_EQ(Pump(), 2u);
}

TEST_F(NotificationQueue, RecordsAreHandledInTheOrderInWhichTheyCame) {
    Connect();
    SetHandler("onPlayStateChange");
    Native().TuneFail(0);
    Native().TuneSuccess(0);
    Native().ChannelChanged();
    Pump();
    EXPECT_EQ(Told(), (Lines{"script.onPlayStateChange(1, 1)", "script.onPlayStateChange(2, undefined)",
                             "script.onPlayStateChange(1, undefined)"}));
}

// A record is an id of 32 bits and one word, wide enough for a pointer.
static_assert(sizeof Object::event_t::id == 4 && sizeof Object::event_t::data == sizeof(void*));
static_assert(sizeof(Object::event_t) == 2 * sizeof(void*));

// The asynchronous calls that an object asks for, kept from the browser.
struct Request {
    NPP npp;
    void (*function)(void*);
    std::uintptr_t number;
};
std::vector<Request> s_requests;

class AsyncRequests : public ObjectTest {
protected:
    AsyncRequests() {
        s_requests.clear();
        browser.Functions()->pluginthreadasynccall = [](NPP npp, void (*function)(void*), void* data) {
            s_requests.push_back({npp, function, reinterpret_cast<std::uintptr_t>(data)});
        };
    }
    static void Run(const Request& request) { request.function(reinterpret_cast<void*>(request.number)); }
};

TEST_F(AsyncRequests, AreForTheInstanceWithANumberThatCountsUp) {
    Probed object(browser);
    for (int i = 0; i < 3; ++i) object->UpdateLayout();
    ASSERT_EQ(s_requests.size(), 3u);
    for (const Request& request : s_requests) {
        EXPECT_EQ(request.npp, object.Npp());
        EXPECT_EQ(request.function, &Object::s_HandleAsyncCall);
    }
    EXPECT_GE(s_requests[0].number, 1u);
    EXPECT_EQ(s_requests[1].number, s_requests[0].number + 1);
    EXPECT_EQ(s_requests[2].number, s_requests[0].number + 2);
}

TEST_F(AsyncRequests, EachHandlesTheRecordOfItsNumberInWhateverOrder) {
    Probed object(browser);
    SetHandler(object.Get(), "onPlayStateChange");
    object->ChannelChanged();
    object->TuneFail(0);
    ASSERT_EQ(s_requests.size(), 2u);
    Run(s_requests[1]);
    EXPECT_EQ(Told(), Lines{"script.onPlayStateChange(1, 1)"});
    Run(s_requests[0]);
    EXPECT_EQ(Told(), (Lines{"script.onPlayStateChange(1, 1)", "script.onPlayStateChange(1, undefined)"}));
}

TEST_F(AsyncRequests, ASecondForTheSameNumberFindsNoRecord) {
    Probed object(browser);
    object->UpdateLayout();
    ASSERT_EQ(s_requests.size(), 1u);
    Run(s_requests[0]);
    Forget();
    Run(s_requests[0]);
    EXPECT_EQ(support::Log::Instance().Texts(),
              (Lines{"COipfVideoBroadcast::m_HandleAsyncCall()",
                     "Event id " + std::to_string(s_requests[0].number) + " not in s_asyncEvent map"}));
    ExpectLogged(2, "Event id " + std::to_string(s_requests[0].number) + " not in s_asyncEvent map");
}

TEST_F(AsyncRequests, ARecordIsTakenOutBeforeItIsHandled) {
    Probed object(browser);
    SetHandler(object.Get(), "onPlayStateChange", [&] { Run(s_requests[0]); });
    object->ChannelChanged();
    Run(s_requests[0]);
    EXPECT_EQ(Told(), Lines{"script.onPlayStateChange(1, undefined)"});
    EXPECT_EQ(LinesWith("Event id "), 1u);
}

TEST_F(AsyncRequests, WhatIsNotQueuedTakesNoNumber) {
    Probed object(browser);
    Probed ended(browser);
    ended.Invalidate();
    object->ProgrammeChanged();
    object->ProgrammeChanged();
    ended->UpdateLayout();
    object->UpdateLayout();
    ASSERT_EQ(s_requests.size(), 2u);
    EXPECT_EQ(s_requests[1].number, s_requests[0].number + 1);
}

TEST_F(AsyncRequests, NameTheLatestNumberAndTheRecordsOwnWhereTheyDiffer) {
    Probed first(browser);
    Probed second(browser);
    SetHandler(first.Get(), "onStreamEvent");
    SetHandler(second.Get(), "onStreamEvent");
    // Both records are stored before the first is asked for.
    platform.DeliverStreamEvent(1, "name");
    ASSERT_EQ(s_requests.size(), 3u);
    const std::uintptr_t own = s_requests[0].number;
    EXPECT_EQ(s_requests[1].number, own + 1);
    EXPECT_EQ(s_requests[2].number, own + 1);
    EXPECT_EQ(s_requests[0].npp, first.Npp());
    EXPECT_EQ(s_requests[1].npp, first.Npp());
    EXPECT_EQ(s_requests[2].npp, second.Npp());
    for (const Request& request : s_requests) Run(request);
    EXPECT_EQ(Calls({"script.onStreamEvent"}).size(), 2u);
}

TEST_F(AsyncRequests, ARecordWhoseRequestTheBrowserIgnoresGoesWithItsObject) {
    Probed object(browser);
    object->OnSASMessageReceived(new SASMessage{4, 1, 0, {{7, {1}}}});
    object.Invalidate();
    EXPECT_EQ(LinesWith("Remove event 1013 pending in s_asyncEvent map"), 1u);
}

TEST_F(NotificationQueue, TheFirstNumberOfAProcessIsOne) {
#if defined(__i386__) && defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "A process of its own starts without the loader that finds the 32-bit libraries.";
#endif
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto firstNumber = [this] {
        browser.Functions()->pluginthreadasynccall = [](NPP, void (*)(void*), void* data) {
            std::_Exit(static_cast<int>(reinterpret_cast<std::uintptr_t>(data)));
        };
        Probed(browser)->UpdateLayout();
    };
    EXPECT_EXIT(firstNumber(), ::testing::ExitedWithCode(1), "");
}

}  // namespace
}  // namespace videobroadcast
