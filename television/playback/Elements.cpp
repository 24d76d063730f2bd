// The tables of elements, and what is peculiar to some of them.
#include "television/playback/Elements.h"

#include <gst/gst.h>

#include <cstring>

#include "television/stream/StreamTypes.h"

namespace television {
namespace {

struct Coding {
    const char* parser;
    const char* decoder;
};

Coding VideoCoding(std::uint8_t streamType) {
    switch (streamType) {
        case kH264Video:
            return {"h264parse", "avdec_h264"};
        case kH265Video:
            return {"h265parse", "avdec_h265"};
        default:
            return {"mpegvideoparse", "avdec_mpeg2video"};
    }
}

Coding AudioCoding(const Component& audio) {
    if (audio.streamType == kAacAudio) return {"aacparse", "avdec_aac"};
    if (audio.streamType == kLatmAudio) return {"aacparse", "avdec_aac_latm"};
    if (audio.encoding == "AC3") return {"ac3parse", "avdec_ac3"};
    if (audio.encoding == "E_AC3") return {"ac3parse", "avdec_eac3"};
    if (audio.encoding == "DTS") return {"dcaparse", "avdec_dca"};
    return {"mpegaudioparse", "avdec_mp2float"};
}

bool HasProperty(GstElement* element, const char* name) {
    return g_object_class_find_property(G_OBJECT_GET_CLASS(element), name) != nullptr;
}

}  // namespace

std::vector<std::string> VideoElements(const Component& video) {
    const Coding coding = VideoCoding(video.streamType);
    return {"queue", coding.parser, coding.decoder, "videoconvert", "appsink"};
}

std::vector<std::string> SoundElements(const Component& sound) {
    const Coding coding = AudioCoding(sound);
    return {"queue", coding.parser, coding.decoder, "audioconvert", "audioresample", "capsfilter"};
}

std::vector<std::string> SoundOutputElements(const SoundOutput& output) {
    if (!output.file.empty()) return {"input-selector", "volume", "audioconvert", "capsfilter", "filesink"};
    return {"input-selector", "volume", "audioconvert", "audioresample", output.element};
}

void SetCaps(GstElement* element, const char* caps) {
    GstCaps* parsed = gst_caps_from_string(caps);
    g_object_set(element, "caps", parsed, nullptr);
    gst_caps_unref(parsed);
}

void AppendSamplesTo(GstElement* filter, GstElement* sink, const std::string& file) {
    SetCaps(filter, "audio/x-raw,format=S16LE,rate=48000,channels=2,layout=interleaved");
    g_object_set(sink, "location", file.c_str(), "append", TRUE, nullptr);
    gst_util_set_object_arg(G_OBJECT(sink), "buffer-mode", "unbuffered");
}

void LiftQueueLimits(GstElement* queue) {
    g_object_set(queue, "max-size-time", guint64{0}, "max-size-buffers", 0u, "max-size-bytes", 32u << 20, nullptr);
}

void LimitThreads(GstElement* decoder) {
    if (HasProperty(decoder, "max-threads")) g_object_set(decoder, "max-threads", 1, nullptr);
}

bool IsSoundSink(GstElement* element) {
    const char* kind = gst_element_get_metadata(element, GST_ELEMENT_METADATA_KLASS);
    return kind && std::strstr(kind, "Sink") && (std::strstr(kind, "Audio") || std::strstr(kind, "File"));
}

void LoadElements() {
    for (const char* name :
         {"appsrc", "tsdemux", "queue", "h264parse", "avdec_h264", "mpegvideoparse", "avdec_mpeg2video", "videoconvert",
          "appsink", "mpegaudioparse", "avdec_mp2float", "audioconvert", "audioresample", "capsfilter", "input-selector", "volume",
          "fakesink"})
        if (GstElement* element = gst_element_factory_make(name, nullptr))
            gst_object_unref(gst_object_ref_sink(element));
}

std::string FindAudioSink() {
    std::string name = "fakesink";
    GstElement* automatic = gst_element_factory_make("autoaudiosink", nullptr);
    if (!automatic) return name;
    gst_object_ref_sink(automatic);
    if (gst_element_set_state(automatic, GST_STATE_READY) != GST_STATE_CHANGE_FAILURE) {
        GstElement* chosen = GST_BIN_CHILDREN(automatic) ? GST_ELEMENT(GST_BIN_CHILDREN(automatic)->data) : nullptr;
        if (GstElementFactory* factory = chosen ? gst_element_get_factory(chosen) : nullptr)
            name = GST_OBJECT_NAME(factory);
    }
    gst_element_set_state(automatic, GST_STATE_NULL);
    gst_object_unref(automatic);
    return name;
}

}  // namespace television
