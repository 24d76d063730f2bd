// Packets as they come, in front of everything that looks into them.
#include <algorithm>
#include <array>
#include <memory>

#include "television/stream/RandomAccess.h"
#include "television/stream/Renumbering.h"
#include "television/stream/ScramblingWatch.h"
#include "television/stream/StreamClock.h"
#include "television/stream/StreamTypes.h"
#include "television/tables/SectionCollector.h"
#include "television/tables/TableReader.h"
#include "tests/fuzz/Chunks.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {
namespace {

using Copy = std::array<std::uint8_t, kPacketSize>;

void DemandTimesCanBeSet(const std::uint8_t* packet) {
    constexpr std::int64_t kTime = 0x123456789 & (kTimeWrap - 1), kClock = kTime * 300 + 299;
    Copy copy;
    std::copy_n(packet, kPacketSize, copy.begin());
    const PesTimes before = TimesOf(packet);
    const bool hadClock = ClockOf(packet).has_value();
    SetTimes(copy.data(), {kTime, kTime - 1});
    const PesTimes after = TimesOf(copy.data());
    Demand(before.presentation.has_value() == after.presentation.has_value() &&
               before.decoding.has_value() == after.decoding.has_value(),
           "a packet keeps having the times that it has");
    Demand(!after.presentation || *after.presentation == kTime, "a presentation time that is set is there");
    Demand(!after.decoding || *after.decoding == kTime - 1, "a decoding time that is set is there");
    SetClock(copy.data(), kClock);
    Demand(hadClock == ClockOf(copy.data()).has_value(), "a packet keeps having the clock that it has");
    Demand(!hadClock || ClockOf(copy.data()) == kClock, "a clock that is set is there");
}

void LookInto(const std::uint8_t* packet) {
    const auto payload = PayloadOf(packet);
    Demand(payload.empty() || (payload.data() > packet && payload.data() + payload.size() == packet + kPacketSize),
           "a payload is the end of its packet");
    for (const std::uint8_t type : {kMpeg2Video, kH264Video, kH265Video, kAacAudio}) BeginsRandomAccess(packet, type);
    DemandTimesCanBeSet(packet);
}

// Numbers the packets of the first one's PID anew.
class Numbering {
public:
    void Push(const std::uint8_t* packet) {
        if (!m_pid) m_pid = PidOf(packet);
        Copy copy;
        std::copy_n(packet, kPacketSize, copy.begin());
        m_renumbering.Apply(*m_pid, copy);
        if (PidOf(packet) != *m_pid)
            return Demand(std::equal(copy.begin(), copy.end(), packet), "packets of other PIDs stay as they are");
        const std::uint8_t number = ContinuityOf(copy.data());
        Demand(!m_last || number == *m_last || (HasPayload(packet) && number == ((*m_last + 1) & 0x0f)),
               "numbers have no gap");
        m_last = number;
    }

private:
    Renumbering m_renumbering;
    std::optional<std::uint16_t> m_pid;
    std::optional<std::uint8_t> m_last;
};

}  // namespace

void Fuzz(std::span<const std::uint8_t> input) {
    TableReader reader([](const Tables&) {});
    SectionCollector collector;
    StreamClock clock;
    Numbering numbering;
    const auto watch = std::make_unique<ScramblingWatch>();
    ForEachPacket(input, [&](const std::uint8_t* packet) {
        LookInto(packet);
        reader.Push(packet);
        collector.Push(packet, [](const Section& section) {
            Demand(section.body.size() <= 4096, "a section has no more than 4 KiB");
        });
        numbering.Push(packet);
        watch->Push(packet);
        const std::int64_t before = clock.Now();
        clock.Observe(packet);
        Demand(clock.Now() >= before, "time does not go back");
    });
}

}  // namespace television::fuzz
