// The list of services while the tables change, and over several multiplexes.
#include "television/ServiceDirectory.h"

#include <gtest/gtest.h>

#include "television/tables/DescriptorTags.h"
#include "tests/television/Reading.h"

namespace television::test {
namespace {

using demonstration::Bytes;
using demonstration::MakeSection;

struct Named {
    unsigned sid;
    std::string name;
    int number = 0;
    unsigned type = 1;
};

// A transport stream whose tables a test writes anew, a version higher each time.
class Stream {
public:
    explicit Stream(unsigned tsid, unsigned onid = 9) : m_tsid(tsid), m_onid(onid) {}

    const Tables& Write(const std::vector<Named>& services, bool withNetwork = true) {
        Bytes association, description = Bytes().Put16(m_onid).Put8(0xff), numbers;
        for (const Named& service : services) {
            association.Put16(service.sid).Put16(0xe100 + service.sid);
            const Bytes named = Bytes().PutDescriptor(
                kServiceTag, Bytes().Put8(service.type).PutText("Provider").PutText(service.name));
            description.Put16(service.sid).Put8(0xfd).PutLoop(named);
            if (service.number > 0) numbers.Put16(service.sid).Put16(0xfc00u + static_cast<unsigned>(service.number));
        }
        m_reading.Read(MakeSection({.table = 0, .extension = m_tsid, .version = m_version}, association), 0);
        m_reading.Read(MakeSection({.table = 0x42, .extension = m_tsid, .version = m_version}, description), 0x11);
        if (withNetwork) WriteNetwork({{m_tsid, Bytes().PutDescriptor(kLogicalChannelTag, numbers)}});
        m_version = (m_version + 1) & 31;
        return m_reading.Current();
    }
    void WriteNetwork(const std::vector<std::pair<unsigned, Bytes>>& streams) {
        Bytes loop;
        for (const auto& [tsid, descriptors] : streams) loop.Put16(tsid).Put16(m_onid).PutLoop(descriptors);
        m_reading.Read(MakeSection({.table = 0x40, .extension = 5, .version = m_version},
                                   Bytes().PutLoop({}).PutLoop(loop)),
                       0x10);
    }

private:
    unsigned m_tsid, m_onid, m_version = 0;
    Reading m_reading;
};

class ServiceDirectoryTest : public testing::Test {
protected:
    // "1 One, 2 Two"
    std::string List() const {
        std::string list;
        for (const Service& service : m_directory.Services())
            list += (list.empty() ? "" : ", ") + std::to_string(service.number) + " " + service.name;
        return list;
    }
    unsigned int IdOf(const std::string& name) const {
        for (const Service& service : m_directory.Services())
            if (service.name == name) return service.id;
        ADD_FAILURE() << "no service " << name;
        return 0;
    }
    Stream m_stream{1};
    ServiceDirectory m_directory;
};

TEST_F(ServiceDirectoryTest, ListsServicesThatAppearAndKeepsTheIdsOfTheOthers) {
    EXPECT_TRUE(m_directory.Update(m_stream.Write({{7, "One", 1}, {8, "Two", 3}})));
    const unsigned int one = IdOf("One"), two = IdOf("Two");
    EXPECT_TRUE(m_directory.Update(m_stream.Write({{7, "One", 1}, {9, "Between", 2}, {8, "Two", 3}})));
    EXPECT_EQ(List(), "1 One, 2 Between, 3 Two");
    EXPECT_EQ(IdOf("One"), one);
    EXPECT_EQ(IdOf("Two"), two);
    EXPECT_FALSE(m_directory.Update(m_stream.Write({{7, "One", 1}, {9, "Between", 2}, {8, "Two", 3}})));
}

TEST_F(ServiceDirectoryTest, FollowsNamesAndNumbers) {
    m_directory.Update(m_stream.Write({{7, "One", 1}, {8, "Two", 2}}));
    const unsigned int two = IdOf("Two");
    EXPECT_TRUE(m_directory.Update(m_stream.Write({{7, "One", 5}, {8, "Zwei", 2}})));
    EXPECT_EQ(List(), "2 Zwei, 5 One");
    EXPECT_EQ(m_directory.Find(two)->name, "Zwei");
}

TEST_F(ServiceDirectoryTest, RemembersAServiceThatIsGoneUnderItsIdAndFindsItAgain) {
    m_directory.Update(m_stream.Write({{7, "One", 1}, {8, "Two", 2}}));
    const unsigned int two = IdOf("Two");
    EXPECT_TRUE(m_directory.Update(m_stream.Write({{7, "One", 1}})));
    EXPECT_EQ(List(), "1 One");
    EXPECT_FALSE(m_directory.Find(two));
    ASSERT_TRUE(m_directory.Describe(two));
    EXPECT_EQ(m_directory.Describe(two)->name, "Two");
    EXPECT_EQ(m_directory.RouteTo(two).state, Route::State::NotInStream);
    m_directory.Update(m_stream.Write({{7, "One", 1}, {8, "Two again", 2}}));
    EXPECT_EQ(m_directory.Find(two)->name, "Two again");
    EXPECT_EQ(m_directory.RouteTo(two).state, Route::State::MapMissing);
}

TEST_F(ServiceDirectoryTest, KeepsTheDescriptionOfAServiceUntilNoTableHasIt) {
    Tables tables = m_stream.Write({{7, "One", 1}, {8, "Wave", 2, 0x0a}});
    m_directory.Update(tables);
    const unsigned int wave = IdOf("Wave");
    tables.description->services.pop_back();
    m_directory.Update(tables);
    EXPECT_EQ(List(), "1 One, 2 Wave");
    EXPECT_EQ(m_directory.Find(wave)->type, ServiceType::Radio);
    EXPECT_EQ(m_directory.Find(wave)->provider, "Provider");
    tables.association->services.pop_back();
    EXPECT_TRUE(m_directory.Update(tables));
    EXPECT_EQ(List(), "1 One");
    EXPECT_EQ(m_directory.Describe(wave)->name, "Wave");
}

TEST_F(ServiceDirectoryTest, LeadsToTheStreamsThatCarouselsNameByAssociationTags) {
    Tables tables = m_stream.Write({{7, "One", 1}});
    tables.maps[7] = {0x101, {}, {{0x0b, 0x105, {{kAssociationTag, {0x12, 0x34}}}}}};
    m_directory.Update(tables);
    EXPECT_EQ(m_directory.RouteTo(IdOf("One")).AssociatedPid(0x1234), 0x105);
}

TEST_F(ServiceDirectoryTest, ListsTelevisionRadioAndDataInTheOrderOfTheTablesWhereTheyHaveNoNumbers) {
    m_directory.Update(m_stream.Write({{9, "Data", 0, 0x0c}, {7, "Vision", 0, 0x19}, {8, "Wave", 0, 0x0a}}));
    EXPECT_EQ(List(), "0 Data, 0 Vision, 0 Wave");
    const auto services = m_directory.Services();
    EXPECT_EQ(services[0].type, ServiceType::Other);
    EXPECT_EQ(services[1].type, ServiceType::Television);
    EXPECT_EQ(services[2].type, ServiceType::Radio);
    EXPECT_EQ(services[2].onid, 9);
    EXPECT_EQ(services[2].nid, 5);
    EXPECT_EQ(services[2].tsid, 1);
    EXPECT_EQ(m_directory.First()->name, "Vision") << "a data service is not zapped to";
    EXPECT_EQ(m_directory.Neighbour(services[2].id, 1)->name, "Vision");
}

TEST_F(ServiceDirectoryTest, ListsTheServicesOfAllMultiplexesByNumber) {
    Stream other(2);
    m_directory.Update(m_stream.Write({{7, "One", 1}, {8, "Three", 3}}), 0);
    const unsigned int one = IdOf("One");
    EXPECT_TRUE(m_directory.Update(other.Write({{7, "Two", 2}, {8, "Four", 4}}), 1));
    EXPECT_EQ(List(), "1 One, 2 Two, 3 Three, 4 Four");
    EXPECT_EQ(IdOf("One"), one);
    EXPECT_NE(IdOf("Two"), one) << "the same service id on another stream";
    EXPECT_EQ(m_directory.RouteTo(one).multiplex, 0u);
    EXPECT_EQ(m_directory.RouteTo(IdOf("Two")).multiplex, 1u);
    EXPECT_EQ(m_directory.FindTriplet(9, 2, 7)->name, "Two");
    EXPECT_EQ(m_directory.Neighbour(one, 1)->name, "Two");
}

TEST_F(ServiceDirectoryTest, TakesNumbersFromAnotherMultiplexesNetworkTableWhereItsOwnSaysNothing) {
    Stream other(2);
    m_stream.WriteNetwork({{1, Bytes().PutDescriptor(kLogicalChannelTag, Bytes().Put16(7).Put16(0xfc02))},
                           {2, Bytes().PutDescriptor(kLogicalChannelTag, Bytes().Put16(7).Put16(0xfc01))}});
    m_directory.Update(m_stream.Write({{7, "Second"}}, false), 0);
    m_directory.Update(other.Write({{7, "First"}}, false), 1);
    EXPECT_EQ(List(), "1 First, 2 Second");
}

TEST_F(ServiceDirectoryTest, LeavesASecondServiceWithTheSameTripletOut) {
    Stream copy(1), foreign(1, 77);
    m_directory.Update(m_stream.Write({{7, "One", 1}, {8, "Two", 2}}), 0);
    m_directory.Update(copy.Write({{7, "One too", 1}, {9, "Nine", 9}}), 1);
    m_directory.Update(foreign.Write({{7, "Abroad", 3}}), 2);
    EXPECT_EQ(List(), "1 One, 2 Two, 3 Abroad, 9 Nine");
    ASSERT_EQ(m_directory.LeftOut().size(), 1u);
    EXPECT_EQ(m_directory.LeftOut()[0].name, "One too");
}

}  // namespace
}  // namespace television::test
