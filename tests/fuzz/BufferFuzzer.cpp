// The last seconds of the stream: whoever joins gets whole packets of the service alone, and none twice.
#include "television/stream/StreamBuffer.h"
#include "television/stream/StreamTypes.h"
#include "tests/fuzz/Chunks.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {
namespace {

ServiceSelection SelectionBy(std::uint8_t byte) {
    ServiceSelection selection;
    selection.tablePid = 0x100;
    selection.accessPid = 0x101;
    selection.accessType = byte & 1 ? kH264Video : kMpeg2Video;
    selection.accessAnywhere = byte & 2;
    selection.pids = {0x101, 0x102};
    return selection;
}

void DemandSelected(const Bytes& packets, const ServiceSelection& selection) {
    Demand(packets.size() % kPacketSize == 0, "whole packets are fed");
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize) {
        const std::uint16_t pid = PidOf(packets.data() + at);
        Demand(pid == 0 || pid == selection.tablePid || selection.pids.contains(pid), "only what was selected is fed");
    }
}

}  // namespace

// Chunks are batches of packets at a time; a chunk of less than a packet is a channel change.
void Fuzz(std::span<const std::uint8_t> input) {
    StreamBuffer buffer;
    std::size_t written = 0, fed = 0;
    for (const auto& [number, bytes] : Split(input)) {
        if (bytes.size() < kPacketSize) {
            const auto selection = SelectionBy(bytes.empty() ? 0 : bytes[0]);
            fed = 0;
            buffer.Attach(selection, [&fed, selection](Bytes&& packets) {
                DemandSelected(packets, selection);
                fed += packets.size();
            });
            Demand(fed <= 2 * written, "no more is fed than was kept, and its tables before it");
            continue;
        }
        Bytes packets(bytes.begin(), bytes.end() - static_cast<std::ptrdiff_t>(bytes.size() % kPacketSize));
        for (std::size_t at = 0; at < packets.size(); at += kPacketSize) packets[at] = kSyncByte;
        buffer.Write(packets, std::int64_t{number} * kClockRate / 100);
        written += packets.size();
    }
    buffer.Detach();
}

}  // namespace television::fuzz
