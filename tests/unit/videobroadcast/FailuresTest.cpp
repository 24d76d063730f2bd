// Browsers whose functions fail: nothing crashes, and everything is given back.
#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

class Failures : public ObjectTest, public ::testing::WithParamInterface<const char*> {
protected:
    // Uses an object in all ways that reach script, each time with the next use of the function failing.
    void FailEachUse(const std::function<void(Probed&)>& use) {
        const std::string function = GetParam();
        for (unsigned n = 1; n < 500; n += n < 20 ? 1 : 7) {
            Forget();
            Probed object(browser);
            SetHandlers(object);
            const unsigned before = browser.Uses(function);
            browser.FailNth(function, n);
            use(object);
            const bool failed = browser.Uses(function) >= before + n;
            browser.StopFailing(function);
            if (object.Get() != nullptr) object.End();
            browser.CollectGarbage();
            platform.ExpectBalanced();
            EXPECT_EQ(browser.GetLedger().BlocksInUse(), 0u) << function << " " << n;
            if (!failed) return;
        }
        ADD_FAILURE() << function << " is used without end.";
    }
    void SetHandlers(Probed& object) {
        for (const char* type : {"PlayStateChange", "ChannelChangeSucceeded", "ChannelChangeError", "StreamEvent",
                                 "ParentalRatingChange", "ParentalRatingError", "DrmRightsError"}) {
            Listen(object.Get(), type);
        }
        for (const char* name : {"onPlayStateChange", "onChannelChangeSucceeded", "onChannelChangeError",
                                 "onStreamEvent", "onParentalRatingChange", "onDRMRightsError"}) {
            SetHandler(object.Get(), name);
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Functions, Failures,
                         ::testing::Values("createobject", "evaluate", "memalloc", "getvalue", "invokeDefault",
                                           "getstringidentifier", "getproperty", "setexception", "setvalue",
                                           "pluginthreadasynccall"),
                         [](const auto& info) { return std::string(info.param); });

TEST_P(Failures, OfNotificationsLoseNothing) {
    FailEachUse([&](Probed& object) {
        object->ChannelChanged();
        object->TuneSuccess(7);
        object->TuneFail(7);
        object->ParentalRatingChanged(9);
        object->ParentalRatingChanged(0);
        object->Scrambled(1);
        object->Unscrambled(1);
        object->OnSASMessageReceived(new SASMessage{4, 1, 0, {{7, {1}}, {6, {'x'}}}});
        object->ProgrammeChanged();
        Pump();
    });
}

TEST_P(Failures, OfStreamEventsLoseNothing) {
    FailEachUse([&](Probed& object) {
        FakeObject& listener = browser.MakeFunction("listener");
        browser.Call(object.Get(), "addStreamEventListener", {"x", "name", listener});
        browser.Call(object.Get(), "addStreamEventListener", {"dvb:/x", "name", listener});
        for (const auto& subscription : platform.Subscriptions()) {
            platform.DeliverStreamEvent(subscription.first, "name", "data");
        }
        Pump();
        browser.Call(object.Get(), "removeStreamEventListener", {"x", "name", listener});
        Pump();
        object.Destroy();
        EXPECT_EQ(listener.HeldByPlugin(), 0u);
    });
}

TEST_P(Failures, OfConstructionLeaveAnObjectOrNone) {
    const std::string function = GetParam();
    for (unsigned n = 1; n < 200; ++n) {
        ClearLog();
        const unsigned before = browser.Uses(function);
        browser.FailNth(function, n);
        Probed object(browser);
        if (object.Get() != nullptr) {
            object->UpdateLayout();
            Pump();
            const bool unheard = function == "pluginthreadasynccall" && n == 1;
            EXPECT_EQ(LinesWith("m_ProcessEvent E_UPDATE_LAYOUT"), unheard ? 0u : 1u);
        }
        const bool failed = browser.Uses(function) >= before + n;
        browser.StopFailing(function);
        object.Destroy();
        EXPECT_EQ(platform.Registrations(), 0u);
        if (!failed) return;
    }
}

TEST_F(ObjectTest, ABrowserThatCannotMakeTheObjectLeavesNoTrace) {
    browser.FailNth("createobject", 1);
    const Probed object(browser);
    EXPECT_EQ(object.Get(), nullptr);
    EXPECT_TRUE(Calls().empty());
}

}  // namespace
}  // namespace videobroadcast
