// How long a turn of the stream is, and what its clocks, times and counters become.
#include "television/stream/Restamper.h"

#include <algorithm>

#include "television/events/NptReference.h"

namespace television {
namespace {

constexpr std::int64_t kLargestStandstill = kClockRate / 5;
// No stream has a packet a second. Clocks that say so are wrong, and would make a turn longer than there is time.
constexpr std::int64_t kLongestPacket = kClockRate;

}  // namespace

void Restamper::Next(std::uint8_t* packet) {
    const std::uint16_t pid = PidOf(packet);
    ++m_packets;
    if (pid == kNullPid) return;
    if (const auto clock = ClockOf(packet)) {
        ObserveClock(pid, *clock);
        SetClock(packet, RestampedClock(pid, *clock));
    }
    PesTimes times = TimesOf(packet);
    if (times.presentation) {
        ObserveTimes(pid, times);
        times.presentation = Wrapped(*times.presentation + m_shift / 300, kTimeWrap);
        if (times.decoding) times.decoding = Wrapped(*times.decoding + m_shift / 300, kTimeWrap);
        SetTimes(packet, times);
    }
    if (m_shift != 0) ShiftReference(packet, m_shift / 300);
    RestampCounter(packet, m_counters[pid]);
}

// At the seam a clock that was sent in the last packets of the stream may be a little ahead of the turn's end. It then
// stands still until the others have come up: no clock runs backwards.
std::int64_t Restamper::RestampedClock(std::uint16_t pid, std::int64_t clock) {
    std::int64_t restamped = Wrapped(clock + m_shift, kClockWrap);
    const std::int64_t step = WrappedDifference(restamped, m_lastWritten[pid], kClockWrap);
    if (m_counters[pid].seen && step <= 0 && step > -kLargestStandstill)
        restamped = Wrapped(m_lastWritten[pid] + 1, kClockWrap);
    return m_lastWritten[pid] = restamped;
}

void Restamper::RestampCounter(std::uint8_t* packet, Counter& counter) {
    if (counter.joining) {
        const unsigned wanted = counter.last + (HasPayload(packet) ? 1u : 0u);
        counter.shift = (wanted - ContinuityOf(packet)) & 0x0f;
        counter.joining = false;
    }
    SetContinuity(packet, ContinuityOf(packet) + counter.shift);
    counter.last = ContinuityOf(packet);
    counter.seen = true;
}

void Restamper::ObserveClock(std::uint16_t pid, std::int64_t clock) {
    if (m_clockPid == kNullPid) m_clockPid = pid;
    if (pid != m_clockPid) return;
    if (!m_firstClock) {
        m_firstClock = clock;
        m_packetsAtFirst = m_packets;
    }
    m_lastClock = clock;
    m_packetsAtLast = m_packets;
}

void Restamper::ObserveTimes(std::uint16_t pid, const PesTimes& times) {
    if (pid != m_clockPid) return;
    const std::int64_t decoding = times.decoding.value_or(*times.presentation);
    if (!m_firstTime) {
        m_firstTime = *times.presentation;
        m_earliest = m_latest = 0;
    } else if (const auto step = WrappedDifference(decoding, m_lastDecoding, kTimeWrap); step > 0) {
        m_frame = m_frame ? std::min(m_frame, step) : step;
    }
    m_lastDecoding = decoding;
    const std::int64_t since = WrappedDifference(*times.presentation, *m_firstTime, kTimeWrap);
    m_earliest = std::min(m_earliest, since);
    m_latest = std::max(m_latest, since);
}

std::int64_t Restamper::LengthByClock() const {
    const std::int64_t span = WrappedDifference(m_lastClock, *m_firstClock, kClockWrap);
    const std::int64_t packets = m_packetsAtLast - m_packetsAtFirst;
    if (packets <= 0) return span;
    return span + std::clamp(span / packets, -kLongestPacket, kLongestPacket) * (m_packets - packets);
}

// The clock tells how long a turn is, to within a packet's distance. The pictures tell it exactly, and a whole number
// of them leaves no gap and no overlap; so theirs is taken when the two agree. A multiplexer may send its last clocks
// after that end: then they stand still at the seam, for as long as that is allowed.
std::int64_t Restamper::LengthOfTurn() const {
    if (!m_firstClock) return 0;
    const std::int64_t byClock = LengthByClock();
    const std::int64_t byPictures = (m_latest - m_earliest + m_frame) * 300;
    const std::int64_t span = WrappedDifference(m_lastClock, *m_firstClock, kClockWrap);
    const bool agree = m_frame > 0 && std::abs(byPictures - byClock) < kClockRate / 2;
    return agree && span - byPictures < kLargestStandstill ? byPictures : byClock;
}

void Restamper::TurnAround() {
    m_shift = Wrapped(m_shift + LengthOfTurn() / 300 * 300, kClockWrap);
    for (Counter& counter : m_counters) counter.joining = counter.seen;
    m_firstClock.reset();
    m_firstTime.reset();
    m_packets = 0;
    m_frame = 0;
}

}  // namespace television
