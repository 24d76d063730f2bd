// The loop of the receiving thread: read, keep time, hand on, notice silence.
#include "television/stream/Receiver.h"

#include <algorithm>
#include <utility>

namespace television {
namespace {

using namespace std::chrono_literals;

// Sources may bring a second's worth at once; it is handed on in pieces of some milliseconds.
constexpr std::size_t kSlice = 64 * kPacketSize;
constexpr auto kSilence = 2s;
constexpr auto kOpenAgain = 1s;
// How many times faster than in time a stream is read at first. Not as fast as it goes: one that ends would be read to
// its end before anybody has seen what is in it.
constexpr int kHurry = 50;
// Being later than this (the machine slept), we go on from now instead of catching up.
constexpr auto kLargestLag = 1s;
// A slice takes at least so long, which no broadcast does: else a clock that stands still would let everything through.
constexpr auto kLeastTime = 500us;

std::chrono::nanoseconds Duration(std::int64_t ticks) { return std::chrono::nanoseconds(ticks * 1000 / 27); }

}  // namespace

Receiver::Receiver(std::unique_ptr<PacketSource> source, ReceiverClient& client)
    : m_source(std::move(source)), m_client(client), m_thread([this] { Run(); }) {}

Receiver::~Receiver() {
    m_source->Cancel();
    {
        std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_stopped.notify_all();
    m_thread.join();
}

// False when the receiver is to end.
bool Receiver::Wait(SteadyClock::time_point until) {
    std::unique_lock lock(m_mutex);
    return !m_stopped.wait_until(lock, until, [this] { return m_stop; });
}

void Receiver::Run() {
    while (Wait(SteadyClock::now())) ReadOnce();
}

void Receiver::ReadOnce() {
    m_packets.clear();
    const PacketSource::Result result = m_source->Read(m_packets);
    WatchSilence(m_connected && !m_packets.empty());
    for (std::span<const std::uint8_t> rest(m_packets); !rest.empty();
         rest = rest.subspan(std::min(kSlice, rest.size())))
        HandOn(rest.first(std::min(kSlice, rest.size())));
    if (result == PacketSource::Result::End) OpenAgain();
}

void Receiver::HandOn(std::span<const std::uint8_t> packets) {
    bool broke = std::exchange(m_interrupted, !m_connected);
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize)
        broke = m_clock.Observe(packets.data() + at) || broke;
    if (m_source->NeedsPacing()) Pace();
    if (m_interrupted) return;
    if (broke) m_client.StreamBroke();
    m_client.PacketsReceived(packets, m_clock.Now());
    if (!m_keepTime && m_client.HasEnough()) KeepTime();
}

void Receiver::Pace() {
    const int pace = m_keepTime ? 1 : kHurry;
    const auto due = m_paceStart + Duration(m_clock.Now() - m_paceFrom) / pace;
    const auto now = SteadyClock::now();
    if (m_pace == pace && now - due <= kLargestLag) {
        Wait(m_keepTime ? std::max(due, now + kLeastTime) : due);
        return;
    }
    m_pace = pace;
    m_paceStart = now;
    m_paceFrom = m_clock.Now();
}

void Receiver::WatchSilence(bool received) {
    const auto now = SteadyClock::now();
    if (received) {
        m_receivedSinceOpen = true;
        m_lastReceived = now;
        if (std::exchange(m_silent, false)) m_client.SignalReturned();
    } else if (!m_silent && now - m_lastReceived > kSilence) {
        m_silent = true;
        m_client.SignalLost();
    }
}

// A source that has ended (the sender closed the connection) is opened again, at once if it brought anything, and for
// as long as the television is on.
void Receiver::OpenAgain() {
    const bool again = std::exchange(m_receivedSinceOpen, false);
    if (again || Wait(SteadyClock::now() + kOpenAgain)) m_source->Open();
}

}  // namespace television
