// Rectangles of the graphics plane and the video plane.
#pragma once

#include "platform/TPTRect.h"

namespace television {

// The largest rectangle with this ratio of width to height inside `outer`, centred in it.
TPTRect Fit(const TPTRect& outer, double aspectRatio);

// `rectangle`, given in the coordinates of plane `from`, in those of plane `to`. False, and the rectangle as it is,
// when `from` has no area.
bool Convert(const TPTRect& rectangle, const TPTRect& from, const TPTRect& to, TPTRect& result);

}  // namespace television
