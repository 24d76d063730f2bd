// The fixture of the tests of channels, video window and components.
#include "tests/unit/videobroadcast/ScriptedObjectTest.h"

#include <algorithm>
#include <memory>

#include "tests/support/BrowserFunctions.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace videobroadcast_tests {

ScriptedObjectTest::ScriptedObjectTest() {
    MakeObject();
}

void ScriptedObjectTest::TearDown() {
    EndObject();
    PluginTest::TearDown();
}

void ScriptedObjectTest::MakeObject() {
    object.reset();
    object.emplace(browser);
    ++m_objects;
    for (const char* handler :
         {"onPlayStateChange", "onChannelChangeError", "onChannelChangeSucceeded", "onFullScreenChange"}) {
        ListenTo(handler);
    }
    ForgetWhatHappened();
}

// The plug-in never gives back the handlers that an object still has at its end.
void ScriptedObjectTest::ListenTo(const std::string& handler) {
    FakeObject*& function = m_handlers[handler];
    if (function == nullptr) {
        function = &browser.MakeFunction(handler);
    }
    browser.MayKeep(*function, m_objects);
    Set(handler, *function);
}

void ScriptedObjectTest::EndObject() {
    if (browser.GetLedger().IsAlive(object->Object())) {
        object->Invalidate();
    }
    object->Destroy();
}

std::string ScriptedObjectTest::Id() const {
    using OipfVideoBroadcast::COipfVideoBroadcast;
    return std::to_string(reinterpret_cast<std::uintptr_t>(static_cast<COipfVideoBroadcast*>(object->Object())));
}

NPVariant ScriptedObjectTest::CallWithPresetResult(const std::string& name, const Values& arguments,
                                                   const NPVariant& preset) {
    const support::PassedValues passed(browser, arguments);
    NPVariant result = preset;
    NPObject* scripted = object->Object();
    EXPECT_TRUE(scripted->_class->invoke(scripted, support::IdentifierOf(name), passed.Data(), passed.Count(),
                                         &result));
    return result;
}

NPVariant ScriptedObjectTest::GetWithPresetResult(const std::string& name, const NPVariant& preset) {
    NPVariant result = preset;
    NPObject* scripted = object->Object();
    EXPECT_TRUE(scripted->_class->getProperty(scripted, support::IdentifierOf(name), &result));
    return result;
}

void ScriptedObjectTest::Bring(State state) {
    if (state == kConnecting) {
        Call("nextChannel");
    } else if (state != kUnrealized) {
        Call("bindToCurrentChannel");
    }
    if (state == kStopped) {
        Call("stop");
    }
    ASSERT_EQ(PlayState(), state);
    ForgetWhatHappened();
}

void ScriptedObjectTest::BringToConnectingWithoutPlayer() {
    Call("nextChannel");
    platform.Notify([](IBroadcastPlayerListener& listener) { listener.ChannelChanged(); });
    Call("release");
    browser.RunAsyncCalls();
    ASSERT_EQ(PlayState(), kConnecting);
    ASSERT_EQ(platform.HandedOut(), 0u);
    ForgetWhatHappened();
}

void ScriptedObjectTest::Notify(const std::function<void(IBroadcastPlayerListener&)>& notification) {
    ASSERT_TRUE(platform.Notify(notification));
    browser.RunAsyncCalls();
}

void ScriptedObjectTest::ForgetWhatHappened() {
    ClearCalls();
    ClearLog();
}

FakeObject& ScriptedObjectTest::MakeRecord(const std::string& name, const std::vector<std::string>& members,
                                           const std::map<std::string, Value>& values) {
    FakeObject& record = browser.MakeObject(name);
    for (const std::string& member : members) {
        const auto value = values.find(member);
        WhenRead(record, member, [] {}, value == values.end() ? Value() : value->second);
    }
    return record;
}

FakeObject& ScriptedObjectTest::MakeChannel(const std::map<std::string, Value>& values) {
    return MakeRecord("channel", {"mid", "dsd", "idType", "sid", "onid", "tsid"}, values);
}

void ScriptedObjectTest::WhenRead(FakeObject& record, const std::string& member, std::function<void()> action,
                                  Value value) {
    record.SetGetter(member, [member, action, value] {
        CallList::Instance().Add("read " + member);
        action();
        return value;
    });
}

void ScriptedObjectTest::Once(const std::string& prefix, std::function<void()> action) {
    When(prefix, [action, done = std::make_shared<bool>(false)] {
        if (!std::exchange(*done, true)) {
            action();
        }
    });
}

List ScriptedObjectTest::Steps() {
    List steps = Calls({"script.", "player", "cache.", "exception ", "evaluate ", "read ", "browser.SetChannel",
                        "browser.GetBroadcastPlayer", "browser.ReleaseBroadcastPlayer", "browser.CurrentChannel"});
    std::erase_if(steps, [](const std::string& call) {
        return call.starts_with("player.SetVideoWindow") || call.starts_with("player.SetFullScreenVideo");
    });
    return steps;
}

List ScriptedObjectTest::LogOf(const std::string& prefix) {
    List lines = Log::Instance().Texts();
    std::erase_if(lines, [&](const std::string& line) { return !line.starts_with(prefix); });
    return lines;
}

void ScriptedObjectTest::ExpectLogInOrder(const List& lines) {
    const List all = Log::Instance().Texts();
    auto from = all.begin();
    for (const std::string& line : lines) {
        const auto found = std::find(from, all.end(), line);
        if (found == all.end()) {
            ADD_FAILURE() << "\"" << line << "\" was not logged, or not in its place:\n"
                          << ::testing::PrintToString(all);
            return;
        }
        from = found + 1;
    }
}

bool ScriptedObjectTest::RunWithFault(const std::function<void()>& prepare, const Member& member,
                                      const std::string& function, unsigned n, bool ofPlatform) {
    SCOPED_TRACE("use " + std::to_string(n) + " of " + function + " fails");
    MakeObject();
    prepare();
    support::FaultPlan& faults = ofPlatform ? platform.Faults() : browser.Faults();
    const unsigned before = faults.Uses(function);
    faults.FailNth(function, n);
    EXPECT_TRUE(member().accepted);
    const unsigned uses = faults.Uses(function) - before;
    faults.StopFailing(function);
    browser.RunAsyncCalls();
    EndObject();
    platform.ExpectBalanced();
    browser.ExpectBalanced();
    return uses >= n;
}

void ScriptedObjectTest::SurvivesFailingBrowser(const std::function<void()>& prepare, const Member& member) {
    for (const char* function : {"getvalue", "evaluate", "getstringidentifier", "getproperty", "invoke",
                                 "invokeDefault", "createobject", "memalloc", "setexception", "pluginthreadasynccall",
                                 "forceredraw"}) {
        for (unsigned n = 1; RunWithFault(prepare, member, function, n, false); ++n) {
        }
    }
}

void ScriptedObjectTest::SurvivesFailingPlatform(const std::function<void()>& prepare, const Member& member) {
    for (const char* operation :
         {"browser.IsBroadcastRelated", "browser.GetBroadcastPlayer", "browser.SetChannel", "browser.CurrentChannel",
          "browser.IsMediaPlaybackMode", "browser.ConvertGraphicsToVideo", "browser.GetPanelResolution",
          "player.GetChannel", "player.SetChannel", "player.NextChannel", "player.PrevChannel", "player.GetVolume",
          "player.SetVolume", "player.GetChannelFromTriplet", "player.GetChannelFromDSD", "player.GetVideoComponents",
          "player.GetAudioComponents", "player.GetSubtitleComponents", "keys.GetKey", "tasks.GetWrapperManager",
          "tasks.GetWrapperInstance", "pvr.IsPvrOperating"}) {
        for (unsigned n = 1; RunWithFault(prepare, member, operation, n, true); ++n) {
        }
    }
}

void ExpectDone(const Outcome& outcome) {
    EXPECT_TRUE(outcome.accepted);
    EXPECT_EQ(outcome.value, Value());
    EXPECT_EQ(outcome.exception, "");
}

void ExpectException(const Outcome& outcome, const std::string& text) {
    EXPECT_TRUE(outcome.accepted);
    EXPECT_EQ(outcome.value, Value());
    EXPECT_EQ(outcome.exception, text);
}

}  // namespace videobroadcast_tests
