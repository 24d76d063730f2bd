// createChannelObject with any other number of arguments than three: a Channel from a triplet.
#include <locale>

#include "tests/unit/videobroadcast/ScriptedObjectTest.h"

namespace videobroadcast_tests {
namespace {

constexpr const char* kOnidLine = "CreateChannelObject failed - onid is invalid, type is ID_DVB_* or ID_ISDB_*";
constexpr const char* kTsidLine = "CreateChannelObject failed - tsid is invalid, type is ID_DVB_* or ID_ISDB_*";
constexpr const char* kSidLine = "CreateChannelObject failed - sid is invalid, type is ID_DVB_* or ID_ISDB_*";
constexpr const char* kNoSourceId = "invalid arguments (ID_ATSC_T type, but no source ID)";
constexpr const char* kNoSourceIdLine = "Create Channel object failed - ID_ATSC_T type, but no source ID";
constexpr const char* kNoIpBroadcastId = "invalid arguments (ID_IPTV_* type, but no ipBroadcastID)";
constexpr const char* kNoIpBroadcastIdLine = "Create Channel object failed - no ipBroadcastID";

class ChannelObjectsTriplet : public ScriptedObjectNumbersTest {
protected:
    void ExpectScript(const Values& arguments, const std::string& script) {
        ForgetWhatHappened();
        const Outcome outcome = Call("createChannelObject", arguments);
        EXPECT_TRUE(outcome.accepted);
        EXPECT_EQ(Calls({"evaluate", "exception"}), List{"evaluate " + script}) << Show(arguments);
        ASSERT_FALSE(browser.Created("Channel").empty());
        EXPECT_EQ(outcome.value, Value(*browser.Created("Channel").back()));
    }
    void ExpectRefused(const Values& arguments, const std::string& exception, const std::string& line) {
        ForgetWhatHappened();
        ExpectException(Call("createChannelObject", arguments), exception);
        EXPECT_EQ(Calls(), List{"exception " + exception}) << Show(arguments);
        ExpectLogged(2, line);
        ExpectNotLogged("Create Channel object failed");
    }
};

INSTANTIATE_TEST_SUITE_P(Numbers, ChannelObjectsTriplet, BothNumbers());

TEST_P(ChannelObjectsTriplet, TheClassGetsIdTypeOnidTsidSid) {
    ExpectScript({12, 1, 2, 3}, "new Channel(\"key\", 12, 1, 2, 3);");
    ExpectLogInOrder({"m_CreateChannelObj()", "VBO createChannelObject using triplet"});
    ExpectNotLogged("Create Channel object failed");
}

TEST_P(ChannelObjectsTriplet, NumbersAreDecimalWithTheirSignAndCutTowardZero) {
    ExpectScript({12, -1, 65535, 1234567}, "new Channel(\"key\", 12, -1, 65535, 1234567);");
    ExpectScript({12.9, 1.9, -2.9, 3.1}, "new Channel(\"key\", 12, 1, -2, 3);");
    ExpectScript({12, 1e12, -1e12, 0}, "new Channel(\"key\", 12, 2147483647, -2147483648, 0);");
}

TEST_P(ChannelObjectsTriplet, MoreThanSixArgumentsGiveNothingAndThrowNothing) {
    ExpectDone(Call("createChannelObject", {12, 1, 2, 3, 4, "5", 6}));
    ExpectDone(Call("createChannelObject", Values(200, Value(12))));
    EXPECT_TRUE(Calls().empty());
    ExpectLogged(3, "m_CreateChannelObj()", 2);
    ExpectNotLogged("VBO createChannelObject using triplet");
}

TEST_P(ChannelObjectsTriplet, TheResultOfTooManyArgumentsIsLeftAsTheBrowserGaveIt) {
    NPVariant preset{};
    preset.type = NPVariantType_Int32;
    preset.value.intValue = 99;
    EXPECT_EQ(Value(CallWithPresetResult("createChannelObject", {12, 1, 2, 3, 4, "5", 6}, preset)), Value(99));
}

TEST_P(ChannelObjectsTriplet, AnExceptionLeavesTheResultAsTheBrowserGaveIt) {
    NPVariant preset{};
    preset.type = NPVariantType_Int32;
    preset.value.intValue = 99;
    for (const Values& refused : {Values{"12", 1, 2, 3}, Values{12, "abc", 2, 3}, Values{30, 1, 2, 3},
                                  Values{41, 1, 2, 3}, Values{"12", "Z", 5}, Values{12, 90, 5}, Values{12, "Z", "5"}}) {
        EXPECT_EQ(Value(CallWithPresetResult("createChannelObject", refused, preset)), Value(99)) << Show(refused);
    }
    browser.FailFrom("evaluate");
    EXPECT_EQ(Value(CallWithPresetResult("createChannelObject", {12, 1, 2, 3}, preset)), Value(99));
    EXPECT_EQ(Value(CallWithPresetResult("createChannelObject", {12, "Z", 5}, preset)), Value(99));
}

TEST_P(ChannelObjectsTriplet, AnIdTypeThatIsNoNumberIsRefused) {
    for (const Value& wrong : {Value("12"), Value(), Value(nullptr), Value(true), Value(MakeChannel({}))}) {
        ExpectRefused({wrong, 1, 2, 3}, "idType is invalid", "Create Channel object failed - idType is invalid");
    }
}

TEST_P(ChannelObjectsTriplet, ADvbTypeNeedsThreeNumbersCheckedInThisOrder) {
    ExpectRefused({12, "abc", 2, 3}, "invalid onid argument", kOnidLine);
    ExpectRefused({12, 1, "abc", 3}, "invalid tsid argument", kTsidLine);
    ExpectRefused({12, 1, 2, "abc"}, "invalid sid argument", kSidLine);
    ExpectRefused({12, "a", "b", "c"}, "invalid onid argument", kOnidLine);
    ExpectRefused({12, 1, "b", "c"}, "invalid tsid argument", kTsidLine);
    ExpectRefused({12, true, 2, 3}, "invalid onid argument", kOnidLine);
    ExpectRefused({12, 1, nullptr, 3}, "invalid tsid argument", kTsidLine);
    ExpectRefused({12, 1, 2, Value()}, "invalid sid argument", kSidLine);
}

TEST_P(ChannelObjectsTriplet, Types10To22AreDvbAndIsdbThoseWithoutANameIncluded) {
    for (int idType = 10; idType <= 22; ++idType) {
        ExpectRefused({idType, "abc", 2, 3}, "invalid onid argument", kOnidLine);
        ExpectScript({idType, 1, 2, 3}, "new Channel(\"key\", " + std::to_string(idType) + ", 1, 2, 3);");
    }
}

TEST_P(ChannelObjectsTriplet, OtherTypesTakeWhatIsNoNumberAs0) {
    for (const int idType : {-2147483647 - 1, -10, -1, 0, 9, 23, 40, 50, 2147483647}) {
        const std::string start = "new Channel(\"key\", " + std::to_string(idType) + ", ";
        ExpectScript({idType, "abc", "def", "ghi"}, start + "0, 0, 0);");
        ExpectScript({idType, nullptr, 2, true}, start + "0, 2, 0);");
    }
}

TEST_P(ChannelObjectsTriplet, MissingArgumentsAreUndefined) {
    ExpectRefused({}, "idType is invalid", "Create Channel object failed - idType is invalid");
    ExpectRefused({12}, "invalid onid argument", kOnidLine);
    ExpectRefused({12, 1}, "invalid tsid argument", kTsidLine);
    ExpectScript({40}, "new Channel(\"key\", 40, 0, 0, 0);");
    ExpectScript({40, 1}, "new Channel(\"key\", 40, 1, 0, 0);");
    ExpectRefused({30}, kNoSourceId, kNoSourceIdLine);
    ExpectRefused({41, 1}, kNoIpBroadcastId, kNoIpBroadcastIdLine);
}

TEST_P(ChannelObjectsTriplet, AnAtscTypeNeedsASourceIdThatTheClassDoesNotGet) {
    ExpectRefused({30, 1, 2, 3}, kNoSourceId, kNoSourceIdLine);
    ExpectScript({30, 1, 2, 3, 4}, "new Channel(\"key\", 30, 1, 2, 3);");
    ExpectScript({30, "abc", 2, 3, 4}, "new Channel(\"key\", 30, 0, 2, 3);");
}

TEST_P(ChannelObjectsTriplet, ASourceIdThatIsNoNumberIsRefusedForTheAtscType) {
    for (const Value& wrong : {Value("4"), Value(), Value(nullptr), Value(true)}) {
        ExpectRefused({30, 1, 2, 3, wrong}, "invalid arguments (sourceId)",
                      "Create Channel object failed - sourceid is invalid");
        ExpectRefused({30, 1, 2, 3, wrong, "5"}, "invalid arguments (sourceId)",
                      "Create Channel object failed - sourceid is invalid");
    }
}

TEST_P(ChannelObjectsTriplet, OtherTypesDoNotReadASourceId) {
    for (const int idType : {12, 29, 31, 40}) {
        ExpectScript({idType, 1, 2, 3, "4"}, "new Channel(\"key\", " + std::to_string(idType) + ", 1, 2, 3);");
        ExpectScript({idType, 1, 2, 3, Value(), "5"}, "new Channel(\"key\", " + std::to_string(idType) + ", 1, 2, 3);");
    }
}

TEST_P(ChannelObjectsTriplet, ASixthArgumentMustBeAStringForEveryTypeAndTheClassDoesNotGetIt) {
    for (const int idType : {12, 30, 40, 41}) {
        ExpectScript({idType, 1, 2, 3, 4, "dvb://x"}, "new Channel(\"key\", " + std::to_string(idType) + ", 1, 2, 3);");
        for (const Value& wrong : {Value(5), Value(), Value(nullptr), Value(true), Value(MakeChannel({}))}) {
            ExpectRefused({idType, 1, 2, 3, 4, wrong}, "invalid arguments (ipBroadcastID)",
                          "Create Channel object failed - invalid ipBroadcastID");
        }
    }
    ExpectScript({41, 1, 2, 3, 4, ""}, "new Channel(\"key\", 41, 1, 2, 3);");
    ExpectScript({41, 1, 2, 3, 4, "dvb-ip://\xE2\x82\xAC"}, "new Channel(\"key\", 41, 1, 2, 3);");
}

TEST_P(ChannelObjectsTriplet, TheIptvUriTypeNeedsAnIpBroadcastId) {
    ExpectRefused({41, 1, 2, 3}, kNoIpBroadcastId, kNoIpBroadcastIdLine);
    ExpectRefused({41, 1, 2, 3, 4}, kNoIpBroadcastId, kNoIpBroadcastIdLine);
}

TEST_P(ChannelObjectsTriplet, TheIptvSdsTypeAndItsNeighboursNeedNone) {
    for (const int idType : {40, 42}) {
        ExpectScript({idType, 1, 2, 3}, "new Channel(\"key\", " + std::to_string(idType) + ", 1, 2, 3);");
        ExpectScript({idType, 1, 2, 3, 4}, "new Channel(\"key\", " + std::to_string(idType) + ", 1, 2, 3);");
    }
}

TEST_P(ChannelObjectsTriplet, TheChecksComeInTheOrderOfTheArguments) {
    ExpectRefused({12, "abc", 2, 3, 4, 5}, "invalid onid argument", kOnidLine);
    ExpectRefused({30, 1, 2, 3, "4", 5}, "invalid arguments (sourceId)",
                  "Create Channel object failed - sourceid is invalid");
}

TEST_P(ChannelObjectsTriplet, NoPlayerAndNoPageIsAskedFor) {
    platform.answers.broadcastRelated = false;
    platform.answers.pvrOperating = true;
    ExpectScript({12, 1, 2, 3}, "new Channel(\"key\", 12, 1, 2, 3);");
    EXPECT_TRUE(Calls({"browser.", "player", "pvr.", "cache."}).empty());
}

TEST_P(ChannelObjectsTriplet, AChannelThatCannotBeMadeThrows) {
    const auto expectFailure = [&](const Values& arguments) {
        ForgetWhatHappened();
        ExpectException(Call("createChannelObject", arguments), "Channel creation failed.");
        ExpectLogged(2, "Create Channel object failed");
        EXPECT_TRUE(Calls({"cache."}).empty());
    };
    for (const Values& arguments : {Values{12, 1, 2, 3}, Values{12, "Z", 5}}) {
        for (const char* function : {"getvalue", "evaluate"}) {
            browser.FailNth(function, 1);
            expectFailure(arguments);
        }
        browser.windowIsNull = true;
        expectFailure(arguments);
        browser.windowIsNull = false;
        for (const Value& answer : {Value(7), Value(nullptr), Value("Channel"), Value()}) {
            browser.AnswerEvaluateOf("new Channel(", [answer](const std::string&) { return answer; });
            expectFailure(arguments);
        }
        browser.AnswerEvaluateOf("new Channel(", [&](const std::string&) {
            return Value(browser.MakeResult("anything"));
        });
        EXPECT_EQ(Call("createChannelObject", arguments).exception, "");
    }
}

TEST_P(ChannelObjectsTriplet, TheEndOfTheObjectInsideTheConstructorIsSurvived) {
    browser.pageHoldsDuringCalls = false;
    Once("evaluate new Channel", [&] { EndObject(); });
    const Outcome outcome = Call("createChannelObject", {12, 1, 2, 3});
    EXPECT_EQ(outcome.value, Value(*browser.Created("Channel").front()));
    EXPECT_EQ(outcome.exception, "");
    EXPECT_FALSE(browser.GetLedger().IsAlive(object->Object()));
}

TEST_P(ChannelObjectsTriplet, AnInvalidatedObjectMakesNone) {
    object->Invalidate();
    ExpectException(Call("createChannelObject", {12, 1, 2, 3}), "Channel creation failed.");
    ExpectLoggedOnce("t_CreateJSObject, Object has been invalidated! (m_npp is NULL)");
}

TEST_P(ChannelObjectsTriplet, NumbersAreWrittenWithoutTheGroupingOfTheProcesssLocale) {
    struct Grouping : std::numpunct<char> {
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    ExpectScript({1200, 1000, 2000000, -3000}, "new Channel(\"key\", 1200, 1000, 2000000, -3000);");
    ExpectScript({1200, "Z", 65000}, "new Channel(\"key\", 1200, \"5a\", 65000);");
    std::locale::global(before);
}

TEST_P(ChannelObjectsTriplet, AnyFailingCallIsSurvived) {
    for (const Values& arguments : {Values{12, 1, 2, 3}, Values{12, "Z", 5}, Values{12, "Z", "5"}}) {
        SurvivesFailingBrowser([] {}, [&] { return Call("createChannelObject", arguments); });
        SurvivesFailingPlatform([] {}, [&] { return Call("createChannelObject", arguments); });
    }
}

}  // namespace
}  // namespace videobroadcast_tests
