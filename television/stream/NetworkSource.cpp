// GStreamer's network sources, read from an appsink.
#include "television/stream/NetworkSource.h"

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

#include <chrono>

#include "television/stream/PipelineError.h"

namespace television {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::seconds(5);
constexpr GstClockTime kPullTime = 50 * GST_MSECOND;

GstElement* MakeReceiver(const std::string& url, bool udp) {
    GstElement* source = gst_element_factory_make(udp ? "udpsrc" : "souphttpsrc", nullptr);
    if (!source) return nullptr;
    if (!udp) {
        g_object_set(source, "location", url.c_str(), nullptr);
        return source;
    }
    GstCaps* caps = gst_caps_from_string("video/mpegts,systemstream=(boolean)true,packetsize=188");
    g_object_set(source, "uri", url.c_str(), "caps", caps, "buffer-size", 2 << 20, nullptr);
    gst_caps_unref(caps);
    return source;
}

}  // namespace

NetworkSource::NetworkSource(std::string url) : m_url(std::move(url)), m_udp(m_url.starts_with("udp:")) {}

NetworkSource::~NetworkSource() { Close(); }

void NetworkSource::Close() {
    if (!m_pipeline) return;
    gst_element_set_state(m_pipeline, GST_STATE_NULL);
    gst_object_unref(m_pipeline);
    m_pipeline = m_sink = nullptr;
}

bool NetworkSource::Build() {
    m_pipeline = gst_pipeline_new(nullptr);
    GstElement* source = MakeReceiver(m_url, m_udp);
    m_sink = gst_element_factory_make("appsink", nullptr);
    if (!source || !m_sink) {
        for (GstElement* element : {source, m_sink})
            if (element) gst_object_unref(gst_object_ref_sink(element));
        return false;
    }
    // What a network delivers too early waits in the socket; what is not fetched from UDP in time is lost there anyway.
    g_object_set(m_sink, "sync", FALSE, "max-buffers", 256u, nullptr);
    gst_bin_add_many(GST_BIN(m_pipeline), source, m_sink, nullptr);
    return gst_element_link(source, m_sink);
}

std::string NetworkSource::Complaint() { return m_pipeline ? TakeError(m_pipeline) : ""; }

std::optional<std::string> NetworkSource::Open() {
    Close();
    m_aligner.Reset();
    m_first.clear();
    if (!Build())
        return "\"" + m_url + "\" cannot be received: GStreamer's plug-ins \"good\" are missing; install them.";
    gst_element_set_state(m_pipeline, GST_STATE_PLAYING);
    const auto end = Clock::now() + kPatience;
    while (m_first.empty() && Clock::now() < end && !m_cancelled) {
        const Result result = Pull(m_first);
        if (const std::string complaint = Complaint(); !complaint.empty())
            return "\"" + m_url + "\" does not load (" + complaint + "): check the address.";
        if (result == Result::End && m_first.empty())
            return "\"" + m_url + "\" holds no MPEG transport stream: check the address.";
    }
    if (m_first.empty())
        return "No transport stream came from \"" + m_url + "\" within 5 seconds: check the address and the sender.";
    return std::nullopt;
}

PacketSource::Result NetworkSource::Read(std::vector<std::uint8_t>& packets) {
    if (!m_first.empty()) {
        packets.insert(packets.end(), m_first.begin(), m_first.end());
        m_first.clear();
        return Result::Packets;
    }
    return m_pipeline ? Pull(packets) : Result::End;
}

PacketSource::Result NetworkSource::Pull(std::vector<std::uint8_t>& packets) {
    GstSample* sample = gst_app_sink_try_pull_sample(GST_APP_SINK(m_sink), kPullTime);
    if (!sample) return gst_app_sink_is_eos(GST_APP_SINK(m_sink)) ? Result::End : Result::Nothing;
    GstMapInfo map;
    GstBuffer* buffer = gst_sample_get_buffer(sample);
    if (buffer && gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        m_aligner.Push({map.data, map.size}, packets);
        gst_buffer_unmap(buffer, &map);
    }
    gst_sample_unref(sample);
    return Result::Packets;
}

}  // namespace television
