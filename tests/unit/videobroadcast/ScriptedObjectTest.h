// The fixture of the tests of channels, video window and components: one object on a page that listens to its events.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/PluginInstance.h"
#include "tests/support/PluginTest.h"

namespace videobroadcast_tests {

using support::CallList;
using support::FakeObject;
using support::Log;
using support::LogLine;
using support::Outcome;
using support::Value;
using support::Values;

using List = std::vector<std::string>;

enum State { kUnrealized, kConnecting, kPresenting, kStopped };

// The page has handlers for the events that stand in the list of calls: "script.onPlayStateChange(1, undefined)",
// "script.onChannelChangeError(channel, 12)", "script.onChannelChangeSucceeded(null)", "script.onFullScreenChange()".
class ScriptedObjectTest : public support::PluginTest {
protected:
    ScriptedObjectTest();
    void TearDown() override;

    // A new object in place of the old one.
    void MakeObject();
    // The page's end, as browsers do it; may be called from script.
    void EndObject();

    Outcome Call(const std::string& name, const Values& arguments = {}) { return object->Call(name, arguments); }
    Outcome Get(const std::string& name) { return object->Get(name); }
    Outcome Set(const std::string& name, const Value& value) { return object->Set(name, value); }
    // The decimal address of the C++ object.
    std::string Id() const;
    int PlayState() { return Get("playState").value.Int(); }

    // Calls a method as browsers do that leave something in the result variant.
    NPVariant CallWithPresetResult(const std::string& name, const Values& arguments, const NPVariant& preset);
    NPVariant GetWithPresetResult(const std::string& name, const NPVariant& preset);

    // Takes the object to the state; the lists of calls and log lines are empty then.
    void Bring(State state);
    // CONNECTING, but the player was given back: a notification that was under way acts after "release".
    void BringToConnectingWithoutPlayer();
    // A notification of the platform, acted on by the browser's main thread.
    void Notify(const std::function<void(IBroadcastPlayerListener&)>& notification);
    void ForgetWhatHappened();

    // A page's object whose reads stand in the list of calls: "read mid".
    FakeObject& MakeRecord(const std::string& name, const std::vector<std::string>& members,
                           const std::map<std::string, Value>& values);
    // A Channel object called "channel"; members that are not given are undefined.
    FakeObject& MakeChannel(const std::map<std::string, Value>& values);
    // `action` runs when the member is read, then the value is handed out.
    void WhenRead(FakeObject& record, const std::string& member, std::function<void()> action, Value value = {});
    // Runs `action` at the first call that begins with `prefix`.
    void Once(const std::string& prefix, std::function<void()> action);

    // The calls that move channels, players, holds and script; questions about the page and the layout are left out.
    static List Steps();
    // The lines of the log that begin with `prefix`.
    static List LogOf(const std::string& prefix);
    // The lines were logged in this order; others may stand between them.
    static void ExpectLogInOrder(const List& lines);
    // The line was logged once; its level is left open.
    static void ExpectLoggedOnce(const std::string& text) { EXPECT_EQ(Log::Instance().Count(text), 1u) << text; }

    // For each function of the browser or operation of the platform: `member` runs on a new object with the n-th use
    // failing, for every n that it comes to. The page's call must be accepted and, once the object is gone, everything
    // given back.
    using Member = std::function<Outcome()>;
    void SurvivesFailingBrowser(const std::function<void()>& prepare, const Member& member);
    void SurvivesFailingPlatform(const std::function<void()>& prepare, const Member& member);

    std::optional<support::PluginInstance> object;

private:
    void ListenTo(const std::string& handler);
    bool RunWithFault(const std::function<void()>& prepare, const Member& member, const std::string& function,
                      unsigned n, bool ofPlatform);

    std::map<std::string, FakeObject*> m_handlers;
    unsigned m_objects = 0;
};

enum class Numbers { kInt32, kDouble };
inline void PrintTo(Numbers numbers, std::ostream* out) {
    *out << (numbers == Numbers::kInt32 ? "Int32" : "Double");
}

// Each test with the page's numbers in both forms.
class ScriptedObjectNumbersTest : public ScriptedObjectTest, public ::testing::WithParamInterface<Numbers> {
protected:
    ScriptedObjectNumbersTest() { browser.numbersAreDoubles = GetParam() == Numbers::kDouble; }
};

inline auto BothNumbers() {
    return ::testing::Values(Numbers::kInt32, Numbers::kDouble);
}

// A result of undefined, without an exception or with this one.
void ExpectDone(const Outcome& outcome);
void ExpectException(const Outcome& outcome, const std::string& text);

}  // namespace videobroadcast_tests
