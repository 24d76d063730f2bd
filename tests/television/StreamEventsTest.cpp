// Subscriptions to stream events, over streams made for a test.
#include "television/events/StreamEvents.h"

#include <gst/gst.h>

#include <algorithm>

#include "television/Log.h"
#include "television/demonstration/SectionWriter.h"
#include "tests/television/CarouselWriter.h"
#include "tests/television/Deliveries.h"
#include "tests/television/Packets.h"
#include "tests/television/WebServer.h"

namespace television::test {
namespace {

using demonstration::Bytes;
using demonstration::Packetize;

constexpr std::uint16_t kPid = 0x104, kOtherPid = 0x105, kListPid = 0x106, kBlocksPid = 0x107;
constexpr int kTag = 10;

std::string Declaration(int tag) {
    return "<dsmcc xmlns=\"urn:dvb:mis:dsmcc:2009\"><dsmcc_object component_tag=\"" + std::to_string(tag) +
           "\"><stream_event stream_event_id=\"1\" stream_event_name=\"goal\"/>"
           "<stream_event stream_event_id=\"2\" stream_event_name=\"end\"/></dsmcc_object></dsmcc>";
}

class StreamEventsTest : public testing::Test {
protected:
    void SetUp() override {
        gst_init(nullptr, nullptr);
        SetLogSink([this](const std::string& line) {
            {
                std::lock_guard lock(m_mutex);
                m_lines.push_back(line);
            }
            m_watch.Notify();
        });
    }
    void TearDown() override {
        m_events.EndAll();
        SetLogSink({});
    }

    void Follow(const Route& route) {
        {
            std::lock_guard lock(m_mutex);
            m_route = route;
        }
        m_events.StreamChanged();
    }
    static Route Ready(std::uint16_t sid, std::map<int, std::uint16_t> taggedPids) {
        Route route;
        route.state = Route::State::Ready;
        route.sid = sid;
        route.taggedPids = std::move(taggedPids);
        return route;
    }
    long CountLines(const std::string& part) {
        std::lock_guard lock(m_mutex);
        return std::count_if(m_lines.begin(), m_lines.end(),
                             [&](const std::string& line) { return line.find(part) != line.npos; });
    }
    bool WaitForLines(long count, const std::string& part) {
        return m_watch.WaitFor([&] { return count <= CountLines(part); });
    }
    // Waits until so many subscriptions have found their stream, one after the other or again.
    bool WaitForListening(long count) { return WaitForLines(count, "is listened for on PID"); }
    void SendCarousel() {
        Packets packets;
        for (const auto& section : CarouselSections()) Packetize(section, kOtherPid, m_continuity[kOtherPid], packets);
        m_events.PacketsReceived(packets);
    }
    // The carousel's beginning, its list of modules and its blocks, each on a PID of its own.
    void SendSpreadCarousel(const CarouselShape& shape) {
        Packets packets;
        for (const auto& section : CarouselSections(shape)) {
            const bool control = section[0] == 0x3b, beginning = control && section[4] == 0;
            const std::uint16_t pid = beginning ? kOtherPid : control ? kListPid : kBlocksPid;
            Packetize(section, pid, m_continuity[pid], packets);
        }
        m_events.PacketsReceived(packets);
    }
    void Send(unsigned id, const std::string& data, unsigned version = 0, std::uint16_t pid = kPid) {
        Bytes body;
        body.PutDescriptor(kStreamEventTag, Bytes().Put16(id).Put32(0xfffffffe).Put32(0).Put(data));
        Packets packets;
        Packetize(demonstration::MakeSection({kStreamDescriptorTable, id, version}, body), pid, m_continuity[pid],
                  packets);
        m_events.PacketsReceived(packets);
    }

    Watch m_watch;
    Deliveries m_deliveries{m_watch};
    std::mutex m_mutex;
    Told m_lines;
    Route m_route = Ready(1, {{1, 0x101}, {kTag, kPid}});
    std::map<std::uint16_t, std::uint8_t> m_continuity;
    WebServer m_server{{{"/events.xml", Declaration(kTag)},
                        {"/eleven.xml", Declaration(11)},
                        {"/late.xml", ""},
                        {"/large.xml", "<dsmcc>" + std::string(70'000, ' ') + "</dsmcc>"},
                        {"/page.html", "<html/>"}}};
    std::string m_url = m_server.Url("/events.xml");
    std::mutex m_tellingMutex;  // who holds it keeps the thread that tells waiting for the route
    StreamEvents m_events{{[this] {
                               { std::lock_guard telling(m_tellingMutex); }
                               std::lock_guard lock(m_mutex);
                               return m_route;
                           },
                           [this](const CDSMCCStreamEventData& event) { m_deliveries.Add(event); },
                           std::chrono::seconds(30)}};
};

TEST_F(StreamEventsTest, AreHeardByEachSubscriptionToTheirName) {
    const auto goal = m_events.Subscribe(m_url, "goal"), end = m_events.Subscribe(m_url, "end"),
               again = m_events.Subscribe(m_url, "goal");
    ASSERT_TRUE(WaitForListening(3));
    Send(1, "1:0");
    Send(3, "of nobody");
    Send(2, "");
    m_deliveries.Expect(
        {Trigger(goal, 1, "goal", "1:0"), Trigger(again, 1, "goal", "1:0"), Trigger(end, 2, "end", "")});
    EXPECT_NE(m_deliveries.Thread(), std::this_thread::get_id());
}

TEST_F(StreamEventsTest, AreHeardOnceForEachVersion) {
    const auto job = m_events.Subscribe(m_url, "goal");
    ASSERT_TRUE(WaitForListening(1));
    for (const unsigned version : {31u, 31u, 0u, 0u, 0u, 1u}) Send(1, "v" + std::to_string(version), version);
    m_deliveries.Expect({Trigger(job, 1, "goal", "v31"), Trigger(job, 1, "goal", "v0"), Trigger(job, 1, "goal", "v1")});
}

TEST_F(StreamEventsTest, ThatAreTimedAreHeardWhenTheStreamSaysSo) {
    Route route = Ready(1, {{kTag, kPid}});
    route.clockPid = 0x101;
    Follow(route);
    const auto job = m_events.Subscribe(m_url, "goal");
    ASSERT_TRUE(WaitForListening(1));
    const auto send = [&](unsigned extension, const Bytes& body) {
        Packets packets;
        Packetize(demonstration::MakeSection({kStreamDescriptorTable, extension}, body), kPid, m_continuity[kPid],
                  packets);
        m_events.PacketsReceived(packets);
    };
    const auto clock = [&](std::uint32_t time) {
        m_events.PacketsReceived(MakePacket({.pid = 0x101, .clock = std::int64_t{time} * 300}));
    };
    clock(1000);
    for (int i = 0; i < 2; ++i)
        send(0x8001, Bytes().PutDescriptor(kStreamEventTag, Bytes().Put16(1).Put32(0).Put32(5500).Put("timed")));
    ASSERT_TRUE(WaitForLines(1, "timed by NPT: they wait for an NPT reference"));
    Bytes reference;
    reference.Put8(0).Put8(0).Put32(1000).Put32(0).Put32(5000).Put16(1).Put16(1);
    send(0x4000, Bytes().PutDescriptor(0x17, reference));
    clock(1499);
    Send(1, "now");
    m_deliveries.Expect({Trigger(job, 1, "goal", "now")});
    clock(1500);
    clock(1501);
    m_deliveries.Expect({Trigger(job, 1, "goal", "now"), Trigger(job, 1, "goal", "timed")});
}

TEST_F(StreamEventsTest, OfATargetThatIsNotThereAreAnError) {
    for (const std::string& url :
         std::vector<std::string>{m_server.Url("/missing.xml"), m_server.Url("/page.html"), m_server.Url("/large.xml"),
                                  std::string("http://127.0.0.1:1/"), std::string("file:///no/such/events.xml"),
                                  std::string("nonsense"), std::string()}) {
        const auto job = m_events.Subscribe(url, "goal");
        EXPECT_TRUE(m_watch.WaitFor([&] {
            const Told told = m_deliveries.All();
            return !told.empty() && told.back() == Error(job, "goal");
        })) << url;
        EXPECT_FALSE(m_events.Unsubscribe(job)) << "it has ended";
    }
}

TEST_F(StreamEventsTest, ThatTheTargetDoesNotDeclareAreAnError) {
    const auto job = m_events.Subscribe(m_url, "Goal");
    m_deliveries.Expect({Error(job, "Goal")});
}

TEST_F(StreamEventsTest, OfAStreamThatTheServiceHasNotAreAnError) {
    const auto job = m_events.Subscribe(m_server.Url("/eleven.xml"), "goal");
    m_deliveries.Expect({Error(job, "goal")});
}

TEST_F(StreamEventsTest, AreNotHeardAfterUnsubscription) {
    const auto first = m_events.Subscribe(m_url, "goal"), second = m_events.Subscribe(m_url, "goal");
    ASSERT_TRUE(WaitForListening(2));
    EXPECT_TRUE(m_events.Unsubscribe(first));
    EXPECT_FALSE(m_events.Unsubscribe(first));
    EXPECT_FALSE(m_events.Unsubscribe(0));
    Send(1, "x");
    m_deliveries.Expect({Trigger(second, 1, "goal", "x")});
}

TEST_F(StreamEventsTest, WhoseTargetIsSlowDelayNobodyAfterUnsubscription) {
    const auto start = std::chrono::steady_clock::now();
    const auto late = m_events.Subscribe(m_server.Url("/late.xml"), "goal");
    EXPECT_TRUE(m_events.Unsubscribe(late));
    const auto job = m_events.Subscribe(m_url, "Goal");
    m_deliveries.Expect({Error(job, "Goal")});
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << "the download was waited for";
}

TEST_F(StreamEventsTest, ToATargetThatNobodyWantedMeanwhileAreWaitedForAgain) {
    const std::string url = m_server.Url("/late.xml");
    const auto unwanted = m_events.Subscribe(url, "goal");
    m_server.WaitForRequests(1);
    unsigned long other = 0;
    {
        std::lock_guard nothingIsTold(m_tellingMutex);
        m_events.StreamChanged();
        EXPECT_TRUE(m_events.Unsubscribe(unwanted));
        other = m_events.Subscribe(m_server.Url("/page.html"), "goal");
        m_server.WaitForRequests(2);
        m_events.Subscribe(url, "goal");
    }
    m_deliveries.Expect({Error(other, "goal")});
}

TEST_F(StreamEventsTest, WaitForTheServicesMap) {
    Route route;
    route.state = Route::State::MapMissing;
    route.sid = 1;
    Follow(route);
    const auto job = m_events.Subscribe(m_url, "goal"), wrong = m_events.Subscribe(m_url, "Goal");
    m_deliveries.Expect({Error(wrong, "Goal")});
    Follow(Ready(1, {{kTag, kOtherPid}}));
    ASSERT_TRUE(WaitForListening(1));
    Send(1, "x", 0, kOtherPid);
    m_deliveries.Expect({Error(wrong, "Goal"), Trigger(job, 1, "goal", "x")});
}

TEST_F(StreamEventsTest, AreFollowedToAnotherPid) {
    const auto job = m_events.Subscribe(m_url, "goal");
    ASSERT_TRUE(WaitForListening(1));
    Follow(Ready(1, {{kTag, kOtherPid}}));
    ASSERT_TRUE(WaitForListening(2));
    Send(1, "on the old PID");
    Send(1, "on the new one", 0, kOtherPid);
    m_deliveries.Expect({Trigger(job, 1, "goal", "on the new one")});
}

TEST_F(StreamEventsTest, EndInAnErrorWithTheirStream) {
    const auto job = m_events.Subscribe(m_url, "goal");
    ASSERT_TRUE(WaitForListening(1));
    Follow(Ready(1, {{1, 0x101}}));
    m_deliveries.Expect({Error(job, "goal")});
    Follow(Ready(1, {{kTag, kPid}}));
    const auto next = m_events.Subscribe(m_url, "goal");
    ASSERT_TRUE(WaitForListening(2));
    Send(1, "x");
    m_deliveries.Expect({Error(job, "goal"), Trigger(next, 1, "goal", "x")});
}

TEST_F(StreamEventsTest, EndInAnErrorWithTheirService) {
    const auto job = m_events.Subscribe(m_url, "goal");
    ASSERT_TRUE(WaitForListening(1));
    Follow(Ready(2, {{kTag, kPid}}));
    m_deliveries.Expect({Error(job, "goal")});
    const auto next = m_events.Subscribe(m_url, "goal");
    ASSERT_TRUE(WaitForListening(2));
    Follow({});
    m_deliveries.Expect({Error(job, "goal"), Error(next, "goal")});
}

TEST_F(StreamEventsTest, EndSilentlyWhenAllAreEnded) {
    const auto job = m_events.Subscribe(m_url, "goal");
    ASSERT_TRUE(WaitForListening(1));
    m_events.EndAll();
    EXPECT_FALSE(m_events.Unsubscribe(job));
    Send(1, "x");
    const auto next = m_events.Subscribe(m_url, "Goal");
    EXPECT_GT(next, job);
    m_deliveries.Expect({Error(next, "Goal")});
}

TEST_F(StreamEventsTest, MayBeNamedByAnObjectInACarousel) {
    Follow(Ready(1, {{kTag, kPid}, {11, kOtherPid}}));
    const std::string url = "dvb://1.1.1.b/folder/scores";
    const auto job = m_events.Subscribe(url, "goal"), wrong = m_events.Subscribe(url, "Goal");
    ASSERT_TRUE(WaitForLines(1, "The carousel on PID 261 is searched for " + url));
    SendCarousel();
    ASSERT_TRUE(WaitForListening(1));
    Send(1, "x");
    m_deliveries.Expect({Error(wrong, "Goal"), Trigger(job, 1, "goal", "x")});
    const auto later = m_events.Subscribe(url, "end");
    ASSERT_TRUE(WaitForLines(2, "is searched for"));
    SendCarousel();
    ASSERT_TRUE(WaitForListening(2));
    Send(2, "y");
    m_deliveries.Expect({Error(wrong, "Goal"), Trigger(job, 1, "goal", "x"), Trigger(later, 2, "end", "y")});
}

TEST_F(StreamEventsTest, SearchTheCarouselNoMoreOnceTheObjectIsFound) {
    Follow(Ready(1, {{kTag, kPid}, {11, kOtherPid}}));
    const auto job = m_events.Subscribe("dvb://1.1.1.b/folder/scores", "goal");
    ASSERT_TRUE(WaitForLines(1, "is searched for"));
    {
        std::lock_guard nothingIsTold(m_tellingMutex);
        m_events.StreamChanged();
        SendCarousel();
    }
    ASSERT_TRUE(WaitForListening(1));
    Send(1, "x");
    m_deliveries.Expect({Trigger(job, 1, "goal", "x")});
    EXPECT_EQ(CountLines("is searched for"), 1);
}

TEST_F(StreamEventsTest, MayBeNamedByACarouselThatIsSpreadOverStreams) {
    Route byComponentTags = Ready(1, {{kTag, kPid}, {11, kOtherPid}, {12, kListPid}, {13, kBlocksPid}});
    Route byAssociationTags = Ready(1, {{kTag, kPid}, {11, kOtherPid}, {12, 0x1000}});
    byAssociationTags.associatedPids = {{0x120c, kListPid}, {0x120d, kBlocksPid}};
    Told told;
    for (const Route& route : {byComponentTags, byAssociationTags}) {
        Follow(route);
        const auto job = m_events.Subscribe("dvb://1.1.1.b/folder/scores", "goal");
        const long turn = static_cast<long>(told.size()) + 1;
        ASSERT_TRUE(WaitForLines(turn, "The carousel on PID 261 is searched for"));
        // Another carousel on the PID of the blocks must not be taken for the one that is wanted.
        for (int turns = 0; turns < 3; ++turns) {
            Packets other;
            Packetize(CarouselSections({.list = 99, .blocks = 99})[0], kBlocksPid, m_continuity[kBlocksPid], other);
            m_events.PacketsReceived(other);
            SendSpreadCarousel({.list = 0x120c, .blocks = 0x120d});
        }
        ASSERT_TRUE(WaitForListening(turn));
        Send(1, "x", static_cast<unsigned>(turn));
        told.push_back(Trigger(job, 1, "goal", "x"));
        m_deliveries.Expect(told);
        m_events.Unsubscribe(job);
    }
}

TEST_F(StreamEventsTest, OfACarouselWhoseTagsNobodyKnowsAreFoundInItsOwnStream) {
    Follow(Ready(1, {{kTag, kPid}, {11, kOtherPid}}));
    const auto job = m_events.Subscribe("dvb://1.1.1.b/folder/scores", "goal");
    ASSERT_TRUE(WaitForLines(1, "is searched for"));
    Packets packets;
    for (const auto& section : CarouselSections({.list = 0x63, .blocks = 0x63}))
        Packetize(section, kOtherPid, m_continuity[kOtherPid], packets);
    m_events.PacketsReceived(packets);
    ASSERT_TRUE(WaitForLines(1, "names a stream by the association tag 99, which the service has not"));
    ASSERT_TRUE(WaitForListening(1));
    Send(1, "x");
    m_deliveries.Expect({Trigger(job, 1, "goal", "x")});
}

TEST_F(StreamEventsTest, OfACarouselThatIsNotThereAreAnError) {
    const auto service = m_events.Subscribe("dvb://1.1.2.a/folder/scores", "goal");
    m_deliveries.Expect({Error(service, "goal")});
    const auto stream = m_events.Subscribe("dvb://1.1.1.b/folder/scores", "goal");
    m_deliveries.Expect({Error(service, "goal"), Error(stream, "goal")});
}

TEST_F(StreamEventsTest, OfACarouselThatIsSilentAreAnErrorInTheEnd) {
    StreamEvents impatient{{[this] { return m_route; },
                            [this](const CDSMCCStreamEventData& event) { m_deliveries.Add(event); },
                            std::chrono::milliseconds(10)}};
    const auto job = impatient.Subscribe("dvb://1.1.1.a/folder/scores", "goal");
    m_deliveries.Expect({Error(job, "goal")});
    EXPECT_FALSE(impatient.Unsubscribe(job));
}

}  // namespace
}  // namespace television::test
