// Stream event objects in a carousel: found whatever its form, and never by reading what is not there.
#include "television/events/ObjectCarousel.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/television/CarouselWriter.h"

namespace television::test {
namespace {

using Sections = std::vector<demonstration::Section>;

// What is found in so many turns of the carousel.
std::optional<EventDeclaration> Search(const Sections& sections, std::vector<std::string> path, int turns = 3) {
    ObjectCarousel carousel(std::move(path));
    for (int turn = 0; turn < turns; ++turn)
        for (const auto& bytes : sections)
            if (const auto section = ReadSection(bytes))
                if (auto found = carousel.Take(*section)) return found;
    return std::nullopt;
}

const std::vector<std::string> kScores{"folder", "scores"};

std::vector<DeclaredEvent> Scores(std::uint8_t tag) { return {{tag, 1, "goal"}, {tag, 2, "end"}}; }

TEST(CarouselTargets, AreTheNumbersOfAServiceAndAPath) {
    const auto target = ReadCarouselTarget("dvb://1.44d.6E01.b/folder/scores");
    ASSERT_TRUE(target);
    EXPECT_EQ(target->sid, 0x6e01);
    EXPECT_EQ(target->componentTag, 0x0b);
    EXPECT_EQ(target->path, kScores);
}

TEST(CarouselTargets, AreNothingElse) {
    for (const char* url : {"dvb://1.2.3.4", "dvb://1.2.3.4/", "dvb://1.2.3/x", "dvb://1.2.3.100/x", "dvb://1.2.x.4/x",
                            "dvb://1.2.10000.4/x", "dvb://1.2..4/x", "http://1.2.3.4/x", "dvb:/1.2.3.4/x"})
        EXPECT_FALSE(ReadCarouselTarget(url)) << url;
}

TEST(ObjectCarousels, NameTheEventsOfAnObject) {
    const auto found = Search(CarouselSections(), kScores);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->fault, "");
    EXPECT_EQ(found->events, Scores(10));
}

TEST(ObjectCarousels, HaveTheirObjectsInModulesOfEveryForm) {
    for (const CarouselShape& shape :
         {CarouselShape{.streamInfo = 11}, CarouselShape{.compressed = true}, CarouselShape{.blockSize = 4000},
          CarouselShape{.blockSize = 1}, CarouselShape{.version = 31, .eventTap = 0x000d, .componentTag = 255}}) {
        const auto found = Search(CarouselSections(shape), kScores);
        ASSERT_TRUE(found);
        EXPECT_EQ(found->events, Scores(shape.componentTag));
    }
}

TEST(ObjectCarousels, AreReadFromAnySectionOn) {
    Sections sections = CarouselSections();
    for (std::size_t i = 0; i < sections.size(); ++i) {
        std::rotate(sections.begin(), sections.begin() + 1, sections.end());
        const auto found = Search(sections, kScores);
        ASSERT_TRUE(found) << i;
        EXPECT_EQ(found->events, Scores(10)) << i;
    }
}

TEST(ObjectCarousels, SayWhatIsWrong) {
    const Sections sections = CarouselSections();
    EXPECT_EQ(Search(sections, {"folder", "missing"})->fault, "the carousel has no such object");
    EXPECT_EQ(Search(sections, {"missing"})->fault, "the carousel has no such object");
    EXPECT_EQ(Search(sections, {"text", "below"})->fault, "the carousel has no such object");
    EXPECT_EQ(Search(sections, {"folder"})->fault, "it is no stream event object");
    EXPECT_EQ(Search(sections, {"text"})->fault, "it is no stream event object");
}

TEST(ObjectCarousels, WithoutAPartAreWaitedFor) {
    const Sections sections = CarouselSections();
    for (std::size_t missing = 0; missing < sections.size(); ++missing) {
        Sections others = sections;
        others.erase(others.begin() + static_cast<std::ptrdiff_t>(missing));
        EXPECT_FALSE(Search(others, kScores)) << missing;
    }
}

TEST(ObjectCarousels, OfAnotherVersionAreReadAnew) {
    const Sections before = CarouselSections({.componentTag = 20}), after = CarouselSections({.version = 1});
    ObjectCarousel carousel(kScores);
    for (std::size_t i = 0; i + 1 < before.size(); ++i) EXPECT_FALSE(carousel.Take(*ReadSection(before[i])));
    std::optional<EventDeclaration> found;
    for (const auto& section : after)
        if (auto declaration = carousel.Take(*ReadSection(section))) found = declaration;
    ASSERT_TRUE(found);
    EXPECT_EQ(found->events, Scores(10)) << "no block of the module before";
}

// A section as it is after these bytes were put in place of its own, with a CRC that is right.
Section Damaged(const Section& section, std::vector<std::uint8_t>& body, std::mt19937& random) {
    body.assign(section.body.begin(), section.body.end());
    for (int i = 0; i < 3; ++i) body[random() % body.size()] = static_cast<std::uint8_t>(random());
    if (random() % 4 == 0) body.resize(random() % body.size());
    Section damaged = section;
    damaged.body = body;
    return damaged;
}

TEST(ObjectCarousels, ReadOnlyWhatIsThereWhateverIsDamaged) {
    std::mt19937 random(1);
    int found = 0;
    for (int i = 0; i < 1000; ++i) {
        const Sections sections = CarouselSections({.compressed = i % 2 == 0, .blockSize = 400});
        ObjectCarousel carousel(kScores);
        const std::size_t victim = random() % sections.size();
        for (std::size_t k = 0; k < sections.size(); ++k) {
            const Section section = *ReadSection(sections[k]);
            std::vector<std::uint8_t> body;
            const auto declaration = carousel.Take(k == victim ? Damaged(section, body, random) : section);
            if (declaration && !declaration->events.empty()) ++found;
        }
    }
    EXPECT_GT(found, 0) << "some damage does no harm";
    EXPECT_LT(found, 1000);
}

}  // namespace
}  // namespace television::test
