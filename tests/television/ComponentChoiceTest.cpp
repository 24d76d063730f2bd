// Which components are presented before and after the page chooses.
#include "television/ComponentChoice.h"

#include <gtest/gtest.h>

namespace television::test {
namespace {

Component Sound(unsigned int index, const std::string& language, bool description = false) {
    Component sound;
    sound.type = ComponentType::Audio;
    sound.index = index;
    sound.language = language;
    sound.audioDescription = description;
    return sound;
}

class Choice : public testing::Test {
protected:
    std::optional<unsigned int> Heard(const ComponentChoice& choice) const {
        const auto heard = choice.Presented(m_components, ComponentType::Audio);
        return heard ? std::optional(heard->index) : std::nullopt;
    }

    std::vector<Component> m_components{Sound(0, "deu"), Sound(1, "eng", true), Sound(2, "eng"), Sound(3, "fra")};
};

TEST_F(Choice, IsTheFirstWithoutAPreferredLanguage) { EXPECT_EQ(Heard(ComponentChoice()), 0u); }

TEST_F(Choice, IsThePreferredLanguageRatherWithoutAudioDescription) { EXPECT_EQ(Heard(ComponentChoice("eng")), 2u); }

TEST_F(Choice, TakesAudioDescriptionWhereThePreferredLanguageHasNothingElse) {
    m_components.erase(m_components.begin() + 2);
    EXPECT_EQ(Heard(ComponentChoice("eng")), 1u);
}

TEST_F(Choice, TakesBothCodesOfALanguage) {
    EXPECT_EQ(Heard(ComponentChoice("fre")), 3u);
    EXPECT_TRUE(IsSameLanguage("GER", "deu"));
    EXPECT_FALSE(IsSameLanguage("ger", "eng"));
}

TEST_F(Choice, IsWhatThePageSelectsUntilTheNextService) {
    ComponentChoice choice("eng");
    EXPECT_TRUE(choice.Select(m_components, ComponentType::Audio, 0));
    EXPECT_EQ(Heard(choice), 0u);
    choice.Reset();
    EXPECT_EQ(Heard(choice), 2u);
}

TEST_F(Choice, IgnoresWhatTheServiceDoesNotHave) {
    ComponentChoice choice;
    EXPECT_FALSE(choice.Select(m_components, ComponentType::Audio, 4));
    EXPECT_FALSE(choice.Select(m_components, ComponentType::Video, 0));
    EXPECT_EQ(Heard(choice), 0u);
}

TEST_F(Choice, IsNothingAfterThePresentedOneIsUnselected) {
    ComponentChoice choice;
    EXPECT_FALSE(choice.Unselect(m_components, ComponentType::Audio, 1));
    EXPECT_EQ(Heard(choice), 0u);
    EXPECT_TRUE(choice.Unselect(m_components, ComponentType::Audio, 0));
    EXPECT_EQ(Heard(choice), std::nullopt);
    EXPECT_FALSE(choice.Unselect(m_components, ComponentType::Audio, 0));
    EXPECT_TRUE(choice.Select(m_components, ComponentType::Audio, 1));
    EXPECT_EQ(Heard(choice), 1u);
}

TEST_F(Choice, PresentsNoSubtitlesUntilTheyAreSelected) {
    Component subtitle;
    subtitle.type = ComponentType::Subtitle;
    m_components.push_back(subtitle);
    ComponentChoice choice;
    EXPECT_FALSE(choice.Presented(m_components, ComponentType::Subtitle));
    EXPECT_TRUE(choice.Select(m_components, ComponentType::Subtitle, 0));
    EXPECT_TRUE(choice.Presented(m_components, ComponentType::Subtitle));
}

}  // namespace
}  // namespace television::test
