// The object's end: invalidation and destruction.
#include <algorithm>
#include <utility>

#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

class Lifecycle : public ObjectTest {
protected:
    static std::string InvalidateLine(const Object& object, unsigned references) {
        char text[96];
        std::snprintf(text, sizeof text, "COipfVideoBroadcast::Invalidate() %p %u", static_cast<const void*>(&object),
                      references);
        return text;
    }
};

TEST_F(Lifecycle, InvalidateLogsTheObjectItsReferencesAndWhatRemains) {
    Probed object(browser);
    Forget();
    object.Invalidate();
    EXPECT_EQ(support::Log::Instance().Texts(),
              (Lines{InvalidateLine(*object, 1), "0 events remaining in s_asyncEvent map"}));
    ExpectLogged(3, InvalidateLine(*object, 1));
    ExpectLogged(3, "0 events remaining in s_asyncEvent map");
}

TEST_F(Lifecycle, InvalidatePurgesTheQueuedNotificationsOfTheObjectAlone) {
    Probed object(browser);
    Probed other(browser);
    SetHandler(other.Get(), "onPlayStateChange");
    object->TuneSuccess(7);
    other->ChannelChanged();
    object->UpdateLayout();
    Forget();
    object.Invalidate();
    EXPECT_EQ(support::Log::Instance().Texts(),
              (Lines{InvalidateLine(*object, 1), "Remove event 1003 pending in s_asyncEvent map",
                     "Remove event 1009 pending in s_asyncEvent map", "1 events remaining in s_asyncEvent map"}));
    ExpectLogged(3, "Remove event 1003 pending in s_asyncEvent map");
    Forget();
    Pump();
    EXPECT_EQ(Told(), Lines{"script.onPlayStateChange(1, undefined)"});
    EXPECT_EQ(LinesWith("Event id "), 2u);  // the two that were asked for already
}

TEST_F(Lifecycle, PurgedPayloadsAreFreed) {
    Native().OnSASMessageReceived(new SASMessage{4, 1, 0, {{7, {1}}}});
    platform.DeliverStreamEvent(1, "name", "data");
    Page().Invalidate();
    EXPECT_EQ(LinesWith("Remove event "), 2u);
}

TEST_F(Lifecycle, PurgedNotificationsGiveBackTheHoldsOfTheirChannels) {
    Probed object(browser);
    for (const unsigned channel : {3u, 4u, 5u, 6u, 7u}) platform.TakeHold(channel);
    object->TuneSuccess(3);
    object->TuneFail(4);
    object->ServiceNotAvailable(5);
    object->ParentalRatingBlocked(6, false);
    object->ScrambledTune(7);
    object->TuneSuccess(0);
    object->ParentalRatingBlocked(8, true);  // these carry none
    object->ParentalRatingUnblocked(9);
    object.Invalidate();
    EXPECT_EQ(Calls({"cache."}),
              (Lines{"cache.ReleaseChannel(3)", "cache.ReleaseChannel(4)", "cache.ReleaseChannel(5)",
                     "cache.ReleaseChannel(6)", "cache.ReleaseChannel(7)"}));
}

TEST_F(Lifecycle, ANotificationThatComesWhileThePlayerIsGivenBackLosesNoHold) {
    Present();
    When("browser.ReleaseBroadcastPlayer", [this] {
        platform.TakeHold(7);
        platform.Notify([](IBroadcastPlayerListener& listener) { listener.TuneSuccess(7); });
    });
    Page().Invalidate();
    EXPECT_EQ(platform.Holds(7), 0);
    ExpectLogged(2, "OnEvent m_npp is NULL!");
}

TEST_F(Lifecycle, PayloadsThatComeAfterTheEndAreFreed) {
    Probed other(browser);
    other.Invalidate();
    other->OnSASMessageReceived(new SASMessage{4, 1, 0, {{7, {1}}}});
    other->OnEvent({Object::E_ON_STREAM_EVENT, reinterpret_cast<std::uintptr_t>(new CDSMCCStreamEventData{
                                                   CDSMCCStreamEventData::E_STATUS_TRIGGER, 1, "name", {1}, 1, 0})});
    other->OnEvent({Object::E_TUNE_SUCCESS, 0x12345678});  // a number, not a pointer
    other->OnEvent({Object::E_ON_PARENTAL_RATING_CH, 9});
    ExpectLogged(2, "OnEvent m_npp is NULL!", 4);
}

TEST_F(Lifecycle, InvalidatingWhilePresentingGivesThePlayerBackWithoutTellingThePage) {
    Present();
    SetHandler("onPlayStateChange");
    Listen("PlayStateChange");
    Forget();
    Page().Invalidate();
    EXPECT_TRUE(Told().empty());
    EXPECT_EQ(PlayState(), Object::E_STATE_UNREALIZED);
    EXPECT_EQ(Calls({"browser.Release", "tasks."}),
              (Lines{"tasks.GetActiveApplication()", "browser.ReleaseBroadcastPlayer(player)"}));
    ExpectLogged(3, "Release the broadcast player.");
    ExpectNotLogged("m_OnEvent m_npp is NULL!");
    ExpectLogged(3, "m_ReleaseBroadcastPlayer finished");
}

TEST_F(Lifecycle, InvalidatingWithoutAPlayerReleasesNone) {
    Page();
    Forget();
    Page().Invalidate();
    ExpectNotLogged("Release the broadcast player.");
    EXPECT_EQ(Calls({"browser.", "player"}), Lines{"browser.IsMediaPlaybackMode()"});
}

TEST_F(Lifecycle, TheStepsOfInvalidationComeInOrder) {
    Present();
    Native().Suspend();
    Pump();
    Native().TuneSuccess(7);
    bool first = true;
    When("browser.IsMediaPlaybackMode", [&] {
        if (!std::exchange(first, false)) return;
        Native().ChannelChanged();                  // dropped: the instance is gone already
        platform.DeliverStreamEvent(1, "name");     // dropped too, but the object is still in the list
        EXPECT_EQ(LinesWith("Remove event "), 0u);  // nothing is purged yet
        EXPECT_EQ(platform.HandedOut(), 1u);
    });
    Forget();
    Page().Invalidate();
    ExpectLogged(2, "OnEvent m_npp is NULL!", 2);
    EXPECT_EQ(LinesWith("[CplVideoBroadcast::DsmEventCallback]"), 1u);
    EXPECT_EQ(Calls({"browser."}), (Lines{"browser.IsMediaPlaybackMode()", "browser.DisableMediaPlaybackMode()",
                                          "browser.IsMediaPlaybackMode()", "browser.ReleaseBroadcastPlayer(player)"}));
    const Lines lines = support::Log::Instance().Texts();
    const auto at = [&](const std::string& line) { return std::ranges::find(lines, line) - lines.begin(); };
    EXPECT_LT(at("0 events remaining in s_asyncEvent map"), at("Release the broadcast player."));
}

TEST_F(Lifecycle, InvalidationEndsMediaPlaybackAlsoForAnObjectWithoutAPlayer) {
    platform.answers.mediaPlaybackMode = true;
    Page().Invalidate();
    EXPECT_FALSE(platform.answers.mediaPlaybackMode);
    EXPECT_EQ(Calls({"browser."}), (Lines{"browser.IsMediaPlaybackMode()", "browser.DisableMediaPlaybackMode()"}));
}

TEST_F(Lifecycle, AChannelThatCannotBeRestoredIsLoggedAndTheEndGoesOn) {
    Present();
    Native().Suspend();
    Pump();
    platform.answers.canRestoreChannel = false;
    Page().Invalidate();
    ExpectLogged(0, "m_ReleaseBroadcastPlayer - fail to restore channel");
    EXPECT_EQ(platform.HandedOut(), 0u);
}

TEST_F(Lifecycle, ARestoredChannelIsNoFailure) {
    platform.answers.mediaPlaybackMode = true;
    Page().Invalidate();
    ExpectNotLogged("m_ReleaseBroadcastPlayer - fail to restore channel");
}

TEST_F(Lifecycle, OutsideMediaPlaybackNothingIsRestored) {
    Page().Invalidate();
    EXPECT_TRUE(Calls({"browser.Disable"}).empty());
}

TEST_F(Lifecycle, InvalidatingTwiceIsHarmless) {
    Present();
    Page().Invalidate();
    Forget();
    Page().Invalidate();
    EXPECT_EQ(Calls(), Lines{"browser.IsMediaPlaybackMode()"});
    EXPECT_EQ(support::Log::Instance().Texts().size(), 2u);
}

TEST_F(Lifecycle, TheBaseIsNotInvalidatedBesides) {
    Page().Invalidate();
    EXPECT_EQ(LinesWith("JSNPObject::Invalidate()"), 0u);
}

TEST_F(Lifecycle, AnInvalidatedObjectGetsNoStreamEvents) {
    Probed object(browser);
    object.Invalidate();
    Forget();
    EXPECT_TRUE(platform.DeliverStreamEvent(1, "name"));
    EXPECT_TRUE(support::Log::Instance().Texts().empty());
}

TEST_F(Lifecycle, AnInvalidatedObjectStillReadsAndRefusesWhatNeedsTheBrowser) {
    Present();
    FakeObject& handler = SetHandler("onPlayStateChange");
    Page().Invalidate();
    Forget();
    EXPECT_EQ(Page().Get("playState").value, Value(0));
    EXPECT_EQ(Page().Get("onPlayStateChange").value, Value(handler));
    EXPECT_FALSE(Page().Call("addStreamEventListener", {"relative", "name", handler}).accepted);
    ExpectLogged(2, "t_GetDocumentLocation, Object has been invalidated! (m_npp is NULL)");
}

TEST_F(Lifecycle, AnInvalidatedObjectCanTakeAPlayerAgainAndGivesItBackAtItsEnd) {
    SetHandler("onPlayStateChange");
    Page().Invalidate();
    Forget();
    Page().Call("bindToCurrentChannel");
    EXPECT_EQ(platform.HandedOut(), 1u);
    EXPECT_EQ(PlayState(), Object::E_STATE_PRESENTING);
    EXPECT_TRUE(Told().empty());
    ExpectLogged(2, "m_OnEvent m_npp is NULL!", 2);
    Page().Destroy();
    EXPECT_EQ(platform.HandedOut(), 0u);
}

TEST_F(Lifecycle, AnObjectInvalidatedWithItsPlayerRaisesNoStateEventEverAgain) {
    Present();
    Page().Invalidate();
    Forget();
    Page().Call("bindToCurrentChannel");
    EXPECT_EQ(PlayState(), Object::E_STATE_PRESENTING);
    EXPECT_EQ(LinesWith("m_OnEvent m_npp is NULL!"), 0u);
}

TEST_F(Lifecycle, TheDestructorInvalidatesThenGivesUpStreamEvents) {
    Present();
    FakeObject& listener = browser.MakeFunction("listener");
    Page().Call("addStreamEventListener", {"dvb:/x", "name", listener});
    Forget();
    Object& object = Native();
    Page().Destroy();
    EXPECT_EQ(Calls({"browser.Release", "dsmcc."}),
              (Lines{"browser.ReleaseBroadcastPlayer(player)", "dsmcc.UnregisterStreamEventCallback()",
                     "dsmcc.UnsubscribeStreamEvent(1)"}));
    const Lines lines = support::Log::Instance().Texts();
    const auto destructor = std::ranges::find(lines, "COipfVideoBroadcast::~COipfVideoBroadcast()");
    ASSERT_NE(destructor, lines.end());
    EXPECT_EQ(*(destructor + 1), InvalidateLine(object, 0));
}

TEST_F(Lifecycle, AnEndedPageLeavesNothingButItsHandlersAndListeners) {
    Present();
    FakeObject& handler = SetHandler("onBlur");
    FakeObject& listener = Listen("Blur");
    FakeObject& streamListener = browser.MakeFunction("stream listener");
    Page().Call("addStreamEventListener", {"dvb:/x", "name", streamListener});
    EndPage();
    EXPECT_EQ(handler.HeldByPlugin(), 1u);
    EXPECT_EQ(listener.HeldByPlugin(), 1u);
    EXPECT_EQ(streamListener.HeldByPlugin(), 0u);
    EXPECT_EQ(platform.HandedOut(), 0u);
    EXPECT_EQ(platform.Registrations(), 0u);
}

TEST_F(Lifecycle, DestroyingWithoutInvalidatingDoesTheSame) {
    Present();
    SetHandler("onPlayStateChange");
    Native().TuneSuccess(7);
    Forget();
    Page().Destroy();
    EXPECT_TRUE(Told().empty());
    EXPECT_EQ(LinesWith("Remove event 1003"), 1u);
    EXPECT_EQ(platform.HandedOut(), 0u);
}

TEST_F(Lifecycle, CallsThatTheBrowserRunsAfterTheEndFindNoRecord) {
    browser.pendingCallsEndWithInstance = false;
    Native().TuneSuccess(7);
    Page().Destroy();
    Forget();
    EXPECT_EQ(Pump(), 1u);
    EXPECT_EQ(LinesWith("Event id "), 1u);
    EXPECT_TRUE(Calls().empty());
}

TEST_F(Lifecycle, EachObjectGivesBackOneRegistrationForStreamEvents) {
    Probed first(browser);
    Probed second(browser);
    first.Destroy();
    EXPECT_EQ(platform.Registrations(), 1u);
    Forget();
    EXPECT_TRUE(platform.DeliverStreamEvent(1, "name"));
    EXPECT_EQ(LinesWith("[CplVideoBroadcast::DsmEventCallback]"), 1u);
}

template <class Base>
void DeleteThrough(support::FakeBrowser& browser) {
    auto* object = new ProbedObject(browser.MakeInstance(), browser.Functions());
    delete static_cast<Base*>(object);
}

TEST_F(Lifecycle, TheDestructorIsReachedThroughEveryBase) {
    DeleteThrough<OipfJavaScript::JSNPObject>(browser);
    DeleteThrough<IBroadcastPlayerListener>(browser);
    DeleteThrough<ISASListener>(browser);
    ExpectLogged(3, "COipfVideoBroadcast::~COipfVideoBroadcast()", 3);
    EXPECT_EQ(platform.Registrations(), 0u);
}

}  // namespace
}  // namespace videobroadcast
