// What the demonstration does by itself as the minutes pass, and that nothing of it overrides what is set by hand.
#include "television/demonstration/Timetable.h"

#include <gst/gst.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <memory>
#include <thread>

#include "television/TelevisionSet.h"
#include "television/demonstration/DemonstrationSource.h"
#include "television/demonstration/DemonstrationTables.h"
#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

using demonstration::Broadcast;
using demonstration::Scene;
using demonstration::SceneAt;

constexpr int kPopUp = 5;

bool IsOnAir(const Broadcast& broadcast, int number = kPopUp) {
    const auto services = broadcast.List().services;
    return std::ranges::find(services, number, &demonstration::ServiceInfo::number) != services.end();
}

const demonstration::RepeatedTable& TableOn(std::uint16_t pid, const std::vector<demonstration::RepeatedTable>& tables) {
    return *std::ranges::find(tables, pid, &demonstration::RepeatedTable::pid);
}

TEST(Timetable, HasPopUpInEverySecondMinuteAndTheKeyClearInEveryThird) {
    const Scene nothing, popUp{true, false}, clear{false, true}, both{true, true};
    const Scene minutes[] = {nothing, popUp, clear, popUp, nothing, both, nothing, popUp, clear};
    std::int64_t minute = 0;
    for (const Scene& scene : minutes) {
        EXPECT_EQ(SceneAt(minute * 60), scene) << minute;
        EXPECT_EQ(SceneAt(minute * 60 + 59), scene) << minute;
        ++minute;
    }
}

TEST(Timetable, WaitsWhenTheClockIsPutBack) { EXPECT_EQ(SceneAt(-3600), SceneAt(0)); }

// Who makes tables of a listing while another changes it: one version always has the same services.
TEST(Broadcast, ListsTheServicesOfOneVersion) {
    constexpr std::uint16_t kListingPids[] = {0x00, 0x10, 0x11};
    const auto broadcast = std::make_shared<Broadcast>();
    std::atomic<bool> ended = false;
    std::thread changing([&] {
        while (!ended) {
            broadcast->Disappear(1);
            broadcast->Appear(1);
        }
    });
    const auto tables = demonstration::Tables(broadcast);
    std::map<std::pair<std::uint16_t, unsigned>, std::size_t> sizes;  // by the PID and whether the version is odd
    for (int i = 0; i < 20'000; ++i)
        for (const std::uint16_t pid : kListingPids) {
            const demonstration::Section section = TableOn(pid, tables).make(0).at(0);
            const unsigned odd = section[5] >> 1 & 1;
            EXPECT_EQ(sizes.try_emplace({pid, odd}, section.size()).first->second, section.size());
        }
    ended = true;
    changing.join();
}

TEST(Broadcast, ListsAServiceInNoTableBeforeThePatDoes) {
    const auto broadcast = std::make_shared<Broadcast>();
    const auto tables = demonstration::Tables(broadcast);
    const auto make = [&](std::uint16_t pid) { return TableOn(pid, tables).make(0); };
    const auto version = [&](std::uint16_t pid) { return TableOn(pid, tables).version(); };
    const auto association = make(0x00), network = make(0x10), description = make(0x11);
    broadcast->Appear(5);
    EXPECT_EQ(version(0x00), 1);
    EXPECT_EQ(version(0x10), 0);
    EXPECT_EQ(make(0x10), network);
    EXPECT_EQ(version(0x11), 0);
    EXPECT_EQ(make(0x11), description);
    EXPECT_NE(make(0x00), association);
    EXPECT_EQ(version(0x10), 1);
    EXPECT_NE(make(0x10), network);
    EXPECT_EQ(version(0x11), 1);
    EXPECT_NE(make(0x11), description);
}

TEST(TimedBroadcast, ListsAnotherServiceInEachMinuteOfItsOwn) {
    Broadcast broadcast(true);
    broadcast.Proceed(59);
    EXPECT_FALSE(IsOnAir(broadcast));
    EXPECT_TRUE(broadcast.IsScrambled());
    EXPECT_EQ(broadcast.Version(), 0u);
    broadcast.Proceed(60);
    broadcast.Proceed(61);
    EXPECT_TRUE(IsOnAir(broadcast));
    EXPECT_EQ(broadcast.Version(), 1u) << "the tables change once";
    broadcast.Proceed(120);
    EXPECT_FALSE(IsOnAir(broadcast));
    EXPECT_FALSE(broadcast.IsScrambled());
    EXPECT_EQ(broadcast.Version(), 2u);
    broadcast.Proceed(180);
    EXPECT_TRUE(broadcast.IsScrambled());
}

TEST(TimedBroadcast, LeavesAloneWhatIsSetByHand) {
    Broadcast broadcast(true);
    broadcast.Scramble(true);
    EXPECT_EQ(broadcast.Appear(kPopUp), std::nullopt);
    EXPECT_NE(broadcast.Appear(kPopUp), std::nullopt);
    broadcast.Proceed(120);
    EXPECT_TRUE(IsOnAir(broadcast));
    EXPECT_TRUE(broadcast.IsScrambled());
}

TEST(TimedBroadcast, LetsAServiceStayAsItIsByHand) {
    Broadcast broadcast(true);
    EXPECT_EQ(broadcast.Disappear(kPopUp), std::nullopt) << "though it is not on the air";
    broadcast.Proceed(60);
    EXPECT_FALSE(IsOnAir(broadcast));
    broadcast.Proceed(120);
    EXPECT_FALSE(broadcast.IsScrambled()) << "another thing goes on";
}

TEST(TimedBroadcast, KeepsANameAndANumberThatWereGivenByHand) {
    Broadcast broadcast(true);
    EXPECT_EQ(broadcast.Renumber(kPopUp, 6), std::nullopt);
    broadcast.Proceed(60);
    EXPECT_TRUE(IsOnAir(broadcast, 6));
    broadcast.Proceed(120);
    EXPECT_FALSE(IsOnAir(broadcast, 6));
}

TEST(UntimedBroadcast, StaysAsItIs) {
    Broadcast broadcast;
    broadcast.Proceed(60);
    EXPECT_FALSE(IsOnAir(broadcast));
    broadcast.Proceed(120);
    EXPECT_TRUE(broadcast.IsScrambled());
    EXPECT_NE(broadcast.Disappear(kPopUp), std::nullopt);
}

// A television whose clock the test sets.
class TimedTelevision : public testing::Test {
protected:
    void SetUp() override {
        gst_init(nullptr, nullptr);
        Observer observer;
        observer.pictureChanged = observer.servicesChanged = [this] { m_watch.Notify(); };
        m_set = std::make_unique<TelevisionSet>(m_gate, observer, SoundOutput{}, "");
        auto source = std::make_unique<demonstration::DemonstrationSource>(
            DEMONSTRATION_STREAM, std::make_shared<Broadcast>(true), [this](std::int64_t) { return m_wallClock.load(); });
        ASSERT_EQ(source->Open(), std::nullopt);
        ASSERT_EQ(m_set->Start(std::move(source), {}), std::nullopt);
    }
    void TearDown() override { m_set->Shutdown(); }
    std::optional<unsigned int> Find(const std::string& name) const {
        for (const Service& service : m_set->Directory().Services())
            if (service.name == name) return service.id;
        return std::nullopt;
    }
    bool WaitForPicture(Shown shown) {
        return m_watch.WaitFor([&] { return What(m_set->TheScreen().CurrentPicture().get()) == shown; });
    }

    std::atomic<std::int64_t> m_wallClock = 1'700'049'630;
    Watch m_watch;
    ListenerGate m_gate;
    std::unique_ptr<TelevisionSet> m_set;
};

TEST_F(TimedTelevision, ListsPopUpAfterAMinuteAndShowsTheKeyAfterTwo) {
    EXPECT_FALSE(Find("Atlas Pop-up"));
    m_wallClock += 60;
    EXPECT_TRUE(m_watch.WaitFor([&] { return Find("Atlas Pop-up").has_value(); }));
    ASSERT_TRUE(Find("Atlas Key"));
    EXPECT_TRUE(m_set->ThePresentation().SelectByViewer(*Find("Atlas Key")));
    EXPECT_TRUE(WaitForPicture(Shown::Black));
    m_wallClock += 60;
    EXPECT_TRUE(WaitForPicture(Shown::AtlasKey));
    EXPECT_TRUE(m_watch.WaitFor([&] { return !Find("Atlas Pop-up"); }));
    m_wallClock += 60;
    EXPECT_TRUE(WaitForPicture(Shown::Black));
    EXPECT_TRUE(m_watch.WaitFor([&] { return Find("Atlas Pop-up").has_value(); }));
}

TEST_F(TimedTelevision, IsScrambledByHandWhateverTheMinute) {
    EXPECT_TRUE(m_set->ThePresentation().SelectByViewer(*Find("Atlas Key")));
    EXPECT_TRUE(WaitForPicture(Shown::Black));
    EXPECT_EQ(m_set->SetScrambling(false), std::nullopt);
    EXPECT_TRUE(WaitForPicture(Shown::AtlasKey));
    m_wallClock += 60;
    EXPECT_TRUE(m_watch.WaitFor([&] { return Find("Atlas Pop-up").has_value(); }));
    EXPECT_EQ(What(m_set->TheScreen().CurrentPicture().get()), Shown::AtlasKey);
}

class TimetableConfiguration : public TelevisionTest {
protected:
    void SetUp() override {}
    // What the timetable decides can be fixed as it is.
    bool HasTimetable() { return m_television.Stimulate("service-disappears 5") == std::nullopt; }
};

TEST_F(TimetableConfiguration, HasTheTimetableUnlessItIsToldNotTo) {
    m_configuration = {};
    ASSERT_EQ(Start(), std::nullopt);
    EXPECT_TRUE(HasTimetable());
    m_configuration.timetable = false;
    ASSERT_EQ(Start(), std::nullopt);
    EXPECT_FALSE(HasTimetable());
}

}  // namespace
}  // namespace television::test
