// The stream types of a PMT that the television knows (ISO/IEC 13818-1, table 2-34).
#pragma once

#include <cstdint>

namespace television {

enum StreamType : std::uint8_t {
    kMpeg1Video = 0x01,
    kMpeg2Video = 0x02,
    kMpeg1Audio = 0x03,
    kMpeg2Audio = 0x04,
    kPrivateData = 0x06,  // told apart by its descriptors
    kStreamDescriptors = 0x0c,  // stream events (ISO/IEC 13818-6)
    kAacAudio = 0x0f,
    kLatmAudio = 0x11,
    kH264Video = 0x1b,
    kH265Video = 0x24,
};

}  // namespace television
