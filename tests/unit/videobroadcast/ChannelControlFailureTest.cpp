// Channel control with a browser, a platform or a page that fails, and after the object's invalidation.
#include <locale>

#include "tests/unit/videobroadcast/ScriptedObjectTest.h"

namespace videobroadcast_tests {
namespace {

class ChannelControlFailure : public ScriptedObjectTest {
protected:
    FakeObject& channel =
        MakeChannel({{"mid", 0}, {"dsd", "0A"}, {"idType", 12}, {"sid", 1}, {"onid", 2}, {"tsid", 3}});
};

TEST_F(ChannelControlFailure, AMemberThatCannotBeReadCountsAsMissing) {
    const List lookUps = {"player.GetChannelFromDSD(12, 0a, 1)",      // 1: mid
                          "player.GetChannelFromTriplet(12, 2, 3, 1)",  // 2: dsd
                          "player.GetChannelFromDSD(-1, 0a, 1)",      // 3: idType
                          "player.GetChannelFromDSD(12, 0a, 0)"};     // 4: sid
    for (unsigned n = 1; n <= lookUps.size(); ++n) {
        for (const char* function : {"getproperty", "getstringidentifier"}) {
            SCOPED_TRACE(function + std::to_string(n));
            ClearCalls();
            browser.FailNth(function, n);
            ExpectDone(Call("setChannel", {channel}));
            EXPECT_EQ(Calls({"player.GetChannelFrom"}), List{lookUps[n - 1]});
            browser.StopFailing(function);
        }
    }
}

TEST_F(ChannelControlFailure, TripletNumbersThatCannotBeReadAre0) {
    FakeObject& triplet = MakeChannel({{"idType", 12}, {"sid", 1}, {"onid", 2}, {"tsid", 3}});
    browser.FailNth("getproperty", 5);
    Call("setChannel", {triplet});
    browser.FailNth("getproperty", 6);
    Call("setChannel", {triplet});
    browser.FailFrom("getproperty");
    Call("setChannel", {triplet});
    EXPECT_EQ(Calls({"player.GetChannelFrom"}),
              (List{"player.GetChannelFromTriplet(12, 0, 3, 1)", "player.GetChannelFromTriplet(12, 2, 0, 1)",
                    "player.GetChannelFromTriplet(-1, 0, 0, 0)"}));
}

TEST_F(ChannelControlFailure, AnEventObjectThatCannotBeMadeStopsNeitherHandlersNorStates) {
    browser.FailFrom("createobject");
    ExpectDone(Call("bindToCurrentChannel"));
    EXPECT_EQ(Calls({"script."}),
              (List{"script.onPlayStateChange(1, undefined)", "script.onPlayStateChange(2, undefined)"}));
}

TEST_F(ChannelControlFailure, AHandlerThatThrowsStopsNothing) {
    browser.FailFrom("invokeDefault");
    ExpectDone(Call("setChannel", {channel}));
    EXPECT_EQ(PlayState(), kConnecting);
    EXPECT_EQ(Calls({"cache."}), List{"cache.ReleaseChannel(3)"});
}

TEST_F(ChannelControlFailure, SetChannelSurvivesAnyFailingCall) {
    const auto member = [&] { return Call("setChannel", {channel}); };
    SurvivesFailingBrowser([] {}, member);
    SurvivesFailingPlatform([] {}, member);
    FakeObject& triplet = MakeChannel({{"sid", 1}});
    const auto byTriplet = [&] { return Call("setChannel", {triplet}); };
    SurvivesFailingBrowser([] {}, byTriplet);
    SurvivesFailingPlatform([] {}, byTriplet);
}

TEST_F(ChannelControlFailure, ARefusedSetChannelSurvivesAnyFailingCall) {
    platform.answers.acceptsChannel = false;
    const auto member = [&] { return Call("setChannel", {channel}); };
    SurvivesFailingBrowser([&] { Call("bindToCurrentChannel"); }, member);
    SurvivesFailingBrowser([] {}, [&] { return Call("setChannel", {5}); });
    SurvivesFailingBrowser([&] { Call("bindToCurrentChannel"); }, [&] { return Call("setChannel", {nullptr}); });
}

TEST_F(ChannelControlFailure, TheOtherMembersSurviveAnyFailingCall) {
    const auto present = [&] { Call("bindToCurrentChannel"); };
    for (const char* method : {"nextChannel", "prevChannel", "stop", "release"}) {
        SurvivesFailingBrowser(present, [&] { return Call(method); });
        SurvivesFailingPlatform(present, [&] { return Call(method); });
    }
    for (const unsigned players : {1u, 0u}) {
        platform.answers.players = players;
        SurvivesFailingBrowser([] {}, [&] { return Call("bindToCurrentChannel"); });
        SurvivesFailingPlatform([] {}, [&] { return Call("bindToCurrentChannel"); });
    }
}

TEST_F(ChannelControlFailure, APlatformThatFailsIsReported) {
    platform.FailNth("player.SetChannel", 1);
    ExpectDone(Call("setChannel", {channel}));
    platform.FailNth("player.GetChannelFromDSD", 1);
    ExpectDone(Call("setChannel", {channel}));
    platform.FailNth("player.NextChannel", 1);
    ExpectDone(Call("nextChannel"));
    EXPECT_EQ(Calls({"script.onChannelChangeError"}),
              (List{"script.onChannelChangeError(channel, 100)", "script.onChannelChangeError(channel, 100)",
                    "script.onChannelChangeError(null, 10)"}));
}

TEST_F(ChannelControlFailure, WithoutABrowserIntegrationNoPageIsBroadcastRelatedAndNoPlayerIsToBeHad) {
    platform.answers.hasBrowserAPI = false;
    MakeObject();
    for (const char* method : {"nextChannel", "prevChannel", "bindToCurrentChannel"}) {
        ExpectException(Call(method), "SecurityError");
    }
    ExpectDone(Call("stop"));
    ExpectDone(Call("release"));
    ExpectDone(Call("setChannel", {channel}));
    ExpectDone(Call("setChannel", {nullptr}));
    EXPECT_EQ(Calls({"script."}),
              (List{"script.onChannelChangeError(channel, 11)", "script.onChannelChangeError(null, 11)"}));
}

TEST_F(ChannelControlFailure, WithoutAChannelCacheThereIsNothingToGiveBack) {
    platform.answers.hasChannelCache = false;
    ExpectDone(Call("setChannel", {channel}));
    EXPECT_EQ(Calls({"player.SetChannel", "script."}),
              (List{"player.SetChannel(3, true)", "script.onPlayStateChange(1, undefined)"}));
}

TEST_F(ChannelControlFailure, AnIdIsWrittenWithoutTheGroupingOfTheProcesssLocale) {
    struct Grouping : std::numpunct<char> {
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    platform.answers.players = 0;
    platform.answers.currentChannel = 1234567;
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    Call("bindToCurrentChannel");
    std::locale::global(before);
    EXPECT_EQ(browser.Evaluated().back(), "new Channel(\"key\", 1234567);");
}

class ChannelControlInvalidated : public ScriptedObjectTest {
protected:
    void SetUp() override {
        Bring(kPresenting);
        object->Invalidate();
        ForgetWhatHappened();
    }
};

TEST_F(ChannelControlInvalidated, AMemberOfAChannelCanNoLongerBeRead) {
    FakeObject& channel = MakeChannel({{"mid", 7}});
    ExpectDone(Call("setChannel", {channel}));
    EXPECT_TRUE(channel.Reads().empty());
    EXPECT_EQ(Calls({"script."}), List{});
    EXPECT_GE(LogOf("t_GetProperty, Object has been invalidated! (m_npp is NULL)").size(), 1u);
}

TEST_F(ChannelControlInvalidated, NoMemberCallsScriptAndAPlayerThatWasTakenIsGivenBackAtTheEnd) {
    for (const char* method : {"bindToCurrentChannel", "stop", "nextChannel", "prevChannel"}) {
        EXPECT_TRUE(Call(method).accepted);
    }
    EXPECT_TRUE(Call("setChannel", {MakeChannel({})}).accepted);
    EXPECT_TRUE(Call("setChannel", {nullptr}).accepted);
    EXPECT_TRUE(Call("bindToCurrentChannel").accepted);
    EXPECT_EQ(platform.HandedOut(), 1u);
    EXPECT_TRUE(Calls({"script.", "evaluate"}).empty());
    EndObject();
    EXPECT_EQ(platform.HandedOut(), 0u);
}

TEST_F(ChannelControlInvalidated, ItsChannelObjectsCannotBeMadeAndTheirHoldsAreGivenBack) {
    platform.answers.players = 0;
    EXPECT_TRUE(Call("bindToCurrentChannel").accepted);
    EXPECT_EQ(Calls({"cache.", "evaluate", "script."}), List{"cache.ReleaseChannel(1)"});
    EXPECT_EQ(platform.Holds(1), 0);
}

}  // namespace
}  // namespace videobroadcast_tests
