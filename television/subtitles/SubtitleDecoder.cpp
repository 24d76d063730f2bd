// libavcodec's decoder: what it is given and what it returns.
#include "television/subtitles/SubtitleDecoder.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/dict.h>
#include <libavutil/log.h>
#include <libavutil/mem.h>
}

#include <algorithm>
#include <cstring>

namespace television {
namespace {

constexpr std::uint8_t kDataIdentifier = 0x20;
// Without a display definition (ETSI EN 300 743, clause 5.1.2).
constexpr int kUsualWidth = 720, kUsualHeight = 576;
// A stream may ask for regions of any size, and for many; so many pixels are believed, of one and of all together.
constexpr std::int64_t kLargestRegion = 1920 * 1080, kLargestPage = 2 * kLargestRegion;

void PutPage(std::uint8_t* to, std::uint16_t page) {
    to[0] = static_cast<std::uint8_t>(page >> 8);
    to[1] = static_cast<std::uint8_t>(page);
}

// What is wrong in a stream is no concern of the standard error output.
void SilenceLog() {
    static const int once = (av_log_set_level(AV_LOG_PANIC), 0);
    static_cast<void>(once);
}

AVCodecContext* OpenDecoder(std::uint16_t compositionPage, std::uint16_t ancillaryPage) {
    constexpr int kPages = 4;
    SilenceLog();
    const AVCodec* codec = avcodec_find_decoder(AV_CODEC_ID_DVB_SUBTITLE);
    AVCodecContext* context = codec ? avcodec_alloc_context3(codec) : nullptr;
    if (!context) return nullptr;
    context->extradata = static_cast<std::uint8_t*>(av_mallocz(kPages + AV_INPUT_BUFFER_PADDING_SIZE));
    context->extradata_size = context->extradata ? kPages : 0;
    if (context->extradata) {
        PutPage(context->extradata, compositionPage);
        PutPage(context->extradata + 2, ancillaryPage);
    }
    context->max_pixels = kLargestRegion;
    AVDictionary* options = nullptr;
    av_dict_set(&options, "dvb_substream", "0", 0);  // without it the pages are ignored
    if (avcodec_open2(context, codec, &options) < 0) avcodec_free_context(&context);
    av_dict_free(&options);
    return context;
}

// Behind the data identifier and the stream's id, where they are.
std::span<const std::uint8_t> Segments(std::span<const std::uint8_t> data) {
    return data.size() > 2 && data[0] == kDataIdentifier ? data.subspan(2) : data;
}

std::uint32_t Premultiplied(std::uint32_t colour) {
    const std::uint32_t alpha = colour >> 24;
    const auto part = [=](int shift) { return ((colour >> shift & 0xff) * alpha / 255) << shift; };
    return alpha << 24 | part(16) | part(8) | part(0);
}

Subtitles::Part PartOf(const AVSubtitleRect& rectangle) {
    Subtitles::Part part{rectangle.x, rectangle.y, rectangle.w, rectangle.h, {}};
    part.pixels.reserve(static_cast<std::size_t>(rectangle.w) * static_cast<std::size_t>(rectangle.h));
    for (int y = 0; y < rectangle.h; ++y)
        for (int x = 0; x < rectangle.w; ++x) {
            const std::ptrdiff_t index = rectangle.data[0][static_cast<std::ptrdiff_t>(y) * rectangle.linesize[0] + x];
            std::uint32_t colour = 0;
            std::memcpy(&colour, rectangle.data[1] + index * 4, 4);
            part.pixels.push_back(index < rectangle.nb_colors ? Premultiplied(colour) : 0);
        }
    return part;
}

bool IsDrawn(const AVSubtitleRect& rectangle) {
    return rectangle.type == SUBTITLE_BITMAP && rectangle.w > 0 && rectangle.h > 0 && rectangle.data[0] &&
           rectangle.data[1];
}

}  // namespace

SubtitleDecoder::SubtitleDecoder(std::uint16_t compositionPage, std::uint16_t ancillaryPage)
    : m_context(OpenDecoder(compositionPage, ancillaryPage)), m_width(kUsualWidth), m_height(kUsualHeight) {}

SubtitleDecoder::~SubtitleDecoder() { avcodec_free_context(&m_context); }

std::optional<SubtitleDecoder::Page> SubtitleDecoder::Decode(std::span<const std::uint8_t> data) {
    const auto segments = Segments(data);
    AVPacket* packet = m_context ? av_packet_alloc() : nullptr;
    if (!packet || av_new_packet(packet, static_cast<int>(segments.size())) < 0) {
        av_packet_free(&packet);
        return std::nullopt;
    }
    std::copy(segments.begin(), segments.end(), packet->data);
    // The decoder tells the display's size only where it knows none.
    m_context->width = m_context->height = 0;
    AVSubtitle subtitle{};
    int complete = 0;
    const bool decoded = avcodec_decode_subtitle2(m_context, &subtitle, &complete, packet) >= 0 && complete;
    av_packet_free(&packet);
    if (m_context->width > 0 && m_context->height > 0) {
        m_width = m_context->width;
        m_height = m_context->height;
    }
    if (!decoded) return std::nullopt;
    const Page page = PageOf(subtitle);
    avsubtitle_free(&subtitle);
    return page;
}

SubtitleDecoder::Page SubtitleDecoder::PageOf(const AVSubtitle& subtitle) const {
    auto subtitles = std::make_shared<Subtitles>();
    subtitles->width = m_width;
    subtitles->height = m_height;
    std::int64_t pixels = 0;
    for (unsigned i = 0; i < subtitle.num_rects; ++i) {
        const AVSubtitleRect& rectangle = *subtitle.rects[i];
        if (!IsDrawn(rectangle)) continue;
        pixels += std::int64_t{rectangle.w} * rectangle.h;
        if (pixels <= kLargestPage) subtitles->parts.push_back(PartOf(rectangle));
    }
    Page page;
    page.timeOut = std::chrono::milliseconds(subtitle.end_display_time);
    if (!subtitles->parts.empty()) page.subtitles = std::move(subtitles);
    return page;
}

}  // namespace television
