// The handler properties: what they accept, what they hold, and the event that each stands for.
#include "tests/unit/videobroadcast/ObjectTest.h"

#include "javascript/Variants.h"

namespace videobroadcast {
namespace {

using OipfVideoBroadcast::EProperty;

struct Row {
    int id;
    const char* name;
    const char* eventType;
    const char* getterLog;
    const char* setterLog;
    friend void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }
};

const Row kRows[] = {
    {3, "onChannelChangeError", "ChannelChangeError", "m_GetOnChChangeErr()", "m_SetOnChChangeErr()"},
    {4, "onChannelChangeSucceeded", "ChannelChangeSucceeded", "m_GetOnChChangeSucceeded()",
     "m_SetOnChChangeSucceeded()"},
    {5, "onPlayStateChange", "PlayStateChange", "m_GetOnPlayStateCh()", "m_SetOnPlayStateCh()"},
    {6, "onFullScreenChange", "FullScreenChange", "m_GetOnFullScreenCh()", "m_SetOnFullScreenCh()"},
    {7, "onFocus", "Focus", "m_GetOnFocus()", "m_SetOnFocus()"},
    {8, "onBlur", "Blur", "m_GetOnBlur()", "m_SetOnBlur()"},
    {9, "onProgrammesChanged", "ProgrammesChanged", "m_GetOnProgrammesCh()", "m_SetOnProgrammesCh()"},
    {10, "onParentalRatingChange", "ParentalRatingChange", "m_GetOnParentalRatingCh()", "m_SetOnParentalRatingCh()"},
    {11, "onParentalRatingError", "ParentalRatingError", "m_GetOnParentalRatingErr()", "m_SetOnParentalRatingErr()"},
    {12, "onStreamEvent", "StreamEvent", "m_GetOnStreamEvent()", "m_SetOnStreamEvent()"},
    {13, "onDRMRightsError", "DrmRightsError", "m_GetOnDrmRightsErr()", "m_SetOnDrmRightsErr()"},
};

class HandlerProperties : public ObjectTest {};
class EachHandlerProperty : public ObjectTest, public ::testing::WithParamInterface<Row> {};

INSTANTIATE_TEST_SUITE_P(Rows, EachHandlerProperty, ::testing::ValuesIn(kRows),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(EachHandlerProperty, CannotBeReadBeforeItIsSet) {
    const Outcome outcome = Page().Get(GetParam().name);
    EXPECT_FALSE(outcome.accepted);
    EXPECT_EQ(outcome.exception, "");
    ExpectLogged(3, GetParam().getterLog);
    ExpectLogged(3, "property has not been set!");
}

TEST_P(EachHandlerProperty, GivesBackTheFunctionThatWasSet) {
    FakeObject& handler = SetHandler(GetParam().name);
    ExpectLogged(3, GetParam().setterLog);
    EXPECT_EQ(Page().Get(GetParam().name).value, Value(handler));
    ExpectLogged(3, GetParam().getterLog);
    ExpectLogged(3, "property has been set!");
}

TEST_P(EachHandlerProperty, HoldsAFunctionOfItsOwn) {
    FakeObject& handler = SetHandler(GetParam().name);
    for (const Row& row : kRows) {
        EXPECT_EQ(Page().Get(row.name).accepted, row.id == GetParam().id) << row.name;
    }
    EXPECT_EQ(handler.HeldByPlugin(), 1u);
}

TEST_P(EachHandlerProperty, IsReachedByItsNumber) {
    FakeObject& handler = SetHandler(GetParam().name);
    NPVariant result = OipfJavaScript::VoidVariant();
    ASSERT_TRUE(Native().m_GetProperty(static_cast<EProperty>(GetParam().id), &result));
    EXPECT_EQ(result.value.objectValue, handler.Pointer());
    browser.Functions()->releasevariantvalue(&result);
}

TEST_P(EachHandlerProperty, StandsForTheEventOfItsNumber) {
    Probed object(browser);
    SetHandler(object.Get(), GetParam().name);
    Listen(object.Get(), GetParam().eventType);
    Forget();
    std::vector<NPVariant*> none;
    object->m_OnEvent(static_cast<unsigned>(GetParam().id), none);
    EXPECT_EQ(Told(), (Lines{std::string("script.") + GetParam().name + "()",
                             std::string("event ") + GetParam().eventType + "{}"}));
    ExpectLogged(3, std::string("Create DOM Event for ") + GetParam().eventType);
}

TEST_F(HandlerProperties, TheFunctionIsHeldOnceAndReleasedOnceWhenSetToNull) {
    FakeObject& handler = browser.MakeFunction("handler");
    EXPECT_TRUE(Page().Set("onBlur", handler).accepted);
    EXPECT_EQ(handler.HeldByPlugin(), 1u);
    ExpectNotLogged("Release current property");
    EXPECT_EQ(LinesWith("Set NPObject 0x"), 1u);

    EXPECT_TRUE(Page().Set("onBlur", nullptr).accepted);
    EXPECT_EQ(handler.HeldByPlugin(), 0u);
    ExpectLogged(3, "Release current property");
    ExpectLogged(3, "Set property to NULL");
    EXPECT_FALSE(Page().Get("onBlur").accepted);
}

TEST_F(HandlerProperties, UndefinedClearsLikeNull) {
    FakeObject& handler = browser.MakeFunction("handler");
    Page().Set("onBlur", handler);
    EXPECT_TRUE(Page().Set("onBlur", Value()).accepted);
    EXPECT_EQ(handler.HeldByPlugin(), 0u);
    EXPECT_FALSE(Page().Get("onBlur").accepted);
}

TEST_F(HandlerProperties, ClearingWhatIsNotSetReleasesNothing) {
    EXPECT_TRUE(Page().Set("onBlur", nullptr).accepted);
    ExpectNotLogged("Release current property");
    ExpectLogged(3, "Set property to NULL");
}

TEST_F(HandlerProperties, ValuesThatAreNoObjectsAreRefusedAndTheOldFunctionStays) {
    FakeObject& handler = SetHandler("onBlur");
    for (const Value& value : {Value(7), Value(7.5), Value(true), Value("text"), Value("")}) {
        Forget();
        const Outcome outcome = Page().Set("onBlur", value);
        EXPECT_TRUE(outcome.accepted) << value.Show();
        EXPECT_EQ(outcome.exception, "value is not an object") << value.Show();
        ExpectLogged(2, "Set property - value is not an object, null or undefined");
        EXPECT_EQ(Page().Get("onBlur").value, Value(handler)) << value.Show();
        EXPECT_EQ(handler.HeldByPlugin(), 1u) << value.Show();
    }
}

TEST_F(HandlerProperties, AnObjectVariantWithoutAnObjectIsNoObject) {
    FakeObject& handler = SetHandler("onBlur");
    const Outcome outcome = Page().Set("onBlur", Value(static_cast<NPObject*>(nullptr)));
    EXPECT_EQ(outcome.exception, "value is not an object");
    EXPECT_EQ(Page().Get("onBlur").value, Value(handler));
}

TEST_F(HandlerProperties, ObjectsThatCannotBeCalledAreAccepted) {
    FakeObject& object = browser.MakeObject("object");
    browser.MayKeep(object);
    EXPECT_EQ(Page().Set("onBlur", object).exception, "");
    EXPECT_EQ(Page().Get("onBlur").value, Value(object));
}

TEST_F(HandlerProperties, ANewFunctionReplacesAndReleasesTheOldOne) {
    FakeObject& before = browser.MakeFunction("before");
    Page().Set("onBlur", before);
    FakeObject& after = SetHandler("onBlur");
    EXPECT_EQ(before.HeldByPlugin(), 0u);
    EXPECT_EQ(after.HeldByPlugin(), 1u);
    EXPECT_EQ(Page().Get("onBlur").value, Value(after));
}

TEST_F(HandlerProperties, TheSameFunctionAgainIsReleasedAndHeldAgain) {
    FakeObject& handler = SetHandler("onBlur");
    Forget();
    Page().Set("onBlur", handler);
    EXPECT_EQ(handler.HeldByPlugin(), 1u);
    const Lines lines = support::Log::Instance().Texts();
    ASSERT_EQ(lines.size(), 3u);
    ExpectLogged(3, lines[2]);
    EXPECT_EQ(lines[0], "m_SetOnBlur()");
    EXPECT_EQ(lines[1], "Release current property");
    EXPECT_TRUE(lines[2].starts_with("Set NPObject 0x")) << lines[2];
}

TEST_F(HandlerProperties, EachReadIsAReferenceOfTheReaders) {
    FakeObject& handler = SetHandler("onBlur");
    browser.Forget(handler);
    Page().Get("onBlur");
    Page().Get("onBlur");
    EXPECT_EQ(browser.GetLedger().HeldByPage(handler.Pointer()), 2u);
    EXPECT_EQ(handler.HeldByPlugin(), 1u);
}

TEST_F(HandlerProperties, AReadThatFailsLeavesTheResultUntouched) {
    NPVariant result = OipfJavaScript::Int32Variant(77);
    EXPECT_FALSE(Native().m_GetProperty(OipfVideoBroadcast::E_PROP_BLUR, &result));
    EXPECT_EQ(Value(result), Value(77));
}

TEST_F(HandlerProperties, NumbersOutsideThreeToThirteenAreRefused) {
    FakeObject& handler = browser.MakeFunction("handler");
    const NPVariant value = OipfJavaScript::ObjectVariant(handler.Pointer());
    for (const int number : {0, 1, 2, 14, 999}) {
        EXPECT_FALSE(Native().m_SetProperty(static_cast<EProperty>(number), &value)) << number;
        ExpectLogged(2, "m_SetProperty on invalid property " + std::to_string(number));
        NPVariant result = OipfJavaScript::VoidVariant();
        EXPECT_FALSE(Native().m_GetProperty(static_cast<EProperty>(number), &result)) << number;
    }
    EXPECT_EQ(handler.HeldByPlugin(), 0u);
    EXPECT_TRUE(browser.Exceptions().empty());
}

TEST_F(HandlerProperties, TheNumberIsCheckedBeforeTheValue) {
    const NPVariant value = OipfJavaScript::Int32Variant(1);
    EXPECT_FALSE(Native().m_SetProperty(OipfVideoBroadcast::E_PROP_RESERVED_2, &value));
    EXPECT_TRUE(browser.Exceptions().empty());
}

TEST_F(HandlerProperties, SetBeforeTheLastReferenceIsGivenUpTheNewFunctionStays) {
    FakeObject& handler = browser.MakeFunction("handler");
    Page().Set("onBlur", handler);
    browser.Forget(handler);  // only the property holds it now
    SetHandler("onBlur");
    EXPECT_FALSE(handler.IsAlive());
}

}  // namespace
}  // namespace videobroadcast
