// Components that the page selects: heard in the sound that the television writes, seen on its screen.
#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <numbers>

#include "tests/television/Packets.h"
#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

constexpr int kRate = 48'000;
constexpr int kWindow = kRate / 10;
// The tones of Atlas One, German and English, and of Atlas Two.
constexpr double kGerman = 262, kEnglish = 330, kTwo = 392;
constexpr std::array kTones{kGerman, kEnglish, kTwo};
constexpr double kHeard = 0.005;  // they are played at 0.0125

// How much of a tone is in the samples, 0 to 1 of a full sine (Goertzel).
double Amplitude(const std::vector<std::int16_t>& samples, double tone) {
    double real = 0, imaginary = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double angle = 2 * std::numbers::pi * tone * static_cast<double>(i) / kRate;
        real += samples[i] * std::cos(angle);
        imaginary += samples[i] * std::sin(angle);
    }
    return 2 * std::hypot(real, imaginary) / static_cast<double>(samples.size()) / 32768;
}

class ComponentSelection : public TelevisionTest {
protected:
    void SetUp() override {
        m_configuration.soundFile = m_sound.Path();
        TelevisionTest::SetUp();
        ASSERT_TRUE(WaitForPicture(Shown::AtlasOne));
        ASSERT_TRUE(WaitForTunes(1));
        OpenPage();
    }

    // The left channel of the last tenth of a second that was heard; empty before there is one.
    std::vector<std::int16_t> LastHeard() const {
        std::ifstream file(m_sound.Path(), std::ios::binary | std::ios::ate);
        const auto pairs = static_cast<std::int64_t>(file.tellg()) / 4;
        if (pairs < kWindow) return {};
        std::vector<std::int16_t> both(2 * kWindow), left(kWindow);
        file.seekg((pairs - kWindow) * 4);
        file.read(reinterpret_cast<char*>(both.data()), kWindow * 4);
        for (std::size_t i = 0; i < left.size(); ++i) left[i] = both[2 * i];
        return left;
    }

    // This tone and none of the others. Pictures come 25 times a second; each time the sound is looked at.
    bool Hears(double wanted) {
        return m_watch.WaitFor([&] {
            const auto samples = LastHeard();
            if (samples.empty() || Amplitude(samples, wanted) < kHeard) return false;
            return std::all_of(kTones.begin(), kTones.end(), [&](double tone) {
                return tone == wanted || Amplitude(samples, tone) < kHeard / 4;
            });
        });
    }
    bool HearsNothing() {
        return m_watch.WaitFor([&] {
            const auto samples = LastHeard();
            return !samples.empty() &&
                   std::all_of(samples.begin(), samples.end(), [](std::int16_t sample) { return sample == 0; });
        });
    }
    std::string ActiveSound() {
        const auto active = m_player->GetAudioComponents(true);
        return active.size() == 1 ? active[0].ParamString().substr(0, 4) : std::to_string(active.size());
    }

    TemporaryFile m_sound{std::span<const std::uint8_t>()};
};

TEST_F(ComponentSelection, AMutedTelevisionIsSilentAlsoOnAnotherChannel) {
    EXPECT_TRUE(Hears(kGerman));
    EXPECT_EQ(m_television.Stimulate("mute on"), std::nullopt);
    EXPECT_TRUE(HearsNothing());
    EXPECT_TRUE(m_player->SetChannel(IdOf("Atlas Two"), false));
    EXPECT_TRUE(WaitForPicture(Shown::AtlasTwo));
    EXPECT_TRUE(HearsNothing());
    EXPECT_EQ(m_television.Stimulate("mute off"), std::nullopt);
    EXPECT_TRUE(Hears(kTwo));
}

TEST_F(ComponentSelection, ChangesTheSoundThatIsHeard) {
    EXPECT_TRUE(Hears(kGerman));
    m_player->SelectAudioComponent(1);
    EXPECT_EQ(ActiveSound(), "1, 1");
    EXPECT_TRUE(Hears(kEnglish));
    m_player->SelectAudioComponent(0);
    EXPECT_TRUE(Hears(kGerman));
}

TEST_F(ComponentSelection, OfAnotherSoundLeavesTheTuneAlone) {
    ASSERT_TRUE(Hears(kGerman));
    m_player->SelectAudioComponent(1);
    ASSERT_TRUE(Hears(kEnglish));
    EXPECT_EQ(m_television.LastTune().count, 1u);
}

TEST_F(ComponentSelection, OfASoundThatIsNotThereChangesNothing) {
    ASSERT_TRUE(Hears(kGerman));
    m_player->SelectAudioComponent(2);
    m_player->UnselectAudioComponent(1);
    EXPECT_EQ(ActiveSound(), "1, 0");
}

TEST_F(ComponentSelection, UndoneIsSilence) {
    ASSERT_TRUE(Hears(kGerman));
    m_player->UnselectAudioComponent(0);
    EXPECT_EQ(ActiveSound(), "0");
    EXPECT_TRUE(HearsNothing());
    m_player->SelectAudioComponent(0);
    EXPECT_TRUE(Hears(kGerman));
}

TEST_F(ComponentSelection, HoldsForItsServiceOnly) {
    m_player->SelectAudioComponent(1);
    ASSERT_TRUE(Hears(kEnglish));
    ASSERT_TRUE(m_player->SetChannel(IdOf("Atlas Two"), true));
    EXPECT_TRUE(Hears(kTwo));
    ASSERT_TRUE(m_player->SetChannel(IdOf("Atlas One"), true));
    EXPECT_TRUE(Hears(kGerman));
}

TEST_F(ComponentSelection, OfNoVideoIsBlackUntilItIsSelectedAgain) {
    m_player->UnselectVideoComponent(0x101);
    EXPECT_TRUE(WaitForPicture(Shown::Black));
    EXPECT_TRUE(m_player->GetVideoComponents(true).empty());
    m_player->SelectVideoComponent(0x101);
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
    EXPECT_EQ(m_player->GetVideoComponents(true).size(), 1u);
}

TEST_F(ComponentSelection, OfAVideoThatIsNotThereChangesNothing) {
    m_player->UnselectVideoComponent(0x201);
    m_player->SelectVideoComponent(0x102);
    EXPECT_EQ(m_player->GetVideoComponents(true).size(), 1u);
}

TEST_F(ComponentSelection, EndsWithThePage) {
    m_player->UnselectVideoComponent(0x101);
    m_player->SelectAudioComponent(1);
    m_television.PageClosed();
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
    EXPECT_TRUE(Hears(kGerman));
}

class PreferredLanguage : public ComponentSelection {
protected:
    void SetUp() override {
        m_configuration.audioLanguage = "eng";
        ComponentSelection::SetUp();
    }
};

TEST_F(PreferredLanguage, IsHeardFirst) { EXPECT_TRUE(Hears(kEnglish)); }

TEST(SoundFile, ThatCannotBeWrittenIsToldInASentence) {
    Configuration configuration;
    configuration.demonstration = DEMONSTRATION_STREAM;
    configuration.soundFile = "/nowhere/sound";
    EXPECT_EQ(Television::Instance().Start(configuration, {}),
              "The sound cannot be written to /nowhere/sound: name a file that can be written.");
    Television::Instance().Stop();
}

}  // namespace
}  // namespace television::test
