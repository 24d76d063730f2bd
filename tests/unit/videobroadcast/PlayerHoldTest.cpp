// The hold of the broadcast player: when it is taken, and that it is given back once.
#include <utility>

#include "platform/ISASListener.h"
#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

std::string Pointer(const Object& object) {
    char text[32];
    std::snprintf(text, sizeof text, "%p", static_cast<const void*>(&object));
    return text;
}

class PlayerHold : public ObjectTest {
protected:
    static Lines Steps() {
        return Calls({"script.on", "player", "browser.GetBroadcastPlayer", "browser.ReleaseBroadcastPlayer",
                      "browser.SetChannel"});
    }
    void ReportRating(char rating) {
        Native().ParentalRatingChanged(rating);
        Pump();
    }
};

const Lines kTaken = {"browser.GetBroadcastPlayer()", "player.SetListener(listener)"};

TEST_F(PlayerHold, TakingAsksThePlatformThenRegistersTheListener) {
    Probed object(browser);
    Forget();
    object->m_GetBroadcastPlayer();
    EXPECT_EQ(Steps(), kTaken);
    ExpectLogged(3, "m_GetBroadcastPlayer request " + Pointer(*object));
}

TEST_F(PlayerHold, ASecondRequestKeepsTheSamePlayer) {
    Probed object(browser);
    object->m_GetBroadcastPlayer();
    Forget();
    object->m_GetBroadcastPlayer();
    EXPECT_TRUE(Steps().empty());
    ExpectLogged(3, "m_GetBroadcastPlayer request " + Pointer(*object));
}

TEST_F(PlayerHold, APlayerThatIsNotHandedOutIsAskedForAgain) {
    Probed object(browser);
    platform.answers.players = 0;
    object->m_GetBroadcastPlayer();
    EXPECT_EQ(Steps(), Lines{"browser.GetBroadcastPlayer()"});
    platform.answers.players = 1;
    Forget();
    object->m_GetBroadcastPlayer();
    EXPECT_EQ(Steps(), kTaken);
}

TEST_F(PlayerHold, TheListenerIsTheObject) {
    Page().Call("bindToCurrentChannel");
    EXPECT_EQ(platform.Listener(), static_cast<IBroadcastPlayerListener*>(&Native()));
}

TEST_F(PlayerHold, TheListenerIsAnSasListenerToo) {
    SetHandler("onDRMRightsError");
    Page().Call("bindToCurrentChannel");
    auto* sas = dynamic_cast<ISASListener*>(platform.Listener());
    ASSERT_NE(sas, nullptr);
    sas->OnSASSession(true);
    sas->OnSASMessageReceived(new SASMessage{4, 1, 0, {}});
    Pump();
    EXPECT_EQ(Calls({"script.onDRM"}).size(), 1u);
}

TEST_F(PlayerHold, ReleaseUnrealizesThenGivesThePlayerBack) {
    Present();
    SetHandler("onPlayStateChange");
    Forget();
    Page().Call("release");
    EXPECT_EQ(Steps(), (Lines{"script.onPlayStateChange(0, undefined)", "browser.ReleaseBroadcastPlayer(player)"}));
    const Lines lines = support::Log::Instance().Texts();
    EXPECT_EQ(lines.front(), "m_ReleaseBroadcastPlayer request " + Pointer(Native()));
    EXPECT_EQ(lines.back(), "m_ReleaseBroadcastPlayer finished");
    ExpectLogged(3, "m_ReleaseBroadcastPlayer finished");
}

TEST_F(PlayerHold, ReleaseWithoutAPlayerChangesNothing) {
    Probed object(browser);
    object->m_SetPlayState(Object::E_STATE_CONNECTING, Object::E_ERR_NONE);
    Forget();
    object->m_ReleaseBroadcastPlayer();
    EXPECT_TRUE(Steps().empty());
    EXPECT_EQ(object.PlayState(), Object::E_STATE_CONNECTING);
    ExpectLogged(3, "m_ReleaseBroadcastPlayer request " + Pointer(*object));
    ExpectNotLogged("m_ReleaseBroadcastPlayer finished");
}

TEST_F(PlayerHold, APlayerOfAnUnrealizedObjectIsGivenBackToo) {
    Present();
    Native().ServiceNotAvailable(0);
    Pump();
    SetHandler("onPlayStateChange");
    Forget();
    Page().Call("release");
    EXPECT_EQ(Steps(), Lines{"browser.ReleaseBroadcastPlayer(player)"});
}

TEST_F(PlayerHold, AfterReleaseAChannelOperationTakesAPlayerAgain) {
    Present();
    Page().Call("release");
    Forget();
    Page().Call("nextChannel");
    EXPECT_EQ(Steps(), (Lines{"browser.GetBroadcastPlayer()", "player.SetListener(listener)", "player.NextChannel()"}));
}

TEST_F(PlayerHold, ReleaseForgetsTheRatingBeforeTheStateIsTold) {
    Present();
    ReportRating(9);
    SetHandler("onParentalRatingChange");
    SetHandler("onPlayStateChange", [&] { ReportRating(9); });
    Page().Call("release");
    EXPECT_EQ(Calls({"script.onParental"}).size(), 1u);
}

TEST_F(PlayerHold, ReleaseForgetsTheBlock) {
    Present();
    Native().ParentalRatingBlocked(7, true);
    Pump();
    Page().Call("release");
    FakeObject& channel = browser.MakeObject("channel").Set("mid", 5);
    Page().Call("setChannel", {channel});
    SetHandler("onPlayStateChange");
    Native().ParentalRatingBlocked(7, true);
    Pump();
    EXPECT_EQ(Told(), Lines{"script.onPlayStateChange(1, 3)"});
}

TEST_F(PlayerHold, ReleaseForgetsTheBlockBeforeTheStateIsTold) {
    Present();
    Native().ParentalRatingBlocked(7, true);
    Pump();
    bool nested = false;
    SetHandler("onPlayStateChange", [&] {
        if (std::exchange(nested, true)) return;
        Native().ChannelChanged();
        Native().ParentalRatingBlocked(7, true);
        Pump();
    });
    Page().Call("release");
    EXPECT_EQ(Told(), (Lines{"script.onPlayStateChange(0, undefined)", "script.onPlayStateChange(1, undefined)",
                             "script.onPlayStateChange(1, 3)"}));
}

TEST_F(PlayerHold, ANestedReleaseGivesThePlayerBackOnce) {
    Present();
    SetHandler("onPlayStateChange", [&] { Page().Call("release"); });
    Forget();
    Page().Call("release");
    EXPECT_EQ(Steps(), (Lines{"script.onPlayStateChange(0, undefined)", "browser.ReleaseBroadcastPlayer(player)"}));
    ExpectLogged(3, "m_ReleaseBroadcastPlayer finished");
}

TEST_F(PlayerHold, APlayerTakenInTheHandlerOfAReleaseStays) {
    Present();
    bool nested = false;
    SetHandler("onPlayStateChange", [&] {
        if (std::exchange(nested, true)) return;
        Page().Call("release");
        Page().Call("bindToCurrentChannel");
    });
    Page().Call("release");
    EXPECT_EQ(platform.HandedOut(), 1u);
    EXPECT_EQ(PlayState(), Object::E_STATE_PRESENTING);
    EXPECT_EQ(Calls({"browser.ReleaseBroadcastPlayer"}).size(), 1u);
}

TEST_F(PlayerHold, BindingInTheHandlerOfAReleaseKeepsNoPlayer) {
    Present();
    bool nested = false;
    SetHandler("onPlayStateChange", [&] {
        if (!std::exchange(nested, true)) Page().Call("bindToCurrentChannel");
    });
    Page().Call("release");  // the same hold still stands: it is given back
    EXPECT_EQ(platform.HandedOut(), 0u);
    EXPECT_EQ(Calls({"browser.ReleaseBroadcastPlayer"}).size(), 1u);
}

TEST_F(PlayerHold, AnElementRemovedInTheHandlerOfAReleaseGivesThePlayerBackOnce) {
    Present();
    SetHandler("onPlayStateChange", [&] { EndPage(); });
    Forget();
    Page().Call("release");
    EXPECT_EQ(Calls({"browser.ReleaseBroadcastPlayer"}).size(), 1u);
    EXPECT_EQ(platform.HandedOut(), 0u);
}

TEST_F(PlayerHold, ASecondObjectGetsNoPlayerWhileTheFirstHoldsIt) {
    Present();
    Probed other(browser);
    Forget();
    browser.Call(other.Get(), "bindToCurrentChannel");
    EXPECT_EQ(Steps(), Lines{"browser.GetBroadcastPlayer()"});
    Page().Call("release");
    browser.Call(other.Get(), "bindToCurrentChannel");
    EXPECT_EQ(platform.Listener(), static_cast<IBroadcastPlayerListener*>(other.Get()));
}

TEST_F(PlayerHold, TheNullChannelGoesToTheBrowserThenThePlayerStops) {
    for (const bool flag : {true, false}) {
        Probed object(browser);
        object->m_GetBroadcastPlayer();
        object->m_SetPlayState(Object::E_STATE_CONNECTING, Object::E_ERR_NONE);
        Forget();
        object->m_SetNullChannel(flag);
        const std::string text = flag ? "true" : "false";
        EXPECT_EQ(Steps(), (Lines{"browser.SetChannel(0, " + text + ")", "player.StopChannel()"}));
        EXPECT_EQ(support::Log::Instance().Texts(), (Lines{"CVBOEmbeddedObject::SetNullChannel bc = " + text,
                                                           "CVBOEmbeddedObject::SetNullChannel complete"}));
        ExpectLogged(3, "CVBOEmbeddedObject::SetNullChannel complete");
        EXPECT_EQ(object.PlayState(), Object::E_STATE_CONNECTING);
        EXPECT_EQ(platform.HandedOut(), 1u);
    }
}

TEST_F(PlayerHold, TheNullChannelWithoutAPlayerOnlyForgetsRatingAndBlock) {
    Probed object(browser);
    SetHandler(object.Get(), "onParentalRatingChange");
    SetHandler(object.Get(), "onPlayStateChange");
    const auto report = [&] {
        object->ParentalRatingChanged(9);
        object->ChannelChanged();
        object->ParentalRatingBlocked(7, true);
        Pump();
    };
    report();
    Forget();
    object->m_SetNullChannel(true);
    EXPECT_TRUE(Calls().empty());
    ExpectNotLogged("CVBOEmbeddedObject::SetNullChannel complete");
    report();
    EXPECT_EQ(Told(), (Lines{"script.onParentalRatingChange(undefined, ParentalRatingCollection('dvb-si', '12', 12)#2, "
                             "undefined)",
                             "script.onPlayStateChange(1, undefined)", "script.onPlayStateChange(1, 3)"}));
}

}  // namespace
}  // namespace videobroadcast
