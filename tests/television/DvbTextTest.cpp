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
