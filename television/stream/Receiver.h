// The receiving thread: takes packets from a source, at the stream's own pace, and hands them on.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <span>
#include <thread>

#include "television/stream/PacketSource.h"
#include "television/stream/StreamClock.h"

namespace television {

// Called on the receiving thread.
class ReceiverClient {
public:
    virtual ~ReceiverClient() = default;
    // `now` is the stream's time in 27 MHz.
    virtual void PacketsReceived(std::span<const std::uint8_t> packets, std::int64_t now) = 0;
    // What follows does not continue what came before.
    virtual void StreamBroke() = 0;
    // True when the stream need not be read faster than in time any more.
    virtual bool HasEnough() const { return false; }
    // Nothing has come for a while; packets come again.
    virtual void SignalLost() = 0;
    virtual void SignalReturned() = 0;
};

class Receiver {
public:
    // The source must be open.
    Receiver(std::unique_ptr<PacketSource> source, ReceiverClient& client);
    ~Receiver();
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    // Until this is called, or the client has enough, a stream that need not come in real time is read many times faster.
    void KeepTime() { m_keepTime = true; }
    // What comes while nothing is connected is lost.
    void Connect(bool connected) { m_connected = connected; }
    bool Scramble(bool on) { return m_source->Scramble(on); }

private:
    using SteadyClock = std::chrono::steady_clock;

    void Run();
    void ReadOnce();
    void HandOn(std::span<const std::uint8_t> packets);
    void Pace();
    void WatchSilence(bool received);
    void OpenAgain();
    bool Wait(SteadyClock::time_point until);

    std::unique_ptr<PacketSource> m_source;
    ReceiverClient& m_client;
    StreamClock m_clock;
    std::vector<std::uint8_t> m_packets;
    std::atomic<bool> m_keepTime = false, m_connected = true;
    bool m_interrupted = false;  // what was handed on last does not lead to what comes next

    // Pacing: the stream's time m_paceFrom was handed on at m_paceStart. No pace yet is 0.
    int m_pace = 0;
    SteadyClock::time_point m_paceStart;
    std::int64_t m_paceFrom = 0;

    bool m_receivedSinceOpen = false;
    SteadyClock::time_point m_lastReceived = SteadyClock::now();
    bool m_silent = false;

    std::mutex m_mutex;
    std::condition_variable m_stopped;
    bool m_stop = false;
    std::thread m_thread;
};

}  // namespace television
