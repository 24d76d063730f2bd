// The call of one handler function with copies of the event's arguments.
#include "tests/unit/javascript/ScriptObject.h"

namespace {

using support::FakeObject;
using support::Value;
using support::Values;

class EventHandlerTest : public ScriptObjectTest {
protected:
    using Texts = std::vector<std::string>;

    void Call(const std::vector<NPVariant*>& arguments = {}) {
        auto args = arguments;
        object->t_CallEventHandler(handler.Pointer(), args);
    }
    // A string of the caller's own, in browser memory.
    NPVariant String(const std::string& text) {
        return OipfJavaScript::StringVariant(browser.GetLedger().AllocateText(text),
                                             static_cast<std::uint32_t>(text.size()));
    }

    FakeObject& handler = browser.MakeFunction("handler");
    NPVariant state = OipfJavaScript::Int32Variant(2);
    NPVariant error = OipfJavaScript::VoidVariant();
};

TEST_F(EventHandlerTest, TheArgumentsArePassedInOrder) {
    NPVariant half{}, none = OipfJavaScript::NullVariant(), yes = OipfJavaScript::BoolVariant(true);
    half.type = NPVariantType_Double;
    half.value.doubleValue = 0.5;
    Call({&state, &error, &half, &none, &yes});
    EXPECT_EQ(Calls({"script."}), Texts{"script.handler(2, undefined, 0.5, null, true)"});
}

TEST_F(EventHandlerTest, ThereMayBeNoArguments) {
    Call();
    EXPECT_EQ(Calls({"script."}), Texts{"script.handler()"});
}

TEST_F(EventHandlerTest, StringsAreCopiedAndTheCallersOwnStay) {
    NPVariant text = String(std::string("a\0b", 3));
    Call({&text});
    EXPECT_EQ(handler.Calls(), std::vector<Values>{(Values{std::string("a\0b", 3)})});
    EXPECT_EQ(browser.Uses("memalloc"), 1u);
    EXPECT_EQ(browser.GetLedger().BlocksInUse(), 1u) << "the copy was given back, the caller's is left";
    EXPECT_EQ(Value(text), Value(std::string("a\0b", 3)));
    npn.releasevariantvalue(&text);
}

TEST_F(EventHandlerTest, AnEmptyStringStaysAString) {
    NPVariant text = String(""), none = OipfJavaScript::StringVariant(nullptr, 0);
    Call({&text, &none});
    EXPECT_EQ(handler.Calls(), std::vector<Values>{(Values{"", ""})});
    npn.releasevariantvalue(&text);
}

TEST_F(EventHandlerTest, AStringThatCannotBeCopiedIsUndefinedAndTheOthersStay) {
    NPVariant text = String("text");
    browser.FailNth("memalloc", 1);
    Call({&text, &state});
    EXPECT_EQ(handler.Calls(), std::vector<Values>{(Values{Value(), 2})});
    npn.releasevariantvalue(&text);
}

TEST_F(EventHandlerTest, ObjectsAreRetainedForTheCall) {
    FakeObject& channel = browser.MakeObject("channel");
    npn.retainobject(channel.Pointer());
    NPVariant argument = OipfJavaScript::ObjectVariant(channel.Pointer());
    unsigned during = 0;
    handler.SetFunction([&] { during = channel.HeldByPlugin(); });
    Call({&argument});
    EXPECT_EQ(during, 2u);
    EXPECT_EQ(channel.HeldByPlugin(), 1u) << "only the caller's own is left";
    npn.releaseobject(channel.Pointer());
}

TEST_F(EventHandlerTest, CopiesAreGivenBackOnceTheOutermostCallIsOver) {
    FakeObject& channel = browser.MakeObject("channel");
    NPVariant argument = OipfJavaScript::ObjectVariant(channel.Pointer());
    std::vector<unsigned> held;
    handler.SetFunction([&] {
        if (handler.Calls().size() < 3) {
            Call({&argument});
        }
        held.push_back(channel.HeldByPlugin());
    });
    Call({&argument});
    EXPECT_EQ(held, (std::vector<unsigned>{3, 3, 3}));
    EXPECT_EQ(channel.HeldByPlugin(), 0u);
}

TEST_F(EventHandlerTest, NothingGrowsFromCallToCall) {
    NPVariant text = String("text");
    for (int i = 0; i < 100; ++i) {
        Call({&text});
        ASSERT_EQ(browser.GetLedger().BlocksInUse(), 1u);
    }
    npn.releasevariantvalue(&text);
}

TEST_F(EventHandlerTest, TheResultIsGivenBack) {
    handler.SetFunction([] { return Value("a result"); });
    Call();
    handler.SetFunction([this] { return Value(browser.MakeResult("result")); });
    Call();
}

TEST_F(EventHandlerTest, AFailedCallsResultIsNotReleased) {
    handler.SetFunction([] { return std::optional<Value>(); });
    const unsigned released = browser.Uses("releasevariantvalue");
    Call({&state});
    browser.FailNth("invokeDefault", 1);
    Call({&state});
    EXPECT_EQ(handler.Calls().size(), 1u);
    EXPECT_EQ(browser.Uses("releasevariantvalue"), released);
}

TEST_F(EventHandlerTest, AHandlerThatClearsItsOwnPropertyLivesThroughItsCall) {
    npn.retainobject(handler.Pointer());  // the property's reference
    browser.Forget(handler);
    handler.SetFunction([this] { npn.releaseobject(handler.Pointer()); });
    Call();
    EXPECT_FALSE(handler.IsAlive());
}

TEST_F(EventHandlerTest, AnInvalidatedObjectCallsNobody) {
    object->Invalidate();
    Call({&state});
    EXPECT_TRUE(handler.Calls().empty());
    ExpectLogged(2, "t_CallEventHandler, Object has been invalidated! (m_npp is NULL)");
}

TEST_F(EventHandlerTest, InvalidationDuringTheCallIsLoggedWithBothInstances) {
    handler.SetFunction([this] { object->Invalidate(); });
    Call({&state});
    char line[96];
    std::snprintf(line, sizeof line, "JSNPObject deleted? %p %p", static_cast<void*>(npp), static_cast<void*>(nullptr));
    ExpectLogged(2, line);
}

TEST_F(EventHandlerTest, AnUneventfulCallLogsNothing) {
    ClearLog();
    Call({&state});
    EXPECT_TRUE(support::Log::Instance().Lines().empty());
}

TEST_F(EventHandlerTest, AnObjectDestroyedByTheHandlerLivesUntilTheCallEnds) {
    NPVariant text = String("text");
    object->t_RegisterMethod("act", OipfJavaScript::make_method(object, &ScriptObject::Act));
    object->m_action = [&] { Call({&text}); };
    handler.SetFunction([this] {
        object->Invalidate();
        Release();
    });
    browser.pageHoldsDuringCalls = false;
    browser.Call(object, "act");
    EXPECT_EQ(ScriptObject::s_living, 0);
    npn.releasevariantvalue(&text);
}

}  // namespace
