// Packets and streams made for a test.
#include "tests/television/Packets.h"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>

#include "television/demonstration/TableInjector.h"

namespace television::test {
namespace {

Packets Adaptation(const PacketShape& shape) {
    if (!shape.clock && !shape.randomAccess) return {};
    const auto flags = static_cast<std::uint8_t>((shape.randomAccess ? 0x40 : 0) | (shape.clock ? 0x10 : 0));
    Packets field{flags};
    if (shape.clock) field.insert(field.end(), 6, 0);
    field.insert(field.begin(), static_cast<std::uint8_t>(field.size()));
    return field;
}

// A PES header whose times are still to be set.
Packets PesHeader(const PacketShape& shape) {
    if (!shape.presentation) return {};
    const bool both = shape.decoding.has_value();
    const std::uint8_t length = both ? 10 : 5;
    Packets header{0, 0, 1, 0xe0, 0, 0, 0x80, static_cast<std::uint8_t>(both ? 0xc0 : 0x80), length};
    Append(header, both ? Packets{0x31, 0, 1, 0, 1, 0x11, 0, 1, 0, 1} : Packets{0x21, 0, 1, 0, 1});
    return header;
}

}  // namespace

Packets MakePacket(const PacketShape& shape) {
    const Packets adaptation = Adaptation(shape);
    Packets packet{kSyncByte, static_cast<std::uint8_t>((shape.startsUnit ? 0x40 : 0) | shape.pid >> 8),
                   static_cast<std::uint8_t>(shape.pid), static_cast<std::uint8_t>(adaptation.empty() ? 0x10 : 0x30)};
    SetContinuity(packet.data(), shape.continuity);
    Append(packet, adaptation);
    Append(packet, PesHeader(shape));
    Append(packet, shape.payload);
    packet.resize(kPacketSize, 0xff);
    if (shape.clock) SetClock(packet.data(), *shape.clock);
    SetTimes(packet.data(), {shape.presentation, shape.decoding});
    return packet;
}

void Append(Packets& packets, const Packets& more) { packets.insert(packets.end(), more.begin(), more.end()); }

std::size_t Count(const Packets& packets) { return packets.size() / kPacketSize; }

std::vector<const std::uint8_t*> OfPid(const Packets& packets, std::uint16_t pid) {
    std::vector<const std::uint8_t*> found;
    for (std::size_t at = 0; at < packets.size(); at += kPacketSize)
        if (PidOf(packets.data() + at) == pid) found.push_back(packets.data() + at);
    return found;
}

TemporaryFile::TemporaryFile(std::span<const std::uint8_t> content) : m_path("/tmp/television-test-XXXXXX") {
    close(mkstemp(m_path.data()));
    std::ofstream(m_path, std::ios::binary)
        .write(reinterpret_cast<const char*>(content.data()), static_cast<std::streamsize>(content.size()));
}

TemporaryFile::~TemporaryFile() { std::remove(m_path.c_str()); }

const std::set<std::uint16_t>& TablePidsOfDemonstration() {
    static const std::set<std::uint16_t> pids{0x00, 0x11, 0x1100, 0x1101, 0x1102, 0x1103, 0x1104};
    return pids;
}

Packets DemonstrationWith(const std::vector<demonstration::RepeatedTable>& tables) {
    std::ifstream file(DEMONSTRATION_STREAM, std::ios::binary);
    Packets packets{std::istreambuf_iterator<char>(file), {}};
    demonstration::TableInjector(tables, TablePidsOfDemonstration(), [] { return 0; }).Process(packets);
    return packets;
}

}  // namespace television::test
