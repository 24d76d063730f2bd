// The platform of the unit tests: its state, its books, its notifications.
#include "tests/support/RecordingPlatform.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/RecordingPlayer.h"
#include "tests/support/Text.h"

namespace support {

std::string Hex(const std::string& bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += kDigits[value >> 4];
        text += kDigits[value & 15];
    }
    return text;
}

RecordingPlatform& RecordingPlatform::Instance() {
    static RecordingPlatform& platform = *new RecordingPlatform;
    return platform;
}

void RecordingPlatform::Reset() {
    answers = {};
    origins.clear();
    dsds.clear();
    windows.clear();
    m_faults.Reset();
    m_mainThread = std::this_thread::get_id();
    m_players.clear();
    m_handedOut.clear();
    m_holds.clear();
    m_callback = nullptr;
    m_registrations = 0;
    m_lastJobId = 0;
    m_subscriptions.clear();
    Apply();
}

bool RecordingPlatform::Enter(const std::string& operation, const std::string& arguments) {
    EXPECT_EQ(std::this_thread::get_id(), m_mainThread) << operation << " was called on a platform thread.";
    const bool fails = m_faults.Use(operation);
    CallList::Instance().Add(operation + "(" + arguments + ")");
    return fails;
}

IBroadcastPlayer* RecordingPlatform::HandOutPlayer() {
    const std::lock_guard lock(m_listenerMutex);  // Listener looks at the players, too
    while (m_players.size() < answers.players) {
        const std::size_t number = m_players.size() + 1;
        m_players.push_back(
            std::make_unique<RecordingPlayer>(number == 1 ? "player" : "player" + std::to_string(number)));
    }
    for (unsigned i = 0; i < answers.players; ++i) {
        RecordingPlayer* player = m_players[i].get();
        if (std::find(m_handedOut.begin(), m_handedOut.end(), player) == m_handedOut.end()) {
            m_handedOut.push_back(player);
            return player;
        }
    }
    return nullptr;
}

void RecordingPlatform::TakeBackPlayer(IBroadcastPlayer* player) {
    const auto found = std::find(m_handedOut.begin(), m_handedOut.end(), player);
    if (found == m_handedOut.end()) {
        ADD_FAILURE() << "ReleaseBroadcastPlayer was given a player that is not handed out.";
        return;
    }
    const std::lock_guard lock(m_listenerMutex);  // waits for a notification under way
    (*found)->m_listener = nullptr;
    m_handedOut.erase(found);
}

IBroadcastPlayerListener* RecordingPlatform::Listener() {
    const std::lock_guard lock(m_listenerMutex);
    return m_players.empty() ? nullptr : m_players.front()->m_listener;
}

bool RecordingPlatform::Notify(const std::function<void(IBroadcastPlayerListener&)>& call) {
    const std::lock_guard lock(m_listenerMutex);
    IBroadcastPlayerListener* listener = Listener();
    if (listener != nullptr) {
        call(*listener);
    }
    return listener != nullptr;
}

void RecordingPlatform::TakeHold(unsigned channelId) {
    const std::lock_guard lock(m_holdsMutex);
    ++m_holds[channelId];
}

void RecordingPlatform::DropHold(unsigned channelId) {
    const std::lock_guard lock(m_holdsMutex);
    if (m_holds[channelId] > 0) {  // an id without a hold is ignored
        --m_holds[channelId];
    }
}

int RecordingPlatform::Holds(unsigned channelId) {
    const std::lock_guard lock(m_holdsMutex);
    return m_holds[channelId];
}

bool RecordingPlatform::LookUp(const std::optional<unsigned>& answer, unsigned& channelId) {
    EXPECT_EQ(channelId, 0u) << "An id that the platform is asked for did not start at 0.";
    if (answer) {
        channelId = *answer;
        TakeHold(*answer);
    }
    return answer.has_value();
}

unsigned long RecordingPlatform::NextJobId() {
    if (answers.jobIds.empty()) {
        return ++m_lastJobId;
    }
    const unsigned long jobId = answers.jobIds.front();
    answers.jobIds.pop_front();
    m_lastJobId = std::max(m_lastJobId, jobId);
    return jobId;
}

bool RecordingPlatform::DeliverStreamEvent(unsigned long jobId, const std::string& name, const std::string& data,
                                           int status, std::uint16_t eventId, std::uint32_t reserved) {
    DSMCCStreamEventCallback callback = nullptr;
    {
        const std::lock_guard lock(m_dsmccMutex);
        callback = m_callback;
    }
    if (callback != nullptr) {
        callback(new CDSMCCStreamEventData{static_cast<CDSMCCStreamEventData::EEventStatus>(status), eventId, name,
                                           std::vector<unsigned char>(data.begin(), data.end()), jobId, reserved});
    }
    return callback != nullptr;
}

void RecordingPlatform::ExpectBalanced() const {
    EXPECT_EQ(HandedOut(), 0u) << "A broadcast player was not given back.";
    EXPECT_EQ(m_registrations, 0u) << "A registration of the stream event callback was not given back.";
    for (const auto& [jobId, subscription] : m_subscriptions) {
        ADD_FAILURE() << "The subscription " << jobId << " to \"" << subscription.second << "\" was not ended.";
    }
}

}  // namespace support
