// What the demonstration's broadcaster does, by name, and how the television follows.
#include <ctime>

#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

using Calls = std::vector<std::string>;

class BroadcastTest : public TelevisionTest {
protected:
    void SetUp() override {
        TelevisionTest::SetUp();
        m_one = IdOf("Atlas One");
        ASSERT_TRUE(WaitForPicture(Shown::AtlasOne));
        ASSERT_TRUE(WaitForTunes(1));
        OpenPage();
    }
    std::string FailureOf(const std::string& line) { return m_television.Stimulate(line).value_or("none"); }
    std::string List() {
        std::string list;
        for (const Service& service : m_television.Services())
            if (service.number < 80 || service.number == 90)
                list += (list.empty() ? "" : ", ") + std::to_string(service.number) + " " + service.name;
        return list;
    }
    bool WaitForList(const std::string& list) {
        return m_watch.WaitFor([&] { return List() == list; });
    }
    unsigned int m_one = 0;
};

TEST_F(BroadcastTest, AServiceThatAppearsIsListedAndCanBeSelected) {
    EXPECT_EQ(FailureOf("service-appears 5"), "none");
    EXPECT_TRUE(WaitForList("1 Atlas One, 2 Atlas Two, 3 Boreal, 5 Atlas Pop-up, 71 Atlas Radio"));
    const unsigned int popUp = IdOf("Atlas Pop-up");
    EXPECT_TRUE(m_player->SetChannel(popUp, false));
    // That its programmes are known comes later, and may come right behind it.
    const std::string success = "TuneSuccess " + std::to_string(popUp);
    ASSERT_TRUE(m_watch.WaitFor([&] { return m_listener.Count(success) > 0; }));
    EXPECT_EQ(m_listener.Told().front(), success);
    EXPECT_TRUE(WaitForPicture(Shown::AtlasTwo)) << "whose pictures it repeats";
    EXPECT_EQ(FailureOf("service-appears 90"), "none");
    EXPECT_TRUE(WaitForList("1 Atlas One, 2 Atlas Two, 3 Boreal, 5 Atlas Pop-up, 71 Atlas Radio, 90 Atlas Data"));
    EXPECT_EQ(m_television.FindService(IdOf("Atlas Data"))->type, ServiceType::Other);
}

TEST_F(BroadcastTest, APresentedServiceThatDisappearsIsNotAvailableUntilItReturns) {
    const std::string id = std::to_string(m_one);
    EXPECT_EQ(FailureOf("service-disappears 1"), "none");
    EXPECT_TRUE(m_listener.WaitFor("ServiceNotAvailable " + id));
    EXPECT_TRUE(WaitForPicture(Shown::Black));
    EXPECT_TRUE(WaitForList("2 Atlas Two, 3 Boreal, 71 Atlas Radio"));
    ASSERT_TRUE(m_television.CurrentService());
    EXPECT_EQ(m_television.CurrentService()->name, "Atlas One") << "it stays selected";
    EXPECT_FALSE(m_player->SetChannel(m_one, false));
    EXPECT_EQ(FailureOf("service-appears 1"), "none");
    EXPECT_TRUE(m_listener.WaitFor("TuneSuccess 0"));
    EXPECT_TRUE(WaitForPicture(Shown::AtlasOne));
    EXPECT_TRUE(WaitForList("1 Atlas One, 2 Atlas Two, 3 Boreal, 71 Atlas Radio"));
    EXPECT_EQ(IdOf("Atlas One"), m_one);
    EXPECT_EQ(m_listener.Told(), (Calls{"ServiceNotAvailable " + id, "TuneSuccess 0"}));
}

TEST_F(BroadcastTest, NewNamesAndNumbersDoNotInterruptThePresentation) {
    EXPECT_EQ(FailureOf("service-renamed 1  Übersee 1"), "none");
    EXPECT_EQ(FailureOf("service-renumbered 1 4"), "none");
    EXPECT_TRUE(WaitForList("2 Atlas Two, 3 Boreal, 4 Übersee 1, 71 Atlas Radio"));
    EXPECT_TRUE(m_watch.WaitFor([&] { return m_servicesChanged > 0; }));
    EXPECT_EQ(IdOf("Übersee 1"), m_one);
    EXPECT_EQ(m_television.CurrentService()->number, 4);
    EXPECT_TRUE(m_player->PrevChannel());
    EXPECT_TRUE(m_listener.WaitFor("TuneSuccess " + std::to_string(IdOf("Boreal"))));
    EXPECT_EQ(m_listener.Told().size(), 1u);
}

TEST_F(BroadcastTest, TheNextProgrammesBegin) {
    const std::vector<Calls> ratings{{"Rating 9"}, {"Rating 13"}, {}};
    for (const Calls& rating : ratings) {
        const auto before = m_television.Programmes(m_one);
        ASSERT_EQ(before.size(), 2u);
        m_listener.Clear();
        EXPECT_EQ(FailureOf("programme next"), "none");
        EXPECT_TRUE(m_listener.WaitFor("ProgrammeChanged"));
        const auto now = m_television.Programmes(m_one);
        ASSERT_EQ(now.size(), 2u);
        EXPECT_EQ(now[0].name, before[1].name);
        EXPECT_EQ(now[0].startTime, before[0].startTime) << "the clock does not change";
        EXPECT_NE(now[0].eventId, before[0].eventId);
        EXPECT_TRUE(m_watch.WaitFor([&] { return m_listener.Ratings().size() >= rating.size(); })) << now[0].name;
        EXPECT_EQ(m_listener.Ratings(), rating) << now[0].name;
    }
}

TEST_F(BroadcastTest, ItGoesByTheMachinesClockUnlessATimeIsGiven) {
    EXPECT_EQ(m_television.Programmes(m_one).at(0).startTime, *m_configuration.demonstrationTime);
    m_configuration.demonstrationTime.reset();
    const std::time_t before = std::time(nullptr);
    ASSERT_EQ(StartWith(""), std::nullopt);
    const unsigned int one = IdOf("Atlas One");
    ASSERT_TRUE(m_watch.WaitFor([&] { return !m_television.Programmes(one).empty(); }));
    const std::time_t start = m_television.Programmes(one).at(0).startTime;
    EXPECT_GT(start, before - 60);
    EXPECT_LE(start, std::time(nullptr));
}

TEST_F(BroadcastTest, WhatCannotBeDoneIsAnswered) {
    EXPECT_EQ(FailureOf("service-appears 1").substr(0, 58), "No service 1 can appear; these can: 5 (Atlas Pop-up), 90 (");
    EXPECT_EQ(FailureOf("service-disappears five").substr(0, 58),
              "No service 0 can disappear; these can: 1 (Atlas One), 2 (A");
    EXPECT_EQ(FailureOf("service-renamed 1"), "The name is missing: write the service's number and its new name.");
    EXPECT_EQ(FailureOf("service-renamed 4 Four"), "The demonstration has no service 4.");
    EXPECT_EQ(FailureOf("service-renumbered 1 2"), "The number is taken by 2 (Atlas Two): give another.");
    EXPECT_EQ(FailureOf("service-renumbered 1"), "A service's number is one from 1 to 999.");
    EXPECT_EQ(FailureOf("programme previous"), "The programmes move on to the \"next\" one only.");
}

}  // namespace
}  // namespace television::test
