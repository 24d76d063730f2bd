// Delivery system descriptors, and the services that are found with them.
#include <gtest/gtest.h>

#include "television/ServiceDirectory.h"
#include "television/tables/DescriptorTags.h"
#include "tests/television/Reading.h"

namespace television::test {
namespace {

using namespace std::string_literals;
using demonstration::Bytes;
using demonstration::MakeSection;

std::string Classic(char tag, std::string body) {
    body.resize(11, '\0');
    return std::string{tag, '\x0b'} + body;
}
std::string Extended(const std::string& body) { return std::string{'\x7f', static_cast<char>(body.size())} + body; }

const std::string kTerrestrial = Classic('\x5a', "\x03\xae\xfe\x40"), kCable = Classic('\x44', "\x03\x46\x12\x34"),
                  kSatellite = Classic('\x43', "\x01\x17\x56\x12\x01\x92\xe5");
const std::string kT2 = Extended("\x04\x07\x12\x34"s), kC2 = Extended("\x0d\x01\x02\x14\x8b\x3c\x40\x09"s);

DeliverySystem Parsed(const std::string& dsd) {
    DeliverySystem system;
    EXPECT_EQ(ParseDeliverySystem(dsd, system), DsdFault::None);
    return system;
}

DsdFault FaultOf(const std::string& dsd) {
    DeliverySystem system;
    return ParseDeliverySystem(dsd, system);
}

TEST(DeliverySystems, AreReadFromTheirDescriptors) {
    using Frequencies = std::set<std::uint32_t>;
    EXPECT_EQ(Parsed(kTerrestrial).frequencies, Frequencies{61'800'000});
    EXPECT_EQ(Parsed(kCable).frequencies, Frequencies{0x03461234});
    EXPECT_EQ(Parsed(kSatellite).place, 0x0192e0u) << "position, east, vertical; the modulation does not count";
    EXPECT_EQ(Parsed(kT2).place, 0x071234u);
    EXPECT_EQ(Parsed(kC2).place, 0x0102u);
    EXPECT_EQ(Parsed(kC2).frequencies, Frequencies{0x148b3c40});
}

TEST(DeliverySystems, OfTheSecondTerrestrialGenerationListTheFrequenciesOfTheirCells) {
    const auto cells = Parsed(Extended("\x04\x07\x12\x34\0\0"
                                       "\0\x01\x01\x02\x03\x04\x05\x09\x01\x02\x03\x05"
                                       "\0\x02\x01\x02\x03\x06\0"s));
    EXPECT_EQ(cells.frequencies, (std::set<std::uint32_t>{0x01020304, 0x01020305, 0x01020306}));
    const auto sliced = Parsed(Extended("\x04\x07\x12\x34\0\x01"
                                        "\0\x01\x08\x01\x02\x03\x04\x01\x02\x03\x05\0"s));
    EXPECT_EQ(sliced.frequencies, (std::set<std::uint32_t>{0x01020304, 0x01020305}));
    EXPECT_TRUE(SameStream(cells, sliced));
    EXPECT_TRUE(SameStream(cells, Parsed(kT2))) << "a short descriptor names no frequency";
    EXPECT_FALSE(SameStream(cells, Parsed(Extended("\x04\x08\x12\x34"s)))) << "another pipe";
}

TEST(DeliverySystems, AreMalformedWithAWrongLengthOrDigit) {
    const std::string malformed[] = {"",
                                     "\x5a",
                                     "\x5a\x0b\x01",
                                     "\x5a\x01\x01",
                                     Classic('\x44', "\x0f\xa0\x12\x34"),
                                     Classic('\x43', "\x01\x17\x56\x12\x0a"),
                                     Extended("\x04\x07\x12"s),
                                     Extended("\x04\x07\x12\x34\0"s),
                                     Extended("\x04\x07\x12\x34\0\0\0\x01\x01"s),
                                     Extended("\x04\x07\x12\x34\0\0\0\x01\x01\x02\x03\x04\x04\0\0\0\0"s),
                                     Extended("\x04\x07\x12\x34\0\x01\0\x01\x03\x01\x02\x03\0"s),
                                     Extended("\x0d\x01\x02\x14\x8b\x3c\x40"s)};
    for (const std::string& dsd : malformed)
        EXPECT_EQ(FaultOf(dsd), DsdFault::Malformed) << ::testing::PrintToString(dsd);
}

TEST(DeliverySystems, AreUnsupportedUnderAnotherTagOrExtension) {
    EXPECT_EQ(FaultOf("\x79\x01\xff"), DsdFault::Unsupported) << "DVB-S2's own descriptor says nothing of the place";
    EXPECT_EQ(FaultOf(Extended("\x05\x01")), DsdFault::Unsupported);
    EXPECT_EQ(FaultOf("\x7f\0"s), DsdFault::Unsupported);
    EXPECT_EQ(FaultOf("\x48\x01\x01"), DsdFault::Unsupported);
}

Bytes Described(const std::string& dsd) { return Bytes().Put(dsd); }

// A multiplex with one service, in a network with another one.
Tables NetworkOf(const Bytes& here, const Bytes& there, unsigned tsid = 1) {
    Reading reading;
    reading.Read(MakeSection({.table = 0, .extension = tsid}, Bytes().Put16(70 + tsid).Put16(0xe100)), 0);
    const Bytes streams = Bytes().Put16(1).Put16(9).PutLoop(here).Put16(2).Put16(9).PutLoop(there);
    reading.Read(MakeSection({.table = 0x40, .extension = 9}, Bytes().PutLoop({}).PutLoop(streams)), 0x10);
    return reading.Current();
}

class DeliveryTest : public testing::Test {
protected:
    Delivery Find(const std::string& dsd, int sid = 71) {
        m_found.reset();
        return m_directory.FindDelivered(Parsed(dsd), sid, m_found);
    }
    ServiceDirectory m_directory;
    std::optional<Service> m_found;
};

TEST_F(DeliveryTest, FindsTheServiceOnTheStreamOfEachKindOfNetwork) {
    for (const std::string& dsd : {kTerrestrial, kCable, kSatellite, kT2, kC2}) {
        m_directory.Update(NetworkOf(Described(dsd), {}));
        EXPECT_EQ(Find(dsd), Delivery::Found) << int(dsd[0]);
        ASSERT_TRUE(m_found);
        EXPECT_EQ(m_found->sid, 71);
        EXPECT_EQ(m_found->dsd, dsd);
        EXPECT_EQ(Find(dsd, 4711), Delivery::OtherService);
        EXPECT_EQ(Find(dsd == kCable ? kTerrestrial : kCable), Delivery::OtherKind);
    }
}

TEST_F(DeliveryTest, TellsAnotherStreamOfTheSameKindFromAnotherKind) {
    m_directory.Update(NetworkOf(Described(kSatellite), {}));
    std::string elsewhere = kSatellite, polarized = kSatellite, modulated = kSatellite;
    elsewhere[5] ^= 1;
    polarized[8] ^= 0x20;
    modulated[8] ^= 0x04;
    EXPECT_EQ(Find(elsewhere), Delivery::OtherStream);
    EXPECT_EQ(Find(polarized), Delivery::OtherStream);
    EXPECT_EQ(Find(modulated), Delivery::Found);
}

TEST_F(DeliveryTest, FindsAStreamByAnyOfItsDescriptorsAndFrequencies) {
    const Bytes others = Bytes().PutDescriptor(kFrequencyListTag, Bytes().Put8(0xff).Put32(0x01020304));
    m_directory.Update(NetworkOf(Described(kTerrestrial).Put(Described(kT2)).Put(others), {}));
    EXPECT_EQ(Find(kT2), Delivery::Found);
    EXPECT_EQ(Find(Classic('\x5a', "\x01\x02\x03\x04")), Delivery::Found);
    EXPECT_EQ(Find(Classic('\x5a', "\x01\x02\x03\x05")), Delivery::OtherStream);
}

TEST_F(DeliveryTest, KnowsThatTheServicesOfAStreamThatIsNotReceivedAreOthers) {
    m_directory.Update(NetworkOf(Described(kTerrestrial), Described(Classic('\x5a', "\x03\x01\x02\x03"))));
    EXPECT_EQ(Find(Classic('\x5a', "\x03\x01\x02\x03"), 72), Delivery::OtherService);
}

TEST_F(DeliveryTest, FindsTheServiceOfTheRightMultiplex) {
    const Bytes one = Described(kTerrestrial), two = Described(Classic('\x5a', "\x03\x01\x02\x03"));
    m_directory.Update(NetworkOf(one, two, 1), 0);
    m_directory.Update(NetworkOf(one, two, 2), 1);
    EXPECT_EQ(Find(kTerrestrial, 71), Delivery::Found);
    EXPECT_EQ(Find(kTerrestrial, 72), Delivery::OtherService);
    EXPECT_EQ(Find(Classic('\x5a', "\x03\x01\x02\x03"), 72), Delivery::Found);
    EXPECT_EQ(m_found->tsid, 2);
}

TEST_F(DeliveryTest, FollowsTheNetworkTableAndFindsNothingWithoutOne) {
    EXPECT_EQ(Find(kTerrestrial), Delivery::OtherKind);
    m_directory.Update(NetworkOf(Described(kTerrestrial), {}));
    EXPECT_EQ(Find(kTerrestrial), Delivery::Found);
    m_directory.Update(NetworkOf(Described(kCable), {}));
    EXPECT_EQ(Find(kTerrestrial), Delivery::OtherKind);
    EXPECT_EQ(Find(kCable), Delivery::Found);
    EXPECT_EQ(m_directory.Services()[0].dsd, kCable);
    EXPECT_EQ(m_directory.Services()[0].idType, 10);
}

}  // namespace
}  // namespace television::test
