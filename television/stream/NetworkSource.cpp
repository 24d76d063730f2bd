// GStreamer's network sources, read from an appsink.
#include "television/stream/NetworkSource.h"

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

#include <chrono>

#include "television/stream/PipelineError.h"
#include "television/stream/ReceiverElement.h"

namespace television {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::seconds(5);
constexpr auto kTuningPatience = std::chrono::seconds(15);  // of a card, which first looks for the signal
constexpr GstClockTime kPullTime = 50 * GST_MSECOND;

}  // namespace

NetworkSource::NetworkSource(std::string url)
    : m_url(std::move(url)), m_card(m_url.starts_with("dvb:")), m_live(m_card || m_url.starts_with("udp:")) {}

NetworkSource::~NetworkSource() { Close(); }

void NetworkSource::Close() {
    if (!m_pipeline) return;
    gst_element_set_state(m_pipeline, GST_STATE_NULL);
    gst_object_unref(m_pipeline);
    m_pipeline = m_sink = nullptr;
}

std::optional<std::string> NetworkSource::Build() {
    std::string error;
    GstElement* source = MakeReceiverElement(m_url, error);
    if (!source) return error;
    m_pipeline = gst_pipeline_new(nullptr);
    gst_bin_add(GST_BIN(m_pipeline), source);
    m_sink = gst_element_factory_make("appsink", nullptr);
    if (!m_sink) return "\"" + m_url + "\" cannot be received: GStreamer's plug-ins \"base\" are missing; install them.";
    // What a network delivers too early waits in the socket; what is not fetched from UDP in time is lost there anyway.
    g_object_set(m_sink, "sync", FALSE, "max-buffers", 256u, nullptr);
    gst_bin_add(GST_BIN(m_pipeline), m_sink);
    gst_element_link(source, m_sink);
    return std::nullopt;
}

std::string NetworkSource::Complaint() { return m_pipeline ? TakeError(m_pipeline) : ""; }

std::optional<std::string> NetworkSource::Open() {
    Close();
    m_aligner.Reset();
    m_first.clear();
    if (auto fault = Build()) return fault;
    gst_element_set_state(m_pipeline, GST_STATE_PLAYING);
    const char* const remedy = m_card ? "check the card and its driver" : "check the address";
    const auto patience = m_card ? kTuningPatience : kPatience;
    const auto end = Clock::now() + patience;
    while (m_first.empty() && Clock::now() < end && !m_cancelled) {
        const Result result = Pull(m_first);
        if (const std::string complaint = Complaint(); !complaint.empty())
            return "\"" + m_url + "\" does not load (" + complaint + "): " + remedy + ".";
        if (result == Result::End && m_first.empty())
            return "\"" + m_url + "\" holds no MPEG transport stream: check the address.";
    }
    if (m_first.empty())
        return "No transport stream came from \"" + m_url + "\" within " + std::to_string(patience.count()) +
               " seconds: " + remedy + " and the sender.";
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
