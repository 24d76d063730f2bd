// Several streams at once: the multiplexes of one network.
#include <gst/gst.h>

#include <atomic>

#include "television/TelevisionSet.h"
#include "television/demonstration/DemonstrationServices.h"
#include "television/interfaces/ChannelCache.h"
#include "television/stream/FileSource.h"
#include "television/tables/DescriptorTags.h"
#include "tests/television/Packets.h"
#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

using demonstration::Bytes;
using demonstration::MakeSection;
using Sections = std::vector<demonstration::Section>;

constexpr unsigned kOnid = 9, kSid = 5;

// A multiplex with one service, which has the streams of one of the demonstration's.
struct Shape {
    unsigned tsid;
    std::string name;
    unsigned number;
    const demonstration::ServiceInfo& like;
};

Bytes Delivery(unsigned tsid) {
    return Bytes().PutDescriptor(kTerrestrialDeliveryTag, Bytes().Put32(1000 + tsid).Put(std::string(7, '\0')));
}

demonstration::Section Map(const demonstration::ServiceInfo& like) {
    Bytes body = Bytes().Put16(0xe000u | like.clockPid).PutLoop({});
    for (const auto& stream : like.streams) body.Put8(stream.type).Put16(0xe000u | stream.pid).PutLoop({});
    return MakeSection({.table = 2, .extension = kSid}, body);
}

demonstration::Section Description(const Shape& shape) {
    const Bytes named = Bytes().PutDescriptor(kServiceTag, Bytes().Put8(1).PutText("").PutText(shape.name));
    const Bytes body = Bytes().Put16(kOnid).Put8(0xff).Put16(kSid).Put8(0xfd).PutLoop(named);
    return MakeSection({.table = 0x42, .extension = shape.tsid}, body);
}

demonstration::Section Network(const Shape& shape) {
    const Bytes number =
        Bytes().PutDescriptor(kLogicalChannelTag, Bytes().Put16(kSid).Put16(0xfc00u | shape.number));
    Bytes streams;
    for (const unsigned tsid : {1u, 2u}) {
        Bytes descriptors = Delivery(tsid);
        if (tsid == shape.tsid) descriptors.Put(number);
        streams.Put16(tsid).Put16(kOnid).PutLoop(descriptors);
    }
    return MakeSection({.table = 0x40, .extension = kOnid}, Bytes().PutLoop({}).PutLoop(streams));
}

Packets Stream(const Shape& shape) {
    const auto association = Bytes().Put16(0).Put16(0xe010).Put16(kSid).Put16(0xe700);
    std::vector<demonstration::RepeatedTable> tables;
    for (const auto& [pid, section] : std::vector<std::pair<std::uint16_t, demonstration::Section>>{
             {0, MakeSection({.table = 0, .extension = shape.tsid}, association)},
             {0x700, Map(shape.like)},
             {0x11, Description(shape)},
             {0x10, Network(shape)}})
        tables.push_back({pid, kClockRate / 10, [section = section](std::int64_t) { return Sections{section}; }});
    return DemonstrationWith(tables);
}

const Shape kWest{1, "West", 2, demonstration::Services()[0]}, kEast{2, "East", 1, demonstration::Services()[2]};

class MultiplexTest : public TelevisionTest {
protected:
    MultiplexTest() { m_startDemonstration = false; }
    std::string Refusal(const std::vector<std::string>& streams) {
        m_configuration.streams = streams;
        return Start().value_or("(it started)");
    }
    void StartBoth() { ASSERT_EQ(Refusal({m_west.Path(), m_east.Path()}), "(it started)"); }

    TemporaryFile m_west{Stream(kWest)}, m_east{Stream(kEast)};
};

TEST_F(MultiplexTest, TheServicesOfAllStreamsAreOneListAndChannelsChangeBetweenThem) {
    StartBoth();
    const auto services = m_television.Services();
    ASSERT_EQ(services.size(), 2u);
    EXPECT_EQ(services[0].name, "East");
    EXPECT_EQ(services[1].name, "West");
    EXPECT_TRUE(WaitForPicture(Shown::Boreal)) << "East, the first";
    ASSERT_TRUE(WaitForTunes(1));
    OpenPage();
    for (const auto& [id, shown] : {std::pair{services[1].id, Shown::AtlasOne}, {services[0].id, Shown::Boreal}}) {
        EXPECT_TRUE(m_player->NextChannel());
        EXPECT_TRUE(m_listener.WaitFor("TuneSuccess " + std::to_string(id)));
        EXPECT_TRUE(WaitForPicture(shown));
        EXPECT_LT(m_television.LastTune().toFirstPicture, 1500);
    }
}

TEST_F(MultiplexTest, AServiceIsFoundOnTheTransportStreamThatItsDescriptorMeans) {
    StartBoth();
    OpenPage();
    unsigned int id = 0;
    EXPECT_EQ(m_player->GetChannelFromDSD(12, m_television.FindService(IdOf("West"))->dsd, kSid, id), 0);
    EXPECT_EQ(id, IdOf("West"));
    EXPECT_EQ(m_player->GetChannelFromDSD(12, m_television.FindService(IdOf("East"))->dsd, kSid, id), 0);
    EXPECT_EQ(id, IdOf("East"));
    EXPECT_TRUE(m_player->GetChannelFromTriplet(12, kOnid, 1, kSid, id));
    EXPECT_EQ(id, IdOf("West"));
}

TEST_F(MultiplexTest, AStreamThatIsGivenTwiceIsRefused) {
    EXPECT_EQ(Refusal({m_west.Path(), m_east.Path(), m_west.Path()}),
              "\"" + m_west.Path() + "\" is given twice: give each multiplex once.");
}

TEST_F(MultiplexTest, StreamsWithTheSameServiceAreRefused) {
    const TemporaryFile copy(Stream({1, "West too", 7, demonstration::Services()[1]}));
    EXPECT_EQ(Refusal({m_west.Path(), copy.Path()}),
              "The stream \"" + copy.Path() +
                  "\" and another one both have the service 5 on transport stream 1 of network 9: give each multiplex "
                  "once, with numbers of its own.");
}

TEST_F(MultiplexTest, OfSeveralStreamsTheFaultyOneIsNamed) {
    Packets packets;
    for (unsigned i = 0; i < 100; ++i)
        Append(packets, MakePacket({.continuity = i & 15, .clock = i * kClockRate / 25}));
    const TemporaryFile bare(packets);
    EXPECT_TRUE(Refusal({m_west.Path(), bare.Path()}).starts_with("The stream \"" + bare.Path() + "\" has no programme"));
    EXPECT_TRUE(Refusal({m_west.Path(), "/no/such.ts"}).starts_with("The file \"/no/such.ts\" cannot be read"));
}

// A file whose transmitter can be switched off.
class SwitchedSource : public PacketSource {
public:
    SwitchedSource(const std::string& path, std::atomic<bool>& on) : m_file(path), m_on(on) {}
    std::optional<std::string> Open() override { return m_file.Open(); }
    bool NeedsPacing() const override { return true; }
    Result Read(Packets& packets) override {
        if (m_on) return m_file.Read(packets);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));  // as a socket waits
        return Result::Nothing;
    }

private:
    FileSource m_file;
    std::atomic<bool>& m_on;
};

class TransmittersTest : public testing::Test {
protected:
    void SetUp() override {
        gst_init(nullptr, nullptr);
        Observer observer;
        observer.pictureChanged = [this] { m_watch.Notify(); };
        m_set = std::make_unique<TelevisionSet>(m_gate, observer, SoundOutput{}, "");
        std::vector<Input> inputs;
        inputs.push_back(Opened("west", m_west, m_westOn));
        inputs.push_back(Opened("east", m_east, m_eastOn));
        ASSERT_EQ(m_set->Start(std::move(inputs), {}), std::nullopt);
        ASSERT_TRUE(WaitForPicture(Shown::Boreal));
        ASSERT_TRUE(m_watch.WaitFor([&] { return m_set->ThePresentation().IsPresented(); }));
        m_gate.Set(&m_listener);
    }
    void TearDown() override {
        m_set->Shutdown();
        ChannelCache::TheCache().ReleaseAll();
    }
    static Input Opened(const std::string& name, const TemporaryFile& file, std::atomic<bool>& on) {
        auto source = std::make_unique<SwitchedSource>(file.Path(), on);
        EXPECT_EQ(source->Open(), std::nullopt);
        return {name, std::move(source)};
    }
    bool WaitForPicture(Shown shown) {
        return m_watch.WaitFor([&] { return What(m_set->TheScreen().CurrentPicture().get()) == shown; });
    }
    unsigned int IdOf(int tsid) { return m_set->Directory().FindTriplet(kOnid, tsid, kSid)->id; }

    std::atomic<bool> m_westOn = true, m_eastOn = true;
    TemporaryFile m_west{Stream(kWest)}, m_east{Stream(kEast)};
    Watch m_watch;
    RecordingListener m_listener{m_watch};
    ListenerGate m_gate;
    std::unique_ptr<TelevisionSet> m_set;
};

TEST_F(TransmittersTest, OnlyTheSignalOfTheMultiplexThatIsWatchedIsMissed) {
    const std::string west = std::to_string(IdOf(1)), east = std::to_string(IdOf(2));
    m_westOn = false;
    EXPECT_TRUE(m_set->ThePresentation().SelectByPage(IdOf(2)));
    EXPECT_TRUE(m_listener.WaitFor("TuneSuccess " + east));
    m_eastOn = false;
    EXPECT_TRUE(m_listener.WaitFor("NoSignal"));
    m_eastOn = true;
    EXPECT_TRUE(m_listener.WaitFor("TuneSuccess 0"));
    m_listener.Clear();
    EXPECT_TRUE(m_set->ThePresentation().SelectByPage(IdOf(1)));
    EXPECT_TRUE(m_listener.WaitFor("TuneFail " + west)) << "nothing is kept of what its transmitter sent before";
    m_westOn = true;
    EXPECT_TRUE(m_listener.WaitFor("TuneSuccess 0"));
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
    EXPECT_EQ(m_listener.Told(), (std::vector<std::string>{"TuneFail " + west, "TuneSuccess 0"}));
}

}  // namespace
}  // namespace television::test
