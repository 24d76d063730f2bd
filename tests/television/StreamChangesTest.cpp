// What the stream itself does while a page listens: programmes, faults, and its end.
#include <gst/gst.h>
#include <gtest/gtest.h>

#include <atomic>

#include "television/Log.h"
#include "television/TelevisionSet.h"
#include "television/demonstration/DemonstrationServices.h"
#include "television/demonstration/TableInjector.h"
#include "television/interfaces/ChannelCache.h"
#include "television/stream/FileSource.h"
#include "television/tables/DescriptorTags.h"
#include "tests/television/Packets.h"
#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

using demonstration::Bytes;
using demonstration::MakeSection;
using demonstration::RepeatedTable;
using Sections = std::vector<demonstration::Section>;
using Calls = std::vector<std::string>;

constexpr unsigned kMissingSid = 0x6eee, kSilentSid = 0x6eef;

// What a test does to the stream while it plays.
struct Hand {
    std::atomic<std::int64_t> wallClock = 1'700'049'600;
    std::atomic<bool> cut = false;       // nothing comes
    std::atomic<bool> hidden = false;    // neither does Atlas Two's picture nor its sound
    std::atomic<std::int64_t> jump = 0;  // added to all clocks and times
    std::atomic<unsigned> version = 0;   // of the PAT; from 1 on without Atlas One
};

RepeatedTable Table(std::uint16_t pid, std::function<Sections()> make) {
    return {pid, kClockRate / 10, [make = std::move(make)](std::int64_t) { return make(); }};
}

// The demonstration's tables with a service that no PMT describes and one whose streams never come.
std::vector<RepeatedTable> TablesFor(const Hand& hand) {
    auto tables = demonstration::Tables();
    std::erase_if(tables, [](const RepeatedTable& table) { return table.pid == 0 || table.pid == 0x11; });
    tables.push_back(Table(0, [&hand] {
        const unsigned version = hand.version;  // of what is listed and of the number that is sent with it
        Bytes body;
        for (const auto& service : demonstration::Services())
            if (version == 0 || service.sid != 0x6e01) body.Put16(service.sid).Put16(0xe000 | service.mapPid);
        body.Put16(kSilentSid).Put16(0xe500);
        return Sections{MakeSection({.table = 0, .extension = demonstration::kTsid, .version = version}, body)};
    }));
    tables.push_back(Table(0x500, [] {
        const Bytes body = Bytes().Put16(0xe501).PutLoop({}).Put8(0x1b).Put16(0xe501).PutLoop({});
        return Sections{MakeSection({.table = 2, .extension = kSilentSid}, body)};
    }));
    tables.push_back(Table(0x11, [] {
        Bytes body;
        body.Put16(demonstration::kOnid).Put8(0xff);
        for (const unsigned sid : {0x6e01u, 0x6e02u, 0x6e03u, 0x6e04u, kMissingSid, kSilentSid})
            body.Put16(sid).Put8(0xfd).Put16(4 << 13);
        return Sections{MakeSection({.table = 0x42, .extension = demonstration::kTsid}, body)};
    }));
    return tables;
}

class HandledSource : public PacketSource {
public:
    explicit HandledSource(Hand& hand)
        : m_hand(hand),
          m_injector(TablesFor(hand), TablePidsOfDemonstration(), [&hand] { return hand.wallClock.load(); }) {}
    std::optional<std::string> Open() override { return m_file.Open(); }
    bool NeedsPacing() const override { return true; }
    Result Read(Packets& packets) override {
        if (m_hand.cut) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));  // as a socket waits
            return Result::Nothing;
        }
        const Result result = m_file.Read(packets);
        m_injector.Process(packets);
        for (std::size_t at = 0; m_hand.hidden && at < packets.size(); at += kPacketSize) Hide(packets.data() + at);
        for (std::size_t at = 0; m_hand.jump != 0 && at < packets.size(); at += kPacketSize) Jump(packets.data() + at);
        return result;
    }

private:
    static void Hide(std::uint8_t* packet) {
        if (PidOf(packet) == 0x201 || PidOf(packet) == 0x202) MakeNullPacket(packet);
    }
    void Jump(std::uint8_t* packet) const {
        const std::int64_t jump = m_hand.jump;
        if (const auto clock = ClockOf(packet)) SetClock(packet, Wrapped(*clock + jump * 300, kClockWrap));
        PesTimes times = TimesOf(packet);
        for (auto* time : {&times.presentation, &times.decoding})
            if (*time) *time = Wrapped(**time + jump, kTimeWrap);
        SetTimes(packet, times);
    }

    Hand& m_hand;
    FileSource m_file{DEMONSTRATION_STREAM};
    demonstration::TableInjector m_injector;
};

class StreamChangesTest : public testing::Test {
protected:
    void SetUp() override {
        gst_init(nullptr, nullptr);
        Observer observer;
        observer.pictureChanged = [this] { m_watch.Notify(); };
        m_set = std::make_unique<TelevisionSet>(m_gate, observer, SoundOutput{}, "");
        auto source = std::make_unique<HandledSource>(m_hand);
        ASSERT_EQ(source->Open(), std::nullopt);
        ASSERT_EQ(m_set->Start(std::move(source), {}), std::nullopt);
        ASSERT_TRUE(WaitForPicture(Shown::AtlasOne));
        ASSERT_TRUE(m_watch.WaitFor([&] { return m_set->ThePresentation().IsPresented(); }));
        m_gate.Set(&m_listener);
    }
    void TearDown() override {
        m_set->Shutdown();
        ChannelCache::TheCache().ReleaseAll();
    }
    bool WaitForPicture(Shown shown) {
        return m_watch.WaitFor([&] { return What(m_set->TheScreen().CurrentPicture().get()) == shown; });
    }
    unsigned int IdOf(unsigned sid) {
        const auto service =
            m_set->Directory().FindTriplet(demonstration::kOnid, demonstration::kTsid, static_cast<int>(sid));
        EXPECT_TRUE(service);
        return service ? service->id : 0;
    }

    Hand m_hand;
    Watch m_watch;
    RecordingListener m_listener{m_watch};
    ListenerGate m_gate;
    std::unique_ptr<TelevisionSet> m_set;
};

TEST_F(StreamChangesTest, ANewProgrammeIsTold) {
    m_hand.wallClock += 60;
    EXPECT_TRUE(m_listener.WaitFor("ProgrammeChanged"));
    EXPECT_EQ(m_listener.Told(), Calls{"ProgrammeChanged"}) << "once for both events, and for this channel only";
    EXPECT_EQ(m_set->Directory().Programmes(m_set->ThePresentation().Selected())[0].startTime, 1'700'049'660);
}

TEST_F(StreamChangesTest, TheRatingOfANewProgrammeIsTold) {
    for (int minute = 1; minute <= 3; ++minute) {
        m_listener.Clear();
        m_hand.wallClock += 60;
        ASSERT_TRUE(m_listener.WaitFor("ProgrammeChanged"));
        const auto programmes = m_set->Directory().Programmes(m_set->ThePresentation().Selected());
        if (programmes[0].ratings.empty()) continue;
        const std::string rating = "Rating " + std::to_string(programmes[0].ratings[0].rating);
        EXPECT_TRUE(m_watch.WaitFor([&] { return m_listener.Count(rating) > 0; }));
        EXPECT_EQ(m_listener.Ratings(), Calls{rating});
    }
}

class HiddenChannelTest : public StreamChangesTest {
protected:
    HiddenChannelTest() { m_hand.hidden = true; }
};

TEST_F(HiddenChannelTest, AProgrammeThatBeginsWhileAChannelIsTunedToIsToldOnceItIsPresented) {
    const unsigned int two = IdOf(0x6e02);
    const auto start = [&] { return m_set->Directory().Programmes(two).at(0).startTime; };
    EXPECT_TRUE(m_set->ThePresentation().SelectByPage(two));
    const auto before = start();
    m_hand.wallClock += 60;
    EXPECT_TRUE(m_watch.WaitFor([&] { return start() > before; }));
    EXPECT_EQ(m_listener.Told(), Calls{});
    m_hand.hidden = false;
    EXPECT_TRUE(m_listener.WaitFor("ProgrammeChanged"));
    EXPECT_EQ(m_listener.Told(), (Calls{"TuneSuccess " + std::to_string(two), "ProgrammeChanged"}));
    EXPECT_TRUE(m_watch.WaitFor([&] { return m_listener.Ratings() == Calls{"Rating 3"}; })) << "the new one's only";
}

TEST_F(HiddenChannelTest, AProgrammeThatBeginsWhileAChannelCannotBePresentedIsToldOnceItIs) {
    const unsigned int two = IdOf(0x6e02);
    const auto start = [&] { return m_set->Directory().Programmes(two).at(0).startTime; };
    const std::string failure = "TuneFail " + std::to_string(two);
    EXPECT_TRUE(m_set->ThePresentation().SelectByPage(two));
    EXPECT_TRUE(m_listener.WaitFor(failure));
    const auto before = start();
    m_hand.wallClock += 60;
    EXPECT_TRUE(m_watch.WaitFor([&] { return start() > before; }));
    m_hand.hidden = false;
    EXPECT_TRUE(m_listener.WaitFor("ProgrammeChanged"));
    EXPECT_EQ(m_listener.Told(), (Calls{failure, "TuneSuccess 0", "ProgrammeChanged"}));
}

// The television is kept between the picture and what it tells of it, until the next programme has come.
TEST_F(StreamChangesTest, AProgrammeThatBeginsAsTheChannelIsPresentedIsTold) {
    const unsigned int two = IdOf(0x6e02);
    const auto start = [&] { return m_set->Directory().Programmes(two).at(0).startTime; };
    SetLogSink([&](const std::string& line) {
        if (line.find(" is presented") == line.npos) return;
        const auto before = start();
        m_hand.wallClock += 60;
        EXPECT_TRUE(m_watch.WaitFor([&] { return start() > before; }));
    });
    EXPECT_TRUE(m_set->ThePresentation().SelectByPage(two));
    EXPECT_TRUE(m_listener.WaitFor("ProgrammeChanged"));
    SetLogSink({});
    EXPECT_EQ(m_listener.Told(), (Calls{"TuneSuccess " + std::to_string(two), "ProgrammeChanged"}));
}

TEST_F(StreamChangesTest, AServiceThatIsNotInTheStreamIsNotAvailable) {
    const unsigned int id = IdOf(kMissingSid);
    EXPECT_TRUE(m_set->ThePresentation().SelectByPage(id));
    EXPECT_TRUE(m_listener.WaitFor("ServiceNotAvailable " + std::to_string(id)));
    EXPECT_EQ(m_set->TheScreen().CurrentPicture(), nullptr);
    EXPECT_EQ(ChannelCache::TheCache().Holds(), 1u);
}

TEST_F(StreamChangesTest, AServiceWithoutAPictureFailsAfterThreeSeconds) {
    const unsigned int id = IdOf(kSilentSid);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(m_set->ThePresentation().SelectByPage(id));
    EXPECT_TRUE(m_listener.WaitFor("TuneFail " + std::to_string(id)));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(2900));
    const unsigned int two = IdOf(0x6e02);
    EXPECT_TRUE(m_set->ThePresentation().SelectByPage(two));
    EXPECT_TRUE(m_listener.WaitFor("TuneSuccess " + std::to_string(two)));
}

TEST_F(StreamChangesTest, AServiceThatLeavesTheStreamIsNotAvailableAnyMore) {
    const unsigned int one = IdOf(0x6e01);
    m_hand.version = 1;
    EXPECT_TRUE(m_listener.WaitFor("ServiceNotAvailable " + std::to_string(one)));
    EXPECT_EQ(m_set->TheScreen().CurrentPicture(), nullptr);
}

TEST_F(StreamChangesTest, ALostSignalIsToldAndSoIsItsReturn) {
    m_hand.cut = true;
    EXPECT_TRUE(m_listener.WaitFor("NoSignal"));
    EXPECT_TRUE(WaitForPicture(Shown::Black));
    m_hand.cut = false;
    EXPECT_TRUE(m_listener.WaitFor("TuneSuccess 0"));
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
    EXPECT_EQ(m_listener.Told(), (Calls{"NoSignal", "TuneSuccess 0"}));
}

TEST_F(StreamChangesTest, AStreamThatJumpsIsPresentedOnWithoutAReport) {
    for (const std::int64_t jump : {1000 * 90'000, 20 * 90'000}) {
        const auto before = m_set->ThePresentation().LastTune().count;
        m_hand.jump = jump;
        EXPECT_TRUE(m_watch.WaitFor([&] { return m_set->ThePresentation().LastTune().count > before; }));
    }
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
    EXPECT_TRUE(m_listener.Told().empty());
}

}  // namespace
}  // namespace television::test
