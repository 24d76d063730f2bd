// currentChannel, programmes and getChannelConfig.
#include <locale>

#include "tests/unit/videobroadcast/ScriptedObjectTest.h"

namespace videobroadcast_tests {
namespace {

class ChannelObjectsCurrent : public ScriptedObjectTest {
protected:
    static NPVariant Preset() {
        NPVariant preset{};
        preset.type = NPVariantType_Int32;
        preset.value.intValue = 99;
        return preset;
    }
    void ExpectNull(const Outcome& outcome, const std::string& exception = "") {
        EXPECT_TRUE(outcome.accepted);
        EXPECT_EQ(outcome.value, Value(nullptr));
        EXPECT_EQ(outcome.exception, exception);
    }
};

TEST_F(ChannelObjectsCurrent, TheCurrentChannelIsMadeFromThePlayersIdAndKeepsItsHold) {
    Bring(kPresenting);
    platform.answers.channel = 44;
    const Outcome outcome = Get("currentChannel");
    EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "player.GetChannel()",
                             "keys.GetKey(__OIPF_VBO_" + Id() + ")", "evaluate new Channel(\"key\", 44);"}));
    EXPECT_EQ(outcome.value, Value(*browser.Created("Channel").front()));
    EXPECT_EQ(outcome.exception, "");
    EXPECT_EQ(platform.Holds(44), 1);
    ExpectLogged(3, "COipfVideoBroadcast::m_GetCurrCh()");
    ExpectNotLogged("IBroadcastPlayer::GetChannel() failed");
}

TEST_F(ChannelObjectsCurrent, TheCurrentChannelIsThePagesAlone) {
    Bring(kPresenting);
    Get("currentChannel");
    EXPECT_EQ(browser.Created("Channel").front()->HeldByPlugin(), 0u);
}

TEST_F(ChannelObjectsCurrent, AnIdIsWrittenUnsigned) {
    Bring(kPresenting);
    platform.answers.channel = 4294967295u;
    Get("currentChannel");
    Get("programmes");
    EXPECT_EQ(Calls({"evaluate", "cache."}), (List{"evaluate new Channel(\"key\", 4294967295);",
                                                   "evaluate new ProgrammeCollection(\"key\", 4294967295);",
                                                   "cache.ReleaseChannel(4294967295)"}));
}

TEST_F(ChannelObjectsCurrent, AnIdIsWrittenWithoutTheGroupingOfTheProcesssLocale) {
    struct Grouping : std::numpunct<char> {
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    Bring(kPresenting);
    platform.answers.channel = 1234567;
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    Get("currentChannel");
    Get("programmes");
    std::locale::global(before);
    EXPECT_EQ(Calls({"evaluate"}), (List{"evaluate new Channel(\"key\", 1234567);",
                                         "evaluate new ProgrammeCollection(\"key\", 1234567);"}));
}

TEST_F(ChannelObjectsCurrent, TheIdAlsoOf0IsAskedForInEveryStateWithAPlayer) {
    platform.answers.channel = 0;
    for (const State state : {kConnecting, kPresenting, kStopped}) {
        MakeObject();
        Bring(state);
        EXPECT_TRUE(Get("currentChannel").value.Object());
        EXPECT_EQ(Calls({"evaluate"}), List{"evaluate new Channel(\"key\", 0);"});
        EndObject();
    }
}

TEST_F(ChannelObjectsCurrent, WithoutAPlayerTheCurrentChannelIsNullAndNoneIsTaken) {
    ExpectNull(Get("currentChannel"));
    EXPECT_EQ(Calls(), List{"browser.IsBroadcastRelated()"});
}

TEST_F(ChannelObjectsCurrent, APlayerWithoutAChannelIsLoggedAndGivesNull) {
    Bring(kPresenting);
    platform.answers.channel = std::nullopt;
    ExpectNull(Get("currentChannel"));
    EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "player.GetChannel()"}));
    ExpectLoggedOnce("IBroadcastPlayer::GetChannel() failed");
}

TEST_F(ChannelObjectsCurrent, ACurrentChannelThatCannotBeMadeIsNullAndItsHoldIsGivenBack) {
    for (const char* function : {"getvalue", "evaluate"}) {
        MakeObject();
        Bring(kPresenting);
        browser.FailNth(function, 1);
        ExpectNull(Get("currentChannel"));
        EXPECT_EQ(Calls({"cache.", "exception"}), List{"cache.ReleaseChannel(1)"});
        EXPECT_EQ(platform.Holds(1), 0);
        ExpectNotLogged("IBroadcastPlayer::GetChannel() failed");
        EndObject();
    }
}

TEST_F(ChannelObjectsCurrent, AChannelClassThatMakesNoObjectGivesNullToo) {
    Bring(kPresenting);
    for (const Value& answer : {Value(7), Value("Channel"), Value(nullptr), Value()}) {
        ClearCalls();
        browser.AnswerEvaluateOf("new Channel(", [answer](const std::string&) { return answer; });
        ExpectNull(Get("currentChannel"));
        EXPECT_EQ(Calls({"cache."}), List{"cache.ReleaseChannel(1)"});
    }
}

TEST_F(ChannelObjectsCurrent, APageThatIsNotBroadcastRelatedGetsASecurityErrorAndNull) {
    Bring(kPresenting);
    platform.answers.broadcastRelated = false;
    ExpectNull(Get("currentChannel"), "SecurityError");
    EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "exception SecurityError"}));
    ExpectLogged(2, "m_GetCurrCh - app is not broadcast related");
}

TEST_F(ChannelObjectsCurrent, NullIsWrittenOverWhatTheBrowserGave) {
    EXPECT_EQ(Value(GetWithPresetResult("currentChannel", Preset())), Value(nullptr));
    platform.answers.broadcastRelated = false;
    EXPECT_EQ(Value(GetWithPresetResult("currentChannel", Preset())), Value(nullptr));
}

TEST_F(ChannelObjectsCurrent, ProgrammesAreMadeFromThePlayersIdWhoseHoldIsGivenBackAfterwards) {
    Bring(kPresenting);
    platform.answers.channel = 44;
    const Outcome outcome = Get("programmes");
    EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "player.GetChannel()",
                             "keys.GetKey(__OIPF_VBO_" + Id() + ")",
                             "evaluate new ProgrammeCollection(\"key\", 44);", "cache.ReleaseChannel(44)"}));
    EXPECT_EQ(outcome.value, Value(*browser.Created("ProgrammeCollection").front()));
    EXPECT_EQ(platform.Holds(44), 0);
    ExpectLogged(3, "COipfVideoBroadcast::m_GetProgrammes()");
}

TEST_F(ChannelObjectsCurrent, ProgrammesThatCannotBeMadeLeaveTheResultAndGiveTheHoldBack) {
    for (const char* function : {"getvalue", "evaluate"}) {
        MakeObject();
        Bring(kPresenting);
        browser.FailNth(function, 1);
        EXPECT_EQ(Value(GetWithPresetResult("programmes", Preset())), Value(99));
        EXPECT_EQ(Calls({"cache.", "exception"}), List{"cache.ReleaseChannel(1)"});
        EndObject();
    }
}

TEST_F(ChannelObjectsCurrent, WithoutAPlayerProgrammesLeaveTheResultAndTakeNone) {
    ExpectDone(Get("programmes"));
    EXPECT_EQ(Value(GetWithPresetResult("programmes", Preset())), Value(99));
    EXPECT_EQ(Calls({"browser.Get", "player", "evaluate", "cache."}), List{});
}

TEST_F(ChannelObjectsCurrent, WithoutAChannelProgrammesLeaveTheResultAndGiveNothingBack) {
    Bring(kPresenting);
    platform.answers.channel = std::nullopt;
    EXPECT_EQ(Value(GetWithPresetResult("programmes", Preset())), Value(99));
    EXPECT_EQ(Calls({"player", "evaluate", "cache.", "exception"}), List{"player.GetChannel()"});
}

TEST_F(ChannelObjectsCurrent, APageThatIsNotBroadcastRelatedGetsASecurityErrorAndNoProgrammes) {
    Bring(kPresenting);
    platform.answers.broadcastRelated = false;
    ExpectException(Get("programmes"), "SecurityError");
    EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "exception SecurityError"}));
    ExpectLogged(2, "m_GetProgrammes - app is not broadcast related");
    EXPECT_EQ(Value(GetWithPresetResult("programmes", Preset())), Value(99));
}

TEST_F(ChannelObjectsCurrent, TheChannelConfigurationIsMadeWithoutArguments) {
    const Outcome outcome = Call("getChannelConfig");
    EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "keys.GetKey(__OIPF_VBO_" + Id() + ")",
                             "evaluate new ChannelConfig(\"key\");"}));
    EXPECT_EQ(outcome.value, Value(*browser.Created("ChannelConfig").front()));
    EXPECT_EQ(outcome.exception, "");
    ExpectLogInOrder({"m_GetChannelConfig()", "getChannelConfig success"});
}

TEST_F(ChannelObjectsCurrent, TheChannelConfigurationIgnoresItsArguments) {
    EXPECT_TRUE(Call("getChannelConfig", {1, "two", nullptr, 4}).value.Object());
    EXPECT_EQ(Calls({"evaluate"}), List{"evaluate new ChannelConfig(\"key\");"});
}

TEST_F(ChannelObjectsCurrent, AChannelConfigurationThatCannotBeMadeThrows) {
    for (const char* function : {"getvalue", "evaluate"}) {
        browser.FailNth(function, 1);
        ExpectException(Call("getChannelConfig"), "Unexpected Failure");
    }
    browser.AnswerEvaluateOf("new ChannelConfig(", [](const std::string&) { return Value("no object"); });
    ExpectException(Call("getChannelConfig"), "Unexpected Failure");
    ExpectNotLogged("getChannelConfig success");
}

TEST_F(ChannelObjectsCurrent, WithoutAConfigurationTheResultIsLeftAsTheBrowserGaveIt) {
    browser.FailNth("evaluate", 1);
    EXPECT_EQ(Value(CallWithPresetResult("getChannelConfig", {}, Preset())), Value(99));
    platform.answers.broadcastRelated = false;
    EXPECT_EQ(Value(CallWithPresetResult("getChannelConfig", {}, Preset())), Value(99));
}

TEST_F(ChannelObjectsCurrent, APageThatIsNotBroadcastRelatedGetsASecurityErrorAndNoConfiguration) {
    platform.answers.broadcastRelated = false;
    ExpectException(Call("getChannelConfig"), "SecurityError");
    EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "exception SecurityError"}));
    ExpectLogged(2, "getChannelConfig() - app is not broadcast-related");
}

TEST_F(ChannelObjectsCurrent, ConstructorsThatReleaseThePlayerOrEndTheObjectAreSurvived) {
    browser.pageHoldsDuringCalls = false;
    for (const char* member : {"currentChannel", "programmes"}) {
        for (const bool ends : {false, true}) {
            MakeObject();
            Bring(kPresenting);
            Once("evaluate new ", [&] {
                ends ? EndObject() : static_cast<void>(Call("release"));
            });
            const Outcome outcome = Get(member);
            EXPECT_TRUE(outcome.accepted);
            EXPECT_TRUE(outcome.value.Object());
            EXPECT_EQ(platform.HandedOut(), 0u);
            EndObject();
        }
    }
}

TEST_F(ChannelObjectsCurrent, AnyFailingCallIsSurvived) {
    const auto present = [&] { Call("bindToCurrentChannel"); };
    for (const char* property : {"currentChannel", "programmes"}) {
        SurvivesFailingBrowser(present, [&] { return Get(property); });
        SurvivesFailingPlatform(present, [&] { return Get(property); });
    }
    SurvivesFailingBrowser([] {}, [&] { return Call("getChannelConfig"); });
    SurvivesFailingPlatform([] {}, [&] { return Call("getChannelConfig"); });
}

TEST_F(ChannelObjectsCurrent, AnInvalidatedObjectMakesNone) {
    object->Invalidate();
    Call("nextChannel");
    ExpectNull(Get("currentChannel"));
    ExpectDone(Get("programmes"));
    ExpectException(Call("getChannelConfig"), "Unexpected Failure");
    EXPECT_EQ(Calls({"evaluate", "cache."}), (List{"cache.ReleaseChannel(1)", "cache.ReleaseChannel(1)"}));
}

}  // namespace
}  // namespace videobroadcast_tests
