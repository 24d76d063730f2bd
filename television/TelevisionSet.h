// A television that is switched on: multiplexes, services, presentation and screen, tied together.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "television/Multiplex.h"
#include "television/Presentation.h"
#include "television/Resources.h"
#include "television/Rights.h"
#include "television/demonstration/Broadcast.h"
#include "television/events/StreamEvents.h"

namespace television {

// A source that is open, and what it is called in messages: empty when there is but one.
struct Input {
    std::string name;
    std::unique_ptr<PacketSource> source;
};

class TelevisionSet : private MultiplexClient {
public:
    using Progress = std::function<void(const std::string&)>;

    TelevisionSet(ListenerGate& gate, const Observer& observer, SoundOutput sound, const std::string& language);
    ~TelevisionSet() override;

    // Receives from the sources until the services are known, then shows the first one. On failure a sentence.
    std::optional<std::string> Start(std::vector<Input> inputs, const Progress& progress);
    std::optional<std::string> Start(std::unique_ptr<PacketSource> source, const Progress& progress);
    // Ends all threads.
    void Shutdown();

    // The aerial's plug. While it is out nothing is received.
    void ConnectAerial(bool connected);

    ServiceDirectory& Directory() { return m_directory; }
    Screen& TheScreen() { return m_screen; }
    Presentation& ThePresentation() { return m_presentation; }
    StreamEvents& Events() { return m_events; }
    Resources& TheResources() { return m_resources; }

    // The parental lock's age; none: off. And a PIN that the viewer enters: a sentence when it opens nothing.
    void SetLock(std::optional<int> age);
    void SetPin(const std::string& pin) { m_lock.SetPin(pin); }
    // The viewer's, whose ratings are told and count.
    void SetCountry(const std::string& country);
    bool IsLocked(const Service& service) const;
    std::optional<std::string> EnterPin(const std::string& pin);
    // Scrambles what the source has to scramble, or clears it. A sentence when it has nothing of the kind.
    std::optional<std::string> SetScrambling(bool on);
    // What a CA module says of the rights to the channel. A sentence when there is nobody to tell it to.
    std::optional<std::string> TellRights(const Rights& rights);
    // What the demonstration has on the air; null when another stream is received.
    void SetDemonstration(std::shared_ptr<demonstration::Broadcast> broadcast) { m_broadcast = std::move(broadcast); }
    demonstration::Broadcast* Demonstration() { return m_broadcast.get(); }

private:
    void TablesRead(std::size_t multiplex, const Tables& tables) override;
    void PacketsReceived(std::size_t multiplex, std::span<const std::uint8_t> packets) override;
    void ScramblingChanged(std::size_t multiplex) override;
    void StreamBroke(std::size_t multiplex) override;
    void SignalLost(std::size_t multiplex) override;
    void SignalReturned(std::size_t multiplex) override;

    // Does something on the television's thread if the selected service is on this multiplex then.
    void PostFor(std::size_t multiplex, void (Presentation::*operation)());
    void ChannelChanged();
    void AnnounceServices();
    void LockChanged();
    bool LockedServicesChanged();
    void ConnectScreen();
    bool IsRead() const;
    void WaitForTables(const std::vector<Input>& inputs, const Progress& progress);
    std::optional<std::string> FaultOf(std::size_t multiplex, const std::string& name) const;

    ListenerGate& m_gate;
    Observer m_observer;
    std::shared_ptr<demonstration::Broadcast> m_broadcast;
    ServiceDirectory m_directory;
    std::vector<std::unique_ptr<Multiplex>> m_multiplexes;
    Screen m_screen;
    ParentalLock m_lock;
    TaskQueue m_queue;
    Presentation m_presentation;
    StreamEvents m_events;
    Resources m_resources;
    std::vector<unsigned int> m_lockedServices;             // the television's thread
    bool m_started = false, m_announcingServices = false;  // the queue's

    std::mutex m_mutex;
    std::condition_variable m_received;
};

}  // namespace television
