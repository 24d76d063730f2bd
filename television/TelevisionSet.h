// A television that is switched on: receiver, tables, presentation and screen, tied together.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "television/Presentation.h"
#include "television/Resources.h"
#include "television/Rights.h"
#include "television/demonstration/Broadcast.h"
#include "television/events/StreamEvents.h"
#include "television/stream/Receiver.h"
#include "television/tables/TableReader.h"

namespace television {

class TelevisionSet : private ReceiverClient {
public:
    using Progress = std::function<void(const std::string&)>;

    TelevisionSet(ListenerGate& gate, const Observer& observer, SoundOutput sound, const std::string& language);
    ~TelevisionSet() override;

    // Receives from an open source until the services are known, then shows the first one. On failure a sentence.
    std::optional<std::string> Start(std::unique_ptr<PacketSource> source, const Progress& progress);
    // Ends all threads.
    void Shutdown();

    // The aerial's plug. While it is out nothing is received.
    void ConnectAerial(bool connected) { m_receiver->Connect(connected); }

    ServiceDirectory& Directory() { return m_directory; }
    Screen& TheScreen() { return m_screen; }
    Presentation& ThePresentation() { return m_presentation; }
    StreamEvents& Events() { return m_events; }
    Resources& TheResources() { return m_resources; }

    // The parental lock's age; none: off. And a PIN that the viewer enters: a sentence when it opens nothing.
    void SetLock(std::optional<int> age);
    void SetPin(const std::string& pin) { m_lock.SetPin(pin); }
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
    // How far the tables have come, as the receiving thread sees it.
    struct Reading {
        bool association = false, maps = false, description = false, network = false, networkNamed = false;
        std::size_t mapsRead = 0, mapsNamed = 0;
        std::int64_t streamTime = 0;
        // "PAT, 2 of 4 PMTs, no SDT yet, NIT"; empty when all of it has come.
        std::string Text() const;
        bool Complete() const { return association && maps && description && network; }
    };
    using SteadyClock = std::chrono::steady_clock;

    void PacketsReceived(std::span<const std::uint8_t> packets, std::int64_t now) override;
    void StreamBroke() override;
    void SignalLost() override;
    void SignalReturned() override;

    void ChannelChanged();
    void AnnounceServices();
    void TablesRead(const Tables& tables);
    void LockChanged();
    bool LockedServicesChanged();
    void ConnectScreen();
    bool WaitForTables(SteadyClock::time_point started);
    std::string ReadingText();
    std::optional<std::string> ReadTables(const Progress& progress);

    ListenerGate& m_gate;
    Observer m_observer;
    std::shared_ptr<demonstration::Broadcast> m_broadcast;
    ServiceDirectory m_directory;
    StreamBuffer m_buffer;
    Screen m_screen;
    ParentalLock m_lock;
    ScramblingWatch m_scrambling;
    TaskQueue m_queue;
    Presentation m_presentation;
    StreamEvents m_events;
    Resources m_resources;
    std::vector<unsigned int> m_lockedServices;             // the television's thread
    bool m_started = false, m_announcingServices = false;  // the queue's

    TableReader m_tables;  // the receiving thread's
    std::mutex m_mutex;
    std::condition_variable m_readingChanged;
    Reading m_reading;
    std::unique_ptr<Receiver> m_receiver;
};

}  // namespace television
