// What another's generators write into tables is what the television finds there.
#include "tests/television/GeneratedTables.h"

#include <gtest/gtest.h>

#include "television/ServiceDirectory.h"
#include "television/tables/Components.h"
#include "television/tables/ProgrammeList.h"
#include "television/tables/TableReader.h"

namespace television::test::generated {
namespace {

class GeneratedTables : public testing::Test {
protected:
    void SetUp() override {
        const Packets packets = Multiplex();
        TableReader reader([](const Tables&) {});
        for (std::size_t at = 0; at < packets.size(); at += kPacketSize) reader.Push(packets.data() + at);
        m_tables = reader.Current();
        m_directory.Update(m_tables);
    }
    Service Film() const { return m_directory.FindTriplet(kOnid, kTsid, kFilmSid).value_or(Service{}); }

    Tables m_tables;
    ServiceDirectory m_directory;
};

TEST_F(GeneratedTables, HaveServicesWithTheirNamesAndKinds) {
    ASSERT_EQ(m_directory.Services().size(), 2u);
    const Service film = Film();
    EXPECT_EQ(film.name, "Großes Café") << "in the default table, where a diacritic comes before its letter";
    EXPECT_EQ(film.provider, "Зз") << "in ISO 8859-5";
    EXPECT_EQ(film.type, ServiceType::Television);
    EXPECT_TRUE(film.hd);
    EXPECT_TRUE(film.scrambled);
    EXPECT_EQ(film.nid, kNid);
    const Service radio = m_directory.FindTriplet(kOnid, kTsid, kRadioSid).value_or(Service{});
    EXPECT_EQ(radio.name, "Welle – nah") << "in UTF-8";
    EXPECT_EQ(radio.type, ServiceType::Radio);
    EXPECT_FALSE(radio.scrambled);
}

TEST_F(GeneratedTables, HaveADeliverySystemByWhichServicesAreFound) {
    DeliverySystem wanted;
    ASSERT_EQ(ParseDeliverySystem(Film().dsd, wanted), DsdFault::None);
    EXPECT_EQ(wanted.frequencies, std::set<std::uint32_t>{kFrequency});
    std::optional<Service> service;
    EXPECT_EQ(m_directory.FindDelivered(wanted, kFilmSid, service), Delivery::Found);
    ASSERT_TRUE(service);
    EXPECT_EQ(service->sid, kFilmSid);
}

TEST_F(GeneratedTables, HaveComponentsOfEachKind) {
    const auto components = ListComponents(m_tables.maps.at(kFilmSid), true);
    ASSERT_EQ(components.size(), 5u);
    const std::uint16_t pids[] = {kVideoPid, kGermanPid, kDescribedPid, kSubtitlePid, kTeletextPid};
    for (std::size_t i = 0; i < components.size(); ++i) {
        EXPECT_EQ(components[i].pid, pids[i]);
        EXPECT_TRUE(components[i].encrypted);
        EXPECT_EQ(components[i].caSystemId, kCaSystemId);
    }
    EXPECT_EQ(components[0].tag, 1);
    EXPECT_EQ(components[1].tag, 2);
    EXPECT_EQ(components[1].language, "deu");
    EXPECT_FALSE(components[1].audioDescription);
    EXPECT_TRUE(components[2].audioDescription);
    EXPECT_EQ(components[3].language, "fra");
    EXPECT_EQ(components[3].encoding, kDvbSubtitles);
    EXPECT_TRUE(components[3].hearingImpaired);
    EXPECT_EQ(components[3].compositionPage, 7);
    EXPECT_EQ(components[3].ancillaryPage, 8);
    EXPECT_EQ(components[4].encoding, kTeletextSubtitles);
    EXPECT_EQ(components[4].language, "deu");
}

TEST_F(GeneratedTables, HaveAPresentAndAFollowingProgramme) {
    const auto programmes = ListProgrammes(m_tables, Film());
    ASSERT_EQ(programmes.size(), 2u);
    EXPECT_EQ(programmes[0].eventId, 301);
    EXPECT_EQ(programmes[0].name, "Der Fall");
    EXPECT_EQ(programmes[0].description, "Krimi");
    EXPECT_EQ(programmes[0].startTime, kPresentStart);
    EXPECT_EQ(programmes[0].duration, kPresentDuration);
    EXPECT_EQ(programmes[0].descriptors.size(), 2u);
    ASSERT_EQ(programmes[0].ratings.size(), 1u);
    EXPECT_EQ(programmes[0].ratings[0].country, "DEU");
    EXPECT_EQ(programmes[0].ratings[0].rating, 13);
    EXPECT_EQ(programmes[1].name, "Nachrichten");
    EXPECT_EQ(programmes[1].startTime, kPresentStart + kPresentDuration);
    EXPECT_EQ(programmes[1].duration, kFollowingDuration);
}

}  // namespace
}  // namespace television::test::generated
