// Service information: what the demonstration writes, libdvbpsi reads, and the television makes of it.
#include <gtest/gtest.h>

#include <algorithm>

#include "television/demonstration/DemonstrationServices.h"
#include "television/demonstration/TableInjector.h"
#include "television/stream/StreamTypes.h"
#include "television/tables/Components.h"
#include "television/tables/DescriptorTags.h"
#include "television/tables/DvbTime.h"
#include "television/tables/ProgrammeList.h"
#include "television/tables/SectionCollector.h"
#include "television/tables/ServiceList.h"
#include "television/tables/TableReader.h"
#include "tests/television/Packets.h"
#include "tests/television/Reading.h"

namespace television::test {
namespace {

using demonstration::Bytes;
using demonstration::MakeSection;
using demonstration::RepeatedTable;
using demonstration::Section;

constexpr std::int64_t kNoon = 1'700'049'600;  // a whole minute

TEST(Sections, EndInACrcThatMakesTheWholeZero) {
    const Section section = MakeSection({.table = 0x42, .extension = 7}, Bytes().Put("body"));
    EXPECT_EQ(SectionCrc(section), 0u);
}

TEST(Sections, AreCutIntoPacketsThatCount) {
    const Section section = MakeSection({.table = 0x42}, Bytes().Put(std::string(400, 'x')));
    Packets packets;
    std::uint8_t continuity = 15;
    demonstration::Packetize(section, 0x11, continuity, packets);
    ASSERT_EQ(Count(packets), 3u);
    EXPECT_TRUE(StartsUnit(packets.data()));
    EXPECT_FALSE(StartsUnit(packets.data() + kPacketSize));
    EXPECT_EQ(ContinuityOf(packets.data() + kPacketSize), 0);
    EXPECT_EQ(continuity & 15, 2);
}

TEST(DvbTimes, AreReadAsTheyAreWritten) {
    static_assert(UnixTime(0xC079124500) == 750516300, "the example of EN 300 468, annex C: 1993-10-13 12:45:00");
    static_assert(Seconds(0x014530) == 6330);
    static_assert(UnixTime(DvbTime(kNoon)) == kNoon);
    EXPECT_EQ(UnixTime(DvbTime(kNoon + 12345)), kNoon + 12345);
}

TEST(TableReader, ReadsTheDemonstrationsTables) {
    Reading reading;
    reading.Read(demonstration::Tables(), kNoon);
    const Tables& tables = reading.Current();
    ASSERT_TRUE(tables.association && tables.description && tables.network);
    EXPECT_EQ(tables.association->tsid, demonstration::kTsid);
    EXPECT_EQ(tables.association->services.size(), demonstration::Services().size());
    EXPECT_EQ(tables.network->nid, demonstration::kNid);
    for (const auto& service : demonstration::Services()) {
        ASSERT_EQ(tables.events.at(service.sid).size(), 2u) << service.name;
        EXPECT_EQ(tables.events.at(service.sid)[0].start, kNoon);
        EXPECT_EQ(tables.events.at(service.sid)[1].start, kNoon + 60);
        EXPECT_EQ(tables.events.at(service.sid)[0].duration, 60);
    }
}

TEST(TableReader, ReadsPmtsThatComeAfterThePat) {
    Reading reading;
    const auto tables = demonstration::Tables();
    reading.Read(tables, kNoon);  // the PMTs stand behind the PAT
    EXPECT_EQ(reading.Current().maps.size(), demonstration::Services().size());
    const auto& map = reading.Current().maps.at(0x6e01);
    EXPECT_EQ(map.clockPid, 0x101);
    EXPECT_EQ(map.streams.size(), 6u);
}

TEST(TableReader, TellsNothingWhenTheSameComesAgain) {
    Reading reading;
    reading.Read(demonstration::Tables(), kNoon);
    const int changes = reading.Changes();
    reading.Read(demonstration::Tables(), kNoon + 59);
    EXPECT_EQ(reading.Changes(), changes);
    reading.Read(demonstration::Tables(), kNoon + 60);
    EXPECT_EQ(reading.Changes(), changes + static_cast<int>(demonstration::Services().size())) << "each service's EIT";
}

TEST(TableReader, DropsAServiceThatLeavesThePat) {
    Reading reading;
    reading.Read(demonstration::Tables(), kNoon);
    reading.Read(
        MakeSection({.table = 0, .extension = demonstration::kTsid, .version = 1}, Bytes().Put16(0x6e02).Put16(0xe200)),
        0);
    EXPECT_EQ(reading.Current().association->services.size(), 1u);
    ASSERT_EQ(reading.Current().maps.size(), 1u);
    EXPECT_EQ(reading.Current().maps.begin()->first, 0x6e02);
}

TEST(TableReader, IgnoresASectionWithAWrongCrc) {
    Reading reading;
    Section section = MakeSection({.table = 0, .extension = 1}, Bytes().Put16(5).Put16(0xe100));
    section[9] ^= 1;
    reading.Read(section, 0);
    EXPECT_FALSE(reading.Current().association);
}

TEST(TableReader, SurvivesSectionsOfNoise) {
    Reading reading;
    std::uint32_t state = 1;
    for (int i = 0; i < 3000; ++i) {
        Bytes body;
        for (int k = 0; k < 60; ++k) body.Put8((state = state * 1664525 + 1013904223) >> 24);
        const unsigned table[] = {0x00, 0x02, 0x40, 0x42, 0x4e};
        const std::uint16_t pid[] = {0x00, 0x100, 0x10, 0x11, 0x12};
        reading.Read(MakeSection({.table = table[i % 5], .extension = state & 3, .version = state >> 8 & 31}, body),
                     pid[i % 5]);
    }
    ServiceIds ids;
    for (const Service& service : ListServices(reading.Current(), ids)) ListProgrammes(reading.Current(), service);
}

TEST(ServiceList, IsInTheOrderOfTheChannelNumbers) {
    Reading reading;
    reading.Read(demonstration::Tables(), kNoon);
    ServiceIds ids;
    const auto services = ListServices(reading.Current(), ids);
    ASSERT_EQ(services.size(), 5u);
    EXPECT_EQ(services[0].name, "Atlas One");
    EXPECT_EQ(services[3].name, "Atlas Radio");
    EXPECT_EQ(services[3].number, 71);
    EXPECT_EQ(services[3].type, ServiceType::Radio);
    EXPECT_EQ(services[4].name, "Atlas Key");
    EXPECT_TRUE(services[4].scrambled);
    EXPECT_FALSE(services[0].scrambled);
    EXPECT_TRUE(services[0].hd);
    EXPECT_FALSE(services[2].hd);
    EXPECT_EQ(services[0].idType, 12);
    EXPECT_EQ(services[0].onid, demonstration::kOnid);
    ASSERT_EQ(services[0].dsd.size(), 13u);
    EXPECT_EQ(services[0].dsd[0], '\x5a');
}

Section Network(const Bytes& descriptors) {
    return MakeSection({.table = 0x40, .extension = 9},
                       Bytes().PutLoop({}).PutLoop(Bytes().Put16(1).Put16(2).PutLoop(descriptors)));
}

Section Association(std::initializer_list<unsigned> sids) {
    Bytes body;
    for (const unsigned sid : sids) body.Put16(sid).Put16(0xe100 + sid);
    return MakeSection({.table = 0, .extension = 1}, body);
}

TEST(ServiceList, HasServicesOfABareStreamUnderTheirIds) {
    Reading reading;
    reading.Read(Association({7, 5}), 0);
    ServiceIds ids;
    const auto services = ListServices(reading.Current(), ids);
    ASSERT_EQ(services.size(), 2u);
    EXPECT_EQ(services[0].name, "Service 7") << "the order of the PAT";
    EXPECT_EQ(services[0].idType, 13);
    EXPECT_EQ(services[0].number, 0);
}

TEST(ServiceList, KeepsIdsWhenTheOrderChanges) {
    Reading reading;
    reading.Read(Association({7, 5}), 0);
    ServiceIds ids;
    const auto before = ListServices(reading.Current(), ids);
    reading.Read(
        Network(Bytes().PutDescriptor(kLogicalChannelTag, Bytes().Put16(5).Put16(0xfc01).Put16(7).Put16(0xfc02))),
        0x10);
    const auto after = ListServices(reading.Current(), ids);
    ASSERT_EQ(after.size(), 2u);
    EXPECT_EQ(after[0].sid, 5);
    EXPECT_EQ(after[0].id, before[1].id);
}

TEST(ServiceList, HidesServicesThatTheNetworkHidesAndReadsLongNordicNumbers) {
    Reading reading;
    reading.Read(Association({7, 5}), 0);
    reading.Read(Network(Bytes()
                             .PutDescriptor(kPrivateDataSpecifierTag, Bytes().Put32(kSpecifierNordig))
                             .PutDescriptor(kLogicalChannelTag,
                                            Bytes().Put16(5).Put16(0x4000 | 2000).Put16(7).Put16(0xc000 | 3))),
                 0x10);
    ServiceIds ids;
    const auto services = ListServices(reading.Current(), ids);
    ASSERT_EQ(services.size(), 2u);
    EXPECT_EQ(services[0].number, 3);
    EXPECT_FALSE(services[0].hidden);
    EXPECT_EQ(services[1].number, 2000);
    EXPECT_TRUE(services[1].hidden);
}

TEST(ServiceList, TakesTheKindOfNetworkFromTheDeliveryDescriptor) {
    const auto idType = [](const Bytes& descriptors) {
        Reading reading;
        reading.Read(Association({7}), 0);
        reading.Read(Network(descriptors), 0x10);
        ServiceIds ids;
        return ListServices(reading.Current(), ids).front().idType;
    };
    const Bytes eleven = Bytes().Put(std::string(11, '\0'));
    EXPECT_EQ(idType(Bytes().PutDescriptor(kCableDeliveryTag, eleven)), 10);
    EXPECT_EQ(idType(Bytes().PutDescriptor(kSatelliteDeliveryTag, eleven)), 11);
    EXPECT_EQ(idType(Bytes().PutDescriptor(kTerrestrialDeliveryTag, eleven)), 12);
    EXPECT_EQ(idType(Bytes().PutDescriptor(kExtensionTag, Bytes().Put8(kT2DeliveryExtension).Put32(0))), 16);
    EXPECT_EQ(idType({}), 13);
}

TEST(Components, AreListedFromThePmt) {
    Reading reading;
    reading.Read(demonstration::Tables(), kNoon);
    const auto components = ListComponents(reading.Current().maps.at(0x6e01), true);
    ASSERT_EQ(components.size(), 5u);
    EXPECT_EQ(ArgumentText(components[0], 16.0 / 9.0, true),
              "0, 0, 257, 1, '', false, 'AVC_HD_25', 1.78, false, 0, false, true");
    EXPECT_EQ(ArgumentText(components[2], std::nullopt, false),
              "1, 1, 259, 3, 'eng', false, 'MPEG1_L2', null, false, 2, false, false");
    EXPECT_EQ(ArgumentText(components[3], std::nullopt, false),
              "2, 0, 261, 5, 'deu', false, 'DVB_SUBT', null, false, 0, false, false");
}

TEST(Components, TellCommentaryEncryptionAndSubtitles) {
    MapTable map;
    map.streams = {{0x03, 0x51, {{kLanguageTag, {'d', 'e', 'u', 3}}, {kCaTag, {1, 2, 0xe1, 0}}}},
                   {0x06, 0x52, {{kSubtitlingTag, {'e', 'n', 'g', 0x10, 0, 1, 0, 1, 'f', 'r', 'a', 0x24, 0, 2, 0, 2}}}},
                   {0x06, 0x53, {{kAc3Tag, {0x80, 0x44}}}},
                   {0x0b, 0x54, {}}};
    const auto components = ListComponents(map);
    ASSERT_EQ(components.size(), 4u);
    EXPECT_TRUE(components[0].audioDescription && components[0].encrypted);
    EXPECT_EQ(components[0].caSystemId, 0x0102);
    EXPECT_FALSE(components[1].encrypted);
    EXPECT_EQ(components[1].type, ComponentType::Subtitle);
    EXPECT_EQ(components[2].index, 1u);
    EXPECT_TRUE(components[2].hearingImpaired);
    EXPECT_EQ(components[3].encoding, "AC3");
    EXPECT_EQ(components[3].audioChannels, 6);
}

TEST(Components, TellThePagesOfDvbSubtitlesAndWhichTeletextPagesAreSubtitles) {
    MapTable map;
    map.descriptors = {{kCaTag, {0x26, 0, 0xe1, 0}}};
    map.streams = {{0x06, 0x51, {{kSubtitlingTag, {'d', 'e', 'u', 0x10, 0, 3, 0, 4, 'd', 'e', 'u', 0x30, 0, 5, 0, 6}},
                                 {kStreamIdentifierTag, {9}}}},
                   {0x06, 0x52, {{kTeletextTag, {'d', 'e', 'u', 1 << 3 | 1, 0, 'd', 'e', 'u', 2 << 3 | 7, 0x77,
                                                 'e', 'n', 'g', 5 << 3 | 7, 0x78}}}}};
    const auto components = ListComponents(map);
    ASSERT_EQ(components.size(), 4u);
    EXPECT_EQ(ArgumentText(components[0], std::nullopt, false),
              "2, 0, 81, 9, 'deu', true, 'DVB_SUBT', null, false, 0, false, false");
    EXPECT_EQ(components[0].compositionPage, 3);
    EXPECT_EQ(components[0].ancillaryPage, 4);
    EXPECT_FALSE(components[1].hearingImpaired) << "for sign language";
    EXPECT_EQ(ArgumentText(components[3], std::nullopt, true),
              "2, 3, 82, -1, 'eng', true, 'EBU_SUBT', null, false, 0, true, true");
    EXPECT_FALSE(components[2].hearingImpaired);
}

TEST(Components, TellTheKindOfSoundByItsOwnDescriptors) {
    MapTable map;
    map.streams = {{0x06, 0x51, {{kAc3Tag, {0x80, 0x50}}}},
                   {0x06, 0x52, {{kEnhancedAc3Tag, {0x80, 0xda}}}},
                   {0x11, 0x53, {{kAacTag, {0x51, 0x80, 0x05}}}},
                   {0x0f, 0x54, {{kAacTag, {0x51, 0x80, 0x40}}}},
                   {0x0f, 0x55, {{kAacTag, {0x51, 0x80, 0x41}}}},
                   {0x04, 0x56, {{kExtensionTag, {0x06, 1 << 2 | 1, 'f', 'r', 'a'}}}},
                   {0x06, 0x57, {{kAc3Tag, {0x80}}}},
                   {0x0f, 0x58, {{kAacTag, {0x51}}}}};
    const auto components = ListComponents(map);
    ASSERT_EQ(components.size(), 8u);
    EXPECT_TRUE(components[0].audioDescription);
    EXPECT_EQ(components[0].audioChannels, 1);
    EXPECT_TRUE(components[1].hearingImpaired);
    EXPECT_EQ(components[1].audioChannels, 2);
    EXPECT_EQ(components[2].audioChannels, 6);
    EXPECT_FALSE(components[2].audioDescription);
    EXPECT_TRUE(components[3].audioDescription);
    EXPECT_TRUE(components[4].hearingImpaired && !components[4].audioDescription);
    EXPECT_TRUE(components[5].audioDescription);
    EXPECT_EQ(components[5].language, "fra");
    EXPECT_EQ(components[6].audioChannels, 2);
    EXPECT_EQ(components[7].audioChannels, 2);
}

TEST(Components, CarryNothingThatCouldEndAScriptsString) {
    MapTable map;
    map.streams = {{0x03, 0x51, {{kLanguageTag, {'\'', ';', 'x', 0}}}}};
    EXPECT_EQ(ListComponents(map).at(0).language, "");
}

TEST(TableInjector, PutsTablesOnlyIntoSparePackets) {
    Packets packets;
    for (unsigned i = 0; i < 200; ++i) {
        Append(packets, MakePacket({.pid = 0x101, .continuity = i & 15, .clock = i * kClockRate / 100}));
        Packets null(kPacketSize);
        MakeNullPacket(null.data());
        Append(packets, null);
    }
    const Packets before = packets;
    demonstration::TableInjector injector(demonstration::Tables(), {}, [] { return kNoon; });
    injector.Process(packets);
    ASSERT_EQ(packets.size(), before.size());
    EXPECT_EQ(OfPid(packets, 0x101).size(), 200u);
    const auto associations = OfPid(packets, 0);
    EXPECT_GE(associations.size(), 15u) << "ten a second for two seconds";
    EXPECT_LE(associations.size(), 21u);
    TableReader reader([](const Tables&) {});
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize) reader.Push(packets.data() + at);
    EXPECT_TRUE(reader.Current().network);
    EXPECT_EQ(reader.Current().events.size(), demonstration::Services().size());
}

TEST(DemonstrationStream, HasTheStreamsThatItsTablesName) {
    const Packets packets = DemonstrationWith({});
    for (const auto& service : demonstration::Services()) {
        for (const auto& stream : service.streams)
            if (stream.type != kStreamDescriptors && stream.type != kPrivateData) {  // those are made when it plays
                EXPECT_GT(OfPid(packets, stream.pid).size(), 100u) << service.name;
            }
        const auto clocks = OfPid(packets, service.clockPid);
        EXPECT_TRUE(std::any_of(clocks.begin(), clocks.end(), [](const auto* p) { return ClockOf(p).has_value(); }));
    }
}

}  // namespace
}  // namespace television::test
