// The first packet of a PID tells its state; a change of it takes several.
#include "television/stream/ScramblingWatch.h"

namespace television {
namespace {

// A packet that was received wrongly changes nothing.
constexpr std::uint8_t kAgreeing = 4;

bool Tells(const std::uint8_t* packet) {
    const bool erroneous = packet[1] & 0x80;
    return !erroneous && HasPayload(packet) && PidOf(packet) != kNullPid;
}

}  // namespace

bool ScramblingWatch::Push(const std::uint8_t* packet) {
    if (!Tells(packet)) return false;
    Stream& stream = m_streams[PidOf(packet)];
    const State told = IsScrambled(packet) ? State::Scrambled : State::Clear;
    if (stream.state == told) {
        stream.contrary = 0;
        return false;
    }
    if (stream.state != State::Unknown && ++stream.contrary < kAgreeing) return false;
    stream.contrary = 0;
    stream.state = told;
    return true;
}

void ScramblingWatch::Forget() {
    for (Stream& stream : m_streams) {
        stream.state = State::Unknown;
        stream.contrary = 0;
    }
}

}  // namespace television
