// getVolume and setVolume.
#include "tests/unit/videobroadcast/VideoWindowFixture.h"

namespace videobroadcast_tests {
namespace {

class VideoWindowVolume : public VideoWindowFixture {
protected:
    static NPVariant Preset() {
        NPVariant preset{};
        preset.type = NPVariantType_Int32;
        preset.value.intValue = 99;
        return preset;
    }
};

TEST_F(VideoWindowVolume, IsReadFromThePlayerAsAnInt32) {
    Bring(kPresenting);
    platform.answers.volume = 37;
    const Outcome outcome = Call("getVolume");
    EXPECT_EQ(outcome.value, Value(37));
    EXPECT_EQ(outcome.exception, "");
    EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "player.GetVolume()"}));
    ExpectLogInOrder({"m_GetVolume()", "COipfVideoBroadcast::getVolume called 37"});
}

TEST_F(VideoWindowVolume, ReadingIgnoresArguments) {
    Bring(kPresenting);
    EXPECT_EQ(Call("getVolume", {1, "two", nullptr}).value, Value(50));
}

TEST_F(VideoWindowVolume, IsReadInEveryStateInWhichAPlayerIsHeld) {
    for (const State state : {kConnecting, kPresenting, kStopped}) {
        MakeObject();
        Bring(state);
        EXPECT_EQ(Call("getVolume").value, Value(50));
        EndObject();
    }
}

TEST_F(VideoWindowVolume, WithoutAPlayerReadingLeavesTheResultAndTakesNone) {
    EXPECT_EQ(Value(CallWithPresetResult("getVolume", {}, Preset())), Value(99));
    ExpectDone(Call("getVolume"));
    EXPECT_EQ(Calls({"browser.Get", "player", "exception"}), List{});
    EXPECT_TRUE(LogOf("COipfVideoBroadcast::getVolume called").empty());
}

TEST_F(VideoWindowVolume, APageThatIsNotBroadcastRelatedCannotReadIt) {
    Bring(kPresenting);
    platform.answers.broadcastRelated = false;
    ExpectException(Call("getVolume"), "SecurityError");
    EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "exception SecurityError"}));
    ExpectLogged(2, "GetVolume() - not broadcast related ");
    EXPECT_EQ(Value(CallWithPresetResult("getVolume", {}, Preset())), Value(99));
}

TEST_F(VideoWindowVolume, APlayerThatDoesNotAnswerGives0) {
    Bring(kPresenting);
    platform.FailNth("player.GetVolume", 1);
    EXPECT_EQ(Call("getVolume").value, Value(0));
}

TEST_F(VideoWindowVolume, IsHandedToThePlayerWithoutARangeCheck) {
    Bring(kPresenting);
    const std::pair<Value, const char*> volumes[] = {
        {40, "40"},     {250, "250"},         {-1, "-1"},           {0, "0"},          {40.0, "40"},
        {40.9, "40"},   {-40.9, "-40"},       {1e12, "2147483647"}, {-1e12, "-2147483648"},
        {250.0, "250"}, {__builtin_nan(""), "0"}};
    for (const auto& [value, text] : volumes) {
        ForgetWhatHappened();
        ExpectDone(Call("setVolume", {value}));
        EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "player.SetVolume(" + std::string(text) + ")"}));
        ExpectLogInOrder({"m_SetVolume()", "COipfVideoBroadcast::setVolume called " + std::string(text)});
    }
}

TEST_F(VideoWindowVolume, AnyOtherNumberOfArgumentsThanOneIsRefused) {
    Bring(kPresenting);
    for (const Values& arguments : {Values{}, Values{40, 50}, Values{40, 50, 60}}) {
        ForgetWhatHappened();
        ExpectException(Call("setVolume", arguments), "setVolume() - wrong number of arguments");
        ExpectLogged(2, "setVolume(), wrong number of arguments");
        EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()",
                                 "exception setVolume() - wrong number of arguments"}));
    }
}

TEST_F(VideoWindowVolume, WhatIsNoNumberIsRefusedInTheNameOfAnotherMethod) {
    Bring(kPresenting);
    for (const Value& wrong : {Value("40"), Value("loud"), Value(true), Value(nullptr), Value(),
                               Value(MakeChannel({}))}) {
        ForgetWhatHappened();
        ExpectException(Call("setVolume", {wrong}), "setFullScreen() - argument is not an integer");
        ExpectLogged(2, "setVolume(), argument is not an integer");
        EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()",
                                 "exception setFullScreen() - argument is not an integer"}));
    }
}

TEST_F(VideoWindowVolume, ThePageIsAskedAboutBeforeTheArguments) {
    Bring(kPresenting);
    platform.answers.broadcastRelated = false;
    for (const Values& arguments : {Values{}, Values{"loud"}, Values{40}}) {
        ForgetWhatHappened();
        ExpectException(Call("setVolume", arguments), "SecurityError");
        EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "exception SecurityError"}));
        ExpectLogged(2, "setVolume - not broadcast related ");
    }
}

TEST_F(VideoWindowVolume, WithoutAPlayerAGoodArgumentDoesNothingAndABadOneIsRefused) {
    ExpectDone(Call("setVolume", {40}));
    EXPECT_EQ(Calls({"browser.Get", "player", "exception"}), List{});
    EXPECT_TRUE(LogOf("COipfVideoBroadcast::setVolume called").empty());
    ExpectException(Call("setVolume", {"loud"}), "setFullScreen() - argument is not an integer");
    ExpectException(Call("setVolume"), "setVolume() - wrong number of arguments");
}

TEST_F(VideoWindowVolume, SettingLeavesTheResult) {
    Bring(kPresenting);
    EXPECT_EQ(Value(CallWithPresetResult("setVolume", {40}, Preset())), Value(99));
}

TEST_F(VideoWindowVolume, AnyFailingCallIsSurvived) {
    const auto present = [&] { Call("bindToCurrentChannel"); };
    for (const Values& arguments : {Values{}, Values{40}}) {
        for (const char* method : {"getVolume", "setVolume"}) {
            SurvivesFailingBrowser(present, [&] { return Call(method, arguments); });
            SurvivesFailingPlatform(present, [&] { return Call(method, arguments); });
        }
    }
}

TEST_F(VideoWindowVolume, AnInvalidatedObjectHasNone) {
    Bring(kPresenting);
    object->Invalidate();
    ExpectDone(Call("getVolume"));
    ExpectDone(Call("setVolume", {40}));
    EXPECT_TRUE(Calls({"player.GetVolume", "player.SetVolume"}).empty());
}

}  // namespace
}  // namespace videobroadcast_tests
