// getComponents and getCurrentActiveComponents.
#include "tests/unit/videobroadcast/ScriptedObjectTest.h"
#include "videobroadcast/COipfVideoBroadcast.h"

namespace videobroadcast_tests {
namespace {

constexpr const char* kRefusal = "m_GetComponents() invalid type, parameters or state";

// What both methods share is tested with both, in both forms of numbers.
struct ListMethod {
    std::string name;
    std::string flag;
    Numbers numbers;
    friend void PrintTo(const ListMethod& method, std::ostream* out) {
        *out << method.name << " ";
        PrintTo(method.numbers, out);
    }
};

class ComponentsList : public ScriptedObjectTest, public ::testing::WithParamInterface<ListMethod> {
protected:
    ComponentsList() {
        browser.numbersAreDoubles = GetParam().numbers == Numbers::kDouble;
        platform.answers.videoComponents = {"0, 5, 101", "0, 6, 102"};
        platform.answers.audioComponents = {"1, 7", "1, 8", "1, 9"};
        platform.answers.subtitleComponents = {"2, 3"};
        platform.answers.activeComponents = {0, 1, 2};
    }
    // The calls that make the list; questions about the page and the key are left out.
    static List ListCalls() { return Calls({"evaluate", "player.", "script.", "exception"}); }
    void ExpectNothing(const Values& arguments) {
        ForgetWhatHappened();
        ExpectDone(Call(method, arguments));
        EXPECT_TRUE(ListCalls().empty());
        ExpectLogged(2, kRefusal);
    }
    // The array that the script gets.
    FakeObject* ListOf(const Values& arguments) {
        const Outcome outcome = Call(method, arguments);
        EXPECT_TRUE(outcome.accepted);
        EXPECT_EQ(outcome.exception, "");
        return browser.Fake(outcome.value.Object());
    }

    const std::string method = GetParam().name;
    const std::string flag = GetParam().flag;
};

INSTANTIATE_TEST_SUITE_P(Methods, ComponentsList,
                         ::testing::Values(ListMethod{"getComponents", "false", Numbers::kInt32},
                                           ListMethod{"getComponents", "false", Numbers::kDouble},
                                           ListMethod{"getCurrentActiveComponents", "true", Numbers::kInt32},
                                           ListMethod{"getCurrentActiveComponents", "true", Numbers::kDouble}));

TEST_P(ComponentsList, TheArrayIsMadeThenThePlayerIsAskedThenTheComponentsAreMadeAndPushedAtOnce) {
    Bring(kPresenting);
    FakeObject* array = ListOf({1});
    EXPECT_EQ(ListCalls(),
              (List{"evaluate new Array();", "player.GetAudioComponents(" + flag + ")",
                    "evaluate new AVComponent(\"key\", 1, 7);", "evaluate new AVComponent(\"key\", 1, 8);",
                    "evaluate new AVComponent(\"key\", 1, 9);",
                    "script.Array().push(AVComponent(1, 7), AVComponent(1, 8), AVComponent(1, 9))"}));
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(array->ClassName(), "Array");
    EXPECT_EQ(array->Items().size(), 3u);
}

TEST_P(ComponentsList, EachTypeAsksForItsOwnComponents) {
    Bring(kPresenting);
    ListOf({0});
    EXPECT_EQ(ListCalls(), (List{"evaluate new Array();", "player.GetVideoComponents(" + flag + ")",
                                 "evaluate new AVComponent(\"key\", 0, 5, 101);",
                                 "evaluate new AVComponent(\"key\", 0, 6, 102);",
                                 "script.Array().push(AVComponent(0, 5, 101), AVComponent(0, 6, 102))"}));
    ForgetWhatHappened();
    ListOf({2});
    EXPECT_EQ(ListCalls(), (List{"evaluate new Array();", "player.GetSubtitleComponents(" + flag + ")",
                                 "evaluate new AVComponent(\"key\", 2, 3);",
                                 "script.Array()#2.push(AVComponent(2, 3))"}));
}

TEST_P(ComponentsList, AnyOtherTypeGivesAnEmptyArrayThatIsPushedNothing) {
    Bring(kPresenting);
    for (const Value& type : {Value(3), Value(-1), Value(2147483647), Value(3.5)}) {
        ForgetWhatHappened();
        FakeObject* array = ListOf({type});
        ASSERT_NE(array, nullptr);
        EXPECT_EQ(ListCalls(), (List{"evaluate new Array();", "script." + array->Name() + ".push()"}));
        EXPECT_TRUE(array->Items().empty());
        ExpectLoggedOnce("0 AVComponents added to the array");
    }
}

TEST_P(ComponentsList, AFractionOfATypeIsCutOff) {
    Bring(kPresenting);
    ListOf({1.9});
    ListOf({-0.9});
    EXPECT_EQ(Calls({"player."}), (List{"player.GetAudioComponents(" + flag + ")",
                                        "player.GetVideoComponents(" + flag + ")"}));
}

TEST_P(ComponentsList, TheStepsAreLogged) {
    Bring(kPresenting);
    ListOf({1});
    ExpectLogInOrder({method == "getComponents" ? "m_GetComponents() 1 args" : "m_GetCurrentActiveComponents() 1 args",
                      std::string("m_GetComponents() type 1, active_only ") + (flag == "true" ? "1" : "0"),
                      "Params : 1, 7", "Params : 1, 8", "Params : 1, 9", "3 AVComponents added to the array"});
    ExpectNotLogged(kRefusal);
    ExpectNotLogged("m_GetComponents() failed to create Array.");
}

TEST_P(ComponentsList, EveryStateButUnrealizedHasComponents) {
    for (const State state : {kConnecting, kPresenting, kStopped}) {
        MakeObject();
        Bring(state);
        EXPECT_NE(ListOf({1}), nullptr);
        EndObject();
    }
}

TEST_P(ComponentsList, OnlyTheFirstArgumentIsRead) {
    Bring(kPresenting);
    EXPECT_NE(ListOf({1, "x", nullptr}), nullptr);
    EXPECT_EQ(Calls({"player."}), List{"player.GetAudioComponents(" + flag + ")"});
}

TEST_P(ComponentsList, AMissingOrWrongTypeGivesNothing) {
    Bring(kPresenting);
    ExpectNothing({});
    for (const Value& wrong : {Value("1"), Value(), Value(nullptr), Value(true), Value(MakeChannel({}))}) {
        ExpectNothing({wrong});
    }
}

TEST_P(ComponentsList, UnrealizedGivesNothingEvenWithAPlayer) {
    ExpectNothing({1});
    platform.answers.canStep = false;
    Call("nextChannel");
    ASSERT_EQ(platform.HandedOut(), 1u);
    ExpectNothing({1});
}

TEST_P(ComponentsList, WithoutAPlayerThereIsNothing) {
    BringToConnectingWithoutPlayer();
    ExpectNothing({1});
}

TEST_P(ComponentsList, WhatTheBrowserGaveAsResultIsLeftWhenThereIsNothing) {
    NPVariant preset{};
    preset.type = NPVariantType_Int32;
    preset.value.intValue = 99;
    EXPECT_EQ(Value(CallWithPresetResult(method, {1}, preset)), Value(99));
    Bring(kPresenting);
    browser.FailNth("evaluate", 1);
    EXPECT_EQ(Value(CallWithPresetResult(method, {1}, preset)), Value(99));
}

TEST_P(ComponentsList, AnArrayThatCannotBeMadeIsLoggedAndThePlayerIsNotAsked) {
    Bring(kPresenting);
    const auto expectFailure = [&] {
        ForgetWhatHappened();
        ExpectDone(Call(method, {1}));
        ExpectLogged(2, "m_GetComponents() failed to create Array.");
        EXPECT_TRUE(Calls({"player.", "script.", "evaluate new AVComponent"}).empty());
    };
    for (const char* function : {"getvalue", "evaluate"}) {
        browser.FailNth(function, 1);
        expectFailure();
    }
    for (const Value& answer : {Value(7), Value("Array"), Value(nullptr), Value()}) {
        browser.AnswerEvaluate("new Array();", [answer](const std::string&) { return answer; });
        expectFailure();
    }
}

TEST_P(ComponentsList, AComponentThatCannotBeMadeLeavesItsPositionUndefinedAndIsCounted) {
    Bring(kPresenting);
    browser.FailNth("evaluate", 3);
    ListOf({1});
    EXPECT_EQ(Calls({"script."}), List{"script.Array().push(AVComponent(1, 7), undefined, AVComponent(1, 9))"});
    ExpectLoggedOnce("3 AVComponents added to the array");
}

TEST_P(ComponentsList, AComponentClassThatMakesNoObjectLeavesThePositionsUndefined) {
    Bring(kPresenting);
    browser.AnswerEvaluateOf("new AVComponent(", [](const std::string&) { return Value("text"); });
    ListOf({1});
    EXPECT_EQ(Calls({"script."}), List{"script.Array().push(undefined, undefined, undefined)"});
}

TEST_P(ComponentsList, TheArrayIsTheResultAlsoWhenPushFails) {
    Bring(kPresenting);
    browser.FailNth("invoke", 1);
    FakeObject* array = ListOf({1});
    ASSERT_NE(array, nullptr);
    EXPECT_TRUE(array->Items().empty());
    EXPECT_TRUE(LogOf("3 AVComponents").empty());
    for (const FakeObject* component : browser.Created("AVComponent")) {
        EXPECT_EQ(component->HeldByPlugin(), 0u);
    }
}

TEST_P(ComponentsList, WithoutAnIdentifierForPushTheArrayIsNotCalled) {
    Bring(kPresenting);
    browser.FailNth("getstringidentifier", 1);
    EXPECT_NE(ListOf({1}), nullptr);
    EXPECT_EQ(browser.Uses("invoke"), 0u);
    EXPECT_TRUE(LogOf("3 AVComponents").empty());
}

TEST_P(ComponentsList, TheComponentsBelongToTheArrayAfterThePush) {
    Bring(kPresenting);
    bool pushed = false;
    Once("script.Array().push", [&] {
        pushed = true;
        for (const FakeObject* component : browser.Created("AVComponent")) {
            EXPECT_EQ(component->HeldByPlugin(), 1u);
        }
    });
    FakeObject* array = ListOf({1});
    EXPECT_TRUE(pushed);
    for (const FakeObject* component : browser.Created("AVComponent")) {
        EXPECT_EQ(component->HeldByPlugin(), 0u);
        EXPECT_TRUE(component->IsAlive());
    }
    EXPECT_EQ(array->HeldByPlugin(), 0u);
}

TEST_P(ComponentsList, WhatPushReturnsIsGivenBack) {
    Bring(kPresenting);
    FakeObject& kept = browser.MakeObject("kept");
    browser.AnswerEvaluate("new Array();", [&](const std::string&) {
        FakeObject& array = browser.MakeResult("strange array");
        return Value(array.SetMethod("push", [&](const Values&) { return Value(kept); }));
    });
    EXPECT_NE(ListOf({1}), nullptr);
    EXPECT_EQ(kept.HeldByPlugin(), 0u);
    ExpectLoggedOnce("3 AVComponents added to the array");
}

TEST_P(ComponentsList, AnArrayOfThePageWithoutPushIsHandedOutAsItIs) {
    Bring(kPresenting);
    FakeObject& strange = browser.MakeObject("strange");
    browser.AnswerEvaluate("new Array();", [&](const std::string&) { return Value(strange); });
    EXPECT_EQ(ListOf({1}), &strange);
    EXPECT_TRUE(LogOf("3 AVComponents").empty());
}

TEST_P(ComponentsList, ATextOfAComponentIsTakenAsItIs) {
    platform.answers.audioComponents = {"", "%s%n", "'a', \"b\""};
    Bring(kPresenting);
    ListOf({1});
    EXPECT_EQ(Calls({"evaluate new AVComponent"}),
              (List{"evaluate new AVComponent(\"key\");", "evaluate new AVComponent(\"key\", %s%n);",
                    "evaluate new AVComponent(\"key\", 'a', \"b\");"}));
    EXPECT_EQ(LogOf("Params : "), (List{"Params : ", "Params : %s%n", "Params : 'a', \"b\""}));
}

TEST_P(ComponentsList, AServiceWithoutComponentsGivesAnEmptyArray) {
    platform.answers.audioComponents.clear();
    Bring(kPresenting);
    FakeObject* array = ListOf({1});
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(Calls({"script."}), List{"script.Array().push()"});
}

TEST_P(ComponentsList, ManyComponentsKeepTheirOrder) {
    platform.answers.audioComponents.clear();
    std::string pushed;
    for (int i = 0; i < 100; ++i) {
        platform.answers.audioComponents.push_back(std::to_string(i));
        platform.answers.activeComponents.insert(static_cast<std::size_t>(i));
        pushed += (i == 0 ? "" : ", ") + ("AVComponent(" + std::to_string(i) + ")");
    }
    Bring(kPresenting);
    ListOf({1});
    EXPECT_EQ(Calls({"script."}), List{"script.Array().push(" + pushed + ")"});
}

TEST_P(ComponentsList, AnArrayConstructorThatReleasesThePlayerLeavesItAlone) {
    Bring(kPresenting);
    Once("evaluate new Array", [&] { Call("release"); });
    EXPECT_TRUE(Call(method, {1}).accepted);
    EXPECT_TRUE(Calls({"player.Get"}).empty());
}

TEST_P(ComponentsList, AComponentConstructorThatReleasesThePlayerDoesNotMatter) {
    Bring(kPresenting);
    Once("evaluate new AVComponent", [&] { Call("release"); });
    EXPECT_EQ(ListOf({1})->Items().size(), 3u);
}

TEST_P(ComponentsList, TheEndOfTheObjectInsideAConstructorOrPushIsSurvived) {
    for (const char* step : {"evaluate new Array", "evaluate new AVComponent(\"key\", 1, 8)", "script.Array"}) {
        MakeObject();
        Bring(kPresenting);
        browser.pageHoldsDuringCalls = false;
        Once(step, [&] {
            EndObject();
            ClearCalls();
        });
        EXPECT_TRUE(Call(method, {1}).accepted);
        EXPECT_TRUE(Calls({"player.", "evaluate", "script."}).empty());
        EXPECT_FALSE(browser.GetLedger().IsAlive(object->Object()));
        browser.pageHoldsDuringCalls = true;
    }
}

TEST_P(ComponentsList, AnyFailingCallIsSurvived) {
    const auto present = [&] { Call("bindToCurrentChannel"); };
    for (const int type : {0, 1, 2}) {
        SurvivesFailingBrowser(present, [&] { return Call(method, {type}); });
        SurvivesFailingPlatform(present, [&] { return Call(method, {type}); });
    }
}

TEST_P(ComponentsList, AnInvalidatedObjectThatTookAPlayerAgainOnlyLogs) {
    object->Invalidate();
    Call("bindToCurrentChannel");
    ForgetWhatHappened();
    ExpectDone(Call(method, {1}));
    ExpectLogged(2, "m_GetComponents m_npp is NULL!");
    EXPECT_TRUE(LogOf("m_GetComponents() type").empty());
    EXPECT_TRUE(ListCalls().empty());
}

class ComponentsPage : public ScriptedObjectTest {};

TEST_F(ComponentsPage, GetComponentsDoesNotAskWhetherThePageIsBroadcastRelated) {
    Bring(kPresenting);
    platform.answers.broadcastRelated = false;
    const Outcome outcome = Call("getComponents", {1});
    EXPECT_EQ(outcome.exception, "");
    EXPECT_NE(outcome.value.Object(), nullptr);
    EXPECT_TRUE(Calls({"browser.IsBroadcastRelated"}).empty());
}

TEST_F(ComponentsPage, GetCurrentActiveComponentsRefusesAPageThatIsNotBroadcastRelated) {
    Bring(kPresenting);
    platform.answers.broadcastRelated = false;
    for (const Values& arguments : {Values{1}, Values{}}) {
        ForgetWhatHappened();
        ExpectException(Call("getCurrentActiveComponents", arguments), "SecurityError");
        EXPECT_EQ(Calls(), (List{"browser.IsBroadcastRelated()", "exception SecurityError"}));
        ExpectLogged(2, "m_GetCurrentActiveComponents - app is not broadcast related");
        ExpectNotLogged(kRefusal);
        ExpectLoggedOnce("m_GetCurrentActiveComponents() " + std::to_string(arguments.size()) + " args");
    }
}

TEST_F(ComponentsPage, TheNumberOfArgumentsIsLogged) {
    Call("getComponents");
    Call("getComponents", {1, 2, 3});
    EXPECT_EQ(LogOf("m_GetComponents() "), (List{"m_GetComponents() 0 args", kRefusal, "m_GetComponents() 3 args",
                                                 kRefusal}));
}

TEST_F(ComponentsPage, TheActiveComponentsAreThoseThatThePlayerNames) {
    platform.answers.audioComponents = {"1, 7", "1, 8", "1, 9"};
    platform.answers.activeComponents = {1};
    Bring(kPresenting);
    Call("getCurrentActiveComponents", {1});
    EXPECT_EQ(Calls({"script."}), List{"script.Array().push(AVComponent(1, 8))"});
}

// Script does not come this far without a player.
struct InnerOperation : OipfVideoBroadcast::COipfVideoBroadcast {
    using List = void (COipfVideoBroadcast::*)(int, NPVariant*, bool);
    using COipfVideoBroadcast::m_GetComponents;
    static constexpr List kList = &InnerOperation::m_GetComponents;
};

TEST_F(ComponentsPage, TheInnerOperationLogsAMissingPlayerAsAnArrayThatCannotBeMade) {
    auto* vbo = static_cast<OipfVideoBroadcast::COipfVideoBroadcast*>(object->Object());
    NPVariant result{};
    result.type = NPVariantType_Int32;
    result.value.intValue = 99;
    (vbo->*InnerOperation::kList)(1, &result, false);
    EXPECT_EQ(Value(result), Value(99));
    ExpectLogInOrder({"m_GetComponents() type 1, active_only 0", "m_GetComponents() failed to create Array."});
    EXPECT_TRUE(Calls().empty());
}

TEST_F(ComponentsPage, TheTypesAreScriptConstants) {
    EXPECT_EQ(Get("COMPONENT_TYPE_VIDEO").value, Value(0));
    EXPECT_EQ(Get("COMPONENT_TYPE_AUDIO").value, Value(1));
    EXPECT_EQ(Get("COMPONENT_TYPE_SUBTITLE").value, Value(2));
}

}  // namespace
}  // namespace videobroadcast_tests
