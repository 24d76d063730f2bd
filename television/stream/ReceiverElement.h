// The GStreamer element that receives from an address.
#pragma once

#include <string>

typedef struct _GstElement GstElement;

namespace television {

// "udp://HOST:PORT", "http://…" and "https://…", or a card: "dvb://ADAPTER[.FRONTEND]?PROPERTY=VALUE&…" with the
// properties of dvbsrc that say what to tune to. The caller's, a floating reference; on failure null, and `error` is one
// sentence.
GstElement* MakeReceiverElement(const std::string& url, std::string& error);

}  // namespace television
