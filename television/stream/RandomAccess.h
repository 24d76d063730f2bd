// Where decoding of a video stream can begin.
#pragma once

#include <cstdint>

namespace television {

// True when a picture that needs none before it begins in this packet, which must start a unit of a video PID: it is
// marked so, or a sequence header (MPEG-2) or parameter set (H.264, H.265) begins in it. `streamType` is the PMT's.
// Never in one that is scrambled.
bool BeginsRandomAccess(const std::uint8_t* packet, std::uint8_t streamType);

}  // namespace television
