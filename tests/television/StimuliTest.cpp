// What happens to the television on a sofa, by name.
#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

class StimuliTest : public TelevisionTest {
protected:
    void SetUp() override {
        TelevisionTest::SetUp();
        ASSERT_TRUE(WaitForPicture(Shown::AtlasOne));
        ASSERT_TRUE(WaitForTunes(1));
        OpenPage();
    }
    std::string FailureOf(const std::string& line) { return m_television.Stimulate(line).value_or("none"); }
};

TEST_F(StimuliTest, WithoutTheAerialTheSignalIsLostAndWithItItReturns) {
    EXPECT_EQ(FailureOf("aerial out"), "none");
    EXPECT_TRUE(m_listener.WaitFor("NoSignal"));
    EXPECT_TRUE(WaitForPicture(Shown::Black));
    EXPECT_EQ(FailureOf(" aerial  in\r\n"), "none");
    EXPECT_TRUE(m_listener.WaitFor("TuneSuccess 0"));
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
    EXPECT_EQ(m_listener.Told(), (std::vector<std::string>{"NoSignal", "TuneSuccess 0"}));
}

TEST_F(StimuliTest, WhatIsWrittenWronglyDoesNothingAndIsAnswered) {
    EXPECT_EQ(FailureOf("aerial sideways"), "The aerial is \"out\" or \"in\".");
    EXPECT_EQ(FailureOf("aerial"), "Write it as: aerial out|in");
    EXPECT_EQ(FailureOf("arial out"), "Nothing called \"arial\" can happen to the television.");
    EXPECT_EQ(FailureOf(""), "Nothing called \"\" can happen to the television.");
}

TEST_F(StimuliTest, ATelevisionThatIsOffNoticesNothing) {
    m_television.Stop();
    EXPECT_EQ(FailureOf("aerial out"), "The television is off.");
}

}  // namespace
}  // namespace television::test
