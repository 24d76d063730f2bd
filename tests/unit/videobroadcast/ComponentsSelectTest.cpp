// selectComponent and unselectComponent.
#include "tests/unit/videobroadcast/ScriptedObjectTest.h"

namespace videobroadcast_tests {
namespace {

// What both methods share is tested with both, in both forms of numbers.
struct ChoiceMethod {
    std::string name;
    std::string member;
    std::string verb;
    Numbers numbers;
    friend void PrintTo(const ChoiceMethod& method, std::ostream* out) {
        *out << method.name << " ";
        PrintTo(method.numbers, out);
    }
};

class ComponentsChoice : public ScriptedObjectTest, public ::testing::WithParamInterface<ChoiceMethod> {
protected:
    ComponentsChoice() { browser.numbersAreDoubles = GetParam().numbers == Numbers::kDouble; }
    void SetUp() override { Bring(kPresenting); }

    FakeObject& MakeComponent(const std::map<std::string, Value>& values) {
        return MakeRecord("component", {"type", "index", "pid"}, values);
    }
    // What the player is told about a component.
    List ChoicesOf(const std::map<std::string, Value>& values) {
        ForgetWhatHappened();
        ExpectDone(Call(method, {MakeComponent(values)}));
        return Calls({"player."});
    }
    List Choice(const std::string& what) const { return List{"player." + GetParam().verb + what}; }

    const std::string method = GetParam().name;
    const std::string member = GetParam().member;
};

INSTANTIATE_TEST_SUITE_P(
    Methods, ComponentsChoice,
    ::testing::Values(ChoiceMethod{"selectComponent", "m_SelectComponent", "Select", Numbers::kInt32},
                      ChoiceMethod{"selectComponent", "m_SelectComponent", "Select", Numbers::kDouble},
                      ChoiceMethod{"unselectComponent", "m_UnselectComponent", "Unselect", Numbers::kInt32},
                      ChoiceMethod{"unselectComponent", "m_UnselectComponent", "Unselect", Numbers::kDouble}));

TEST_P(ComponentsChoice, VideoIsChosenByItsPid) {
    EXPECT_EQ(ChoicesOf({{"type", 0}, {"index", 3}, {"pid", 101}}), Choice("VideoComponent(101)"));
    ExpectLogged(3, "Video pid is 101");
}

TEST_P(ComponentsChoice, AudioAndSubtitlesAreChosenByTheirIndexWithoutReadingAPid) {
    EXPECT_EQ(ChoicesOf({{"type", 1}, {"index", 3}, {"pid", 101}}), Choice("AudioComponent(3)"));
    EXPECT_TRUE(Calls({"read pid"}).empty());
    EXPECT_TRUE(LogOf("Video pid is").empty());
    EXPECT_EQ(ChoicesOf({{"type", 2}, {"index", 4}, {"pid", 101}}), Choice("SubtitleComponent(4)"));
    EXPECT_TRUE(Calls({"read pid"}).empty());
    EXPECT_EQ(ChoicesOf({{"type", 1}, {"index", 0}}), Choice("AudioComponent(0)"));
}

TEST_P(ComponentsChoice, AnyOtherTypeChoosesNothing) {
    for (const int type : {3, -1, -2, 255, 256, 65536}) {
        EXPECT_EQ(ChoicesOf({{"type", type}, {"index", 3}, {"pid", 101}}), List{});
    }
}

TEST_P(ComponentsChoice, TypeAndIndexAreLogged) {
    ChoicesOf({{"type", 1}, {"index", 3}});
    ExpectLogged(3, "AVComponent type is 1");
    ExpectLogged(3, "AVComponent index is 3");
    ChoicesOf({{"type", 1}});
    EXPECT_TRUE(LogOf("AVComponent index is").empty());
}

TEST_P(ComponentsChoice, AVideoPidIsCutTo16Bits) {
    EXPECT_EQ(ChoicesOf({{"type", 0}, {"pid", 65535}}), Choice("VideoComponent(65535)"));
    EXPECT_EQ(ChoicesOf({{"type", 0}, {"pid", 65536 + 5}}), Choice("VideoComponent(5)"));
    EXPECT_EQ(ChoicesOf({{"type", 0}, {"pid", -2}}), Choice("VideoComponent(65534)"));
    ExpectLoggedOnce("Video pid is -2");
}

TEST_P(ComponentsChoice, AMissingVideoPidIs65535) {
    EXPECT_EQ(ChoicesOf({{"type", 0}, {"index", 3}}), Choice("VideoComponent(65535)"));
    EXPECT_EQ(ChoicesOf({{"type", 0}, {"pid", "101"}}), Choice("VideoComponent(65535)"));
}

TEST_P(ComponentsChoice, VideoNeedsNoIndex) {
    EXPECT_EQ(ChoicesOf({{"type", 0}, {"pid", 101}}), Choice("VideoComponent(101)"));
    EXPECT_EQ(ChoicesOf({{"type", 0}, {"index", -1}, {"pid", 101}}), Choice("VideoComponent(101)"));
}

TEST_P(ComponentsChoice, AnIndexBelowMinus1ReachesThePlayerUnsigned) {
    EXPECT_EQ(ChoicesOf({{"type", 1}, {"index", -2}}), Choice("AudioComponent(4294967294)"));
    EXPECT_EQ(ChoicesOf({{"type", 2}, {"index", -2147483647 - 1}}), Choice("SubtitleComponent(2147483648)"));
}

TEST_P(ComponentsChoice, FractionsAreCutAndNumbersOutOfRangeBecomeTheNearestLimit) {
    EXPECT_EQ(ChoicesOf({{"type", 1.9}, {"index", 3.9}}), Choice("AudioComponent(3)"));
    EXPECT_EQ(ChoicesOf({{"type", 1}, {"index", 1e12}}), Choice("AudioComponent(2147483647)"));
    EXPECT_EQ(ChoicesOf({{"type", 0.5}, {"pid", 101.9}}), Choice("VideoComponent(101)"));
}

TEST_P(ComponentsChoice, APageThatIsNotBroadcastRelatedGetsASecurityErrorWhateverItGives) {
    platform.answers.broadcastRelated = false;
    for (const Values& arguments : {Values{MakeComponent({{"type", 1}, {"index", 3}})}, Values{}, Values{1}}) {
        ForgetWhatHappened();
        ExpectException(Call(method, arguments), "SecurityError");
        EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "exception SecurityError"}));
        ExpectLogged(2, member + " - app is not broadcast related");
        ExpectNotLogged(member + "() - incorrect arguments.");
    }
}

TEST_P(ComponentsChoice, WhatIsNoObjectIsLoggedAndDoesNothing) {
    for (const Value& wrong : {Value(1), Value(1.0), Value("component"), Value(true), Value(nullptr), Value(),
                               Value(static_cast<NPObject*>(nullptr))}) {
        ForgetWhatHappened();
        ExpectDone(Call(method, {wrong}));
        EXPECT_EQ(Calls(), List{"browser.IsBroadcastRelated()"});
        ExpectLogged(2, member + "() - incorrect arguments.");
    }
}

TEST_P(ComponentsChoice, AMissingArgumentIsLoggedAndDoesNothing) {
    ExpectDone(Call(method));
    EXPECT_EQ(Calls(), List{"browser.IsBroadcastRelated()"});
    ExpectLogged(2, member + "() - incorrect arguments.");
}

TEST_P(ComponentsChoice, OnlyTheFirstArgumentIsRead) {
    FakeObject& other = MakeComponent({{"type", 1}, {"index", 9}});
    ExpectDone(Call(method, {MakeComponent({{"type", 1}, {"index", 3}}), other, 5}));
    EXPECT_EQ(Calls({"player."}), Choice("AudioComponent(3)"));
    EXPECT_TRUE(other.Reads().empty());
    ExpectNotLogged(member + "() - incorrect arguments.");
}

TEST_P(ComponentsChoice, WithoutAPlayerNothingIsDone) {
    Call("release");
    for (const int type : {0, 1, 2}) {
        EXPECT_EQ(ChoicesOf({{"type", type}, {"index", 3}, {"pid", 101}}), List{});
    }
    EXPECT_TRUE(Calls({"browser.GetBroadcastPlayer"}).empty());
}

TEST_P(ComponentsChoice, EveryStateWithAPlayerIsServed) {
    for (const State state : {kConnecting, kPresenting, kStopped}) {
        MakeObject();
        Bring(state);
        EXPECT_EQ(ChoicesOf({{"type", 1}, {"index", 3}}), Choice("AudioComponent(3)"));
        EndObject();
    }
}

TEST_P(ComponentsChoice, AGetterThatReleasesThePlayerLeavesItAlone) {
    for (const char* property : {"type", "index", "pid"}) {
        for (const int type : {0, 1, 2}) {
            MakeObject();
            Bring(kPresenting);
            FakeObject& component = MakeComponent({{"type", type}, {"index", 3}, {"pid", 101}});
            const bool isType = property == std::string("type");
            const bool isPid = property == std::string("pid");
            if (isPid && type != 0) {
                continue;
            }
            WhenRead(component, property, [&] { Call("release"); }, isType ? type : 3);
            ExpectDone(Call(method, {component}));
            EXPECT_TRUE(Calls({"player."}).empty()) << property << " " << type;
        }
    }
}

TEST_P(ComponentsChoice, TheEndOfTheObjectInsideAGetterIsSurvived) {
    for (const char* property : {"type", "index", "pid"}) {
        MakeObject();
        Bring(kPresenting);
        browser.pageHoldsDuringCalls = false;
        FakeObject& component = MakeComponent({{"type", 0}, {"index", 3}, {"pid", 101}});
        WhenRead(component, property, [&] { EndObject(); }, property == std::string("type") ? 0 : 3);
        EXPECT_TRUE(Call(method, {component}).accepted);
        EXPECT_TRUE(Calls({"player."}).empty()) << property;
        EXPECT_FALSE(browser.GetLedger().IsAlive(object->Object()));
        browser.pageHoldsDuringCalls = true;
    }
}

TEST_P(ComponentsChoice, TheObjectItselfIsAComponentWithoutMembers) {
    ExpectDone(Call(method, {object->Object()}));
    EXPECT_TRUE(Calls({"player."}).empty());
}

TEST_P(ComponentsChoice, AnInvalidatedObjectReadsNothingAndChoosesNothing) {
    object->Invalidate();
    EXPECT_EQ(ChoicesOf({{"type", 1}, {"index", 3}}), List{});
    EXPECT_TRUE(Calls({"read"}).empty());
}

TEST_P(ComponentsChoice, AnyFailingCallIsSurvived) {
    for (const int type : {0, 1, 2}) {
        FakeObject& component = MakeComponent({{"type", type}, {"index", 3}, {"pid", 101}});
        const auto present = [&] { Call("bindToCurrentChannel"); };
        SurvivesFailingBrowser(present, [&] { return Call(method, {component}); });
        SurvivesFailingPlatform(present, [&] { return Call(method, {component}); });
    }
}

// In what the two methods differ.
class ComponentsSelect : public ScriptedObjectTest {
protected:
    void SetUp() override { Bring(kPresenting); }
    List ChoicesOf(const std::string& method, const std::map<std::string, Value>& values) {
        ForgetWhatHappened();
        ExpectDone(Call(method, {MakeRecord("component", {"type", "index", "pid"}, values)}));
        return Calls({"read", "player."});
    }
};

TEST_F(ComponentsSelect, SelectingReadsTheTypeFirst) {
    EXPECT_EQ(ChoicesOf("selectComponent", {{"type", 0}, {"index", 3}, {"pid", 101}}),
              (List{"read type", "read index", "read pid", "player.SelectVideoComponent(101)"}));
    ExpectLogInOrder({"AVComponent type is 0", "AVComponent index is 3", "Video pid is 101"});
    EXPECT_EQ(ChoicesOf("selectComponent", {{"type", 1}, {"index", 3}}),
              (List{"read type", "read index", "player.SelectAudioComponent(3)"}));
}

TEST_F(ComponentsSelect, UnselectingReadsTheIndexFirst) {
    EXPECT_EQ(ChoicesOf("unselectComponent", {{"type", 0}, {"index", 3}, {"pid", 101}}),
              (List{"read index", "read type", "read pid", "player.UnselectVideoComponent(101)"}));
    ExpectLogInOrder({"AVComponent index is 3", "AVComponent type is 0", "Video pid is 101"});
}

TEST_F(ComponentsSelect, SelectingWithoutATypeEndsSilentlyBeforeTheIndexIsRead) {
    for (const Value& type : {Value(), Value("1"), Value(nullptr), Value(true)}) {
        EXPECT_EQ(ChoicesOf("selectComponent", {{"type", type}, {"index", 3}}), List{"read type"});
        EXPECT_TRUE(LogOf("AVComponent").empty());
    }
}

TEST_F(ComponentsSelect, UnselectingWithoutATypeDoesNothing) {
    EXPECT_EQ(ChoicesOf("unselectComponent", {{"index", 3}, {"pid", 101}}), (List{"read index", "read type"}));
}

TEST_F(ComponentsSelect, SelectingAnIndexOfMinus1OrNoneDoesNothing) {
    for (const int type : {1, 2}) {
        EXPECT_EQ(ChoicesOf("selectComponent", {{"type", type}, {"index", -1}}), (List{"read type", "read index"}));
        EXPECT_EQ(ChoicesOf("selectComponent", {{"type", type}}), (List{"read type", "read index"}));
        EXPECT_EQ(ChoicesOf("selectComponent", {{"type", type}, {"index", "3"}}), (List{"read type", "read index"}));
    }
}

TEST_F(ComponentsSelect, UnselectingAnIndexOfMinus1OrNoneReachesThePlayer) {
    EXPECT_EQ(ChoicesOf("unselectComponent", {{"type", 1}, {"index", -1}}).back(),
              "player.UnselectAudioComponent(4294967295)");
    EXPECT_EQ(ChoicesOf("unselectComponent", {{"type", 2}}).back(), "player.UnselectSubtitleComponent(4294967295)");
}

TEST_F(ComponentsSelect, MembersThatCannotBeReadCountAsMissing) {
    browser.FailNth("getproperty", 1);
    EXPECT_EQ(ChoicesOf("selectComponent", {{"type", 1}, {"index", 3}}), List{});
    browser.FailNth("getproperty", 2);
    EXPECT_EQ(ChoicesOf("selectComponent", {{"type", 1}, {"index", 3}}), List{"read type"});
    browser.FailNth("getproperty", 1);
    EXPECT_EQ(ChoicesOf("unselectComponent", {{"type", 1}, {"index", 3}}),
              (List{"read type", "player.UnselectAudioComponent(4294967295)"}));
    browser.FailNth("getproperty", 2);
    EXPECT_EQ(ChoicesOf("unselectComponent", {{"type", 1}, {"index", 3}}), List{"read index"});
}

}  // namespace
}  // namespace videobroadcast_tests
