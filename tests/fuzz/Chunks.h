// Several pieces in one input: each with a number and its length before it, all of them in network order.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "television/stream/TransportPacket.h"

namespace television::fuzz {

using Bytes = std::vector<std::uint8_t>;

struct Chunk {
    std::uint16_t number = 0;
    Bytes bytes;
};

// The last one may be cut. No more than a hundred, to keep a fuzzer fast.
std::vector<Chunk> Split(std::span<const std::uint8_t> input);
Bytes Join(const std::vector<Chunk>& chunks);

// A section of these bytes with the length and the CRC that it must have: what a fuzzer cannot guess. Nothing when they
// are fewer than a header.
std::optional<Bytes> Completed(Bytes section);
// The other way round, for seeds.
Bytes WithoutCrc(Bytes section);

// Calls `use` with whole packets, each in memory of its own, so that a byte read behind it shows.
template <class Use>
void ForEachPacket(std::span<const std::uint8_t> bytes, const Use& use) {
    for (; bytes.size() >= kPacketSize; bytes = bytes.subspan(kPacketSize)) {
        Bytes packet(bytes.begin(), bytes.begin() + kPacketSize);
        packet[0] = kSyncByte;
        use(packet.data());
    }
}

}  // namespace television::fuzz
