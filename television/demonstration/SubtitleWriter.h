// Writes DVB subtitles (ETSI EN 300 743): pages with one drawing each.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "television/demonstration/PixelFont.h"
#include "television/demonstration/SectionWriter.h"

namespace television::demonstration {

// The colours of a drawing.
enum SubtitleColour : std::uint8_t { kNoColour = 0, kBlackBox = 1, kYellowInk = 2, kWhiteInk = 3 };

struct SubtitlePage {
    unsigned page = 1;                    // its id
    unsigned version = 0;                 // another for each change
    unsigned timeOut = 5;                 // seconds
    int width = 720, height = 576;        // of the display
    int x = 0, y = 0;                     // where the drawing is
    std::optional<Drawing> drawing = {};  // none: the page is cleared
};

// The segments of the page, as they stand in a PES packet: from the data identifier to the end marker.
Bytes MakeSubtitles(const SubtitlePage& page);

// A PES packet of private stream 1. `presentation` is in 90 kHz.
Bytes MakePrivatePes(const Bytes& data, std::int64_t presentation);

// Appends it to `packets`, in packets of its own. `continuity` is the PID's counter.
void PacketizePes(const Bytes& pes, std::uint16_t pid, std::uint8_t& continuity, std::vector<std::uint8_t>& packets);

}  // namespace television::demonstration
