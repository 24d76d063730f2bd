// The start codes with which a sequence of pictures begins.
#include "television/stream/RandomAccess.h"

#include "television/stream/StreamTypes.h"
#include "television/stream/TransportPacket.h"

namespace television {
namespace {

// The byte behind a start code.
bool IsBeginning(std::uint8_t code, std::uint8_t streamType) {
    constexpr std::uint8_t kSequenceHeader = 0xb3, kH264ParameterSet = 7, kH265VideoSet = 32, kH265SequenceSet = 33;
    switch (streamType) {
        case kMpeg1Video:
        case kMpeg2Video:
            return code == kSequenceHeader;
        case kH264Video:
            return (code & 0x1f) == kH264ParameterSet;
        case kH265Video:
            return code >> 1 == kH265VideoSet || code >> 1 == kH265SequenceSet;
        default:
            return false;
    }
}

}  // namespace

bool BeginsRandomAccess(const std::uint8_t* packet, std::uint8_t streamType) {
    if (IsScrambled(packet)) return false;
    if (IsRandomAccess(packet)) return true;
    const auto payload = PayloadOf(packet);
    if (!StartsUnit(packet) || payload.size() < 9) return false;
    constexpr std::size_t kFixedHeader = 9;
    for (std::size_t at = kFixedHeader + payload[8]; at + 3 < payload.size(); ++at)
        if (payload[at] == 0 && payload[at + 1] == 0 && payload[at + 2] == 1 &&
            IsBeginning(payload[at + 3], streamType))
            return true;
    return false;
}

}  // namespace television
