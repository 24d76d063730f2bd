#include "television/stream/ReceiverElement.h"

#include <gst/gst.h>

#include <charconv>
#include <optional>
#include <string_view>

namespace television {
namespace {

GstElement* Make(const char* factory, const char* plugins, const std::string& url, std::string& error) {
    GstElement* element = gst_element_factory_make(factory, nullptr);
    if (!element)
        error = "\"" + url + "\" cannot be received: GStreamer's plug-ins \"" + plugins + "\" are missing; install them.";
    return element;
}

GstElement* MakeHttp(const std::string& url, std::string& error) {
    GstElement* element = Make("souphttpsrc", "good", url, error);
    if (element) g_object_set(element, "location", url.c_str(), nullptr);
    return element;
}

GstElement* MakeUdp(const std::string& url, std::string& error) {
    GstElement* element = Make("udpsrc", "good", url, error);
    if (!element) return nullptr;
    GstCaps* caps = gst_caps_from_string("video/mpegts,systemstream=(boolean)true,packetsize=188");
    g_object_set(element, "uri", url.c_str(), "caps", caps, "buffer-size", 2 << 20, nullptr);
    gst_caps_unref(caps);
    return element;
}

// What stands before the separator, which is taken from the text with it; all of it when there is none.
std::string_view TakeUntil(std::string_view& text, char separator) {
    const auto at = std::min(text.find(separator), text.size());
    const std::string_view taken = text.substr(0, at);
    text.remove_prefix(std::min(at + 1, text.size()));
    return taken;
}

bool SetNumber(GstElement* card, const char* property, std::string_view text) {
    int number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size() || number < 0 || number > 16) return false;
    g_object_set(card, property, number, nullptr);
    return true;
}

// A property that says what to tune to, with its value as GStreamer writes it.
bool SetTuning(GstElement* card, const std::string& property, const std::string& value) {
    GParamSpec* known = g_object_class_find_property(G_OBJECT_GET_CLASS(card), property.c_str());
    if (!known || !(known->flags & G_PARAM_WRITABLE) || known->owner_type != G_OBJECT_TYPE(card)) return false;
    GValue converted = G_VALUE_INIT;
    g_value_init(&converted, known->value_type);
    const bool readable = gst_value_deserialize(&converted, value.c_str());
    if (readable) g_object_set_property(G_OBJECT(card), property.c_str(), &converted);
    g_value_unset(&converted);
    return readable;
}

// What is wrong with the address, or nothing when the card is set up.
std::optional<std::string> SetUp(GstElement* card, std::string_view address) {
    std::string_view device = TakeUntil(address, '?');
    const std::string_view adapter = TakeUntil(device, '.');
    if (!SetNumber(card, "adapter", adapter) || (!device.empty() && !SetNumber(card, "frontend", device)))
        return "a card is its number, such as \"dvb://0?\", or \"dvb://0.1?\" for its second receiver";
    while (!address.empty()) {
        std::string_view value = TakeUntil(address, '&');
        const std::string property(TakeUntil(value, '='));
        if (!SetTuning(card, property, std::string(value)))
            return "a card has no \"" + property + "\" with the value \"" + std::string(value) +
                   "\"; \"gst-inspect-1.0 dvbsrc\" lists what it has";
    }
    guint frequency = 0;
    g_object_get(card, "frequency", &frequency, nullptr);
    if (frequency == 0) return "the frequency is missing, \"dvb://0?frequency=506000000&delsys=dvb-t2\"";
    return std::nullopt;
}

GstElement* MakeCard(const std::string& url, std::string& error) {
    GstElement* card = Make("dvbsrc", "bad", url, error);
    if (!card) return nullptr;
    g_object_set(card, "pids", "8192", nullptr);  // all of them
    const auto fault = SetUp(card, std::string_view(url).substr(url.find("://") + 3));
    if (!fault) return card;
    error = "\"" + url + "\" cannot be received: " + *fault + ".";
    gst_object_unref(gst_object_ref_sink(card));
    return nullptr;
}

}  // namespace

GstElement* MakeReceiverElement(const std::string& url, std::string& error) {
    if (url.starts_with("dvb:")) return MakeCard(url, error);
    return url.starts_with("udp:") ? MakeUdp(url, error) : MakeHttp(url, error);
}

}  // namespace television
