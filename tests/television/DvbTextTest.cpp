// Texts in the character tables of broadcasting.
#include <gtest/gtest.h>

#include "television/tables/DvbText.h"

namespace television {
namespace {

using namespace std::string_literals;

std::string Decoded(const std::string& text) {
    return DecodeText({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

TEST(DvbText, IsLatinWithAccentsBeforeTheirLettersByDefault) {
    EXPECT_EQ(Decoded("Plain $"), "Plain $");
    EXPECT_EQ(Decoded("\xc8"
                      "Atlas \xc2"
                      "e \xfb"),
              "Ätlas é ß");
    EXPECT_EQ(Decoded("\xa4 5"), "€ 5");
}

TEST(DvbText, TakesItsTableFromTheFirstBytes) {
    EXPECT_EQ(Decoded("\x05T\xfcrk"), "Türk");
    EXPECT_EQ(Decoded("\x01\xbc\xd8\xe0"), "Мир");
    EXPECT_EQ(Decoded("\x10\0\x0f\xa4"s), "€");
    EXPECT_EQ(Decoded("\x11\x04\x1c\x04\x38"s), "Ми");
    EXPECT_EQ(Decoded("\x15Gr\xc3\xbc\xc3\x9f"
                      "e"),
              "Grüße");
}

TEST(DvbText, IsConvertedFromEachTableThatASelectorNames) {
    const struct {
        std::string coded, utf8;
    } rows[] = {{"\x01\xbc\xd8\xe0", "Мир"},       // ISO/IEC 8859-5
                {"\x02\xe2\xe4\xc7", "قلا"},       // -6
                {"\x03\xc1\xf9", "Αω"},            // -7
                {"\x04\xe0\xfa", "את"},            // -8
                {"\x05\xd0\xfd", "Ğı"},            // -9
                {"\x06\xbf\xfe", "ŋþ"},            // -10
                {"\x07\xa1\xb7", "กท"},            // -11
                {"\x09\xc0\xe0", "Ąą"},            // -13
                {"\x0a\xd0\xf0", "Ŵŵ"},            // -14
                {"\x0b\xa4\xbc", "€Œ"},            // -15
                {"\x10\0\x01\xe9"s, "é"},
                {"\x10\0\x02\xb1"s, "ą"},
                {"\x10\0\x03\xb1"s, "ħ"},
                {"\x10\0\x04\xb1"s, "ą"},
                {"\x10\0\x05\xbc"s, "М"},
                {"\x10\0\x09\xfd"s, "ı"},
                {"\x10\0\x0d\xe0"s, "ą"},
                {"\x10\0\x0f\xa4"s, "€"},
                {"\x11\x4e\x2d\x65\x87", "中文"},
                {"\x12\xc7\xd1\xb1\xb9", "한국"},
                {"\x13\xd6\xd0\xce\xc4", "中文"},
                {"\x14\x4e\x2d\x65\x87", "中文"},
                {"\x15\xe4\xb8\xad", "中"}};
    for (const auto& [coded, utf8] : rows) EXPECT_EQ(Decoded(coded), utf8) << int(coded[0]) << ' ' << int(coded[2]);
}

TEST(DvbText, PassesOverReservedSelectorsAndLeavesCodingsOfBroadcastersOut) {
    EXPECT_EQ(Decoded("\x08Word"), "Word");
    EXPECT_EQ(Decoded("\x10\0\x0cWord"s), "Word");
    EXPECT_EQ(Decoded("\x10\x01\x02Word"), "Word");
    EXPECT_EQ(Decoded("\x1f\x01\x5e\x9a"), "");
}

TEST(DvbText, BreaksLinesBetweenPairsOfBytesToo) {
    EXPECT_EQ(Decoded("\x12\xe0\x86\xc7\xd1\xe0\x87\xe0\x8a\xb1\xb9"), "한\n국");
    EXPECT_EQ(Decoded("\x13\xd6\xd0\x8a\xe0\xa1 A"), "中\n唷 A") << "0xe0 begins characters, too";
    EXPECT_EQ(Decoded("\x11\xe0\x86\x4e\x2d\xe0\x8a\x65\x87\0\x87"s), "中\n文");
    EXPECT_EQ(Decoded("\x15"
                      "a\xee\x82\x86"
                      "b\xee\x82\x8a\xc2\x9f"
                      "c"),
              "ab\nc");
}

TEST(DvbText, BreaksLinesAndLeavesEmphasisOut) {
    EXPECT_EQ(Decoded("a\x86"
                      "b\x87\x8a"
                      "c"),
              "ab\nc");
    EXPECT_EQ(Decoded("\x15"
                      "a\xc2\x86"
                      "b\xc2\x8a"
                      "c"),
              "ab\nc");
}

TEST(DvbText, ReplacesWhatItsTableDoesNotKnow) {
    EXPECT_EQ(Decoded("\x15\xff"
                      "bad"),
              "\xef\xbf\xbd"
              "bad");
}

TEST(DvbText, SurvivesTextsThatEndEarly) {
    for (const char* text : {"", "\x10", "\x10\x00", "\x1f", "\x11", "\x15", "\xc8", "\x12\xb0", "\x14\xa4"})
        EXPECT_LE(Decoded(text).size(), 6u);
}

}  // namespace
}  // namespace television
