// One request from its call to its last event, with everything that is told on the way.
#include <thread>

#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

class Journey : public ObjectTest {};

TEST_F(Journey, AChannelThatIsSetIsResolvedTunedPresentedAndReported) {
    for (const char* type : {"PlayStateChange", "ChannelChangeSucceeded", "ChannelChangeError"}) {
        Listen(type);
        SetHandler(std::string("on") + type);
    }
    FakeObject& channel = browser.MakeObject("channel").SetGetter("mid", [] {
        support::CallList::Instance().Add("read mid");
        return Value(7);
    });
    Forget();

    EXPECT_TRUE(Page().Call("setChannel", {channel}).accepted);
    platform.TakeHold(7);
    std::thread([&] { platform.Notify([](IBroadcastPlayerListener& listener) { listener.TuneSuccess(7); }); }).join();
    EXPECT_EQ(Pump(), 1u);

    EXPECT_EQ(
        Calls({"pvr.", "browser.GetBroadcastPlayer", "player.SetListener", "read", "player.SetChannel",
               "browser.SetChannel", "script.on", "event ", "tasks.GetActive", "cache.", "evaluate"}),
        (Lines{"pvr.IsPvrOperating()", "browser.GetBroadcastPlayer()", "player.SetListener(listener)", "read mid",
               "player.SetChannel(7, false)", "browser.SetChannel(7, false)", "script.onPlayStateChange(1, undefined)",
               "event PlayStateChange{state: 1, error: undefined}", "tasks.GetActiveApplication()",
               "cache.ReleaseChannel(7)",
               // The television's answer.
               "script.onPlayStateChange(2, undefined)", "event PlayStateChange{state: 2, error: undefined}",
               "tasks.GetActiveApplication()", "evaluate new Channel(\"key\", 7);",
               "script.onChannelChangeSucceeded(Channel(7))", "event ChannelChangeSucceeded{channel: Channel(7)}"}));
}

}  // namespace
}  // namespace videobroadcast
