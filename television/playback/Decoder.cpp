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

    static GstFlowReturn Subtitle(GstAppSink* appSink, gpointer subtitleSink) {
        const auto& sink = *static_cast<SubtitleSink*>(subtitleSink);
        GstSample* sample = gst_app_sink_pull_sample(appSink);
        GstBuffer* buffer = sample ? gst_sample_get_buffer(sample) : nullptr;
        std::vector<std::uint8_t> data(buffer ? gst_buffer_get_size(buffer) : 0);
        if (buffer) gst_buffer_extract(buffer, 0, data.data(), data.size());
        if (sample) gst_sample_unref(sample);
        if (!data.empty()) sink.decoder.m_events.subtitle(sink.pid, std::move(data));
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
        const bool sound = GST_IS_ELEMENT(message->src) && IsSoundSink(GST_ELEMENT(message->src));
        decoder.m_events.fault(error->message, sound);
        g_error_free(error);
    }
};

Decoder::Decoder(const DecoderPlan& plan, DecoderEvents events)
    : m_events(std::move(events)), m_videoPid(plan.video ? plan.video->pid : kNullPid) {
    m_pipeline = gst_pipeline_new(nullptr);
    gst_pipeline_set_latency(GST_PIPELINE(m_pipeline), kLatency);
    GstBus* bus = gst_element_get_bus(m_pipeline);
    gst_bus_set_sync_handler(bus, Callbacks::Message, this, nullptr);
    gst_object_unref(bus);
    BuildInput(plan.sid);
    if (plan.video) BuildVideo(*plan.video);
    if (!plan.sounds.empty()) BuildSound(plan);
    for (const std::uint16_t pid : plan.subtitlePids) BuildSubtitles(pid);
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
    SetCaps(m_source, "video/mpegts,systemstream=(boolean)true,packetsize=188");
    g_object_set(m_source, "max-bytes", kLargestInput, "leaky-type", GST_APP_LEAKY_TYPE_DOWNSTREAM, nullptr);
    g_object_set(chain[1], "program-number", static_cast<int>(sid), nullptr);
    g_signal_connect(chain[1], "pad-added", G_CALLBACK(Callbacks::PadAdded), this);
}

void Decoder::BuildVideo(const Component& video) {
    const auto chain = Chain(VideoElements(video));
    if (chain.empty()) return;
    LiftQueueLimits(chain.front());
    LimitThreads(chain[2]);
    SetCaps(chain.back(), "video/x-raw,format=BGRx");
    GstAppSinkCallbacks callbacks{};
    callbacks.new_preroll = Callbacks::Preroll;
    callbacks.new_sample = Callbacks::Sample;
    gst_app_sink_set_callbacks(GST_APP_SINK(chain.back()), &callbacks, this, nullptr);
    m_branches.push_back({video.pid, chain.front(), nullptr});
}

// Each sound has a chain of its own into the selector, so that choosing another one needs no new pipeline.
void Decoder::BuildSound(const DecoderPlan& plan) {
    if (!BuildSoundOutput(plan)) return;
    for (const Component& sound : plan.sounds) BuildSoundBranch(sound);
    GstPad* heard = gst_element_get_static_pad(m_selector, "src");
    gst_pad_add_probe(heard, GST_PAD_PROBE_TYPE_BUFFER, Callbacks::FirstSound, this, nullptr);
    gst_object_unref(heard);
    SetVolume(plan.volume);
    Hear(plan.heard);
}

bool Decoder::BuildSoundOutput(const DecoderPlan& plan) {
    const auto chain = Chain(SoundOutputElements(plan.output));
    if (chain.empty()) return false;
    m_selector = chain[0];
    m_volume = chain[1];
    if (!plan.output.file.empty()) AppendSamplesTo(chain[chain.size() - 2], chain.back(), plan.output.file);
    // Sound must not hold up the first picture, so its sink does not take part in the preroll when there is video.
    g_object_set(chain.back(), "sync", TRUE, "async", plan.video ? FALSE : TRUE, nullptr);
    return true;
}

void Decoder::BuildSoundBranch(const Component& sound) {
    const auto chain = Chain(SoundElements(sound));
    if (chain.empty()) return;
    LiftQueueLimits(chain.front());
    SetCaps(chain.back(), "audio/x-raw,format=F32LE,rate=48000,channels=2,layout=interleaved");
    GstPad* from = gst_element_get_static_pad(chain.back(), "src");
    GstPad* to = gst_element_request_pad_simple(m_selector, "sink_%u");
    gst_pad_link(from, to);
    gst_object_unref(from);
    m_branches.push_back({sound.pid, chain.front(), to});
    gst_object_unref(to);  // the selector keeps it
}

// Subtitles come seldom: neither the first picture nor the end of a flush may wait for them.
void Decoder::BuildSubtitles(std::uint16_t pid) {
    const auto chain = Chain({"queue", "appsink"});
    if (chain.empty()) return;
    LiftQueueLimits(chain.front());
    g_object_set(chain.back(), "sync", TRUE, "async", FALSE, nullptr);
    m_subtitleSinks.push_back(std::make_unique<SubtitleSink>(SubtitleSink{*this, pid}));
    GstAppSinkCallbacks callbacks{};
    callbacks.new_sample = Callbacks::Subtitle;
    gst_app_sink_set_callbacks(GST_APP_SINK(chain.back()), &callbacks, m_subtitleSinks.back().get(), nullptr);
    m_branches.push_back({pid, chain.front(), nullptr});
}

void Decoder::Hear(std::optional<std::uint16_t> pid) {
    if (m_volume) g_object_set(m_volume, "mute", pid ? FALSE : TRUE, nullptr);
    for (const Branch& branch : m_branches)
        if (branch.selectable && branch.pid == pid) g_object_set(m_selector, "active-pad", branch.selectable, nullptr);
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
    // tsdemux throws the whole of a picture away when one of its packets is missing. Bad reception would never bring a
    // picture that others refer to; the decoder makes a damaged one of it, as viewers know it. Sound is better silent.
    m_videoCount.Apply(m_videoPid, packets);
    auto* owned = new std::vector<std::uint8_t>(std::move(packets));
    GstBuffer* buffer = gst_buffer_new_wrapped_full(GST_MEMORY_FLAG_READONLY, owned->data(), owned->size(), 0,
                                                    owned->size(), owned, FreePackets);
    gst_app_src_push_buffer(GST_APP_SRC(m_source), buffer);
}

void Decoder::SetVolume(int volume) {
    if (m_volume) g_object_set(m_volume, "volume", LinearVolume(volume), nullptr);
}

}  // namespace television
