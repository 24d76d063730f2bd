// Samples whose pixels stay mapped for as long as somebody looks at them.
#include "television/playback/PictureOfSample.h"

#include <gst/gst.h>
#include <gst/video/video.h>

namespace television {
namespace {

// A sample with its pixels mapped.
struct MappedSample {
    explicit MappedSample(GstSample* taken) : sample(taken) {
        GstVideoInfo info;
        GstCaps* caps = gst_sample_get_caps(sample);
        GstBuffer* buffer = gst_sample_get_buffer(sample);
        mapped = caps && buffer && gst_video_info_from_caps(&info, caps) &&
                 gst_video_frame_map(&frame, &info, buffer, GST_MAP_READ);
    }
    ~MappedSample() {
        if (mapped) gst_video_frame_unmap(&frame);
        gst_sample_unref(sample);
    }
    MappedSample(const MappedSample&) = delete;
    MappedSample& operator=(const MappedSample&) = delete;

    GstSample* sample;
    GstVideoFrame frame{};
    bool mapped = false;
};

double AspectRatio(const GstVideoInfo& info) {
    if (info.height <= 0 || info.par_d <= 0 || info.par_n <= 0) return 16.0 / 9.0;
    return static_cast<double>(info.width) * info.par_n / (static_cast<double>(info.height) * info.par_d);
}

}  // namespace

std::shared_ptr<const Picture> PictureOfSample(GstSample* sample) {
    auto owner = std::make_shared<MappedSample>(sample);
    if (!owner->mapped) return nullptr;
    const GstVideoFrame& frame = owner->frame;
    auto picture = std::make_shared<Picture>();
    picture->pixels = static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0));
    picture->width = GST_VIDEO_FRAME_WIDTH(&frame);
    picture->height = GST_VIDEO_FRAME_HEIGHT(&frame);
    picture->stride = GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0);
    picture->aspectRatio = AspectRatio(frame.info);
    picture->owner = owner;
    return picture;
}

}  // namespace television
