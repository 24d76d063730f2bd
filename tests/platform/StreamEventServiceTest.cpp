// What a platform with a DSM-CC service keeps.
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "platform/DSMCCProtocol.h"

namespace contract {
namespace {

// Nobody listens there.
constexpr const char* kNoTarget = "http://127.0.0.1:9/events.xml";

// The function that gets all events has no context of its own.
std::mutex s_mutex;
std::condition_variable s_changed;
std::vector<std::unique_ptr<CDSMCCStreamEventData>> s_events;
std::set<std::thread::id> s_threads;

void Receive(CDSMCCStreamEventData* event) {
    std::lock_guard lock(s_mutex);
    s_events.emplace_back(event);
    s_threads.insert(std::this_thread::get_id());
    s_changed.notify_all();
}

class StreamEventService : public testing::Test {
protected:
    void SetUp() override {
        m_service = DSMCCProtocol_GetInstance();
        if (!m_service) GTEST_SKIP() << "This platform has no DSM-CC service.";
        s_events.clear();
    }
    // The events of a job so far, as soon as there is one; empty when none came in half a minute.
    std::vector<CDSMCCStreamEventData*> EventsOf(unsigned long job) {
        std::unique_lock lock(s_mutex);
        std::vector<CDSMCCStreamEventData*> found;
        s_changed.wait_for(lock, std::chrono::seconds(30), [&] {
            found.clear();
            for (const auto& event : s_events)
                if (event->jobId == job) found.push_back(event.get());
            return !found.empty();
        });
        return found;
    }

    IDSMCCProtocol* m_service = nullptr;
};

TEST_F(StreamEventService, IsOne) { EXPECT_EQ(DSMCCProtocol_GetInstance(), m_service); }

TEST_F(StreamEventService, GivesEachSubscriptionANumberOfItsOwnAndEndsItOnce) {
    m_service->RegisterStreamEventCallback("test", Receive);
    std::set<unsigned long> jobs;
    for (int i = 0; i < 5; ++i) {
        const unsigned long job = m_service->SubscribeStreamEvent("dvb://ffff.ffff.ffff.ff/none", "none", 0);
        if (!job) continue;
        EXPECT_TRUE(jobs.insert(job).second) << "a number was used again";
        m_service->UnsubscribeStreamEvent(job);
        EXPECT_FALSE(m_service->UnsubscribeStreamEvent(job));
    }
    m_service->UnregisterStreamEventCallback();
}

TEST_F(StreamEventService, KnowsNoSubscriptionThatWasNeverMade) {
    EXPECT_FALSE(m_service->UnsubscribeStreamEvent(0));
    EXPECT_FALSE(m_service->UnsubscribeStreamEvent(~0ul));
}

TEST_F(StreamEventService, CountsRegistrationsAndTellsEachEventOnceOnAThreadOfItsOwn) {
    m_service->RegisterStreamEventCallback("one", Receive);
    m_service->RegisterStreamEventCallback("two", Receive);
    m_service->UnregisterStreamEventCallback();
    if (const unsigned long job = m_service->SubscribeStreamEvent(kNoTarget, "none", 0)) {
        const auto events = EventsOf(job);
        ASSERT_EQ(events.size(), 1u) << "a target that does not exist is answered by one error";
        EXPECT_EQ(events[0]->status, CDSMCCStreamEventData::E_STATUS_ERROR);
        EXPECT_EQ(s_threads.count(std::this_thread::get_id()), 0u);
    }
    m_service->UnregisterStreamEventCallback();
    m_service->UnregisterStreamEventCallback();  // one too many is ignored
}

}  // namespace
}  // namespace contract
