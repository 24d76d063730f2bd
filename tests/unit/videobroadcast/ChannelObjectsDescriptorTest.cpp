// createChannelObject with three arguments: a Channel from a delivery system descriptor.
#include "tests/unit/videobroadcast/ScriptedObjectTest.h"

namespace videobroadcast_tests {
namespace {

using std::string_literals::operator""s;

class ChannelObjectsDescriptor : public ScriptedObjectNumbersTest {
protected:
    // The text that follows the key in the constructor call.
    std::string TextOf(const Values& arguments) {
        const Outcome outcome = Call("createChannelObject", arguments);
        EXPECT_TRUE(outcome.accepted);
        EXPECT_EQ(outcome.exception, "");
        const auto channels = browser.Created("Channel");
        if (channels.empty() || outcome.value != Value(*channels.back())) {
            return "no Channel";
        }
        const std::string text = channels.back()->ConstructorText();
        EXPECT_TRUE(text.starts_with("\"key\", ")) << text;
        return text.substr(7);
    }
    void ExpectRefused(const Values& arguments, const std::string& exception, const std::string& line) {
        ForgetWhatHappened();
        ExpectException(Call("createChannelObject", arguments), exception);
        EXPECT_EQ(Calls(), List{"exception " + exception});
        ExpectLogged(2, line);
    }
};

INSTANTIATE_TEST_SUITE_P(Numbers, ChannelObjectsDescriptor, BothNumbers());

TEST_P(ChannelObjectsDescriptor, TheClassGetsIdTypeThenTheBytesInHexThenSid) {
    EXPECT_EQ(TextOf({12, "Z", 5}), "12, \"5a\", 5");
    EXPECT_EQ(Calls(), (List{"keys.GetKey(__OIPF_VBO_" + Id() + ")",
                             "evaluate new Channel(\"key\", 12, \"5a\", 5);"}));
}

TEST_P(ChannelObjectsDescriptor, EveryByteIsTwoLowercaseDigitsWithNothingBetween) {
    EXPECT_EQ(TextOf({12, "\x01\x0f\x10\x7fJKO", 5}), "12, \"010f107f4a4b4f\", 5");
    EXPECT_EQ(TextOf({12, "\xC3\xBF\xC2\x80\xC3\xA9", 5}), "12, \"ff80e9\", 5");
}

TEST_P(ChannelObjectsDescriptor, ZeroBytesAreWrittenToo) {
    EXPECT_EQ(TextOf({12, "\0"s, 5}), "12, \"00\", 5");
    EXPECT_EQ(TextOf({12, "A\0B\0"s, 5}), "12, \"41004200\", 5");
    ExpectLoggedOnce("Create Channel object using DSD (length 4) - ID 12, sid 5, DSD data:");
}

TEST_P(ChannelObjectsDescriptor, AnEmptyDescriptorIsAnEmptyText) {
    EXPECT_EQ(TextOf({12, "", 5}), "12, \"\", 5");
    browser.emptyStringsAreNull = false;
    EXPECT_EQ(TextOf({12, "", 5}), "12, \"\", 5");
}

TEST_P(ChannelObjectsDescriptor, NumbersAreDecimalWithTheirSignAndCutTowardZero) {
    EXPECT_EQ(TextOf({-1, "Z", -32768}), "-1, \"5a\", -32768");
    EXPECT_EQ(TextOf({12.9, "Z", -5.9}), "12, \"5a\", -5");
    EXPECT_EQ(TextOf({1e12, "Z", -1e12}), "2147483647, \"5a\", -2147483648");
    EXPECT_EQ(TextOf({0, "Z", 1234567}), "0, \"5a\", 1234567");
}

TEST_P(ChannelObjectsDescriptor, ThreeArgumentsAreADescriptorForEveryIdType) {
    for (const int idType : {0, 9, 10, 12, 22, 30, 40, 41}) {
        EXPECT_EQ(TextOf({idType, "Z", 5}), std::to_string(idType) + ", \"5a\", 5");
    }
    ExpectNotLogged("VBO createChannelObject using triplet");
}

TEST_P(ChannelObjectsDescriptor, TheStepsAreLoggedInOrder) {
    const bool doubles = browser.numbersAreDoubles;
    TextOf({12, "ZZ", 5});
    ExpectLogInOrder({"m_CreateChannelObj()", doubles ? "Type is 4" : "Type is 3",
                      "Create Channel object using DSD (length 2) - ID 12, sid 5, DSD data:",
                      "eval 12, \"5a5a\", 5"});
    ExpectNotLogged("Create Channel object failed");
}

TEST_P(ChannelObjectsDescriptor, TheTypeOfTheFirstArgumentIsLoggedWhateverItIs) {
    Call("createChannelObject", {"12", "Z", 5});
    ExpectLoggedOnce("Type is 5");
    Call("createChannelObject", {Value(), "Z", 5});
    ExpectLoggedOnce("Type is 0");
}

TEST_P(ChannelObjectsDescriptor, AnIdTypeThatIsNoNumberIsRefused) {
    const std::string line = "Create Channel object failed - idType is invalid";
    for (const Value& wrong : {Value("12"), Value(), Value(nullptr), Value(true), Value(MakeChannel({}))}) {
        ExpectRefused({wrong, "Z", 5}, "idType is invalid", line);
    }
}

TEST_P(ChannelObjectsDescriptor, ADescriptorThatIsNoStringIsRefused) {
    const std::string line = "Create Channel object failed - dsd is invalid";
    for (const Value& wrong : {Value(90), Value(), Value(nullptr), Value(true), Value(MakeChannel({}))}) {
        ExpectRefused({12, wrong, 5}, "DSD is invalid.", line);
    }
}

TEST_P(ChannelObjectsDescriptor, ADescriptorWithACharacterAboveU00FFIsRefused) {
    ExpectRefused({12, "Z\xE2\x82\xAC", 5}, "DSD is invalid.", "Create Channel object failed - dsd is invalid");
    ExpectRefused({12, "Z\xC3", 5}, "DSD is invalid.", "Create Channel object failed - dsd is invalid");
}

TEST_P(ChannelObjectsDescriptor, ASidThatIsNoNumberIsRefused) {
    const std::string line = "Create Channel object failed - sid is invalid";
    for (const Value& wrong : {Value("5"), Value(), Value(nullptr), Value(true), Value(MakeChannel({}))}) {
        ExpectRefused({12, "Z", wrong}, "sid is invalid", line);
    }
}

TEST_P(ChannelObjectsDescriptor, TheArgumentsAreCheckedFromFirstToLast) {
    ExpectRefused({"12", 90, "5"}, "idType is invalid", "Create Channel object failed - idType is invalid");
    ExpectRefused({12, 90, "5"}, "DSD is invalid.", "Create Channel object failed - dsd is invalid");
}

TEST_P(ChannelObjectsDescriptor, WhatSetChannelReadsBackAreTheSameBytes) {
    const std::string bytes = "\0\x01\x7f\n\"\\Z"s;
    const std::string text = TextOf({12, bytes, 5});
    const auto quote = text.find('"');
    const std::string hex = text.substr(quote + 1, text.rfind('"') - quote - 1);
    Call("setChannel", {MakeChannel({{"dsd", hex}})});
    EXPECT_EQ(platform.dsds, List{bytes});
}

}  // namespace
}  // namespace videobroadcast_tests
