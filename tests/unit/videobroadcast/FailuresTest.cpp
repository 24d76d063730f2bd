// Browsers whose functions fail while an object is made. While it is used: ../endurance/FaultsTest.cpp.
#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

class Failures : public ObjectTest, public ::testing::WithParamInterface<const char*> {};

INSTANTIATE_TEST_SUITE_P(Functions, Failures,
                         ::testing::Values("createobject", "evaluate", "memalloc", "getvalue", "invokeDefault",
                                           "getstringidentifier", "getproperty", "setexception", "setvalue",
                                           "pluginthreadasynccall"),
                         [](const auto& info) { return std::string(info.param); });

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
