// What the object does when it is made.
#include <new>
#include <optional>

#include "tests/support/BrowserFunctions.h"
#include "tests/unit/videobroadcast/ObjectTest.h"

namespace videobroadcast {
namespace {

class Construction : public ObjectTest {
protected:
    static std::string IdOf(const Object* object) {
        return "__OIPF_VBO_" + std::to_string(reinterpret_cast<std::uintptr_t>(object));
    }
    // Makes the object while the page's answer to its marking is this one.
    std::unique_ptr<Probed> MakeWithMarkAnswer(const std::optional<Value>& answer) {
        browser.AnswerEvaluateOf("window.__OIPF_VBO_", [answer](const std::string&) { return answer; });
        return std::make_unique<Probed>(browser);
    }
};

NPIdentifier NotingNames(const NPUTF8* name) {
    support::CallList::Instance().Add("name");
    return support::IdentifierOf(name);
}

unsigned s_namesUntilFailure = 0;

NPIdentifier ThrowingNames(const NPUTF8* name) {
    if (s_namesUntilFailure-- == 0) {
        throw std::bad_alloc();
    }
    return support::IdentifierOf(name);
}

std::string Pointer(const void* pointer) {
    char text[32];
    std::snprintf(text, sizeof text, "%p", pointer);
    return text;
}

TEST_F(Construction, TellsTheBrowserThenMarksThePageThenRegistersForStreamEvents) {
    const Probed object(browser);
    EXPECT_EQ(Calls(), (Lines{"setvalue 3, 0", "setvalue 4, 0", "setvalue 3001, 1",
                              "evaluate window." + IdOf(object.Get()) + " = true;",
                              "dsmcc.RegisterStreamEventCallback(COipfVideoBroadcast)"}));
}

TEST_F(Construction, AllNamesAreRegisteredBeforeTheBrowserIsTold) {
    browser.Functions()->getstringidentifier = NotingNames;
    const Probed object(browser);
    const Lines calls = Calls();
    ASSERT_EQ(calls.size(), 40u + 5u);
    EXPECT_EQ(Lines(calls.begin(), calls.begin() + 40), Lines(40, "name"));
    EXPECT_EQ(calls[40], "setvalue 3, 0");
}

TEST_F(Construction, StreamEventsThatComeMeanwhileReachTheObject) {
    const Probed living(browser);
    Forget();
    When("setvalue 3,", [&] { EXPECT_TRUE(platform.DeliverStreamEvent(1, "name")); });
    const Probed object(browser);
    ExpectLogged("COipfVideoBroadcast::OnEvent(12)", 2);
    Pump();
    EXPECT_EQ(LinesWith("m_ProcessEvent E_ON_STREAM_EVENT"), 2u);
}

TEST_F(Construction, TheBrowserIsToldOfAWindowlessOpaqueBroadcastPlugin) {
    Page();
    const std::vector<std::pair<int, std::intptr_t>> expected = {
        {NPPVpluginWindowBool, 0}, {NPPVpluginTransparentBool, 0}, {3001, 1}};
    EXPECT_EQ(browser.SetValues(), expected);
    ExpectLogged(3, "Called setvalue with NPPVpluginOIPFPluginBool (3001), err 0");
}

TEST_F(Construction, OnlyTheErrorOfTheLastBrowserValueIsLogged) {
    browser.FailNth("setvalue", 3);
    const Probed first(browser);
    ExpectLogged(3, "Called setvalue with NPPVpluginOIPFPluginBool (3001), err 1");
    Forget();
    browser.FailNth("setvalue", 1);
    browser.FailNth("setvalue", 2);
    const Probed second(browser);
    ExpectLogged(3, "Called setvalue with NPPVpluginOIPFPluginBool (3001), err 0");
    EXPECT_EQ(Calls({"setvalue", "evaluate", "dsmcc"}).size(), 3u);
}

TEST_F(Construction, LogsTheInstanceAndTheObject) {
    const Probed object(browser);
    ExpectLogged(3, "COipfVideoBroadcast::COipfVideoBroadcast(" + Pointer(object.Npp()) + ") -> " +
                        Pointer(static_cast<Object*>(object.Get())));
}

TEST_F(Construction, MarksItsIdAsAGlobalOfThePage) {
    const Probed object(browser);
    EXPECT_EQ(browser.Window().Get(IdOf(object.Get())), Value(true));
}

TEST_F(Construction, TheIdIsTheAddressOfTheObjectNotOfItsScriptObject) {
    const Probed object(browser);
    const NPObject* scriptObject = object.Get();
    ASSERT_NE(static_cast<const void*>(scriptObject), static_cast<const void*>(static_cast<Object*>(object.Get())));
    EXPECT_EQ(browser.Window().Names(), Lines{IdOf(object.Get())});
}

TEST_F(Construction, TwoObjectsMarkTwoGlobals) {
    const Probed first(browser);
    const Probed second(browser);
    EXPECT_NE(IdOf(first.Get()), IdOf(second.Get()));
    EXPECT_EQ(browser.Window().Get(IdOf(first.Get())), Value(true));
    EXPECT_EQ(browser.Window().Get(IdOf(second.Get())), Value(true));
}

TEST_F(Construction, TheIdIsWhatScriptObjectsAreKeyedBy) {
    const Probed object(browser);
    object->m_SendChChange(7, Object::E_ERR_NONE);
    EXPECT_EQ(Calls({"keys."}), Lines{"keys.GetKey(" + IdOf(object.Get()) + ")"});
}

TEST_F(Construction, LogsEachStepOfMarkingThePage) {
    const Probed object(browser);
    const std::string id = IdOf(object.Get());
    Lines lines;
    for (const support::LogLine& line : support::Log::Instance().Lines()) {
        EXPECT_EQ(line.level, 3u) << line.text;
        lines.push_back(line.text);
    }
    lines.erase(lines.begin(), lines.begin() + 2);  // the object, and what the browser was told
    EXPECT_EQ(lines, (Lines{"get window object success referenceCount 2", "Plugin ID is \"" + id + "\"",
                            "Evaluate script \"window." + id + " = true;\"", "Evaluate succeeded", "Object? YES",
                            "Release window object"}));
}

TEST_F(Construction, WithoutTheWindowThePageIsNotMarked) {
    browser.FailFrom("getvalue");
    const Probed object(browser);
    browser.StopFailing("getvalue");
    EXPECT_TRUE(browser.Evaluated().empty());
    ExpectLogged(3, "get window object fail referenceCount -1");
    ExpectNotLogged("Release window object");
    EXPECT_EQ(Calls({"dsmcc."}), Lines{"dsmcc.RegisterStreamEventCallback(COipfVideoBroadcast)"});
}

TEST_F(Construction, WhatAFailedQuestionForTheWindowLeavesIsNotLookedAt) {
    browser.Functions()->getvalue = [](NPP, NPNVariable, void* value) -> NPError {
        *static_cast<std::uintptr_t*>(value) = 8;  // no object
        return NPERR_GENERIC_ERROR;
    };
    const Probed object(browser);
    EXPECT_TRUE(browser.Evaluated().empty());
    ExpectLogged(3, "get window object fail referenceCount -1");
}

TEST_F(Construction, ANullWindowWithoutAnErrorIsNotMarkedEither) {
    browser.windowIsNull = true;
    const Probed object(browser);
    EXPECT_TRUE(browser.Evaluated().empty());
    ExpectLogged(3, "get window object success referenceCount -1");
    ExpectNotLogged("Plugin ID is \"" + IdOf(object.Get()) + "\"");
    EXPECT_EQ(Calls({"dsmcc."}), Lines{"dsmcc.RegisterStreamEventCallback(COipfVideoBroadcast)"});
}

TEST_F(Construction, AFailedEvaluationIsLoggedAndTheWindowGivenBack) {
    const auto object = MakeWithMarkAnswer(std::nullopt);
    ExpectLogged(3, "Evaluate failed");
    ExpectLogged(3, "Object? NO");
    ExpectLogged(3, "Release window object");
    EXPECT_EQ(browser.Window().HeldByPlugin(), 0u);
    EXPECT_EQ(Calls({"dsmcc."}), Lines{"dsmcc.RegisterStreamEventCallback(COipfVideoBroadcast)"});
}

TEST_F(Construction, ObjectYesMeansThatTheFirstWordOfTheResultIsNotZero) {
    struct Row {
        Value answer;
        const char* line;
    };
    for (const Row& row : {Row{Value(), "Object? NO"}, Row{nullptr, "Object? NO"}, Row{0, "Object? NO"},
                           Row{false, "Object? NO"}, Row{true, "Object? YES"}, Row{256, "Object? YES"},
                           Row{"text", "Object? YES"}, Row{1.0, "Object? NO"}}) {
        Forget();
        const auto object = MakeWithMarkAnswer(row.answer);
        EXPECT_EQ(support::Log::Instance().Count(row.line), 1u) << row.answer.Show();
        EXPECT_EQ(support::Log::Instance().Count("Evaluate succeeded"), 1u) << row.answer.Show();
    }
}

TEST_F(Construction, TheResultOfTheEvaluationIsGivenBack) {
    FakeObject& result = browser.MakeResult("result");
    const auto object = MakeWithMarkAnswer(result);
    EXPECT_FALSE(result.IsAlive());
    const auto text = MakeWithMarkAnswer("text");
    EXPECT_EQ(browser.GetLedger().BlocksInUse(), 0u);
}

TEST_F(Construction, WithoutDsmccTheObjectIsOtherwiseComplete) {
    platform.answers.hasDsmcc = false;
    EXPECT_EQ(Page().Get("playState").value, Value(0));
    ExpectLogged(0, "Failed to access DSM-CC");
    EXPECT_TRUE(Calls({"dsmcc."}).empty());
    EXPECT_TRUE(Page().Call("bindToCurrentChannel").accepted);
    EXPECT_EQ(PlayState(), Object::E_STATE_PRESENTING);
}

TEST_F(Construction, WithDsmccNoErrorIsLogged) {
    Page();
    ExpectNotLogged("Failed to access DSM-CC");
    EXPECT_EQ(platform.Registrations(), 1u);
}

TEST_F(Construction, EveryObjectRegistersItself) {
    const Probed first(browser);
    const Probed second(browser);
    EXPECT_EQ(platform.Registrations(), 2u);
}

TEST_F(Construction, AnObjectThatCannotBeMadeIsForgotten) {
    const auto names = browser.Functions()->getstringidentifier;
    for (unsigned successes = 0; successes < 40; successes += 3) {
        browser.Functions()->getstringidentifier = ThrowingNames;
        s_namesUntilFailure = successes;
        const Probed object(browser);
        EXPECT_EQ(object.Get(), nullptr);
        EXPECT_EQ(platform.Registrations(), 0u);
    }
    browser.Functions()->getstringidentifier = names;
    const Probed living(browser);
    Forget();
    platform.DeliverStreamEvent(1, "name");
    EXPECT_EQ(LinesWith("[CplVideoBroadcast::DsmEventCallback]"), 1u);
}

TEST_F(Construction, AnObjectThatCannotBeMadeLeavesTheOthersTheirStreamEvents) {
    const Probed living(browser);
    const auto names = browser.Functions()->getstringidentifier;
    browser.Functions()->getstringidentifier = ThrowingNames;
    s_namesUntilFailure = 10;
    EXPECT_EQ(Probed(browser).Get(), nullptr);
    browser.Functions()->getstringidentifier = names;
    EXPECT_TRUE(platform.DeliverStreamEvent(1, "name"));
}

}  // namespace
}  // namespace videobroadcast
