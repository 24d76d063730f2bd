// GStreamer's sources for files and the network, read to their end from an appsink.
#include "television/events/Download.h"

#include <gst/app/gstappsink.h>
#include <gst/gst.h>

#include <chrono>
#include <memory>

#include "television/stream/PipelineError.h"

namespace television {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::seconds(10);
constexpr GstClockTime kPullTime = 20 * GST_MSECOND;
constexpr std::size_t kLargestDocument = 64 << 10;

bool IsLoadable(const std::string& url) {
    for (const char* scheme : {"http://", "https://", "file://"})
        if (url.starts_with(scheme)) return true;
    return false;
}

// Chosen by name: the browser in this process brings a source of its own for the network, which is of no use here.
GstElement* MakeSource(const std::string& url) {
    const bool file = url.starts_with("file:");
    GstElement* source = gst_element_factory_make(file ? "filesrc" : "souphttpsrc", nullptr);
    if (source && gst_uri_handler_set_uri(GST_URI_HANDLER(source), url.c_str(), nullptr)) return source;
    if (source) gst_object_unref(gst_object_ref_sink(source));
    return nullptr;
}

class Loading {
public:
    ~Loading() {
        if (!m_pipeline) return;
        gst_element_set_state(m_pipeline, GST_STATE_NULL);
        gst_object_unref(m_pipeline);
    }

    bool Begin(const std::string& url) {
        GstElement* source = MakeSource(url);
        m_sink = gst_element_factory_make("appsink", nullptr);
        m_pipeline = gst_pipeline_new(nullptr);
        for (GstElement* element : {source, m_sink})
            if (element) gst_bin_add(GST_BIN(m_pipeline), element);
        if (!source || !m_sink || !gst_element_link(source, m_sink)) return false;
        g_object_set(m_sink, "sync", FALSE, "max-buffers", 16u, nullptr);
        gst_element_set_state(m_pipeline, GST_STATE_PLAYING);
        return true;
    }

    // Appends what has come. False at the end.
    bool Read(std::string& content) {
        GstSample* sample = gst_app_sink_try_pull_sample(GST_APP_SINK(m_sink), kPullTime);
        if (!sample) return !gst_app_sink_is_eos(GST_APP_SINK(m_sink));
        GstMapInfo map;
        GstBuffer* buffer = gst_sample_get_buffer(sample);
        if (buffer && gst_buffer_map(buffer, &map, GST_MAP_READ)) {
            content.append(reinterpret_cast<const char*>(map.data), map.size);
            gst_buffer_unmap(buffer, &map);
        }
        gst_sample_unref(sample);
        return true;
    }

    std::string Fault() { return TakeError(m_pipeline); }

private:
    GstElement *m_pipeline = nullptr, *m_sink = nullptr;
};

}  // namespace

std::optional<Download> Load(const std::string& url, const std::function<bool()>& wanted) {
    if (!IsLoadable(url)) return Download{"", "its address begins with none of http://, https:// and file://"};
    Loading loading;
    if (!loading.Begin(url)) return Download{"", "GStreamer's plug-ins \"good\" are missing, or the address is wrong"};
    const auto end = Clock::now() + kPatience;
    std::string content;
    while (wanted()) {
        const bool more = loading.Read(content);
        if (const std::string fault = loading.Fault(); !fault.empty()) return Download{"", "it does not load: " + fault};
        if (content.size() > kLargestDocument) return Download{"", "it is too large"};
        if (!more) return Download{std::move(content), ""};
        if (Clock::now() > end) return Download{"", "it did not come within ten seconds"};
    }
    return std::nullopt;
}

}  // namespace television
