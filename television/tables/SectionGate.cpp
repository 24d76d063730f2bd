// Which sections pass, and their packets.
#include "television/tables/SectionGate.h"

#include <algorithm>
#include <array>

#include "television/events/FieldReader.h"
#include "television/stream/TransportPacket.h"

namespace television {
namespace {

constexpr std::uint8_t kPat = 0x00, kPmt = 0x02, kNit = 0x40, kNitOther = 0x41, kSdt = 0x42, kSdtOther = 0x46;
constexpr std::uint8_t kFirstEit = 0x4e, kLastEit = 0x6f;
// libdvbpsi finds subtables, services and programmes by walking along them: so many are no burden. No network has
// tables of more sections, and none so many subtables of one kind.
constexpr unsigned kLastSection = 40;
constexpr std::size_t kMostSubtables = 1024;

FieldReader::Bytes TakeLoop(FieldReader& fields) { return fields.Take(fields.Take16() & 0x0fff); }

// Entries that end in the length of a loop and the loop. What is less than an entry may follow.
bool EntriesHold(FieldReader fields, std::size_t header) {
    while (fields.Rest().size() >= header) {
        fields.Take(header - 2);
        TakeLoop(fields);
    }
    return fields.IsValid();
}

bool DescriptorsHold(FieldReader fields) {
    while (!fields.Rest().empty()) {
        fields.Take8();
        fields.TakeCounted8();
    }
    return fields.IsValid();
}

bool NetworkHolds(FieldReader fields) {
    const FieldReader network(TakeLoop(fields)), streams(TakeLoop(fields));
    return fields.IsValid() && DescriptorsHold(network) && EntriesHold(streams, 6);
}

bool MapHolds(FieldReader fields) {
    fields.Take16();
    TakeLoop(fields);
    return fields.IsValid() && EntriesHold(fields, 5);
}

bool DescriptionHolds(FieldReader fields) {
    fields.Take(3);
    return fields.IsValid() && EntriesHold(fields, 5);
}

bool EventsHold(FieldReader fields) {
    fields.Take(6);
    while (fields.IsValid() && !fields.Rest().empty()) {
        fields.Take(10);
        TakeLoop(fields);
    }
    return fields.IsValid();
}

}  // namespace

bool LengthsHold(const Section& section) {
    const FieldReader fields(section.body);
    if (section.table >= kFirstEit && section.table <= kLastEit) return EventsHold(fields);
    switch (section.table) {
        case kPat:
            return section.body.size() % 4 == 0;
        case kPmt:
            return MapHolds(fields);
        case kNit:
        case kNitOther:
            return NetworkHolds(fields);
        case kSdt:
        case kSdtOther:
            return DescriptionHolds(fields);
        default:
            return true;
    }
}

bool SectionGate::Passes(const Section& section) {
    if (section.last > kLastSection || section.number > section.last || !LengthsHold(section)) return false;
    const std::uint32_t subtable = std::uint32_t{section.table} << 16 | section.extension;
    if (m_subtables.size() >= kMostSubtables && !m_subtables.contains(subtable)) return false;
    m_subtables.insert(subtable);
    return true;
}

// A gap in the count is passed on: what comes behind it may be another stream's, and is decoded whatever its version.
void SectionGate::Push(const std::uint8_t* packet, const Use& use) {
    m_collector.Push(packet, [&](const Section& section) {
        if (!Passes(section)) return;
        if (m_gaps != m_collector.Gaps()) ++m_continuity;
        m_gaps = m_collector.Gaps();
        Cut(section.whole, use);
    });
}

void SectionGate::Cut(std::span<const std::uint8_t> section, const Use& use) {
    for (bool first = true; !section.empty(); first = false) {
        std::array<std::uint8_t, kPacketSize> packet;
        packet.fill(0xff);
        std::size_t at = 4;
        packet[0] = kSyncByte;
        packet[1] = first ? 0x40 : 0;
        packet[2] = 0;
        packet[3] = 0x10;
        SetContinuity(packet.data(), m_continuity++);
        if (first) packet[at++] = 0;  // the section begins at once
        const std::size_t count = std::min(kPacketSize - at, section.size());
        std::copy_n(section.begin(), count, packet.begin() + static_cast<std::ptrdiff_t>(at));
        section = section.subspan(count);
        use(packet.data());
    }
}

}  // namespace television
