#include "browser/planes/MeanColour.h"

namespace browser {

MeanColour MeanColourOf(const QImage& image, const QRect& rectangle) {
    const QRect part = rectangle & image.rect();
    MeanColour mean;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            mean.red += qRed(pixel);
            mean.green += qGreen(pixel);
            mean.blue += qBlue(pixel);
        }
    }
    mean.pixels = part.isEmpty() ? 0 : part.width() * part.height();
    if (mean.pixels > 0) {
        mean.red /= mean.pixels;
        mean.green /= mean.pixels;
        mean.blue /= mean.pixels;
    }
    return mean;
}

}  // namespace browser
