// Which GStreamer elements decode what.
#pragma once

#include <string>
#include <vector>

#include "television/playback/Decoder.h"

namespace television {

// From a queue to the sink; the third element is the decoder.
std::vector<std::string> VideoElements(const Component& video);
// From a queue to a filter that makes all sounds alike.
std::vector<std::string> SoundElements(const Component& sound);
// From the selector of sounds and the volume to the sink; when it is a file, there is a filter before it.
std::vector<std::string> SoundOutputElements(const SoundOutput& output);

void SetCaps(GstElement* element, const char* caps);
// The file gets samples as they are: 16 bits, little-endian, 48,000 pairs a second.
void AppendSamplesTo(GstElement* filter, GstElement* sink, const std::string& file);

// Lets a queue hold more than its usual second: what was buffered comes all at once.
void LiftQueueLimits(GstElement* queue);
// Decodes on one thread, which adds no delay. Elements that cannot be told so are left alone.
void LimitThreads(GstElement* decoder);
// Of a device or of a file.
bool IsSoundSink(GstElement* element);

}  // namespace television
