// Times as service information carries them (ETSI EN 300 468, annex C): a Modified Julian Date and BCD digits.
#pragma once

#include <cstdint>

namespace television {

constexpr std::uint64_t FromBcd(std::uint64_t bcd, unsigned digits) {
    std::uint64_t value = 0;
    for (unsigned digit = digits; digit-- > 0;) value = value * 10 + (bcd >> (4 * digit) & 0x0f);
    return value;
}

constexpr std::uint64_t ToBcd(std::uint64_t value, unsigned digits) {
    std::uint64_t bcd = 0;
    for (unsigned digit = 0; digit < digits; ++digit, value /= 10) bcd |= value % 10 << (4 * digit);
    return bcd;
}

constexpr std::int64_t kModifiedJulianDateOf1970 = 40587;
constexpr std::int64_t kSecondsPerDay = 86400;

// Six BCD digits of hours, minutes and seconds.
constexpr std::int64_t Seconds(std::uint64_t bcd) {
    return static_cast<std::int64_t>(FromBcd(bcd >> 16, 2) * 3600 + FromBcd(bcd >> 8 & 0xff, 2) * 60 +
                                     FromBcd(bcd & 0xff, 2));
}

constexpr std::uint64_t BcdSeconds(std::int64_t seconds) {
    const auto s = static_cast<std::uint64_t>(seconds);
    return ToBcd(s / 3600, 2) << 16 | ToBcd(s / 60 % 60, 2) << 8 | ToBcd(s % 60, 2);
}

// 40 bits: the date in 16, the time of day in 24.
constexpr std::int64_t UnixTime(std::uint64_t dvb) {
    return (static_cast<std::int64_t>(dvb >> 24 & 0xffff) - kModifiedJulianDateOf1970) * kSecondsPerDay +
           Seconds(dvb & 0xffffff);
}

constexpr std::uint64_t DvbTime(std::int64_t unixTime) {
    const auto day = static_cast<std::uint64_t>(unixTime / kSecondsPerDay + kModifiedJulianDateOf1970);
    return (day & 0xffff) << 24 | BcdSeconds(unixTime % kSecondsPerDay);
}

}  // namespace television
