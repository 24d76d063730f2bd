// The endless turn: packets stay what they are but for their clocks, times and counters, and counters count.
#include <map>

#include "television/stream/Restamper.h"
#include "tests/fuzz/Chunks.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {
namespace {

void DemandSamePacket(const std::uint8_t* before, const std::uint8_t* after) {
    Demand(before[0] == after[0] && before[1] == after[1] && before[2] == after[2], "a packet keeps its PID");
    Demand((before[3] & 0xf0) == (after[3] & 0xf0), "a packet keeps its flags");
    Demand(ClockOf(before).has_value() == ClockOf(after).has_value(), "a packet keeps its clock");
    Demand(TimesOf(before).presentation.has_value() == TimesOf(after).presentation.has_value(), "and its times");
    Demand(PayloadOf(before).size() == PayloadOf(after).size(), "and its payload");
}

}  // namespace

void Fuzz(std::span<const std::uint8_t> input) {
    Restamper restamper;
    std::map<std::uint16_t, std::uint8_t> firstCounters, lastCounters;
    for (int turn = 0; turn < 3; ++turn) {
        firstCounters.clear();
        ForEachPacket(input, [&](std::uint8_t* packet) {
            const Bytes before(packet, packet + kPacketSize);
            restamper.Next(packet);
            DemandSamePacket(before.data(), packet);
            const std::uint16_t pid = PidOf(packet);
            if (pid == kNullPid) return;
            const bool first = firstCounters.try_emplace(pid, ContinuityOf(packet)).second;
            Demand(turn == 0 || !first ||
                       ContinuityOf(packet) == ((lastCounters[pid] + (HasPayload(packet) ? 1 : 0)) & 0x0f),
                   "a counter goes on at the seam");
            lastCounters[pid] = ContinuityOf(packet);
        });
        restamper.TurnAround();
    }
}

}  // namespace television::fuzz
