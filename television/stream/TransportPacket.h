// One packet of an MPEG transport stream (ISO/IEC 13818-1, clause 2.4.3): what is read from it and written to it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace television {

inline constexpr std::size_t kPacketSize = 188;
inline constexpr std::uint8_t kSyncByte = 0x47;
inline constexpr std::uint16_t kNullPid = 0x1fff;
inline constexpr std::size_t kPids = 0x2000;

// Programme clock references count 27 MHz, presentation and decoding times 90 kHz; both wrap after 26.5 hours.
inline constexpr std::int64_t kClockRate = 27'000'000;
inline constexpr std::int64_t kTimeWrap = std::int64_t{1} << 33;
inline constexpr std::int64_t kClockWrap = kTimeWrap * 300;

// All take the packet's 188 bytes.
inline std::uint16_t PidOf(const std::uint8_t* packet) {
    return static_cast<std::uint16_t>((packet[1] & 0x1f) << 8 | packet[2]);
}
inline bool StartsUnit(const std::uint8_t* packet) { return packet[1] & 0x40; }
inline bool HasAdaptation(const std::uint8_t* packet) { return packet[3] & 0x20; }
inline bool HasPayload(const std::uint8_t* packet) { return packet[3] & 0x10; }
inline bool IsScrambled(const std::uint8_t* packet) { return packet[3] & 0xc0; }
inline std::uint8_t ContinuityOf(const std::uint8_t* packet) { return packet[3] & 0x0f; }
inline void SetContinuity(std::uint8_t* packet, unsigned counter) {
    packet[3] = static_cast<std::uint8_t>((packet[3] & 0xf0) | (counter & 0x0f));
}

// The bytes behind the header and the adaptation field; empty when there are none or the lengths are wrong.
std::span<const std::uint8_t> PayloadOf(const std::uint8_t* packet);
bool IsRandomAccess(const std::uint8_t* packet);
std::optional<std::int64_t> ClockOf(const std::uint8_t* packet);
void SetClock(std::uint8_t* packet, std::int64_t clock);

// The times in the PES header that begins in this packet, in 90 kHz.
struct PesTimes {
    std::optional<std::int64_t> presentation, decoding;
};
PesTimes TimesOf(const std::uint8_t* packet);
void SetTimes(std::uint8_t* packet, const PesTimes& times);

// Makes a packet that carries nothing.
void MakeNullPacket(std::uint8_t* packet);

// Brings a difference of clocks into -wrap/2 .. wrap/2, and a clock into 0 .. wrap.
std::int64_t WrappedDifference(std::int64_t later, std::int64_t earlier, std::int64_t wrap);
std::int64_t Wrapped(std::int64_t value, std::int64_t wrap);

}  // namespace television
