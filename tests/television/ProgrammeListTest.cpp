// Programmes: the events of a stream, and what the television makes of them.
#include <gtest/gtest.h>

#include "television/demonstration/DemonstrationServices.h"
#include "television/tables/DescriptorTags.h"
#include "television/tables/DvbTime.h"
#include "television/tables/ProgrammeList.h"
#include "television/tables/ServiceList.h"
#include "tests/television/Reading.h"

namespace television::test {
namespace {

using demonstration::Bytes;
using demonstration::MakeSection;
using demonstration::Section;

constexpr std::int64_t kNoon = 1'700'049'600;  // a whole minute
constexpr unsigned kSid = 7;
constexpr std::uint16_t kEitPid = 0x12;

struct EventShape {
    unsigned id = 1;
    std::int64_t start = kNoon;
    Bytes descriptors = {};
};

Bytes ShortEvent(const std::string& language, const std::string& name, const std::string& text) {
    return Bytes().PutDescriptor(kShortEventTag, Bytes().Put(language).PutText(name).PutText(text));
}

Bytes ExtendedEvent(unsigned number, unsigned last, const std::string& language, const std::string& text) {
    const Bytes items = Bytes().PutText("Director").PutText("Nobody");
    return Bytes().PutDescriptor(kExtendedEventTag, Bytes()
                                                        .Put8(number << 4 | last)
                                                        .Put(language)
                                                        .Put8(static_cast<unsigned>(items.Size()))
                                                        .Put(items)
                                                        .PutText(text));
}

Bytes Ratings(std::initializer_list<std::pair<std::string, unsigned>> ratings) {
    Bytes body;
    for (const auto& [country, rating] : ratings) body.Put(country).Put8(rating);
    return Bytes().PutDescriptor(kParentalRatingTag, body);
}

Bytes EventsHead() { return Bytes().Put16(1).Put16(2).Put8(1).Put8(0x4e); }

Section EventSection(unsigned number, unsigned version, const std::vector<EventShape>& events) {
    Bytes body = EventsHead();
    for (const EventShape& event : events)
        body.Put16(event.id)
            .Put40(DvbTime(event.start))
            .Put8(0)
            .Put16(static_cast<unsigned>(BcdSeconds(60)))
            .PutLoop(event.descriptors);
    return MakeSection({.table = 0x4e, .extension = kSid, .version = version, .number = number, .last = 1}, body);
}

class ProgrammesTest : public testing::Test {
protected:
    void Read(const std::vector<EventShape>& present, const std::vector<EventShape>& following, unsigned version = 0) {
        m_reading.Read(EventSection(0, version, present), kEitPid);
        m_reading.Read(EventSection(1, version, following), kEitPid);
    }
    std::vector<Programme> List() const {
        return ListProgrammes(m_reading.Current(), {.id = 3, .sid = kSid, .name = "", .provider = "", .dsd = ""});
    }
    std::optional<std::uint8_t> Rating(const std::string& country) const {
        return PresentRating(m_reading.Current().events.at(kSid), country);
    }
    Reading m_reading;
};

TEST_F(ProgrammesTest, HaveTheirTextsTimesAndRatings) {
    Reading reading;
    reading.Read(demonstration::Tables(), kNoon);
    ServiceIds ids;
    const auto services = ListServices(reading.Current(), ids);
    const auto programmes = ListProgrammes(reading.Current(), services[2]);
    ASSERT_EQ(programmes.size(), 2u);
    const auto french = programmes[0].name == "Café Boréal" ? programmes[0] : programmes[1];
    const auto film = programmes[0].name == "Café Boréal" ? programmes[1] : programmes[0];
    EXPECT_EQ(french.description, "Musique et conversation.");
    EXPECT_TRUE(french.ratings.empty());
    ASSERT_EQ(film.ratings.size(), 1u);
    EXPECT_EQ(film.ratings[0].country, "DEU");
    EXPECT_EQ(film.ratings[0].rating, 9);
    EXPECT_EQ(programmes[0].channelId, services[2].id);
    ASSERT_FALSE(programmes[0].descriptors.empty());
    EXPECT_EQ(programmes[0].descriptors[0][0], '\x4d');
}

TEST_F(ProgrammesTest, HaveTheirLongDescriptionJoinedInTheOrderOfItsParts) {
    Read({{.descriptors = Bytes()
                              .Put(ShortEvent("deu", "Hafen", "Kurz."))
                              .Put(ExtendedEvent(1, 1, "deu", "und das Ende."))
                              .Put(ExtendedEvent(0, 1, "eng", "Other words."))
                              .Put(ExtendedEvent(0, 1, "deu", "Der Anfang "))}},
         {});
    ASSERT_EQ(List().size(), 1u);
    EXPECT_EQ(List()[0].channelId, 3u);
    EXPECT_EQ(List()[0].name, "Hafen");
    EXPECT_EQ(List()[0].description, "Kurz.");
    EXPECT_EQ(List()[0].longDescription, "Der Anfang und das Ende.");
    EXPECT_EQ(List()[0].descriptors.size(), 4u);
}

TEST_F(ProgrammesTest, HaveTheirTextsInTheLanguageThatComesFirst) {
    Read({{.descriptors = Bytes()
                              .Put(ShortEvent("fra", "Port", "Court."))
                              .Put(ShortEvent("eng", "Harbour", "Short."))
                              .Put(ExtendedEvent(0, 0, "eng", "English only."))}},
         {});
    EXPECT_EQ(List()[0].name, "Port");
    EXPECT_EQ(List()[0].longDescription, "English only.");
}

TEST_F(ProgrammesTest, AreToldOnceBothSectionsOfANewVersionAreThere) {
    Read({{.id = 1}}, {{.id = 2}});
    const int changes = m_reading.Changes();
    m_reading.Read(EventSection(0, 1, {{.id = 2}}), kEitPid);
    EXPECT_EQ(m_reading.Changes(), changes);
    EXPECT_EQ(List()[0].eventId, 1);
    m_reading.Read(EventSection(1, 1, {{.id = 3}}), kEitPid);
    EXPECT_EQ(m_reading.Changes(), changes + 1);
    ASSERT_EQ(List().size(), 2u);
    EXPECT_EQ(List()[0].eventId, 2);
    EXPECT_EQ(List()[1].eventId, 3);
}

TEST_F(ProgrammesTest, MayBeWithoutAPresentOneWhichTheFollowingOneDoesNotReplace) {
    Read({}, {{.id = 2, .start = kNoon + 600, .descriptors = Ratings({{"GBR", 9}})}});
    ASSERT_EQ(List().size(), 1u);
    EXPECT_TRUE(m_reading.Current().events.at(kSid)[0].following);
    EXPECT_EQ(Rating("GBR"), std::nullopt);
    Read({}, {}, 1);
    EXPECT_TRUE(List().empty());
}

TEST_F(ProgrammesTest, HaveNoTimesWhereTheStreamLeavesThemOpen) {
    const Bytes body = EventsHead().Put16(1).Put40(0xffffffffff).Put8(0xff).Put16(0xffff).PutLoop({});
    m_reading.Read(MakeSection({.table = 0x4e, .extension = kSid}, body), kEitPid);
    ASSERT_EQ(List().size(), 1u);
    EXPECT_EQ(List()[0].startTime, 0);
    EXPECT_EQ(List()[0].duration, 0);
}

TEST_F(ProgrammesTest, EndWhereTheirDescriptorsAreLongerThanTheSection) {
    const Bytes whole = Bytes().Put16(1).Put40(DvbTime(kNoon)).Put8(0).Put16(0).PutLoop(Ratings({{"GBR", 9}}));
    const Bytes torn = Bytes().Put16(2).Put40(DvbTime(kNoon)).Put8(0).Put16(0).Put16(0xf020).Put("short");
    m_reading.Read(MakeSection({.table = 0x4e, .extension = kSid}, EventsHead().Put(whole).Put(torn)), kEitPid);
    EXPECT_EQ(List().size(), 1u);
}

TEST_F(ProgrammesTest, AreRatedForTheViewersCountryWhereTheyNameIt) {
    Read({{.descriptors = Bytes()
                              .Put(Ratings({{"DEU", 13}, {"GBR", 9}}))
                              .Put(ShortEvent("eng", "Harbour", ""))
                              .Put(Ratings({{"fra", 7}}))}},
         {});
    EXPECT_EQ(List()[0].ratings.size(), 3u);
    EXPECT_EQ(Rating("GBR"), 9);
    EXPECT_EQ(Rating("FRA"), 7) << "in whatever letters";
    EXPECT_EQ(Rating("ITA"), 13) << "the first";
    EXPECT_EQ(Rating(""), 13);
    Read({{.descriptors = ShortEvent("eng", "Harbour", "")}}, {}, 1);
    EXPECT_EQ(Rating("GBR"), std::nullopt);
}

}  // namespace
}  // namespace television::test
