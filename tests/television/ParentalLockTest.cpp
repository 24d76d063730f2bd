// The parental lock: which programmes it blocks, what is reported, and what a PIN opens.
#include "television/ParentalLock.h"

#include <gst/gst.h>
#include <gtest/gtest.h>

#include <atomic>

#include "television/TelevisionSet.h"
#include "television/demonstration/DemonstrationServices.h"
#include "television/demonstration/DemonstrationSource.h"
#include "television/interfaces/ChannelCache.h"
#include "television/tables/DescriptorTags.h"
#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

using Calls = std::vector<std::string>;

constexpr unsigned int kChannel = 1;

Event Rated(std::vector<std::uint8_t> ratings, std::uint16_t id = 7) {
    Event event;
    event.id = id;
    std::vector<std::uint8_t> data;
    for (const std::uint8_t rating : ratings) data.insert(data.end(), {'D', 'E', 'U', rating});
    event.descriptors.push_back({kParentalRatingTag, data});
    return event;
}

TEST(AgeOf, IsThatOfTheRatingsThatAreAges) {
    EXPECT_EQ(AgeOf(0x01), 4);
    EXPECT_EQ(AgeOf(0x0f), 18);
    EXPECT_EQ(AgeOf(0x00), std::nullopt);
    EXPECT_EQ(AgeOf(0x10), std::nullopt) << "the broadcaster's own";
    EXPECT_EQ(AgeOf(0xff), std::nullopt);
}

TEST(ParentalLock, BlocksWhatIsRatedAboveTheAge) {
    ParentalLock lock;
    EXPECT_FALSE(lock.Blocks(kChannel, {Rated({15})}));
    lock.Set(12);
    EXPECT_FALSE(lock.Blocks(kChannel, {Rated({9})})) << "12";
    EXPECT_TRUE(lock.Blocks(kChannel, {Rated({10})})) << "13";
    EXPECT_FALSE(lock.Blocks(kChannel, {Rated({0}), Rated({15})})) << "the following event does not count";
    EXPECT_FALSE(lock.Blocks(kChannel, {}));
    lock.Set(std::nullopt);
    EXPECT_FALSE(lock.Blocks(kChannel, {Rated({10})}));
}

TEST(ParentalLock, GoesByTheRatingOfTheViewersCountry) {
    Event film = Rated({15});
    auto& ratings = film.descriptors[0].data;
    ratings.insert(ratings.end(), {'F', 'R', 'A', 3});
    ParentalLock lock;
    lock.Set(12);
    EXPECT_TRUE(lock.Blocks(kChannel, {film})) << "the first one's, where there is none of the viewer's country";
    lock.SetCountry("FRA");
    EXPECT_FALSE(lock.Blocks(kChannel, {film}));
    lock.SetCountry("DEU");
    EXPECT_TRUE(lock.Blocks(kChannel, {film}));
}

TEST(ParentalLock, BlocksNoProgrammeThatIsNotOnYet) {
    Event later = Rated({15});
    later.following = true;
    ParentalLock lock;
    lock.Set(12);
    EXPECT_FALSE(lock.Blocks(kChannel, {later}));
}

TEST(ParentalLock, OpensOneProgrammeOfOneChannel) {
    ParentalLock lock;
    lock.SetPin("0000");
    lock.Set(10);
    const std::vector<Event> film{Rated({13}, 1)}, another{Rated({13}, 2)};
    EXPECT_FALSE(lock.Open("1234", kChannel, film));
    EXPECT_TRUE(lock.Blocks(kChannel, film));
    EXPECT_TRUE(lock.Open("0000", kChannel, film));
    EXPECT_FALSE(lock.Blocks(kChannel, film));
    EXPECT_TRUE(lock.Blocks(kChannel, another));
    EXPECT_TRUE(lock.Blocks(kChannel + 1, film));
    lock.Set(10);
    EXPECT_TRUE(lock.Blocks(kChannel, film)) << "set anew";
    lock.SetPin("4711");
    EXPECT_FALSE(lock.Open("0000", kChannel, film));
    EXPECT_TRUE(lock.Open("4711", kChannel, film));
}

// Minutes 0, 1 and 2: Atlas One's programmes are for everybody, from 12 and from 16; Boreal's for all, from 12, for all.
class LockedTelevision : public testing::Test {
protected:
    void SetUp() override {
        gst_init(nullptr, nullptr);
        Observer observer;
        observer.pictureChanged = [this] { m_watch.Notify(); };
        observer.servicesChanged = [this] {
            ++m_serviceChanges;
            m_watch.Notify();
        };
        m_set = std::make_unique<TelevisionSet>(m_gate, observer, SoundOutput{}, "");
        m_set->SetPin("0000");
        auto source = std::make_unique<demonstration::DemonstrationSource>(DEMONSTRATION_STREAM, nullptr,
                                                                           [this](std::int64_t) { return m_wallClock.load(); });
        ASSERT_EQ(source->Open(), std::nullopt);
        ASSERT_EQ(m_set->Start(std::move(source), {}), std::nullopt);
        ASSERT_TRUE(WaitForPicture(Shown::AtlasOne));
        ASSERT_TRUE(m_watch.WaitFor([&] { return m_set->ThePresentation().IsPresented(); }));
        for (const Service& service : m_set->Directory().Services()) {
            if (service.name == "Atlas One") m_one = service.id;
            if (service.name == "Boreal") m_boreal = service.id;
            if (service.name == "Atlas Key") m_key = service.id;
        }
        m_gate.Set(&m_listener);
    }
    void TearDown() override {
        m_set->Shutdown();
        ChannelCache::TheCache().ReleaseAll();
    }
    bool WaitForPicture(Shown shown) {
        return m_watch.WaitFor([&] { return What(m_set->TheScreen().CurrentPicture().get()) == shown; });
    }
    // Ends when the presentation knows of it, so that what the test does next comes next there, too.
    void NextMinute() {
        const auto changes = m_listener.Count("ProgrammeChanged");
        const auto start = m_set->Directory().Programmes(m_one).at(0).startTime;
        m_wallClock += 60;
        for (const unsigned int id : {m_one, m_boreal, m_key})
            ASSERT_TRUE(m_watch.WaitFor([&] { return m_set->Directory().Programmes(id).at(0).startTime > start; }));
        ASSERT_TRUE(m_watch.WaitFor([&] { return m_listener.Count("ProgrammeChanged") > changes; }));
    }
    std::string Blocked(unsigned int id) const { return "Blocked " + std::to_string(id); }
    std::string WhilePresenting(unsigned int id) const { return Blocked(id) + " while presenting"; }
    std::string Unblocked(unsigned int id) const { return "Unblocked " + std::to_string(id); }
    std::string Success(unsigned int id) const { return "TuneSuccess " + std::to_string(id); }

    std::atomic<std::int64_t> m_wallClock = 1'700'049'600;
    std::atomic<int> m_serviceChanges = 0;
    unsigned int m_one = 0, m_boreal = 0, m_key = 0;
    Watch m_watch;
    RecordingListener m_listener{m_watch};
    ListenerGate m_gate;
    std::unique_ptr<TelevisionSet> m_set;
};

TEST_F(LockedTelevision, BlocksATuneAndIsOpenedByThePin) {
    NextMinute();
    m_set->SetLock(10);
    ASSERT_TRUE(m_listener.WaitFor(WhilePresenting(m_one)));
    ASSERT_TRUE(m_watch.WaitFor([&] { return m_listener.Count("Rating 9") == 2; })) << "as it began, as it was blocked";
    m_listener.Clear();
    EXPECT_TRUE(m_set->ThePresentation().SelectByPage(m_boreal));
    ASSERT_TRUE(m_listener.WaitFor(Blocked(m_boreal)));
    EXPECT_TRUE(m_watch.WaitFor([&] { return m_listener.Ratings() == Calls{"Rating 9"}; })) << "the page may say why";
    EXPECT_EQ(m_set->TheScreen().CurrentPicture(), nullptr);
    EXPECT_EQ(ChannelCache::TheCache().Holds(), 1u);
    EXPECT_EQ(m_set->EnterPin("1234"), "The PIN is wrong: enter the one of this television.");
    EXPECT_EQ(m_set->EnterPin("0000"), std::nullopt);
    EXPECT_TRUE(m_listener.WaitFor(Unblocked(m_boreal)));
    EXPECT_TRUE(WaitForPicture(Shown::Boreal));
    EXPECT_EQ(m_listener.Told(), (Calls{Blocked(m_boreal), Unblocked(m_boreal)}));
    EXPECT_EQ(m_set->EnterPin("0000"),
              "Nothing is blocked: the PIN opens a programme that the parental lock blocks.");
}

TEST_F(LockedTelevision, BlocksAProgrammeThatBeginsAndShowsTheNextForAll) {
    m_set->SetLock(12);
    NextMinute();
    EXPECT_TRUE(m_listener.WaitFor("ProgrammeChanged"));
    m_listener.Clear();
    NextMinute();
    EXPECT_TRUE(m_listener.WaitFor(WhilePresenting(m_one)));
    EXPECT_EQ(m_set->TheScreen().CurrentPicture(), nullptr);
    NextMinute();
    EXPECT_TRUE(m_listener.WaitFor(Unblocked(m_one)));
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
    EXPECT_EQ(m_listener.Told(), (Calls{"ProgrammeChanged", WhilePresenting(m_one), "ProgrammeChanged", Unblocked(m_one)}));
}

TEST_F(LockedTelevision, BlocksTheNextProgrammeAfterTheOneThatWasOpened) {
    NextMinute();
    m_set->SetLock(10);
    ASSERT_TRUE(m_listener.WaitFor(WhilePresenting(m_one)));
    ASSERT_EQ(m_set->EnterPin("0000"), std::nullopt);
    ASSERT_TRUE(m_listener.WaitFor(Unblocked(m_one)));
    NextMinute();
    EXPECT_TRUE(m_listener.WaitFor(WhilePresenting(m_one)));
}

TEST_F(LockedTelevision, TakenOffShowsThePicture) {
    NextMinute();
    m_set->SetLock(10);
    ASSERT_TRUE(m_listener.WaitFor(WhilePresenting(m_one)));
    EXPECT_TRUE(m_set->IsLocked(*m_set->Directory().Find(m_one)));
    EXPECT_FALSE(m_set->IsLocked(*m_set->Directory().Find(m_key)));
    m_set->SetLock(std::nullopt);
    EXPECT_TRUE(m_listener.WaitFor(Unblocked(m_one)));
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
    EXPECT_FALSE(m_set->IsLocked(*m_set->Directory().Find(m_one)));
}

TEST_F(LockedTelevision, ToldWhenOtherServicesAreLocked) {
    const int before = m_serviceChanges;
    m_set->SetLock(10);
    NextMinute();
    EXPECT_TRUE(m_watch.WaitFor([&] { return m_serviceChanges > before; }));
    // The lock may notice the programme before the listener is told of it.
    ASSERT_TRUE(m_watch.WaitFor([&] { return m_listener.Count(WhilePresenting(m_one)) > 0; }));
    const int locked = m_serviceChanges;
    m_set->SetLock(11);
    EXPECT_EQ(m_set->EnterPin("0000"), std::nullopt);
    EXPECT_TRUE(m_watch.WaitFor([&] { return m_serviceChanges > locked; }));
}

TEST_F(LockedTelevision, LeavesAChannelForAllAlone) {
    NextMinute();
    m_set->SetLock(10);
    ASSERT_TRUE(m_listener.WaitFor(WhilePresenting(m_one)));
    EXPECT_TRUE(m_set->ThePresentation().SelectByPage(m_key));
    EXPECT_TRUE(m_listener.WaitFor("ScrambledTune " + std::to_string(m_key)));
    EXPECT_EQ(m_set->SetScrambling(false), std::nullopt);
    EXPECT_TRUE(m_listener.WaitFor("Unscrambled " + std::to_string(demonstration::kCaSystemId)));
    EXPECT_TRUE(WaitForPicture(Shown::AtlasKey));
}

TEST_F(LockedTelevision, BlocksAgainAfterMediaPlaybackMode) {
    NextMinute();
    m_set->SetLock(10);
    ASSERT_TRUE(m_listener.WaitFor(WhilePresenting(m_one)));
    m_listener.Clear();
    m_set->ThePresentation().Suspend();
    m_set->ThePresentation().Resume();
    EXPECT_TRUE(m_listener.WaitFor(WhilePresenting(m_one)));
    EXPECT_EQ(m_set->TheScreen().CurrentPicture(), nullptr);
}

}  // namespace
}  // namespace television::test
