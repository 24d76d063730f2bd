// Joins the end of a stream to its beginning: clocks, times and continuity counters go on as if it had never ended.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "television/stream/TransportPacket.h"

namespace television {

class Restamper {
public:
    // Restamps the next packet of the stream in place.
    void Next(std::uint8_t* packet);
    // The stream begins again with the next packet.
    void TurnAround();

private:
    struct Counter {
        std::uint8_t last = 0, shift = 0;
        bool seen = false, joining = false;
    };
    void RestampCounter(std::uint8_t* packet, Counter& counter);
    std::int64_t RestampedClock(std::uint16_t pid, std::int64_t clock);
    void ObserveClock(std::uint16_t pid, std::int64_t clock);
    void ObserveTimes(std::uint16_t pid, const PesTimes& times);
    std::int64_t LengthByClock() const;
    std::int64_t LengthOfTurn() const;

    std::array<Counter, kPids> m_counters{};
    std::array<std::int64_t, kPids> m_lastWritten{};  // clocks
    std::int64_t m_shift = 0;                         // what is added to the clocks, in 27 MHz

    // This turn, by the first programme's clock: its first and last value and the packets up to each of them.
    std::uint16_t m_clockPid = kNullPid;
    std::optional<std::int64_t> m_firstClock;
    std::int64_t m_lastClock = 0;
    std::int64_t m_packets = 0, m_packetsAtFirst = 0, m_packetsAtLast = 0;

    // And by the pictures of the service that has this clock, in 90 kHz since the first of them.
    std::optional<std::int64_t> m_firstTime;
    std::int64_t m_earliest = 0, m_latest = 0, m_lastDecoding = 0, m_frame = 0;
};

}  // namespace television
