// What a GStreamer pipeline complains of.
#pragma once

#include <string>

struct _GstElement;

namespace television {

// Takes the errors that the pipeline posted and returns the one that tells most, without a full stop; empty when there
// is none.
std::string TakeError(_GstElement* pipeline);

}  // namespace television
