// What happens to the television on a sofa, by name.
#include <set>

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

TEST_F(StimuliTest, TheLockTakesAnAgeAndThePinOpensIt) {
    EXPECT_EQ(FailureOf("pin 0000"), "Nothing is blocked: the PIN opens a programme that the parental lock blocks.");
    EXPECT_EQ(FailureOf("pin 1234"), "The PIN is wrong: enter the one of this television.");
    EXPECT_EQ(FailureOf("lock 18"), "none");
    EXPECT_EQ(FailureOf("lock off"), "none");
    for (const char* wrong : {"lock 19", "lock -1", "lock x", "lock 12x"})
        EXPECT_EQ(FailureOf(wrong), "The lock is \"off\" or an age up to 18.") << wrong;
}

TEST_F(StimuliTest, TheRightsOfACaModuleAreTold) {
    EXPECT_EQ(FailureOf("rights valid 0x0b00 a text"), "none");
    EXPECT_TRUE(m_listener.WaitFor("Message 4 of 2816, 6:a text, 7:1"));
    EXPECT_EQ(FailureOf("rights none 100"), "none");
    EXPECT_TRUE(m_listener.WaitFor("Message 4 of 100, 7:0"));
    EXPECT_EQ(FailureOf("rights all"), "Rights are \"none\" or \"valid\".");
    for (const char* wrong : {"rights none 65536", "rights none card"})
        EXPECT_EQ(FailureOf(wrong), "A CA system is a number up to 65535 (0xffff).") << wrong;
}

TEST_F(StimuliTest, TheDemonstrationIsScrambledAndCleared) {
    const unsigned int key = IdOf("Atlas Key");
    EXPECT_EQ(FailureOf("scrambling perhaps"), "Scrambling is \"on\" or \"off\".");
    EXPECT_EQ(FailureOf("scrambling off"), "none");
    EXPECT_TRUE(m_player->SetChannel(key, false));
    EXPECT_TRUE(WaitForPicture(Shown::AtlasKey));
    EXPECT_EQ(FailureOf("scrambling on"), "none");
    EXPECT_TRUE(WaitForPicture(Shown::Black));
}

TEST_F(StimuliTest, TheVolumeIsOneForTheViewerAndThePage) {
    const auto volume = [this] { return m_television.TheCondition().volume; };
    EXPECT_EQ(volume(), 100);
    EXPECT_EQ(FailureOf("volume 40"), "none");
    int heard = 0;
    m_player->GetVolume(heard);
    EXPECT_EQ(heard, 40);
    EXPECT_EQ(FailureOf("volume up"), "none");
    EXPECT_EQ(volume(), 45);
    m_player->SetVolume(3);
    EXPECT_EQ(FailureOf("volume down"), "none");
    EXPECT_EQ(volume(), 0);
    for (const char* wrong : {"volume 101", "volume -1", "volume loud"})
        EXPECT_EQ(FailureOf(wrong), "The volume is a number from 0 to 100, \"up\" or \"down\".") << wrong;
    EXPECT_EQ(FailureOf("mute on"), "none");
    EXPECT_TRUE(m_television.TheCondition().muted);
    EXPECT_EQ(FailureOf("mute off"), "none");
    EXPECT_FALSE(m_television.TheCondition().muted);
    EXPECT_EQ(FailureOf("mute"), "Write it as: mute on|off");
    EXPECT_EQ(FailureOf("mute perhaps"), "Mute is \"on\" or \"off\".");
}

TEST(Stimuli, HaveANameEach) {
    std::set<std::string> names;
    for (const StimulusUse& stimulus : Television::Stimuli())
        EXPECT_TRUE(names.insert(stimulus.name).second) << stimulus.name << " stands there twice";
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
