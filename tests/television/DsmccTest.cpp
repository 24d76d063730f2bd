// Stream events of the demonstration, subscribed to as the plug-in does it.
#include <atomic>

#include "television/Log.h"
#include "television/demonstration/MessageEvents.h"
#include "tests/television/Deliveries.h"
#include "tests/television/TelevisionTest.h"

namespace television::test {
namespace {

class DsmccTest : public TelevisionTest {
protected:
    void SetUp() override {
        TelevisionTest::SetUp();
        s_deliveries = &m_deliveries;
        m_service.RegisterStreamEventCallback("test", Take);
    }
    void TearDown() override {
        m_service.UnregisterStreamEventCallback();
        TelevisionTest::TearDown();
    }
    static void Take(CDSMCCStreamEventData* event) {
        s_deliveries->Add(*event);
        delete event;
    }
    unsigned long Subscribe(const std::string& name) {
        return m_service.SubscribeStreamEvent("file://" DEMONSTRATION_PAGE "/events.xml", name.c_str(), 0);
    }

    static inline Deliveries* s_deliveries = nullptr;
    Deliveries m_deliveries{m_watch};
    IDSMCCProtocol& m_service = *DSMCCProtocol_GetInstance();
};

TEST_F(DsmccTest, HearsTheDemonstrationTickEachSecond) {
    const auto job = Subscribe("tick");
    ASSERT_NE(job, 0u);
    ASSERT_TRUE(m_watch.WaitFor([&] { return m_deliveries.All().size() >= 3; }));
    const Told told = m_deliveries.All();
    const int first = std::stoi(told[0].substr(told[0].rfind(' ')));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(told[static_cast<std::size_t>(i)], Trigger(job, 1, "tick", std::to_string((first + i) % 60)));
    EXPECT_TRUE(m_service.UnsubscribeStreamEvent(job));
    EXPECT_FALSE(m_service.UnsubscribeStreamEvent(job));
}

TEST_F(DsmccTest, HearsAMessageOfTheDemonstrationOnceEachTimeThatItIsSent) {
    auto& messages = demonstration::MessageEvents::Instance();
    const auto job = Subscribe("message");
    const auto tick = Subscribe("tick");
    ASSERT_TRUE(m_watch.WaitFor([&] { return !m_deliveries.All().empty(); }));
    EXPECT_TRUE(m_service.UnsubscribeStreamEvent(tick));
    const auto before = m_deliveries.All().size();
    for (const char* text : {"one", "two", "two"}) EXPECT_EQ(messages.Send(text), std::nullopt);
    ASSERT_TRUE(m_watch.WaitFor([&] { return m_deliveries.All().size() >= before + 3; }));
    Told told = m_deliveries.All();
    told.erase(told.begin(), told.begin() + static_cast<std::ptrdiff_t>(before));
    EXPECT_EQ(told, (Told{Trigger(job, 3, "message", "one"), Trigger(job, 3, "message", "two"),
                          Trigger(job, 3, "message", "two")}));
    EXPECT_NE(messages.Send(std::string(246, 'x')), std::nullopt);
    m_television.Stop();
    EXPECT_NE(messages.Send("one"), std::nullopt) << "no demonstration plays";
}

TEST_F(DsmccTest, EndsSubscriptionsInAnErrorWhenTheChannelChanges) {
    const auto job = Subscribe("tick");
    ASSERT_TRUE(m_watch.WaitFor([&] { return !m_deliveries.All().empty(); }));
    ASSERT_EQ(m_television.ViewerSelects(IdOf("Atlas Two")), std::nullopt);
    EXPECT_TRUE(m_watch.WaitFor([&] { return m_deliveries.All().back() == Error(job, "tick"); }));
    const auto there = Subscribe("tick");
    EXPECT_TRUE(m_watch.WaitFor([&] { return m_deliveries.All().back() == Error(there, "tick"); }));
}

TEST_F(DsmccTest, EndsSubscriptionsWithThePage) {
    const auto job = Subscribe("tick");
    m_television.PageClosed();
    EXPECT_FALSE(m_service.UnsubscribeStreamEvent(job));
}

TEST_F(DsmccTest, CallsTheCallbackUntilItsLastRegistrationIsGivenBack) {
    m_service.RegisterStreamEventCallback("test", Take);
    m_service.UnregisterStreamEventCallback();
    const auto heard = Subscribe("nothing");
    m_deliveries.Expect({Error(heard, "nothing")});
    m_service.UnregisterStreamEventCallback();
    m_service.UnregisterStreamEventCallback();
    std::atomic<bool> failed = false;
    SetLogSink([&](const std::string& line) {
        failed = failed || line.find("cannot be had") != line.npos;
        m_watch.Notify();
    });
    const auto unheard = Subscribe("nothing");
    EXPECT_TRUE(m_watch.WaitFor([&] { return failed.load(); }));
    SetLogSink({});
    EXPECT_FALSE(m_service.UnsubscribeStreamEvent(unheard));
    m_service.RegisterStreamEventCallback("test", Take);
    const auto next = Subscribe("nothing");
    m_deliveries.Expect({Error(heard, "nothing"), Error(next, "nothing")});
}

TEST_F(DsmccTest, RefusesSubscriptionsWithoutATargetOrATelevision) {
    EXPECT_EQ(m_service.SubscribeStreamEvent(nullptr, "tick", 0), 0u);
    EXPECT_EQ(m_service.SubscribeStreamEvent("file:///x", nullptr, 0), 0u);
    m_television.Stop();
    EXPECT_EQ(Subscribe("tick"), 0u);
    EXPECT_FALSE(m_service.UnsubscribeStreamEvent(1));
}

}  // namespace
}  // namespace television::test
