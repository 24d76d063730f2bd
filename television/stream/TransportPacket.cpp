// The fields of a packet, its adaptation field and a PES header (ISO/IEC 13818-1, clauses 2.4.3.2 to 2.4.3.7).
#include "television/stream/TransportPacket.h"

#include <algorithm>

namespace television {
namespace {

constexpr std::size_t kHeader = 4;
constexpr std::uint8_t kClockFlag = 0x10, kRandomAccessFlag = 0x40;
constexpr std::size_t kClockBytes = 7;  // the flags and the clock reference

// The adaptation field without its length byte; empty when there is none or it overruns the packet.
std::span<const std::uint8_t> AdaptationOf(const std::uint8_t* packet) {
    if (!HasAdaptation(packet) || kHeader + 1 + packet[kHeader] > kPacketSize) return {};
    return {packet + kHeader + 1, packet[kHeader]};
}

bool CarriesClock(std::span<const std::uint8_t> adaptation) {
    return adaptation.size() >= kClockBytes && (adaptation[0] & kClockFlag);
}

std::int64_t ReadTime(const std::uint8_t* p) {
    return std::int64_t{(p[0] >> 1) & 7} << 30 | std::int64_t{p[1]} << 22 | std::int64_t{p[2] >> 1} << 15 |
           std::int64_t{p[3]} << 7 | p[4] >> 1;
}

void WriteTime(std::uint8_t* p, std::int64_t time) {
    p[0] = static_cast<std::uint8_t>((p[0] & 0xf1) | (time >> 29 & 0x0e));
    p[1] = static_cast<std::uint8_t>(time >> 22);
    p[2] = static_cast<std::uint8_t>((time >> 14 & 0xfe) | 1);
    p[3] = static_cast<std::uint8_t>(time >> 7);
    p[4] = static_cast<std::uint8_t>((time << 1 & 0xfe) | 1);
}

// Streams without the optional PES header: program map, private 2, ECM, EMM, DSM-CC, directory, padding, H.222.1 E.
bool HasOptionalHeader(std::uint8_t streamId) {
    constexpr std::uint8_t without[] = {0xbc, 0xbe, 0xbf, 0xf0, 0xf1, 0xf2, 0xf8, 0xff};
    return std::find(std::begin(without), std::end(without), streamId) == std::end(without);
}

// Where the two times of a PES header stand; null where one is missing.
struct TimePlaces {
    const std::uint8_t* presentation = nullptr;
    const std::uint8_t* decoding = nullptr;
};

TimePlaces FindTimes(const std::uint8_t* packet) {
    const auto payload = PayloadOf(packet);
    if (!StartsUnit(packet) || IsScrambled(packet) || payload.size() < 14) return {};
    if (payload[0] != 0 || payload[1] != 0 || payload[2] != 1 || !HasOptionalHeader(payload[3])) return {};
    if ((payload[6] & 0xc0) != 0x80) return {};
    const bool both = (payload[7] & 0xc0) == 0xc0 && payload.size() >= 19 && payload[8] >= 10;
    const bool one = (payload[7] & 0x80) && payload[8] >= 5;
    return {one ? payload.data() + 9 : nullptr, both ? payload.data() + 14 : nullptr};
}

}  // namespace

std::span<const std::uint8_t> PayloadOf(const std::uint8_t* packet) {
    std::size_t start = kHeader;
    if (HasAdaptation(packet)) start += 1 + packet[kHeader];
    if (!HasPayload(packet) || start >= kPacketSize) return {};
    return {packet + start, kPacketSize - start};
}

bool IsRandomAccess(const std::uint8_t* packet) {
    const auto adaptation = AdaptationOf(packet);
    return !adaptation.empty() && (adaptation[0] & kRandomAccessFlag);
}

std::optional<std::int64_t> ClockOf(const std::uint8_t* packet) {
    const auto adaptation = AdaptationOf(packet);
    if (!CarriesClock(adaptation)) return std::nullopt;
    const auto* p = adaptation.data() + 1;
    const std::int64_t base = std::int64_t{p[0]} << 25 | p[1] << 17 | p[2] << 9 | p[3] << 1 | p[4] >> 7;
    return base * 300 + ((p[4] & 1) << 8 | p[5]);
}

void SetClock(std::uint8_t* packet, std::int64_t clock) {
    if (!CarriesClock(AdaptationOf(packet))) return;
    auto* p = packet + kHeader + 2;
    const std::int64_t base = clock / 300, extension = clock % 300;
    p[0] = static_cast<std::uint8_t>(base >> 25);
    p[1] = static_cast<std::uint8_t>(base >> 17);
    p[2] = static_cast<std::uint8_t>(base >> 9);
    p[3] = static_cast<std::uint8_t>(base >> 1);
    p[4] = static_cast<std::uint8_t>((base & 1) << 7 | 0x7e | extension >> 8);
    p[5] = static_cast<std::uint8_t>(extension);
}

PesTimes TimesOf(const std::uint8_t* packet) {
    const TimePlaces places = FindTimes(packet);
    PesTimes times;
    if (places.presentation) times.presentation = ReadTime(places.presentation);
    if (places.decoding) times.decoding = ReadTime(places.decoding);
    return times;
}

void SetTimes(std::uint8_t* packet, const PesTimes& times) {
    const TimePlaces places = FindTimes(packet);
    if (places.presentation && times.presentation)
        WriteTime(packet + (places.presentation - packet), *times.presentation);
    if (places.decoding && times.decoding) WriteTime(packet + (places.decoding - packet), *times.decoding);
}

void MakeNullPacket(std::uint8_t* packet) {
    std::fill_n(packet, kPacketSize, std::uint8_t{0xff});
    packet[0] = kSyncByte;
    packet[1] = kNullPid >> 8;
    packet[2] = kNullPid & 0xff;
    packet[3] = 0x10;
}

std::int64_t Wrapped(std::int64_t value, std::int64_t wrap) {
    const std::int64_t rest = value % wrap;
    return rest < 0 ? rest + wrap : rest;
}

std::int64_t WrappedDifference(std::int64_t later, std::int64_t earlier, std::int64_t wrap) {
    const std::int64_t difference = Wrapped(later - earlier, wrap);
    return difference > wrap / 2 ? difference - wrap : difference;
}

}  // namespace television
