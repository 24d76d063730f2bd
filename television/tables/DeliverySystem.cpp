// The fields of delivery system descriptors that tell one transport stream from another.
#include "television/tables/DeliverySystem.h"

#include <algorithm>

#include "television/tables/DescriptorTags.h"
#include "television/tables/DvbTime.h"

namespace television {
namespace {

constexpr std::size_t kHeader = 2;
constexpr std::size_t kBodyLength = 11;  // of all three kinds
constexpr int kDvbC = 10, kDvbS = 11, kDvbT = 12, kDvbSiDirect = 13, kDvbC2 = 14, kDvbS2 = 15, kDvbT2 = 16;

std::uint32_t Read32(const std::string& bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = at; i < at + 4; ++i) value = value << 8 | static_cast<std::uint8_t>(bytes[i]);
    return value;
}

bool IsBcd(std::uint32_t value) {
    for (; value != 0; value >>= 4)
        if ((value & 0x0f) > 9) return false;
    return true;
}

bool IsKnown(std::uint8_t tag) {
    return tag == kCableDeliveryTag || tag == kSatelliteDeliveryTag || tag == kTerrestrialDeliveryTag;
}

const Descriptor* FindExtension(const Descriptors& descriptors, std::uint8_t extension) {
    const auto found = std::find_if(descriptors.begin(), descriptors.end(), [extension](const Descriptor& descriptor) {
        return descriptor.tag == kExtensionTag && !descriptor.data.empty() && descriptor.data[0] == extension;
    });
    return found == descriptors.end() ? nullptr : &*found;
}

}  // namespace

DsdFault ParseDeliverySystem(const std::string& descriptor, DeliverySystem& system) {
    if (descriptor.size() < kHeader || descriptor.size() - kHeader != static_cast<std::uint8_t>(descriptor[1]))
        return DsdFault::Malformed;
    const auto tag = static_cast<std::uint8_t>(descriptor[0]);
    if (!IsKnown(tag)) return DsdFault::Unsupported;
    if (descriptor.size() - kHeader != kBodyLength) return DsdFault::Malformed;
    const std::uint32_t frequency = Read32(descriptor, kHeader);
    if (tag == kTerrestrialDeliveryTag) {
        system = {tag, frequency, 0};
        return DsdFault::None;
    }
    if (!IsBcd(frequency)) return DsdFault::Malformed;
    // A satellite's position (16 bits), side (1) and polarization (2); the rest of that byte is modulation.
    const std::uint32_t orbit = tag == kSatelliteDeliveryTag ? Read32(descriptor, kHeader + 4) >> 8 & 0xffffe0 : 0;
    system = {tag, FromBcd(frequency, 8), orbit};
    return DsdFault::None;
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
