// The mean colour of a part of an image.
#pragma once

#include <QImage>
#include <QRect>

namespace browser {

struct MeanColour {
    double red = 0, green = 0, blue = 0;
    int pixels = 0;  // inside the image; the colours are 0 when there are none
};

MeanColour MeanColourOf(const QImage& image, const QRect& rectangle);

}  // namespace browser
