// What the fake browser answers, records and passes on.
#include "tests/support/FakeBrowser.h"

#include <gtest/gtest-spi.h>

#include <cstring>
#include <thread>

#include "tests/support/PluginTest.h"

namespace support {
namespace {

class FakeBrowserTest : public PluginTest {
protected:
    NPNetscapeFuncs& npn = *browser.Functions();
    NPP npp = browser.MakeInstance();

    NPVariant InvokeDefault(const FakeObject& function, const Values& arguments = {}) {
        const PassedValues passed(browser, arguments);
        NPVariant result{};
        m_succeeded = npn.invokeDefault(npp, function.Pointer(), passed.Data(), passed.Count(), &result);
        return result;
    }
    bool Evaluate(const std::string& text, NPVariant& result) {
        NPString script{text.c_str(), static_cast<std::uint32_t>(text.size())};
        return npn.evaluate(npp, browser.Window().Pointer(), &script, &result);
    }
    bool m_succeeded = false;
};

TEST_F(FakeBrowserTest, TablesAreExactlyAsLongAsTheySay) {
    EXPECT_EQ(FakeBrowser::kThroughConvertPoint, sizeof(void*) == 4 ? 212u : 424u);
    NPNetscapeFuncs* table = browser.Table();
    EXPECT_EQ(table->size, FakeBrowser::kThroughConvertPoint);
    EXPECT_EQ(table->version, 26);
    EXPECT_NE(table->convertpoint, nullptr);
    const NPNetscapeFuncs* longer = browser.Table(sizeof(NPNetscapeFuncs) + 24, 0x0100);
    EXPECT_EQ(longer->size, sizeof(NPNetscapeFuncs) + 24);
    EXPECT_EQ(longer->version, 0x0100);
    EXPECT_NE(longer->urlredirectresponse, nullptr);
}

TEST_F(FakeBrowserTest, MembersCanBeLeftOut) {
    browser.LeaveOutOptionalFunctions();
    EXPECT_EQ(browser.Functions()->forceredraw, nullptr);
    EXPECT_EQ(browser.Table()->scheduletimer, nullptr);
    EXPECT_NE(browser.Table()->evaluate, nullptr);
}

TEST_F(FakeBrowserTest, EveryOtherMemberAnswersThatItCannot) {
    EXPECT_EQ(npn.geturl(npp, "http://tv.example/", "_self"), NPERR_GENERIC_ERROR);
    EXPECT_EQ(npn.uagent(npp), nullptr);
    EXPECT_EQ(npn.scheduletimer(npp, 1, 0, nullptr), 0u);
    EXPECT_FALSE(npn.convertpoint(npp, 0, 0, NPCoordinateSpacePlugin, nullptr, nullptr, NPCoordinateSpaceScreen));
}

TEST_F(FakeBrowserTest, EqualNamesHaveEqualIdentifiersForEver) {
    const NPIdentifier name = npn.getstringidentifier("onBlur");
    EXPECT_EQ(npn.getstringidentifier(std::string("onBlur").c_str()), name);
    EXPECT_NE(npn.getstringidentifier("onFocus"), name);
    EXPECT_TRUE(npn.identifierisstring(name));
    NPUTF8* text = npn.utf8fromidentifier(name);
    EXPECT_STREQ(text, "onBlur");
    npn.memfree(text);
    const NPIdentifier number = npn.getintidentifier(7);
    EXPECT_FALSE(npn.identifierisstring(number));
    EXPECT_EQ(npn.intfromidentifier(number), 7);
    EXPECT_EQ(npn.utf8fromidentifier(number), nullptr);
}

TEST_F(FakeBrowserTest, ACallOfAFunctionIsRecordedWithItsArguments) {
    FakeObject& function = browser.MakeFunction("onPlayStateChange",
                                                [](const Values& arguments) { return Value(arguments[0].Int() + 1); });
    FakeObject& channel = browser.MakeObject("channel");
    const NPVariant result = InvokeDefault(function, {1, Value(), nullptr, 2.5, "text", true, channel});
    EXPECT_TRUE(m_succeeded);
    EXPECT_EQ(Value(result), Value(2));
    EXPECT_EQ(function.Calls(), std::vector<Values>{(Values{1, Value(), nullptr, 2.5, "text", true, channel})});
    EXPECT_EQ(Calls(),
              std::vector<std::string>{"script.onPlayStateChange(1, undefined, null, 2.5, \"text\", true, channel)"});
}

TEST_F(FakeBrowserTest, WhatIsNoFunctionCannotBeCalled) {
    const NPVariant result = InvokeDefault(browser.MakeObject("object"));
    EXPECT_FALSE(m_succeeded);
    EXPECT_EQ(result.type, NPVariantType_Void);
}

TEST_F(FakeBrowserTest, IntegersArriveAsDoublesWhereTheBrowserHasNoOthers) {
    FakeObject& object = browser.MakeObject("channel").Set("mid", 7);
    NPVariant value{};
    npn.getproperty(npp, object.Pointer(), npn.getstringidentifier("mid"), &value);
    EXPECT_EQ(Value(value), Value(7));
    browser.numbersAreDoubles = true;
    npn.getproperty(npp, object.Pointer(), npn.getstringidentifier("mid"), &value);
    EXPECT_EQ(Value(value), Value(7.0));
    EXPECT_EQ(object.Reads(), (std::vector<std::string>{"mid", "mid"}));
    const PassedValues passed(browser, {7});
    EXPECT_EQ(passed.Data()->type, NPVariantType_Double);
}

TEST_F(FakeBrowserTest, AMissingPropertyIsUndefined) {
    NPVariant value{};
    value.type = NPVariantType_Null;
    EXPECT_TRUE(npn.getproperty(npp, browser.Window().Pointer(), npn.getstringidentifier("nothing"), &value));
    EXPECT_EQ(value.type, NPVariantType_Void);
}

TEST_F(FakeBrowserTest, PropertiesCanBeSetAndRemoved) {
    const NPIdentifier name = npn.getstringidentifier("colour");
    NPVariant blue{};
    blue.type = NPVariantType_String;
    blue.value.stringValue = {"blue", 4};
    EXPECT_FALSE(npn.hasproperty(npp, browser.Window().Pointer(), name));
    EXPECT_TRUE(npn.setproperty(npp, browser.Window().Pointer(), name, &blue));
    EXPECT_TRUE(npn.hasproperty(npp, browser.Window().Pointer(), name));
    EXPECT_EQ(browser.Window().Get("colour"), Value("blue"));
    EXPECT_TRUE(npn.removeproperty(npp, browser.Window().Pointer(), name));
    EXPECT_FALSE(browser.Window().Has("colour"));
}

TEST_F(FakeBrowserTest, TheDocumentsLocationIsAnswered) {
    browser.location = "http://tv.example/other.html";
    NPVariant result{};
    EXPECT_TRUE(Evaluate("document.location.href", result));
    EXPECT_EQ(Value(result), Value("http://tv.example/other.html"));
    npn.releasevariantvalue(&result);
    EXPECT_EQ(browser.Evaluated(), std::vector<std::string>{"document.location.href"});
}

TEST_F(FakeBrowserTest, AConstructorCallMakesAnObjectThatRemembersIt) {
    NPVariant result{};
    EXPECT_TRUE(Evaluate("new Channel(\"key\", 12, 1, 2, 3);", result));
    FakeObject& channel = *browser.Created("Channel").at(0);
    EXPECT_EQ(Value(result), Value(channel));
    EXPECT_EQ(channel.ClassName(), "Channel");
    EXPECT_EQ(channel.ConstructorText(), "\"key\", 12, 1, 2, 3");
    EXPECT_EQ(channel.Name(), "Channel(12, 1, 2, 3)");
    npn.releasevariantvalue(&result);
    EXPECT_FALSE(channel.IsAlive());
}

TEST_F(FakeBrowserTest, AnArrayKeepsWhatIsPushed) {
    NPVariant array{};
    EXPECT_TRUE(Evaluate("new Array();", array));
    FakeObject& item = browser.MakeObject("item");
    const PassedValues passed(browser, {item, 3});
    NPVariant result{};
    EXPECT_TRUE(npn.invoke(npp, array.value.objectValue, npn.getstringidentifier("push"), passed.Data(), passed.Count(),
                           &result));
    EXPECT_EQ(Value(result), Value(2));
    EXPECT_EQ(browser.Created("Array").at(0)->Items(), (Values{item, 3}));
    EXPECT_EQ(Calls({"script."}), std::vector<std::string>{"script.Array().push(item, 3)"});
    npn.releasevariantvalue(&array);
}

TEST_F(FakeBrowserTest, APageGlobalBecomesAPropertyOfTheWindow) {
    NPVariant result{};
    EXPECT_TRUE(Evaluate("window.__OIPF_VBO_3021456 = true;", result));
    EXPECT_EQ(browser.Window().Get("__OIPF_VBO_3021456"), Value(true));
}

TEST_F(FakeBrowserTest, TheLastRuleThatFitsAnswers) {
    browser.AnswerEvaluateOf("new Chan", [](const std::string&) { return std::nullopt; });
    browser.AnswerEvaluate("new Channel(1);", [](const std::string&) { return Value(5); });
    NPVariant result{};
    EXPECT_FALSE(Evaluate("new Channel(2);", result));
    EXPECT_EQ(result.type, NPVariantType_Void);
    EXPECT_TRUE(Evaluate("new Channel(1);", result));
    EXPECT_EQ(Value(result), Value(5));
}

TEST_F(FakeBrowserTest, AnUnexpectedTextFailsTheTest) {
    NPVariant result{};
    EXPECT_NONFATAL_FAILURE(Evaluate("alert(1);", result), "No rule answers the evaluated text \"alert(1);\".");
}

TEST_F(FakeBrowserTest, TheNthUseOfAFunctionFails) {
    browser.FailNth("memalloc", 2);
    void* first = npn.memalloc(4);
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(npn.memalloc(4), nullptr);
    void* third = npn.memalloc(4);
    EXPECT_NE(third, nullptr);
    EXPECT_EQ(browser.Uses("memalloc"), 3u);
    npn.memfree(first);
    npn.memfree(third);
}

TEST_F(FakeBrowserTest, AFunctionFailsUntilItIsToldNotTo) {
    browser.FailFrom("getvalue");
    NPObject* window = nullptr;
    EXPECT_EQ(npn.getvalue(npp, NPNVWindowNPObject, &window), NPERR_GENERIC_ERROR);
    EXPECT_EQ(npn.getvalue(npp, NPNVWindowNPObject, &window), NPERR_GENERIC_ERROR);
    browser.StopFailing("getvalue");
    EXPECT_EQ(npn.getvalue(npp, NPNVWindowNPObject, &window), NPERR_NO_ERROR);
    EXPECT_EQ(window, browser.Window().Pointer());
    npn.releaseobject(window);
}

TEST_F(FakeBrowserTest, TheWindowMayBeMissingWithoutAnError) {
    browser.windowIsNull = true;
    NPObject* window = browser.Window().Pointer();
    EXPECT_EQ(npn.getvalue(npp, NPNVWindowNPObject, &window), NPERR_NO_ERROR);
    EXPECT_EQ(window, nullptr);
}

TEST_F(FakeBrowserTest, ExceptionsVariablesAndRedrawsAreRecordedInOrder) {
    npn.setvalue(npp, NPPVpluginWindowBool, nullptr);
    npn.setexception(browser.Window().Pointer(), "SecurityError");
    npn.forceredraw(npp);
    EXPECT_EQ(Calls(), (std::vector<std::string>{"setvalue 3, 0", "exception SecurityError", "forceredraw"}));
    EXPECT_EQ(browser.Exceptions(), std::vector<std::string>{"SecurityError"});
}

TEST_F(FakeBrowserTest, AnActionCanRunInsideACall) {
    When("forceredraw", [&] { npn.setvalue(npp, NPPVpluginTransparentBool, nullptr); });
    npn.forceredraw(npp);
    EXPECT_EQ(Calls(), (std::vector<std::string>{"forceredraw", "setvalue 4, 0"}));
    ExpectInOrder({"forceredraw", "setvalue 4, 0"});
    EXPECT_NONFATAL_FAILURE(ExpectInOrder({"setvalue 4, 0", "forceredraw"}), "not in its place");
}

TEST_F(FakeBrowserTest, AnotherPointerInPlaceOfAnInstanceIsFound) {
    _NPP other{};
    for (NPP wrong : {static_cast<NPP>(nullptr), &other}) {
        EXPECT_NONFATAL_FAILURE(npn.forceredraw(wrong), "\"forceredraw\" was not given an instance");
        EXPECT_NONFATAL_FAILURE(npn.setvalue(wrong, NPPVpluginWindowBool, nullptr), "not given an instance");
    }
    EXPECT_TRUE(Calls().empty());
}

std::vector<int> s_ran;
int s_numbers[] = {0, 1, 2, 3};

void Note(void* data) { s_ran.push_back(*static_cast<int*>(data)); }

TEST_F(FakeBrowserTest, AsynchronousCallsRunInOrderWhenTold) {
    s_ran.clear();
    for (int& number : s_numbers) {
        npn.pluginthreadasynccall(npp, Note, &number);
    }
    EXPECT_TRUE(s_ran.empty());
    EXPECT_TRUE(browser.Async().RunOne());
    EXPECT_EQ(s_ran, std::vector<int>{0});
    EXPECT_EQ(browser.RunAsyncCalls(), 3u);
    EXPECT_EQ(s_ran, (std::vector<int>{0, 1, 2, 3}));
}

TEST_F(FakeBrowserTest, AsynchronousCallsEndWithTheirInstance) {
    s_ran.clear();
    npn.pluginthreadasynccall(npp, Note, &s_numbers[1]);
    browser.EndInstance(npp);
    npn.pluginthreadasynccall(npp, Note, &s_numbers[2]);
    EXPECT_EQ(browser.RunAsyncCalls(), 0u);
}

TEST_F(FakeBrowserTest, PendingCallsCanOutliveTheirInstanceOrBeDropped) {
    s_ran.clear();
    browser.pendingCallsEndWithInstance = false;
    npn.pluginthreadasynccall(npp, Note, &s_numbers[1]);
    browser.EndInstance(npp);
    EXPECT_EQ(browser.RunAsyncCalls(), 1u);
    const NPP other = browser.MakeInstance();
    npn.pluginthreadasynccall(other, Note, &s_numbers[2]);
    browser.DropAsyncCalls();
    EXPECT_EQ(browser.RunAsyncCalls(), 0u);
}

TEST_F(FakeBrowserTest, AsynchronousCallsMayComeFromThreads) {
    s_ran.clear();
    std::thread first([&] { npn.pluginthreadasynccall(npp, Note, &s_numbers[1]); });
    std::thread second([&] { npn.pluginthreadasynccall(npp, Note, &s_numbers[2]); });
    while (s_ran.size() < 2) {
        ASSERT_TRUE(browser.Async().Wait(std::chrono::seconds(30)));
        browser.RunAsyncCalls();
    }
    first.join();
    second.join();
}

}  // namespace
}  // namespace support
