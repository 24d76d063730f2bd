// Writes sections of service information and cuts them into packets.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "television/stream/TransportPacket.h"

namespace television::demonstration {

// Bytes with numbers in network order.
class Bytes {
public:
    Bytes& Put8(unsigned value);
    Bytes& Put16(unsigned value);
    Bytes& Put32(std::uint32_t value);
    Bytes& Put40(std::uint64_t value);
    Bytes& Put(const Bytes& bytes);
    Bytes& Put(std::string_view characters);
    // A text with its length before it; what is not ASCII is marked as UTF-8 (ETSI EN 300 468, annex A).
    Bytes& PutText(std::string_view utf8);
    // A descriptor.
    Bytes& PutDescriptor(unsigned tag, const Bytes& body);
    // 12 bits of length under four bits that are set, and the bytes: a loop of descriptors or entries.
    Bytes& PutLoop(const Bytes& loop);

    const std::vector<std::uint8_t>& Data() const { return m_data; }
    std::size_t Size() const { return m_data.size(); }

private:
    std::vector<std::uint8_t> m_data;
};

using Section = std::vector<std::uint8_t>;

// What stands in a section's header.
struct SectionHeader {
    unsigned table = 0;
    unsigned extension = 0;
    unsigned version = 0;
    unsigned number = 0, last = 0;
};

// A section in the long form, with its CRC; `body` stands between the header and the CRC.
Section MakeSection(const SectionHeader& header, const Bytes& body);
// A section in the short form, which has no version and no CRC.
Section MakeShortSection(unsigned table, const Bytes& body);

// Appends a section to `packets`, in packets of its own. `continuity` is the PID's counter.
void Packetize(const Section& section, std::uint16_t pid, std::uint8_t& continuity, std::vector<std::uint8_t>& packets);

}  // namespace television::demonstration
