#include "browser/planes/SubtitlePlane.h"

#include <QImage>

#include "browser/planes/VideoPlane.h"
#include "television/Television.h"

namespace browser {

void PaintSubtitlePlane(QPainter& painter, const QRect& stage) {
    const auto subtitles = television::Television::Instance().CurrentSubtitles();
    if (!subtitles || subtitles->width <= 0 || subtitles->height <= 0) {
        return;
    }
    const QRect picture = PictureOnStage(stage);
    painter.save();
    painter.setClipRect(stage & picture, Qt::IntersectClip);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(picture.topLeft());
    painter.scale(static_cast<double>(picture.width()) / subtitles->width,
                  static_cast<double>(picture.height()) / subtitles->height);
    for (const auto& part : subtitles->parts) {
        const auto* pixels = reinterpret_cast<const uchar*>(part.pixels.data());
        painter.drawImage(part.x, part.y, QImage(pixels, part.width, part.height, part.width * 4,
                                                 QImage::Format_ARGB32_Premultiplied));
    }
    painter.restore();
}

}  // namespace browser
