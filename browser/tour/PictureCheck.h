// Judges whether the television's picture is seen on the screen where a video/broadcast object lies.
#pragma once

#include <QImage>
#include <QRectF>
#include <QString>

namespace browser {

struct ScreenAndPicture {
    QImage screen;    // what the window shows
    QImage graphics;  // the page alone, with alpha; of the screen's size
    QImage picture;   // as decoded
    double aspectRatio = 16.0 / 9.0;  // of the picture as displayed
    QRectF object;    // where the object lies on the page
};

// Empty when the picture is seen: the page is transparent there, and the screen shows the picture fitted into the
// object's rectangle, neither black nor of one colour. Else the reason, as a part of a sentence.
QString WhyNoPicture(const ScreenAndPicture& seen);

}  // namespace browser
