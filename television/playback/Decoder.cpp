// The pipeline: packets, demultiplexer, and a chain of elements for video and for sound.
#include "television/playback/Decoder.h"

#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <gst/gst.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

#include "television/playback/Elements.h"
#include "television/playback/PictureOfSample.h"
#include "television/stream/TransportPacket.h"

namespace television {
namespace {

// The first picture is shown when it is decoded; from then on all run this much late, so that what the multiplex
// delivers unevenly is always there in time.
constexpr GstClockTime kLatency = 300 * GST_MSECOND;
constexpr guint64 kLargestInput = 32 << 20;

void FreePackets(gpointer packets) { delete static_cast<std::vector<std::uint8_t>*>(packets); }

// tsdemux names its pads after the PIDs: "video_0_0101".
std::uint16_t PidOfPad(GstPad* pad) {
    const char* name = GST_PAD_NAME(pad);
    const char* digits = std::strrchr(name, '_');
    return digits ? static_cast<std::uint16_t>(std::strtoul(digits + 1, nullptr, 16)) : kNullPid;
}

double LinearVolume(int volume) { return volume / 100.0; }

}  // namespace

struct Decoder::Callbacks {
    static void PadAdded(GstElement*, GstPad* pad, gpointer decoder) { static_cast<Decoder*>(decoder)->LinkPad(pad); }

    static GstFlowReturn Preroll(GstAppSink* sink, gpointer decoder) {
        return Deliver(gst_app_sink_pull_preroll(sink), decoder);
    }
    static GstFlowReturn Sample(GstAppSink* sink, gpointer decoder) {
        return Deliver(gst_app_sink_pull_sample(sink), decoder);
    }
    static GstFlowReturn Deliver(GstSample* sample, gpointer decoder) {
        if (auto picture = sample ? PictureOfSample(sample) : nullptr)
            static_cast<Decoder*>(decoder)->m_events.picture(std::move(picture));
        return GST_FLOW_OK;
    }

    static GstPadProbeReturn FirstSound(GstPad*, GstPadProbeInfo*, gpointer decoder) {
        static_cast<Decoder*>(decoder)->m_events.firstSound();
        return GST_PAD_PROBE_REMOVE;
    }

    static GstBusSyncReply Message(GstBus*, GstMessage* message, gpointer decoder) {
        if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) Fault(*static_cast<Decoder*>(decoder), message);
        gst_message_unref(message);
        return GST_BUS_DROP;
    }
    static void Fault(Decoder& decoder, GstMessage* message) {
        GError* error = nullptr;
        gst_message_parse_error(message, &error, nullptr);
        const bool sound = GST_IS_ELEMENT(message->src) && IsAudioSink(GST_ELEMENT(message->src));
        decoder.m_events.fault(error->message, sound);
        g_error_free(error);
    }
};

Decoder::Decoder(const DecoderPlan& plan, DecoderEvents events) : m_events(std::move(events)) {
    m_pipeline = gst_pipeline_new(nullptr);
    gst_pipeline_set_latency(GST_PIPELINE(m_pipeline), kLatency);
    GstBus* bus = gst_element_get_bus(m_pipeline);
    gst_bus_set_sync_handler(bus, Callbacks::Message, this, nullptr);
    gst_object_unref(bus);
    BuildInput(plan.sid);
    if (plan.video) BuildVideo(*plan.video);
    if (plan.audio) BuildAudio(*plan.audio, plan);
    gst_element_set_state(m_pipeline, GST_STATE_PLAYING);
}

Decoder::~Decoder() {
    gst_element_set_state(m_pipeline, GST_STATE_NULL);
    gst_object_unref(m_pipeline);
}

// Makes the elements, adds them to the pipeline and links each to the next; empty when one of them is not installed.
std::vector<GstElement*> Decoder::Chain(const std::vector<std::string>& factories) {
    std::vector<GstElement*> chain;
    for (const std::string& factory : factories) {
        GstElement* element = gst_element_factory_make(factory.c_str(), nullptr);
        if (!element) {
            m_events.fault("GStreamer's element \"" + factory + "\" is not installed", false);
            return {};
        }
        gst_bin_add(GST_BIN(m_pipeline), element);
        if (!chain.empty()) gst_element_link(chain.back(), element);
        chain.push_back(element);
    }
    return chain;
}

void Decoder::BuildInput(std::uint16_t sid) {
    const auto chain = Chain({"appsrc", "tsdemux"});
    if (chain.empty()) return;
    m_source = chain[0];
    GstCaps* caps = gst_caps_from_string("video/mpegts,systemstream=(boolean)true,packetsize=188");
    g_object_set(m_source, "caps", caps, "max-bytes", kLargestInput, "leaky-type", GST_APP_LEAKY_TYPE_DOWNSTREAM,
                 nullptr);
    gst_caps_unref(caps);
    g_object_set(chain[1], "program-number", static_cast<int>(sid), nullptr);
    g_signal_connect(chain[1], "pad-added", G_CALLBACK(Callbacks::PadAdded), this);
}

void Decoder::BuildVideo(const Component& video) {
    const auto chain = Chain(VideoElements(video));
    if (chain.empty()) return;
    LiftQueueLimits(chain.front());
    LimitThreads(chain[2]);
    GstCaps* caps = gst_caps_from_string("video/x-raw,format=BGRx");
    g_object_set(chain.back(), "caps", caps, nullptr);
    gst_caps_unref(caps);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_preroll = Callbacks::Preroll;
    callbacks.new_sample = Callbacks::Sample;
    gst_app_sink_set_callbacks(GST_APP_SINK(chain.back()), &callbacks, this, nullptr);
    m_branches.push_back({video.pid, chain.front()});
}

void Decoder::BuildAudio(const Component& audio, const DecoderPlan& plan) {
    const auto chain = Chain(AudioElements(audio, plan.audioSink));
    if (chain.empty()) return;
    LiftQueueLimits(chain.front());
    // Sound must not hold up the first picture, so its sink does not take part in the preroll when there is video.
    g_object_set(chain.back(), "sync", TRUE, "async", plan.video ? FALSE : TRUE, nullptr);
    GstPad* decoded = gst_element_get_static_pad(chain[3], "sink");
    gst_pad_add_probe(decoded, GST_PAD_PROBE_TYPE_BUFFER, Callbacks::FirstSound, this, nullptr);
    gst_object_unref(decoded);
    m_volume = chain[chain.size() - 2];
    SetVolume(plan.volume);
    m_branches.push_back({audio.pid, chain.front()});
}

void Decoder::LinkPad(GstPad* pad) {
    for (const Branch& branch : m_branches) {
        if (branch.pid != PidOfPad(pad)) continue;
        GstPad* sink = gst_element_get_static_pad(branch.first, "sink");
        if (!gst_pad_is_linked(sink)) gst_pad_link(pad, sink);
        gst_object_unref(sink);
    }
}

void Decoder::Feed(std::vector<std::uint8_t>&& packets) {
    if (!m_source) return;
    auto* owned = new std::vector<std::uint8_t>(std::move(packets));
    GstBuffer* buffer = gst_buffer_new_wrapped_full(GST_MEMORY_FLAG_READONLY, owned->data(), owned->size(), 0,
                                                    owned->size(), owned, FreePackets);
    gst_app_src_push_buffer(GST_APP_SRC(m_source), buffer);
}

void Decoder::SetVolume(int volume) {
    if (m_volume) g_object_set(m_volume, "volume", LinearVolume(volume), nullptr);
}

}  // namespace television
