// A listener that keeps what the platform tells it, and can make a call wait.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/IBroadcastPlayerListener.h"

namespace contract {

inline constexpr auto kPatience = std::chrono::seconds(30);

enum class Call { Outcome, Other };

class TellListener : public IBroadcastPlayerListener {
public:
    void Suspend() override { Tell(Call::Other); }
    void Resume() override { Tell(Call::Other); }
    void ChannelChanged() override { Tell(Call::Other); }
    void TuneSuccess(unsigned int id) override { Tell(Call::Outcome, id); }
    void TuneFail(unsigned int id) override { Tell(Call::Outcome, id); }
    void ServiceNotAvailable(unsigned int id) override { Tell(Call::Outcome, id); }
    void ProgrammeChanged() override { Tell(Call::Other); }
    void ParentalRatingChanged(char) override { Tell(Call::Other); }
    void ParentalRatingBlocked(unsigned int id, bool whilePresenting) override {
        Tell(whilePresenting ? Call::Other : Call::Outcome, id);
    }
    void ParentalRatingUnblocked(unsigned int) override { Tell(Call::Other); }
    void NoSignal() override { Tell(Call::Outcome); }
    void Scrambled(unsigned short) override { Tell(Call::Other); }
    void ScrambledTune(unsigned int id) override { Tell(Call::Outcome, id); }
    void Unscrambled(unsigned short) override { Tell(Call::Other); }
    void UpdateLayout() override { Tell(Call::Other); }

    std::size_t Outcomes() const {
        std::lock_guard lock(m_mutex);
        return m_outcomes;
    }
    // False when fewer were told in half a minute.
    bool WaitForOutcomes(std::size_t count) {
        return WaitFor([this, count] { return m_outcomes >= count; });
    }
    std::vector<std::thread::id> Threads() const {
        std::lock_guard lock(m_mutex);
        return m_threads;
    }
    // The ids whose holds the listener has been given.
    std::vector<unsigned int> TakeHolds() {
        std::lock_guard lock(m_mutex);
        return std::move(m_holds);
    }

    // From now on outcomes wait until they may go on. Other calls do not: one may come before the operation whose
    // outcome is to wait, and that operation waits for the call.
    void HoldOutcomes() {
        std::lock_guard lock(m_mutex);
        m_held = true;
    }
    bool WaitUntilAnOutcomeWaits() {
        return WaitFor([this] { return m_waiting > 0; });
    }
    void LetOutcomesGo() {
        std::lock_guard lock(m_mutex);
        m_held = false;
        m_changed.notify_all();
    }
    std::size_t CallsInProgress() const {
        std::lock_guard lock(m_mutex);
        return m_inProgress;
    }

private:
    void Tell(Call call, unsigned int hold = 0) {
        std::unique_lock lock(m_mutex);
        ++m_inProgress;
        ++m_waiting;
        m_changed.notify_all();
        m_changed.wait(lock, [&] { return !m_held || call != Call::Outcome; });
        --m_waiting;
        if (call == Call::Outcome) ++m_outcomes;
        if (hold) m_holds.push_back(hold);
        m_threads.push_back(std::this_thread::get_id());
        --m_inProgress;
        m_changed.notify_all();
    }
    bool WaitFor(const std::function<bool()>& condition) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, kPatience, condition);
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_held = false;
    std::size_t m_outcomes = 0, m_waiting = 0, m_inProgress = 0;
    std::vector<unsigned int> m_holds;
    std::vector<std::thread::id> m_threads;
};

}  // namespace contract
