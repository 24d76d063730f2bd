// Packets and streams made for a test.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "television/demonstration/DemonstrationTables.h"
#include "television/stream/TransportPacket.h"

namespace television::test {

using Packets = std::vector<std::uint8_t>;

struct PacketShape {
    std::uint16_t pid = 0x100;
    unsigned continuity = 0;
    bool startsUnit = false;
    bool randomAccess = false;
    std::optional<std::int64_t> clock = {};         // 27 MHz
    std::optional<std::int64_t> presentation = {};  // 90 kHz; begins a PES packet
    std::optional<std::int64_t> decoding = {};
    std::vector<std::uint8_t> payload = {};  // behind the PES header, where there is one
};

Packets MakePacket(const PacketShape& shape);
void Append(Packets& packets, const Packets& more);
std::size_t Count(const Packets& packets);
// The packets of one PID.
std::vector<const std::uint8_t*> OfPid(const Packets& packets, std::uint16_t pid);

// A file that is removed with the object.
class TemporaryFile {
public:
    explicit TemporaryFile(std::span<const std::uint8_t> content);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    const std::string& Path() const { return m_path; }

private:
    std::string m_path;
};

// The demonstration's audio and video with other tables, or with none.
Packets DemonstrationWith(const std::vector<demonstration::RepeatedTable>& tables);
// The PIDs on which the demonstration's file brings tables of its own.
const std::set<std::uint16_t>& TablePidsOfDemonstration();

}  // namespace television::test
