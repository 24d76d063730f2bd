// The descriptors that the television reads or writes (ETSI EN 300 468, clause 6; ISO/IEC 13818-1, clause 2.6;
// ISO/IEC 13818-6, clause 11.4).
#pragma once

#include <cstdint>

namespace television {

enum DescriptorTag : std::uint8_t {
    kCaTag = 0x09,
    kLanguageTag = 0x0a,
    kAssociationTag = 0x14,
    kDeferredAssociationsTag = 0x15,
    kNetworkNameTag = 0x40,
    kSatelliteDeliveryTag = 0x43,
    kCableDeliveryTag = 0x44,
    kServiceListTag = 0x41,
    kServiceTag = 0x48,
    kShortEventTag = 0x4d,
    kExtendedEventTag = 0x4e,
    kStreamIdentifierTag = 0x52,
    kParentalRatingTag = 0x55,
    kTeletextTag = 0x56,
    kSubtitlingTag = 0x59,
    kTerrestrialDeliveryTag = 0x5a,
    kPrivateDataSpecifierTag = 0x5f,
    kFrequencyListTag = 0x62,
    kAc3Tag = 0x6a,
    kSatelliteS2DeliveryTag = 0x79,
    kEnhancedAc3Tag = 0x7a,
    kDtsTag = 0x7b,
    kAacTag = 0x7c,
    kExtensionTag = 0x7f,
    kLogicalChannelTag = 0x83,
};

// The first byte of an extension descriptor.
enum ExtensionTag : std::uint8_t {
    kT2DeliveryExtension = 0x04,
    kSupplementaryAudioExtension = 0x06,
    kC2DeliveryExtension = 0x0d,
};

// Private data specifiers that decide how private descriptors after them are read (ETSI TS 101 162).
inline constexpr std::uint32_t kSpecifierEacem = 0x00000028;
inline constexpr std::uint32_t kSpecifierNordig = 0x00000029;

}  // namespace television
