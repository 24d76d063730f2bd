// The data of DVB subtitles' PES packets, decoded to pictures.
#include "television/subtitles/SubtitleDecoder.h"

#include "tests/fuzz/Chunks.h"
#include "tests/fuzz/Fuzz.h"

namespace television::fuzz {
namespace {

constexpr std::int64_t kMostPixels = 2 * 1920 * 1080;

void DemandWholeParts(const Subtitles& subtitles) {
    Demand(subtitles.width > 0 && subtitles.height > 0, "subtitles have a display");
    std::int64_t pixels = 0;
    for (const auto& part : subtitles.parts) {
        Demand(part.width > 0 && part.height > 0, "a part has an area");
        const std::int64_t area = std::int64_t{part.width} * part.height;
        Demand(static_cast<std::int64_t>(part.pixels.size()) == area, "a part has all of its pixels");
        pixels += area;
    }
    Demand(pixels <= kMostPixels, "subtitles are no more than two screens full");
}

}  // namespace

// Each chunk is a packet's data. The first number tells the page.
void Fuzz(std::span<const std::uint8_t> input) {
    const auto chunks = Split(input);
    if (chunks.empty()) return;
    SubtitleDecoder decoder(chunks[0].number, chunks[0].number);
    for (const auto& [number, bytes] : chunks)
        if (const auto page = decoder.Decode(bytes); page && page->subtitles) DemandWholeParts(*page->subtitles);
}

}  // namespace television::fuzz
