// Which GStreamer elements decode what.
#pragma once

#include <string>
#include <vector>

#include "television/tables/Components.h"

typedef struct _GstElement GstElement;

namespace television {

// The chain from a queue to the sink. In both the third element is the decoder and the fourth takes what it decoded;
// the last but one of the audio chain sets the volume.
std::vector<std::string> VideoElements(const Component& video);
std::vector<std::string> AudioElements(const Component& audio, const std::string& sink);

// Lets a queue hold more than its usual second: what was buffered comes all at once.
void LiftQueueLimits(GstElement* queue);
// Decodes on one thread, which adds no delay. Elements that cannot be told so are left alone.
void LimitThreads(GstElement* decoder);
bool IsAudioSink(GstElement* element);

}  // namespace television
