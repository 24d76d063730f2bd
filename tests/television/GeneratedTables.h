// A multiplex whose tables and descriptors the generators of libdvbpsi write.
#pragma once

#include "tests/television/Packets.h"

namespace television::test::generated {

constexpr std::uint16_t kTsid = 0x0101, kOnid = 0x2114, kNid = 0x3001;
constexpr std::uint16_t kFilmSid = 28106, kRadioSid = 28400, kFilmMapPid = 0x0064, kRadioMapPid = 0x0065;
constexpr std::uint16_t kVideoPid = 0x0165, kGermanPid = 0x0166, kDescribedPid = 0x0167, kSubtitlePid = 0x0168,
                        kTeletextPid = 0x0169, kRadioPid = 0x0201, kCaSystemId = 0x0b00;
constexpr std::uint32_t kFrequency = 50'600'000;  // in 10 Hz
constexpr std::int64_t kPresentStart = 1'700'049'600, kPresentDuration = 5'400, kFollowingDuration = 900;

// Each table once, without sound or pictures.
Packets Multiplex();

}  // namespace television::test::generated
