// The registry of stream event listeners.
#include <limits>
#include <optional>

#include "tests/unit/videobroadcast/ObjectTest.h"
#include "videobroadcast/CStreamEventHandler.h"

namespace videobroadcast {
namespace {

using OipfVideoBroadcast::CStreamEventHandler;

class StreamEventRegistry : public support::PluginTest {
protected:
    StreamEventRegistry() { DSMCCProtocol_GetInstance()->RegisterStreamEventCallback("test", callback); }
    void TearDown() override {
        registry.reset();
        PluginTest::TearDown();
    }

    using Listeners = std::list<NPObject*>;
    Listeners ListenersOf(unsigned long jobId, const std::string& name = "any", std::uint16_t eventId = 1) {
        Listeners listeners;
        registry->GetStreamEventDataListeners({CDSMCCStreamEventData::E_STATUS_TRIGGER, eventId, name, {}, jobId, 0},
                                              listeners);
        return listeners;
    }
    void Add(const char* url, const char* name, NPObject* listener) { registry->AddEventListener(url, name, listener); }
    void Remove(const char* url, const char* name, NPObject* listener) {
        registry->RemoveEventListener(url, name, listener);
    }
    static std::string Hex(NPObject* listener) {
        char text[32];
        std::snprintf(text, sizeof text, "0x%lx", reinterpret_cast<unsigned long>(listener));
        return text;
    }
    static std::string LogOf(const char* member, const std::string& text) {
        return std::string("[CStreamEventHandler::") + member + "] " + text;
    }
    void ExpectNoListeners(unsigned long jobId) {
        ClearLog();
        EXPECT_TRUE(ListenersOf(jobId).empty());
        ExpectLogged(2, LogOf("GetStreamEventDataListeners",
                              "no listeners found for stream event id=1, name=any, dsmJobId=" + std::to_string(jobId)));
    }

    const DSMCCStreamEventCallback callback = [](CDSMCCStreamEventData*) {};
    std::optional<CStreamEventHandler> registry{std::in_place};
    NPObject* first = browser.MakeFunction("first").Pointer();
    NPObject* second = browser.MakeFunction("second").Pointer();
};

TEST_F(StreamEventRegistry, AddingSubscribesAndKeepsTheListenerUnderTheJob) {
    platform.answers.jobIds = {42};
    ClearCalls();
    Add("dvb:/x", "name", first);
    EXPECT_EQ(Calls(), Lines{"dsmcc.SubscribeStreamEvent(dvb:/x, name, 0)"});
    EXPECT_EQ(support::Log::Instance().Texts(),
              (Lines{LogOf("AddEventListener", "adding event listener, targetURL=dvb:/x, eventName=name, listener=") +
                         Hex(first),
                     LogOf("AddEventListener", "jobId=42"), LogOf("AddEventListener", "EXIT")}));
    ExpectLogged(3, LogOf("AddEventListener", "jobId=42"));
    EXPECT_EQ(ListenersOf(42), Listeners{first});
}

TEST_F(StreamEventRegistry, ARefusedSubscriptionKeepsNothing) {
    platform.answers.jobIds = {0};
    Add("dvb:/x", "name", first);
    ExpectLogged(2, LogOf("AddEventListener",
                          "couldn't subscribe for stream event, targetURL=dvb:/x, eventName=name"));
    ExpectNotLogged(LogOf("AddEventListener", "EXIT"));
    EXPECT_FALSE(registry->HoldsListener(first));
    ExpectNoListeners(0);
}

TEST_F(StreamEventRegistry, WithoutTheServiceSubscribingFails) {
    platform.answers.hasDsmcc = false;
    Add("dvb:/x", "name", first);
    ExpectLogged(2, LogOf("AddEventListener",
                          "couldn't subscribe for stream event, targetURL=dvb:/x, eventName=name"));
    platform.answers.hasDsmcc = true;
}

TEST_F(StreamEventRegistry, WithoutTheServiceUnsubscribingFailsAndTheEntryIsRemoved) {
    Add("dvb:/x", "name", first);
    platform.answers.hasDsmcc = false;
    Remove("dvb:/x", "name", first);
    ExpectLogged(2, LogOf("t_UnsubscrieStreamEvent", "couldn't unsubscribe from stream event, targetURL=dvb:/x,  "
                                                     "eventName=name, dsmJobId=1"));
    platform.answers.hasDsmcc = true;
    Remove("dvb:/x", "name", first);  // matches still, and ends the subscription now
    EXPECT_TRUE(ListenersOf(1).empty());
}

TEST_F(StreamEventRegistry, OneJobHoldsOneListenerAndALaterOneOverwritesIt) {
    platform.answers.jobIds = {5, 5};
    Add("dvb:/x", "name", first);
    Add("dvb:/y", "other", second);
    EXPECT_EQ(ListenersOf(5), Listeners{second});
    EXPECT_FALSE(registry->HoldsListener(first));
    Remove("dvb:/x", "name", first);
    EXPECT_EQ(ListenersOf(5), Listeners{second});
    Remove("dvb:/y", "other", second);
    EXPECT_TRUE(ListenersOf(5).empty());
}

TEST_F(StreamEventRegistry, OverwritingARemovedEntryMakesItLive) {
    platform.answers.jobIds = {5, 5};
    Add("dvb:/x", "name", first);
    Remove("dvb:/x", "name", first);
    Add("dvb:/x", "name", first);
    EXPECT_EQ(ListenersOf(5), Listeners{first});
}

TEST_F(StreamEventRegistry, EventsAreMatchedByTheirJobAlone) {
    Add("dvb:/x", "name", first);
    EXPECT_EQ(ListenersOf(1, "another name", 99), Listeners{first});
    EXPECT_TRUE(ListenersOf(2, "name").empty());
}

TEST_F(StreamEventRegistry, ListenersAreAppendedToTheList) {
    Add("dvb:/x", "name", first);
    Listeners listeners = {second};
    registry->GetStreamEventDataListeners({CDSMCCStreamEventData::E_STATUS_ERROR, 0, "", {}, 1, 0}, listeners);
    EXPECT_EQ(listeners, (Listeners{second, first}));
    ExpectLogged(3, "GetStreamEventDataListeners");
}

TEST_F(StreamEventRegistry, AnEventWithoutListenersIsLoggedWithIdNameAndJob) {
    EXPECT_TRUE(ListenersOf(77, "name", 65535).empty());
    ExpectLogged(3, "GetStreamEventDataListeners");
    ExpectLogged(2, LogOf("GetStreamEventDataListeners",
                          "no listeners found for stream event id=65535, name=name, dsmJobId=77"));
}

TEST_F(StreamEventRegistry, TheSameThreeTwiceAreTwoSubscriptionsAndOneRemovalEndsBoth) {
    platform.answers.jobIds = {9, 3};
    Add("dvb:/x", "name", first);
    Add("dvb:/x", "name", first);
    ClearCalls();
    ClearLog();
    Remove("dvb:/x", "name", first);
    EXPECT_EQ(Calls(), (Lines{"dsmcc.UnsubscribeStreamEvent(3)", "dsmcc.UnsubscribeStreamEvent(9)"}));
    const std::string unsubscribing = "unsubscribing listener URL=dvb:/x, eventName=name, dsmJobId=";
    EXPECT_EQ(support::Log::Instance().Texts(),
              (Lines{LogOf("RemoveEventListener", "removing event listener, targetURL=dvb:/x, eventName=name, "
                                                  "listener=") + Hex(first),
                     LogOf("t_UnsubscrieStreamEvent", unsubscribing + "3"),
                     LogOf("t_UnsubscrieStreamEvent", unsubscribing + "9")}));
}

TEST_F(StreamEventRegistry, JobsAreLoggedInHexadecimalWhenTheyEnd) {
    platform.answers.jobIds = {255};
    Add("dvb:/x", "name", first);
    platform.FailNth("dsmcc.UnsubscribeStreamEvent", 1);
    Remove("dvb:/x", "name", first);
    ExpectLogged(3, LogOf("t_UnsubscrieStreamEvent", "unsubscribing listener URL=dvb:/x, eventName=name, dsmJobId=ff"));
    ExpectLogged(2, LogOf("t_UnsubscrieStreamEvent", "couldn't unsubscribe from stream event, targetURL=dvb:/x,  "
                                                     "eventName=name, dsmJobId=ff"));
}

TEST_F(StreamEventRegistry, JobsAreWholeWords) {
    constexpr unsigned long kLast = std::numeric_limits<unsigned long>::max();
    platform.answers.jobIds = {kLast, kLast & 0xFFFFFFFF >> 1};
    Add("dvb:/x", "name", first);
    Add("dvb:/y", "name", second);
    ExpectLogged(3, LogOf("AddEventListener", "jobId=" + std::to_string(kLast)));
    EXPECT_EQ(ListenersOf(kLast), Listeners{first});
    EXPECT_EQ(ListenersOf(kLast & 0xFFFFFFFF >> 1), Listeners{second});
    EXPECT_TRUE(ListenersOf(kLast - 1).empty());
    ExpectLogged(2, LogOf("GetStreamEventDataListeners",
                          "no listeners found for stream event id=1, name=any, dsmJobId=-2"));
    ClearCalls();
    Remove("dvb:/x", "name", first);
    EXPECT_EQ(Calls(), Lines{"dsmcc.UnsubscribeStreamEvent(" + std::to_string(kLast) + ")"});
    const std::string hexadecimal(2 * sizeof kLast, 'f');
    ExpectLogged(3, LogOf("t_UnsubscrieStreamEvent",
                          "unsubscribing listener URL=dvb:/x, eventName=name, dsmJobId=" + hexadecimal));
}

TEST_F(StreamEventRegistry, RemovalNeedsTheSameListenerUrlAndName) {
    Add("dvb:/x", "name", first);
    const auto expectNothingFound = [this](const char* url, const char* name, NPObject* listener) {
        ClearCalls();
        ClearLog();
        Remove(url, name, listener);
        EXPECT_TRUE(Calls().empty()) << url << " " << name;
        ExpectLogged(2, LogOf("RemoveEventListener", std::string("no listener found, targetURL=") + url +
                                                         ", eventName=" + name));
    };
    expectNothingFound("dvb:/x", "name", second);
    expectNothingFound("dvb:/X", "name", first);
    expectNothingFound("dvb:/x", "names", first);
    EXPECT_EQ(ListenersOf(1), Listeners{first});
    ClearLog();
    Remove("dvb:/x", "name", first);
    EXPECT_TRUE(Calls({"dsmcc.Unsubscribe"}).size() == 1u);
    ExpectNotLogged(LogOf("RemoveEventListener", "no listener found, targetURL=dvb:/x, eventName=name"));
}

TEST_F(StreamEventRegistry, AnEventForARemovedEntryErasesItAndTheNextFindsNone) {
    Add("dvb:/x", "name", first);
    Remove("dvb:/x", "name", first);
    EXPECT_TRUE(registry->HoldsListener(first));
    ClearLog();
    EXPECT_TRUE(ListenersOf(1).empty());
    EXPECT_EQ(support::Log::Instance().Texts(), Lines{"GetStreamEventDataListeners"});
    EXPECT_FALSE(registry->HoldsListener(first));
    ExpectNoListeners(1);
}

TEST_F(StreamEventRegistry, ARemovedEntryStillMatchesAndIsUnsubscribedAgain) {
    Add("dvb:/x", "name", first);
    Remove("dvb:/x", "name", first);
    ClearCalls();
    ClearLog();
    Remove("dvb:/x", "name", first);
    EXPECT_EQ(Calls(), Lines{"dsmcc.UnsubscribeStreamEvent(1)"});
    ExpectLogged(2, LogOf("t_UnsubscrieStreamEvent", "couldn't unsubscribe from stream event, targetURL=dvb:/x,  "
                                                     "eventName=name, dsmJobId=1"));
}

TEST_F(StreamEventRegistry, AListenerIsHeldAsLongAsAnyEntryNamesIt) {
    Add("dvb:/x", "name", first);
    Add("dvb:/y", "name", first);
    Remove("dvb:/x", "name", first);
    ListenersOf(1);
    EXPECT_TRUE(registry->HoldsListener(first));
    Remove("dvb:/y", "name", first);
    ListenersOf(2);
    EXPECT_FALSE(registry->HoldsListener(first));
}

TEST_F(StreamEventRegistry, ItsEndUnregistersThenUnsubscribesEveryEntryRemovedOrNot) {
    platform.answers.jobIds = {8, 4};
    Add("dvb:/x", "name", first);
    Add("dvb:/y", "name", second);
    Remove("dvb:/x", "name", first);
    ClearCalls();
    ClearLog();
    registry.reset();
    EXPECT_EQ(Calls(), (Lines{"dsmcc.UnregisterStreamEventCallback()", "dsmcc.UnsubscribeStreamEvent(4)",
                              "dsmcc.UnsubscribeStreamEvent(8)"}));
    const Lines lines = support::Log::Instance().Texts();
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines.front(), LogOf("t_RemoveAllListeners", "ENTER"));
    EXPECT_EQ(lines.back(), LogOf("t_RemoveAllListeners", "EXIT"));
    ExpectLogged(3, LogOf("t_RemoveAllListeners", "ENTER"));
}

TEST_F(StreamEventRegistry, ItsEndWithoutTheServiceIsHarmless) {
    Add("dvb:/x", "name", first);
    Remove("dvb:/x", "name", first);
    ClearCalls();
    platform.answers.hasDsmcc = false;
    registry.reset();
    EXPECT_TRUE(Calls().empty());
    platform.answers.hasDsmcc = true;
    DSMCCProtocol_GetInstance()->UnregisterStreamEventCallback();
}

TEST_F(StreamEventRegistry, ItNeitherHoldsNorReleasesListeners) {
    FakeObject& listener = browser.MakeFunction("listener");
    Add("dvb:/x", "name", listener.Pointer());
    EXPECT_EQ(listener.HeldByPlugin(), 0u);
    Remove("dvb:/x", "name", listener.Pointer());
    ListenersOf(1);
    EXPECT_EQ(listener.HeldByPlugin(), 0u);
}

TEST_F(StreamEventRegistry, TheTextsAreCopied) {
    std::string url = "dvb:/x";
    Add(url.c_str(), "name", first);
    url = "dvb:/y";
    Remove("dvb:/x", "name", first);
    EXPECT_EQ(Calls({"dsmcc.Unsubscribe"}).size(), 1u);
}

using EventStatus = CDSMCCStreamEventData::EEventStatus;

TEST(StreamEventTexts, StatusZeroIsTriggerOneErrorAndOthersUnknown) {
    EXPECT_STREQ(CStreamEventHandler::FormatStatus(EventStatus(0)), "trigger");
    EXPECT_STREQ(CStreamEventHandler::FormatStatus(EventStatus(1)), "error");
    for (const int status : {7, 2, -1}) EXPECT_STREQ(CStreamEventHandler::FormatStatus(EventStatus(status)), "unknown");
}

TEST(StreamEventTexts, DataIsUppercaseHexadecimalWithoutSeparators) {
    const unsigned char bytes[] = {0x0A, 0xFF, 0x00, 0x9C};
    std::string text;
    CStreamEventHandler::FormatHexData(bytes, 2, text);
    EXPECT_EQ(text, "0AFF");
    CStreamEventHandler::FormatHexData(bytes, 4, text);
    EXPECT_EQ(text, "0AFF009C");
}

TEST(StreamEventTexts, EveryByteHasItsTwoDigits) {
    for (int byte = 0; byte < 256; ++byte) {
        const auto value = static_cast<unsigned char>(byte);
        char expected[3];
        std::snprintf(expected, sizeof expected, "%02X", byte);
        std::string text;
        CStreamEventHandler::FormatHexData(&value, 1, text);
        EXPECT_EQ(text, expected);
    }
}

TEST(StreamEventTexts, NoDataIsAnEmptyText) {
    std::string text = "before";
    CStreamEventHandler::FormatHexData(nullptr, 0, text);
    EXPECT_EQ(text, "");
}

}  // namespace
}  // namespace videobroadcast
