// Decodes DVB subtitles (ETSI EN 300 743) to pictures, with libavcodec.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "television/Television.h"

struct AVCodecContext;
struct AVSubtitle;

namespace television {

class SubtitleDecoder {
public:
    // The pages of the stream that are wanted. Nothing is decoded where libavcodec has no decoder.
    SubtitleDecoder(std::uint16_t compositionPage, std::uint16_t ancillaryPage);
    ~SubtitleDecoder();
    SubtitleDecoder(const SubtitleDecoder&) = delete;
    SubtitleDecoder& operator=(const SubtitleDecoder&) = delete;

    struct Page {
        std::shared_ptr<const Subtitles> subtitles;  // null: nothing is to be seen
        std::chrono::milliseconds timeOut{};         // after which nothing is to be seen
    };
    // Takes the data of a PES packet. None when it completes no page.
    std::optional<Page> Decode(std::span<const std::uint8_t> data);

private:
    Page PageOf(const AVSubtitle& subtitle) const;

    AVCodecContext* m_context = nullptr;
    int m_width, m_height;  // of the display
};

}  // namespace television
