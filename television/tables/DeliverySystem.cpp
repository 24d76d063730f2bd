// The fields of delivery system descriptors that tell one transport stream from another.
#include "television/tables/DeliverySystem.h"

#include <algorithm>
#include <span>
#include <utility>

#include "television/tables/DescriptorTags.h"

namespace television {
namespace {

constexpr std::size_t kHeader = 2;
constexpr int kDvbC = 10, kDvbS = 11, kDvbT = 12, kDvbSiDirect = 13, kDvbC2 = 14, kDvbS2 = 15, kDvbT2 = 16;

std::uint32_t Read(std::span<const std::uint8_t> bytes) {
    std::uint32_t value = 0;
    for (const std::uint8_t byte : bytes) value = value << 8 | byte;
    return value;
}

bool IsBcd(std::uint32_t value) {
    for (; value != 0; value >>= 4)
        if ((value & 0x0f) > 9) return false;
    return true;
}

using Body = std::span<const std::uint8_t>;

bool ReadTerrestrial(Body body, DeliverySystem& system) {
    if (body.size() != 11) return false;
    system.frequencies = {Read(body.first(4))};
    return true;
}

bool ReadCable(Body body, DeliverySystem& system) {
    return ReadTerrestrial(body, system) && IsBcd(*system.frequencies.begin());
}

// Position (16 bits), east or west (1) and polarization (2); the rest of that byte is modulation.
bool ReadSatellite(Body body, DeliverySystem& system) {
    if (!ReadCable(body, system)) return false;
    system.place = Read(body.subspan(4, 3)) & 0xffffe0;
    return IsBcd(system.place >> 8);
}

// The frequencies of DVB-T2's cells: with time-frequency slicing several of each, and transposers beside them.
bool ReadCells(Body rest, bool sliced, DeliverySystem& system) {
    while (!rest.empty()) {
        if (rest.size() < 3) return false;
        const std::size_t length = sliced ? rest[2] : 4, head = sliced ? 3 : 2;
        if (length % 4 != 0 || rest.size() < head + length + 1) return false;
        for (std::size_t at = head; at < head + length; at += 4) system.frequencies.insert(Read(rest.subspan(at, 4)));
        const std::size_t transposers = rest[head + length];
        if (transposers % 5 != 0 || rest.size() < head + length + 1 + transposers) return false;
        for (std::size_t at = head + length + 1; at < head + length + 1 + transposers; at += 5)
            system.frequencies.insert(Read(rest.subspan(at + 1, 4)));
        rest = rest.subspan(head + length + 1 + transposers);
    }
    return true;
}

// ETSI EN 300 468, clause 6.4.6.3: it may end behind the system's id.
bool ReadT2(Body body, DeliverySystem& system) {
    if (body.size() < 4) return false;
    system.place = Read(body.subspan(1, 3));
    if (body.size() == 4) return true;
    return body.size() >= 6 && ReadCells(body.subspan(6), body[5] & 1, system);
}

// ETSI EN 300 468, clause 6.4.6.1.
bool ReadC2(Body body, DeliverySystem& system) {
    if (body.size() != 8) return false;
    system.place = Read(body.subspan(1, 2));
    system.frequencies = {Read(body.subspan(3, 4))};
    return true;
}

struct Kind {
    std::uint8_t tag, extension;
    int codingType;  // of the frequency_list_descriptor, 0 for none
    bool (*read)(Body, DeliverySystem&);
};
constexpr Kind kKinds[] = {{kTerrestrialDeliveryTag, 0, 3, ReadTerrestrial},
                           {kCableDeliveryTag, 0, 2, ReadCable},
                           {kSatelliteDeliveryTag, 0, 1, ReadSatellite},
                           {kExtensionTag, kT2DeliveryExtension, 0, ReadT2},
                           {kExtensionTag, kC2DeliveryExtension, 0, ReadC2}};

const Kind* FindKind(std::uint8_t tag, Body body) {
    const std::uint8_t extension = tag == kExtensionTag && !body.empty() ? body[0] : 0;
    const auto found = std::find_if(std::begin(kKinds), std::end(kKinds), [=](const Kind& kind) {
        return kind.tag == tag && kind.extension == extension;
    });
    return found == std::end(kKinds) ? nullptr : found;
}

DsdFault Parse(std::uint8_t tag, Body body, DeliverySystem& system) {
    const Kind* kind = FindKind(tag, body);
    if (!kind) return DsdFault::Unsupported;
    DeliverySystem read{.tag = tag, .extension = kind->extension};
    if (!kind->read(body, read)) return DsdFault::Malformed;
    system = std::move(read);
    return DsdFault::None;
}

// Other frequencies of the same stream.
void AddFrequencies(const Descriptors& descriptors, DeliverySystem& system) {
    const Kind* kind = FindKind(system.tag, Body(&system.extension, 1));
    for (const Descriptor& descriptor : descriptors) {
        if (descriptor.tag != kFrequencyListTag || descriptor.data.empty()) continue;
        if ((descriptor.data[0] & 3) != kind->codingType) continue;
        for (std::size_t at = 1; at + 4 <= descriptor.data.size(); at += 4)
            system.frequencies.insert(Read(Body(descriptor.data).subspan(at, 4)));
    }
}

const Descriptor* FindExtension(const Descriptors& descriptors, std::uint8_t extension) {
    const auto found = std::find_if(descriptors.begin(), descriptors.end(), [extension](const Descriptor& descriptor) {
        return descriptor.tag == kExtensionTag && !descriptor.data.empty() && descriptor.data[0] == extension;
    });
    return found == descriptors.end() ? nullptr : &*found;
}

}  // namespace

bool SameKind(const DeliverySystem& a, const DeliverySystem& b) {
    return a.tag == b.tag && a.extension == b.extension;
}

bool SameStream(const DeliverySystem& a, const DeliverySystem& b) {
    if (!SameKind(a, b) || a.place != b.place) return false;
    return a.frequencies.empty() || b.frequencies.empty() ||
           std::any_of(a.frequencies.begin(), a.frequencies.end(),
                       [&](std::uint32_t frequency) { return b.frequencies.contains(frequency); });
}

DsdFault ParseDeliverySystem(const std::string& descriptor, DeliverySystem& system) {
    const Body bytes(reinterpret_cast<const std::uint8_t*>(descriptor.data()), descriptor.size());
    if (bytes.size() < kHeader || bytes.size() - kHeader != bytes[1]) return DsdFault::Malformed;
    return Parse(bytes[0], bytes.subspan(kHeader), system);
}

std::vector<DeliverySystem> ListDeliverySystems(const Descriptors& descriptors) {
    std::vector<DeliverySystem> systems;
    for (const Descriptor& descriptor : descriptors) {
        DeliverySystem system;
        if (Parse(descriptor.tag, descriptor.data, system) != DsdFault::None) continue;
        AddFrequencies(descriptors, system);
        systems.push_back(std::move(system));
    }
    return systems;
}

const Descriptor* FindDeliverySystem(const Descriptors& descriptors) {
    for (const std::uint8_t tag : {kTerrestrialDeliveryTag, kCableDeliveryTag, kSatelliteDeliveryTag})
        if (const Descriptor* found = Find(descriptors, tag)) return found;
    for (const std::uint8_t extension : {kT2DeliveryExtension, kC2DeliveryExtension})
        if (const Descriptor* found = FindExtension(descriptors, extension)) return found;
    return nullptr;
}

int IdTypeOf(const Descriptors& descriptors) {
    if (FindExtension(descriptors, kT2DeliveryExtension)) return kDvbT2;
    if (FindExtension(descriptors, kC2DeliveryExtension)) return kDvbC2;
    if (Find(descriptors, kSatelliteS2DeliveryTag)) return kDvbS2;
    if (Find(descriptors, kTerrestrialDeliveryTag)) return kDvbT;
    if (Find(descriptors, kCableDeliveryTag)) return kDvbC;
    return Find(descriptors, kSatelliteDeliveryTag) ? kDvbS : kDvbSiDirect;
}

}  // namespace television
