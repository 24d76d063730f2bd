#include "browser/planes/Geometry.h"

#include <QRectF>
#include <QTransform>

#include "television/Television.h"

namespace browser {

namespace {

using television::Television;

QRectF Scaled(const QRectF& rectangle, const QSize& plane, const QRect& stage) {
    const double x = double(stage.width()) / plane.width();
    const double y = double(stage.height()) / plane.height();
    return {stage.x() + rectangle.x() * x, stage.y() + rectangle.y() * y, rectangle.width() * x,
            rectangle.height() * y};
}

}  // namespace

QRect StageIn(const QSize& window) {
    const QSize stage = kGraphicsPlane.scaled(window, Qt::KeepAspectRatio);
    return {QPoint((window.width() - stage.width()) / 2, (window.height() - stage.height()) / 2), stage};
}

QRect VideoOnStage(const TPTRect& video, const QRect& stage) {
    const QRectF rectangle(video.x, video.y, video.width, video.height);
    return Scaled(rectangle, QSize(Television::kPlaneWidth, Television::kPlaneHeight), stage).toRect();
}

QRect GraphicsOnStage(const QRect& graphics, const QRect& stage) {
    return Scaled(graphics, kGraphicsPlane, stage).toAlignedRect();
}

QPointF WindowToGraphics(const QPointF& point, const QRect& stage) {
    return {(point.x() - stage.x()) * kGraphicsPlane.width() / stage.width(),
            (point.y() - stage.y()) * kGraphicsPlane.height() / stage.height()};
}

}  // namespace browser
