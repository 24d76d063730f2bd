// NPT reference descriptors.
#include "television/events/NptReference.h"

#include "television/events/FieldReader.h"
#include "television/events/StreamEventSection.h"
#include "television/stream/TransportPacket.h"

namespace television {
namespace {

constexpr std::uint8_t kReferenceTag = 0x17, kPostDiscontinuity = 0x80;
constexpr std::size_t kReferenceSize = 18, kClockAt = 1, kNptAt = 9, kRateAt = 14, kCrcSize = 4;

using Bytes = std::span<const std::uint8_t>;

// 33 bits, the first of them the last of the first byte.
std::int64_t ReadTime(Bytes bytes) {
    FieldReader fields(bytes);
    const std::int64_t high = fields.Take8() & 1;
    return high << 32 | fields.Take32();
}

void WriteTime(std::uint8_t* bytes, std::int64_t time) {
    bytes[0] = static_cast<std::uint8_t>((bytes[0] & 0xfe) | time >> 32);
    for (int i = 0; i < 4; ++i) bytes[1 + i] = static_cast<std::uint8_t>(time >> (24 - 8 * i));
}

// A reference for after the next discontinuity does not hold yet.
Bytes DescriptorIn(const Section& section) {
    Bytes found;
    if (KindOf(section) != StreamSection::Reference) return found;
    for (const StreamDescriptor& descriptor : DescriptorsIn(section))
        if (descriptor.tag == kReferenceTag && descriptor.data.size() >= kReferenceSize &&
            !(descriptor.data[0] & kPostDiscontinuity))
            found = descriptor.data;
    return found;
}

// The section that begins and ends in this packet; empty when there is none.
Bytes SectionIn(const std::uint8_t* packet) {
    if (!StartsUnit(packet)) return {};
    FieldReader payload(PayloadOf(packet));
    payload.TakeCounted8();  // what the pointer skips
    const Bytes bytes = payload.Rest();
    if (bytes.size() < 3 || bytes[0] != kStreamDescriptorTable) return {};
    const std::size_t size = 3u + ((bytes[1] & 0x0fu) << 8 | bytes[2]);
    return size <= bytes.size() ? bytes.first(size) : Bytes{};
}

}  // namespace

std::optional<NptReference> ReferenceIn(const Section& section) {
    const Bytes descriptor = DescriptorIn(section);
    if (descriptor.empty()) return std::nullopt;
    FieldReader rate(descriptor.subspan(kRateAt));
    NptReference reference{ReadTime(descriptor.subspan(kClockAt)), ReadTime(descriptor.subspan(kNptAt)), 0, 0};
    reference.numerator = rate.Take16();
    reference.denominator = rate.Take16();
    return reference.denominator > 0 ? std::optional(reference) : std::nullopt;
}

void ShiftReference(std::uint8_t* packet, std::int64_t shift) {
    const Bytes bytes = SectionIn(packet);
    const auto section = ReadSection(bytes);
    const Bytes descriptor = section ? DescriptorIn(*section) : Bytes{};
    if (descriptor.empty()) return;
    const auto clock = descriptor.subspan(kClockAt);
    WriteTime(packet + (clock.data() - packet), Wrapped(ReadTime(clock) + shift, kTimeWrap));
    const std::uint32_t crc = SectionCrc(bytes.first(bytes.size() - kCrcSize));
    std::uint8_t* end = packet + (bytes.data() - packet) + bytes.size();
    for (int i = 0; i < 4; ++i) end[i - 4] = static_cast<std::uint8_t>(crc >> (24 - 8 * i));
}

}  // namespace television
