// Errors on a pipeline's bus.
#include "television/stream/PipelineError.h"

#include <gst/gst.h>

namespace television {
namespace {

constexpr const char* kVagueError = "Internal data stream error";  // an element's, when it knows no better

std::string TextOf(GstMessage* message) {
    GError* error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    std::string text = error->message;
    g_error_free(error);
    while (!text.empty() && text.back() == '.') text.pop_back();
    return text;
}

}  // namespace

std::string TakeError(GstElement* pipeline) {
    GstBus* bus = gst_element_get_bus(pipeline);
    std::string text;
    while (GstMessage* message = gst_bus_pop_filtered(bus, GST_MESSAGE_ERROR)) {
        const std::string found = TextOf(message);
        if (text.empty() || text == kVagueError) text = found;
        gst_message_unref(message);
    }
    gst_object_unref(bus);
    return text == kVagueError ? "no connection" : text;
}

}  // namespace television
