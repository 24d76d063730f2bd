// A listener that keeps what it is told, in order, and can be waited for.
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/IBroadcastPlayerListener.h"
#include "platform/ISASListener.h"

namespace television::test {

inline constexpr auto kPatience = std::chrono::seconds(20);

// Waits until something that other threads change becomes true. They say so by Notify; what nobody says is noticed after
// some milliseconds.
class Watch {
public:
    void Notify() {
        { std::lock_guard lock(m_mutex); }
        m_changed.notify_all();
    }
    bool WaitFor(const std::function<bool()>& condition) {
        const auto end = std::chrono::steady_clock::now() + kPatience;
        std::unique_lock lock(m_mutex);
        while (!m_changed.wait_for(lock, std::chrono::milliseconds(10), condition))
            if (std::chrono::steady_clock::now() > end) return condition();
        return true;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
};

class RecordingListener : public IBroadcastPlayerListener, public ISASListener {
public:
    explicit RecordingListener(Watch& watch) : m_watch(watch) {}

    void Suspend() override { Add("Suspend"); }
    void Resume() override { Add("Resume"); }
    void ChannelChanged() override { Add("ChannelChanged"); }
    void TuneSuccess(unsigned int id) override { Add("TuneSuccess " + std::to_string(id)); }
    void TuneFail(unsigned int id) override { Add("TuneFail " + std::to_string(id)); }
    void ServiceNotAvailable(unsigned int id) override { Add("ServiceNotAvailable " + std::to_string(id)); }
    void ProgrammeChanged() override { Add("ProgrammeChanged"); }
    void ParentalRatingChanged(char rating) override { Keep(m_ratings, "Rating " + std::to_string(rating)); }
    void ParentalRatingBlocked(unsigned int id, bool whilePresenting) override {
        Add("Blocked " + std::to_string(id) + (whilePresenting ? " while presenting" : ""));
    }
    void ParentalRatingUnblocked(unsigned int id) override { Add("Unblocked " + std::to_string(id)); }
    void NoSignal() override { Add("NoSignal"); }
    void Scrambled(unsigned short system) override { Add("Scrambled " + std::to_string(system)); }
    void ScrambledTune(unsigned int id) override { Add("ScrambledTune " + std::to_string(id)); }
    void Unscrambled(unsigned short system) override { Add("Unscrambled " + std::to_string(system)); }
    void UpdateLayout() override { Keep(m_layouts, "UpdateLayout"); }

    // A message as its type, its CA system, and its items as their tags and their bytes in characters.
    void OnSASMessageReceived(SASMessage* message) override {
        std::string text = "Message " + std::to_string(message->type) + " of " + std::to_string(message->caSystemId);
        for (const SASMessageItem& item : message->items) {
            text += ", " + std::to_string(item.tag) + ":";
            for (const unsigned char byte : item.data) text += byte < ' ' ? std::to_string(byte) : std::string(1, byte);
        }
        delete message;
        Add(text);
    }

    // All that was told, without what comes whenever a picture or programme does: ratings and layouts.
    std::vector<std::string> Told() const {
        std::lock_guard lock(m_mutex);
        return m_told;
    }
    std::vector<std::string> Ratings() const {
        std::lock_guard lock(m_mutex);
        return m_ratings;
    }
    // How often it was told, a rating or a layout, too.
    std::ptrdiff_t Count(const std::string& call) const {
        std::lock_guard lock(m_mutex);
        std::ptrdiff_t count = 0;
        for (const auto* list : {&m_told, &m_ratings, &m_layouts}) count += std::count(list->begin(), list->end(), call);
        return count;
    }
    std::thread::id Thread() const {
        std::lock_guard lock(m_mutex);
        return m_thread;
    }
    bool WaitFor(const std::string& call) {
        return m_watch.WaitFor([&] {
            const auto told = Told();
            return !told.empty() && told.back() == call;
        });
    }
    void Clear() {
        std::lock_guard lock(m_mutex);
        for (auto* list : {&m_told, &m_ratings, &m_layouts}) list->clear();
    }

private:
    void Add(const std::string& call) { Keep(m_told, call); }
    void Keep(std::vector<std::string>& list, const std::string& call) {
        {
            std::lock_guard lock(m_mutex);
            list.push_back(call);
            m_thread = std::this_thread::get_id();
        }
        m_watch.Notify();
    }

    Watch& m_watch;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_told, m_ratings, m_layouts;
    std::thread::id m_thread;
};

}  // namespace television::test
