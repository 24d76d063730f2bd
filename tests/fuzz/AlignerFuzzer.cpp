// The search for packets: each one begins with its sync byte, and how the bytes come does not matter.
#include "television/stream/PacketAligner.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Align(std::span<const std::uint8_t> bytes, std::size_t piece) {
    PacketAligner aligner;
    Bytes packets;
    while (!bytes.empty()) {
        const auto taken = bytes.first(std::min(piece, bytes.size()));
        const Bytes copy(taken.begin(), taken.end());
        aligner.Push(copy, packets);
        bytes = bytes.subspan(taken.size());
    }
    return packets;
}

}  // namespace

// The first byte says in what pieces the others come.
void Fuzz(std::span<const std::uint8_t> input) {
    if (input.empty()) return;
    const auto bytes = input.subspan(1);
    const Bytes packets = Align(bytes, 1u + input[0]);
    Demand(packets.size() % kPacketSize == 0 && packets.size() <= bytes.size(), "whole packets come out");
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize)
        Demand(packets[at] == kSyncByte, "packets begin with a sync byte");
    Demand(Align(bytes, bytes.size() + 1) == packets, "it does not matter how the bytes come");
}

}  // namespace television::fuzz
