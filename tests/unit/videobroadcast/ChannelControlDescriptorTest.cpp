// setChannel: from the hexadecimal text of a "dsd" to the bytes that the player gets.
#include "tests/unit/videobroadcast/ScriptedObjectTest.h"

namespace videobroadcast_tests {
namespace {

using std::string_literals::operator""s;

class ChannelControlDescriptor : public ScriptedObjectTest {
protected:
    // The bytes that the player is given; nothing when it is asked for the triplet instead.
    std::optional<std::string> BytesOf(const Value& dsd) {
        platform.dsds.clear();
        ForgetWhatHappened();
        ExpectDone(Call("setChannel", {MakeChannel({{"dsd", dsd}})}));
        EXPECT_EQ(Calls({"player.GetChannelFromTriplet"}).size() + platform.dsds.size(), 1u);
        return platform.dsds.empty() ? std::nullopt : std::optional(platform.dsds.front());
    }
};

TEST_F(ChannelControlDescriptor, EachPairGivesOneByteHighNibbleFirst) {
    EXPECT_EQ(BytesOf("0A1b"), "\x0A\x1B"s);
    EXPECT_EQ(BytesOf("f0"), "\xF0"s);
    EXPECT_EQ(BytesOf("FF"), "\xFF"s);
    EXPECT_EQ(BytesOf("0123456789abcdefABCDEF"), "\x01\x23\x45\x67\x89\xab\xcd\xef\xAB\xCD\xEF"s);
}

TEST_F(ChannelControlDescriptor, EachByteIsLoggedWithTwoCapitalDigitsAtDetailLevel) {
    BytesOf("0A1bff");
    EXPECT_EQ(LogOf("0x"), (List{"0x0A, ", "0x1B, ", "0xFF, "}));
    ExpectLogged(4, "0x1B, ");
}

TEST_F(ChannelControlDescriptor, ZeroBytesAreKept) {
    EXPECT_EQ(BytesOf("00"), "\0"s);
    EXPECT_EQ(BytesOf("410042"), "A\0B"s);
    EXPECT_EQ(BytesOf("000000"), "\0\0\0"s);
}

TEST_F(ChannelControlDescriptor, ATextOfOddLengthGivesNoBytes) {
    EXPECT_EQ(BytesOf("0A1"), std::nullopt);
    EXPECT_EQ(BytesOf("0"), std::nullopt);
    EXPECT_TRUE(LogOf("0x").empty());
}

TEST_F(ChannelControlDescriptor, AnEmptyTextGivesNoBytes) {
    EXPECT_EQ(BytesOf(""), std::nullopt);
    browser.emptyStringsAreNull = false;
    EXPECT_EQ(BytesOf(""), std::nullopt);
}

TEST_F(ChannelControlDescriptor, WhatIsNoStringGivesNoBytes) {
    EXPECT_EQ(BytesOf({}), std::nullopt);
    EXPECT_EQ(BytesOf(nullptr), std::nullopt);
    EXPECT_EQ(BytesOf(10), std::nullopt);
    EXPECT_EQ(BytesOf(10.0), std::nullopt);
    EXPECT_EQ(BytesOf(true), std::nullopt);
}

TEST_F(ChannelControlDescriptor, AnyOtherCharacterCountsAs0AndIsLogged) {
    EXPECT_EQ(BytesOf("G1"), "\x01"s);
    ExpectLogged(2, "_hex2num: Cannot convert G into number");
    EXPECT_EQ(BytesOf("1g"), "\x10"s);
    ExpectLogged(2, "_hex2num: Cannot convert g into number");
    EXPECT_EQ(BytesOf("%s"), "\0"s);
    EXPECT_EQ(LogOf("_hex2num"),
              (List{"_hex2num: Cannot convert % into number", "_hex2num: Cannot convert s into number"}));
}

TEST_F(ChannelControlDescriptor, TheNeighboursOfTheDigitsAreNoDigits) {
    EXPECT_EQ(BytesOf("/:@G`g"), "\0\0\0"s);
    EXPECT_EQ(LogOf("_hex2num").size(), 6u);
    EXPECT_EQ(BytesOf("0/9:A@FGa`fg"), "\x00\x90\xA0\xF0\xA0\xF0"s);
    EXPECT_EQ(LogOf("_hex2num").size(), 6u);
}

TEST_F(ChannelControlDescriptor, DigitsAreConvertedWithoutALine) {
    BytesOf("0123456789abcdefABCDEF");
    EXPECT_TRUE(LogOf("_hex2num").empty());
}

TEST_F(ChannelControlDescriptor, ATextIsTakenByItsLengthPastAZeroCharacter) {
    EXPECT_EQ(BytesOf("4\0""42"s), "\x40\x42"s);
    EXPECT_EQ(BytesOf("\0""4"s), "\x04"s);
}

TEST_F(ChannelControlDescriptor, ACharacterUpToU00FFIsOneCharacterOfAPair) {
    EXPECT_EQ(BytesOf("1\xC3\xA9"), "\x10"s);        // e acute
    EXPECT_EQ(BytesOf("12\xC3\xA9"), std::nullopt);  // three characters in four bytes
    EXPECT_EQ(BytesOf("\xC2\x80""a"), "\x0A"s);
}

TEST_F(ChannelControlDescriptor, ATextWithOtherCharactersCountsAsMissingAlsoWhatStandsBeforeThem) {
    EXPECT_EQ(BytesOf("0A1b\xE2\x82\xAC"), std::nullopt);
    ExpectLoggedOnce("Invalid UTF8 to convert to code point (0-255), got 0xE2");
    EXPECT_TRUE(LogOf("0x").empty());
}

TEST_F(ChannelControlDescriptor, ALongDescriptorArrivesWhole) {
    std::string text, bytes;
    for (int i = 0; i < 5000; ++i) {
        text += "7f";
        bytes += '\x7f';
    }
    EXPECT_EQ(BytesOf(text), bytes);
}

}  // namespace
}  // namespace videobroadcast_tests
