#include "browser/planes/VideoPlane.h"

#include <QImage>

#include "browser/planes/Geometry.h"
#include "television/Television.h"

namespace browser {

QRect PictureOnStage(const QRect& stage) {
    return VideoOnStage(television::Television::Instance().VideoRectangle(), stage);
}

void PaintVideoPlane(QPainter& painter, const QRect& stage) {
    painter.fillRect(stage, Qt::black);
    const auto picture = television::Television::Instance().CurrentPicture();
    if (!picture || picture->pixels == nullptr) {
        return;
    }
    const QImage image(picture->pixels, picture->width, picture->height, picture->stride, QImage::Format_RGB32);
    painter.save();
    painter.setClipRect(stage, Qt::IntersectClip);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(PictureOnStage(stage), image);
    painter.restore();
}

}  // namespace browser
