// What the object says beside what it does: the lines of the log, with their levels, in their places between the calls.
#include <algorithm>
#include <utility>

#include "tests/unit/videobroadcast/VideoWindowFixture.h"

namespace videobroadcast_tests {
namespace {

class LogOrder : public VideoWindowFixture {
protected:
    // From here on each call comes after the lines that were logged before it.
    void Follow() {
        ForgetWhatHappened();
        m_lines = 0;
        m_steps.clear();
        if (!std::exchange(m_follows, true)) {
            When("", [this] {
                TakeLines();
                m_steps.push_back(Calls().back());
            });
        }
    }
    // The steps came in this order; others may stand between them. Lines begin with their level: "3: m_GetVolume()".
    void ExpectSteps(const List& steps) {
        TakeLines();
        auto from = m_steps.cbegin();
        for (const std::string& step : steps) {
            const auto found = std::find(from, m_steps.cend(), step);
            if (found == m_steps.cend()) {
                ADD_FAILURE() << "\"" << step << "\" did not come, or not in its place:\n"
                              << ::testing::PrintToString(m_steps);
                return;
            }
            from = found + 1;
        }
    }
    void ExpectStepsOf(const std::string& method, const Values& arguments, const List& steps) {
        Follow();
        EXPECT_TRUE(Call(method, arguments).accepted);
        ExpectSteps(steps);
    }
    std::string Pointer() const {
        char text[32];
        std::snprintf(text, sizeof text, "%p", reinterpret_cast<void*>(static_cast<std::uintptr_t>(std::stoull(Id()))));
        return text;
    }

private:
    void TakeLines() {
        const std::vector<LogLine> lines = Log::Instance().Lines();
        for (; m_lines < lines.size(); ++m_lines) {
            m_steps.push_back(std::to_string(lines[m_lines].level) + ": " + lines[m_lines].text);
        }
    }

    bool m_follows = false;
    std::size_t m_lines = 0;
    List m_steps;
};

TEST_F(LogOrder, AChannelIsSaidToBeFoundBeforeItIsTuned) {
    ExpectStepsOf("setChannel", {MakeChannel({{"mid", 7}})},
                  {"3: m_GetBroadcastPlayer request " + Pointer(), "browser.GetBroadcastPlayer()", "read mid",
                   "3: Got channel id 7", "player.SetChannel(7, false)"});
    ExpectStepsOf(
        "setChannel", {MakeChannel({{"dsd", "0A1b"}})},
        {"read mid", "3: Failed to get Channel ID!", "read dsd", "4: 0x0A, ", "4: 0x1B, ", "read idType",
         "player.GetChannelFromDSD(-1, 0a1b, 0)", "3: Got channel from DSD, id 3", "player.SetChannel(3, true)"});
    ExpectStepsOf("setChannel", {MakeChannel({})},
                  {"player.GetChannelFromTriplet(-1, 0, 0, 0)", "3: Got channel from triplet, id 2",
                   "player.SetChannel(2, false)"});
}

TEST_F(LogOrder, AFailedChannelIsLoggedBeforeItIsReported) {
    platform.answers.tripletChannel = std::nullopt;
    ExpectStepsOf("setChannel", {MakeChannel({})},
                  {"player.GetChannelFromTriplet(-1, 0, 0, 0)", "2: Failed to get channel from triplet!",
                   "2: setChannel() - channel not found.", "script.onChannelChangeError(channel, 12)"});
    platform.answers.dsdResult = 1;
    ExpectStepsOf(
        "setChannel", {MakeChannel({{"dsd", "0A"}})},
        {"2: DSD Parse error - failed to get channel from DSD!", "script.onChannelChangeError(channel#2, 100)"});
    platform.answers.dsdResult = 2;
    ExpectStepsOf("setChannel", {MakeChannel({{"dsd", "0A"}})},
                  {"2: Channel not supported from DSD", "script.onChannelChangeError(channel#3, 0)"});
    platform.answers.acceptsChannel = false;
    ExpectStepsOf("setChannel", {MakeChannel({{"mid", 7}})},
                  {"player.SetChannel(7, false)", "2: setChannel(7) failed.", "cache.ReleaseChannel(7)",
                   "script.onChannelChangeError(channel#4, 100)"});
    platform.answers.canStep = false;
    ExpectStepsOf("nextChannel", {},
                  {"player.NextChannel()", "2: IBroadcastPlayer::Next/PrevChannel() FAILED",
                   "script.onChannelChangeError(null, 10)"});
}

TEST_F(LogOrder, AnOperatingRecorderIsLoggedBeforeThePageIsTold) {
    platform.answers.pvrOperating = true;
    ExpectStepsOf("setChannel", {nullptr},
                  {"2: Can't setChannel - PVR operating!", "script.onChannelChangeError(null, 7)"});
    ExpectStepsOf("prevChannel", {}, {"2: Can't call next/prevChannel - PVR operating!", "exception PVR operating"});
}

TEST_F(LogOrder, TheNullChannelAsksForThePlayerAgainBeforeItIsBound) {
    const std::string request = "3: m_GetBroadcastPlayer request " + Pointer();
    ExpectStepsOf(
        "setChannel", {nullptr},
        {request, "browser.GetBroadcastPlayer()", request, "3: CVBOEmbeddedObject::SetNullChannel bc = true",
         "browser.SetChannel(0, true)", "player.StopChannel()", "3: CVBOEmbeddedObject::SetNullChannel complete",
         "script.onChannelChangeSucceeded(null)", "3: m_ReleaseBroadcastPlayer request " + Pointer(),
         "browser.ReleaseBroadcastPlayer(player)", "3: m_ReleaseBroadcastPlayer finished"});
}

TEST_F(LogOrder, BindingLogsItsStatesBeforeThePageHearsOfThem) {
    ExpectStepsOf(
        "bindToCurrentChannel", {},
        {"player.BindToCurrentChannel()", "script.onPlayStateChange(1, undefined)", "3: Set play state to presenting.",
         "script.onPlayStateChange(2, undefined)", "3: COipfVideoBroadcast::bindToCurrentChannel OK"});
    Call("release");
    platform.answers.players = 0;
    ExpectStepsOf("bindToCurrentChannel", {},
                  {"browser.GetBroadcastPlayer()", "2: bindToCurrentChannel failed to get m_bcPlayer",
                   "browser.CurrentChannel()"});
}

TEST_F(LogOrder, AReleaseIsLoggedFromItsRequestToItsEnd) {
    Bring(kPresenting);
    ExpectStepsOf("release", {},
                  {"3: m_ReleaseBroadcastPlayer request " + Pointer(), "script.onPlayStateChange(0, undefined)",
                   "browser.ReleaseBroadcastPlayer(player)", "3: m_ReleaseBroadcastPlayer finished"});
}

TEST_F(LogOrder, APageThatIsNotBroadcastRelatedIsLoggedBeforeTheException) {
    platform.answers.broadcastRelated = false;
    const std::pair<const char*, const char*> refusals[] = {
        {"nextChannel", "GetBroadcastPlayer is not broadcast related "},
        {"bindToCurrentChannel", "m_BindToCurrentCh - app is not broadcast related "},
        {"getChannelConfig", "getChannelConfig() - app is not broadcast-related"},
        {"getCurrentActiveComponents", "m_GetCurrentActiveComponents - app is not broadcast related"},
        {"selectComponent", "m_SelectComponent - app is not broadcast related"},
        {"unselectComponent", "m_UnselectComponent - app is not broadcast related"},
        {"getVolume", "GetVolume() - not broadcast related "},
        {"setVolume", "setVolume - not broadcast related "}};
    for (const auto& [method, line] : refusals) {
        ExpectStepsOf(method, {},
                      {"browser.IsBroadcastRelated()", std::string("2: ") + line, "exception SecurityError"});
    }
}

TEST_F(LogOrder, ARefusedArgumentIsLoggedBeforeTheException) {
    struct Refusal {
        const char* method;
        Values arguments;
        const char* line;
        const char* exception;
    };
    const Refusal refusals[] = {
        {"setFullScreen",
         {},
         "setFullScreen(), wrong number of arguments",
         "setFullScreen() - wrong number of arguments"},
        {"setFullScreen",
         {1},
         "setFullScreen(), argument is not a boolean",
         "setFullScreen() - argument is not a boolean"},
        {"setVolume", {}, "setVolume(), wrong number of arguments", "setVolume() - wrong number of arguments"},
        {"setVolume",
         {"40"},
         "setVolume(), argument is not an integer",
         "setFullScreen() - argument is not an integer"},
        {"createChannelObject", {"12"}, "Create Channel object failed - idType is invalid", "idType is invalid"}};
    for (const auto& [method, arguments, line, exception] : refusals) {
        ExpectStepsOf(method, arguments, {std::string("2: ") + line, std::string("exception ") + exception});
    }
    Call("setFullScreen", {true});
    Follow();
    Set("width", 640);
    ExpectSteps({"3: COipfVideoBroadcast::m_SetWidth()",
                 "2:  COipfVideoBroadcast:: width is readonly in fullscreen mode",
                 "exception width is readonly in fullscreen mode"});
}

TEST_F(LogOrder, AChannelObjectIsDescribedBeforeItIsMade) {
    ExpectStepsOf("createChannelObject", {12, "Z", 5},
                  {"3: m_CreateChannelObj()", "4: Type is 3",
                   "3: Create Channel object using DSD (length 1) - ID 12, sid 5, DSD data:", "3: eval 12, \"5a\", 5",
                   "evaluate new Channel(\"key\", 12, \"5a\", 5);"});
    ExpectStepsOf("createChannelObject", {12, 1, 2, 3},
                  {"3: m_CreateChannelObj()", "3: VBO createChannelObject using triplet",
                   "evaluate new Channel(\"key\", 12, 1, 2, 3);"});
    browser.FailNth("evaluate", 1);
    ExpectStepsOf("createChannelObject", {12, 1, 2, 3},
                  {"2: Create Channel object failed", "exception Channel creation failed."});
    ExpectStepsOf("getChannelConfig", {},
                  {"3: m_GetChannelConfig()", "browser.IsBroadcastRelated()", "evaluate new ChannelConfig(\"key\");",
                   "3: getChannelConfig success"});
}

TEST_F(LogOrder, ThePropertiesOfTheChannelAreLoggedBeforeThePageIsAskedAbout) {
    Bring(kPresenting);
    platform.answers.channel = std::nullopt;
    Follow();
    Get("currentChannel");
    ExpectSteps({"3: COipfVideoBroadcast::m_GetCurrCh()", "browser.IsBroadcastRelated()", "player.GetChannel()",
                 "2: IBroadcastPlayer::GetChannel() failed"});
    Follow();
    Get("programmes");
    ExpectSteps({"3: COipfVideoBroadcast::m_GetProgrammes()", "browser.IsBroadcastRelated()", "player.GetChannel()"});
}

TEST_F(LogOrder, EachComponentIsLoggedBeforeItIsMade) {
    platform.answers.audioComponents = {"1, 7", "1, 8"};
    Bring(kPresenting);
    ExpectStepsOf(
        "getComponents", {1},
        {"4: m_GetComponents() 1 args", "3: m_GetComponents() type 1, active_only 0", "evaluate new Array();",
         "player.GetAudioComponents(false)", "3: Params : 1, 7", "evaluate new AVComponent(\"key\", 1, 7);",
         "3: Params : 1, 8", "evaluate new AVComponent(\"key\", 1, 8);",
         "script.Array().push(AVComponent(1, 7), AVComponent(1, 8))", "3: 2 AVComponents added to the array"});
    ExpectStepsOf("getCurrentActiveComponents", {1},
                  {"4: m_GetCurrentActiveComponents() 1 args", "browser.IsBroadcastRelated()",
                   "3: m_GetComponents() type 1, active_only 1", "evaluate new Array();"});
}

TEST_F(LogOrder, EachMemberOfAComponentIsLoggedWhenItWasRead) {
    Bring(kPresenting);
    FakeObject& component =
        MakeRecord("component", {"type", "index", "pid"}, {{"type", 0}, {"index", 3}, {"pid", 101}});
    ExpectStepsOf("selectComponent", {component},
                  {"read type", "3: AVComponent type is 0", "read index", "3: AVComponent index is 3", "read pid",
                   "3: Video pid is 101", "player.SelectVideoComponent(101)"});
    ExpectStepsOf("unselectComponent", {component},
                  {"read index", "3: AVComponent index is 3", "read type", "3: AVComponent type is 0", "read pid",
                   "3: Video pid is 101", "player.UnselectVideoComponent(101)"});
}

TEST_F(LogOrder, TheStepsOfALayoutAreLoggedBetweenThoseOfThePlatform) {
    Bring(kPresenting);
    Follow();
    SetWindow(100, 200, 640, 360);
    browser.RunAsyncCalls();
    ExpectSteps({"3: COipfVideoBroadcast::OnEvent(1009)", "3: Force redraw...", "forceredraw",
                 "tasks.GetActiveApplication()",
                 "3: COipfVideoBroadcast::updateLayout called x: 100, y: 200, width: 640, height: 360",
                 "browser.IsMediaPlaybackMode()", "browser.CorrectVideoAspectRatio(100, 200, 640, 360, [0, 0, 0, 0])",
                 "3: updateLayout corrected for aspect ratio x: 100, y: 200, width: 640, height: 360",
                 "browser.ConvertGraphicsToVideo([100, 200, 640, 360], [0, 0, 1280, 720], [0, 0, 0, 0])",
                 "3: ConvertGraphicsToVideo returns true", "player.SetVideoWindow(150, 300, 960, 540)",
                 "browser.GetPanelResolution(1920, 1080)",
                 "3: Dynamic Contrast ++++ void OipfVideoBroadcast::COipfVideoBroadcast::m_UpdateLayout()(3151)",
                 "screen.SetDynamicContrast(24, 1)"});
}

TEST_F(LogOrder, FullScreenIsLoggedBeforeThePlayerIsTold) {
    Bring(kPresenting);
    ExpectStepsOf("setFullScreen", {true},
                  {"3: m_SetFullScreen()", "browser.IsBroadcastRelated()", "script.onFullScreenChange()",
                   "3: COipfVideoBroadcast::OnEvent(1009)"});
    Follow();
    browser.RunAsyncCalls();
    ExpectSteps({"browser.IsMediaPlaybackMode()", "3: COipfVideoBroadcast::m_Fullscreen - App isnt EPG and HOMEPANEL",
                 "player.SetFullScreenVideo()"});
}

TEST_F(LogOrder, TheVolumeIsLoggedAfterThePlayerAnswered) {
    Bring(kPresenting);
    ExpectStepsOf("setVolume", {40},
                  {"3: m_SetVolume()", "browser.IsBroadcastRelated()", "player.SetVolume(40)",
                   "3: COipfVideoBroadcast::setVolume called 40"});
    ExpectStepsOf("getVolume", {},
                  {"3: m_GetVolume()", "browser.IsBroadcastRelated()", "player.GetVolume()",
                   "3: COipfVideoBroadcast::getVolume called 40"});
}

TEST_F(LogOrder, ARatingIsLoggedBeforeItsCollectionIsMade) {
    Bring(kConnecting);
    Follow();
    Notify([](IBroadcastPlayerListener& listener) { listener.ParentalRatingChanged(9); });
    ExpectSteps({"3: Rating changed from 9 to 0,  m_lastRatingValid == false", "3: m_GetMinimumAge for rating 9",
                 "3: m_GetMinimumAge rating is valid",
                 "evaluate new ParentalRatingCollection(\"key\", 'dvb-si', '12', 12);",
                 "3: COipfVideoBroadcast::m_OnEvent(10)"});
}

TEST_F(LogOrder, TheStateOfRightsIsLoggedBeforeItIsTold) {
    Bring(kPresenting);
    Follow();
    Notify([](IBroadcastPlayerListener& listener) { listener.Scrambled(0x0B00); });
    ExpectSteps({"3: E_CH_SCRAMBLED - send DrmRightsError message", "3: m_SendDrmRightsError for state = 0, sid = b00",
                 "3: COipfVideoBroadcast::m_OnEvent(13)", "script.onPlayStateChange(1, 4)"});
    Follow();
    Notify([](IBroadcastPlayerListener& listener) { listener.Unscrambled(0x0B00); });
    ExpectSteps({"3: E_CH_UNSCRAMBLED - send message", "3: m_SendDrmRightsError for state = 2, sid = b00",
                 "3: COipfVideoBroadcast::m_OnEvent(13)", "script.onPlayStateChange(2, undefined)"});
}

TEST_F(LogOrder, ResumingIsLoggedBeforeTheStateIsTold) {
    Bring(kPresenting);
    Notify([](IBroadcastPlayerListener& listener) { listener.Suspend(); });
    Follow();
    Notify([](IBroadcastPlayerListener& listener) { listener.Resume(); });
    ExpectSteps({"3: COipfVideoBroadcast::m_OnResume()", "3: Set play state to presenting.",
                 "script.onPlayStateChange(2, undefined)"});
}

TEST_F(LogOrder, AHandlerIsSaidToBeCalledBeforeItIs) {
    ExpectStepsOf("setFullScreen", {true},
                  {"3: COipfVideoBroadcast::m_OnEvent(6)", "3: Invoke handler()", "script.onFullScreenChange()",
                   "3: Create DOM Event for FullScreenChange"});
}

TEST_F(LogOrder, AStateIsSaidToBeSetWhenItsLayoutIsDone) {
    Bring(kConnecting);
    Follow();
    Notify([](IBroadcastPlayerListener& listener) { listener.TuneSuccess(0); });
    ExpectSteps({"script.onPlayStateChange(2, undefined)", "browser.IsMediaPlaybackMode()",
                 "3: COipfVideoBroadcast::m_SetPlayState OK"});
}

TEST_F(LogOrder, AChannelThatCannotBeMadeIsLoggedBeforeItsHoldIsGivenBack) {
    Bring(kConnecting);
    Follow();
    browser.AnswerEvaluateOf("new Channel", [](const std::string&) { return std::nullopt; });
    Notify([](IBroadcastPlayerListener& listener) { listener.TuneSuccess(7); });
    ExpectSteps({"2: Failed to create Channel object", "cache.ReleaseChannel(7)",
                 "script.onChannelChangeSucceeded(undefined)"});
}

TEST_F(LogOrder, AWrongHandlerIsLoggedBeforeTheException) {
    Follow();
    EXPECT_TRUE(Set("onPlayStateChange", 7).accepted);
    ExpectSteps({"2: Set property - value is not an object, null or undefined",
                 "exception value is not an object"});
}

TEST_F(LogOrder, AHandlerThatIsSetIsNamed) {
    FakeObject& handler = browser.MakeFunction("handler");
    char pointer[32];
    std::snprintf(pointer, sizeof pointer, "%p", static_cast<void*>(handler.Pointer()));
    Follow();
    EXPECT_TRUE(Set("onPlayStateChange", handler).accepted);
    ExpectSteps({std::string("3: Set NPObject ") + pointer});
    Set("onPlayStateChange", nullptr);
}

TEST_F(LogOrder, AListenerOfAForeignPageIsLoggedBeforeTheException) {
    platform.answers.broadcastRelated = false;
    ExpectStepsOf("addEventListener", {"PlayStateChange", browser.MakeFunction("listener"), false},
                  {"2: t_AllowEventListener() - app is not broadcast related", "exception SecurityError"});
}

class LogOrderOfStreamEvents : public LogOrder {
protected:
    FakeObject& listener = browser.MakeFunction("listener");
};

TEST_F(LogOrderOfStreamEvents, ASubscriptionIsLoggedAroundTheServicesAnswer) {
    char pointer[32];
    std::snprintf(pointer, sizeof pointer, "0x%lx", reinterpret_cast<unsigned long>(listener.Pointer()));
    const std::string what = "targetURL=dvb:/x, eventName=name";
    ExpectStepsOf(
        "addStreamEventListener", {"dvb:/x", "name", listener},
        {"3: m_AddStreamEventListener()",
         "3: [CStreamEventHandler::AddEventListener] adding event listener, " + what + ", listener=" + pointer,
         "dsmcc.SubscribeStreamEvent(dvb:/x, name, 0)", "3: [CStreamEventHandler::AddEventListener] jobId=1",
         "3: [CStreamEventHandler::AddEventListener] EXIT"});
    platform.FailNth("dsmcc.UnsubscribeStreamEvent", 1);
    ExpectStepsOf(
        "removeStreamEventListener", {"dvb:/x", "name", listener},
        {"3: m_RemoveStreamEventListener()",
         "3: [CStreamEventHandler::RemoveEventListener] removing event listener, " + what + ", listener=" + pointer,
         "3: [CStreamEventHandler::t_UnsubscrieStreamEvent] unsubscribing listener URL=dvb:/x, "
         "eventName=name, dsmJobId=1",
         "dsmcc.UnsubscribeStreamEvent(1)",
         "2: [CStreamEventHandler::t_UnsubscrieStreamEvent] couldn't unsubscribe from stream event, "
         "targetURL=dvb:/x,  eventName=name, dsmJobId=1"});
}

TEST_F(LogOrderOfStreamEvents, ADeliveryIsDescribedBeforeTheListenerIsCalled) {
    Call("addStreamEventListener", {"dvb:/x", "name", listener});
    Follow();
    platform.DeliverStreamEvent(1, "name", "A");
    browser.RunAsyncCalls();
    ExpectSteps({"3: [CplVideoBroadcast::DsmEventCallback] sending copy of stream related event to browser",
                 "3: COipfVideoBroadcast::OnEvent(12)", "3: m_ProcessEvent E_ON_STREAM_EVENT",
                 "3: [COipfVideoBroadcast::m_OnDsmEvent] ",
                 "3: GetStreamEventDataListeners", "3: [m_HandleStreamEventCallback] ",
                 "3: [COipfVideoBroadcast::m_HandleStreamEventCallback] creating event id=0, name=name, data=41, "
                 "text=A, status=trigger",
                 "script.listener(plug-in object#2)", "3: [m_HandleStreamEventCallback] ",
                 "3: [m_HandleStreamEventCallback] there is no callback"});
}

TEST_F(LogOrderOfStreamEvents, TheEndUnregistersBeforeItUnsubscribes) {
    Call("addStreamEventListener", {"dvb:/x", "name", listener});
    Follow();
    EndObject();
    ExpectSteps({"3: COipfVideoBroadcast::~COipfVideoBroadcast()", "dsmcc.UnregisterStreamEventCallback()",
                 "3: [CStreamEventHandler::t_RemoveAllListeners] ENTER", "dsmcc.UnsubscribeStreamEvent(1)",
                 "3: [CStreamEventHandler::t_RemoveAllListeners] EXIT"});
}

}  // namespace
}  // namespace videobroadcast_tests
