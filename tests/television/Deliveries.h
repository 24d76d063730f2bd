// Stream events that are delivered, kept to be compared.
#pragma once

#include <gtest/gtest.h>

#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/DSMCCProtocol.h"
#include "tests/television/RecordingListener.h"

namespace television::test {

using Told = std::vector<std::string>;

// What was delivered, as lines: "7 trigger 1 goal payload".
class Deliveries {
public:
    explicit Deliveries(Watch& watch) : m_watch(watch) {}
    void Add(const CDSMCCStreamEventData& event) {
        const std::string status = event.status == CDSMCCStreamEventData::E_STATUS_TRIGGER ? " trigger " : " error ";
        {
            std::lock_guard lock(m_mutex);
            m_told.push_back(std::to_string(event.jobId) + status + std::to_string(event.eventId) + " " + event.name +
                             " " + std::string(event.data.begin(), event.data.end()));
            m_thread = std::this_thread::get_id();
        }
        m_watch.Notify();
    }
    Told All() const {
        std::lock_guard lock(m_mutex);
        return m_told;
    }
    std::thread::id Thread() const {
        std::lock_guard lock(m_mutex);
        return m_thread;
    }
    // Waits for as many as are expected and compares them all.
    void Expect(const Told& told) {
        EXPECT_TRUE(m_watch.WaitFor([&] { return All().size() >= told.size(); })) << All().size();
        EXPECT_EQ(All(), told);
    }

private:
    Watch& m_watch;
    mutable std::mutex m_mutex;
    Told m_told;
    std::thread::id m_thread;
};

inline std::string Trigger(unsigned long job, int id, const std::string& name, const std::string& data) {
    return std::to_string(job) + " trigger " + std::to_string(id) + " " + name + " " + data;
}
inline std::string Error(unsigned long job, const std::string& name) {
    return std::to_string(job) + " error 0 " + name + " ";
}

}  // namespace television::test
