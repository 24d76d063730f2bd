// Where the planes lie in a window: the pure arithmetic.
#pragma once

#include <QPointF>
#include <QRect>
#include <QSize>

#include "platform/TPTRect.h"

namespace browser {

// The graphics plane, which pages are laid out for.
inline constexpr QSize kGraphicsPlane{1280, 720};

// The largest 16:9 rectangle in a window of that size, centred: both planes fill it.
QRect StageIn(const QSize& window);

// A rectangle of the video plane as it comes to lie on the stage.
QRect VideoOnStage(const TPTRect& video, const QRect& stage);

// A rectangle of the graphics plane on the stage, rounded outwards; and a point of the window on the graphics plane.
QRect GraphicsOnStage(const QRect& graphics, const QRect& stage);
QPointF WindowToGraphics(const QPointF& point, const QRect& stage);

}  // namespace browser
