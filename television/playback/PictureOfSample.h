// A picture of the television from a decoded sample of GStreamer.
#pragma once

#include <memory>

#include "television/Television.h"

typedef struct _GstSample GstSample;

namespace television {

// Takes the sample, which must be BGRx video. The picture keeps it; null when it cannot be read.
std::shared_ptr<const Picture> PictureOfSample(GstSample* sample);

}  // namespace television
